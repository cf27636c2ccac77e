// tests/System/Time/TimeTextTest.cpp: dates and times printed, and read after the thread's locale.
#include <clocale>

#include "Support/Clock.h"
#include "System/Time/TimeTextSupport.h"

using namespace time_text;

namespace
{
const CT_Time& Moment()
{
    static const CT_Time time(YEAR_1970 + 951868798); // Tuesday, 29 February 2000 23:59:58
    return time;
}

const char16_t* const date_pictures[] = {u"d.M.yyyy", u"dddd, dd MMMM yy", u"'at' ddd''gg", u"x"};
const char16_t* const time_pictures[] = {u"HH:mm:ss", u"h 'o''clock' t", u"hh.mm tt", u"x"};

constexpr unsigned locales[] = {ENGLISH, GERMAN, RUSSIAN, JAPANESE, THAI, HEBREW};

int Set(CT_Time* time, const char16_t* text, int calendar = 0)
{
    const CT_UString wide(text);
    return time->b_Set(&wide, static_cast<CT_Calendar::et_ID>(calendar));
}

std::u16string Read(const char16_t* text)
{
    CT_Time time(YEAR_1970);
    if (!Set(&time, text))
        return u"refused";
    return DateText(time, ENGLISH, u"yyyy-MM-dd ") + TimeText(time, ENGLISH, u"HH:mm:ss");
}

// The thread's locale for a test.
class ThreadLocale
{
public:
    explicit ThreadLocale(unsigned locale) { SetThreadLocale(locale); }
    ~ThreadLocale() { SetThreadLocale(old); }

private:
    LCID old = GetThreadLocale();
};

// A date in the order of the thread's short picture, with numbers.
std::u16string InShortPicture(const CT_Time& time)
{
    return DateText(time, GetThreadLocale(), Fact(GetThreadLocale(), 31).c_str());
}
} // namespace

// ---- Printing -----------------------------------------------------------------------------

TEST(TimeText, DatesAreWhatTheSystemPrints)
{
    const SYSTEMTIME system = SystemOf(Moment());
    for (unsigned locale : locales) {
        for (unsigned flags : {0U, 1U, 2U}) {
            SCOPED_TRACE(std::to_string(locale) + " " + std::to_string(flags));
            CT_UString wide(u"before");
            Moment().v_GetDate(&wide, locale, static_cast<CT_Time::et_DateFlags>(flags));
            EXPECT_EQ(Of(wide), Expected('d', locale, flags, system, nullptr));
            CT_CString bytes("before", CT_String::ALL, 437);
            Moment().v_GetDate(&bytes, locale, static_cast<CT_Time::et_DateFlags>(flags));
            EXPECT_EQ(bytes.qccz_Get(), NarrowService('d', locale, flags, system, nullptr));
            EXPECT_EQ(bytes.n_GetCodePage(), CT_LocaleInfo::sn_GetDefaultANSICodePage(locale));
        }
    }
}

TEST(TimeText, TimesAreWhatTheSystemPrints)
{
    const SYSTEMTIME system = SystemOf(Moment());
    for (unsigned locale : locales) {
        for (unsigned flags : {0U, 1U, 2U, 4U, 8U, 12U}) {
            SCOPED_TRACE(std::to_string(locale) + " " + std::to_string(flags));
            CT_UString wide(u"before");
            Moment().v_GetTime(&wide, locale, static_cast<CT_Time::et_TimeFlags>(flags));
            EXPECT_EQ(Of(wide), Expected('t', locale, flags, system, nullptr));
            CT_CString bytes("before", CT_String::ALL, 437);
            Moment().v_GetTime(&bytes, locale, static_cast<CT_Time::et_TimeFlags>(flags));
            EXPECT_EQ(bytes.qccz_Get(), NarrowService('t', locale, flags, system, nullptr));
            EXPECT_EQ(bytes.n_GetCodePage(), CT_LocaleInfo::sn_GetDefaultANSICodePage(locale));
        }
    }
}

