// tests/Examples/LexiconModelTest.cpp: random dictionaries against ordered maps.
#include "RunLexicon.h"

#include "Support/Directory.h"

#include <algorithm>
#include <map>
#include <random>

namespace
{
// What a lexicon is to know, in the simplest form.
class Model
{
public:
    void Add(const std::string& source, const std::string& target)
    {
        if (Join(source, target, &sources))
            order.push_back(source);
        Join(target, source, &targets);
    }

    static std::string Answers(const std::string& word, const std::vector<std::string>& others)
    {
        std::string lines;
        for (const std::string& other : others)
            lines += word + "\t" + other + "\n";
        return lines;
    }

    std::string List() const
    {
        std::string lines;
        for (const std::string& source : order)
            lines += Answers(source, sources.at(source));
        return lines;
    }

    using Map = std::map<std::string, std::vector<std::string>>;
    Map sources;
    Map targets;

private:
    // True if the word is new.
    static bool Join(const std::string& word, const std::string& other, Map* map)
    {
        const bool isNew = !map->count(word);
        std::vector<std::string>& others = (*map)[word];
        if (std::find(others.begin(), others.end(), other) == others.end())
            others.push_back(other);
        return isNew;
    }

    std::vector<std::string> order;
};

// Words of few letters, so that they share beginnings, and of letters of every length in UTF-8.
std::string RandomWord(std::mt19937* random)
{
    static const char* const LETTERS[] = {"a",
                                          "b",
                                          "z",
                                          "A",
                                          " ",
                                          "\xC3\xA4",
                                          "\xE2\x82\xAC",
                                          "\xF0\x9F\x98\x80",
                                          "n",
                                          "e",
                                          "\x0B",
                                          "\xF0\x9F\x98\x81"};
    std::string word;
    for (unsigned n = 1 + (*random)() % 5; n; --n)
        word += LETTERS[(*random)() % std::size(LETTERS)];
    return word;
}

Model MakeRandomLexicon(unsigned seed, unsigned lines)
{
    std::mt19937 random(seed);
    Model model;
    Pairs pairs;
    for (unsigned n = 0; n < lines; ++n) {
        pairs.emplace_back(RandomWord(&random), RandomWord(&random));
        model.Add(pairs.back().first, pairs.back().second);
    }
    MakeLexicon(Lines(pairs));
    return model;
}

// All words of a side in one lookup, and words that aren't there.
void CheckSide(const Model::Map& map, bool reverse, std::mt19937* random)
{
    Arguments known = {"lookup", "words.rec"};
    if (reverse)
        known.push_back("--reverse");
    Arguments unknown = known;
    std::string expected;
    for (const auto& [word, others] : map) {
        known.push_back(word);
        expected += Model::Answers(word, others);
        const std::string other = word + RandomWord(random);
        if (!map.count(other))
            unknown.push_back(other);
    }
    const Answer answer = RunLexicon(known);
    EXPECT_EQ(answer.status, 0);
    EXPECT_TRUE(answer.output == expected);
    const Answer missed = RunLexicon(unknown);
    EXPECT_EQ(missed.status, 1);
    EXPECT_EQ(missed.output.find('\t'), std::string::npos);
}
} // namespace

TEST(LexiconModel, RandomDictionariesAnswerAsTheirModels)
{
    for (unsigned round = 0; round < 12; ++round) {
        const unsigned seed = Seed(19970101) + round;
        SCOPED_TRACE(seed);
        const Model model = MakeRandomLexicon(seed, 50u << round % 6);
        std::mt19937 random(seed);
        CheckSide(model.sources, false, &random);
        CheckSide(model.targets, true, &random);
        EXPECT_TRUE(RunLexicon({"list", "words.rec"}).output == model.List());
    }
}

TEST(LexiconModel, AListBuiltAgainGivesTheSameAnswers)
{
    const Model model = MakeRandomLexicon(Seed(4711), 400);
    MakeLexicon(RunLexicon({"list", "words.rec"}).output);
    EXPECT_TRUE(RunLexicon({"list", "words.rec"}).output == model.List());
}
