// tests/Ostra/File/FileSystemTest.cpp
#include <Ostra/File/FileSystem.h>

#include <System/OS/OS.h>

#include <gtest/gtest.h>

#include <windows.h>

#include <ctime>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include "Support/Directory.h"
#include "Support/Files.h"

namespace fs = std::filesystem;

namespace
{
const Failure NONE;

std::string Here()
{
    return fs::current_path().string();
}

// The parts of a path, into strings of a class.
template <class String>
std::vector<std::string> Split(const CT_String& path)
{
    String drive, directory, name, extension;
    CT_FileSystem::sv_SplitPath(&path, &drive, &directory, &name, &extension);
    return {Get(drive), Get(directory), Get(name), Get(extension)};
}

// A string of a class, or null for "0".
template <class String>
struct Part
{
    explicit Part(const std::string& text) : given(text != "0")
    {
        string.v_Set(text.c_str(), -1, 0);
    }
    operator const CT_String*() const { return given ? &string : nullptr; }

    String string;
    bool given;
};

template <class String>
std::string Join(const std::string& drive, const std::string& directory, const std::string& name,
                 const std::string& extension)
{
    String path;
    CT_FileSystem::sv_MakePath(&path, Part<String>(drive), Part<String>(directory),
                               Part<String>(name), Part<String>(extension));
    return Get(path);
}

template <class String>
std::string Display(const std::string& text, unsigned most)
{
    String path;
    path.v_Set(text.c_str(), -1, 0);
    CT_FileSystem::sv_MakeDisplayString(&path, most);
    return Get(path);
}

std::string CurrentPath(unsigned drive)
{
    CT_UString path = Name("left over");
    CT_FileSystem::sv_GetCurrentPath(&path, drive);
    return Get(path);
}

// The report of sv_GetCurrentPath: the name of the call is 8-bit text read as wide text.
Failure NoCurrentPath(unsigned code)
{
    const std::string number = std::to_string(code);
    const std::string call =
        CT_OS::sb_GetIsWindowsNT() ? "\\x6774\\x7465\\x6364\\x6477" : "\\x6567\\x6474\\x7763d";
    return {code,
            "(" + number + "): File \"\": " + call + " returned error " + number,
            {"Ostra/File/FileSystem"}};
}

const Failure NO_FULL_PATH = {60012, "(60012): Semantic error: ", {"Ostra/File/FileSystem"}};

std::string FullPath(const std::string& text)
{
    CT_UString path = Name(text);
    CT_FileSystem::sv_FullPath(&path);
    return Get(path);
}

int Exists(const std::string& path)
{
    const CT_UString name = Name(path);
    return CT_FileSystem::sb_IsExistent(&name);
}

int Change(const std::string& path)
{
    const CT_UString name = Name(path);
    return CT_FileSystem::sb_ChangePath(&name);
}

int Make(const std::string& path)
{
    const CT_CString name(path.c_str());
    return CT_FileSystem::sb_MakePath(&name);
}

int Remove(const std::string& path)
{
    const CT_UString name = Name(path);
    return CT_FileSystem::sb_RemovePath(&name);
}

std::string TemporaryName(const std::string& prefix, const std::string& extension)
{
    CT_UString path;
    const CT_UString first = Name(prefix);
    const CT_CString last(extension.c_str());
    CT_FileSystem::sv_MakeTemporaryName(&path, &first, &last, nullptr);
    return Get(path);
}

// The n-th number after a seed.
unsigned Number(unsigned seed, unsigned n)
{
    unsigned number = 0;
    for (; n; --n) {
        seed = seed * 214013u + 2531011u;
        number = (seed >> 16) % 32768;
    }
    return number;
}

// Whether the name is the n-th of a second between the two.
bool IsTemporaryName(const std::string& path, std::time_t from, std::time_t to, unsigned n)
{
    for (std::time_t second = from; second <= to; ++second) {
        const std::string name = "pre" + std::to_string(GetCurrentThreadId()) +
                                 std::to_string(Number(static_cast<unsigned>(second), n)) + ".ext";
        if (fs::path(path).filename() == name)
            return true;
    }
    return false;
}
} // namespace

