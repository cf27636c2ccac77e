// tests/Ostra/String/StringScannerTest.cpp: items and words.
#include <Ostra/String/StringScanner.h>

#include "Ostra/String/StringSupport.h"
#include "Support/Directory.h"

#include <random>

namespace
{
CT_StringScanner scanner;

std::string Item(bool wide, const char* text, char separator, unsigned item)
{
    const auto in = Make(wide, text), out = Make(wide, "before");
    scanner.v_Item(out.get(), in.get(), separator, item);
    EXPECT_EQ(Ascii(*in), text);
    return Ascii(*out);
}

std::string WithoutItem(bool wide, const char* text, char separator, unsigned item)
{
    const auto s = Make(wide, text);
    scanner.v_RemoveItem(s.get(), separator, item);
    return Ascii(*s);
}

unsigned Items(bool wide, const char* text, char separator)
{
    return scanner.n_ItemCount(Make(wide, text).get(), separator);
}

std::string Word(bool wide, const char* text, const char* separators, unsigned word)
{
    const auto in = Make(wide, text), out = Make(wide, "before"), set = Make(wide, separators);
    scanner.v_SubWord(out.get(), in.get(), set.get(), word);
    EXPECT_EQ(Ascii(*in), text);
    EXPECT_EQ(Ascii(*set), separators);
    return Ascii(*out);
}

std::string WithoutWord(bool wide, const char* text, const char* separators, unsigned word)
{
    const auto s = Make(wide, text), set = Make(wide, separators);
    scanner.v_RemoveWord(s.get(), set.get(), word);
    return Ascii(*s);
}

unsigned Words(bool wide, const char* text, const char* separators)
{
    return scanner.n_WordCount(Make(wide, text).get(), Make(wide, separators).get());
}

// Start and length of each item.
using Pieces = std::vector<std::pair<unsigned, unsigned>>;

Pieces ModelItems(const std::string& text, char separator)
{
    Pieces pieces = {{0, 0}};
    for (unsigned n = 0; n < text.size(); ++n)
        if (text[n] == separator)
            pieces.push_back({n + 1, 0});
        else
            ++pieces.back().second;
    return pieces;
}

Pieces ModelWords(const std::string& text, const std::string& set)
{
    Pieces pieces;
    for (std::size_t at = 0;;) {
        at = text.find_first_not_of(set, at);
        if (at == std::string::npos)
            return pieces;
        const std::size_t end = std::min(text.find_first_of(set, at), text.size());
        pieces.push_back({static_cast<unsigned>(at), static_cast<unsigned>(end - at)});
        at = end;
    }
}
} // namespace

// ---- Items ----------------------------------------------------------------------------------

TEST(StringScanner, ItemIsTheTextBetweenSeparators)
{
    const struct
    {
        const char* text;
        unsigned item;
        const char* result;
    } rows[] = {{"a,b,c", 1, "a"},
                {"a,b,c", 2, "b"},
                {"a,b,c", 3, "c"},
                {"a,b,c", 4, ""},
                {"a,b,c", 0, ""},
                {"a,b,c", ALL, ""},
                {"a,,c", 2, ""},
                {"a,,c", 3, "c"},
                {"abc", 1, "abc"},
                {"abc", 2, ""},
                {"", 1, ""},
                {"", 2, ""},
                {",", 1, ""},
                {",", 2, ""},
                {",x", 2, "x"},
                {"x,", 1, "x"},
                {"one two,three", 1, "one two"}};
    OnBoth([&](bool wide) {
        for (const auto& row : rows) {
            SCOPED_TRACE(row.text + std::string(" ") + std::to_string(row.item));
            EXPECT_EQ(Item(wide, row.text, ',', row.item), row.result);
        }
    });
}

// Kept: the number of separators.
TEST(StringScanner, ItemCountIsOneLessThanTheItems)
{
    OnBoth([](bool wide) {
        EXPECT_EQ(Items(wide, "a,b,c", ','), 2u);
        EXPECT_EQ(Items(wide, "abc", ','), 0u);
        EXPECT_EQ(Items(wide, "", ','), 0u);
        EXPECT_EQ(Items(wide, ",", ','), 1u);
        EXPECT_EQ(Items(wide, ",,,", ','), 3u);
        EXPECT_EQ(Item(wide, "abc", ',', 1), "abc");
        EXPECT_EQ(Item(wide, "a,b,c", ',', Items(wide, "a,b,c", ',') + 1), "c");
    });
}

