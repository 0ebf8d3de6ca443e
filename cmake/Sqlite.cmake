# The target `SQLite::SQLite3`: the system's own, and on Windows, for which Debian has no build of it, static and built
# from the one file that scripts/setup makes of the source package.
set(PVWAPI_SQLITE_SOURCE ${CMAKE_CURRENT_LIST_DIR}/../build/deps/sqlite3 CACHE PATH "Folder of sqlite3.c and sqlite3.h")

if(NOT WIN32)
    find_package(SQLite3 REQUIRED)
elseif(NOT TARGET sqlite3)
    if(NOT EXISTS ${PVWAPI_SQLITE_SOURCE}/sqlite3.c)
        message(FATAL_ERROR "SQLite's source is not in ${PVWAPI_SQLITE_SOURCE}; scripts/setup fetches it")
    endif()
    add_library(sqlite3 STATIC EXCLUDE_FROM_ALL ${PVWAPI_SQLITE_SOURCE}/sqlite3.c)
    add_library(SQLite::SQLite3 ALIAS sqlite3)
    target_include_directories(sqlite3 SYSTEM PUBLIC ${PVWAPI_SQLITE_SOURCE})
    target_compile_definitions(sqlite3 PRIVATE SQLITE_OMIT_LOAD_EXTENSION SQLITE_OMIT_DEPRECATED SQLITE_DQS=0)
    target_compile_options(sqlite3 PRIVATE -w)
endif()
