// tests/Faults/HugeOutputServices.cpp: global memory that the system refuses or doesn't lock.
#include <Ostra/Output/HugeOutput.h>

#include "Faults/ServiceSweep.h"

#include <string>

namespace
{
const std::string MORE(100, 'x');

struct State
{
    CT_HugeOutput output{nullptr, 0, 16};
};

void Fill(State& state)
{
    state.output.vv_Append("abc", 3);
}

void Append(State& state)
{
    state.output.vv_Append(MORE.data(), static_cast<unsigned>(MORE.size()));
}

// What the output holds; it's empty then.
std::string Given(State& state)
{
    const unsigned size = state.output.vn_GetSize();
    const HGLOBAL block = state.output.h_GiveBuffer();
    const std::string text(static_cast<const char*>(GlobalLock(block)), size);
    GlobalUnlock(block);
    GlobalFree(block);
    return text;
}

void ExpectUsable(State&)
{
    CT_HugeOutput another(nullptr, 0, 16);
    another.vv_Append("def", 3);
    EXPECT_EQ(another.vn_GetSize(), 3U);
}

const ServiceOperation<State> OPERATIONS[] = {
    {"begin", [](State&) {}, Fill, [](State& state) { EXPECT_EQ(Given(state), "abc"); },
     [](State& state) {
         EXPECT_EQ(state.output.vn_GetSize(), 0U);
     }},
    {"grow", Fill, Append, [](State& state) { EXPECT_EQ(Given(state), "abc" + MORE); },
     [](State& state) {
         EXPECT_EQ(state.output.vn_GetSize(), 3U);
         // What the block held is there, and the rest goes in now.
         Append(state);
         EXPECT_EQ(Given(state), "abc" + MORE);
     }},
};
} // namespace

TEST(ServiceSweep, HugeOutput)
{
    SweepServices(
        [](const ServiceReport& report) {
            EXPECT_EQ(report.failure.text, "(60006): Out of memory");
            EXPECT_FALSE(report.failure.trail.empty());
            for (const std::string& place : report.failure.trail)
                EXPECT_EQ(place, "Ostra/Output/HugeOutput");
        },
        OPERATIONS);
}
