// tests/Faults/IniFileSweep.cpp: profile files and version records without memory, and on a host whose calls fail.
#include <System/IniFile/IniFile.h>
#include <System/ModuleVersion/ModuleVersion.h>

#include "Faults/Sweep.h"
#include "Support/Directory.h"
#include "Support/Files.h"
#include "Support/VersionFiles.h"

#include <memory>
#ifndef _WIN32
#include "Faults/FailingHost.h"
#endif

namespace
{
const std::string OLD = "[s]\r\nk=old\r\nn=7\r\n";

struct State
{
    State()
        : name(".\\p.ini"),
          section("s", -1, 0),
          key("k", -1, 0),
          value("a new value of more than thirty-two bytes", -1, 0),
          file(&name)
    {
        WriteBytes("p.ini", OLD);
    }

    CT_CString name;
    CT_UString section;
    CT_UString key;
    CT_UString value;
    CT_IniFile file;
    CT_UString out;
    unsigned number = 1;
};

const SweepReport STRINGS = {"Ostra/Buffer/Buffer", "Ostra/String/CString", "Ostra/String/UString",
                             "System/String/StringConvert"};

std::unique_ptr<State> Made()
{
    return std::make_unique<State>();
}

std::string NewText()
{
    return "[s]\r\nk=a new value of more than thirty-two bytes\r\nn=7\r\n";
}

struct Pointer
{
    ~Pointer() { delete file; }
    CT_CString name{".\\p.ini"};
    CT_IniFile* file = nullptr;
};

struct VersionPointer
{
    ~VersionPointer() { delete version; }
    CT_ModuleVersion* version = nullptr;
};
} // namespace

TEST(IniFileSweep, NewObjects)
{
    Sweep(
        {"System/IniFile/IniFile", "Ostra/Buffer/Buffer", "Ostra/String/CString"},
        [] { return std::make_unique<Pointer>(); },
        [](Pointer& state) { state.file = new CT_IniFile(&state.name); },
        [](Pointer& state, bool failed) { EXPECT_TRUE(failed || state.file); });
    Sweep(
        "System/ModuleVersion/ModuleVersion", [] { return std::make_unique<VersionPointer>(); },
        [](VersionPointer& state) { state.version = new CT_ModuleVersion; },
        [](VersionPointer& state, bool failed) { EXPECT_EQ(!state.version, failed); });
}

TEST(IniFileSweep, AWritingThatFailsChangesNothing)
{
    Sweep(
        STRINGS, Made,
        [](State& state) { state.file.v_WriteString(&state.section, &state.key, &state.value); },
        [](State& state, bool) {
            // Without memory the service refuses in silence.
            const std::string text = ReadBytes("p.ini");
            EXPECT_TRUE(text == OLD || text == NewText()) << text;
            state.file.v_WriteString(&state.section, &state.key, &state.value);
            EXPECT_EQ(ReadBytes("p.ini"), NewText());
        });
    Sweep(
        STRINGS, Made, [](State& state) { state.file.v_WriteN(&state.section, &state.key, 12345); },
        [](State&, bool) {
            const std::string text = ReadBytes("p.ini");
            EXPECT_TRUE(text == OLD || text == "[s]\r\nk=12345\r\nn=7\r\n") << text;
        });
}

TEST(IniFileSweep, AReadingThatFailsGivesTheDefaultOrNothing)
{
    Sweep(
        STRINGS, Made,
        [](State& state) {
            state.file.v_ReadString(&state.section, &state.key, &state.out, &state.value);
        },
        [](State& state, bool) {
            const std::string text = Get(state.out);
            EXPECT_TRUE(text.empty() || text == "old" || text == Get(state.value)) << text;
            EXPECT_EQ(ReadBytes("p.ini"), OLD);
        });
    Sweep(
        STRINGS, Made,
        [](State& state) { state.file.v_ReadN(&state.section, &state.section, &state.number, 5); },
        [](State& state, bool) { EXPECT_EQ(state.number, 5U); });
}

namespace
{
struct VersionState
{
    VersionState()
    {
        WriteBytes("a.dll", PortableFile(SimpleRecord(
                                Layout::WIDE, {{"Comments", "a text of more than thirty-two bytes"},
                                               {"Other", "in the map"}})));
    }
    CT_ModuleVersion version;
};
} // namespace