TEST(FileSystem, FilesAndDirectoriesExist)
{
    WriteBytes("file", "");
    fs::create_directory("directory");
    EXPECT_EQ(Exists("file"), 1);
    EXPECT_EQ(Exists("directory"), 1);
    EXPECT_EQ(Exists(Here()), 1);
    EXPECT_EQ(Exists("missing"), 0);
    EXPECT_EQ(Exists("missing/file"), 0);
    EXPECT_EQ(Exists(""), 0);
    EXPECT_EQ(TakeFailure(), NONE);
}

TEST(FileSystem, PathsSplitIntoFourParts)
{
    const struct
    {
        const char* path;
        std::vector<std::string> parts;
    } cases[] = {
        {"c:\\a.b\\f.txt", {"c:", "\\a.b\\", "f", ".txt"}},
        {".profile", {"", "", "", ".profile"}},
        {"a:b", {"a:", "", "b", ""}},
        {"name.", {"", "", "name", "."}},
        {"", {"", "", "", ""}},
        {"c", {"", "", "c", ""}},
        {"c:", {"c:", "", "", ""}},
        {"c:.", {"c:", "", "", "."}},
        {"c:/", {"c:", "/", "", ""}},
        {":", {"", "", ":", ""}},
        {"::x", {"::", "", "x", ""}},
        {"ab:c", {"", "", "ab:c", ""}},
        {"a/b\\c/d.e.f", {"", "a/b\\c/", "d.e", ".f"}},
        {"dir.x/name", {"", "dir.x/", "name", ""}},
        {"dir.x\\.y", {"", "dir.x\\", "", ".y"}},
        {"\\\\server\\share\\f", {"", "\\\\server\\share\\", "f", ""}},
        {"..", {"", "", ".", "."}},
        {"a\\..", {"", "a\\", ".", "."}},
        {"/", {"", "/", "", ""}},
        {"x y.z ", {"", "", "x y", ".z "}},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.path);
        const CT_CString narrow(row.path);
        const CT_UString wide = Name(row.path);
        EXPECT_EQ(Split<CT_UString>(wide), row.parts);
        EXPECT_EQ(Split<CT_UString>(narrow), row.parts);
        EXPECT_EQ(Split<CT_CString>(wide), row.parts);
        EXPECT_EQ(Split<CT_CString>(narrow), row.parts);
    }
}

TEST(FileSystem, SplittingFillsOnlyTheOutputsThatAreGiven)
{
    const CT_UString path = Name("c:\\a\\f.txt");
    CT_UString drive, directory, name, extension;
    CT_FileSystem::sv_SplitPath(&path, &drive, nullptr, nullptr, nullptr);
    EXPECT_EQ(Get(drive), "c:");
    CT_FileSystem::sv_SplitPath(&path, nullptr, &directory, nullptr, nullptr);
    EXPECT_EQ(Get(directory), "\\a\\");
    CT_FileSystem::sv_SplitPath(&path, nullptr, nullptr, &name, nullptr);
    EXPECT_EQ(Get(name), "f");
    CT_FileSystem::sv_SplitPath(&path, nullptr, nullptr, nullptr, &extension);
    EXPECT_EQ(Get(extension), ".txt");
    CT_FileSystem::sv_SplitPath(&path, nullptr, nullptr, nullptr, nullptr);
}

TEST(FileSystem, AStringMayBeSplitIntoItself)
{
    CT_UString path = Name("c:\\a\\f.txt");
    CT_UString extension;
    CT_FileSystem::sv_SplitPath(&path, nullptr, nullptr, &path, &extension);
    EXPECT_EQ(Get(path), "f");
    EXPECT_EQ(Get(extension), ".txt");
}

TEST(FileSystem, PartsAreCutTo255Characters)
{
    for (const unsigned length : {254u, 255u, 256u, 400u}) {
        SCOPED_TRACE(length);
        const unsigned cut = length < 255 ? length : 255;
        const std::string part(length, 'x');
        EXPECT_EQ(Split<CT_UString>(Name("c:" + part.substr(1) + "/n.e"))[1],
                  (part.substr(1) + "/").substr(0, cut));
        EXPECT_EQ(Split<CT_UString>(Name("c:/" + part + ".e")),
                  (std::vector<std::string>{"c:", "/", part.substr(0, cut), ".e"}));
        EXPECT_EQ(Split<CT_CString>(Name("n." + part))[3],
                  ("." + part).substr(0, cut + (length < 255)));
    }
}

