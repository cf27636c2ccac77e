// winapi/tests/native/Locale/LocaleTextsTest.cpp: how the texts of locales are fetched and kept.
#include "../../Support/Calls.h"

#include "Base/ProcessLocale.h"
#include "Locale/LocaleTexts.h"
#include "Support/ChildProcess.h"
#include "Support/Gate.h"

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <thread>

using namespace winapi;

namespace
{
std::atomic<bool> exhausted;

unsigned PlaceOfId(DWORD lcid)
{
    return static_cast<unsigned>(PlaceOfLocale(lcid));
}
} // namespace

extern "C" void* __real_malloc(std::size_t size);

extern "C" void* __wrap_malloc(std::size_t size)
{
    return exhausted && size > 1000 ? nullptr : __real_malloc(size);
}

// What is fetched stays: nobody has asked for anything in a child.
CHILD_PROCESS(AsksWithoutMemory)
{
    WCHAR text[64];
    exhausted = true;
    RunRows({
        CALL(GetLocaleInfoW(0x407, LOCALE_SDAYNAME1, text, 64), 0, ERROR_NOT_ENOUGH_MEMORY),
        CALL(GetDateFormatW(0x407, 0, nullptr, nullptr, text, 64), 0, ERROR_NOT_ENOUGH_MEMORY),
        CALL(GetLocaleInfoW(0x407, LOCALE_ICOUNTRY, text, 64), 3, 0),
    });
    exhausted = false;
    RunRows({
        CALL(GetLocaleInfoW(0x407, LOCALE_SDAYNAME1, text, 64), 7, 0),
    });
    std::printf("%s\n", testing::Test::HasFailure() ? "failed" : "as told");
    std::fflush(stdout);
    return 0;
}

TEST(LocaleTexts, WithoutMemoryTheCallFailsAndALaterOneSucceeds)
{
    ChildProcess child("AsksWithoutMemory");
    std::string last;
    for (std::string line; !(line = child.ReadLine()).empty();)
        last = line;
    EXPECT_EQ(last, "as told");
    EXPECT_EQ(child.Wait(), 0);
}

TEST(LocaleTexts, AllThreadsGetTheSameTextsHoweverManyAskAtOnce)
{
    constexpr int THREADS = 4;
    std::vector<const LocaleTexts*> told[THREADS];
    Gate gate(THREADS);
    std::vector<std::thread> threads;
    for (auto& list : told)
        threads.emplace_back([&list, &gate] {
            gate.ArriveAndWait();
            for (unsigned place = 0; place < localeCount; ++place)
                list.push_back(TextsOf(place));
        });
    for (std::thread& thread : threads)
        thread.join();
    ASSERT_EQ(told[0].size(), 256U);
    for (const auto& list : told)
        EXPECT_EQ(list, told[0]);
}

TEST(LocaleTexts, TheyStayWhereTheyAre)
{
    const LocaleTexts* const texts = TextsOf(PlaceOfId(0x407));
    ASSERT_NE(texts, nullptr);
    EXPECT_EQ(TextsOf(PlaceOfId(7)), texts);
    EXPECT_EQ((*texts)[DAYS].size(), 6U);
    EXPECT_EQ((*texts)[MONTH_13].size(), 0U);
}

TEST(LocaleTexts, EveryLocaleHasWhatADateNeeds)
{
    for (unsigned place = 0; place < localeCount; ++place) {
        const LocaleTexts* const texts = TextsOf(place);
        ASSERT_NE(texts, nullptr);
        for (unsigned text = 0; text < TEXT_COUNT; ++text) {
            const bool needed = text == SHORT_DATE || text == LONG_DATE || text == TIME ||
                                text == YEAR_MONTH || (text >= DAYS && text < POSITIVE) ||
                                (text >= GENITIVE_MONTHS && text <= ERA);
            EXPECT_FALSE(needed && (*texts)[text].empty()) << locales[place].tag << ' ' << text;
            // The buffers of those who ask have room for this many.
            EXPECT_LT((*texts)[text].size(), 128U) << locales[place].tag << ' ' << text;
        }
    }
}
