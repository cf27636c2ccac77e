// winapi/Base/Handles.cpp
//
// Slots lie in chunks that double in size and are never moved or freed, so that a look-up needs no
// lock. The state of a slot is one word: generation, whether the handle is open, and a count of
// holds, of which the open handle is one. Whoever gives back the last hold destroys the object and
// queues the slot for reuse. Slots rest in that queue while it is short, so that a closed handle's
// value comes round late.
#include "Base/Handles.h"

#include "winapi/Errors/LastError.h"

#include <atomic>
#include <bit>
#include <mutex>
#include <new>

namespace winapi
{
struct Slot
{
    std::atomic<std::uint64_t> state{0};
    Object* object = nullptr;
    Slot* nextFree = nullptr;
    std::uint32_t number = 0;
};

namespace
{
constexpr unsigned INDEX_BITS = 24;
constexpr unsigned GENERATION_BITS = 5;
constexpr std::uint32_t FIRST_CHUNK = 64;
constexpr std::uint32_t LAST_NUMBER = (1U << INDEX_BITS) - 1;
constexpr unsigned CHUNKS = INDEX_BITS - 6;
constexpr std::uint32_t RESTING = 64;

constexpr std::uint64_t HOLD = 1;
constexpr std::uint64_t HOLDS = 0xFFFFFFFF;
constexpr std::uint64_t OPEN = HOLDS + 1;
constexpr unsigned GENERATION_SHIFT = 33;
constexpr std::uint64_t GENERATIONS = (1U << GENERATION_BITS) - 1;

struct Table
{
    std::atomic<Slot*> chunks[CHUNKS];
    std::mutex mutex; // What follows.
    std::uint32_t count = 0;
    std::uint32_t free = 0;
    Slot* firstFree = nullptr;
    Slot* lastFree = nullptr;
};

constinit Table table;

// Numbers count from 1: 0 is no handle. Chunk n begins at the number FIRST_CHUNK * (2^n - 1) + 1.
Slot* Find(std::uint32_t number)
{
    const std::uint32_t place = number - 1 + FIRST_CHUNK;
    const unsigned chunk = static_cast<unsigned>(std::bit_width(place / FIRST_CHUNK)) - 1;
    if (number == 0 || chunk >= CHUNKS)
        return nullptr;
    Slot* const slots = table.chunks[chunk].load(std::memory_order_acquire);
    return slots ? slots + (place - (FIRST_CHUNK << chunk)) : nullptr;
}

constexpr std::uint64_t GenerationOf(std::uint64_t state)
{
    return state >> GENERATION_SHIFT & GENERATIONS;
}

struct Value
{
    explicit Value(HANDLE handle)
    {
        const auto bits = reinterpret_cast<std::uintptr_t>(handle);
        valid = bits < 1U << 31 && bits % 4 == 0;
        number = static_cast<std::uint32_t>(bits >> 2) & LAST_NUMBER;
        generation = bits >> (INDEX_BITS + 2) & GENERATIONS;
    }

    bool Names(std::uint64_t state) const
    {
        return (state & OPEN) != 0 && GenerationOf(state) == generation;
    }

    bool valid;
    std::uint32_t number;
    std::uint64_t generation;
};

void Give(Slot* slot)
{
    const std::lock_guard lock(table.mutex);
    slot->nextFree = nullptr;
    (table.lastFree ? table.lastFree->nextFree : table.firstFree) = slot;
    table.lastFree = slot;
    ++table.free;
}

void Drop(Slot* slot)
{
    const std::uint64_t before = slot->state.fetch_sub(HOLD, std::memory_order_acq_rel);
    if ((before & HOLDS) != HOLD)
        return;
    delete std::exchange(slot->object, nullptr);
    slot->state.store((GenerationOf(before) + 1) << GENERATION_SHIFT, std::memory_order_relaxed);
    Give(slot);
}

// The number of a slot that was never used, its chunk made where that is needed; 0 when there is
// none left.
std::uint32_t NewNumber()
{
    const std::uint32_t number = table.count + 1;
    if (number > LAST_NUMBER)
        return 0;
    if (!Find(number)) {
        const std::uint32_t size = number - 1 + FIRST_CHUNK;
        const unsigned chunk = static_cast<unsigned>(std::bit_width(size / FIRST_CHUNK)) - 1;
        table.chunks[chunk].store(new Slot[size], std::memory_order_release);
    }
    return ++table.count;
}

Slot* Take()
{
    const std::lock_guard lock(table.mutex);
    if (table.free < RESTING)
        if (const std::uint32_t number = NewNumber()) {
            Slot* const slot = Find(number);
            slot->number = number;
            return slot;
        }
    Slot* const slot = table.firstFree;
    if (slot) {
        table.firstFree = slot->nextFree;
        if (!table.firstFree)
            table.lastFree = nullptr;
        --table.free;
    }
    return slot;
}
} // namespace

AnyReference::AnyReference(HANDLE handle)
{
    const Value value(handle);
    Slot* const found = value.valid ? Find(value.number) : nullptr;
    if (!found)
        return;
    std::uint64_t state = found->state.load(std::memory_order_relaxed);
    do
        if (!value.Names(state))
            return;
    while (!found->state.compare_exchange_weak(state, state + HOLD, std::memory_order_acquire,
                                               std::memory_order_relaxed));
    slot = found;
}

AnyReference::~AnyReference()
{
    if (slot)
        Drop(slot);
}

Object* AnyReference::Get() const
{
    return slot ? slot->object : nullptr;
}

void TellInvalidHandle()
{
    SetLastError(ERROR_INVALID_HANDLE);
}

HANDLE MakeHandle(std::unique_ptr<Object> object)
{
    Slot* const slot = Take();
    if (!slot) {
        SetLastError(ERROR_TOO_MANY_OPEN_FILES);
        return nullptr;
    }
    slot->object = object.release();
    const std::uint64_t generation = GenerationOf(slot->state.load(std::memory_order_relaxed));
    slot->state.store(generation << GENERATION_SHIFT | OPEN | HOLD, std::memory_order_release);
    return reinterpret_cast<HANDLE>(static_cast<std::uintptr_t>(generation) << (INDEX_BITS + 2) |
                                    static_cast<std::uintptr_t>(slot->number) << 2);
}

bool ReleaseHandle(HANDLE handle, bool search)
{
    const Value value(handle);
    const AnyReference reference(handle);
    Object* const object = reference.Get();
    if (!object || (object->kind == Kind::SEARCH) != search) {
        TellInvalidHandle();
        return false;
    }
    Slot* const slot = Find(value.number);
    std::uint64_t state = slot->state.load(std::memory_order_relaxed);
    do
        if (!value.Names(state)) {
            TellInvalidHandle();
            return false;
        }
    while (!slot->state.compare_exchange_weak(state, state & ~OPEN, std::memory_order_acq_rel,
                                              std::memory_order_relaxed));
    object->Closed();
    Drop(slot); // The open handle's own hold.
    return true;
}
} // namespace winapi
