// tests/System/String/StringConvertTest.cpp: conversion by code pages, raw and with string objects.
#include <System/String/StringConvert.h>

#include <System/String/UTF.h>

#include <cstring>

#include <windows.h>

#include "Ostra/String/StringSupport.h"

namespace
{
// Room for raw conversions, filled so that what isn't written shows.
struct Wide
{
    unsigned short au[64];

    Wide() { std::memset(au, 0x5A, sizeof(au)); }
    std::u16string First(int count) const
    {
        return {reinterpret_cast<const char16_t*>(au), static_cast<std::size_t>(count)};
    }
};

struct Narrow
{
    char ac[64];

    Narrow() { std::memset(ac, 'Z', sizeof(ac)); }
    std::string First(int count) const { return {ac, static_cast<std::size_t>(count)}; }
};

unsigned LastCode()
{
    return CT_ErrorManager::spco_Get()->n_GetErrorCode();
}

using Convert = CT_StringConvert;
} // namespace

// ---- Raw text -----------------------------------------------------------------------------

TEST(StringConvert, ConvertsACountedText)
{
    Wide wide;
    EXPECT_EQ(Convert::si_MultiToWide(wide.au, "a\x80z", 2, 1252), 2);
    EXPECT_EQ(wide.First(3), u"a\u20AC\u5A5A");
    Narrow narrow;
    EXPECT_EQ(Convert::si_WideToMulti(narrow.ac, U(u"a\u20ACz"), 2, 1252, nullptr, nullptr), 2);
    EXPECT_EQ(narrow.First(3), "a\x80Z");
}

TEST(StringConvert, CountsTheTerminatorOfAWholeText)
{
    Wide wide;
    EXPECT_EQ(Convert::si_MultiToWide(wide.au, "abc", ALL, 1252), 4);
    EXPECT_EQ(wide.First(4), std::u16string(u"abc\0", 4));
    Narrow narrow;
    EXPECT_EQ(Convert::si_WideToMulti(narrow.ac, U(u"abc"), ALL, 1252, nullptr, nullptr), 4);
    EXPECT_EQ(narrow.First(4), std::string("abc\0", 4));
}

TEST(StringConvert, DoesNotCountTheTerminatorForTheCoders)
{
    CT_UTF::sv_UTF8ToWideInit();
    for (unsigned codePage : {UTF7, UTF8}) {
        Wide wide;
        EXPECT_EQ(Convert::si_MultiToWide(wide.au, "abc", ALL, codePage), 3);
        EXPECT_EQ(wide.First(3), u"abc");
        Narrow narrow;
        EXPECT_EQ(Convert::si_WideToMulti(narrow.ac, U(u"abc"), ALL, codePage, nullptr, nullptr),
                  3);
        EXPECT_EQ(narrow.First(4), std::string("abc\0", 4));
    }
}

TEST(StringConvert, NothingGivesAnEmptyText)
{
    for (unsigned codePage : {0u, 1252u, 932u, UTF7, UTF8, 12345u}) {
        Wide wide;
        EXPECT_EQ(Convert::si_MultiToWide(wide.au, "abc", 0, codePage), 0);
        EXPECT_EQ(wide.au[0], 0);
        Narrow narrow;
        EXPECT_EQ(Convert::si_WideToMulti(narrow.ac, U(u"abc"), 0, codePage, nullptr, nullptr), 0);
        EXPECT_EQ(narrow.ac[0], 0);
    }
}

TEST(StringConvert, InvalidCodePageActsAsTheSystems)
{
    for (unsigned codePage : {12345u, ALL, OWN}) {
        Wide wide;
        Wide expected;
        EXPECT_EQ(Convert::si_MultiToWide(wide.au, "ab", ALL, codePage),
                  Convert::si_MultiToWide(expected.au, "ab", ALL, 0));
        EXPECT_EQ(wide.First(3), expected.First(3));
        Narrow narrow;
        EXPECT_EQ(Convert::si_WideToMulti(narrow.ac, U(u"ab"), ALL, codePage, nullptr, nullptr), 3);
        EXPECT_EQ(Convert::sus_MultiToWide('a', codePage), 'a');
        EXPECT_EQ(Convert::sc_WideToMulti('a', codePage), 'a');
    }
}

