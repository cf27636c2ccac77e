// tests/System/FontManager/LogicalFontTest.cpp
#include <Ostra/String/UString.h>

#include <cstring>
#include <memory>
#include <type_traits>

#include "Support/Private.h"
#include "System/FontManager/FontSupport.h"

#include <System/OS/OS.h>

OSTRA_PRIVATE(FontWidths, int* CT_LogicalFont::*, &CT_LogicalFont::pn_Widths);
OSTRA_PRIVATE(FontRequested, unsigned CT_LogicalFont::*, &CT_LogicalFont::n_RequestedCharset);
OSTRA_PRIVATE(FontOnNT, int*, &CT_OS::sb_IsWindowsNT);
OSTRA_PRIVATE(FontOn95, int*, &CT_OS::sb_IsWindows95);
OSTRA_PRIVATE(FontOn32s, int*, &CT_OS::sb_IsWindows32s);

namespace
{
constexpr unsigned ALL = 0xFFFFFFFF;

unsigned RequestedOf(const CT_LogicalFont& font)
{
    return font.*Private(FontRequested());
}

bool IsEqual(const CT_LogicalFont& font, const Request& r, unsigned resolution = 96)
{
    const CT_CString name(r.name.c_str());
    return font.b_IsEqual(&name, r.charset, r.points, r.bold, r.italic, r.underline, r.strikeOut,
                          resolution);
}

const Request missing(unsigned charset)
{
    Request request;
    request.name = "No Such Face";
    request.charset = charset;
    return request;
}

// Another family of systems for the life of a scope.
class Family
{
public:
    Family(int nt, int nine_five, int subset)
        : before{*Private(FontOnNT()), *Private(FontOn95()), *Private(FontOn32s())}
    {
        Set(nt, nine_five, subset);
    }
    ~Family() { Set(before[0], before[1], before[2]); }
    Family(const Family&) = delete;
    Family& operator=(const Family&) = delete;

private:
    static void Set(int nt, int nine_five, int subset)
    {
        *Private(FontOnNT()) = nt;
        *Private(FontOn95()) = nine_five;
        *Private(FontOn32s()) = subset;
    }
    const int before[3];
};

// The first family of a character set, or an empty name.
struct Search
{
    BYTE charset;
    std::string name;
};

int CALLBACK FindCharset(const LOGFONTA* font, const TEXTMETRICA*, DWORD, LPARAM search)
{
    Search& s = *reinterpret_cast<Search*>(search);
    if (font->lfCharSet != s.charset || font->lfFaceName[0] == '@')
        return 1;
    s.name = font->lfFaceName;
    return 0;
}

std::string FamilyWith(BYTE charset)
{
    Search search{charset, ""};
    EnumFontFamiliesA(Screen(), nullptr, FindCharset, reinterpret_cast<LPARAM>(&search));
    return search.name;
}
} // namespace

TEST(LogicalFont, StructuresHaveThePublishedSizes)
{
    EXPECT_EQ(sizeof(LOGFONTA), 60u);
    EXPECT_EQ(sizeof(TEXTMETRICA), 56u);
    EXPECT_EQ(sizeof(LOCALESIGNATURE), 32u);
    EXPECT_FALSE(std::is_polymorphic_v<CT_LogicalFont>);
}

