// winapi/tests/native/Process/ModuleTextTest.cpp: texts of modules where the ANSI page is UTF-8.
#include "../../Support/Calls.h"

#include "Support/ChildProcess.h"

#include <cstdio>
#include <cstdlib>

namespace
{
constexpr UINT BEYOND = 5000;
constexpr UINT HALVES = 5001;
const StringEntry table[] = {
    {BEYOND, u"a\U0001F600b"},
    {HALVES, u"\xDE00\xD83Dz\xD83D"},
};
} // namespace

// Loads a text in a locale without an ANSI page, and tells its length and its bytes.
CHILD_PROCESS(LoadText)
{
    setenv("LC_ALL", "hi_IN", 1);
    RegisterStringTable(table, 2);
    unsigned char bytes[16] = {};
    const int length =
        LoadStringA(nullptr, static_cast<UINT>(std::stoul(arguments[0])),
                    reinterpret_cast<LPSTR>(bytes), static_cast<int>(std::stoul(arguments[1])));
    std::printf("%u %d:", GetACP(), length);
    for (int i = 0; i < length; ++i)
        std::printf(" %02x", bytes[i]);
    std::puts(bytes[length] ? " and no end" : "");
    std::fflush(stdout);
    return 0;
}

namespace
{
std::string Loaded(UINT id, int room)
{
    ChildProcess child("LoadText", {std::to_string(id), std::to_string(room)});
    const std::string line = child.ReadLine();
    EXPECT_EQ(0, child.Wait());
    return line;
}
} // namespace

TEST(ModuleText, ACharacterOfTwoUnitsIsLoadedAsOne)
{
    EXPECT_EQ("65001 6: 61 f0 9f 98 80 62", Loaded(BEYOND, 16));
}

TEST(ModuleText, ACharacterOfTwoUnitsIsNotCut)
{
    EXPECT_EQ("65001 5: 61 f0 9f 98 80", Loaded(BEYOND, 6));
    EXPECT_EQ("65001 1: 61", Loaded(BEYOND, 5));
    EXPECT_EQ("65001 1: 61", Loaded(BEYOND, 3));
}

TEST(ModuleText, AHalfOfACharacterIsReplaced)
{
    EXPECT_EQ("65001 10: ef bf bd ef bf bd 7a ef bf bd", Loaded(HALVES, 16));
}
