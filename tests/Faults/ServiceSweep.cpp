// tests/Faults/ServiceSweep.cpp: what the sweeps of failing services have in common.
#include "Faults/ServiceSweep.h"

#include <System/OS/OS.h>

#include <cstdio>

OSTRA_PRIVATE(RoadOfServices, int*, &CT_OS::sb_IsWindowsNT);

RoadSwitch::RoadSwitch(bool wide) : before(CT_OS::sb_GetIsWindowsNT())
{
    *Private(RoadOfServices()) = wide;
}

RoadSwitch::~RoadSwitch()
{
    *Private(RoadOfServices()) = before;
}

namespace
{
unsigned classes_swept;
unsigned operations_swept;
unsigned calls_failed;

class Summary : public testing::Environment
{
    void TearDown() override
    {
        std::printf("service sweep: %u classes, %u operations, %u calls failed, of %u services\n",
                    classes_swept, operations_swept, calls_failed, Services::Count());
    }
};

const testing::Environment* const summary = testing::AddGlobalTestEnvironment(new Summary);

void ExpectHead(const Failure& failure, const std::string& source, unsigned code)
{
    EXPECT_EQ(failure.code, code);
    EXPECT_EQ(failure.text.find("(" + std::to_string(code) + "): "), 0U) << failure.text;
    EXPECT_EQ(failure.trail.empty() ? "" : failure.trail.front(), source);
}
} // namespace

void CountServices(unsigned classes, unsigned operations, unsigned failures)
{
    classes_swept += classes;
    operations_swept += operations;
    calls_failed += failures;
}

JudgeReport SystemReport(const std::string& source)
{
    return [=](const ServiceReport& report) {
        ExpectHead(report.failure, source, report.code);
        const std::string& text = report.failure.text;
        const std::string bracket = " [" + report.names + "]";
        EXPECT_EQ(text.rfind(bracket), text.size() - bracket.size()) << text;
        // What fails behind it isn't reported any more, and leaves its own.
        EXPECT_NE(report.last_error, report.code);
    };
}

JudgeReport StreamReport(const std::string& source)
{
    return [=](const ServiceReport& report) {
        ExpectHead(report.failure, source, report.code);
        const std::string& text = report.failure.text;
        EXPECT_NE(text.find("File \"" + report.names + "\": "), std::string::npos) << text;
        const std::string end = " returned error " + std::to_string(report.code);
        EXPECT_EQ(text.rfind(end), text.size() - end.size()) << text;
    };
}

bool IsConversion(const Services::Call& call)
{
    return call.name == "WideCharToMultiByte" || call.name == "MultiByteToWideChar";
}

void JudgeConversion(const ServiceReport& report)
{
    if (report.call.name == "WideCharToMultiByte")
        ExpectHead(report.failure, "System/String/StringConvert", report.code);
}
