// tests/Ostra/TestOut/TestOutTest.cpp: labels, messages, places of files, and failed conditions.
#include <Ostra/TestOut/TestOut.h>

#include <windows.h>

#include "Support/Directory.h"
#include "Support/Failure.h"

#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <functional>

namespace fs = std::filesystem;

namespace
{
// What is written on the two standard streams meanwhile.
struct Streams
{
    std::string out, error;
};

Streams During(const std::function<void()>& work)
{
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    work();
    const std::string out = testing::internal::GetCapturedStdout();
    return {out, testing::internal::GetCapturedStderr()};
}

// Text of a file without what a text stream puts in front of a line feed.
std::string Lines(const fs::path& path)
{
    std::string text = ReadBytes(path);
    std::erase(text, '\r');
    return text;
}

std::string TempFolder()
{
    char folder[260];
    EXPECT_NE(0U, GetTempPathA(sizeof folder, folder));
    return folder;
}

// A message of an assertion, but for its line.
std::string Assertion(const std::string& condition)
{
    return "ASSERT failed: " + condition + "\nLine # in File Ostra/TestOut/TestOut.\n";
}

std::string WithoutLines(const std::string& text)
{
    std::string out;
    for (std::size_t at = 0; at < text.size();) {
        const bool line = text.compare(at, 5, "Line ") == 0;
        out += line ? "Line #" : text.substr(at, 1);
        at += line ? 5 : 1;
        while (line && at < text.size() && std::isdigit(static_cast<unsigned char>(text[at])))
            ++at;
    }
    return out;
}

std::string NotOpened(const std::string& path)
{
    return "Could not open " + path + "\nUsing stdout instead.\n";
}

bool IsOpen(int descriptor)
{
    const int copy = dup(descriptor);
    if (copy >= 0)
        close(copy);
    return copy >= 0;
}

const std::string nowhere = "no/such/directory/trace.txt";
const char* const null_text = nullptr;
std::FILE* const null_stream = nullptr;
} // namespace

// ---- Streams --------------------------------------------------------------------------------

TEST(TestOut, WritesToTheStandardOutputByDefault)
{
    const Streams streams = During([] {
        {
            CT_TestOut out;
            EXPECT_EQ(out.pso_GetOutput(), stdout);
            EXPECT_EQ(out.qcz_GetLabel(), nullptr);
            out.v_Out("first, ");
        }
        CT_TestOut().v_Out("second");
        std::printf(", third");
        std::fflush(stdout);
    });
    EXPECT_EQ(streams.out, "first, second, third");
    EXPECT_EQ(streams.error, "");
}

TEST(TestOut, AStreamOfTheCallersStaysOpen)
{
    std::FILE* stream = std::fopen("stream.txt", "w");
    {
        CT_TestOut out(stream, "label: ");
        EXPECT_EQ(out.pso_GetOutput(), stream);
        out.v_Out("one\n");
        out.v_Close();
        EXPECT_EQ(out.pso_GetOutput(), stream);
        out.v_Out("two\n");
        // Each message is there at once.
        EXPECT_EQ(Lines("stream.txt"), "label: one\nlabel: two\n");
    }
    std::fputs("three\n", stream);
    std::fclose(stream);
    EXPECT_EQ(Lines("stream.txt"), "label: one\nlabel: two\nthree\n");
}

TEST(TestOut, AFileIsClosedWithTheObject)
{
    fs::create_directory("folder");
    {
        CT_TestOut out("folder/trace.txt", nullptr);
        out.v_Out("text");
    }
    EXPECT_EQ(Lines("folder/trace.txt"), "text");
    EXPECT_TRUE(fs::remove("folder/trace.txt"));
}

