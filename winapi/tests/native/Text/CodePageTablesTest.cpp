// winapi/tests/native/Text/CodePageTablesTest.cpp: the tables of code pages: what they hold in memory, what is built
// at the first use, when memory runs out, and between threads.
#include "../../Support/Calls.h"

#include "Text/CodePageTables.h"

#include "Support/ChildProcess.h"

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <thread>

using namespace winapi;

namespace
{
std::atomic<bool> exhausted;
std::atomic<int> tables;
int CountTables()
{
    return tables;
}
// The library is up before this program's statics.
const int tables_of_start_up = CountTables();

int WideCount(UINT page, const std::u16string& text)
{
    char bytes[64];
    return WideCharToMultiByte(page, 0, reinterpret_cast<LPCWSTR>(text.c_str()),
                               static_cast<int>(text.size()), bytes, sizeof bytes, nullptr,
                               nullptr);
}

// Text of ASCII with room, with too little and with none: length, bytes and last error.
std::string AsciiAnswers(UINT page)
{
    const std::u16string text = u"plain text, of more than one group!";
    std::string answers;
    for (int room : {46, 5, 0}) {
        std::string bytes(46, '.');
        BOOL used = TRUE;
        SetLastError(0);
        const int length =
            WideCharToMultiByte(page, 0, reinterpret_cast<LPCWSTR>(text.c_str()),
                                static_cast<int>(text.size()), bytes.data(), room, nullptr, &used);
        EXPECT_EQ(FALSE, used);
        answers +=
            std::to_string(length) + ":" + bytes + " " + std::to_string(GetLastError()) + "|";
    }
    return answers;
}

// What a child says at its end.
int TellResult()
{
    std::puts(testing::Test::HasFailure() ? "failed" : "good");
    std::fflush(stdout);
    return 0;
}

void ExpectGood(const char* name)
{
    ChildProcess child(name);
    std::string last;
    for (std::string line; !(line = child.ReadLine()).empty();)
        last = line;
    EXPECT_EQ("good", last);
    EXPECT_EQ(0, child.Wait());
}
} // namespace

extern "C" void* __real_calloc(std::size_t count, std::size_t size);

extern "C" void* __wrap_calloc(std::size_t count, std::size_t size)
{
    if (size >= sizeof(CodePageReverse)) {
        ++tables;
        if (exhausted)
            return nullptr;
    }
    return __real_calloc(count, size);
}

// A process in which nobody has asked for a page.
CHILD_PROCESS(UsesPagesFirst)
{
    tables = 0;
    WCHAR units[8];
    for (unsigned n = 0; n < codePageCount; ++n) {
        const UINT page = codePages[n].page;
        EXPECT_EQ(3, MultiByteToWideChar(page, 0, "\x41\x30\x41", 3, units, 8)) << page;
        EXPECT_LT(1, MultiByteToWideChar(page, 0, "\xB0\xA1\x41", 3, units, 8)) << page;
        if (!codePages[n].HasPairs()) {
            EXPECT_EQ(2, WideCount(page, u"\u00E9\u4E00")) << page;
        }
    }
    EXPECT_EQ(0, tables);
    for (int n = 0; n < 100; ++n)
        EXPECT_EQ(3, WideCount(20949, u"A\uAC00"));
    EXPECT_EQ(1, tables);
    return TellResult();
}

CHILD_PROCESS(UsesPagesWithoutMemory)
{
    WCHAR unit;
    char bytes[2];
    const WCHAR wide[] = {0xAC00};
    exhausted = true;
    RunRows({
        CALL(WideCharToMultiByte(1361, 0, wide, 1, bytes, 2, nullptr, nullptr), 0,
             ERROR_NOT_ENOUGH_MEMORY),
        CALL(WideCharToMultiByte(1361, 0, wide, 1, nullptr, 0, nullptr, nullptr), 0,
             ERROR_NOT_ENOUGH_MEMORY),
        CALL(WideCharToMultiByte(1361, WC_NO_BEST_FIT_CHARS, wide, 1, bytes, 2, nullptr, nullptr),
             0, ERROR_NOT_ENOUGH_MEMORY),
        // All else needs no memory.
        CALL(MultiByteToWideChar(1361, 0, "\x88\x61", 2, &unit, 1), 1, 0),
        CALL(MultiByteToWideChar(1361, MB_ERR_INVALID_CHARS, "\x88\x61", 2, &unit, 1), 1, 0),
        CALL(MultiByteToWideChar(866, 0, "\x86", 1, &unit, 1), 1, 0),
        CALL(WideCharToMultiByte(866, 0, wide, 1, bytes, 1, nullptr, nullptr), 1, 0),
        CALL(WideCount(1361, u"name"), 4, 0),
        CALL(MultiByteToWideChar(CP_UTF8, 0, "a", 1, &unit, 1), 1, 0),
        CALL(IsDBCSLeadByteEx(950, 0x81), 1, 0),
        CALL(IsValidCodePage(866), 1, 0),
    });
    exhausted = false;
    RunRows({CALL(WideCharToMultiByte(1361, 0, wide, 1, bytes, 2, nullptr, nullptr), 2, 0)});
    EXPECT_EQ("\x88\x61", std::string(bytes, 2));
    return TellResult();
}

CHILD_PROCESS(UsesPagesForAscii)
{
    const CodePageFacts& facts = *FindFacts(10008);
    EXPECT_EQ(nullptr, CodePageReverse::FindBuilt(facts));
    const std::string before = AsciiAnswers(10008);
    EXPECT_EQ(nullptr, CodePageReverse::FindBuilt(facts));
    EXPECT_EQ(2, WideCount(10008, u"\u4E00"));
    EXPECT_NE(nullptr, CodePageReverse::FindBuilt(facts));
    EXPECT_EQ(before, AsciiAnswers(10008));
    EXPECT_EQ("35:plain text, of more than one group!" + std::string(11, '.') + " 0|0:plain" +
                  std::string(41, '.') + " 122|35:" + std::string(46, '.') + " 0|",
              before);
    return TellResult();
}

TEST(CodePages, OnlyTheWayToPairsIsBuiltAndOnlyOnce)
{
    ExpectGood("UsesPagesFirst");
}

TEST(CodePages, WithoutMemoryUnitsHaveNoPairs)
{
    ExpectGood("UsesPagesWithoutMemory");
}

// Text of ASCII is copied as long as the page's way to pairs isn't built, and goes through it afterwards.
TEST(CodePages, AsciiIsTheSameBeforeAndBehindTheFirstUse)
{
    ExpectGood("UsesPagesForAscii");
}

TEST(CodePages, StartUpBuildsNone)
{
    EXPECT_EQ(0, tables_of_start_up);
}

TEST(CodePages, ThreadsThatMeetAtTheFirstUseGetTheSameTables)
{
    const CodePageReverse* found[4] = {};
    std::vector<std::thread> threads;
    for (const CodePageReverse*& place : found)
        threads.emplace_back([&place] { place = CodePageReverse::Find(*FindFacts(10002)); });
    for (std::thread& thread : threads)
        thread.join();
    for (const CodePageReverse* page : found)
        EXPECT_EQ(found[0], page);
    EXPECT_NE(nullptr, found[0]);
}

TEST(CodePages, UnknownPageHasNoFacts)
{
    EXPECT_EQ(nullptr, FindFacts(12345));
    EXPECT_EQ(nullptr, FindFacts(0));
    EXPECT_EQ(nullptr, FindFacts(0xFFFFFFFF));
}
