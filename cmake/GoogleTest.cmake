# The targets `gtest` and `gmock`, built from Debian's source with the flags of this build (sanitizers, cross compiler),
# and pv_add_test, which makes a test program of them.
function(pv_add_googletest)
    set(INSTALL_GTEST OFF)
    set(CMAKE_COMPILE_WARNING_AS_ERROR OFF)
    add_subdirectory(/usr/src/googletest ${PROJECT_BINARY_DIR}/googletest EXCLUDE_FROM_ALL SYSTEM)
    foreach(library gtest gmock gmock_main)
        target_compile_options(${library} PRIVATE -O0)
    endforeach()
endfunction()

# Half of what compiling a test takes is reading the headers that each of them has: that is done once. They are read
# before a source's first line, so that one that forgets to include them is not noticed.
function(pv_reuse_test_headers name)
    if(NOT TARGET test_headers)
        set(source ${CMAKE_CURRENT_BINARY_DIR}/test_headers.cpp)
        file(CONFIGURE OUTPUT ${source} CONTENT "int main() {}\n" @ONLY)
        add_executable(test_headers EXCLUDE_FROM_ALL ${source})
        target_link_libraries(test_headers PRIVATE gmock_main)
        target_precompile_headers(test_headers PRIVATE
            <gmock/gmock.h> <gtest/gtest.h> <array> <chrono> <filesystem> <fstream> <functional> <string> <thread>
            <vector>)
        target_compile_options(test_headers PRIVATE -fpch-preprocess)
    endif()
    target_precompile_headers(${name} REUSE_FROM test_headers)
    target_compile_options(${name} PRIVATE -fpch-preprocess)
endfunction()

# pv_add_test(<name> SOURCES <file>... [LIBRARIES <target>...] [TIMEOUT <seconds>])
# One entry of ctest a program, not one a case: a start under Wine costs more than most cases.
# Whoever loads the library has its log open, so each program has a data folder of its own; on Windows, where the user
# has just one, the programs take turns.
function(pv_add_test name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "TIMEOUT" "SOURCES;LIBRARIES")
    add_executable(${name} ${arg_SOURCES})
    target_link_libraries(${name} PRIVATE ${arg_LIBRARIES} gmock_main)
    pv_reuse_test_headers(${name})
    add_test(NAME ${name} COMMAND ${name})
    set(dataFolder ${CMAKE_CURRENT_BINARY_DIR}/${name}.data)
    file(MAKE_DIRECTORY ${dataFolder})
    set_tests_properties(${name} PROPERTIES ENVIRONMENT XDG_DATA_HOME=${dataFolder})
    if(WIN32)
        set_tests_properties(${name} PROPERTIES RESOURCE_LOCK pvwapi-log)
    endif()
    if(arg_TIMEOUT)
        set_tests_properties(${name} PROPERTIES TIMEOUT ${arg_TIMEOUT})
    endif()
endfunction()

# pv_add_long_run(<program of pv_add_test> [<argument>...] [ENVIRONMENT <name>=<value>...])
# The same program at its full length, which only scripts/test --long has the time for.
function(pv_add_long_run name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "ENVIRONMENT")
    add_test(NAME ${name}_long CONFIGURATIONS Long COMMAND ${name} ${arg_UNPARSED_ARGUMENTS})
    get_test_property(${name} ENVIRONMENT environment)
    list(APPEND environment ${arg_ENVIRONMENT})
    set_tests_properties(${name}_long PROPERTIES LABELS long TIMEOUT 7200 ENVIRONMENT "${environment}")
endfunction()

pv_add_googletest()
