# The definitions of the C interface as a library for Visual C++'s linker. Included by its folder.
find_program(PVWAPI_DLLTOOL llvm-dlltool REQUIRED)
set(definitions ${CMAKE_CURRENT_SOURCE_DIR}/pvwapi_c.def)
set(library ${CMAKE_ARCHIVE_OUTPUT_DIRECTORY}/pvwapi_c.lib)
add_custom_command(OUTPUT ${library} DEPENDS ${definitions}
    COMMAND ${PVWAPI_DLLTOOL} -m $<IF:$<EQUAL:${CMAKE_SIZEOF_VOID_P},8>,i386:x86-64,i386>
        -d ${definitions} -l ${library})
add_custom_target(pvwapi_c_lib ALL DEPENDS ${library})
set_target_properties(pvwapi_c_lib PROPERTIES LIBRARY ${library})
pv_install(FILES ${library} DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)
