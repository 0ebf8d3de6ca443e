# The licence texts that travel with the package: THIRD-PARTY.md says of each whose code it is. Nothing is shipped
# without them, so a text that is missing stops the configuration.
set(PVWAPI_COPYRIGHTS /usr/share/doc CACHE PATH "Folder of the copyright files of Debian's packages")

function(pv_ship_licence name text)
    if(NOT EXISTS ${text})
        message(FATAL_ERROR "${text}, the licence of ${name}, is missing, and the package cannot be shipped without it")
    endif()
    install(FILES ${text} DESTINATION ${CMAKE_INSTALL_DOCDIR}/licenses RENAME ${name}.txt)
endfunction()

install(FILES ${PROJECT_SOURCE_DIR}/LICENSE ${PROJECT_SOURCE_DIR}/THIRD-PARTY.md TYPE DOC)
pv_ship_licence(expat ${PVWAPI_EXPAT_SOURCE}/COPYING)
if(WIN32)
    pv_ship_licence(gcc ${PVWAPI_COPYRIGHTS}/g++-mingw-w64-i686-posix/copyright)
    pv_ship_licence(mingw-w64 ${PVWAPI_COPYRIGHTS}/mingw-w64-i686-dev/copyright)
endif()
if(PVWAPI_BUILD_HOST)
    pv_ship_licence(cli11 ${PVWAPI_COPYRIGHTS}/libcli11-dev/copyright)
    pv_ship_licence(nlohmann-json ${PVWAPI_COPYRIGHTS}/nlohmann-json3-dev/copyright)
    include(Utf8proc)
    pv_ship_licence(utf8proc ${PVWAPI_UTF8PROC_SOURCE}/LICENSE.md)
endif()
