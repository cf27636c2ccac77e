// examples/specimen/Specimen.cpp
#include "Specimen.h"

#include "Faces.h"
#include "Options.h"
#include "Raster.h"
#include "Shaper.h"
#include "Sheet.h"

#include <Common/Failure.h>
#include <Common/Output.h>
#include <Common/Utf8.h>

#include <Ostra/File/WinFile.h>
#include <System/FontManager/FontManager.h>

#include <algorithm>
#include <cctype>
#include <new>

namespace specimen
{
namespace
{
using common::Fail;
using common::Failed;
using common::Failing;

constexpr char SOURCE[] = "specimen/Specimen";

constexpr unsigned FILE_BUFFER = 4096;
constexpr unsigned ATTRIBUTE_NORMAL = 1;

// One run of the program.
class Job
{
public:
    Job(const Options& asked, std::ostream& out, std::ostream& err)
        : options(asked),
          output(out),
          errors(err)
    {}

    Status Run();

private:
    Status List();
    Status DrawSheet();
    Status MeasureText();

    bool AddSection(unsigned set, Sheet* sheet);
    bool AddRow(const CT_UString& text, unsigned points, Section* section);
    std::string Substitution(const std::string& taken, unsigned set);
    Status Write(const std::string& bytes);
    void WriteTo(const CT_UString& name, const std::string& bytes);
    Status Refuse(const std::string& reason);
    Status Report(const std::string& context);
    const std::string& Face() const { return options.operands[0]; }
    Wish WishFor(unsigned set, unsigned points) const
    {
        return {Face(), set, points, options.bold, options.italic};
    }

