// tests/Faults/FailEach.h: a sweep over the heap for work that judges its own outcome.
#pragma once

#include "Faults/Sweep.h"

// Runs the work with allocation 1, 2, ... failing until none fails or the test has failed; the work
// disarms the heap, and gives how many allocations failed. Result: all of them.
template <class T_Work>
unsigned FailEach(T_Work work)
{
    unsigned failures = 0;
    for (unsigned number = 1;; ++number) {
        SCOPED_TRACE(number);
        FailingHeap::Track();
        FailingHeap::Arm(number, FailingHeap::ONCE);
        const unsigned failing = work();
        EXPECT_EQ(FailingHeap::Live(), 0U);
        failures += failing;
        if (!failing || testing::Test::HasFailure())
            break;
    }
    SweepRun::Count(1, failures);
    return failures;
}
