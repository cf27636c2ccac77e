// winapi/CodePage.h: conversion between code pages and UTF-16.
#pragma once

#include "Types.h"

#define CP_ACP 0
#define CP_OEMCP 1
#define CP_MACCP 2
#define CP_THREAD_ACP 3
#define CP_UTF7 65000
#define CP_UTF8 65001
#define MB_PRECOMPOSED 0x00000001
#define MB_COMPOSITE 0x00000002
#define MB_USEGLYPHCHARS 0x00000004
#define MB_ERR_INVALID_CHARS 0x00000008

namespace winapi
{
WINAPI_EXPORT int MultiByteToWideChar(UINT CodePage, DWORD dwFlags, LPCSTR lpMultiByteStr, int cbMultiByte,
                                      LPWSTR lpWideCharStr, int cchWideChar);
WINAPI_EXPORT int WideCharToMultiByte(UINT CodePage, DWORD dwFlags, LPCWSTR lpWideCharStr, int cchWideChar,
                                      LPSTR lpMultiByteStr, int cbMultiByte, LPCSTR lpDefaultChar,
                                      LPBOOL lpUsedDefaultChar);
WINAPI_EXPORT BOOL IsValidCodePage(UINT CodePage);
WINAPI_EXPORT BOOL IsDBCSLeadByte(BYTE TestChar);
WINAPI_EXPORT BOOL IsDBCSLeadByteEx(UINT CodePage, BYTE TestChar);
WINAPI_EXPORT UINT GetACP();
WINAPI_EXPORT UINT GetOEMCP();
} // namespace winapi
