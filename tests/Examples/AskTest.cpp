// tests/Examples/AskTest.cpp: the commands of the program ask, its server on another thread.
#include "../../examples/ask/Command.h"
#include "../../examples/ask/Commands.h"
#include "../../examples/ask/Words.h"
#include "../../examples/lexicon/Commands.h"

#include <Common/Utf8.h>

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "Result.h"

namespace
{
using ask::Addition;
using ask::Words;

// Names of this test only: other programs of the user may be served at the time.
constexpr char APPLICATION[] = "OstraAskTest";

Result Called(const std::vector<std::string>& arguments)
{
    return ResultOf([&](std::ostream& output, std::ostream& errors) {
        return ask::Run(arguments, {output, errors, {}});
    });
}

Result Ask(std::vector<std::string> arguments)
{
    arguments.insert(arguments.begin(), {"--application", APPLICATION});
    return Called(arguments);
}

Result Failed(const std::string& line, int status = 1)
{
    return {status, "", "ask: " + line + "\n"};
}

void Build(const char* name, const std::string& pairs)
{
    std::ofstream(std::string(name) + ".tsv", std::ios::binary) << pairs;
    std::ostringstream output;
    std::ostringstream errors;
    ASSERT_EQ(0,
              lexicon::Run({"build", std::string(name) + ".tsv", name}, {output, errors, nullptr}))
        << errors.str();
}

std::string Listed(const char* name)
{
    std::ostringstream output;
    std::ostringstream errors;
    lexicon::Run({"list", name}, {output, errors, nullptr});
    return output.str() + errors.str();
}

// A server on a thread of its own, until the object goes.
class Served
{
public:
    explicit Served(const std::string& name)
        : thread([this, name] {
              const auto take = [this](std::function<void()> ending) {
                  stop = std::move(ending);
                  isReady = true;
              };
              result.status =
                  ask::Run({"--application", APPLICATION, "serve", name}, {output, errors, take});
              isReady = true;
          })
    {
        while (!isReady)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    ~Served() { End(); }

    Result End()
    {
        if (thread.joinable()) {
            if (stop)
                stop();
            thread.join();
            result.output = output.str();
            result.errors = errors.str();
        }
        return result;
    }

private:
    std::ostringstream output;
    std::ostringstream errors;
    Result result{};
    std::function<void()> stop;
    std::atomic<bool> isReady = false;
    std::thread thread;
};

bool Load(Words& words, const char* name)
{
    CT_UString wide;
    common::ToWide(name, &wide);
    return words.Load(wide);
}

TEST(AskCommand, AnAdditionComesBackFromItsText)
{
    for (const Addition& addition :
         {Addition{"a", "b"}, Addition{"say \"hi\"", "\"\""}, Addition{"", ")]"},
          Addition{"\xC3\xA4,\"", " \xF0\x9F\x98\x80 "}})
        EXPECT_EQ(addition, ask::ReadCommand(ask::CommandOf(addition)));
    EXPECT_EQ("[add(\"a \"\"b\"\"\",\"c\")]", ask::CommandOf({"a \"b\"", "c"}));
}

TEST(AskCommand, BlanksAndCaseAreFree)
{
    EXPECT_EQ((Addition{"a ", " b"}), ask::ReadCommand(" [ Add ( \"a \" , \" b\" ) ] "));
}

TEST(AskCommand, OtherTextsAreNoAddition)
{
    for (const char* text :
         {"", "[", "[add]", "[add()]", "[add(\"a\")]", "[add(a,b)]", "[add(\"a\",\"b\")",
          "[add(\"a\",\"b\"]", "[add(\"a\",\"b)]", "[add(\"a\",\"b\")]x",
          "[add(\"a\",\"b\",\"c\")]", "[del(\"a\",\"b\")]", "[add(\"a\",\"b\")][add(\"a\",\"b\")]",
          "[add(\"a\"\",\"b\")]"})
        EXPECT_EQ(std::nullopt, ask::ReadCommand(text)) << text;
}

TEST(AskWords, WordsThatDifferInCaseOnlyAreOneItem)
{
    Build("w.rec", "essen\teat\nEssen\tfood\nessen\tdine\n\xC3\xA4\tx\n\xC3\x84\ty\n");
    Words words;
    ASSERT_TRUE(Load(words, "w.rec"));
    EXPECT_EQ(2U, words.Count());
    ASSERT_TRUE(words.Find("ESSEN"));
    EXPECT_EQ("eat\r\ndine\r\nfood", *words.Find("ESSEN"));
    ASSERT_TRUE(words.Find("\xC3\xA4"));
    EXPECT_EQ("x\r\ny", *words.Find("\xC3\xA4"));
    EXPECT_FALSE(words.Find("esse"));
    EXPECT_FALSE(words.Find(""));
}

TEST(AskWords, AnAdditionIsInTheFileAndInTheAnswers)
{
    Build("w.rec", "a\t1\nb\t2\n");
    Words words;
    common::Failure reason;
    ASSERT_TRUE(Load(words, "w.rec"));
    EXPECT_EQ(Words::Outcome::KEPT, words.Add({"a", "\xE2\x82\xAC"}, &reason));
    EXPECT_EQ(Words::Outcome::KEPT, words.Add({"c", "3"}, &reason));
    EXPECT_EQ(Words::Outcome::KNOWN, words.Add({"c", "3"}, &reason));
    EXPECT_EQ("a\t1\na\t\xE2\x82\xAC\nb\t2\nc\t3\n", Listed("w.rec"));
    ASSERT_TRUE(words.Find("a"));
    EXPECT_EQ("1\r\n\xE2\x82\xAC", *words.Find("a"));
    EXPECT_FALSE(std::filesystem::exists("w.rec.new"));
}

TEST(AskWords, WhatOthersHavePutIntoTheFileStays)
{
    Build("w.rec", "a\t1\n");
    Words words;
    common::Failure reason;
    ASSERT_TRUE(Load(words, "w.rec"));
    Build("w.rec", "a\t1\nz\t26\n");
    EXPECT_EQ(Words::Outcome::KEPT, words.Add({"b", "2"}, &reason));
    EXPECT_EQ("a\t1\nz\t26\nb\t2\n", Listed("w.rec"));
    EXPECT_TRUE(words.Find("z"));
}

TEST(AskWords, WhatIsNoPairIsRefused)
{
    Build("w.rec", "a\t1\n");
    Words words;
    common::Failure reason;
    ASSERT_TRUE(Load(words, "w.rec"));
    for (const Addition& addition :
         {Addition{"", "b"}, Addition{"b", ""}, Addition{"a\tb", "c"}, Addition{"a\n", "c"},
          Addition{"b", "c\r"}, Addition{"\xFF", "c"}, Addition{"b", "\xC0\x80"},
          Addition{std::string(256, 'a'), "c"}})
        EXPECT_EQ(Words::Outcome::REFUSED, words.Add(addition, &reason));
    EXPECT_EQ("a\t1\n", Listed("w.rec"));
    EXPECT_EQ(Words::Outcome::KEPT, words.Add({std::string(255, 'a'), "c\td"}, &reason));
}

TEST(AskWords, AFileThatIsGoneOrNoLexiconTakesNothing)
{
    Build("w.rec", "a\t1\n");
    Words words;
    common::Failure reason;
    ASSERT_TRUE(Load(words, "w.rec"));
    std::ofstream("w.rec", std::ios::binary | std::ios::trunc) << "no lexicon";
    EXPECT_EQ(Words::Outcome::FAILED, words.Add({"b", "2"}, &reason));
    std::ostringstream told;
    reason.Print(told, "ask", "cannot write w.rec", false);
    EXPECT_EQ(0U, told.str().find("ask: cannot write w.rec: ")) << told.str();
    std::filesystem::remove("w.rec");
    EXPECT_EQ(Words::Outcome::FAILED, words.Add({"b", "2"}, &reason));
    EXPECT_FALSE(std::filesystem::exists("w.rec"));
    EXPECT_TRUE(words.Find("a"));
    EXPECT_FALSE(words.Find("b"));
}

TEST(Ask, WordsAreAnsweredByTheServingLexicon)
{
    Build("w.rec", "key\tSchl\xC3\xBCssel\nkey\tTaste\n\xE6\x97\xA5\tday\n\"\tquote\n");
    Served served("w.rec");
    EXPECT_EQ((Result{0, "Schl\xC3\xBCssel\nTaste\n", ""}), Ask({"key"}));
    EXPECT_EQ((Result{0, "day\nquote\n", ""}), Ask({"\xE6\x97\xA5", "\""}));
    EXPECT_EQ((Result{1, "day\n", "ask: none: refused by OstraAskTest|Lexicon\n"}),
              Ask({"none", "\xE6\x97\xA5"}));
    EXPECT_EQ((Result{0, "w.rec: answers to OstraAskTest|Lexicon\n", ""}), served.End());
    EXPECT_EQ(Failed("nobody answers to OstraAskTest|Lexicon", 3), Ask({"key"}));
}

TEST(Ask, AnAdditionIsKeptAndAnswered)
{
    Build("w.rec", "a\t1\n");
    const Served served("w.rec");
    EXPECT_EQ((Result{0, "", ""}), Ask({"--add", "say \"b\"", "\xC2\xBD"}));
    EXPECT_EQ((Result{0, "", ""}), Ask({"--add", "say \"b\"", "\xC2\xBD"}));
    EXPECT_EQ((Result{0, "\xC2\xBD\n", ""}), Ask({"say \"b\""}));
    EXPECT_EQ("a\t1\nsay \"b\"\t\xC2\xBD\n", Listed("w.rec"));
    EXPECT_EQ(Failed("[add(\"a\",\"\")]: refused by OstraAskTest|Lexicon"),
              Ask({"--add", "a", ""}));
    EXPECT_EQ(Failed("[nonsense]: refused by OstraAskTest|Lexicon"),
              Ask({"--execute", "[add(\"x\",\"1\")]", "[nonsense]", "[add(\"y\",\"2\")]"}));
    EXPECT_EQ("a\t1\nsay \"b\"\t\xC2\xBD\nx\t1\n", Listed("w.rec"));
}

TEST(Ask, AnAdditionThatCantBeKeptIsToldOnBothSides)
{
    Build("w.rec", "a\t1\n");
    Served served("w.rec");
    std::filesystem::create_directory("w.rec.new");
    EXPECT_EQ(1, Ask({"--add", "b", "2"}).status);
    std::filesystem::remove("w.rec.new");
    EXPECT_EQ(0, Ask({"--add", "b", "2"}).status);
    const Result result = served.End();
    EXPECT_EQ(0, result.status);
    EXPECT_EQ(0U, result.errors.find("ask: ")) << result.errors;
    EXPECT_EQ(result.errors.size() - 1, result.errors.find('\n')) << result.errors;
}

TEST(Ask, ASecondServerOfTheNameIsRefused)
{
    Build("w.rec", "a\t1\n");
    const Served served("w.rec");
    EXPECT_EQ(Failed("another program answers to OstraAskTest|Lexicon already"),
              Ask({"serve", "w.rec"}));
    EXPECT_EQ((Result{0, "1\n", ""}), Ask({"a"}));
    EXPECT_EQ(Failed("nobody answers to OstraAskTest|Other", 3), Ask({"--topic", "Other", "a"}));
}

TEST(Ask, ALongAnswerComesWhole)
{
    std::string pairs;
    std::string expected;
    for (int n = 0; n < 40000; ++n) {
        pairs += "a\t" + std::to_string(n) + "\n";
        expected += std::to_string(n) + "\n";
    }
    Build("w.rec", pairs);
    const Served served("w.rec");
    EXPECT_EQ((Result{0, expected, ""}), Ask({"--timeout", "60", "a"}));
}

TEST(Ask, WhatIsNoLexiconIsNotServed)
{
    std::ofstream("text", std::ios::binary) << "text";
    for (const char* name : {"text", "missing", "."}) {
        const Result result = Ask({"serve", name});
        EXPECT_EQ(1, result.status);
        EXPECT_EQ("", result.output);
        EXPECT_EQ(0U, result.errors.find("ask: ")) << result.errors;
        EXPECT_EQ(result.errors.size() - 1, result.errors.find('\n')) << result.errors;
    }
}

TEST(Ask, WhatCantBeAskedForIsTold)
{
    EXPECT_EQ(Failed("\"\" is empty"), Called({""}));
    const std::string longest(256, 'a');
    EXPECT_EQ(Failed("\"" + longest + "\" is too long: 255 bytes are the most"), Called({longest}));
    EXPECT_EQ(Failed("\"" + longest + "\" can't be an item, which has 1 to 255 bytes"),
              Ask({longest}));
    EXPECT_EQ(Failed("\"#70000\" can't be an item, which has 1 to 255 bytes"), Called({"#70000"}));
    EXPECT_EQ(Failed("\"#007\" can't be an item, which has 1 to 255 bytes"), Called({"#007"}));
    EXPECT_EQ(Failed("\"a?b\" holds a character that no word of a lexicon can hold"),
              Called({"a\nb"}));
    EXPECT_EQ(Failed("argument 2 is not well-formed UTF-8"), Called({"a", "\xFF"}));
    EXPECT_EQ(Failed("a name is not well-formed UTF-8"), Called({"--topic", "\xFF", "a"}));
    EXPECT_EQ(Failed("\"\" can't be a name, which has 1 to 255 bytes"),
              Called({"--topic", "", "a"}));
}

TEST(Ask, AWrongUseIsTold)
{
    const std::string usage = "usage: ask [OPTION...] WORD...\n       ask serve FILE.rec\n"
                              "Try ask --help.\n";
    const auto wrong = [&](const std::string& line) {
        return Result{2, "", "ask: " + line + "\n" + usage};
    };
    EXPECT_EQ(wrong("nothing to ask"), Called({}));
    EXPECT_EQ(wrong("unknown option --x?y"), Called({"--x\ny"}));
    EXPECT_EQ(wrong("--topic needs a value"), Called({"--topic"}));
    EXPECT_EQ(wrong("serve needs one file"), Called({"serve"}));
    EXPECT_EQ(wrong("serve needs one file"), Called({"serve", "a", "b"}));
    EXPECT_EQ(wrong("--add needs a word and its translation"), Called({"--add", "a"}));
    for (const char* value : {"", "0", "-1", "1.5", "86401", "999999999999"})
        EXPECT_EQ(wrong("--timeout needs a number of seconds from 1 to 86400"),
                  Called({"--timeout", value, "a"}))
            << value;
    EXPECT_EQ(0, Called({"--help"}).status);
    EXPECT_EQ(0, Called({"--version"}).status);
}
} // namespace
