// winapi/Process/Module.h: modules, their names and string tables, and the notification at load.
#pragma once

#include "winapi/Base/Constants.h"

// Supplied by the module: called once with DLL_PROCESS_ATTACH behind its static constructions.
extern "C" WINAPI_EXPORT BOOL WINAPI DllMain(HINSTANCE hinstDLL, DWORD fdwReason,
                                             LPVOID lpvReserved);

namespace winapi
{
constexpr DWORD DLL_PROCESS_DETACH = 0;
constexpr DWORD DLL_PROCESS_ATTACH = 1;
constexpr DWORD DLL_THREAD_ATTACH = 2;
constexpr DWORD DLL_THREAD_DETACH = 3;

// One entry of a module's string table: the text is kept by pointer.
struct StringEntry
{
    UINT id;
    const char16_t* text;
};

// Gives the module that holds the table (told by the table's own address) its string table, in
// ascending order of ids; the table is kept by pointer. A module may have several.
WINAPI_EXPORT void RegisterStringTable(const StringEntry* table, UINT count);

// The module's path; null is the program. Result: units without the terminator; a short buffer is
// filled and terminated, the result is its size, the last error ERROR_INSUFFICIENT_BUFFER (122). An
// unknown module: 0 and ERROR_MOD_NOT_FOUND (126).
WINAPI_EXPORT DWORD GetModuleFileNameW(HMODULE hModule, LPWSTR lpFilename, DWORD nSize);
WINAPI_EXPORT DWORD GetModuleFileNameA(HMODULE hModule, LPSTR lpFilename, DWORD nSize);

// The load address of a module that the process has loaded; null is the program. Null and
// ERROR_MOD_NOT_FOUND for an unknown one.
WINAPI_EXPORT HMODULE GetModuleHandleA(LPCSTR lpModuleName);

// The text under an id in the string tables of a module, cut to the room; null is the program.
// Result: units or bytes without the terminator. A missing id: 0 and ERROR_RESOURCE_NAME_NOT_FOUND
// (1814), the buffer untouched; a module without a table: 0 and ERROR_RESOURCE_DATA_NOT_FOUND
// (1812). With room 0 the wide call stores a pointer to the text itself in the buffer, the narrow
// one fails. Allocates nothing where the text is ASCII.
WINAPI_EXPORT int LoadStringW(HINSTANCE hInstance, UINT uID, LPWSTR lpBuffer, int cchBufferMax);
WINAPI_EXPORT int LoadStringA(HINSTANCE hInstance, UINT uID, LPSTR lpBuffer, int cchBufferMax);
} // namespace winapi