TEST(LogicalFont, RequestIsKeptAsItWasMade)
{
    OSTRA_NEEDS_FONTS();
    const Screen dc;
    MadeFont font(dc, {"DejaVu Sans", 0, 12, 1, 1, 1, 1});
    EXPECT_STREQ(static_cast<const CT_CString*>(font->pcco_GetName())->qccz_Get(), "DejaVu Sans");
    EXPECT_EQ(font->n_GetPoints(), 12u);
    EXPECT_EQ(font->n_GetCharSet(), 0u);
    EXPECT_EQ(font->i_GetHeight(), -16);
    EXPECT_EQ(font->b_GetBold(), 1);
    EXPECT_EQ(font->b_GetItalic(), 1);
    EXPECT_EQ(font->b_GetUnderline(), 1);
    EXPECT_EQ(font->b_GetStrikeOut(), 1);
    EXPECT_EQ(font->n_GetCodePage(), 1252u);
    EXPECT_EQ(font->b_IsTrueType(), 1);
    EXPECT_EQ(font->b_IsDBCS(), 0);
    EXPECT_EQ(font->b_IsLocked(), 0);
    EXPECT_EQ(RequestedOf(font.font), 0u);
    const LOGFONTA& request = *font->pcso_GetLogFont();
    EXPECT_STREQ(request.lfFaceName, "DejaVu Sans");
    EXPECT_EQ(request.lfWeight, 700);
    EXPECT_EQ(request.lfWidth, 0);
    EXPECT_EQ(request.lfPitchAndFamily, 0);
    const TEXTMETRICA& metrics = *font->pcso_GetTextMetric();
    EXPECT_EQ(metrics.tmHeight, metrics.tmAscent + metrics.tmDescent);
    EXPECT_EQ(metrics.tmHeight - metrics.tmInternalLeading, 16);
    EXPECT_EQ(metrics.tmWeight, 700);
    EXPECT_NE(metrics.tmItalic, 0);
}

TEST(LogicalFont, StylesThatArentAskedForAre0)
{
    OSTRA_NEEDS_FONTS();
    const Screen dc;
    MadeFont font(dc, {});
    EXPECT_EQ(font->b_GetBold() + font->b_GetItalic() + font->b_GetUnderline() +
                  font->b_GetStrikeOut(),
              0);
    EXPECT_EQ(font->pcso_GetLogFont()->lfWeight, 400);
}

TEST(LogicalFont, HeightsAreRoundedToTheNearestDot)
{
    OSTRA_NEEDS_FONTS();
    const Screen dc;
    for (unsigned points = 1; points <= 100; ++points) {
        MadeFont font(dc, {"DejaVu Sans", 0, points});
        EXPECT_EQ(-font->i_GetHeight(), static_cast<int>(points * 96.0 / 72 + 0.5)) << points;
    }
}

TEST(LogicalFont, SizesBeyondAllMeasureAreNoError)
{
    OSTRA_NEEDS_FONTS();
    for (const unsigned points : {22369621u, 0x7FFFFFFFu, 0xFFFFFFFFu}) {
        MadeFont font(Screen(), {"DejaVu Sans", 0, points});
        EXPECT_EQ(font->n_GetPoints(), points);
    }
}

TEST(LogicalFont, SizeOf0Is10)
{
    OSTRA_NEEDS_FONTS();
    const Screen dc;
    MadeFont font(dc, {"DejaVu Sans", 0, 0});
    EXPECT_EQ(font->n_GetPoints(), 10u);
    EXPECT_EQ(font->i_GetHeight(), -13);
    EXPECT_FALSE(IsEqual(font.font, {"DejaVu Sans", 0, 0}));
    EXPECT_TRUE(IsEqual(font.font, {"DejaVu Sans", 0, 10}));
}

TEST(LogicalFont, FaceThatIsMissingInASetIsMadeWithoutTheSet)
{
    OSTRA_NEEDS_FONTS();
    const Screen dc;
    MadeFont font(dc, missing(204));
    EXPECT_EQ(font->n_GetCharSet(), 204u);
    EXPECT_EQ(RequestedOf(font.font), 204u);
    EXPECT_EQ(font->n_GetCodePage(), 1251u);
    EXPECT_STREQ(static_cast<const CT_CString*>(font->pcco_GetName())->qccz_Get(), "No Such Face");
    EXPECT_STRNE(font->pcso_GetLogFont()->lfFaceName, "No Such Face");
    EXPECT_TRUE(IsEqual(font.font, missing(204)));
    EXPECT_FALSE(IsEqual(font.font, missing(0)));
}

