// tests/Examples/LexiconTest.cpp: the commands on good files.
#include "RunLexicon.h"

#include "Support/Directory.h"

#include <algorithm>
#include <sstream>

namespace
{
const std::string ANIMALS = "Hund\tdog\nKatze\tcat\nHund\thound\nKater\tcat\nHund\tdog\n";

std::vector<std::string> SplitLines(const std::string& text)
{
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}
} // namespace

TEST(Lexicon, BuildTellsWhatItMade)
{
    const Answer answer = BuildLexicon(ANIMALS);
    EXPECT_EQ(answer.status, 0);
    EXPECT_EQ(answer.output, "words.rec: 4 pairs, 3 words, 3 words in reverse\n");
    EXPECT_EQ(answer.errors, "");
    EXPECT_EQ(Names(), (std::vector<std::string>{"words.rec", "words.tsv"}));
}

TEST(Lexicon, LookupGivesAllTranslationsInOrderOfAppearanceOnce)
{
    MakeLexicon(ANIMALS);
    const Answer answer = RunLexicon({"lookup", "words.rec", "Hund", "Kater"});
    EXPECT_EQ(answer.status, 0);
    EXPECT_EQ(answer.output, "Hund\tdog\nHund\thound\nKater\tcat\n");
    EXPECT_EQ(answer.errors, "");
}

TEST(Lexicon, LookupInReverseGivesTheSources)
{
    MakeLexicon(ANIMALS);
    for (const Arguments& arguments : {Arguments{"lookup", "words.rec", "--reverse", "cat"},
                                       Arguments{"--reverse", "lookup", "words.rec", "cat"},
                                       Arguments{"lookup", "words.rec", "cat", "--reverse"}}) {
        const Answer answer = RunLexicon(arguments);
        EXPECT_EQ(answer.status, 0);
        EXPECT_EQ(answer.output, "cat\tKatze\ncat\tKater\n");
    }
}

TEST(Lexicon, AMissTellsHowMuchTheListMatched)
{
    MakeLexicon("car\tAuto\ncat\tKatze\ndo\ttun\n");
    const struct
    {
        const char* word;
        const char* answer;
    } cases[] = {
        {"card", "card: not found, 3 of 4 characters matched\n"},
        {"ca", "ca: not found, 2 of 2 characters matched\n"},
        // Where characters differ and no other way is left, the list by itself gives 0.
        {"cab", "cab: not found, 2 of 3 characters matched\n"},
        {"caxyz", "caxyz: not found, 2 of 5 characters matched\n"},
        {"dot", "dot: not found, 2 of 3 characters matched\n"},
        {"c", "c: not found, 1 of 1 characters matched\n"},
        {"zoo", "zoo: not found, 0 of 3 characters matched\n"},
        {"Car", "Car: not found, 0 of 3 characters matched\n"},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.word);
        const Answer answer = RunLexicon({"lookup", "words.rec", row.word});
        EXPECT_EQ(answer.status, 1);
        EXPECT_EQ(answer.output, row.answer);
        EXPECT_EQ(answer.errors, "");
    }
}

TEST(Lexicon, AMissAmongHitsIsAnAnswerInItsPlace)
{
    MakeLexicon(ANIMALS);
    const Answer answer = RunLexicon({"lookup", "words.rec", "Katze", "Hunde", "Kater"});
    EXPECT_EQ(answer.status, 1);
    EXPECT_EQ(answer.output,
              "Katze\tcat\nHunde: not found, 4 of 5 characters matched\nKater\tcat\n");
}

TEST(Lexicon, CharactersBeyondTheBasicPlaneCountAsOne)
{
    // Both begin with the same first half.
    MakeLexicon("\xF0\x9D\x84\x9E"
                "ab\tclef\n\xF0\x9F\x98\x80\tgrin\n");
    Answer answer = RunLexicon({"lookup", "words.rec",
                                "\xF0\x9D\x84\x9E"
                                "ab",
                                "\xF0\x9F\x98\x80"});
    EXPECT_EQ(answer.status, 0);
    EXPECT_EQ(answer.output, "\xF0\x9D\x84\x9E"
                             "ab\tclef\n\xF0\x9F\x98\x80\tgrin\n");
    answer = RunLexicon({"lookup", "words.rec",
                         "\xF0\x9D\x84\x9E"
                         "abc"});
    EXPECT_EQ(answer.output, "\xF0\x9D\x84\x9E"
                             "abc: not found, 3 of 4 characters matched\n");
    answer = RunLexicon({"lookup", "words.rec", "--reverse", "clef"});
    EXPECT_EQ(answer.output, "clef\t\xF0\x9D\x84\x9E"
                             "ab\n");
}

