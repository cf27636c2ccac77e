// tests/Support/Soak.cpp: the tests of one process over and over, each round with seeds of its own. Nothing may grow.
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "Support/Directory.h"
#include "Support/Listeners.h"

namespace
{
// What the process holds at the end of a round.
struct Holding
{
    long kilobytes;
    long descriptors;
};

Holding Measure()
{
    std::ifstream file("/proc/self/statm");
    long all = 0, resident = 0;
    file >> all >> resident;
    const std::filesystem::directory_iterator descriptors("/proc/self/fd");
    return {resident * (sysconf(_SC_PAGESIZE) / 1024),
            std::distance(begin(descriptors), end(descriptors))};
}

// Asked for by OSTRA_SOAK=SECONDS, with --gtest_repeat=-1: no round begins after that time. Ends
// the process with 1 when a test fails, when a descriptor more is open than at first, or when the
// memory has grown between the first third of the rounds and the last.
class Soak : public testing::EmptyTestEventListener
{
public:
    explicit Soak(long theSeconds) : seconds(theSeconds), first(Seed(1)) {}

    void OnTestIterationStart(const testing::UnitTest&, int round) override
    {
        // Models take some dozens of seeds from the one that they are given on.
        seed = first + 1000U * unsigned(round);
        setenv("OSTRA_SEED", std::to_string(seed).c_str(), 1);
    }

    void OnTestIterationEnd(const testing::UnitTest& unit, int) override
    {
        holdings.push_back(Measure());
        tests += unsigned(unit.successful_test_count());
        const auto passed = std::chrono::duration_cast<std::chrono::seconds>(
            std::chrono::steady_clock::now() - start);
        if (unit.Failed())
            End(passed.count(), "a test failed");
        if (passed.count() >= seconds && holdings.size() >= 3)
            End(passed.count(), Growth());
    }

private:
    // What has grown; empty if nothing has. The first round fills what is made once.
    std::string Growth() const
    {
        const auto by_memory = [](const Holding& a, const Holding& b) {
            return a.kilobytes < b.kilobytes;
        };
        const auto by_descriptors = [](const Holding& a, const Holding& b) {
            return a.descriptors < b.descriptors;
        };
        const auto third = std::ptrdiff_t(std::max<std::size_t>(holdings.size() / 3, 1));
        const auto from = holdings.begin() + 1, to = holdings.end();
        const long before = std::max_element(from, from + third, by_memory)->kilobytes;
        const long after = std::max_element(to - third, to, by_memory)->kilobytes;
        if (after > before + before / 25 + 256)
            return "the memory grew";
        return std::max_element(from, to, by_descriptors)->descriptors > holdings[0].descriptors
                   ? "descriptors stay open"
                   : "";
    }

    [[noreturn]] void End(long passed, const std::string& fault) const
    {
        const auto& [memory, descriptors] = holdings.back();
        std::printf(
            "soak: %zu rounds, %lu tests, %ld s, OSTRA_SEED=%u; resident %ld kB after the "
            "first round, %ld kB after the second, %ld kB at the end; descriptors %ld, %ld; %s\n",
            holdings.size(), tests, passed, first, holdings[0].kilobytes,
            holdings[std::min<std::size_t>(1, holdings.size() - 1)].kilobytes, memory,
            holdings[0].descriptors, descriptors, fault.empty() ? "flat" : fault.c_str());
        if (!fault.empty())
            std::printf("the last round had OSTRA_SEED=%u\n", seed);
        std::fflush(stdout);
        std::exit(fault.empty() ? 0 : 1);
    }

    const std::chrono::steady_clock::time_point start = std::chrono::steady_clock::now();
    const long seconds;
    const unsigned first;
    unsigned seed = 0;
    unsigned long tests = 0;
    std::vector<Holding> holdings;
};

const AddListener add([]() -> testing::TestEventListener* {
    if (const char* seconds = std::getenv("OSTRA_SOAK"))
        return new Soak(std::strtol(seconds, nullptr, 10));
    return new testing::EmptyTestEventListener;
});
} // namespace
