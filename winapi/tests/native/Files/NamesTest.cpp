// winapi/tests/native/Files/NamesTest.cpp: names as wide text and as UTF-8, and patterns.
#include "../../Support/Calls.h"

#include "Files/Names.h"
#include "Files/Wildcard.h"
#include "Support/Directory.h"

#include <filesystem>
#include <random>

using namespace winapi;

namespace
{
std::string Bytes(const char8_t* text)
{
    return reinterpret_cast<const char*>(text);
}

bool Fits(const std::string& name, const std::string& pattern)
{
    return FitsPattern(Wide(name), Wide(pattern));
}

// The rules of patterns, taken literally.
bool ModelFits(const std::string& name, const std::string& pattern)
{
    if (pattern.empty())
        return name.empty();
    const std::string rest = pattern.substr(1);
    if (pattern[0] == '*') {
        for (std::size_t i = 0; i <= name.size(); ++i)
            if (ModelFits(name.substr(i), rest))
                return true;
        return false;
    }
    if (pattern[0] == '?' && (name.empty() || name[0] == '.') && ModelFits(name, rest))
        return true;
    if (pattern[0] == '.' && name.empty())
        return rest.find_first_not_of("*.") == std::string::npos;
    return !name.empty() && (pattern[0] == '?' || pattern[0] == name[0]) &&
           ModelFits(name.substr(1), rest);
}
} // namespace

TEST(Names, WellFormedTextGoesThereAndBack)
{
    const char16_t* const texts[] = {u"",
                                     u"a",
                                     u"\u007F\u0080\u07FF\u0800\uFFFD\uFFFF",
                                     u"\uD7FF\uE000",
                                     u"\U00010000\U0010FFFF",
                                     u"a\u00E4\u4E2D\U0001F600z"};
    for (const char16_t* text : texts) {
        const auto utf8 = ToUtf8(Wide(text));
        ASSERT_TRUE(utf8);
        EXPECT_EQ(FromUtf8(*utf8), Wide(text));
    }
    EXPECT_EQ(ToUtf8(Wide(u"a\u00E4\u4E2D\U0001F600")), Bytes(u8"a\u00E4\u4E2D\U0001F600"));
}

TEST(Names, EveryUnitButASurrogateIsText)
{
    for (unsigned unit = 1; unit < 0x10000; ++unit) {
        const WCHAR text[] = {static_cast<WCHAR>(unit)};
        const auto utf8 = ToUtf8({text, 1});
        EXPECT_EQ(utf8.has_value(), unit < 0xD800 || unit > 0xDFFF) << unit;
        EXPECT_EQ(FromUtf8(utf8.value_or("a")), WideString(1, utf8 ? text[0] : 'a')) << unit;
    }
}

TEST(Names, IllFormedUtf8IsNoText)
{
    const char* const texts[] = {
        "\x80",         "\xBF",         "\xC0\x80",         "\xC1\xBF",         "\xC2",
        "\xC2 ",        "\xE0\x80\x80", "\xE0\x9F\xBF",     "\xED\xA0\x80",     "\xED\xBF\xBF",
        "\xE4\xB8",     "a\xE4\xB8z",   "\xF0\x8F\xBF\xBF", "\xF4\x90\x80\x80", "\xF5\x80\x80\x80",
        "\xF8\x88\x80", "\xFF",         "\xF0\x9F\x98"};
    for (const char* text : texts)
        EXPECT_FALSE(FromUtf8(text)) << testing::PrintToString(text);
}

TEST(Names, LoneSurrogatesAreNoName)
{
    for (const char16_t* name :
         {u"a\xD800", u"\xD800z", u"\xDC00", u"a\xDC00\xD800", u"\xD800\xD800\xDC00"}) {
        SetLastError(0);
        EXPECT_EQ(
            CreateFileW(Wide(name).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr),
            INVALID_HANDLE_VALUE);
        EXPECT_EQ(GetLastError(), DWORD(ERROR_INVALID_NAME));
    }
}

TEST(Names, TheParentAndTheLastComponentAreTold)
{
    struct Case
    {
        const char* path;
        const char* parent;
        const char* last;
    };
    const Case cases[] = {
        {"a", ".", "a"},  {"a/", ".", "a"},  {"a/b", "a", "b"},   {"a/b//", "a", "b"},
        {"/a", "/", "a"}, {"/a/", "/", "a"}, {"/a/b", "/a", "b"}, {"../x", "..", "x"},
    };
    for (const Case& row : cases) {
        EXPECT_EQ(ParentOf(row.path), row.parent) << row.path;
        EXPECT_EQ(LastComponent(row.path), row.last) << row.path;
    }
    EXPECT_EQ(ParentOf("/"), "/");
}