    const Options& options;
    std::ostream& output;
    std::ostream& errors;
    std::string told; // of a face that isn't there
};

// A face's name may hold anything; the message stays one line.
std::string OneLine(std::string text)
{
    for (char& c : text)
        if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F)
            c = '?';
    return text;
}

std::string Words(const Style& style)
{
    std::string sets;
    for (const unsigned set : style.sets)
        sets += (sets.empty() ? "" : ", ") + std::to_string(set) + " " + NameOfSet(set);
    const char* const flags[] = {"", "bold", "italic", "bold italic"};
    return OneLine(style.family) + "\t" + OneLine(style.name) + "\t" +
           flags[(style.bold ? 1 : 0) + (style.italic ? 2 : 0)] + "\t" + sets + "\n";
}

bool IsPng(const std::string& name)
{
    std::string end = name.size() < 4 ? "" : name.substr(name.size() - 4);
    for (char& c : end)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return end == ".png";
}

Status Job::Run()
{
    if (options.command == Options::LIST)
        return List();
    return options.command == Options::MEASURE ? MeasureText() : DrawSheet();
}

Status Job::Refuse(const std::string& reason)
{
    errors << "specimen: " << OneLine(reason) << '\n';
    return FAILED;
}

Status Job::Report(const std::string& context)
{
    common::Failure::Take().Print(errors, "specimen", context, false);
    return FAILED;
}

Status Job::List()
{
    const std::vector<Style> styles =
        ListStyles(options.operands.empty() ? nullptr : &options.operands[0]);
    if (Failing())
        return Report("cannot list the faces");
    if (styles.empty())
        return Refuse(options.operands.empty() ? "the system has no faces"
                                               : Face() + ": no such face");
    for (const Style& style : styles)
        output << Words(style);
    return DONE;
}

// ---- Sheets -------------------------------------------------------------------------------

// "NAME: no such face; FACE is taken", which is told once, or an empty text.
std::string Job::Substitution(const std::string& taken, unsigned set)
{
    if (IsAsked(taken, Face(), set))
        return "";
    const std::string note =
        Face() + ": no such face; " + (taken.empty() ? "none" : taken) + " is taken";
    if (note != told)
        Refuse(note);
    told = note;
    return note;
}

bool Job::AddRow(const CT_UString& text, unsigned points, Section* section)
{
    const HiredFont font(WishFor(section->set, points));
    if (!font.IsThere())
        return false;
    const TEXTMETRICA& metrics = font.Metrics();
    section->face = font.Face();
    section->bold = metrics.tmWeight >= 600;
    section->italic = metrics.tmItalic != 0;
    Row row = {points, font.Dots(), metrics.tmAscent, metrics.tmDescent, {}};
    for (unsigned n = 0; n < text.vn_GetLength(); ++n)
        row.widths.push_back(font.WidthOf(text, n, 1) - static_cast<unsigned>(metrics.tmOverhang));
    section->rows.push_back(row);
    return !Failing();
}

bool Job::AddSection(unsigned set, Sheet* sheet)
{
    CT_UString text;
    CT_FontManager::sv_GetFontSampleText(&text, set);
    Section section = {set, "", false, false, {}, {}, ""};
    for (unsigned n = 0; n < text.vn_GetLength(); ++n)
        section.text.push_back(common::ToUtf8(text.qcuz_Get() + n, 1));
    for (const unsigned points : options.sizes)
        if (Failing() || !AddRow(text, points, &section))
            return false;
    section.note = Substitution(section.face, set);
    sheet->sections.push_back(section);
    return true;
}

Status Job::DrawSheet()
{
    std::vector<unsigned> sets = options.sets;
    if (sets.empty()) {
        const HiredFont font(WishFor(0, options.sizes[0]));
        if (!font.IsThere())
            return Report("cannot hire a font");
        sets = SetsOf(font.Face());
    }
    Sheet sheet = {Face(), {}};
    for (const unsigned set : sets)
        if (!AddSection(set, &sheet))
            return Report("cannot hire a font");
    const Picture picture = Draw(sheet, IsPng(options.output));
    if (!IsPng(options.output))
        return Write(picture.svg);
    std::string png;
    std::string reason;
    if (!MakePng(picture, &png, &reason))
        return Refuse(options.output + ": " + reason);
    return Write(png);
}

Status Job::Write(const std::string& bytes)
{
    if (options.output.empty()) {
        output << bytes;
        return DONE;
    }
    CT_UString name;
    common::ToWide(options.output, &name);
    common::Output place;
    if (common::Output::IsStream(name)) {
        WriteTo(name, bytes);
    } else if (place.Take(name) && place.Start()) {
        WriteTo(place.Fresh(), bytes);
        if (!Failing())
            place.Commit();
        else
            place.LeaveToOthers();
    }
    if (!Failing())
        return DONE;
    const Status status = Report("cannot write " + options.output);
    if (place.IsTaken())
        place.Discard();
    return status;
}

void Job::WriteTo(const CT_UString& name, const std::string& bytes)
{
    CT_WinFile file(&name, FILE_BUFFER);
    file.vv_Open(CT_File::e_AccessWrite, CT_File::e_OpenCreate, CT_File::e_ShareNone,
                 ATTRIBUTE_NORMAL, 0);
    const unsigned size = static_cast<unsigned>(bytes.size());
    if (!Failing() && file.vn_Write(bytes.data(), size) != size && !Failing())
        Fail(SOURCE, u"%s: there is no room for the sheet", name.qcuz_Get());
    if (!Failing())
        file.vv_Close();
    Failed(SOURCE);
}

// ---- Widths -------------------------------------------------------------------------------

Status Job::MeasureText()
{
    const std::string& text = options.operands[2];
    CT_UString wide;
    common::ToWide(text, &wide);
    const unsigned set = options.sets.empty() ? 0 : options.sets[0];
    const HiredFont font(WishFor(set, *ToSize(options.operands[1])));
    if (Failing() || !font.IsThere())
        return Report("cannot hire a font");
    const std::string face = font.Face();
    Substitution(face, set);
    output << "face      " << OneLine(face) << "\n"
           << "em        " << font.Dots() << "\n"
           << "width     " << font.WidthOf(wide) << "\n";
    const TEXTMETRICA& metrics = font.Metrics();
    const auto shaped = [&](bool kerned) {
        return ShapedWidth(face, metrics.tmWeight >= 600, metrics.tmItalic != 0, font.Dots(), text,
                           kerned);
    };
    if (const auto kerned = shaped(true))
        output << "harfbuzz  " << *kerned << ", without kerning and ligatures "
               << shaped(false).value_or(0) << "\n";
    return Failing() ? Report("cannot measure the text") : DONE;
}

Status RunJob(const Options& options, std::ostream& output, std::ostream& errors)
{
    try {
        return Job(options, output, errors).Run();
    } catch (const std::bad_alloc&) {
        errors << "specimen: out of memory\n";
        return FAILED;
    }
}
} // namespace

Status Run(const std::vector<std::string>& arguments, std::ostream& output, std::ostream& errors)
{
    if (!std::all_of(arguments.begin(), arguments.end(), common::IsUtf8)) {
        errors << "specimen: an argument is not UTF-8\n";
        return FAILED;
    }
    Options options;
    const std::string wrong = options.Parse(arguments);
    if (!wrong.empty()) {
        if (wrong != " ")
            errors << "specimen: " << OneLine(wrong) << "\n";
        errors << USAGE_TEXT;
        return USAGE;
    }
    Status status = DONE;
    if (options.help)
        output << HELP_TEXT;
    else if (options.version)
        output << "specimen (Ostra) " OSTRA_TOOL_VERSION "\n";
    else
        status = RunJob(options, output, errors);
    if (!output.flush()) {
        errors << "specimen: cannot write the output\n";
        return FAILED;
    }
    return status;
}
} // namespace specimen
