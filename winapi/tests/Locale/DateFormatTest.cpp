// winapi/tests/Locale/DateFormatTest.cpp: dates and times as text.
#include "../Support/Locales.h"

namespace
{
const SYSTEMTIME morning = Moment(1998, 1, 1, 2, 51, 6);
const SYSTEMTIME evening = Moment(1998, 1, 1, 21, 5, 9);

std::string Date(const char* picture, const SYSTEMTIME& date = morning, LCID lcid = 0x409)
{
    char text[256] = "";
    EXPECT_GT(GetDateFormatA(lcid, 0, &date, picture, text, 256), 0) << picture;
    return text;
}

std::string Time(const char* picture, DWORD flags = 0, const SYSTEMTIME& time = morning)
{
    char text[256] = "";
    EXPECT_GT(GetTimeFormatA(0x409, flags, &time, picture, text, 256), 0) << picture;
    return text;
}

int TryDate(const SYSTEMTIME& date, DWORD flags = 0, const char* picture = "M/d/yyyy")
{
    char text[256];
    return GetDateFormatA(0x409, flags, &date, picture, text, 256);
}

int TryTime(const SYSTEMTIME& time, DWORD flags = 0)
{
    char text[256];
    return GetTimeFormatA(0x409, flags, &time, nullptr, text, 256);
}

// The same numbers on every target.
class Numbers
{
public:
    unsigned Below(unsigned end)
    {
        state = state * 1664525U + 1013904223U;
        return (state >> 8) % end;
    }

private:
    unsigned state = 1601;
};

// Runs of letters, separators and quotes.
WideString AnyPicture(Numbers& numbers, const std::string& units)
{
    WideString picture;
    for (unsigned left = numbers.Below(9); left > 0; --left) {
        const char unit = units[numbers.Below(static_cast<unsigned>(units.size()))];
        picture.append(unit >= 'A' && unit != 'x' ? numbers.Below(5) : 1U,
                       static_cast<WCHAR>(unit));
    }
    return picture;
}

SYSTEMTIME AnyMoment(Numbers& numbers)
{
    const auto below = [&](unsigned end) {
        return static_cast<int>(numbers.Below(end));
    };
    const int year = 1601 + below(28000);
    const int month = 1 + below(12);
    const int day = 1 + below(28);
    const int hour = below(24);
    const int minute = below(60);
    return Moment(year, month, day, hour, minute, below(60));
}

SYSTEMTIME With(WORD SYSTEMTIME::*field, int value)
{
    SYSTEMTIME time = morning;
    time.*field = static_cast<WORD>(value);
    return time;
}
} // namespace

TEST(DateFormat, FieldsOfADate)
{
    EXPECT_EQ(Date("d dd ddd dddd ddddd"), "1 01 Thu Thursday Thursday");
    EXPECT_EQ(Date("M MM MMM MMMM MMMMM", Moment(1998, 3, 17)), "3 03 Mar March March");
    EXPECT_EQ(Date("y yy yyy yyyy yyyyyy"), "98 98 1998 1998 1998");
    EXPECT_EQ(Date("y yy", Moment(2005, 1, 1)), "05 05");
    EXPECT_EQ(Date("yyyy", Moment(30827, 12, 31)), "30827");
    EXPECT_EQ(Date("dMy"), "1198");
    EXPECT_EQ(Date("g"), "AD");
    EXPECT_EQ(Date("hh:mm tt"), "hh:mm tt");
}

TEST(DateFormat, TheEraStandsOnceHoweverLongItsField)
{
    // The reference run repeats it for each letter.
    EXPECT_EQ(Date("gg yyyy"), Side("AD 1998", "ADAD 1998"));
}

