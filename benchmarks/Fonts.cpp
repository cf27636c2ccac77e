// benchmarks/Fonts.cpp: widths of texts, line by line, and a font that is there already.
//
// All sides measure a face of 12 points at 96 dots an inch: DejaVu Sans, for Japanese VL Gothic. Ours
// and FreeType's add up the hinted widths of single characters, which are kept once they are known:
// FreeType's side in a table of its own, ours behind the calls of the system. Qt and Pango lay a text
// out, with kerning and with other faces for what this one lacks; so a peer's answer is whether its
// width is near ours.
//
// "hire" takes a font from a pool of 8, by name, asks for its ascent and gives it back; Qt's side
// makes a QFont anew and asks that one.
#include <Ostra/String/CString.h>
#include <Ostra/String/UString.h>
#include <System/FontManager/FontManager.h>
#include <System/FontManager/LogicalFont.h>

#include <winapi/Fonts/Font.h>

#include <cstdlib>
#include <deque>
#include <memory>
#include <string>
#include <vector>

#if HAVE_FREETYPE
#include <fontconfig/fontconfig.h>
#include <ft2build.h>
#include FT_FREETYPE_H
#endif
#if HAVE_QTGUI
#include <QFont>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QString>
#endif
#if HAVE_PANGO
#include <pango/pangoft2.h>
#endif

#include "Support/Inputs.h"
#include "Support/Job.h"

using namespace winapi;

namespace
{
constexpr unsigned ALL = 0xFFFFFFFF;
constexpr int DOTS = 16;
constexpr int POINTS = 12;

using Answers = std::vector<bool>; // whether a line's width is near ours
using Widths = std::vector<unsigned>;

struct Input
{
    std::string name;
    std::string face;
    unsigned charset;
};

bool IsNear(unsigned width, unsigned ours)
{
    const unsigned margin = ours / 10 + 2 * DOTS;
    return width <= ours + margin && ours <= width + margin;
}

// A side that measures each line by call(line); the first one is ours.
template <class Lines, class Call>
void AddSide(Measure<Answers>& measure, const char* side, std::shared_ptr<Lines> lines,
             std::shared_ptr<Widths> ours, Call call)
{
    measure.Side(
        side,
        [lines, call] {
            unsigned sum = 0;
            for (const auto& line : *lines)
                sum += call(line);
            return sum;
        },
        [lines, ours, call] {
            Answers answers;
            for (const auto& line : *lines) {
                const unsigned width = call(line);
                if (ours->size() < lines->size())
                    ours->push_back(width);
                answers.push_back(IsNear(width, (*ours)[answers.size()]));
            }
            return answers;
        });
}

// ---- The library ------------------------------------------------------------------------------

HDC NewDevice()
{
    return GetDC(GetDesktopWindow());
}

CT_LogicalFont* Hire(HDC dc, const std::string& face, unsigned charset, unsigned points)
{
    const CT_CString name(face.c_str());
    return CT_FontManager::spco_GetFontManager()->pco_Hire(dc, &name, charset, points, 0, 0, 0, 0);
}

bool HasFace(const std::string& face)
{
    const HDC dc = NewDevice();
    int count = 0;
    const auto add = [](const LOGFONTA*, const TEXTMETRICA*, DWORD, LPARAM place) {
        return ++*reinterpret_cast<int*>(place);
    };
    EnumFontFamiliesA(dc, face.c_str(), add, reinterpret_cast<LPARAM>(&count));
    ReleaseDC(GetDesktopWindow(), dc);
    return count > 0;
}

void AddOstra(Measure<Answers>& measure, const std::vector<std::u16string>& units,
              std::shared_ptr<Widths> ours, const Input& input)
{
    const auto lines = std::make_shared<std::deque<CT_UString>>();
    for (const std::u16string& line : units)
        lines->emplace_back(line.c_str());
    // The device lasts as long as the process.
    const HDC dc = NewDevice();
    const CT_LogicalFont* const font = Hire(dc, input.face, input.charset, POINTS);
    SelectObject(dc, font->h_GetHandle());
    AddSide(measure, "ostra", lines, ours, [font, dc](const CT_UString& line) {
        return font->n_GetTextExtent(dc, &line, 0, ALL);
    });
}

// ---- Peers ------------------------------------------------------------------------------------

#if HAVE_FREETYPE
std::string FileOf(const std::string& family)
{
    FcPattern* const wanted = FcNameParse(reinterpret_cast<const FcChar8*>(family.c_str()));
    FcConfigSubstitute(nullptr, wanted, FcMatchPattern);
    FcDefaultSubstitute(wanted);
    FcResult result;
    FcPattern* const found = FcFontMatch(nullptr, wanted, &result);
    FcChar8* file = nullptr;
    FcPatternGetString(found, FC_FILE, 0, &file);
    const std::string path = file ? reinterpret_cast<const char*>(file) : "";
    FcPatternDestroy(found);
    FcPatternDestroy(wanted);
    return path;
}

class Advances
{
public:
    explicit Advances(const std::string& family) : widths(0x10000, UNKNOWN)
    {
        const std::string file = FileOf(family);
        if (FT_Init_FreeType(&library) || FT_New_Face(library, file.c_str(), 0, &face))
            Job::Disagree(file, 1, 1, 0);
        FT_Set_Pixel_Sizes(face, 0, DOTS);
    }
    Advances(const Advances&) = delete;
    Advances& operator=(const Advances&) = delete;
    ~Advances()
    {
        FT_Done_Face(face);
        FT_Done_FreeType(library);
    }

