// winapi/tests/Files/PathTest.cpp: full names, directories, drives.
#include "../Support/Calls.h"

#include "Support/Directory.h"

#include <filesystem>

namespace
{
std::string Current()
{
    char text[4096];
    return std::string(text, GetCurrentDirectoryA(sizeof text, text));
}

// The text that stands for the current directory in expectations.
std::string WithCurrent(std::string text)
{
    const std::string current = Current();
    const std::string parent = current.substr(0, current.find_last_of("/\\"));
    const auto replace = [&](const std::string& mark, const std::string& with) {
        if (const auto at = text.find(mark); at != std::string::npos)
            text.replace(at, mark.size(), with);
    };
    replace("<cwd>", current);
    replace("<parent>", parent);
    replace("<drive>", current.substr(0, 2));
    return text;
}

std::string Full(const char* name)
{
    char text[4096];
    const DWORD size = GetFullPathNameA(name, sizeof text, text, nullptr);
    return std::string(text, size);
}

struct Expectation
{
    const char* name;
    const char* host;
    const char* platform;
};
} // namespace

TEST(Path, FullNamesAreFoldedAsText)
{
    const Expectation rows[] = {
        {"x", "<cwd>/x", "<cwd>\\x"},
        {"..\\x", "<parent>/x", "<parent>\\x"},
        {".", "<cwd>", "<cwd>"},
        {"..", "<parent>", "<parent>"},
        {"x\\..", "<cwd>", "<cwd>"},
        {"a/b\\c", "<cwd>/a/b/c", "<cwd>\\a\\b\\c"},
        {"a/..//../b/.", "<parent>/b", "<parent>\\b"},
        {"./a//b", "<cwd>/a/b", "<cwd>\\a\\b"},
        {"a\\.\\b\\", "<cwd>/a/b/", "<cwd>\\a\\b\\"},
        {"a..\\b", "<cwd>/a../b", "<cwd>\\a.\\b"},
        {"\\x", "/x", "<drive>\\x"},
        {"\\..\\..\\x", "/x", "<drive>\\x"},
        {"\\", "/", "<drive>\\"},
        // The host knows no drives, no devices, and keeps points and blanks at a name's end.
        {"a.", "<cwd>/a.", "<cwd>\\a"},
        {"a ", "<cwd>/a ", "<cwd>\\a"},
        {"...", "<cwd>/...", "<cwd>\\"},
        {"C:\\a\\..\\b", "<cwd>/C:/b", "C:\\b"},
        {"C:/a", "<cwd>/C:/a", "C:\\a"},
        {"C:\\..\\..", "<parent>", "C:\\"},
        {"nul", "<cwd>/nul", "\\\\.\\nul"},
        {"\\\\s\\h\\x", "/s/h/x", "\\\\s\\h\\x"},
    };
    for (const Expectation& row : rows)
        EXPECT_EQ(Full(row.name), WithCurrent(Side(row.host, row.platform))) << row.name;
}

TEST(Path, FullNamesOfNothingAreNone)
{
    WCHAR text[10];
    EXPECT_EQ(GetFullPathNameW(Wide("").c_str(), 10, text, nullptr), 0U);
    EXPECT_EQ(GetFullPathNameW(nullptr, 10, text, nullptr), 0U);
    EXPECT_EQ(GetFullPathNameA("", 0, nullptr, nullptr), 0U);
}

TEST(Path, FullNamesTellTheRoomTheyNeed)
{
    const auto needed = static_cast<DWORD>(Full("x").size() + 1);
    std::string text(needed, '#');
    char* part = text.data();
    RunRows({
        CALL(GetFullPathNameA("x", 0, nullptr, nullptr), needed, 0),
        CALL(GetFullPathNameA("x", 3, text.data(), &part), needed, 0),
        CALL(GetFullPathNameA("x", needed - 1, text.data(), &part), needed, 0),
        CALL(GetFullPathNameA("x", needed, text.data(), &part), needed - 1, 0),
    });
    EXPECT_EQ(text.c_str(), Full("x"));
    EXPECT_STREQ(part, "x");
}

TEST(Path, TheLastComponentIsPointedAt)
{
    WCHAR text[4096];
    WCHAR* part = text;
    GetFullPathNameW(Wide("a/bc.txt").c_str(), 4096, text, &part);
    EXPECT_EQ(WideString(part), Wide("bc.txt"));
    GetFullPathNameW(Wide("a/b\\").c_str(), 4096, text, &part);
    EXPECT_EQ(part, nullptr);
}

TEST(Path, NamesAreConvertedInBothWidths)
{
    WCHAR text[4096];
    const DWORD size =
        GetFullPathNameW(Wide(u"\u00E4\u4E2D\U0001F600").c_str(), 4096, text, nullptr);
    EXPECT_EQ(WideString(text, size), Wide(Current()) + Wide(Side(u"/\u00E4\u4E2D\U0001F600",
                                                                  u"\\\u00E4\u4E2D\U0001F600")));
}