TEST(DateFormat, FieldsOfATime)
{
    EXPECT_EQ(Time("h hh hhh H HH HHH"), "2 02 02 2 02 02");
    EXPECT_EQ(Time("h hh H HH", 0, evening), "9 09 21 21");
    EXPECT_EQ(Time("m mm mmm s ss sss", 0, evening), "5 05 05 9 09 09");
    EXPECT_EQ(Time("t|tt|tttt"), "A|AM|AM");
    EXPECT_EQ(Time("t|tt", 0, evening), "P|PM");
    EXPECT_EQ(Time("h tt", 0, Moment(1998, 1, 1)), "12 AM");
    EXPECT_EQ(Time("h tt", 0, Moment(1998, 1, 1, 12)), "12 PM");
    EXPECT_EQ(Time("dd.MM.yyyy g"), "dd.MM.yyyy g");
}

TEST(DateFormat, QuotesHoldLiteralText)
{
    EXPECT_EQ(Date("'d 'd"), "d 1");
    EXPECT_EQ(Date("'a''b'd"), "a'b1");
    EXPECT_EQ(Date("d'"), "1");
    EXPECT_EQ(Date("'"), "");
    EXPECT_EQ(Date("''"), "");
    EXPECT_EQ(Date("'''"), "'");
    EXPECT_EQ(Date("''''"), "'");
    EXPECT_EQ(Date("d''M"), "11");
    EXPECT_EQ(Date("'open d"), "open d");
    EXPECT_EQ(Time("h''''x"), "2'x");
    EXPECT_EQ(Time("h'''"), "2'");
}

TEST(DateFormat, TheDayOfTheWeekIsReckoned)
{
    SYSTEMTIME date = morning;
    date.wDayOfWeek = 1;
    EXPECT_EQ(Date("dddd", date), "Thursday");
    // Thirty thousand years of leap days.
    EXPECT_EQ(Date("dddd", Moment(1601, 1, 1)), "Monday");
    EXPECT_EQ(Date("dddd", Moment(2000, 2, 29)), "Tuesday");
    EXPECT_EQ(Date("dddd", Moment(30827, 12, 31)), "Friday");
}

TEST(DateFormat, ANullPictureIsTheLocales)
{
    for (const LCID lcid : AllLocales()) {
        const SYSTEMTIME date = Moment(2021, 11, 9);
        for (const auto& [flags, fact] : {std::pair<DWORD, LCTYPE>{0, LOCALE_SSHORTDATE},
                                          {DATE_SHORTDATE, LOCALE_SSHORTDATE},
                                          {DATE_LONGDATE, LOCALE_SLONGDATE}}) {
            const WideString picture = FactW(lcid, fact);
            EXPECT_EQ(DateW(lcid, flags, date, nullptr), DateW(lcid, 0, date, picture.c_str()))
                << std::hex << lcid;
        }
        EXPECT_EQ(TimeW(lcid, 0, evening, nullptr),
                  TimeW(lcid, 0, evening, FactW(lcid, LOCALE_STIMEFORMAT).c_str()))
            << std::hex << lcid;
    }
    EXPECT_EQ(DateW(0x409, DATE_YEARMONTH, morning, nullptr), Wide("January 1998"));
}

TEST(DateFormat, AnEmptyPictureGivesAnEmptyText)
{
    WCHAR wide[8] = {'x'};
    char narrow[8] = "x";
    RunRows({
        CALL(GetDateFormatW(0x409, 0, &morning, Wide("").c_str(), wide, 8), 1, 0),
        CALL(wide[0], 0, 0),
        CALL(GetDateFormatA(0x409, 0, &morning, "", narrow, 8), 1, 0),
        CALL(narrow[0], 0, 0),
        CALL(GetTimeFormatA(0x409, 0, &morning, "", nullptr, 0), 1, 0),
    });
}

