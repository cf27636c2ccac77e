// winapi/tests/Profile/ProfileTest.cpp: profile files: what is read from them and what a writing leaves.
#include "../Support/Calls.h"
#include "../Support/Reference.h"

#include "Support/Directory.h"

#include <fstream>
#include <regex>

namespace
{
// With a directory: else it would lie in the Windows directory.
const char* const PROFILE = ".\\p.ini";
constexpr char UNTOUCHED = '\xEE';

struct Answer
{
    DWORD count = 0;
    std::string bytes; // with the terminator

    bool operator==(const Answer&) const = default;
};

void PrintTo(const Answer& read, std::ostream* out)
{
    *out << read.count << " \"" << testing::PrintToString(read.bytes) << "\"";
}

Answer Get(const char* section, const char* key, const char* otherwise = "def", DWORD size = 1024,
           const char* file = PROFILE)
{
    std::vector<char> buffer(5000, UNTOUCHED);
    Answer read;
    read.count = GetPrivateProfileStringA(section, key, otherwise, buffer.data(), size, file);
    read.bytes.assign(buffer.data(), read.count + 1);
    return read;
}

std::string Value(const char* section, const char* key, const char* otherwise = "(none)")
{
    const Answer read = Get(section, key, otherwise);
    EXPECT_EQ(read.bytes.back(), 0);
    return read.bytes.substr(0, read.count);
}

BOOL Set(const char* section, const char* key, const char* value, const char* file = PROFILE)
{
    return WritePrivateProfileStringA(section, key, value, file);
}

void Make(const std::string& text)
{
    WriteBytes("p.ini", text);
}

std::string Made()
{
    return ReadBytes("p.ini");
}

// ---- The file of answers ------------------------------------------------------------------------

std::string Replaced(std::string text, const std::string& from, const std::string& to)
{
    for (std::size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size())
        text.replace(at, from.size(), to);
    return text;
}

struct Answers
{
    Answers()
    {
        std::ifstream in(WINAPI_TEST_DATA "/profile-answers.txt", std::ios::binary);
        std::string line;
        while (std::getline(in, line) && line != "--- input")
            continue;
        while (std::getline(in, line) && line != "--- answers")
            input += line + "\r\n";
        input = Replaced(input, "<2000 L>", std::string(2000, 'L'));
        while (std::getline(in, line) && line != "<EOF>")
            if (line.substr(line.size() - 2) == "\\r")
                left += line.substr(0, line.size() - 2) + "\r\n";
            else
                Take(line);
        // The long value isn't written out there.
        left = Replaced(left, "long=\r\n", "long=" + std::string(2000, 'L') + "\r\n");
    }

    // A value with a line break takes two lines.
    void Take(const std::string& line)
    {
        if (!calls.empty() && calls.back().find(" -> ") == std::string::npos)
            calls.back() += "\n" + line;
        else
            calls.push_back(line);
    }

    std::string input;
    std::vector<std::string> calls;
    std::string left;
};

// Arguments of the table's calls may be null.
const char* Text(const std::string& argument)
{
    return argument == "NULL" ? nullptr : argument.c_str();
}

std::string Unescaped(const std::string& text)
{
    return Replaced(Replaced(text, "\\0", std::string(1, '\0')), "\\238",
                    std::string(1, UNTOUCHED));
}

// Those that fail were asked of a file, or of a directory, that isn't there, and of a directory.
const char* FileFor(unsigned long error)
{
    return error == ERROR_PATH_NOT_FOUND   ? ".\\none\\p.ini"
           : error == ERROR_FILE_NOT_FOUND ? ".\\none.ini"
           : error == ERROR_ACCESS_DENIED  ? ".\\dir"
                                           : PROFILE;
}

void ExpectRead(const std::smatch& call)
{
    const std::string section = call[1], key = call[2], otherwise = call[3];
    const unsigned long error = std::stoul(call[6]);
    const std::string bytes = Unescaped(call[7]);
    const Answer read =
        Get(Text(section), Text(key), Text(otherwise), std::stoul(call[4]), FileFor(error));
    EXPECT_EQ(GetLastError(), error);
    EXPECT_EQ(read.count, std::stoul(call[5]));
    EXPECT_EQ(read.bytes.substr(0, bytes.size()), bytes);
}

void ExpectWritten(const std::smatch& call)
{
    const std::string section = call[1], key = call[2], value = call[3];
    const unsigned long error = std::stoul(call[5]);
    const bool done = call[4] == "1";
    EXPECT_EQ(Set(Text(section), Text(key), Text(value), FileFor(done ? 0 : error)), done);
    if (!done) {
        EXPECT_EQ(GetLastError(), error);
    }
}
} // namespace

