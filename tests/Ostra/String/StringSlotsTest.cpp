// tests/Ostra/String/StringSlotsTest.cpp: the order of the virtual table, the members, the type
// records.
#include "Ostra/String/StringSupport.h"
#include "Support/Slots.h"

namespace
{
// Makes the protected members of a class nameable.
template <class String>
struct Open : String
{
    using String::vv_Init;
    using String::vv_StringInsert;
    using String::vv_StringReplace;
};

template <class S>
void ExpectSlots()
{
    using O = Open<S>;
    const std::vector<unsigned> slots = {
        SlotOf(&S::vpcco_GetType),
        SlotOf(&S::vpv_IsA),
        SlotOf(&S::vpv_IsKindOf),
        SlotOf(&S::vpco_Create),
        SlotOf(&S::vv_SetSize),
        SlotOf(&S::vv_SetMinSize),
        SlotOf<void (S::*)(unsigned short, unsigned, unsigned)>(&S::vv_Replace),
        SlotOf<void (S::*)(char, unsigned, unsigned)>(&S::vv_Replace),
        SlotOf(&S::vc_GetAt),
        SlotOf(&S::vu_GetAt),
        SlotOf<void (S::*)(unsigned short, unsigned)>(&S::vv_SetAt),
        SlotOf<void (S::*)(char, unsigned)>(&S::vv_SetAt),
        SlotOf(&S::vv_ToLower),
        SlotOf(&S::vv_ToUpper),
        SlotOf(&S::vv_Remove),
        SlotOf<unsigned (S::*)(unsigned short, unsigned) const>(&S::vn_Find),
        SlotOf<unsigned (S::*)(char, unsigned) const>(&S::vn_Find),
        SlotOf<unsigned (S::*)(const CT_String*, unsigned) const>(&S::vn_Find),
        SlotOf(&S::vv_Update),
        SlotOf(&S::vb_Match),
        SlotOf(&S::vv_Strip),
        SlotOf(&S::vv_StripRight),
        SlotOf(&S::vv_StripLeft),
        SlotOf<int (S::*)(const CT_String*, unsigned, unsigned, unsigned) const>(&S::vi_Compare),
        SlotOf<int (S::*)(const unsigned short*, unsigned, unsigned) const>(&S::vi_Compare),
        SlotOf<int (S::*)(const char*, unsigned, unsigned) const>(&S::vi_Compare),
        SlotOf(&S::vv_Translate),
        SlotOf(&S::vv_SetLength),
        SlotOf(&S::vn_GetLength),
        SlotOf(&S::vn_GetMaximumLength),
        SlotOf(&S::vv_SetGrowth),
        SlotOf(&S::vn_GetGrowth),
        SlotOf<void (S::*)(const CT_String*, va_list)>(&S::vv_Format),
        SlotOf<void (S::*)(const CT_String*, ...)>(&S::vv_Format),
        SlotOf<void (S::*)(const CT_Buffer*)>(&O::vv_Init),
        SlotOf<void (S::*)(const unsigned short*, unsigned)>(&O::vv_Init),
        SlotOf<void (S::*)(const char*, unsigned, unsigned)>(&O::vv_Init),
        SlotOf<void (S::*)(const CT_String*)>(&O::vv_Init),
        SlotOf<void (S::*)(unsigned)>(&O::vv_Init),
        SlotOf<void (S::*)()>(&O::vv_Init),
        SlotOf<void (S::*)(const CT_String*, unsigned, unsigned, unsigned)>(&O::vv_StringReplace),
        SlotOf<void (S::*)(const unsigned short*, unsigned, unsigned)>(&O::vv_StringReplace),
        SlotOf<void (S::*)(const char*, unsigned, unsigned, unsigned)>(&O::vv_StringReplace),
        SlotOf<void (S::*)(const CT_String*, unsigned, unsigned, unsigned)>(&O::vv_StringInsert),
        SlotOf<void (S::*)(const unsigned short*, unsigned, unsigned)>(&O::vv_StringInsert),
        SlotOf<void (S::*)(const char*, unsigned, unsigned, unsigned)>(&O::vv_StringInsert),
    };
    ASSERT_EQ(slots.size(), 46u);
    for (unsigned n = 0; n < slots.size(); ++n)
        EXPECT_EQ(slots[n], n < 3 ? n : n + 1);
}

CT_String* Specimen()
{
    return static_cast<CT_String*>(const_cast<void*>(CT_String::spcco_GetType()->pcv_GetObject()));
}
} // namespace

