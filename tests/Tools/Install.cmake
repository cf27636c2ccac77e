# tests/Tools/Install.cmake: installs the build, and runs the programs from there. Needs BUILD, VERSION, WORK (a
# directory of its own), NAMES (the programs), BINDIR and MANDIR (below the prefix).
function(run)
    execute_process(COMMAND ${ARGV} RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "${ARGV}: ${result}\n${output}")
    endif()
    set(output "${output}" PARENT_SCOPE)
endfunction()

# The component has the programs and their pages, and nothing else.
file(REMOVE_RECURSE ${WORK})
run(${CMAKE_COMMAND} --install ${BUILD} --prefix ${WORK}/tools --component Tools)
foreach(name IN LISTS NAMES)
    list(APPEND expected ${BINDIR}/${name} ${MANDIR}/man1/${name}.1)
endforeach()
file(GLOB_RECURSE installed RELATIVE ${WORK}/tools ${WORK}/tools/*)
list(SORT installed)
list(SORT expected)
if(NOT installed STREQUAL expected)
    message(FATAL_ERROR "installed: ${installed}\nexpected: ${expected}")
endif()

# With the library beside them they run where they are, and where they were moved to.
run(${CMAKE_COMMAND} --install ${BUILD} --prefix ${WORK}/first)
file(RENAME ${WORK}/first ${WORK}/usr)
foreach(name IN LISTS NAMES)
    run(${CMAKE_COMMAND} -E env --unset=LD_LIBRARY_PATH ${WORK}/usr/${BINDIR}/${name} --version)
    if(NOT output STREQUAL "${name} (Ostra) ${VERSION}\n")
        message(FATAL_ERROR "${name} --version: ${output}")
    endif()
endforeach()