TEST(Profile, AnswersAreThoseOfTheReferenceRun)
{
    const Answers answers;
    const std::regex read(R"(G \[(.*?)\] (.*) \((.*)\) (\d+) -> (\d+) err (\d+) (.*))");
    const std::regex write(R"(S \[([^\]]*)\] ([^=]*)=([^]*) -> (\d) err (\d+))");
    Make(answers.input);
    CreateDirectoryA(".\\dir", nullptr);
    ASSERT_EQ(answers.calls.size(), 55U);
    for (const std::string& call : answers.calls) {
        SCOPED_TRACE(call);
        std::smatch parts;
        SetLastError(0);
        if (std::regex_match(call, parts, read))
            ExpectRead(parts);
        else if (std::regex_match(call, parts, write))
            ExpectWritten(parts);
        else
            ADD_FAILURE() << "not understood";
    }
    EXPECT_EQ(Made(), answers.left);
}

TEST(Profile, OnePairOfEqualQuotesIsTakenOffAValue)
{
    Make("[s]\na=\"x\"\nb='x'\nc=\"x'\nd=\"\ne=\"\"\nf=\"'x'\"\ng=x \"y\"\nh=\" x \" \n");
    EXPECT_EQ(Value("s", "a"), "x");
    EXPECT_EQ(Value("s", "b"), "x");
    EXPECT_EQ(Value("s", "c"), "\"x'");
    EXPECT_EQ(Value("s", "d"), "\"");
    EXPECT_EQ(Value("s", "e"), "");
    EXPECT_EQ(Value("s", "f"), "'x'");
    EXPECT_EQ(Value("s", "g"), "x \"y\"");
    EXPECT_EQ(Value("s", "h"), " x ");
}

TEST(Profile, BlanksAroundNamesAndValuesDoNotCount)
{
    Make(" [ s t ] tail\n\tkey\t=\tvalue\t\n two words = 1\x1A\n\x1Az=2\n");
    EXPECT_EQ(Value("s t", "key"), "value");
    EXPECT_EQ(Value(" s t\t", " key "), "value");
    EXPECT_EQ(Value("s t", "two words"), "1");
    EXPECT_EQ(Value("s t", "two  words"), "(none)");
    EXPECT_EQ(Value("s t", "z"), "2");
}

TEST(Profile, LinesEndInCarriageReturnsAndLineFeeds)
{
    Make("[s]\ra=1\rb=2\nc=3\r\nd=4\n\n\n\r\re=5");
    for (const char* key : {"a", "b", "c", "d", "e"})
        EXPECT_NE(Value("s", key), "(none)") << key;
}

TEST(Profile, TheLastBracketOfALineEndsItsName)
{
    Make("[a]b]\nx=1\n[c\nx=2\n[d] = e]\nx=3\n");
    EXPECT_EQ(Value("a]b", "x"), "1");
    EXPECT_EQ(Value("c", "x"), "(none)");
    EXPECT_EQ(Value("d] = e", "x"), "3");
    EXPECT_EQ(Get(nullptr, nullptr).bytes, std::string("a]b\0d] = e\0\0", 12));
}

TEST(Profile, WhatStandsBeforeTheFirstSectionHasTheEmptyName)
{
    Make("top=1\n[s]\ntop=2\n");
    EXPECT_EQ(Value("", "top"), "1");
    EXPECT_EQ(Value(" ", "top"), "1");
    EXPECT_TRUE(Set("", "new", "3"));
    EXPECT_EQ(Made(), "top=1\r\nnew=3\r\n[s]\r\ntop=2\r\n");
    EXPECT_TRUE(Set("", nullptr, nullptr));
    EXPECT_EQ(Made(), "[s]\r\ntop=2\r\n");
}

TEST(Profile, AKeyWithoutASignHasNoValueUntilItIsGivenOne)
{
    Make("[s]\nk\nk=2\n; remark\n");
    EXPECT_EQ(Value("s", "k"), "(none)");
    EXPECT_EQ(Value("s", "; remark"), "(none)");
    EXPECT_TRUE(Set("s", "k", "1"));
    EXPECT_TRUE(Set("s", "; remark", "3"));
    EXPECT_EQ(Made(), "[s]\r\nk=1\r\nk=2\r\n; remark=3\r\n");
}

TEST(Profile, OnlyTheFirstKeyOfANameIsWrittenAndRemoved)
{
    Make("[s]\nk=1\nk=2\n[S]\nk=3\n");
    EXPECT_TRUE(Set("S", "K", "4"));
    EXPECT_EQ(Made(), "[s]\r\nk=4\r\nk=2\r\n[S]\r\nk=3\r\n");
    EXPECT_TRUE(Set("s", "k", nullptr));
    EXPECT_EQ(Value("s", "k"), "2");
    EXPECT_TRUE(Set("s", nullptr, "ignored"));
    EXPECT_EQ(Made(), "[S]\r\nk=3\r\n");
}