TEST(String, HasItsFortySevenSlotsInOrder)
{
    ExpectSlots<CT_String>();
}

TEST(CString, HasFortyEightSlotsInOrder)
{
    ExpectSlots<CT_CString>();
    EXPECT_EQ(SlotOf(&CT_CString::vv_VFormat), 47u);
}

TEST(UString, HasFortyEightSlotsInOrder)
{
    ExpectSlots<CT_UString>();
    EXPECT_EQ(SlotOf(&CT_UString::vv_VFormat), 47u);
}

TEST(String, HasNoMembersButTheBuffer)
{
    struct Layout
    {
        void* table;
        CT_Buffer buffer;
    };
    struct WithCodePage : Layout
    {
        unsigned codePage;
    };
    EXPECT_EQ(sizeof(CT_String), sizeof(Layout));
    EXPECT_EQ(sizeof(CT_UString), sizeof(Layout));
    EXPECT_EQ(sizeof(CT_CString), sizeof(WithCodePage));
    const CT_CString s;
    EXPECT_EQ(reinterpret_cast<const char*>(s.pcco_GetBuffer()) - reinterpret_cast<const char*>(&s),
              static_cast<long>(sizeof(void*)));
}

TEST(String, EmptyInterfaceAnswersNothing)
{
    CT_String* s = Specimen();
    const CT_CString text("text");
    const unsigned before = CT_Buffer::sn_GetAllocCount();
    EXPECT_EQ(s->vpco_Create(), nullptr);
    s->vv_SetSize(5, 1);
    s->vv_SetMinSize(5, 1);
    s->vv_Replace('x', 2, 0);
    s->vv_Replace(static_cast<unsigned short>('x'), 2, 0);
    s->vv_SetAt('x', 0);
    s->vv_SetAt(static_cast<unsigned short>('x'), 0);
    s->vv_ToLower();
    s->vv_ToUpper();
    s->vv_Remove(1, 0);
    s->vv_Update();
    s->vv_Strip(nullptr);
    s->vv_StripLeft();
    s->vv_StripRight();
    s->vv_Translate(&text, &text);
    s->vv_SetLength(3);
    s->vv_SetGrowth(64);
    s->vv_Format(&text);
    EXPECT_EQ(s->vc_GetAt(0), 0);
    EXPECT_EQ(s->vu_GetAt(0), 0);
    EXPECT_EQ(s->vn_Find('x'), 0u);
    EXPECT_EQ(s->vn_Find(static_cast<unsigned short>('x')), 0u);
    EXPECT_EQ(s->vn_Find(&text), 0u);
    EXPECT_EQ(s->vb_Match(&text), 0);
    EXPECT_EQ(s->vi_Compare(&text), 0);
    EXPECT_EQ(s->vi_Compare("x"), 0);
    EXPECT_EQ(s->vi_Compare(U(u"x")), 0);
    EXPECT_EQ(s->vn_GetLength(), 0u);
    EXPECT_EQ(s->vn_GetMaximumLength(), 0u);
    EXPECT_EQ(s->vn_GetGrowth(), 0u);
    EXPECT_EQ(CT_Buffer::sn_GetAllocCount(), before);
    EXPECT_EQ(DataOf(*s), nullptr);
}

TEST(String, EmptyInterfaceTakesNoText)
{
    CT_String* s = Specimen();
    const CT_CString text("text");
    s->v_Set("abc", ALL, 0);
    s->v_Set(U(u"abc"));
    s->v_Set(&text);
    s->v_Set(text.pcco_GetBuffer());
    s->v_Set(5u, 0);
    s->v_Replace("abc");
    s->v_Insert(U(u"abc"));
    s->v_Append(&text);
    s->v_Format("abc");
    EXPECT_EQ(DataOf(*s), nullptr);
    EXPECT_EQ(UsesOf(text), 1u);
}