TEST(FileSystem, PartsAreJoined)
{
    const struct
    {
        std::vector<std::string> parts; // "0" is null
        const char* path;
    } cases[] = {
        {{"c:", "d", "n", "e"}, "c:d\\n.e"},
        {{"c:", "d", "n", ".e"}, "c:d\\n.e"},
        {{"c:", "d\\", "n", "e"}, "c:d\\n.e"},
        {{"c:", "d/", "n", "e"}, "c:d/n.e"},
        {{"drive", "", "n", ""}, "d:n"},
        {{"c", "0", "0", "0"}, "c:"},
        {{"0", "\\", "n", "0"}, "\\n"},
        {{"0", "d", "0", "0"}, "d\\"},
        {{"", "", "n", "."}, "n."},
        {{"", "", "n", ".."}, "n.."},
        {{"", "", "", "e"}, ".e"},
        {{"0", "0", "0", "0"}, ""},
        {{"", "", "", ""}, ""},
        {{"", "a.b", "c.d", "e.f"}, "a.b\\c.d.e.f"},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.path);
        const auto& p = row.parts;
        EXPECT_EQ(Join<CT_UString>(p[0], p[1], p[2], p[3]), row.path);
        EXPECT_EQ(Join<CT_CString>(p[0], p[1], p[2], p[3]), row.path);
    }
}

TEST(FileSystem, LongPartsAreJoinedWhole)
{
    const std::string name(400, 'n');
    EXPECT_EQ(Join<CT_UString>("c", "d", name, "e"), "c:d\\" + name + ".e");
    EXPECT_EQ(Join<CT_CString>("c", "d", name, "e"), "c:d\\" + name + ".e");
}

TEST(FileSystem, SplitAndJoinAreInverse)
{
    for (const std::string path :
         {"c:\\a.b\\f.txt", ".profile", "a:b", "name.", "", "a/b\\c/d.e.f", "/"}) {
        SCOPED_TRACE(path);
        const auto parts = Split<CT_UString>(Name(path));
        EXPECT_EQ(Join<CT_UString>(parts[0], parts[1], parts[2], parts[3]), path);
    }
}

TEST(FileSystem, FullPathStartsFromTheCurrentDirectory)
{
    EXPECT_EQ(FullPath("x"), Here() + SEPARATOR + "x");
    EXPECT_EQ(FullPath("a/../b\\c"), Here() + SEPARATOR + "b" + SEPARATOR + "c");
    EXPECT_EQ(FullPath(Here()), Here());
    CT_CString narrow("x");
    CT_FileSystem::sv_FullPath(&narrow);
    EXPECT_EQ(Get(narrow), Here() + SEPARATOR + "x");
    EXPECT_EQ(TakeFailure(), NONE);
}

TEST(FileSystem, FullPathOfNothingIsTheCurrentDirectory)
{
    EXPECT_EQ(FullPath(""), Here());
    EXPECT_EQ(TakeFailure(), NONE);
}

TEST(FileSystem, FullPathHasRoomFor259Characters)
{
    const unsigned left = static_cast<unsigned>(259 - Here().size() - 1);
    const std::string fits(left, 'x');
    EXPECT_EQ(FullPath(fits), Here() + SEPARATOR + fits);
    EXPECT_EQ(TakeFailure(), NONE);
    const std::string longer(left + 1, 'x');
    EXPECT_EQ(FullPath(longer), longer);
    EXPECT_EQ(TakeFailure(), NO_FULL_PATH);
}

TEST(FileSystem, CurrentPathOfNoDriveInParticular)
{
    EXPECT_EQ(CurrentPath(0), Here());
    CT_CString narrow;
    CT_FileSystem::sv_GetCurrentPath(&narrow, 0);
    EXPECT_EQ(Get(narrow), Here());
    EXPECT_EQ(TakeFailure(), NONE);
}

TEST(FileSystem, CurrentPathOfTheCurrentDrive)
{
    if (HOST_PATHS)
        GTEST_SKIP() << "there are no drives";
    EXPECT_EQ(CurrentPath(static_cast<unsigned>(Here()[0] - 'A' + 1)), Here());
    EXPECT_EQ(TakeFailure(), NONE);
}

