# The Windows target of 64 bits, built with mingw-w64 and run under Wine.
set(OSTRA_MINGW x86_64-w64-mingw32)
include(${CMAKE_CURRENT_LIST_DIR}/mingw.cmake)
