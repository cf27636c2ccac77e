// winapi/FileMap.h: mappings of files and their views.
#pragma once

#include "Types.h"

#define PAGE_READONLY 0x02
#define PAGE_READWRITE 0x04
#define FILE_MAP_WRITE 0x0002
#define FILE_MAP_READ 0x0004
#define FILE_MAP_ALL_ACCESS 0x000F001F

namespace winapi
{
WINAPI_EXPORT HANDLE CreateFileMappingA(HANDLE hFile, LPSECURITY_ATTRIBUTES lpAttributes, DWORD flProtect,
                                        DWORD dwMaximumSizeHigh, DWORD dwMaximumSizeLow, LPCSTR lpName);
WINAPI_EXPORT LPVOID MapViewOfFile(HANDLE hFileMappingObject, DWORD dwDesiredAccess, DWORD dwFileOffsetHigh,
                                   DWORD dwFileOffsetLow, SIZE_T dwNumberOfBytesToMap);
WINAPI_EXPORT BOOL UnmapViewOfFile(LPCVOID lpBaseAddress);
WINAPI_EXPORT BOOL FlushViewOfFile(LPCVOID lpBaseAddress, SIZE_T dwNumberOfBytesToFlush);
} // namespace winapi
