// tests/Ostra/String/UStringTest.cpp: what the string of units does in its own way.
#define OSTRA_RAW_COPIES
#include "Ostra/String/StringSupport.h"

#include <System/String/UTF.h>

#include <new>

#include "Support/Failure.h"

namespace
{
constexpr unsigned short EURO = 0x20AC;

// The byte of the system's own code page that stands for a unit that every such page has.
char AnsiByte(unsigned short u)
{
    return CT_CString(&u, 1, 0).c_GetAt(0);
}
} // namespace

// ---- Construction -------------------------------------------------------------------------

TEST(UString, TakesALengthWhereItsTwinTakesACodePage)
{
    const CT_UString s(5u);
    EXPECT_EQ(s.vn_GetLength(), 0u);
    EXPECT_EQ(BufferOf(s).n_GetMaximumSize(), 20u);
    EXPECT_EQ(s.vn_GetMaximumLength(), 9u);
    EXPECT_EQ(BufferOf(s).n_GetUsedSize(), 2u);
}

// The length gets no room for a terminator added, but for a length of 0.
TEST(UString, LengthHasNoRoomAddedForTheTerminator)
{
    EXPECT_EQ(CT_UString(10u).vn_GetMaximumLength(), 9u);
    EXPECT_EQ(CT_UString(11u).vn_GetMaximumLength(), 25u);
    const CT_UString nothing(0u);
    EXPECT_EQ(BufferOf(nothing).n_GetMaximumSize(), 20u);
    EXPECT_EQ(BufferOf(nothing).n_GetUsedSize(), 2u);
    CT_UString s(U(u"abc"));
    s.v_Set(0u, 0);
    EXPECT_EQ(Text(s), u"");
    EXPECT_EQ(BufferOf(s).n_GetUsedSize(), 2u);
}

TEST(UString, ConstructorsConvertOrShare)
{
    const CT_UString wide(U(u"abcdef"), 3);
    EXPECT_EQ(Text(wide), u"abc");
    EXPECT_EQ(Text(CT_UString("\x80z", ALL, 1252)), u"\u20ACz");
    EXPECT_EQ(Text(CT_UString("\x80z", 1, 1252)), u"\u20AC");
    const CT_CString narrow("\x80", ALL, 1252);
    EXPECT_EQ(Text(CT_UString(&narrow)), u"\u20AC") << "by the source's code page";
    const CT_String* source = &narrow;
    EXPECT_EQ(Text(CT_UString(source)), u"\u20AC");
    source = &wide;
    EXPECT_EQ(DataOf(CT_UString(source)), DataOf(wide));
    EXPECT_EQ(DataOf(CT_UString(&wide)), DataOf(wide));
    EXPECT_EQ(DataOf(CT_UString(wide.pcco_GetBuffer())), DataOf(wide));
    EXPECT_EQ(UsesOf(wide), 1u);
}

TEST(UString, FromBytesGoesByTheirLength)
{
    CT_CString narrow("abc");
    narrow.vv_Replace('x', 1, 0);
    ASSERT_EQ(narrow.vn_GetLength(), 3u);
    EXPECT_EQ(Text(CT_UString(&narrow)), std::u16string(u"x\0c", 3));
}

TEST(UString, CopyByReferenceIsNoHoldOnTheBlock)
{
    const CT_UString s(U(u"abc"));
    alignas(CT_UString) unsigned char place[sizeof(CT_UString)];
    const auto copy = new (place) CT_UString(s);
    EXPECT_EQ(UsesOf(s), 1u);
    EXPECT_EQ(copy->qcuz_Get(), s.qcuz_Get());
    auto assigned = new (place) CT_UString();
    *assigned = s;
    EXPECT_EQ(UsesOf(s), 1u);
    EXPECT_EQ(assigned->qcuz_Get(), s.qcuz_Get());
}

