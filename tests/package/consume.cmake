# Installs the library, moves the package elsewhere, and builds a project against it: `host` runs its own tests, the
# examples are run one by one by others, and here only the one that needs nothing but a service. Beside the host it
# looks at what the package says to projects that cannot use it, and at the licences in it.
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
if(NOT program)
    run(${CMAKE_CTEST_COMMAND} --test-dir ${work}/build --output-on-failure --no-tests=error)
    include(${CMAKE_CURRENT_LIST_DIR}/refuse.cmake)
    include(${CMAKE_CURRENT_LIST_DIR}/licences.cmake)
    return()
endif()

set(ENV{PVWAPI_BASE_URL} $ENV{TEST_SERVICE_URL})
set(ENV{PVWAPI_USER} dmitri)
set(ENV{PVWAPI_PASSWORD} dmitri-demo-1)
execute_process(COMMAND ${emulator} ${work}/build/${program} OUTPUT_VARIABLE shown COMMAND_ERROR_IS_FATAL ANY)
if(NOT shown MATCHES "Messestand")
    message(FATAL_ERROR "${program} shows:\n${shown}")
endif()
