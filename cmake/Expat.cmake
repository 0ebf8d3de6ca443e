# The target `pvwapi_expat`: the XML parser, static, no symbol of it visible outside.
#
# Built from source: the system's build is larger and slower, and a host may have loaded another. No document types and
# no general entities; no copy of the text around the parse point, so that a reply is parsed where it stands. Its
# sources are compiled here, and not by its own project, which would give a project that this one is a part of targets
# and settings of which it knows nothing.
set(PVWAPI_EXPAT_OLDEST 2.8.3)
set(PVWAPI_EXPAT_SOURCE ${PROJECT_SOURCE_DIR}/build/deps/expat/expat CACHE PATH "Source of expat, where its lib/ is")

function(pv_require_recent_expat)
    set(header ${PVWAPI_EXPAT_SOURCE}/lib/expat.h)
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
    message(STATUS "expat ${version}, static")
endfunction()

function(pv_build_expat)
    pv_require_recent_expat()
    set(lib ${PVWAPI_EXPAT_SOURCE}/lib)
    if(WIN32)
        set(random ${lib}/random_rand_s.c)
    else()
        set(random ${lib}/random_getrandom.c ${lib}/random_dev_urandom.c)
    endif()
    add_library(pvwapi_expat STATIC EXCLUDE_FROM_ALL
        ${lib}/xmlparse.c ${lib}/xmlrole.c ${lib}/xmltok.c ${random})
    set(config ${PROJECT_BINARY_DIR}/expat)
    file(CONFIGURE OUTPUT ${config}/expat_config.h CONTENT [[
#pragma once
#define BYTEORDER __BYTE_ORDER__
#define XML_CONTEXT_BYTES 0
#define XML_GE 0
#define XML_NS
#ifndef _WIN32
#define HAVE_GETRANDOM
#define XML_DEV_URANDOM
#endif
]] @ONLY)
    target_include_directories(pvwapi_expat SYSTEM PUBLIC ${lib} PRIVATE ${config})
    target_compile_definitions(pvwapi_expat PUBLIC XML_STATIC PRIVATE _GNU_SOURCE)
    # Every byte of a reply passes here, however small the rest is made.
    target_compile_options(pvwapi_expat PRIVATE -w -fno-strict-aliasing $<$<NOT:$<CONFIG:Debug>>:-O2>)
    set_target_properties(pvwapi_expat PROPERTIES C_STANDARD 99 C_EXTENSIONS ON C_VISIBILITY_PRESET hidden
        POSITION_INDEPENDENT_CODE ON UNITY_BUILD OFF COMPILE_WARNING_AS_ERROR OFF)
    pv_harden(pvwapi_expat)
endfunction()

# pv_judge_expat_code(<result>): empty where it can be linked into a shared library.
function(pv_judge_expat_code result)
    set(${result} "" PARENT_SCOPE)
    if(NOT WIN32)
        try_compile(isLinked ${PROJECT_BINARY_DIR}/expat-shared ${PROJECT_SOURCE_DIR}/cmake/expat-features.c
            COMPILE_DEFINITIONS -fPIC LINK_OPTIONS -shared LINK_LIBRARIES expat::expat)
        if(NOT isLinked)
            set(${result} "no shared library can be built with it" PARENT_SCOPE)
        endif()
    endif()
endfunction()

# pv_judge_expat(<result>): empty where the installed expat can take the place of that, else what keeps it from it.
function(pv_judge_expat result)
    find_package(expat CONFIG QUIET)
    set(expat_VERSION "${expat_VERSION}" PARENT_SCOPE)
    if(NOT expat_FOUND)
        set(${result} "no CMake package of expat is found either" PARENT_SCOPE)
        return()
    endif()
    get_target_property(type expat::expat TYPE)
    set(fault "")
    if(NOT type STREQUAL "STATIC_LIBRARY")
        set(fault "it is no static library")
    elseif(expat_VERSION VERSION_LESS PVWAPI_EXPAT_OLDEST)
        set(fault "${expat_VERSION} is too old")
    else()
        try_run(status isBuilt ${PROJECT_BINARY_DIR}/expat-features ${PROJECT_SOURCE_DIR}/cmake/expat-features.c
            LINK_LIBRARIES expat::expat COMPILE_OUTPUT_VARIABLE said RUN_OUTPUT_VARIABLE fault)
        if(NOT isBuilt)
            set(fault "no program can be built with it")
        elseif(NOT status EQUAL 0 AND NOT fault)
            set(fault "a program with it cannot be run: ${status}")
        elseif(NOT fault)
            pv_judge_expat_code(fault)
        endif()
    endif()
    if(fault)
        set(fault "the expat that is installed (${expat_DIR}) is of another build: ${fault}")
    endif()
    set(${result} "${fault}" PARENT_SCOPE)
endfunction()

function(pv_use_installed_expat)
    pv_judge_expat(fault)
    if(fault)
        message(FATAL_ERROR "expat's source is not in ${PVWAPI_EXPAT_SOURCE}, and ${fault}. "
            "scripts/setup fetches the source; PVWAPI_EXPAT_SOURCE says where it is already, "
            "${PVWAPI_EXPAT_OLDEST} or later. Installed, it has to be static, fit for a shared library, of 8-bit "
            "characters, without document types, general entities and context (EXPAT_SHARED_LIBS=OFF "
            "CMAKE_POSITION_INDEPENDENT_CODE=ON EXPAT_CHAR_TYPE=char EXPAT_DTD=OFF EXPAT_GE=OFF "
            "EXPAT_CONTEXT_BYTES=OFF)")
    endif()
    message(STATUS "expat ${expat_VERSION}, installed")
    add_library(pvwapi_expat INTERFACE)
    target_link_libraries(pvwapi_expat INTERFACE expat::expat)
endfunction()

if(EXISTS ${PVWAPI_EXPAT_SOURCE}/lib/expat.h)
    pv_build_expat()
else()
    pv_use_installed_expat()
endif()
