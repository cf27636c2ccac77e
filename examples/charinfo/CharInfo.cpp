// examples/charinfo/CharInfo.cpp
#include "CharInfo.h"

#include <Common/Utf8.h>

#include <Ostra/Frame/ErrorManager.h>
#include <Ostra/String/UString.h>
#include <Ostra/Unicode/CharMappings.h>
#include <Ostra/Unicode/CharProperties.h>

#include <algorithm>
#include <cstdio>

namespace charinfo
{
namespace
{
const char USAGE_TEXT[] = "usage: charinfo TEXT\nTry charinfo --help.\n";

// tools/manpage.py makes the manual page of it.
const char HELP_TEXT[] =
    "usage: charinfo TEXT\n"
    "\n"
    "Tells what the library knows of the characters of a text. Prints a line for each; the text "
    "is\n"
    "UTF-8, as is the output.\n"
    "\n"
    "Columns:\n"
    "  Char       the character; a mark on a dotted circle; nothing for what can't be seen\n"
    "  Unit       its UTF-16 unit; a character beyond U+FFFF is two, with a line for each\n"
    "  Category, Block\n"
    "             by Unicode 2.0; newer characters are Unknown\n"
    "  Word, Text\n"
    "             the character word and the text processing word\n"
    "  Layout     the direction by its usual short name\n"
    "  Number     the numeric value\n"
    "  Upper, Lower, Base\n"
    "             what the mappings make of it, if it is something else\n"
    "\n"
    "Options:\n"
    "  --help     prints this text\n"
    "  --version  prints the version\n"
    "  --         ends the options: what follows is the text\n"
    "\n"
    "Exit status:\n"
    "  0          all went well\n"
    "  1          the text isn't UTF-8, or the output can't be written\n"
    "  2          a wrong use\n";

typedef unsigned short Unit;

// What stands in a place of the table, and how many columns of a terminal it takes.
struct Cell
{
    Cell(const std::string& ascii) : text(ascii), width(ascii.size()) {}
    Cell(const std::string& any, size_t columns) : text(any), width(columns) {}

