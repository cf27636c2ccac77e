// winapi/Process/ModuleEntry.cpp: the notification at load and at unload.
//
// A plain constructor runs behind all that have a priority, as the statics of the module's start-up
// order do.
#include "winapi/Process/Module.h"

#include <dlfcn.h>

extern "C" __attribute__((weak)) BOOL WINAPI DllMain(HINSTANCE, DWORD, LPVOID);

namespace
{
void Notify(DWORD reason)
{
    Dl_info info{};
    if (DllMain && dladdr(reinterpret_cast<const void*>(&DllMain), &info))
        DllMain(static_cast<HINSTANCE>(info.dli_fbase), reason, nullptr);
}

__attribute__((constructor)) void Attach()
{
    Notify(winapi::DLL_PROCESS_ATTACH);
}

__attribute__((destructor)) void Detach()
{
    Notify(winapi::DLL_PROCESS_DETACH);
}
} // namespace