TEST(String, ObjectOfNeitherClassIsNoSource)
{
    OnBoth([](bool wide) {
        auto s = Make(wide, "abc");
        const CT_String* none = Specimen();
        s->v_Set(none);
        s->v_Append(none);
        s->v_Insert(none, 0, 1);
        s->vv_Format(none);
        EXPECT_EQ(Ascii(*s), "abc");
        EXPECT_TRUE(s->vb_Match(none)) << "an empty pattern";
        EXPECT_EQ(s->vn_Find(none, 2), 2u) << "an empty text";
    });
}

TEST(String, RecordsNameTheirClasses)
{
    const CT_CString narrow;
    const CT_UString wide;
    EXPECT_STREQ(CT_String::spcco_GetType()->qccz_GetName(), "CT_String");
    EXPECT_STREQ(narrow.vpcco_GetType()->qccz_GetName(), "CT_CString");
    EXPECT_STREQ(wide.vpcco_GetType()->qccz_GetName(), "CT_UString");
    EXPECT_EQ(CT_CString::spcco_GetType(), narrow.vpcco_GetType());
    EXPECT_EQ(CT_UString::spcco_GetType(), wide.vpcco_GetType());
    EXPECT_EQ(Specimen()->vpcco_GetType(), CT_String::spcco_GetType());
    EXPECT_EQ(CT_String::spcco_GetType()->n_GetTypes(), 1u);
    EXPECT_EQ(CT_CString::spcco_GetType()->n_GetTypes(), 1u);
    EXPECT_EQ(CT_UString::spcco_GetType()->n_GetTypes(), 2u);
}

TEST(String, IsAAsksForTheExactClass)
{
    CT_CString narrow;
    CT_UString wide;
    EXPECT_EQ(narrow.vpv_IsA(CT_CString::spcco_GetType()), &narrow);
    EXPECT_EQ(narrow.vpv_IsA(CT_String::spcco_GetType()), nullptr);
    EXPECT_EQ(narrow.vpv_IsA(CT_UString::spcco_GetType()), nullptr);
    EXPECT_EQ(wide.vpv_IsA(CT_UString::spcco_GetType()), &wide);
    EXPECT_EQ(wide.vpv_IsA(CT_String::spcco_GetType()), nullptr);
    EXPECT_EQ(wide.vpv_IsA(nullptr), nullptr);
    EXPECT_EQ(Specimen()->vpv_IsA(CT_String::spcco_GetType()), Specimen());
}

// The asymmetry is part of the interface: code that asks for the encoding uses vpv_IsA.
TEST(String, OnlyTheWideStringIsAKindOfString)
{
    CT_CString narrow;
    CT_UString wide;
    EXPECT_EQ(narrow.vpv_IsKindOf(CT_CString::spcco_GetType()), &narrow);
    EXPECT_EQ(narrow.vpv_IsKindOf(CT_String::spcco_GetType()), nullptr);
    EXPECT_EQ(wide.vpv_IsKindOf(CT_UString::spcco_GetType()), &wide);
    EXPECT_EQ(wide.vpv_IsKindOf(CT_String::spcco_GetType()), &wide);
    EXPECT_EQ(wide.vpv_IsKindOf(CT_CString::spcco_GetType()), nullptr);
    EXPECT_EQ(Specimen()->vpv_IsKindOf(CT_String::spcco_GetType()), Specimen());
    EXPECT_EQ(wide.vpv_IsKindOf(nullptr), nullptr);
}

TEST(String, SpecimenConstructorOfALaterObjectEntersNothing)
{
    CT_Type* narrowType = const_cast<CT_Type*>(CT_CString::spcco_GetType());
    CT_Type* wideType = const_cast<CT_Type*>(CT_UString::spcco_GetType());
    const CT_CString narrow(narrowType);
    const CT_UString wide(wideType);
    EXPECT_EQ(narrowType->n_GetTypes(), 1u);
    EXPECT_EQ(wideType->n_GetTypes(), 2u);
    EXPECT_EQ(narrow.n_GetCodePage(), 0u);
    EXPECT_EQ(Text(narrow), "");
    EXPECT_EQ(Text(wide), u"");
}

TEST(String, DeletesThroughTheInterface)
{
    OnBoth([](bool wide) {
        auto s = Make(wide, "abc");
        CT_String* shared = s->vpco_Create();
        EXPECT_EQ(UsesOf(*s), 2u);
        delete shared;
        EXPECT_EQ(UsesOf(*s), 1u);
    });
}