TEST(TimeText, PicturesDecideWhereTheyAreGiven)
{
    const SYSTEMTIME system = SystemOf(Moment());
    for (unsigned locale : locales) {
        for (unsigned n = 0; n < 4; ++n) {
            SCOPED_TRACE(std::to_string(locale) + " " + std::to_string(n));
            EXPECT_EQ(DateText(Moment(), locale, date_pictures[n]),
                      Expected('d', locale, 0, system, date_pictures[n]));
            EXPECT_EQ(TimeText(Moment(), locale, time_pictures[n]),
                      Expected('t', locale, 0, system, time_pictures[n]));
            const CT_CString date_picture(date_pictures[n]), time_picture(time_pictures[n]);
            CT_CString bytes;
            Moment().v_GetDate(&bytes, &date_picture, locale, CT_Time::df_Default);
            EXPECT_EQ(bytes.qccz_Get(), NarrowService('d', locale, 0, system, date_pictures[n]));
            Moment().v_GetTime(&bytes, &time_picture, locale);
            EXPECT_EQ(bytes.qccz_Get(), NarrowService('t', locale, 0, system, time_pictures[n]));
        }
    }
    EXPECT_EQ(DateText(Moment(), ENGLISH, u"yyyy-MM-dd"), u"2000-02-29");
    EXPECT_EQ(TimeText(Moment(), ENGLISH, u"HH:mm:ss"), u"23:59:58");
    EXPECT_EQ(DateText(Moment(), ENGLISH, u"dddd"), u"Tuesday");
}

TEST(TimeText, APictureOfBytesIsReadInItsCodePageForAWideText)
{
    const CT_CString picture("'\xC4' yyyy", CT_String::ALL, 1252);
    CT_UString out;
    Moment().v_GetDate(&out, &picture, ENGLISH, CT_Time::df_Default);
    EXPECT_EQ(Of(out), u"\u00C4 2000");
}

TEST(TimeText, AnEmptyPictureGivesAnEmptyText)
{
    const CT_UString picture;
    CT_UString wide(u"before");
    Moment().v_GetDate(&wide, &picture, ENGLISH, CT_Time::df_Default);
    EXPECT_EQ(Of(wide), u"");
    wide.v_Set(u"before");
    Moment().v_GetTime(&wide, &picture, ENGLISH);
    EXPECT_EQ(Of(wide), u"");
    CT_CString bytes("before");
    Moment().v_GetDate(&bytes, &picture, ENGLISH, CT_Time::df_Default);
    EXPECT_STREQ(bytes.qccz_Get(), "");
    bytes.v_Set("before", CT_String::ALL, 0);
    Moment().v_GetTime(&bytes, &picture, ENGLISH);
    EXPECT_STREQ(bytes.qccz_Get(), "");
}

TEST(TimeText, NoPictureIsTheLocalesOwn)
{
    CT_UString with, without;
    Moment().v_GetDate(&with, nullptr, GERMAN, CT_Time::df_Default);
    Moment().v_GetDate(&without, GERMAN, CT_Time::df_Default);
    EXPECT_EQ(Of(with), Of(without));
    Moment().v_GetTime(&with, nullptr, GERMAN);
    Moment().v_GetTime(&without, GERMAN, CT_Time::tf_Default);
    EXPECT_EQ(Of(with), Of(without));
}

TEST(TimeText, ALocaleOfZeroIsTheThreads)
{
    const SYSTEMTIME system = SystemOf(Moment());
    for (unsigned locale : {GERMAN, RUSSIAN}) {
        const ThreadLocale of_thread(locale);
        EXPECT_EQ(DateText(Moment(), 0, u"dddd"), Expected('d', locale, 0, system, u"dddd"));
        CT_UString time;
        Moment().v_GetTime(&time, 0, CT_Time::tf_Default);
        EXPECT_EQ(Of(time), Expected('t', locale, 0, system, nullptr));
        CT_CString bytes;
        Moment().v_GetDate(&bytes, 0, CT_Time::df_LongDate);
        EXPECT_EQ(bytes.qccz_Get(), NarrowService('d', locale, 2, system, nullptr));
        EXPECT_EQ(bytes.n_GetCodePage(), CT_LocaleInfo::sn_GetDefaultANSICodePage(locale));
    }
}

// ---- Failures -----------------------------------------------------------------------------

