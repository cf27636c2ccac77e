// tests/Faults/LocaleInfoServices.cpp: facts of all locales where the system lists none.
#include <Ostra/String/UString.h>
#include <System/LocaleInfo/LocaleInfo.h>
#include <System/OS/OS.h>

#include "Faults/ServiceSweep.h"

namespace
{
struct State
{
    CT_UString out{Units(u"as it was")};
};

void Nothing(State&) {}

void Collect(State& state)
{
    CT_LocaleInfo::sv_CollectValues(CT_LocaleInfo::lt_Calendar, ',', &state.out);
}

// The 8-bit road has no such values.
void ExpectUsable(State& state)
{
    Collect(state);
    EXPECT_EQ(state.out.vn_GetLength() != 0, CT_OS::sb_GetIsWindowsNT() != 0);
}

void JudgeSilent(const ServiceReport& report)
{
    EXPECT_EQ(report.failure, Failure());
}

const ServiceOperation<State> OPERATIONS[] = {
    {"values of all locales", Nothing, Collect, ExpectUsable,
     [](State& state) {
         EXPECT_EQ(state.out.vn_GetLength(), 0U);
     }},
};
} // namespace

TEST(ServiceSweep, LocaleInfoHasNoValuesWhereNoLocaleIsListed)
{
    SweepServices(JudgeSilent, OPERATIONS);
}
