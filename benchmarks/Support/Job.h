// benchmarks/Support/Job.h: the sides of a measure, checked against each other and then timed.
#pragma once

#include <benchmark/benchmark.h>

#include <string>
#include <utility>

#include "Support/Memory.h"

// What one pass of a work goes through; rates count it.
struct Amount
{
    enum Kind
    {
        ITEMS,
        BYTES
    };
    Kind kind;
    size_t count;
    bool isWall = false; // Other processes take part in the work: the clock on the wall counts.
};

class Job
{
public:
    // Runs what is registered. Absent is the list of peers that the program was built without.
    static int Run(int argc, char** argv, const char* absent);

    // Lets work() be timed under the name measure/side/input. It returns something of its result,
    // so that no compiler leaves the work out; what it refers to has to last until the run.
    template <class Work>
    static void Register(const std::string& name, Amount amount, Work work);

    // A side of which nothing is timed: cost() gives its figure an item, in seconds or whatever else
    // the measure is of.
    template <class Cost>
    static void RegisterCost(const std::string& name, Cost cost);

    // A side whose figure is what one pass of a work takes of memory at its peak, in MiB.
    template <class Work>
    static void RegisterPeak(const std::string& name, Work work);

    // Ends the program: a side's results aren't those of the library.
    [[noreturn]] static void Disagree(const std::string& name, size_t differ, size_t of,
                                      size_t first);

private:
    static void SetRates(benchmark::State& state, Amount amount);
    static void SetCost(benchmark::State& state, double cost);
    // Under valgrind a work is counted instead of timed: each pass is a part of the tool's output
    // that bears its name and amount.
    static bool IsCounting();
    static void StartCount();
    static void EndCount(const std::string& name, Amount amount);
};

// One measure on one input. Answers are a sequence: one answer an item. The first side is the
// library itself, "ostra"; each other one may differ from it in a share of the answers, the
// tolerance, which is 0 but where the libraries differ by design.
template <class Answers>
class Measure
{
public:
    Measure(std::string measureName, std::string inputName, Amount passAmount, double mayDiffer = 0)
        : measure(std::move(measureName)),
          input(std::move(inputName)),
          amount(passAmount),
          tolerance(mayDiffer)
    {}

    // Compares a side's answers, as answer() gives them, and registers its work.
    template <class Work, class GetAnswers>
    void Side(const std::string& side, Work work, GetAnswers answers);

private:
    void Check(const std::string& name, const Answers& answers) const;

    std::string measure;
    std::string input;
    Amount amount;
    double tolerance;
    Answers truth;
    bool isFirst = true;
};

template <class Work>
void Job::Register(const std::string& name, Amount amount, Work work)
{
    auto* const entry =
        benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State& state) mutable {
            if (IsCounting()) {
                StartCount();
                benchmark::DoNotOptimize(work());
                EndCount(name, amount);
            }
            for (auto _ : state)
                benchmark::DoNotOptimize(work());
            SetRates(state, amount);
        });
    if (amount.isWall)
        entry->UseRealTime();
}

template <class Cost>
void Job::RegisterCost(const std::string& name, Cost cost)
{
    if (IsCounting())
        return;
    benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State& state) {
        for (auto _ : state) {
        }
        SetCost(state, cost());
    })->Iterations(1);
}

template <class Work>
void Job::RegisterPeak(const std::string& name, Work work)
{
    RegisterCost(name,
                 [work] { return Memory::Peak([&work] { benchmark::DoNotOptimize(work()); }); });
}

template <class Answers>
template <class Work, class GetAnswers>
void Measure<Answers>::Side(const std::string& side, Work work, GetAnswers answers)
{
    const std::string name = measure + "/" + side + "/" + input;
    if (isFirst)
        truth = answers();
    else
        Check(name, answers());
    isFirst = false;
    Job::Register(name, amount, std::move(work));
}

template <class Answers>
void Measure<Answers>::Check(const std::string& name, const Answers& answers) const
{
    if (answers.size() != truth.size())
        Job::Disagree(name, answers.size(), truth.size(), 0);
    size_t differ = 0;
    size_t first = 0;
    for (size_t n = 0; n < truth.size(); ++n)
        if (answers[n] != truth[n] && differ++ == 0)
            first = n;
    if (static_cast<double>(differ) > tolerance * static_cast<double>(truth.size()))
        Job::Disagree(name, differ, truth.size(), first);
}