TEST(LogicalFont, FaceThatIsMissingKeepsTheSubstitute)
{
    OSTRA_NEEDS_FONTS();
    const Screen dc;
    MadeFont font(dc, missing(0));
    const char* const face = font->pcso_GetLogFont()->lfFaceName;
    EXPECT_STRNE(face, "No Such Face");
    EXPECT_GT(StylesOf(face), 0) << face;
    EXPECT_STREQ(static_cast<const CT_CString*>(font->pcco_GetName())->qccz_Get(), "No Such Face");
    EXPECT_EQ(RequestedOf(font.font), font->n_GetCharSet());
}

// A name in another spelling is a substitution: it takes the first set that the face has.
TEST(LogicalFont, SetOfASubstituteIsntTheOneAskedFor)
{
    OSTRA_NEEDS_FONTS();
    const std::string family = "Noto Sans Hebrew"; // which has no other set
    if (StylesOf(family.c_str()) == 0)
        GTEST_SKIP() << family << " isn't installed";
    const Screen dc;
    MadeFont font(dc, {"noto sans hebrew", 0});
    if (font->pcso_GetLogFont()->lfFaceName != family)
        GTEST_SKIP() << "the system takes a face that has the set instead";
    EXPECT_EQ(font->n_GetCharSet(), 177u);
    EXPECT_EQ(font->n_GetCodePage(), 1255u);
    EXPECT_EQ(RequestedOf(font.font), 0u);
    EXPECT_TRUE(IsEqual(font.font, {"noto sans hebrew", 0}));
    EXPECT_FALSE(IsEqual(font.font, {"noto sans hebrew", 177}));
}

TEST(LogicalFont, AnotherSpellingIsAFaceThatIsMissingInTheSet)
{
    OSTRA_NEEDS_FONTS();
    const Screen dc;
    MadeFont font(dc, {"dejavu SANS", 204});
    EXPECT_STREQ(font->pcso_GetLogFont()->lfFaceName, "DejaVu Sans");
    EXPECT_EQ(font->n_GetCharSet(), 204u);
    EXPECT_EQ(font->pcso_GetTextMetric()->tmCharSet, 0);
    EXPECT_EQ(MadeFont(dc, {"DejaVu Sans", 204})->pcso_GetTextMetric()->tmCharSet, 204);
}

TEST(LogicalFont, SuffixInTheNameIsTheCallersMatter)
{
    OSTRA_NEEDS_FONTS();
    const Screen dc;
    MadeFont font(dc, {"DejaVu Sans Cyr", 204});
    EXPECT_EQ(font->n_GetCharSet(), 204u);
    EXPECT_STREQ(static_cast<const CT_CString*>(font->pcco_GetName())->qccz_Get(),
                 "DejaVu Sans Cyr");
}

TEST(LogicalFont, CharacterSetOfAFaceThatHasItIsKept)
{
    OSTRA_NEEDS_FONTS();
    const Screen dc;
    for (unsigned charset : {0u, 161u, 162u, 186u, 204u, 238u}) {
        MadeFont font(dc, {"DejaVu Sans", charset});
        EXPECT_EQ(font->n_GetCharSet(), charset);
        EXPECT_EQ(RequestedOf(font.font), charset);
        EXPECT_EQ(font->pcso_GetTextMetric()->tmCharSet, charset);
        EXPECT_EQ(font->n_GetCodePage(), CT_FontManager::sn_GetCodePage(charset));
        EXPECT_STREQ(font->pcso_GetLogFont()->lfFaceName, "DejaVu Sans");
    }
}

TEST(LogicalFont, NameLongerThanAnyFaceIsCut)
{
    OSTRA_NEEDS_FONTS();
    const Screen dc;
    const std::string name(300, 'x');
    MadeFont font(dc, {name, 204});
    EXPECT_EQ(static_cast<const CT_CString*>(font->pcco_GetName())->qccz_Get(), name);
    EXPECT_LT(std::strlen(font->pcso_GetLogFont()->lfFaceName), 32u);
    EXPECT_TRUE(IsEqual(font.font, {name, 204}));
}

