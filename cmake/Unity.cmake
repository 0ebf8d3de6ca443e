# The presets compile the sources of a program several at a time, which takes a third of the time that one by one takes.
# pv_compile_alone(<target> <source>...): those that give a name of their own to something else than a source beside
# them does.
function(pv_compile_alone target)
    set_source_files_properties(${ARGN} TARGET_DIRECTORY ${target} PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
endfunction()
