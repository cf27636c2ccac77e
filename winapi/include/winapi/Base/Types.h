// winapi/Base/Types.h: types shared by all groups of services, and nothing else: no macro, no
// function, no number.
//
// Names and widths are the published ones; `long` types are 32 bits, handles pointer-sized.
#pragma once

#include <cstddef>
#include <cstdint>

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
using WPARAM = std::uintptr_t;
using LPARAM = std::intptr_t;
using LRESULT = std::intptr_t;
using ATOM = WORD;

using HANDLE = void*;
using HLOCAL = void*;
using HGLOBAL = void*;
struct HINSTANCE__;
using HINSTANCE = HINSTANCE__*;
using HMODULE = HINSTANCE;
struct HWND__;
using HWND = HWND__*;

struct FILETIME
{
    DWORD dwLowDateTime;
    DWORD dwHighDateTime;
};

struct SECURITY_ATTRIBUTES;
using LPSECURITY_ATTRIBUTES = SECURITY_ATTRIBUTES*;
struct OVERLAPPED;
using LPOVERLAPPED = OVERLAPPED*;
