# Installs the build, then builds and runs tests/Package against the installation:
#   cmake -D BUILD=... -D SOURCE=... -D WORK=... [-D TOOLCHAIN=... -D EMULATOR=...] -P Run.cmake
include(${CMAKE_CURRENT_LIST_DIR}/Steps.cmake)

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
    file(GLOB pc ${WORK}/usr/lib*/pkgconfig ${WORK}/usr/lib/*/pkgconfig)
    run_by_pkg_config(plain ${pc})
endif()
