// Ostra/Frame/Init.h: ties the start-up function of a class to the loading of the library.
#pragma once

#include <Ostra/Frame/Export.h>

// A static object that runs a function while it is constructed. It has no members and no
// destructor.
//
// Threads: static construction, on the loader's thread.
class OSTRA_API CT_Init
{
public:
    // Both call pf_Init at once unless it is null; the names are for the reader of the source and
    // are dropped.
    CT_Init(void (*pf_Init)());
    CT_Init(const char* qccz_Class, const char* qccz_Function, void (*pf_Init)());
};
