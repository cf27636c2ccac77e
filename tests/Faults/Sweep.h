// tests/Faults/Sweep.h: runs one operation again and again, each time with another allocation
// failing.
//
//     TEST(BufferSweep, AppendGrows)
//     {
//         Sweep(
//             {"Ostra/Buffer/Buffer"},
//             [] { return std::make_unique<CT_Buffer>("0123456789ABCDEFGHIJ", 20, 32); },
//             [](CT_Buffer& buffer) { buffer.v_Append("xyz", 3); },
//             [](CT_Buffer& buffer, bool failed) {
//                 EXPECT_EQ(buffer.n_GetUsedSize(), failed ? 20U : 23U);
//             });
//     }
//
// The first argument tells the report: the source that is to stand first in the trail (several when
// more than one can fail), and the code when it isn't 60006. `prepare` makes the state, with the
// heap whole, and returns an owning pointer. `operation` is the thing itself; it must not use the
// standard library, which also allocates. `check` sees the state with the heap whole again and the
// error cleared; it tells by `failed` whether one was reported: an operation that gets along
// without the allocation must have had its full effect. It also shows that the object can still be
// used. After it the state is destroyed.
//
// Allocation n = 1, 2, ... fails singly, then from n on, until none has failed; both once more with
// an error of the thread set beforehand, which has to stay (`check` isn't called then). Each time
// the report must be right, and nothing may leak. The first run, with nothing failing, warms up
// what is made once in a process.
#pragma once

#include "Faults/FailingHeap.h"
#include "Support/Failure.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

struct SweepReport
{
    SweepReport(const char* source, unsigned number = 60006) : sources{source}, code(number) {}
    SweepReport(std::initializer_list<const char*> names, unsigned number = 60006)
        : sources(names.begin(), names.end()),
          code(number)
    {}

    std::vector<std::string> sources;
    unsigned code;
};

// One run of a sweep: sets the error that is there beforehand, and judges what the operation
// reported.
class SweepRun
{
public:
    SweepRun(const SweepReport& expected_report, bool earlier_error)
        : expected(expected_report),
          earlier(earlier_error)
    {}

    void SetEarlierError() const
    {
        if (earlier)
            Errors().v_SetError(4711, Units(u"earlier"));
    }

    // True if the operation has reported a failure.
    bool Judge(unsigned failures) const
    {
        const Failure failure = TakeFailure();
        if (earlier) {
            EXPECT_EQ(failure.code, 4711U);
            EXPECT_EQ(failure.text, "(4711): earlier");
            return true;
        }
        if (failure == Failure())
            return false;
        EXPECT_GT(failures, 0U) << "reported without a failing allocation";
        EXPECT_EQ(failure.code, expected.code);
        EXPECT_EQ(failure.text, "(" + std::to_string(expected.code) + "): Out of memory");
        const std::string first = failure.trail.empty() ? "" : failure.trail.front();
        EXPECT_EQ(std::count(expected.sources.begin(), expected.sources.end(), first), 1)
            << "reported at \"" << first << "\"";
        return true;
    }

    // The counts of the whole program, printed at its end.
    static void Count(unsigned operations, unsigned failures);

private:
    const SweepReport& expected;
    bool earlier;
};

// Result: allocations that failed.
template <typename T_Prepare, typename T_Operation, typename T_Check>
unsigned RunOfSweep(const SweepReport& report, bool earlier, unsigned number,
                    FailingHeap::Mode mode, T_Prepare prepare, T_Operation operation, T_Check check)
{
    const SweepRun run(report, earlier);
    unsigned failures = 0;
    FailingHeap::Track();
    {
        auto state = prepare();
        run.SetEarlierError();
        FailingHeap::Arm(number, mode);
        operation(*state);
        failures = FailingHeap::Disarm();
        const bool failed = run.Judge(failures);
        if (!earlier)
            check(*state, failed);
        EXPECT_FALSE(Errors().b_IsSetError()) << PeekFailure().text;
    }
    const unsigned live = FailingHeap::Live();
    EXPECT_TRUE(number == 0 || live == 0) << live << " blocks leak";
    TakeFailure();
    return failures;
}

template <typename T_Prepare, typename T_Operation, typename T_Check>
void Sweep(const SweepReport& report, T_Prepare prepare, T_Operation operation, T_Check check)
{
    unsigned failures = 0;
    RunOfSweep(report, false, 0, FailingHeap::ONCE, prepare, operation, check);
    for (const bool earlier : {false, true}) {
        for (const FailingHeap::Mode mode : {FailingHeap::ONCE, FailingHeap::FROM}) {
            for (unsigned number = 1, failing = 1; failing > 0; ++number) {
                SCOPED_TRACE("allocation " + std::to_string(number) +
                             (mode == FailingHeap::ONCE ? " fails" : " and all behind it fail") +
                             (earlier ? ", with an earlier error" : ""));
                failing = RunOfSweep(report, earlier, number, mode, prepare, operation, check);
                failures += failing > 0;
                if (testing::Test::HasFailure())
                    return;
            }
        }
    }
    EXPECT_GT(failures, 0U) << "the operation allocates nothing";
    SweepRun::Count(1, failures);
}
