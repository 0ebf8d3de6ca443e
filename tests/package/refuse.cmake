# Looks for the package as projects that cannot use it do: it is not found, and one line says why.

# The settings are those that a project's compiler would bring along.
function(look_for result settings)
    file(WRITE ${work}/refuse/look.cmake "cmake_minimum_required(VERSION 3.25)\n"
        "set(CMAKE_PREFIX_PATH ${package})\nset(CMAKE_SYSTEM_NAME ${system})\n"
        "set(CMAKE_SIZEOF_VOID_P ${pointer})\nset(CMAKE_CXX_COMPILER_ID GNU)\n${settings}\n"
        "find_package(pvWapi CONFIG ${ARGN})\nmessage(\"found=\${pvWapi_FOUND} why=\${pvWapi_NOT_FOUND_MESSAGE}.\")\n")
    execute_process(COMMAND ${CMAKE_COMMAND} -P ${work}/refuse/look.cmake
        RESULT_VARIABLE status OUTPUT_VARIABLE text ERROR_VARIABLE text)
    set(${result} "status=${status} ${text}" PARENT_SCOPE)
endfunction()

function(expect_refusal settings reason)
    look_for(said "${settings}" QUIET ${ARGN})
    if(NOT said MATCHES "^status=0 found=(0|FALSE) why=pvWapi is there, but [^\n]*${reason}[^\n]*\\.\n$")
        message(SEND_ERROR "${settings}: the package is not refused quietly and in one line: ${said}")
    endif()
    look_for(said "${settings}" ${ARGN})
    if(NOT said MATCHES "status=0 .*Warning.*${reason}.*found=(0|FALSE)")
        message(SEND_ERROR "${settings}: no warning says why: ${said}")
    endif()
    look_for(said "${settings}" REQUIRED ${ARGN})
    if(said MATCHES "status=0|found=" OR NOT said MATCHES "Error.*${reason}")
        message(SEND_ERROR "${settings}: the project goes on, or is not told why: ${said}")
    endif()
endfunction()

math(EXPR otherPointer "12 - ${pointer}")
expect_refusal("set(CMAKE_CXX_COMPILER_ID MSVC)" "Visual")
expect_refusal("set(CMAKE_CXX_COMPILER_ID Clang)\nset(CMAKE_CXX_SIMULATE_ID MSVC)" "Visual")
expect_refusal("set(CMAKE_CXX_COMPILER_ID Clang)\nset(CMAKE_CXX_FLAGS -stdlib=libc++)" "libstdc")
expect_refusal("set(CMAKE_SIZEOF_VOID_P ${otherPointer})" "bits")
expect_refusal("set(CMAKE_SYSTEM_NAME Darwin)" "Darwin")
# The C interface is for any compiler, of this system.
expect_refusal("set(CMAKE_SYSTEM_NAME Darwin)" "Darwin" COMPONENTS pvwapi_c)
expect_refusal("set(CMAKE_SIZEOF_VOID_P ${otherPointer})" "bits" COMPONENTS pvwapi_c)
expect_refusal("set(CMAKE_CXX_COMPILER_ID MSVC)" "Visual" COMPONENTS pvwapi_c pvWapi)
