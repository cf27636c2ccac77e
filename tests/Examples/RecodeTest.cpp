// tests/Examples/RecodeTest.cpp: what the recode program makes of files.
#include "RunRecode.h"

#include <System/OS/OS.h>
#include <Common/Utf8.h>

#include <gtest/gtest.h>

#include <windows.h>

#include "Support/Directory.h"
#include "Support/MessageBox.h"

#include <filesystem>
#include <map>
#include <set>
#include <string>

namespace fs = std::filesystem;

namespace
{
// All encodings that the program knows, by their names on the command line.
const std::vector<std::string>& Encodings()
{
    static const std::vector<std::string> names = [] {
        std::vector<std::string> all = {"utf-8", "utf-8-mark", "utf-16", "utf-16be", "utf-7"};
        for (unsigned page = 2; page < 60000; ++page) {
            if (IsValidCodePage(page) && recode::Encoding().Parse(std::to_string(page)))
                all.push_back(std::to_string(page));
        }
        return all;
    }();
    return names;
}

// The text in each encoding that holds it.
std::map<std::string, std::string> InAll(const std::string& text)
{
    std::map<std::string, std::string> forms;
    for (const std::string& encoding : Encodings()) {
        if (const auto form = Converted("utf-8", encoding, text))
            forms[encoding] = *form;
    }
    return forms;
}

std::vector<std::string> Names()
{
    std::set<std::string> names;
    for (const auto& entry : fs::directory_iterator("."))
        names.insert(entry.path().filename().string());
    return {names.begin(), names.end()};
}

typedef std::vector<std::string> List;

std::string Repeat(const std::string& text, unsigned count)
{
    std::string all;
    for (unsigned n = 0; n < count; ++n)
        all += text;
    return all;
}

const std::string MARK8 = "\xEF\xBB\xBF";
const std::string MARK16 = "\xFF\xFE";
} // namespace

// ---- Encodings -----------------------------------------------------------------------------------

TEST(Recode, KnowsAllPagesOfBytesAndPairs)
{
    EXPECT_GE(Encodings().size(), 60u);
    for (const Script& script : Scripts()) {
        if (script.page) {
            EXPECT_EQ(
                std::count(Encodings().begin(), Encodings().end(), std::to_string(script.page)), 1)
                << script.page;
        }
    }
}

TEST(Recode, EveryPairOfEncodingsThereAndBack)
{
    unsigned pairs = 0;
    for (const Script& script : Scripts()) {
        const auto forms = InAll(script.text);
        EXPECT_GE(forms.size(), script.page ? 6u : 5u) << script.name;
        if (script.page) {
            EXPECT_TRUE(forms.count(std::to_string(script.page))) << script.name;
        }
        for (const auto& [first, bytes] : forms) {
            for (const auto& [second, other] : forms) {
                SCOPED_TRACE(testing::Message() << script.name << ", " << first << ", " << second);
                EXPECT_EQ(Converted(first, second, bytes), other);
                ++pairs;
            }
            if (testing::Test::HasFailure())
                return;
        }
    }
    std::printf("recode: %u pairs of encodings\n", pairs);
}

TEST(Recode, MarksAreNoText)
{
    EXPECT_EQ(Recode("utf-8", "utf-16", MARK8 + "a"), MARK16 + std::string("a\0", 2));
    EXPECT_EQ(Recode("utf-8", "utf-8", MARK8 + "a"), "a");
    EXPECT_EQ(Recode("utf-8", "utf-8-mark", "a"), MARK8 + "a");
    EXPECT_EQ(Recode("utf-8", "utf-8-mark", MARK8 + "a"), MARK8 + "a");
    EXPECT_EQ(Recode("utf-8", "utf-16be", "a"), std::string("\xFE\xFF\0a", 4));
    EXPECT_EQ(Recode("utf-16", "utf-8", std::string("a\0", 2)), "a") << "none is needed";
    EXPECT_EQ(Recode("utf-16", "utf-8", std::string("\xFE\xFF\0a", 4)), "a")
        << "the mark tells which byte is first";
    EXPECT_EQ(Recode("utf-8", "utf-16", ""), MARK16) << "an empty text has one, too";
    EXPECT_EQ(Recode("utf-16", "utf-8", MARK16), "");
    EXPECT_EQ(Recode("utf-8", "utf-16", "a" + MARK8), MARK16 + std::string("a\0\xFF\xFE", 4))
        << "only the first character is one";
}

