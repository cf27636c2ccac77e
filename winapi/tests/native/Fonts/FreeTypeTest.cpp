// winapi/tests/native/Fonts/FreeTypeTest.cpp: measures beside those of FreeType itself.
#include "winapi/Fonts/Font.h"
#include "winapi/Text/CodePage.h"

#include <fontconfig/fontconfig.h>
#include <ft2build.h>
#include <gtest/gtest.h>
#include FT_FREETYPE_H
#include FT_TRUETYPE_TABLES_H

#include <cmath>
#include <cstring>
#include <string>

using namespace winapi;

namespace
{
const char* const FAMILIES[] = {"DejaVu Sans", "Liberation Serif", "Liberation Mono"};
const int SIZES[] = {6, 8, 9, 11, 13, 16, 19, 24, 37, 72};

// The file of a style, as Fontconfig's pattern language finds it.
std::string FileOf(const char* family, bool bold, bool italic)
{
    const std::string name =
        std::string(family) + (bold ? ":bold" : "") + (italic ? ":italic" : "");
    FcPattern* const pattern = FcNameParse(reinterpret_cast<const FcChar8*>(name.c_str()));
    FcConfigSubstitute(nullptr, pattern, FcMatchPattern);
    FcDefaultSubstitute(pattern);
    FcResult result;
    FcPattern* const found = FcFontMatch(nullptr, pattern, &result);
    FcChar8* file = nullptr;
    FcPatternGetString(found, FC_FILE, 0, &file);
    const std::string path = file ? reinterpret_cast<const char*>(file) : "";
    FcPatternDestroy(found);
    FcPatternDestroy(pattern);
    return path;
}

class Face
{
public:
    explicit Face(const std::string& file)
    {
        FT_Init_FreeType(&library);
        FT_New_Face(library, file.c_str(), 0, &face);
    }
    ~Face()
    {
        FT_Done_Face(face);
        FT_Done_FreeType(library);
    }
    Face(const Face&) = delete;
    Face& operator=(const Face&) = delete;
    FT_Face operator->() const { return face; }
    operator FT_Face() const { return face; }

private:
    FT_Library library = nullptr;
    FT_Face face = nullptr;
};

HFONT Make(const char* family, int height, bool bold, bool italic)
{
    LOGFONTA request = {};
    request.lfHeight = height;
    request.lfWeight = bold ? 700 : 400;
    request.lfItalic = italic;
    std::strcpy(request.lfFaceName, family);
    return CreateFontIndirectA(&request);
}

// Calls apply(dc, face, size) for each family, style and size.
template <class Apply>
void ForEachFont(Apply apply)
{
    for (const char* family : FAMILIES)
        for (const bool bold : {false, true})
            for (const bool italic : {false, true}) {
                const std::string file = FileOf(family, bold, italic);
                const Face face(file);
                for (const int size : SIZES) {
                    SCOPED_TRACE(file + " at " + std::to_string(size));
                    const HDC dc = GetDC(nullptr);
                    const HFONT font = Make(family, -size, bold, italic);
                    SelectObject(dc, font);
                    FT_Set_Pixel_Sizes(face, 0, static_cast<FT_UInt>(size));
                    apply(dc, face, size);
                    ReleaseDC(nullptr, dc);
                    DeleteObject(font);
                }
            }
}

int WidthOf(FT_Face face, FT_ULong character)
{
    EXPECT_EQ(FT_Load_Char(face, character, FT_LOAD_DEFAULT), 0);
    return static_cast<int>((face->glyph->advance.x + 32) >> 6);
}
} // namespace

TEST(FreeType, WidthsOfUnitsAreItsAdvances)
{
    ForEachFont([](HDC dc, FT_Face face, int) {
        const unsigned FIRST = 0x20, LAST = 0x460;
        int widths[LAST - FIRST + 1];
        ASSERT_TRUE(GetCharWidth32W(dc, FIRST, LAST, widths));
        for (unsigned unit = FIRST; unit <= LAST; ++unit)
            ASSERT_EQ(widths[unit - FIRST], WidthOf(face, unit)) << std::hex << unit;
    });
}

TEST(FreeType, WidthsOfBytesAreTheAdvancesOfTheirCharacters)
{
    ForEachFont([](HDC dc, FT_Face face, int) {
        int widths[256];
        ASSERT_TRUE(GetCharWidth32A(dc, 0, 255, widths));
        for (unsigned byte = 0; byte < 256; ++byte) {
            const char text = static_cast<char>(byte);
            WCHAR unit = 0;
            ASSERT_EQ(MultiByteToWideChar(1252, 0, &text, 1, &unit, 1), 1);
            ASSERT_EQ(widths[byte], WidthOf(face, unit)) << byte;
        }
    });
}

// Rounded from the face's units to dots.
TEST(FreeType, MetricsAreThoseOfItsTables)
{
    ForEachFont([](HDC dc, FT_Face face, int size) {
        const TT_OS2& table = *static_cast<TT_OS2*>(FT_Get_Sfnt_Table(face, FT_SFNT_OS2));
        TEXTMETRICA metrics;
        ASSERT_TRUE(GetTextMetricsA(dc, &metrics));
        const auto scaled = [&](double units) {
            return static_cast<int>(std::floor(units * size / face->units_per_EM + 0.5));
        };
        EXPECT_EQ(metrics.tmAscent, scaled(table.usWinAscent));
        EXPECT_EQ(metrics.tmDescent, scaled(table.usWinDescent));
        EXPECT_NEAR(metrics.tmAveCharWidth, scaled(table.xAvgCharWidth), 1);
        EXPECT_NEAR(metrics.tmInternalLeading,
                    scaled(table.usWinAscent + table.usWinDescent - face->units_per_EM), 1);
        EXPECT_EQ(metrics.tmWeight, table.usWeightClass);
        FONTSIGNATURE signature;
        GetTextCharsetInfo(dc, &signature, 0);
        EXPECT_EQ(signature.fsCsb[0], table.ulCodePageRange1);
        EXPECT_EQ(signature.fsUsb[3], table.ulUnicodeRange4);
    });
}
