// tests/Ostra/String/CStringTest.cpp: what the string of bytes does in its own way.
#define OSTRA_RAW_COPIES
#include "Ostra/String/StringSupport.h"

#include <new>

// ---- Construction and code page -----------------------------------------------------------

TEST(CString, TakesACodePageWhereItsTwinTakesALength)
{
    EXPECT_EQ(CT_CString().n_GetCodePage(), 0u);
    EXPECT_EQ(CT_CString(932u).n_GetCodePage(), 932u);
    EXPECT_EQ(DataOf(CT_CString(932u)), nullptr);
}

TEST(CString, ConstructorsSetTheCodePageAndGrowth)
{
    const CT_UString wide(U(u"abc"));
    const CT_CString narrow("abc", ALL, 1250);
    EXPECT_EQ(narrow.n_GetCodePage(), 1250u);
    EXPECT_EQ(CT_CString("abc").n_GetCodePage(), 0u);
    EXPECT_EQ(CT_CString("abcdef", 4).vn_GetLength(), 4u);
    EXPECT_EQ(CT_CString(U(u"abc"), ALL, 1251).n_GetCodePage(), 1251u);
    EXPECT_EQ(CT_CString(&wide, 1253).n_GetCodePage(), 1253u);
    EXPECT_EQ(CT_CString(narrow.pcco_GetBuffer(), 1254).n_GetCodePage(), 1254u);
    EXPECT_EQ(CT_CString(&narrow).n_GetCodePage(), 1250u);
    EXPECT_EQ(narrow.vn_GetGrowth(), 32u);
}

TEST(CString, FromTheInterfaceTakesTheSourcesCodePageOrConverts)
{
    const CT_CString narrow("abc", ALL, 1250);
    const CT_String* source = &narrow;
    const CT_CString shared(source, 1252);
    EXPECT_EQ(shared.n_GetCodePage(), 1250u);
    EXPECT_EQ(DataOf(shared), DataOf(narrow));
    const CT_UString wide(U(u"\u20AC"));
    source = &wide;
    const CT_CString converted(source, 1252);
    EXPECT_EQ(converted.n_GetCodePage(), 1252u);
    EXPECT_EQ(Text(converted), "\x80");
}

TEST(CString, PointerCopySharesTheData)
{
    const CT_CString s("abc", ALL, 932);
    const CT_CString copy(&s);
    EXPECT_EQ(DataOf(copy), DataOf(s));
    EXPECT_EQ(UsesOf(s), 2u);
    const std::unique_ptr<CT_String> created(s.vpco_Create());
    EXPECT_EQ(static_cast<CT_CString*>(created.get())->n_GetCodePage(), 932u);
    EXPECT_EQ(UsesOf(s), 3u);
}

// The copy holds nothing: it must not outlive its source, nor be destructed while that has the
// block.
TEST(CString, CopyByReferenceIsNoHoldOnTheBlock)
{
    const CT_CString s("abc", ALL, 932);
    alignas(CT_CString) unsigned char place[sizeof(CT_CString)];
    const auto copy = new (place) CT_CString(s);
    EXPECT_EQ(UsesOf(s), 1u);
    EXPECT_EQ(copy->qccz_Get(), s.qccz_Get());
    EXPECT_EQ(copy->n_GetCodePage(), 932u);
    auto assigned = new (place) CT_CString(1u);
    *assigned = s;
    EXPECT_EQ(UsesOf(s), 1u);
    EXPECT_EQ(assigned->qccz_Get(), s.qccz_Get());
    EXPECT_EQ(assigned->n_GetCodePage(), 932u);
}

TEST(CString, SetOfACodePageChangesNoByte)
{
    CT_CString s("\xE9", ALL, 1252);
    s.v_SetCodePage(1251);
    EXPECT_EQ(s.n_GetCodePage(), 1251u);
    EXPECT_EQ(Text(s), "\xE9");
    EXPECT_EQ(s.vu_GetAt(0), 0x0439);
}

