// winapi/Files/FileTransfer.cpp: reading, writing, the file pointer and the file's size.
//
// The file pointer is the handle's own, and transfers name their position; so moving it is no call
// of the host. Only what has no positions, such as a pipe or a terminal, is read and written as it
// comes.
#include "Errors/Failure.h"
#include "Files/OpenFile.h"
#include "winapi/Files/File.h"

#include <climits>

#include <sys/stat.h>
#include <unistd.h>

namespace winapi
{
namespace
{
// Transfers until all is done, nothing more comes, or an error. `done` counts what was transferred
// in any case.
template <class Call>
DWORD TransferAll(bool whole, DWORD size, DWORD& done, Call call)
{
    do {
        const ssize_t count = Retried([&] { return call(done, size - done); });
        if (count < 0)
            return CodeOf(errno);
        if (count == 0)
            break;
        done += static_cast<DWORD>(count);
    } while (whole && done < size);
    return 0;
}

DWORD Read(OpenFile& file, char* data, DWORD size, DWORD& done)
{
    const std::lock_guard lock(file.transfer);
    if (!file.IsPositioned())
        return TransferAll(false, size, done, [&](DWORD at, DWORD rest) {
            return posix.read(file.Fd(), data + at, rest);
        });
    const DWORD code = TransferAll(true, size, done, [&](DWORD at, DWORD rest) {
        return posix.pread(file.Fd(), data + at, rest, file.position + at);
    });
    file.position += done;
    return code;
}

DWORD Write(OpenFile& file, const char* data, DWORD size, DWORD& done)
{
    const std::lock_guard lock(file.transfer);
    if (!file.IsPositioned())
        return TransferAll(true, size, done, [&](DWORD at, DWORD rest) {
            return posix.write(file.Fd(), data + at, rest);
        });
    const DWORD code = TransferAll(true, size, done, [&](DWORD at, DWORD rest) {
        return posix.pwrite(file.Fd(), data + at, rest, file.position + at);
    });
    file.position += done;
    return code;
}

// The position of a file's end; negative, with the last error set, when it has none.
off_t EndOf(const OpenFile& file)
{
    const off_t end = posix.lseek(file.Fd(), 0, SEEK_END);
    if (end < 0)
        SetLastError(CodeOf(errno));
    return end;
}

// What the distance counts from; negative, with the last error set, when there is no such place.
off_t BaseOf(const OpenFile& file, DWORD method)
{
    switch (method) {
    case FILE_BEGIN:
        return 0;
    case FILE_CURRENT:
        return file.position;
    case FILE_END:
        return EndOf(file);
    default:
        SetLastError(ERROR_INVALID_PARAMETER);
        return -1;
    }
}

DWORD MoveTo(OpenFile& file, off_t distance, DWORD method, PLONG high)
{
    const std::lock_guard lock(file.transfer);
    const off_t base = BaseOf(file, method);
    if (base < 0)
        return INVALID_SET_FILE_POINTER;
    off_t target;
    if (__builtin_add_overflow(base, distance, &target) || (!high && target > UINT_MAX)) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return INVALID_SET_FILE_POINTER;
    }
    if (target < 0) {
        SetLastError(ERROR_NEGATIVE_SEEK);
        return INVALID_SET_FILE_POINTER;
    }
    file.position = target;
    if (high)
        *high = static_cast<LONG>(target >> 32);
    const auto low = static_cast<DWORD>(target);
    if (low == INVALID_SET_FILE_POINTER)
        SetLastError(ERROR_SUCCESS);
    return low;
}

DWORD CheckTransfer(const OpenFile& file, unsigned right, LPOVERLAPPED overlapped)
{
    if (!file.Has(right))
        return ERROR_ACCESS_DENIED;
    if (S_ISDIR(file.held.mode))
        return ERROR_INVALID_FUNCTION;
    return overlapped ? ERROR_NOT_SUPPORTED : 0;
}

DWORD Cut(OpenFile& file)
{
    struct stat facts;
    if (!file.Has(RIGHT_WRITE))
        return ERROR_INVALID_PARAMETER;
    const std::lock_guard lock(file.transfer);
    if (posix.fstat(file.Fd(), &facts) != 0)
        return CodeOf(errno);
    if (file.position < facts.st_size && file.IsMapped())
        return ERROR_USER_MAPPED_FILE;
    return Retried([&] { return posix.ftruncate(file.Fd(), file.position); }) == 0 ? 0
                                                                                   : CodeOf(errno);
}
} // namespace

