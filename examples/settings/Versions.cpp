// examples/settings/Versions.cpp
#include "Versions.h"

#include "Text.h"

#include <System/ModuleVersion/ModuleVersion.h>

#include <VersionCheck.h>

#include <algorithm>
#include <array>

namespace settings
{
namespace
{
using Row = std::array<std::string, 6>;

const Row HEADINGS = {"File", "Version", "Product version", "Product", "Company", "Description"};

std::string Numbers(unsigned high, unsigned low)
{
    return std::to_string(high >> 16) + "." + std::to_string(high & 0xFFFF) + "." +
           std::to_string(low >> 16) + "." + std::to_string(low & 0xFFFF);
}

std::string Cell(const CT_UString* text)
{
    const std::string cell = OneLine(ToUtf8(
        std::u16string(reinterpret_cast<const char16_t*>(text->qcuz_Get()), text->vn_GetLength())));
    return cell.empty() ? "-" : cell;
}

// The library believes what a record tells of its lengths, so a checker that believes nothing is asked
// first.
void CheckRecord(const std::string& name)
{
    const std::string bytes = ReadFile(name);
    const std::string record = FindVersionRecord(bytes);
    if (record.empty())
        throw Failure(name + ": no version record");
    const VersionVerdict verdict = CheckVersion(record);
    if (!verdict.sound)
        throw Failure(name + ": a damaged version record, at " + std::to_string(verdict.offset) +
                      ": " + verdict.rule);
}

Row Describe(const std::string& name)
{
    CheckRecord(name);
    CT_ModuleVersion version;
    version.v_Set(name.c_str());
    Check(name);
    if (!version.b_IsValid())
        throw Failure(name + ": no version record");
    const st_FixedFileInfo* const info = version.pcso_GetInfo();
    return {OneLine(name),
            Numbers(info->n4_FileVersionMS, info->n4_FileVersionLS),
            Numbers(info->n4_ProductVersionMS, info->n4_ProductVersionLS),
            Cell(version.pcco_GetProductName()),
            Cell(version.pcco_GetCompanyName()),
            Cell(version.pcco_GetFileDescription())};
}

// Characters, which take a column each.
std::size_t WidthOf(const std::string& text)
{
    return static_cast<std::size_t>(
        std::count_if(text.begin(), text.end(), [](char c) { return (c & 0xC0) != 0x80; }));
}

void Print(const std::vector<Row>& rows, std::ostream& output)
{
    std::array<std::size_t, 6> widths{};
    for (const Row& row : rows)
        for (std::size_t n = 0; n < row.size(); ++n)
            widths[n] = std::max(widths[n], WidthOf(row[n]));
    for (const Row& row : rows) {
        for (std::size_t n = 0; n + 1 < row.size(); ++n)
            output << row[n] << std::string(widths[n] - WidthOf(row[n]) + 2, ' ');
        output << row.back() << '\n';
    }
}
} // namespace

bool ShowVersions(const std::vector<std::string>& files, std::ostream& output, std::ostream& errors)
{
    bool all = true;
    std::vector<Row> rows = {HEADINGS};
    for (const std::string& name : files) {
        try {
            rows.push_back(Describe(name));
        } catch (const Failure& failure) {
            errors << "settings: " << WithoutControls(failure.what()) << '\n';
            all = false;
        }
    }
    if (rows.size() > 1)
        Print(rows, output);
    return all;
}
} // namespace settings