TEST(Lexicon, AWordThatLooksLikeAnOptionStandsBehindTwoDashes)
{
    MakeLexicon("--reverse\tzur\xC3\xBC"
                "ck\n");
    const Answer answer = RunLexicon({"lookup", "words.rec", "--", "--reverse"});
    EXPECT_EQ(answer.status, 0);
    EXPECT_EQ(answer.output, "--reverse\tzur\xC3\xBC"
                             "ck\n");
}

TEST(Lexicon, ListGivesAllPairsByTheirSource)
{
    MakeLexicon(ANIMALS);
    const Answer answer = RunLexicon({"list", "words.rec"});
    EXPECT_EQ(answer.status, 0);
    EXPECT_EQ(answer.output, "Hund\tdog\nHund\thound\nKatze\tcat\nKater\tcat\n");
}

TEST(Lexicon, InfoTellsTheFileAndItsLists)
{
    MakeLexicon("car\tAuto\ncat\tKatze\ndo\ttun\n");
    const Answer answer = RunLexicon({"info", "words.rec"});
    EXPECT_EQ(answer.status, 0);
    EXPECT_EQ(answer.output,
              "record file: 2048 bytes in blocks of 64\n"
              "records:     4, 56 bytes of each in its head\n"
              "resources:   1 of up to 4; number 1, the directory, 72 bytes\n"
              "pairs:       3\n"
              "sources\n"
              "  words:     3\n"
              "  list:      176 bytes in 1 record; elements of 2 bytes, handles of 4, "
              "long offsets\n"
              "  texts:     29 bytes in 1 record\n"
              "targets\n"
              "  words:     3\n"
              "  list:      188 bytes in 1 record; elements of 2 bytes, handles of 4, "
              "long offsets\n"
              "  texts:     29 bytes in 1 record\n");
    EXPECT_EQ(std::filesystem::file_size("words.rec"), 2048u);
}

TEST(Lexicon, AnInputWithoutALineGivesAnEmptyLexicon)
{
    for (const char* text : {"", "\xEF\xBB\xBF"}) {
        EXPECT_EQ(BuildLexicon(text).output, "words.rec: 0 pairs, 0 words, 0 words in reverse\n");
        EXPECT_EQ(RunLexicon({"info", "words.rec"}).status, 0);
        EXPECT_EQ(RunLexicon({"list", "words.rec"}).status, 0);
        EXPECT_EQ(RunLexicon({"list", "words.rec"}).output, "");
        EXPECT_EQ(RunLexicon({"lookup", "words.rec", "a"}).output,
                  "a: not found, 0 of 1 characters matched\n");
    }
}

TEST(Lexicon, LineEndsMayBeThoseOfWindowsOrMissingAtTheEnd)
{
    for (const char* text : {"a\tb\nc\td\n", "a\tb\nc\td", "a\tb\r\nc\td\r\n", "a\tb\r\nc\td",
                             "\xEF\xBB\xBF"
                             "a\tb\nc\td\n"}) {
        SCOPED_TRACE(text);
        MakeLexicon(text);
        EXPECT_EQ(RunLexicon({"list", "words.rec"}).output, "a\tb\nc\td\n");
    }
}

TEST(Lexicon, WhatStandsBehindTheFirstTabIsTheTranslation)
{
    MakeLexicon("a\tb\tc\n");
    EXPECT_EQ(RunLexicon({"list", "words.rec"}).output, "a\tb\tc\n");
    EXPECT_EQ(RunLexicon({"lookup", "words.rec", "--reverse", "b\tc"}).output, "b\tc\ta\n");
}

TEST(Lexicon, BuildReplacesAnOldLexicon)
{
    MakeLexicon(ANIMALS);
    MakeLexicon("a\tb\n");
    EXPECT_EQ(RunLexicon({"list", "words.rec"}).output, "a\tb\n");
    EXPECT_EQ(Names(), (std::vector<std::string>{"words.rec", "words.tsv"}));
}

TEST(Lexicon, TheSameInputGivesTheSameFile)
{
    MakeLexicon(ANIMALS);
    const std::string first = ReadBytes("words.rec");
    MakeLexicon(ANIMALS);
    EXPECT_TRUE(ReadBytes("words.rec") == first);
}

TEST(Lexicon, TheSampleComesBackWhole)
{
    const std::string sample = ReadBytes(LEXICON_SAMPLE);
    MakeLexicon(sample);
    // The lines of a word stand together in the sample, so the list is the sample.
    EXPECT_EQ(RunLexicon({"list", "words.rec"}).output, sample);
    EXPECT_GE(SplitLines(sample).size(), 300u);
    EXPECT_EQ(RunLexicon({"lookup", "words.rec",
                          "Stra\xC3\x9F"
                          "e",
                          "guten Morgen"})
                  .output,
              "Stra\xC3\x9F"
              "e\tstreet\nStra\xC3\x9F"
              "e\troad\nguten Morgen\tgood morning\n");
    EXPECT_EQ(RunLexicon({"lookup", "words.rec", "--reverse", "nut"}).output,
              "nut\tMutter\nnut\tNuss\n");
}

