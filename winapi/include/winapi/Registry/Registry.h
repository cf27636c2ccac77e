// winapi/Registry/Registry.h: a tree of keys with typed values, which lasts and belongs to the user.
//
// Names of keys and values ignore case in all scripts and keep their first spelling; subkeys and
// values are told in the order of their names in lower case, unit by unit. A path is parted by `\`,
// of which several count as one; one in front is ERROR_BAD_PATHNAME (161), but for those below
// HKEY_CLASSES_ROOT. A key's name has up to 255 units, a value's up to 16,383, and keys lie up to
// 512 levels deep.
//
// All services return a system error, 0 for success, and leave the last error alone:
// ERROR_INVALID_HANDLE (6) for a key that isn't open, ERROR_ACCESS_DENIED (5) for one that wasn't
// opened with the right that is needed, ERROR_KEY_DELETED (1018) for one that is gone,
// ERROR_FILE_NOT_FOUND (2) for a key or value that isn't there. All data lie in one file of the user
// (docs/linux-services.md); where it can't be used: ERROR_BADDB (1009) for a file with other
// content, ERROR_DISK_FULL (112), ERROR_ACCESS_DENIED (5), ERROR_PATH_NOT_FOUND (3) without a home,
// ERROR_BUSY (170) after five seconds.
//
// The 8-bit forms take and give text in the ANSI code page; a key's path has up to 260 characters
// there, else ERROR_MORE_DATA (234). They convert the data of string types too: these are kept as
// UTF-16.
#pragma once

#include "winapi/Base/Constants.h"

struct HKEY__;
using HKEY = HKEY__*;
using PHKEY = HKEY*;
using REGSAM = DWORD;
using LSTATUS = LONG;

