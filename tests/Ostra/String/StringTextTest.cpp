// tests/Ostra/String/StringTextTest.cpp: what both string classes do alike: find, match, compare,
// strip, translate, format.
#include "Ostra/String/StringSupport.h"
#include "Support/Directory.h"

#include <cstdarg>
#include <random>

// ---- Find ---------------------------------------------------------------------------------

TEST(String, FindsACharacter)
{
    OnBoth([](bool wide) {
        auto s = Make(wide, "abcabc");
        EXPECT_EQ(s->vn_Find('b'), 1u);
        EXPECT_EQ(s->vn_Find('b', 2), 4u);
        EXPECT_EQ(s->vn_Find('b', 5), NONE);
        EXPECT_EQ(s->vn_Find('x'), NONE);
        EXPECT_EQ(s->vn_Find('x'), 0xFFFFFFFFu);
        EXPECT_EQ(s->vn_Find(static_cast<unsigned short>('c')), 2u);
        EXPECT_EQ(s->vn_Find(static_cast<unsigned short>('c'), 3), 5u);
        EXPECT_EQ(s->vn_Find('a', 100), NONE);
    });
}

TEST(String, FindOfZeroYieldsTheLength)
{
    OnBoth([](bool wide) {
        auto s = Make(wide, "abcabc");
        EXPECT_EQ(s->vn_Find('\0', 2), 6u);
        s->vv_SetSize(0, 0);
        EXPECT_EQ(s->vn_Find('\0'), 0u);
        EXPECT_EQ(s->vn_Find('a'), NONE);
    });
}

TEST(String, FindStopsAtTheFirstTerminator)
{
    OnBoth([](bool wide) {
        auto s = Make(wide, "");
        auto zero = Make(wide, "abcdefghijklmnopqrstuvwxyz0123456789");
        zero->vv_Replace('x', 2, 1);
        s->v_Set(zero.get());
        ASSERT_EQ(s->vn_GetLength(), 36u);
        EXPECT_EQ(s->vn_Find('x'), 1u);
        if (wide)
            return;
        EXPECT_EQ(s->vn_Find('e'), NONE) << "behind the zero that the replacing wrote";
        EXPECT_EQ(s->vn_Find("fgh"[0]), NONE);
        CT_CString find("efg");
        EXPECT_EQ(s->vn_Find(&find), NONE);
        EXPECT_EQ(s->vn_Find(&find, 4), 4u);
        EXPECT_EQ(s->vn_Find('\0'), 3u);
    });
}

TEST(String, FindsAText)
{
    OnBoth([](bool wide) {
        auto s = Make(wide, "abcabcab");
        for (bool other : {false, true}) {
            EXPECT_EQ(s->vn_Find(Make(other, "bca").get()), 1u);
            EXPECT_EQ(s->vn_Find(Make(other, "bca").get(), 5), NONE);
            EXPECT_EQ(s->vn_Find(Make(other, "ab").get(), 4), 6u);
            EXPECT_EQ(s->vn_Find(Make(other, "abcabcabc").get()), NONE);
            EXPECT_EQ(s->vn_Find(Make(other, "abcabcab").get()), 0u);
            EXPECT_EQ(s->vn_Find(Make(other, "").get(), 3), 3u) << "an empty text is found at once";
        }
    });
}

TEST(String, FindTextNeitherCopiesNorChangesAnArgumentOfItsClass)
{
    OnBoth([](bool wide) {
        auto s = Make(wide, "abc");
        auto find = Make(wide, "c");
        const unsigned before = CT_Buffer::sn_GetAllocCount();
        EXPECT_EQ(s->vn_Find(find.get()), 2u);
        EXPECT_FALSE(s->vb_Match(find.get()));
        EXPECT_LT(s->vi_Compare(find.get()), 0);
        EXPECT_EQ(CT_Buffer::sn_GetAllocCount(), before);
        EXPECT_EQ(UsesOf(*find), 1u);
    });
}

