// tests/Faults/FrameServices.cpp: texts of string tables and the system's version that can't be had.
#include <Ostra/Frame/ErrorManager.h>
#include <Ostra/String/CString.h>
#include <Ostra/String/LoadString.h>
#include <Ostra/String/UString.h>
#include <System/OS/OS.h>

#include "Faults/ServiceSweep.h"
#include "Support/TestStrings.h"

OSTRA_PRIVATE(InitFacts, void (*)(), &CT_OS::sv_Init);
OSTRA_PRIVATE(FactsNT, int*, &CT_OS::sb_IsWindowsNT);
OSTRA_PRIVATE(FactsCPU, unsigned*, &CT_OS::sn_NumCPU);
OSTRA_PRIVATE(Facts95, int*, &CT_OS::sb_IsWindows95);

namespace
{
HINSTANCE Module()
{
    return GetModuleHandleA(nullptr);
}

// Nobody is told of them but by what there is instead.
JudgeReport NoReport()
{
    return [](const ServiceReport& report) {
        EXPECT_EQ(report.failure, Failure());
    };
}

const std::vector<std::string> LOADING = {"LoadStringA", "LoadStringW"};

// ---- String tables ------------------------------------------------------------------------

struct TextState
{
    CT_UString wide{Units(u"before")};
    CT_CString narrow{"before"};
    unsigned short room[64] = {'b', 'e', 0};
};

void Nothing(TextState&) {}

void ExpectUsable(TextState& state)
{
    CT_LoadString::sv_LoadString(&state.narrow, Module(), TEST_STRING_PLAIN);
    EXPECT_NE(state.narrow.vn_GetLength(), 0U);
}

// Instead of a text there is none.
#define TEXT_OPERATION(name, call, result)                                                         \
    {                                                                                              \
        name, Nothing, [](TextState& state) { call; },                                             \
            [](TextState& state) { EXPECT_NE((result), 0U); },                                     \
            [](TextState& state) { EXPECT_EQ((result), 0U); }, LOADING                             \
    }

const ServiceOperation<TextState> TEXT_OPERATIONS[] = {
    TEXT_OPERATION("wide", CT_LoadString::sv_LoadString(&state.wide, Module(), TEST_STRING_PLAIN),
                   state.wide.vn_GetLength()),
    TEXT_OPERATION("8-bit",
                   CT_LoadString::sv_LoadString(&state.narrow, Module(), TEST_STRING_PLAIN),
                   state.narrow.vn_GetLength()),
    TEXT_OPERATION("units",
                   CT_LoadString::sv_LoadString(state.room, 64, Module(), TEST_STRING_PLAIN),
                   unsigned(state.room[0])),
    TEXT_OPERATION("wide format",
                   CT_LoadString::sv_LoadStringVA(&state.wide, Module(), TEST_STRING_NUMBER, 5),
                   state.wide.vn_GetLength()),
    TEXT_OPERATION("8-bit format",
                   CT_LoadString::sv_LoadStringVA(&state.narrow, Module(), TEST_STRING_NUMBER, 5),
                   state.narrow.vn_GetLength()),
    TEXT_OPERATION("units format",
                   CT_LoadString::sv_LoadStringVA(state.room, 64, Module(), TEST_STRING_NUMBER, 5),
                   unsigned(state.room[0])),
};

// ---- Reports ------------------------------------------------------------------------------

// An error of the test's own is taken away before the sweep looks for one.
struct ErrorState
{
    void Take()
    {
        if (PeekFailure().text != "(77): earlier")
            told = TakeFailure();
    }
    Failure told;
};

void NoError(ErrorState&) {}

void ExpectUsable(ErrorState&)
{
    Errors().v_SetError(7, Module(), TEST_STRING_NUMBER, 5);
    EXPECT_GT(TakeFailure().text.size(), 5U);
}

const ServiceOperation<ErrorState> ERROR_OPERATIONS[] = {
    {"format of a table", NoError,
     [](ErrorState& state) {
         Errors().v_SetError(7, Module(), TEST_STRING_NUMBER, 5);
         state.Take();
     },
     [](ErrorState& state) { EXPECT_GT(state.told.text.size(), 5U); },
     [](ErrorState& state) {
         EXPECT_TRUE(state.told.text == "(7): " || state.told == Failure()) << state.told.text;
     },
     LOADING},
};

// ---- The system ---------------------------------------------------------------------------

// Asks for the facts anew. The family is the road's, the processors are another test's.
struct FactsState
{
    FactsState()
        : nt(*Private(FactsNT())),
          nine_five(*Private(Facts95())),
          processors(*Private(FactsCPU()))
    {}
    ~FactsState()
    {
        Private(InitFacts())();
        Restore();
    }
    void Ask()
    {
        Private(InitFacts())();
        major = CT_OS::sn_GetOsVersionMajor();
        Restore();
    }
    void Restore() const
    {
        *Private(FactsNT()) = nt;
        *Private(Facts95()) = nine_five;
        *Private(FactsCPU()) = processors;
    }

    const int nt, nine_five;
    const unsigned processors;
    unsigned major = 77;
};

void NoFacts(FactsState&) {}

void ExpectUsable(FactsState&)
{
    EXPECT_GE(CT_OS::sn_GetNumCPU(), 1U);
}

const ServiceOperation<FactsState> FACTS_OPERATIONS[] = {
    {"facts",
     NoFacts,
     [](FactsState& state) { state.Ask(); },
     [](FactsState& state) { EXPECT_GT(state.major, 0U); },
     [](FactsState& state) { EXPECT_EQ(state.major, 0U); },
     {"GetVersionExA"}},
};
} // namespace

TEST(ServiceSweep, LoadString)
{
    SweepServices(NoReport(), TEXT_OPERATIONS);
}

TEST(ServiceSweep, ErrorManager)
{
    SweepServices(NoReport(), ERROR_OPERATIONS);
}

TEST(ServiceSweep, OS)
{
    SweepServices(NoReport(), FACTS_OPERATIONS);
}
