// winapi/Files/File.h: open files, their transfers, share modes, byte-range locks, and files by name.
//
// Names are the host's: `/` and `\` both separate, case counts, one root and no drive letters,
// UTF-8 on disk. Narrow names are text of the ANSI code page. Every call that takes a name fails
// with ERROR_PATH_NOT_FOUND (3) for a null or empty one, ERROR_INVALID_NAME (123) for a lone
// surrogate, ERROR_FILENAME_EXCED_RANGE (206) beyond the host's limits of length; with
// ERROR_FILE_NOT_FOUND (2) for a missing entry, ERROR_PATH_NOT_FOUND for a missing directory or
// something else than one in its place, ERROR_ACCESS_DENIED (5) for what permissions refuse,
// ERROR_WRITE_PROTECT (19) for a file system that is read-only, ERROR_NOT_ENOUGH_MEMORY (8) without
// memory. Every call that takes a handle fails with ERROR_INVALID_HANDLE (6) for any value that is
// no open handle of the kind.
//
// A read-only file is one without any write bit: it refuses writing and deleting, to the superuser
// as well.
#pragma once

#include "winapi/Base/Constants.h"

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
constexpr DWORD GENERIC_READ = 0x80000000U;
constexpr DWORD GENERIC_WRITE = 0x40000000U;
constexpr DWORD GENERIC_ALL = 0x10000000U;
constexpr DWORD DELETE = 0x00010000;
constexpr DWORD FILE_SHARE_READ = 0x00000001;
constexpr DWORD FILE_SHARE_WRITE = 0x00000002;
constexpr DWORD FILE_SHARE_DELETE = 0x00000004;
constexpr DWORD CREATE_NEW = 1;
constexpr DWORD CREATE_ALWAYS = 2;
constexpr DWORD OPEN_EXISTING = 3;
constexpr DWORD OPEN_ALWAYS = 4;
constexpr DWORD TRUNCATE_EXISTING = 5;
constexpr DWORD FILE_ATTRIBUTE_READONLY = 0x00000001;
constexpr DWORD FILE_ATTRIBUTE_HIDDEN = 0x00000002;
constexpr DWORD FILE_ATTRIBUTE_SYSTEM = 0x00000004;
constexpr DWORD FILE_ATTRIBUTE_DIRECTORY = 0x00000010;
constexpr DWORD FILE_ATTRIBUTE_ARCHIVE = 0x00000020;
constexpr DWORD FILE_ATTRIBUTE_NORMAL = 0x00000080;
constexpr DWORD FILE_ATTRIBUTE_TEMPORARY = 0x00000100;
constexpr DWORD FILE_ATTRIBUTE_COMPRESSED = 0x00000800;
constexpr DWORD FILE_FLAG_WRITE_THROUGH = 0x80000000U;
constexpr DWORD FILE_FLAG_OVERLAPPED = 0x40000000U;
constexpr DWORD FILE_FLAG_NO_BUFFERING = 0x20000000U;
constexpr DWORD FILE_FLAG_RANDOM_ACCESS = 0x10000000U;
constexpr DWORD FILE_FLAG_SEQUENTIAL_SCAN = 0x08000000U;
constexpr DWORD FILE_FLAG_DELETE_ON_CLOSE = 0x04000000U;
constexpr DWORD FILE_FLAG_BACKUP_SEMANTICS = 0x02000000U;
constexpr DWORD INVALID_FILE_SIZE = 0xFFFFFFFFU;
constexpr DWORD INVALID_SET_FILE_POINTER = 0xFFFFFFFFU;
constexpr DWORD INVALID_FILE_ATTRIBUTES = 0xFFFFFFFFU;
constexpr DWORD FILE_BEGIN = 0;
constexpr DWORD FILE_CURRENT = 1;
constexpr DWORD FILE_END = 2;
constexpr DWORD MOVEFILE_REPLACE_EXISTING = 1;
constexpr DWORD MOVEFILE_COPY_ALLOWED = 2;

