// tests/Examples/LexiconErrorTest.cpp: what the commands refuse, and what stays behind.
#include "RunLexicon.h"

#include <Ostra/File/WinFile.h>
#include <Ostra/Frame/Text.h>
#include <Commands.h>

#include "Support/Directory.h"

#include <windows.h>

#include <algorithm>
#include <sstream>

namespace
{
const Arguments BUILD = {"build", "words.tsv", "words.rec"};

// A stream that takes nothing, as on a full disk.
class FullStream : public std::streambuf
{};
} // namespace

TEST(LexiconErrors, ABadLineIsToldWithItsNumber)
{
    const std::string reserved = ": the line holds U+00";
    const struct
    {
        std::string text;
        std::string error;
    } cases[] = {
        {"a\tb\nno tab\nc\td\n", "2: the line has no tab"},
        {"a\tb\n\nc\td\n", "2: the line has no tab"},
        {"a\tb\nc\td\n\n", "3: the line has no tab"},
        {"\n", "1: the line has no tab"},
        {"\r\n", "1: the line has no tab"},
        {"no tab", "1: the line has no tab"},
        {"a\tb\n\tc\n", "2: the word in front of the tab is empty"},
        {"a\tb\nc\t\n", "2: the word behind the tab is empty"},
        {"a\tb\nc\t\r\n", "2: the word behind the tab is empty"},
        {"a\tb\n\t\n", "2: the word in front of the tab is empty"},
        {std::string("a\tb\nc\0c\td\n", 10), "2: the line holds U+0000, which no key can hold"},
        {"a\tb\nc\rc\td\n", "2: the line holds U+000D, which no key can hold"},
        {"a\tb\nc\td\r\r\n", "2: the line holds U+000D, which no key can hold"},
        {"a\tb\nc\x19\td\n", "2: the line holds U+0019, which no key can hold"},
        {"a\tb\nc\td\x1A\n", "2: the line holds U+001A, which no key can hold"},
        {"a\tb\nc\t\xFF\n", "2: the line is not well-formed UTF-8"},
        {"\xFF\xFE"
         "a\tb\n",
         "1: the line is not well-formed UTF-8"},
        {"a\tb\nc\xC3\td\n", "2: the line is not well-formed UTF-8"},
        {"a\tb\nno tab \x80\n", "2: the line is not well-formed UTF-8"},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.text);
        const Answer answer = BuildLexicon(row.text);
        EXPECT_EQ(answer.status, 1);
        EXPECT_EQ(answer.output, "");
        EXPECT_EQ(answer.errors, "lexicon: words.tsv:" + row.error + "\n");
        EXPECT_EQ(Names(), std::vector<std::string>{"words.tsv"});
    }
}

TEST(LexiconErrors, AFailedBuildLeavesTheOldLexicon)
{
    MakeLexicon("a\tb\n");
    const std::string old = ReadBytes("words.rec");
    EXPECT_EQ(BuildLexicon("c\td\nno tab\n").status, 1);
    EXPECT_TRUE(ReadBytes("words.rec") == old);
    EXPECT_EQ(Names(), (std::vector<std::string>{"words.rec", "words.tsv"}));
}

TEST(LexiconErrors, AnInputThatIsMissingOrADirectoryIsTold)
{
    Answer answer = RunLexicon(BUILD);
    EXPECT_TRUE(IsRefusal(answer));
    EXPECT_EQ(answer.errors,
              "lexicon: cannot read words.tsv: " + SystemError(2, "words.tsv") + "\n");
    std::filesystem::create_directory("words.tsv");
    answer = RunLexicon(BUILD);
    EXPECT_TRUE(IsRefusal(answer));
    EXPECT_EQ(answer.errors,
              "lexicon: cannot read words.tsv: " + SystemError(5, "words.tsv") + "\n");
    EXPECT_EQ(Names(), std::vector<std::string>{"words.tsv"});
}

TEST(LexiconErrors, AnOutputThatCannotBeMadeIsTold)
{
    WriteBytes("words.tsv", "a\tb\n");
    const Answer answer = RunLexicon({"build", "words.tsv", "none/words.rec"});
    EXPECT_TRUE(IsRefusal(answer));
    EXPECT_EQ(answer.errors, "lexicon: cannot write none/words.rec: " +
                                 SystemError(3, "none/words.rec.new") + "\n");
    EXPECT_EQ(Names(), std::vector<std::string>{"words.tsv"});
}

