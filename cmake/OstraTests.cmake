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

# ostra_test_program(NAME SOURCES file... [OBJECTS] [BOTH_ROADS])
#
# A test program and its ctest entries. OBJECTS links the library's objects instead of the shared library;
# BOTH_ROADS registers a second run in which the system answers as the family without wide calls.
function(ostra_test_program NAME)
    cmake_parse_arguments(ARG "OBJECTS;BOTH_ROADS" "" "SOURCES" ${ARGN})
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
    add_test(NAME ${NAME} COMMAND ${NAME} ${OSTRA_TEST_ORDER} ${filter})
    set_tests_properties(${NAME} PROPERTIES ENVIRONMENT "TZ=UTC")
    if(ARG_BOTH_ROADS AND NOT WIN32)
        add_test(NAME ${NAME}_narrow COMMAND ${NAME} ${OSTRA_TEST_ORDER} ${OSTRA_NARROW_FILTER})
        set_tests_properties(${NAME}_narrow PROPERTIES ENVIRONMENT "TZ=UTC;OSTRA_TEST_PLATFORM=1")
    elseif(ARG_BOTH_ROADS AND CMAKE_SIZEOF_VOID_P EQUAL 4)
        # Wine answers by the program's name, as the tools/wine script sets up for this one.
        add_custom_command(TARGET ${NAME} POST_BUILD COMMAND ${CMAKE_COMMAND} -E copy
            $<TARGET_FILE:${NAME}> $<TARGET_FILE_DIR:${NAME}>/${NAME}_narrow.exe)
        add_test(NAME ${NAME}_narrow COMMAND ${CMAKE_CROSSCOMPILING_EMULATOR}
            $<TARGET_FILE_DIR:${NAME}>/${NAME}_narrow.exe ${OSTRA_TEST_ORDER} ${OSTRA_NARROW_FILTER})
        set_tests_properties(${NAME}_narrow PROPERTIES ENVIRONMENT "TZ=UTC")
    endif()
endfunction()
