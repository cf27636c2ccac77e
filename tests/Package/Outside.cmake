# Builds the library and programs outside its tree in every way that a project may come by it:
#   cmake -D WORK=... [-D COMPILER=...] -P Outside.cmake
include(${CMAKE_CURRENT_LIST_DIR}/Steps.cmake)
set(SOURCE ${CMAKE_CURRENT_LIST_DIR})
cmake_path(SET TOP NORMALIZE ${SOURCE}/../..)
if(NOT COMPILER)
    set(COMPILER c++)
endif()

# Whether a file of that name lies anywhere below the folder.
function(has NAME DIRECTORY RESULT)
    file(GLOB_RECURSE found ${DIRECTORY}/${NAME})
    set(${RESULT} ${found} PARENT_SCOPE)
endfunction()

function(require NAME DIRECTORY)
    has(${NAME} ${DIRECTORY} found)
    if(NOT found)
        message(FATAL_ERROR "${DIRECTORY} has no ${NAME}")
    endif()
endfunction()

function(forbid NAME DIRECTORY)
    has(${NAME} ${DIRECTORY} found)
    if(found)
        message(FATAL_ERROR "${DIRECTORY} has ${found}")
    endif()
endfunction()

# Builds and runs the program against what is installed in the folder.
function(run_installed DIRECTORY)
    run(${CMAKE_COMMAND} -S ${SOURCE} -B ${DIRECTORY}-package -G Ninja -D CMAKE_PREFIX_PATH=${DIRECTORY}
        -D CMAKE_CXX_COMPILER=${COMPILER})
    run(${CMAKE_COMMAND} --build ${DIRECTORY}-package)
    run(${CMAKE_COMMAND} -E chdir ${DIRECTORY}-package ./outside)
    file(GLOB pc ${DIRECTORY}/lib*/pkgconfig ${DIRECTORY}/lib/*/pkgconfig)
    cmake_path(GET DIRECTORY FILENAME name)
    run_by_pkg_config(Outside ostra ${WORK}/${name}-plain ${pc})
    message(STATUS "${name}: find_package, pkg-config")
endfunction()

function(build_and_install NAME)
    run(${CMAKE_COMMAND} -S ${TOP} -B ${WORK}/${NAME}-build -G Ninja -D OSTRA_BUILD_TESTS=OFF -D OSTRA_BUILD_EXAMPLES=OFF
        -D CMAKE_CXX_COMPILER=${COMPILER} ${ARGN})
    run(${CMAKE_COMMAND} --build ${WORK}/${NAME}-build)
    run(${CMAKE_COMMAND} --install ${WORK}/${NAME}-build --prefix ${WORK}/${NAME})
    run_installed(${WORK}/${NAME})
endfunction()

# Nothing of the library's is installed by a project that it is only a part of.
function(build_within WAY)
    set(build ${WORK}/${WAY})
    run(${CMAKE_COMMAND} -S ${SOURCE} -B ${build} -G Ninja -D OSTRA_BY=${WAY} -D OSTRA_SOURCE=${TOP}
        -D CMAKE_CXX_COMPILER=${COMPILER} ${ARGN})
    run(${CMAKE_COMMAND} --build ${build})
    run(${CMAKE_COMMAND} -E chdir ${build} ./outside)
    run(${CMAKE_COMMAND} --install ${build} --prefix ${build}-installed)
    forbid(* ${build}-installed)
    message(STATUS "${WAY}")
endfunction()

# One build is as users have it. The others show what is linked and installed, and are made in half the time.
set(PLAIN -D CMAKE_BUILD_TYPE=Release -D CMAKE_CXX_FLAGS_RELEASE=-O0)
file(REMOVE_RECURSE ${WORK})
build_and_install(shared)
build_and_install(static -D BUILD_SHARED_LIBS=OFF ${PLAIN})
forbid(libostra.so* ${WORK}/static)
# A symbol that is unique in the process would keep there for ever a module that is made with the static library.
file(GLOB_RECURSE archive ${WORK}/static/*/libostra.a)
run(nm ${archive})
if(NOT output MATCHES "CT_File" OR output MATCHES " u _Z[^\n]*")
    message(FATAL_ERROR "the static library has a unique symbol: ${CMAKE_MATCH_0}")
endif()

# A package of what programs need to run, and one of what they need to be built.
foreach(component Runtime Development)
    run(${CMAKE_COMMAND} --install ${WORK}/shared-build --component ${component} --prefix ${WORK}/${component})
endforeach()
require(libostra.so.* ${WORK}/Runtime)
forbid(*.h ${WORK}/Runtime)
forbid(libostra.so ${WORK}/Runtime)
require(Ostra.h ${WORK}/Development)
require(ostra.pc ${WORK}/Development)
require(libostra.so ${WORK}/Development)
forbid(libostra.so.* ${WORK}/Development)
file(COPY ${WORK}/Runtime/ DESTINATION ${WORK}/Development)
run_installed(${WORK}/Development)

find_program(PYTHON python3 REQUIRED)
run(${PYTHON} ${SOURCE}/headers_test.py ${WORK}/shared/include/ostra)
message(STATUS "${output}")

build_within(add_subdirectory ${PLAIN})
build_within(FetchContent -D BUILD_SHARED_LIBS=OFF ${PLAIN})
