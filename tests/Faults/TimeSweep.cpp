// tests/Faults/TimeSweep.cpp: dates, times and names of calendars with an exhausted heap.
#include <Ostra/String/CString.h>
#include <Ostra/String/UString.h>
#include <System/Time/Time.h>

#include "Faults/Sweep.h"

namespace
{
constexpr unsigned ENGLISH = 0x0409, GERMAN = 0x0407, JAPANESE = 0x0411;

struct State
{
    CT_Time time{951868798U};
    CT_UString wide;
    CT_CString narrow{1252U};
    CT_UString text{Units(u"29. Juni 2000, a rather long text behind it")};
    CT_CString bytes{"2/29/2000 1:02:03", CT_String::ALL, 1252};
    CT_UString picture{Units(u"d'.' MMMM yyyy', and a literal that is somewhat longer'")};
    CT_CString narrow_picture{"d'.' MMMM yyyy', and a literal that is somewhat longer'"};
    int result = 7;
};

std::string Text(const CT_UString& string)
{
    return Narrow(Wide(string.qcuz_Get()));
}

// Runs an operation that fills one of the empty strings, or leaves it.
void SweepText(void (*operation)(State&), const std::string& after)
{
    Sweep(
        {"Ostra/Buffer/Buffer", "System/String/StringConvert"},
        [] { return std::make_unique<State>(); }, [operation](State& state) { operation(state); },
        [&after](State& state, bool failed) {
            const std::string text = Text(state.wide) + state.narrow.qccz_Get();
            if (!failed) {
                EXPECT_EQ(text, after);
            } else {
                EXPECT_TRUE(text.empty() || after.rfind(text, 0) == 0) << text;
            }
        });
}

// Runs a reading of text that gives 1, or 0 with an error and the time as it was.
void SweepReading(void (*operation)(State&), unsigned after)
{
    Sweep(
        {"Ostra/Buffer/Buffer", "System/String/StringConvert"},
        [] { return std::make_unique<State>(); }, [operation](State& state) { operation(state); },
        [after](State& state, bool failed) {
            EXPECT_EQ(state.result, !failed);
            EXPECT_EQ(state.time.n_Get(), failed ? 951868798U : after);
        });
}
} // namespace

TEST(TimeSweep, AWideDateIsThereOrIsNot)
{
    SweepText(
        [](State& state) {
            state.time.v_GetDate(&state.wide, &state.picture, GERMAN, CT_Time::df_Default);
        },
        "29. Februar 2000, and a literal that is somewhat longer");
}

TEST(TimeSweep, AnEightBitDateIsThereOrIsNot)
{
    SweepText(
        [](State& state) {
            state.time.v_GetDate(&state.narrow, &state.picture, GERMAN, CT_Time::df_Default);
        },
        "29. Februar 2000, and a literal that is somewhat longer");
}

TEST(TimeSweep, APictureOfBytesIsConvertedOrNothingIsPrinted)
{
    SweepText(
        [](State& state) {
            state.time.v_GetDate(&state.wide, &state.narrow_picture, GERMAN, CT_Time::df_Default);
        },
        "29. Februar 2000, and a literal that is somewhat longer");
}

TEST(TimeSweep, ATimeIsThereOrIsNot)
{
    SweepText(
        [](State& state) {
            const CT_UString picture(Units(u"HH:mm:ss"));
            state.time.v_GetTime(&state.wide, &picture, ENGLISH);
        },
        "23:59:58");
}

TEST(TimeSweep, ATextIsReadOrThereIsAnError)
{
    SweepReading(
        [](State& state) {
            state.result =
                state.time.b_Set(&state.text, &state.narrow_picture, GERMAN, CT_Calendar::id_None);
        },
        962236800);
}

TEST(TimeSweep, ATextAfterTheThreadsPictureIsReadOrThereIsAnError)
{
    SweepReading(
        [](State& state) { state.result = state.time.b_Set(&state.bytes, CT_Calendar::id_None); },
        951786123);
}

TEST(TimeSweep, TheMaskIsWholeOrThereIsAnError)
{
    SweepText([](State& state) { CT_Time::sv_GetInputMask(&state.wide); },
              "M/d/yyyy[[,] HH::mm[:ss]]");
}

TEST(TimeSweep, ACalendarsNameIsThereOrIsNot)
{
    SweepText([](State& state) { CT_Calendar::sb_GetCalendarName(ENGLISH, &state.narrow); },
              "Gregorian Calendar");
}

TEST(TimeSweep, AnotherCalendarsNameIsThereOrIsNot)
{
    CT_CString name;
    CT_Calendar::sb_GetAlternateCalendarName(JAPANESE, &name);
    EXPECT_NE(name.vn_GetLength(), 0U);
    SweepText(
        [](State& state) { CT_Calendar::sb_GetAlternateCalendarName(JAPANESE, &state.narrow); },
        name.qccz_Get());
}

TEST(TimeSweep, AMomentInTheFormOfALocaleIsThereOrIsNot)
{
    SweepText([](State& state) { state.time.v_GetDate(&state.wide, ENGLISH, CT_Time::df_Default); },
              "2/29/2000");
    SweepText(
        [](State& state) { state.time.v_GetTime(&state.narrow, ENGLISH, CT_Time::tf_Default); },
        "11:59:58 PM");
}

// Its parts are there or not.
TEST(TimeSweep, AMomentAsOneTextIsWholeOrTheFailureIsTold)
{
    CT_UString whole;
    CT_Time::sv_Format(&whole, 951868798U, " and then at ", CT_Time::tf_Default);
    EXPECT_GT(whole.vn_GetLength(), 20U);
    Sweep(
        {"Ostra/Buffer/Buffer", "System/String/StringConvert"},
        [] { return std::make_unique<State>(); },
        [](State& state) {
            CT_Time::sv_Format(&state.wide, 951868798U, " and then at ", CT_Time::tf_Default);
        },
        [&](State& state, bool failed) {
            EXPECT_LE(state.wide.vn_GetLength(), whole.vn_GetLength());
            EXPECT_TRUE(failed || Text(state.wide) == Text(whole)) << Text(state.wide);
        });
}
