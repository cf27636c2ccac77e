// winapi/tests/Fonts/FontTest.cpp: device contexts, fonts and what they measure.
#include <windows.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <set>
#include <string>
#include <vector>

namespace
{
class Screen
{
public:
    Screen() : dc(GetDC(GetDesktopWindow())) {}
    ~Screen() { ReleaseDC(GetDesktopWindow(), dc); }
    Screen(const Screen&) = delete;
    Screen& operator=(const Screen&) = delete;
    operator HDC() const { return dc; }

private:
    HDC dc;
};

struct Told
{
    std::string face, style, fullName;
    unsigned charset;
    DWORD flags;
    bool operator==(const Told&) const = default;
};

int CALLBACK Take(const LOGFONTA* font, const TEXTMETRICA* metrics, DWORD type, LPARAM place)
{
    const ENUMLOGFONTA& told = *reinterpret_cast<const ENUMLOGFONTA*>(font);
    EXPECT_EQ(metrics->tmCharSet, font->lfCharSet);
    if (type == 4)
        reinterpret_cast<std::vector<Told>*>(place)->push_back(
            {font->lfFaceName, reinterpret_cast<const char*>(told.elfStyle),
             reinterpret_cast<const char*>(told.elfFullName), font->lfCharSet,
             reinterpret_cast<const NEWTEXTMETRICA*>(metrics)->ntmFlags & 0x61});
    return 7;
}

std::vector<Told> Enumerate(const char* family)
{
    std::vector<Told> told;
    EnumFontFamiliesA(Screen(), family, Take, reinterpret_cast<LPARAM>(&told));
    return told;
}

class Fonts : public testing::Test
{
protected:
    void SetUp() override
    {
        // Wine for 32-bit programs has no device contexts that work.
        if (GetDeviceCaps(dc, LOGPIXELSY) != 96 || Enumerate("DejaVu Sans").empty() ||
            Enumerate("Liberation Serif").empty())
            GTEST_SKIP() << "there are no device contexts with DejaVu and Liberation here";
    }
    ~Fonts() override
    {
        SelectObject(dc, GetStockObject(SYSTEM_FONT));
        for (const HFONT font : made)
            DeleteObject(font);
    }

    HFONT Make(const char* name, LONG height, LONG weight = 400, BYTE italic = 0, BYTE charset = 0)
    {
        LOGFONTA request = {};
        request.lfHeight = height;
        request.lfWeight = weight;
        request.lfItalic = italic;
        request.lfCharSet = charset;
        std::strcpy(request.lfFaceName, name);
        made.push_back(CreateFontIndirectA(&request));
        return made.back();
    }

    // The metrics of a font that is selected.
    TEXTMETRICA Select(const char* name, LONG height, LONG weight = 400, BYTE italic = 0,
                       BYTE charset = 0)
    {
        EXPECT_NE(SelectObject(dc, Make(name, height, weight, italic, charset)), nullptr);
        TEXTMETRICA metrics = {};
        EXPECT_TRUE(GetTextMetricsA(dc, &metrics));
        return metrics;
    }

    std::string Face() const
    {
        char name[LF_FACESIZE] = "";
        GetTextFaceA(dc, LF_FACESIZE, name);
        return name;
    }

    int Width(WCHAR unit) const
    {
        int width = -1;
        EXPECT_TRUE(GetCharWidth32W(dc, unit, unit, &width));
        return width;
    }

    Screen dc;
    std::vector<HFONT> made;
};
} // namespace

TEST(FontStructures, HaveThePublishedSizes)
{
    EXPECT_EQ(sizeof(LOGFONTA), 60u);
    EXPECT_EQ(sizeof(ENUMLOGFONTA), 156u);
    EXPECT_EQ(sizeof(TEXTMETRICA), 56u);
    EXPECT_EQ(sizeof(NEWTEXTMETRICA), 72u);
    EXPECT_EQ(sizeof(ABC), 12u);
    EXPECT_EQ(sizeof(FONTSIGNATURE), 24u);
}

