// winapi/tests/native/Text/UpperCaseTest.cpp
#include "Text/UpperCase.h"

#include <gtest/gtest.h>
#include <unicode/uchar.h>

TEST(UpperCase, EachUnitHasIcus)
{
    for (unsigned unit = 0; unit < 0x10000; ++unit) {
        const UChar32 upper = u_toupper(static_cast<UChar32>(unit));
        const unsigned wanted = upper < 0x10000 ? static_cast<unsigned>(upper) : unit;
        ASSERT_EQ(winapi::UpperCase(static_cast<WCHAR>(unit)), wanted) << std::hex << unit;
    }
}

TEST(LowerCase, EachUnitHasIcus)
{
    for (unsigned unit = 0; unit < 0x10000; ++unit) {
        const UChar32 lower = u_tolower(static_cast<UChar32>(unit));
        const unsigned wanted = lower < 0x10000 ? static_cast<unsigned>(lower) : unit;
        ASSERT_EQ(winapi::LowerCase(static_cast<WCHAR>(unit)), wanted) << std::hex << unit;
    }
}
