// winapi/Process/Module.cpp
#include "winapi/Process/Module.h"

#include <sys/auxv.h>
#include <unistd.h>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <string>

#include "Base/Posix.h"
#include "winapi/Errors/LastError.h"
#include "winapi/Text/CodePage.h"

namespace winapi
{
namespace
{
// A module is known by its load address. Tables are few and live as long as the process; they are
// registered while modules are loaded, one at a time, and read without memory, so that errors can
// be told when there is none.
struct ModuleTable
{
    HINSTANCE module;
    const StringEntry* entries;
    UINT count;
};
constexpr unsigned TABLES = 64;
ModuleTable tables[TABLES];
unsigned tableCount;

HINSTANCE ModuleOf(const void* address)
{
    Dl_info info{};
    return posix.dladdr(address, &info) ? static_cast<HINSTANCE>(info.dli_fbase) : nullptr;
}

// The program itself is the null module of the name calls; the loader tells where its headers lie.
HINSTANCE ProgramModule()
{
    return ModuleOf(reinterpret_cast<const void*>(posix.getauxval(AT_PHDR)));
}

const char16_t* FindText(const ModuleTable& table, UINT id)
{
    UINT low = 0;
    UINT high = table.count;
    while (low < high) {
        const UINT middle = low + (high - low) / 2;
        if (table.entries[middle].id < id)
            low = middle + 1;
        else
            high = middle;
    }
    return low < table.count && table.entries[low].id == id ? table.entries[low].text : nullptr;
}

// The text under the id in any table of the module; null with ERROR_RESOURCE_DATA_NOT_FOUND (1812)
// for a module without one, ERROR_RESOURCE_NAME_NOT_FOUND (1814) without the id.
const char16_t* FindText(HINSTANCE module, UINT id)
{
    DWORD error = ERROR_RESOURCE_DATA_NOT_FOUND;
    for (unsigned at = 0; at < tableCount; ++at) {
        if (tables[at].module != module)
            continue;
        if (const char16_t* text = FindText(tables[at], id))
            return text;
        error = ERROR_RESOURCE_NAME_NOT_FOUND;
    }
    SetLastError(error);
    return nullptr;
}

bool ModulePath(HMODULE module, char (&path)[PATH_MAX])
{
    if (module && module != ProgramModule()) {
        Dl_info info{};
        if (!posix.dladdr(module, &info) || info.dli_fbase != module)
            return false;
        return posix.realpath(info.dli_fname, path) != nullptr;
    }
    const ssize_t length = posix.readlink("/proc/self/exe", path, sizeof(path) - 1);
    path[length > 0 ? length : 0] = 0;
    return length > 0;
}

// Copies a name with its terminator as far as it fits, as the name calls do.
template <typename Char>
DWORD CopyName(const Char* name, DWORD length, Char* buffer, DWORD room)
{
    if (length < room) {
        std::memcpy(buffer, name, (length + 1) * sizeof(Char));
        return length;
    }
    if (room > 0) {
        std::memcpy(buffer, name, (room - 1) * sizeof(Char));
        buffer[room - 1] = 0;
    }
    SetLastError(ERROR_INSUFFICIENT_BUFFER);
    return room;
}

DWORD ModuleName(HMODULE module, WCHAR (&name)[PATH_MAX])
{
    char path[PATH_MAX];
    if (!ModulePath(module, path)) {
        SetLastError(ERROR_MOD_NOT_FOUND);
        return 0;
    }
    const int length = MultiByteToWideChar(CP_UTF8, 0, path, -1, name, PATH_MAX);
    return length > 0 ? static_cast<DWORD>(length - 1) : 0;
}

// The bytes of an ASCII text with its terminator; 0 for any other text. ASCII is the same in every
// ANSI code page, and a module asks for its name while it comes up: no time to build tables.
int CopyAscii(const WCHAR* text, char* bytes)
{
    int length = 0;
    do {
        if (text[length] >= 0x80)
            return 0;
        bytes[length] = static_cast<char>(text[length]);
    } while (text[length++]);
    return length;
}
} // namespace

void RegisterStringTable(const StringEntry* table, UINT count)
{
    if (tableCount == TABLES)
        std::abort();
    tables[tableCount++] = {ModuleOf(table), table, count};
}

DWORD GetModuleFileNameW(HMODULE module, LPWSTR buffer, DWORD room)
{
    WCHAR name[PATH_MAX];
    const DWORD length = ModuleName(module, name);
    return length ? CopyName(name, length, buffer, room) : 0;
}

DWORD GetModuleFileNameA(HMODULE module, LPSTR buffer, DWORD room)
{
    WCHAR wide[PATH_MAX];
    if (!ModuleName(module, wide))
        return 0;
    char name[2 * PATH_MAX];
    int length = CopyAscii(wide, name);
    if (!length)
        length = WideCharToMultiByte(CP_ACP, 0, wide, -1, name, sizeof(name), nullptr, nullptr);
    return length > 0 ? CopyName(name, static_cast<DWORD>(length - 1), buffer, room) : 0;
}

HMODULE GetModuleHandleA(LPCSTR name)
{
    if (!name)
        return ProgramModule();
    void* handle = posix.dlopen(name, RTLD_LAZY | RTLD_NOLOAD);
    if (!handle) {
        SetLastError(ERROR_MOD_NOT_FOUND);
        return nullptr;
    }
    // A link map begins with the load address.
    void* base = *static_cast<void**>(handle);
    posix.dlclose(handle);
    return static_cast<HMODULE>(base);
}

int LoadStringW(HINSTANCE module, UINT id, LPWSTR buffer, int room)
{
    const char16_t* text = FindText(module ? module : ProgramModule(), id & 0xFFFF);
    if (!text || room < 0 || !buffer)
        return 0;
    int length = 0;
    if (!room) {
        const LPCWSTR kept = reinterpret_cast<LPCWSTR>(text);
        std::memcpy(buffer, &kept, sizeof(kept));
        return static_cast<int>(std::char_traits<char16_t>::length(text));
    }
    for (; length < room - 1 && text[length]; ++length)
        buffer[length] = static_cast<WCHAR>(text[length]);
    buffer[length] = 0;
    return length;
}

int LoadStringA(HINSTANCE module, UINT id, LPSTR buffer, int room)
{
    const char16_t* text = FindText(module ? module : ProgramModule(), id & 0xFFFF);
    if (!text || room <= 0 || !buffer)
        return 0;
    // Character by character, so that none is cut. ASCII is the same in every ANSI code page and
    // needs no table, which might have to be built when there is no memory.
    int length = 0;
    for (int units; *text; text += units) {
        char bytes[4] = {static_cast<char>(*text)};
        const WCHAR pair[] = {static_cast<WCHAR>(text[0]), static_cast<WCHAR>(text[1])};
        units = (pair[0] & 0xFC00) == 0xD800 && (pair[1] & 0xFC00) == 0xDC00 ? 2 : 1;
        const int count = pair[0] < 0x80 ? 1
                                         : WideCharToMultiByte(CP_ACP, 0, pair, units, bytes,
                                                               sizeof(bytes), nullptr, nullptr);
        if (length + count > room - 1)
            break;
        std::memcpy(buffer + length, bytes, static_cast<std::size_t>(count));
        length += count;
    }
    buffer[length] = 0;
    return length;
}
} // namespace winapi
