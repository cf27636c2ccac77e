// tests/Ostra/String/StringTest.cpp: what both string classes do alike: storage, set, replace,
// insert, remove.
#include "Ostra/String/StringSupport.h"

#include <cstring>

TEST(String, NewStringIsEmptyWithoutABlock)
{
    const unsigned before = CT_Buffer::sn_GetAllocCount();
    const CT_CString narrow;
    const CT_UString wide;
    EXPECT_STREQ(narrow.qccz_Get(), "");
    EXPECT_EQ(Read(wide), u"");
    for (const CT_String* s :
         {static_cast<const CT_String*>(&narrow), static_cast<const CT_String*>(&wide)}) {
        EXPECT_EQ(s->vn_GetLength(), 0u);
        EXPECT_EQ(s->vn_GetMaximumLength(), 0u);
        EXPECT_EQ(DataOf(*s), nullptr);
        EXPECT_EQ(BufferOf(*s).n_GetGrowth(), 32u);
    }
    EXPECT_EQ(CT_Buffer::sn_GetAllocCount(), before);
}

TEST(String, BlockWithoutUsedBytesReadsAsEmpty)
{
    const CT_Buffer room(40, 32);
    const CT_CString narrow(&room);
    const CT_UString wide(&room);
    EXPECT_STREQ(narrow.qccz_Get(), "");
    EXPECT_EQ(Read(wide), u"");
    EXPECT_EQ(narrow.vn_GetLength(), 0u);
    EXPECT_EQ(wide.vn_GetLength(), 0u);
}

TEST(String, SetOfAnEmptyTextLeavesABlockWithATerminator)
{
    OnBoth([](bool wide) {
        auto s = Make(wide, "");
        EXPECT_EQ(s->vn_GetLength(), 0u);
        EXPECT_EQ(BufferOf(*s).n_GetUsedSize(), wide ? 2u : 1u);
        s->v_Set("abc", ALL, 0);
        s->v_Set(U(u""));
        EXPECT_EQ(BufferOf(*s).n_GetUsedSize(), wide ? 2u : 1u);
    });
}

TEST(String, SetTakesACountOrTheWholeText)
{
    OnBoth([](bool wide) {
        auto s = Make(wide, "");
        s->v_Set("abcdef", 3, 0);
        EXPECT_EQ(Ascii(*s), "abc");
        s->v_Set(U(u"uvwxyz"), 4);
        EXPECT_EQ(Ascii(*s), "uvwx");
        s->v_Set("abcdef", ALL, 0);
        EXPECT_EQ(Ascii(*s), "abcdef");
        EXPECT_EQ(BufferOf(*s).n_GetUsedSize(), wide ? 14u : 7u);
    });
}

TEST(String, SetOfALengthMakesRoomForIt)
{
    OnBoth([](bool wide) {
        auto s = Make(wide, "abc");
        s->v_Set(100u, 0);
        EXPECT_EQ(Ascii(*s), "");
        EXPECT_GE(s->vn_GetMaximumLength(), 99u);
        // Kept: empties the string that has the room, and gives back the room as well.
        s->v_Set(10u, 1);
        EXPECT_EQ(s->vn_GetLength(), 0u);
        EXPECT_EQ(BufferOf(*s).n_GetMaximumSize(), 20u);
        s->v_Set(50u, 1);
        EXPECT_GE(s->vn_GetMaximumLength(), 49u);
    });
}

TEST(String, SetFromABufferSharesItUnchecked)
{
    OnBoth([](bool wide) {
        auto source = Make(wide, "abc");
        auto s = Make(wide, "other");
        s->v_Set(source->pcco_GetBuffer());
        EXPECT_EQ(DataOf(*s), DataOf(*source));
        EXPECT_EQ(UsesOf(*source), 2u);
        EXPECT_EQ(Ascii(*s), "abc");
    });
}

