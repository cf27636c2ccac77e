# Installs the built library in the layouts that distributions use, and runs a program against each:
#   cmake -D BUILD=... -D SOURCE=... -D WORK=... -D COMPILER=... [-D FLAGS=...] -P Layouts.cmake
include(${CMAKE_CURRENT_LIST_DIR}/Steps.cmake)

# The layout decides only about places, so the library that is there serves for all of them.
function(install_layout NAME DESTDIR)
    run(${CMAKE_COMMAND} -S ${SOURCE}/../.. -B ${WORK}/${NAME}-build -G Ninja -D OSTRA_BUILD_TESTS=OFF
        -D OSTRA_BUILD_EXAMPLES=OFF -D OSTRA_BUILD_TOOLS=OFF -D CMAKE_CXX_COMPILER=${COMPILER} ${ARGN})
    file(GLOB libraries ${BUILD}/lib/libostra*)
    file(COPY ${libraries} DESTINATION ${WORK}/${NAME}-build/lib)
    run(${CMAKE_COMMAND} -E env DESTDIR=${DESTDIR} ${CMAKE_COMMAND} --install ${WORK}/${NAME}-build)
endfunction()

file(REMOVE_RECURSE ${WORK})
# A folder of libraries with the machine's name in it; the whole tree is moved behind that, as a package's is.
install_layout(debian ${WORK}/stage -D CMAKE_INSTALL_PREFIX=/usr -D CMAKE_INSTALL_LIBDIR=lib/some-machine)
file(RENAME ${WORK}/stage ${WORK}/debian)
run_by_pkg_config(Outside ostra ${WORK}/debian-program ${WORK}/debian/usr/lib/some-machine/pkgconfig)
# Folders apart from each other and from the prefix. CMake takes none that lie below the project's.
run(mktemp -d)
string(STRIP ${output} absolute)
install_layout(absolute "" -D CMAKE_INSTALL_PREFIX=${absolute}/prefix -D CMAKE_INSTALL_LIBDIR=${absolute}/libraries
    -D CMAKE_INSTALL_INCLUDEDIR=${absolute}/headers)
run_by_pkg_config(Outside ostra ${WORK}/absolute-program ${absolute}/libraries/pkgconfig)
file(REMOVE_RECURSE ${absolute})
# Libraries in the prefix itself, which is a dot to CMake: the package finds its way from there, too.
install_layout(flat "" -D CMAKE_INSTALL_PREFIX=${WORK}/flat -D CMAKE_INSTALL_LIBDIR=.)
run(${CMAKE_COMMAND} -S ${SOURCE} -B ${WORK}/flat-program -G Ninja -D CMAKE_CXX_COMPILER=${COMPILER}
    -D Ostra_DIR=${WORK}/flat/cmake/Ostra)
