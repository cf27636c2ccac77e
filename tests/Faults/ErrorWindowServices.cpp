// tests/Faults/ErrorWindowServices.cpp: the window of an error that can't be shown, or whose texts
// can't be had. Nobody is told, and the error stays as it was told.
#include <Ostra/Frame/ErrorManager.h>

#include "Faults/BoxInPlace.h"
#include "Faults/ServiceSweep.h"

#include <string>

namespace
{
// Of the library's own string table.
constexpr unsigned TITLE_ID = 60000;

const std::vector<std::string> SILENT = {"MessageBoxW", "MessageBoxA", "LoadStringW", "LoadStringA",
                                         "WideCharToMultiByte"};

const Failure TOLD = {7, "(7): It failed.", {"a/b", "a/c"}};

struct State
{
    const BoxInPlace box;
    int button = -1;
    bool held = false;
    std::vector<Failure> errors;
};

bool IsEarlier()
{
    return PeekFailure().text == "(77): earlier";
}

template <bool HELD, unsigned TITLE>
void Show(State& state)
{
    Errors().v_SetError(7, Units(u"It failed."));
    if (!IsEarlier()) {
        Errors().v_AddLocation("a/b", 1);
        Errors().v_AddLocation("a/c", 2);
        if (HELD)
            Errors().v_HoldError();
    }
    state.held = HELD;
    const unsigned short* const title = TITLE ? nullptr : Units(u"title");
    state.button = Errors().i_ErrorLocationWindow(TITLE, title, MB_ABORTRETRYIGNORE);
    // The sweep looks for an error of its own.
    while (PeekFailure() != Failure() && !IsEarlier())
        state.errors.push_back(TakeFailure());
}

void Nothing(State&) {}

template <unsigned TITLE>
void Shown(State& state)
{
    EXPECT_EQ(state.button, BoxInPlace::BUTTON);
    EXPECT_EQ(BoxInPlace::shown, 1U);
    EXPECT_STREQ(BoxInPlace::title, TITLE ? "Error Stack" : "title");
    EXPECT_STREQ(BoxInPlace::text, "(7): It failed.\n\nb: line 1\nc: line 2");
    EXPECT_EQ(state.errors, std::vector<Failure>{TOLD});
}

// There is no button where there was no box. A title that can't be had leaves the box as it is.
template <unsigned TITLE>
void NotShown(State& state)
{
    EXPECT_EQ(state.errors, std::vector<Failure>{TOLD});
    if (BoxInPlace::shown == 0) {
        EXPECT_EQ(state.button, 0);
        return;
    }
    EXPECT_EQ(TITLE, TITLE_ID);
    EXPECT_EQ(state.button, BoxInPlace::BUTTON);
    EXPECT_STREQ(BoxInPlace::title, "");
    EXPECT_STREQ(BoxInPlace::text, "(7): It failed.\n\nb: line 1\nc: line 2");
}

// A text that couldn't be converted for the box has its place behind those of the error. A held
// one gives way to that failure, as to each new error.
void ExpectAsTold(Failure error, bool held)
{
    const std::vector<std::string> conversion = {"System/String/StringConvert"};
    if (held && error.code != TOLD.code) {
        EXPECT_EQ(error.trail, conversion);
        return;
    }
    if (!held && error.trail.back() == conversion.front())
        error.trail.pop_back();
    EXPECT_EQ(error, TOLD);
}

// The window comes up behind a failure, too, and for any error.
void ExpectUsable(State& state)
{
    EXPECT_LE(state.errors.size(), 1U);
    if (!state.errors.empty())
        ExpectAsTold(state.errors[0], state.held);
    EXPECT_EQ(BoxInPlace::shown, state.button == BoxInPlace::BUTTON ? 1U : 0U);
    BoxInPlace::shown = 0;
    TakeFailure();
    Errors().v_SetError(8, Units(u"It failed again."));
    EXPECT_EQ(Errors().i_ErrorLocationWindow(0, Units(u""), MB_OK), BoxInPlace::BUTTON);
    EXPECT_EQ(BoxInPlace::shown, 1U);
    EXPECT_STREQ(BoxInPlace::text, "(8): It failed again.");
    EXPECT_EQ(TakeFailure(), (Failure{8, "(8): It failed again.", {}}));
}

const ServiceOperation<State> OPERATIONS[] = {
    {"window", Nothing, Show<false, 0>, Shown<0>, NotShown<0>, SILENT},
    {"window of a held error", Nothing, Show<true, 0>, Shown<0>, NotShown<0>, SILENT},
    {"window with a title of a table", Nothing, Show<false, TITLE_ID>, Shown<TITLE_ID>,
     NotShown<TITLE_ID>, SILENT},
};
} // namespace

TEST(ServiceSweep, ErrorManagerShowsItsWindow)
{
    SweepServices([](const ServiceReport&) { FAIL() << "no failure here is told"; }, OPERATIONS, 0);
}