TEST(CString, SetTakesTheGivenCodePageOrKeepsItsOwn)
{
    CT_CString s("a", ALL, 1250);
    s.v_Set("b", ALL, OWN);
    EXPECT_EQ(s.n_GetCodePage(), 1250u);
    s.v_Set("c", ALL, 1251);
    EXPECT_EQ(s.n_GetCodePage(), 1251u);
    s.v_Set(U(u"d"));
    EXPECT_EQ(s.n_GetCodePage(), 1251u);
    s.v_Set(nullptr, 0, 1253);
    EXPECT_EQ(s.n_GetCodePage(), 1253u);
    s.v_Format("%d", 1);
    EXPECT_EQ(s.n_GetCodePage(), 1253u);
}

TEST(CString, SetFromAWideStringTurnsTheMarksIntoCodePageZero)
{
    const CT_UString wide(U(u"abc"));
    for (unsigned mark : {ALL, OWN}) {
        CT_CString s(mark);
        s.v_Set(&wide);
        EXPECT_EQ(s.n_GetCodePage(), 0u);
        EXPECT_EQ(Text(s), "abc");
        EXPECT_EQ(CT_CString(static_cast<const CT_String*>(&wide), mark).n_GetCodePage(), 0u);
    }
    CT_CString s(ALL);
    s.v_Set(U(u"abc"));
    EXPECT_EQ(s.n_GetCodePage(), ALL) << "a raw text leaves it";
}

TEST(CString, BytesOfAnotherCodePageAreTakenAsTheyAre)
{
    const CT_CString cyrillic("\xE9\xF6", ALL, 1251);
    CT_CString s("a", ALL, 1252);
    s.v_Append(&cyrillic);
    EXPECT_EQ(Text(s), "a\xE9\xF6");
    s.v_Insert(&cyrillic, ALL, 1);
    s.v_Replace(&cyrillic, 1, ALL, 0);
    EXPECT_EQ(Text(s), "\xF6");
    EXPECT_EQ(s.n_GetCodePage(), 1252u);
    EXPECT_EQ(s.vi_Compare(&cyrillic, 1), 0);
}

// ---- Storage ------------------------------------------------------------------------------

TEST(CString, LengthsAreBytes)
{
    CT_CString s("abc");
    EXPECT_EQ(BufferOf(s).n_GetUsedSize(), 4u);
    EXPECT_EQ(BufferOf(s).n_GetMaximumSize(), 20u);
    EXPECT_EQ(s.vn_GetMaximumLength(), 19u);
    s.vv_SetGrowth(64);
    EXPECT_EQ(s.vn_GetGrowth(), 64u);
    EXPECT_EQ(BufferOf(s).n_GetGrowth(), 64u);
    EXPECT_EQ(s.pco_GetBuffer(), s.pcco_GetBuffer());
}

TEST(CString, SetOfALengthHasRoomForTheTerminatorToo)
{
    CT_CString s;
    s.v_Set(20u, 0);
    EXPECT_EQ(BufferOf(s).n_GetMaximumSize(), 52u);
    s.v_Set(19u, 0);
    EXPECT_EQ(BufferOf(s).n_GetMaximumSize(), 20u);
    s.v_Set(0u, 0);
    EXPECT_EQ(BufferOf(s).n_GetUsedSize(), 1u);
}

TEST(CString, LengthThatNoHeapHasIsReported)
{
    CT_CString s("abc");
    s.vv_SetLength(0xFFFFFFFE);
    ExpectError(60006, {"Ostra/String/CString"});
    s.vv_SetSize(0xFFFFFFFF, 1);
    ExpectError(60006, {"Ostra/String/CString"});
    EXPECT_EQ(Text(s), "abc");
}

TEST(CString, WideTextReservesTwoBytesAUnit)
{
    CT_CString s(1252u);
    s.v_Set(U(u"0123456789"));
    EXPECT_EQ(BufferOf(s).n_GetMaximumSize(), 52u);
    EXPECT_EQ(BufferOf(s).n_GetUsedSize(), 11u);
    s.vv_SetSize(0, 0);
    s.v_Set("0123456789", ALL, 0);
    EXPECT_EQ(BufferOf(s).n_GetMaximumSize(), 20u);
}

// ---- Single characters --------------------------------------------------------------------

