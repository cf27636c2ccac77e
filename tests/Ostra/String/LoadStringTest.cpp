// tests/Ostra/String/LoadStringTest.cpp: texts of string tables, on both roads.
#include <Ostra/Frame/OstraDLLMain.h>
#include <Ostra/String/LoadString.h>
#include <System/OS/OS.h>

#include <windows.h>

#include "Ostra/String/StringSupport.h"
#include "Support/TestStrings.h"

#include <algorithm>

#undef LoadString // the suite's name, which Windows gives to a service

namespace
{
constexpr HINSTANCE PROGRAM = nullptr;
constexpr unsigned MISSING = 9999;
constexpr unsigned LIMIT = 2047;

const std::string LONG_TEXT = TEST_LONG_TEXT;

std::u16string Wide(const std::string& ascii)
{
    return {ascii.begin(), ascii.end()};
}

// What the 8-bit road makes of a text.
std::u16string ThroughAnsi(const char16_t* text)
{
    const CT_CString bytes(U(text), ALL, 0);
    return Text(CT_UString(&bytes));
}

std::u16string OnThisRoad(const char16_t* text)
{
    return CT_OS::sb_GetIsWindowsNT() ? text : ThroughAnsi(text);
}

// An area whose units behind the room tell whether they were written.
struct Area
{
    explicit Area(unsigned room_) : room(room_) { std::fill_n(units, 4000, MARK); }
    ~Area()
    {
        for (unsigned n = room; n < 4000; ++n)
            if (units[n] != MARK)
                ADD_FAILURE() << "unit " << n << " lies behind the room of " << room;
    }
    std::u16string Read() const { return reinterpret_cast<const char16_t*>(units); }

    static constexpr unsigned short MARK = 0xABCD;
    unsigned room;
    unsigned short units[4000];
};

std::u16string Load(unsigned room, unsigned id)
{
    Area area(room);
    CT_LoadString::sv_LoadString(area.units, room, PROGRAM, id);
    return area.Read();
}

void LoadList(CT_String* out, unsigned id, ...)
{
    va_list args;
    va_start(args, id);
    CT_LoadString::sv_LoadStringVaList(out, PROGRAM, id, args);
    // The list can be read once more.
    CT_LoadString::sv_LoadStringVaList(out, PROGRAM, id, args);
    va_end(args);
}
} // namespace

// ---- As they are ----------------------------------------------------------------------------

TEST(LoadString, LoadsIntoBothClasses)
{
    OnBoth([](bool wide) {
        const auto s = Make(wide, "before");
        const auto sharer = Share(*s);
        CT_LoadString::sv_LoadString(s.get(), PROGRAM, TEST_STRING_PLAIN);
        EXPECT_EQ(Ascii(*s), "Plain text");
        EXPECT_EQ(Ascii(*sharer), "before");
        CT_LoadString::sv_LoadString(s.get(), GetModuleHandleA(nullptr), TEST_STRING_NUMBER);
        EXPECT_EQ(Ascii(*s), "Number %u of %d");
    });
}

TEST(LoadString, LoadsFromTheLibrarysOwnTable)
{
    const HINSTANCE library = CT_OstraDLLMain::sh_GetInstance();
    OnBoth([&](bool wide) {
        const auto s = Make(wide, "");
        CT_LoadString::sv_LoadString(s.get(), library, 60006);
        EXPECT_EQ(Ascii(*s), "Out of memory");
        // The program's table is another one.
        CT_LoadString::sv_LoadString(s.get(), PROGRAM, 60006);
        EXPECT_EQ(Ascii(*s), "");
    });
}

TEST(LoadString, MissingTextIsEmpty)
{
    OnBoth([](bool wide) {
        const auto s = Make(wide, "before");
        const auto sharer = Share(*s);
        CT_LoadString::sv_LoadString(s.get(), PROGRAM, MISSING);
        EXPECT_EQ(Ascii(*s), "");
        EXPECT_EQ(Ascii(*sharer), "before");
    });
    EXPECT_EQ(Load(20, MISSING), u"");
    EXPECT_EQ(Load(1, MISSING), u"");
}

TEST(LoadString, LongTextIsCut)
{
    OnBoth([](bool wide) {
        const auto s = Make(wide, "before");
        CT_LoadString::sv_LoadString(s.get(), PROGRAM, TEST_STRING_LONG);
        EXPECT_EQ(Ascii(*s), LONG_TEXT.substr(0, LIMIT));
    });
}