TEST(Profile, AListThatIsEmptyGivesTheDefaultAsItStands)
{
    Make("[s]\n;c=1\nk\n");
    EXPECT_EQ(Get("s", nullptr, " 'd' "), (Answer{5, std::string(" 'd' \0", 6)}));
    EXPECT_EQ(Get("none", nullptr, "d"), (Answer{1, std::string("d\0", 2)}));
    EXPECT_EQ(Get("none", "k", " 'd' "), (Answer{4, std::string(" 'd'\0", 5)}));
    EXPECT_EQ(Get("none", "k", "'d' "), (Answer{1, std::string("d\0", 2)}));
}

TEST(Profile, OfADefaultOnlySpacesAtTheEndAreLost)
{
    Make("[s]\n");
    for (const std::string behind : {"\t", "\r\n", "\x1A", " \t", "\xA0"}) {
        const std::string text = " d" + behind;
        EXPECT_EQ(Value("s", "k", text.c_str()), text);
        EXPECT_EQ(Value("s", "k", (text + "  ").c_str()), text);
    }
}

TEST(Profile, ListsThatDoNotFitEndInTwoZeros)
{
    Make("[one]\na=1\nbb=2\n[two]\n");
    struct
    {
        DWORD size;
        DWORD count;
        std::string bytes;
    } const rows[] = {
        {7, 5, {"a\0bb\0\0", 6}}, {5, 3, {"a\0b\0\0", 5}}, {4, 2, {"a\0\0\0", 4}},
        {3, 1, {"a\0\0", 3}},     {2, 0, {"\0\0", 2}},
    };
    for (const auto& row : rows) {
        std::string buffer(9, UNTOUCHED);
        EXPECT_EQ(GetPrivateProfileStringA("s", "k", "x", buffer.data(), 0, PROFILE), 0U);
        EXPECT_EQ(GetPrivateProfileStringA("one", nullptr, "", buffer.data(), row.size, PROFILE),
                  row.count);
        const std::string stored = buffer.substr(0, row.bytes.size());
        // The reference run leaves the second zero out.
        if (row.size > 5) {
            EXPECT_EQ(stored, row.bytes) << row.size;
        } else {
            EXPECT_PUBLISHED(row.bytes, stored);
        }
        EXPECT_EQ(buffer.substr(row.size), std::string(9 - row.size, UNTOUCHED)) << row.size;
    }
}

TEST(Profile, AMarkedFileKeepsItsEncoding)
{
    const auto units = [](bool swapped, const std::u16string& text) {
        std::string bytes;
        for (const char16_t unit : text) {
            bytes += static_cast<char>(unit >> (swapped ? 8 : 0));
            bytes += static_cast<char>(unit >> (swapped ? 0 : 8));
        }
        return bytes;
    };
    const std::u16string before = u"\uFEFF[A]\nk=\u00E4\u4E2D\n";
    const std::u16string after = u"\uFEFF[A]\r\nk=\u00E4\u4E2D\r\nn=\u00E9\u0444\r\n";
    for (const bool swapped : {false, true}) {
        Make(units(swapped, before));
        WCHAR value[9] = {};
        EXPECT_EQ(GetPrivateProfileStringW(Wide("a").c_str(), Wide("K").c_str(), nullptr, value, 9,
                                           Wide(PROFILE).c_str()),
                  2U);
        EXPECT_EQ(WideString(value), Wide(u"\u00E4\u4E2D"));
        EXPECT_TRUE(WritePrivateProfileStringW(Wide("a").c_str(), Wide("n").c_str(),
                                               Wide(u"\u00E9\u0444").c_str(),
                                               Wide(PROFILE).c_str()));
        EXPECT_EQ(Made(), units(swapped, after));
    }
    Make("\xEF\xBB\xBF[A]\nk=\xC3\xA4\n");
    EXPECT_TRUE(WritePrivateProfileStringW(Wide("a").c_str(), Wide("n").c_str(),
                                           Wide(u"\u4E2D").c_str(), Wide(PROFILE).c_str()));
    EXPECT_EQ(Made(), "\xEF\xBB\xBF[A]\r\nk=\xC3\xA4\r\nn=\xE4\xB8\xAD\r\n");
}

