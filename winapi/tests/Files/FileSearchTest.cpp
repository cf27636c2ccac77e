// winapi/tests/Files/FileSearchTest.cpp: directory search.
#include "../Support/Calls.h"

#include "Support/Directory.h"

#include <cstring>
#include <filesystem>

namespace
{
// The names found, with a "/" behind directories and a blank between; or the error.
std::string Find(const char* pattern)
{
    WIN32_FIND_DATAA data;
    std::string names;
    SetLastError(0);
    const HANDLE search = FindFirstFileA(pattern, &data);
    if (search == INVALID_HANDLE_VALUE)
        return "error " + std::to_string(GetLastError());
    do {
        names += data.cFileName;
        names += (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ? "/ " : " ";
    } while (FindNextFileA(search, &data));
    if (GetLastError() != ERROR_NO_MORE_FILES)
        names += "end " + std::to_string(GetLastError());
    EXPECT_TRUE(FindClose(search));
    return names;
}

void MakeFiles(std::initializer_list<const char*> names)
{
    for (const char* name : names)
        WriteBytes(name, name);
}

struct Expectation
{
    const char* pattern;
    const char* host;
    const char* platform;
};

void ExpectFinds(const std::vector<Expectation>& rows)
{
    for (const Expectation& row : rows)
        EXPECT_EQ(Find(row.pattern), Side(row.host, row.platform)) << row.pattern;
}
} // namespace

TEST(FileSearch, PatternsFindNamesInOrder)
{
    CreateDirectoryA("sub", nullptr);
    MakeFiles({"a.TXT", "b.txt", "Abc.tx", "c1", "F", "long name.text", "noext", "ro", "z.t.txt",
               ".dot"});
    const char* const all =
        "./ ../ .dot a.TXT Abc.tx b.txt c1 F long name.text noext ro sub/ z.t.txt ";
    // Case counts on the host. A `?` of the reference run takes just one character, documented is
    // that it may take none in front of a point and at the end; and the reference run sees names of
    // the old form too.
    ExpectFinds({
        {"*", all, all},
        {"*.*", all, all},
        {"*.", all, all},
        {"**", all, all},
        {".\\*", all, all},
        {"*.txt", "b.txt z.t.txt ", "a.TXT b.txt z.t.txt "},
        {"*.TXT", "a.TXT ", "a.TXT b.txt z.t.txt "},
        {"?.txt", "b.txt ", "a.TXT b.txt "},
        {"a*", "a.TXT ", "a.TXT Abc.tx "},
        {"nomatch*", "error 2", "error 2"},
        {"f", "error 2", "F "},
        {"F", "F ", "F "},
        {"sub", "sub/ ", "sub/ "},
        {"sub\\", "error 2", "error 2"},
        {"nodir\\*", "error 3", "error 3"},
        {"nodir\\x", "error 3", "error 3"},
        {"", "error 3", "error 3"},
        {"*.t*", "Abc.tx b.txt long name.text z.t.txt ",
         "a.TXT Abc.tx b.txt long name.text z.t.txt "},
        {".*", "./ ../ .dot ", "./ ../ .dot "},
        {"sub\\*", "./ ../ ", "./ ../ "},
        {"sub/*", "./ ../ ", "./ ../ "},
        {"*<", "error 2", "error 2"},
        {"b.txt\\*", "error 123", "error 123"},
        {"b.txt\\x", "error 123", "error 123"},
        {"c?", "c1 ", "c1 "},
        {"ro?", "ro ", "error 2"},
        {"????????.???", "./ ../ .dot a.TXT Abc.tx b.txt z.t.txt ", "long name.text z.t.txt "},
    });
}

TEST(FileSearch, APointMayStandForNothingAtTheEnd)
{
    CreateDirectoryA("d", nullptr);
    MakeFiles({"d/.x.txt", "d/ab", "d/ab.c", "d/abc.d.e"});
    ExpectFinds({
        {"d\\a*.*", "ab ab.c abc.d.e ", "ab ab.c abc.d.e "},
        {"d\\a*.", "ab ab.c abc.d.e ", "ab ab.c abc.d.e "},
        {"d\\ab.*", "ab ab.c ", "ab ab.c "},
        {"d\\*.*.*", "./ ../ .x.txt ab ab.c abc.d.e ", "./ ../ .x.txt ab ab.c abc.d.e "},
        {"d\\ab.?", "ab.c ", "ab.c "},
        {"d\\a?.c", "ab.c ", "ab.c "},
        {"d\\ab??", "ab ab.c ", "ab.c "},
        {"d\\*b", "ab ", "ab "},
        {"d\\a**", "ab ab.c abc.d.e ", "ab ab.c abc.d.e "},
        {"d\\*a*b*c*", "ab.c abc.d.e ", "ab.c abc.d.e "},
        {"d\\ab*.c", "ab.c ", "ab.c "},
        {"d\\ab", "ab ", "ab "},
    });
}

TEST(FileSearch, PointsAloneFindTheDirectoryByItsName)
{
    CreateDirectoryA("dir", nullptr);
    CreateDirectoryA("dir\\below", nullptr);
    EXPECT_EQ(Find("dir\\."), "dir/ ");
    EXPECT_EQ(Find("dir\\below\\.."), "dir/ ");
}

TEST(FileSearch, AnEntryIsToldWithItsFacts)
{
    WriteBytes("file", "12345");
    SetFileAttributesA("file", FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_SYSTEM);
    WIN32_FIND_DATAW data;
    std::memset(&data, 0xEE, sizeof data);
    const HANDLE search = FindFirstFileW(Wide("file").c_str(), &data);
    ASSERT_NE(search, INVALID_HANDLE_VALUE);
    EXPECT_EQ(WideString(data.cFileName), Wide("file"));
    EXPECT_EQ(data.cAlternateFileName[0], 0);
    EXPECT_EQ(data.nFileSizeHigh, 0U);
    EXPECT_EQ(data.nFileSizeLow, 5U);
    EXPECT_EQ(data.dwFileAttributes, 0x25U);
    const HANDLE file = CreateFileA("file", GENERIC_READ, 1, nullptr, OPEN_EXISTING, 0, nullptr);
    BY_HANDLE_FILE_INFORMATION info;
    EXPECT_TRUE(GetFileInformationByHandle(file, &info));
    CloseHandle(file);
    EXPECT_EQ(data.ftLastWriteTime.dwLowDateTime, info.ftLastWriteTime.dwLowDateTime);
    EXPECT_EQ(data.ftLastWriteTime.dwHighDateTime, info.ftLastWriteTime.dwHighDateTime);
    EXPECT_FALSE(FindNextFileW(search, &data));
    FindClose(search);
    SetFileAttributesA("file", 0);
}

TEST(FileSearch, NarrowNamesAreOfTheAnsiCodePage)
{
    WriteBytes(std::filesystem::path(u8"\u00E4\u0416"), "x");
    const WideString wide = Wide(u"\u00E4\u0416");
    char expected[8] = {};
    WideCharToMultiByte(CP_ACP, 0, wide.c_str(), -1, expected, sizeof expected, nullptr, nullptr);
    EXPECT_EQ(Find("*"), std::string("./ ../ ") + expected + " ");
    WIN32_FIND_DATAW data;
    const HANDLE search = FindFirstFileW(wide.c_str(), &data);
    ASSERT_NE(search, INVALID_HANDLE_VALUE);
    EXPECT_EQ(WideString(data.cFileName), wide);
    FindClose(search);
}

TEST(FileSearch, ASearchKeepsItsListWhenTheDirectoryChanges)
{
    CreateDirectoryA("sub", nullptr);
    MakeFiles({"a1", "a2", "a3"});
    WIN32_FIND_DATAA data;
    const HANDLE search = FindFirstFileA("a*", &data);
    EXPECT_STREQ(data.cFileName, "a1");
    SetCurrentDirectoryA("sub");
    EXPECT_TRUE(FindNextFileA(search, &data));
    EXPECT_STREQ(data.cFileName, "a2");
    EXPECT_TRUE(FindNextFileA(search, &data));
    EXPECT_STREQ(data.cFileName, "a3");
    RunRows({
        CALL(FindNextFileA(search, &data), 0, ERROR_NO_MORE_FILES),
        CALL(FindNextFileA(search, &data), 0, ERROR_NO_MORE_FILES),
        CALL(FindClose(search), 1, 0),
    });
    SetCurrentDirectoryA("..");
}

TEST(FileSearch, SearchesGoOnSideBySide)
{
    MakeFiles({"a1", "a2", "b1"});
    WIN32_FIND_DATAA a;
    WIN32_FIND_DATAA b;
    const HANDLE first = FindFirstFileA("a*", &a);
    const HANDLE second = FindFirstFileA("*1", &b);
    EXPECT_TRUE(FindNextFileA(second, &b));
    EXPECT_TRUE(FindNextFileA(first, &a));
    EXPECT_STREQ(a.cFileName, "a2");
    EXPECT_STREQ(b.cFileName, "b1");
    FindClose(first);
    FindClose(second);
}

TEST(FileSearch, SearchesThatNobodyClosesCostNoDescriptor)
{
    WriteBytes("file", "x");
    WIN32_FIND_DATAA data;
    std::vector<HANDLE> searches;
    for (int i = 0; i < 3000; ++i)
        searches.push_back(FindFirstFileA("*", &data));
    for (const HANDLE search : searches)
        ASSERT_NE(search, INVALID_HANDLE_VALUE);
    const HANDLE file = CreateFileA("file", GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    EXPECT_NE(file, INVALID_HANDLE_VALUE);
    CloseHandle(file);
    for (const HANDLE search : searches)
        EXPECT_TRUE(FindClose(search));
}

TEST(FileSearch, HandlesOfSearchesAreOfTheirOwnKind)
{
    WriteBytes("f", "x");
    WIN32_FIND_DATAA data;
    char b[1];
    DWORD n;
    const HANDLE search = FindFirstFileA("*", &data);
    const File file("f");
    RunRows({
        CALL(CloseHandle(search), 0, ERROR_INVALID_HANDLE),
        CALL(ReadFile(search, b, 1, &n, nullptr), 0, ERROR_INVALID_HANDLE),
        CALL(FindNextFileA(search, &data), 1, 0),
        CALL(FindClose(search), 1, 0),
        CALL(FindClose(nullptr), 0, ERROR_INVALID_HANDLE),
        CALL(FindClose(INVALID_HANDLE_VALUE), 0, ERROR_INVALID_HANDLE),
        CALL(FindNextFileA(nullptr, &data), 0, ERROR_INVALID_HANDLE),
        CALL(FindNextFileA(INVALID_HANDLE_VALUE, &data), 0, ERROR_INVALID_HANDLE),
        CALL(FindFirstFileA(nullptr, &data) == INVALID_HANDLE_VALUE, 1, ERROR_PATH_NOT_FOUND),
        CALL(FindFirstFileW(nullptr, nullptr) == INVALID_HANDLE_VALUE, 1,
             Side(ERROR_INVALID_PARAMETER, ERROR_PATH_NOT_FOUND)),
    });
}
