// tests/Examples/SpecimenTest.cpp: the lists, sheets and widths of specimen.
#include <Faces.h>
#include <Raster.h>
#include <Sheet.h>
#include <Specimen.h>

#include <gtest/gtest.h>

#include "Result.h"
#include "Support/Directory.h"
#include "Support/Files.h"
#include "System/FontManager/FontSupport.h"

#include <filesystem>
#include <random>
#include <sstream>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace
{
typedef std::vector<std::string> Strings;

Result RunSpecimen(const Strings& arguments)
{
    return ResultOf([&](std::ostream& output, std::ostream& errors) {
        return specimen::Run(arguments, output, errors);
    });
}

// The output of a run in which nothing was to be said.
std::string Printed(const Strings& arguments)
{
    const Result result = RunSpecimen(arguments);
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.errors, "");
    return result.output;
}

Strings Split(const std::string& text, char end)
{
    Strings parts;
    std::istringstream stream(text);
    for (std::string part; std::getline(stream, part, end);)
        parts.push_back(part);
    return parts;
}

std::size_t CountOf(const std::string& text, const std::string& part)
{
    std::size_t count = 0;
    for (std::size_t at = text.find(part); at != text.npos; at = text.find(part, at + 1))
        ++count;
    return count;
}

// Empty, or what is wrong with the XML: tags that aren't closed, signs that have to be escaped.
std::string FaultOf(const std::string& xml)
{
    Strings open;
    for (std::size_t at = xml.find("?>") + 2; at < xml.size();) {
        if (xml[at] == '<') {
            const std::size_t end = xml.find('>', at);
            if (end == xml.npos)
                return "a tag without an end";
            const std::string tag = xml.substr(at + 1, end - at - 1);
            if (tag.find('<') != tag.npos || CountOf(tag, "\"") % 2)
                return "a tag with an open quotation: " + tag;
            const std::string name = tag.substr(0, tag.find(' '));
            if (tag[0] == '/' && (open.empty() || open.back() != tag.substr(1)))
                return "closed, and not open: " + tag;
            if (tag[0] == '/')
                open.pop_back();
            else if (tag.back() != '/')
                open.push_back(name);
            at = end + 1;
        } else {
            const std::string rest = xml.substr(at, 6);
            const unsigned char c = static_cast<unsigned char>(xml[at]);
            if (c == '&' && rest.find(';') == rest.npos)
                return "a bare &";
            if (c == '>' || (c < 0x20 && c != '\n'))
                return "a bare sign " + std::to_string(c);
            ++at;
        }
    }
    return open.empty() ? "" : "open at the end: " + open.back();
}

// "ascent 15, descent 4, width 238" of what the class tells.
std::string RemarkOn(const Request& request)
{
    const Screen dc;
    MadeFont font(dc, request);
    CT_UString text;
    CT_FontManager::sv_GetFontSampleText(&text, request.charset);
    const HGDIOBJ old = SelectObject(dc, font->h_GetHandle());
    const unsigned width = font->n_GetTextExtent(dc, &text, 0, CT_String::ALL);
    SelectObject(dc, old);
    const TEXTMETRICA& metrics = *font->pcso_GetTextMetric();
    return "ascent " + std::to_string(metrics.tmAscent) + ", descent " +
           std::to_string(metrics.tmDescent) + ", width " + std::to_string(width) + "<";
}
} // namespace

TEST(Specimen, ListsStylesWithFlagsAndCharacterSets)
{
    OSTRA_NEEDS_FONTS();
    const Strings lines = Split(Printed({"list", "dejavu SANS"}), '\n');
    ASSERT_EQ(lines.size(), 4u);
    const Strings styles = {"\tBook\t\t", "\tBold\tbold\t", "\tOblique\titalic\t",
                            "\tBold Oblique\tbold italic\t"};
    for (const std::string& style : styles) {
        const auto has = [&](const std::string& line) {
            return line.starts_with("DejaVu Sans" + style + "0 Western European, ") &&
                   line.find(", 204 Cyrillic, ") != line.npos;
        };
        EXPECT_EQ(std::count_if(lines.begin(), lines.end(), has), 1) << style;
    }
}

