// tests/System/Timer/TimerTest.cpp
#include <System/Timer/Timer.h>

#include <windows.h>

#include <gtest/gtest.h>

#include "Support/Directory.h"
#include "Support/Private.h"

#include <cstdint>
#include <memory>
#include <random>
#include <type_traits>

OSTRA_PRIVATE(Ticks, unsigned CT_Timer::*, &CT_Timer::n_Ticks);

namespace
{
CT_Timer At(unsigned ticks)
{
    CT_Timer timer;
    timer.*Private(Ticks()) = ticks;
    return timer;
}

unsigned TicksOf(const CT_Timer& timer)
{
    return timer.*Private(Ticks());
}

// Runs a reading of the tick count between two others, once more where the count began anew just
// then.
template <typename T_Read>
void ExpectNow(T_Read read)
{
    DWORD before = 1, after = 0, now = 0;
    while (before > after) {
        before = GetTickCount();
        now = read();
        after = GetTickCount();
    }
    EXPECT_GE(now, before);
    EXPECT_LE(now, after);
}

struct Parts
{
    unsigned milliseconds, seconds, minutes, hours, days;
    bool operator==(const Parts&) const = default;
};

Parts Delta(const CT_Timer& timer, const CT_Timer* other)
{
    Parts p{7, 7, 7, 7, 7};
    timer.v_Delta(&p.milliseconds, &p.seconds, &p.minutes, &p.hours, &p.days, other);
    return p;
}
} // namespace

TEST(Timer, ANewTimerAndOneSetAnewHoldTheTickCount)
{
    ExpectNow([] { return TicksOf(CT_Timer()); });
    CT_Timer timer = At(5);
    ExpectNow([&timer] {
        timer.v_Set();
        return TicksOf(timer);
    });
}

TEST(Timer, ATimerTakesTheInstantOfAnother)
{
    const CT_Timer source = At(123456789);
    const CT_Timer made(&source);
    EXPECT_EQ(TicksOf(made), 123456789U);
    CT_Timer set = At(1);
    set.v_Set(&source);
    EXPECT_EQ(TicksOf(set), 123456789U);
    set.v_Set(&set);
    EXPECT_EQ(TicksOf(set), 123456789U);
    const CT_Timer copied(source);
    EXPECT_EQ(TicksOf(copied), 123456789U);
    CT_Timer assigned = At(1);
    assigned = source;
    EXPECT_EQ(TicksOf(assigned), 123456789U);
    EXPECT_EQ(TicksOf(source), 123456789U);
}

TEST(Timer, ATimerIsItsTickCount)
{
    EXPECT_EQ(sizeof(CT_Timer), 4U);
    EXPECT_FALSE(std::is_polymorphic_v<CT_Timer>);
}

TEST(Timer, NoOtherTimerMeasuresToThePresent)
{
    ExpectNow([] { return At(0).n_MillisecondsBetween(nullptr); });
    ExpectNow([] { return 0xFFFFFFFF - At(0xFFFFFFFF).n_MillisecondsBetween(nullptr); });
    ExpectNow([] {
        const Parts p = Delta(At(0), nullptr);
        return (((p.days * 24 + p.hours) * 60 + p.minutes) * 60 + p.seconds) * 1000 +
               p.milliseconds;
    });
}

TEST(Timer, TheOrderOfTheTwoDoesNotMatter)
{
    const CT_Timer a = At(1000), b = At(91000);
    EXPECT_EQ(a.n_MillisecondsBetween(&b), 90000U);
    EXPECT_EQ(b.n_MillisecondsBetween(&a), 90000U);
    EXPECT_EQ(a.n_SecondsBetween(&b), b.n_SecondsBetween(&a));
    EXPECT_EQ(Delta(a, &b), Delta(b, &a));
    EXPECT_EQ(a.n_MillisecondsBetween(&a), 0U);
}

