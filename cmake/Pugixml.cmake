# The target `pugixml::pugixml`: the system's own, and on Windows, for which Debian has no build of it, static and built
# from its source package.
set(PVWAPI_PUGIXML_SOURCE ${CMAKE_CURRENT_LIST_DIR}/../build/deps/pugixml CACHE PATH "Source of pugixml")

if(NOT WIN32)
    find_package(pugixml REQUIRED)
elseif(NOT TARGET pugixml)
    if(NOT EXISTS ${PVWAPI_PUGIXML_SOURCE}/src/pugixml.cpp)
        message(FATAL_ERROR "pugixml's source is not in ${PVWAPI_PUGIXML_SOURCE}; scripts/setup fetches it")
    endif()
    add_library(pugixml STATIC EXCLUDE_FROM_ALL ${PVWAPI_PUGIXML_SOURCE}/src/pugixml.cpp)
    add_library(pugixml::pugixml ALIAS pugixml)
    target_include_directories(pugixml SYSTEM PUBLIC ${PVWAPI_PUGIXML_SOURCE}/src)
    target_compile_options(pugixml PRIVATE -w)
endif()
