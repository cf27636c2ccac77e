// tests/Examples/LexiconWalkTest.cpp: what goes over a whole list: patterns and statistics.
#include "RunLexicon.h"

#include <Ostra/CompList/CCompListIterator.h>
#include <Ostra/CompList/CompListBuilder.h>
#include <Ostra/Frame/Text.h>
#include <Common/Utf8.h>
#include <Statistics.h>

#include "Support/Directory.h"

#include <algorithm>
#include <map>
#include <random>
#include <set>
#include <sstream>

namespace
{
using lexicon::Item;
using lexicon::Statistics;

const std::string ANIMALS = "Hund\tdog\nKatze\tcat\nHund\thound\nKater\tcat\nHund\tdog\n";
// Of four bytes in UTF-8, two elements of a key.
const std::string GRIN = "\xF0\x9F\x98\x80";
const std::string BEAM = "\xF0\x9F\x98\x81";

// ---- Patterns ---------------------------------------------------------------------------------

Answer Match(const std::string& pattern)
{
    return RunLexicon({"match", "words.rec", pattern});
}

using Letters = std::vector<std::string>;

// Whether the letters from the n-th on match the pattern's letters from the p-th on.
bool IsModelMatch(const Letters& pattern, size_t p, const Letters& word, size_t n)
{
    if (p == pattern.size())
        return n == word.size();
    if (pattern[p] == "*")
        return IsModelMatch(pattern, p + 1, word, n) ||
               (n < word.size() && IsModelMatch(pattern, p, word, n + 1));
    return n < word.size() && (pattern[p] == "?" || pattern[p] == word[n]) &&
           IsModelMatch(pattern, p + 1, word, n + 1);
}

Letters RandomLetters(const Letters& from, unsigned most, std::mt19937* random)
{
    Letters letters;
    for (unsigned n = 1 + (*random)() % most; n; --n)
        letters.push_back(from[(*random)() % from.size()]);
    return letters;
}

std::string Joined(const Letters& letters)
{
    std::string text;
    for (const std::string& letter : letters)
        text += letter;
    return text;
}

// ---- Statistics -------------------------------------------------------------------------------

// A list of elements of one byte, with handles of two bytes and short offsets.
void MakeList(const std::vector<const char*>& words, CT_Buffer* block)
{
    CT_CompListBuilder builder(CT_CompList::es_Byte, 2, 0, 0, 128, 1252);
    unsigned handle = 0;
    for (const char* word : words)
        builder.b_Add(word, ++handle);
    builder.v_Build(block);
}

bool IsSound(const std::string& block)
{
    const CT_Buffer bytes(block.data(), static_cast<unsigned>(block.size()), 32);
    const CT_CompList list(&bytes);
    Statistics statistics;
    return statistics.Take(list);
}

std::string Bytes(const CT_Buffer& block)
{
    return {static_cast<const char*>(block.qcv_Get()), block.n_GetUsedSize()};
}

// What a list is to be like, from the beginnings of its words.
class ShapeModel
{
public:
    void Add(const std::u16string& word)
    {
        for (size_t n = 0; n < word.size(); ++n) {
            std::u16string& ways = places[word.substr(0, n)];
            if (ways.find(word[n]) == ways.npos)
                ways += word[n];
        }
        words.insert(word);
    }

    unsigned Characters() const
    {
        size_t count = 0;
        for (const auto& [beginning, ways] : places)
            count += ways.size();
        return static_cast<unsigned>(count);
    }

    unsigned InnerEnds() const
    {
        return static_cast<unsigned>(std::count_if(
            words.begin(), words.end(), [&](const auto& word) { return places.count(word); }));
    }

    // The characters compared on the way; for a word that begins with a to z the first is the only
    // one.
    unsigned Steps(const std::u16string& word) const
    {
        size_t steps = 0;
        for (size_t n = 0; n < word.size(); ++n) {
            const bool jumps = !n && word[n] >= 'a' && word[n] <= 'z';
            steps += jumps ? 1 : places.at(word.substr(0, n)).find(word[n]) + 1;
        }
        return static_cast<unsigned>(steps);
    }