TEST(CString, WidensAByteByItsCodePage)
{
    const CT_CString s("\xE9\x80", ALL, 1252);
    EXPECT_EQ(s.c_GetAt(0), '\xE9');
    EXPECT_EQ(s.vc_GetAt(0), '\xE9');
    EXPECT_EQ(s.vu_GetAt(0), 0xE9);
    EXPECT_EQ(s.vu_GetAt(1), 0x20AC);
}

TEST(CString, StoresAUnitAsOneByte)
{
    CT_CString s("abc", ALL, 1251);
    s.vv_SetAt(static_cast<unsigned short>(0x0439), 1);
    EXPECT_EQ(Text(s), "a\xE9"
                       "c");
    s.v_SetAt('x', 0);
    EXPECT_EQ(s.c_GetAt(0), 'x');
    s.v_SetAt('\0', 1);
    EXPECT_EQ(Text(s), "x");
}

TEST(CString, AUnitWithoutAByteOfItsOwnDoesNotCutTheText)
{
    for (const unsigned codePage : {932u, UTF8}) {
        CT_CString s("abcd", ALL, codePage);
        s.vv_SetAt(static_cast<unsigned short>(0x3042), 1);
        EXPECT_EQ(Text(s), "a?cd");
        s.vv_Replace(static_cast<unsigned short>(0x3042), 2, 2);
        EXPECT_EQ(Text(s), "a???");
    }
}

TEST(CString, FillWritesAZeroWithinTheTextAndKeepsTheLength)
{
    CT_CString s("abcdef");
    CT_CString sharer(&s);
    s.vv_Replace('x', 2, 1);
    EXPECT_EQ(Read(s), "axx");
    EXPECT_EQ(s.vn_GetLength(), 6u);
    EXPECT_EQ(Text(s), std::string("axx\0ef", 6));
    EXPECT_EQ(Text(sharer), "abcdef");
}

TEST(CString, FillToTheEndAndBeyondMovesTheEnd)
{
    CT_CString s("abcdef");
    s.vv_Replace('x', ALL, 0);
    EXPECT_EQ(Text(s), "xxxxxx");
    s.vv_Replace('y', 4, 4);
    EXPECT_EQ(Text(s), "xxxxyyyy");
    s.vv_Replace('z', 100, 8);
    EXPECT_EQ(Text(s), "xxxxyyyy" + std::string(100, 'z'));
    EXPECT_EQ(s.c_GetAt(108), 0);
}

TEST(CString, FillOfABlocklessStringMakesABlock)
{
    CT_CString s;
    s.vv_Replace('x', ALL, 0);
    EXPECT_EQ(BufferOf(s).n_GetUsedSize(), 1u);
    CT_CString other;
    other.vv_Replace('x', 3, 0);
    EXPECT_EQ(Text(other), "xxx");
}

TEST(CString, FillOfNothingWritesTheZeroAlone)
{
    CT_CString s("abcdef");
    s.vv_Replace('x', 0, 2);
    EXPECT_EQ(Text(s), std::string("ab\0def", 6));
    s.vv_Replace('x', 0, 0);
    EXPECT_EQ(Text(s), std::string("\0b\0def", 6));
}

TEST(CString, FillByAUnitConvertsItToOneByte)
{
    CT_CString s("abc", ALL, 1251);
    s.vv_Replace(static_cast<unsigned short>(0x0439), 2, 0);
    EXPECT_EQ(Read(s), "\xE9\xE9");
}

// ---- Conversion on the way in -------------------------------------------------------------

