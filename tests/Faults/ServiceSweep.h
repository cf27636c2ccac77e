// tests/Faults/ServiceSweep.h: runs one operation again and again, each time with another of its
// calls of services failing.
//
//     const ServiceOperation<State> OPERATIONS[] = {
//         {"close", Open, [](State& state) { state.file.vv_Close(); },
//          [](State& state) { EXPECT_EQ(state.file.b_IsOpen(), 0); },
//          [](State& state) { EXPECT_EQ(state.file.b_IsOpen(), 1); }},
//     };
//     TEST(ServiceSweep, WinFile) { SweepServices(SystemReport("Ostra/File/WinFile"), OPERATIONS); }
//
// State is made anew for each run, `prepare` brings it where the operation begins, with all services
// at work. Call 1, 2, ... of `run` then fails with each of four errors, until none failed; with the
// first of them once more behind an error of the thread, which has to stay; and all of it on both
// roads. Each failing call has to be reported, unless its service is `quiet`, and the sweep's first
// argument judges the report. `failed` sees the state that is promised then, `done` the one behind a
// run in which nothing failed. Behind each run no handle may be left. ExpectUsable(State&) shows that
// the object can be used.
#pragma once

#include "Faults/Services.h"
#include "Support/Failure.h"
#include "Support/Private.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <string>
#include <vector>

template <class State>
struct ServiceOperation
{
    typedef std::function<void(State&)> Step;

    const char* name;
    Step prepare, run;
    Step done;                           // no call has failed
    Step failed;                         // a failure was reported; may be null
    std::vector<std::string> quiet = {}; // services whose failures aren't reported
    std::string names = "file";          // those that the report tells
    bool has_calls = true;               // an operation without any is listed all the same
};

// The road to the system, until the end of the scope.
class RoadSwitch
{
public:
    explicit RoadSwitch(bool wide);
    RoadSwitch(const RoadSwitch&) = delete;
    RoadSwitch& operator=(const RoadSwitch&) = delete;
    ~RoadSwitch();

private:
    int before;
};

// What there is to judge behind a call that has failed.
struct ServiceReport
{
    Failure failure;
    Services::Call call;
    unsigned code;     // that the call told
    std::string names; // of the operation
    DWORD last_error;
};

typedef std::function<void(const ServiceReport&)> JudgeReport;

// The report of a system error, "(code): text [names]", whose first place is that source. It takes
// that last error away.
JudgeReport SystemReport(const std::string& source);
// The report of the stream library, format 60003.
JudgeReport StreamReport(const std::string& source);

// Texts are converted, on the 8-bit road names too. A conversion to 8-bit text that fails reports by
// itself, one to wide text doesn't; the operation goes on with what there is.
bool IsConversion(const Services::Call& call);
void JudgeConversion(const ServiceReport& report);

// The counts of the whole program, printed at its end.
void CountServices(unsigned classes, unsigned operations, unsigned failures);

// Result: the call that failed.
template <class State>
std::string RunOfServices(const JudgeReport& judge, const ServiceOperation<State>& operation,
                          unsigned number, unsigned error, bool earlier)
{
    const unsigned handles = Services::OpenHandles();
    Services::Call call;
    {
        State state;
        operation.prepare(state);
        EXPECT_FALSE(Errors().b_IsSetError()) << PeekFailure().text;
        if (earlier)
            Errors().v_SetError(77, Units(u"earlier"));
        SetLastError(0);
        Services::Arm(number, error);
        operation.run(state);
        call = Services::Disarm();
        SCOPED_TRACE(call.name);
        const DWORD last_error = GetLastError();
        const Failure failure = TakeFailure();
        const bool quiet = std::count(operation.quiet.begin(), operation.quiet.end(), call.name);
        if (earlier) {
            EXPECT_EQ(failure.text, "(77): earlier");
        } else if (call.name.empty()) {
            EXPECT_EQ(failure, Failure());
            operation.done(state);
        } else if (!quiet) {
            const unsigned code = Services::CodeOf(call.told, error);
            const ServiceReport report = {failure, call, code, operation.names, last_error};
            IsConversion(call) ? JudgeConversion(report) : judge(report);
        }
        if (!earlier && !call.name.empty() && !IsConversion(call) && operation.failed)
            operation.failed(state);
        ExpectUsable(state);
        TakeFailure();
    }
    Services::CloseRest();
    TakeFailure();
    EXPECT_EQ(Services::OpenHandles(), handles) << "handles are left behind " << call.name;
    return call.name;
}

template <class State>
unsigned SweepOperation(const JudgeReport& judge, const ServiceOperation<State>& operation)
{
    unsigned failures = 0;
    for (const bool wide : {true, false}) {
        const RoadSwitch road(wide);
        RunOfServices(judge, operation, 0, 0, false); // what is made once in a process
        for (const bool earlier : {false, true}) {
            for (unsigned error = 0; error < (earlier ? 1 : Services::ERRORS); ++error) {
                std::string call = "none yet";
                for (unsigned number = 1; !call.empty(); ++number) {
                    SCOPED_TRACE(testing::Message()
                                 << operation.name << ", call " << number << ", error " << error
                                 << (wide ? "" : ", 8-bit road") << (earlier ? ", earlier" : ""));
                    call = RunOfServices(judge, operation, number, error, earlier);
                    failures += !call.empty();
                    if (testing::Test::HasFailure())
                        return failures;
                }
            }
        }
    }
    EXPECT_EQ(failures > 0, operation.has_calls) << operation.name;
    return failures;
}

// `classes` is 0 where another sweep counts the class.
template <class State, unsigned COUNT>
void SweepServices(const JudgeReport& judge, const ServiceOperation<State> (&operations)[COUNT],
                   unsigned classes = 1)
{
    EXPECT_GT(Services::Count(), 50U);
    unsigned failures = 0;
    for (const ServiceOperation<State>& operation : operations)
        failures += SweepOperation(judge, operation);
    CountServices(classes, COUNT, failures);
}
