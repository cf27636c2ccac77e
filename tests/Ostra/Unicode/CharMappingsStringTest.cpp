// tests/Ostra/Unicode/CharMappingsStringTest.cpp: mappings of whole strings, in place.
#include "Ostra/String/StringSupport.h"
#include "Ostra/Unicode/CharSupport.h"
#include "Support/Failure.h"
#include "Support/Private.h"

#include <Ostra/Unicode/CharMappings.h>

using M = CT_CharMappings;
using Map = Unit (*)(Unit);
using MapString = void (*)(CT_UString*);
using namespace std::string_literals;

OSTRA_PRIVATE(AnyMap, void (*)(CT_UString*, Map), &M::sv_MapString);

struct Mapping
{
    const char* name;
    Map map;
    void (*string)(CT_UString*);
    char16_t from, to; // one pair of it
};

static const Mapping MAPPINGS[] = {
    {"ToUpper", M::su_ToUpper, M::sv_ToUpper, u'\u00E9', u'\u00C9'},
    {"ToLower", M::su_ToLower, M::sv_ToLower, u'\u00C9', u'\u00E9'},
    {"ToBase", M::su_ToBase, M::sv_ToBase, u'\u00E9', u'e'},
    {"FoldDigit", M::su_FoldDigit, M::sv_FoldDigit, u'\u0663', u'3'},
    {"FoldCZone", M::su_FoldCZone, M::sv_FoldCZone, u'\uFF21', u'A'},
    {"HiraganaToKatakana", M::su_HiraganaToKatakana, M::sv_HiraganaToKatakana, u'\u3042',
     u'\u30A2'},
    {"KatakanaToHiragana", M::su_KatakanaToHiragana, M::sv_KatakanaToHiragana, u'\u30A2',
     u'\u3042'},
};

// No mapping changes it.
constexpr char16_t IDEOGRAPH = u'\u4E00';

static CT_UString* Store(CT_UString& s, const std::u16string& text)
{
    s.v_Set(U(text.c_str()), static_cast<unsigned>(text.size()));
    return &s;
}

// What the mapping makes of a text: a high surrogate takes the unit behind it along.
static std::u16string Mapped(const std::u16string& text, Map map)
{
    std::u16string out = text;
    for (std::size_t n = 0; n < out.size(); ++n)
        if (0xD800 <= out[n] && out[n] <= 0xDBFF)
            ++n;
        else
            out[n] = static_cast<char16_t>(map(out[n]));
    return out;
}

// A string that tells which of its units are read and written.
class WatchedString : public CT_UString
{
public:
    using CT_UString::CT_UString;
    using CT_UString::vv_SetAt;
    unsigned short vu_GetAt(unsigned n_Offset) const override
    {
        read.push_back(n_Offset);
        return CT_UString::vu_GetAt(n_Offset);
    }
    void vv_SetAt(unsigned short u_New, unsigned n_Offset) override
    {
        written.push_back(n_Offset);
        CT_UString::vv_SetAt(u_New, n_Offset);
    }

    mutable std::vector<unsigned> read;
    std::vector<unsigned> written;
};

// Maps a text whose block another string holds, and expects what must become of both.
template <class String>
static void CheckSharedAs(const Mapping& mapping, const std::u16string& text)
{
    String s;
    Store(s, text);
    const CT_UString other(&s);
    const void* before = DataOf(s);
    mapping.string(&s);
    const std::u16string expected = Mapped(text, mapping.map);
    EXPECT_EQ(Text(s), expected);
    EXPECT_EQ(Text(other), text);
    EXPECT_EQ(DataOf(other), before);
    EXPECT_EQ(DataOf(s) == before, expected == text);
    EXPECT_EQ(UsesOf(other), expected == text && before ? 2u : 1u);
}

static void CheckShared(const Mapping& mapping, const std::u16string& text)
{
    CheckSharedAs<CT_UString>(mapping, text);
    CheckSharedAs<WatchedString>(mapping, text);
}

// ---- What is mapped ---------------------------------------------------------------------------

TEST(CharMappings, StringsMapUnitByUnit)
{
    for (const Mapping& mapping : MAPPINGS) {
        SCOPED_TRACE(mapping.name);
        EXPECT_EQ(mapping.map(mapping.from), mapping.to);
        CT_UString s;
        Store(s, {mapping.from, IDEOGRAPH, mapping.from, mapping.from});
        mapping.string(&s);
        EXPECT_EQ(Text(s), (std::u16string{mapping.to, IDEOGRAPH, mapping.to, mapping.to}));
    }
}

// All units in one string, but for the high surrogates; a zero is a unit like any other.
TEST(CharMappings, StringOfAllUnitsMapsAsItsCharactersDo)
{
    std::u16string all;
    for (unsigned unit = 0; unit < UNITS; ++unit)
        if (unit < 0xD800 || unit > 0xDBFF)
            all += static_cast<char16_t>(unit);
    for (const Mapping& mapping : MAPPINGS) {
        CT_UString s;
        mapping.string(Store(s, all));
        EXPECT_TRUE(Text(s) == Mapped(all, mapping.map)) << mapping.name;
    }
}

