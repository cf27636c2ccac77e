// tests/Faults/FailingHeap.cpp
#include "Faults/FailingHeap.h"

#include "Faults/Swept.h"

#include <windows.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#ifdef _WIN32
#include <Ostra/Frame/OstraDLLMain.h>

// The loader calls the entry of a library; here it is part of the program. Behind the library's own
// statics.
static const BOOL attached = DllMain(GetModuleHandleA(nullptr), DLL_PROCESS_ATTACH, nullptr);
#endif

extern "C"
{
    void* __real_malloc(std::size_t size);
    void* __real_calloc(std::size_t count, std::size_t size);
    void* __real_realloc(void* block, std::size_t size);
    void __real_free(void* block);
}

namespace
{
// The blocks counted: a table with open addressing, since the heap itself can't be asked for room
// here.
class Blocks
{
public:
    void Clear()
    {
        std::memset(slots, 0, sizeof(slots));
        count = 0;
    }
    void Add(void* block)
    {
        if (count >= SLOTS / 2)
            std::abort();
        *Find(block) = block;
        ++count;
    }
    void Remove(void* block)
    {
        void** slot = Find(block);
        if (!block || *slot != block)
            return;
        *slot = nullptr;
        --count;
        // Closes the gap: what stands behind it may belong before it.
        for (std::size_t n = Next(slot - slots); slots[n]; n = Next(n)) {
            void* moved = slots[n];
            slots[n] = nullptr;
            *Find(moved) = moved;
        }
    }
    unsigned Count() const { return count; }

private:
    static constexpr std::size_t SLOTS = 1 << 16;

    static std::size_t Next(std::size_t n) { return (n + 1) % SLOTS; }
    void** Find(void* block)
    {
        std::size_t n = reinterpret_cast<std::uintptr_t>(block) / 16 * 40503 % SLOTS;
        while (slots[n] && slots[n] != block)
            n = Next(n);
        return &slots[n];
    }

    void* slots[SLOTS];
    unsigned count;
};

Blocks blocks;
DWORD tracking_thread;
DWORD armed_thread;
unsigned asked;
unsigned failed;
unsigned fail_at;
FailingHeap::Mode fail_mode;

bool Fails()
{
    if (armed_thread == 0 || armed_thread != GetCurrentThreadId())
        return false;
    ++asked;
    const bool fails =
        fail_at && (fail_mode == FailingHeap::ONCE ? asked == fail_at : asked >= fail_at);
    failed += fails;
    if (fails)
        Swept::Mark(Swept::HEAP);
    return fails;
}

bool IsTracked()
{
    return tracking_thread != 0 && tracking_thread == GetCurrentThreadId();
}

void* Counted(void* block)
{
    if (block && IsTracked())
        blocks.Add(block);
    return block;
}

void Uncount(void* block)
{
    if (IsTracked())
        blocks.Remove(block);
}
} // namespace

void FailingHeap::Arm(unsigned number, Mode mode)
{
    asked = 0;
    failed = 0;
    fail_at = number;
    fail_mode = mode;
    armed_thread = GetCurrentThreadId();
}

unsigned FailingHeap::Disarm()
{
    armed_thread = 0;
    return failed;
}

unsigned FailingHeap::Asked()
{
    return asked;
}

void FailingHeap::Track()
{
    blocks.Clear();
    tracking_thread = GetCurrentThreadId();
}

unsigned FailingHeap::Live()
{
    tracking_thread = 0;
    return blocks.Count();
}

extern "C"
{
    void* __wrap_malloc(std::size_t size)
    {
        return Fails() ? nullptr : Counted(__real_malloc(size));
    }

    void* __wrap_calloc(std::size_t count, std::size_t size)
    {
        return Fails() ? nullptr : Counted(__real_calloc(count, size));
    }

    void* __wrap_realloc(void* block, std::size_t size)
    {
        if (Fails())
            return nullptr;
        Uncount(block);
        void* moved = __real_realloc(block, size);
        return Counted(moved ? moved : block);
    }

    void __wrap_free(void* block)
    {
        Uncount(block);
        __real_free(block);
    }
}