TEST(String, SetFromAStringOfTheSameClassShares)
{
    OnBoth([](bool wide) {
        auto source = Make(wide, "abc");
        auto s = Make(wide, "other");
        const unsigned before = CT_Buffer::sn_GetAllocCount();
        s->v_Set(source.get());
        EXPECT_EQ(DataOf(*s), DataOf(*source));
        EXPECT_EQ(CT_Buffer::sn_GetAllocCount(), before);
    });
}

TEST(String, SetFromAStringOfTheOtherClassConverts)
{
    OnBoth([](bool wide) {
        auto source = Make(!wide, "abc");
        auto s = Make(wide, "other");
        s->v_Set(source.get());
        EXPECT_EQ(Ascii(*s), "abc");
        EXPECT_EQ(UsesOf(*source), 1u);
    });
}

TEST(String, SetFromItselfKeepsTheText)
{
    OnBoth([](bool wide) {
        auto s = Make(wide, "abc");
        auto sharer = Share(*s);
        s->v_Set(s.get());
        EXPECT_EQ(Ascii(*s), "abc");
        EXPECT_EQ(UsesOf(*s), 2u);
        sharer.reset();
        const void* const data = DataOf(*s);
        s->v_Set(s.get());
        EXPECT_EQ(Ascii(*s), "abc");
        EXPECT_EQ(DataOf(*s), data);
        EXPECT_EQ(UsesOf(*s), 1u);
        s->v_Set(s->pcco_GetBuffer());
        EXPECT_EQ(Ascii(*s), "abc");
    });
}

TEST(String, CreateSharesTheDataUntilAWrite)
{
    OnBoth([](bool wide) {
        auto s = Make(wide, "abc");
        auto copy = Share(*s);
        EXPECT_EQ(DataOf(*s), DataOf(*copy));
        copy->vv_SetAt('x', 1);
        EXPECT_EQ(Ascii(*s), "abc");
        EXPECT_EQ(Ascii(*copy), "axc");
        EXPECT_EQ(UsesOf(*s), 1u);
        EXPECT_EQ(UsesOf(*copy), 1u);
    });
}

TEST(String, CopyWeWriteTakesABlockOfItsOwn)
{
    OnBoth([](bool wide) {
        auto s = Make(wide, "abc");
        auto copy = Share(*s);
        copy->v_CopyWeWrite();
        EXPECT_NE(DataOf(*s), DataOf(*copy));
        EXPECT_EQ(Ascii(*copy), "abc");
        const unsigned before = CT_Buffer::sn_GetAllocCount();
        copy->v_CopyWeWrite();
        EXPECT_EQ(CT_Buffer::sn_GetAllocCount(), before);
    });
}

// ---- Storage ----------------------------------------------------------------------------------

TEST(String, SetSizeOfNothingLetsGoOfTheBlock)
{
    OnBoth([](bool wide) {
        auto s = Make(wide, "abc");
        s->vv_SetSize(0, 1);
        EXPECT_EQ(DataOf(*s), nullptr);
        EXPECT_EQ(s->vn_GetLength(), 0u);
    });
}

TEST(String, SetSizeKeepsAsMuchTextAsFits)
{
    OnBoth([](bool wide) {
        auto s = Make(wide, "abcdef");
        s->vv_SetSize(3, 1);
        EXPECT_EQ(Ascii(*s), "abc");
        s->vv_SetSize(100, 1);
        EXPECT_EQ(Ascii(*s), "abc");
        EXPECT_GE(s->vn_GetMaximumLength(), 100u);
        s->vv_SetSize(3, 0);
        EXPECT_EQ(Ascii(*s), "");
        EXPECT_GE(s->vn_GetMaximumLength(), 3u);
        EXPECT_EQ(BufferOf(*s).n_GetUsedSize(), wide ? 2u : 1u);
    });
}

TEST(String, SetSizeOfTheLengthKeepsTheWholeText)
{
    OnBoth([](bool wide) {
        auto s = Make(wide, "abcdef");
        s->vv_SetSize(6, 1);
        EXPECT_EQ(Ascii(*s), "abcdef");
    });
}