TEST(LogicalFont, EmptyNameIsTheStockFontWhichStays)
{
    OSTRA_NEEDS_FONTS();
    const Screen dc;
    const HGDIOBJ stock = GetStockObject(13);
    {
        MadeFont font(dc, {"", 1});
        EXPECT_EQ(static_cast<void*>(font->h_GetHandle()), stock);
        EXPECT_EQ(font->n_GetCharSet(), 1u);
    }
    EXPECT_EQ(GetStockObject(13), stock);
    EXPECT_NE(SelectObject(dc, stock), nullptr);
}

TEST(LogicalFont, HandleIsReleasedAndTheDeviceIsAsBefore)
{
    OSTRA_NEEDS_FONTS();
    const Screen dc;
    const HGDIOBJ before = SelectObject(dc, GetStockObject(13));
    HFONT handle;
    {
        MadeFont font(dc, {});
        handle = font->h_GetHandle();
        EXPECT_EQ(SelectObject(dc, before), GetStockObject(13));
    }
    EXPECT_EQ(SelectObject(dc, handle), nullptr);
}

TEST(LogicalFont, IsEqualAsksForTheVeryRequest)
{
    OSTRA_NEEDS_FONTS();
    const Screen dc;
    const Request asked{"DejaVu Sans", 204, 12, 1, 0, 1, 0};
    MadeFont font(dc, asked);
    EXPECT_TRUE(IsEqual(font.font, asked));
    EXPECT_FALSE(IsEqual(font.font, asked, 120));
    for (int change = 0; change < 7; ++change) {
        Request other = asked;
        if (change == 0)
            other.name = "DejaVu sans";
        (change == 1   ? other.charset
         : change == 2 ? other.points
                       : other.charset) += change == 1 || change == 2;
        int* const flags[] = {&other.bold, &other.italic, &other.underline, &other.strikeOut};
        if (change > 2)
            *flags[change - 3] = !*flags[change - 3];
        EXPECT_FALSE(IsEqual(font.font, other)) << change;
    }
}

TEST(LogicalFont, TruthOfBoldIs1AndOfTheOthersTheirLowByte)
{
    OSTRA_NEEDS_FONTS();
    const Screen dc;
    MadeFont font(dc, {"DejaVu Sans", 0, 12, 2, 0, 1, 0});
    EXPECT_EQ(font->b_GetBold(), 1);
    EXPECT_FALSE(IsEqual(font.font, {"DejaVu Sans", 0, 12, 2, 0, 1, 0}));
    EXPECT_TRUE(IsEqual(font.font, {"DejaVu Sans", 0, 12, 1, 0, 1, 0}));
    EXPECT_TRUE(IsEqual(font.font, {"DejaVu Sans", 0, 12, 1, 0x100, 0x101, 0x700}));
}

TEST(LogicalFont, UsersAreCounted)
{
    OSTRA_NEEDS_FONTS();
    const Screen dc;
    MadeFont font(dc, {});
    font->v_Lock();
    font->v_Lock();
    EXPECT_EQ(font->b_IsLocked(), 2);
    font->v_Unlock();
    EXPECT_EQ(font->b_IsLocked(), 1);
}

TEST(LogicalFont, ExtentIsTheSumOfTheWidths)
{
    OSTRA_NEEDS_FONTS();
    const Screen dc;
    MadeFont font(dc, {});
    const HGDIOBJ old = SelectObject(dc, font->h_GetHandle());
    const CT_UString text(u"AV \u0416\u05D0\u20AC~\t\x1F");
    unsigned sum = static_cast<unsigned>(font->pcso_GetTextMetric()->tmOverhang);
    for (unsigned n = 0; n < text.vn_GetLength(); ++n) {
        int width = 0;
        ASSERT_TRUE(GetCharWidth32W(dc, text.vu_GetAt(n), text.vu_GetAt(n), &width));
        sum += static_cast<unsigned>(width);
        EXPECT_EQ(font->n_GetTextExtent(dc, &text, 0, n + 1), sum);
    }
    EXPECT_GT(sum, 30u);
    SelectObject(dc, old);
}

