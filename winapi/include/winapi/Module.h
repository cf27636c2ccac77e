// winapi/Module.h: modules, their names and string tables, and the notification at load.
#pragma once

#include "Types.h"

#define DLL_PROCESS_DETACH 0
#define DLL_PROCESS_ATTACH 1
#define DLL_THREAD_ATTACH 2
#define DLL_THREAD_DETACH 3

// Supplied by the module: called once with DLL_PROCESS_ATTACH behind its static constructions.
extern "C" WINAPI_EXPORT BOOL WINAPI DllMain(HINSTANCE hinstDLL, DWORD fdwReason, LPVOID lpvReserved);

namespace winapi
{
// One entry of a module's string table: the text is kept by pointer.
struct StringEntry
{
    UINT id;
    const char16_t* text;
};

// Gives the module that holds the table (told by the table's own address) its string table, in ascending order
// of ids; the table is kept by pointer. A module may have several.
WINAPI_EXPORT void RegisterStringTable(const StringEntry* table, UINT count);

WINAPI_EXPORT DWORD GetModuleFileNameW(HMODULE hModule, LPWSTR lpFilename, DWORD nSize);
WINAPI_EXPORT DWORD GetModuleFileNameA(HMODULE hModule, LPSTR lpFilename, DWORD nSize);
WINAPI_EXPORT HMODULE GetModuleHandleA(LPCSTR lpModuleName);
WINAPI_EXPORT int LoadStringW(HINSTANCE hInstance, UINT uID, LPWSTR lpBuffer, int cchBufferMax);
WINAPI_EXPORT int LoadStringA(HINSTANCE hInstance, UINT uID, LPSTR lpBuffer, int cchBufferMax);
} // namespace winapi
