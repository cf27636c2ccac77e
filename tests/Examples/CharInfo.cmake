# tests/Examples/CharInfo.cmake: the charinfo program from outside. Needs PROGRAM (with its emulator in front) and WORK
# (a directory of its own); POSIX tells that there is a shell, VERSION is the one that the program should tell.
file(REMOVE_RECURSE ${WORK})
file(MAKE_DIRECTORY ${WORK})
include(${CMAKE_CURRENT_LIST_DIR}/Check.cmake)

string(CONCAT table
    "Char  Unit    Category         Block             Word  Layout  Text  Number  Upper     Lower  Base\n"
    "é     U+00E9  LetterLowercase  Latin1Supplement  0102  L       8003  -       U+00C9 É  -      U+0065 e\n"
    "²     U+00B2  NumberOther      Latin1Supplement  0014  EN      0000  2       -         -      -\n")
check(0 "${table}" "" "é²")
check(2 "" "usage: charinfo TEXT\nTry charinfo --help.\n")
check(2 "" "usage: charinfo TEXT\nTry charinfo --help.\n" é ²)
check(0 "*" "" --help)
check(0 "charinfo (Ostra) ${VERSION}\n" "" --version)
check(0 "*" "" -- --help)
check(0 "*" "" -)

if(POSIX)
    execute_process(COMMAND sh -c "exec \"$@\" \"$(printf 'a\\377')\"" sh ${PROGRAM}
        RESULT_VARIABLE result OUTPUT_VARIABLE out ERROR_VARIABLE err)
    if(NOT result EQUAL 1 OR NOT out STREQUAL "" OR NOT err STREQUAL "charinfo: the text is not UTF-8\n")
        message(SEND_ERROR "ill-formed: ${result}\n${out}${err}")
    endif()
    if(EXISTS /dev/full)
        execute_process(COMMAND sh -c "exec \"$@\" a >/dev/full" sh ${PROGRAM}
            RESULT_VARIABLE result ERROR_VARIABLE err)
        if(NOT result EQUAL 1 OR NOT err STREQUAL "charinfo: cannot write the output\n")
            message(SEND_ERROR "full output: ${result}\n${err}")
        endif()
    endif()
endif()