TEST(LogicalFont, ExtentIsTheSameForBytesAndUnits)
{
    OSTRA_NEEDS_FONTS();
    const Screen dc;
    for (const char* family : {"DejaVu Sans", "Liberation Serif", "DejaVu Sans Mono"}) {
        MadeFont font(dc, {family, 204, 11});
        const HGDIOBJ old = SelectObject(dc, font->h_GetHandle());
        const CT_UString wide(u"The quick\tbrown\x1F fox {0|1}~ \u0416\u0438\u0440\u044F\u2014");
        const CT_CString narrow(&wide, 1251);
        EXPECT_EQ(font->n_GetTextExtent(dc, &narrow, 0, ALL),
                  font->n_GetTextExtent(dc, &wide, 0, ALL));
        EXPECT_EQ(font->n_GetTextExtent(dc, &narrow, 4, 20),
                  font->n_GetTextExtent(dc, &wide, 4, 20));
        SelectObject(dc, old);
    }
}

TEST(LogicalFont, AsciiIsMeasuredWithoutTheDevice)
{
    OSTRA_NEEDS_FONTS();
    MadeFont font(Screen(), {});
    const CT_CString narrow("The quick brown fox");
    const CT_UString wide(u"The quick brown fox");
    const unsigned extent = font->n_GetTextExtent(nullptr, &narrow, 0, ALL);
    EXPECT_GT(extent, 100u);
    EXPECT_EQ(font->n_GetTextExtent(nullptr, &wide, 0, ALL), extent);
}

TEST(LogicalFont, EmptyRangesHaveTheOverhangAlone)
{
    OSTRA_NEEDS_FONTS();
    MadeFont font(Screen(), {});
    const unsigned overhang = static_cast<unsigned>(font->pcso_GetTextMetric()->tmOverhang);
    const CT_CString narrow("text"), nothing;
    const CT_UString wide(u"text"), none;
    EXPECT_EQ(font->n_GetTextExtent(nullptr, &narrow, 2, 0), overhang);
    EXPECT_EQ(font->n_GetTextExtent(nullptr, &narrow, 4, ALL), overhang);
    EXPECT_EQ(font->n_GetTextExtent(nullptr, &nothing, 0, ALL), overhang);
    EXPECT_EQ(font->n_GetTextExtent(nullptr, &wide, 2, 0), overhang);
    EXPECT_EQ(font->n_GetTextExtent(nullptr, &none, 0, ALL), overhang);
}

TEST(LogicalFont, RangesEndWithTheText)
{
    OSTRA_NEEDS_FONTS();
    MadeFont font(Screen(), {});
    const CT_CString narrow("text");
    const CT_UString wide(u"text");
    const unsigned whole = font->n_GetTextExtent(nullptr, &narrow, 0, 4);
    EXPECT_EQ(font->n_GetTextExtent(nullptr, &narrow, 0, 400), whole);
    EXPECT_EQ(font->n_GetTextExtent(nullptr, &wide, 0, 400), whole);
    EXPECT_EQ(font->n_GetTextExtent(nullptr, &wide, 9, ALL), 0u);
}

TEST(LogicalFont, BackslashWithoutWidthIsAsWideAsTheAverage)
{
    OSTRA_NEEDS_FONTS();
    MadeFont font(Screen(), {});
    int* const widths = font.font.*Private(FontWidths());
    widths['\\' - 0x20] = 0;
    widths['/' - 0x20] = 0;
    const CT_CString narrow("\\");
    const CT_UString wide(u"\\"), slash(u"/");
    EXPECT_EQ(font->n_GetTextExtent(nullptr, &wide, 0, ALL),
              static_cast<unsigned>(font->pcso_GetTextMetric()->tmAveCharWidth));
    EXPECT_EQ(font->n_GetTextExtent(nullptr, &slash, 0, ALL), 0u);
    EXPECT_EQ(font->n_GetTextExtent(nullptr, &narrow, 0, ALL), 0u);
}