TEST(DateFormat, DatesThatArentOnesAreRefused)
{
    RunRows({
        CALL(TryDate(With(&SYSTEMTIME::wMonth, 13)), 0, ERROR_INVALID_PARAMETER),
        CALL(TryDate(With(&SYSTEMTIME::wMonth, 0)), 0, ERROR_INVALID_PARAMETER),
        CALL(TryDate(With(&SYSTEMTIME::wDay, 0)), 0, ERROR_INVALID_PARAMETER),
        CALL(TryDate(With(&SYSTEMTIME::wDay, 32)), 0, ERROR_INVALID_PARAMETER),
        CALL(TryDate(Moment(1998, 2, 30)), 0, ERROR_INVALID_PARAMETER),
        // The reference run has that day in every year.
        CALL(TryDate(Moment(1998, 2, 29)), Side(0, 9),
             Side(ERROR_INVALID_PARAMETER, ERROR_SUCCESS)),
        CALL(TryDate(Moment(1900, 2, 29)), Side(0, 9),
             Side(ERROR_INVALID_PARAMETER, ERROR_SUCCESS)),
        CALL(TryDate(Moment(2000, 2, 29)), 10, 0),
        CALL(TryDate(With(&SYSTEMTIME::wYear, 1600)), 0, ERROR_INVALID_PARAMETER),
        CALL(TryDate(With(&SYSTEMTIME::wYear, 99)), 0, ERROR_INVALID_PARAMETER),
        CALL(TryDate(With(&SYSTEMTIME::wYear, 1601)), 9, 0),
        CALL(TryDate(With(&SYSTEMTIME::wYear, 30827)), 10, 0),
        // The time in it isn't looked at.
        CALL(TryDate(With(&SYSTEMTIME::wHour, 25)), 9, 0),
        CALL(TryDate(With(&SYSTEMTIME::wMilliseconds, 1000)), 9, 0),
    });
    // The reference run knows one more year.
    EXPECT_EQ(TryDate(With(&SYSTEMTIME::wYear, 30828)), Side(0, 10));
}

TEST(DateFormat, TimesThatArentOnesAreRefused)
{
    RunRows({
        CALL(TryTime(With(&SYSTEMTIME::wHour, 24)), 0, ERROR_INVALID_PARAMETER),
        CALL(TryTime(With(&SYSTEMTIME::wMinute, 60)), 0, ERROR_INVALID_PARAMETER),
        CALL(TryTime(With(&SYSTEMTIME::wSecond, 60)), 0, ERROR_INVALID_PARAMETER),
        CALL(TryTime(With(&SYSTEMTIME::wMilliseconds, 1000)), 0, ERROR_INVALID_PARAMETER),
        CALL(TryTime(With(&SYSTEMTIME::wMonth, 13)), 11, 0),
        CALL(TryTime(With(&SYSTEMTIME::wYear, 0)), 11, 0),
    });
}

TEST(DateFormat, PicturesOfTheLocaleExcludeEachOtherAndOnesOwn)
{
    const DWORD own = DATE_USE_ALT_CALENDAR;
    RunRows({
        CALL(TryDate(morning, DATE_SHORTDATE | DATE_LONGDATE, nullptr), 0, ERROR_INVALID_FLAGS),
        CALL(TryDate(morning, DATE_SHORTDATE | DATE_YEARMONTH, nullptr), 0, ERROR_INVALID_FLAGS),
        CALL(TryDate(morning, DATE_LONGDATE | DATE_YEARMONTH, nullptr), 0, ERROR_INVALID_FLAGS),
        CALL(TryDate(morning, DATE_SHORTDATE, "d"), 0, ERROR_INVALID_FLAGS),
        CALL(TryDate(morning, DATE_LONGDATE, "d"), 0, ERROR_INVALID_FLAGS),
        CALL(TryDate(morning, DATE_YEARMONTH, ""), 0, ERROR_INVALID_FLAGS),
        CALL(TryDate(morning, LOCALE_NOUSEROVERRIDE, "d"), 0, ERROR_INVALID_FLAGS),
        CALL(TryDate(morning, LOCALE_NOUSEROVERRIDE, nullptr), 9, 0),
        CALL(TryDate(morning, own, nullptr), 9, 0),
        CALL(TryDate(morning, own | DATE_LONGDATE, nullptr), 26, 0),
        CALL(TryDate(morning, own, "d"), 2, 0),
        CALL(TryDate(morning, 0x100, nullptr), 9, 0),
    });
}

