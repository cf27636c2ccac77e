// tests/Faults/IniFileServices.cpp: profile files whose services fail.
#include <Ostra/String/CString.h>
#include <Ostra/String/UString.h>
#include <System/IniFile/IniFile.h>

#include "Faults/ServiceSweep.h"
#include "Support/Directory.h"
#include "Support/Files.h"

namespace
{
const std::string OLD = "[s]\r\nk=old\r\nn=7\r\n";

struct State
{
    State()
    {
        // A system may hold what it has read of the file.
        WritePrivateProfileStringA(nullptr, nullptr, nullptr, name.qccz_Get());
        WriteBytes("p.ini", OLD);
    }

    CT_CString name{".\\p.ini"};
    CT_UString section{u"s"};
    CT_UString key{u"k"};
    CT_UString number_key{u"n"};
    CT_UString value{u"new"};
    CT_IniFile file{&name};
    CT_UString out{u"before"};
    unsigned number = 1;
};

void Nothing(State&) {}

void IsOld(State&)
{
    EXPECT_EQ(ReadBytes("p.ini"), OLD);
}

void ExpectUsable(State& state)
{
    state.file.v_WriteString("u", "k", "used");
    state.file.v_ReadString("u", "k", &state.out, "");
    EXPECT_EQ(Get(state.out), "used");
}

// The one operation that tells, in its own name, and with no other.
void JudgeTold(const ServiceReport& report)
{
    EXPECT_EQ(report.failure.code, report.code);
    EXPECT_EQ(report.failure.trail, std::vector<std::string>{"System/IniFile/IniFile"});
    EXPECT_EQ(report.failure.text.find("(" + std::to_string(report.code) + "): "), 0U);
    EXPECT_EQ(report.failure.text.find(" ["), std::string::npos) << report.failure.text;
}

void JudgeSilent(const ServiceReport& report)
{
    EXPECT_EQ(report.failure, Failure());
}

// What an operation writes, if nothing fails.
ServiceOperation<State>::Step Holds(const char* text)
{
    return [=](State&) {
        EXPECT_EQ(ReadBytes("p.ini"), text);
    };
}

const ServiceOperation<State> TOLD[] = {
    {"write a text", Nothing, [](State& state) { state.file.v_WriteString("s", "k", "new"); },
     Holds("[s]\r\nk=new\r\nn=7\r\n"), IsOld},
};

const ServiceOperation<State> SILENT[] = {
    {"write an object's text", Nothing,
     [](State& state) { state.file.v_WriteString(&state.section, &state.key, &state.value); },
     Holds("[s]\r\nk=new\r\nn=7\r\n"), IsOld},
    {"write a number", Nothing, [](State& state) { state.file.v_WriteN("s", "n", 12); },
     Holds("[s]\r\nk=old\r\nn=12\r\n"), IsOld},
    {"write a number named by objects", Nothing,
     [](State& state) { state.file.v_WriteN(&state.section, &state.number_key, 12); },
     Holds("[s]\r\nk=old\r\nn=12\r\n"), IsOld},
    {"delete a key", Nothing, [](State& state) { state.file.v_DeleteKey("s", "k"); },
     Holds("[s]\r\nn=7\r\n"), IsOld},
    {"delete a section", Nothing, [](State& state) { state.file.v_DeleteSection("s"); }, Holds(""),
     IsOld},
    // A service that says nothing at all has left the room empty.
    {"read a text", Nothing,
     [](State& state) { state.file.v_ReadString("s", "k", &state.out, "default"); },
     [](State& state) { EXPECT_EQ(Get(state.out), "old"); },
     [](State& state) {
         EXPECT_EQ(Get(state.out), "");
         IsOld(state);
     }},
    {"read an object's text", Nothing,
     [](State& state) {
         state.file.v_ReadString(&state.section, &state.key, &state.out, &state.value);
     },
     [](State& state) { EXPECT_EQ(Get(state.out), "old"); },
     [](State& state) {
         EXPECT_EQ(Get(state.out), "");
     }},
    {"read a number", Nothing, [](State& state) { state.file.v_ReadN("s", "n", &state.number, 5); },
     [](State& state) { EXPECT_EQ(state.number, 7U); },
     [](State& state) {
         EXPECT_EQ(state.number, 0U);
     }},
    {"read a number named by objects", Nothing,
     [](State& state) { state.file.v_ReadN(&state.section, &state.number_key, &state.number, 5); },
     [](State& state) { EXPECT_EQ(state.number, 7U); },
     [](State& state) {
         EXPECT_EQ(state.number, 0U);
     }},
};
} // namespace

TEST(ServiceSweep, IniFileTellsOfATextOfBytesThatCouldNotBeWritten)
{
    SweepServices(JudgeTold, TOLD);
}

TEST(ServiceSweep, IniFileIsSilentOtherwiseAndLeavesTheFileAsItWas)
{
    SweepServices(JudgeSilent, SILENT, 0);
}
