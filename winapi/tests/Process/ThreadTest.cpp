// winapi/tests/Process/ThreadTest.cpp
#include "../Support/Calls.h"

#include <cstdint>
#include <thread>

TEST(Thread, EachThreadHasANumberOfItsOwn)
{
    const DWORD own = GetCurrentThreadId();
    EXPECT_NE(0u, own);
    EXPECT_EQ(own, GetCurrentThreadId());
    DWORD other = own;
    std::thread([&other] { other = GetCurrentThreadId(); }).join();
    EXPECT_NE(own, other);
}

TEST(Thread, TicksDoNotRunBackwards)
{
    const DWORD first = GetTickCount();
    DWORD last = first;
    for (int i = 0; i < 1000; ++i) {
        const DWORD now = GetTickCount();
        EXPECT_LT(now - last, 0x80000000u);
        last = now;
    }
}

TEST(Thread, InterlockedCallsGiveTheNewValueAndTheOldOneWhenExchanged)
{
    LONG value = 5;
    EXPECT_EQ(6, InterlockedIncrement(&value));
    EXPECT_EQ(5, InterlockedDecrement(&value));
    EXPECT_EQ(5, InterlockedExchange(&value, 9));
    EXPECT_EQ(9, value);
    value = INT32_MAX;
    EXPECT_EQ(INT32_MIN, InterlockedIncrement(&value));
}

TEST(Thread, InterlockedCallsAreWholeBetweenThreads)
{
    LONG value = 0;
    const auto count = [&value] {
        for (int i = 0; i < 20000; ++i)
            InterlockedIncrement(&value);
    };
    std::thread first(count);
    std::thread second(count);
    first.join();
    second.join();
    EXPECT_EQ(40000, value);
}
