# Installation: the library (component Runtime), the public headers below include/ostra, the CMake package and ostra.pc
# (component Development).
include(CMakePackageConfigHelpers)

# The public headers are those that Ostra/Ostra.h names.
set(OSTRA_HEADER_ROOT ${CMAKE_INSTALL_INCLUDEDIR}/ostra)
file(STRINGS ${PROJECT_SOURCE_DIR}/src/Ostra/Ostra.h OSTRA_HEADERS REGEX "^#include <")
list(TRANSFORM OSTRA_HEADERS REPLACE "#include <(.*)>" "\\1")
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/src/Ostra/Ostra.h)
foreach(header IN LISTS OSTRA_HEADERS ITEMS Ostra/Ostra.h)
    get_filename_component(directory ${header} DIRECTORY)
    install(FILES ${PROJECT_SOURCE_DIR}/src/${header} DESTINATION ${OSTRA_HEADER_ROOT}/${directory}
        COMPONENT Development)
endforeach()
install(FILES ${PROJECT_BINARY_DIR}/include/Ostra/Frame/Export.h
    DESTINATION ${OSTRA_HEADER_ROOT}/Ostra/Frame COMPONENT Development)
if(NOT WIN32)
    install(DIRECTORY ${PROJECT_SOURCE_DIR}/winapi/include/winapi DESTINATION ${OSTRA_HEADER_ROOT} COMPONENT Development)
    install(DIRECTORY ${PROJECT_SOURCE_DIR}/winapi/include/windows/
        DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/ostra-winapi COMPONENT Development)
endif()

install(TARGETS ostra ostra_utf8 ostra_winapi EXPORT OstraTargets
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT Runtime
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT Runtime NAMELINK_COMPONENT Development
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT Development)
install(FILES ${PROJECT_SOURCE_DIR}/resources/utf8/${OSTRA_UTF8_SOURCE} DESTINATION ${OSTRA_UTF8_DIR}
    COMPONENT Development)
if(TARGET ostra_host)
    # Nobody links it: the library beside it loads it.
    install(TARGETS ostra_host LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT Runtime NAMELINK_SKIP)
endif()
# In its plain form: the package counts the folders up to its prefix, and a dot is none.
cmake_path(SET OSTRA_PACKAGE_DIR NORMALIZE "${CMAKE_INSTALL_LIBDIR}/cmake/Ostra")
install(EXPORT OstraTargets NAMESPACE Ostra:: DESTINATION ${OSTRA_PACKAGE_DIR} COMPONENT Development)
configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/OstraConfig.cmake.in
    ${PROJECT_BINARY_DIR}/OstraConfig.cmake INSTALL_DESTINATION ${OSTRA_PACKAGE_DIR})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/OstraConfigVersion.cmake
    COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/OstraConfig.cmake ${PROJECT_BINARY_DIR}/OstraConfigVersion.cmake
    DESTINATION ${OSTRA_PACKAGE_DIR} COMPONENT Development)

# ostra.pc finds the prefix from its own place, however deep that is, so that the installed tree can be moved. A
# library folder that is given absolutely tells nothing of the prefix.
if(IS_ABSOLUTE ${CMAKE_INSTALL_LIBDIR})
    set(OSTRA_PC_PREFIX ${CMAKE_INSTALL_PREFIX})
    set(OSTRA_PC_LIBDIR ${CMAKE_INSTALL_LIBDIR})
else()
    cmake_path(SET libraries NORMALIZE "/${CMAKE_INSTALL_LIBDIR}/pkgconfig")
    file(RELATIVE_PATH up ${libraries} /)
    string(REGEX REPLACE "/$" "" up ${up})
    set(OSTRA_PC_PREFIX "\${pcfiledir}/${up}")
    set(OSTRA_PC_LIBDIR "\${prefix}/${CMAKE_INSTALL_LIBDIR}")
endif()
if(IS_ABSOLUTE ${CMAKE_INSTALL_INCLUDEDIR})
    set(OSTRA_PC_INCLUDEDIR ${CMAKE_INSTALL_INCLUDEDIR}/ostra)
else()
    set(OSTRA_PC_INCLUDEDIR "\${prefix}/${CMAKE_INSTALL_INCLUDEDIR}/ostra")
endif()
# What is linked into the shared library has to be named for the static one.
if(OSTRA_STATIC)
    include(OstraHostLibraries)
    set(OSTRA_PC_CFLAGS " -DOSTRA_STATIC_DEFINE")
    set(OSTRA_PC_REQUIRES "Requires: ${OSTRA_HOST_MODULES}\n")
    set(OSTRA_PC_LIBS " -lstdc++ -lm -lpthread -ldl")
endif()
configure_file(${CMAKE_CURRENT_LIST_DIR}/ostra.pc.in ${PROJECT_BINARY_DIR}/ostra.pc @ONLY)
configure_file(${CMAKE_CURRENT_LIST_DIR}/ostra-winapi.pc.in ${PROJECT_BINARY_DIR}/ostra-winapi.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/ostra.pc ${PROJECT_BINARY_DIR}/ostra-winapi.pc
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT Development)
