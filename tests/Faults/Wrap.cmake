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
    # Services whose calls fail on demand, and whose arguments FileArgumentsTest.cpp looks at: a wrapper for each.
    set(list ${CMAKE_CURRENT_SOURCE_DIR}/Faults/services.txt)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${list})
    file(STRINGS ${list} rows REGEX "^[^#]")
    set(services "")
    foreach(row IN LISTS rows)
        string(REGEX REPLACE " +" ";" row "${row}")
        list(GET row 3 symbol)
        list(TRANSFORM row REPLACE "^${symbol}$" "\"${symbol}\"" AT 3)
        list(JOIN row ", " row)
        string(APPEND services "OSTRA_SERVICE(${row})\n")
        if(NOT WIN32)
            target_link_options(${NAME} PRIVATE -Wl,--wrap=${symbol})
        endif()
    endforeach()
    file(CONFIGURE OUTPUT ${CMAKE_CURRENT_BINARY_DIR}/faults/ServiceList.inc CONTENT "${services}")
    target_include_directories(${NAME} PRIVATE ${CMAKE_CURRENT_BINARY_DIR}/faults)
    if(NOT WIN32)
        # Services whose arguments and answers LocaleServicesTest.cpp looks at, and those that
        # RegistrySweep.cpp lets fail, by the names that the linker knows.
        foreach(service
                GET_LOCALE_INFO_A=_ZN6winapi14GetLocaleInfoAEjjPci
                GET_NUMBER_FORMAT_A=_ZN6winapi16GetNumberFormatAEjjPKcPK11_numberfmtAPci
                REG_OPEN=_ZN6winapi13RegOpenKeyExWEP6HKEY__PKtjjPS1_
                REG_CREATE=_ZN6winapi15RegCreateKeyExWEP6HKEY__PKtjPtjjP19SECURITY_ATTRIBUTESPS1_Pj
                REG_CLOSE=_ZN6winapi11RegCloseKeyEP6HKEY__
                REG_INFO=_ZN6winapi16RegQueryInfoKeyWEP6HKEY__PtPjS3_S3_S3_S3_S3_S3_S3_S3_P8FILETIME
                REG_ENUM=_ZN6winapi13RegEnumKeyExWEP6HKEY__jPtPjS3_S2_S3_P8FILETIME
                REG_DELETE=_ZN6winapi13RegDeleteKeyWEP6HKEY__PKt
                REG_QUERY=_ZN6winapi16RegQueryValueExWEP6HKEY__PKtPjS4_PhS4_
                REG_STORE=_ZN6winapi14RegSetValueExWEP6HKEY__PKtjjPKhj
                REG_DELETE_VALUE=_ZN6winapi15RegDeleteValueWEP6HKEY__PKt)
            string(REPLACE "=" ";" parts ${service})
            list(GET parts 0 macro)
            list(GET parts 1 symbol)
            target_link_options(${NAME} PRIVATE -Wl,--wrap=${symbol})
            target_compile_definitions(${NAME} PRIVATE OSTRA_${macro}="${symbol}")
        endforeach()
    endif()
endif()
