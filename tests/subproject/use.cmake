# Runs what build.cmake has built: the parent's own test, which is the only one, and a program of the C interface's.
cmake_minimum_required(VERSION 3.25)

function(expect_use way)
    set(build ${work}/${way})
    execute_process(COMMAND ${CMAKE_CTEST_COMMAND} --test-dir ${build} --output-on-failure OUTPUT_VARIABLE tested)
    if(NOT tested MATCHES "100% tests passed, 0 tests failed out of 1\n")
        message(SEND_ERROR "${way}: not the parent's one test alone: ${tested}")
    endif()
    execute_process(COMMAND ${CMAKE_COMMAND} -E env PVWAPI_BASE_URL=http://127.0.0.1:1/kznconnect/op.do
        ${emulator} ${build}/programs/host_in_c${suffix} RESULT_VARIABLE status ERROR_VARIABLE said)
    if(NOT status EQUAL 1 OR NOT said MATCHES "Unable to connect")
        message(SEND_ERROR "${way}: the C interface ends with ${status} and says: ${said}")
    endif()
endfunction()

expect_use(add_subdirectory)
expect_use(FetchContent)