TEST(LoadString, CharactersOutsideTheCodePagePassTheWideRoadOnly)
{
    CT_UString wide;
    CT_LoadString::sv_LoadString(&wide, PROGRAM, TEST_STRING_ACCENT);
    EXPECT_EQ(Text(wide), OnThisRoad(u"Caf\u00E9 %u"));
    CT_LoadString::sv_LoadString(&wide, PROGRAM, TEST_STRING_KANA);
    EXPECT_EQ(Text(wide), OnThisRoad(u"a\u30BD\u30BDb"));
}

// The wide road converts to the string's code page, the other one takes the bytes as they come.
TEST(LoadString, BytesAreOfTheStringsCodePageOnTheWideRoad)
{
    CT_CString bytes("", ALL, 850);
    CT_LoadString::sv_LoadString(&bytes, PROGRAM, TEST_STRING_ACCENT);
    const CT_CString ansi(U(u"Caf\u00E9 %u"), ALL, 0);
    EXPECT_EQ(Text(bytes), CT_OS::sb_GetIsWindowsNT() ? "Caf\x82 %u" : Text(ansi));
    EXPECT_EQ(bytes.n_GetCodePage(), 850u);
}

// ---- Into an area ---------------------------------------------------------------------------

TEST(LoadString, AreaTakesWhatItHasRoomFor)
{
    const std::u16string text = u"Plain text";
    for (unsigned room = 1; room <= 14; ++room) {
        SCOPED_TRACE(room);
        EXPECT_EQ(Load(room, TEST_STRING_PLAIN), text.substr(0, room - 1));
    }
}

TEST(LoadString, AreaWithoutRoomIsLeftAlone)
{
    Area area(0);
    CT_LoadString::sv_LoadString(area.units, 0, PROGRAM, TEST_STRING_PLAIN);
    CT_LoadString::sv_LoadString(area.units, 0, PROGRAM, MISSING);
    CT_LoadString::sv_LoadStringVA(area.units, 0, PROGRAM, TEST_STRING_PLAIN);
}

// The 8-bit road has room for 2,047 bytes, the wide one for what the area has.
TEST(LoadString, LargeAreaTakesMoreOnTheWideRoad)
{
    const std::string expected =
        CT_OS::sb_GetIsWindowsNT() ? LONG_TEXT : LONG_TEXT.substr(0, LIMIT);
    EXPECT_EQ(Load(3000, TEST_STRING_LONG), Wide(expected));
}

// On the 8-bit road bytes are counted: where characters have two, fewer of them fit, and one may be
// cut in half.
TEST(LoadString, AreaTakesTextOfDoubleBytesWithoutAGap)
{
    const std::u16string all = OnThisRoad(u"a\u30BD\u30BDb");
    for (unsigned room : {2, 4, 20}) {
        SCOPED_TRACE(room);
        Area area(room);
        CT_LoadString::sv_LoadString(area.units, room, PROGRAM, TEST_STRING_KANA);
        const std::u16string text = area.Read();
        EXPECT_EQ(text, all.substr(0, text.size()));
        EXPECT_GE(text.size(), std::min(room - 1, 2u));
        EXPECT_LT(text.size(), room);
        for (auto n = text.size(); n < std::min(room, 7u); ++n)
            EXPECT_TRUE(area.units[n] == 0 || area.units[n] == Area::MARK);
    }
    EXPECT_EQ(Load(3, TEST_STRING_KANA).size(), 2u);
    EXPECT_EQ(Load(20, TEST_STRING_KANA), all);
}

// ---- As formats -----------------------------------------------------------------------------

TEST(LoadString, FormatsNumbers)
{
    OnBoth([](bool wide) {
        const auto s = Make(wide, "before");
        CT_LoadString::sv_LoadStringVA(s.get(), PROGRAM, TEST_STRING_NUMBER, 3u, -4);
        EXPECT_EQ(Ascii(*s), "Number 3 of -4");
        LoadList(s.get(), TEST_STRING_NUMBER, 5u, -6);
        EXPECT_EQ(Ascii(*s), "Number 5 of -6");
    });
    Area area(40);
    CT_LoadString::sv_LoadStringVA(area.units, 40, PROGRAM, TEST_STRING_NUMBER, 7u, 8);
    EXPECT_EQ(area.Read(), u"Number 7 of 8");
}