TEST(Specimen, ListsTheStylesOfAllFacesByFace)
{
    OSTRA_NEEDS_FONTS();
    const std::string all = Printed({"list"});
    EXPECT_NE(all.find(Printed({"list", "DejaVu Sans"})), all.npos);
    EXPECT_NE(all.find(Printed({"list", "Liberation Serif"})), all.npos);
    std::string last;
    for (const std::string& line : Split(all, '\n')) {
        const Strings fields = Split(line, '\t');
        ASSERT_EQ(fields.size(), 4u) << line;
        EXPECT_LE(last, fields[0]);
        last = fields[0];
        EXPECT_FALSE(fields[1].empty() || fields[3].empty()) << line;
    }
}

TEST(Specimen, ListingAFaceThatIsntThereIsRefused)
{
    const Result result = RunSpecimen({"list", "No\nsuch face"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors, "specimen: No?such face: no such face\n");
}

TEST(Specimen, ASheetHasEachCharacterSetOfTheFaceInEachSize)
{
    OSTRA_NEEDS_FONTS();
    const std::string sheet = Printed({"Liberation Serif", "--sizes", "9,36"});
    EXPECT_EQ(FaultOf(sheet), "");
    const std::vector<unsigned> sets = specimen::SetsOf("Liberation Serif");
    EXPECT_GT(sets.size(), 5u);
    std::size_t at = 0;
    for (const unsigned set : sets) {
        const std::string heading = "(set " + std::to_string(set);
        const std::size_t here = sheet.find(heading, at);
        ASSERT_NE(here, sheet.npos) << set;
        at = here;
        for (const unsigned points : {9u, 36u}) {
            Request request{"Liberation Serif", set, points};
            const std::size_t row = sheet.find(std::to_string(points) + " pt<", at);
            const std::size_t remark = sheet.find("ascent", row);
            EXPECT_EQ(sheet.substr(remark, sheet.find('<', remark) + 1 - remark), RemarkOn(request))
                << set << " " << points;
            at = remark;
        }
    }
    EXPECT_EQ(CountOf(sheet, " pt<"), 2 * sets.size());
}

TEST(Specimen, MeasuresAreDrawnAsLines)
{
    const specimen::Section section = {
        204, "A face", true, true, {"\u0410", "\u0430"}, {{12, 16, 15, 4, {11, 10}}}, ""};
    const specimen::Picture picture = specimen::Draw({"A face", {section}}, false);
    EXPECT_EQ(FaultOf(picture.svg), "");
    // The frame with a tick behind each character, and the base line below the ascent.
    EXPECT_NE(picture.svg.find("<path class=\"frame\" d=\"M72 90h21M72 109h21M72 90v19M93 90v19"
                               "M83 105v4M93 105v4\"/>"),
              picture.svg.npos)
        << picture.svg;
    EXPECT_NE(picture.svg.find("<path class=\"base\" d=\"M72 105h21\"/>"), picture.svg.npos);
    EXPECT_NE(
        picture.svg.find("<g font-family=\"'A face'\" font-size=\"16px\" font-weight=\"bold\" "
                         "font-style=\"italic\"><text class=\"sample\" x=\"72 83\" "
                         "y=\"105\">\u0410\u0430</text></g>"),
        picture.svg.npos);
    EXPECT_NE(picture.svg.find("Cyrillic (set 204, code page 1251)"), picture.svg.npos);
    const specimen::Picture apart = specimen::Draw({"A face", {section}}, true);
    EXPECT_EQ(FaultOf(apart.svg), "");
    EXPECT_NE(apart.svg.find("x=\"72\" y=\"105\">\u0410</text><text class=\"sample\" x=\"83\" "
                             "y=\"105\">\u0430</text></g>"),
              apart.svg.npos);
}

TEST(Specimen, AStyleThatIsAskedForIsDrawn)
{
    OSTRA_NEEDS_FONTS();
    const std::string sheet =
        Printed({"--bold", "DejaVu Sans", "--italic", "--set", "0", "--sizes", "12"});
    EXPECT_NE(sheet.find(" font-weight=\"bold\" font-style=\"italic\""), sheet.npos);
    EXPECT_NE(sheet.find(RemarkOn({"DejaVu Sans", 0, 12, 1, 1})), sheet.npos);
    EXPECT_EQ(Printed({"DejaVu Sans", "--set", "0", "--sizes", "12"}).find("font-weight"),
              sheet.npos);
}

TEST(Specimen, ASuffixGoesWithItsCharacterSet)
{
    OSTRA_NEEDS_FONTS();
    const std::string sheet = Printed({"DejaVu Sans Cyr", "--set", "204", "--sizes", "12"});
    EXPECT_NE(sheet.find("font-family=\"'DejaVu Sans'\""), sheet.npos);
    EXPECT_EQ(sheet.find("class=\"note\""), sheet.npos);
}

TEST(Specimen, SaysWhichFaceWasTakenForOneThatIsntThere)
{
    OSTRA_NEEDS_FONTS();
    for (const Strings& more : {Strings{"--sizes", "12,14"}, Strings{"--set", "204"}}) {
        Strings arguments = {"No Such Face"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        const Result result = RunSpecimen(arguments);
        EXPECT_EQ(result.status, 0);
        const std::string start = "specimen: No Such Face: no such face; ";
        ASSERT_TRUE(result.errors.starts_with(start)) << result.errors;
        EXPECT_EQ(CountOf(result.errors, "\n"), 1u);
        const std::string rest = result.errors.substr(start.size());
        const std::string taken = rest.substr(0, rest.find(" is taken\n"));
        EXPECT_GT(StylesOf(taken.c_str()), 0) << taken;
        EXPECT_NE(result.output.find("font-family=\"'" + taken + "'\""), std::string::npos);
        EXPECT_NE(result.output.find(">No Such Face: no such face; " + taken + " is taken<"),
                  std::string::npos);
    }
    const Result result = RunSpecimen({"measure", "No Such Face", "12", "text"});
    EXPECT_EQ(result.status, 0);
    EXPECT_TRUE(result.errors.starts_with("specimen: No Such Face: no such face; "));
}

TEST(Specimen, NamesMayHoldAnything)
{
    const Strings names = {
        "<g>&amp;\"quoted\" 'single' \\ ]]>", "\U0001F600 face",      "two\nlines\x01\x7F",
        "noncharacter \uFFFF\uFFFE",          std::string(1000, 'x'), "%s%n"};
    for (const std::string& name : names) {
        const Result result = RunSpecimen({"--sizes", "12", "--set", "0", "--", name});
        EXPECT_EQ(result.status, 0) << name;
        EXPECT_EQ(FaultOf(result.output), "") << name;
        EXPECT_LE(CountOf(result.errors, "\n"), 1u) << result.errors;
        EXPECT_EQ(result.output.find("\x01"), std::string::npos);
    }
    // The name of a face that is drawn, too.
    const specimen::Section section = {0,     "it's \"\\<",         false, false,
                                       {"a"}, {{9, 12, 9, 3, {7}}}, ""};
    const std::string svg = specimen::Draw({"x", {section}}, false).svg;
    EXPECT_EQ(FaultOf(svg), "");
    EXPECT_NE(svg.find("font-family=\"'it\\'s &quot;\\\\&lt;'\""), svg.npos);
}

TEST(Specimen, AWrongUseIsTold)
{
    const std::pair<Strings, std::string> uses[] = {
        {{}, ""},
        {{"list", "a", "b"}, ""},
        {{"a", "b"}, ""},
        {{"measure", "a", "12"}, ""},
        {{"--nonsense"}, "specimen: unknown option --nonsense\n"},
        {{"a", "-o"}, "specimen: -o needs a value\n"},
        {{"a", "-o", ""}, "specimen: -o needs a value\n"},
        {{""}, "specimen: the face has no name\n"},
        {{"list", "-o", "x"}, "specimen: -o and --sizes are for sheets\n"},
        {{"list", "--bold"}, "specimen: list takes no options\n"},
        {{"a", "--set", "256"},
         "specimen: --set needs the number of a character set, from 0 to 255\n"},
        {{"measure", "a", "12", "b", "--set", "1", "--set", "2"},
         "specimen: measure takes one --set\n"}};
    for (const auto& [arguments, told] : uses) {
        const Result result = RunSpecimen(arguments);
        EXPECT_EQ(result.status, 2);
        EXPECT_EQ(result.output, "");
        EXPECT_TRUE(result.errors.starts_with(told + "usage: specimen list")) << result.errors;
    }
    for (const char* const sizes : {"0", "501", "12,", ",12", "x", "-3", "99999999999", "1 2"})
        EXPECT_EQ(RunSpecimen({"a", "--sizes", sizes}).status, 2) << sizes;
    for (const char* const size : {"0", "501", "", "1.5", "-1"})
        EXPECT_EQ(RunSpecimen({"measure", "a", size, "text"}).status, 2) << size;
    EXPECT_EQ(RunSpecimen({"\xFF"}).errors, "specimen: an argument is not UTF-8\n");
}

TEST(Specimen, BehindTwoHyphensAFaceMayBeCalledAsACommand)
{
    const Result result = RunSpecimen({"--sizes", "12", "--set", "0", "--", "list"});
    EXPECT_EQ(result.status, 0);
    EXPECT_NE(result.output.find("<title>list</title>"), std::string::npos);
}

TEST(Specimen, MeasuresATextAsTheClassDoes)
{
    OSTRA_NEEDS_FONTS();
    const Screen dc;
    MadeFont font(dc, {"Liberation Serif", 0, 30});
    const HGDIOBJ old = SelectObject(dc, font->h_GetHandle());
    const CT_UString text(u"AVA \u0416\u044F");
    const unsigned width = font->n_GetTextExtent(dc, &text, 0, CT_String::ALL);
    SelectObject(dc, old);
    const std::string told = Printed({"measure", "liberation serif", "30", "AVA \u0416\u044F"});
    EXPECT_TRUE(told.starts_with("face      Liberation Serif\nem        40\nwidth     " +
                                 std::to_string(width) + "\n"))
        << told;
    EXPECT_NE(Printed({"measure", "Liberation Serif", "12", ""}).find("width     0\n"),
              std::string::npos);
}

// Another way to the same widths: without kerning and ligatures shaping adds them up, too.
TEST(Specimen, HarfBuzzHasTheSameWidthsWithoutKerning)
{
    OSTRA_NEEDS_FONTS();
    if (Printed({"measure", "DejaVu Sans", "12", "a"}).find("harfbuzz") == std::string::npos)
        GTEST_SKIP() << "the program was made without HarfBuzz";
    std::mt19937 random(18);
    bool kerned = false;
    for (const char* const face : {"DejaVu Sans", "Liberation Serif", "DejaVu Serif"})
        for (const char* const size : {"7", "12", "41"}) {
            std::string text;
            for (int n = 0; n < 60; ++n)
                text += static_cast<char>(' ' + random() % 95);
            const std::string told = Printed({"measure", "--", face, size, text});
            const Strings lines = Split(told, '\n');
            ASSERT_EQ(lines.size(), 4u) << told;
            EXPECT_EQ(lines[2].substr(10), lines[3].substr(lines[3].rfind(' ') + 1))
                << face << size << text;
            kerned |= std::stoi(lines[3].substr(10)) != std::stoi(lines[2].substr(10));
        }
    EXPECT_TRUE(kerned);
}

TEST(Specimen, ASheetReplacesAFileAsAWhole)
{
    const Strings arguments = {"DejaVu Sans", "--set", "0", "--sizes", "12"};
    const std::string sheet = RunSpecimen(arguments).output;
    const auto write = [&](const std::string& name) {
        Strings all = arguments;
        all.insert(all.end(), {"-o", name});
        const Result result = RunSpecimen(all);
        EXPECT_EQ(result.output, "");
        return result.status;
    };
    WriteBytes("old.svg", "old");
    EXPECT_EQ(write("old.svg"), 0);
    EXPECT_EQ(ReadBytes("old.svg"), sheet);
    EXPECT_FALSE(fs::exists("old.svg.new"));
    fs::create_directory("folder");
    EXPECT_EQ(write("folder"), 1);
    EXPECT_EQ(write("none/sheet.svg"), 1);
    EXPECT_FALSE(fs::exists("folder.new"));
    EXPECT_TRUE(fs::is_empty("folder"));
}

TEST(Specimen, APictureInDotsIsAPngOrIsRefusedWithTheReason)
{
    const Result result =
        RunSpecimen({"DejaVu Sans", "--set", "204", "--sizes", "24", "-o", "sheet.PNG"});
    if (result.status) {
        EXPECT_NE(result.errors.find("; a name that ends in .svg gets a document\n"),
                  std::string::npos)
            << result.errors;
        EXPECT_FALSE(fs::exists("sheet.PNG"));
        return;
    }
    EXPECT_EQ(ReadBytes("sheet.PNG").substr(0, 8), "\x89PNG\r\n\x1A\n");
    std::string png;
    std::string reason;
    EXPECT_FALSE(specimen::MakePng({"<svg/>", 40000, 10}, &png, &reason));
    EXPECT_EQ(reason, "a picture of 40000 by 10 dots is too large; tell fewer sets or sizes");
    reason = "";
    EXPECT_FALSE(specimen::MakePng({"no document", 40, 10}, &png, &reason));
    EXPECT_EQ(reason, "librsvg can't draw it");
}