// Opens or creates a file. Result: a handle, below 2^31; INVALID_HANDLE_VALUE on failure. The last
// error is set either way: 0, or ERROR_ALREADY_EXISTS (183) when CREATE_ALWAYS or OPEN_ALWAYS met
// an existing file.
//
// Access: any of GENERIC_READ, GENERIC_WRITE, GENERIC_ALL, DELETE; 0 allows asking for facts. Share
// mode: any of the three; ERROR_SHARING_VIOLATION (32) when an open handle of this or another
// process stands against it. Access 0 takes no part in sharing, nor do directories and devices; a
// file system without locks shares everything.
//
// Dispositions: the five, else ERROR_INVALID_PARAMETER (87), TRUNCATE_EXISTING without
// GENERIC_WRITE too. ERROR_FILE_EXISTS (80) for CREATE_NEW on what exists, ERROR_ACCESS_DENIED for
// a directory without FILE_FLAG_BACKUP_SEMANTICS, for truncating one, for writing a read-only file,
// ERROR_USER_MAPPED_FILE (1224) for truncating a mapped file, ERROR_TOO_MANY_OPEN_FILES (4) without
// descriptors.
//
// Attributes count when the file is made: READONLY (the creator may write), HIDDEN and SYSTEM (kept
// where the file system has extended attributes).
//
// Flags: WRITE_THROUGH, RANDOM_ACCESS, SEQUENTIAL_SCAN, BACKUP_SEMANTICS, and DELETE_ON_CLOSE,
// which deletes the name when this handle is closed or the process ends in order. NO_BUFFERING,
// OVERLAPPED and the other attributes are accepted and without effect, so are security attributes
// and template.
WINAPI_EXPORT HANDLE CreateFileW(LPCWSTR lpFileName, DWORD dwDesiredAccess, DWORD dwShareMode,
                                 LPSECURITY_ATTRIBUTES lpSecurityAttributes,
                                 DWORD dwCreationDisposition, DWORD dwFlagsAndAttributes,
                                 HANDLE hTemplateFile);
WINAPI_EXPORT HANDLE CreateFileA(LPCSTR lpFileName, DWORD dwDesiredAccess, DWORD dwShareMode,
                                 LPSECURITY_ATTRIBUTES lpSecurityAttributes,
                                 DWORD dwCreationDisposition, DWORD dwFlagsAndAttributes,
                                 HANDLE hTemplateFile);

// Closes a file or a mapping, with its share mode and its locks. INVALID_HANDLE_VALUE succeeds, as
// on the platform; a search's handle is closed by FindClose. A file that is mapped stays so until
// its last view ends.
WINAPI_EXPORT BOOL CloseHandle(HANDLE hObject);

// Reads at the file pointer and moves it. A count below the size is the end of the file (of what
// there is at present, for a pipe or a terminal) and no failure. ERROR_ACCESS_DENIED without read
// access, ERROR_NOACCESS (998) for a null buffer, ERROR_INVALID_FUNCTION (1) for a directory,
// ERROR_NOT_SUPPORTED (50) for overlapped transfers, which aren't supported. The count may be null;
// on failure it tells what was read. Locks of others don't hinder transfers. Threads that use one
// handle take turns.
WINAPI_EXPORT BOOL ReadFile(HANDLE hFile, LPVOID lpBuffer, DWORD nNumberOfBytesToRead,
                            LPDWORD lpNumberOfBytesRead, LPOVERLAPPED lpOverlapped);

// Writes at the file pointer and moves it. All is written or the call fails, ERROR_DISK_FULL (112)
// when the disk is full; the count, which may be null, and the file pointer then tell what was
// written. ERROR_ACCESS_DENIED without write access, ERROR_INVALID_USER_BUFFER (1784) for a null
// buffer, ERROR_NOT_SUPPORTED for overlapped transfers. A write of 0 bytes succeeds.
WINAPI_EXPORT BOOL WriteFile(HANDLE hFile, LPCVOID lpBuffer, DWORD nNumberOfBytesToWrite,
                             LPDWORD lpNumberOfBytesWritten, LPOVERLAPPED lpOverlapped);

// Moves the file pointer, which belongs to the handle: no call of the host but for FILE_END.
// Result: the low part of the position; a high part is stored where room for it is given, and the
// distance then has 64 bits. On failure all bits set: ERROR_NEGATIVE_SEEK (131) for a place before
// the start, ERROR_INVALID_PARAMETER for another method or a position that needs a high part
// without room for it. A position whose low part has all bits set clears the last error.
WINAPI_EXPORT DWORD SetFilePointer(HANDLE hFile, LONG lDistanceToMove, PLONG lpDistanceToMoveHigh,
                                   DWORD dwMoveMethod);

// The size, with its high part where room for it is given; 0 for a directory. On failure all bits
// set; a size whose low part is that clears the last error.
WINAPI_EXPORT DWORD GetFileSize(HANDLE hFile, LPDWORD lpFileSizeHigh);

// Cuts or extends the file at the file pointer; what is new reads as zeros. ERROR_INVALID_PARAMETER
// without write access, ERROR_USER_MAPPED_FILE for cutting a file that is mapped here or in another
// process.
WINAPI_EXPORT BOOL SetEndOfFile(HANDLE hFile);

// Returns when all is on the disk. ERROR_ACCESS_DENIED without write access.
WINAPI_EXPORT BOOL FlushFileBuffers(HANDLE hFile);

