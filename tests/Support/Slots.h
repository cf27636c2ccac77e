// tests/Support/Slots.h: the place of a virtual member in its class's table.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>

// The table's entry of a virtual member: a pointer to it has the entry's place, and a bit that tells
// it from a function's address. On ARM the bit stands in the second half.
template <class Member>
unsigned EntryOf(Member member)
{
    std::uintptr_t raw[2];
    static_assert(sizeof(raw) == sizeof(member));
    std::memcpy(raw, &member, sizeof(raw));
#ifdef __aarch64__
    const bool is_virtual = raw[1] % 2;
#else
    const bool is_virtual = raw[0] % 2;
#endif
    EXPECT_TRUE(is_virtual) << "not virtual";
    return static_cast<unsigned>(raw[0] / sizeof(void*));
}

// The destructor of the classes here is slot 3 and takes two entries; the slots behind it count it
// as one.
template <class Member>
unsigned SlotOf(Member member)
{
    const unsigned entry = EntryOf(member);
    return entry < 3 ? entry : entry - 1;
}
