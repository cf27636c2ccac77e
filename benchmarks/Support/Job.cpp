// benchmarks/Support/Job.cpp
#include "Support/Job.h"

#include <cstdio>
#include <cstdlib>

#include "Support/Inputs.h"

#if __has_include(<valgrind/callgrind.h>)
#include <valgrind/callgrind.h>
#else
#define RUNNING_ON_VALGRIND 0
#define CALLGRIND_TOGGLE_COLLECT
#define CALLGRIND_ZERO_STATS
#define CALLGRIND_DUMP_STATS_AT(name)
#endif

int Job::Run(int argc, char** argv, const char* absent)
{
    benchmark::AddCustomContext("inputs", Inputs::Origin());
    benchmark::AddCustomContext("compiler", OSTRA_COMPILER);
    benchmark::AddCustomContext("absent", absent);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    if (*absent)
        std::fprintf(stderr, "sides left out (peer:package): %s\n", absent);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}

void Job::Disagree(const std::string& name, size_t differ, size_t of, size_t first)
{
    std::fprintf(stderr, "%s: %zu of %zu results differ from the library's, first number %zu\n",
                 name.c_str(), differ, of, first);
    std::exit(1);
}

void Job::SetRates(benchmark::State& state, Amount amount)
{
    const auto passed =
        static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(amount.count);
    if (amount.kind == Amount::ITEMS)
        state.SetItemsProcessed(passed);
    else
        state.SetBytesProcessed(passed);
    if (Inputs::AreGenerated())
        state.SetLabel("generated");
}

void Job::SetCost(benchmark::State& state, double cost)
{
    state.counters["cost"] = cost;
    if (Inputs::AreGenerated())
        state.SetLabel("generated");
}

bool Job::IsCounting()
{
    return RUNNING_ON_VALGRIND != 0;
}

void Job::StartCount()
{
    CALLGRIND_ZERO_STATS;
    CALLGRIND_TOGGLE_COLLECT;
}

void Job::EndCount(const std::string& name, Amount amount)
{
    CALLGRIND_TOGGLE_COLLECT;
    const std::string title = name + " " + std::to_string(amount.count);
    CALLGRIND_DUMP_STATS_AT(title.c_str());
}
