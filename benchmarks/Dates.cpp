// benchmarks/Dates.cpp: dates from calendar to calendar, numbers and dates as text, dates read.
//
// "hebrew" and "hijri" take a Gregorian date to its year, month and day there; ICU's calendars take
// the moment that the day begins, and give three fields. The years are those of which both say the
// same. "gregorian" gives the date of a day, with the days of the week and of the year: GLib is
// given the day's number, the library a Hijri date. "weekday" finds both days for a date.
//
// "number" and "date" print English texts, with ICU by formatters that are prepared. "parse" reads
// dates with names of months: all are of December in the input "months", the last name of the list,
// and of January in "months.tenth".
#include <Ostra/String/UString.h>
#include <System/LocaleInfo/FormatString.h>
#include <System/Time/Time.h>

#include <algorithm>
#include <ctime>
#include <memory>
#include <random>
#include <string>
#include <vector>

#if HAVE_ICU
#include <unicode/ucal.h>
#include <unicode/udat.h>
#include <unicode/unum.h>
#endif
#if HAVE_GLIB
#include <glib.h>
#endif

#include "Support/Job.h"

namespace
{
constexpr unsigned ENGLISH = 0x0409;
constexpr int DAY_OF_1970 = 719163;

using Numbers = std::vector<int>;
using Texts = std::vector<std::u16string>;

// A day by its number and as a date.
struct Day
{
    int number;
    std::tm date;
};
using Days = std::vector<Day>;

int Packed(int year, int month, int day)
{
    return (year * 16 + month) * 32 + day;
}

std::tm Date(int year, int month, int day)
{
    std::tm date{};
    date.tm_year = year;
    date.tm_mon = month - 1;
    date.tm_mday = day;
    return date;
}

std::tm GregorianOf(int number)
{
    std::tm date = Date(1, 1, number - 227014);
    date.tm_wday = -1;
    CT_Calendar::sv_Alternate2Gregorian(&date, CT_Calendar::id_Hijri);
    return date;
}

// Days of the years 1950 to 2040.
std::shared_ptr<Days> MakeDays()
{
    std::mt19937 random(19970101);
    auto days = std::make_shared<Days>();
    for (unsigned n = 0; n < 10000; ++n) {
        const int number = 711858 + static_cast<int>(random() % 33000);
        days->push_back({number, GregorianOf(number)});
    }
    return days;
}

// The items of an input through a call; of numbers the sum keeps the work.
template <class Items, class Call>
void AddNumbers(Measure<Numbers>& measure, const char* side, std::shared_ptr<Items> items,
                Call call)
{
    measure.Side(
        side,
        [items, call] {
            unsigned sum = 0;
            for (const auto& item : *items)
                sum += static_cast<unsigned>(call(item));
            return sum;
        },
        [items, call] {
            Numbers numbers;
            for (const auto& item : *items)
                numbers.push_back(call(item));
            return numbers;
        });
}

// The same of texts: call() gives the length of the text that it leaves in the room.
template <class Items, class Call>
void AddTexts(Measure<Texts>& measure, const char* side, std::shared_ptr<Items> items, Call call)
{
    measure.Side(
        side,
        [items, call] {
            std::size_t sum = 0;
            for (const auto& item : *items)
                sum += call(item, nullptr);
            return sum;
        },
        [items, call] {
            Texts texts;
            for (const auto& item : *items)
                call(item, &texts.emplace_back());
            return texts;
        });
}

// What a side has printed: its length, and a copy where one is wanted.
std::size_t Give(const char16_t* text, std::size_t length, std::u16string* copy)
{
    if (copy)
        copy->assign(text, length);
    return length;
}

std::size_t Give(const CT_UString& text, std::u16string* copy)
{
    return Give(reinterpret_cast<const char16_t*>(text.qcuz_Get()), text.vn_GetLength(), copy);
}

// ---- ICU --------------------------------------------------------------------------------------

#if HAVE_ICU
UErrorCode status = U_ZERO_ERROR;

std::shared_ptr<UCalendar*> OpenCalendar(const char* locale)
{
    return std::make_shared<UCalendar*>(ucal_open(u"UTC", -1, locale, UCAL_DEFAULT, &status));
}

int IcuHebrew(UCalendar* calendar, const Day& day)
{
    ucal_setMillis(calendar, (day.number - DAY_OF_1970) * 86400000.0, &status);
    const int year = ucal_get(calendar, UCAL_YEAR, &status);
    const int month = ucal_get(calendar, UCAL_MONTH, &status);
    const int in_month = ucal_get(calendar, UCAL_DAY_OF_MONTH, &status);
    // From Tishri = 0, with Adar as 6, to Nisan = 1.
    const bool leap = (7 * year + 1) % 19 < 7;
    const int ours = month >= 7 ? month - 6 : month == 6 && !leap ? 12 : month + 7;
    return Packed(year, ours, in_month);
}

int IcuHijri(UCalendar* calendar, const Day& day)
{
    ucal_setMillis(calendar, (day.number - DAY_OF_1970) * 86400000.0, &status);
    return Packed(ucal_get(calendar, UCAL_YEAR, &status),
                  ucal_get(calendar, UCAL_MONTH, &status) + 1,
                  ucal_get(calendar, UCAL_DAY_OF_MONTH, &status));
}
#endif

// ---- Calendars --------------------------------------------------------------------------------

int Alternate(const Day& day, CT_Calendar::et_ID calendar)
{
    std::tm date = day.date;
    CT_Calendar::sv_Gregorian2Alternate(&date, calendar);
    return Packed(date.tm_year, date.tm_mon + 1, date.tm_mday);
}

void RegisterAlternate(const std::shared_ptr<Days>& days)
{
    Measure<Numbers> hebrew("hebrew", "days", {Amount::ITEMS, days->size()});
    AddNumbers(hebrew, "ostra", days,
               [](const Day& day) { return Alternate(day, CT_Calendar::id_Hebrew); });
    Measure<Numbers> hijri("hijri", "days", {Amount::ITEMS, days->size()});
    AddNumbers(hijri, "ostra", days,
               [](const Day& day) { return Alternate(day, CT_Calendar::id_Hijri); });
#if HAVE_ICU
    const auto hebrews = OpenCalendar("en@calendar=hebrew");
    AddNumbers(hebrew, "icu", days, [hebrews](const Day& day) { return IcuHebrew(*hebrews, day); });
    const auto hijris = OpenCalendar("en@calendar=islamic-civil");
    AddNumbers(hijri, "icu", days, [hijris](const Day& day) { return IcuHijri(*hijris, day); });
#endif
}

void RegisterGregorian(const std::shared_ptr<Days>& days)
{
    Measure<Numbers> gregorian("gregorian", "days", {Amount::ITEMS, days->size()});
    AddNumbers(gregorian, "ostra", days, [](const Day& day) {
        const std::tm date = GregorianOf(day.number);
        return Packed(date.tm_year, date.tm_mon + 1, date.tm_mday) + date.tm_wday + date.tm_yday;
    });
    Measure<Numbers> weekday("weekday", "days", {Amount::ITEMS, days->size()});
    AddNumbers(weekday, "ostra", days, [](const Day& day) {
        std::tm date = day.date;
        date.tm_wday = -1;
        CT_Calendar::sv_AddYearWeekday(&date);
        return date.tm_yday * 8 + date.tm_wday;
    });
#if HAVE_GLIB
    AddNumbers(gregorian, "glib", days, [](const Day& day) {
        GDate date;
        g_date_clear(&date, 1);
        g_date_set_julian(&date, static_cast<guint32>(day.number));
        return Packed(g_date_get_year(&date), g_date_get_month(&date), g_date_get_day(&date)) +
               g_date_get_weekday(&date) % 7 + static_cast<int>(g_date_get_day_of_year(&date) - 1);
    });
    AddNumbers(weekday, "glib", days, [](const Day& day) {
        GDate date;
        g_date_clear(&date, 1);
        g_date_set_dmy(&date, static_cast<GDateDay>(day.date.tm_mday),
                       static_cast<GDateMonth>(day.date.tm_mon + 1),
                       static_cast<GDateYear>(day.date.tm_year));
        return static_cast<int>((g_date_get_day_of_year(&date) - 1) * 8) +
               g_date_get_weekday(&date) % 7;
    });
#endif
}

// ---- Texts ------------------------------------------------------------------------------------

void RegisterNumber()
{
    std::mt19937 random(19970101);
    const auto numbers = std::make_shared<std::vector<unsigned>>();
    for (unsigned n = 0; n < 10000; ++n)
        numbers->push_back(random() >> random() % 32);
    Measure<Texts> measure("number", "numbers", {Amount::ITEMS, numbers->size()});
    const auto out = std::make_shared<CT_UString>();
    AddTexts(measure, "ostra", numbers, [out](unsigned number, std::u16string* copy) {
        CT_FormatString::sb_FormatNumber(out.get(), number, ENGLISH, 2, 3);
        return Give(*out, copy);
    });
#if HAVE_ICU
    const auto format = unum_open(UNUM_DECIMAL, nullptr, 0, "en_US", nullptr, &status);
    unum_setAttribute(format, UNUM_FRACTION_DIGITS, 2);
    AddTexts(measure, "icu", numbers, [format](unsigned number, std::u16string* copy) {
        char16_t text[64];
        const int length = unum_formatInt64(format, number, text, 64, nullptr, &status);
        return Give(text, static_cast<std::size_t>(length), copy);
    });
#endif
}

// A moment as each side has it.
struct Moment
{
    CT_Time time;
    double millis;
};

void RegisterDate(const std::shared_ptr<Days>& days)
{
    const auto moments = std::make_shared<std::vector<Moment>>();
    for (const Day& day : *days) {
        const auto seconds = (static_cast<unsigned long long>(day.number) - 1) * 86400;
        moments->push_back({CT_Time(seconds), (day.number - DAY_OF_1970) * 86400000.0});
    }
    Measure<Texts> measure("date", "days", {Amount::ITEMS, moments->size()});
    const auto out = std::make_shared<CT_UString>();
    const auto picture = std::make_shared<CT_UString>(u"dddd, d MMMM yyyy");
    AddTexts(measure, "ostra", moments, [out, picture](const Moment& moment, std::u16string* copy) {
        moment.time.v_GetDate(out.get(), picture.get(), ENGLISH, CT_Time::df_Default);
        return Give(*out, copy);
    });
#if HAVE_ICU
    const auto format = udat_open(UDAT_PATTERN, UDAT_PATTERN, "en_US", u"UTC", -1,
                                  u"EEEE, d MMMM yyyy", -1, &status);
    AddTexts(measure, "icu", moments, [format](const Moment& moment, std::u16string* copy) {
        char16_t text[64];
        const int length = udat_format(format, moment.millis, text, 64, nullptr, &status);
        return Give(text, static_cast<std::size_t>(length), copy);
    });
#endif
}

// ---- Reading ----------------------------------------------------------------------------------

void RegisterParse(const std::string& input, const std::u16string& month)
{
    const auto texts = std::make_shared<std::vector<std::u16string>>();
    for (unsigned n = 0; n < 1000; ++n) {
        const std::string day = std::to_string(n % 28 + 1) + " ",
                          year = std::to_string(1970 + n % 60);
        texts->push_back(std::u16string(day.begin(), day.end()) + month + u" " +
                         std::u16string(year.begin(), year.end()));
    }
    Measure<Numbers> measure("parse", input, {Amount::ITEMS, texts->size()});
    const auto picture = std::make_shared<CT_UString>(u"d MMMM yyyy");
    AddNumbers(measure, "ostra", texts, [picture](const std::u16string& text) {
        const CT_UString wide(text.c_str());
        CT_Time time(0U);
        time.b_Set(&wide, picture.get(), ENGLISH, CT_Calendar::id_None);
        return static_cast<int>(time.n_Get() / 86400);
    });
#if HAVE_ICU
    const auto format =
        udat_open(UDAT_PATTERN, UDAT_PATTERN, "en_US", u"UTC", -1, u"d MMMM yyyy", -1, &status);
    AddNumbers(measure, "icu", texts, [format](const std::u16string& text) {
        const double millis =
            udat_parse(format, text.c_str(), static_cast<int>(text.size()), nullptr, &status);
        return static_cast<int>(millis / 86400000);
    });
#endif
}
} // namespace

int main(int argc, char** argv)
{
    const auto days = MakeDays();
    RegisterAlternate(days);
    RegisterGregorian(days);
    RegisterNumber();
    RegisterDate(days);
    RegisterParse("months", u"December");
    RegisterParse("months.tenth", u"January");
    return Job::Run(argc, argv, OSTRA_ABSENT_PEERS);
}
