# Tests run in a shuffled order, so that none leans on another, and in the same one each time.
set(OSTRA_TEST_ORDER --gtest_shuffle --gtest_random_seed=19970)
# Comparisons with models and sweeps over damaged files take long and ask nothing of the road: one run is enough.
set(OSTRA_NARROW_FILTER --gtest_filter=-*Model*.*:*Damage.*:*Ways.*)
# Where an emulator works for another processor, none is, and what else takes long runs on one road. What works by
# vectors is compared with its models there too.
set(OSTRA_WIDE_FILTER "")
if(CMAKE_CROSSCOMPILING AND NOT WIN32)
    set(OSTRA_WIDE_FILTER ${OSTRA_NARROW_FILTER})
    string(APPEND OSTRA_NARROW_FILTER
        ":*MuchStack*:*LongRandom*:*ThousandsOf*:*AnyBytes*:RecordManagerLiteral.*:CharTables.*:*ForEver*:Buffer.TwoThreads*")
    set(OSTRA_VECTOR_FILTER
        --gtest_filter=UTFModel.AgreesWhereRunsOfAsciiEnd:BitSetModel.*:FileLines*.*:TextModel*.*)
endif()

# What talks to other windows. All programs of the tests share one session on Windows, where each conversation asks all
# windows and numbers of names are shared.
set(OSTRA_CONVERSATIONS *DDE*:PlatformPartners.*:Ask.*)

# An entry of ctest, which on Windows leaves conversations to an entry of its own if the program has some.
function(ostra_test_entry NAME ENVIRONMENT FILTER CONVERSES)
    if(WIN32 AND CONVERSES)
        add_test(NAME ${NAME}_conversations COMMAND ${ARGN} ${OSTRA_TEST_ORDER} --gtest_filter=${OSTRA_CONVERSATIONS})
        set_tests_properties(${NAME}_conversations PROPERTIES ENVIRONMENT "${ENVIRONMENT}" RESOURCE_LOCK conversations)
        if(FILTER)
            string(APPEND FILTER ":${OSTRA_CONVERSATIONS}")
        else()
            set(FILTER "--gtest_filter=-${OSTRA_CONVERSATIONS}")
        endif()
    endif()
    add_test(NAME ${NAME} COMMAND ${ARGN} ${OSTRA_TEST_ORDER} ${FILTER})
    set_tests_properties(${NAME} PROPERTIES ENVIRONMENT "${ENVIRONMENT}")
endfunction()

# ostra_test_program(NAME SOURCES file... [OBJECTS] [BOTH_ROADS] [CONVERSES])
#
# A test program and its ctest entries. OBJECTS links the library's objects instead of the shared library;
# BOTH_ROADS registers a second run in which the system answers as the family without wide calls; CONVERSES says that
# there are tests of OSTRA_CONVERSATIONS among the program's.
function(ostra_test_program NAME)
    cmake_parse_arguments(ARG "OBJECTS;BOTH_ROADS;CONVERSES" "" "SOURCES" ${ARGN})
    add_executable(${NAME} ${ARG_SOURCES})
    target_link_libraries(${NAME} PRIVATE test_support ostra_options)
    target_compile_options(${NAME} PRIVATE -fno-strict-aliasing)
    if(OSTRA_PRECOMPILE)
        target_precompile_headers(${NAME} PRIVATE
            <gtest/gtest.h> <filesystem> <random> <string> <vector> <windows.h>)
    endif()
    if(ARG_OBJECTS)
        target_link_libraries(${NAME} PRIVATE ostra_objects)
        target_compile_definitions(${NAME} PRIVATE OSTRA_STATIC_DEFINE)
        if(NOT WIN32)
            target_link_libraries(${NAME} PRIVATE ostra_winapi_objects ostra_winapi_host_linked)
        endif()
        if(EXISTS ${CMAKE_CURRENT_SOURCE_DIR}/Faults/Wrap.cmake)
            include(${CMAKE_CURRENT_SOURCE_DIR}/Faults/Wrap.cmake)
        endif()
    else()
        target_link_libraries(${NAME} PRIVATE ostra)
    endif()
    if(WIN32)
        target_sources(${NAME} PRIVATE ${CMAKE_CURRENT_SOURCE_DIR}/Support/TestStrings.rc)
        target_compile_definitions(${NAME} PRIVATE NOMINMAX)
    else()
        target_sources(${NAME} PRIVATE ${CMAKE_CURRENT_SOURCE_DIR}/Support/TestStrings.cpp)
    endif()

    set(filter "")
    if(ARG_BOTH_ROADS)
        set(filter ${OSTRA_WIDE_FILTER})
    endif()
    ostra_test_entry(${NAME} "TZ=UTC" "${filter}" ${ARG_CONVERSES} ${NAME})
    if(ARG_BOTH_ROADS AND NOT WIN32)
        ostra_test_entry(${NAME}_narrow "TZ=UTC;OSTRA_TEST_PLATFORM=1" "${OSTRA_NARROW_FILTER}" ${ARG_CONVERSES} ${NAME})
    elseif(ARG_BOTH_ROADS AND CMAKE_SIZEOF_VOID_P EQUAL 4)
        # Wine answers by the program's name, as the tools/wine script sets up for this one.
        add_custom_command(TARGET ${NAME} POST_BUILD COMMAND ${CMAKE_COMMAND} -E copy
            $<TARGET_FILE:${NAME}> $<TARGET_FILE_DIR:${NAME}>/${NAME}_narrow.exe)
        ostra_test_entry(${NAME}_narrow "TZ=UTC" "${OSTRA_NARROW_FILTER}" ${ARG_CONVERSES}
            ${CMAKE_CROSSCOMPILING_EMULATOR} $<TARGET_FILE_DIR:${NAME}>/${NAME}_narrow.exe)
    endif()
endfunction()
