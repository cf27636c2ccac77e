// tests/Ostra/String/StringKindTest.cpp: a string of a program's own class is taken as one of its base.
#include "Ostra/String/StringSupport.h"

namespace
{
// Classes of programs: other tables of virtual operations than the library's own strings have.
class Narrow : public CT_CString
{
public:
    using CT_CString::CT_CString;
    ~Narrow() override {}
};

class Wide : public CT_UString
{
public:
    using CT_UString::CT_UString;
    ~Wide() override {}
};
} // namespace

TEST(StringKind, ADerivedStringOfUnitsIsTakenByBothClasses)
{
    const Wide word(U(u"b\u00E9d"));
    CT_UString units(U(u"ac"));
    units.v_Insert(&word, ALL, 1);
    EXPECT_EQ(Text(units), u"ab\u00E9dc");
    EXPECT_EQ(units.vn_Find(&word), 1u);
    EXPECT_EQ(units.vi_Compare(&word, 0, 3, 1), 0);
    CT_CString bytes("ac");
    bytes.v_Insert(&word, 1, 1);
    EXPECT_EQ(Text(bytes), "abc");
}

TEST(StringKind, ADerivedStringOfBytesIsTakenByBothClasses)
{
    const Narrow word("bed");
    CT_UString units(U(u"ac"));
    units.v_Insert(&word, ALL, 1);
    EXPECT_EQ(Text(units), u"abedc");
    EXPECT_EQ(units.vn_Find(&word), 1u);
    CT_CString bytes("ac");
    bytes.v_Insert(&word, ALL, 1);
    EXPECT_EQ(Text(bytes), "abedc");
    EXPECT_EQ(bytes.vn_Find(&word), 1u);
    EXPECT_EQ(bytes.vi_Compare(&word, 0, 3, 1), 0);
}

TEST(StringKind, ADerivedStringIsAPatternOfBothClasses)
{
    const Narrow bytes("b*d");
    const Wide units(U(u"b*d"));
    for (const CT_String* pattern :
         {static_cast<const CT_String*>(&bytes), static_cast<const CT_String*>(&units)}) {
        EXPECT_EQ(CT_CString("bread").vb_Match(pattern), 1);
        EXPECT_EQ(CT_CString("break").vb_Match(pattern), 0);
        EXPECT_EQ(CT_UString(U(u"bread")).vb_Match(pattern), 1);
        EXPECT_EQ(CT_UString(U(u"break")).vb_Match(pattern), 0);
    }
}
