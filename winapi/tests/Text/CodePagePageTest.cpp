// winapi/tests/Text/CodePagePageTest.cpp: docs/code-pages.md lists what the services answer.
#include <gtest/gtest.h>

#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <map>
#include <string>

namespace
{
struct Counts
{
    unsigned whole = 0;
    unsigned best = 0;
    bool operator==(const Counts&) const = default;
};

Counts Measure(UINT page)
{
    Counts counts;
    for (unsigned unit = 1; unit < 0x10000; ++unit) {
        const WCHAR wide = static_cast<WCHAR>(unit);
        char bytes[8];
        WCHAR back[8];
        BOOL replaced = FALSE;
        const int size = WideCharToMultiByte(page, 0, &wide, 1, bytes, 8, nullptr, &replaced);
        const int units = MultiByteToWideChar(page, 0, bytes, size, back, 8);
        if (!replaced)
            ++(units == 1 && back[0] == wide ? counts.whole : counts.best);
    }
    return counts;
}

// The rows of the page's table.
std::map<UINT, Counts> Listed()
{
    std::map<UINT, Counts> rows;
    std::ifstream file(WINAPI_TEST_DATA "/../../docs/code-pages.md");
    for (std::string line; std::getline(file, line);) {
        std::erase(line, ',');
        unsigned page;
        Counts counts;
        if (std::sscanf(line.c_str(), "| %u | %*[^|] | %*[^|] | %u | %u |", &page, &counts.whole,
                        &counts.best) == 3)
            rows[page] = counts;
    }
    return rows;
}
} // namespace

TEST(CodePagePage, TellsWhatEveryPageHolds)
{
    const std::map<UINT, Counts> rows = Listed();
    ASSERT_GT(rows.size(), 60u);
    for (const auto& [page, counts] : rows) {
        ASSERT_TRUE(IsValidCodePage(page)) << page;
        const Counts measured = Measure(page);
        EXPECT_EQ(measured.whole, counts.whole) << page;
        EXPECT_EQ(measured.best, counts.best) << page;
    }
}

// A Windows system may have more.
TEST(CodePagePage, ListsEveryPageOfTheServices)
{
    if (GetModuleHandleA("kernel32.dll"))
        GTEST_SKIP() << "the pages are the system's";
    const std::map<UINT, Counts> rows = Listed();
    for (UINT page = 1; page < 0x10000; ++page)
        EXPECT_EQ(IsValidCodePage(page) != 0,
                  rows.count(page) != 0 || page == 65000 || page == 65001)
            << page;
}
