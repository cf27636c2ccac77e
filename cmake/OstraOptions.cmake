# What every target of the project is compiled with: interface target ostra_options.

option(OSTRA_COVERAGE "A build of the preset linux-coverage" OFF)

find_program(OSTRA_CCACHE ccache)
if(OSTRA_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    set(CMAKE_CXX_COMPILER_LAUNCHER ${OSTRA_CCACHE})
endif()

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
# A project that this one is a part of decides about its own folders and kind of build.
if(PROJECT_IS_TOP_LEVEL)
    set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
    set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/lib)
    set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/lib)
    if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
        set(CMAKE_BUILD_TYPE Release)
    endif()
endif()

add_library(ostra_options INTERFACE)
target_compile_options(ostra_options INTERFACE -Wall -Wextra -Wshadow)
if(CMAKE_CXX_COMPILER_ID STREQUAL GNU AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    # This release sees overlaps in the joining of std::string that aren't there, and takes a class's own operator
    # new for another one's where it has put operator delete in place but not that.
    target_compile_options(ostra_options INTERFACE -Wno-restrict -Wno-mismatched-new-delete)
endif()
if(OSTRA_WARNINGS_AS_ERRORS)
    target_compile_options(ostra_options INTERFACE -Werror)
endif()
if(OSTRA_SANITIZE)
    # Without recovery: the first report fails the test.
    target_compile_options(ostra_options INTERFACE
        -fsanitize=${OSTRA_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(ostra_options INTERFACE -fsanitize=${OSTRA_SANITIZE})
endif()
if(WIN32)
    # The DLL and the test programs need system DLLs only.
    target_link_options(ostra_options INTERFACE -static)
    target_link_libraries(ostra_options INTERFACE ws2_32 version)
    target_compile_definitions(ostra_options INTERFACE NOMINMAX)
endif()