TEST(TestOut, ClosingTakesTheStreamAndOpeningBringsOne)
{
    CT_TestOut out("./one.txt", "l:");
    out.v_Out("1");
    out.v_Close();
    EXPECT_EQ(out.pso_GetOutput(), nullptr);
    out.v_Close();
    EXPECT_STREQ(out.qcz_GetLabel(), "l:");
    const Streams streams = During([&out] {
        out.v_Out("lost");
        out.v_Out(Units(u"lost"));
    });
    EXPECT_EQ(streams.out, "");
    EXPECT_EQ(WithoutLines(streams.error), Assertion("pso_Output") + Assertion("pso_Output"));
    out.v_Open("./two.txt");
    out.v_Out("2");
    // Another one in its place is opened behind the closing.
    out.v_Open("./three.txt");
    out.v_Out("3");
    out.v_Open("./three.txt");
    out.v_Out("4");
    out.v_Close();
    EXPECT_EQ(Lines("one.txt"), "l:1");
    EXPECT_EQ(Lines("two.txt"), "l:2");
    EXPECT_EQ(Lines("three.txt"), "l:4");
}

// ---- Places of files --------------------------------------------------------------------------

TEST(TestOut, ABareNameIsInTheTemporaryDirectory)
{
    const std::string name = "ostra trace." + std::to_string(getpid()) + ".txt";
    const fs::path place = TempFolder() + name;
    fs::remove(place);
    {
        CT_TestOut out(name.c_str(), nullptr);
        out.v_Out("text");
    }
    EXPECT_FALSE(fs::exists(name));
    EXPECT_EQ(Lines(place), "text");
    fs::remove(place);
}

TEST(TestOut, ANameWithADirectoryIsThere)
{
    fs::create_directory("folder");
    for (const char* name : {"folder/a.txt", "folder\\b.txt", "./c.txt", ".\\d.txt"})
        CT_TestOut(name, nullptr).v_Out("text");
    for (const char* name : {"folder/a.txt", "folder/b.txt", "c.txt", "d.txt"})
        EXPECT_EQ(Lines(name), "text") << name;
}

TEST(TestOut, AnExistingFileIsEmptied)
{
    WriteBytes("trace.txt", "an older and longer text");
    CT_TestOut("./trace.txt", nullptr).v_Out("text");
    EXPECT_EQ(Lines("trace.txt"), "text");
}

TEST(TestOut, NamesAreOfTheAnsiPage)
{
    CT_TestOut("./caf\xE9.txt", nullptr).v_Out("text");
    EXPECT_EQ(Lines(fs::path(u"caf\u00E9.txt")), "text");
}

TEST(TestOut, AFileThatCannotBeOpenedLeavesTheStandardOutput)
{
    const std::string directory = "./folder";
    fs::create_directory(directory);
    for (const std::string& name : {nowhere, directory, std::string(300, 'n')}) {
        std::FILE* stream = nullptr;
        const Streams streams = During([&] {
            CT_TestOut out(stdout, "label: ");
            out.v_Open(name.c_str());
            stream = out.pso_GetOutput();
            out.v_Out("text");
        });
        EXPECT_EQ(stream, stdout);
        EXPECT_EQ(streams.error, NotOpened(name));
        EXPECT_EQ(streams.out, "label: text");
    }
    EXPECT_FALSE(Errors().b_IsSetError());
}

TEST(TestOut, ALongPathIsNoBareName)
{
    const std::string name = std::string(300, 'd') + "/trace.txt";
    const Streams streams = During([&] { CT_TestOut().v_Open(name.c_str()); });
    EXPECT_EQ(streams.error, NotOpened(name));
}

// Repairing this would leave the standard output open.
TEST(TestOutDeathTest, AnObjectMadeWithAFileOwnsTheStandardOutputThatStandsIn)
{
    const auto is_closed = [](const std::function<void()>& work) {
        work();
        std::_Exit(IsOpen(1) ? 18 : 17);
    };
    EXPECT_EXIT(is_closed([] { CT_TestOut out(nowhere.c_str(), nullptr); }),
                testing::ExitedWithCode(17), "Could not open");
    EXPECT_EXIT(is_closed([] {
                    CT_TestOut out;
                    out.v_Set(nowhere.c_str(), "label");
                }),
                testing::ExitedWithCode(17), "Could not open");
    // What v_Open falls back on isn't its own.
    EXPECT_EXIT(is_closed([] { CT_TestOut().v_Open(nowhere.c_str()); }),
                testing::ExitedWithCode(18), "Could not open");
}

// ---- Messages -------------------------------------------------------------------------------