TEST(StringScanner, RemovedItemLeavesItsSeparators)
{
    const struct
    {
        const char* text;
        unsigned item;
        const char* result;
    } rows[] = {{"a,b,c", 2, "a,,c"},  {"a,b,c", 1, ",b,c"},  {"a,b,c", 3, "a,b,"},
                {"a,b,c", 4, "a,b,c"}, {"a,b,c", 0, "a,b,c"}, {"a,,c", 2, "a,,c"},
                {"abc", 1, ""},        {"", 1, ""},           {"long item,x", 1, ",x"}};
    OnBoth([&](bool wide) {
        for (const auto& row : rows) {
            SCOPED_TRACE(row.text + std::string(" ") + std::to_string(row.item));
            EXPECT_EQ(WithoutItem(wide, row.text, ',', row.item), row.result);
        }
    });
}

TEST(StringScanner, SeparatorOfZeroOccursNowhere)
{
    OnBoth([](bool wide) {
        EXPECT_EQ(Item(wide, "abc", 0, 1), "abc");
        EXPECT_EQ(Item(wide, "abc", 0, 2), "");
        EXPECT_EQ(Items(wide, "abc", 0), 0u);
        EXPECT_EQ(WithoutItem(wide, "abc", 0, 1), "");
    });
}

TEST(StringScanner, SeparatorIsAUnitThatBytesSeeInTheSystemsCodePage)
{
    char separator[] = "?";
    unsigned short unit = 0xE9;
    // The byte of the separator, whatever the system's code page is.
    const CT_UString wide_separator(&unit, 1);
    CT_CString bytes(&wide_separator, 0);
    separator[0] = bytes.c_GetAt(0);
    const CT_CString in(("a" + std::string(separator) + "b").c_str(), ALL, 1251);
    CT_CString out;
    scanner.v_Item(&out, &in, unit, 2);
    EXPECT_EQ(Text(out), "b");
    const CT_UString wide(U(u"a\u0416b\u0416c"));
    CT_UString wide_out;
    scanner.v_Item(&wide_out, &wide, 0x416, 3);
    EXPECT_EQ(Text(wide_out), u"c");
    EXPECT_EQ(scanner.n_ItemCount(&wide, 0x416), 2u);
}

TEST(StringScanner, BytesAreCopiedAsTheyAreAndTheCodePageStays)
{
    const CT_CString in("\xC6;\xE9", ALL, 1251);
    CT_CString out("x", ALL, 1252);
    scanner.v_Item(&out, &in, ';', 2);
    EXPECT_EQ(Text(out), "\xE9");
    EXPECT_EQ(out.n_GetCodePage(), 1252u);
    const CT_CString set(";", ALL, 932);
    scanner.v_SubWord(&out, &in, &set, 1);
    EXPECT_EQ(Text(out), "\xC6");
    EXPECT_EQ(out.n_GetCodePage(), 1252u);
}

TEST(StringScanner, ItemOfAStringIntoItself)
{
    OnBoth([](bool wide) {
        const auto s = Make(wide, "one,a longer second item,three");
        const auto sharer = Share(*s);
        scanner.v_Item(s.get(), s.get(), ',', 2);
        EXPECT_EQ(Ascii(*s), "a longer second item");
        EXPECT_EQ(Ascii(*sharer), "one,a longer second item,three");
        scanner.v_Item(s.get(), s.get(), ' ', 2);
        EXPECT_EQ(Ascii(*s), "longer");
        scanner.v_Item(s.get(), s.get(), ' ', 2);
        EXPECT_EQ(Ascii(*s), "");
    });
}

// ---- Words ----------------------------------------------------------------------------------

TEST(StringScanner, WordIsARunOutsideTheSet)
{
    const struct
    {
        const char* text;
        const char* set;
        unsigned word;
        const char* result;
    } rows[] = {{"one two  three", " ", 1, "one"},
                {"one two  three", " ", 2, "two"},
                {"one two  three", " ", 3, "three"},
                {"one two  three", " ", 4, ""},
                {"  one  ", " ", 1, "one"},
                {"  one  ", " ", 2, ""},
                {"a,b;c", ",;", 3, "c"},
                {"a,;b", ",;", 2, "b"},
                {"abc", "", 1, "abc"},
                {"abc", "", 2, ""},
                {"abc", "abc", 1, ""},
                {"", " ", 1, ""},
                {"", "", 1, ""},
                {"one two", " ", 0, ""},
                {" one", " ", 0, ""},
                {"", " ", 0, ""},
                {"one", " ", ALL, ""}};
    OnBoth([&](bool wide) {
        for (const auto& row : rows) {
            SCOPED_TRACE(row.text + std::string(" ") + std::to_string(row.word));
            EXPECT_EQ(Word(wide, row.text, row.set, row.word), row.result);
        }
    });
}

