// tests/System/Time/DateParserModelTest.cpp: what is printed is read again, in every locale.
//
// tests/Data/date-pictures.tsv lists the pictures of locales of which that doesn't hold in all
// moments, each with the rule that is the cause.
#include <System/OS/OS.h>

#include <fstream>
#include <map>
#include <random>
#include <sstream>

#include "Models/DateParserModel.h"
#include "Support/Clock.h"
#include "Support/Directory.h"

using namespace time_text;

namespace
{
constexpr long long JANUARY_15 = 947937600; // 2000, noon UTC
constexpr unsigned SHORT_DATE = 31, LONG_DATE = 32, YEAR_MONTH = 4102;

using Picture = std::pair<unsigned, unsigned>; // of a locale, by its type

// The cause by picture.
std::map<Picture, std::string> Listed()
{
    std::map<Picture, std::string> listed;
    std::ifstream file(OSTRA_TEST_DATA "/date-pictures.tsv");
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with("#"))
            continue;
        std::istringstream fields(line);
        unsigned locale = 0, type = 0;
        std::string cause;
        fields >> std::hex >> locale >> std::dec >> type >> cause;
        listed[{locale, type}] = cause;
    }
    return listed;
}

// 2000 moments of the years that can be read.
std::vector<unsigned> Moments()
{
    std::mt19937 random(Seed(2000));
    std::vector<unsigned> moments;
    for (int n = 0; n < 2000; ++n)
        moments.push_back(unsigned(random() % 2145916800U));
    return moments;
}

int DaysIn(const SYSTEMTIME& date)
{
    std::tm month{};
    month.tm_year = date.wYear;
    month.tm_mon = date.wMonth - 1;
    for (month.tm_mday = 28; CT_Calendar::sb_ValidateTM(&month);)
        ++month.tm_mday;
    return month.tm_mday - 1;
}

// Fields of names in a picture of a locale.
class NamesOf
{
public:
    NamesOf(unsigned of_locale, const std::u16string& picture) : locale(of_locale)
    {
        for (const date_model::Token& token : date_model::Tokens(picture)) {
            day_ends = token.letter == u'd' && token.length > 2;
            if (day_ends)
                day = token.length;
            else if (token.letter == u'd')
                day_number = true;
            if (token.letter == u'M' && token.length > 2)
                month = token.length;
        }
        const CT_Time january(852076800U);
        plain_months = month == 3 || (Printed(january, u"MMMM") == Fact(locale, 56) &&
                                      Printed(january, u"dd/MMMM").substr(3) == Fact(locale, 56));
    }

    // Why the names in a moment can't be read; "" where they can.
    std::string Hindrance(const CT_Time& time)
    {
        if (day && !IsDayRead(Printed(time, day == 4 ? u"dddd" : u"ddd"), day == 4 ? 42 : 49))
            return "names";
        if (!month || !plain_months)
            return "";
        const std::u16string alone = Printed(time, month == 4 ? u"MMMM" : u"MMM");
        const std::u16string beside = Printed(time, month == 4 ? u"dd/MMMM" : u"dd/MMM").substr(3);
        const std::u16string& name = Name((month == 4 ? 56U : 68U) + SystemOf(time).wMonth - 1U);
        if ((day_number ? beside : alone) == name)
            return "";
        return alone == name ? "genitive" : "names";
    }

private:
    std::u16string Printed(const CT_Time& time, const char16_t* picture) const
    {
        return WideService('d', locale, 0, SystemOf(time), picture);
    }
    // Any day's name does, also one that is only the beginning, where nothing follows it.
    bool IsDayRead(const std::u16string& printed, unsigned first_type)
    {
        for (unsigned n = 0; n < 7; ++n) {
            const std::u16string& name = Name(first_type + n);
            if (!name.empty() && printed.rfind(name, 0) == 0)
                return name == printed || day_ends;
        }
        return false;
    }
    const std::u16string& Name(unsigned type)
    {
        const auto [place, made] = names.try_emplace(type);
        if (made)
            place->second = Fact(locale, type);
        return place->second;
    }

    unsigned locale;
    unsigned day = 0, month = 0; // letters of the fields
    bool day_number = false;
    bool day_ends = false;    // the day's name is the picture's last field
    bool plain_months = true; // without a genitive, as January tells
    std::map<unsigned, std::u16string> names;
};

bool IsSameDay(const CT_Time& first, const CT_Time& second, bool with_day)
{
    const SYSTEMTIME a = SystemOf(first), b = SystemOf(second);
    return a.wYear == b.wYear && a.wMonth == b.wMonth && (!with_day || a.wDay == b.wDay);
}

// What the model reads, as the library is to read it.
bool ModelAgrees(const CT_UString& text, const std::u16string& picture, unsigned locale, int result,
                 const CT_Time& read)
{
    const LONG now = LONG(CT_Time::sn_GetTime());
    SYSTEMTIME present;
    CT_Time::sv_Convert(&present, now);
    std::tm today{}, date{};
    today.tm_year = present.wYear - 1900;
    today.tm_mon = present.wMonth - 1;
    today.tm_mday = present.wDay;
    date_model::Parser parser(Of(text), locale, 0, today);
    if (!parser.Parse(picture, &date))
        return !result;
    // From 2038 on there is no 32-bit form, which the parser knows nothing of.
    return result ? CT_Time::sn8_Date2Abs(&date) == read.n8_Get() : date.tm_year >= 138;
}
} // namespace