TEST(UString, SetOfBytesTakesTheGivenCodePageOrTheSystems)
{
    CT_UString s;
    s.v_Set("\xE9", ALL, 1251);
    EXPECT_EQ(Text(s), u"\u0439");
    s.v_Set("\xC3\xA9", ALL, UTF8);
    EXPECT_EQ(Text(s), u"\u00E9");
    s.v_Set("+AOk-", ALL, UTF7);
    EXPECT_EQ(Text(s), u"\u00E9");
    const char bytes[] = {AnsiByte('~'), 0};
    s.v_Set(bytes, ALL, OWN);
    EXPECT_EQ(Text(s), u"~");
    s.v_Set(bytes, ALL, 12345);
    EXPECT_EQ(Text(s), u"~");
}

// ---- Storage ------------------------------------------------------------------------------

TEST(UString, LengthsAreUnits)
{
    CT_UString s(U(u"abc"));
    EXPECT_EQ(BufferOf(s).n_GetUsedSize(), 8u);
    EXPECT_EQ(s.vn_GetLength(), 3u);
    EXPECT_EQ(s.vn_GetMaximumLength(), 9u);
    EXPECT_EQ(s.vn_GetGrowth(), 16u);
    s.vv_SetGrowth(16);
    EXPECT_EQ(s.vn_GetGrowth(), 16u);
    EXPECT_EQ(BufferOf(s).n_GetGrowth(), 32u);
    s.vv_SetGrowth(50);
    EXPECT_EQ(BufferOf(s).n_GetGrowth(), 100u);
    EXPECT_EQ(s.vn_GetGrowth(), 50u);
}

TEST(UString, OddSizesReadAsWholeUnits)
{
    const char bytes[] = {'a', 0, 0};
    const CT_Buffer odd(bytes, 3, 1);
    const CT_UString s(&odd);
    EXPECT_EQ(s.vn_GetLength(), 0u);
    EXPECT_EQ(s.vn_GetMaximumLength(), 0u);
    const CT_Buffer one("a", 1, 1);
    EXPECT_EQ(CT_UString(&one).vn_GetLength(), 0u);
    EXPECT_EQ(CT_UString(&one).vn_GetMaximumLength(), 0u);
}

TEST(UString, SurrogatePairCountsAsTwo)
{
    const CT_UString s(U(u"a\U0001F600b"));
    EXPECT_EQ(s.vn_GetLength(), 4u);
    EXPECT_EQ(s.vn_Find(static_cast<unsigned short>(0xDE00)), 2u);
    EXPECT_TRUE(s.b_Match(U(u"a??b")));
    EXPECT_EQ(Text(CT_CString(&s, UTF8)), "a\xED\xA0\xBD\xED\xB8\x80"
                                          "b");
}

TEST(UString, LengthThatNoHeapHasIsReported)
{
    CT_UString s(U(u"abc"));
    s.vv_SetLength(0x7FFFFFFF);
    ExpectError(60006, {"Ostra/String/UString"});
    s.vv_SetSize(0x80000000, 1);
    ExpectError(60006, {"Ostra/String/UString"});
    EXPECT_EQ(Text(s), u"abc");
}

// ---- Single characters --------------------------------------------------------------------

TEST(UString, ReadsAndStoresUnits)
{
    CT_UString s(U(u"abc"));
    s.v_SetAt(EURO, 1);
    EXPECT_EQ(s.u_GetAt(1), EURO);
    EXPECT_EQ(s.vu_GetAt(1), EURO);
    EXPECT_EQ(s.vc_GetAt(1), CT_CString(&s, 0).c_GetAt(1));
    s.vv_SetAt('x', 0);
    EXPECT_EQ(s.u_GetAt(0), 'x');
    s.v_SetAt(0, 2);
    EXPECT_EQ(BufferOf(s).n_GetUsedSize(), 6u);
}

TEST(UString, FillByAUnitAlwaysWritesTheZero)
{
    CT_UString s(U(u"abcdef"));
    s.vv_Replace(EURO, 2, 1);
    EXPECT_EQ(Read(s), u"a\u20AC\u20AC");
    EXPECT_EQ(s.vn_GetLength(), 6u);
    EXPECT_EQ(Text(s), std::u16string(u"a\u20AC\u20AC\0ef", 6));
    for (unsigned all : {ALL, ALL - 1}) {
        s.vv_Replace(static_cast<unsigned short>('x'), all, 0);
        EXPECT_EQ(Text(s), u"xxxxxx");
    }
    s.vv_Replace(static_cast<unsigned short>('y'), 20, 6);
    EXPECT_EQ(Text(s), u"xxxxxx" + std::u16string(20, u'y'));
}