TEST(Path, TheCurrentDirectoryIsReadAndSet)
{
    CreateDirectoryA("sub", nullptr);
    WriteBytes("f", "x");
    const std::string before = Current();
    const auto needed = static_cast<DWORD>(before.size() + 1);
    char text[4096];
    WCHAR wide[4096];
    RunRows({
        CALL(GetCurrentDirectoryA(3, text), needed, 0),
        CALL(GetCurrentDirectoryA(0, nullptr), needed, 0),
        CALL(GetCurrentDirectoryW(needed, wide), needed - 1, 0),
        CALL(SetCurrentDirectoryA("none"), 0, ERROR_FILE_NOT_FOUND),
        CALL(SetCurrentDirectoryA("no\\ne"), 0, ERROR_PATH_NOT_FOUND),
        CALL(SetCurrentDirectoryA("f"), 0, ERROR_DIRECTORY),
        CALL(SetCurrentDirectoryA("f\\x"), 0, ERROR_PATH_NOT_FOUND),
        CALL(SetCurrentDirectoryA(""), 0, ERROR_INVALID_NAME),
        CALL(SetCurrentDirectoryA(nullptr), 0, ERROR_INVALID_NAME),
        CALL(SetCurrentDirectoryW(nullptr), 0, ERROR_INVALID_NAME),
        CALL(SetCurrentDirectoryA("sub"), 1, 0),
    });
    EXPECT_EQ(WideString(wide), Wide(before));
    EXPECT_EQ(Current(), before + Side("/sub", "\\sub"));
    EXPECT_TRUE(SetCurrentDirectoryW(Wide("..\\sub/..").c_str()));
    EXPECT_EQ(Current(), before);
}

TEST(Path, DirectoriesAreMadeAndRemoved)
{
    WriteBytes("f", "x");
    const std::string longer(400, 'x');
    RunRows({
        CALL(CreateDirectoryA("sub", nullptr), 1, 0),
        CALL(CreateDirectoryA("sub", nullptr), 0, ERROR_ALREADY_EXISTS),
        CALL(CreateDirectoryA("f", nullptr), 0, ERROR_ALREADY_EXISTS),
        CALL(CreateDirectoryA("no\\sub", nullptr), 0, ERROR_PATH_NOT_FOUND),
        CALL(CreateDirectoryA("f\\sub", nullptr), 0, ERROR_PATH_NOT_FOUND),
        CALL(CreateDirectoryA("", nullptr), 0, ERROR_PATH_NOT_FOUND),
        CALL(CreateDirectoryA(nullptr, nullptr), 0, ERROR_PATH_NOT_FOUND),
        CALL(CreateDirectoryA(longer.c_str(), nullptr), 0, ERROR_FILENAME_EXCED_RANGE),
        CALL(CreateDirectoryW(Wide("sub/below").c_str(), nullptr), 1, 0),
        CALL(RemoveDirectoryA("sub"), 0, ERROR_DIR_NOT_EMPTY),
        CALL(RemoveDirectoryW(Wide("sub\\below\\").c_str()), 1, 0),
        CALL(RemoveDirectoryA("sub"), 1, 0),
        CALL(RemoveDirectoryA("f"), 0, ERROR_DIRECTORY),
        CALL(RemoveDirectoryA("none"), 0, ERROR_FILE_NOT_FOUND),
        CALL(RemoveDirectoryA("no\\ne"), 0, ERROR_PATH_NOT_FOUND),
        CALL(RemoveDirectoryA("."), 0, ERROR_SHARING_VIOLATION),
        CALL(RemoveDirectoryA(""), 0, ERROR_INVALID_NAME),
        CALL(RemoveDirectoryA(nullptr), 0, ERROR_INVALID_NAME),
    });
}

TEST(Path, TheTemporaryDirectoryEndsInASeparator)
{
    char text[4096];
    const DWORD size = GetTempPathA(sizeof text, text);
    ASSERT_GT(size, 0U);
    EXPECT_EQ(std::string(text).size(), size);
    EXPECT_EQ(text[size - 1], Side('/', '\\'));
    EXPECT_EQ(GetTempPathA(3, text), size + 1);
    WCHAR wide[4096];
    EXPECT_EQ(GetTempPathW(4096, wide), size);
    WCHAR converted[4096];
    GetTempPathA(sizeof text, text);
    MultiByteToWideChar(CP_ACP, 0, text, -1, converted, 4096);
    EXPECT_EQ(WideString(wide), converted);
}

TEST(Path, TheTemporaryDirectoryIsToldByTheEnvironment)
{
    const char* const variable = Side("TMPDIR", "TMP");
    char old[4096];
    const bool was_set = GetEnvironmentVariableA(variable, old, sizeof old) > 0;
    SetEnvironmentVariableA(variable, Current().c_str());
    char text[4096];
    const DWORD size = GetTempPathA(sizeof text, text);
    SetEnvironmentVariableA(variable, was_set ? old : nullptr);
    EXPECT_EQ(std::string(text, size), Current() + Side("/", "\\"));
}

TEST(Path, TheRootIsTheOneDrive)
{
    EXPECT_EQ(GetDriveTypeA(nullptr), UINT(DRIVE_FIXED));
    EXPECT_EQ(GetDriveTypeA("\\"), UINT(DRIVE_FIXED));
    EXPECT_EQ(GetDriveTypeW(Wide("/").c_str()), UINT(DRIVE_FIXED));
    EXPECT_EQ(GetDriveTypeA(""), UINT(DRIVE_NO_ROOT_DIR));
    EXPECT_EQ(GetDriveTypeA("Q:\\"), UINT(DRIVE_NO_ROOT_DIR));
    EXPECT_EQ(GetDriveTypeA("c:"), UINT(Side(DRIVE_NO_ROOT_DIR, DRIVE_FIXED)));
}
