# Builds a program in C against the package: by what the package tells pkg-config, by its targets, and on Windows by
# Visual C++'s rules, too. There is no service, so each has to end with the library's reason.
cmake_path(SET root NORMALIZE ${CMAKE_CURRENT_LIST_DIR}/../..)
set(source ${root}/examples/ListWorkspacesInC.c)
set(ENV{PVWAPI_BASE_URL} http://127.0.0.1:1/kznconnect/op.do)

function(expect_reason program)
    execute_process(COMMAND ${emulator} ${program} RESULT_VARIABLE status ERROR_VARIABLE said)
    if(NOT status EQUAL 1 OR NOT said MATCHES "Unable to connect")
        message(SEND_ERROR "${program} ends with ${status} and says: ${said}")
    endif()
endfunction()

function(build_in_c_by_pkg_config)
    build_by_pkg_config(pvwapi_c ${work}/in-c.exe -x c -std=c11 -I ${root} ${source})
    expect_reason(${work}/in-c.exe)
endfunction()

function(build_by_targets folder)
    run(${CMAKE_COMMAND} -S ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/host-in-c -B ${work}/${folder} -G ${generator}
        -D CMAKE_BUILD_TYPE=${config} -D CMAKE_PREFIX_PATH=${package} -D source=${source} ${ARGN})
    run(${CMAKE_COMMAND} --build ${work}/${folder})
    expect_reason(${work}/${folder}/host${suffix})
endfunction()

build_in_c_by_pkg_config()
if(toolchain)
    build_by_targets(in-c -D CMAKE_TOOLCHAIN_FILE=${toolchain})
    include(${CMAKE_CURRENT_LIST_DIR}/visual-c/library.cmake)
    build_by_targets(in-visual-c -D CMAKE_TOOLCHAIN_FILE=${CMAKE_CURRENT_LIST_DIR}/visual-c/toolchain.cmake
        -D processor=${processor})
else()
    build_by_targets(in-c -D CMAKE_C_FLAGS=${flags})
endif()
