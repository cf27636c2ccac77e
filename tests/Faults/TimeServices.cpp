// tests/Faults/TimeServices.cpp: dates and times whose printing the system refuses, clocks that don't
// know the local time, and calendars without names.
#include <Ostra/String/CString.h>
#include <Ostra/String/UString.h>
#include <System/Time/Calendar.h>
#include <System/Time/Time.h>

#include "Faults/ServiceSweep.h"

namespace
{
constexpr unsigned ENGLISH = 0x0409, RUSSIAN = 0x0419, JAPANESE = 0x0411;
constexpr auto DATE = CT_Time::df_Default;
constexpr auto TIME = CT_Time::tf_Default;

struct State
{
    CT_Time time{951868798U};
    CT_UString wide{Units(u"as it was")};
    CT_CString narrow{"as it was"};
    CT_UString picture{Units(u"d'.'M'.'yyyy H")};
    CT_UString text{Units(u"29.2.2000")};
    CT_UString month{Units(u"2 \u0438\u044E\u043D\u044F 1998")};
    CT_UString full{Units(u"d MMMM yyyy")};
    SYSTEMTIME system = {1998, 6, 0, 2, 0, 0, 0, 0};
    unsigned long long absolute = 0;
    unsigned moment = 0;
    int result = 7;
};

void Nothing(State&) {}

void ExpectUsable(State& state)
{
    CT_Time(951868798U).v_GetDate(&state.wide, &state.full, ENGLISH, DATE);
    EXPECT_EQ(Narrow(Wide(state.wide.qcuz_Get())).substr(0, 3), "29 ");
}

const std::vector<std::string> CLOCK = {"_localtime64", "_mktime64"};

// Whether it was this one that failed.
bool Failed(const std::string& service)
{
    return Services::Disarm().name == service;
}

// A clock that knows no local time doesn't keep a text from being printed, and isn't told.
void ExpectOld(State& state)
{
    EXPECT_EQ(state.time.n_Get(), 951868798U);
    if (Failed(CLOCK[0]) || Failed(CLOCK[1])) {
        EXPECT_EQ(PeekFailure(), Failure());
        return;
    }
    EXPECT_EQ(Narrow(Wide(state.wide.qcuz_Get())), "as it was");
    EXPECT_STREQ(state.narrow.qccz_Get(), "as it was");
}

void ExpectNewWide(State& state)
{
    EXPECT_NE(Narrow(Wide(state.wide.qcuz_Get())), "as it was");
}

void ExpectNewNarrow(State& state)
{
    EXPECT_STRNE(state.narrow.qccz_Get(), "as it was");
}

void Judge(const ServiceReport& report)
{
    EXPECT_EQ(report.failure.code, report.code);
    EXPECT_EQ(report.failure.text.rfind("(" + std::to_string(report.code) + "): ", 0), 0U);
    ASSERT_FALSE(report.failure.trail.empty());
    EXPECT_EQ(report.failure.trail.front(), "System/Time/Time");
}

const std::vector<std::string> FORMATS = {"GetDateFormatA", "GetDateFormatW", "_localtime64",
                                          "_mktime64"};

const ServiceOperation<State> OPERATIONS[] = {
    {"wide date", Nothing, [](State& state) { state.time.v_GetDate(&state.wide, ENGLISH, DATE); },
     ExpectNewWide, ExpectOld, CLOCK},
    {"8-bit date", Nothing,
     [](State& state) { state.time.v_GetDate(&state.narrow, ENGLISH, DATE); }, ExpectNewNarrow,
     ExpectOld, CLOCK},
    {"date after a picture", Nothing,
     [](State& state) { state.time.v_GetDate(&state.wide, &state.picture, ENGLISH, DATE); },
     ExpectNewWide, ExpectOld, CLOCK},
    {"wide time", Nothing, [](State& state) { state.time.v_GetTime(&state.wide, ENGLISH, TIME); },
     ExpectNewWide, ExpectOld, CLOCK},
    {"8-bit time", Nothing,
     [](State& state) { state.time.v_GetTime(&state.narrow, ENGLISH, TIME); }, ExpectNewNarrow,
     ExpectOld, CLOCK},
    {"time after a picture", Nothing,
     [](State& state) { state.time.v_GetTime(&state.wide, &state.picture, ENGLISH); },
     ExpectNewWide, ExpectOld, CLOCK},
    {"date and time", Nothing,
     [](State& state) { CT_Time::sv_Format(&state.wide, 951868798, ", ", TIME); }, ExpectNewWide,
     nullptr, CLOCK},
    // Forms of names that the system doesn't print aren't in the text, which is all that is told.
    {"reading a month's name", Nothing,
     [](State& state) {
         state.result = state.time.b_Set(&state.month, &state.full, RUSSIAN, CT_Calendar::id_None);
     },
     [](State& state) { EXPECT_EQ(state.result, 1); }, nullptr, FORMATS},
};

// ---- The clock, and names of calendars ----------------------------------------------------

constexpr unsigned NO_MOMENT = 0xFFFFFFFF;

void JudgeSilent(const ServiceReport& report)
{
    EXPECT_EQ(report.failure, Failure());
}

constexpr unsigned OLD = 951868798;
constexpr unsigned NEW = 896745600;     // the second of June 1998
constexpr unsigned DEFAULT = 852076800; // the first of January 1997

// Whether there is daylight time is asked as well, and a refusal of that means none.
void ExpectMomentOrNone(unsigned moment, unsigned expected)
{
    EXPECT_TRUE(moment == NO_MOMENT || moment == expected) << moment;
    EXPECT_TRUE(moment == expected || Failed("_mktime64"));
}

// Without a local time there are no parts that could be changed; without a moment for the new ones
// there is none.
void ExpectOldOrNone(State& state, unsigned expected)
{
    if (Failed("_localtime64"))
        EXPECT_EQ(state.time.n_Get(), OLD);
    else
        ExpectMomentOrNone(state.time.n_Get(), expected);
}

void PutName(State&)
{
    CT_Calendar::sv_SetEnumInfo("the name before");
}

const ServiceOperation<State> SILENT[] = {
    {"a moment in seconds of all days", Nothing,
     [](State& state) { state.absolute = CT_Time::sn8_Convert(OLD); },
     [](State& state) { EXPECT_EQ(state.absolute, CT_Time::sn8_Convert(OLD)); },
     [](State& state) {
         EXPECT_EQ(state.absolute == 0, Failed("_localtime64"));
     }},
    {"a moment in the platform's form", Nothing,
     [](State& state) { CT_Time::sv_Convert(&state.system, LONG(OLD)); },
     [](State& state) { EXPECT_EQ(state.system.wYear, 2000U); },
     [](State& state) {
         EXPECT_EQ(state.system.wYear, 0U);
     }},
    {"the moment of the platform's form", Nothing,
     [](State& state) { state.moment = CT_Time::sn_Convert(&state.system); },
     [](State& state) { EXPECT_NE(state.moment, NO_MOMENT); },
     [](State& state) {
         EXPECT_EQ(state.moment == NO_MOMENT, Failed("_mktime64"));
     }},
    {"the platform's form in seconds of all days", Nothing,
     [](State& state) { state.absolute = CT_Time::sn8_Convert(&state.system); },
     [](State& state) { EXPECT_EQ(state.absolute, CT_Time::sn8_Convert(&state.system)); },
     [](State& state) {
         EXPECT_EQ(state.absolute, CT_Time::sn8_Convert(&state.system));
     }},
    {"now in seconds of all days", Nothing,
     [](State& state) { state.absolute = CT_Time::sn8_GetTime(); },
     [](State& state) { EXPECT_GT(state.absolute, CT_Time::sn8_Convert(OLD)); },
     [](State& state) {
         EXPECT_EQ(state.absolute < CT_Time::sn8_Convert(OLD), Failed("_localtime64"));
     }},
    {"the moment of seconds of all days", Nothing,
     [](State& state) { state.moment = CT_Time::sn_Convert(state.time.n8_Get()); },
     [](State& state) { EXPECT_EQ(state.moment, OLD); },
     [](State& state) {
         ExpectMomentOrNone(state.moment, OLD);
     }},
    {"make by default", Nothing, [](State& state) { state.moment = CT_Time().n_Get(); },
     [](State& state) { EXPECT_EQ(state.moment, DEFAULT); },
     [](State& state) {
         ExpectMomentOrNone(state.moment, DEFAULT);
     }},
    {"make of seconds of all days", Nothing,
     [](State& state) { state.moment = CT_Time(state.time.n8_Get()).n_Get(); },
     [](State& state) { EXPECT_EQ(state.moment, OLD); },
     [](State& state) {
         ExpectMomentOrNone(state.moment, OLD);
     }},
    {"set now", Nothing, [](State& state) { state.time.v_SetTime(); },
     [](State& state) { EXPECT_GT(state.time.n_Get(), OLD); },
     [](State& state) {
         EXPECT_GT(state.time.n_Get(), OLD);
     }},
    {"set the date", Nothing, [](State& state) { state.time.v_SetDate(1998, 6, 3); },
     [](State& state) { EXPECT_EQ(state.time.n_Get(), NEW + OLD % 86400); },
     [](State& state) {
         ExpectOldOrNone(state, NEW + OLD % 86400);
     }},
    {"set the time", Nothing, [](State& state) { state.time.v_SetTime(1, 2, 3); },
     [](State& state) { EXPECT_EQ(state.time.n_Get(), OLD / 86400 * 86400 + 3723); },
     [](State& state) {
         ExpectOldOrNone(state, OLD / 86400 * 86400 + 3723);
     }},
    {"set", Nothing, [](State& state) { state.time.v_Set(1998, 6, 3, 0, 0, 0); },
     [](State& state) { EXPECT_EQ(state.time.n_Get(), NEW); },
     [](State& state) {
         ExpectOldOrNone(state, NEW);
     }},
    {"the name of a calendar", PutName,
     [](State& state) { state.result = CT_Calendar::sb_GetCalendarName(ENGLISH, &state.narrow); },
     [](State& state) { EXPECT_STRNE(state.narrow.qccz_Get(), "the name before"); },
     [](State& state) {
         EXPECT_EQ(state.result, 1);
         EXPECT_STREQ(state.narrow.qccz_Get(), "the name before");
     }},
    {"the name of another calendar", PutName,
     [](State& state) {
         state.result = CT_Calendar::sb_GetAlternateCalendarName(JAPANESE, &state.narrow);
     },
     [](State& state) { EXPECT_STRNE(state.narrow.qccz_Get(), "the name before"); },
     [](State& state) {
         EXPECT_EQ(state.result, 1);
         EXPECT_STREQ(state.narrow.qccz_Get(), "the name before");
     }},
};
} // namespace

TEST(ServiceSweep, Time)
{
    SweepServices(Judge, OPERATIONS);
}

TEST(ServiceSweep, TimeIsSilentAboutAClockWithoutALocalTimeAndACalendarWithoutAName)
{
    SweepServices(JudgeSilent, SILENT);
}