TEST(CString, ConvertsWideTextByItsCodePage)
{
    struct Case
    {
        unsigned codePage;
        const char* bytes;
    };
    // The unit for e with acute, and the euro sign.
    for (const Case& c : std::initializer_list<Case>{{1252, "\xE9\x80"},
                                                     {850, "\x82?"},
                                                     {UTF8, "\xC3\xA9\xE2\x82\xAC"},
                                                     {UTF7, "+AOkgrA-"}}) {
        SCOPED_TRACE(c.codePage);
        CT_CString s(U(u"\u00E9\u20AC"), ALL, c.codePage);
        EXPECT_EQ(Text(s), c.bytes);
        const std::string bytes = c.bytes;
        s.v_Append(U(u"\u00E9\u20AC"));
        EXPECT_EQ(Text(s), bytes + bytes);
        s.v_Insert(U(u"\u00E9\u20AC"), ALL, 0);
        EXPECT_EQ(Text(s), bytes + bytes + bytes);
        s.v_Replace(U(u"\u00E9\u20AC"), ALL, 1);
        EXPECT_EQ(Text(s), bytes[0] + bytes);
        const CT_UString wide(U(u"\u00E9\u20AC"));
        s.v_Set(&wide);
        s.v_Append(&wide);
        EXPECT_EQ(Text(s), bytes + bytes);
        EXPECT_EQ(s.vi_Compare(wide.qcuz_Get(), 2), 0);
        EXPECT_EQ(s.vn_Find(&wide, 1), static_cast<unsigned>(bytes.size()));
        EXPECT_TRUE(CT_CString(&wide, c.codePage).vb_Match(&wide));
    }
}

TEST(CString, InvalidCodePageActsAsTheSystems)
{
    CT_CString s(U(u"abc"), ALL, 12345);
    EXPECT_EQ(Text(s), "abc");
    EXPECT_EQ(s.n_GetCodePage(), 12345u);
    EXPECT_EQ(Text(s), Text(CT_CString(U(u"abc"), ALL, 0)));
}

TEST(CString, CodersHaveTheRoomThatTheyNeed)
{
    const std::u16string text(500, u'\u4E00');
    for (unsigned codePage : {UTF7, UTF8}) {
        SCOPED_TRACE(codePage);
        CT_CString s(U(text.c_str()), ALL, codePage);
        EXPECT_EQ(CT_UString(&s).vn_GetLength(), 500u);
        s.v_Append(U(text.c_str()));
        s.v_Insert(U(text.c_str()), ALL, 0);
        EXPECT_EQ(Text(CT_UString(&s)), text + text + text);
    }
}

// Where the text fits into what a code page would have got, the block is no larger.
TEST(CString, CodersReportTheSizesOfACodePage)
{
    for (unsigned codePage : {1252u, UTF7, UTF8}) {
        CT_CString s(U(u"0123456789"), ALL, codePage);
        EXPECT_EQ(BufferOf(s).n_GetMaximumSize(), 52u) << codePage;
    }
}

TEST(CString, DoubleBytesAreTwoCharacters)
{
    CT_CString s(U(u"\u3042a"), ALL, 932);
    EXPECT_EQ(Text(s), "\x82\xA0"
                       "a");
    EXPECT_EQ(s.vn_GetLength(), 3u);
    EXPECT_EQ(s.vn_Find('\xA0'), 1u);
    EXPECT_EQ(s.vn_Find(static_cast<unsigned short>(0x3042)), 0u);
    EXPECT_TRUE(s.b_Match("??a"));
    s.v_Append(static_cast<unsigned short>(0x3044));
    EXPECT_EQ(Text(s), "\x82\xA0"
                       "a\x82\xA2");
}

TEST(CString, FindOfAUnitConvertsIt)
{
    const CT_CString s("a\xE9"
                       "b",
                       ALL, 1251);
    EXPECT_EQ(s.vn_Find(static_cast<unsigned short>(0x0439)), 1u);
    EXPECT_EQ(s.vn_Find(static_cast<unsigned short>(0), 2), 2u) << "an empty text";
    const CT_CString coded("a\xC3\xA9", ALL, UTF8);
    EXPECT_EQ(coded.vn_Find(static_cast<unsigned short>(0xE9)), 1u);
}

TEST(CString, FailedConversionLeavesTheTextCutAtTheOffset)
{
    CT_CString s("abcdef", ALL, UTF8);
    s.v_Replace(U(u"\0x"), 2, 3);
    ExpectError(CT_ErrorManager::spco_Get()->n_GetErrorCode(), {"System/String/StringConvert"});
    EXPECT_EQ(Text(s), "abc");
    s.v_Replace(U(u"\0x"), 2, 0);
    ExpectError(CT_ErrorManager::spco_Get()->n_GetErrorCode(), {"System/String/StringConvert"});
    EXPECT_EQ(Text(s), "");
    EXPECT_EQ(BufferOf(s).n_GetUsedSize(), 1u);
}

