# What the package tests have in common. Variables of the caller: SOURCE (this folder), WORK, COMPILER, FLAGS.

# Runs a command; its output is in `output`. A failure ends the test.
function(run)
    execute_process(COMMAND ${ARGV} RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "${ARGV}: ${result}\n${output}")
    endif()
    set(output "${output}" PARENT_SCOPE)
endfunction()

# Builds a source of this folder by pkg-config, as a maker of makefiles would, and runs the program: DIRECTORY holds
# the .pc files.
function(run_by_pkg_config PROGRAM PACKAGE OUTPUT DIRECTORY)
    find_program(PKG_CONFIG pkg-config REQUIRED)
    set(pkg_config ${CMAKE_COMMAND} -E env PKG_CONFIG_PATH=${DIRECTORY})
    run(${pkg_config} sh -c "${COMPILER} ${FLAGS} -std=c++20 -DPACKAGE_VERSION=\\\"$(${PKG_CONFIG} --modversion ostra)\\\" ${SOURCE}/${PROGRAM}.cpp -o ${OUTPUT} \
$(${PKG_CONFIG} --cflags --libs ${PACKAGE}) -Wl,-rpath,$(${PKG_CONFIG} --variable=libdir ostra)")
    get_filename_component(folder ${OUTPUT} DIRECTORY)
    run(${CMAKE_COMMAND} -E chdir ${folder} ${OUTPUT})
endfunction()