BOOL ReadFile(HANDLE hFile, LPVOID lpBuffer, DWORD nNumberOfBytesToRead,
              LPDWORD lpNumberOfBytesRead, LPOVERLAPPED lpOverlapped)
{
    DWORD done = 0;
    DWORD& count = lpNumberOfBytesRead ? *lpNumberOfBytesRead : done;
    count = 0;
    const Reference<OpenFile> file(hFile);
    if (!file)
        return FALSE;
    if (const DWORD code = CheckTransfer(*file, RIGHT_READ, lpOverlapped))
        return Finish(code);
    if (nNumberOfBytesToRead == 0)
        return TRUE;
    if (!lpBuffer)
        return Finish(ERROR_NOACCESS);
    return Finish(Read(*file, static_cast<char*>(lpBuffer), nNumberOfBytesToRead, count));
}

BOOL WriteFile(HANDLE hFile, LPCVOID lpBuffer, DWORD nNumberOfBytesToWrite,
               LPDWORD lpNumberOfBytesWritten, LPOVERLAPPED lpOverlapped)
{
    DWORD done = 0;
    DWORD& count = lpNumberOfBytesWritten ? *lpNumberOfBytesWritten : done;
    count = 0;
    const Reference<OpenFile> file(hFile);
    if (!file)
        return FALSE;
    if (const DWORD code = CheckTransfer(*file, RIGHT_WRITE, lpOverlapped))
        return Finish(code);
    if (nNumberOfBytesToWrite == 0)
        return TRUE;
    if (!lpBuffer)
        return Finish(ERROR_INVALID_USER_BUFFER);
    return Finish(Write(*file, static_cast<const char*>(lpBuffer), nNumberOfBytesToWrite, count));
}

DWORD SetFilePointer(HANDLE hFile, LONG lDistanceToMove, PLONG lpDistanceToMoveHigh,
                     DWORD dwMoveMethod)
{
    const Reference<OpenFile> file(hFile);
    if (!file)
        return INVALID_SET_FILE_POINTER;
    off_t distance = lDistanceToMove;
    if (lpDistanceToMoveHigh)
        distance = static_cast<off_t>(*lpDistanceToMoveHigh) * (off_t{1} << 32) +
                   static_cast<DWORD>(lDistanceToMove);
    return MoveTo(*file, distance, dwMoveMethod, lpDistanceToMoveHigh);
}

DWORD GetFileSize(HANDLE hFile, LPDWORD lpFileSizeHigh)
{
    const Reference<OpenFile> file(hFile);
    if (!file)
        return INVALID_FILE_SIZE;
    const off_t size = S_ISDIR(file->held.mode) ? 0 : EndOf(*file);
    if (size < 0)
        return INVALID_FILE_SIZE;
    if (lpFileSizeHigh)
        *lpFileSizeHigh = static_cast<DWORD>(size >> 32);
    const auto low = static_cast<DWORD>(size);
    if (low == INVALID_FILE_SIZE)
        SetLastError(ERROR_SUCCESS);
    return low;
}

BOOL SetEndOfFile(HANDLE hFile)
{
    const Reference<OpenFile> file(hFile);
    return file && Finish(Cut(*file));
}

BOOL FlushFileBuffers(HANDLE hFile)
{
    const Reference<OpenFile> file(hFile);
    if (!file)
        return FALSE;
    if (!file->Has(RIGHT_WRITE))
        return Finish(ERROR_ACCESS_DENIED);
    return Finish(Retried([&] { return posix.fsync(file->Fd()); }) == 0 ? 0 : CodeOf(errno));
}
} // namespace winapi