TEST(String, SetSizeOfABlocklessStringTerminatesIt)
{
    OnBoth([](bool wide) {
        auto s = Make(wide, "");
        s->vv_SetSize(0, 0);
        s->vv_SetSize(5, 1);
        EXPECT_EQ(BufferOf(*s).n_GetUsedSize(), wide ? 2u : 1u);
        EXPECT_EQ(s->vn_GetLength(), 0u);
    });
}

TEST(String, SetMinSizeDoesNothingWhenTheRoomIsThere)
{
    OnBoth([](bool wide) {
        auto s = Make(wide, "abc");
        auto sharer = Share(*s);
        const unsigned room = s->vn_GetMaximumLength();
        s->vv_SetMinSize(room, 0);
        EXPECT_EQ(DataOf(*s), DataOf(*sharer));
        s->vv_SetMinSize(room + 1, 1);
        EXPECT_NE(DataOf(*s), DataOf(*sharer));
        EXPECT_EQ(Ascii(*s), "abc");
        EXPECT_GT(s->vn_GetMaximumLength(), room);
    });
}

TEST(String, SetMinSizeOfNothingOnABlocklessStringMakesNoBlock)
{
    OnBoth([](bool wide) {
        auto s = Make(wide, "");
        s->vv_SetSize(0, 0);
        s->vv_SetMinSize(0, 1);
        EXPECT_EQ(DataOf(*s), nullptr);
        s->vv_SetMinSize(1, 1);
        EXPECT_NE(DataOf(*s), nullptr);
    });
}

TEST(String, SetLengthCutsOrExtends)
{
    OnBoth([](bool wide) {
        auto s = Make(wide, "abcdef");
        s->vv_SetLength(3);
        EXPECT_EQ(Ascii(*s), "abc");
        s->vv_SetLength(40);
        EXPECT_EQ(s->vn_GetLength(), 40u);
        for (unsigned n = 0; n < 3; ++n)
            EXPECT_EQ(s->vu_GetAt(n), "abc"[n]);
        EXPECT_EQ(s->vu_GetAt(40), 0);
    });
}

TEST(String, SetLengthLeavesASharerAlone)
{
    OnBoth([](bool wide) {
        auto s = Make(wide, "abcdef");
        auto sharer = Share(*s);
        s->vv_SetLength(3);
        EXPECT_EQ(Ascii(*sharer), "abcdef");
        EXPECT_EQ(Ascii(*s), "abc");
    });
}

// Kept: the room goes with the text.
TEST(String, SetLengthOfNothingShrinksTheBlock)
{
    OnBoth([](bool wide) {
        auto s = Make(wide, "abc");
        s->vv_SetSize(200, 1);
        s->vv_SetLength(0);
        EXPECT_EQ(BufferOf(*s).n_GetMaximumSize(), 20u);
        EXPECT_EQ(BufferOf(*s).n_GetUsedSize(), wide ? 2u : 1u);
    });
}

TEST(String, UpdateTakesTheLengthFromTheFirstTerminator)
{
    OnBoth([](bool wide) {
        auto s = Make(wide, "abcdef");
        auto sharer = Share(*s);
        std::memset(const_cast<char*>(static_cast<const char*>(DataOf(*s))) + (wide ? 4 : 2), 0,
                    wide ? 2 : 1);
        EXPECT_EQ(s->vn_GetLength(), 6u);
        s->vv_Update();
        EXPECT_EQ(Ascii(*s), "ab");
        EXPECT_EQ(sharer->vn_GetLength(), 6u);
        EXPECT_NE(DataOf(*s), DataOf(*sharer));
    });
}

TEST(String, UpdateCanLengthenTheText)
{
    OnBoth([](bool wide) {
        auto s = Make(wide, "");
        s->vv_SetSize(8, 0);
        for (unsigned n = 0; n < 5; ++n)
            s->vv_SetAt(static_cast<char>('a' + n), n);
        std::memset(const_cast<char*>(static_cast<const char*>(DataOf(*s))) + (wide ? 10 : 5), 0,
                    2);
        s->vv_Update();
        EXPECT_EQ(Ascii(*s), "abcde");
    });
}

