// winapi/Base/HostLoaded.cpp: the table from the library that lies beside this one.
#include "Base/Host.h"

#include "Base/Posix.h"

#include <climits>
#include <cstring>

namespace winapi
{
namespace
{
constexpr char FILE_NAME[] = "/" OSTRA_HOST_FILE;

// The folder of this library as the loader knows it since it came in, with the file's name behind
// it. The word $ORIGIN would mean the folder of whoever calls dlopen, and a sanitizer that stands
// between calls it in our place.
bool FindPath(char (&path)[PATH_MAX + sizeof FILE_NAME])
{
    Dl_info info{};
    void* module = nullptr;
    if (!posix.dladdr1(FILE_NAME, &info, &module, RTLD_DL_LINKMAP) ||
        posix.dlinfo(module, RTLD_DI_ORIGIN, path) != 0)
        return false;
    std::memcpy(path + std::strlen(path), FILE_NAME, sizeof FILE_NAME);
    return true;
}
} // namespace

const HostTable* LoadHost()
{
    char path[PATH_MAX + sizeof FILE_NAME];
    if (!FindPath(path))
        return nullptr;
    void* const library = posix.dlopen(path, RTLD_NOW | RTLD_LOCAL);
    if (!library)
        return nullptr;
    const auto table = static_cast<const HostTable*>(posix.dlsym(library, "ostra_host"));
    if (table && std::strcmp(table->version, OSTRA_VERSION) == 0)
        return table;
    posix.dlclose(library);
    return nullptr;
}
} // namespace winapi