TEST(TestOut, LabelAndMessageStandOneBehindTheOther)
{
    const Streams streams = During([] {
        CT_TestOut out(stdout, "100%s:");
        out.v_Out("%d%%", 5);
        out.v_Out("");
        out.v_Out("\n");
    });
    EXPECT_EQ(streams.out, "100%s:5%100%s:100%s:\n");
}

TEST(TestOut, FormatsArePlatforms)
{
    const Streams streams = During([] {
        CT_TestOut out;
        out.v_Out("%s %S %c %05d %x|", "narrow", Units(u"wide"), 'c', -42, 255U);
        out.v_Out(Units(u"%s %S %c %05d %x|"), Units(u"wide"), "narrow", u'c', -42, 255U);
    });
    EXPECT_EQ(streams.out, "narrow wide c -0042 ff|wide narrow c -0042 ff|");
}

TEST(TestOut, WideMessagesAreInUtf8AndLabelsAsTheyAre)
{
    const Streams streams = During([] {
        CT_TestOut out(stdout, "caf\xE9:");
        out.v_Out(Units(u"\u00E9\u0416\u05D0\u65E5 %s"), Units(u"\U0001F600"));
        out.v_Out("\xE9\n");
    });
    EXPECT_EQ(streams.out, "caf\xE9:\xC3\xA9\xD0\x96\xD7\x90\xE6\x97\xA5 \xF0\x9F\x98\x80"
                           "caf\xE9:\xE9\n");
}

TEST(TestOut, MessagesMayHaveAnyLength)
{
    for (const std::size_t length : {1022, 1023, 1024, 1025, 2048, 5000, 100000}) {
        SCOPED_TRACE(length);
        const std::string text(length, 'x');
        const std::u16string wide(length, u'x');
        const Streams streams = During([&] {
            CT_TestOut out(stdout, "l:");
            out.v_Out("%s|", text.c_str());
            out.v_Out(Units(u"%s|"), Units(wide.c_str()));
        });
        EXPECT_EQ(streams.out, "l:" + text + "|l:" + text + "|");
    }
}

TEST(TestOut, PiecesOfWideMessagesEndWithWholeCharacters)
{
    const std::string character = "\xF0\x9F\x98\x80";
    for (int shift = 0; shift < 2; ++shift) {
        std::u16string wide(shift, u'x');
        std::string expected(shift, 'x');
        for (int i = 0; i < 3000; ++i) {
            wide += u"\U0001F600";
            expected += character;
        }
        const Streams streams = During([&] { CT_TestOut().v_Out(Units(wide.c_str())); });
        EXPECT_EQ(streams.out, expected);
    }
}

TEST(TestOut, AZeroCharacterIsAMessageLikeAnyOther)
{
    const Streams streams = During([] { CT_TestOut().v_Out("a%cb", 0); });
    EXPECT_EQ(streams.out, std::string("a\0b", 3));
}

TEST(TestOut, AMessageEndsAtWhatCannotBeConverted)
{
    const Streams streams = During([] { CT_TestOut().v_Out("a %S b", Units(u"\u0416")); });
    EXPECT_EQ(streams.out, "a ");
}

// ---- Labels and v_Set -----------------------------------------------------------------------

TEST(TestOut, KeepsACopyOfTheLabel)
{
    char label[] = "label";
    CT_TestOut out(stdout, label);
    label[0] = 'x';
    EXPECT_STREQ(out.qcz_GetLabel(), "label");
    EXPECT_NE(out.qcz_GetLabel(), label);
}

TEST(TestOut, SetMakesTheObjectAnew)
{
    CT_TestOut out("./one.txt", "1:");
    out.v_Out("a");
    out.v_Set("./two.txt", "2:");
    EXPECT_STREQ(out.qcz_GetLabel(), "2:");
    out.v_Out("b");
    EXPECT_EQ(Lines("one.txt"), "1:a");
    std::FILE* stream = std::fopen("three.txt", "w");
    out.v_Set(stream, "3:");
    EXPECT_EQ(out.pso_GetOutput(), stream);
    out.v_Out("c");
    out.v_Set("./four.txt", "");
    out.v_Out("d");
    out.v_Close();
    std::fputs("!", stream);
    std::fclose(stream);
    EXPECT_EQ(Lines("two.txt"), "2:b");
    EXPECT_EQ(Lines("three.txt"), "3:c!");
    EXPECT_EQ(Lines("four.txt"), "d");
}