TEST(String, UpdateOfAStringWithoutABlockDoesNothing)
{
    OnBoth([](bool wide) {
        auto s = Make(wide, "");
        s->vv_SetSize(0, 0);
        s->vv_Update();
        EXPECT_EQ(DataOf(*s), nullptr);
    });
}

// ---- Single characters --------------------------------------------------------------------

TEST(String, SetAtOfZeroCutsTheText)
{
    OnBoth([](bool wide) {
        auto s = Make(wide, "abcdef");
        auto sharer = Share(*s);
        s->vv_SetAt('\0', 3);
        EXPECT_EQ(Ascii(*s), "abc");
        EXPECT_EQ(Ascii(*sharer), "abcdef");
        s->vv_SetAt(static_cast<unsigned short>('X'), 1);
        EXPECT_EQ(Ascii(*s), "aXc");
        s->vv_SetAt(static_cast<unsigned short>(0), 1);
        EXPECT_EQ(Ascii(*s), "a");
        EXPECT_EQ(BufferOf(*s).n_GetUsedSize(), wide ? 4u : 2u);
    });
}

TEST(String, SetAtOnTheTerminatorOfAFullBlockMakesRoomForAnother)
{
    OnBoth([](bool wide) {
        auto s = Make(wide, "");
        s->vv_SetGrowth(1);
        s->v_Set("abcd", ALL, 1252);
        s->vv_SetSize(4, 1);
        ASSERT_EQ(s->vn_GetMaximumLength(), 4u);
        auto sharer = Share(*s);
        s->vv_SetAt('e', 4);
        EXPECT_GE(s->vn_GetMaximumLength(), 5u);
        EXPECT_EQ(s->vu_GetAt(4), 'e');
        EXPECT_EQ(s->vu_GetAt(5), 0);
        // As in a block with room, the length is taken anew by vv_Update.
        EXPECT_EQ(s->vn_GetLength(), 4u);
        s->vv_Update();
        EXPECT_EQ(Ascii(*s), "abcde");
        EXPECT_EQ(Ascii(*sharer), "abcd");
        EXPECT_EQ(sharer->vu_GetAt(4), 0);
        EXPECT_EQ(sharer->vn_GetMaximumLength(), 4u);
        // A zero there takes no room.
        sharer->vv_SetAt('\0', 4);
        EXPECT_EQ(Ascii(*sharer), "abcd");
        EXPECT_EQ(sharer->vn_GetMaximumLength(), 4u);
    });
}

TEST(String, SetAtTheEndOfARoomThatIsNotFullTakesNoOther)
{
    OnBoth([](bool wide) {
        auto s = Make(wide, "abc");
        const unsigned room = s->pcco_GetBuffer()->n_GetMaximumSize() / (wide ? 2 : 1);
        ASSERT_GT(room, 5u);
        const unsigned before = CT_Buffer::sn_GetAllocCount();
        s->vv_SetAt('x', room - 1);
        EXPECT_EQ(s->vu_GetAt(room - 1), 'x');
        EXPECT_EQ(Ascii(*s), "abc");
        EXPECT_EQ(CT_Buffer::sn_GetAllocCount(), before);
    });
}

TEST(String, GetAtReadsOneCharacterInEitherWidth)
{
    OnBoth([](bool wide) {
        auto s = Make(wide, "abc");
        EXPECT_EQ(s->vc_GetAt(1), 'b');
        EXPECT_EQ(s->vu_GetAt(2), 'c');
        EXPECT_EQ(s->vu_GetAt(3), 0);
    });
}

TEST(String, CharactersOutsideTheBlockAreNeitherReadNorWritten)
{
    OnBoth([](bool wide) {
        auto s = Make(wide, "abc");
        s->vv_SetAt('x', 5000000);
        EXPECT_EQ(s->vu_GetAt(5000000), 0);
        EXPECT_EQ(Ascii(*s), "abc");
        s->vv_SetSize(0, 0);
        s->vv_SetAt('x', 0);
        EXPECT_EQ(s->vu_GetAt(0), 0);
    });
}

