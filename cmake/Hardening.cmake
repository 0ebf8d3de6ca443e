# pv_harden(<target>...): a fault in what ships is to be of little use to whoever finds it. Checked copies and a guarded
# stack, tables of functions that are read-only once a program runs, and programs at an address that nobody knows.
#
# Not without an optimiser, which the checked copies need, nor beside a sanitizer, which has checks of its own.
function(pv_harden)
    if(CMAKE_CXX_FLAGS MATCHES "-fsanitize")
        return()
    endif()
    foreach(target ${ARGN})
        if(NOT WIN32)
            pv_harden_elf(${target})
        endif()
    endforeach()
endfunction()

function(pv_harden_elf target)
    set(shipped $<CONFIG:Release,RelWithDebInfo,MinSizeRel>)
    target_compile_options(${target} PRIVATE
        $<${shipped}:-fstack-protector-strong> $<${shipped}:-U_FORTIFY_SOURCE> $<${shipped}:-D_FORTIFY_SOURCE=2>)
    get_target_property(type ${target} TYPE)
    if(type MATCHES "^(SHARED_LIBRARY|EXECUTABLE)$")
        target_link_options(${target} PRIVATE $<${shipped}:-Wl,-z,relro> $<${shipped}:-Wl,-z,now>)
    endif()
    if(type STREQUAL "EXECUTABLE")
        target_link_options(${target} PRIVATE $<${shipped}:-pie>)
    endif()
endfunction()