TEST(TestOut, SetTakesItsOwnLabelAndStream)
{
    CT_TestOut out("./one.txt", "1:");
    out.v_Out("a");
    out.v_Set(out.pso_GetOutput(), "2:");
    out.v_Out("b");
    out.v_Set("./two.txt", out.qcz_GetLabel());
    EXPECT_EQ(Lines("one.txt"), "1:a2:b");
    out.v_Out("c");
    out.v_Set(out.pso_GetOutput(), out.qcz_GetLabel());
    out.v_Out("d");
    out.v_Close();
    EXPECT_EQ(out.pso_GetOutput(), nullptr);
    EXPECT_EQ(Lines("two.txt"), "2:c2:d");
}

// ---- Conditions that don't hold -------------------------------------------------------------

TEST(TestOut, SetWithoutALabelSaysSoAndProceeds)
{
    CT_TestOut out(stdout, "label");
    Streams streams = During([&] { out.v_Set("./trace.txt", nullptr); });
    EXPECT_EQ(WithoutLines(streams.error), Assertion("qccz_file && qccz_label"));
    EXPECT_EQ(out.qcz_GetLabel(), nullptr);
    out.v_Out("text");
    streams = During([&] { out.v_Set(stdout, nullptr); });
    EXPECT_EQ(WithoutLines(streams.error), Assertion("pso_output && qccz_label"));
    EXPECT_EQ(out.pso_GetOutput(), stdout);
    EXPECT_EQ(Lines("trace.txt"), "text");
}

TEST(TestOut, ANullStreamSaysSo)
{
    const Streams streams = During([] {
        CT_TestOut out(null_stream, "label");
        EXPECT_EQ(out.pso_GetOutput(), nullptr);
        EXPECT_STREQ(out.qcz_GetLabel(), "label");
        out.v_Out("text");
        out.v_Set(null_stream, "other");
        EXPECT_STREQ(out.qcz_GetLabel(), "other");
        CT_TestOut own("./own.txt", "label");
        own.v_Out("text");
        own.v_Set(null_stream, "other");
        EXPECT_EQ(own.pso_GetOutput(), nullptr);
        EXPECT_EQ(Lines("own.txt"), "labeltext");
    });
    EXPECT_EQ(streams.out, "");
    const std::string set = Assertion("pso_output && qccz_label") + Assertion("pso_output");
    EXPECT_EQ(WithoutLines(streams.error),
              Assertion("pso_output") + Assertion("pso_Output") + set + set);
}

TEST(TestOut, ANullNameCountsAsOneThatCannotBeOpened)
{
    CT_TestOut out;
    const Streams streams = During([&] {
        out.v_Open(nullptr);
        out.v_Out("text");
    });
    EXPECT_EQ(streams.out, "text");
    EXPECT_EQ(WithoutLines(streams.error), Assertion("qccz_file") + NotOpened("(null)"));
}

TEST(TestOutDeathTest, ANullNameOfANewObjectIsTold)
{
    EXPECT_EXIT(
        {
            new CT_TestOut(null_text, nullptr);
            std::_Exit(17);
        },
        testing::ExitedWithCode(17), "Could not open .null.");
}

// It owns the standard output then, as a new object does.
TEST(TestOutDeathTest, SetToANullNameIsToldAndTakesTheLabel)
{
    EXPECT_EXIT(
        {
            CT_TestOut* out = new CT_TestOut(stdout, "1:");
            out->v_Set(null_text, "2:");
            std::_Exit(std::strcmp(out->qcz_GetLabel(), "2:") == 0 ? 17 : 1);
        },
        testing::ExitedWithCode(17), "qccz_file && qccz_label");
}

TEST(TestOutDeathTest, ANullNameWithALabelIsToldAsOneThatIsMissing)
{
    EXPECT_EXIT(
        {
            (new CT_TestOut)->v_Set(null_text, "label");
            std::_Exit(17);
        },
        testing::ExitedWithCode(17), "qccz_file && qccz_label");
}
