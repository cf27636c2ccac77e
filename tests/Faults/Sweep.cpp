// tests/Faults/Sweep.cpp: what the sweeps of a run have in common.
#include "Faults/Sweep.h"

#include <cstdio>

namespace
{
unsigned operations_swept;
unsigned allocations_failed;

class Summary : public testing::Environment
{
    void TearDown() override
    {
        std::printf("heap sweep: %u operations, %u failures\n", operations_swept,
                    allocations_failed);
    }
};

const testing::Environment* const summary = testing::AddGlobalTestEnvironment(new Summary);
} // namespace

void SweepRun::Count(unsigned operations, unsigned failures)
{
    operations_swept += operations;
    allocations_failed += failures;
}
