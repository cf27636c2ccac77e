// winapi/Base/HostLoaded.cpp: the table from the library that lies beside this one.
#include "Base/Host.h"

#include "Base/Posix.h"

#include <cstring>

namespace winapi
{
const HostTable* LoadHost()
{
    // The loader takes the place of the library that calls it for $ORIGIN.
    void* const library = posix.dlopen("$ORIGIN/" OSTRA_HOST_FILE, RTLD_NOW | RTLD_LOCAL);
    if (!library)
        return nullptr;
    const auto table = static_cast<const HostTable*>(posix.dlsym(library, "ostra_host"));
    if (table && std::strcmp(table->version, OSTRA_VERSION) == 0)
        return table;
    posix.dlclose(library);
    return nullptr;
}
} // namespace winapi
