# The target `expat`: the XML parser in its 16-bit build, static, no symbol of it visible outside.
#
# Built from source, because the system's build takes and gives 8-bit text, and because a shared 16-bit build would
# bind to an 8-bit one that the host has already loaded. No document types and no general entities; no copy of the text
# around the parse point, so that a reply is parsed where it stands.
set(PVWAPI_EXPAT_OLDEST 2.8.3)
set(PVWAPI_EXPAT_SOURCE ${PROJECT_SOURCE_DIR}/build/deps/expat/expat CACHE PATH "Source of expat")

function(pv_require_expat)
    set(header ${PVWAPI_EXPAT_SOURCE}/lib/expat.h)
    if(NOT EXISTS ${header})
        message(FATAL_ERROR "expat's source is not in ${PVWAPI_EXPAT_SOURCE}; scripts/setup fetches it")
    endif()
    set(version "")
    foreach(part MAJOR MINOR MICRO)
        file(STRINGS ${header} line REGEX "define XML_${part}_VERSION [0-9]+$")
        string(REGEX MATCH "[0-9]+$" number "${line}")
        list(APPEND version ${number})
    endforeach()
    list(JOIN version . version)
    if(version VERSION_LESS PVWAPI_EXPAT_OLDEST)
        message(FATAL_ERROR "expat ${version} is too old: ${PVWAPI_EXPAT_OLDEST} or later is needed")
    endif()
    message(STATUS "expat ${version}, 16-bit, static")
endfunction()

function(pv_add_expat)
    set(EXPAT_SHARED_LIBS OFF)
    set(EXPAT_CHAR_TYPE ushort)
    set(EXPAT_CONTEXT_BYTES OFF)
    set(EXPAT_DTD OFF)
    set(EXPAT_GE OFF)
    foreach(part TESTS TOOLS EXAMPLES DOCS PKGCONFIG)
        set(EXPAT_BUILD_${part} OFF)
    endforeach()
    set(EXPAT_ENABLE_INSTALL OFF)
    set(CMAKE_COMPILE_WARNING_AS_ERROR OFF)
    set(CMAKE_MESSAGE_LOG_LEVEL WARNING)
    add_subdirectory(${PVWAPI_EXPAT_SOURCE} ${PROJECT_BINARY_DIR}/expat EXCLUDE_FROM_ALL SYSTEM)
    target_compile_definitions(expat INTERFACE XML_STATIC XML_UNICODE)
endfunction()

pv_require_expat()
pv_add_expat()