TEST_F(Fonts, ScreenHas96DotsAnInch)
{
    EXPECT_EQ(GetDeviceCaps(dc, LOGPIXELSX), 96);
    EXPECT_EQ(GetDeviceCaps(dc, LOGPIXELSY), 96);
    EXPECT_EQ(GetDeviceCaps(nullptr, LOGPIXELSY), 0);
}

TEST_F(Fonts, SelectingGivesWhatWasSelected)
{
    const HGDIOBJ stock = GetStockObject(SYSTEM_FONT);
    const HFONT font = Make("DejaVu Sans", -16);
    EXPECT_EQ(SelectObject(dc, font), stock);
    EXPECT_EQ(SelectObject(dc, stock), font);
}

TEST_F(Fonts, DeletedFontsArentSelected)
{
    const HFONT font = Make("DejaVu Sans", -16);
    EXPECT_TRUE(DeleteObject(font));
    made.clear();
    EXPECT_FALSE(DeleteObject(font));
    EXPECT_EQ(SelectObject(dc, font), nullptr);
    EXPECT_EQ(SelectObject(dc, nullptr), nullptr);
}

TEST_F(Fonts, StockFontIsAlwaysTheSameAndStays)
{
    const HGDIOBJ stock = GetStockObject(SYSTEM_FONT);
    ASSERT_NE(stock, nullptr);
    EXPECT_EQ(GetStockObject(SYSTEM_FONT), stock);
    EXPECT_TRUE(DeleteObject(stock));
    EXPECT_NE(SelectObject(dc, stock), nullptr);
    TEXTMETRICA metrics = {};
    EXPECT_TRUE(GetTextMetricsA(dc, &metrics));
    EXPECT_NEAR(metrics.tmHeight, 16, 1);
    EXPECT_EQ(metrics.tmWeight, 700);
}

TEST_F(Fonts, FaceComesInItsOwnSpelling)
{
    Select("dejavu SANS", -16);
    EXPECT_EQ(Face(), "DejaVu Sans");
    char cut[5] = "";
    GetTextFaceA(dc, 5, cut);
    EXPECT_STREQ(cut, "Deja");
    EXPECT_EQ(GetTextFaceA(dc, 0, nullptr), 12);
    char whole[LF_FACESIZE];
    EXPECT_EQ(GetTextFaceA(dc, LF_FACESIZE, whole), 11);
}

TEST_F(Fonts, UnknownFaceIsReplacedByAnother)
{
    Select("No Such Face", -16);
    EXPECT_NE(Face(), "No Such Face");
    EXPECT_FALSE(Enumerate(Face().c_str()).empty()) << Face();
}

TEST_F(Fonts, HeightBelow0IsThatOfTheLetters)
{
    for (const LONG height : {8, 11, 13, 16, 24, 32, 50, 72, 100}) {
        const TEXTMETRICA metrics = Select("DejaVu Sans", -height);
        EXPECT_NEAR(metrics.tmHeight - metrics.tmInternalLeading, height, 1);
        EXPECT_EQ(metrics.tmHeight, metrics.tmAscent + metrics.tmDescent);
    }
}

TEST_F(Fonts, HeightAbove0IsThatOfTheCell)
{
    for (const LONG height : {12, 16, 20, 33, 64})
        EXPECT_NEAR(Select("Liberation Serif", height).tmHeight, height, 1) << height;
    EXPECT_EQ(Select("Liberation Serif", 0).tmHeight, Select("Liberation Serif", 16).tmHeight);
}

