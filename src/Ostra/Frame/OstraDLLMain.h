// Ostra/Frame/OstraDLLMain.h: facts about the library's own module, and its entry point.
#pragma once

#include <Ostra/Frame/Export.h>
#include <Ostra/Frame/Platform.h>

class CT_CString;
class CT_ModuleVersion;
class CT_UString;

// What the module knows of itself: handle, path, version.
//
// Reports: what CT_CString reports when it takes a name.
// Threads: set while the module is loaded, read by any number afterwards.
class OSTRA_API CT_OstraDLLMain
{
public:
    // The module's handle; null until the module's entry has run.
    static HINSTANCE sh_GetInstance();
    static void sv_SetInstance(HINSTANCE h_Instance);

    // The module's full path; empty until the module's entry has run.
    static const CT_CString* spcco_GetModuleName();
    // Copies the name, and sets the version and build number to 0.
    static void sv_SetModuleName(const char* qccz_Name);

    // Kept: nothing in the library sets a version; both numbers stay 0, and the pointers null.
    static unsigned sn_GetVersion();
    static unsigned sn_GetBuild();
    static const CT_ModuleVersion* spcco_GetVersion();
    static const CT_UString* spcco_GetProductVersion();

private:
    static HINSTANCE sh_Instance;
    static CT_CString sco_ModuleName;
    static unsigned sn_Version;
    static unsigned sn_Build;
    static CT_ModuleVersion* spco_Version;
};

// The module's entry: at process attach hands name and handle to the classes that ask for them.
// Always 1.
extern "C" OSTRA_API BOOL OSTRA_ENTRY DllMain(HINSTANCE h_Instance, DWORD n_Reason,
                                              LPVOID pv_Reserved);
