// winapi/File.h: open files, their transfers, share modes, byte-range locks, and files by name.
#pragma once

#include "Types.h"

#define GENERIC_READ 0x80000000U
#define GENERIC_WRITE 0x40000000U
#define GENERIC_ALL 0x10000000U
#define DELETE 0x00010000
#define FILE_SHARE_READ 0x00000001
#define FILE_SHARE_WRITE 0x00000002
#define FILE_SHARE_DELETE 0x00000004
#define CREATE_NEW 1
#define CREATE_ALWAYS 2
#define OPEN_EXISTING 3
#define OPEN_ALWAYS 4
#define TRUNCATE_EXISTING 5
#define FILE_ATTRIBUTE_READONLY 0x00000001
#define FILE_ATTRIBUTE_HIDDEN 0x00000002
#define FILE_ATTRIBUTE_SYSTEM 0x00000004
#define FILE_ATTRIBUTE_DIRECTORY 0x00000010
#define FILE_ATTRIBUTE_ARCHIVE 0x00000020
#define FILE_ATTRIBUTE_NORMAL 0x00000080
#define FILE_ATTRIBUTE_TEMPORARY 0x00000100
#define FILE_ATTRIBUTE_COMPRESSED 0x00000800
#define FILE_FLAG_WRITE_THROUGH 0x80000000U
#define FILE_FLAG_OVERLAPPED 0x40000000U
#define FILE_FLAG_NO_BUFFERING 0x20000000U
#define FILE_FLAG_RANDOM_ACCESS 0x10000000U
#define FILE_FLAG_SEQUENTIAL_SCAN 0x08000000U
#define FILE_FLAG_DELETE_ON_CLOSE 0x04000000U
#define FILE_FLAG_BACKUP_SEMANTICS 0x02000000U
#define INVALID_FILE_SIZE 0xFFFFFFFFU
#define INVALID_SET_FILE_POINTER 0xFFFFFFFFU
#define INVALID_FILE_ATTRIBUTES 0xFFFFFFFFU
#define FILE_BEGIN 0
#define FILE_CURRENT 1
#define FILE_END 2
#define MOVEFILE_REPLACE_EXISTING 1
#define MOVEFILE_COPY_ALLOWED 2

struct _BY_HANDLE_FILE_INFORMATION
{
    DWORD dwFileAttributes;
    FILETIME ftCreationTime;
    FILETIME ftLastAccessTime;
    FILETIME ftLastWriteTime;
    DWORD dwVolumeSerialNumber;
    DWORD nFileSizeHigh;
    DWORD nFileSizeLow;
    DWORD nNumberOfLinks;
    DWORD nFileIndexHigh;
    DWORD nFileIndexLow;
};
using BY_HANDLE_FILE_INFORMATION = _BY_HANDLE_FILE_INFORMATION;
using LPBY_HANDLE_FILE_INFORMATION = _BY_HANDLE_FILE_INFORMATION*;

namespace winapi
{
WINAPI_EXPORT HANDLE CreateFileW(LPCWSTR lpFileName, DWORD dwDesiredAccess, DWORD dwShareMode,
                                 LPSECURITY_ATTRIBUTES lpSecurityAttributes, DWORD dwCreationDisposition,
                                 DWORD dwFlagsAndAttributes, HANDLE hTemplateFile);
WINAPI_EXPORT HANDLE CreateFileA(LPCSTR lpFileName, DWORD dwDesiredAccess, DWORD dwShareMode,
                                 LPSECURITY_ATTRIBUTES lpSecurityAttributes, DWORD dwCreationDisposition,
                                 DWORD dwFlagsAndAttributes, HANDLE hTemplateFile);
WINAPI_EXPORT BOOL CloseHandle(HANDLE hObject);
WINAPI_EXPORT BOOL ReadFile(HANDLE hFile, LPVOID lpBuffer, DWORD nNumberOfBytesToRead, LPDWORD lpNumberOfBytesRead,
                            LPOVERLAPPED lpOverlapped);
WINAPI_EXPORT BOOL WriteFile(HANDLE hFile, LPCVOID lpBuffer, DWORD nNumberOfBytesToWrite,
                             LPDWORD lpNumberOfBytesWritten, LPOVERLAPPED lpOverlapped);
WINAPI_EXPORT DWORD SetFilePointer(HANDLE hFile, LONG lDistanceToMove, PLONG lpDistanceToMoveHigh,
                                   DWORD dwMoveMethod);
WINAPI_EXPORT DWORD GetFileSize(HANDLE hFile, LPDWORD lpFileSizeHigh);
WINAPI_EXPORT BOOL SetEndOfFile(HANDLE hFile);
WINAPI_EXPORT BOOL FlushFileBuffers(HANDLE hFile);
WINAPI_EXPORT BOOL LockFile(HANDLE hFile, DWORD dwFileOffsetLow, DWORD dwFileOffsetHigh,
                            DWORD nNumberOfBytesToLockLow, DWORD nNumberOfBytesToLockHigh);
WINAPI_EXPORT BOOL UnlockFile(HANDLE hFile, DWORD dwFileOffsetLow, DWORD dwFileOffsetHigh,
                              DWORD nNumberOfBytesToUnlockLow, DWORD nNumberOfBytesToUnlockHigh);
WINAPI_EXPORT BOOL GetFileInformationByHandle(HANDLE hFile, LPBY_HANDLE_FILE_INFORMATION lpFileInformation);
WINAPI_EXPORT UINT SetHandleCount(UINT uNumber);

WINAPI_EXPORT BOOL DeleteFileW(LPCWSTR lpFileName);
WINAPI_EXPORT BOOL DeleteFileA(LPCSTR lpFileName);
WINAPI_EXPORT BOOL MoveFileExW(LPCWSTR lpExistingFileName, LPCWSTR lpNewFileName, DWORD dwFlags);
WINAPI_EXPORT BOOL MoveFileExA(LPCSTR lpExistingFileName, LPCSTR lpNewFileName, DWORD dwFlags);
WINAPI_EXPORT BOOL MoveFileA(LPCSTR lpExistingFileName, LPCSTR lpNewFileName);
WINAPI_EXPORT BOOL CopyFileW(LPCWSTR lpExistingFileName, LPCWSTR lpNewFileName, BOOL bFailIfExists);
WINAPI_EXPORT BOOL CopyFileA(LPCSTR lpExistingFileName, LPCSTR lpNewFileName, BOOL bFailIfExists);
WINAPI_EXPORT BOOL SetFileAttributesW(LPCWSTR lpFileName, DWORD dwFileAttributes);
WINAPI_EXPORT BOOL SetFileAttributesA(LPCSTR lpFileName, DWORD dwFileAttributes);
WINAPI_EXPORT DWORD GetFileAttributesW(LPCWSTR lpFileName);
WINAPI_EXPORT DWORD GetFileAttributesA(LPCSTR lpFileName);
} // namespace winapi
