// winapi/tests/native/Text/UtfTest.cpp: what conversions write to.
#include "Text/Utf.h"

#include <gtest/gtest.h>

#include <climits>

using namespace winapi;

TEST(Utf, ASinkCountsAsFarAsNumbersGo)
{
    const char bytes[] = {'a', 'b'};
    Sink<char> out(nullptr, 0);
    EXPECT_TRUE(out.Put(nullptr, INT_MAX - 1)); // who counts reads nothing
    EXPECT_FALSE(out.Put(bytes, 2));
    EXPECT_EQ(INT_MAX - 1, out.Count());
    EXPECT_TRUE(out.Put('a'));
    EXPECT_FALSE(out.Put('a'));
    EXPECT_EQ(INT_MAX, out.Count());
}
