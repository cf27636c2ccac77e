// winapi/Messages/Exchange.cpp
#include "Messages/Exchange.h"

#include "Errors/Failure.h"
#include "winapi/Memory/Global.h"

#include <cstring>
#include <mutex>
#include <vector>

namespace winapi
{
namespace
{
constexpr WORD RELEASE = 0x2000; // The receiver frees the block.

struct Parts
{
    UINT_PTR low;
    UINT_PTR high;
};

// A copy that isn't its receiver's own.
struct Lent
{
    HWND window;
    HWND partner;
    ATOM item;       // 0 for a command.
    HGLOBAL copy;    // Here.
    UINT_PTR sender; // The handle there, of a command.
};

// Never destroyed: services may be called until the very end.
struct LentCopies
{
    std::mutex mutex;
    std::vector<Lent> list;
};

LentCopies& Copies()
{
    static LentCopies* const copies = new LentCopies;
    return *copies;
}

bool HasRecord(UINT message)
{
    return message == WM_DDE_ACK || message == WM_DDE_DATA || message == WM_DDE_POKE ||
           message == WM_DDE_ADVISE;
}

HGLOBAL BlockOf(UINT_PTR value)
{
    return reinterpret_cast<HGLOBAL>(value);
}

WORD FlagsOf(HGLOBAL block)
{
    WORD flags = 0;
    if (GlobalSize(block) >= sizeof flags) {
        std::memcpy(&flags, GlobalLock(block), sizeof flags);
        GlobalUnlock(block);
    }
    return flags;
}

// Copies a block's contents into a letter; none for null.
DWORD CopyContents(HGLOBAL block, Letter& letter)
{
    if (!block)
        return 0;
    SetLastError(0);
    const SIZE_T size = GlobalSize(block);
    if (size == 0 && GetLastError())
        return ERROR_INVALID_HANDLE;
    if (size) {
        letter.contents.assign(static_cast<const char*>(GlobalLock(block)), size);
        GlobalUnlock(block);
    }
    letter.record.hasBlock = 1;
    letter.record.size = size;
    return 0;
}

HGLOBAL NewBlock(const std::string& contents)
{
    const HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE | GMEM_DDESHARE, contents.size());
    if (block && !contents.empty()) {
        std::memcpy(GlobalLock(block), contents.data(), contents.size());
        GlobalUnlock(block);
    }
    return block;
}

void Lend(const Record& record, ATOM item, HGLOBAL copy)
{
    LentCopies& copies = Copies();
    const std::lock_guard lock(copies.mutex);
    copies.list.push_back({WindowOf(record.window), WindowOf(record.first), item, copy,
                           record.message == WM_DDE_EXECUTE ? record.high : 0});
}

// Frees the copies for which that holds.
template <class Condition>
void FreeWhere(Condition condition)
{
    LentCopies& copies = Copies();
    const std::lock_guard lock(copies.mutex);
    std::erase_if(copies.list, [&](const Lent& lent) {
        const bool ends = condition(lent);
        if (ends)
            GlobalFree(lent.copy);
        return ends;
    });
}

// The handle that a command's sender knows its block by.
UINT_PTR SendersHandle(UINT_PTR value)
{
    LentCopies& copies = Copies();
    const std::lock_guard lock(copies.mutex);
    for (const Lent& lent : copies.list)
        if (lent.sender && lent.copy == BlockOf(value))
            return lent.sender;
    return value;
}

// What an acknowledgement ends: of a command its copy, else what came for the item.
void FreeAcknowledged(HWND window, HWND partner, UINT_PTR high)
{
    FreeWhere([&](const Lent& lent) {
        return lent.window == window && lent.partner == partner &&
               (lent.sender ? lent.copy == BlockOf(high) : lent.item == high);
    });
}

bool ImportBlock(const Letter& letter, LPARAM& parameter)
{
    const Record& record = letter.record;
    const HGLOBAL block = record.hasBlock ? NewBlock(letter.contents) : nullptr;
    const bool isCommand = record.message == WM_DDE_EXECUTE;
    if (!block && (record.hasBlock || isCommand))
        return false;
    const auto low = reinterpret_cast<UINT_PTR>(block);
    parameter = isCommand ? PackDDElParam(record.message, 0, low)
                          : PackDDElParam(record.message, low, record.high);
    if (!parameter) {
        GlobalFree(block);
        return false;
    }
    const bool isValue = record.message == WM_DDE_DATA || record.message == WM_DDE_POKE;
    if (isCommand)
        Lend(record, 0, block);
    else if (block && isValue && !(FlagsOf(block) & RELEASE))
        Lend(record, static_cast<ATOM>(record.high), block);
    return true;
}
} // namespace

