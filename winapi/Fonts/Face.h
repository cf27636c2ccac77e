// winapi/Fonts/Face.h: the faces of the machine, and their measures at the sizes asked for.
#pragma once

#include "Fonts/FaceHost.h"
#include "winapi/Fonts/Font.h"

#include <atomic>
#include <string>

namespace winapi
{
// A face at one size. It lives as long as the process.
class FaceSize
{
public:
    FaceSize(const class Face& face, unsigned dots);
    FaceSize(const FaceSize&) = delete;
    FaceSize& operator=(const FaceSize&) = delete;

    const class Face& face;
    const unsigned dots; // an em
    FaceSize* next = nullptr;

    // Without what belongs to the font asked for: weight, slant, lines, character set.
    void GetMetrics(TEXTMETRICA& metrics) const;
    int GetWidth(WCHAR unit) const;
    Glyph GetGlyph(WCHAR unit) const;

private:
    static constexpr unsigned ROW = 256;

    // Widths once asked for; below 0 those that weren't.
    using Row = std::atomic<short>[ROW];

    // False if the face can't be read now; the glyph is the built-in one then.
    bool Measure(WCHAR unit, Glyph& glyph) const;
    // The row of a unit; null without memory.
    std::atomic<short>* GetRow(WCHAR unit) const;

    mutable std::atomic<Row*> rows[0x10000 / ROW] = {};
};

// A face of the machine, or the one that stands for all where there is none.
class Face
{
public:
    explicit Face(const FaceNames& names);
    Face();
    Face(const Face&) = delete;
    Face& operator=(const Face&) = delete;

    const std::string file; // empty for the built-in face
    const int index = 0;
    const std::string family; // as are the others, in the ANSI code page and cut to its room
    const std::string style;
    const std::string fullName;
    const bool bold = false;
    const bool italic = false;

    // Read at the first call.
    const FaceFacts& GetFacts() const;
    // Null without memory.
    const FaceSize* GetSize(LONG height) const;

private:
    mutable std::atomic<const FaceFacts*> facts = nullptr;
    mutable std::atomic<FaceSize*> sizes = nullptr;
};

// The faces that can be scaled, by family and style; made at the first call. Throws std::bad_alloc.
struct Faces
{
    const Face* const* first;
    const Face* const* last;

    const Face* const* begin() const { return first; }
    const Face* const* end() const { return last; }
};
Faces AllFaces();

// Of the family, if it is there, what is nearest in weight and slant; else what Fontconfig takes
// for it. Never null. Throws std::bad_alloc.
const Face* FindFace(const char* family, bool bold, bool italic);

// Whether the names are those of one family: letters of ASCII may be of either case.
bool IsSameFamily(const char* name, const char* other);
} // namespace winapi
