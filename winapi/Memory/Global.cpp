// winapi/Memory/Global.cpp: blocks of memory that go from hand to hand.
//
// Every block stands in a table, so that any value may be passed. The handles of movable blocks are
// counted, and odd multiples of 2: no address of a block and no other handle has such a value.
#include "winapi/Memory/Global.h"

#include "Errors/Failure.h"

#include <cstdlib>
#include <memory>
#include <mutex>
#include <new>
#include <unordered_map>

#include <pthread.h>

namespace winapi
{
namespace
{
constexpr unsigned MOST_LOCKS = 255;

struct Free
{
    void operator()(void* memory) const { std::free(memory); }
};

using Memory = std::unique_ptr<void, Free>;

struct Block
{
    Memory memory; // None for a movable block of no bytes.
    SIZE_T size;
    bool isFixed;
    unsigned locks = 0;
};

// Never destroyed: services may be called until the very end.
struct Table
{
    std::mutex mutex;
    std::unordered_map<HGLOBAL, Block> blocks;
    std::uintptr_t made = 0;
};

Table& Blocks()
{
    static Table* const table = new Table;
    return *table;
}

void Lock()
{
    Blocks().mutex.lock();
}

void Unlock()
{
    Blocks().mutex.unlock();
}

// A child has the blocks, and may use them. As early as this: it is the last that a fork waits for,
// as who holds something else may ask for a block.
__attribute__((constructor(200))) void MakeForksWait()
{
    pthread_atfork(Lock, Unlock, Unlock);
}

HGLOBAL NewHandle(Table& table)
{
    return reinterpret_cast<HGLOBAL>(table.made++ * 4 + 2);
}

Memory Allocate(SIZE_T size, bool clear)
{
    if (size > PTRDIFF_MAX)
        throw std::bad_alloc();
    Memory memory(clear ? std::calloc(size + !size, 1) : std::malloc(size + !size));
    if (!memory)
        throw std::bad_alloc();
    return memory;
}

// What the body makes of the block, or of null, with the table to itself.
template <class Result, class Body>
Result With(HGLOBAL handle, Result failure, Body body)
{
    return Guarded(failure, [&] {
        Table& table = Blocks();
        const std::lock_guard lock(table.mutex);
        const auto found = table.blocks.find(handle);
        if (found != table.blocks.end())
            return body(table, found);
        SetLastError(ERROR_INVALID_HANDLE);
        return failure;
    });
}
} // namespace

HGLOBAL GlobalAlloc(UINT flags, SIZE_T size)
{
    return Guarded(HGLOBAL(nullptr), [&] {
        const bool isFixed = !(flags & GMEM_MOVEABLE);
        Block block{isFixed || size ? Allocate(size, flags & GMEM_ZEROINIT) : nullptr, size,
                    isFixed};
        Table& table = Blocks();
        const std::lock_guard lock(table.mutex);
        const HGLOBAL handle = isFixed ? block.memory.get() : NewHandle(table);
        table.blocks.emplace(handle, std::move(block));
        return handle;
    });
}

LPVOID GlobalLock(HGLOBAL handle)
{
    if (!handle)
        return nullptr;
    return With(handle, LPVOID(nullptr), [](Table&, auto found) {
        Block& block = found->second;
        if (!block.memory)
            SetLastError(ERROR_DISCARDED);
        else if (!block.isFixed && block.locks < MOST_LOCKS)
            ++block.locks;
        return block.memory.get();
    });
}

BOOL GlobalUnlock(HGLOBAL handle)
{
    return With(handle, FALSE, [](Table&, auto found) {
        Block& block = found->second;
        if (block.isFixed)
            return TRUE;
        if (block.locks)
            --block.locks;
        else {
            SetLastError(ERROR_NOT_LOCKED);
            return FALSE;
        }
        if (!block.locks)
            SetLastError(ERROR_SUCCESS);
        return BOOL(block.locks != 0);
    });
}

SIZE_T GlobalSize(HGLOBAL handle)
{
    return With(handle, SIZE_T(0), [](Table&, auto found) { return found->second.size; });
}

HGLOBAL GlobalFree(HGLOBAL handle)
{
    if (!handle)
        return nullptr;
    return With(handle, handle, [](Table& table, auto found) {
        table.blocks.erase(found);
        return HGLOBAL(nullptr);
    });
}
} // namespace winapi
