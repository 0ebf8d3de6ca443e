# What a debugger needs of what is shipped for Windows. Included before the libraries that are built along.
#
# PVWAPI_SYMBOLS is what packaging/windows.sh builds with, which puts it into files of its own: the lines of the
# sources, for gdb and lldb, and beside each file a PDB with the names of its functions, for Windows' own debuggers.
# Nothing in it says where the sources or the build were.
option(PVWAPI_SYMBOLS "Keep what a debugger needs in what is built for Windows" OFF)

if(PVWAPI_SYMBOLS)
    add_compile_options($<$<COMPILE_LANGUAGE:C,CXX>:-g1>)
    foreach(folder "${PROJECT_SOURCE_DIR}=pvWapi" "${PROJECT_BINARY_DIR}=pvWapi/build")
        add_compile_options($<$<COMPILE_LANGUAGE:C,CXX>:-ffile-prefix-map=${folder}>)
    endforeach()
    file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/symbols)
    add_link_options(LINKER:--build-id LINKER:--pdb=symbols/$<TARGET_PROPERTY:NAME>.pdb)
else()
    # The symbols of a shipped DLL are of no use to a host.
    add_link_options($<$<CONFIG:MinSizeRel,Release>:-s>)
endif()
