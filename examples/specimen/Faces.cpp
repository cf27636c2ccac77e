// examples/specimen/Faces.cpp
#include "Faces.h"

#include <Common/Utf8.h>

#include <Ostra/String/CString.h>
#include <System/FontManager/FontManager.h>

#include <algorithm>
#include <map>
#include <new>
#include <set>
#include <utility>

namespace specimen
{
namespace
{
// Names that the system tells and takes are in its ANSI code page.
constexpr unsigned ANSI = 0;

std::string FromAnsi(const char* text)
{
    const CT_CString bytes(text, CT_String::ALL, ANSI);
    return common::ToUtf8(CT_UString(&bytes).qcuz_Get());
}

std::string ToAnsi(const std::string& text)
{
    CT_UString wide;
    common::ToWide(text, &wide);
    const CT_CString bytes(&wide, ANSI);
    return {bytes.qccz_Get(), bytes.vn_GetLength()};
}

// What an enumeration found: by family and style the character sets.
struct Found
{
    std::vector<std::pair<std::string, std::string>> order;
    std::map<std::pair<std::string, std::string>, std::vector<unsigned>> sets;
    bool isFull = false; // there was no memory for more
};

void Keep(const ENUMLOGFONTA& font, Found* found)
{
    const std::pair key(std::string(font.elfLogFont.lfFaceName),
                        std::string(reinterpret_cast<const char*>(font.elfStyle)));
    std::vector<unsigned>& sets = found->sets[key];
    if (sets.empty())
        found->order.push_back(key);
    const unsigned set = font.elfLogFont.lfCharSet;
    if (std::find(sets.begin(), sets.end(), set) == sets.end())
        sets.push_back(set);
}

int CALLBACK TakeStyle(const LOGFONTA* font, const TEXTMETRICA*, DWORD, LPARAM place)
{
    Found* const found = reinterpret_cast<Found*>(place);
    try {
        Keep(*reinterpret_cast<const ENUMLOGFONTA*>(font), found);
    } catch (const std::bad_alloc&) {
        found->isFull = true;
    }
    return !found->isFull;
}

Found Enumerate(const char* family)
{
    Found found;
    const HWND window = GetDesktopWindow();
    const HDC context = GetDC(window);
    EnumFontFamiliesA(context, family, TakeStyle, reinterpret_cast<LPARAM>(&found));
    ReleaseDC(window, context);
    if (found.isFull)
        throw std::bad_alloc();
    return found;
}

// The manager has the flags by full name; one that it lacks has neither.
Style MakeStyle(const std::string& family, const std::string& name,
                const std::vector<unsigned>& sets)
{
    const CT_CString full((family + " " + name).c_str(), CT_String::ALL, ANSI);
    unsigned length = 0;
    int bold = 0;
    int italic = 0;
    CT_FontManager::spco_GetFontManager()->b_StripFlagFont(&full, &length, &bold, &italic);
    return {FromAnsi(family.c_str()), FromAnsi(name.c_str()), bold == 1, italic == 1, sets};
}

void AddStyles(const std::string& family, std::vector<Style>* styles)
{
    const Found found = Enumerate(family.c_str());
    for (const auto& key : found.order)
        styles->push_back(MakeStyle(key.first, key.second, found.sets.at(key)));
}

std::string Folded(std::string text)
{
    for (char& c : text)
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c - 'A' + 'a');
    return text;
}
} // namespace

std::vector<Style> ListStyles(const std::string* family)
{
    std::vector<Style> styles;
    if (family) {
        AddStyles(ToAnsi(*family), &styles);
        return styles;
    }
    std::set<std::string> families;
    for (const auto& key : Enumerate(nullptr).order)
        families.insert(key.first);
    for (const std::string& one : families)
        AddStyles(one, &styles);
    return styles;
}

std::vector<unsigned> SetsOf(const std::string& family)
{
    std::vector<unsigned> sets;
    for (const Style& style : ListStyles(&family))
        for (const unsigned set : style.sets)
            if (std::find(sets.begin(), sets.end(), set) == sets.end())
                sets.push_back(set);
    return sets.empty() ? std::vector<unsigned>{0} : sets;
}

std::string NameOfSet(unsigned set)
{
    static const std::pair<unsigned, const char*> names[] = {{0, "Western European"},
                                                             {2, "symbols"},
                                                             {77, "Macintosh"},
                                                             {128, "Japanese"},
                                                             {129, "Korean"},
                                                             {130, "Korean, Johab"},
                                                             {134, "Simplified Chinese"},
                                                             {136, "Traditional Chinese"},
                                                             {161, "Greek"},
                                                             {162, "Turkish"},
                                                             {163, "Vietnamese"},
                                                             {177, "Hebrew"},
                                                             {178, "Arabic"},
                                                             {186, "Baltic"},
                                                             {204, "Cyrillic"},
                                                             {222, "Thai"},
                                                             {238, "Central European"},
                                                             {255, "OEM"}};
    for (const auto& [number, name] : names)
        if (number == set)
            return name;
    return "other";
}

bool IsAsked(const std::string& face, const std::string& asked, unsigned set)
{
    CT_UString name;
    common::ToWide(asked, &name);
    CT_FontManager::sv_StripCharsetSpecifier(&name, set);
    const std::string bytes = ToAnsi(common::ToUtf8(name.qcuz_Get())).substr(0, LF_FACESIZE - 1);
    return Folded(ToAnsi(face)) == Folded(bytes);
}

HiredFont::HiredFont(const Wish& wish)
    : window(GetDesktopWindow()),
      context(GetDC(window)),
      font(nullptr)
{
    CT_UString name;
    common::ToWide(wish.face, &name);
    font = CT_FontManager::spco_GetFontManager()->pco_Hire(context, &name, wish.set, wish.points,
                                                           wish.bold, wish.italic, 0, 0);
    if (font)
        before = SelectObject(context, font->h_GetHandle());
}

HiredFont::~HiredFont()
{
    if (before)
        SelectObject(context, before);
    CT_FontManager::spco_GetFontManager()->v_Fire(font);
    ReleaseDC(window, context);
}

std::string HiredFont::Face() const
{
    char name[LF_FACESIZE] = "";
    // Where it has no face to measure with, 32-bit Wine names what it finds in memory.
    if (Metrics().tmHeight != 0)
        GetTextFaceA(context, LF_FACESIZE, name);
    return FromAnsi(name);
}

unsigned HiredFont::WidthOf(const CT_UString& text, unsigned start, unsigned count) const
{
    return font->n_GetTextExtent(context, &text, start, count);
}
} // namespace specimen
