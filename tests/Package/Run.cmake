# Installs the build, then builds and runs tests/Package against the installation:
#   cmake -D BUILD=... -D SOURCE=... -D WORK=... [-D TOOLCHAIN=... -D EMULATOR=...] -P Run.cmake
function(run)
    execute_process(COMMAND ${ARGV} RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "${ARGV}: ${result}\n${output}")
    endif()
    set(output "${output}" PARENT_SCOPE)
endfunction()

function(check_first output)
    if(NOT output MATCHES "^missed, 8 elements matched[\r\n]*$")
        message(FATAL_ERROR "the README's first program prints: ${output}")
    endif()
endfunction()

file(REMOVE_RECURSE ${WORK})
run(${CMAKE_COMMAND} --install ${BUILD} --prefix ${WORK}/usr)
# The first program that a reader of the README meets has to do what it says.
file(READ ${SOURCE}/../../README.md readme)
string(REGEX MATCH "```cpp\n([^`]*)```" program "${readme}")
file(WRITE ${WORK}/first.cpp "${CMAKE_MATCH_1}")
run(${CMAKE_COMMAND} -S ${SOURCE} -B ${WORK}/build -G Ninja -D CMAKE_PREFIX_PATH=${WORK}/usr -D FIRST=${WORK}/first.cpp
    -D CMAKE_FIND_ROOT_PATH=${WORK}/usr -D CMAKE_TOOLCHAIN_FILE=${TOOLCHAIN} -D CMAKE_CXX_FLAGS=${FLAGS})
run(${CMAKE_COMMAND} --build ${WORK}/build)
if(EMULATOR)
    file(COPY ${WORK}/usr/bin/ostra.dll DESTINATION ${WORK}/build)
    run(${CMAKE_COMMAND} -E chdir ${WORK}/build ${EMULATOR} ${WORK}/build/outside.exe)
    run(${CMAKE_COMMAND} -E chdir ${WORK}/build ${EMULATOR} ${WORK}/build/first.exe)
    check_first("${output}")
else()
    run(${CMAKE_COMMAND} -E chdir ${WORK}/build ./outside)
    run(${CMAKE_COMMAND} -E chdir ${WORK}/build ./first)
    check_first("${output}")
    # The same program by pkg-config, as a maker of makefiles would build it.
    find_program(PKG_CONFIG pkg-config REQUIRED)
    file(GLOB pc ${WORK}/usr/lib*/pkgconfig ${WORK}/usr/lib/*/pkgconfig)
    run(${CMAKE_COMMAND} -E env PKG_CONFIG_PATH=${pc} sh -c "${COMPILER} ${FLAGS} -std=c++20 ${SOURCE}/Outside.cpp \
-o ${WORK}/plain $(${PKG_CONFIG} --cflags --libs ostra) -Wl,-rpath,$(${PKG_CONFIG} --variable=libdir ostra)")
    run(${CMAKE_COMMAND} -E chdir ${WORK} ./plain)
endif()
