// winapi/Files/FileMap.h: mappings of files and their views.
//
// A mapping and its views keep the file open, though its handle be closed before them. As long as
// there are any, in any process, the file isn't truncated (ERROR_USER_MAPPED_FILE, 1224).
#pragma once

#include "winapi/Base/Constants.h"

namespace winapi
{
constexpr DWORD PAGE_READONLY = 0x02;
constexpr DWORD PAGE_READWRITE = 0x04;
constexpr DWORD FILE_MAP_WRITE = 0x0002;
constexpr DWORD FILE_MAP_READ = 0x0004;
constexpr DWORD FILE_MAP_ALL_ACCESS = 0x000F001F;

// A mapping of a file. Result: a handle for CloseHandle; null on failure. Size 0 is the file's. A
// size beyond the file's extends it, for PAGE_READWRITE, and its room on the disk is reserved:
// ERROR_DISK_FULL (112) when there is too little, and the file stays as it was; for PAGE_READONLY
// ERROR_NOT_ENOUGH_MEMORY (8). ERROR_FILE_INVALID (1006) for an empty file with size 0,
// ERROR_ACCESS_DENIED (5) without read access, or write access for PAGE_READWRITE,
// ERROR_INVALID_PARAMETER (87) for other protections and a null handle, ERROR_NOT_SUPPORTED (50)
// for a name and for INVALID_HANDLE_VALUE: named mappings and those without a file aren't
// supported. Attributes are ignored.
WINAPI_EXPORT HANDLE CreateFileMappingA(HANDLE hFile, LPSECURITY_ATTRIBUTES lpAttributes,
                                        DWORD flProtect, DWORD dwMaximumSizeHigh,
                                        DWORD dwMaximumSizeLow, LPCSTR lpName);

// A view, shared with all others of the file and with transfers. Result: its address; null on
// failure. Access: FILE_MAP_READ, or with FILE_MAP_WRITE also for writing, else
// ERROR_INVALID_PARAMETER; FILE_MAP_ALL_ACCESS holds both. Size 0 reaches to the mapping's end.
// ERROR_MAPPED_ALIGNMENT (1132) for an offset that is no multiple of 65536, ERROR_ACCESS_DENIED for
// writing a PAGE_READONLY mapping and for a view that reaches beyond the mapping,
// ERROR_NOT_ENOUGH_MEMORY without address space.
WINAPI_EXPORT LPVOID MapViewOfFile(HANDLE hFileMappingObject, DWORD dwDesiredAccess,
                                   DWORD dwFileOffsetHigh, DWORD dwFileOffsetLow,
                                   SIZE_T dwNumberOfBytesToMap);

// Ends the view that the address lies in; ERROR_INVALID_ADDRESS (487) when it lies in none.
WINAPI_EXPORT BOOL UnmapViewOfFile(LPCVOID lpBaseAddress);

// Returns when that part of a view is on the disk; 0 bytes reach to its end.
// ERROR_INVALID_PARAMETER for what lies in no view.
WINAPI_EXPORT BOOL FlushViewOfFile(LPCVOID lpBaseAddress, SIZE_T dwNumberOfBytesToFlush);
} // namespace winapi