TEST(String, FindAgreesWithAPlainSearch)
{
    std::mt19937 random(Seed(22));
    for (int round = 0; round < 3000; ++round) {
        std::string text;
        std::string find;
        for (unsigned n = random() % 70; n; --n)
            text += static_cast<char>('a' + random() % 3);
        for (unsigned n = 1 + random() % 4; n; --n)
            find += static_cast<char>('a' + random() % 3);
        const unsigned from = static_cast<unsigned>(random() % (text.size() + 1));
        const auto expected = static_cast<unsigned>(text.find(find, from));
        const auto expectedCharacter = static_cast<unsigned>(text.find(find[0], from));
        OnBoth([&](bool wide) {
            auto s = Make(wide, text.c_str());
            ASSERT_EQ(s->vn_Find(Make(wide, find.c_str()).get(), from), expected)
                << text << " " << find;
            ASSERT_EQ(s->vn_Find(find[0], from), expectedCharacter);
        });
    }
}

// ---- Match --------------------------------------------------------------------------------

TEST(String, MatchesWildcards)
{
    struct Case
    {
        const char* pattern;
        const char* text;
        bool matches;
    };
    const Case cases[] = {
        {"", "", true},         {"", "abc", true},        {"*", "", true},
        {"*", "abc", true},     {"a*c", "abc", true},     {"a*c", "abd", false},
        {"a*c", "ac", true},    {"abc", "abc", true},     {"abc", "abcd", false},
        {"abcd", "abc", false}, {"ABC", "abc", false},    {"a?c", "abc", true},
        {"???", "abc", true},   {"??", "abc", false},     {"*b*", "abc", true},
        {"*b", "abab", true},   {"*ab*ab", "aab", false}, {"a**c", "abc", true},
        {"a*?c", "abc", true},  {"a*?c", "ac", false},    {"*.txt", "a.txt.txt", true},
        {"[a]", "a", false},    {"\\*", "*", false},      {"a*", "a", true},
        {"*a", "b", false},     {"*?", "a", true},        {"x*", "abc", false},
        {"**", "", true},
    };
    OnBoth([&](bool wide) {
        for (const Case& c : cases) {
            SCOPED_TRACE(std::string(c.pattern) + " on " + c.text);
            auto s = Make(wide, c.text);
            EXPECT_EQ(s->vb_Match(Make(wide, c.pattern).get()), c.matches);
            EXPECT_EQ(s->vb_Match(Make(!wide, c.pattern).get()), c.matches);
        }
    });
}

TEST(String, MatchesAPlainPattern)
{
    EXPECT_TRUE(CT_CString("abc").b_Match("a*c"));
    EXPECT_FALSE(CT_CString("abc").b_Match("a*b"));
    EXPECT_TRUE(CT_UString("abc", ALL, 1252).b_Match(U(u"?b?")));
    EXPECT_FALSE(CT_UString("abc", ALL, 1252).b_Match(U(u"?b")));
}

// It would go on behind the text; nothing is read there.
TEST(String, QuestionMarkDoesNotMatchTheEnd)
{
    OnBoth([](bool wide) {
        EXPECT_FALSE(Make(wide, "ab")->vb_Match(Make(wide, "ab?").get()));
        EXPECT_FALSE(Make(wide, "")->vb_Match(Make(wide, "?").get()));
        EXPECT_FALSE(Make(wide, "")->vb_Match(Make(wide, "*?").get()));
    });
}

namespace
{
// The rules one by one, without any cleverness.
bool Matches(const char* text, const char* pattern)
{
    for (; *pattern; ++text, ++pattern) {
        if (*pattern == '*') {
            if (!pattern[1])
                return true;
            for (;; ++text) {
                if (Matches(text, pattern + 1))
                    return true;
                if (!*text)
                    return false;
            }
        }
        if (!*text || (*pattern != '?' && *pattern != *text))
            return false;
    }
    return !*text;
}
} // namespace

TEST(String, MatchAgreesWithTheRules)
{
    std::mt19937 random(Seed(23));
    for (int round = 0; round < 20000; ++round) {
        std::string text;
        std::string pattern;
        for (unsigned n = random() % 8; n; --n)
            text += "ab"[random() % 2];
        for (unsigned n = 1 + random() % 7; n; --n)
            pattern += "ab*?"[random() % 4];
        OnBoth([&](bool wide) {
            ASSERT_EQ(Make(wide, text.c_str())->vb_Match(Make(wide, pattern.c_str()).get()),
                      Matches(text.c_str(), pattern.c_str()))
                << pattern << " on " << text;
        });
    }
}