TEST(Profile, NamesIgnoreCaseInEveryScript)
{
    const auto find = [](const std::u16string& section, const std::u16string& key) {
        WCHAR value[9] = {};
        GetPrivateProfileStringW(Wide(section).c_str(), Wide(key).c_str(), Wide("-").c_str(), value,
                                 9, Wide(PROFILE).c_str());
        return WideString(value) == Wide("1");
    };
    std::string bytes = "\xFF\xFE";
    for (const char16_t unit : std::u16string(u"[\u00C4\u0416\u03A3]\n\u0100\u4E2D\U0001F600=1\n"))
        (bytes += static_cast<char>(unit)) += static_cast<char>(unit >> 8);
    Make(bytes);
    EXPECT_TRUE(find(u"\u00C4\u0416\u03A3", u"\u0100\u4E2D\U0001F600"));
    EXPECT_FALSE(find(u"\u00C4\u0416\u03A3", u"\u0100\u4E2D\U0001F601"));
    EXPECT_PUBLISHED(true, find(u"\u00E4\u0436\u03C3", u"\u0101\u4E2D\U0001F600"));
}

TEST(Profile, BytesOfTheAnsiPageComeBackWhole)
{
    std::string all;
    for (int code = 0x80; code < 0x100; ++code)
        all += static_cast<char>(code);
    EXPECT_TRUE(Set("s", all.c_str(), all.c_str()));
    EXPECT_EQ(Made(), "[s]\r\n" + all + "=" + all + "\r\n");
    EXPECT_EQ(Value("s", all.c_str()), all);
}

TEST(Profile, WhoSharesTooLittleIsTold)
{
    Make("[s]\nk=1\n");
    const DWORD shares[] = {0, FILE_SHARE_READ, FILE_SHARE_READ | FILE_SHARE_WRITE};
    for (const DWORD share : shares) {
        const File file(PROFILE, GENERIC_READ, share, OPEN_EXISTING);
        SetLastError(0);
        EXPECT_EQ(Value("s", "k"), share ? "1" : "(none)");
        EXPECT_EQ(GetLastError(), share ? 0UL : DWORD(ERROR_SHARING_VIOLATION));
        const BOOL writes = (share & FILE_SHARE_WRITE) != 0;
        SetLastError(0);
        EXPECT_EQ(Set("s", "n", "1"), writes);
        if (!writes) {
            EXPECT_EQ(GetLastError(), DWORD(ERROR_SHARING_VIOLATION));
        }
    }
    EXPECT_EQ(Made(), "[s]\r\nk=1\r\nn=1\r\n");
}

TEST(Profile, WhatCannotBeWrittenIsTold)
{
    CreateDirectoryA(".\\dir", nullptr);
    RunRows({
        CALL(Set("s", "k", "v", ".\\dir"), 0, ERROR_ACCESS_DENIED),
        CALL(Set("s", "k", "v", ".\\none\\p.ini"), 0, ERROR_PATH_NOT_FOUND),
        CALL(Set("s", "k", nullptr, ".\\none\\p.ini"), 0, ERROR_PATH_NOT_FOUND),
        CALL(Set("s", "k", "v", ""), 0, ERROR_ACCESS_DENIED),
        CALL(Set(nullptr, "k", "v"), 0, ERROR_FILE_NOT_FOUND),
    });
    EXPECT_FALSE(Set(nullptr, nullptr, nullptr));
    EXPECT_TRUE(Set("s", "k", nullptr));
    EXPECT_TRUE(Set("s", nullptr, nullptr));
    EXPECT_EQ(GetFileAttributesA(PROFILE), DWORD(INVALID_FILE_ATTRIBUTES));
}

TEST(Profile, AReadOnlyFileStaysAsItIs)
{
    const std::string text = "[s]\nk=1\n";
    Make(text);
    SetFileAttributesA(PROFILE, FILE_ATTRIBUTE_READONLY);
    SetLastError(0);
    // The reference run lets the superuser write.
    const BOOL written = Set("s", "k", "2");
    if (HOST_PATHS) {
        EXPECT_FALSE(written);
        EXPECT_EQ(GetLastError(), DWORD(ERROR_ACCESS_DENIED));
        EXPECT_EQ(Made(), text);
    }
    EXPECT_EQ(Value("s", "k"), written ? "2" : "1");
    SetFileAttributesA(PROFILE, FILE_ATTRIBUTE_NORMAL);
}

TEST(Profile, AChangeThatChangesNothingLeavesTheFileUntouched)
{
    const std::string text = "[s]\n\n  k  =  v  \n";
    Make(text);
    EXPECT_TRUE(Set("S", "K", "v"));
    EXPECT_TRUE(Set("s", "none", nullptr));
    EXPECT_TRUE(Set("none", nullptr, nullptr));
    EXPECT_EQ(Made(), text);
}

TEST(Profile, LineBreaksInAValueBecomeLinesOfTheFile)
{
    EXPECT_TRUE(Set("s", "k", "a\r\n[t]\r\nx=1"));
    EXPECT_EQ(Value("t", "x"), "1");
    EXPECT_EQ(Value("s", "k"), "a");
}