TEST(StringConvert, AnsiFormsUseCodePageZero)
{
    Wide wide;
    EXPECT_EQ(Convert::si_MultiToWideANSI(wide.au, "abc"), 4);
    EXPECT_EQ(wide.First(3), u"abc");
    EXPECT_EQ(Convert::si_MultiToWideANSI(wide.au, "abc", 2), 2);
    Narrow narrow;
    EXPECT_EQ(Convert::si_WideToMultiANSI(narrow.ac, U(u"abc")), 4);
    EXPECT_EQ(narrow.First(3), "abc");
    EXPECT_EQ(Convert::si_WideToMultiANSI(narrow.ac, U(u"abc"), 2), 2);
}

TEST(StringConvert, ConvertsDoubleBytes)
{
    Wide wide;
    EXPECT_EQ(Convert::si_MultiToWide(wide.au, "\x82\xA0\x82\xA2z", ALL, 932), 4);
    EXPECT_EQ(wide.First(4), std::u16string(u"\u3042\u3044z\0", 4));
    Narrow narrow;
    EXPECT_EQ(Convert::si_WideToMulti(narrow.ac, U(u"\u3042\u3044z"), 3, 932, nullptr, nullptr), 5);
    EXPECT_EQ(narrow.First(5), "\x82\xA0\x82\xA2z");
}

TEST(StringConvert, DefaultCharacterStandsForWhatIsMissing)
{
    int used = 7;
    Narrow narrow;
    EXPECT_EQ(Convert::si_WideToMulti(narrow.ac, U(u"a\u3042"), 2, 1252, "#", &used), 2);
    EXPECT_EQ(narrow.First(2), "a#");
    EXPECT_EQ(used, 1);
    EXPECT_EQ(Convert::si_WideToMulti(narrow.ac, U(u"ab"), 2, 1252, "#", &used), 2);
    EXPECT_EQ(used, 0);
    EXPECT_EQ(Convert::si_WideToMulti(narrow.ac, U(u"\u3042"), 1, 1252, nullptr, nullptr), 1);
    EXPECT_EQ(narrow.ac[0], '?');
}

TEST(StringConvert, DefaultCharacterMeansNothingToTheCoders)
{
    CT_UTF::sv_UTF8ToWideInit();
    for (unsigned codePage : {UTF7, UTF8}) {
        int used = 7;
        Narrow narrow;
        Convert::si_WideToMulti(narrow.ac, U(u"\u3042"), 1, codePage, "#", &used);
        EXPECT_EQ(used, 7);
        EXPECT_EQ(narrow.First(5), codePage == UTF7 ? "+MEI-" : std::string("\xE3\x81\x82\0Z", 5));
    }
}

// One unit of zero is taken for a byte that has no mapping, even where the byte is the terminator.
TEST(StringConvert, SingleByteThatGivesZeroBecomesAQuestionMark)
{
    for (unsigned codePage : {1252u, 932u, 0u}) {
        Wide wide;
        EXPECT_EQ(Convert::si_MultiToWide(wide.au, "\0x", 1, codePage), 1);
        EXPECT_EQ(wide.First(2), u"?\u5A5A");
        EXPECT_EQ(Convert::si_MultiToWide(wide.au, "", ALL, codePage), 1);
        EXPECT_EQ(wide.First(1), u"?");
        EXPECT_EQ(Convert::si_MultiToWide(wide.au, "\0\0", 2, codePage), 2);
        EXPECT_EQ(wide.First(2), std::u16string(u"\0\0", 2)) << "two are left alone";
    }
}

TEST(StringConvert, SingleUnmappableByteBecomesAQuestionMark)
{
    // A lead byte alone has no mapping.
    Wide wide;
    EXPECT_EQ(Convert::si_MultiToWide(wide.au, "\x81", 1, 936), 1);
    EXPECT_EQ(wide.First(1), u"?");
}