TEST(Recode, NamesOfEncodings)
{
    for (const char* name : {"UTF-8", "utf8", "65001", "cp65001"})
        EXPECT_EQ(Recode(name, "utf-16", "a"), MARK16 + std::string("a\0", 2)) << name;
    for (const char* name : {"Utf-16", "utf16", "1200", "utf-16LE"})
        EXPECT_EQ(Recode("utf-8", name, "a"), MARK16 + std::string("a\0", 2)) << name;
    EXPECT_EQ(Recode("utf-8", "1201", "a"), std::string("\xFE\xFF\0a", 4));
    EXPECT_EQ(Recode("utf-8", "65000", "\u00E9"), "+AOk-");
    EXPECT_EQ(Recode("cp1252", "CP1251", "a"), "a");
    EXPECT_EQ(Recode("ansi", "utf-8", "a"), "a");
    for (const char* name : {"", "0", "1", "utf", "1252x", "99999", "cp", "-5", "54936"}) {
        const Recoded recoded = RunRecode({"--to", name, "-", "-"});
        EXPECT_EQ(recoded.status, 2) << name;
    }
}

TEST(Recode, ZerosAreCharacters)
{
    const std::string text("a\0b\0\0\u00E9\0", 8);
    for (const auto& [encoding, bytes] : InAll(text)) {
        SCOPED_TRACE(encoding);
        EXPECT_EQ(Recode(encoding, "utf-8", bytes), text);
    }
    for (const char* encoding : {"1252", "utf-7", "utf-16", "932"})
        EXPECT_EQ(Recode(encoding, "utf-8", Recode("utf-8", encoding, std::string(1, '\0'))),
                  std::string(1, '\0'))
            << encoding;
}

// The blocks in which files are read cut characters in two, wherever they can be cut.
TEST(Recode, CharactersAcrossBlocks)
{
    for (const char* unit : {"\u00E9", "\u3053", "\U0001F600", "\u0E2A"}) {
        for (unsigned before = 0; before < 4; ++before) {
            SCOPED_TRACE(testing::Message() << unit << " behind " << before);
            const std::string text = std::string(before, 'a') + Repeat(unit, 40000) + "z";
            for (const char* encoding :
                 {"utf-16", "utf-16be", "utf-7", "utf-8-mark", "932", "874"}) {
                const Recoded there =
                    RunRecode({"--from", "utf-8", "--to", encoding, "-", "-"}, text);
                if (there.status == 0) {
                    EXPECT_TRUE(Recode(encoding, "utf-8", there.output) == text) << encoding;
                }
            }
        }
    }
}

// ---- Finding out ---------------------------------------------------------------------------------

