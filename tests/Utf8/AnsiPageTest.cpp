// tests/Utf8/AnsiPageTest.cpp: a program that links Ostra::utf8, whatever its environment says.
#include <Ostra/Ostra.h>

#include <gtest/gtest.h>

#include <windows.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "Ostra/String/StringSupport.h"
#include "Support/ChildProcess.h"
#include "Support/Failure.h"

namespace
{
struct Name
{
    const char* bytes;
    const char16_t* wide;
};
const Name NAMES[] = {
    {"Gr\xC3\xB6\xC3\x9F"
     "e.txt",
     u"Gr\u00F6\u00DFe.txt"},
    {"\xD1\x81\xD0\xBB\xD0\xBE\xD0\xB2\xD0\xBE.txt", u"\u0441\u043B\u043E\u0432\u043E.txt"},
    {"\xE8\xBE\x9E\xE6\x9B\xB8.txt", u"\u8F9E\u66F8.txt"},
    {"\xF0\x9F\x98\x80.txt", u"\U0001F600.txt"},
};
} // namespace

TEST(AnsiPage, IsUtf8)
{
    EXPECT_EQ(GetACP(), 65001u);
    EXPECT_FALSE(IsDBCSLeadByte(0x83));
    for (const Name& name : NAMES) {
        WCHAR units[64];
        EXPECT_GT(MultiByteToWideChar(CP_ACP, 0, name.bytes, -1, units, 64), 0);
        EXPECT_EQ(std::u16string(reinterpret_cast<char16_t*>(units)), name.wide);
        char bytes[64];
        EXPECT_GT(WideCharToMultiByte(CP_ACP, 0, units, -1, bytes, 64, nullptr, nullptr), 0);
        EXPECT_STREQ(bytes, name.bytes);
    }
}

TEST(AnsiPage, IsPageZeroOfTheStrings)
{
    for (const Name& name : NAMES) {
        const CT_CString bytes(name.bytes);
        EXPECT_EQ(Text(CT_UString(&bytes)), name.wide);
        EXPECT_EQ(Text(CT_UString(name.bytes)), name.wide);
        EXPECT_EQ(Text(CT_UString(name.bytes, ALL, 12345)), name.wide) << "no page";
        EXPECT_EQ(Text(CT_CString(U(name.wide))), name.bytes);
    }
}

// Two bytes for each unit aren't enough.
TEST(AnsiPage, StringsHaveTheRoomForIt)
{
    const std::u16string wide(100, u'\u8F9E');
    std::string bytes;
    for (unsigned n = 0; n < 100; ++n)
        bytes += "\xE8\xBE\x9E";
    const CT_UString units(U(wide.c_str()));
    CT_CString text(&units);
    EXPECT_EQ(Text(text), bytes);
    text.v_Append(U(u"\u8F9E"), ALL);
    text.v_Append(static_cast<unsigned short>(0x66F8));
    EXPECT_EQ(Text(text), bytes + "\xE8\xBE\x9E\xE6\x9B\xB8");
    text.v_Insert(U(u"\u66F8"), ALL, 0);
    EXPECT_EQ(Text(text).substr(0, 6), "\xE6\x9B\xB8\xE8\xBE\x9E");
    CT_CString target;
    EXPECT_EQ(CT_StringConvert::si_WideToMulti(&target, &units, 0, nullptr, nullptr), 300);
    EXPECT_EQ(Text(target), bytes);
}

TEST(AnsiPage, NamesOfFilesHaveIt)
{
    for (const Name& name : NAMES) {
        SCOPED_TRACE(name.bytes);
        const HANDLE handle =
            CreateFileA(name.bytes, GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr);
        ASSERT_NE(handle, INVALID_HANDLE_VALUE);
        CloseHandle(handle);
        EXPECT_TRUE(std::filesystem::exists(std::filesystem::path(name.wide)));

        const CT_CString narrow(name.bytes);
        const CT_UString wide(U(name.wide));
        EXPECT_TRUE(CT_WinFile(&narrow, 0).b_IsExistent());
        EXPECT_TRUE(CT_WinFile(&wide, 0).b_IsExistent());
        CT_WinFile file(&narrow, 0);
        file.vv_Remove();
        EXPECT_FALSE(std::filesystem::exists(std::filesystem::path(name.wide)));
    }
}

TEST(AnsiPage, DirectorySearchBringsItBack)
{
    for (const Name& name : NAMES)
        std::ofstream{std::filesystem::path(name.wide)};
    std::vector<std::u16string> found;
    WIN32_FIND_DATAA data;
    const HANDLE search = FindFirstFileA("*.txt", &data);
    ASSERT_NE(search, INVALID_HANDLE_VALUE);
    do
        found.push_back(Text(CT_UString(data.cFileName)));
    while (FindNextFileA(search, &data));
    FindClose(search);
    ASSERT_EQ(found.size(), std::size(NAMES));
    for (const Name& name : NAMES)
        EXPECT_EQ(std::count(found.begin(), found.end(), name.wide), 1);
}

// The first argument is the number of the name that the second is.
CHILD_PROCESS(TakeArgument)
{
    const Name& name = NAMES[arguments[0][0] - '0'];
    return Text(CT_UString(arguments[1].c_str())) == name.wide ? 0 : 1;
}

TEST(AnsiPage, ArgumentsOfMainHaveIt)
{
    for (const Name& name : NAMES) {
        ChildProcess child("TakeArgument", {std::to_string(&name - NAMES), name.bytes});
        EXPECT_EQ(child.Wait(), 0) << name.bytes;
    }
}

// Facts of a locale without a code page come in that of the process, where a character may be several
// bytes. The format of a number has room for one.
TEST(AnsiPage, ASeparatorOfSeveralBytesIsLeftOut)
{
    constexpr unsigned armenian = 0x042B;
    char thousand[8] = {};
    ASSERT_EQ(GetLocaleInfoA(armenian, LOCALE_STHOUSAND, thousand, sizeof(thousand)), 3);
    CT_UString out;
    EXPECT_EQ(CT_FormatString::sb_FormatNumber(&out, 1234567U, armenian, 1, 3), 1);
    EXPECT_EQ(Ascii(out), "1234567,0");
}
