// tests/Support/Main.cpp: main of every test program.
#include <gtest/gtest.h>

#include "Support/ChildProcess.h"
#include "Support/Directory.h"
#include "Support/Endless.h"
#include "Support/Listeners.h"

std::vector<testing::TestEventListener* (*)()>& ListenerFactories()
{
    static std::vector<testing::TestEventListener* (*)()> factories;
    return factories;
}

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    // A program under an emulator can't start itself as GoogleTest would.
    testing::FLAGS_gtest_death_test_style = Emulator() ? "fast" : "threadsafe";
    if (IsEndlessChild(argc, argv))
        return RunEndlessChild(argc, argv);
    if (IsChildProcess(argc, argv))
        return RunChildProcess(argc, argv);
    auto& listeners = testing::UnitTest::GetInstance()->listeners();
    listeners.Append(new DirectoryListener);
    for (auto factory : ListenerFactories())
        listeners.Append(factory());
    return RUN_ALL_TESTS();
}