TEST(TimeText, WhatTheSystemRefusesIsReportedAndLeavesTheString)
{
    struct Row
    {
        const char* what;
        unsigned locale, flags, code;
        unsigned long long moment;
        const char16_t* picture;
    };
    const Row rows[] = {
        {"an unknown locale", UNKNOWN, 0, 87, YEAR_1970, nullptr},
        {"two pictures at once", ENGLISH, 3, 1004, YEAR_1970, nullptr},
        {"a picture beside a flag", ENGLISH, 1, 1004, YEAR_1970, u"yyyy"},
        {"a year before 1601", ENGLISH, 0, 87, 86400, u"yyyy"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.what);
        const CT_Time time(row.moment);
        CT_UString wide(u"before");
        CT_CString bytes("before", CT_String::ALL, 437);
        for (CT_String* out : {static_cast<CT_String*>(&wide), static_cast<CT_String*>(&bytes)}) {
            if (row.picture) {
                const CT_UString picture(row.picture);
                time.v_GetDate(out, &picture, row.locale,
                               static_cast<CT_Time::et_DateFlags>(row.flags));
            } else
                time.v_GetDate(out, row.locale, static_cast<CT_Time::et_DateFlags>(row.flags));
            const Failure failure = TakeFailure();
            EXPECT_EQ(failure.code, row.code);
            EXPECT_EQ(failure.text.rfind("(" + std::to_string(row.code) + "): ", 0), 0U)
                << failure.text;
            EXPECT_EQ(failure.trail, std::vector<std::string>{"System/Time/Time"});
        }
        EXPECT_EQ(Of(wide), u"before");
        EXPECT_STREQ(bytes.qccz_Get(), "before");
        EXPECT_EQ(bytes.n_GetCodePage(), 437U);
    }
}

// How long a picture the system's printer takes on this road.
static unsigned LongestPicture()
{
    const std::string picture(255, 'x');
    const SYSTEMTIME moment = {1998, 5, 0, 4, 5, 6, 7, 0};
    // Where the wide calls are missing, some systems have room for half as much.
    const bool fits = CT_OS::sb_GetIsWindowsNT() ||
                      GetDateFormatA(ENGLISH, 0, &moment, picture.c_str(), nullptr, 0) == 256;
    return fits ? 255 : 127;
}

TEST(TimeText, ATextBeyond255CharactersIsReported)
{
    const std::u16string picture(256, u'x');
    const unsigned longest = LongestPicture();
    for (const bool date : {true, false}) {
        const CT_UString wide(picture.c_str()), shorter(picture.c_str(), longest);
        CT_UString out(u"before");
        CT_CString bytes("before");
        for (CT_String* string : {static_cast<CT_String*>(&out), static_cast<CT_String*>(&bytes)}) {
            if (date)
                Moment().v_GetDate(string, &wide, ENGLISH, CT_Time::df_Default);
            else
                Moment().v_GetTime(string, &wide, ENGLISH);
            const Failure failure = TakeFailure();
            EXPECT_EQ(failure.code, 122U);
            EXPECT_EQ(failure.trail, std::vector<std::string>{"System/Time/Time"});
        }
        EXPECT_EQ(Of(out), u"before");
        EXPECT_STREQ(bytes.qccz_Get(), "before");
        if (date)
            Moment().v_GetDate(&out, &shorter, ENGLISH, CT_Time::df_Default);
        else
            Moment().v_GetTime(&out, &shorter, ENGLISH);
        EXPECT_EQ(Of(out), picture.substr(0, longest));
    }
}

TEST(TimeText, AnUnknownLocalesTimeIsReported)
{
    CT_UString out(u"before");
    const CT_UString picture(u"HH");
    Moment().v_GetTime(&out, UNKNOWN, CT_Time::tf_Default);
    EXPECT_EQ(TakeFailure().code, 87U);
    Moment().v_GetTime(&out, &picture, UNKNOWN);
    const Failure failure = TakeFailure();
    EXPECT_EQ(failure.code, 87U);
    EXPECT_EQ(failure.trail, std::vector<std::string>{"System/Time/Time"});
    EXPECT_EQ(Of(out), u"before");
}