TEST(StringScanner, WordCountKnowsNoEmptyWords)
{
    OnBoth([](bool wide) {
        EXPECT_EQ(Words(wide, "   ", " "), 0u);
        EXPECT_EQ(Words(wide, "", " "), 0u);
        EXPECT_EQ(Words(wide, "  one   two ", " "), 2u);
        EXPECT_EQ(Words(wide, "one", " "), 1u);
        EXPECT_EQ(Words(wide, "one", ""), 1u);
        EXPECT_EQ(Words(wide, "", ""), 0u);
        EXPECT_EQ(Words(wide, "a,b;c,;d", ",;"), 4u);
    });
}

TEST(StringScanner, RemovedWordLeavesTheSeparatorsAroundIt)
{
    const struct
    {
        const char* text;
        unsigned word;
        const char* result;
    } rows[] = {{"one two three", 2, "one  three"},
                {"one two three", 1, " two three"},
                {"one two three", 3, "one two "},
                {"one two three", 4, "one two three"},
                {"one two three", 0, "one two three"},
                {" one", 0, " one"},
                {"  one  ", 1, "    "},
                {"", 1, ""},
                {"   ", 1, "   "}};
    OnBoth([&](bool wide) {
        for (const auto& row : rows) {
            SCOPED_TRACE(row.text + std::string(" ") + std::to_string(row.word));
            EXPECT_EQ(WithoutWord(wide, row.text, " ", row.word), row.result);
        }
    });
}

TEST(StringScanner, WordsOfCharactersBeyondAscii)
{
    const CT_UString text(U(u"\u0416\u3000x\u0436")), set(U(u"\u3000\u0416"));
    CT_UString out;
    scanner.v_SubWord(&out, &text, &set, 1);
    EXPECT_EQ(Text(out), u"x\u0436");
    EXPECT_EQ(scanner.n_WordCount(&text, &set), 1u);
    const CT_CString bytes("\xC6\xE6x\xFF", ALL, 1251), byte_set("\xE6\xFF", ALL, 1252);
    CT_CString byte_out;
    scanner.v_SubWord(&byte_out, &bytes, &byte_set, 2);
    EXPECT_EQ(Text(byte_out), "x");
    EXPECT_EQ(scanner.n_WordCount(&bytes, &byte_set), 2u);
}

TEST(StringScanner, WordOfAStringIntoItself)
{
    OnBoth([](bool wide) {
        const auto s = Make(wide, "one two"), set = Make(wide, " ");
        const auto sharer = Share(*s);
        scanner.v_SubWord(s.get(), s.get(), set.get(), 2);
        EXPECT_EQ(Ascii(*s), "two");
        EXPECT_EQ(Ascii(*sharer), "one two");
        scanner.v_SubWord(s.get(), s.get(), set.get(), 1);
        EXPECT_EQ(Ascii(*s), "two");
        scanner.v_SubWord(s.get(), s.get(), set.get(), 2);
        EXPECT_EQ(Ascii(*s), "");
        // The same for the set.
        scanner.v_SubWord(set.get(), sharer.get(), set.get(), 1);
        EXPECT_EQ(Ascii(*set), "one");
        scanner.v_SubWord(set.get(), set.get(), set.get(), 1);
        EXPECT_EQ(Ascii(*set), "");
    });
}

TEST(StringScanner, AWordOfASharedTextIsATextOfItsOwn)
{
    OnBoth([](bool wide) {
        const auto in = Make(wide, "one two three"), set = Make(wide, " ");
        const auto out = Share(*in), cut = Share(*in);
        scanner.v_SubWord(out.get(), in.get(), set.get(), 3);
        EXPECT_EQ(Ascii(*out), "three");
        scanner.v_RemoveWord(cut.get(), set.get(), 1);
        EXPECT_EQ(Ascii(*cut), " two three");
        EXPECT_EQ(Ascii(*in), "one two three");
        EXPECT_EQ(UsesOf(*in), 1u);
    });
}

