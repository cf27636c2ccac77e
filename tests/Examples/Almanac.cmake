# tests/Examples/Almanac.cmake: the almanac program from outside. Needs PROGRAM (with its emulator in front) and WORK (a
# directory of its own); VERSION is the one that the program should tell.
file(REMOVE_RECURSE ${WORK})
file(MAKE_DIRECTORY ${WORK})
include(${CMAKE_CURRENT_LIST_DIR}/Check.cmake)

set(usage "usage: almanac YEAR-MONTH [OPTION...]\n       almanac read TEXT [OPTION...]\n       almanac locales\n"
    "Try almanac --help.\n")
string(CONCAT usage ${usage})
check(2 "" "${usage}")
check(2 "" "${usage}" 2026-03 2026-04)
check(2 "" "${usage}" read)
check(2 "" "almanac: unknown option --nonsense, or one without its value\n${usage}" 2026-03 --nonsense)
check(2 "" "almanac: unknown option --locale, or one without its value\n${usage}" 2026-03 --locale)
check(0 "*" "" --help)
check(0 "almanac (Ostra) ${VERSION}\n" "" --version)
check(0 "*" "" now)
check(0 "*" "" 2026-03 --svg)
check(1 "" "almanac: the month is 13, and has to be from 1 to 12\n" 2026-13)
check(1 "" "almanac: there is no locale \"xx\"\n" 2026-03 --locale xx)
string(CONCAT read
    "picture d MMMM yyyy\n"
    "d     5      5\n"
    "MMMM  марта  3\n"
    "yyyy  2026   2026\n"
    "read as 2026-03-05 00:00:00\n")
check(0 "${read}" "" read "5 марта 2026" --picture "d MMMM yyyy" --locale ru)
check(0 "*" "" locales)
