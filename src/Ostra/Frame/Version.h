// Ostra/Frame/Version.h: the version of the headers, and that of the library at run time.
#pragma once

#include <Ostra/Frame/Export.h>

// Macros, so that sources can choose by them. The build takes its version from here.
#define OSTRA_VERSION_MAJOR 0
#define OSTRA_VERSION_MINOR 1
#define OSTRA_VERSION_PATCH 0

// The three as one number to compare: version 1.2.3 is 10203.
#define OSTRA_VERSION                                                                              \
    (OSTRA_VERSION_MAJOR * 10000 + OSTRA_VERSION_MINOR * 100 + OSTRA_VERSION_PATCH)

// OSTRA_VERSION of the library that the program runs with, which may be a later one of the same
// minor version than its headers.
extern "C" OSTRA_API unsigned ostra_version();
