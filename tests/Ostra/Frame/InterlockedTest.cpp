// tests/Ostra/Frame/InterlockedTest.cpp
#include <Ostra/Frame/Interlocked.h>

#include <gtest/gtest.h>

#include <future>
#include <thread>

static void CheckSteps()
{
    LONG value = 5;
    EXPECT_EQ(6, CT_Interlocked::si4_Inc(value));
    EXPECT_EQ(6, value);
    EXPECT_EQ(5, CT_Interlocked::si4_Dec(value));
    EXPECT_EQ(5, value);
    value = 0x7FFFFFFF;
    EXPECT_EQ(LONG(0x80000000), CT_Interlocked::si4_Inc(value));
    EXPECT_EQ(0x7FFFFFFF, CT_Interlocked::si4_Dec(value));
}

TEST(Interlocked, StepsAreTheSameAloneAndBesideAnotherThread)
{
    CheckSteps();
    std::promise<void> checked;
    std::thread other([done = checked.get_future()] { done.wait(); });
    CheckSteps();
    checked.set_value();
    other.join();
    CheckSteps();
}

TEST(Interlocked, NoStepOfTwoThreadsIsLost)
{
    LONG value = 0;
    const auto work = [&value] {
        for (int n = 0; n < 20000; ++n) {
            CT_Interlocked::si4_Inc(value);
            CT_Interlocked::si4_Inc(value);
            CT_Interlocked::si4_Dec(value);
        }
    };
    std::thread other(work);
    work();
    other.join();
    EXPECT_EQ(40000, value);
}