TEST(LogicalFont, AllFamiliesOfSystemsMeasureTheSame)
{
    OSTRA_NEEDS_FONTS();
    const Screen dc;
    MadeFont nt(dc, {"DejaVu Sans", 204});
    const HGDIOBJ old = SelectObject(dc, nt->h_GetHandle());
    const CT_UString wide(u"The quick \\ brown fox \u0416\u0438\u0440\u2014");
    const CT_CString narrow(&wide, 1251);
    const unsigned extent = nt->n_GetTextExtent(dc, &wide, 0, ALL);
    for (const int nine_five : {0, 1}) {
        const Family family(0, nine_five, !nine_five);
        MadeFont font(dc, {"DejaVu Sans", 204});
        EXPECT_EQ(
            std::memcmp(font.font.*Private(FontWidths()), nt.font.*Private(FontWidths()), 384), 0);
        EXPECT_EQ(font->n_GetTextExtent(dc, &wide, 0, ALL), extent);
        EXPECT_EQ(font->n_GetTextExtent(dc, &narrow, 0, ALL), extent);
        EXPECT_EQ(font->n_GetTextExtent(dc, &wide, 4, 9), font->n_GetTextExtent(dc, &narrow, 4, 9));
    }
    SelectObject(dc, old);
}

TEST(LogicalFont, OnWin32sWideTextsAreMeasuredInBytes)
{
    OSTRA_NEEDS_FONTS();
    const Screen dc;
    MadeFont font(dc, {"DejaVu Sans", 204});
    const HGDIOBJ old = SelectObject(dc, font->h_GetHandle());
    int* const widths = font.font.*Private(FontWidths());
    widths['\\' - 0x20] = 0;
    const CT_UString backslash(u"\\"), outside(u"x\u05D0y"), part(u"\u05D0");
    const CT_CString replaced("x?y");
    const Family family(0, 0, 1);
    EXPECT_EQ(font->n_GetTextExtent(dc, &backslash, 0, ALL), 0u);
    EXPECT_EQ(font->n_GetTextExtent(dc, &outside, 0, ALL),
              font->n_GetTextExtent(dc, &replaced, 0, ALL));
    EXPECT_EQ(font->n_GetTextExtent(dc, &outside, 1, 1),
              font->n_GetTextExtent(dc, &replaced, 1, 1));
    EXPECT_EQ(font->n_GetTextExtent(dc, &part, 0, 0), 0u);
    SelectObject(dc, old);
}

TEST(LogicalFont, HebrewIsMeasuredInItsCodePage)
{
    OSTRA_NEEDS_FONTS();
    const Screen dc;
    MadeFont font(dc, {"DejaVu Sans", 177});
    EXPECT_EQ(font->n_GetCharSet(), 177u);
    EXPECT_EQ(font->pcso_GetTextMetric()->tmCharSet, 177);
    EXPECT_EQ(font->n_GetCodePage(), 1255u);
    const HGDIOBJ old = SelectObject(dc, font->h_GetHandle());
    const CT_UString wide(u"\u05E9\u05DC\u05D5\u05DD a");
    const CT_CString narrow(&wide, 1255);
    EXPECT_EQ(font->n_GetTextExtent(dc, &narrow, 0, ALL), font->n_GetTextExtent(dc, &wide, 0, ALL));
    EXPECT_NE(font->b_IsLocaleSupported(dc, 0x040D) & 1 << 5, 0);
    SelectObject(dc, old);
}

TEST(LogicalFont, DoubleByteFontsMeasurePairsByCalls)
{
    OSTRA_NEEDS_FONTS();
    const std::string family = FamilyWith(128);
    if (family.empty())
        GTEST_SKIP() << "no font with the Japanese character set is installed";
    const Screen dc;
    MadeFont font(dc, {family, 128});
    ASSERT_EQ(font->b_IsDBCS(), 1);
    EXPECT_EQ(font->n_GetCodePage(), 932u);
    EXPECT_EQ(font.font.*Private(FontWidths()), nullptr);
    const HGDIOBJ old = SelectObject(dc, font->h_GetHandle());
    int letter = 0;
    ASSERT_TRUE(GetCharWidth32A(dc, 'A', 'A', &letter));
    // The lead byte is the low one; where it should be the upper one, these are two characters.
    int pair[2] = {};
    ASSERT_TRUE(GetCharWidth32A(dc, 0xA082, 0xA082, pair));
    const CT_CString text("A\x82\xA0", ALL, 932);
    EXPECT_EQ(font->n_GetTextExtent(dc, &text, 0, ALL), static_cast<unsigned>(letter + pair[0]));
    EXPECT_EQ(font->n_GetTextExtent(dc, &text, 0, 1), static_cast<unsigned>(letter));
    SelectObject(dc, old);
}

