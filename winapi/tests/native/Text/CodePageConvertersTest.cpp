// winapi/tests/native/Text/CodePageConvertersTest.cpp: every answer of the code pages against ICU's converters, but for
// the patches that tell where the platform answers otherwise.
#include <gtest/gtest.h>

#include <windows.h>

#include <unicode/ucnv.h>
#include <unicode/ucnv_err.h>

#include <fstream>
#include <map>
#include <memory>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace
{
typedef std::vector<std::string> Fields;

constexpr int NONE = -1;

std::vector<Fields> ReadRows(const char* name)
{
    std::ifstream file(std::string(WINAPI_TEST_DATA) + "/" + name);
    std::vector<Fields> rows;
    for (std::string line; std::getline(file, line);) {
        std::istringstream text(line);
        rows.emplace_back();
        for (std::string field; std::getline(text, field, '\t');)
            rows.back().push_back(field);
        if (line.starts_with('#'))
            rows.pop_back();
    }
    EXPECT_FALSE(rows.empty()) << name;
    return rows;
}

unsigned HexNumber(const std::string& text)
{
    return static_cast<unsigned>(std::stoul(text, nullptr, 16));
}

// What the patches change of a page.
struct Patched
{
    std::set<unsigned> codes;
    std::set<unsigned> units;
};

const Patched& PatchesOf(const std::string& page)
{
    static const std::map<std::string, Patched> pages = [] {
        std::map<std::string, Patched> read;
        for (const Fields& row : ReadRows("codepage-patches.tsv")) {
            auto& patched = row[1] == "T" ? read[row[0]].codes : read[row[0]].units;
            for (unsigned code = HexNumber(row[2]); code <= HexNumber(row[3]); ++code)
                patched.insert(code);
        }
        return read;
    }();
    static const Patched none;
    const auto found = pages.find(page);
    return found == pages.end() ? none : found->second;
}

struct Closing
{
    void operator()(UConverter* converter) const { ucnv_close(converter); }
};
typedef std::unique_ptr<UConverter, Closing> Converter;

// With fallbacks; what has no answer stops it.
Converter Open(const std::string& name)
{
    UErrorCode error = U_ZERO_ERROR;
    Converter converter(ucnv_open(name.c_str(), &error));
    if (!converter)
        return converter;
    ucnv_setToUCallBack(converter.get(), UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr,
                        &error);
    ucnv_setFromUCallBack(converter.get(), UCNV_FROM_U_CALLBACK_STOP, nullptr, nullptr, nullptr,
                          &error);
    ucnv_setFallback(converter.get(), true);
    return converter;
}

// The page's bytes of a code: one, or two above 255.
std::string BytesOf(unsigned code)
{
    std::string bytes(1, static_cast<char>(code));
    if (code > 0xFF)
        bytes.insert(bytes.begin(), static_cast<char>(code >> 8));
    return bytes;
}

int UnitByIcu(UConverter* converter, const std::string& bytes)
{
    UErrorCode error = U_ZERO_ERROR;
    UChar units[4];
    const int count = ucnv_toUChars(converter, units, 4, bytes.data(),
                                    static_cast<int32_t>(bytes.size()), &error);
    return U_SUCCESS(error) && count == 1 ? units[0] : NONE;
}

int UnitHere(UINT page, const std::string& bytes)
{
    WCHAR units[4];
    const int count =
        MultiByteToWideChar(page, 0, bytes.data(), static_cast<int>(bytes.size()), units, 4);
    return count == 1 ? units[0] : NONE;
}

// The code of a unit: a byte that is no lead byte, or a pair with one.
int CodeByIcu(UConverter* converter, UINT page, unsigned unit)
{
    UErrorCode error = U_ZERO_ERROR;
    const UChar units[] = {static_cast<UChar>(unit)};
    char bytes[8];
    const int count = ucnv_fromUChars(converter, bytes, 8, units, 1, &error);
    const bool pair = IsDBCSLeadByteEx(page, static_cast<BYTE>(bytes[0]));
    if (U_FAILURE(error) || count != 1 + pair)
        return NONE;
    const unsigned first = static_cast<unsigned char>(bytes[0]);
    return static_cast<int>(pair ? first << 8 | static_cast<unsigned char>(bytes[1]) : first);
}

int CodeHere(UINT page, unsigned unit)
{
    const WCHAR units[] = {static_cast<WCHAR>(unit)};
    unsigned char bytes[8];
    BOOL used = FALSE;
    const int count =
        WideCharToMultiByte(page, 0, units, 1, reinterpret_cast<char*>(bytes), 8, nullptr, &used);
    if (used || count < 1 || count > 2)
        return NONE;
    return count == 2 ? bytes[0] << 8 | bytes[1] : bytes[0];
}

// How many answers of a page aren't ICU's and aren't told by a patch.
struct Count
{
    unsigned asked = 0;
    unsigned differ = 0;
    void Add(bool same) { ++asked, differ += !same; }
};

void CountUnits(UINT page, UConverter* converter, const Patched& patched, int undefined,
                Count& count)
{
    for (unsigned code = 0; code < 0x10000; ++code) {
        const unsigned lead = code >> 8;
        const bool asked = code < 0x100 ? !IsDBCSLeadByteEx(page, static_cast<BYTE>(code))
                                        : IsDBCSLeadByteEx(page, static_cast<BYTE>(lead)) != 0;
        // Behind a lead byte a zero is no trail byte.
        if (!asked || (lead && !(code & 0xFF)) || patched.codes.contains(code))
            continue;
        const int known = UnitByIcu(converter, BytesOf(code));
        count.Add(UnitHere(page, BytesOf(code)) == (known == NONE ? undefined : known));
    }
}

void CountCodes(UINT page, UConverter* converter, const Patched& patched, Count& count)
{
    for (unsigned unit = 0; unit < 0x10000; ++unit)
        if (!patched.units.contains(unit))
            count.Add(CodeHere(page, unit) == CodeByIcu(converter, page, unit));
}
} // namespace

