// winapi/tests/native/Profile/ProfileSweepTest.cpp: many processes at one profile, and those that are killed.
//
// OSTRA_SWEEP multiplies the work.
#include "../../Support/Calls.h"

#include "Support/ChildProcess.h"
#include "Support/Directory.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <random>
#include <thread>

namespace fs = std::filesystem;

namespace
{
constexpr unsigned WRITERS = 8;
const char* const PROFILE = "./shared.ini";

unsigned Times(unsigned plain)
{
    const char* const factor = std::getenv("OSTRA_SWEEP");
    return plain * static_cast<unsigned>(factor ? std::atoi(factor) : 1);
}

std::string Value(const std::string& section, const std::string& key)
{
    char value[3000] = "";
    GetPrivateProfileStringA(section.c_str(), key.c_str(), "(none)", value, sizeof value, PROFILE);
    return value;
}

// Longer than a page, so that a half written file would show.
std::string Padding()
{
    return std::string(2500, 'p');
}

unsigned NumberOf(const std::string& text)
{
    return static_cast<unsigned>(std::strtoul(text.c_str(), nullptr, 10));
}

// What a reader may never find otherwise.
void ExpectWhole(const std::string& when)
{
    ASSERT_EQ(Value("head", "first"), "1") << when;
    ASSERT_EQ(Value("tail", "last"), Padding()) << when;
}
} // namespace

// Adds keys of its own, tells each that was written, and counts in a key of its own.
CHILD_PROCESS(ProfileWriter)
{
    const std::string name = arguments[0];
    const unsigned count = NumberOf(arguments[1]);
    for (unsigned n = 1; n <= count; ++n) {
        const std::string number = std::to_string(n);
        const std::string key = "key" + number;
        if (!WritePrivateProfileStringA(name.c_str(), key.c_str(), number.c_str(), PROFILE) ||
            !WritePrivateProfileStringA("head", name.c_str(), number.c_str(), PROFILE)) {
            std::fprintf(stderr, "%s: number %u fails with %lu\n", name.c_str(), n,
                         static_cast<unsigned long>(GetLastError()));
            return 1;
        }
        std::printf("%u\n", n);
        std::fflush(stdout);
    }
    return 0;
}

TEST(ProfileSweep, EightWritersLoseNothingAndReadersFindWholeFiles)
{
    const unsigned count = Times(12);
    WriteBytes("shared.ini", "[head]\r\nfirst=1\r\n[tail]\r\nlast=" + Padding() + "\r\n");
    std::vector<std::unique_ptr<ChildProcess>> writers;
    for (unsigned n = 0; n < WRITERS; ++n)
        writers.push_back(std::make_unique<ChildProcess>(
            "ProfileWriter",
            ChildProcess::Arguments{"writer" + std::to_string(n), std::to_string(count)}));
    unsigned reads = 0;
    const auto end = std::chrono::steady_clock::now() + std::chrono::minutes(2);
    while (NumberOf(Value("head", "writer0")) < count && std::chrono::steady_clock::now() < end) {
        ExpectWhole("between writings");
        if (HasFatalFailure())
            break;
        ++reads;
    }
    for (auto& writer : writers)
        EXPECT_EQ(writer->Wait(), 0);
    unsigned lost = 0;
    for (unsigned n = 0; n < WRITERS; ++n) {
        const std::string name = "writer" + std::to_string(n);
        EXPECT_EQ(Value("head", name), std::to_string(count));
        for (unsigned k = 1; k <= count; ++k)
            lost += Value(name, "key" + std::to_string(k)) != std::to_string(k);
    }
    EXPECT_EQ(lost, 0U);
    ExpectWhole("at the end");
    EXPECT_EQ(std::distance(fs::directory_iterator("."), fs::directory_iterator()), 1);
    std::printf("profile sweep: %u writers, %u writings, %u reads meanwhile, %u lost\n", WRITERS,
                2 * WRITERS * count, reads, lost);
}

TEST(ProfileSweep, KilledWritersLeaveAWholeFileWithAllThatTheyTold)
{
    std::mt19937 random(Seed(20264));
    const unsigned kills = Times(15);
    WriteBytes("shared.ini", "[head]\r\nfirst=1\r\n[tail]\r\nlast=" + Padding() + "\r\n");
    for (unsigned kill = 0; kill < kills; ++kill) {
        const std::string name = "run" + std::to_string(kill);
        ChildProcess writer("ProfileWriter", {name, "100000"});
        unsigned told = NumberOf(writer.ReadLine());
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 20'000));
        writer.Kill();
        for (std::string line; !(line = writer.ReadLine()).empty();)
            told = NumberOf(line);
        EXPECT_GT(told, 0U);
        ExpectWhole(name);
        EXPECT_GE(NumberOf(Value("head", name)), told);
        for (unsigned k = 1; k <= told; ++k)
            ASSERT_EQ(Value(name, "key" + std::to_string(k)), std::to_string(k)) << name;
        ASSERT_TRUE(WritePrivateProfileStringA(name.c_str(), nullptr, nullptr, PROFILE));
    }
    // A file that a killed run was about to give its name is used up by the next one.
    EXPECT_LE(std::distance(fs::directory_iterator("."), fs::directory_iterator()), 2);
    std::printf("profile sweep: %u writers killed\n", kills);
}