TEST(CharMappings, StringMapsPastZeroUnits)
{
    for (const Mapping& mapping : MAPPINGS) {
        SCOPED_TRACE(mapping.name);
        CT_UString s;
        Store(s, {mapping.from, 0, mapping.from, 0, mapping.from});
        mapping.string(&s);
        EXPECT_EQ(Text(s), (std::u16string{mapping.to, 0, mapping.to, 0, mapping.to}));
    }
}

TEST(CharMappings, MappingReachesTheLengthAndNotTheRoom)
{
    CT_UString s;
    Store(s, u"abcd");
    s.v_Replace(U(u"xy"));
    M::sv_ToUpper(&s);
    EXPECT_EQ(Text(s), u"XY");
    EXPECT_EQ(s.vn_GetLength(), 2u);
}

// ---- Surrogates -------------------------------------------------------------------------------

TEST(CharMappings, HighSurrogateTakesTheUnitBehindItAlong)
{
    for (const Mapping& mapping : MAPPINGS) {
        SCOPED_TRACE(mapping.name);
        std::u16string text, expected;
        for (unsigned unit = 0xD7FF; unit <= 0xE000; ++unit) {
            const bool high = 0xD800 <= unit && unit <= 0xDBFF;
            text += {static_cast<char16_t>(unit), mapping.from, mapping.from};
            expected += {static_cast<char16_t>(unit), high ? mapping.from : mapping.to, mapping.to};
        }
        CT_UString s;
        mapping.string(Store(s, text));
        EXPECT_TRUE(Text(s) == expected);
    }
}

TEST(CharMappings, SurrogatePairsStayAndTheirNeighboursMap)
{
    CT_UString s;
    M::sv_ToUpper(Store(s, u"a\xD800\xDC00z\xDBFF\xDFFFy"));
    EXPECT_EQ(Text(s), u"A\xD800\xDC00Z\xDBFF\xDFFFY");
}

TEST(CharMappings, SecondOfTwoHighSurrogatesTakesNothingAlong)
{
    CT_UString s;
    M::sv_ToUpper(Store(s, u"\xD800\xDB80zz"));
    EXPECT_EQ(Text(s), u"\xD800\xDB80ZZ");
}

TEST(CharMappings, StringMayEndInAHighSurrogate)
{
    for (char16_t high : u"\xD800\xDB7F\xDB80\xDBFF"s) {
        CT_UString s;
        M::sv_ToUpper(Store(s, {u'a', high}));
        EXPECT_EQ(Text(s), (std::u16string{u'A', high}));
        M::sv_ToUpper(Store(s, {high}));
        EXPECT_EQ(Text(s), (std::u16string{high}));
    }
}

// The letter in the room behind the end stays.
TEST(CharMappings, NothingBehindAHighSurrogateAtTheEndIsTouched)
{
    CT_UString s;
    Store(s, u"a\xD800\0bc"s);
    const auto data = static_cast<const char16_t*>(DataOf(s));
    s.vv_Update();
    ASSERT_EQ(s.vn_GetLength(), 2u);
    M::sv_ToUpper(&s);
    EXPECT_EQ(Text(s), u"A\xD800");
    EXPECT_EQ(DataOf(s), data);
    EXPECT_EQ(std::u16string(data + 3, 2), u"bc");
}

// ---- What is asked, read and written ------------------------------------------------------------

static std::u16string s_Asked;

static Unit Shout(Unit unit)
{
    s_Asked += static_cast<char16_t>(unit);
    return unit == u'a' ? u'A' : unit;
}

static std::u16string AskedOf(const std::u16string& text)
{
    CT_UString s;
    s_Asked.clear();
    Private(AnyMap())(Store(s, text), Shout);
    return s_Asked;
}

TEST(CharMappings, MapIsAskedForEveryUnitThatIsNotSteppedOver)
{
    EXPECT_EQ(AskedOf(u"abc"), u"abc");
    EXPECT_EQ(AskedOf(u""), u"");
    EXPECT_EQ(AskedOf(u"a\0b"s), u"a\0b"s);
    EXPECT_EQ(AskedOf(u"a\xD800\xDC00z"), u"az");
    EXPECT_EQ(AskedOf(u"\xD800zy\xDBFFx"), u"y");
    EXPECT_EQ(AskedOf(u"\xDC00z\xDFFF"), u"\xDC00z\xDFFF");
    EXPECT_EQ(AskedOf(u"z\xD800"), u"z");
    EXPECT_EQ(AskedOf(u"\xD800\0z"s), u"z");
    EXPECT_EQ(AskedOf(u"\xD800\xD800\xD800z"), u"");
}

TEST(CharMappings, UnitsComeFromTheStringAndOnlyChangedOnesGoBack)
{
    using Offsets = std::vector<unsigned>;
    WatchedString s(U(u"aZ\xD800"
                      u"a"
                      u"a\xDC00z\xDBFF"));
    M::sv_ToUpper(&s);
    EXPECT_EQ(Text(s), u"AZ\xD800"
                       u"aA\xDC00Z\xDBFF");
    EXPECT_EQ(s.read, (Offsets{0, 1, 2, 4, 5, 6, 7}));
    EXPECT_EQ(s.written, (Offsets{0, 4, 6}));
    WatchedString empty;
    M::sv_ToUpper(&empty);
    EXPECT_EQ(empty.read, Offsets());
}