TEST(StringConvert, FailureFromBytesIsSilent)
{
    Wide wide;
    EXPECT_EQ(Convert::si_MultiToWide(wide.au, nullptr, 1, 1252), 0);
    EXPECT_EQ(wide.au[0], 0);
    EXPECT_FALSE(CT_ErrorManager::spco_Get()->b_IsSetError());
}

TEST(StringConvert, FailureFromWideTextIsReported)
{
    Narrow narrow;
    EXPECT_EQ(Convert::si_WideToMulti(narrow.ac, nullptr, 1, 1252, nullptr, nullptr), 0);
    EXPECT_EQ(narrow.ac[0], 0);
    ExpectError(ERROR_INVALID_PARAMETER, {"System/String/StringConvert"});
    EXPECT_EQ(GetLastError(), 0u) << "the report takes the system's error";
}

TEST(StringConvert, CodedTextOfNoBytesIsReportedWithTheLastError)
{
    CT_UTF::sv_UTF8ToWideInit();
    for (unsigned code : {0u, 5u})
        for (unsigned codePage : {UTF7, UTF8}) {
            SCOPED_TRACE(codePage);
            Narrow narrow;
            SetLastError(code);
            EXPECT_EQ(Convert::si_WideToMulti(narrow.ac, U(u""), ALL, codePage, nullptr, nullptr),
                      0);
            EXPECT_EQ(narrow.ac[0], 0);
            EXPECT_EQ(LastCode(), code);
            ExpectError(code, {"System/String/StringConvert"});
            SetLastError(code);
            EXPECT_EQ(Convert::si_WideToMulti(narrow.ac, U(u"\0a"), 2, codePage, nullptr, nullptr),
                      0);
            ExpectError(code, {"System/String/StringConvert"});
        }
}

TEST(StringConvert, EmptyCodedTextDecodesToNothingWithoutAReport)
{
    CT_UTF::sv_UTF8ToWideInit();
    for (unsigned codePage : {UTF7, UTF8}) {
        Wide wide;
        EXPECT_EQ(Convert::si_MultiToWide(wide.au, "", ALL, codePage), 0);
        EXPECT_EQ(wide.First(2), std::u16string(u"\0\u5A5A", 2));
    }
}

TEST(StringConvert, ConvertsSingleCharacters)
{
    EXPECT_EQ(Convert::sus_MultiToWide('\x80', 1252), 0x20AC);
    EXPECT_EQ(Convert::sus_MultiToWide('\xE9', 1251), 0x0439);
    EXPECT_EQ(Convert::sc_WideToMulti(0x20AC, 1252), '\x80');
    EXPECT_EQ(Convert::sc_WideToMulti(0x0439, 1251), '\xE9');
    EXPECT_EQ(Convert::sus_MultiToWide('a', UTF8), 'a');
    EXPECT_FALSE(CT_ErrorManager::spco_Get()->b_IsSetError());
}

TEST(StringConvert, SingleUnitWithoutAByteOfItsOwnBecomesAQuestionMark)
{
    EXPECT_EQ(Convert::sc_WideToMulti(0x4E00, 1252), '?');
    EXPECT_EQ(Convert::sc_WideToMulti(0x3042, 932), '?') << "a double byte";
    EXPECT_EQ(Convert::sc_WideToMulti(0x00E9, UTF8), '?');
    EXPECT_EQ(Convert::sc_WideToMulti(0xD800, UTF8), '?');
    EXPECT_EQ(Convert::sc_WideToMulti('a', 932), 'a');
    for (const unsigned codePage : {0u, 1252u, 932u, UTF8})
        EXPECT_EQ(Convert::sc_WideToMulti(0, codePage), '\0');
    EXPECT_FALSE(CT_ErrorManager::spco_Get()->b_IsSetError());
}

