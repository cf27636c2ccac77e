# Puts the failing heap of FailingHeap.cpp under the library's objects in the program of the sweeps.
if(NAME STREQUAL fault_tests)
    foreach(call malloc calloc realloc free)
        target_link_options(${NAME} PRIVATE -Wl,--wrap=${call})
    endforeach()
    if(NOT WIN32)
        target_link_options(${NAME} PRIVATE -Wl,--wrap=_ZN6winapi13GetSystemInfoEP11SYSTEM_INFO)
    else()
        # The module whose string table holds the formats is the program itself.
        target_sources(${NAME} PRIVATE ${PROJECT_SOURCE_DIR}/resources/StringTable.rc)
    endif()
endif()
