// examples/specimen/Faces.h: the faces of the machine, and fonts of them.
#pragma once

#include <Ostra/String/UString.h>
#include <System/FontManager/LogicalFont.h>

#include <windows.h>

#include <string>
#include <vector>

namespace specimen
{
// A style of a face, with its character sets in the system's order. Texts are UTF-8.
struct Style
{
    std::string family;
    std::string name;
    bool bold;
    bool italic;
    std::vector<unsigned> sets;
};

// The styles of a family, or of all, by family; a family that isn't there has none.
std::vector<Style> ListStyles(const std::string* family);

// The character sets of all styles of a family; that of Western Europe if none is known.
std::vector<unsigned> SetsOf(const std::string& family);

// "Cyrillic" for 204; "other" for what has no name.
std::string NameOfSet(unsigned set);

// Whether a face is the one that was asked for: without the suffix that goes with the set, as far as
// the system takes names, and with small and capital letters for the same.
bool IsAsked(const std::string& face, const std::string& asked, unsigned set);

struct Wish
{
    std::string face;
    unsigned set;
    unsigned points;
    bool bold;
    bool italic;
};

// A font of the library's pool, hired and selected for the life of the object.
class HiredFont
{
public:
    explicit HiredFont(const Wish& wish);
    HiredFont(const HiredFont&) = delete;
    HiredFont& operator=(const HiredFont&) = delete;
    ~HiredFont();

    // False if there was no memory for it; an error is set then.
    bool IsThere() const { return font != nullptr; }
    const TEXTMETRICA& Metrics() const { return *font->pcso_GetTextMetric(); }
    // An em, in dots.
    unsigned Dots() const { return static_cast<unsigned>(-font->i_GetHeight()); }
    // What the system has taken, in its own spelling.
    std::string Face() const;
    unsigned WidthOf(const CT_UString& text, unsigned start = 0,
                     unsigned count = CT_String::ALL) const;

private:
    HWND window;
    HDC context;
    CT_LogicalFont* font;
    HGDIOBJ before = nullptr;
};
} // namespace specimen
