# pv_header_only(<target> <folder or header>) makes <target> an include of that one entry of /usr/include.
#
# The cross compiler must never see /usr/include itself, which holds the headers of another system. So the entry is
# reached through a link in the build tree, on both targets alike. A second call for the same target changes nothing.
function(pv_header_only target entry)
    if(TARGET ${target})
        return()
    endif()
    if(NOT EXISTS /usr/include/${entry})
        message(FATAL_ERROR "/usr/include/${entry} is missing; scripts/setup installs it")
    endif()
    set(folder ${PROJECT_BINARY_DIR}/header-only/${target})
    cmake_path(GET entry PARENT_PATH parent)
    file(MAKE_DIRECTORY ${folder}/${parent})
    file(CREATE_LINK /usr/include/${entry} ${folder}/${entry} SYMBOLIC)
    add_library(${target} INTERFACE)
    target_include_directories(${target} SYSTEM INTERFACE ${folder})
endfunction()