TEST(FileSystem, CurrentPathOfAMissingDriveIsReported)
{
    unsigned missing = 1;
    while (GetDriveTypeA(std::string{static_cast<char>('A' + missing - 1), ':', '\\'}.c_str()) > 1)
        ++missing;
    ASSERT_LE(missing, 26u);
    for (const unsigned drive : {missing, 27u, 33u, 256u, 259u, 0xFFFFFFFFu}) {
        SCOPED_TRACE(drive);
        EXPECT_EQ(CurrentPath(drive), "");
        EXPECT_EQ(TakeFailure(), NoCurrentPath(13));
    }
}

TEST(FileSystem, CurrentPathHasRoomFor259Characters)
{
    if (!HOST_PATHS)
        GTEST_SKIP() << "the system lets nobody into a longer directory";
    unsigned left = static_cast<unsigned>(258 - Here().size());
    fs::create_directory(std::string(left, 'x'));
    fs::create_directory(std::string(left + 1, 'x'));
    const fs::path parent = fs::current_path();
    fs::current_path(std::string(left, 'x'));
    EXPECT_EQ(CurrentPath(0), Here());
    EXPECT_EQ(Here().size(), 259u);
    EXPECT_EQ(TakeFailure(), NONE);
    fs::current_path(parent / std::string(left + 1, 'x'));
    EXPECT_EQ(CurrentPath(0), "");
    EXPECT_EQ(TakeFailure(), NoCurrentPath(34));
    EXPECT_EQ(FullPath(""), "");
    EXPECT_EQ(TakeFailure(), NO_FULL_PATH);
}

TEST(FileSystem, DirectoriesAreEntered)
{
    fs::create_directory("inner");
    const std::string outer = Here();
    EXPECT_EQ(Change("inner"), 1);
    EXPECT_EQ(Here(), outer + SEPARATOR + "inner");
    EXPECT_EQ(Change(".."), 1);
    EXPECT_EQ(Here(), outer);
    EXPECT_EQ(TakeFailure(), NONE);
}

TEST(FileSystem, TheEnteredDirectoryBecomesThatOfItsDrive)
{
    fs::create_directory("inner");
    ASSERT_EQ(Change("inner"), 1);
    const std::string variable = {'=', HOST_PATHS ? '/' : Here()[0], ':', 0};
    char value[300] = "";
    EXPECT_EQ(GetEnvironmentVariableA(variable.c_str(), value, sizeof(value)), Here().size());
    EXPECT_EQ(value, Here());
    ASSERT_EQ(Change(".."), 1);
    GetEnvironmentVariableA(variable.c_str(), value, sizeof(value));
    EXPECT_EQ(value, Here());
}

TEST(FileSystem, WhatIsNoDirectoryIsNotEntered)
{
    WriteBytes("file", "");
    const std::string here = Here();
    EXPECT_EQ(Change("missing"), 0);
    EXPECT_EQ(Change("file"), 0);
    EXPECT_EQ(Change(""), 0);
    EXPECT_EQ(Here(), here);
    EXPECT_EQ(TakeFailure(), NONE);
}

TEST(FileSystem, OneLevelOfDirectoriesIsMade)
{
    EXPECT_EQ(Make("a\\b"), 0);
    EXPECT_FALSE(fs::exists("a"));
    EXPECT_EQ(Make("a"), 1);
    EXPECT_EQ(Make("a\\b"), 1);
    EXPECT_TRUE(fs::is_directory("a/b"));
    EXPECT_EQ(Make("a"), 0);
    WriteBytes("file", "");
    EXPECT_EQ(Make("file"), 0);
    EXPECT_EQ(Make(""), 0);
    EXPECT_EQ(TakeFailure(), NONE);
}

TEST(FileSystem, OnlyEmptyDirectoriesAreRemoved)
{
    fs::create_directories("a/b");
    WriteBytes("file", "");
    EXPECT_EQ(Remove("a"), 0);
    EXPECT_EQ(Remove("file"), 0);
    EXPECT_EQ(Remove("missing"), 0);
    EXPECT_EQ(Remove(""), 0);
    EXPECT_EQ(Remove("a/b"), 1);
    EXPECT_EQ(Remove("a"), 1);
    EXPECT_FALSE(fs::exists("a"));
    EXPECT_TRUE(fs::exists("file"));
    EXPECT_EQ(TakeFailure(), NONE);
}

