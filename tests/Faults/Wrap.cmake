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
    if(NOT WIN32)
        # Services whose arguments and answers FileArgumentsTest.cpp and LocaleServicesTest.cpp look at, and those that
        # RegistrySweep.cpp lets fail, by the names that the linker knows.
        foreach(service
                CREATE_FILE_W=_ZN6winapi11CreateFileWEPKtjjP19SECURITY_ATTRIBUTESjjPv
                CREATE_FILE_A=_ZN6winapi11CreateFileAEPKcjjP19SECURITY_ATTRIBUTESjjPv
                FIND_FIRST_FILE_W=_ZN6winapi14FindFirstFileWEPKtP16WIN32_FIND_DATAW
                FIND_FIRST_FILE_A=_ZN6winapi14FindFirstFileAEPKcP16WIN32_FIND_DATAA
                GET_LOCALE_INFO_A=_ZN6winapi14GetLocaleInfoAEjjPci
                GET_NUMBER_FORMAT_A=_ZN6winapi16GetNumberFormatAEjjPKcPK11_numberfmtAPci)
=======
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