TEST(UString, FillByACharacterWritesTheZeroAtTheEndOnly)
{
    CT_UString s(U(u"abcdef"));
    CT_UString sharer(&s);
    s.vv_Replace('x', 2, 1);
    EXPECT_EQ(Text(s), u"axxdef");
    EXPECT_EQ(Text(sharer), u"abcdef");
    s.vv_Replace('y', 2, 4);
    EXPECT_EQ(Text(s), u"axxdyy");
    s.vv_Replace('z', 3, 5);
    EXPECT_EQ(Text(s), u"axxdyzzz");
    EXPECT_EQ(s.u_GetAt(8), 0);
    s.vv_Replace('-', ALL, 0);
    EXPECT_EQ(Text(s), u"--------");
}

TEST(UString, FillOfNothingByACharacterChangesNothing)
{
    CT_UString s(U(u"abcdef"));
    s.vv_Replace('x', 0, 2);
    s.vv_Replace('x', 0, 0);
    EXPECT_EQ(Text(s), u"abcdef");
}

TEST(UString, FillOfABlocklessStringMakesABlock)
{
    CT_UString s;
    s.vv_Replace('x', ALL, 0);
    EXPECT_EQ(BufferOf(s).n_GetUsedSize(), 2u);
    CT_UString other;
    other.vv_Replace(EURO, 3, 0);
    EXPECT_EQ(Text(other), u"\u20AC\u20AC\u20AC");
}

TEST(UString, FindOfAByteWidensIt)
{
    const CT_UString s(U(u"a~b"));
    EXPECT_EQ(s.vn_Find(AnsiByte('~')), 1u);
    EXPECT_EQ(s.vn_Find(AnsiByte('~'), 2), NONE);
}

// ---- Insert -------------------------------------------------------------------------------

TEST(UString, InsertConvertsBytesByTheSystemsCodePage)
{
    CT_UString s(U(u"ab"));
    s.v_Insert("xy", ALL, 1);
    EXPECT_EQ(Text(s), u"axyb");
    // A string of bytes brings its own code page along.
    const CT_CString narrow("\xE9", ALL, 1251);
    s.v_Insert(&narrow, ALL, 1);
    EXPECT_EQ(Text(s), u"a\u0439xyb");
    s.v_Replace(&narrow, 0, ALL, 1);
    EXPECT_EQ(Text(s), u"a\u0439");
    s.v_Set(&narrow);
    EXPECT_EQ(Text(s), u"\u0439");
}

TEST(UString, MoreUnitsThanABlockHoldsAreReported)
{
    const CT_UString s(U(u"ab"), 0x80000000U);
    EXPECT_EQ(s.vn_GetLength(), 0u);
    EXPECT_EQ(TakeFailure().code, 60006u);
}

TEST(UString, ComparesBytesOfTheSystemsCodePage)
{
    const CT_UString s(&EURO, 1);
    const char text[] = {AnsiByte(EURO), 0};
    EXPECT_EQ(s.vi_Compare(text), 0);
    EXPECT_EQ(s.vi_Compare(text, 1), 0);
}

TEST(UString, InsertTakesTheUnitsThatCameBack)
{
    CT_UString s(U(u"ab"));
    const CT_CString narrow("\x82\xA0\x82\xA2", ALL, 932);
    s.v_Insert(&narrow, ALL, 1);
    EXPECT_EQ(Text(s), u"a\u3042\u3044b");
}

TEST(UString, InsertIntoAnEmptyStringMakesANewBlock)
{
    const CT_Buffer room(200, 32);
    CT_UString s(&room);
    s.v_Insert(U(u"abc"));
    EXPECT_EQ(Text(s), u"abc");
    EXPECT_EQ(BufferOf(s).n_GetMaximumSize(), 20u);
    CT_CString twin(&room);
    twin.v_Insert("abc");
    EXPECT_GE(BufferOf(twin).n_GetMaximumSize(), 200u)
        << "the twin keeps a block that is large enough";
    EXPECT_EQ(Text(twin), "abc");
    EXPECT_EQ(room.n_GetUsedSize(), 0u);
}