// As the faces say: of 2,048 units an em DejaVu Sans has 1,901 and 483, averages 1,038.
TEST_F(Fonts, MetricsAreThoseOfTheFace)
{
    const TEXTMETRICA metrics = Select("DejaVu Sans", -32, 700);
    EXPECT_EQ(metrics.tmAscent, 30);
    EXPECT_EQ(metrics.tmDescent, 8);
    EXPECT_EQ(metrics.tmInternalLeading, 5);
    EXPECT_EQ(metrics.tmExternalLeading, 0);
    EXPECT_EQ(metrics.tmWeight, 700);
    EXPECT_EQ(metrics.tmItalic, 0);
    EXPECT_EQ(metrics.tmOverhang, 0);
    EXPECT_EQ(metrics.tmFirstChar, 30);
    EXPECT_EQ(metrics.tmLastChar, 255);
    EXPECT_EQ(metrics.tmDefaultChar, 31);
    EXPECT_EQ(metrics.tmBreakChar, 32);
    EXPECT_EQ(metrics.tmPitchAndFamily, 0x27);
    EXPECT_EQ(Select("Liberation Serif", -32).tmPitchAndFamily, 0x17);
    EXPECT_EQ(Select("Liberation Mono", -32).tmPitchAndFamily, 0x36);
    EXPECT_NE(Select("Liberation Serif", -32, 400, 1).tmItalic, 0);
}

TEST_F(Fonts, CharacterSetIsTheOneAskedForIfTheFaceHasIt)
{
    for (const BYTE charset : {0, 161, 162, 186, 204, 238}) {
        EXPECT_EQ(Select("DejaVu Sans", -16, 400, 0, charset).tmCharSet, charset);
        FONTSIGNATURE signature = {};
        EXPECT_EQ(GetTextCharsetInfo(dc, &signature, 0), charset);
        EXPECT_NE(signature.fsCsb[0] & 1, 0u);
        EXPECT_NE(signature.fsUsb[0], 0u);
    }
    EXPECT_EQ(Select("DejaVu Sans", -16, 400, 0, 1).tmCharSet, 0);
}

TEST_F(Fonts, WidthsOfBytesAreThoseOfTheirCharacters)
{
    for (const BYTE charset : {0, 161, 204, 238}) {
        const UINT page = charset == 0     ? 1252
                          : charset == 161 ? 1253
                          : charset == 204 ? 1251
                                           : 1250;
        Select("DejaVu Sans", -16, 400, 0, charset);
        int widths[256];
        ASSERT_TRUE(GetCharWidth32A(dc, 0, 255, widths));
        int others[256];
        ASSERT_TRUE(GetCharWidthA(dc, 0, 255, others));
        EXPECT_EQ(std::memcmp(widths, others, sizeof(widths)), 0);
        for (unsigned code = 0; code < 256; ++code) {
            const char text = static_cast<char>(code);
            WCHAR unit = 0;
            ASSERT_EQ(MultiByteToWideChar(page, 0, &text, 1, &unit, 1), 1);
            EXPECT_EQ(widths[code], Width(unit)) << code << " in " << page;
        }
    }
}

TEST_F(Fonts, WidthsOfARangeAreThoseOfItsCharacters)
{
    Select("Liberation Serif", -21);
    int widths[96];
    ASSERT_TRUE(GetCharWidth32W(dc, 0x20, 0x7F, widths));
    int others[96];
    ASSERT_TRUE(GetCharWidthW(dc, 0x20, 0x7F, others));
    EXPECT_EQ(std::memcmp(widths, others, sizeof(widths)), 0);
    for (unsigned n = 0; n < 96; ++n)
        EXPECT_EQ(widths[n], Width(static_cast<WCHAR>(0x20 + n)));
    EXPECT_GT(widths['W' - 0x20], widths['i' - 0x20]);
}

TEST_F(Fonts, MissingGlyphsAndLoneSurrogatesHaveTheWidthOfTheReplacement)
{
    Select("DejaVu Sans", -32);
    const int missing = Width(0xFFFE);
    EXPECT_GT(missing, 0);
    EXPECT_EQ(Width(0xD800), missing);
    EXPECT_EQ(Width(0xDFFF), missing);
    EXPECT_EQ(Width(0x4E00), missing);
}