TEST(ModuleVersionSweep, ARecordIsReadWithoutMemory)
{
    Sweep(
        {"Ostra/Buffer/Buffer", "Ostra/String/UString", "Ostra/ARRAY/VoidArray",
         "Ostra/Maps/StringStringMap", "System/String/StringConvert"},
        [] { return std::make_unique<VersionState>(); },
        [](VersionState& state) { state.version.v_Set(".\\a.dll"); },
        [](VersionState& state, bool) {
            state.version.v_Set(".\\a.dll");
            EXPECT_EQ(state.version.b_IsValid(), 1);
            EXPECT_EQ(Get(*state.version.pcco_GetComments()),
                      "a text of more than thirty-two bytes");
            EXPECT_EQ(state.version.pcco_GetMap()->n_GetCount(), 1U);
        });
}

#ifndef _WIN32
namespace
{
const struct
{
    int error;
    unsigned code;
} ERRORS[] = {{EIO, 1117}, {EACCES, 5}, {ENOSPC, 112}, {EMFILE, 4}};

// One run: true if a call of the host has failed.
bool RunFailing(unsigned number, int error, unsigned code, std::string& call)
{
    State state;
    const unsigned descriptors = Descriptors();
    FailingHost::Arm(number, error);
    state.file.v_WriteString("s", "k", "new");
    call = FailingHost::Disarm();
    SCOPED_TRACE(call);
    const Failure failure = TakeFailure();
    const std::string text = ReadBytes("p.ini");
    if (failure.code == 0xFFFFFFFF) {
        EXPECT_EQ(text, "[s]\r\nk=new\r\nn=7\r\n");
    } else {
        EXPECT_EQ(failure.code, code);
        EXPECT_EQ(failure.trail, std::vector<std::string>{"System/IniFile/IniFile"});
        EXPECT_EQ(text, OLD);
    }
    EXPECT_EQ(Descriptors(), descriptors);
    state.file.v_WriteString("s", "k", "again");
    EXPECT_EQ(ReadBytes("p.ini"), "[s]\r\nk=again\r\nn=7\r\n");
    EXPECT_EQ(TakeFailure(), Failure());
    return !call.empty();
}
} // namespace

TEST(IniFileCallSweep, AWritingIsWholeOrReported)
{
    unsigned failures = 0;
    std::string call;
    for (const auto& row : ERRORS)
        for (unsigned number = 1;; ++number) {
            SCOPED_TRACE(testing::Message() << "call " << number << ", error " << row.error);
            std::filesystem::remove(".p.ini.new");
            if (!RunFailing(number, row.error, row.code, call))
                break;
            ++failures;
        }
    EXPECT_GT(failures, 50U);
    std::printf("call sweep: profile writing, %u failures\n", failures);
}

TEST(IniFileCallSweep, InterruptedCallsAreRepeated)
{
    std::string call;
    for (unsigned number = 1;; ++number) {
        State state;
        FailingHost::Arm(number, EINTR);
        state.file.v_WriteString("s", "k", "new");
        call = FailingHost::Disarm();
        EXPECT_EQ(TakeFailure(), Failure()) << call;
        EXPECT_EQ(ReadBytes("p.ini"), "[s]\r\nk=new\r\nn=7\r\n") << call;
        if (call.empty())
            break;
    }
}

TEST(IniFileCallSweep, AReadingThatFailsGivesTheDefault)
{
    for (unsigned number = 1;; ++number) {
        State state;
        CT_CString out;
        const unsigned descriptors = Descriptors();
        FailingHost::Arm(number, EIO);
        state.file.v_ReadString("s", "k", &out, "given");
        const std::string call = FailingHost::Disarm();
        EXPECT_TRUE(Get(out) == "given" || Get(out) == "old") << call;
        EXPECT_EQ(TakeFailure(), Failure()) << call;
        EXPECT_EQ(Descriptors(), descriptors) << call;
        if (call.empty()) {
            EXPECT_EQ(Get(out), "old");
            break;
        }
    }
}

TEST(ModuleVersionCallSweep, AFileThatCannotBeReadHasNoRecord)
{
    for (unsigned number = 1;; ++number) {
        VersionState state;
        const unsigned descriptors = Descriptors();
        FailingHost::Arm(number, EIO);
        state.version.v_Set(".\\a.dll");
        const std::string call = FailingHost::Disarm();
        EXPECT_EQ(TakeFailure(), Failure()) << call;
        EXPECT_EQ(Descriptors(), descriptors) << call;
        if (call.empty()) {
            EXPECT_EQ(state.version.b_IsValid(), 1);
            break;
        }
    }
}
#endif