    unsigned Of(const std::u16string& text)
    {
        unsigned sum = 0;
        for (const char16_t unit : text) {
            if (widths[unit] == UNKNOWN && !FT_Load_Char(face, unit, FT_LOAD_DEFAULT))
                widths[unit] = static_cast<unsigned>((face->glyph->advance.x + 32) >> 6);
            sum += widths[unit];
        }
        return sum;
    }

private:
    static constexpr unsigned UNKNOWN = 0xFFFFFFFF;

    FT_Library library = nullptr;
    FT_Face face = nullptr;
    std::vector<unsigned> widths;
};

void AddFreeType(Measure<Answers>& measure, std::shared_ptr<std::vector<std::u16string>> units,
                 std::shared_ptr<Widths> ours, const Input& input)
{
    const auto advances = std::make_shared<Advances>(input.face);
    AddSide(measure, "freetype", units, ours,
            [advances](const std::u16string& line) { return advances->Of(line); });
}
#endif

#if HAVE_QTGUI
QFont MakeFont(const std::string& face, int dots)
{
    QFont font(QString::fromStdString(face));
    font.setPixelSize(dots);
    return font;
}

void AddQt(Measure<Answers>& measure, const std::vector<std::u16string>& units,
           std::shared_ptr<Widths> ours, const Input& input)
{
    const auto texts = std::make_shared<std::vector<QString>>();
    for (const std::u16string& line : units)
        texts->push_back(QString::fromStdU16String(line));
    const auto metrics = std::make_shared<QFontMetrics>(MakeFont(input.face, DOTS));
    AddSide(measure, "qt", texts, ours, [metrics](const QString& line) {
        return static_cast<unsigned>(metrics->horizontalAdvance(line));
    });
}
#endif

#if HAVE_PANGO
class Layout
{
public:
    explicit Layout(const std::string& face) : map(pango_ft2_font_map_new())
    {
        pango_ft2_font_map_set_resolution(PANGO_FT2_FONT_MAP(map), 96, 96);
        context = pango_font_map_create_context(map);
        layout = pango_layout_new(context);
        PangoFontDescription* const description = pango_font_description_from_string(face.c_str());
        pango_font_description_set_absolute_size(description, DOTS * PANGO_SCALE);
        pango_layout_set_font_description(layout, description);
        pango_font_description_free(description);
    }
    Layout(const Layout&) = delete;
    Layout& operator=(const Layout&) = delete;
    ~Layout()
    {
        g_object_unref(layout);
        g_object_unref(context);
        g_object_unref(map);
    }

