// tests/Faults/ModuleVersionServices.cpp: version records that the system doesn't give.
#include <Ostra/String/CString.h>
#include <System/ModuleVersion/ModuleVersion.h>

#include "Faults/ServiceSweep.h"
#include "Support/Directory.h"
#include "Support/Files.h"
#include "Support/VersionFiles.h"

namespace
{
struct State
{
    State()
    {
        WriteBytes("a.dll",
                   PortableFile(SimpleRecord(Layout::WIDE, {{"Comments", "of a"}, {"Own", "x"}})));
    }

    CT_CString name{".\\a.dll"};
    CT_ModuleVersion version;
};

void Nothing(State&) {}

void Filled(State& state)
{
    state.version.v_Set(".\\a.dll");
}

void IsRead(State& state)
{
    EXPECT_EQ(state.version.b_IsValid(), 1);
    EXPECT_EQ(Get(*state.version.pcco_GetComments()), "of a");
    EXPECT_EQ(state.version.pcco_GetMap()->n_GetCount(), 1U);
}

void IsUnknown(State& state)
{
    EXPECT_EQ(state.version.b_IsValid(), 0);
    EXPECT_EQ(Get(*state.version.pcco_GetComments()), "");
    EXPECT_EQ(state.version.pcco_GetMap()->n_GetCount(), 0U);
}

// The strings of the file before stay.
void IsForgotten(State& state)
{
    EXPECT_EQ(state.version.b_IsValid(), 0);
    EXPECT_EQ(Get(*state.version.pcco_GetComments()), "of a");
    EXPECT_EQ(state.version.pcco_GetMap()->n_GetCount(), 0U);
}

void ExpectUsable(State& state)
{
    state.version.v_Set(&state.name);
    IsRead(state);
}

// A file whose record can't be had is one that has none.
void JudgeSilent(const ServiceReport& report)
{
    EXPECT_EQ(report.failure, Failure());
}

const ServiceOperation<State> OPERATIONS[] = {
    {"file", Nothing, [](State& state) { state.version.v_Set(".\\a.dll"); }, IsRead, IsUnknown},
    {"file of an object's name", Nothing, [](State& state) { state.version.v_Set(&state.name); },
     IsRead, IsUnknown},
    {"another file", Filled, [](State& state) { state.version.v_Set(".\\a.dll"); }, IsRead,
     IsForgotten},
};
} // namespace

TEST(ServiceSweep, ModuleVersion)
{
    SweepServices(JudgeSilent, OPERATIONS);
}