TEST(StringConvert, UTF7FormResetsItsCoderAndTerminates)
{
    Wide wide;
    EXPECT_EQ(Convert::si_UTF7ToWide(wide.au, "+AOk"), 1);
    EXPECT_EQ(Convert::si_UTF7ToWide(wide.au, "AOk"), 3) << "no run is open any more";
    EXPECT_EQ(wide.First(4), std::u16string(u"AOk\0", 4));
    EXPECT_EQ(Convert::si_UTF7ToWide(wide.au, "abcdef", 2), 2);
    EXPECT_EQ(wide.First(3), std::u16string(u"ab\0", 3));
    EXPECT_EQ(Convert::si_UTF7ToWide(wide.au, "abc", 0), 0);
    EXPECT_EQ(wide.au[0], 0);
    Narrow narrow;
    EXPECT_EQ(Convert::si_WideToUTF7(narrow.ac, U(u"\u00E9")), 5);
    EXPECT_EQ(narrow.First(6), std::string("+AOk-\0", 6));
    EXPECT_EQ(Convert::si_WideToUTF7(narrow.ac, U(u"abc"), 2), 2);
    EXPECT_EQ(narrow.First(3), std::string("ab\0", 3));
    EXPECT_EQ(Convert::si_WideToUTF7(narrow.ac, U(u"abc"), 0), 0);
}

// The decoder isn't reset between texts, and no terminator is added.
TEST(StringConvert, UTF8FormGoesOnWithAnOpenSequence)
{
    CT_UTF::sv_UTF8ToWideInit();
    Wide wide;
    EXPECT_EQ(Convert::si_UTF8ToWide(wide.au, "a\xE2\x82"), 1);
    EXPECT_EQ(wide.First(2), u"a\u5A5A");
    EXPECT_EQ(Convert::si_UTF8ToWide(wide.au, "\xAC"
                                              "b"),
              2);
    EXPECT_EQ(wide.First(3), u"\u20ACb\u5A5A");
    Convert::si_UTF8ToWide(wide.au, "\xE2\x82");
    CT_UTF::sv_UTF8ToWideInit();
    EXPECT_EQ(Convert::si_UTF8ToWide(wide.au, "a"), 1);
    EXPECT_EQ(wide.First(1), u"a");
    EXPECT_EQ(Convert::si_UTF8ToWide(wide.au, "abc", 2), 2);
    Narrow narrow;
    EXPECT_EQ(Convert::si_WideToUTF8(narrow.ac, U(u"\u20ACb")), 4);
    EXPECT_EQ(narrow.First(5), std::string("\xE2\x82\xAC"
                                           "b\0",
                                           5));
    EXPECT_EQ(Convert::si_WideToUTF8(narrow.ac, U(u"abc"), 2), 2);
}

// ---- To a string --------------------------------------------------------------------------

TEST(StringConvert, WholeBytesGoIntoAStringWithoutTheirTerminator)
{
    CT_UString s;
    EXPECT_EQ(Convert::si_MultiToWide(&s, "a\x80", ALL, 1252), 2);
    EXPECT_EQ(Text(s), u"a\u20AC");
    EXPECT_EQ(s.u_GetAt(2), 0);
    EXPECT_EQ(Convert::si_MultiToWide(&s, "abc", 2, 1252), 2);
    EXPECT_EQ(Text(s), u"ab");
    EXPECT_EQ(Convert::si_MultiToWide(&s, "", ALL, 1252), 0);
    EXPECT_EQ(Text(s), u"");
    EXPECT_EQ(Convert::si_MultiToWideANSI(&s, "xyz"), 3);
    EXPECT_EQ(Text(s), u"xyz");
}

TEST(StringConvert, StringTargetTakesABlockOfItsOwn)
{
    CT_UString s(U(u"old"));
    const CT_UString sharer(&s);
    Convert::si_MultiToWide(&s, "new", ALL, 1252);
    EXPECT_EQ(Text(sharer), u"old");
    EXPECT_EQ(Text(s), u"new");
    CT_CString narrow("old");
    const CT_CString narrowSharer(&narrow);
    Convert::si_WideToMulti(&narrow, U(u"new"), 3, 1252, nullptr, nullptr);
    EXPECT_EQ(Text(narrowSharer), "old");
    EXPECT_EQ(Text(narrow), "new");
}

