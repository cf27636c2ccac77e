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
} // namespace

Status Run(const std::vector<std::string>& arguments, std::ostream& output, std::ostream& errors)
{
    if (arguments.size() != 1) {
        errors << "usage: charinfo TEXT\n";
        return USAGE;
    }
    if (!common::IsUtf8(arguments[0])) {
        errors << "charinfo: the text is not UTF-8\n";
        return FAILED;
    }
    CT_UString text;
    common::ToWide(arguments[0], &text);
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
    if (!output.flush()) {
        errors << "charinfo: cannot write the output\n";
        return FAILED;
    }
    return DONE;
}
} // namespace charinfo