TEST(DateFormat, TheResultCountsTheTerminator)
{
    WCHAR wide[16];
    char narrow[16];
    const WideString picture = Wide("yyyy");
    RunRows({
        CALL(GetDateFormatW(0x409, 0, &morning, picture.c_str(), wide, 5), 5, 0),
        CALL(GetDateFormatW(0x409, 0, &morning, picture.c_str(), wide, 4), 0,
             ERROR_INSUFFICIENT_BUFFER),
        CALL(GetDateFormatW(0x409, 0, &morning, picture.c_str(), nullptr, 0), 5, 0),
        CALL(GetDateFormatW(0x409, 0, &morning, picture.c_str(), nullptr, 5), 0,
             ERROR_INVALID_PARAMETER),
        CALL(GetDateFormatW(0x409, 0, &morning, picture.c_str(), wide, -1), 0,
             ERROR_INVALID_PARAMETER),
        CALL(GetDateFormatW(0x80D, 0, &morning, picture.c_str(), wide, 16), 0,
             ERROR_INVALID_PARAMETER),
        CALL(GetDateFormatA(0x409, 0, &morning, "yyyy", narrow, 5), 5, 0),
        CALL(GetDateFormatA(0x409, 0, &morning, "yyyy", narrow, 4), 0, ERROR_INSUFFICIENT_BUFFER),
        CALL(GetDateFormatA(0x409, 0, &morning, "yyyy", nullptr, 0), 5, 0),
        CALL(GetDateFormatA(0x409, 0, &morning, "yyyy", nullptr, 5), 0, ERROR_INVALID_PARAMETER),
        CALL(GetDateFormatA(0x409, 0, &morning, "yyyy", narrow, -1), 0, ERROR_INVALID_PARAMETER),
        CALL(GetTimeFormatA(0x80D, 0, &morning, "HH", narrow, 16), 0, ERROR_INVALID_PARAMETER),
        CALL(GetTimeFormatA(0x409, 0, &morning, "HH", narrow, 2), 0, ERROR_INSUFFICIENT_BUFFER),
        CALL(GetDateFormatA(0x411, 0, &morning, "dddd", narrow, 6), 0, ERROR_INSUFFICIENT_BUFFER),
        CALL(GetDateFormatA(0x411, 0, &morning, "dddd", narrow, 7), 7, 0),
    });
}

TEST(DateFormat, NullIsThePresentMoment)
{
    char text[16];
    EXPECT_EQ(GetDateFormatA(0x409, 0, nullptr, "yyyy", text, 16), 5);
    EXPECT_EQ(GetTimeFormatA(0x409, 0, nullptr, "HH:mm", text, 16), 6);
}

TEST(DateFormat, NarrowTextIsInTheLocalesOwnPage)
{
    EXPECT_EQ(Date("dddd", morning, 0x411), "\x96\xD8\x97\x6A\x93\xFA");
    EXPECT_EQ(Date("d MMMM", Moment(2021, 1, 10), 0x419), "10 \xFF\xED\xE2\xE0\xF0\xFF");
    // The picture is text of that page, too: here a letter of the Cyrillic alphabet.
    EXPECT_EQ(Date("\xE3 d", morning, 0x419), "\xE3 1");
    EXPECT_EQ(Date("d\x94\x4E", morning, 0x411), "1\x94\x4E");
}

