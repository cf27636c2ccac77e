// winapi/Text/CodePage.h: conversion between code pages and UTF-16.
#pragma once

#include "winapi/Base/Constants.h"

// A program may define this: its answer becomes the ANSI code page, as a manifest makes UTF-8 that
// of a program. The target Ostra::utf8 does so, with 65001.
extern "C" WINAPI_EXPORT UINT winapi_ProgramAnsiPage() __attribute__((weak));

namespace winapi
{
constexpr UINT CP_ACP = 0;
constexpr UINT CP_OEMCP = 1;
constexpr UINT CP_MACCP = 2;
constexpr UINT CP_THREAD_ACP = 3;
constexpr UINT CP_UTF7 = 65000;
constexpr UINT CP_UTF8 = 65001;
constexpr DWORD MB_PRECOMPOSED = 0x00000001;
constexpr DWORD MB_COMPOSITE = 0x00000002;
constexpr DWORD MB_USEGLYPHCHARS = 0x00000004;
constexpr DWORD MB_ERR_INVALID_CHARS = 0x00000008;
constexpr DWORD WC_DISCARDNS = 0x00000010;
constexpr DWORD WC_SEPCHARS = 0x00000020;
constexpr DWORD WC_DEFAULTCHAR = 0x00000040;
constexpr DWORD WC_ERR_INVALID_CHARS = 0x00000080;
constexpr DWORD WC_COMPOSITECHECK = 0x00000200;
constexpr DWORD WC_NO_BEST_FIT_CHARS = 0x00000400;

// 68 code pages, UTF-7 and UTF-8; 0 to 3 stand for the ANSI, OEM and Mac page of the process's
// locale and for the ANSI page again. A count of -1 takes the text up to and with its terminator.
// Room 0 counts alone. Result: units or bytes; 0 with ERROR_INVALID_PARAMETER (87) for an unknown
// page, a count of 0, a null text or a null target with room; ERROR_INSUFFICIENT_BUFFER (122) for
// too little room, after what fits was written; ERROR_NO_UNICODE_TRANSLATION (1113) for text that
// the page does not have and MB_ERR_INVALID_CHARS (for UTF-8 WC_ERR_INVALID_CHARS);
// ERROR_INVALID_FLAGS (1004) for other flags; ERROR_NOT_ENOUGH_MEMORY (8) when the tables of a page
// can't be built, ERROR_MOD_NOT_FOUND (126) without the library that they are made with. A pair
// that a page lacks, and a lead byte at the end or before a zero byte, give the page's undefined
// unit. Not supported, and refused with ERROR_INVALID_FLAGS: MB_COMPOSITE and
// MB_USEGLYPHCHARS but for UTF-8, WC_COMPOSITECHECK likewise.
WINAPI_EXPORT int MultiByteToWideChar(UINT CodePage, DWORD dwFlags, LPCSTR lpMultiByteStr,
                                      int cbMultiByte, LPWSTR lpWideCharStr, int cchWideChar);
// A unit that the page lacks gives the default character, of one or two bytes, or the page's own,
// and sets the flag; one that only looks like it (a best fit) leaves the flag alone, and
// WC_NO_BEST_FIT_CHARS refuses it. UTF-7 takes neither default nor flag (ERROR_INVALID_PARAMETER).
// A surrogate pair is two units on any page but these two.
WINAPI_EXPORT int WideCharToMultiByte(UINT CodePage, DWORD dwFlags, LPCWSTR lpWideCharStr,
                                      int cchWideChar, LPSTR lpMultiByteStr, int cbMultiByte,
                                      LPCSTR lpDefaultChar, LPBOOL lpUsedDefaultChar);
// The pages by their own numbers: the words 0 to 3 are no pages.
WINAPI_EXPORT BOOL IsValidCodePage(UINT CodePage);
WINAPI_EXPORT BOOL IsDBCSLeadByte(BYTE TestChar);
WINAPI_EXPORT BOOL IsDBCSLeadByteEx(UINT CodePage, BYTE TestChar);
// The code pages of the process's locale (LC_ALL, LC_CTYPE, LANG), as it is when they are asked for
// first; 65001 where the locale has none. The ANSI page is the program's own choice, if it has one.
WINAPI_EXPORT UINT GetACP();
WINAPI_EXPORT UINT GetOEMCP();
} // namespace winapi
