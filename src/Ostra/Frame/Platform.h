// Ostra/Frame/Platform.h: the types of the platform that the interface names.
//
// Who calls services includes <windows.h>, which declares the same types again. Its macros and
// functions are no part of the library's interface, so public headers include this one only.
#pragma once

using BOOL = int;
using LPVOID = void*;
using HANDLE = void*;
struct HINSTANCE__;
using HINSTANCE = HINSTANCE__*;
struct HWND__;
using HWND = HWND__*;
struct HKEY__;
using HKEY = HKEY__*;
struct HDC__;
using HDC = HDC__*;
struct HFONT__;
using HFONT = HFONT__*;

// The one place in the library that asks for the platform.
#ifdef _WIN32

#include <sys/stat.h> // _stat has another name there, as wide as the program's times are

using LONG = long;
using DWORD = unsigned long;
#ifdef _WIN64
using INT_PTR = long long;
using LONG_PTR = long long;
using WPARAM = unsigned long long;
#else
using INT_PTR = int;
using LONG_PTR = long;
using WPARAM = unsigned;
#endif

#define OSTRA_ENTRY __stdcall // how the system calls a module's entry

#else

#include <cstdint>

using LONG = std::int32_t;
using DWORD = std::uint32_t;
using INT_PTR = std::intptr_t;
using LONG_PTR = std::intptr_t;
using WPARAM = std::uintptr_t;

#define OSTRA_ENTRY

struct _stat;

#endif

using LPARAM = LONG_PTR;
using LRESULT = LONG_PTR;

struct tagMSG;
struct _BY_HANDLE_FILE_INFORMATION;
struct tagENUMLOGFONTA;
struct tagLOGFONTA;
struct tagNEWTEXTMETRICA;
struct tagTEXTMETRICA;
struct _SYSTEMTIME;
