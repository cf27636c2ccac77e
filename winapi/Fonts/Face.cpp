// winapi/Fonts/Face.cpp: the faces of the machine.
#include "Fonts/Face.h"

#include "Base/Host.h"
#include "Fonts/SfntFacts.h"
#include "Fonts/Type1Facts.h"
#include "winapi/Text/CodePage.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <new>
#include <vector>

namespace winapi
{
namespace
{
constexpr LONG STANDARD_HEIGHT = 16;
constexpr LONG BUILT_IN_HEIGHT = 16;
constexpr LONG BUILT_IN_WIDTH = 8;
constexpr LONG MOST_DOTS = 16000; // FreeType counts in 16 bits.

// UTF-8 in the process's code page, as much as there is room for.
std::string ToAnsi(const char* text, std::size_t room)
{
    WCHAR units[256];
    char bytes[512];
    const int length = static_cast<int>(std::min<std::size_t>(std::strlen(text), 200));
    const int count = MultiByteToWideChar(CP_UTF8, 0, text, length, units, 256);
    const int size = WideCharToMultiByte(CP_ACP, 0, units, count, bytes, 512, nullptr, nullptr);
    return std::string(bytes, std::min(static_cast<std::size_t>(std::max(size, 0)), room - 1));
}

std::string ToUtf8(const char* text)
{
    WCHAR units[LF_FACESIZE];
    char bytes[LF_FACESIZE * 3];
    const int count = MultiByteToWideChar(CP_ACP, 0, text, -1, units, LF_FACESIZE);
    const int size =
        WideCharToMultiByte(CP_UTF8, 0, units, count, bytes, sizeof bytes, nullptr, nullptr);
    return size > 0 ? std::string(bytes) : std::string();
}

char Fold(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

// What the built-in face says of itself.
constexpr FaceFacts BUILT_IN = {.unitsPerEm = 16,
                                .winAscent = 13,
                                .winDescent = 3,
                                .lineGap = 0,
                                .ascender = 13,
                                .descender = -3,
                                .averageWidth = 8,
                                .maximumWidth = 8,
                                .unicodeRanges = {1, 0, 0, 0},
                                .codePages = {1, 0},
                                .fixed = true,
                                .serif = false};

// Puts what was made into a place that nobody else has filled meanwhile; what stands there then.
template <class Thing>
const Thing* Publish(std::atomic<const Thing*>& place, std::unique_ptr<Thing> made)
{
    const Thing* expected = nullptr;
    return place.compare_exchange_strong(expected, made.get()) ? made.release() : expected;
}

// All faces, for the life of the process.
using Catalog = std::vector<const Face*>;

// A face with its names in UTF-8.
struct FoundFace
{
    explicit FoundFace(const FaceNames& told)
        : file(told.file),
          family(told.family),
          style(told.style),
          fullName(told.fullName),
          names(told)
    {}

    FaceNames Names() const
    {
        FaceNames own = names;
        own.file = file.c_str();
        own.family = family.c_str();
        own.style = style.c_str();
        own.fullName = fullName.c_str();
        return own;
    }

    std::string file, family, style, fullName;
    FaceNames names; // Its texts are gone.
};

void TakeFace(void* place, const FaceNames& names)
{
    static_cast<std::vector<FoundFace>*>(place)->emplace_back(names);
}

bool IsBefore(const Face* a, const Face* b)
{
    const int order = a->family.compare(b->family);
    return order ? order < 0 : 2 * a->italic + a->bold < 2 * b->italic + b->bold;
}

std::unique_ptr<Catalog> MakeCatalog(const std::vector<FoundFace>& found)
{
    std::vector<std::unique_ptr<Face>> faces;
    faces.reserve(found.size());
    for (const FoundFace& one : found) {
        faces.push_back(std::make_unique<Face>(one.Names()));
        // A family whose name has no character of the code page can't be asked for.
        if (faces.back()->family.find_first_not_of("? ") == std::string::npos)
            faces.pop_back();
    }
    auto catalog = std::make_unique<Catalog>();
    catalog->reserve(faces.size());
    for (std::unique_ptr<Face>& face : faces)
        catalog->push_back(face.release());
    std::stable_sort(catalog->begin(), catalog->end(), IsBefore);
    return catalog;
}

const Catalog& GetCatalog()
{
    static constinit std::atomic<const Catalog*> catalog;
    static constinit const Catalog none{};
    if (const Catalog* const found = catalog.load())
        return *found;
    std::vector<FoundFace> found;
    if (const Host host; host)
        host->fonts->list(&found, TakeFace);
    else
        return none; // Another time the host may be there.
    // Behind the scope: to convert a name may need the host too.
    return *Publish(catalog, MakeCatalog(found));
}

const Face& BuiltInFace()
{
    // Never ended, and made without memory.
    alignas(Face) static char place[sizeof(Face)];
    static const Face& face = *new (place) Face;
    return face;
}

unsigned DistanceOf(const Face* face, bool bold, bool italic)
{
    return 2 * (face->italic != italic) + (face->bold != bold);
}

struct Place
{
    std::string file;
    int index;
};

void TakePlace(void* place, const FaceNames& names)
{
    *static_cast<Place*>(place) = {names.file, names.index};
}

// What Fontconfig takes for a family; null without any face.
const Face* Substitute(const char* family, bool bold, bool italic)
{
    const std::string name = ToUtf8(family);
    Place place;
    if (const Host host;
        !host || !host->fonts->match(name.c_str(), bold, italic, &place, TakePlace))
        return nullptr;
    const Faces faces = AllFaces();
    const auto found = std::find_if(faces.begin(), faces.end(), [&place](const Face* face) {
        return face->index == place.index && face->file == place.file;
    });
    if (found != faces.end())
        return *found;
    return faces.begin() != faces.end() ? *faces.begin() : nullptr;
}
} // namespace

// ---- Sizes --------------------------------------------------------------------------------

FaceSize::FaceSize(const Face& whose, unsigned size) : face(whose), dots(size) {}

void FaceSize::GetMetrics(TEXTMETRICA& metrics) const
{
    const FaceFacts& facts = face.GetFacts();
    const std::int64_t scale =
        ((static_cast<std::int64_t>(dots) << 16) + facts.unitsPerEm / 2) / facts.unitsPerEm;
    const auto scaled = [scale](int units) {
        return static_cast<LONG>((units * scale + 0x8000) >> 16);
    };
    const int cell = facts.winAscent + facts.winDescent;
    metrics = {};
    metrics.tmAscent = scaled(facts.winAscent);
    metrics.tmDescent = scaled(facts.winDescent);
    metrics.tmHeight = metrics.tmAscent + metrics.tmDescent;
    metrics.tmInternalLeading = scaled(cell - facts.unitsPerEm);
    metrics.tmExternalLeading =
        scaled(std::max(0, facts.lineGap - (cell - (facts.ascender - facts.descender))));
    metrics.tmAveCharWidth = scaled(facts.averageWidth);
    metrics.tmMaxCharWidth = scaled(facts.maximumWidth);
    metrics.tmDigitizedAspectX = 96;
    metrics.tmDigitizedAspectY = 96;
    metrics.tmFirstChar = 30;
    metrics.tmLastChar = 255;
    metrics.tmDefaultChar = 31;
    metrics.tmBreakChar = 32;
    // The low half: a vector font, TrueType, of varying widths.
    metrics.tmPitchAndFamily = facts.fixed ? 0x36 : facts.serif ? 0x17 : 0x27;
}

bool FaceSize::Measure(WCHAR unit, Glyph& glyph) const
{
    glyph = {static_cast<int>(BUILT_IN_WIDTH * dots / BUILT_IN_HEIGHT), 0, 1};
    if (face.file.empty())
        return true;
    const Host host;
    return host && host->fonts->measure(face.file.c_str(), face.index, dots, unit, &glyph);
}

Glyph FaceSize::GetGlyph(WCHAR unit) const
{
    Glyph glyph;
    Measure(unit, glyph);
    return glyph;
}

std::atomic<short>* FaceSize::GetRow(WCHAR unit) const
{
    std::atomic<Row*>& place = rows[unit / ROW];
    if (Row* const row = place.load(std::memory_order_acquire))
        return *row;
    std::atomic<short>* const made = new (std::nothrow) std::atomic<short>[ROW];
    if (!made)
        return nullptr;
    for (unsigned i = 0; i < ROW; ++i)
        made[i].store(-1, std::memory_order_relaxed);
    Row* expected = nullptr;
    if (place.compare_exchange_strong(expected, reinterpret_cast<Row*>(made)))
        return made;
    delete[] made;
    return *expected;
}

int FaceSize::GetWidth(WCHAR unit) const
{
    std::atomic<short>* const row = GetRow(unit);
    if (!row)
        return GetGlyph(unit).advance;
    std::atomic<short>& width = row[unit % ROW];
    if (const int known = width.load(std::memory_order_relaxed); known >= 0)
        return known;
    Glyph glyph;
    // What couldn't be measured may be so another time.
    if (Measure(unit, glyph) && glyph.advance >= 0 && glyph.advance <= 0x7FFF)
        width.store(static_cast<short>(glyph.advance), std::memory_order_relaxed);
    return glyph.advance;
}

// ---- Faces --------------------------------------------------------------------------------

Face::Face(const FaceNames& names)
    : file(names.file),
      index(names.index),
      family(ToAnsi(names.family, LF_FACESIZE)),
      style(ToAnsi(names.style, LF_FACESIZE)),
      fullName(ToAnsi(names.fullName, LF_FULLFACESIZE)),
      bold(names.bold),
      italic(names.italic)
{}

Face::Face() : family("System"), style("Regular"), fullName("System"), facts(&BUILT_IN) {}

const FaceFacts& Face::GetFacts() const
{
    if (const FaceFacts* const found = facts.load())
        return *found;
    std::unique_ptr<FaceFacts> made(new (std::nothrow) FaceFacts(BUILT_IN));
    if (!made)
        return BUILT_IN;
    FaceFacts read;
    if (ReadSfntFacts(file.c_str(), index, &read) || ReadType1Facts(file.c_str(), index, &read))
        *made = read;
    else if (const Host host; host && host->fonts->read(file.c_str(), index, &read))
        *made = read;
    return *Publish(facts, std::move(made));
}

// How many dots an em has for a height of the platform.
static LONG DotsOf(LONG height, const FaceFacts& facts)
{
    if (height == 0)
        height = STANDARD_HEIGHT;
    const int cell = facts.winAscent + facts.winDescent;
    const std::int64_t dots =
        height < 0 ? -static_cast<std::int64_t>(height)
                   : (static_cast<std::int64_t>(facts.unitsPerEm) * height + cell / 2) / cell;
    return static_cast<LONG>(std::clamp<std::int64_t>(dots, 1, MOST_DOTS));
}

const FaceSize* Face::GetSize(LONG height) const
{
    const unsigned dots = static_cast<unsigned>(DotsOf(height, GetFacts()));
    FaceSize* head = sizes.load();
    for (const FaceSize* size = head; size; size = size->next)
        if (size->dots == dots)
            return size;
    // Two threads may make the same size: one of them is of no use then.
    FaceSize* const made = new (std::nothrow) FaceSize(*this, dots);
    if (!made)
        return nullptr;
    made->next = head;
    while (!sizes.compare_exchange_weak(made->next, made)) {
    }
    return made;
}

Faces AllFaces()
{
    const Catalog& catalog = GetCatalog();
    return {catalog.data(), catalog.data() + catalog.size()};
}

bool IsSameFamily(const char* name, const char* other)
{
    while (*name && Fold(*name) == Fold(*other)) {
        ++name;
        ++other;
    }
    return !*name && !*other;
}

const Face* FindFace(const char* family, bool bold, bool italic)
{
    const Face* best = nullptr;
    for (const Face* const face : AllFaces()) {
        if (IsSameFamily(face->family.c_str(), family) &&
            (!best || DistanceOf(face, bold, italic) < DistanceOf(best, bold, italic)))
            best = face;
    }
    if (!best)
        best = Substitute(family, bold, italic);
    return best ? best : &BuiltInFace();
}
} // namespace winapi
