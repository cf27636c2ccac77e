// benchmarks/Support/Generate.cpp
#include "Support/Generate.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "Support/Inputs.h"

namespace
{
constexpr unsigned WORDS = 12000;
constexpr unsigned LINE_COLUMNS = 72;

// A source of chance that gives the same numbers everywhere.
class Chance
{
public:
    explicit Chance(std::string_view name)
    {
        for (const char c : name)
            state = (state ^ static_cast<unsigned char>(c)) * 0x100000001B3u;
    }
    // 0 to n - 1.
    unsigned Below(unsigned n) { return static_cast<unsigned>(Fraction() * n); }
    // 0 to n - 1, each number half as often as the one of half its size.
    unsigned Zipf(unsigned n) { return static_cast<unsigned>(std::pow(n + 1.0, Fraction())) - 1; }
    // Around 0 with the deviation 1.
    double Normal()
    {
        double sum = -6;
        for (unsigned n = 0; n < 12; ++n)
            sum += Fraction();
        return sum;
    }

private:
    // From 0 on and below 1.
    double Fraction()
    {
        state = state * 6364136223846793005u + 1442695040888963407u;
        return static_cast<double>(state >> 11) / 9007199254740992.0;
    }

    unsigned long long state = 19970101;
};

struct Script
{
    char16_t consonants, consonant_count; // a run of characters
    const char16_t* vowels;               // none where a syllable is one character
    unsigned syllables;                   // up to
    bool spaces;
    bool capitals;
};

const Script LATIN = {u'b', 21, u"aeiou\u00e4\u00f6\u00fc\u00e9", 4, true, true};
const Script CYRILLIC = {0x0431, 20, u"\u0430\u0435\u0438\u043e\u0443\u044f", 4, true, true};
const Script GREEK = {0x03B2, 16, u"\u03b1\u03b5\u03b7\u03b9\u03bf\u03ac", 4, true, true};
const Script HEBREW = {0x05D0, 27, nullptr, 6, true, false};
const Script KANA = {0x3042, 80, nullptr, 5, false, false};
const Script HAN = {0x4E00, 4000, nullptr, 3, false, false};
const Script HANGUL = {0xAC00, 8000, nullptr, 4, true, false};

void Append(std::string& text, unsigned unit)
{
    if (unit < 0x80) {
        text += static_cast<char>(unit);
        return;
    }
    if (unit < 0x800)
        text += static_cast<char>(0xC0 | unit >> 6);
    else {
        text += static_cast<char>(0xE0 | unit >> 12);
        text += static_cast<char>(0x80 | (unit >> 6 & 0x3F));
    }
    text += static_cast<char>(0x80 | (unit & 0x3F));
}

std::string Word(const Script& script, Chance& chance)
{
    std::string word;
    const auto vowels =
        static_cast<unsigned>(script.vowels ? std::u16string_view(script.vowels).size() : 0);
    for (unsigned left = 1 + chance.Below(script.syllables); left; --left) {
        Append(word, script.consonants + chance.Below(script.consonant_count));
        if (vowels)
            Append(word, script.vowels[chance.Zipf(vowels)]);
    }
    return word;
}

// Different words, the frequent ones first.
std::vector<std::string> Words(const Script& script, Chance& chance, unsigned count)
{
    std::unordered_set<std::string> seen;
    std::vector<std::string> words;
    while (words.size() < count) {
        std::string word = Word(script, chance);
        if (seen.insert(word).second)
            words.push_back(std::move(word));
    }
    return words;
}

// A sentence's first letter; the scripts with capitals have them 32 below the small letters.
void Capitalize(std::string& text, size_t place)
{
    const auto lead = static_cast<unsigned char>(text[place]);
    const size_t last = lead < 0x80 ? place : place + 1;
    if (lead < 0x80)
        text[last] = static_cast<char>(text[last] - 32);
    else {
        const unsigned unit = ((lead & 0x1Fu) << 6 | (text[last] & 0x3F)) - 32;
        text[place] = static_cast<char>(0xC0 | unit >> 6);
        text[last] = static_cast<char>(0x80 | (unit & 0x3F));
    }
}

// Running text of about that many bytes, in sentences and lines.
std::string Text(const std::vector<const Script*>& scripts, Chance& chance, size_t bytes)
{
    std::vector<std::vector<std::string>> vocabularies;
    for (const Script* script : scripts)
        vocabularies.push_back(Words(*script, chance, 2000));
    std::string text;
    size_t line = 0;
    unsigned left = 0; // words of the sentence
    while (text.size() < bytes) {
        const unsigned choice = chance.Below(static_cast<unsigned>(scripts.size()));
        const size_t place = text.size();
        text += vocabularies[choice][chance.Zipf(2000)];
        if (left == 0 && scripts[choice]->capitals)
            Capitalize(text, place);
        left = left ? left - 1 : 3 + chance.Below(12);
        if (left == 0)
            text += scripts[choice]->spaces ? "." : "\xE3\x80\x82";
        const bool full = text.size() - line > LINE_COLUMNS;
        if (full || scripts[choice]->spaces)
            text += full ? '\n' : ' ';
        if (full)
            line = text.size();
    }
    return text;
}

std::string Joined(const std::vector<std::string>& lines)
{
    std::string text;
    for (const std::string& line : lines)
        text += line + '\n';
    return text;
}

std::string Sizes(Chance& chance)
{
    std::vector<std::string> lines;
    for (unsigned n = 0; n < WORDS; ++n)
        lines.push_back(std::to_string(std::lround(150 * std::exp(0.7 * chance.Normal()))));
    return Joined(lines);
}

std::string Pairs(Chance& chance)
{
    const std::vector<std::string> heads = Inputs::Lines("heads");
    const std::vector<std::string> words = Inputs::Lines("words.en");
    std::vector<std::string> lines;
    for (const std::string& head : heads)
        for (unsigned left = 1 + chance.Zipf(3); left; --left)
            lines.push_back(head + '\t' + words[chance.Below(WORDS)]);
    return Joined(lines);
}

// A list of words as the packages have them: in order.
std::string WordList(Chance& chance)
{
    std::vector<std::string> words = Words(LATIN, chance, WORDS);
    std::sort(words.begin(), words.end());
    return Joined(words);
}

std::string Mixed()
{
    std::string text;
    for (const char* part :
         {"faq.de", "faq.fr", "faq.ru", "faq.ja", "faq.ko", "faq.zh-cn", "names"})
        text += Generate(part);
    return text;
}
} // namespace