    unsigned WidthOf(const std::string& text)
    {
        int width = 0;
        pango_layout_set_text(layout, text.data(), static_cast<int>(text.size()));
        pango_layout_get_pixel_size(layout, &width, nullptr);
        return static_cast<unsigned>(width);
    }

private:
    PangoFontMap* map;
    PangoContext* context;
    PangoLayout* layout;
};

void AddPango(Measure<Answers>& measure, std::shared_ptr<Widths> ours, const Input& input)
{
    const auto lines = std::make_shared<std::vector<std::string>>(Inputs::Lines(input.name));
    const auto layout = std::make_shared<Layout>(input.face);
    AddSide(measure, "pango", lines, ours,
            [layout](const std::string& line) { return layout->WidthOf(line); });
}
#endif

// ---- The measures -----------------------------------------------------------------------------

void RegisterWidth(const Input& input)
{
    if (!HasFace(input.face))
        return;
    const auto units = std::make_shared<std::vector<std::u16string>>(Inputs::UnitLines(input.name));
    const auto ours = std::make_shared<Widths>();
    Measure<Answers> measure("width", input.name, {Amount::ITEMS, units->size()}, 0.02);
    AddOstra(measure, *units, ours, input);
#if HAVE_FREETYPE
    AddFreeType(measure, units, ours, input);
#endif
#if HAVE_QTGUI
    AddQt(measure, *units, ours, input);
#endif
#if HAVE_PANGO
    AddPango(measure, ours, input);
#endif
}

void RegisterHire()
{
    constexpr unsigned FONTS = 8;
    const std::string face = "DejaVu Sans";
    if (!HasFace(face))
        return;
    const HDC dc = NewDevice();
    for (unsigned n = 0; n < FONTS; ++n)
        CT_FontManager::spco_GetFontManager()->v_Fire(Hire(dc, face, 0, POINTS + n));
    Measure<Answers> measure("hire", "present", {Amount::ITEMS, FONTS});
    const auto answers = [] {
        return Answers(FONTS, true);
    };
    const auto name = std::make_shared<CT_CString>(face.c_str());
    measure.Side(
        "ostra",
        [dc, name] {
            CT_FontManager* const manager = CT_FontManager::spco_GetFontManager();
            unsigned sum = 0;
            for (unsigned n = 0; n < FONTS; ++n) {
                CT_LogicalFont* const font =
                    manager->pco_Hire(dc, name.get(), 0, POINTS + n, 0, 0, 0, 0);
                sum += static_cast<unsigned>(font->pcso_GetTextMetric()->tmAscent);
                manager->v_Fire(font);
            }
            return sum;
        },
        answers);
#if HAVE_QTGUI
    measure.Side(
        "qt",
        [family = QString::fromStdString(face)] {
            int sum = 0;
            for (unsigned n = 0; n < FONTS; ++n) {
                QFont font(family);
                font.setPixelSize(static_cast<int>(DOTS + n));
                sum += QFontMetrics(font).ascent();
            }
            return sum;
        },
        answers);
#endif
}
} // namespace

int main(int argc, char** argv)
{
#if HAVE_QTGUI
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    const QGuiApplication application(argc, argv);
#endif
    for (const Input& input :
         {Input{"words.de", "DejaVu Sans", 0}, Input{"faq.ru", "DejaVu Sans", 204},
          Input{"faq.ja", "VL Gothic", 128}})
        RegisterWidth(input);
    RegisterHire();
    return Job::Run(argc, argv, OSTRA_ABSENT_PEERS);
}
