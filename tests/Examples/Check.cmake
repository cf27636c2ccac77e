# tests/Examples/Check.cmake: runs of a program from outside. Needs PROGRAM (with its emulator in front) and WORK.

# Runs the program and checks status, output and errors; "*" stands for any text.
function(check status output errors)
    execute_process(COMMAND ${PROGRAM} ${ARGN} WORKING_DIRECTORY ${WORK}
        RESULT_VARIABLE result OUTPUT_FILE ${WORK}.out ERROR_FILE ${WORK}.err)
    # Files, not pipes: an emulator's server may hold a pipe open behind the program's end.
    file(READ ${WORK}.out out)
    file(READ ${WORK}.err err)
    if(NOT result STREQUAL status)
        message(SEND_ERROR "${ARGN}: status ${result} for ${status}\n${out}${err}")
    endif()
    if(NOT output STREQUAL "*" AND NOT out STREQUAL output)
        message(SEND_ERROR "${ARGN}: output\n${out}for\n${output}")
    endif()
    if(NOT errors STREQUAL "*" AND NOT err STREQUAL errors)
        message(SEND_ERROR "${ARGN}: errors\n${err}for\n${errors}")
    endif()
endfunction()
