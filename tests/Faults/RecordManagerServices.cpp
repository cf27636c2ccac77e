// tests/Faults/RecordManagerServices.cpp: record files where services fail. The file below reports.
#include <Database/RecordManager/RecordManager.h>
#include <Ostra/File/WinFile.h>

#include "Faults/ServiceSweep.h"
#include "RecordCheck.h"
#include "Support/Directory.h"
#include "Support/Files.h"

#include <memory>
#include <string>

namespace
{
struct State
{
    State() : name(Name("test.rec")), file(&name, 1024)
    {
        CT_RecordManager manager(&file);
        manager.v_Create(8, 64, 0);
        kept = manager.n_AddRecord(&record);
        manager.v_Close(1);
        fresh = std::make_unique<CT_RecordManager>(&file);
    }

    CT_UString name;
    const CT_WinFile file;
    const CT_Buffer record{"a record with a body", 20, 32};
    CT_Buffer buffer;
    std::unique_ptr<CT_RecordManager> fresh;
    unsigned kept = 0;
    unsigned added = 0;
};

void Nothing(State&) {}

void Open(State& state)
{
    state.fresh->v_Open(CT_RecordManager::e_OpenReadWrite, 0);
}

void Get(State& state)
{
    state.fresh->v_GetRecord(state.kept, &state.buffer);
}

void HasRecord(State& state)
{
    Get(state);
    EXPECT_EQ(state.buffer.n_GetUsedSize(), 20U);
}

void ExpectUsable(State& state)
{
    // What was begun ends here, or has failed before.
    state.fresh->v_Close(1);
    state.fresh.reset();
    TakeFailure();
    const CT_UString other = Name("other.rec");
    const CT_WinFile second(&other, 1024);
    CT_RecordManager manager(&second);
    manager.v_Create(8, 64, 0);
    const unsigned reference = manager.n_AddRecord(&state.record);
    manager.v_GetRecord(reference, &state.buffer);
    EXPECT_EQ(state.buffer.n_GetUsedSize(), 20U);
    manager.v_Close(1);
    EXPECT_EQ(TakeFailure(), Failure());
}

const ServiceOperation<State> OPERATIONS[] = {
    {"create",
     Nothing,
     [](State& state) { state.fresh->v_Create(8, 64, 0); },
     [](State& state) { EXPECT_NE(state.fresh->n_AddRecord(&state.record), 0U); },
     nullptr,
     {},
     "test.rec"},
    {"open", Nothing, Open, HasRecord, nullptr, {}, "test.rec"},
    {"get", Open, Get, HasRecord, HasRecord, {}, "test.rec"},
    {"add",
     Open,
     [](State& state) { state.added = state.fresh->n_AddRecord(&state.record); },
     [](State& state) { EXPECT_NE(state.added, 0U); },
     [](State& state) {
         EXPECT_EQ(state.added, 0U);
         HasRecord(state);
     },
     {},
     "test.rec"},
    {"close",
     [](State& state) {
         Open(state);
         state.fresh->n_AddRecord(&state.record);
     },
     [](State& state) { state.fresh->v_Close(1); },
     [](State&) {
         const RecordVerdict verdict = CheckRecordFile(ReadBytes("test.rec"));
         EXPECT_TRUE(verdict.sound) << DescribeRecordVerdict(verdict);
     },
     nullptr,
     {},
     "test.rec"},
};
} // namespace

TEST(ServiceSweep, RecordManager)
{
    SweepServices(SystemReport("Ostra/File/WinFile"), OPERATIONS);
}