std::string Generate(const std::string& name)
{
    constexpr size_t SIZE = 100000;
    Chance chance(name);
    if (name == "words.en" || name == "words.de" || name == "heads")
        return WordList(chance);
    if (name == "words.en.shuf") {
        std::vector<std::string> words = Inputs::Lines("words.en");
        Inputs::Shuffle(words);
        return Joined(words);
    }
    if (name == "pairs.tsv")
        return Pairs(chance);
    if (name == "record.sizes")
        return Sizes(chance);
    if (name == "faq.de" || name == "faq.fr")
        return Text({&LATIN}, chance, SIZE);
    if (name == "faq.ru")
        return Text({&CYRILLIC}, chance, SIZE);
    if (name == "faq.ja")
        return Text({&KANA, &HAN, &KANA, &LATIN}, chance, SIZE);
    if (name == "faq.ko")
        return Text({&HANGUL}, chance, SIZE);
    if (name == "faq.zh-cn")
        return Text({&HAN, &HAN, &HAN, &LATIN}, chance, SIZE);
    if (name == "names")
        return Text({&GREEK, &HEBREW, &LATIN}, chance, 2 * SIZE);
    if (name == "mixed")
        return Mixed();
    std::fprintf(stderr, "benchmark inputs: there is no input %s\n", name.c_str());
    std::exit(2);
}
