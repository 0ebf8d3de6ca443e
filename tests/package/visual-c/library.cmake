# Makes what a program of that processor links of Visual C++'s C library: the functions of msvcrt.dll, and where a
# program begins.
set(machine i386)
if(processor STREQUAL "x86_64")
    set(machine i386:x86-64)
endif()
set(folder ${work}/visual-c)
file(MAKE_DIRECTORY ${folder})
run(clang --target=${processor}-pc-windows-msvc -nostdlibinc -isystem ${CMAKE_CURRENT_LIST_DIR}/include
    -Wall -Wextra -Wpedantic -Werror -c ${CMAKE_CURRENT_LIST_DIR}/Start.c -o ${folder}/start.obj)
run(llvm-dlltool -m ${machine} -d ${CMAKE_CURRENT_LIST_DIR}/msvcrt.def -l ${folder}/functions.lib)
run(llvm-lib /out:${folder}/msvcrt.lib ${folder}/functions.lib ${folder}/start.obj)
# Where the linker looks for libraries.
set(ENV{LIB} ${folder})
