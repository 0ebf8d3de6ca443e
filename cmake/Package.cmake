# What is shipped: the two libraries, their public headers, and the package that find_package(pvWapi CONFIG) finds.
include(CMakePackageConfigHelpers)

# Public headers are named one by one; every other header is private.
set(PVWAPI_PUBLIC_HEADERS
    client/FieldTables.h
    client/WapiClient.h
    pvutil/MessageLoop.h
    pvutil/Platform.h
    pvutil/StringEx.h
    pvutil/TimerWindow.h
    records/Access.h
    records/AccountTables.h
    records/Events.h
    records/Libraries.h
    records/MemberTable.h
    records/Members.h
    records/Number.h
    records/Policy.h
    records/Roles.h
    records/SpaceDetails.h
    records/SpaceTables.h
    records/Spaces.h
    records/Tabs.h
    records/Users.h
    records/WapiMessage.h
)

target_sources(pvWapi PUBLIC FILE_SET HEADERS BASE_DIRS ${PROJECT_SOURCE_DIR} FILES ${PVWAPI_PUBLIC_HEADERS})
target_sources(pvtrace PUBLIC FILE_SET HEADERS BASE_DIRS ${PROJECT_SOURCE_DIR}
    FILES ${PROJECT_SOURCE_DIR}/pvtrace/pvtrace.h)

pv_install_library(pvWapi pvtrace)
if(NOT PVWAPI_INSTALL)
    return()
endif()

set(packageFolder ${CMAKE_INSTALL_LIBDIR}/cmake/pvWapi)
install(EXPORT pvWapiTargets NAMESPACE pvWapi:: DESTINATION ${packageFolder} COMPONENT development)

configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/pvWapiConfig.cmake.in ${PROJECT_BINARY_DIR}/pvWapiConfig.cmake
    INSTALL_DESTINATION ${packageFolder})
# The word size is the other file's to judge, which says what it found.
write_basic_package_version_file(${PROJECT_BINARY_DIR}/pvWapiConfigVersion.cmake COMPATIBILITY SameMajorVersion
    ARCH_INDEPENDENT)
install(FILES ${PROJECT_BINARY_DIR}/pvWapiConfig.cmake ${PROJECT_BINARY_DIR}/pvWapiConfigVersion.cmake
    DESTINATION ${packageFolder} COMPONENT development)
pv_install_pkgconfig(${CMAKE_CURRENT_LIST_DIR}/pvWapi.pc.in)
install(FILES
    ${PROJECT_SOURCE_DIR}/docs/a-call-fails.md
    ${PROJECT_SOURCE_DIR}/docs/c-interface.md
    ${PROJECT_SOURCE_DIR}/docs/embedding.md
    ${PROJECT_SOURCE_DIR}/docs/record-and-replay.md
    ${PROJECT_SOURCE_DIR}/docs/other-languages.md
    ${PROJECT_SOURCE_DIR}/docs/versions.md
    ${PROJECT_SOURCE_DIR}/CHANGELOG.md
    TYPE DOC COMPONENT documentation)
