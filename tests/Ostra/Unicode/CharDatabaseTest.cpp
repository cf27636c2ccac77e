// tests/Ostra/Unicode/CharDatabaseTest.cpp: every unit against the character database of Unicode
// 2.0, with the places where the library goes its own way listed.
#include "Ostra/Unicode/DecompositionRows.h"
#include "Ostra/Unicode/UnicodeDatabase.h"

#include <Ostra/String/UString.h>
#include <Ostra/Unicode/CharMappings.h>
#include <Ostra/Unicode/CharProperties.h>

#include <algorithm>
#include <iterator>

using P = CT_CharProperties;
using M = CT_CharMappings;

// ---- Category -------------------------------------------------------------------------------

// In the order of the enumeration.
static const char* const CATEGORIES[] = {"Mn", "Mc", "Me", "Nd", "Nl", "No", "Zs", "Zl", "Zp", "Cc",
                                         "Cf", "Cs", "Co", "Cn", "Lu", "Ll", "Lt", "Lm", "Lo", "Pc",
                                         "Pd", "Ps", "Pe", "Po", "Sm", "Sc", "Sk", "So"};
constexpr long UNKNOWN = 28;

static long CategoryOf(const DatabaseRecord& record)
{
    const auto found = std::find(std::begin(CATEGORIES), std::end(CATEGORIES), record.category);
    EXPECT_NE(found, std::end(CATEGORIES)) << record.category;
    return found - std::begin(CATEGORIES);
}

TEST(CharProperties, CategoryIsThatOfTheDatabase)
{
    for (const DatabaseRecord& record : UnicodeDatabase::Get().Records())
        EXPECT_EQ(P::seo_GetUnicodeProperty(record.unit), CategoryOf(record)) << Name(record.unit);
}

// The rows as they come of the file: a character joins the row before it if its category is the
// same, whatever lies between them. A block told by its ends is a row of its own.
struct CategoryRow
{
    unsigned first, last;
    long value;
    bool block;
};

static std::vector<CategoryRow> CategoryRows()
{
    std::vector<CategoryRow> rows;
    for (const DatabaseRecord& record : UnicodeDatabase::Get().Records()) {
        const long value = CategoryOf(record);
        if (record.ClosesBlock())
            rows.back().last = record.unit;
        else if (!record.OpensBlock() && !rows.empty() && !rows.back().block &&
                 rows.back().value == value)
            rows.back().last = record.unit;
        else
            rows.push_back({record.unit, record.unit, value, record.OpensBlock()});
    }
    return rows;
}

TEST(CharProperties, CategoryOfAllUnitsIsAsCoarseAsTheDatabaseAllows)
{
    std::vector<long> values(UNITS, UNKNOWN);
    const std::vector<CategoryRow> rows = CategoryRows();
    EXPECT_EQ(rows.size(), 1169u);
    for (const CategoryRow& row : rows)
        std::fill(values.begin() + row.first, values.begin() + row.last + 1, row.value);
    EXPECT_EQ(Differences(P::seo_GetUnicodeProperty, [&](Unit u) { return values[u]; }), "");
}

// ---- Numbers --------------------------------------------------------------------------------

TEST(CharProperties, NumericValueIsThatOfTheDatabase)
{
    const auto value = [](Unit u) -> long {
        short numerator = 0, denominator = 0;
        P::sv_NumericValue(u, numerator, denominator);
        return numerator * 256 + denominator;
    };
    const auto expected = [](Unit u) -> long {
        const DatabaseRecord* record = UnicodeDatabase::Get().Find(u);
        if (!record || record->numeric.empty())
            return 0;
        const std::size_t slash = record->numeric.find('/');
        const long denominator =
            slash == std::string::npos ? 1 : std::stol(record->numeric.substr(slash + 1));
        return std::stol(record->numeric) * 256 + denominator;
    };
    EXPECT_EQ(Differences(value, expected), "");
}

TEST(CharMappings, DigitsFoldAsTheDatabaseValuesThem)
{
    // They have values, and no row.
    const UnitSet left("0030..0039 0F20..0F29 FF10..FF19");
    EXPECT_EQ(Differences(M::su_FoldDigit,
                          [&](Unit u) -> long {
                              const DatabaseRecord* record = UnicodeDatabase::Get().Find(u);
                              if (!record || record->digit.empty() || left(u))
                                  return u;
                              return u'0' + std::stol(record->digit);
                          }),
              "");
}

// ---- Case -----------------------------------------------------------------------------------

// The pairs that map back to each other in the database, upper case by lower case.
static UnitMap DatabasePairs()
{
    const UnicodeDatabase& database = UnicodeDatabase::Get();
    UnitMap pairs;
    for (const DatabaseRecord& record : database.Records()) {
        const DatabaseRecord* upper = record.upper ? database.Find(record.upper) : nullptr;
        if (upper && upper->lower == record.unit)
            pairs.Add(record.unit, record.upper);
    }
    EXPECT_EQ(pairs.Count(), 661u);
    return pairs;
}

static UnitMap LibraryPairs()
{
    UnitMap pairs = DatabasePairs();
    // Greek letters with an iota subscript have no pair here.
    for (Unit unit : Expand("1F80..1F87 1F90..1F97 1FA0..1FA7 1FB3 1FC3 1FF3"))
        pairs.Remove(unit);
    // Georgian letters map to lower case only in the database.
    for (Unit unit : Expand("10D0..10F5"))
        pairs.Add(unit, static_cast<Unit>(unit - 0x30));
    // The reversed E pairs with the turned e, not with the reversed one.
    pairs.Remove(0x0258);
    pairs.Add(0x01DD, 0x018E);
    pairs.Add(0x0275, 0x019F);
    return pairs;
}