// ---- Compare ------------------------------------------------------------------------------

TEST(String, ComparesWholeTexts)
{
    struct Case
    {
        const char* left;
        const char* right;
        int result;
    };
    const Case cases[] = {{"", "", 0},       {"abc", "abc", 0}, {"abc", "abd", -1},
                          {"abd", "abc", 1}, {"ab", "abc", -1}, {"abc", "ab", 1},
                          {"", "a", -1},     {"Z", "a", -1}};
    OnBoth([&](bool wide) {
        for (const Case& c : cases) {
            SCOPED_TRACE(std::string(c.left) + " with " + c.right);
            auto s = Make(wide, c.left);
            const CT_UString right(c.right, ALL, 1252);
            EXPECT_EQ(s->vi_Compare(c.right), c.result);
            EXPECT_EQ(s->vi_Compare(right.qcuz_Get()), c.result);
            EXPECT_EQ(s->vi_Compare(Make(wide, c.right).get()), c.result);
            EXPECT_EQ(s->vi_Compare(Make(!wide, c.right).get()), c.result);
        }
    });
}

TEST(String, ComparesACountFromAnOffset)
{
    OnBoth([](bool wide) {
        auto s = Make(wide, "xxabcdef");
        EXPECT_EQ(s->vi_Compare("abX", 2, 2), 0);
        EXPECT_GT(s->vi_Compare("abX", 3, 2), 0);
        EXPECT_LT(s->vi_Compare("abx", 3, 2), 0);
        EXPECT_EQ(s->vi_Compare(U(u"abX"), 2, 2), 0);
        EXPECT_EQ(s->vi_Compare("abcdefgh", 6, 2), 0);
        EXPECT_LT(s->vi_Compare("abcdefgh", 7, 2), 0);
        EXPECT_EQ(s->vi_Compare("abcdef", 100, 2), 0) << "both end";
        EXPECT_EQ(s->vi_Compare("anything", 0), 0);
        EXPECT_EQ(s->vi_Compare("abcdef", ALL, 2), 0);
        EXPECT_EQ(s->vi_Compare(Make(wide, "--abcd").get(), 2, 4, 2), 0);
        EXPECT_EQ(s->vi_Compare(Make(!wide, "--abcdef").get(), 2, ALL, 2), 0);
        EXPECT_EQ(s->vi_Compare("", ALL, 100), 0) << "behind the end there is nothing";
    });
}

// ---- Strip --------------------------------------------------------------------------------

TEST(String, StripsSpace)
{
    struct Case
    {
        const char* text;
        const char* left;
        const char* right;
        const char* both;
    };
    const Case cases[] = {{" \t\n\v\f\r a b \t", "a b \t", " \t\n\v\f\r a b", "a b"},
                          {"ab", "ab", "ab", "ab"},
                          {"   ", "", "", ""},
                          {"", "", "", ""},
                          {"\x08 \x0e", "\x08 \x0e", "\x08 \x0e", "\x08 \x0e"},
                          {" \x08", "\x08", " \x08", "\x08"}};
    OnBoth([&](bool wide) {
        for (const Case& c : cases) {
            SCOPED_TRACE(c.text);
            auto s = Make(wide, c.text);
            s->vv_StripLeft();
            EXPECT_EQ(Ascii(*s), c.left);
            s = Make(wide, c.text);
            s->vv_StripRight();
            EXPECT_EQ(Ascii(*s), c.right);
            s = Make(wide, c.text);
            s->vv_Strip(nullptr);
            EXPECT_EQ(Ascii(*s), c.both);
        }
    });
}

TEST(String, StripsASet)
{
    struct Case
    {
        const char* set;
        const char* text;
        const char* rest;
    };
    const Case cases[] = {{"x", "xxaxbxx", "axb"}, {"x", "xxx", ""},     {"xy", "xyxayx", "a"},
                          {"x", "abc", "abc"},     {"", " ab ", " ab "}, {"ab", "", ""},
                          {"a", "a", ""},          {"b", "ab", "a"},     {" ", "  a", "a"}};
    OnBoth([&](bool wide) {
        for (bool other : {wide, !wide})
            for (const Case& c : cases) {
                SCOPED_TRACE(std::string(c.set) + " off " + c.text);
                auto s = Make(wide, c.text);
                auto sharer = Share(*s);
                s->vv_Strip(Make(other, c.set).get());
                EXPECT_EQ(Ascii(*s), c.rest);
                EXPECT_EQ(Ascii(*sharer), c.text) << "the sharer keeps its text";
            }
    });
}