TEST(Lexicon, PartsLargerThanAMapComeBackWhole)
{
    // Texts of 2.4 MB on each side, and a list of 2.4 MB: a file of several maps, a record each.
    Pairs pairs;
    std::string expected;
    for (unsigned n = 0; n < 120; ++n)
        pairs.emplace_back("w" + std::to_string(n),
                           std::to_string(n) + std::string(10000 + n, 'x'));
    MakeLexicon(Lines(pairs));
    EXPECT_GT(std::filesystem::file_size("words.rec"), 4u << 20);
    EXPECT_TRUE(RunLexicon({"list", "words.rec"}).output == Lines(pairs));
    for (unsigned n = 0; n < 120; n += 17) {
        const auto& [source, target] = pairs[n];
        EXPECT_TRUE(RunLexicon({"lookup", "words.rec", source}).output ==
                    source + "\t" + target + "\n");
        EXPECT_TRUE(RunLexicon({"lookup", "words.rec", "--reverse", target}).output ==
                    target + "\t" + source + "\n");
    }
}

TEST(Lexicon, HelpIsPrinted)
{
    const Answer answer = RunLexicon({"--help"});
    EXPECT_EQ(answer.status, 0);
    EXPECT_TRUE(answer.output.starts_with("usage: lexicon build INPUT.tsv OUTPUT.rec\n"));
    EXPECT_EQ(answer.errors, "");
}

TEST(Lexicon, AWrongUseTellsWhatAndHow)
{
    const struct
    {
        Arguments arguments;
        const char* what;
    } cases[] = {
        {{}, "no command"},
        {{"--trace"}, "no command"},
        {{"delete", "x"}, "unknown command delete"},
        {{"build"}, "build: too few arguments"},
        {{"build", "a.tsv"}, "build: too few arguments"},
        {{"build", "a.tsv", "b.rec", "c"}, "build: too many arguments"},
        {{"lookup", "b.rec"}, "lookup: too few arguments"},
        {{"lookup", "b.rec", "--reverse"}, "lookup: too few arguments"},
        {{"list"}, "list: too few arguments"},
        {{"list", "b.rec", "c"}, "list: too many arguments"},
        {{"info"}, "info: too few arguments"},
        {{"list", "b.rec", "--reverse"}, "list: --reverse belongs to lookup, match and draw"},
        {{"stats", "b.rec", "--reverse"}, "stats: --reverse belongs to lookup, match and draw"},
        {{"stats"}, "stats: too few arguments"},
        {{"stats", "b.rec", "c"}, "stats: too many arguments"},
        {{"match", "b.rec"}, "match: too few arguments"},
        {{"match", "b.rec", "a", "b"}, "match: too many arguments"},
        {{"match", "b.rec", "a", "-o", "b"}, "match: -o belongs to draw"},
        {{"match", "b.rec", "a", "--limit", "7"}, "match: --limit belongs to draw"},
        {{"draw", "b.rec"}, "draw: too few arguments"},
        {{"draw", "b.rec", "-o", "out.svg"}, "draw: too few arguments"},
        {{"draw", "b.rec", "a", "b", "-o", "out.svg"}, "draw: too many arguments"},
        {{"draw", "b.rec", "a"}, "draw: -o with the name of the picture is missing"},
        {{"draw", "b.rec", "a", "-o"}, "-o: the value is missing"},
        {{"draw", "b.rec", "a", "-o", ""}, "-o: the value is missing"},
        {{"draw", "b.rec", "a", "--limit"}, "--limit: the value is missing"},
        {{"draw", "b.rec", "--limit", "0"}, "--limit: 0 is no number of words"},
        {{"draw", "b.rec", "--limit", "-1"}, "--limit: -1 is no number of words"},
        {{"draw", "b.rec", "--limit", "7x"}, "--limit: 7x is no number of words"},
        {{"draw", "b.rec", "--limit", "4294967296"}, "--limit: 4294967296 is no number of words"},
        {{"list", "b.rec", "--verbose"}, "unknown option --verbose"},
        {{"-x"}, "unknown option -x"},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.what);
        const Answer answer = RunLexicon(row.arguments);
        EXPECT_EQ(answer.status, 2);
        EXPECT_EQ(answer.output, "");
        EXPECT_TRUE(answer.errors.starts_with(std::string("lexicon: ") + row.what +
                                              "\nusage: lexicon build "))
            << answer.errors;
    }
}