TEST(TimeText, AnEarlierErrorStaysAndItsTrailGrows)
{
    Errors().v_SetError(4711, Units(u"earlier"));
    CT_UString out(u"before");
    Moment().v_GetDate(&out, UNKNOWN, CT_Time::df_Default);
    EXPECT_EQ(TakeFailure(), (Failure{4711, "(4711): earlier", {"System/Time/Time"}}));
    EXPECT_EQ(Of(out), u"before");
    // Where nothing fails it doesn't hinder.
    Errors().v_SetError(4711, Units(u"earlier"));
    const CT_UString picture(u"yyyy");
    Moment().v_GetDate(&out, &picture, ENGLISH, CT_Time::df_Default);
    EXPECT_EQ(TakeFailure(), (Failure{4711, "(4711): earlier", {}}));
    EXPECT_EQ(Of(out), u"2000");
}

// ---- Format and mask ----------------------------------------------------------------------

TEST(TimeText, NoMomentGivesAnEmptyText)
{
    CT_UString wide(u"before");
    CT_Time::sv_Format(&wide, 0, ", ", CT_Time::tf_Default);
    EXPECT_EQ(Of(wide), u"");
    CT_CString bytes("before");
    CT_Time::sv_Format(&bytes, 0, nullptr, CT_Time::tf_Default);
    EXPECT_STREQ(bytes.qccz_Get(), "");
}

TEST(TimeText, AMomentIsDateSeparatorAndTime)
{
    const ThreadLocale of_thread(GERMAN);
    const CT_Time time(951868798U);
    CT_UString date, clock, out;
    time.v_GetDate(&date, 0, CT_Time::df_Default);
    for (unsigned flags : {0U, 2U, 8U}) {
        const auto time_flags = static_cast<CT_Time::et_TimeFlags>(flags);
        time.v_GetTime(&clock, 0, time_flags);
        CT_Time::sv_Format(&out, 951868798, " - ", time_flags);
        EXPECT_EQ(Of(out), Of(date) + u" - " + Of(clock));
        CT_CString bytes;
        CT_Time::sv_Format(&bytes, 951868798, ", ", time_flags);
        const CT_CString expected((Of(date) + u", " + Of(clock)).c_str(), CT_String::ALL, 1252);
        EXPECT_STREQ(bytes.qccz_Get(), expected.qccz_Get());
    }
    CT_Time::sv_Format(&out, 951868798, "", CT_Time::tf_Default);
    time.v_GetTime(&clock, 0, CT_Time::tf_Default);
    EXPECT_EQ(Of(out), Of(date) + Of(clock));
}

TEST(TimeText, WithoutASeparatorAMomentIsTheDateAlone)
{
    CT_UString date, out;
    CT_Time(951868798U).v_GetDate(&date, 0, CT_Time::df_Default);
    CT_Time::sv_Format(&out, 951868798, nullptr, CT_Time::tf_Default);
    EXPECT_EQ(Of(out), Of(date));
}

TEST(TimeText, TheMaskIsTheShortPictureAndATimeWithTwoColons)
{
    for (unsigned locale : {GERMAN, ENGLISH, JAPANESE}) {
        const ThreadLocale of_thread(locale);
        const std::u16string expected = Fact(locale, 31) + u"[[,] HH::mm[:ss]]";
        CT_UString wide(u"before");
        CT_Time::sv_GetInputMask(&wide);
        EXPECT_EQ(Of(wide), expected);
        CT_CString bytes("before");
        CT_Time::sv_GetInputMask(&bytes);
        const CT_CString narrow(expected.c_str());
        EXPECT_STREQ(bytes.qccz_Get(), narrow.qccz_Get());
    }
}

// ---- Reading after the thread's locale ----------------------------------------------------

TEST(TimeText, ADateIsReadAfterTheThreadsShortPicture)
{
    for (unsigned locale : {GERMAN, ENGLISH}) {
        const ThreadLocale of_thread(locale);
        const std::u16string text = InShortPicture(Moment());
        EXPECT_EQ(Read(text.c_str()), u"2000-02-29 00:00:00") << Narrow(text);
        EXPECT_EQ(Read((text + u" 17:08:09").c_str()), u"2000-02-29 17:08:09");
        EXPECT_EQ(Read((text + u" 17:08").c_str()), u"2000-02-29 17:08:00");
        EXPECT_EQ(Read((text + u" 17").c_str()), u"2000-02-29 17:00:00");
        EXPECT_EQ(Read((text + u" 7.8-9").c_str()), u"2000-02-29 07:08:09");
    }
}