TEST(Recode, FindsOutTheEncoding)
{
    std::string wide;
    for (const char c : std::string("wide text without a mark, by its looks"))
        wide += {c, '\0'};
    const struct
    {
        std::string bytes;
        std::string name;
    } rows[] = {
        {MARK8 + "a", "UTF-8"},
        {MARK16 + std::string("a\0", 2), "UTF-16"},
        {std::string("\xFE\xFF\0a", 4), "UTF-16, high byte first"},
        {wide, "UTF-16"},
        {"plain", "UTF-8"},
        {"", "UTF-8"},
        {"\u00E9\U0001F600", "UTF-8"},
        {Repeat("plain ", 30000) + "\u00E9", "UTF-8"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        WriteBytes("text", row.bytes);
        const Recoded recoded = RunRecode({"--to", "utf-8", "text", "out"});
        EXPECT_EQ(recoded.status, 0);
        EXPECT_EQ(recoded.errors, "recode: text is " + row.name + "\n");
    }
}

TEST(Recode, WhatIsNotUtf8IsTakenForTheAnsiPage)
{
    if (GetACP() == CP_UTF8)
        GTEST_SKIP() << "the ANSI code page is UTF-8";
    const std::string name = "code page " + std::to_string(GetACP());
    for (const std::string& bytes :
         {std::string("a\xE9z"), Repeat("plain ", 30000) + "\xE9", std::string("cut \xC3")}) {
        const Recoded recoded = RunRecode({"--replace", "--to", "utf-8", "-", "-"}, bytes);
        EXPECT_EQ(recoded.errors.substr(0, recoded.errors.find('\n')), "recode: - is " + name);
    }
}

TEST(Recode, WithoutAnotherOneTheEncodingStays)
{
    EXPECT_EQ(RunRecode({"--eol", "lf", "-", "-"}, MARK8 + "a\r\n").output, MARK8 + "a\n");
    EXPECT_EQ(RunRecode({"--eol", "lf", "-", "-"}, "a\r\n").output, "a\n");
    EXPECT_EQ(RunRecode({"--eol", "lf", "-", "-"}, MARK16 + std::string("a\0\r\0\n\0", 6)).output,
              MARK16 + std::string("a\0\n\0", 4));
    EXPECT_EQ(RunRecode({"--from", "1252", "--eol", "cr", "-", "-"}, "\xE9\n").output, "\xE9\r");
}

// ---- Line ends -----------------------------------------------------------------------------------

TEST(Recode, LineEnds)
{
    const std::string mixed = "a\nb\r\nc\rd\r\r\n\n\re";
    const std::map<std::string, std::string> expected = {
        {"lf", "a\nb\nc\nd\n\n\n\ne"},
        {"cr", "a\rb\rc\rd\r\r\r\re"},
        {"crlf", "a\r\nb\r\nc\r\nd\r\n\r\n\r\n\r\ne"},
    };
    for (const auto& [end, text] : expected) {
        for (const char* encoding : {"utf-8", "utf-16", "utf-7", "1252", "500"}) {
            const std::string source = Recode("utf-8", encoding, mixed);
            const Recoded recoded =
                RunRecode({"--from", encoding, "--to", "utf-8", "--eol", end, "-", "-"}, source);
            EXPECT_EQ(recoded.output, text) << end << ", " << encoding;
        }
    }
    EXPECT_EQ(Recode("utf-8", "1252", mixed), mixed) << "else they stay";
}

TEST(Recode, ALineEndAcrossBlocks)
{
    const std::string before(0x10000 - 1, 'a');
    EXPECT_TRUE(RunRecode({"--from", "1252", "--eol", "lf", "-", "-"}, before + "\r\nb").output ==
                before + "\nb");
    EXPECT_TRUE(
        RunRecode({"--from", "1252", "--eol", "crlf", "-", "-"}, before + "\r\r\n").output ==
        before + "\r\n\r\n");
}

// ---- What isn't text, and what isn't held ---------------------------------------------------------

TEST(Recode, IllFormedTextIsRefusedWithItsPlace)
{
    const struct
    {
        const char* encoding;
        std::string bytes;
        const char* place;
        const char* name;
        std::string replaced; // as UTF-8
    } rows[] = {
        {"utf-8", "a\nb\xFFz", "line 2, byte 4: FF", "UTF-8", "a\nb\uFFFDz"},
        {"utf-8", "a\r\n\r\n\xE2\x82z", "line 3, byte 6: E2 82", "UTF-8", "a\r\n\r\n\uFFFDz"},
        {"utf-8", "ab\xF0\x9F\x98", "line 1, byte 3: F0 9F 98", "UTF-8", "ab\uFFFD"},
        {"utf-8", "\xED\xA0\x80", "line 1, byte 1: ED", "UTF-8", "\uFFFD\uFFFD\uFFFD"},
        {"utf-16", std::string("a\0\n\0\0\xD8z\0", 8), "line 2, byte 5: 00 D8", "UTF-16",
         "a\n\uFFFDz"},
        {"utf-16", std::string("a\0\0\xDC", 4), "line 1, byte 3: 00 DC", "UTF-16", "a\uFFFD"},
        {"utf-16", std::string("a\0\0\xD8", 4), "line 1, byte 3: 00 D8", "UTF-16", "a\uFFFD"},
        {"utf-16", std::string("a\0b", 3), "line 1, byte 3: 62", "UTF-16", "a\uFFFD"},
        {"utf-16be", std::string("\xDC\0\0a", 4), "line 1, byte 1: DC 00",
         "UTF-16, high byte first", "\uFFFDa"},
        {"utf-7", "a\xE9z", "line 1, byte 2: E9", "UTF-7", "a\uFFFDz"},
        {"utf-7", "a+", "line 1, byte 2: 2B", "UTF-7", "a\uFFFD"},
        {"utf-7", "a+!z", "line 1, byte 2: 2B", "UTF-7", "a\uFFFD!z"},
        {"utf-7", "+AO-z", "line 1, byte 4: 2D", "UTF-7", "\uFFFDz"},
        {"utf-7", "+AOk", "", "", ""}, // a run may end with the text
        {"utf-7", "+2D0-", "line 1, byte 5: 2D", "UTF-7", "\uFFFD"},
        {"utf-7", "+2D0AQQ-", "line 1, byte 7: 51", "UTF-7", "\uFFFDA"},
        {"utf-7", "+3gAAQQ-z", "line 1, byte 4: 41", "UTF-7", "\uFFFDAz"},
        {"932", "a\x82", "line 1, byte 2: 82", "code page 932", "a\uFFFD"},
        {"932", "a\x82\n", "line 1, byte 2: 82", "code page 932", "a\uFFFD\n"},
        {"1252", "a\x81\n", "", "", ""}, // which the page has
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message() << row.encoding << " " << row.place);
        WriteBytes("in", row.bytes);
        const Recoded refused = RunRecode({"--from", row.encoding, "--to", "utf-8", "in", "out"});
        if (!*row.place) {
            EXPECT_EQ(refused.status, 0) << refused.errors;
            continue;
        }
        EXPECT_EQ(refused.status, 1);
        EXPECT_EQ(refused.errors,
                  std::string("recode: in: ") + row.place + ": ill-formed " + row.name + "\n");
        const Recoded replaced =
            RunRecode({"--from", row.encoding, "--to", "utf-8", "--replace", "in", "-"});
        EXPECT_EQ(replaced.status, 0);
        EXPECT_EQ(replaced.output, row.replaced);
        EXPECT_NE(replaced.errors.find(row.place), std::string::npos) << replaced.errors;
        fs::remove("out");
    }
}

