# Builds the first steps in C by Visual C++'s rules, with the library that the package has for its linker.
cmake_minimum_required(VERSION 3.25)

function(run)
    execute_process(COMMAND ${ARGN} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

set(package ${CMAKE_CURRENT_LIST_DIR}/../package/visual-c)
include(${package}/library.cmake)
run(clang --target=${processor}-pc-windows-msvc -nostdlibinc -isystem ${package}/include -I ${source} -I ${source}/capi
    -std=c11 -O1 -Wall -Wextra -Wpedantic -Werror -c ${source}/examples/FirstStepsInC.c -o ${work}/first.obj)
run(lld-link /subsystem:console /defaultlib:msvcrt /out:${program} ${work}/first.obj ${library})