    std::map<std::u16string, std::u16string> places;
    std::set<std::u16string> words;
};

// The same numbers, the same number of times.
void ExpectNumbers(std::vector<unsigned> numbers, const lexicon::Histogram& histogram)
{
    std::sort(numbers.begin(), numbers.end());
    EXPECT_EQ(histogram.Count(), numbers.size());
    EXPECT_EQ(histogram.Least(), numbers.front());
    EXPECT_EQ(histogram.Most(), numbers.back());
    unsigned long long sum = 0;
    for (unsigned number : numbers)
        sum += number;
    EXPECT_EQ(histogram.Sum(), sum);
    for (unsigned number = 0; number <= numbers.back(); ++number) {
        const auto [first, last] = std::equal_range(numbers.begin(), numbers.end(), number);
        EXPECT_EQ(histogram.Between(number, number), static_cast<unsigned long long>(last - first));
    }
}

void CheckShape(const ShapeModel& model, const Statistics& statistics)
{
    std::vector<unsigned> ways;
    std::vector<unsigned> lengths;
    std::vector<unsigned> steps;
    for (const auto& [beginning, characters] : model.places)
        ways.push_back(static_cast<unsigned>(characters.size()));
    for (const std::u16string& word : model.words) {
        lengths.push_back(static_cast<unsigned>(word.size()));
        steps.push_back(model.Steps(word));
    }
    ExpectNumbers(ways, statistics.Ways());
    ExpectNumbers(lengths, statistics.Lengths());
    ExpectNumbers(steps, statistics.Steps());
    EXPECT_EQ(statistics.Items(Item::CHARACTER), model.Characters());
    EXPECT_EQ(statistics.Items(Item::ALTERNATIVE), model.Characters() - model.places.size());
    EXPECT_EQ(statistics.Items(Item::INNER_END), model.InnerEnds());
    EXPECT_EQ(statistics.Words(), model.words.size());
    EXPECT_EQ(statistics.Items(Item::LIST_END), 1u);
}
} // namespace

TEST(LexiconMatch, PatternsMatchWholeWords)
{
    MakeLexicon("ab\t1\nabc\t2\nxab\t3\na\t4\n\xC3\xA4"
                "b\t5\n");
    const struct
    {
        const char* pattern;
        const char* words;
    } cases[] = {
        {"ab", "ab\n"},
        {"*", "ab\nabc\nxab\na\n\xC3\xA4"
              "b\n"},
        {"**", "ab\nabc\nxab\na\n\xC3\xA4"
               "b\n"},
        {"?", "a\n"},
        {"?b", "ab\n\xC3\xA4"
               "b\n"},
        {"??", "ab\n\xC3\xA4"
               "b\n"},
        {"ab*", "ab\nabc\n"},
        {"*ab", "ab\nxab\n"},
        {"*b*", "ab\nabc\nxab\n\xC3\xA4"
                "b\n"},
        {"?*?", "ab\nabc\nxab\n\xC3\xA4"
                "b\n"},
        {"\xC3\xA4*", "\xC3\xA4"
                      "b\n"},
        {"A*", ""},
        {"b", ""},
        {"????", ""},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.pattern);
        const Answer answer = Match(row.pattern);
        EXPECT_EQ(answer.status, *row.words ? 0 : 1);
        EXPECT_EQ(answer.output, row.words);
        EXPECT_EQ(answer.errors, "");
    }
}

TEST(LexiconMatch, WordsComeInTheOrderOfTheirAppearance)
{
    MakeLexicon(ANIMALS);
    EXPECT_EQ(Match("*").output, "Hund\nKatze\nKater\n");
    EXPECT_EQ(Match("Kat*").output, "Katze\nKater\n");
    EXPECT_EQ(RunLexicon({"match", "words.rec", "--reverse", "*o*"}).output, "dog\nhound\n");
}

TEST(LexiconMatch, ABackslashTakesTheCharacterBehindItAsItIs)
{
    MakeLexicon("a*\t1\na?\t2\na\\\t3\nab\t4\na\\b\t5\n" + GRIN + "\t6\n");
    EXPECT_EQ(Match("a\\*").output, "a*\n");
    EXPECT_EQ(Match("a\\?").output, "a?\n");
    EXPECT_EQ(Match("a\\\\").output, "a\\\n");
    EXPECT_EQ(Match("a\\\\*").output, "a\\\na\\b\n");
    EXPECT_EQ(Match("\\a\\b").output, "ab\n");
    EXPECT_EQ(Match("\\" + GRIN).output, GRIN + "\n");
    EXPECT_EQ(Match("a\\").errors, "lexicon: the pattern ends with a backslash, which takes a "
                                   "character behind it\n");
}

