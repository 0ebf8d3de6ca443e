# Installs the library, moves the package elsewhere, and builds and runs the host against it. Then looks at what the
# package says to projects that cannot use it, and at the licences in it.
cmake_minimum_required(VERSION 3.25)

function(run)
    execute_process(COMMAND ${ARGN} COMMAND_ECHO STDOUT COMMAND_ERROR_IS_FATAL ANY)
endfunction()

file(REMOVE_RECURSE ${work})
run(${CMAKE_COMMAND} --install ${built} --config ${config} --prefix ${work}/installed)

# Nothing in the package may depend on where it was installed.
file(RENAME ${work}/installed ${work}/package)

set(choices -G ${generator} -D CMAKE_BUILD_TYPE=${config} -D CMAKE_PREFIX_PATH=${work}/package)
if(toolchain)
    list(APPEND choices -D CMAKE_TOOLCHAIN_FILE=${toolchain})
else()
    list(APPEND choices -D CMAKE_CXX_COMPILER=${compiler} -D CMAKE_CXX_FLAGS=${flags})
endif()
run(${CMAKE_COMMAND} -S ${host} -B ${work}/build ${choices})
run(${CMAKE_COMMAND} --build ${work}/build)

set(ENV{XDG_DATA_HOME} ${work}/data)
run(${CMAKE_CTEST_COMMAND} --test-dir ${work}/build --output-on-failure --no-tests=error)

include(${CMAKE_CURRENT_LIST_DIR}/refuse.cmake)
include(${CMAKE_CURRENT_LIST_DIR}/licences.cmake)