TEST(StringConvert, StringTargetGetsRoomForTheCount)
{
    CT_UString s;
    Convert::si_MultiToWide(&s, "0123456789", 10, 1252);
    EXPECT_EQ(BufferOf(s).n_GetMaximumSize(), 52u);
    Convert::si_MultiToWide(&s, "012", 3, 1252);
    EXPECT_EQ(BufferOf(s).n_GetMaximumSize(), 52u) << "a block that is large enough stays";
    for (unsigned codePage : {1252u, UTF7, UTF8}) {
        CT_CString narrow;
        Convert::si_WideToMulti(&narrow, U(u"0123456789"), 10, codePage, nullptr, nullptr);
        EXPECT_EQ(BufferOf(narrow).n_GetMaximumSize(), 52u) << codePage;
        EXPECT_EQ(Text(narrow), "0123456789");
    }
}

// The terminator stands behind the count of bytes; the unit at the string's end is what the block
// held.
TEST(StringConvert, TerminatorOfDoubleBytesStandsBehindTheirCount)
{
    CT_UString s(U(u"xxxxxxxx"));
    EXPECT_EQ(Convert::si_MultiToWide(&s, "\x82\xA0\x82\xA2", 4, 932), 2);
    EXPECT_EQ(s.vn_GetLength(), 2u);
    EXPECT_EQ(Text(s), u"\u3042\u3044");
    EXPECT_EQ(s.u_GetAt(2), 'x');
    EXPECT_EQ(s.u_GetAt(4), 0);
    EXPECT_EQ(BufferOf(s).n_GetUsedSize(), 6u);
}

// The terminator is converted too and counts: the string is one longer than its text.
TEST(StringConvert, WholeWideTextMakesTheStringOneLonger)
{
    CT_CString s(1251u);
    EXPECT_EQ(Convert::si_WideToMulti(&s, U(u"a\u20AC"), ALL, 1252, nullptr, nullptr), 3);
    EXPECT_EQ(Text(s), std::string("a\x80\0", 3));
    EXPECT_EQ(s.c_GetAt(3), 0);
    EXPECT_EQ(s.n_GetCodePage(), 1251u) << "neither asked nor changed";
    EXPECT_EQ(Convert::si_WideToMultiANSI(&s, U(u"ab")), 3);
    EXPECT_EQ(s.vn_GetLength(), 3u);
    EXPECT_EQ(Convert::si_WideToMultiANSI(&s, U(u"ab"), 2), 2);
    EXPECT_EQ(Text(s), "ab");
}

TEST(StringConvert, CodedStringsHaveTheRoomThatTheyNeed)
{
    CT_UTF::sv_UTF8ToWideInit();
    const std::u16string text(400, u'\u4E00');
    for (unsigned codePage : {UTF7, UTF8}) {
        CT_CString s;
        const int length =
            Convert::si_WideToMulti(&s, U(text.c_str()), 400, codePage, nullptr, nullptr);
        EXPECT_EQ(static_cast<unsigned>(length), s.vn_GetLength());
        CT_UString back;
        EXPECT_EQ(Convert::si_MultiToWide(&back, &s, codePage), 400);
        EXPECT_EQ(Text(back), text);
    }
}

TEST(StringConvert, StringFormsOfTheCodersTakeAndGiveStrings)
{
    CT_UTF::sv_UTF8ToWideInit();
    CT_CString narrow(1252u);
    EXPECT_EQ(Convert::si_WideToUTF7(&narrow, U(u"\u00E9")), 5);
    EXPECT_EQ(Text(narrow), "+AOk-");
    EXPECT_EQ(narrow.n_GetCodePage(), 1252u);
    EXPECT_EQ(Convert::si_WideToUTF7(&narrow, U(u"ab\u00E9"), 2), 2);
    EXPECT_EQ(Text(narrow), "ab");
    EXPECT_EQ(Convert::si_WideToUTF8(&narrow, U(u"\u20AC")), 3);
    EXPECT_EQ(Text(narrow), "\xE2\x82\xAC");
    CT_UString wide;
    EXPECT_EQ(Convert::si_UTF7ToWide(&wide, "+AOk-"), 1);
    EXPECT_EQ(Text(wide), u"\u00E9");
    EXPECT_EQ(wide.u_GetAt(1), 0);
    EXPECT_EQ(Convert::si_UTF8ToWide(&wide, "\xE2\x82\xAC"), 1);
    EXPECT_EQ(Text(wide), u"\u20AC");
    EXPECT_EQ(Convert::si_UTF7ToWide(&wide, "abc", 0), 0);
    EXPECT_EQ(Text(wide), u"");
    EXPECT_EQ(Convert::si_WideToUTF8(&narrow, U(u"abc"), 0), 0);
    EXPECT_EQ(Text(narrow), "");
}

