// tests/Faults/TimeServices.cpp: dates and times whose printing the system refuses.
#include <Ostra/String/CString.h>
#include <Ostra/String/UString.h>
#include <System/Time/Time.h>

#include "Faults/ServiceSweep.h"

namespace
{
constexpr unsigned ENGLISH = 0x0409, RUSSIAN = 0x0419;
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
    int result = 7;
};

void Nothing(State&) {}

void ExpectUsable(State& state)
{
    CT_Time(951868798U).v_GetDate(&state.wide, &state.full, ENGLISH, DATE);
    EXPECT_EQ(Narrow(Wide(state.wide.qcuz_Get())).substr(0, 3), "29 ");
}

void ExpectOld(State& state)
{
    EXPECT_EQ(Narrow(Wide(state.wide.qcuz_Get())), "as it was");
    EXPECT_STREQ(state.narrow.qccz_Get(), "as it was");
    EXPECT_EQ(state.time.n_Get(), 951868798U);
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

const std::vector<std::string> FORMATS = {"GetDateFormatA", "GetDateFormatW"};

const ServiceOperation<State> OPERATIONS[] = {
    {"wide date", Nothing, [](State& state) { state.time.v_GetDate(&state.wide, ENGLISH, DATE); },
     ExpectNewWide, ExpectOld},
    {"8-bit date", Nothing,
     [](State& state) { state.time.v_GetDate(&state.narrow, ENGLISH, DATE); }, ExpectNewNarrow,
     ExpectOld},
    {"date after a picture", Nothing,
     [](State& state) { state.time.v_GetDate(&state.wide, &state.picture, ENGLISH, DATE); },
     ExpectNewWide, ExpectOld},
    {"wide time", Nothing, [](State& state) { state.time.v_GetTime(&state.wide, ENGLISH, TIME); },
     ExpectNewWide, ExpectOld},
    {"8-bit time", Nothing,
     [](State& state) { state.time.v_GetTime(&state.narrow, ENGLISH, TIME); }, ExpectNewNarrow,
     ExpectOld},
    {"time after a picture", Nothing,
     [](State& state) { state.time.v_GetTime(&state.wide, &state.picture, ENGLISH); },
     ExpectNewWide, ExpectOld},
    {"date and time", Nothing,
     [](State& state) { CT_Time::sv_Format(&state.wide, 951868798, ", ", TIME); }, ExpectNewWide,
     nullptr},
    // Forms of names that the system doesn't print aren't in the text, which is all that is told.
    {"reading a month's name", Nothing,
     [](State& state) {
         state.result = state.time.b_Set(&state.month, &state.full, RUSSIAN, CT_Calendar::id_None);
     },
     [](State& state) { EXPECT_EQ(state.result, 1); }, nullptr, FORMATS},
};
} // namespace

TEST(ServiceSweep, Time)
{
    SweepServices(Judge, OPERATIONS);
}
