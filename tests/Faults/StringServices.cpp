// tests/Faults/StringServices.cpp: conversions between code pages whose services fail.
#include <Ostra/String/CString.h>
#include <Ostra/String/UString.h>

#include "Faults/ServiceSweep.h"
#include "Support/Files.h"

#include <string>

namespace
{
struct State
{
    CT_UString wide{Units(u"Stra\u00DFe \u0427")};
    CT_CString narrow{"Stra\xDF"
                      "e",
                      0xFFFFFFFF, 1252};
    CT_UString into_wide{Units(u"as it was")};
    CT_CString into_narrow{"as it was"};
};

void Nothing(State&) {}

void ExpectUsable(State& state)
{
    state.into_wide.v_Set(&state.narrow);
    EXPECT_EQ(state.into_wide.vu_GetAt(4), 0xDF);
    state.into_narrow.v_Set(&state.wide);
    EXPECT_EQ(state.into_narrow.vn_GetLength(), 8U);
}

const ServiceOperation<State> OPERATIONS[] = {
    {"to wide text", Nothing, [](State& state) { state.into_wide.v_Set(&state.narrow); },
     [](State& state) { EXPECT_EQ(state.into_wide.vn_GetLength(), 6U); }, nullptr},
    {"to 8-bit text", Nothing, [](State& state) { state.into_narrow.v_Set(&state.wide); },
     [](State& state) { EXPECT_EQ(state.into_narrow.vn_GetLength(), 8U); }, nullptr},
    {"append", Nothing, [](State& state) { state.into_narrow.v_Append(&state.wide); },
     [](State& state) { EXPECT_EQ(state.into_narrow.vn_GetLength(), 17U); }, nullptr},
};
} // namespace

TEST(ServiceSweep, Strings)
{
    SweepServices(JudgeConversion, OPERATIONS);
}
