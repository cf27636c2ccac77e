// winapi/Fonts/FaceHost.cpp: Fontconfig finds the faces, FreeType measures them.
#include "Fonts/FaceHost.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <new>
#include <string>

#include <fontconfig/fontconfig.h>
#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_TRUETYPE_TABLES_H

namespace winapi
{
namespace
{
struct PatternEnd
{
    void operator()(FcPattern* pattern) const { FcPatternDestroy(pattern); }
};
using Pattern = std::unique_ptr<FcPattern, PatternEnd>;

struct SetEnd
{
    void operator()(FcFontSet* set) const { FcFontSetDestroy(set); }
    void operator()(FcObjectSet* set) const { FcObjectSetDestroy(set); }
};
using FontSet = std::unique_ptr<FcFontSet, SetEnd>;
using ObjectSet = std::unique_ptr<FcObjectSet, SetEnd>;

// Of several names the last English one: Fontconfig puts those of the typographic family in front,
// which the platform doesn't know.
const char* NameOf(const FcPattern* pattern, const char* names, const char* languages)
{
    const char* found = "";
    FcChar8* name;
    for (int i = 0; FcPatternGetString(pattern, names, i, &name) == FcResultMatch; ++i) {
        FcChar8* language;
        const bool english =
            FcPatternGetString(pattern, languages, i, &language) != FcResultMatch ||
            std::strncmp(reinterpret_cast<const char*>(language), "en", 2) == 0;
        if (english || !*found)
            found = reinterpret_cast<const char*>(name);
    }
    return found;
}

int NumberOf(const FcPattern* pattern, const char* object)
{
    int value = 0;
    FcPatternGetInteger(pattern, object, 0, &value);
    return value;
}

// False for a pattern without a file.
bool Tell(const FcPattern* pattern, void* place, void (*take)(void* place, const FaceNames& names))
{
    FcChar8* file;
    if (FcPatternGetString(pattern, FC_FILE, 0, &file) != FcResultMatch)
        return false;
    FaceNames names;
    names.file = reinterpret_cast<const char*>(file);
    names.index = NumberOf(pattern, FC_INDEX);
    names.family = NameOf(pattern, FC_FAMILY, FC_FAMILYLANG);
    names.style = NameOf(pattern, FC_STYLE, FC_STYLELANG);
    names.fullName = NameOf(pattern, FC_FULLNAME, FC_FULLNAMELANG);
    names.bold = NumberOf(pattern, FC_WEIGHT) >= FC_WEIGHT_DEMIBOLD;
    names.italic = NumberOf(pattern, FC_SLANT) != FC_SLANT_ROMAN;
    take(place, names);
    return true;
}

void List(void* place, void (*take)(void* place, const FaceNames& names))
{
    const Pattern wanted(FcPatternCreate());
    const ObjectSet objects(FcObjectSetBuild(FC_FILE, FC_INDEX, FC_FAMILY, FC_FAMILYLANG, FC_STYLE,
                                             FC_STYLELANG, FC_FULLNAME, FC_FULLNAMELANG, FC_WEIGHT,
                                             FC_SLANT, nullptr));
    if (!wanted || !objects)
        return;
    FcPatternAddBool(wanted.get(), FC_SCALABLE, FcTrue);
    // Instances of variable fonts have no files of their own.
    FcPatternAddBool(wanted.get(), FC_VARIABLE, FcFalse);
    // The caller may run out of memory and throw.
    const FontSet found(FcFontList(nullptr, wanted.get(), objects.get()));
    for (int i = 0; found && i < found->nfont; ++i)
        Tell(found->fonts[i], place, take);
}

bool Match(const char* family, bool bold, bool italic, void* place,
           void (*take)(void* place, const FaceNames& names))
{
    const Pattern wanted(FcPatternCreate());
    if (!wanted)
        return false;
    FcPatternAddString(wanted.get(), FC_FAMILY, reinterpret_cast<const FcChar8*>(family));
    FcPatternAddInteger(wanted.get(), FC_WEIGHT, bold ? FC_WEIGHT_BOLD : FC_WEIGHT_REGULAR);
    FcPatternAddInteger(wanted.get(), FC_SLANT, italic ? FC_SLANT_ITALIC : FC_SLANT_ROMAN);
    FcPatternAddBool(wanted.get(), FC_SCALABLE, FcTrue);
    FcConfigSubstitute(nullptr, wanted.get(), FcMatchPattern);
    FcDefaultSubstitute(wanted.get());
    FcResult result;
    const Pattern found(FcFontMatch(nullptr, wanted.get(), &result));
    return found && Tell(found.get(), place, take);
}

// Faces that are open, those used last in front.
class OpenFaces
{
public:
    // Null if the file can't be read.
    FT_Face Get(const char* file, int index)
    {
        Slot* const end = slots + MOST;
        Slot* found = std::find_if(slots, end, [file, index](const Slot& slot) {
            return slot.face && slot.index == index && slot.file == file;
        });
        if (found == end && !Open(*--found, file, index))
            return nullptr;
        std::rotate(slots, found, found + 1);
        return slots->face;
    }

private:
    static constexpr int MOST = 16;

