// winapi/FileLock.cpp: byte-range locks.
#include "Failure.h"
#include "OpenFile.h"
#include "winapi/File.h"

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
} // namespace

BOOL LockFile(HANDLE hFile, DWORD dwFileOffsetLow, DWORD dwFileOffsetHigh,
              DWORD nNumberOfBytesToLockLow, DWORD nNumberOfBytesToLockHigh)
{
    return Guarded(FALSE, [&]() -> BOOL {
        const Reference<OpenFile> file(hFile);
        if (!file)
            return FALSE;
        OpenFile::Range range;
        if (!ToRange(Join(dwFileOffsetHigh, dwFileOffsetLow),
                     Join(nNumberOfBytesToLockHigh, nNumberOfBytesToLockLow), range))
            return Finish(ERROR_INVALID_PARAMETER);
        return Finish(Lock(*file, range));
    });
}

BOOL UnlockFile(HANDLE hFile, DWORD dwFileOffsetLow, DWORD dwFileOffsetHigh,
                DWORD nNumberOfBytesToUnlockLow, DWORD nNumberOfBytesToUnlockHigh)
{
    return Guarded(FALSE, [&]() -> BOOL {
        const Reference<OpenFile> file(hFile);
        if (!file)
            return FALSE;
        OpenFile::Range range;
        if (!ToRange(Join(dwFileOffsetHigh, dwFileOffsetLow),
                     Join(nNumberOfBytesToUnlockHigh, nNumberOfBytesToUnlockLow), range))
            return Finish(ERROR_NOT_LOCKED);
        return Finish(Unlock(*file, range));
    });
}
} // namespace winapi