TEST(String, StripOfItselfLeavesNothing)
{
    OnBoth([](bool wide) {
        auto s = Make(wide, "abcabc");
        s->vv_Strip(s.get());
        EXPECT_EQ(Ascii(*s), "");
    });
}

TEST(String, StripLeftLeavesASharerAlone)
{
    OnBoth([](bool wide) {
        auto s = Make(wide, "  ab");
        auto sharer = Share(*s);
        s->vv_StripLeft();
        EXPECT_EQ(Ascii(*s), "ab");
        EXPECT_EQ(Ascii(*sharer), "  ab");
    });
}

// The zero goes into the block before the string has one of its own.
TEST(String, StripRightCutsASharerToo)
{
    OnBoth([](bool wide) {
        auto s = Make(wide, "ab  ");
        auto sharer = Share(*s);
        s->vv_StripRight();
        EXPECT_EQ(Ascii(*s), "ab");
        EXPECT_NE(DataOf(*s), DataOf(*sharer));
        EXPECT_EQ(sharer->vn_GetLength(), 4u) << "its length stays";
        EXPECT_EQ(Ascii(*sharer), std::string("ab\0 ", 4));
    });
}

TEST(String, StripRightWithNothingToStripUnsharesTheNarrowStringOnly)
{
    OnBoth([](bool wide) {
        auto s = Make(wide, "ab");
        auto sharer = Share(*s);
        s->vv_StripRight();
        EXPECT_EQ(DataOf(*s) == DataOf(*sharer), wide);
        EXPECT_EQ(Ascii(*sharer), "ab");
    });
}

TEST(String, StripRightOfABlocklessStringDoesNothing)
{
    OnBoth([](bool wide) {
        auto s = Make(wide, "");
        s->vv_SetSize(0, 0);
        s->vv_StripRight();
        s->vv_StripLeft();
        EXPECT_EQ(DataOf(*s), nullptr);
    });
}

// ---- Translate ----------------------------------------------------------------------------

TEST(String, TranslatesOrRemovesCharacters)
{
    struct Case
    {
        const char* text;
        const char* from;
        const char* to;
        const char* result;
    };
    const Case cases[] = {{"aabbcc", "abc", "x", "xx"},   {"abc", "abc", "xyz", "xyz"},
                          {"abc", "", "xyz", "abc"},      {"abc", "abc", "", ""},
                          {"hello", "lo", "01", "he001"}, {"banana", "an", "u", "buuu"},
                          {"aba", "aa", "xy", "xbx"},     {"", "a", "b", ""},
                          {"abcabc", "c", "", "abab"},    {"xyz", "abc", "123", "xyz"}};
    OnBoth([&](bool wide) {
        for (bool other : {wide, !wide})
            for (const Case& c : cases) {
                SCOPED_TRACE(std::string(c.text) + " from " + c.from + " to " + c.to);
                auto s = Make(wide, c.text);
                s->vv_Translate(Make(other, c.from).get(), Make(other, c.to).get());
                EXPECT_EQ(Ascii(*s), c.result);
                EXPECT_EQ(s->vu_GetAt(s->vn_GetLength()), 0);
            }
    });
}

TEST(String, TranslateWritesIntoASharedBlockUpToTheFirstRemoval)
{
    OnBoth([](bool wide) {
        auto s = Make(wide, "abcab");
        auto sharer = Share(*s);
        s->vv_Translate(Make(wide, "ab").get(), Make(wide, "xy").get());
        EXPECT_EQ(DataOf(*s), DataOf(*sharer));
        EXPECT_EQ(Ascii(*sharer), "xycxy");

        s = Make(wide, "abcab");
        sharer = Share(*s);
        s->vv_Translate(Make(wide, "abc").get(), Make(wide, "xy").get());
        EXPECT_EQ(Ascii(*s), "xyxy");
        EXPECT_EQ(Ascii(*sharer), "xycab") << "as it was at the first removal";
        EXPECT_EQ(UsesOf(*sharer), 1u);
    });
}

