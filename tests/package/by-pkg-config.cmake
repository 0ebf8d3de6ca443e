# Builds programs by what the package tells pkg-config, and the same host as by the targets.
find_program(pkgconfig pkg-config REQUIRED)
set(ENV{PKG_CONFIG_LIBDIR} ${package}/${libraries}/pkgconfig)
set(ENV{LD_LIBRARY_PATH} ${package}/${libraries})
# On Windows the program finds its DLLs beside it: those of the package, and the compiler's one that is never inside.
if(system STREQUAL "Windows")
    execute_process(COMMAND ${compiler} -print-file-name=libwinpthread-1.dll
        OUTPUT_VARIABLE threads OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
    file(GLOB dlls ${package}/bin/*.dll)
    file(COPY ${dlls} ${threads} DESTINATION ${work})
endif()

function(ask_pkg_config result)
    execute_process(COMMAND ${pkgconfig} ${ARGN}
        OUTPUT_VARIABLE said OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
    set(${result} "${said}" PARENT_SCOPE)
endfunction()

# build_by_pkg_config(<library> <program> <what it is compiled of>...)
function(build_by_pkg_config library program)
    ask_pkg_config(words --cflags --libs ${library})
    separate_arguments(words UNIX_COMMAND "${words}")
    separate_arguments(options UNIX_COMMAND "${flags}")
    set(runtime "")
    if(system STREQUAL "Windows")
        set(runtime -static-libgcc -static-libstdc++)
    endif()
    run(${compiler} ${options} ${runtime} -Wall -Wextra -Wpedantic -Werror ${ARGN} -x none -o ${program} ${words})
endfunction()

ask_pkg_config(version --modversion pvWapi)
build_by_pkg_config(pvWapi ${work}/by-pkg-config.exe -x c++ -std=c++20 -D PACKAGE_VERSION="${version}"
    ${CMAKE_CURRENT_LIST_DIR}/host/main.cpp)
run(${emulator} ${work}/by-pkg-config.exe)
