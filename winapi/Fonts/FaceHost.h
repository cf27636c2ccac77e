// winapi/Fonts/FaceHost.h: what the services ask of Fontconfig and FreeType.
#pragma once

#include "winapi/Base/Types.h"

namespace winapi
{
// A face where it lies, with the names that the platform knows it by. Text is UTF-8.
struct FaceNames
{
    const char* file;
    int index;
    const char* family;
    const char* style;
    const char* fullName;
    bool bold;
    bool italic;
};

// What a face says of itself, in its own units.
struct FaceFacts
{
    int unitsPerEm;
    int winAscent;
    int winDescent;
    int lineGap; // of hhea, as the two that follow
    int ascender;
    int descender; // below 0
    int averageWidth;
    int maximumWidth; // of the box that all glyphs fit in
    DWORD unicodeRanges[4];
    DWORD codePages[2];
    bool fixed;
    bool serif;
};

// The ten numbers of OS/2 that classify a face.
inline void TakePanose(const BYTE* panose, FaceFacts& facts)
{
    constexpr BYTE text = 2;
    constexpr BYTE fixed = 9;
    constexpr BYTE firstSerif = 2;
    constexpr BYTE lastSerif = 10;
    if (panose[0] != text)
        return;
    facts.fixed |= panose[3] == fixed;
    facts.serif = panose[1] >= firstSerif && panose[1] <= lastSerif;
}

// In dots of a size.
struct Glyph
{
    int advance;
    int left;  // from the place of writing to the glyph
    int width; // of the glyph, at least 1
};

struct FontTable
{
    // Calls back for each face that can be scaled, in no order; the names are gone afterwards.
    void (*list)(void* place, void (*take)(void* place, const FaceNames& names));
    // The face that Fontconfig takes for a family; false if there is none.
    bool (*match)(const char* family, bool bold, bool italic, void* place,
                  void (*take)(void* place, const FaceNames& names));
    // False if the file can't be read.
    bool (*read)(const char* file, int index, FaceFacts* facts);
    // At so many dots an em. False as before.
    bool (*measure)(const char* file, int index, unsigned dots, WCHAR unit, Glyph* glyph);
};

extern const FontTable fontTable;
} // namespace winapi