TEST(Recode, AnIllFormedPlaceFarBehind)
{
    const std::string text = Repeat("line\n", 50000) + "\xC0";
    const Recoded refused = RunRecode({"--from", "utf-8", "--to", "1252", "-", "-"}, text);
    EXPECT_EQ(refused.errors, "recode: -: line 50001, byte 250001: C0: ill-formed UTF-8\n");
    EXPECT_EQ(refused.status, 1);
    const Recoded replaced =
        RunRecode({"--replace", "--from", "utf-8", "--to", "utf-8", "-", "-"}, text + text);
    EXPECT_EQ(replaced.errors, "recode: -: 2 ill-formed places became U+FFFD, the first at line "
                               "50001, byte 250001: C0\n");
}

TEST(Recode, WhatAPageDoesNotHoldIsCounted)
{
    WriteBytes("in", "plain\nA\u0100\u0416\U0001F600z\n");
    const std::string counted = "in: 3 characters aren't in code page 1252 (2 replaced, 1 by a "
                                "similar one), the first is U+0100 in line 2\n";
    const Recoded refused = RunRecode({"--from", "utf-8", "--to", "1252", "in", "out"});
    EXPECT_EQ(refused.status, 1);
    EXPECT_EQ(refused.errors, "recode: " + counted);
    EXPECT_EQ(Names(), List{"in"}) << "nothing is made";
    const Recoded replaced =
        RunRecode({"--replace", "--from", "utf-8", "--to", "1252", "in", "out"});
    EXPECT_EQ(replaced.status, 0);
    EXPECT_EQ(replaced.errors, "recode: " + counted);
    EXPECT_EQ(ReadBytes("out"), "plain\nAA??z\n");
    EXPECT_EQ(RunRecode({"--from", "utf-8", "--to", "20127", "-", "-"}, "\U0001F600").errors,
              "recode: -: 1 character isn't in code page 20127 (1 replaced, 0 by a similar one), "
              "the first is U+1F600 in line 1\n");
}