// ---- Replace ------------------------------------------------------------------------------

// It is no overwriting in the middle: what stood behind the range goes.
TEST(String, ReplaceCutsBehindWhatItWrote)
{
    OnBoth([](bool wide) {
        auto s = Make(wide, "abcdef");
        s->v_Replace("XY", ALL, 1);
        EXPECT_EQ(Ascii(*s), "aXY");
        s->v_Replace(U(u"vwxyz"), 3, 2);
        EXPECT_EQ(Ascii(*s), "aXvwx");
        auto source = Make(wide, "0123456789");
        s->v_Replace(source.get(), 4, ALL, 1);
        EXPECT_EQ(Ascii(*s), "a456789");
        auto other = Make(!wide, "0123456789");
        s->v_Replace(other.get(), 2, 3, 0);
        EXPECT_EQ(Ascii(*s), "234");
    });
}

TEST(String, ReplaceLeavesASharerAlone)
{
    OnBoth([](bool wide) {
        auto s = Make(wide, "abcdef");
        auto sharer = Share(*s);
        s->v_Replace("XY", ALL, 1);
        EXPECT_EQ(Ascii(*sharer), "abcdef");
        EXPECT_EQ(Ascii(*s), "aXY");
    });
}

TEST(String, ReplaceByNothingCutsAtTheOffset)
{
    OnBoth([](bool wide) {
        auto s = Make(wide, "abcdef");
        s->v_Replace("", ALL, 2);
        EXPECT_EQ(Ascii(*s), "ab");
        s->v_Replace(U(u"xyz"), 0, 1);
        EXPECT_EQ(Ascii(*s), "a");
        s->v_Replace("", ALL, 0);
        EXPECT_EQ(s->vn_GetLength(), 0u);
        EXPECT_NE(DataOf(*s), nullptr);
    });
}

TEST(String, ReplaceByItsOwnTextIsSafe)
{
    OnBoth([](bool wide) {
        auto s = Make(wide, "abcdef");
        s->v_Replace(s.get(), 0, ALL, 6);
        s->v_Replace(s.get(), 0, ALL, 12);
        EXPECT_EQ(Ascii(*s), "abcdefabcdefabcdefabcdef");
    });
}

TEST(String, ReplaceTakesNoMoreThanTheSourceHas)
{
    OnBoth([](bool wide) {
        auto s = Make(wide, "abc");
        auto source = Make(wide, "xyz");
        s->v_Replace(source.get(), 1, 1000, 0);
        EXPECT_EQ(Ascii(*s), std::string("yz\0", 3));
        s->v_Replace(source.get(), 9, 5, 1);
        EXPECT_EQ(Ascii(*s), "y");
    });
}

// ---- Insert -------------------------------------------------------------------------------

TEST(String, InsertOpensAGap)
{
    OnBoth([](bool wide) {
        auto s = Make(wide, "adef");
        auto sharer = Share(*s);
        s->v_Insert("bc", ALL, 1);
        EXPECT_EQ(Ascii(*s), "abcdef");
        EXPECT_EQ(Ascii(*sharer), "adef");
        s->v_Insert(U(u"12345"), 2, 0);
        EXPECT_EQ(Ascii(*s), "12abcdef");
        auto same = Make(wide, "XYZ");
        s->v_Insert(same.get(), ALL, 8);
        EXPECT_EQ(Ascii(*s), "12abcdefXYZ");
        auto other = Make(!wide, "-+-");
        s->v_Insert(other.get(), 2, 2);
        EXPECT_EQ(Ascii(*s), "12-+abcdefXYZ");
    });
}

TEST(String, InsertIntoABlocklessStringMakesOne)
{
    OnBoth([](bool wide) {
        for (const char* text :
             {"abc", "", "a text that needs more than the first block has room for"}) {
            auto s = Make(wide, "");
            s->vv_SetSize(0, 0);
            s->v_Insert(text, ALL, 0);
            EXPECT_EQ(Ascii(*s), text);
            EXPECT_NE(DataOf(*s), nullptr);
        }
    });
}

