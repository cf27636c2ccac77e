# tests/Examples/Program.cmake: the lexicon program from outside. Needs LEXICON (the program, with its emulator in
# front), SAMPLE, PICTURE (of what begins with Z) and WORK (a directory of its own); LIMITS tells that the shell
# can bound the size of files, VERSION is the one that the program should tell.
file(REMOVE_RECURSE ${WORK})
file(MAKE_DIRECTORY ${WORK})

include(${CMAKE_CURRENT_LIST_DIR}/Check.cmake)
set(PROGRAM ${LEXICON})

function(check_files expected)
    file(GLOB names RELATIVE ${WORK} ${WORK}/*)
    if(NOT names STREQUAL expected)
        message(SEND_ERROR "files: ${names} for ${expected}")
    endif()
endfunction()

file(COPY_FILE ${SAMPLE} ${WORK}/words.tsv)
check(0 "words.rec: 604 pairs, 447 words, 575 words in reverse\n" "" build words.tsv words.rec)
check(0 "Straße\tstreet\nStraße\troad\n" "" lookup words.rec Straße)
check(1 "Straßen: not found, 6 of 7 characters matched\n" "" lookup words.rec Straßen)
check(0 "key\tSchlüssel\n" "" lookup words.rec --reverse key)
check(0 "*" "" info words.rec)
check(0 "Straße\n" "" match words.rec "Stra?e*")
check(0 "key\n" "" match words.rec --reverse k?y)
check(1 "" "" match words.rec "Stra\\?e")
check(0 "*" "" stats words.rec)
check(0 "Zürich.svg: 7 words\n" "" draw words.rec Z -o Zürich.svg)
file(READ ${WORK}/Zürich.svg drawn)
file(READ ${PICTURE} picture)
if(NOT drawn STREQUAL picture)
    message(SEND_ERROR "Zürich.svg differs from ${PICTURE}")
endif()
file(REMOVE ${WORK}/Zürich.svg)
check(1 "" "lexicon: no word begins with \"Zü\"\n" draw words.rec Zü -o Zürich.svg)
file(READ ${SAMPLE} sample)
check(0 "${sample}" "" list words.rec)
check(1 "" "*" list words.tsv)
check(1 "" "*" list missing.rec)
check(2 "" "*" look words.rec)
check(0 "*" "" --help)
check(0 "lexicon (Ostra) ${VERSION}\n" "" --version)
check_files("words.rec;words.tsv")

# A name and a word beyond the code pages of 8 bits.
file(RENAME ${WORK}/words.rec ${WORK}/Wörter€.rec)
check(0 "müde\ttired\n" "" lookup Wörter€.rec müde)
file(RENAME ${WORK}/Wörter€.rec ${WORK}/words.rec)

if(LIMITS)
    # No room: the file is not made larger than this many blocks of 512 bytes, as on a disk that is full.
    foreach(blocks 0 1 100)
        execute_process(COMMAND sh -c "trap '' XFSZ; ulimit -f ${blocks}; exec \"$@\"" sh
            ${LEXICON} build words.tsv words.rec WORKING_DIRECTORY ${WORK}
            RESULT_VARIABLE result OUTPUT_VARIABLE out ERROR_VARIABLE err)
        if(NOT result EQUAL 1 OR NOT out STREQUAL "" OR NOT err MATCHES "^lexicon: cannot write words.rec: [^\n]*\n$")
            message(SEND_ERROR "no room: ${result}\n${out}${err}")
        endif()
        check_files("words.rec;words.tsv")
        check(0 "müde\ttired\n" "" lookup words.rec müde)
    endforeach()
    execute_process(COMMAND sh -c "trap '' XFSZ; ulimit -f 4; exec \"$@\"" sh ${LEXICON} draw words.rec S -o out.svg
        WORKING_DIRECTORY ${WORK} RESULT_VARIABLE result OUTPUT_VARIABLE out ERROR_VARIABLE err)
    if(NOT result EQUAL 1 OR NOT out STREQUAL "" OR NOT err MATCHES "^lexicon: [^\n]*out.svg: [^\n]*\n$")
        message(SEND_ERROR "no room for a picture: ${result}\n${out}${err}")
    endif()
    check_files("words.rec;words.tsv")
    # A full disk under the output.
    if(EXISTS /dev/full)
        execute_process(COMMAND sh -c "exec \"$@\" >/dev/full" sh ${LEXICON} list words.rec
            WORKING_DIRECTORY ${WORK} RESULT_VARIABLE result ERROR_VARIABLE err)
        if(NOT result EQUAL 1 OR NOT err STREQUAL "lexicon: cannot write the output\n")
            message(SEND_ERROR "full output: ${result}\n${err}")
        endif()
    endif()
endif()