TEST(LexiconErrors, ANameThatIsTooLongIsToldInWords)
{
    WriteBytes("words.tsv", "a\tb\n");
    const std::string name(254, 'n'); // the one beside it is longer than a name may be
    const Answer answer = RunLexicon({"build", "words.tsv", name});
    EXPECT_TRUE(IsRefusal(answer));
    EXPECT_TRUE(answer.errors.starts_with("lexicon: cannot write " + name + ": ("));
    EXPECT_FALSE(answer.errors.ends_with(": \n")) << answer.errors;
    EXPECT_EQ(Names(), std::vector<std::string>{"words.tsv"});
}

TEST(LexiconErrors, AnOutputThatIsADirectoryStays)
{
    std::filesystem::create_directory("words.rec");
    const Answer answer = BuildLexicon("a\tb\n");
    EXPECT_TRUE(IsRefusal(answer));
    EXPECT_EQ(answer.errors, "lexicon: words.rec: this is no plain file\n");
    EXPECT_TRUE(std::filesystem::is_directory("words.rec"));
    EXPECT_EQ(Names(), (std::vector<std::string>{"words.rec", "words.tsv"}));
}

TEST(LexiconErrors, WhatStandsInPlaceOfTheTemporaryFileStays)
{
    MakeLexicon("a\tb\n");
    const std::string old = ReadBytes("words.rec");
    std::filesystem::create_directory("words.rec.new");
    const Answer answer = BuildLexicon("c\td\n");
    EXPECT_TRUE(IsRefusal(answer));
    EXPECT_EQ(answer.errors, "lexicon: words.rec.new: this is no plain file\n");
    EXPECT_TRUE(ReadBytes("words.rec") == old);
    EXPECT_TRUE(std::filesystem::is_directory("words.rec.new"));
}

TEST(LexiconErrors, ALeftTemporaryFileIsWrittenOver)
{
    MakeLexicon("a\tb\n");
    const std::string good = ReadBytes("words.rec");
    WriteBytes("words.rec.new", "left by a build that was killed");
    MakeLexicon("a\tb\n");
    EXPECT_TRUE(ReadBytes("words.rec") == good);
    EXPECT_EQ(Names(), (std::vector<std::string>{"words.rec", "words.tsv"}));
}

TEST(LexiconErrors, AnotherNameOfALeftTemporaryFileKeepsItsBytes)
{
    std::error_code error;
    WriteBytes("other", "bytes of another file");
    std::filesystem::create_hard_link("other", "words.rec.new", error);
    if (error)
        GTEST_SKIP() << "no second names here";
    MakeLexicon("a\tb\n");
    EXPECT_EQ(ReadBytes("other"), "bytes of another file");
    EXPECT_EQ(Names(), (std::vector<std::string>{"other", "words.rec", "words.tsv"}));
}

