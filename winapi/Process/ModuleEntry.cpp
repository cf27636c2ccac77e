// winapi/Process/ModuleEntry.cpp: the notification at load and at unload.
//
// Runs behind the statics of the module, whose priority is 1000. Also in a static library the
// program's statics come up later, as they do with a shared one.
#include "winapi/Process/Module.h"

#include "Base/Posix.h"

extern "C" __attribute__((weak)) BOOL WINAPI DllMain(HINSTANCE, DWORD, LPVOID);

namespace
{
void Notify(DWORD reason)
{
    Dl_info info{};
    if (DllMain && winapi::posix.dladdr(reinterpret_cast<const void*>(&DllMain), &info))
        DllMain(static_cast<HINSTANCE>(info.dli_fbase), reason, nullptr);
}

__attribute__((constructor(2000))) void Attach()
{
    Notify(winapi::DLL_PROCESS_ATTACH);
}

__attribute__((destructor(2000))) void Detach()
{
    Notify(winapi::DLL_PROCESS_DETACH);
}
} // namespace