namespace winapi
{
inline HKEY PredefinedKey(unsigned number)
{
    // As the platform widens it in 64 bits.
    return reinterpret_cast<HKEY>(static_cast<std::intptr_t>(static_cast<LONG>(number)));
}
const HKEY HKEY_CLASSES_ROOT = PredefinedKey(0x80000000);
const HKEY HKEY_CURRENT_USER = PredefinedKey(0x80000001);
const HKEY HKEY_LOCAL_MACHINE = PredefinedKey(0x80000002);
const HKEY HKEY_USERS = PredefinedKey(0x80000003);
const HKEY HKEY_PERFORMANCE_DATA = PredefinedKey(0x80000004);
const HKEY HKEY_CURRENT_CONFIG = PredefinedKey(0x80000005);
const HKEY HKEY_DYN_DATA = PredefinedKey(0x80000006);

constexpr REGSAM KEY_QUERY_VALUE = 0x0001;
constexpr REGSAM KEY_SET_VALUE = 0x0002;
constexpr REGSAM KEY_CREATE_SUB_KEY = 0x0004;
constexpr REGSAM KEY_ENUMERATE_SUB_KEYS = 0x0008;
constexpr REGSAM KEY_READ = 0x20019;
constexpr REGSAM KEY_WRITE = 0x20006;
constexpr REGSAM KEY_EXECUTE = 0x20019;
constexpr REGSAM KEY_ALL_ACCESS = 0xF003F;

constexpr DWORD REG_NONE = 0;
constexpr DWORD REG_SZ = 1;
constexpr DWORD REG_EXPAND_SZ = 2;
constexpr DWORD REG_BINARY = 3;
constexpr DWORD REG_DWORD = 4;
constexpr DWORD REG_DWORD_BIG_ENDIAN = 5;
constexpr DWORD REG_LINK = 6;
constexpr DWORD REG_MULTI_SZ = 7;
constexpr DWORD REG_QWORD = 11;

constexpr DWORD REG_OPTION_NON_VOLATILE = 0;
constexpr DWORD REG_CREATED_NEW_KEY = 1;
constexpr DWORD REG_OPENED_EXISTING_KEY = 2;

// Opens a key below another one, or that key anew for a null or empty path. Every right can be had.
WINAPI_EXPORT LSTATUS RegOpenKeyExW(HKEY hKey, LPCWSTR lpSubKey, DWORD ulOptions, REGSAM samDesired,
                                    PHKEY phkResult);
WINAPI_EXPORT LSTATUS RegOpenKeyExA(HKEY hKey, LPCSTR lpSubKey, DWORD ulOptions, REGSAM samDesired,
                                    PHKEY phkResult);

// The same; makes the key, with what is missing above it. The disposition tells which. All keys
// last: options, class and security are not looked at.
WINAPI_EXPORT LSTATUS RegCreateKeyExW(HKEY hKey, LPCWSTR lpSubKey, DWORD Reserved, LPWSTR lpClass,
                                      DWORD dwOptions, REGSAM samDesired,
                                      LPSECURITY_ATTRIBUTES lpSecurityAttributes, PHKEY phkResult,
                                      LPDWORD lpdwDisposition);
WINAPI_EXPORT LSTATUS RegCreateKeyExA(HKEY hKey, LPCSTR lpSubKey, DWORD Reserved, LPSTR lpClass,
                                      DWORD dwOptions, REGSAM samDesired,
                                      LPSECURITY_ATTRIBUTES lpSecurityAttributes, PHKEY phkResult,
                                      LPDWORD lpdwDisposition);

// Closes a key; a predefined one may be closed, too, and stays open.
WINAPI_EXPORT LSTATUS RegCloseKey(HKEY hKey);

// Deletes a key and its values, or the open key itself for an empty path. ERROR_ACCESS_DENIED (5)
// for one with subkeys, and for those that a registry begins with.
WINAPI_EXPORT LSTATUS RegDeleteKeyW(HKEY hKey, LPCWSTR lpSubKey);
WINAPI_EXPORT LSTATUS RegDeleteKeyA(HKEY hKey, LPCSTR lpSubKey);

// Numbers of subkeys and values, the longest names in units, the longest data in bytes. Each may be
// null; classes are empty and security descriptors have no size.
WINAPI_EXPORT LSTATUS RegQueryInfoKeyW(HKEY hKey, LPWSTR lpClass, LPDWORD lpcchClass,
                                       LPDWORD lpReserved, LPDWORD lpcSubKeys,
                                       LPDWORD lpcbMaxSubKeyLen, LPDWORD lpcbMaxClassLen,
                                       LPDWORD lpcValues, LPDWORD lpcbMaxValueNameLen,
                                       LPDWORD lpcbMaxValueLen, LPDWORD lpcbSecurityDescriptor,
                                       FILETIME* lpftLastWriteTime);
WINAPI_EXPORT LSTATUS RegQueryInfoKeyA(HKEY hKey, LPSTR lpClass, LPDWORD lpcchClass,
                                       LPDWORD lpReserved, LPDWORD lpcSubKeys,
                                       LPDWORD lpcbMaxSubKeyLen, LPDWORD lpcbMaxClassLen,
                                       LPDWORD lpcValues, LPDWORD lpcbMaxValueNameLen,
                                       LPDWORD lpcbMaxValueLen, LPDWORD lpcbSecurityDescriptor,
                                       FILETIME* lpftLastWriteTime);

// The name of a subkey, and when it was changed. The size counts the terminator on the way in and
// not on the way out; it stays when the room is too small (ERROR_MORE_DATA, 234). Behind the last:
// ERROR_NO_MORE_ITEMS (259).
WINAPI_EXPORT LSTATUS RegEnumKeyExW(HKEY hKey, DWORD dwIndex, LPWSTR lpName, LPDWORD lpcchName,
                                    LPDWORD lpReserved, LPWSTR lpClass, LPDWORD lpcchClass,
                                    FILETIME* lpftLastWriteTime);
WINAPI_EXPORT LSTATUS RegEnumKeyExA(HKEY hKey, DWORD dwIndex, LPSTR lpName, LPDWORD lpcchName,
                                    LPDWORD lpReserved, LPSTR lpClass, LPDWORD lpcchClass,
                                    FILETIME* lpftLastWriteTime);

// The name, type and data of a value, as RegEnumKeyEx and RegQueryValueEx tell them.
WINAPI_EXPORT LSTATUS RegEnumValueW(HKEY hKey, DWORD dwIndex, LPWSTR lpValueName,
                                    LPDWORD lpcchValueName, LPDWORD lpReserved, LPDWORD lpType,
                                    BYTE* lpData, LPDWORD lpcbData);
WINAPI_EXPORT LSTATUS RegEnumValueA(HKEY hKey, DWORD dwIndex, LPSTR lpValueName,
                                    LPDWORD lpcchValueName, LPDWORD lpReserved, LPDWORD lpType,
                                    BYTE* lpData, LPDWORD lpcbData);

// Type and data of a value; a null name is the empty one. The size, in bytes, is what there is room
// for, and then what there is; without data it is told alone, with data that have more it is told
// with ERROR_MORE_DATA (234). Behind a text that was stored without a terminator one is written
// where there is room; it isn't counted.
WINAPI_EXPORT LSTATUS RegQueryValueExW(HKEY hKey, LPCWSTR lpValueName, LPDWORD lpReserved,
                                       LPDWORD lpType, BYTE* lpData, LPDWORD lpcbData);
WINAPI_EXPORT LSTATUS RegQueryValueExA(HKEY hKey, LPCSTR lpValueName, LPDWORD lpReserved,
                                       LPDWORD lpType, BYTE* lpData, LPDWORD lpcbData);

// Stores a value, of whatever type and size. Texts are stored as given: a terminator belongs to
// them where it is counted.
WINAPI_EXPORT LSTATUS RegSetValueExW(HKEY hKey, LPCWSTR lpValueName, DWORD Reserved, DWORD dwType,
                                     const BYTE* lpData, DWORD cbData);
WINAPI_EXPORT LSTATUS RegSetValueExA(HKEY hKey, LPCSTR lpValueName, DWORD Reserved, DWORD dwType,
                                     const BYTE* lpData, DWORD cbData);

WINAPI_EXPORT LSTATUS RegDeleteValueW(HKEY hKey, LPCWSTR lpValueName);
WINAPI_EXPORT LSTATUS RegDeleteValueA(HKEY hKey, LPCSTR lpValueName);
} // namespace winapi
