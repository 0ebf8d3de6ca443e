# Compiles one line as a host of another compiler would, and reads the first error; then reads versions that disagree.
cmake_minimum_required(VERSION 3.25)

file(REMOVE_RECURSE ${work})

# Only the first error is what a reader looks at.
function(compile result compiler header)
    file(WRITE ${work}/host.cpp "#include \"${header}\"\n")
    execute_process(COMMAND ${compiler} ${ARGN} -fsyntax-only -Wfatal-errors -I ${source} ${work}/host.cpp
        RESULT_VARIABLE status ERROR_VARIABLE text)
    string(REGEX MATCH "error: [^\n]*" first "${text}")
    if(status EQUAL 0)
        set(first "")
    endif()
    set(${result} "${first}" PARENT_SCOPE)
endfunction()

function(expect_error compiler pattern)
    # What a host may include first.
    foreach(header client/WapiClient.h pvutil/StringEx.h)
        compile(first ${compiler} ${header} ${ARGN})
        if(NOT first MATCHES "${pattern}")
            message(SEND_ERROR "${compiler} ${ARGN}, ${header}: the first error is \"${first}\", not ${pattern}")
        endif()
    endforeach()
endfunction()

foreach(compiler IN LISTS compilers)
    expect_error(${compiler} "^$" -std=c++20)
    expect_error(${compiler} "^$" -std=c++2b)
    expect_error(${compiler} "pvWapi cannot be used with Visual C" -std=c++20 -D_MSC_VER=1930)
    expect_error(${compiler} "pvWapi cannot be used with this standard library" -std=c++20 -D_LIBCPP_VERSION=14000)
    expect_error(${compiler} "pvWapi needs C..20" -std=c++17)
    expect_error(${compiler} "pvWapi needs the strings of C..11" -std=c++20 -D_GLIBCXX_USE_CXX11_ABI=0)
endforeach()

# What the build makes of a header with these two lines.
function(expect_version text number pattern)
    file(WRITE ${work}/cmake/Version.cmake "")
    file(COPY ${source}/cmake/Version.cmake DESTINATION ${work}/cmake)
    file(WRITE ${work}/pvutil/Platform.h "#define PVWAPI_VERSION ${text}\n#define PVWAPI_VERSION_NUMBER ${number}\n")
    file(WRITE ${work}/CMakeLists.txt "cmake_minimum_required(VERSION 3.25)\ninclude(cmake/Version.cmake)\n"
        "project(x VERSION \${PVWAPI_HEADER_VERSION} LANGUAGES NONE)\nmessage(STATUS \"is \${PROJECT_VERSION}\")\n")
    file(REMOVE_RECURSE ${work}/build)
    execute_process(COMMAND ${CMAKE_COMMAND} -S ${work} -B ${work}/build OUTPUT_VARIABLE said ERROR_VARIABLE said)
    string(REGEX REPLACE "[ \n]+" " " said "${said}")  # lines break where a path happens to end
    if(NOT said MATCHES "${pattern}")
        message(SEND_ERROR "version ${text}, number ${number}: no ${pattern} in\n${said}")
    endif()
endfunction()

expect_version("\"1.2.3\"" 10203 "is 1\\.2\\.3")
expect_version("\"12.0.45\"" 120045 "is 12\\.0\\.45")
expect_version("\"1.2.3\"" 10204 "but not PVWAPI_VERSION_NUMBER 10203")
expect_version("1.2" 10200 "names no PVWAPI_VERSION")
