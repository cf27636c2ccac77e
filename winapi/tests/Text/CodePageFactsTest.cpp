// winapi/tests/Text/CodePageFactsTest.cpp: the tables of all code pages against the data that they are
// made from.
#include "../Support/Calls.h"

#include <array>
#include <fstream>
#include <map>
#include <sstream>

namespace
{
using Fields = std::vector<std::string>;

std::vector<Fields> ReadRows(const char* name)
{
    std::ifstream file(std::string(WINAPI_TEST_DATA) + "/" + name);
    EXPECT_TRUE(file.is_open()) << name;
    std::vector<Fields> rows;
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with('#'))
            continue;
        std::istringstream text(line);
        rows.emplace_back();
        for (std::string field; std::getline(text, field, '\t');)
            rows.back().push_back(field);
    }
    return rows;
}

unsigned HexNumber(const std::string& text)
{
    return static_cast<unsigned>(std::stoul(text, nullptr, 16));
}

struct Facts
{
    bool pairs;
    unsigned defaultByte;
    unsigned undefined;
    std::array<bool, 256> leads{};
};

std::map<unsigned, Facts> ReadFacts()
{
    std::map<unsigned, Facts> pages;
    for (const Fields& row : ReadRows("codepages.tsv")) {
        Facts& facts = pages[static_cast<unsigned>(std::stoul(row[0]))];
        facts.pairs = row[1] == "2";
        facts.defaultByte = HexNumber(row[2]);
        facts.undefined = HexNumber(row[3]);
        std::istringstream ranges(row[4]);
        for (std::string range; facts.pairs && ranges >> range;)
            for (unsigned lead = HexNumber(range); lead <= HexNumber(range.substr(3)); ++lead)
                facts.leads[lead] = true;
    }
    return pages;
}

// The unit of a byte or a pair; nothing but one unit is expected.
unsigned UnitOf(UINT page, unsigned code)
{
    const char bytes[] = {static_cast<char>(code >> 8), static_cast<char>(code)};
    const bool pair = code > 0xFF;
    WCHAR units[4] = {};
    EXPECT_EQ(1, MultiByteToWideChar(page, 0, pair ? bytes : bytes + 1, pair ? 2 : 1, units, 4));
    return units[0];
}

// The byte or pair of a unit, and whether it was the default.
unsigned CodeOf(UINT page, unsigned unit, BOOL& used)
{
    const WCHAR units[] = {static_cast<WCHAR>(unit)};
    unsigned char bytes[4] = {};
    const int length =
        WideCharToMultiByte(page, 0, units, 1, reinterpret_cast<char*>(bytes), 4, nullptr, &used);
    EXPECT_TRUE(length == 1 || length == 2) << length;
    return length == 2 ? bytes[0] << 8 | bytes[1] : bytes[0];
}

void CheckRow(UINT page, const Facts& facts, const Fields& row)
{
    const unsigned first = HexNumber(row[2]);
    for (unsigned code = first; code <= HexNumber(row[3]); ++code) {
        const bool none = row[4] == "-";
        const unsigned value = none ? 0 : HexNumber(row[4]) + code - first;
        if (row[1] == "T") {
            EXPECT_EQ(none ? facts.undefined : value, UnitOf(page, code));
            continue;
        }
        BOOL used = 77;
        EXPECT_EQ(none ? facts.defaultByte : value, CodeOf(page, code, used));
        EXPECT_EQ(none ? TRUE : FALSE, used);
    }
}

const std::map<unsigned, Facts>& Pages()
{
    static const std::map<unsigned, Facts> pages = ReadFacts();
    return pages;
}

// FNV-1a over the answers to every input of one page: each byte, each pair behind a lead byte, each
// unit.
class Digest
{
public:
    void Add(unsigned value)
    {
        for (int shift = 0; shift < 16; shift += 8)
            sum = (sum ^ (value >> shift & 0xFF)) * 0x01000193;
    }
    std::uint32_t Sum() const { return sum; }

private:
    std::uint32_t sum = 0x811C9DC5;
};

std::uint32_t DigestOf(UINT page, const Facts& facts)
{
    Digest digest;
    for (unsigned lead = 0; lead < 256; ++lead) {
        digest.Add(UnitOf(page, lead));
        for (unsigned trail = 1; facts.leads[lead] && trail < 256; ++trail)
            digest.Add(UnitOf(page, lead << 8 | trail));
    }
    for (unsigned unit = 0; unit < 0x10000; ++unit) {
        BOOL used = FALSE;
        digest.Add(CodeOf(page, unit, used));
        digest.Add(static_cast<unsigned>(used));
    }
    return digest.Sum();
}
} // namespace

TEST(CodePageTable, EachPageIsValidAndHasItsLeadBytes)
{
    EXPECT_EQ(68u, Pages().size());
    for (const auto& [page, facts] : Pages()) {
        SCOPED_TRACE(page);
        EXPECT_TRUE(IsValidCodePage(page));
        for (unsigned lead = 0; lead < 256; ++lead)
            EXPECT_EQ(facts.leads[lead], IsDBCSLeadByteEx(page, static_cast<BYTE>(lead)) != 0)
                << lead;
    }
}

// The reference looks for a file for each number: there the neighbours of the known pages have to do.
static bool IsAsked(UINT number)
{
#ifdef _WIN32
    const auto next = Pages().lower_bound(number < 20 ? 0 : number - 20);
    return next != Pages().end() && next->first < number + 20;
#else
    return number < 65000;
#endif
}

TEST(CodePageTable, NoOtherPageIsValid)
{
    for (UINT page = 0; page < 65535; ++page) {
        if (!IsAsked(page))
            continue;
        EXPECT_EQ(Pages().contains(page), IsValidCodePage(page) != 0) << page;
    }
}

TEST(CodePageTable, EachRowOfThePatchesIsAnswered)
{
    unsigned rows = 0;
    for (const Fields& row : ReadRows("codepage-patches.tsv")) {
        SCOPED_TRACE(testing::PrintToString(row));
        const unsigned page = static_cast<unsigned>(std::stoul(row[0]));
        CheckRow(page, Pages().at(page), row);
        ++rows;
        if (HasFailure())
            break;
    }
    EXPECT_EQ(14141u, rows);
}

TEST(CodePageTable, EveryAnswerOfEachPageIsTheMeasuredOne)
{
    // Made by this test on the reference run.
    static const std::map<unsigned, std::uint32_t> measured = {
#include "../Data/CodePageDigests.inc"
    };
    for (const auto& [page, facts] : Pages()) {
        const std::uint32_t sum = DigestOf(page, facts);
        EXPECT_EQ(measured.contains(page) ? measured.at(page) : 0, sum) << "page " << page;
    }
}
