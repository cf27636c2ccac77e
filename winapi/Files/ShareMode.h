// winapi/Files/ShareMode.h: share modes and byte-range locks, by locks on the file itself.
//
// The host knows no share modes. So whoever opens a file announces what it holds and what it
// doesn't share, by locks of its open file description far above any real offset, and asks whether
// somebody else's announcement stands against it. They hold between processes as between two
// handles of one, and end with their holder, however it ends. A file system without such locks
// shares everything.
#pragma once

#include "winapi/Base/Types.h"

#include <sys/types.h>

namespace winapi
{
constexpr unsigned RIGHT_READ = 1;
constexpr unsigned RIGHT_WRITE = 2;
constexpr unsigned RIGHT_DELETE = 4;
constexpr unsigned RIGHTS_ALL = RIGHT_READ | RIGHT_WRITE | RIGHT_DELETE;

// How a descriptor was opened decides which locks it can take.
struct Lockable
{
    int fd;
    bool readable;
    bool writable;
};

// Announces the rights held and those shared with others (RIGHT_... bits), then asks. Result: 0, or
// ERROR_SHARING_VIOLATION (32) when another holder stands against it; then nothing stays announced.
// Without rights nothing is announced or refused.
DWORD Announce(Lockable file, unsigned rights, unsigned shares);
// Ends the announcement and all byte-range locks.
void Withdraw(int fd);

// Announces a mapping of the file, and ends that.
void AnnounceMapping(int fd);
void WithdrawMapping(int fd);
// Whether another description of the file is mapped.
bool IsMappedByOthers(int fd);

// Locks a range of bytes for this description alone. Result: 0, or ERROR_LOCK_VIOLATION (33) when
// another holds a part of it.
constexpr off_t LOCKABLE_END = (off_t{1} << 62) - (off_t{8} << 40);
DWORD LockRange(Lockable file, off_t offset, off_t length);
void UnlockRange(int fd, off_t offset, off_t length);

// What those take turns at who replace a file as a whole: the rewriting, and its contents, which
// readers share. A turn is waited for, and ends with the descriptor. Result: 0, or
// ERROR_SHARING_VIOLATION after a minute.
enum class Turn
{
    REWRITING,
    CONTENTS,
};
DWORD TakeTurn(Lockable file, Turn turn, bool shared);
} // namespace winapi