// ---- Files ---------------------------------------------------------------------------------------

TEST(Recode, AFileIsReplacedWhenTheNewOneIsWhole)
{
    WriteBytes("in", "a\u00E9");
    WriteBytes("out", "old");
    EXPECT_EQ(RunRecode({"--from", "utf-8", "--to", "1252", "in", "out"}).status, 0);
    EXPECT_EQ(ReadBytes("out"), "a\xE9");
    WriteBytes("in", "a\u0416");
    EXPECT_EQ(RunRecode({"--from", "utf-8", "--to", "1252", "in", "out"}).status, 1);
    EXPECT_EQ(ReadBytes("out"), "a\xE9");
    WriteBytes("in", Repeat("line\n", 50000) + "\xC0");
    EXPECT_EQ(RunRecode({"--from", "utf-8", "--to", "1252", "in", "out"}).status, 1);
    EXPECT_EQ(ReadBytes("out"), "a\xE9");
    EXPECT_EQ(Names(), (List{"in", "out"}));
}

TEST(Recode, TheSourceMayBeTheTarget)
{
    const std::string text = Repeat("a\u00E9\n", 50000);
    WriteBytes("file", text);
    EXPECT_EQ(RunRecode({"--from", "utf-8", "--to", "utf-16", "file", "file"}).status, 0);
    EXPECT_EQ(ReadBytes("file").size(), 2 + 2 * 3 * 50000u);
    EXPECT_EQ(RunRecode({"--to", "utf-8", "file", "file"}).status, 0);
    EXPECT_TRUE(ReadBytes("file") == text);
    EXPECT_EQ(Names(), List{"file"});
    WriteBytes("file", "a\u0416");
    EXPECT_EQ(RunRecode({"--from", "utf-8", "--to", "1252", "file", "file"}).status, 1);
    EXPECT_EQ(ReadBytes("file"), "a\u0416") << "nothing is lost";
}

TEST(Recode, FilesThatCannotBeHad)
{
    WriteBytes("in", "a");
    fs::create_directory("directory");
    const auto refused = [](const std::string& source, const std::string& target) {
        const Recoded recoded = RunRecode({"--from", "utf-8", "--to", "utf-16", source, target});
        EXPECT_EQ(recoded.status, 1) << source << ", " << target;
        EXPECT_EQ(std::count(recoded.errors.begin(), recoded.errors.end(), '\n'), 1);
        return recoded.errors;
    };
    EXPECT_TRUE(refused("missing", "out").starts_with("recode: cannot read missing: (2): "));
    EXPECT_EQ(refused("directory", "out"), "recode: directory: this is a directory\n");
    EXPECT_EQ(refused("in", "directory"), "recode: directory: this is no plain file\n");
    EXPECT_TRUE(refused("in", "nowhere/out").starts_with("recode: cannot convert in: (3): "));
    EXPECT_EQ(refused("in\xFF", "out"), "recode: a name is not well-formed UTF-8\n");
    EXPECT_EQ(Names(), (List{"directory", "in"}));
}