TEST(UString, ReplaceByBytesConverts)
{
    CT_UString s(U(u"abcdef"));
    s.v_Replace("xyz", 2, 1);
    EXPECT_EQ(Text(s), u"axy");
    s.v_Set("\x82\xA0\x82\xA2z", ALL, 932);
    EXPECT_EQ(Text(s), u"\u3042\u3044z");
    EXPECT_EQ(s.u_GetAt(3), 0) << "the terminator stands behind what came back";
}

// ---- Append -------------------------------------------------------------------------------

TEST(UString, AppendOfOneUnitAsksForTwiceTheSize)
{
    CT_UString s;
    for (unsigned n = 0; n < 9; ++n)
        s.v_Append(static_cast<unsigned short>('a' + n));
    EXPECT_EQ(BufferOf(s).n_GetMaximumSize(), 20u);
    s.v_Append(static_cast<unsigned short>('j'));
    EXPECT_EQ(Text(s), u"abcdefghij");
    EXPECT_EQ(BufferOf(s).n_GetUsedSize(), 22u);
    EXPECT_GE(BufferOf(s).n_GetMaximumSize(), 44u);
    EXPECT_EQ(BufferOf(s).n_GetMaximumSize(), 52u);
}

TEST(UString, AppendUnitByUnitAllocatesFewBlocks)
{
    CT_UString s;
    const unsigned before = CT_Buffer::sn_GetAllocCount();
    for (unsigned n = 0; n < 100000; ++n)
        s.v_Append(static_cast<unsigned short>('a' + n % 26));
    EXPECT_LT(CT_Buffer::sn_GetAllocCount() - before, 20u);
    EXPECT_EQ(s.vn_GetLength(), 100000u);
    EXPECT_EQ(s.u_GetAt(99999), 'a' + 99999 % 26);
}

TEST(UString, AppendOfZeroLeavesTheStringUnchanged)
{
    CT_UString s;
    s.v_Append(static_cast<unsigned short>(0));
    s.v_Append('\0', 0);
    s.v_Append("", ALL, 0);
    s.v_Append("abc", 0, 0);
    s.v_Append(U(u""));
    const CT_CString empty;
    s.v_Append(&empty);
    EXPECT_EQ(DataOf(s), nullptr);
}

TEST(UString, AppendOfTextGrowsToWhatIsNeeded)
{
    CT_UString s(U(u"abc"));
    s.v_Append(U(u"defghijklm"), 7);
    EXPECT_EQ(Text(s), u"abcdefghij");
    EXPECT_EQ(BufferOf(s).n_GetMaximumSize(), 52u);
    s.v_Append(U(u"xyz"));
    EXPECT_EQ(Text(s), u"abcdefghijxyz");
}

TEST(UString, AppendOfOneByteConvertsIt)
{
    CT_UString s;
    s.v_Append('\x80', 1252);
    s.v_Append('\xE9', 1251);
    EXPECT_EQ(Text(s), u"\u20AC\u0439");
}

TEST(UString, AppendOfACharacterAloneMeansTheSystemsCodePage)
{
    CT_UString s;
    s.v_Append('\xE9');
    s.v_Append('a');
    s.v_Append('\0');
    EXPECT_EQ(Text(s), u"\u00E9a");
    // Numbers and characters of other types are units.
    s.v_Append(0x439);
    s.v_Append(u'\u20AC');
    s.v_Append(L'x');
    s.v_Append(static_cast<unsigned short>(0xFFE9));
    EXPECT_EQ(Text(s), u"\u00E9a\u0439\u20ACx\uFFE9");
}

TEST(UString, AppendOfBytesToUTF8GoesOnWithAnOpenSequence)
{
    CT_UTF::sv_UTF8ToWideInit();
    CT_UString s;
    s.v_Append('\xC3', UTF8);
    EXPECT_EQ(Text(s), u"");
    s.v_Append('\xA9', UTF8);
    EXPECT_EQ(Text(s), u"\u00E9");
}

