# Installation of the programs for users (OSTRA_TOOLS), with their manual pages: component Tools.

# They find the library from where they are, so that the whole may be moved.
if(NOT WIN32)
    file(RELATIVE_PATH way ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
    if(IS_ABSOLUTE "${CMAKE_INSTALL_BINDIR}" OR IS_ABSOLUTE "${CMAKE_INSTALL_LIBDIR}")
        set_target_properties(almanac ask charinfo lexicon recode settings specimen PROPERTIES INSTALL_RPATH ${CMAKE_INSTALL_FULL_LIBDIR})
    else()
        set_target_properties(almanac ask charinfo lexicon recode settings specimen PROPERTIES INSTALL_RPATH "$ORIGIN/${way}")
    endif()
endif()

install(TARGETS ${OSTRA_TOOLS} RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT Tools)
# Made from the programs' help texts by tools/manpage.py; a test compares them.
if(NOT WIN32)
    list(TRANSFORM OSTRA_TOOLS REPLACE "(.+)" "${PROJECT_SOURCE_DIR}/docs/man/\\1.1" OUTPUT_VARIABLE pages)
    install(FILES ${pages} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT Tools)
endif()
