// tests/Ostra/Pattern/PatternModelTest.cpp: all short patterns on all short texts, all pairs of
// patterns, and long ones by chance.
#include <Ostra/Pattern/Pattern.h>

#include "PatternModel.h"
#include "Support/Directory.h"

#include <gtest/gtest.h>

#include <random>

namespace
{
using pattern::AllStrings;
using pattern::Character;
using pattern::Make;
using pattern::Means;
using pattern::Model;

// Feeds the text to both. What differs first, or nothing.
std::string Difference(CT_Pattern& made, Model& model, const std::string& text)
{
    made.v_DoMatch();
    model.DoMatch();
    for (std::size_t n = 0; n < text.size(); ++n) {
        const int match = made.b_IsMatch(Character(text[n]));
        const bool expected = model.IsMatch(text[n]);
        if (match != expected || made.n_EndStateFrom() != model.EndStateFrom())
            return text.substr(0, n + 1) + " gives " + std::to_string(match) + " from " +
                   std::to_string(made.n_EndStateFrom());
        if (made.b_CanMatch() != model.CanMatch())
            return text.substr(0, n + 1) + " may match or not";
    }
    return "";
}

// The same against what the tokens mean.
std::string DifferentMeaning(CT_Pattern& made, const std::string& tokens, const std::string& text)
{
    unsigned from = 0;
    made.v_DoMatch();
    for (unsigned n = 1; n <= text.size(); ++n) {
        const std::string fed = text.substr(0, n);
        const int match = made.b_IsMatch(Character(text[n - 1]));
        const bool expected = Means(tokens, fed);
        from = !expected ? 0 : from ? from : n;
        if (match != expected || made.n_EndStateFrom() != from)
            return fed + " gives " + std::to_string(match) + " from " +
                   std::to_string(made.n_EndStateFrom());
    }
    return "";
}

// Texts of that length alone: the shorter ones are fed on the way.
std::vector<std::string> Texts(std::size_t length)
{
    std::vector<std::string> texts;
    for (const std::string& text : AllStrings("ab0", length))
        if (text.size() == length)
            texts.push_back(text);
    return texts;
}

// Both ways, and what is left of the runs.
std::string DifferentComparison(const std::string& one, const std::string& two)
{
    const auto made = Make(one), other = Make(two);
    Model model(one), peer(two);
    const auto result = made->et_Compare(other.get());
    if (result != model.Compare(peer))
        return "gives " + std::to_string(result);
    if (made->n_EndStateFrom() != model.EndStateFrom() ||
        other->n_EndStateFrom() != peer.EndStateFrom())
        return "leaves other runs";
    // What is active afterwards shows in what goes on.
    if (made->b_IsMatch('a') != model.IsMatch('a') || other->b_IsMatch('a') != peer.IsMatch('a'))
        return "leaves other states";
    return "";
}

std::string ByChance(std::mt19937& random, const std::string& characters, std::size_t length)
{
    std::string made;
    while (made.size() < length)
        made += characters[random() % characters.size()];
    return made;
}
} // namespace

TEST(PatternModel, ShortPatternsMatchWhatTheirTokensMean)
{
    const std::vector<std::string> texts = Texts(4);
    for (const std::string& tokens : AllStrings("ab0?*", 4)) {
        const auto made = Make(tokens);
        for (const std::string& text : texts)
            ASSERT_EQ(DifferentMeaning(*made, tokens, text), "") << "pattern \"" << tokens << "\"";
    }
}

TEST(PatternModel, ShortPatternsStepAsTheMachineDoes)
{
    const std::vector<std::string> texts = Texts(5);
    for (const std::string& tokens : AllStrings("ab0?*", 5)) {
        const auto made = Make(tokens);
        Model model(tokens);
        for (const std::string& text : texts)
            ASSERT_EQ(Difference(*made, model, text), "") << "pattern \"" << tokens << "\"";
    }
}

TEST(PatternModel, AStepOfTheUnknownCharacterGoesAsTheMachineDoes)
{
    // In texts of this test ! is the unknown character.
    for (const std::string& tokens : AllStrings("a0?*", 4)) {
        const auto made = Make(tokens);
        Model model(tokens);
        for (const std::string& text : AllStrings("a!", 5)) {
            made->v_DoMatch();
            model.DoMatch();
            for (const char c : text) {
                const int match = c == '!' ? (*made.*Private(PatternMatchSome()))()
                                           : made->b_IsMatch(Character(c));
                ASSERT_EQ(match, c == '!' ? model.IsMatchSome() : model.IsMatch(c))
                    << "pattern \"" << tokens << "\" on " << text;
                ASSERT_EQ(made->n_EndStateFrom(), model.EndStateFrom());
            }
            ASSERT_EQ((*made.*Private(PatternMatchAny()))(), model.IsMatchAny());
        }
    }
}

TEST(PatternModel, AllPairsOfShortPatternsCompareAsTheMachineDoes)
{
    const struct
    {
        const char* characters;
        std::size_t length;
    } sets[] = {{"a?*", 4}, {"aA?*", 3}, {"ab0?*", 3}};
    for (const auto& set : sets) {
        const std::vector<std::string> patterns = AllStrings(set.characters, set.length);
        for (const std::string& one : patterns)
            for (const std::string& two : patterns)
                ASSERT_EQ(DifferentComparison(one, two), "")
                    << "\"" << one << "\" and \"" << two << "\"";
    }
}

// What a row's words and blocks of them do must not show.
TEST(PatternModel, PatternsBehindManyTokensMatchAsShortOnesDo)
{
    const std::vector<std::string> texts = Texts(3);
    for (const std::size_t before : {62, 63, 64, 127})
        for (const std::string& tokens : AllStrings("a0?*", 3)) {
            const std::string whole = std::string(before, '?') + tokens;
            const auto made = Make(whole);
            Model model(whole);
            for (const std::string& text : texts)
                ASSERT_EQ(Difference(*made, model, std::string(before, 'x') + text), "")
                    << before << " tokens, then \"" << tokens << "\"";
        }
}

TEST(PatternModel, LongPatternsMatchAsTheMachineDoes)
{
    const unsigned seed = Seed(54);
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    for (unsigned round = 0; round < 300; ++round) {
        const std::string letters = round % 3 == 0   ? "ab"
                                    : round % 3 == 1 ? "aABC"
                                                     : "abcdefghijklmnopqrstuvwxyzDEF";
        const std::string tokens = ByChance(random, letters + "***?0", 1 + random() % 200);
        const auto made = Make(tokens);
        Model model(tokens);
        for (unsigned texts = 0; texts < 3; ++texts)
            ASSERT_EQ(Difference(*made, model, ByChance(random, letters, 300)), "")
                << "pattern \"" << tokens << "\"";
    }
}

TEST(PatternModel, LongPatternsCompareAsTheMachineDoes)
{
    const unsigned seed = Seed(55);
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    for (unsigned round = 0; round < 300; ++round) {
        const std::string one = ByChance(random, "aA?**", 1 + random() % 150);
        std::string two = one;
        // Near each other, so that they are related at times.
        for (unsigned change = 0; change < round % 4; ++change)
            two[random() % two.size()] = "A?*"[random() % 3];
        ASSERT_EQ(DifferentComparison(one, two), "") << "\"" << one << "\" and \"" << two << "\"";
    }
}