// The reference run has room for a hundred units or so, and faults behind them.
#ifndef _WIN32
TEST(DateFormat, ALongTextIsWrittenWhole)
{
    const std::string literal(3000, 'x');
    const std::string picture = "'" + literal + "'d";
    std::vector<WCHAR> wide(4000);
    EXPECT_EQ(GetDateFormatW(0x409, 0, &morning, Wide(picture).c_str(), wide.data(), 4000), 3002);
    EXPECT_EQ(WideString(wide.data()), Wide(literal + "1"));
    std::vector<char> text(4000);
    EXPECT_EQ(GetDateFormatA(0x409, 0, &morning, picture.c_str(), text.data(), 4000), 3002);
    EXPECT_EQ(text.data(), literal + "1");
}
#endif

TEST(DateFormat, AMonthBesideADayTakesTheGenitive)
{
    const LCID russian = 0x419;
    const auto date = [&](const char16_t* picture) {
        return DateW(russian, 0, Moment(2021, 3, 8), Wide(picture).c_str());
    };
    EXPECT_EQ(date(u"MMMM"), Wide(u"\u043C\u0430\u0440\u0442"));
    EXPECT_EQ(date(u"MMMM yyyy"), Wide(u"\u043C\u0430\u0440\u0442 2021"));
    EXPECT_EQ(date(u"d MMMM"), Wide(u"8 \u043C\u0430\u0440\u0442\u0430"));
    EXPECT_EQ(date(u"dd/MMMM"), Wide(u"08/\u043C\u0430\u0440\u0442\u0430"));
    // A name of a day, and a letter in quotes, is no day's number.
    EXPECT_EQ(date(u"'d' MMMM"), Wide(u"d \u043C\u0430\u0440\u0442"));
    if (HOST_PATHS) { // What stands behind is looked at by the reference run at random.
        EXPECT_EQ(date(u"MMMM d"), Wide(u"\u043C\u0430\u0440\u0442\u0430 8"));
        EXPECT_EQ(date(u"dddd MMMM").substr(date(u"dddd ").size()),
                  Wide(u"\u043C\u0430\u0440\u0442"));
    }
}

TEST(DateFormat, WhatATimeLeavesOutTakesItsSeparatorsAlong)
{
    constexpr DWORD HOURS = TIME_NOMINUTESORSECONDS;
    EXPECT_EQ(Time("h:mm:ss tt", HOURS), "2 AM");
    EXPECT_EQ(Time("h:mm:ss tt", TIME_NOSECONDS), "2:51 AM");
    EXPECT_EQ(Time("h:mm:ss tt", TIME_NOTIMEMARKER), "2:51:06");
    EXPECT_EQ(Time("h:mm:ss tt", HOURS | TIME_NOTIMEMARKER), "2");
    EXPECT_EQ(Time("tt hh:mm", TIME_NOTIMEMARKER), " 02:51");
    EXPECT_EQ(Time("H:mm:ss 'x'.", HOURS), "2 ");
    EXPECT_EQ(Time("h:mm:ss tt", TIME_FORCE24HOURFORMAT, evening), "21:05:09 PM");
    EXPECT_EQ(Time("h'x'm's", HOURS), "2");
    EXPECT_EQ(Time("tttt|tt", TIME_NOTIMEMARKER), "");
    EXPECT_EQ(Time("dd.MM hh", HOURS), "dd.MM 02");
}

// The sums were measured on the reference run.
TEST(DateFormat, PicturesOfAnyKindComeOutAsMeasured)
{
    Numbers numbers;
    TextSum dates;
    TextSum times;
    for (int i = 0; i < 20000; ++i) {
        const SYSTEMTIME moment = AnyMoment(numbers);
        const WideString date = AnyPicture(numbers, "dMy'/. xdMy");
        dates.Add(DateW(0x409, 0, moment, date.c_str()));
        const WideString time = AnyPicture(numbers, "hHmst':. 'x-, hms");
        times.Add(TimeW(0x409, numbers.Below(16), moment, time.c_str()));
    }
    EXPECT_EQ(dates.Get(), 304737497U);
    EXPECT_EQ(times.Get(), 4230285552U);
}
