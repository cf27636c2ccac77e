// winapi/Files/ShareMode.cpp
//
// Regions of REGION bytes from FIRST_REGION on: mapped; rights held (read, write, delete); rights
// denied (the same); behind them, to the end of all offsets, the byte ranges that are locked. A
// readable descriptor takes a read lock on a region's first byte, which all share. One that is only
// writable can't, and takes a write lock on some other byte of the region. Both are seen by whoever
// asks with a write lock over the whole region. Everybody announces first and asks then, so of two
// at least one sees the other.
#include "Files/ShareMode.h"

#include "Base/Posix.h"
#include "winapi/Errors/LastError.h"
#include "winapi/Process/Thread.h"

#include <algorithm>
#include <ctime>

namespace winapi
{
namespace
{
constexpr off_t REGION = off_t{1} << 40;
constexpr off_t FIRST_REGION = off_t{1} << 62;
constexpr int MAPPED = 0;
constexpr int HELD = 1;
constexpr int DENIED = 4;
constexpr off_t LOCKED = FIRST_REGION + 7 * REGION;
constexpr off_t TURNS = FIRST_REGION - 2; // one byte each
constexpr int TRIES = 5;
constexpr int FREE_BYTE_TRIES = 8;
// Whoever has the turn may wait for a disk that is busy with others' gigabytes.
constexpr time_t TURN_SECONDS = 60;

static_assert(LOCKED + LOCKABLE_END < INT64_MAX);

constexpr off_t StartOf(int region)
{
    return FIRST_REGION + region * REGION;
}

// 0 or the error number. A length of 0 reaches to the end of all offsets.
int SetLock(int fd, short type, off_t start, off_t length)
{
    struct flock lock = {};
    lock.l_type = type;
    lock.l_whence = SEEK_SET;
    lock.l_start = start;
    lock.l_len = length;
    return Retried([&] { return posix.fcntl(fd, F_OFD_SETLK, &lock); }) == 0 ? 0 : errno;
}

// Whether another description holds a lock of any type there.
bool IsLockedByOthers(int fd, off_t start, off_t length)
{
    struct flock lock = {};
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    lock.l_start = start;
    lock.l_len = length;
    return Retried([&] { return posix.fcntl(fd, F_OFD_GETLK, &lock); }) == 0 &&
           lock.l_type != F_UNLCK;
}

time_t Seconds()
{
    timespec now = {};
    posix.clock_gettime(CLOCK_MONOTONIC, &now);
    return now.tv_sec;
}

constexpr bool IsRefusal(int error)
{
    return error == EAGAIN || error == EACCES;
}

std::uint32_t Random()
{
    thread_local std::uint32_t state = 0;
    if (state == 0) {
        timespec now = {};
        posix.clock_gettime(CLOCK_MONOTONIC, &now);
        state = (static_cast<std::uint32_t>(now.tv_nsec) ^ GetCurrentThreadId() << 12) | 1;
    }
    state ^= state << 13;
    state ^= state >> 17;
    state ^= state << 5;
    return state;
}

// Longer from turn to turn, so that a crowd spreads; below a millisecond.
void WaitBefore(int turn)
{
    const timespec span = {0, static_cast<long>(Random() % (62'500U << turn))};
    posix.nanosleep(&span, nullptr);
}

void Mark(Lockable file, int region)
{
    if (file.readable) {
        SetLock(file.fd, F_RDLCK, StartOf(region), 1);
        return;
    }
    for (int i = 0; i < FREE_BYTE_TRIES; ++i)
        if (!IsRefusal(SetLock(file.fd, F_WRLCK, StartOf(region) + 1 + Random(), 1)))
            return;
}

// Calls for the region of each right in the set, from the given first region on, until one call
// returns true.
template <class Call>
bool ForRights(unsigned rights, int firstRegion, Call call)
{
    for (int i = 0; i < 3; ++i)
        if ((rights & 1U << i) != 0 && call(firstRegion + i))
            return true;
    return false;
}

void UnmarkAll(int fd)
{
    SetLock(fd, F_UNLCK, StartOf(HELD), LOCKED - StartOf(HELD));
}

bool TryToAnnounce(Lockable file, unsigned rights, unsigned denied)
{
    const auto mark = [&](int region) {
        Mark(file, region);
        return false;
    };
    ForRights(rights, HELD, mark);
    ForRights(denied, DENIED, mark);
    const auto marked = [&](int region) {
        return IsLockedByOthers(file.fd, StartOf(region), REGION);
    };
    if (!ForRights(rights, DENIED, marked) && !ForRights(denied, HELD, marked))
        return true;
    UnmarkAll(file.fd);
    return false;
}

bool TryToLock(Lockable file, off_t start, off_t length, bool& others)
{
    const int error = SetLock(file.fd, file.writable ? F_WRLCK : F_RDLCK, start, length);
    others = IsRefusal(error);
    if (others || file.writable || !IsLockedByOthers(file.fd, start, length))
        return !others;
    SetLock(file.fd, F_UNLCK, start, length);
    return false;
}
} // namespace

DWORD Announce(Lockable file, unsigned rights, unsigned shares)
{
    if (rights == 0)
        return 0;
    // Two that come at the same time may refuse each other: hence the tries, at random distances.
    for (int i = 0; i < TRIES; ++i) {
        if (i > 0)
            WaitBefore(i);
        if (TryToAnnounce(file, rights, RIGHTS_ALL & ~shares))
            return 0;
    }
    return ERROR_SHARING_VIOLATION;
}

void Withdraw(int fd)
{
    SetLock(fd, F_UNLCK, StartOf(HELD), 0);
}

void AnnounceMapping(int fd)
{
    SetLock(fd, F_RDLCK, StartOf(MAPPED), 1);
}

void WithdrawMapping(int fd)
{
    SetLock(fd, F_UNLCK, StartOf(MAPPED), 1);
}

bool IsMappedByOthers(int fd)
{
    return IsLockedByOthers(fd, StartOf(MAPPED), REGION);
}

DWORD LockRange(Lockable file, off_t offset, off_t length)
{
    for (int i = 0; i < TRIES; ++i) {
        bool others;
        if (TryToLock(file, LOCKED + offset, length, others))
            return 0;
        if (others)
            break;
        WaitBefore(i);
    }
    return ERROR_LOCK_VIOLATION;
}

void UnlockRange(int fd, off_t offset, off_t length)
{
    SetLock(fd, F_UNLCK, LOCKED + offset, length);
}

DWORD TakeTurn(Lockable file, Turn turn, bool shared)
{
    const short type = shared ? F_RDLCK : F_WRLCK;
    const off_t place = TURNS + static_cast<int>(turn);
    const time_t end = Seconds() + TURN_SECONDS;
    for (int i = 0; IsRefusal(SetLock(file.fd, type, place, 1)); i = std::min(i + 1, TRIES)) {
        if (Seconds() > end)
            return ERROR_SHARING_VIOLATION;
        WaitBefore(i);
    }
    return 0;
}
} // namespace winapi
