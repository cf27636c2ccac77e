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
        manager.v_Create(8, 64, 4);
        kept = manager.n_AddRecord(&record);
        second = manager.n_AddRecord(&record);
        manager.v_AddResource(1, &record);
        manager.v_Close(1);
        fresh = std::make_unique<CT_RecordManager>(&file);
    }

    CT_UString name;
    const CT_WinFile file;
    const CT_Buffer record{"a record with a body", 20, 32};
    CT_Buffer buffer;
    std::unique_ptr<CT_RecordManager> fresh;
    const CT_Buffer larger{std::string(200, 'l').data(), 200, 32};
    unsigned kept = 0, second = 0;
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

// The record and the resource that weren't touched.
void HasTheRest(State& state)
{
    state.fresh->v_GetRecord(state.second, &state.buffer);
    EXPECT_EQ(state.buffer.n_GetUsedSize(), 20U);
}

void HasResource(State& state, unsigned id, unsigned size)
{
    state.fresh->v_GetResource(id, &state.buffer);
    EXPECT_EQ(state.buffer.n_GetUsedSize(), size);
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
    {"walk",
     Open,
     [](State& state) {
         state.added = state.fresh->n_GetNextRecord(0, &state.buffer);
         if (state.added)
             state.added = state.fresh->n_GetNextRecord(state.added, &state.buffer);
     },
     [](State& state) {
         EXPECT_NE(state.added, 0U);
         EXPECT_EQ(state.buffer.n_GetUsedSize(), 20U);
     },
     [](State& state) {
         EXPECT_EQ(state.added, 0U);
         HasRecord(state);
     },
     {},
     "test.rec"},
    {"update",
     Open,
     [](State& state) { state.fresh->v_UpdateRecord(state.kept, &state.larger); },
     [](State& state) {
         state.fresh->v_GetRecord(state.kept, &state.buffer);
         EXPECT_EQ(state.buffer.n_GetUsedSize(), 200U);
         HasTheRest(state);
     },
     HasTheRest,
     {},
     "test.rec"},
    {"update the front",
     Open,
     [](State& state) { state.fresh->v_UpdateRecordHeader(state.kept, &state.larger); },
     HasRecord,
     HasRecord,
     {},
     "test.rec"},
    {"delete",
     Open,
     [](State& state) { state.fresh->v_DeleteRecord(state.kept); },
     [](State& state) {
         EXPECT_EQ(state.fresh->n_GetRecordCount(), 1U);
         HasTheRest(state);
     },
     HasTheRest,
     {},
     "test.rec"},
    {"add a resource",
     Open,
     [](State& state) { state.fresh->v_AddResource(2, &state.larger); },
     [](State& state) { HasResource(state, 2, 200); },
     [](State& state) {
         EXPECT_EQ(state.fresh->n_GetResourceCount(), 1U);
         HasResource(state, 1, 20);
         HasTheRest(state);
     },
     {},
     "test.rec"},
    {"get a resource",
     Open,
     [](State& state) { state.fresh->v_GetResource(1, &state.buffer); },
     [](State& state) { EXPECT_EQ(state.buffer.n_GetUsedSize(), 20U); },
     [](State& state) { HasResource(state, 1, 20); },
     {},
     "test.rec"},
    {"update a resource",
     Open,
     [](State& state) { state.fresh->v_UpdateResource(1, &state.larger); },
     [](State& state) { HasResource(state, 1, 200); },
     HasTheRest,
     {},
     "test.rec"},
    {"delete a resource",
     Open,
     [](State& state) { state.fresh->v_DeleteResource(1); },
     [](State& state) { EXPECT_EQ(state.fresh->n_GetResourceCount(), 0U); },
     HasTheRest,
     {},
     "test.rec"},
    {"flush",
     [](State& state) {
         Open(state);
         state.fresh->n_AddRecord(&state.record);
     },
     [](State& state) { state.fresh->v_Flush(); },
     HasRecord,
     HasRecord,
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