TEST(StringConvert, StringFormsOfTheCodersReserveByTheirOwnRule)
{
    CT_UTF::sv_UTF8ToWideInit();
    CT_CString narrow;
    Convert::si_WideToUTF7(&narrow, U(u"012345"), 6);
    EXPECT_EQ(BufferOf(narrow).n_GetMaximumSize(), 52u) << "3 * 6 + 3";
    narrow.vv_SetSize(0, 0);
    Convert::si_WideToUTF8(&narrow, U(u"012345"), 6);
    EXPECT_EQ(BufferOf(narrow).n_GetMaximumSize(), 20u) << "3 * 6 + 1";
    CT_UString wide;
    Convert::si_UTF7ToWide(&wide, "012345678", 9);
    EXPECT_EQ(BufferOf(wide).n_GetMaximumSize(), 20u);
    wide.vv_SetSize(0, 0);
    Convert::si_UTF8ToWide(&wide, "0123456789", 10);
    EXPECT_EQ(BufferOf(wide).n_GetMaximumSize(), 52u);
}

TEST(StringConvert, EmptyTextIntoACodedStringIsReportedAndLeavesItEmpty)
{
    for (bool seven : {true, false}) {
        CT_CString s("old");
        SetLastError(0);
        EXPECT_EQ(seven ? Convert::si_WideToUTF7(&s, U(u"")) : Convert::si_WideToUTF8(&s, U(u"")),
                  0);
        EXPECT_FALSE(CT_ErrorManager::spco_Get()->b_IsSetError())
            << "a length of 0 is a count of 0";
        EXPECT_EQ(Text(s), "");
        EXPECT_EQ(seven ? Convert::si_WideToUTF7(&s, U(u"\0x"), 2)
                        : Convert::si_WideToUTF8(&s, U(u"\0x"), 2),
                  0);
        ExpectError(0, {"System/String/StringConvert"});
        EXPECT_EQ(Text(s), "");
    }
}

// The unit at the end is what the block held before, where it held anything.
TEST(StringConvert, UTF8IntoAStringWritesNoTerminator)
{
    CT_UTF::sv_UTF8ToWideInit();
    CT_UString s(U(u"xxxxxxxx"));
    EXPECT_EQ(Convert::si_UTF8ToWide(&s, "\xC3\xA9z"), 2);
    EXPECT_EQ(s.vn_GetLength(), 2u);
    EXPECT_EQ(Read(s), u"\u00E9zxxxxxx");
    s.vv_Update();
    EXPECT_EQ(s.vn_GetLength(), 8u);

    CT_UString shared(U(u"xxxxxxxx"));
    const CT_UString sharer(&shared);
    Convert::si_UTF8ToWide(&shared, "z");
    EXPECT_EQ(Read(shared), u"zxxxxxxx");
    EXPECT_EQ(Text(sharer), u"xxxxxxxx");

    // Half a unit that was held is none: a whole terminator is written over it.
    CT_UString half(U(u"xxxxxxxx"));
    const_cast<CT_Buffer&>(BufferOf(half)).v_SetUsedSize(5);
    const CT_UString holder(&half);
    EXPECT_EQ(Convert::si_UTF8ToWide(&half, "ab"), 2);
    EXPECT_EQ(Read(half), u"ab");

    CT_UString fresh;
    Convert::si_UTF8ToWide(&fresh, "abc");
    EXPECT_EQ(Read(fresh), u"abc") << "a new block holds nothing";

    CT_UString seven(U(u"xxxxxxxx"));
    Convert::si_UTF7ToWide(&seven, "z");
    EXPECT_EQ(Read(seven), u"z") << "the other coder's form terminates";
}