TEST(Recode, NamesInAnyScript)
{
    std::vector<std::u8string> names = {u8"a b'c.txt"};
    // On the other road a name is what the ANSI code page makes of it.
    if (CT_OS::sb_GetIsWindowsNT())
        names.insert(names.end(), {u8"\u0416\u05D0\u3053.txt", u8"\U0001F600.txt"});
    for (const std::u8string& name : names) {
        const std::string utf8(name.begin(), name.end());
        {
            const fs::path path(name);
            WriteBytes(path, "a\u00E9");
        }
        EXPECT_EQ(RunRecode({"--from", "utf-8", "--to", "1252", utf8, utf8}).status, 0);
        EXPECT_EQ(ReadBytes(fs::path(name)), "a\xE9");
    }
}

TEST(Recode, ASymbolicLinkGoesOnPointing)
{
    std::error_code error;
    WriteBytes("file", "a\u00E9");
    fs::create_symlink("file", "link", error);
    if (error)
        GTEST_SKIP() << "no symbolic links here";
    EXPECT_EQ(RunRecode({"--from", "utf-8", "--to", "1252", "link", "link"}).status, 0);
    EXPECT_TRUE(fs::is_symlink("link"));
    EXPECT_EQ(ReadBytes("file"), "a\xE9");
}

TEST(Recode, WrongUses)
{
    const std::string usage = "usage: recode [OPTION...] SOURCE TARGET\nTry recode --help.\n";
    const struct
    {
        List arguments;
        const char* what;
    } rows[] = {
        {{}, "a source and a target are needed"},
        {{"a"}, "a source and a target are needed"},
        {{"a", "b"}, "nothing to do: --to or --eol is missing"},
        {{"--to", "utf-8", "a", "b", "c"}, "more than a source and a target"},
        {{"--to", "utf-8", "", "b"}, "a name is empty"},
        {{"--to"}, "--to: the value is missing"},
        {{"--eol", "nl", "a", "b"}, "--eol: nl is no line end"},
        {{"--from", "none", "a", "b"}, "--from: none is no encoding that this program knows"},
        {{"--nonsense", "a", "b"}, "unknown option --nonsense"},
    };
    for (const auto& row : rows) {
        const Recoded recoded = RunRecode(row.arguments);
        EXPECT_EQ(recoded.status, 2);
        EXPECT_EQ(recoded.errors, std::string("recode: ") + row.what + "\n" + usage);
    }
    EXPECT_EQ(RunRecode({"--help"}).status, 0);
    EXPECT_EQ(RunRecode({"--to", "utf-8", "--", "--a", "--b"}).status, 1) << "a missing file";
}

TEST(Recode, ABoxShowsTheFailureWhenAskedTo)
{
    AnsweredBoxes boxes(IDOK);
    WriteBytes("in", "a\xFF");
    const Recoded recoded = RunRecode({"--box", "--from", "utf-8", "--to", "utf-16", "in", "out"});
    EXPECT_EQ(recoded.status, 1);
    EXPECT_EQ(recoded.errors, "recode: in: line 1, byte 2: FF: ill-formed UTF-8\n");
    EXPECT_EQ(boxes.count, 1);
    EXPECT_EQ(boxes.title, u"recode");
    EXPECT_TRUE(boxes.text.starts_with(u"in: line 1, byte 2: FF: ill-formed UTF-8\n\nConverter: "))
        << common::ToUtf8(reinterpret_cast<const unsigned short*>(boxes.text.c_str()));
    EXPECT_EQ(boxes.type & 0xFF, unsigned(MB_OK | MB_ICONERROR));
    EXPECT_EQ(Names(), List{"in"});
    RunRecode({"--from", "utf-8", "--to", "utf-16", "in", "out"});
    EXPECT_EQ(boxes.count, 1) << "and only then";
    EXPECT_EQ(RunRecode({"--box", "--from", "1252", "--to", "utf-16", "in", "out"}).status, 0);
    EXPECT_EQ(boxes.count, 1);
}