TEST(LexiconMatch, ACharacterBeyondTheBasicPlaneIsOne)
{
    MakeLexicon(GRIN + "\t1\n" + BEAM + "a\t2\n");
    EXPECT_EQ(Match("?").output, GRIN + "\n");
    EXPECT_EQ(Match("??").output, BEAM + "a\n");
    EXPECT_EQ(Match(BEAM + "*").output, BEAM + "a\n");
}

TEST(LexiconMatch, RandomPatternsMatchAsTheirModel)
{
    const Letters alphabet = {"a", "b", "\xC3\xA4", GRIN, BEAM};
    Letters signs = alphabet;
    signs.insert(signs.end(), {"*", "?", "*", "?"});
    std::mt19937 random(Seed(19970101));
    Pairs pairs;
    std::vector<Letters> words;
    std::set<std::string> known;
    for (unsigned n = 0; n < 400; ++n) {
        const Letters word = RandomLetters(alphabet, 6, &random);
        if (known.insert(Joined(word)).second)
            words.push_back(word);
        pairs.emplace_back(Joined(word), "t");
    }
    MakeLexicon(Lines(pairs));
    for (unsigned n = 0; n < 150; ++n) {
        const Letters pattern = RandomLetters(signs, 6, &random);
        SCOPED_TRACE(Joined(pattern));
        std::string expected;
        for (const Letters& word : words)
            expected += IsModelMatch(pattern, 0, word, 0) ? Joined(word) + "\n" : "";
        const Answer answer = Match(Joined(pattern));
        EXPECT_EQ(answer.output, expected);
        EXPECT_EQ(answer.status, expected.empty() ? 1 : 0);
    }
}

TEST(LexiconMatch, WhatIsNoPatternIsRefused)
{
    MakeLexicon(ANIMALS);
    const struct
    {
        std::string pattern;
        const char* error;
    } cases[] = {
        {"", "the pattern is empty"},
        {"a\xFF", "the pattern is not well-formed UTF-8"},
        {std::string("a\0", 2), "the pattern holds U+0000, which no key can hold"},
        {"\x1A*", "the pattern holds U+001A, which no key can hold"},
        {"*\\", "the pattern ends with a backslash, which takes a character behind it"},
    };
    for (const auto& row : cases) {
        const Answer answer = Match(row.pattern);
        EXPECT_TRUE(IsRefusal(answer));
        EXPECT_EQ(answer.errors, std::string("lexicon: ") + row.error + "\n");
    }
    EXPECT_TRUE(IsRefusal(RunLexicon({"match", "missing.rec", "*"})));
}

TEST(LexiconStats, TheTablesTellWhatTheListsAreMadeOf)
{
    MakeLexicon("car\tAuto\ncat\tKatze\ndo\ttun\n");
    const Answer answer = RunLexicon({"stats", "words.rec"});
    EXPECT_EQ(answer.status, 0);
    EXPECT_EQ(answer.errors, "");
    EXPECT_EQ(answer.output.substr(0, answer.output.find("\ntargets\n")),
              "sources\n"
              "  kind                       count       bytes       share\n"
              "  head                           1         132      75.0 %\n"
              "  characters                     6          12       6.8 %\n"
              "  alternatives                   2           4       2.3 %\n"
              "  offsets                        2           8       4.5 %\n"
              "  inner ends                     0           0       0.0 %\n"
              "  leaf ends                      3           6       3.4 %\n"
              "  handles                        3          12       6.8 %\n"
              "  list end                       1           2       1.1 %\n"
              "  all                                      176     100.0 %\n"
              "\n"
              "  ways on                   places       share\n"
              "  1                              2      50.0 %\n"
              "  2                              2      50.0 %\n"
              "\n"
              "  elements                   words       share\n"
              "  2                              1      33.3 %\n"
              "  3                              2      66.7 %\n"
              "\n"
              "                             least     average        most\n"
              "  ways on at a place             1         1.5           2\n"
              "  elements of a word             2         2.7           3\n"
              "  steps of a search              2         3.0           4\n"
              "  elements stored                          2.0\n"
              "  bytes of a word                         58.7\n");
}

TEST(LexiconStats, AnEmptyListHasTablesToo)
{
    MakeLexicon("");
    const Answer answer = RunLexicon({"stats", "words.rec"});
    EXPECT_EQ(answer.status, 0);
    EXPECT_NE(answer.output.find("  all                                      134     100.0 %\n"),
              std::string::npos)
        << answer.output;
    EXPECT_NE(answer.output.find("  steps of a search              0         0.0           0\n"),
              std::string::npos);
}

