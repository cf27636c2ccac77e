# Installs the build, then builds and runs tests/Package against the installation:
#   cmake -D BUILD=... -D SOURCE=... -D WORK=... [-D TOOLCHAIN=... -D EMULATOR=...] -P Run.cmake
function(run)
    execute_process(COMMAND ${ARGV} RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "${ARGV}: ${result}\n${output}")
    endif()
    set(output "${output}" PARENT_SCOPE)
endfunction()

file(REMOVE_RECURSE ${WORK})
run(${CMAKE_COMMAND} --install ${BUILD} --prefix ${WORK}/usr)
run(${CMAKE_COMMAND} -S ${SOURCE} -B ${WORK}/build -G Ninja -D CMAKE_PREFIX_PATH=${WORK}/usr
    -D CMAKE_FIND_ROOT_PATH=${WORK}/usr -D CMAKE_TOOLCHAIN_FILE=${TOOLCHAIN} -D CMAKE_CXX_FLAGS=${FLAGS})
run(${CMAKE_COMMAND} --build ${WORK}/build)
if(EMULATOR)
    file(COPY ${WORK}/usr/bin/ostra.dll DESTINATION ${WORK}/build)
    run(${CMAKE_COMMAND} -E chdir ${WORK}/build ${EMULATOR} ${WORK}/build/outside.exe)
else()
    run(${CMAKE_COMMAND} -E chdir ${WORK}/build ./outside)
    # The same program by pkg-config, as a maker of makefiles would build it.
    find_program(PKG_CONFIG pkg-config REQUIRED)
    file(GLOB pc ${WORK}/usr/lib*/pkgconfig ${WORK}/usr/lib/*/pkgconfig)
    run(${CMAKE_COMMAND} -E env PKG_CONFIG_PATH=${pc} sh -c "${COMPILER} ${FLAGS} -std=c++20 ${SOURCE}/Outside.cpp \
-o ${WORK}/plain $(${PKG_CONFIG} --cflags --libs ostra) -Wl,-rpath,$(${PKG_CONFIG} --variable=libdir ostra)")
    run(${CMAKE_COMMAND} -E chdir ${WORK} ./plain)
endif()
