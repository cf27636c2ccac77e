// winapi/Files/FileLock.cpp: byte-range locks.
#include "Errors/Failure.h"
#include "Files/OpenFile.h"
#include "winapi/Files/File.h"

#include <algorithm>

namespace winapi
{
namespace
{
constexpr off_t Join(DWORD high, DWORD low)
{
    return static_cast<off_t>(static_cast<std::uint64_t>(high) << 32 | low);
}

// The range as offsets of the host; false when it reaches beyond what can be locked.
bool ToRange(off_t offset, off_t length, OpenFile::Range& range)
{
    range = {offset, length};
    return offset >= 0 && length >= 0 && offset < LOCKABLE_END && length < LOCKABLE_END - offset;
}

bool Overlaps(const OpenFile::Range& a, const OpenFile::Range& b)
{
    return a.length > 0 && b.length > 0 && a.offset < b.offset + b.length &&
           b.offset < a.offset + a.length;
}

DWORD Lock(OpenFile& file, const OpenFile::Range& range)
{
    if (!file.Has(RIGHT_READ | RIGHT_WRITE))
        return ERROR_ACCESS_DENIED;
    const std::lock_guard lock(file.lists);
    for (const OpenFile::Range& other : file.locked)
        if (Overlaps(range, other))
            return ERROR_LOCK_VIOLATION;
    file.locked.reserve(file.locked.size() + 1);
    // A range of no bytes locks nothing, but it is to be unlocked like any other.
    if (range.length > 0)
        if (const DWORD code = LockRange(file.held.ForLocks(), range.offset, range.length))
            return code;
    file.locked.push_back(range);
    return 0;
}

DWORD Unlock(OpenFile& file, const OpenFile::Range& range)
{
    const std::lock_guard lock(file.lists);
    const auto found =
        std::find_if(file.locked.begin(), file.locked.end(), [&](const OpenFile::Range& other) {
            return other.offset == range.offset && other.length == range.length;
        });
    if (found == file.locked.end())
        return ERROR_NOT_LOCKED;
    file.locked.erase(found);
    if (range.length > 0)
        UnlockRange(file.Fd(), range.offset, range.length);
    return 0;
}

// Does one of the two to a range of a file; a range that no file has is an error of the call's own.
BOOL ChangeLock(HANDLE handle, off_t offset, off_t length, DWORD noRange,
                DWORD (*change)(OpenFile&, const OpenFile::Range&))
{
    return Guarded(FALSE, [&]() -> BOOL {
        const Reference<OpenFile> file(handle);
        if (!file)
            return FALSE;
        OpenFile::Range range;
        return Finish(ToRange(offset, length, range) ? change(*file, range) : noRange);
    });
}
} // namespace

BOOL LockFile(HANDLE hFile, DWORD dwFileOffsetLow, DWORD dwFileOffsetHigh,
              DWORD nNumberOfBytesToLockLow, DWORD nNumberOfBytesToLockHigh)
{
    return ChangeLock(hFile, Join(dwFileOffsetHigh, dwFileOffsetLow),
                      Join(nNumberOfBytesToLockHigh, nNumberOfBytesToLockLow),
                      ERROR_INVALID_PARAMETER, Lock);
}

BOOL UnlockFile(HANDLE hFile, DWORD dwFileOffsetLow, DWORD dwFileOffsetHigh,
                DWORD nNumberOfBytesToUnlockLow, DWORD nNumberOfBytesToUnlockHigh)
{
    return ChangeLock(hFile, Join(dwFileOffsetHigh, dwFileOffsetLow),
                      Join(nNumberOfBytesToUnlockHigh, nNumberOfBytesToUnlockLow), ERROR_NOT_LOCKED,
                      Unlock);
}
} // namespace winapi