TEST(LexiconStats, LargeNumbersAreToldByRanges)
{
    Pairs pairs;
    for (char c = 'a'; c <= 'q'; ++c) // 17 ways
        pairs.emplace_back(std::string(1, c) + std::string(c - 'a', 'x'), "t");
    MakeLexicon(Lines(pairs));
    const std::string output = RunLexicon({"stats", "words.rec"}).output;
    EXPECT_NE(output.find("  17 to 32                       1       0.7 %\n"), std::string::npos)
        << output;
    EXPECT_NE(output.find("  9 to 16                        8      47.1 %\n"), std::string::npos);
    EXPECT_NE(output.find("  5 to 8                         4      23.5 %\n"), std::string::npos);
}

TEST(Statistics, RandomListsHaveTheShapeOfTheirModel)
{
    const Letters alphabet = {"a", "b", "z", "A", " ", "\xC3\xA4", GRIN, BEAM};
    std::mt19937 random(Seed(4711));
    for (unsigned count : {1, 5, 40, 300, 2000}) {
        SCOPED_TRACE(count);
        ShapeModel model;
        CT_CompListBuilder builder(CT_CompList::es_Short, 4, 0, 1, 128, 1200);
        for (unsigned n = 0; n < count; ++n) {
            CT_UString key;
            common::ToWide(Joined(RandomLetters(alphabet, 7, &random)), &key);
            builder.b_Add(&key, n);
            model.Add({key.qcuz_Get(), key.qcuz_Get() + key.vn_GetLength()});
        }
        CT_Buffer block;
        builder.v_Build(&block);
        const CT_CompList list(&block);
        Statistics statistics;
        EXPECT_TRUE(statistics.Take(list));
        EXPECT_EQ(statistics.Bytes(), block.n_GetUsedSize());
        CheckShape(model, statistics);
    }
}

TEST(Statistics, ListsOfAllSizesAreRead)
{
    for (int element : {1, 2, 4}) {
        for (unsigned handle : {0, 1, 2, 4}) {
            for (int longOffsets : {0, 1}) {
                CT_CompList list(CT_CompList::et_ElementSize(element), handle, 1, longOffsets, 128,
                                 0);
                // No zero 16-bit unit, so that elements of four bytes are stored whole.
                const unsigned keys[][4] = {
                    {0x00630063, 0x00610061, 0x00720072, 0}, {0x00630063, 0x00610061, 0, 0}, {0}};
                for (const auto& key : keys)
                    list.b_Add(reinterpret_cast<const char*>(key), 1);
                Statistics statistics;
                EXPECT_TRUE(statistics.Take(list)) << element << " " << handle << longOffsets;
                EXPECT_EQ(statistics.Words() + 1, list.n_GetNrOfEntries());
            }
        }
    }
}

TEST(Statistics, AnAlteredStreamIsRefusedOrCanBeWalkedToItsEnd)
{
    CT_Buffer block;
    MakeList({"car", "cat", "do", "ca", "cart", "dot", "e"}, &block);
    const std::string good = Bytes(block);
    EXPECT_TRUE(IsSound(good));
    unsigned refused = 0;
    for (size_t place = lexicon::ListStream::FIRST; place < good.size(); ++place) {
        for (int value : {0, 1, 2, 6, 10, 13, 15, 25, 26, 99, 255}) {
            std::string bytes = good;
            bytes[place] = static_cast<char>(value);
            if (!IsSound(bytes)) {
                ++refused;
                continue;
            }
            const CT_Buffer altered(bytes.data(), static_cast<unsigned>(bytes.size()), 32);
            const CT_CompList list(&altered);
            CT_CCompListIterator iterator(&list);
            CT_CString key;
            unsigned count = 0;
            while (count <= 7 && iterator.b_GetNext(&key, 0))
                ++count;
            EXPECT_EQ(count, 7u) << place << " " << value;
        }
    }
    EXPECT_GT(refused, 100u);
}

TEST(Statistics, AStreamThatIsCutOrHasATailIsRefused)
{
    CT_Buffer block;
    MakeList({"car", "cat", "do"}, &block);
    const std::string good = Bytes(block);
    for (size_t size = lexicon::ListStream::FIRST; size < good.size(); ++size)
        EXPECT_FALSE(IsSound(good.substr(0, size))) << size;
    std::string longer = good + "x";
    ++longer[4]; // its end
    EXPECT_FALSE(IsSound(longer));
    std::string miscounted = good;
    ++miscounted[120]; // its number of entries
    EXPECT_FALSE(IsSound(miscounted));
}