TEST(Timer, DistancesAreCutOffToWholeUnits)
{
    struct Case
    {
        unsigned distance, seconds, minutes, hours, days;
        Parts parts;
    };
    const Case cases[] = {
        {0, 0, 0, 0, 0, {0, 0, 0, 0, 0}},
        {999, 0, 0, 0, 0, {999, 0, 0, 0, 0}},
        {1000, 1, 0, 0, 0, {0, 1, 0, 0, 0}},
        {59999, 59, 0, 0, 0, {999, 59, 0, 0, 0}},
        {60000, 60, 1, 0, 0, {0, 0, 1, 0, 0}},
        {3599999, 3599, 59, 0, 0, {999, 59, 59, 0, 0}},
        {3600000, 3600, 60, 1, 0, {0, 0, 0, 1, 0}},
        {86399999, 86399, 1439, 23, 0, {999, 59, 59, 23, 0}},
        {86400000, 86400, 1440, 24, 1, {0, 0, 0, 0, 1}},
        {90061001, 90061, 1501, 25, 1, {1, 1, 1, 1, 1}},
        {0xFFFFFFFF, 4294967, 71582, 1193, 49, {295, 47, 2, 17, 49}},
    };
    for (const Case& row : cases) {
        SCOPED_TRACE(row.distance);
        const CT_Timer start = At(0), end = At(row.distance);
        EXPECT_EQ(start.n_MillisecondsBetween(&end), row.distance);
        EXPECT_EQ(start.n_SecondsBetween(&end), row.seconds);
        EXPECT_EQ(start.n_MinutesBetween(&end), row.minutes);
        EXPECT_EQ(start.n_HoursBetween(&end), row.hours);
        EXPECT_EQ(start.n_DaysBetween(&end), row.days);
        EXPECT_EQ(Delta(start, &end), row.parts);
    }
}

TEST(Timer, ACountThatBeganAnewBetweenTheTwoGivesAVeryLargeDistance)
{
    const CT_Timer before = At(0xFFFFFFF0), after = At(5);
    EXPECT_EQ(before.n_MillisecondsBetween(&after), 0xFFFFFFEBU);
    EXPECT_EQ(after.n_MillisecondsBetween(&before), 0xFFFFFFEBU);
    EXPECT_EQ(before.n_DaysBetween(&after), 49U);
}

TEST(Timer, AnyTwoInstantsHaveTheirDifferenceInEveryUnit)
{
    std::mt19937 random(Seed(86400000));
    for (unsigned n = 0; n < 20000; ++n) {
        const std::uint64_t a = random() >> random() % 32, b = random() >> random() % 32;
        const std::uint64_t distance = a > b ? a - b : b - a;
        const CT_Timer first = At(static_cast<unsigned>(a)), second = At(static_cast<unsigned>(b));
        ASSERT_EQ(first.n_MillisecondsBetween(&second), distance);
        ASSERT_EQ(first.n_SecondsBetween(&second), distance / 1000);
        ASSERT_EQ(first.n_MinutesBetween(&second), distance / 60000);
        ASSERT_EQ(first.n_HoursBetween(&second), distance / 3600000);
        ASSERT_EQ(first.n_DaysBetween(&second), distance / 86400000);
        const Parts p = Delta(first, &second);
        ASSERT_TRUE(p.milliseconds < 1000 && p.seconds < 60 && p.minutes < 60 && p.hours < 24);
        ASSERT_EQ((((p.days * 24ULL + p.hours) * 60 + p.minutes) * 60 + p.seconds) * 1000 +
                      p.milliseconds,
                  distance);
    }
}

TEST(Timer, TheHeapGivesAndTakesTimers)
{
    const CT_Timer source = At(17);
    const std::unique_ptr<CT_Timer> timer(new CT_Timer(&source));
    ASSERT_NE(timer, nullptr);
    EXPECT_EQ(TicksOf(*timer), 17U);
    alignas(CT_Timer) char place[sizeof(CT_Timer)];
    CT_Timer* placed = new (place) CT_Timer(&source);
    EXPECT_EQ(static_cast<void*>(placed), static_cast<void*>(place));
    EXPECT_EQ(TicksOf(*placed), 17U);
    placed->~CT_Timer();
}
