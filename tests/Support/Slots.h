// tests/Support/Slots.h: the place of a virtual member in its class's table.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>

// The table's entry of a virtual member. The destructor of the classes here is slot 3 and takes two
// entries; the slots behind it count it as one.
template <class Member>
unsigned SlotOf(Member member)
{
    std::uintptr_t raw[2];
    static_assert(sizeof(raw) == sizeof(member));
    std::memcpy(raw, &member, sizeof(raw));
    EXPECT_EQ(raw[0] % 2, 1u) << "not virtual";
    const auto entry = static_cast<unsigned>((raw[0] - 1) / sizeof(void*));
    return entry < 3 ? entry : entry - 1;
}
