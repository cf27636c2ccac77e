// tests/Ostra/String/LiteralTest.cpp: u"..." literals in place of const unsigned short*.
#include <Ostra/Frame/Text.h>
#include <Ostra/String/CString.h>
#include <Ostra/String/UString.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <type_traits>

namespace
{
constexpr char16_t STREET[] = u"Stra\u00DFe";

// What could be written before means what it meant.
static_assert(std::is_constructible_v<CT_UString, int>);
static_assert(std::is_constructible_v<CT_CString, int>);
static_assert(std::is_constructible_v<CT_UString, const unsigned short*, int>);
static_assert(std::is_constructible_v<CT_CString, const unsigned short*, int, int>);
static_assert(std::is_constructible_v<CT_UString, const char*, int, int>);
static_assert(!std::is_constructible_v<CT_UString, std::nullptr_t>);
static_assert(!std::is_constructible_v<CT_CString, std::nullptr_t>);
} // namespace

TEST(Literal, MakesTheStringThatTheUnitsMake)
{
    const CT_UString units(STREET);
    EXPECT_EQ(units.vi_Compare(qcuz_Text(STREET)), 0);
    EXPECT_EQ(units.vn_GetLength(), 6u);
    const CT_UString first(STREET, 3);
    EXPECT_STREQ(CT_CString(&first).qccz_Get(), "Str");

    const CT_CString bytes(STREET, 0xFFFFFFFF, 1252);
    EXPECT_STREQ(bytes.qccz_Get(), "Stra\xDF"
                                   "e");
    EXPECT_EQ(bytes.n_GetCodePage(), 1252u);
    EXPECT_STREQ(CT_CString(u"Str", 2).qccz_Get(), "St");
}

TEST(Literal, SetsAsTheUnitsDo)
{
    CT_UString units;
    units.v_Set(STREET);
    EXPECT_EQ(units.vi_Compare(qcuz_Text(STREET)), 0);
    units.v_Set(STREET, 3);
    EXPECT_EQ(units.vn_GetLength(), 3u);

    CT_CString bytes(1252);
    bytes.v_Set(STREET);
    EXPECT_STREQ(bytes.qccz_Get(), "Stra\xDF"
                                   "e");
    CT_String* any = &bytes;
    any->v_Set(u"any");
    EXPECT_STREQ(bytes.qccz_Get(), "any");
}

TEST(Literal, ComparesAsTheUnitsDo)
{
    const CT_UString units(STREET);
    const CT_CString bytes(STREET, 0xFFFFFFFF, 1252);
    const CT_String* const all[] = {&units, &bytes};
    for (const CT_String* text : all) {
        EXPECT_EQ(text->vi_Compare(STREET), 0);
        EXPECT_LT(text->vi_Compare(u"Strb"), 0);
        EXPECT_GT(text->vi_Compare(u"Straa"), 0);
        EXPECT_EQ(text->vi_Compare(u"ra", 2, 2), 0);
    }
    EXPECT_EQ(units.vi_Compare(STREET), 0);
    EXPECT_EQ(units.vi_Compare(u"Stx", 2), units.vi_Compare(qcuz_Text(u"Stx"), 2));
    EXPECT_EQ(bytes.vi_Compare(STREET), 0);
    // The other forms are still seen behind the added one.
    EXPECT_EQ(units.vi_Compare(&bytes), 0);
    EXPECT_GT(bytes.vi_Compare("Str"), 0);
}