// Locks a range of bytes for this handle, against LockFile of all others, of this handle too:
// ERROR_LOCK_VIOLATION (33) when they overlap. Ranges may lie behind the end. One of no bytes locks
// nothing and succeeds; ERROR_INVALID_PARAMETER for one that ends beyond 2^62 - 2^43. Closing the
// handle ends its locks. ERROR_ACCESS_DENIED for a handle without access.
WINAPI_EXPORT BOOL LockFile(HANDLE hFile, DWORD dwFileOffsetLow, DWORD dwFileOffsetHigh,
                            DWORD nNumberOfBytesToLockLow, DWORD nNumberOfBytesToLockHigh);

// Ends a lock of this handle. The range must be the one that was locked, else ERROR_NOT_LOCKED
// (158).
WINAPI_EXPORT BOOL UnlockFile(HANDLE hFile, DWORD dwFileOffsetLow, DWORD dwFileOffsetHigh,
                              DWORD nNumberOfBytesToUnlockLow, DWORD nNumberOfBytesToUnlockHigh);

// All fields are filled: the attribute word as GetFileAttributes tells it, the times (where the
// file system doesn't know when a file was made, the earlier of its last two changes stands for
// it), device, size, links and the file's number.
WINAPI_EXPORT BOOL GetFileInformationByHandle(HANDLE hFile,
                                              LPBY_HANDLE_FILE_INFORMATION lpFileInformation);

// Hands back the number; there is no limit to set.
WINAPI_EXPORT UINT SetHandleCount(UINT uNumber);

// Deletes a name, a symbolic link itself. ERROR_ACCESS_DENIED for a directory and a read-only file,
// ERROR_SHARING_VIOLATION while somebody has the file open without sharing deletion.
WINAPI_EXPORT BOOL DeleteFileW(LPCWSTR lpFileName);
WINAPI_EXPORT BOOL DeleteFileA(LPCSTR lpFileName);

// Renames a file or directory. ERROR_ALREADY_EXISTS when the new name is taken, but for the file's
// own; with MOVEFILE_REPLACE_EXISTING a file that is neither read-only (ERROR_ACCESS_DENIED) nor
// held (ERROR_SHARING_VIOLATION) is replaced, never a directory, nor by one (ERROR_ACCESS_DENIED).
// To another file system only files and only with MOVEFILE_COPY_ALLOWED (ERROR_NOT_SAME_DEVICE,
// 17), by copying and deleting. ERROR_SHARING_VIOLATION while somebody has the file open without
// sharing deletion, ERROR_NOT_SUPPORTED for other flags. MoveFile is MoveFileEx with
// MOVEFILE_COPY_ALLOWED.
WINAPI_EXPORT BOOL MoveFileExW(LPCWSTR lpExistingFileName, LPCWSTR lpNewFileName, DWORD dwFlags);
WINAPI_EXPORT BOOL MoveFileExA(LPCSTR lpExistingFileName, LPCSTR lpNewFileName, DWORD dwFlags);
WINAPI_EXPORT BOOL MoveFileA(LPCSTR lpExistingFileName, LPCSTR lpNewFileName);

// Copies contents, time of writing, attributes and, to a new file, permissions. An existing target
// is overwritten, or with the flag refused with ERROR_FILE_EXISTS; ERROR_SHARING_VIOLATION for a
// copy onto itself and for a source or target that others don't share, ERROR_ACCESS_DENIED for
// directories and a read-only target, ERROR_DISK_FULL when the disk is full: then no target is
// left.
WINAPI_EXPORT BOOL CopyFileW(LPCWSTR lpExistingFileName, LPCWSTR lpNewFileName, BOOL bFailIfExists);
WINAPI_EXPORT BOOL CopyFileA(LPCSTR lpExistingFileName, LPCSTR lpNewFileName, BOOL bFailIfExists);

// Sets or clears READONLY, HIDDEN and SYSTEM; the other bits are without effect. READONLY takes all
// write bits and gives back the owner's, and leaves directories alone; where a file system has no
// extended attributes, HIDDEN and SYSTEM are lost without a failure.
WINAPI_EXPORT BOOL SetFileAttributesW(LPCWSTR lpFileName, DWORD dwFileAttributes);
WINAPI_EXPORT BOOL SetFileAttributesA(LPCSTR lpFileName, DWORD dwFileAttributes);

// The attribute word; all bits set on failure. A directory has DIRECTORY, all else ARCHIVE;
// READONLY is a file without write bits, HIDDEN also a name that begins with a point.
WINAPI_EXPORT DWORD GetFileAttributesW(LPCWSTR lpFileName);
WINAPI_EXPORT DWORD GetFileAttributesA(LPCSTR lpFileName);
} // namespace winapi