TEST(String, InsertOfItselfIsSafe)
{
    OnBoth([](bool wide) {
        auto s = Make(wide, "abcdefghijklmnop");
        s->v_Insert(s.get(), ALL, 8);
        EXPECT_EQ(Ascii(*s), "abcdefghabcdefghijklmnopijklmnop");
    });
}

TEST(String, InsertBehindTheEndAppends)
{
    OnBoth([](bool wide) {
        auto s = Make(wide, "abc");
        s->v_Insert("d", ALL, 100);
        EXPECT_EQ(Ascii(*s), "abcd");
    });
}

// The source's terminator isn't inserted: it would hide the text behind it.
TEST(String, InsertTakesNoMoreThanTheSourceHas)
{
    OnBoth([](bool wide) {
        for (const bool from_wide : {false, true}) {
            auto s = Make(wide, "abc");
            auto source = Make(from_wide, "xy");
            s->v_Insert(source.get(), 3, 1);
            EXPECT_EQ(Ascii(*s), "axybc");
            s->v_Insert(source.get(), 1000, 0);
            EXPECT_EQ(Ascii(*s), "xyaxybc");
            EXPECT_EQ(s->vn_GetLength(), 7u);
            auto empty = Make(from_wide, "");
            s->v_Insert(empty.get(), 5, 2);
            EXPECT_EQ(Ascii(*s), "xyaxybc");
        }
    });
}

namespace
{
// What a class of the application's reaches.
template <class S>
struct Inserting : S
{
    using S::S;
    using S::vv_StringInsert;
};
} // namespace

TEST(String, InsertFromBehindTheSourceInsertsNothing)
{
    const CT_CString bytes("xyz");
    const CT_UString units(U(u"xyz"));
    Inserting<CT_CString> narrow("abc");
    Inserting<CT_UString> wide(U(u"abc"));
    for (const CT_String* source :
         {static_cast<const CT_String*>(&bytes), static_cast<const CT_String*>(&units)}) {
        narrow.vv_StringInsert(source, 9, ALL, 1);
        wide.vv_StringInsert(source, 9, ALL, 1);
        EXPECT_EQ(Text(narrow), "abc");
        EXPECT_EQ(Text(wide), u"abc");
    }
    narrow.vv_StringInsert(&units, 1, ALL, 1);
    wide.vv_StringInsert(&bytes, 1, ALL, 1);
    EXPECT_EQ(Text(narrow), "ayzbc");
    EXPECT_EQ(Text(wide), u"ayzbc");
}

// ---- Append through the interface ---------------------------------------------------------

TEST(String, AppendWorksThroughTheInterface)
{
    OnBoth([](bool wide) {
        auto s = Make(wide, "");
        s->vv_SetSize(0, 0);
        s->v_Append('a');
        s->v_Append(static_cast<unsigned short>('b'));
        s->v_Append("cdef", 2);
        s->v_Append(U(u"efg"));
        auto same = Make(wide, "hijkl");
        s->v_Append(same.get(), 2);
        auto other = Make(!wide, "jk");
        s->v_Append(other.get());
        EXPECT_EQ(Ascii(*s), "abcdefghijk");
    });
}

TEST(String, AppendOfNothingChangesNothing)
{
    OnBoth([](bool wide) {
        auto s = Make(wide, "abc");
        auto sharer = Share(*s);
        s->v_Append("xyz", 0);
        s->v_Append("");
        s->v_Append(U(u"xyz"), 0);
        s->v_Append('\0');
        s->v_Append(static_cast<unsigned short>(0));
        EXPECT_EQ(Ascii(*s), "abc");
        EXPECT_EQ(DataOf(*s), DataOf(*sharer));
    });
}

TEST(String, AppendOfItselfDoublesTheText)
{
    OnBoth([](bool wide) {
        auto s = Make(wide, "abc");
        for (int n = 0; n < 6; ++n)
            s->v_Append(s.get());
        EXPECT_EQ(s->vn_GetLength(), 192u);
        EXPECT_EQ(Ascii(*s).substr(186), "abcabc");
    });
}