TEST(String, TranslateLooksUpInItsOwnChangingText)
{
    OnBoth([](bool wide) {
        // The argument shares the block and changes with it: when its turn comes, b is found at 0
        // and a at 2.
        auto s = Make(wide, "aba");
        s->vv_Translate(s.get(), Make(wide, "bz").get());
        EXPECT_EQ(Ascii(*s), "bb");
    });
}

// ---- Format -------------------------------------------------------------------------------

TEST(String, FormatsInBothWidths)
{
    OnBoth([](bool wide) {
        auto s = Make(wide, "old");
        s->v_Format("%d-%s-%S-%c", 42, "narrow", U(u"wide"), 'x');
        EXPECT_EQ(Ascii(*s), "42-narrow-wide-x");
        s->v_Format(U(u"%u/%s/%S/%04X"), 7u, U(u"wide"), "narrow", 255);
        EXPECT_EQ(Ascii(*s), "7/wide/narrow/00FF");
        s->v_Format("");
        EXPECT_EQ(Ascii(*s), "");
        EXPECT_NE(DataOf(*s), nullptr);
    });
}

TEST(String, FormatsByAFormatStringOfEitherClass)
{
    OnBoth([](bool wide) {
        for (bool other : {false, true}) {
            auto s = Make(wide, "old");
            auto format = Make(other, "<%d>");
            s->vv_Format(format.get(), 17);
            EXPECT_EQ(Ascii(*s), "<17>");
        }
    });
}

namespace
{
void FormatTwice(CT_String* s, const CT_String* format, ...)
{
    va_list args;
    va_start(args, format);
    s->vv_Format(format, args);
    EXPECT_EQ(Ascii(*s), "1,2");
    s->v_Set("", ALL, 0);
    if (s->vpv_IsA(CT_CString::spcco_GetType()))
        static_cast<CT_CString*>(s)->vv_VFormat(format, args);
    else
        static_cast<CT_UString*>(s)->vv_VFormat(format, args);
    EXPECT_EQ(Ascii(*s), "1,2");
    va_end(args);
}
} // namespace

TEST(String, FormatLeavesTheArgumentListForAnotherReader)
{
    OnBoth([](bool wide) {
        for (bool other : {false, true})
            FormatTwice(Make(wide, "").get(), Make(other, "%d,%d").get(), 1, 2);
    });
}

TEST(String, FormatCutsWhatDoesNotFit)
{
    const std::string longText(5000, 'x');
    const std::u16string longWide(5000, u'y');
    OnBoth([&](bool wide) {
        auto s = Make(wide, "");
        s->v_Format("%s", longText.c_str());
        EXPECT_EQ(Ascii(*s), std::string(2047, 'x'));
        s->v_Format(U(u"%s"), U(longWide.c_str()));
        EXPECT_EQ(Ascii(*s), std::string(2047, 'y'));
        s->v_Format("%s", longText.substr(0, 2047).c_str());
        EXPECT_EQ(s->vn_GetLength(), 2047u);
    });
}

TEST(String, FormatMayReadTheStringItWrites)
{
    CT_CString narrow("abc");
    narrow.v_Format("<%s>", narrow.qccz_Get());
    EXPECT_EQ(Text(narrow), "<abc>");
    CT_UString wide("abc", ALL, 1252);
    wide.v_Format(U(u"<%s>"), wide.qcuz_Get());
    EXPECT_EQ(Text(wide), u"<abc>");
}

// The middle of what is looked for is a blank, which stands in nearly each stride of a text.
TEST(StringText, WordsAroundABlankAreFoundBehindOthersAroundBlanks)
{
    std::string text;
    for (unsigned n = 0; n < 60; ++n)
        text += "x b y ";
    text += "x y";
    const CT_CString bytes(text.c_str());
    const CT_UString units(&bytes);
    const CT_CString there("x y"), missing("x z");
    for (const CT_String* in :
         {static_cast<const CT_String*>(&bytes), static_cast<const CT_String*>(&units)}) {
        EXPECT_EQ(in->vn_Find(&there), 360u);
        EXPECT_EQ(in->vn_Find(&missing), ALL);
    }
}
