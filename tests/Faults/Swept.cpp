// tests/Faults/Swept.cpp
#include "Faults/Swept.h"

#ifdef OSTRA_TRACED
#include <execinfo.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <mutex>

extern "C" const char __executable_start;

namespace
{
// No heap: the heap is what fails.
constexpr std::size_t SLOTS = 1 << 16;
constexpr int DEPTH = 200;

std::uintptr_t places[Swept::KINDS][SLOTS];
std::size_t counts[Swept::KINDS];
std::mutex turn;

void Add(Swept::Kind kind, std::uintptr_t place)
{
    std::size_t slot = place * 40503 % SLOTS;
    while (places[kind][slot] && places[kind][slot] != place)
        slot = (slot + 1) % SLOTS;
    counts[kind] += !places[kind][slot];
    if (counts[kind] > SLOTS / 2)
        std::abort();
    places[kind][slot] = place;
}

void Write()
{
    const char* const name = std::getenv("OSTRA_SWEPT");
    std::FILE* const file = name ? std::fopen(name, "w") : nullptr;
    if (!file)
        return;
    for (int kind = 0; kind < Swept::KINDS; ++kind)
        for (const std::uintptr_t place : places[kind])
            if (place)
                std::fprintf(file, "%s %jx\n", kind == Swept::HEAP ? "heap" : "service",
                             static_cast<std::uintmax_t>(place));
    std::fclose(file);
}

// The first look at the stack makes something that stays.
[[maybe_unused]] const bool ready = [] {
    void* first[1];
    backtrace(first, 1);
    return std::atexit(Write) == 0;
}();
} // namespace

void Swept::Mark(Kind kind)
{
    void* stack[DEPTH];
    const int depth = backtrace(stack, DEPTH);
    const std::lock_guard lock(turn);
    // A place of return stands behind its call.
    for (int n = 0; n < depth; ++n)
        Add(kind, reinterpret_cast<std::uintptr_t>(stack[n]) - 1 -
                      reinterpret_cast<std::uintptr_t>(&__executable_start));
}
#else
void Swept::Mark(Kind) {}
#endif
