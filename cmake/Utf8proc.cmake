# The target `utf8proc`: the widths and the boundaries of what a reader takes for one letter, static.
#
# Built from source on both targets, because Debian has no build of it for Windows, and so that the host needs no
# further shared library. The host includes this file by itself, too, without the rest of the repository's CMake.
set(PVWAPI_UTF8PROC_SOURCE ${CMAKE_CURRENT_LIST_DIR}/../build/deps/utf8proc CACHE PATH "Source of utf8proc")

if(NOT TARGET utf8proc)
    if(NOT EXISTS ${PVWAPI_UTF8PROC_SOURCE}/utf8proc.c)
        message(FATAL_ERROR "utf8proc's source is not in ${PVWAPI_UTF8PROC_SOURCE}; scripts/setup fetches it")
    endif()
    enable_language(C)
    add_library(utf8proc STATIC EXCLUDE_FROM_ALL ${PVWAPI_UTF8PROC_SOURCE}/utf8proc.c)
    target_include_directories(utf8proc SYSTEM PUBLIC ${PVWAPI_UTF8PROC_SOURCE})
    target_compile_definitions(utf8proc PUBLIC UTF8PROC_STATIC)
    set_target_properties(utf8proc PROPERTIES COMPILE_WARNING_AS_ERROR OFF)
    pv_harden(utf8proc)
endif()
