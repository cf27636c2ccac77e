// tests/Ostra/Frame/CounterTest.cpp
#include <Ostra/Frame/Counter.h>

#include <gtest/gtest.h>

#include <thread>
#include <type_traits>

TEST(Counter, StartsAtZeroOrTheGivenValue)
{
    EXPECT_EQ(CT_Counter().i4_Get(), 0);
    EXPECT_EQ(CT_Counter(-7).i4_Get(), -7);
    EXPECT_EQ(CT_Counter(12)(), 12);
}

TEST(Counter, IsOneSigned32BitNumber)
{
    EXPECT_EQ(sizeof(CT_Counter), 4U);
    EXPECT_TRUE((std::is_same_v<decltype(CT_Counter().i4_Get()), LONG>));
}

TEST(Counter, IncrementAndDecrementReturnTheNewValue)
{
    CT_Counter counter(5);
    EXPECT_EQ(counter.i4_Inc(), 6);
    EXPECT_EQ(counter.i4_Inc(), 7);
    EXPECT_EQ(counter.i4_Dec(), 6);
    EXPECT_EQ(counter(), 6);
}

TEST(Counter, SetStores)
{
    CT_Counter counter(5);
    counter.v_Set(-1);
    EXPECT_EQ(counter(), -1);
}

TEST(Counter, PostfixFormsReturnTheValueAfterTheChange)
{
    CT_Counter counter(5);
    EXPECT_EQ((counter++)(), 6);
    EXPECT_EQ(counter(), 6);
    EXPECT_EQ((counter--)(), 5);
    EXPECT_EQ(counter(), 5);
}

TEST(Counter, PrefixFormsReturnTheValueAfterTheChange)
{
    CT_Counter counter(5);
    EXPECT_EQ((++counter)(), 6);
    EXPECT_EQ((--counter)(), 5);
    EXPECT_EQ(counter(), 5);
}

TEST(Counter, WrapsAt32Bits)
{
    CT_Counter counter(0x7FFFFFFF);
    EXPECT_EQ(counter.i4_Inc(), static_cast<LONG>(0x80000000));
}

TEST(Counter, LosesNoChangeOfTwoThreads)
{
    constexpr int ROUNDS = 20000;
    CT_Counter counter;
    std::thread other([&counter] {
        for (int n = 0; n < ROUNDS; ++n)
            ++counter;
    });
    for (int n = 0; n < ROUNDS; ++n) {
        counter.i4_Inc();
        EXPECT_GT(counter(), 0);
    }
    other.join();
    EXPECT_EQ(counter(), 2 * ROUNDS);
}