TEST_F(Fonts, ABCWidthsAddUpToTheWidth)
{
    Select("Liberation Serif", -40);
    ABC parts[96];
    ASSERT_TRUE(GetCharABCWidthsA(dc, 0x20, 0x7F, parts));
    for (unsigned n = 0; n < 95; ++n)
        EXPECT_EQ(parts[n].abcA + static_cast<int>(parts[n].abcB) + parts[n].abcC,
                  Width(static_cast<WCHAR>(0x20 + n)));
    EXPECT_EQ(parts[0].abcA, 0);
    EXPECT_EQ(parts[0].abcB, 1u);
}

TEST_F(Fonts, FamiliesAreToldOnceForEachCharacterSet)
{
    const std::vector<Told> all = Enumerate(nullptr);
    std::set<std::pair<std::string, unsigned>> seen;
    for (const Told& told : all)
        EXPECT_TRUE(seen.insert({told.face, told.charset}).second) << told.face;
    for (const unsigned charset : {0, 238, 204, 161, 162, 186})
        EXPECT_TRUE(seen.contains({"DejaVu Sans", charset})) << charset;
    EXPECT_FALSE(seen.contains({"Liberation Serif", 128}));
}

TEST_F(Fonts, StylesOfAFamilyAreTold)
{
    const std::vector<Told> all = Enumerate("liberation serif");
    std::vector<Told> western;
    for (const Told& told : all) {
        EXPECT_EQ(told.face, "Liberation Serif");
        if (told.charset == 0)
            western.push_back(told);
    }
    std::sort(western.begin(), western.end(),
              [](const Told& a, const Told& b) { return a.style < b.style; });
    const std::vector<Told> expected = {
        {"Liberation Serif", "Bold", "Liberation Serif Bold", 0, 0x20},
        {"Liberation Serif", "Bold Italic", "Liberation Serif Bold Italic", 0, 0x21},
        {"Liberation Serif", "Italic", "Liberation Serif Italic", 0, 0x01},
        {"Liberation Serif", "Regular", "Liberation Serif", 0, 0x40}};
    EXPECT_EQ(western, expected);
}

static int CALLBACK TakeThree(const LOGFONTA*, const TEXTMETRICA*, DWORD, LPARAM count)
{
    return 3 - ++*reinterpret_cast<int*>(count);
}

TEST_F(Fonts, EnumerationEndsWithAnAnswerOf0)
{
    int count = 0;
    EXPECT_EQ(EnumFontFamiliesA(dc, nullptr, TakeThree, reinterpret_cast<LPARAM>(&count)), 0);
    EXPECT_EQ(count, 3);
    count = 1;
    EXPECT_EQ(EnumFontFamiliesA(dc, "No Such Face", TakeThree, reinterpret_cast<LPARAM>(&count)),
              1);
    EXPECT_EQ(count, 1);
}

TEST_F(Fonts, WhatIsNoDeviceContextMeasuresNothing)
{
    const HDC none = reinterpret_cast<HDC>(GetStockObject(SYSTEM_FONT));
    TEXTMETRICA metrics;
    int width;
    ABC parts;
    EXPECT_FALSE(GetTextMetricsA(none, &metrics));
    EXPECT_FALSE(GetCharWidth32W(none, 'A', 'A', &width));
    EXPECT_FALSE(GetCharWidth32A(none, 'A', 'A', &width));
    EXPECT_FALSE(GetCharABCWidthsA(none, 'A', 'A', &parts));
    EXPECT_EQ(SelectObject(none, GetStockObject(SYSTEM_FONT)), nullptr);
}

TEST_F(Fonts, IconTitlesHaveAFont)
{
    LOGFONTA font = {};
    ASSERT_TRUE(SystemParametersInfoA(SPI_GETICONTITLELOGFONT, sizeof(font), &font, 0));
    EXPECT_STREQ(font.lfFaceName, "MS Shell Dlg");
    EXPECT_EQ(font.lfHeight, -11);
    EXPECT_EQ(font.lfWeight, 400);
}