    std::string text;
    size_t width;
};

typedef std::vector<Cell> Row;

const Row HEADINGS = {{"Char"}, {"Unit"},   {"Category"}, {"Block"}, {"Word"}, {"Layout"},
                      {"Text"}, {"Number"}, {"Upper"},    {"Lower"}, {"Base"}};

std::string Hexadecimal(const char* before, unsigned value)
{
    char digits[16];
    std::snprintf(digits, sizeof(digits), "%s%04X", before, value);
    return digits;
}

bool IsVisible(Unit unit)
{
    switch (CT_CharProperties::seo_GetUnicodeProperty(unit)) {
    case CT_CharProperties::OtherControl:
    case CT_CharProperties::OtherFormat:
    case CT_CharProperties::OtherSurrogate:
    case CT_CharProperties::SeparatorLine:
    case CT_CharProperties::SeparatorParagraph:
        return false;
    default:
        return true;
    }
}

// Terminals give two columns to what East Asian typography sets in a full square.
bool IsSquare(Unit unit)
{
    const int block = CT_CharProperties::seo_GetUnicodeBlock(unit);
    if (CT_CharProperties::sb_IsTPHalfwidth(unit))
        return false;
    return CT_CharProperties::sb_IsTPFullwidth(unit) || CT_CharProperties::sb_IsTPIdeograph(unit) ||
           block == CT_CharProperties::HangulSyllables ||
           (block >= CT_CharProperties::CJKSymbolsAndPunctuation &&
            block <= CT_CharProperties::CJKCompatibility);
}

// The character itself: nothing for one that can't be seen, a mark on a dotted circle.
Cell Glyph(Unit unit)
{
    if (!IsVisible(unit))
        return {""};
    const int property = CT_CharProperties::seo_GetUnicodeProperty(unit);
    const std::string text = common::ToUtf8(&unit, 1);
    if (property == CT_CharProperties::MarkNonSpacing ||
        property == CT_CharProperties::MarkEnclosing)
        return {"\xE2\x97\x8C" + text, 1};
    return {text, IsSquare(unit) ? 2u : 1u};
}

// What a mapping makes of the character.
Cell Mapped(Unit unit, Unit (*map)(Unit))
{
    const Unit target = map(unit);
    if (target == unit)
        return {"-"};
    const Cell glyph = Glyph(target);
    const std::string code = Hexadecimal("U+", target) + " ";
    return {code + glyph.text, code.size() + glyph.width};
}

std::string Number(Unit unit)
{
    short numerator;
    short denominator;
    CT_CharProperties::sv_NumericValue(unit, numerator, denominator);
    if (!denominator)
        return "-";
    const std::string text = std::to_string(numerator);
    return denominator == 1 ? text : text + "/" + std::to_string(denominator);
}

// The usual short names of directions.
std::string Direction(Unit unit)
{
    static const char* const NAMES[] = {"-",  "L",  "R", "EN", "ES", "ET",
                                        "AN", "CS", "B", "S",  "WS", "ON"};
    return NAMES[CT_CharProperties::seo_GetLayoutInformation(unit)];
}

Row Describe(Unit unit)
{
    return {Glyph(unit),
            {Hexadecimal("U+", unit)},
            {common::ToUtf8(CT_CharProperties::sqcuz_UnicodePropertyName(
                CT_CharProperties::seo_GetUnicodeProperty(unit)))},
            {common::ToUtf8(CT_CharProperties::sqcuz_UnicodeBlockName(
                CT_CharProperties::seo_GetUnicodeBlock(unit)))},
            {Hexadecimal("", CT_CharProperties::sn2_GetCharacterInformation(unit))},
            {Direction(unit)},
            {Hexadecimal("", CT_CharProperties::sn2_GetTextProcessingInformation(unit))},
            {Number(unit)},
            Mapped(unit, CT_CharMappings::su_ToUpper),
            Mapped(unit, CT_CharMappings::su_ToLower),
            Mapped(unit, CT_CharMappings::su_ToBase)};
}

std::string Line(const Row& row, const std::vector<size_t>& widths)
{
    std::string line;
    for (size_t n = 0; n < row.size(); ++n) {
        line += row[n].text;
        line.append(widths[n] - row[n].width + 2, ' ');
    }
    line.erase(line.find_last_not_of(' ') + 1);
    return line + "\n";
}

void Print(const std::vector<Row>& rows, std::ostream& output)
{
    std::vector<size_t> widths(HEADINGS.size());
    for (const Row& row : rows)
        for (size_t n = 0; n < row.size(); ++n)
            widths[n] = std::max(widths[n], row[n].width);
    for (const Row& row : rows)
        output << Line(row, widths);
}
Status Show(const std::string& bytes, std::ostream& output, std::ostream& errors)
{
    if (!common::IsUtf8(bytes)) {
        errors << "charinfo: the text is not UTF-8\n";
        return FAILED;
    }
    CT_UString text;
    common::ToWide(bytes, &text);
    CT_ErrorManager* manager = CT_ErrorManager::spco_Get();
    if (manager->b_IsSetError()) {
        errors << "charinfo: " << common::ToUtf8(manager->qcuz_GetErrorMessage()) << "\n";
        manager->v_ClearError();
        return FAILED;
    }
    std::vector<Row> rows = {HEADINGS};
    for (unsigned n = 0; n < text.vn_GetLength(); ++n)
        rows.push_back(Describe(text.u_GetAt(n)));
    Print(rows, output);
    return DONE;
}
} // namespace

Status Run(const std::vector<std::string>& arguments, std::ostream& output, std::ostream& errors)
{
    const bool ended = arguments.size() == 2 && arguments[0] == "--";
    if (arguments.size() != 1 && !ended) {
        errors << USAGE_TEXT;
        return USAGE;
    }
    const std::string& text = arguments.back();
    Status status = DONE;
    if (!ended && text == "--help")
        output << HELP_TEXT;
    else if (!ended && text == "--version")
        output << "charinfo (Ostra) " OSTRA_TOOL_VERSION "\n";
    else
        status = Show(text, output, errors);
    if (!output.flush()) {
        errors << "charinfo: cannot write the output\n";
        status = FAILED;
    }
    return status;
}
} // namespace charinfo