// ---- From a string ------------------------------------------------------------------------

TEST(StringConvert, FromAStringTheTerminatorComesAlong)
{
    const CT_CString narrow("a\x80", ALL, 932);
    Wide wide;
    EXPECT_EQ(Convert::si_MultiToWide(wide.au, &narrow, 1252), 3);
    EXPECT_EQ(wide.First(3), std::u16string(u"a\u20AC\0", 3));
    const CT_CString ascii("ab");
    EXPECT_EQ(Convert::si_MultiToWideANSI(wide.au, &ascii), 3);
    EXPECT_EQ(wide.First(3), std::u16string(u"ab\0", 3));
    const CT_UString source(U(u"a\u20AC"));
    Narrow out;
    EXPECT_EQ(Convert::si_WideToMulti(out.ac, &source, 1252, nullptr, nullptr), 3);
    EXPECT_EQ(out.First(3), std::string("a\x80\0", 3));
    const CT_UString asciiWide(U(u"ab"));
    EXPECT_EQ(Convert::si_WideToMultiANSI(out.ac, &asciiWide), 3);
}

TEST(StringConvert, FromAStringTheCodersTakeItsLength)
{
    CT_UTF::sv_UTF8ToWideInit();
    const CT_UString source(U(u"\u00E9"));
    Narrow out;
    EXPECT_EQ(Convert::si_WideToUTF7(out.ac, &source), 5);
    EXPECT_EQ(out.First(6), std::string("+AOk-\0", 6));
    EXPECT_EQ(Convert::si_WideToUTF8(out.ac, &source), 2);
    EXPECT_EQ(out.First(3), std::string("\xC3\xA9\0", 3));
    Wide wide;
    const CT_CString seven("+AOk-");
    const CT_CString eight("\xC3\xA9");
    EXPECT_EQ(Convert::si_UTF7ToWide(wide.au, &seven), 1);
    EXPECT_EQ(wide.First(2), std::u16string(u"\u00E9\0", 2));
    EXPECT_EQ(Convert::si_UTF8ToWide(wide.au, &eight), 1);
    EXPECT_EQ(wide.au[0], 0xE9);
}

TEST(StringConvert, FromStringToStringGoesByTheLength)
{
    CT_UTF::sv_UTF8ToWideInit();
    const CT_CString narrow("a\x80", ALL, 932);
    CT_UString wide;
    EXPECT_EQ(Convert::si_MultiToWide(&wide, &narrow, 1252), 2);
    EXPECT_EQ(Text(wide), u"a\u20AC");
    const CT_CString ascii("xyz");
    EXPECT_EQ(Convert::si_MultiToWideANSI(&wide, &ascii), 3);
    EXPECT_EQ(Text(wide), u"xyz");
    CT_CString back;
    EXPECT_EQ(Convert::si_WideToMulti(&back, &wide, 1252, nullptr, nullptr), 3);
    EXPECT_EQ(Text(back), "xyz");
    EXPECT_EQ(Convert::si_WideToMultiANSI(&back, &wide), 3);
    EXPECT_EQ(Text(back), "xyz");
    const CT_UString source(U(u"\u00E9\u20AC"));
    EXPECT_EQ(Convert::si_WideToUTF7(&back, &source), 8);
    EXPECT_EQ(Text(back), "+AOkgrA-");
    EXPECT_EQ(Convert::si_UTF7ToWide(&wide, &back), 2);
    EXPECT_EQ(Text(wide), u"\u00E9\u20AC");
    EXPECT_EQ(Convert::si_WideToUTF8(&back, &source), 5);
    EXPECT_EQ(Text(back), "\xC3\xA9\xE2\x82\xAC");
    EXPECT_EQ(Convert::si_UTF8ToWide(&wide, &back), 2);
    EXPECT_EQ(Text(wide), u"\u00E9\u20AC");
}
