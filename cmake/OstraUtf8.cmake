# Ostra::utf8: a program that links it has UTF-8 as its ANSI code page, on Linux by a function of its own that the
# services ask for, on Windows by its manifest. The source belongs into programs, not into libraries.
if(WIN32)
    set(OSTRA_UTF8_SOURCE AnsiPage.rc)
else()
    set(OSTRA_UTF8_SOURCE AnsiPage.cpp)
endif()
set(OSTRA_UTF8_DIR ${CMAKE_INSTALL_DATADIR}/ostra/utf8)
add_library(ostra_utf8 INTERFACE)
add_library(Ostra::utf8 ALIAS ostra_utf8)
set_target_properties(ostra_utf8 PROPERTIES EXPORT_NAME utf8)
target_sources(ostra_utf8 INTERFACE
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/resources/utf8/${OSTRA_UTF8_SOURCE}>
    $<INSTALL_INTERFACE:${OSTRA_UTF8_DIR}/${OSTRA_UTF8_SOURCE}>)