TEST(LexiconErrors, ATemporaryFileThatSomebodyElseIsWritingStays)
{
    MakeLexicon("a\tb\n");
    const std::string old = ReadBytes("words.rec");
    // As another build holds it from the flush to the renaming.
    WriteBytes("words.rec.new", "whole");
    const HANDLE file = CreateFileA("words.rec.new", GENERIC_WRITE, FILE_SHARE_DELETE, nullptr,
                                    OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    ASSERT_NE(file, INVALID_HANDLE_VALUE);
    const Answer answer = BuildLexicon("c\td\n");
    CloseHandle(file);
    EXPECT_TRUE(IsRefusal(answer));
    EXPECT_TRUE(ReadBytes("words.rec") == old);
    EXPECT_EQ(ReadBytes("words.rec.new"), "whole");
}

TEST(LexiconErrors, AWholeLexiconThatNeverGotItsNameIsTakenUp)
{
    MakeLexicon("a\tb\n");
    const std::string good = ReadBytes("words.rec");
    std::filesystem::rename("words.rec", "words.rec.new");
    EXPECT_EQ(BuildLexicon("no tab").status, 1);
    EXPECT_TRUE(ReadBytes("words.rec") == good);
    EXPECT_EQ(Names(), (std::vector<std::string>{"words.rec", "words.tsv"}));

    // One that isn't whole is not.
    std::filesystem::remove("words.rec");
    WriteBytes("words.rec.new", good.substr(0, good.size() - 1));
    EXPECT_EQ(BuildLexicon("no tab").status, 1);
    EXPECT_FALSE(std::filesystem::exists("words.rec"));
}

TEST(LexiconErrors, ALinkGoesOnPointing)
{
    std::error_code error;
    std::filesystem::create_directory("below");
    std::filesystem::create_symlink("below/words.rec", "words.rec", error);
    if (error)
        GTEST_SKIP() << "no symbolic links here";
    MakeLexicon("a\tb\n");
    MakeLexicon("c\td\n");
    EXPECT_EQ(RunLexicon({"list", "below/words.rec"}).output, "c\td\n");
    EXPECT_TRUE(std::filesystem::is_symlink("words.rec"));
    EXPECT_EQ(Names(), (std::vector<std::string>{"below", "words.rec", "words.tsv"}));

    std::filesystem::create_symlink("words.tsv", "input.rec");
    const Answer answer = RunLexicon({"build", "words.tsv", "input.rec"});
    EXPECT_EQ(answer.errors, "lexicon: words.tsv: this is the input as well as the output\n");
    std::filesystem::create_symlink("round.rec", "round.rec");
    EXPECT_EQ(RunLexicon({"build", "words.tsv", "round.rec"}).errors,
              "lexicon: round.rec: this symbolic link leads nowhere\n");
    // The one beside the place isn't the user's.
    std::filesystem::create_symlink("words.tsv", "other.rec.new");
    EXPECT_EQ(RunLexicon({"build", "words.tsv", "other.rec"}).errors,
              "lexicon: other.rec.new: this is no plain file\n");
    EXPECT_EQ(ReadBytes("words.tsv"), "c\td\n");
}

TEST(LexiconErrors, AHyphenIsTheStandardInput)
{
    MakeLexicon("a\tb\n");
    const std::string good = ReadBytes("words.rec");
    const auto run = [](const Arguments& arguments, const std::string& bytes) {
        std::istringstream input(bytes);
        std::ostringstream output;
        std::ostringstream errors;
        const int status = lexicon::Run(arguments, {output, errors, nullptr, &input});
        return Answer{status, output.str(), errors.str()};
    };
    EXPECT_EQ(run({"build", "-", "other.rec"}, "a\tb\n").status, 0);
    EXPECT_TRUE(ReadBytes("other.rec") == good);
    EXPECT_EQ(run({"build", "-", "other.rec"}, "a\tb\n\n").errors,
              "lexicon: -:2: the line has no tab\n");
    EXPECT_EQ(run({"list", "-"}, good).output, "a\tb\n");
    EXPECT_EQ(run({"list", "-"}, good).errors, "");
    EXPECT_TRUE(IsRefusal(run({"list", "-"}, good.substr(0, 100))));
    EXPECT_TRUE(IsRefusal(run({"list", "-"}, "")));
}

TEST(LexiconErrors, AnOldLexiconInUseStays)
{
    MakeLexicon("a\tb\n");
    const CT_UString name(qcuz_Text(u"words.rec"));
    CT_WinFile holder(&name, 1024);
    holder.vv_Open(CT_File::e_AccessRead, CT_File::e_OpenExisting, CT_File::e_ShareNone, 1, 0);
    const Answer built = BuildLexicon("c\td\n");
    const Answer looked = RunLexicon({"lookup", "words.rec", "a"});
    holder.vv_Close();
    EXPECT_TRUE(IsRefusal(built));
    EXPECT_EQ(built.errors,
              "lexicon: cannot write words.rec: " + SystemError(32, "words.rec") + "\n");
    EXPECT_TRUE(IsRefusal(looked));
    EXPECT_EQ(looked.errors,
              "lexicon: cannot read words.rec: " + SystemError(32, "words.rec") + "\n");
    EXPECT_EQ(RunLexicon({"list", "words.rec"}).output, "a\tb\n");
    EXPECT_EQ(Names(), (std::vector<std::string>{"words.rec", "words.tsv"}));
}

TEST(LexiconErrors, AnInputIsNotItsOwnOutput)
{
    WriteBytes("words.tsv", "a\tb\n");
    for (const char* output : {"words.tsv", "./words.tsv"}) {
        const Answer answer = RunLexicon({"build", "words.tsv", output});
        EXPECT_TRUE(IsRefusal(answer));
        EXPECT_EQ(answer.errors, "lexicon: words.tsv: this is the input as well as the output\n");
    }
    EXPECT_EQ(ReadBytes("words.tsv"), "a\tb\n");
}

TEST(LexiconErrors, AMissingLexiconIsTold)
{
    for (const Arguments& arguments :
         {Arguments{"lookup", "words.rec", "a"}, Arguments{"list", "words.rec"},
          Arguments{"info", "words.rec"}}) {
        const Answer answer = RunLexicon(arguments);
        EXPECT_TRUE(IsRefusal(answer));
        EXPECT_EQ(answer.errors,
                  "lexicon: cannot read words.rec: " + SystemError(2, "words.rec") + "\n");
    }
    EXPECT_EQ(Names(), std::vector<std::string>{});
}

TEST(LexiconErrors, AWordThatNoKeyCanBeIsTold)
{
    MakeLexicon("a\tb\n");
    const struct
    {
        std::string word;
        const char* error;
    } cases[] = {
        {"", "word 2 is empty"},
        {"\xC3", "word 2 is not well-formed UTF-8"},
        {"a\x1A", "word 2 holds U+001A, which no key can hold"},
        {"a\nb", "word 2 holds U+000A, which no key can hold"},
        {std::string("a\0", 2), "word 2 holds U+0000, which no key can hold"},
    };
    for (const auto& row : cases) {
        const Answer answer = RunLexicon({"lookup", "words.rec", "a", row.word});
        EXPECT_TRUE(IsRefusal(answer)) << row.error;
        EXPECT_EQ(answer.errors, std::string("lexicon: ") + row.error + "\n");
    }
}

TEST(LexiconErrors, AFileNameMustBeUtf8)
{
    const Answer answer = RunLexicon({"list", "\xFF"});
    EXPECT_TRUE(IsRefusal(answer));
    EXPECT_EQ(answer.errors, "lexicon: argument 1 is not well-formed UTF-8\n");
}

TEST(LexiconErrors, AMessageStaysOneLineWhateverTheNameHolds)
{
    const Answer answer = RunLexicon({"list", "two\nlines\x1B.rec"});
    EXPECT_TRUE(IsRefusal(answer));
    EXPECT_NE(answer.errors.find("two?lines?.rec"), std::string::npos) << answer.errors;
}

TEST(LexiconErrors, AnOutputThatTakesNothingIsTold)
{
    MakeLexicon("a\tb\n");
    FullStream nowhere;
    std::ostream output(&nowhere);
    std::ostringstream errors;
    EXPECT_EQ(lexicon::Run({"list", "words.rec"}, {output, errors, nullptr}), 1);
    EXPECT_EQ(errors.str(), "lexicon: cannot write the output\n");
}

TEST(LexiconErrors, TraceShowsTheTrailBehindTheError)
{
    const std::string line = RunLexicon({"list", "words.rec"}).errors;
    const Answer answer = RunLexicon({"list", "words.rec", "--trace"});
    EXPECT_EQ(answer.status, 1);
    EXPECT_TRUE(answer.errors.starts_with(line + "    Ostra/File/WinFile, line ")) << answer.errors;
    EXPECT_NE(answer.errors.find("\n    lexicon/Storage, line "), std::string::npos)
        << answer.errors;
    // The places stand in the order in which the error passed them.
    EXPECT_LT(answer.errors.find("lexicon/Storage"), answer.errors.find("lexicon/Lexicon"));
}

TEST(LexiconErrors, TraceShowsTheProgramsOwnPlaces)
{
    WriteBytes("words.tsv", "no tab\n");
    const Answer answer = RunLexicon({"--trace", "build", "words.tsv", "words.rec"});
    EXPECT_EQ(answer.status, 1);
    EXPECT_TRUE(answer.errors.starts_with(
        "lexicon: words.tsv:1: the line has no tab\n    lexicon/Input, line "))
        << answer.errors;
    EXPECT_NE(answer.errors.find("\n    lexicon/Commands, line "), std::string::npos);
}
