// winapi/tests/Locale/LocaleDigestTest.cpp: all texts of all locales, beside sums that were measured on the
// platform. What has moved lies where a locale and a fact both differ.
//
// On Linux the texts come from ICU and the tables belong to one version of its data: with another
// one the patches have to be measured anew.
#include "../Support/Locales.h"

#include <map>

namespace
{
// In the order of the platform's numbers; then the genitive months, long and short, the era, and
// the names of the calendars.
constexpr int GENITIVE = 0x10000;
constexpr int SHORT_GENITIVE = GENITIVE + 12;
constexpr int ERA = SHORT_GENITIVE + 12;
constexpr int CALENDAR_NAMES = ERA + 1;

std::vector<int> AllFacts()
{
    std::vector<int> facts;
    for (int fact = 1; fact <= 92; ++fact)
        if (fact != 88) // The signature of fonts, which is no text.
            facts.push_back(fact);
    for (int fact = 0x1001; fact <= 0x1012; ++fact)
        facts.push_back(fact);
    for (int fact = GENITIVE; fact <= CALENDAR_NAMES; ++fact)
        facts.push_back(fact);
    return facts;
}

std::string calendarNames;

BOOL CALLBACK AddName(LPSTR name)
{
    calendarNames += name;
    calendarNames += '|';
    return 1;
}

// The bytes, as units.
WideString CalendarNames(LCID lcid)
{
    calendarNames.clear();
    for (CALID calendar = 1; calendar <= 23; ++calendar)
        EnumCalendarInfoA(AddName, lcid, calendar, CAL_SCALNAME);
    WideString wide;
    for (const char c : calendarNames)
        wide += static_cast<WCHAR>(static_cast<unsigned char>(c));
    return wide;
}

WideString TextOf(LCID lcid, int fact)
{
    if (fact < GENITIVE)
        return FactW(lcid, static_cast<LCTYPE>(fact));
    if (fact == CALENDAR_NAMES)
        return CalendarNames(lcid);
    if (fact == ERA)
        return DateW(lcid, 0, Moment(2021, 1, 1), Wide(u"g").c_str());
    const bool isShort = fact >= SHORT_GENITIVE;
    const int month = fact - (isShort ? SHORT_GENITIVE : GENITIVE) + 1;
    return DateW(lcid, 0, Moment(2021, month, 1), Wide(isShort ? u"dMMM" : u"dMMMM").c_str());
}

struct Sum
{
    unsigned what;
    unsigned sum;
};

constexpr Sum locale_sums[] = {
#include "../Data/LocaleSums.inc"
};

constexpr Sum fact_sums[] = {
#include "../Data/FactSums.inc"
};

template <std::size_t Count>
void Compare(const char* name, const std::map<unsigned, TextSum>& made,
             const Sum (&measured)[Count])
{
    std::map<unsigned, unsigned> left;
    for (const auto& [what, sum] : made)
        left[what] = sum.Get();
    for (const Sum& row : measured) {
        EXPECT_EQ(left[row.what], row.sum)
            << name << std::hex << " {0x" << row.what << ", 0x" << left[row.what] << "}";
        left.erase(row.what);
    }
    for (const auto& [what, sum] : left)
        ADD_FAILURE() << name << std::hex << " {0x" << what << ", 0x" << sum << "}, not measured";
}
} // namespace

TEST(LocaleDigest, EveryTextOfEveryLocaleIsTheMeasuredOne)
{
    std::map<unsigned, TextSum> byLocale;
    std::map<unsigned, TextSum> byFact;
    for (const LCID lcid : AllLocales())
        for (const int fact : AllFacts()) {
            const WideString text = TextOf(lcid, fact);
            byLocale[lcid].Add(text);
            byFact[static_cast<unsigned>(fact)].Add(text);
        }
    Compare("locale", byLocale, locale_sums);
    Compare("fact", byFact, fact_sums);
}
