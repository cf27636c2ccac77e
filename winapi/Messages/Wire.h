// winapi/Messages/Wire.h: how a message goes to another thread.
//
// Each thread with windows listens on a socket in the session's folder. A message is a connection: a
// record goes there, for one that is sent the answer comes back, and the end of either side closes
// it. Contents above MOST_INLINE go along as a file in memory, sealed against changes. Both sides
// know that the other is the same user; what isn't a record is dropped without an answer.
#pragma once

#include "Base/Posix.h"
#include "winapi/Messages/Message.h"

#include <string>

namespace winapi
{
struct Record
{
    enum : std::uint32_t
    {
        POST = 1,   // A message with its two numbers.
        PARTS = 2,  // One that is posted, of a conversation, with the parts of its second number.
        SEND = 3,   // One that is answered.
        ANSWER = 4, // The result in second.
    };
    static constexpr std::uint32_t MARK = 0x014D734F; // "OsM", and the form of this.

    std::uint32_t mark = MARK;
    std::uint32_t kind = 0;
    std::uint32_t window = 0;
    std::uint32_t message = 0;
    std::uint64_t first = 0;
    std::uint64_t second = 0; // Of parts the low one, unless that is a block.
    std::uint64_t high = 0;   // Of parts; for a command the sender's handle.
    std::uint32_t hasBlock = 0;
    std::uint32_t reserved = 0;
    std::uint64_t size = 0; // Of the block's contents, which stand behind.
};

struct Letter
{
    Record record;
    std::string contents;
};

constexpr std::size_t MOST_INLINE = 0x10000;
// Contents above that aren't sent, and aren't taken: a file in memory can claim any size without
// having it.
constexpr std::size_t MOST_APART = 0x10000000;

inline std::uint32_t NumberOf(HWND window)
{
    return static_cast<std::uint32_t>(reinterpret_cast<UINT_PTR>(window));
}

inline HWND WindowOf(std::uint64_t number)
{
    return reinterpret_cast<HWND>(static_cast<UINT_PTR>(number));
}

// Listens under a name in the session's folder. No descriptor, with errno, if that fails.
Descriptor Listen(const std::string& name);
// The next connection of a process of the same user, and that process; no descriptor, with errno,
// when none waits (EAGAIN) or it can't be had. Those of others are closed.
Descriptor Accept(int listener, pid_t& process);

// A connection to that name, which never waits. Failure: ERROR_INVALID_WINDOW_HANDLE (1400) when
// nobody listens there, or another user; ERROR_NOT_ENOUGH_QUOTA (1816) when it takes no more.
DWORD Connect(const std::string& name, Descriptor& connection);

// Result: 0 or the code of the failure; ERROR_NOT_ENOUGH_MEMORY (8) for contents above MOST_APART.
DWORD SendLetter(int connection, const Letter& letter);

enum class Arrival
{
    NOTHING, // Not yet.
    BROKEN,  // The other side has ended, it is no record, or there is no memory for it.
    LETTER
};
Arrival ReceiveLetter(int connection, Letter& letter);
} // namespace winapi
