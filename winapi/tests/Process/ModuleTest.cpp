// winapi/tests/Process/ModuleTest.cpp
#include "../Support/Calls.h"
#include "../Support/Reference.h"

#include "Support/TestStrings.h"

#include <algorithm>
#include <cstring>
#include <filesystem>

namespace
{
const HINSTANCE PROGRAM = nullptr;

// A module that has no string table.
HINSTANCE TablelessModule()
{
#ifdef _WIN32
    return LoadLibraryA("version.dll");
#else
    return GetModuleHandleA("libc.so.6");
#endif
}
} // namespace

TEST(Module, TextsAreLoadedInBothWidths)
{
    WCHAR wide[40];
    EXPECT_EQ(10, LoadStringW(GetModuleHandleA(nullptr), TEST_STRING_PLAIN, wide, 40));
    EXPECT_EQ(Wide(u"Plain text"), WideString(wide));
    char narrow[40];
    EXPECT_EQ(10, LoadStringA(GetModuleHandleA(nullptr), TEST_STRING_PLAIN, narrow, 40));
    EXPECT_STREQ("Plain text", narrow);
    EXPECT_EQ(15, LoadStringA(GetModuleHandleA(nullptr), TEST_STRING_NUMBER, narrow, 40));
    EXPECT_STREQ("Number %u of %d", narrow);
}

TEST(Module, NullStandsForTheProgram)
{
    char narrow[40];
    EXPECT_EQ(11, LoadStringA(PROGRAM, TEST_STRING_TEXT, narrow, 40));
    EXPECT_STREQ("Text %s, %S", narrow);
}

TEST(Module, TextsAreCutToTheRoom)
{
    WCHAR wide[40] = {};
    EXPECT_EQ(5, LoadStringW(PROGRAM, TEST_STRING_PLAIN, wide, 6));
    EXPECT_EQ(Wide(u"Plain"), WideString(wide));
    EXPECT_EQ(10, LoadStringW(PROGRAM, TEST_STRING_PLAIN, wide, 11));
    EXPECT_EQ(0, LoadStringW(PROGRAM, TEST_STRING_PLAIN, wide, 1));
    EXPECT_PUBLISHED(0, wide[0]);
    char narrow[40] = {};
    EXPECT_EQ(5, LoadStringA(PROGRAM, TEST_STRING_PLAIN, narrow, 6));
    EXPECT_STREQ("Plain", narrow);
    EXPECT_EQ(0, LoadStringA(PROGRAM, TEST_STRING_PLAIN, narrow, 1));
    EXPECT_STREQ("", narrow);
}

TEST(Module, RoomOfNothingGivesTheWideTextItself)
{
    LPCWSTR text = nullptr;
    EXPECT_EQ(10, LoadStringW(PROGRAM, TEST_STRING_PLAIN, reinterpret_cast<LPWSTR>(&text), 0));
    ASSERT_NE(nullptr, text);
    EXPECT_EQ(Wide(u"Plain text"), WideString(text, 10));
}

TEST(Module, MissingTextLeavesTheBufferAlone)
{
    WCHAR wide[4] = {7, 7, 7, 7};
    char narrow[4] = {7, 7, 7, 7};
    RunRows({
        CALL(LoadStringW(PROGRAM, 9999, wide, 4), 0, ERROR_RESOURCE_NAME_NOT_FOUND),
        CALL(LoadStringA(PROGRAM, 9999, narrow, 4), 0, ERROR_RESOURCE_NAME_NOT_FOUND),
    });
    EXPECT_EQ(7, wide[0]);
    EXPECT_PUBLISHED(7, narrow[0]);
}

TEST(Module, ModuleWithoutATableHasNoTexts)
{
    const HINSTANCE module = TablelessModule();
    ASSERT_NE(nullptr, module);
    WCHAR wide[4];
    RunRows({CALL(LoadStringW(module, TEST_STRING_PLAIN, wide, 4), 0,
                  Side(ERROR_RESOURCE_DATA_NOT_FOUND, ERROR_RESOURCE_TYPE_NOT_FOUND))});
}

TEST(Module, NameOfTheProgram)
{
    char narrow[1000];
    const DWORD length = GetModuleFileNameA(nullptr, narrow, sizeof narrow);
    ASSERT_EQ(std::strlen(narrow), length);
    EXPECT_TRUE(std::filesystem::exists(narrow)) << narrow;
    EXPECT_EQ("winapi_tests", std::filesystem::path(narrow).stem().string());
    WCHAR wide[1000];
    EXPECT_EQ(length, GetModuleFileNameW(nullptr, wide, 1000));
    EXPECT_EQ(Wide(std::string(narrow)), WideString(wide));
    EXPECT_EQ(length, GetModuleFileNameA(GetModuleHandleA(nullptr), narrow, sizeof narrow));
}

TEST(Module, ShortRoomHoldsTheBeginningOfTheName)
{
    char whole[1000];
    GetModuleFileNameA(nullptr, whole, sizeof whole);
    char narrow[6] = {};
    WCHAR wide[6] = {};
    RunRows({
        CALL(GetModuleFileNameA(nullptr, narrow, 5), 5, ERROR_INSUFFICIENT_BUFFER),
        CALL(GetModuleFileNameW(nullptr, wide, 5), 5, ERROR_INSUFFICIENT_BUFFER),
    });
    EXPECT_PUBLISHED(std::string(whole, 4), std::string(narrow));
    EXPECT_PUBLISHED(Wide(std::string(whole, 4)), WideString(wide));
}

TEST(Module, UnknownModulesAreToldSo)
{
    char narrow[100];
    WCHAR wide[100];
    const HMODULE unknown = reinterpret_cast<HMODULE>(std::uintptr_t(0x10));
    RunRows({
        CALL(GetModuleFileNameA(unknown, narrow, 100), 0, ERROR_MOD_NOT_FOUND),
        CALL(GetModuleFileNameW(unknown, wide, 100), 0, ERROR_MOD_NOT_FOUND),
        CALL(GetModuleHandleA("no-such-module") != nullptr, 0, ERROR_MOD_NOT_FOUND),
    });
}

TEST(Module, HandleIsTheLoadAddress)
{
    const HMODULE program = GetModuleHandleA(nullptr);
    ASSERT_NE(nullptr, program);
    EXPECT_EQ(
        0, std::memcmp(reinterpret_cast<const void*>(program), HOST_PATHS ? "\177ELF" : "MZ", 2));
}