TEST(TimeText, FurtherItemsAndNumbersOfTheTimeAreDropped)
{
    const ThreadLocale of_thread(ENGLISH);
    const std::u16string text = InShortPicture(Moment());
    EXPECT_EQ(Read((text + u" 1:2:3 4:5:6").c_str()), u"2000-02-29 01:02:03");
    EXPECT_EQ(Read((text + u" 1:2:3:4").c_str()), u"2000-02-29 01:02:03");
    // Two blanks make an empty second item.
    EXPECT_EQ(Read((text + u"  1:2:3").c_str()), u"2000-02-29 00:00:00");
}

TEST(TimeText, ASignThatIsNoDigitAtTheEndOfTheDateGoesOnce)
{
    const ThreadLocale of_thread(ENGLISH);
    const std::u16string text = InShortPicture(Moment());
    EXPECT_EQ(Read((text + u",").c_str()), u"2000-02-29 00:00:00");
    EXPECT_EQ(Read((text + u", 5:6").c_str()), u"2000-02-29 05:06:00");
    // A second one stays, and then hinders nothing behind the last field of the date.
    EXPECT_EQ(Read((text + u",,").c_str()), u"2000-02-29 00:00:00");
}

TEST(TimeText, AFieldIsAskedForAgainBehindEachSign)
{
    const ThreadLocale of_thread(ENGLISH);
    const std::u16string text = InShortPicture(Moment());
    // The sign at the end asks for the seconds again, of which there are none more.
    EXPECT_EQ(Read((text + u" 17:08:09:").c_str()), u"2000-02-29 17:08:00");
    EXPECT_EQ(Read((text + u" 17:08:").c_str()), u"2000-02-29 17:00:00");
    EXPECT_EQ(Read((text + u" 17:").c_str()), u"2000-02-29 00:00:00");
    // Of two signs in a row the second asks for the hour again, and the first for nothing.
    EXPECT_EQ(Read((text + u" 17::08").c_str()), u"2000-02-29 00:08:00");
    EXPECT_EQ(Read((text + u" :17").c_str()), u"2000-02-29 17:00:00");
}

TEST(TimeText, LettersOfATimeThatAreFieldsAskForTheirOwn)
{
    const ThreadLocale of_thread(ENGLISH);
    const std::u16string text = InShortPicture(Moment());
    // The h is a field, which reads no digits in front of itself.
    EXPECT_EQ(Read((text + u" 17h08").c_str()), u"2000-02-29 00:00:00");
    EXPECT_EQ(Read((text + u" 17x08").c_str()), u"2000-02-29 17:08:00");
}

TEST(TimeText, AnEmptyDateIsRefused)
{
    const ThreadLocale of_thread(ENGLISH);
    for (const char16_t* text : {u"", u" ", u" 17:08", u"x", u"?"})
        EXPECT_EQ(Read(text), u"refused") << Narrow(text);
}

TEST(TimeText, ADateThatIsRefusedLeavesTheTime)
{
    const ThreadLocale of_thread(ENGLISH);
    CT_Time time(YEAR_1970 + 5);
    for (const char16_t* text : {u"", u"0/0/2000", u"2/30/2000", u"2/29/2000 25:00"})
        EXPECT_EQ(Set(&time, text), 0) << Narrow(text);
    EXPECT_EQ(time.n_Get(), 5U);
    EXPECT_EQ(time.n8_Get(), YEAR_1970 + 5);
    EXPECT_EQ(TakeFailure(), Failure());
}

TEST(TimeText, ATextOfBytesIsReadInItsCodePage)
{
    const ThreadLocale of_thread(ENGLISH);
    CT_Time time;
    const CT_CString text("2/29/2000 1:02:03", CT_String::ALL, 1252);
    ASSERT_EQ(time.b_Set(&text, CT_Calendar::id_None), 1);
    EXPECT_EQ(time.n8_Get(), YEAR_1970 + 951782400 + 3723);
}

TEST(TimeText, DigitsOfOtherScriptsCount)
{
    const ThreadLocale of_thread(ENGLISH);
    EXPECT_EQ(Read(u"\u0662/\u0662\u0669/\u0662\u0660\u0660\u0660 \u0967\u096D:\u0668"),
              u"2000-02-29 17:08:00");
}
