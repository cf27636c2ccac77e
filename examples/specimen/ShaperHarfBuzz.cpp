// examples/specimen/ShaperHarfBuzz.cpp: Fontconfig finds the face, HarfBuzz shapes the text.
#include "Shaper.h"

#include <fontconfig/fontconfig.h>
#include <ft2build.h>
#include FT_FREETYPE_H
#include <hb-ft.h>
#include <hb.h>

#include <cstdlib>
#include <iterator>
#include <memory>

namespace specimen
{
namespace
{
template <auto function>
struct End
{
    template <class Thing>
    void operator()(Thing* thing) const
    {
        function(thing);
    }
};
using Pattern = std::unique_ptr<FcPattern, End<FcPatternDestroy>>;
using Library = std::unique_ptr<FT_LibraryRec_, End<FT_Done_FreeType>>;
using Face = std::unique_ptr<FT_FaceRec_, End<FT_Done_Face>>;
using Font = std::unique_ptr<hb_font_t, End<hb_font_destroy>>;
using Text = std::unique_ptr<hb_buffer_t, End<hb_buffer_destroy>>;

Pattern Match(const std::string& family, bool bold, bool italic)
{
    const Pattern wanted(FcPatternCreate());
    FcPatternAddString(wanted.get(), FC_FAMILY, reinterpret_cast<const FcChar8*>(family.c_str()));
    FcPatternAddInteger(wanted.get(), FC_WEIGHT, bold ? FC_WEIGHT_BOLD : FC_WEIGHT_REGULAR);
    FcPatternAddInteger(wanted.get(), FC_SLANT, italic ? FC_SLANT_ITALIC : FC_SLANT_ROMAN);
    FcPatternAddBool(wanted.get(), FC_SCALABLE, FcTrue);
    FcPatternAddBool(wanted.get(), FC_VARIABLE, FcFalse);
    FcConfigSubstitute(nullptr, wanted.get(), FcMatchPattern);
    FcDefaultSubstitute(wanted.get());
    FcResult result;
    return Pattern(FcFontMatch(nullptr, wanted.get(), &result));
}

Face Open(FT_Library library, const FcPattern* pattern)
{
    FcChar8* file = nullptr;
    int index = 0;
    FT_Face face = nullptr;
    if (pattern && FcPatternGetString(pattern, FC_FILE, 0, &file) == FcResultMatch) {
        FcPatternGetInteger(pattern, FC_INDEX, 0, &index);
        FT_New_Face(library, reinterpret_cast<const char*>(file), index, &face);
    }
    return Face(face);
}

unsigned WidthIn(hb_font_t* font, const std::string& text, bool kerned)
{
    const Text buffer(hb_buffer_create());
    hb_buffer_add_utf8(buffer.get(), text.data(), static_cast<int>(text.size()), 0, -1);
    hb_buffer_guess_segment_properties(buffer.get());
    hb_feature_t plain[4];
    const char* const names[] = {"-kern", "-liga", "-clig", "-calt"};
    for (unsigned n = 0; n < std::size(names); ++n)
        hb_feature_from_string(names[n], -1, &plain[n]);
    hb_shape(font, buffer.get(), plain, kerned ? 0 : std::size(plain));
    unsigned count = 0;
    const hb_glyph_position_t* const places = hb_buffer_get_glyph_positions(buffer.get(), &count);
    int width = 0;
    for (unsigned n = 0; n < count; ++n)
        width += places[n].x_advance;
    return static_cast<unsigned>((std::abs(width) + 32) / 64);
}
} // namespace

std::optional<unsigned> ShapedWidth(const std::string& face, bool bold, bool italic, unsigned dots,
                                    const std::string& text, bool kerned)
{
    FT_Library made = nullptr;
    if (FT_Init_FreeType(&made))
        return std::nullopt;
    const Library library(made);
    const Face opened = Open(made, Match(face, bold, italic).get());
    if (!opened || FT_Set_Pixel_Sizes(opened.get(), 0, dots))
        return std::nullopt;
    const Font font(hb_ft_font_create_referenced(opened.get()));
    hb_ft_font_set_load_flags(font.get(), FT_LOAD_DEFAULT);
    return WidthIn(font.get(), text, kerned);
}
} // namespace specimen
