// winapi/tests/native/Text/CodePageTablesTest.cpp: the tables of code pages when memory runs out, and between
// threads.
#include "../../Support/Calls.h"

#include "Text/CodePageTables.h"

#include <atomic>
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
} // namespace

extern "C" void* __real_calloc(std::size_t count, std::size_t size);

extern "C" void* __wrap_calloc(std::size_t count, std::size_t size)
{
    if (size >= sizeof(CodePage)) {
        ++tables;
        if (exhausted)
            return nullptr;
    }
    return __real_calloc(count, size);
}

TEST(CodePages, WithoutMemoryTheCallFails)
{
    WCHAR unit;
    char byte;
    const WCHAR wide[] = {0x0416};
    exhausted = true;
    RunRows({
        CALL(MultiByteToWideChar(866, 0, "\x86", 1, &unit, 1), 0, ERROR_NOT_ENOUGH_MEMORY),
        CALL(WideCharToMultiByte(866, 0, wide, 1, &byte, 1, nullptr, nullptr), 0,
             ERROR_NOT_ENOUGH_MEMORY),
        CALL(MultiByteToWideChar(1361, 0, "\x88\x61", 2, &unit, 1), 0, ERROR_NOT_ENOUGH_MEMORY),
        // These need no tables.
        CALL(MultiByteToWideChar(CP_UTF8, 0, "a", 1, &unit, 1), 1, 0),
        CALL(IsDBCSLeadByteEx(950, 0x81), 1, 0),
        CALL(IsValidCodePage(866), 1, 0),
    });
    exhausted = false;
    RunRows({CALL(MultiByteToWideChar(866, 0, "\x86", 1, &unit, 1), 1, 0)});
    EXPECT_EQ(0x0416, unit);
}

TEST(CodePages, StartUpBuildsNone)
{
    EXPECT_EQ(0, tables_of_start_up);
}

TEST(CodePages, TablesAreBuiltOnce)
{
    const CodePage* const page = FindCodePage(855);
    ASSERT_NE(nullptr, page);
    const int before = tables;
    WCHAR unit;
    for (int i = 0; i < 100; ++i)
        MultiByteToWideChar(855, 0, "\x86", 1, &unit, 1);
    EXPECT_EQ(before, tables);
    EXPECT_EQ(page, FindCodePage(855));
}

TEST(CodePages, ThreadsThatMeetAtTheFirstUseGetTheSameTables)
{
    const CodePage* found[4] = {};
    std::vector<std::thread> threads;
    for (const CodePage*& place : found)
        threads.emplace_back([&place] { place = FindCodePage(950); });
    for (std::thread& thread : threads)
        thread.join();
    for (const CodePage* page : found)
        EXPECT_EQ(found[0], page);
    EXPECT_NE(nullptr, found[0]);
}

TEST(CodePages, UnknownPageHasNoTables)
{
    SetLastError(0);
    EXPECT_EQ(nullptr, FindCodePage(12345));
    EXPECT_EQ(DWORD(ERROR_INVALID_PARAMETER), GetLastError());
}
