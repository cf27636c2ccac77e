// Ostra/Frame/OstraDLLMain.cpp
#include <Ostra/Frame/OstraDLLMain.h>

#include <Ostra/Frame/Counts.h>
#include <Ostra/Frame/ErrorManager.h>
#include <Ostra/String/CString.h>
#include <System/FontManager/FontManager.h>
#include <System/ModuleVersion/ModuleVersion.h>

#include <windows.h>

namespace
{
constexpr unsigned PATH_ROOM = 1024;
} // namespace

HINSTANCE CT_OstraDLLMain::sh_Instance;
unsigned CT_OstraDLLMain::sn_Version;
unsigned CT_OstraDLLMain::sn_Build;
CT_ModuleVersion* CT_OstraDLLMain::spco_Version;

HINSTANCE CT_OstraDLLMain::sh_GetInstance()
{
    return sh_Instance;
}

void CT_OstraDLLMain::sv_SetInstance(HINSTANCE h_Instance)
{
    sh_Instance = h_Instance;
}

const CT_CString* CT_OstraDLLMain::spcco_GetModuleName()
{
    return &sco_ModuleName;
}

void CT_OstraDLLMain::sv_SetModuleName(const char* qccz_Name)
{
    static_cast<CT_String&>(sco_ModuleName).v_Set(qccz_Name, ALL, OWN_CODE_PAGE);
    sn_Build = 0;
    sn_Version = 0;
}

unsigned CT_OstraDLLMain::sn_GetVersion()
{
    return sn_Version;
}

unsigned CT_OstraDLLMain::sn_GetBuild()
{
    return sn_Build;
}

const CT_ModuleVersion* CT_OstraDLLMain::spcco_GetVersion()
{
    return spco_Version;
}

const CT_UString* CT_OstraDLLMain::spcco_GetProductVersion()
{
    return spco_Version ? spco_Version->pcco_GetProductVersion() : nullptr;
}

BOOL OSTRA_ENTRY DllMain(HINSTANCE h_Instance, DWORD n_Reason, LPVOID)
{
    if (n_Reason != DLL_PROCESS_ATTACH)
        return 1;
    char ac_Path[PATH_ROOM];
    const DWORD n_Length = GetModuleFileNameA(h_Instance, ac_Path, PATH_ROOM);
    // A path that fills the buffer is cut without a terminator.
    ac_Path[n_Length < PATH_ROOM ? n_Length : PATH_ROOM - 1] = 0;
    CT_OstraDLLMain::sv_SetModuleName(ac_Path);
    CT_OstraDLLMain::sv_SetInstance(h_Instance);
    CT_ErrorManager::sv_SetInstance(h_Instance);
    CT_FontManager::sv_Init(h_Instance);
    return 1;
}