TEST(CharMappings, CaseIsThatOfTheDatabase)
{
    const UnitMap upper = LibraryPairs();
    EXPECT_EQ(upper.Count(), 673u);
    EXPECT_EQ(Differences(M::su_ToUpper, upper), "");
    UnitMap lower;
    for (unsigned unit = 0; unit < UNITS; ++unit)
        if (upper.Holds(unit))
            lower.Add(upper(unit), static_cast<Unit>(unit));
    EXPECT_EQ(Differences(M::su_ToLower, lower), "");
}

// ---- Compatibility zone -----------------------------------------------------------------------

TEST(CharMappings, CompatibilityZoneFoldsAsTheDatabaseDecomposes)
{
    const UnitSet none("FE68 FEF5..FEFC FF3C"); // they have no row
    // Marks on a space or on U+0640: the mark alone.
    const UnitSet marks("FE70..FE72 FE74 FE76..FE7F");
    EXPECT_EQ(Differences(M::su_FoldCZone,
                          [&](Unit u) -> long {
                              const DatabaseRecord* record = UnicodeDatabase::Get().Find(u);
                              if (u < 0xFE30 || !record || record->tag.empty() || none(u))
                                  return u;
                              EXPECT_EQ(record->decomposition.size(), marks(u) ? 2u : 1u);
                              return record->decomposition.back();
                          }),
              "");
}

// ---- Decomposition ----------------------------------------------------------------------------

static std::vector<Unit> Decomposition(unsigned unit)
{
    CT_UString text;
    if (M::sn_Decompose(static_cast<Unit>(unit), &text) == 1)
        return {};
    return {text.qcuz_Get(), text.qcuz_Get() + text.vn_GetLength()};
}

// The database's, with the halfwidth sound marks in place of the combining ones.
static std::vector<Unit> DatabaseDecomposition(unsigned unit)
{
    std::vector<Unit> sequence = UnicodeDatabase::Get().Canonical(static_cast<Unit>(unit));
    std::replace(sequence.begin(), sequence.end(), Unit(0x3099), Unit(0xFF9E));
    std::replace(sequence.begin(), sequence.end(), Unit(0x309A), Unit(0xFF9F));
    return sequence;
}

TEST(CharMappings, DecompositionIsThatOfTheDatabase)
{
    const UnitSet decomposed(DECOMPOSED);
    std::vector<bool> own(UNITS);
    for (const DecompositionRow& row : OWN_SEQUENCES)
        own[Expand(row.source)[0]] = true;
    for (unsigned unit = 0; unit < UNITS; ++unit) {
        if (own[unit])
            continue;
        const auto expected = decomposed(unit) ? DatabaseDecomposition(unit) : std::vector<Unit>();
        EXPECT_EQ(Decomposition(unit), expected) << Name(unit);
    }
}

// The rows that are told outright, and of those the ones that the database has as well.
TEST(CharMappings, OwnSequencesAndTheDatabases)
{
    const UnitSet same("0386 0388 0389 038A 038C 038E 038F 03AC..03AF 03CC..03CE 03D3 0A5C 0B5F "
                       "1EAC 1EAD 1EB6 1EB7 1EC6 1EC7 1ED8 1ED9");
    for (const DecompositionRow& row : OWN_SEQUENCES) {
        SCOPED_TRACE(row.source);
        const Unit source = Expand(row.source)[0];
        EXPECT_EQ(Decomposition(source), Expand(row.sequence));
        EXPECT_EQ(DatabaseDecomposition(source) == Expand(row.sequence), same(source));
    }
}

// What the database takes apart, and the library doesn't.
TEST(CharMappings, DecompositionsLeftOut)
{
    const UnitSet left(
        "01E0..01E1 0310 0340..0341 0343..0344 0374 037E 0385 0387 04D0..04EB 04EE..04F5 "
        "04F8..04F9 "
        "0929 0931 0934 09B0 09CB..09CC 0B48 0B4B..0B4C 0B94 0BCA..0BCC 0C48 0CC0 0CC7..0CC8 "
        "0CCA..0CCB 0D4A..0D4C 0E33 0EB3 0F43 0F4D 0F52 0F57 0F5C 0F69 0F73 0F75..0F79 0F81 0F93 "
        "0F9D 0FA2 0FA7 0FAC 0FB9 1E06..1E07 1E0E..1E0F 1E1C..1E1D 1E34..1E35 1E3A..1E3B "
        "1E48..1E49 1E5E..1E5F 1E6E..1E6F 1E72..1E73 1E94..1E96 1E9B 1F00..1F15 1F18..1F1D "
        "1F20..1F45 1F48..1F4D 1F50..1F57 1F59 1F5B 1F5D 1F5F..1F7D 1F80..1FB4 1FB6..1FBC 1FBE "
        "1FC1..1FC4 1FC6..1FD3 1FD6..1FDB 1FDD..1FEF 1FF2..1FF4 1FF6..1FFD 2000..2001 2126 "
        "212A..212B 2204 2209 220C 2224 2226 2241 2244 2247 2249 2260 2262 226D..2271 2274..2275 "
        "2278..2279 2280..2281 2284..2285 2288..2289 22AC..22AF 22E0..22E3 22EA..22ED 2329..232A "
        "2474..24B5 309E 30F7..30FA 30FE FB2A..FB36 FB38..FB3C FB3E FB40..FB41 FB43..FB44 "
        "FB46..FB4E");
    EXPECT_EQ(Differences(
                  [](Unit u) {
                      return !UnicodeDatabase::Get().Canonical(u).empty() &&
                             M::sn_Decompose(u, nullptr) == 1;
                  },
                  left),
              "");
}