// ---- Sharing ----------------------------------------------------------------------------------

TEST(CharMappings, StringWithoutAChangeStaysShared)
{
    for (const Mapping& mapping : MAPPINGS) {
        SCOPED_TRACE(mapping.name);
        CheckShared(mapping, {IDEOGRAPH});
        CheckShared(mapping, {IDEOGRAPH, mapping.to, IDEOGRAPH, 0, IDEOGRAPH});
        CheckShared(mapping, {0xD800, mapping.from, 0xDBFF, mapping.from, 0xDB80});
    }
}

TEST(CharMappings, StringWithAChangeTakesItsOwnBlock)
{
    for (const Mapping& mapping : MAPPINGS) {
        SCOPED_TRACE(mapping.name);
        CheckShared(mapping, {mapping.from});
        CheckShared(mapping, {IDEOGRAPH, IDEOGRAPH, mapping.from});
        CheckShared(mapping, {mapping.from, 0, IDEOGRAPH});
        CheckShared(mapping, {0xD800, mapping.from, mapping.from});
    }
}

TEST(CharMappings, StringWithABlockOfItsOwnKeepsIt)
{
    for (const Mapping& mapping : MAPPINGS) {
        CT_UString s;
        Store(s, {IDEOGRAPH, mapping.from, mapping.from});
        const void* before = DataOf(s);
        mapping.string(&s);
        EXPECT_EQ(DataOf(s), before) << mapping.name;
        EXPECT_EQ(UsesOf(s), 1u);
    }
}

TEST(CharMappings, EmptyStringStaysAsItIs)
{
    for (const Mapping& mapping : MAPPINGS) {
        SCOPED_TRACE(mapping.name);
        CT_UString s;
        mapping.string(&s);
        EXPECT_EQ(DataOf(s), nullptr);
        CheckShared(mapping, u"");
        CT_UString room(8u);
        const CT_UString other(&room);
        mapping.string(&room);
        EXPECT_EQ(UsesOf(room), 2u);
        EXPECT_EQ(room.vn_GetLength(), 0u);
    }
}

// All strings of up to four units of every kind.
TEST(CharMappings, ShortStringsMapAndShareAsTheModelDoes)
{
    for (const Mapping& mapping : MAPPINGS) {
        const char16_t units[] = {mapping.from, IDEOGRAPH, 0, 0xD800, 0xDBFF, 0xDC00};
        std::vector<std::u16string> texts{u""};
        for (std::size_t n = 0; texts[n].size() < 4; ++n)
            for (char16_t unit : units)
                texts.push_back(texts[n] + unit);
        for (const std::u16string& text : texts) {
            SCOPED_TRACE(mapping.name + " of "s + Narrow(text));
            CheckShared(mapping, text);
        }
    }
}

// ---- Callers of both widths -----------------------------------------------------------------

static std::string ThroughWide(const char* text, unsigned codePage, MapString map)
{
    const CT_CString narrow(text, ALL, codePage);
    CT_UString wide(&narrow);
    map(&wide);
    return Text(CT_CString(&wide, codePage));
}

TEST(CharMappings, BytesGoThroughAWideString)
{
    EXPECT_EQ(ThroughWide("\xE9t\xE9 \xFF \xDF", 1252, M::sv_ToUpper), "\xC9T\xC9 \x9F \xDF");
    EXPECT_EQ(ThroughWide("\xC9T\xC9 \x9F", 1252, M::sv_ToLower), "\xE9t\xE9 \xFF");
    EXPECT_EQ(ThroughWide("\xC9t\xE9", 1252, M::sv_ToBase), "Ete");
    EXPECT_EQ(ThroughWide("\xB2\xB3\xB9", 1252, M::sv_FoldDigit), "231");
    EXPECT_EQ(ThroughWide("\xEF\xF0\xE8", 1251, M::sv_ToUpper), "\xCF\xD0\xC8");
    EXPECT_EQ(ThroughWide("\xB6\xC5", 932, M::sv_HiraganaToKatakana), "\x83\x4A\x83\x69");
    EXPECT_EQ(ThroughWide("\xB6\xC5", 932, M::sv_KatakanaToHiragana), "\x82\xA9\x82\xC8");
    EXPECT_EQ(ThroughWide("\x83\x4A", 932, M::sv_KatakanaToHiragana), "\x82\xA9");
}

// Casing of a string itself knows ASCII only.
TEST(CharMappings, CaseOutsideAsciiIsWhatTheStringLacks)
{
    CT_UString s(U(u"\u00E9t\u00E9"));
    s.vv_ToUpper();
    EXPECT_EQ(Text(s), u"\u00E9T\u00E9");
    M::sv_ToUpper(&s);
    EXPECT_EQ(Text(s), u"\u00C9T\u00C9");
}