TEST(CString, ComparesUnsignedBytes)
{
    const CT_CString s("\x80");
    EXPECT_EQ(s.vi_Compare("\x7F"), 1);
    EXPECT_EQ(s.vi_Compare("\xFF"), -1);
    EXPECT_GT(s.vi_Compare("\x7F", 1), 0);
    EXPECT_LT(s.vi_Compare("\xFF", 1), 0);
}

// ---- Append -------------------------------------------------------------------------------

TEST(CString, AppendOfOneByteGrowsByTheRule)
{
    CT_CString s;
    unsigned before = CT_Buffer::sn_GetAllocCount();
    for (unsigned n = 0; n < 19; ++n)
        s.v_Append(static_cast<char>('a' + n));
    EXPECT_EQ(CT_Buffer::sn_GetAllocCount(), before + 1);
    EXPECT_EQ(BufferOf(s).n_GetMaximumSize(), 20u);
    s.v_Append('t');
    EXPECT_EQ(BufferOf(s).n_GetMaximumSize(), 52u);
    EXPECT_EQ(Text(s), "abcdefghijklmnopqrst");
    before = CT_Buffer::sn_GetAllocCount();
    const CT_CString sharer(&s);
    s.v_Append('u');
    EXPECT_EQ(CT_Buffer::sn_GetAllocCount(), before + 1);
    EXPECT_EQ(sharer.vn_GetLength(), 20u);
}

TEST(CString, AppendOfZeroLeavesTheStringUnchanged)
{
    CT_CString s;
    s.v_Append('\0');
    s.v_Append(static_cast<unsigned short>(0));
    s.v_Append("");
    s.v_Append("abc", 0);
    s.v_Append(U(u""));
    s.v_Append(U(u"abc"), 0);
    EXPECT_EQ(DataOf(s), nullptr);
    const CT_CString empty;
    s.v_Append(&empty);
    EXPECT_EQ(DataOf(s), nullptr);
}

TEST(CString, AppendOfTextGrowsToWhatIsNeeded)
{
    CT_CString s("abc");
    s.v_Append("defghijklmnopqrstuvwxyz", 17);
    EXPECT_EQ(Text(s), "abcdefghijklmnopqrst");
    EXPECT_EQ(BufferOf(s).n_GetMaximumSize(), 52u);
    EXPECT_EQ(BufferOf(s).n_GetUsedSize(), 21u);
}

TEST(CString, AppendOfAStringCutsTheCountToItsLength)
{
    CT_CString s("abc");
    const CT_CString narrow("def");
    s.v_Append(&narrow, 2);
    s.v_Append(&narrow, 100);
    s.v_Append(&narrow);
    EXPECT_EQ(Text(s), "abcdedefdef");
    const CT_UString wide(U(u"xyz"));
    s.v_Append(&wide, 2);
    EXPECT_EQ(Text(s), "abcdedefdefxy");
}

TEST(CString, AppendOfItselfIsSafe)
{
    CT_CString s("abcdefghijklmnop");
    s.v_Append(&s);
    s.v_Append(s.qccz_Get() + 30, 2);
    EXPECT_EQ(Text(s), "abcdefghijklmnopabcdefghijklmnopop");
}

TEST(CString, AppendOfAUnitConvertsIt)
{
    CT_CString s(UTF8);
    s.v_Append(static_cast<unsigned short>(0x20AC));
    EXPECT_EQ(Text(s), "\xE2\x82\xAC");
    s.v_SetCodePage(UTF7);
    s.v_Append(static_cast<unsigned short>(0x20AC));
    EXPECT_EQ(Text(s), "\xE2\x82\xAC+IKw-");
    s.v_SetCodePage(1252);
    s.v_Append(static_cast<unsigned short>(0x20AC));
    EXPECT_EQ(Text(s), "\xE2\x82\xAC+IKw-\x80");
}

TEST(CString, AppendToARoomWithoutUsedBytesStartsAnew)
{
    const CT_Buffer room(200, 32);
    CT_CString s(&room);
    s.v_Append("abc");
    EXPECT_EQ(Text(s), "abc");
    EXPECT_EQ(BufferOf(s).n_GetMaximumSize(), 20u);
}