TEST(LogicalFont, LeadByteAtTheEndTakesTwo)
{
    OSTRA_NEEDS_FONTS();
    const std::string family = FamilyWith(128);
    if (family.empty())
        GTEST_SKIP() << "no font with the Japanese character set is installed";
    const Screen dc;
    MadeFont font(dc, {family, 128});
    const HGDIOBJ old = SelectObject(dc, font->h_GetHandle());
    int lone = 0;
    ASSERT_TRUE(GetCharWidth32A(dc, 0x82, 0x82, &lone));
    int letter = 0;
    ASSERT_TRUE(GetCharWidth32A(dc, 'A', 'A', &letter));
    const CT_CString text("A\x82", ALL, 932);
    EXPECT_EQ(font->n_GetTextExtent(dc, &text, 0, ALL), static_cast<unsigned>(letter + lone));
    // The partner is what stands behind the range.
    const CT_CString pair("\x82\xA0", ALL, 932);
    EXPECT_EQ(font->n_GetTextExtent(dc, &pair, 0, 1), font->n_GetTextExtent(dc, &pair, 0, 2));
    SelectObject(dc, old);
}

TEST(LogicalFont, LocalesAreSupportedByTheirCharacterSets)
{
    OSTRA_NEEDS_FONTS();
    const Screen dc;
    MadeFont font(dc, {"Liberation Serif"});
    EXPECT_NE(font->b_IsLocaleSupported(dc, 0x0409) & 1, 0);       // English, by the Western set
    EXPECT_NE(font->b_IsLocaleSupported(dc, 0x0419) & 4, 0);       // Russian, by the Cyrillic one
    EXPECT_EQ(font->b_IsLocaleSupported(dc, 0x0411) & 1 << 17, 0); // Japanese
    EXPECT_EQ(font->b_IsLocaleSupported(dc, 0x7409), 0);           // no locale
    EXPECT_EQ(font->b_IsLocaleSupported(nullptr, 0x0409), 0);      // no device
    EXPECT_EQ(SelectObject(dc, GetStockObject(13)), GetStockObject(13));
}

TEST(LogicalFont, SampleTextIsThatOfTheCharacterSet)
{
    OSTRA_NEEDS_FONTS();
    MadeFont font(Screen(), {"DejaVu Sans", 161});
    CT_CString text(1253);
    font->v_GetFontSampleText(&text);
    EXPECT_STREQ(text.qccz_Get(), CT_FontManager::sacz_Greek);
}

TEST(LogicalFont, CopyHasEachMember)
{
    OSTRA_NEEDS_FONTS();
    alignas(CT_LogicalFont) char place[2][sizeof(CT_LogicalFont)];
    MadeFont font(Screen(), {"DejaVu Sans", 204, 14, 1}), other(Screen(), {"DejaVu Sans", 0, 9});
    std::memset(place, 0, sizeof(place));
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
    // Never destructed: handle and table belong to the original.
    const CT_LogicalFont& copy = *new (place[0]) CT_LogicalFont(font.font);
    CT_LogicalFont& assigned = *new (place[1]) CT_LogicalFont(other.font);
    assigned = font.font;
#pragma GCC diagnostic pop
    for (const CT_LogicalFont* each : {&copy, static_cast<const CT_LogicalFont*>(&assigned)}) {
        EXPECT_EQ(each->h_GetHandle(), font->h_GetHandle());
        EXPECT_EQ(each->n_GetPoints(), 14u);
        EXPECT_EQ(each->*Private(FontWidths()), font.font.*Private(FontWidths()));
        EXPECT_EQ(each->pcco_GetName()->pcco_GetBuffer()->qcv_Get(),
                  font->pcco_GetName()->pcco_GetBuffer()->qcv_Get());
    }
}
