# A host that brings a trace library of its own, under the name of the package's: the library writes to that one.
if(system STREQUAL "Windows" OR flags MATCHES "-fsanitize")
    return()
endif()
set(folder ${work}/own-trace)
file(MAKE_DIRECTORY ${folder})
separate_arguments(options UNIX_COMMAND "${flags}")
run(${compiler} ${options} -std=c++20 -Wall -Wextra -Wpedantic -Werror -shared -fPIC -Wl,-soname,libpvtrace.so.1
    -I ${package}/include/pvWapi ${CMAKE_CURRENT_LIST_DIR}/own-trace/OwnTrace.cpp -o ${folder}/libpvtrace.so.1)
execute_process(COMMAND ${CMAKE_COMMAND} -E env LD_LIBRARY_PATH=${folder}:${package}/${libraries} ${work}/in-c.exe
    OUTPUT_VARIABLE said ERROR_VARIABLE said)
if(NOT said MATCHES "a line in the host's own trace library")
    message(SEND_ERROR "the library does not write to the host's own trace library: ${said}")
endif()
