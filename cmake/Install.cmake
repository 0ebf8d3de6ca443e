# What is installed, and where. Each file belongs to one component, so that a package can take a part of the whole:
#   runtime        the libraries that a program loads
#   development    headers, CMake's package, pkg-config's files
#   tools          the command-line host and the reader of the log
#   service        the stand-in service
#   documentation  what a host's author reads
#   bindings       what other languages have on top of the C interface
# A project that this one is a part of installs what it likes, and nothing of ours.
option(PVWAPI_INSTALL "Have rules of installation" ${PROJECT_IS_TOP_LEVEL})

if(PVWAPI_INSTALL)
    if(PROJECT_IS_TOP_LEVEL)
        # Of the type PATH, CMake would make a folder of the command line that has no type an absolute one.
        set(CMAKE_INSTALL_LIBDIR lib CACHE STRING "Folder of libraries in the installed package")
    endif()
    include(GNUInstallDirs)
    if(NOT PROJECT_IS_TOP_LEVEL)
        # The documents of the whole have a folder of their own, with a licence of their own in it.
        set(CMAKE_INSTALL_DOCDIR ${CMAKE_INSTALL_DATAROOTDIR}/doc/pvWapi)
    endif()
    set(CMAKE_INSTALL_RPATH $ORIGIN $ORIGIN/../${CMAKE_INSTALL_LIBDIR})
endif()

# pv_install(<what install takes>...)
function(pv_install)
    if(PVWAPI_INSTALL)
        install(${ARGN})
    endif()
endfunction()

# pv_install_library(<target>...): with its public headers, and for find_package.
function(pv_install_library)
    pv_install(TARGETS ${ARGN} EXPORT pvWapiTargets
        RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT runtime
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT development
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development
        FILE_SET HEADERS DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/pvWapi COMPONENT development
        INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/pvWapi)
endfunction()

# pv_install_pkgconfig(<name>.pc.in): what pkg-config says of a library. Wherever the package stands, its prefix is as
# many folders up.
function(pv_install_pkgconfig template)
    if(NOT PVWAPI_INSTALL)
        return()
    endif()
    set(folder ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
    file(RELATIVE_PATH upwards /${folder} /)
    cmake_path(GET template STEM LAST_ONLY name)
    configure_file(${template} ${CMAKE_CURRENT_BINARY_DIR}/${name} @ONLY)
    install(FILES ${CMAKE_CURRENT_BINARY_DIR}/${name} DESTINATION ${folder} COMPONENT development)
endfunction()