TEST(Names, PatternsFollowTheirRules)
{
    for (const char* pattern : {"*", "*.*", "*.", "**", "*.*.*"})
        for (const char* name : {".", "..", "a", "a.b", ".a", "a.b.c"})
            EXPECT_TRUE(Fits(name, pattern)) << name << ' ' << pattern;
    EXPECT_TRUE(Fits("noext", "????????.*"));
    EXPECT_FALSE(Fits("noext", "????????.???"));
    EXPECT_TRUE(Fits("a.txt", "????????.???"));
    EXPECT_FALSE(Fits("a.text", "????????.???"));
    EXPECT_FALSE(Fits("A", "a"));
    EXPECT_FALSE(Fits("", "a"));
    EXPECT_FALSE(Fits("ab", "a"));
    EXPECT_FALSE(Fits("a", "ab"));
}

TEST(Names, PatternsFitAsAModelOfTheRulesSays)
{
    const unsigned seed = Seed(4711);
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    const auto text = [&](const char* letters, unsigned count, unsigned size) {
        std::string result;
        for (unsigned i = random() % size; i > 0; --i)
            result += letters[random() % count];
        return result;
    };
    for (int i = 0; i < 20'000; ++i) {
        const std::string name = text("ab.", 3, 8);
        const std::string pattern = text("ab.?**", 6, 7);
        EXPECT_EQ(Fits(name, pattern), ModelFits(name, pattern)) << name << ' ' << pattern;
    }
}

TEST(Names, APatternOfManyStarsIsSoonDecided)
{
    std::string pattern;
    for (int i = 0; i < 100; ++i)
        pattern += "*a";
    EXPECT_FALSE(Fits(std::string(255, 'a'), pattern + "b"));
}

TEST(Names, EntriesThatNoServiceCouldNameAreLeftOut)
{
    WriteBytes(std::filesystem::path("a\xFF"), "x");
    WriteBytes(std::filesystem::path("a\\b"), "x");
    WriteBytes("a", "x");
    WIN32_FIND_DATAA data;
    const HANDLE search = FindFirstFileA("a*", &data);
    ASSERT_NE(search, INVALID_HANDLE_VALUE);
    EXPECT_STREQ(data.cFileName, "a");
    EXPECT_FALSE(FindNextFileA(search, &data));
    FindClose(search);
}

TEST(Names, SymbolicLinksAreFollowedButDeletedThemselves)
{
    WriteBytes("f", "contents");
    std::filesystem::create_symlink("f", "link");
    std::filesystem::create_symlink("missing", "dangling");
    EXPECT_EQ(GetFileAttributesA("link"), DWORD(FILE_ATTRIBUTE_ARCHIVE));
    EXPECT_EQ(TryOpen("dangling", GENERIC_READ, 0, OPEN_EXISTING), INVALID);
    {
        const File holder("f", GENERIC_READ, 0, OPEN_EXISTING);
        EXPECT_EQ(TryOpen("link", GENERIC_READ, 0, OPEN_EXISTING), INVALID);
        EXPECT_TRUE(DeleteFileA("link"));
    }
    EXPECT_EQ(ReadBytes("f"), "contents");
    EXPECT_EQ(TryOpen("dangling", GENERIC_WRITE, 0, OPEN_ALWAYS), OPENED);
    EXPECT_TRUE(std::filesystem::exists("missing"));
    EXPECT_TRUE(MoveFileExA("dangling", "moved", MOVEFILE_COPY_ALLOWED));
    EXPECT_TRUE(std::filesystem::is_symlink("moved"));
}

TEST(Names, ACurrentDirectoryThatIsGoneHasNoName)
{
    const auto before = std::filesystem::current_path();
    std::filesystem::create_directory("gone");
    std::filesystem::current_path("gone");
    std::filesystem::remove(before / "gone");
    char text[10];
    RunRows({
        CALL(GetCurrentDirectoryA(10, text), 0, ERROR_PATH_NOT_FOUND),
        CALL(GetFullPathNameA("x", 10, text, nullptr), 0, ERROR_PATH_NOT_FOUND),
    });
    std::filesystem::current_path(before);
}