// On the 8-bit road texts have the letters of the code page: what the list and the model say of
// names that have others doesn't hold there, nor anything of a language without a code page.
static bool HasLetters(unsigned locale, const std::string& cause)
{
    constexpr unsigned ANSI_CODE_PAGE = 0x1004;
    return CT_OS::sb_GetIsWindowsNT() || (cause != "names" && Fact(locale, ANSI_CODE_PAGE) != u"0");
}

// The test of all pictures of one type.
static void ExpectReadBack(unsigned type)
{
    const FixedClock clock(JANUARY_15);
    SYSTEMTIME today;
    GetLocalTime(&today);
    const auto listed = Listed();
    const auto moments = Moments();
    for (unsigned locale : InstalledLocales()) {
        const std::u16string picture = Fact(locale, type);
        const auto row = listed.find({locale, type});
        const std::string cause = row == listed.end() ? "" : row->second;
        // The platform's own months have other forms beside a day.
        if ((!FixedClock::WORKS && cause == "genitive") || !HasLetters(locale, cause))
            continue;
        SCOPED_TRACE(std::to_string(locale) + " " + Narrow(picture) + " " + cause);
        const CT_UString wide(picture.c_str());
        NamesOf names(locale, picture);
        unsigned refused = 0, number = 0;
        for (unsigned moment : moments) {
            const CT_Time time(moment);
            // A month that lacks today's day has no forms with a day, and no such day.
            if (today.wDay > DaysIn(SystemOf(time)))
                continue;
            CT_UString text;
            time.v_GetDate(&text, &wide, locale, CT_Time::df_Default);
            CT_Time read(5U);
            const int result = read.b_Set(&text, &wide, locale, CT_Calendar::id_None);
            if (++number % 40 == 0) {
                ASSERT_TRUE(ModelAgrees(text, picture, locale, result, read)) << Narrow(Of(text));
            }
            const std::string hindrance = cause == "era" ? cause : names.Hindrance(time);
            ASSERT_TRUE(hindrance == "" || hindrance == cause)
                << Narrow(Of(text)) << ": " << hindrance;
            ASSERT_EQ(result && IsSameDay(time, read, type != YEAR_MONTH), hindrance == "")
                << Narrow(Of(text));
            refused += hindrance != "";
        }
        EXPECT_EQ(refused > 0, cause != "");
    }
}

TEST(DateParserModel, EveryShortDateIsReadBack)
{
    ExpectReadBack(SHORT_DATE);
}

TEST(DateParserModel, EveryLongDateIsReadBackButThoseListed)
{
    ExpectReadBack(LONG_DATE);
}

TEST(DateParserModel, EveryYearAndMonthIsReadBackButThoseListed)
{
    ExpectReadBack(YEAR_MONTH);
}

TEST(DateParserModel, AnyTextIsReadAsTheModelReadsIt)
{
    const FixedClock clock(JANUARY_15);
    std::mt19937 random(Seed(7));
    const std::u16string units =
        u"dMyghHmst''  .:/0123456789JanuaryMonday PMpm\u0661\u00A0\u5E73\u6210";
    const std::u16string parts[] = {u"January",      u"Jan",  u"Monday", u"Mon", u"PM", u"am",
                                    u"\u5E73\u6210", u"A.D.", u"1998",   u"12",  u"3",  u"."};
    const std::u16string fields[] = {u"d",  u"dd",   u"ddd", u"dddd", u"M",  u"MM", u"MMM", u"MMMM",
                                     u"yy", u"yyyy", u"gg",  u"h",    u"HH", u"mm", u"ss",  u"tt"};
    unsigned read = 0;
    for (int round = 0; round < 30000; ++round) {
        std::u16string text, picture;
        for (unsigned n = random() % 8; n > 0; --n)
            text += random() % 2 ? parts[random() % std::size(parts)]
                                 : std::u16string(1, units[random() % units.size()]);
        for (unsigned n = random() % 6; n > 0; --n)
            picture += random() % 4 ? fields[random() % std::size(fields)]
                                    : std::u16string(1, units[random() % units.size()]);
        const unsigned locale = random() % 2 ? ENGLISH : random() % 2 ? JAPANESE : RUSSIAN;
        const CT_UString wide_text(text.c_str()), wide_picture(picture.c_str());
        CT_Time time(5U);
        const int result = time.b_Set(&wide_text, &wide_picture, locale, CT_Calendar::id_None);
        ASSERT_TRUE(ModelAgrees(wide_text, picture, locale, result, time))
            << Narrow(text) << " by " << Narrow(picture);
        read += unsigned(result);
    }
    EXPECT_GT(read, 1000U);
}
