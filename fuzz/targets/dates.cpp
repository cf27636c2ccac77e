// fuzz/targets/dates.cpp: a text read as a date after a picture, as the model reads it; and dates
// printed after pictures of any kind.
//
// Input: a byte for the locale, one for the calendar, the picture as a wide text, the text.
#include <Models/DateParserModel.h>
#include <Support/Clock.h>

#include "Support/Input.h"
#include "Support/Library.h"

namespace
{
constexpr unsigned LOCALES[] = {0x0409, 0x0411, 0x0419, 0x0407, 0x041E, 0x040D, 0x0401, 0x7409};
constexpr long long JANUARY_15 = 947937600; // 2000, noon UTC

// What the model reads, as the library is to read it.
bool ModelAgrees(const std::u16string& text, const std::u16string& picture, unsigned locale,
                 int calendar, int result, const CT_Time& read)
{
    SYSTEMTIME present;
    CT_Time::sv_Convert(&present, static_cast<LONG>(CT_Time::sn_GetTime()));
    std::tm today{}, date{};
    today.tm_year = present.wYear - 1900;
    today.tm_mon = present.wMonth - 1;
    today.tm_mday = present.wDay;
    date_model::Parser parser(text, locale, calendar, today);
    if (!parser.Parse(picture, &date))
        return !result;
    // From 2038 on there is no 32-bit form, which the parser knows nothing of.
    return result ? CT_Time::sn8_Date2Abs(&date) == read.n8_Get() : date.tm_year >= 138;
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const FixedClock clock(JANUARY_15);
    Input input(data, size);
    const unsigned locale = LOCALES[input.Below(std::size(LOCALES))];
    const unsigned calendars = input.Byte();
    const std::u16string picture = input.WideText(32);
    std::u16string text = input.RestUnits();
    std::erase(text, u'\0');
    const CT_UString widePicture(picture.c_str()), wideText(text.c_str());
    CT_Time time(5U);
    // Half of the runs let the locale's other calendar decide.
    const int calendar = calendars < 128 ? 0 : static_cast<int>(calendars % 8);
    const int result =
        time.b_Set(&wideText, &widePicture, locale, static_cast<CT_Calendar::et_ID>(calendar));
    REQUIRE(ModelAgrees(text, picture, locale, calendar, result, time));
    CT_UString printed;
    time.v_GetDate(&printed, &widePicture, locale, CT_Time::df_Default);
    REQUIRE(printed.vn_GetLength() < 256);
    time.v_GetTime(&printed, &widePicture, locale);
    REQUIRE(printed.vn_GetLength() < 256);
    // The services refuse pictures that they don't know, which the library reports.
    TakeCode();
    return 0;
}