LPARAM PackDDElParam(UINT message, UINT_PTR low, UINT_PTR high)
{
    if (message == WM_DDE_EXECUTE)
        return static_cast<LPARAM>(high);
    if (!HasRecord(message))
        return static_cast<LPARAM>((high & 0xFFFF) << 16 | (low & 0xFFFF));
    const HGLOBAL record = GlobalAlloc(GMEM_MOVEABLE | GMEM_DDESHARE, sizeof(Parts));
    if (!record)
        return 0;
    const Parts parts{low, high};
    std::memcpy(GlobalLock(record), &parts, sizeof parts);
    GlobalUnlock(record);
    return reinterpret_cast<LPARAM>(record);
}

BOOL UnpackDDElParam(UINT message, LPARAM parameter, UINT_PTR* low, UINT_PTR* high)
{
    const auto value = static_cast<UINT_PTR>(parameter);
    Parts parts{};
    bool found = true;
    if (message == WM_DDE_EXECUTE)
        parts.high = value;
    else if (!HasRecord(message))
        parts = {value & 0xFFFF, value >> 16 & 0xFFFF};
    else {
        const HGLOBAL record = BlockOf(value);
        found = GlobalSize(record) == sizeof parts;
        if (found) {
            std::memcpy(&parts, GlobalLock(record), sizeof parts);
            GlobalUnlock(record);
        }
    }
    if (low)
        *low = parts.low;
    if (high)
        *high = parts.high;
    return found;
}

BOOL FreeDDElParam(UINT message, LPARAM parameter)
{
    return !HasRecord(message) || GlobalFree(BlockOf(static_cast<UINT_PTR>(parameter))) == nullptr;
}

bool HasParts(UINT message)
{
    return HasRecord(message) || message == WM_DDE_EXECUTE;
}

DWORD Export(UINT message, LPARAM parameter, Letter& letter)
{
    UINT_PTR low, high;
    if (!UnpackDDElParam(message, parameter, &low, &high))
        return ERROR_INVALID_PARAMETER;
    letter.record.kind = Record::PARTS;
    letter.record.high = high;
    if (message == WM_DDE_EXECUTE)
        return CopyContents(BlockOf(high), letter);
    if (message != WM_DDE_ACK)
        return CopyContents(BlockOf(low), letter);
    letter.record.second = low;
    letter.record.high = SendersHandle(high);
    return 0;
}

void AfterExport(HWND to, HWND from, UINT message, LPARAM parameter)
{
    UINT_PTR low, high;
    UnpackDDElParam(message, parameter, &low, &high);
    FreeDDElParam(message, parameter);
    const HGLOBAL block = BlockOf(low);
    if (message == WM_DDE_ADVISE)
        GlobalFree(block);
    else if ((message == WM_DDE_DATA || message == WM_DDE_POKE) && FlagsOf(block) & RELEASE)
        GlobalFree(block);
    else if (message == WM_DDE_ACK)
        FreeAcknowledged(from, to, high);
    else if (message == WM_DDE_TERMINATE)
        FreeLentBy(to, from);
}

bool Import(const Letter& letter, LPARAM& parameter)
{
    const Record& record = letter.record;
    if (!HasParts(record.message))
        return false;
    if (record.message != WM_DDE_ACK)
        return ImportBlock(letter, parameter);
    parameter = PackDDElParam(WM_DDE_ACK, record.second, record.high);
    return parameter != 0;
}

void Discard(UINT message, LPARAM parameter)
{
    UINT_PTR low, high;
    UnpackDDElParam(message, parameter, &low, &high);
    FreeDDElParam(message, parameter);
    if (message == WM_DDE_DATA || message == WM_DDE_POKE || message == WM_DDE_ADVISE)
        GlobalFree(BlockOf(low));
}

void FreeLentBy(HWND partner, HWND window)
{
    FreeWhere([&](const Lent& lent) { return lent.window == window && lent.partner == partner; });
}

void FreeLent(HWND window)
{
    FreeWhere([&](const Lent& lent) { return lent.window == window; });
}

void LockLent()
{
    Copies().mutex.lock();
}

void UnlockLent()
{
    Copies().mutex.unlock();
}

void ForgetLent()
{
    Copies().list.clear();
    UnlockLent();
}
} // namespace winapi
