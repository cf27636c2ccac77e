// Ostra/Frame/Exit.h: ties the shutdown function of a class to the unloading of the library.
#pragma once

#include <Ostra/Frame/Export.h>

// A static object that runs a function while it is destructed.
//
// Owns:    nothing; it keeps the pointers, so the names must be literals.
// Threads: static construction and destruction, on the loader's thread.
class OSTRA_API CT_Exit
{
public:
    // Keeps the three and does nothing else; pf_Exit may be null.
    CT_Exit(const char* qccz_Class, const char* qccz_Function, void (*pf_Exit)());
    // Calls the function unless it is null.
    ~CT_Exit();

private:
    // The order of the members is part of the interface. The names are for a debugger: nothing
    // reads them.
    [[maybe_unused]] const char* qccz_Class;
    [[maybe_unused]] const char* qccz_Function;
    void (*pf_Exit)();
};
