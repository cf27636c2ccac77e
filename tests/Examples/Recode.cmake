# tests/Examples/Recode.cmake: the recode program from outside. Needs PROGRAM (with its emulator in front) and WORK (a
# directory of its own); POSIX tells that there is a shell, VERSION is the one that the program should tell.
file(REMOVE_RECURSE ${WORK})
file(MAKE_DIRECTORY ${WORK})
include(${CMAKE_CURRENT_LIST_DIR}/Check.cmake)

function(check_bytes file bytes)
    file(READ ${WORK}/${file} found HEX)
    if(NOT found STREQUAL bytes)
        message(SEND_ERROR "${file}: ${found} for ${bytes}")
    endif()
endfunction()

function(check_files expected)
    file(GLOB names RELATIVE ${WORK} ${WORK}/*)
    if(NOT names STREQUAL expected)
        message(SEND_ERROR "files: ${names} for ${expected}")
    endif()
endfunction()

file(WRITE ${WORK}/in.txt "é€\n")
check(0 "" "recode: in.txt is UTF-8\n" --to 1252 in.txt out.txt)
check_bytes(out.txt e9800a)
check(0 "" "" --from 1252 --to utf-16 --eol crlf out.txt out.txt)
check_bytes(out.txt fffee900ac200d000a00)
check(0 "é€\n" "recode: out.txt is UTF-16\n" --to utf-8 --eol lf out.txt -)
check(0 "" "recode: in.txt is UTF-8\n" --to utf-7 in.txt Žluťoučký-日本.txt)
check(0 "é€\n" "" --from utf-7 --to utf-8 Žluťoučký-日本.txt -)
file(REMOVE ${WORK}/Žluťoučký-日本.txt)
check(1 "" "recode: in.txt is UTF-8\nrecode: in.txt: 1 character isn't in code page 28591 (1 replaced, 0 by a similar \
one), the first is U+20AC in line 1\n" --to 28591 in.txt out.txt)
check(1 "" "*" --to utf-8 missing.txt out.txt)
check(2 "" "*")
check(2 "" "*" in.txt out.txt)
check(2 "" "*" --to nonsense in.txt out.txt)
check(0 "*" "" --help)
check(0 "recode (Ostra) ${VERSION}\n" "" --version)
check_files("in.txt;out.txt")
check_bytes(out.txt fffee900ac200d000a00)

if(POSIX)
    # Runs a line of a shell, in which the program is "$@".
    function(shell line status output errors)
        execute_process(COMMAND sh -c "${line}" sh ${PROGRAM} WORKING_DIRECTORY ${WORK}
            RESULT_VARIABLE result OUTPUT_VARIABLE out ERROR_VARIABLE err)
        if(NOT result STREQUAL status OR NOT out STREQUAL output OR NOT err MATCHES "${errors}")
            message(SEND_ERROR "${line}: ${result}\n${out}${err}")
        endif()
    endfunction()

    shell("\"$@\" --to utf-16 - - <in.txt | \"$@\" --to utf-8 - -" 0 "é€\n" "is UTF-16")
    shell("cat in.txt | \"$@\" --from utf-8 --to utf-8 /dev/stdin /dev/stdout | cat" 0 "é€\n" "^$")
    shell("printf 'a\\n\\377b' | \"$@\" --from utf-8 --to utf-16 - out.txt" 1 ""
        "^recode: -: line 2, byte 3: FF: ill-formed UTF-8\n$")
    shell("\"$@\" --from utf-8 --to utf-16 - - <&-" 1 "" "^recode: ")
    check_bytes(out.txt fffee900ac200d000a00)
    # A full disk: under the output, and for a file that may not become larger.
    if(EXISTS /dev/full)
        shell("\"$@\" --from utf-8 --to utf-16 in.txt - >/dev/full" 1 "" "^recode: cannot write the output\n$")
        shell("\"$@\" --from utf-8 --to utf-16 in.txt /dev/full" 1 "" "^recode: /dev/full: there is no room")
    endif()
    string(REPEAT "0123456789abcdef" 20000 large)
    file(WRITE ${WORK}/large.txt "${large}")
    foreach(blocks 0 1 100 601)
        shell("trap '' XFSZ; ulimit -f ${blocks}; exec \"$@\" --from utf-8 --to utf-16 large.txt out.txt" 1 ""
            "^recode: [^\n]*\n$")
        check_files("in.txt;large.txt;out.txt")
        check_bytes(out.txt fffee900ac200d000a00)
    endforeach()
    # No display: the window is text on the error stream.
    shell("unset DISPLAY WAYLAND_DISPLAY; \"$@\" --box --to utf-8 missing.txt out.txt" 1 "" "recode: cannot read missing.txt")
endif()
