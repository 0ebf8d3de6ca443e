# What is shipped: the two libraries, their public headers, and the package that find_package(pvWapi CONFIG) finds.
include(CMakePackageConfigHelpers)

set(packageFolder ${CMAKE_INSTALL_LIBDIR}/cmake/pvWapi)
set(headerFolder ${CMAKE_INSTALL_INCLUDEDIR}/pvWapi)

# Public headers are named one by one; every other header is private.
set(PVWAPI_PUBLIC_HEADERS
    client/WapiClient.h
    pvutil/MessageLoop.h
    pvutil/Platform.h
    pvutil/StringEx.h
    pvutil/TimerWindow.h
    records/Access.h
    records/Events.h
    records/Libraries.h
    records/Members.h
    records/Number.h
    records/Policy.h
    records/Roles.h
    records/SpaceDetails.h
    records/Spaces.h
    records/Tabs.h
    records/Users.h
    records/WapiMessage.h
)

target_sources(pvWapi PUBLIC FILE_SET HEADERS BASE_DIRS ${PROJECT_SOURCE_DIR} FILES ${PVWAPI_PUBLIC_HEADERS})
target_sources(pvtrace PUBLIC FILE_SET HEADERS BASE_DIRS ${PROJECT_SOURCE_DIR}
    FILES ${PROJECT_SOURCE_DIR}/pvtrace/pvtrace.h)

install(TARGETS pvWapi pvtrace EXPORT pvWapiTargets
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
    FILE_SET HEADERS DESTINATION ${headerFolder}
    INCLUDES DESTINATION ${headerFolder})
install(EXPORT pvWapiTargets NAMESPACE pvWapi:: DESTINATION ${packageFolder})

configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/pvWapiConfig.cmake.in ${PROJECT_BINARY_DIR}/pvWapiConfig.cmake
    INSTALL_DESTINATION ${packageFolder})
# The word size is the other file's to judge, which says what it found.
write_basic_package_version_file(${PROJECT_BINARY_DIR}/pvWapiConfigVersion.cmake COMPATIBILITY SameMajorVersion
    ARCH_INDEPENDENT)
install(FILES ${PROJECT_BINARY_DIR}/pvWapiConfig.cmake ${PROJECT_BINARY_DIR}/pvWapiConfigVersion.cmake
    DESTINATION ${packageFolder})
install(FILES
    ${PROJECT_SOURCE_DIR}/docs/a-call-fails.md
    ${PROJECT_SOURCE_DIR}/docs/embedding.md
    ${PROJECT_SOURCE_DIR}/CHANGELOG.md
    TYPE DOC)