TEST(FileSystem, LeadingDirectoriesGiveWayToPoints)
{
    const struct
    {
        const char* path;
        unsigned most;
        const char* shown;
    } cases[] = {
        {"c:\\one\\two\\three\\file.txt", 25, "c:\\one\\two\\three\\file.txt"},
        {"c:\\one\\two\\three\\file.txt", 30, "c:\\one\\two\\three\\file.txt"},
        {"c:\\one\\two\\three\\file.txt", 24, "c:\\...\\three\\file.txt"},
        {"c:\\one\\two\\three\\file.txt", 21, "c:\\...\\three\\file.txt"},
        {"c:\\one\\two\\three\\file.txt", 20, "c:\\...\\file.txt"},
        {"c:\\one\\two\\three\\file.txt", 15, "c:\\...\\file.txt"},
        {"c:\\one\\two\\three\\file.txt", 14, "c:\\...\\file.txt"},
        {"c:\\one\\two\\three\\file.txt", 0, "c:\\...\\file.txt"},
        {"c:one\\two", 5, "c:...\\two"},
        {"c:/one/two", 9, "c:/.../two"},
        {"/usr/local/share/doc", 12, "/.../doc"},
        {"/usr/local/share/doc", 14, "/.../share/doc"},
        {"one\\two", 6, "...\\two"},
        {"\\\\server\\share\\file", 12, "\\...\\file"},
        // As long as a "\" is left, a "/" is no place to cut at.
        {"a/b/c\\dd/eeee", 11, "...\\dd/eeee"},
        {"a/b/c\\dd/eeee", 8, ".../eeee"},
        {"c:\\a-name-that-is-long.txt", 5, "c:\\a-name-that-is-long.txt"},
        {"a-name-that-is-long.txt", 5, "a-name-that-is-long.txt"},
        {"c:", 1, "c:"},
        {"", 0, ""},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(std::string(row.path) + " in " + std::to_string(row.most));
        EXPECT_EQ(Display<CT_UString>(row.path, row.most), row.shown);
        EXPECT_EQ(Display<CT_CString>(row.path, row.most), row.shown);
    }
}

TEST(FileSystem, TemporaryNamesAreNewInTheTemporaryDirectory)
{
    const std::time_t from = std::time(nullptr);
    const std::string path = TemporaryName("pre", "ext");
    const std::time_t to = std::time(nullptr);
    EXPECT_TRUE(IsTemporaryName(path, from, to, 1)) << path;
    EXPECT_TRUE(fs::path(path).is_absolute()) << path;
    char directory[260] = "";
    GetTempPathA(sizeof(directory), directory);
    EXPECT_EQ(path.substr(0, path.rfind(SEPARATOR) + 1), directory);
    EXPECT_FALSE(fs::exists(path));
    EXPECT_EQ(TakeFailure(), NONE);
}

TEST(FileSystem, ATemporaryNameInUseIsPassedBy)
{
    const std::time_t from = std::time(nullptr);
    const std::string first = TemporaryName("pre", "ext");
    WriteBytes(first, "");
    const std::string second = TemporaryName("pre", "ext");
    const std::time_t to = std::time(nullptr);
    fs::remove(first);
    EXPECT_NE(first, second);
    // The second number of the same second, or the first of a later one.
    EXPECT_TRUE(IsTemporaryName(second, from, to, 2) || IsTemporaryName(second, from + 1, to, 1));
}

TEST(FileSystem, ATemporaryNameInUseIsPassedByWhileAnErrorStands)
{
    const std::string first = TemporaryName("pre", "ext");
    WriteBytes(first, "");
    CT_ErrorManager::spco_Get()->v_SetError(1234, Units(u"first"));
    const std::string second = TemporaryName("pre", "ext");
    EXPECT_EQ(TakeFailure(), (Failure{1234, "(1234): first", {}}));
    EXPECT_FALSE(fs::exists(second)) << second;
    EXPECT_NE(second, "");
    fs::remove(first);
}

TEST(FileSystem, TemporaryNamesOfTwoThreadsDiffer)
{
    std::string other;
    std::thread([&] { other = TemporaryName("pre", "ext"); }).join();
    EXPECT_NE(TemporaryName("pre", "ext"), other);
}

TEST(FileSystem, TheLastArgumentOfATemporaryNameIsNotLookedAt)
{
    CT_CString path;
    const CT_CString text("x");
    CT_FileSystem::sv_MakeTemporaryName(&path, &text, &text, &text);
    EXPECT_EQ(Get(path).substr(Get(path).size() - 2), ".x");
    EXPECT_EQ(TakeFailure(), NONE);
}
