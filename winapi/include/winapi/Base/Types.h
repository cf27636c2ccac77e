// winapi/Base/Types.h: types and numbers shared by all groups of services.
//
// Names, widths and values are the published ones; `long` types are 32 bits, handles pointer-sized.
#pragma once

#include <cstdint>

#define WINAPI_EXPORT __attribute__((visibility("default")))
#define WINAPI
#define APIENTRY
#define CALLBACK

using BOOL = int;
using INT = int;
using UINT = unsigned;
using LONG = std::int32_t;
using ULONG = std::uint32_t;
using BYTE = unsigned char;
using WORD = unsigned short;
using DWORD = std::uint32_t;
using CHAR = char;
using WCHAR = unsigned short;
using LPSTR = char*;
using LPCSTR = const char*;
using LPWSTR = WCHAR*;
using LPCWSTR = const WCHAR*;
using LPVOID = void*;
using LPCVOID = const void*;
using LPBOOL = BOOL*;
using LPDWORD = DWORD*;
using PLONG = LONG*;
using SIZE_T = std::size_t;
using INT_PTR = std::intptr_t;
using UINT_PTR = std::uintptr_t;
using LONG_PTR = std::intptr_t;
using ULONG_PTR = std::uintptr_t;
using DWORD_PTR = std::uintptr_t;

using HANDLE = void*;
using HLOCAL = void*;
struct HINSTANCE__;
using HINSTANCE = HINSTANCE__*;
using HMODULE = HINSTANCE;

#define TRUE 1
#define FALSE 0
#define MAX_PATH 260
#define INVALID_HANDLE_VALUE (reinterpret_cast<HANDLE>(static_cast<std::intptr_t>(-1)))
#define MAKELANGID(primary, sub) ((static_cast<WORD>(sub) << 10) | static_cast<WORD>(primary))

struct FILETIME
{
    DWORD dwLowDateTime;
    DWORD dwHighDateTime;
};

struct SECURITY_ATTRIBUTES;
using LPSECURITY_ATTRIBUTES = SECURITY_ATTRIBUTES*;
struct OVERLAPPED;
using LPOVERLAPPED = OVERLAPPED*;