// The count of bytes is appended, not that of the units that came of them.
TEST(UString, AppendOfDoubleBytesTakesATailAlong)
{
    CT_UString s(U(u"x"));
    s.v_Append("\x82\xA0\x82\xA2", ALL, 932);
    EXPECT_EQ(s.vn_GetLength(), 5u);
    EXPECT_EQ(Text(s).substr(0, 3), u"x\u3042\u3044");
    s.v_Append("abc", 2, 1252);
    EXPECT_EQ(s.vn_GetLength(), 7u);
}

TEST(UString, AppendOfAStringOfBytesUsesTheSystemsCodePage)
{
    CT_UString s;
    const CT_CString cyrillic("\xE9", ALL, 1251);
    s.v_Append(&cyrillic);
    EXPECT_EQ(Text(s), Text(CT_UString("\xE9", ALL, 0)));
    const CT_UString wide(U(u"xyz"));
    s.v_Set("", ALL, 0);
    s.v_Append(&wide, 2);
    s.v_Append(&wide, 100);
    EXPECT_EQ(Text(s), u"xyxyz");
}

TEST(UString, AppendOfItselfIsSafe)
{
    CT_UString s(U(u"abcdefghij"));
    s.v_Append(&s);
    s.v_Append(s.qcuz_Get() + 18, 2);
    EXPECT_EQ(Text(s), u"abcdefghijabcdefghijij");
}

TEST(UString, AppendLeavesASharerAlone)
{
    CT_UString s(U(u"abc"));
    const CT_UString sharer(&s);
    s.v_Append(EURO);
    EXPECT_EQ(Text(sharer), u"abc");
    EXPECT_EQ(UsesOf(sharer), 1u);
}

TEST(UString, AppendWorksWithAnOddGrowth)
{
    const CT_Buffer tiny(0, 13);
    CT_UString s(&tiny);
    for (unsigned n = 0; n < 30; ++n)
        s.v_Append(static_cast<unsigned short>('a' + n % 26));
    EXPECT_EQ(Text(s), u"abcdefghijklmnopqrstuvwxyzabcd");
}

// ---- Comparison and strip -----------------------------------------------------------------

TEST(UString, ComparesUnsignedUnits)
{
    const CT_UString s(U(u"a\xD800"));
    EXPECT_EQ(s.vi_Compare(U(u"a\u7FFF")), 1);
    EXPECT_EQ(s.vi_Compare(U(u"a\uFFFF")), -1);
    EXPECT_EQ(s.vi_Compare(U(u"a\u7FFF"), 2), 0xD800 - 0x7FFF);
    EXPECT_EQ(s.vi_Compare(U(u"a\uFFFF"), 2), 0xD800 - 0xFFFF);
    EXPECT_EQ(s.vi_Compare(U(u"a\uFFFF"), 1), 0);
}

TEST(UString, ComparesBytesBySystemsCodePage)
{
    const CT_UString s(U(u"a~"));
    const char bytes[] = {'a', AnsiByte('~'), 0};
    EXPECT_EQ(s.vi_Compare(bytes), 0);
    const CT_UString cyrillic(U(u"\u0439"));
    const CT_CString own("\xE9", ALL, 1251);
    EXPECT_EQ(cyrillic.vi_Compare(&own), 0) << "a string of bytes has its own code page";
    EXPECT_TRUE(cyrillic.vb_Match(&own));
    EXPECT_EQ(cyrillic.vn_Find(&own), 0u);
}

TEST(UString, SpaceFromTwoHundredAndFiftySixUpIsNone)
{
    for (unsigned u : {0x85u, 0xA0u, 0x0109u, 0x0120u, 0x2000u, 0x2028u, 0x3000u, 0xFF20u}) {
        const auto unit = static_cast<unsigned short>(u);
        CT_UString s(&unit, 1);
        s.vv_Strip(nullptr);
        EXPECT_EQ(s.vn_GetLength(), 1u) << u;
    }
}

TEST(UString, TranslateLeavesOddSizesAlone)
{
    const char bytes[] = {'a', 0, 'b'};
    const CT_Buffer odd(bytes, 3, 32);
    CT_UString s(&odd);
    const CT_UString from(U(u"a"));
    const CT_UString to(U(u"b"));
    s.vv_Translate(&from, &to);
    EXPECT_EQ(BufferOf(s).n_GetUsedSize(), 3u);
    EXPECT_EQ(s.u_GetAt(0), 'a');
}