// ---- Both -----------------------------------------------------------------------------------

TEST(StringScanner, TextEndsAtItsFirstTerminator)
{
    const CT_CString text("a,b\0,c", 6, 1252);
    CT_CString out("x");
    EXPECT_EQ(scanner.n_ItemCount(&text, ','), 1u);
    scanner.v_Item(&out, &text, ',', 3);
    EXPECT_EQ(Text(out), "");
    scanner.v_Item(&out, &text, ',', 2);
    EXPECT_EQ(Text(out), "b");
    const CT_UString wide(U(u"a b\0 c"), 6), set(U(u" "));
    EXPECT_EQ(scanner.n_WordCount(&wide, &set), 2u);
}

TEST(StringScanner, StringsOfDifferentClassesAreLeftAlone)
{
    for (unsigned kinds = 0; kinds < 8; ++kinds) {
        const bool out_wide = kinds & 1, in_wide = kinds & 2, set_wide = kinds & 4;
        SCOPED_TRACE(kinds);
        const auto out = Make(out_wide, "before"), in = Make(in_wide, "a b,c");
        const auto set = Make(set_wide, " "), cut = Make(in_wide, "a b,c");
        const bool same = in_wide == set_wide;
        scanner.v_Item(out.get(), in.get(), ',', 2);
        EXPECT_EQ(Ascii(*out), in_wide == out_wide ? "c" : "before");
        scanner.v_SubWord(out.get(), in.get(), set.get(), 1);
        EXPECT_EQ(Ascii(*out), in_wide != out_wide ? "before" : same ? "a" : "c");
        scanner.v_RemoveWord(cut.get(), set.get(), 1);
        EXPECT_EQ(Ascii(*cut), same ? " b,c" : "a b,c");
        EXPECT_EQ(scanner.n_WordCount(in.get(), set.get()), same ? 2u : 0u);
    }
}

TEST(StringScanner, StringsOfOtherClassesAreLeftAlone)
{
    CT_String& other = CT_String::sco_Object;
    const CT_CString in("a,b"), set(",");
    CT_CString out("before");
    scanner.v_Item(&other, &in, ',', 1);
    scanner.v_Item(&out, &other, ',', 1);
    scanner.v_SubWord(&out, &in, &other, 1);
    scanner.v_RemoveItem(&other, ',', 1);
    scanner.v_RemoveWord(&other, &set, 1);
    EXPECT_EQ(Text(out), "before");
    EXPECT_EQ(scanner.n_ItemCount(&other, ','), 0u);
    EXPECT_EQ(scanner.n_WordCount(&other, &set), 0u);
    EXPECT_EQ(scanner.n_WordCount(&in, &other), 0u);
}

TEST(StringScanner, AgreesWithTheModelOnRandomTexts)
{
    const unsigned seed = Seed(2501);
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    for (unsigned n = 0; n < 2000; ++n) {
        std::string text;
        for (unsigned length = random() % 40; length; --length)
            text += "ab ,;"[random() % 5];
        const std::string set = std::vector<std::string>{"", " ", ",;", "; a"}[random() % 4];
        const bool wide = random() % 2;
        const Pieces items = ModelItems(text, ','), words = ModelWords(text, set);
        const unsigned index = random() % 12;
        const char* qcz = text.c_str();
        std::string item, word, no_item = text, no_word = text;
        if (index && index <= items.size()) {
            item = text.substr(items[index - 1].first, items[index - 1].second);
            no_item.erase(items[index - 1].first, items[index - 1].second);
        }
        if (index && index <= words.size()) {
            word = text.substr(words[index - 1].first, words[index - 1].second);
            no_word.erase(words[index - 1].first, words[index - 1].second);
        }
        SCOPED_TRACE("'" + text + "' '" + set + "' " + std::to_string(index));
        ASSERT_EQ(Items(wide, qcz, ','), items.size() - 1);
        ASSERT_EQ(Words(wide, qcz, set.c_str()), words.size());
        ASSERT_EQ(Item(wide, qcz, ',', index), item);
        ASSERT_EQ(Word(wide, qcz, set.c_str(), index), word);
        ASSERT_EQ(WithoutItem(wide, qcz, ',', index), no_item);
        ASSERT_EQ(WithoutWord(wide, qcz, set.c_str(), index), no_word);
    }
}