// %s takes text of the format's width, %S of the other one.
TEST(LoadString, WidthOfTextArgumentsFollowsTheFormat)
{
    CT_CString bytes;
    CT_LoadString::sv_LoadStringVA(&bytes, PROGRAM, TEST_STRING_TEXT, "narrow", u"wide");
    EXPECT_EQ(Text(bytes), "Text narrow, wide");
    LoadList(&bytes, TEST_STRING_TEXT, "n", u"w");
    EXPECT_EQ(Text(bytes), "Text n, w");
    CT_UString units;
    CT_LoadString::sv_LoadStringVA(&units, PROGRAM, TEST_STRING_TEXT, u"wide", "narrow");
    EXPECT_EQ(Text(units), u"Text wide, narrow");
    LoadList(&units, TEST_STRING_TEXT, u"w", "n");
    EXPECT_EQ(Text(units), u"Text w, n");
    Area area(40);
    CT_LoadString::sv_LoadStringVA(area.units, 40, PROGRAM, TEST_STRING_TEXT, u"wide", "narrow");
    EXPECT_EQ(area.Read(), u"Text wide, narrow");
}

TEST(LoadString, FormatKeepsItsCharacters)
{
    CT_UString units;
    CT_LoadString::sv_LoadStringVA(&units, PROGRAM, TEST_STRING_ACCENT, 9u);
    EXPECT_EQ(Text(units), OnThisRoad(u"Caf\u00E9 9"));
    Area area(40);
    CT_LoadString::sv_LoadStringVA(area.units, 40, PROGRAM, TEST_STRING_ACCENT, 9u);
    EXPECT_EQ(area.Read(), OnThisRoad(u"Caf\u00E9 9"));
    // A string of bytes takes them from the system's code page on both roads.
    CT_CString bytes("", ALL, 850);
    CT_LoadString::sv_LoadStringVA(&bytes, PROGRAM, TEST_STRING_ACCENT, 9u);
    EXPECT_EQ(Text(bytes), Text(CT_CString(U(u"Caf\u00E9 9"), ALL, 0)));
    EXPECT_EQ(bytes.n_GetCodePage(), 850u);
}

TEST(LoadString, MissingFormatIsEmpty)
{
    OnBoth([](bool wide) {
        const auto s = Make(wide, "before");
        CT_LoadString::sv_LoadStringVA(s.get(), PROGRAM, MISSING, 1u);
        EXPECT_EQ(Ascii(*s), "");
        s->v_Set("before", ALL, 1252);
        LoadList(s.get(), MISSING, 1u);
        EXPECT_EQ(Ascii(*s), "");
    });
    Area area(20);
    CT_LoadString::sv_LoadStringVA(area.units, 20, PROGRAM, MISSING, 1u);
    EXPECT_EQ(area.Read(), u"");
}

TEST(LoadString, FormattedTextIsCut)
{
    const std::string longer(5000, 'x');
    const std::u16string wide_longer(5000, u'x');
    CT_CString bytes;
    CT_LoadString::sv_LoadStringVA(&bytes, PROGRAM, TEST_STRING_TEXT, longer.c_str(), u"");
    EXPECT_EQ(Text(bytes), "Text " + longer.substr(0, LIMIT - 5));
    CT_UString units;
    CT_LoadString::sv_LoadStringVA(&units, PROGRAM, TEST_STRING_TEXT, wide_longer.c_str(), "");
    EXPECT_EQ(Text(units), u"Text " + wide_longer.substr(0, LIMIT - 5));
    for (unsigned room : {1, 6, 100, 3000}) {
        Area area(room);
        CT_LoadString::sv_LoadStringVA(area.units, room, PROGRAM, TEST_STRING_TEXT,
                                       wide_longer.c_str(), "");
        EXPECT_EQ(area.Read(), (u"Text " + wide_longer).substr(0, room - 1));
    }
}

TEST(LoadString, LongFormatIsCut)
{
    CT_UString units;
    CT_LoadString::sv_LoadStringVA(&units, PROGRAM, TEST_STRING_LONG);
    EXPECT_EQ(Text(units), Wide(LONG_TEXT.substr(0, LIMIT)));
    Area area(3000);
    CT_LoadString::sv_LoadStringVA(area.units, 3000, PROGRAM, TEST_STRING_LONG);
    EXPECT_EQ(area.Read(), Wide(LONG_TEXT.substr(0, LIMIT)));
}

TEST(LoadString, FormatForAnotherClassDoesNothing)
{
    CT_String& other = CT_String::sco_Object;
    CT_LoadString::sv_LoadStringVA(&other, PROGRAM, TEST_STRING_NUMBER, 1u, 2);
    CT_LoadString::sv_LoadString(&other, PROGRAM, TEST_STRING_PLAIN);
    EXPECT_EQ(other.vn_GetLength(), 0u);
}
