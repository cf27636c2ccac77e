// Ostra/Frame/OstraDLLMain.cpp
#include <Ostra/Frame/OstraDLLMain.h>

#include <Ostra/Frame/ErrorManager.h>

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
    return nullptr;
}

BOOL WINAPI DllMain(HINSTANCE h_Instance, DWORD n_Reason, LPVOID)
{
    if (n_Reason != DLL_PROCESS_ATTACH)
        return 1;
    CT_OstraDLLMain::sv_SetInstance(h_Instance);
    CT_ErrorManager::sv_SetInstance(h_Instance);
    return 1;
}
