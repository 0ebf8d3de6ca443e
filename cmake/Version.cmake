# PVWAPI_HEADER_VERSION, from the header that hosts compare with the binary: it stands there and nowhere else.
function(pv_read_version result header)
    file(STRINGS ${header} line REGEX "^#define PVWAPI_VERSION ")
    string(REGEX MATCH "\"([0-9]+)\\.([0-9]+)\\.([0-9]+)\"" found "${line}")
    set(version ${CMAKE_MATCH_1}.${CMAKE_MATCH_2}.${CMAKE_MATCH_3})
    if(NOT found)
        message(FATAL_ERROR "${header} names no PVWAPI_VERSION of three numbers")
    endif()
    math(EXPR expected "${CMAKE_MATCH_1} * 10000 + ${CMAKE_MATCH_2} * 100 + ${CMAKE_MATCH_3}")
    file(STRINGS ${header} line REGEX "^#define PVWAPI_VERSION_NUMBER ${expected}$")
    if(NOT line)
        message(FATAL_ERROR "${header} names version ${version}, but not PVWAPI_VERSION_NUMBER ${expected}")
    endif()
    set(${result} ${version} PARENT_SCOPE)
endfunction()

pv_read_version(PVWAPI_HEADER_VERSION ${CMAKE_CURRENT_LIST_DIR}/../pvutil/Platform.h)
# A version that has changed is seen by the next build.
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${CMAKE_CURRENT_LIST_DIR}/../pvutil/Platform.h)