// ---- Remove -------------------------------------------------------------------------------

TEST(String, RemoveTakesARangeOut)
{
    struct Case
    {
        unsigned count, offset;
        const char* left;
    };
    OnBoth([](bool wide) {
        for (const Case& c : std::initializer_list<Case>{{2, 1, "adef"},
                                                         {ALL, 2, "ab"},
                                                         {ALL, 0, ""},
                                                         {6, 0, ""},
                                                         {1, 5, "abcde"},
                                                         {0, 3, "abcdef"},
                                                         {ALL, 6, "abcdef"},
                                                         {100, 4, "abcd"},
                                                         {3, 100, "abcdef"}}) {
            SCOPED_TRACE(c.left);
            auto s = Make(wide, "abcdef");
            auto sharer = Share(*s);
            s->vv_Remove(c.count, c.offset);
            EXPECT_EQ(Ascii(*s), c.left);
            EXPECT_EQ(s->vu_GetAt(s->vn_GetLength()), 0) << "the terminator stays";
            EXPECT_EQ(Ascii(*sharer), "abcdef");
        }
    });
}

TEST(String, RemoveOfNothingDoesNotUnshare)
{
    OnBoth([](bool wide) {
        auto s = Make(wide, "abc");
        auto sharer = Share(*s);
        s->vv_Remove(0, 1);
        EXPECT_EQ(DataOf(*s), DataOf(*sharer));
    });
}

// ---- Casing -------------------------------------------------------------------------------

TEST(String, CasingChangesAsciiLettersOnly)
{
    OnBoth([](bool wide) {
        const char* text = "@AZ[`az{ aB9_";
        auto s = Make(wide, text);
        auto sharer = Share(*s);
        s->vv_ToLower();
        EXPECT_EQ(Ascii(*s), "@az[`az{ ab9_");
        s->vv_ToUpper();
        EXPECT_EQ(Ascii(*s), "@AZ[`AZ{ AB9_");
        EXPECT_EQ(Ascii(*sharer), text);
    });
}

TEST(String, CasingOfEveryCharacterIsThatOfTheInitialLocale)
{
    CT_UString wide;
    for (unsigned u = 1; u < 0x10000; ++u)
        wide.v_Append(static_cast<unsigned short>(u));
    CT_UString upper(&wide);
    wide.vv_ToLower();
    upper.vv_ToUpper();
    for (unsigned u = 1; u < 0x10000; ++u) {
        ASSERT_EQ(wide.u_GetAt(u - 1), u >= 'A' && u <= 'Z' ? u + 32 : u);
        ASSERT_EQ(upper.u_GetAt(u - 1), u >= 'a' && u <= 'z' ? u - 32 : u);
    }
    CT_CString narrow;
    for (int c = 1; c < 256; ++c)
        narrow.v_Append(static_cast<char>(c));
    narrow.vv_ToLower();
    for (int c = 1; c < 256; ++c)
        ASSERT_EQ(narrow.c_GetAt(c - 1), static_cast<char>(c >= 'A' && c <= 'Z' ? c + 32 : c));
}

TEST(String, CasingOfABlocklessStringDoesNothing)
{
    CT_CString narrow;
    CT_UString wide;
    narrow.vv_ToLower();
    wide.vv_ToUpper();
    EXPECT_EQ(DataOf(narrow), nullptr);
    EXPECT_EQ(DataOf(wide), nullptr);
}

// At the other text's end the terminator is what there is to take.
TEST(String, ReplacingFromTheEndOfATextTakesItsTerminator)
{
    const CT_CString narrow("ab");
    const CT_UString wide(U(u"ab"));
    const CT_String* const others[] = {&narrow, &wide};
    for (const CT_String* other : others) {
        CT_CString bytes("hello");
        CT_UString units(U(u"hello"));
        CT_String* const texts[] = {&bytes, &units};
        for (CT_String* text : texts) {
            text->v_Replace(other, 2, 5, 3);
            EXPECT_EQ(text->vn_GetLength(), 4u);
        }
    }
}