    struct Slot
    {
        std::string file;
        int index;
        FT_Face face = nullptr;
    };

    bool Open(Slot& slot, const char* file, int index)
    {
        if (!library && FT_Init_FreeType(&library))
            return false;
        if (slot.face)
            FT_Done_Face(slot.face);
        slot.face = nullptr;
        slot.index = index;
        try {
            slot.file = file;
        } catch (const std::bad_alloc&) {
            return false;
        }
        return !FT_New_Face(library, file, index, &slot.face);
    }

    FT_Library library = nullptr;
    Slot slots[MOST];
};

FT_Face FaceOf(const char* file, int index)
{
    // Never ended: a program may measure texts while it goes.
    alignas(OpenFaces) static char place[sizeof(OpenFaces)];
    static OpenFaces& faces = *new (place) OpenFaces;
    return faces.Get(file, index);
}

void TakeWindowsFacts(const TT_OS2& table, FaceFacts& facts)
{
    facts.winAscent = table.usWinAscent;
    facts.winDescent = table.usWinDescent;
    facts.averageWidth = table.xAvgCharWidth;
    const FT_ULong ranges[] = {table.ulUnicodeRange1, table.ulUnicodeRange2, table.ulUnicodeRange3,
                               table.ulUnicodeRange4};
    std::copy(std::begin(ranges), std::end(ranges), facts.unicodeRanges);
    facts.codePages[0] = static_cast<DWORD>(table.ulCodePageRange1);
    facts.codePages[1] = static_cast<DWORD>(table.ulCodePageRange2);
    TakePanose(table.panose, facts);
}

bool Read(const char* file, int index, FaceFacts* facts)
{
    const FT_Face face = FaceOf(file, index);
    if (!face || !FT_IS_SCALABLE(face))
        return false;
    *facts = {};
    facts->unitsPerEm = face->units_per_EM;
    facts->winAscent = face->ascender;
    facts->winDescent = -face->descender;
    facts->ascender = face->ascender;
    facts->descender = face->descender;
    facts->averageWidth = face->max_advance_width / 2;
    facts->maximumWidth = static_cast<int>(face->bbox.xMax - face->bbox.xMin);
    facts->fixed = FT_IS_FIXED_WIDTH(face);
    // A font that says nothing is one of the Western European set.
    facts->codePages[0] = 1;
    if (const void* const table = FT_Get_Sfnt_Table(face, FT_SFNT_OS2))
        TakeWindowsFacts(*static_cast<const TT_OS2*>(table), *facts);
    if (const void* const table = FT_Get_Sfnt_Table(face, FT_SFNT_HHEA)) {
        const TT_HoriHeader& header = *static_cast<const TT_HoriHeader*>(table);
        facts->ascender = header.Ascender;
        facts->descender = header.Descender;
        facts->lineGap = header.Line_Gap;
    }
    return facts->unitsPerEm > 0 && facts->winAscent + facts->winDescent > 0;
}

constexpr int Floor(FT_Pos position)
{
    return static_cast<int>(position >> 6);
}

bool Measure(const char* file, int index, unsigned dots, WCHAR unit, Glyph* glyph)
{
    const FT_Face face = FaceOf(file, index);
    if (!face || FT_Set_Pixel_Sizes(face, 0, dots) ||
        FT_Load_Glyph(face, FT_Get_Char_Index(face, unit), FT_LOAD_DEFAULT))
        return false;
    const FT_Glyph_Metrics& metrics = face->glyph->metrics;
    glyph->advance = Floor(face->glyph->advance.x + 32);
    glyph->left = Floor(metrics.horiBearingX);
    glyph->width = std::max(1, Floor(metrics.horiBearingX + metrics.width + 63) - glyph->left);
    return true;
}
} // namespace

constexpr FontTable fontTable = {.list = List, .match = Match, .read = Read, .measure = Measure};
} // namespace winapi