TEST(CodePageConverters, EveryAnswerIsThatOfIcuOrOfAPatch)
{
    unsigned pages = 0;
    Count count;
    for (const Fields& row : ReadRows("codepages.tsv")) {
        if (row[5] == "none" || row[5].starts_with("rule:"))
            continue;
        const UINT page = static_cast<UINT>(std::stoul(row[0]));
        const Converter converter = Open(row[5]);
        ASSERT_TRUE(converter) << row[5];
        const Patched& patched = PatchesOf(row[0]);
        const unsigned before = count.differ;
        CountUnits(page, converter.get(), patched, static_cast<int>(HexNumber(row[3])), count);
        CountCodes(page, converter.get(), patched, count);
        EXPECT_EQ(before, count.differ) << "page " << page;
        ++pages;
    }
    EXPECT_EQ(60u, pages);
    EXPECT_LT(4'000'000u, count.asked);
}

// The third set of EUC, which takes three bytes, begins its trail bytes at 21 in page 20932.
TEST(CodePageConverters, PairsOfTheThirdSetAreThoseOfIcuOrOfAPatch)
{
    const Converter converter = Open("euc-jp-2007");
    ASSERT_TRUE(converter);
    const Patched& patched = PatchesOf("20932");
    unsigned known = 0;
    for (unsigned lead = 0xA1; lead < 0xFF; ++lead)
        for (unsigned trail = 0x21; trail < 0x7F; ++trail) {
            const unsigned code = lead << 8 | trail;
            const int unit = UnitByIcu(converter.get(), "\x8F" + BytesOf(code | 0x80));
            if (patched.codes.contains(code) || unit == NONE)
                continue;
            EXPECT_EQ(unit, UnitHere(20932, BytesOf(code))) << code;
            ++known;
        }
    EXPECT_LT(5'000u, known);
}
