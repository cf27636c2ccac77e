// tests/Faults/RecordManagerSweep.cpp: CT_RecordManager with an exhausted heap.
//
// Whatever fails, the file that is closed afterwards must be sound, and have what it had before.
#include <Database/RecordManager/RecordManager.h>
#include <Ostra/String/UString.h>

#include "Faults/Sweep.h"
#include "RecordCheck.h"
#include "Support/Directory.h"

#include <memory>
#include <string>
#include <vector>

namespace
{
const SweepReport report({"Ostra/Buffer/Buffer"});

struct State
{
    CT_UString name{Units(u"test.rec")};
    CT_WinFile file{&name, 1024};
    CT_RecordManager manager{&file};
    CT_Buffer data{"a record of more bytes than its head", 36, 32};
    CT_Buffer buffer;
    CT_Buffer holder;
    unsigned record = 0;
    unsigned other = 0;
    unsigned result = 0;

    std::string Text() const
    {
        return {static_cast<const char*>(buffer.qcv_Get()), buffer.n_GetUsedSize()};
    }
    std::string Fetch(unsigned reference)
    {
        buffer.v_SetSize(0, 0);
        manager.v_GetRecord(reference, &buffer);
        return Text();
    }
};

const std::string whole = "a record of more bytes than its head";

// A new file with two records, resource 7, and `freed` free blocks in the table; open, mapped.
std::unique_ptr<State> Opened(unsigned freed = 0)
{
    auto state = std::make_unique<State>();
    CT_RecordManager& manager = state->manager;
    manager.v_Create(8, 64, 100);
    state->record = manager.n_AddRecord(&state->data);
    state->other = manager.n_AddRecord(&state->data);
    manager.v_AddResource(7, &state->data);
    const unsigned first = state->other + 3;
    const CT_Buffer small("small", 5, 32);
    for (unsigned i = 0; i < freed; ++i)
        EXPECT_EQ(manager.n_AddRecord(&small), first + i);
    for (unsigned i = 0; i < freed; ++i)
        manager.v_DeleteRecord(first + i);
    EXPECT_FALSE(Errors().b_IsSetError());
    return state;
}

// The same, closed; with b_Exit nothing of it is in memory.
std::unique_ptr<State> Closed(unsigned freed, int b_Exit)
{
    auto state = Opened(freed);
    state->manager.v_Close(b_Exit);
    return state;
}

// What the object and its file must be like in the end.
void Check(State& state)
{
    EXPECT_EQ(state.Fetch(state.other), whole);
    const unsigned added = state.manager.n_AddRecord(&state.data);
    EXPECT_EQ(state.Fetch(added), whole);
    state.manager.v_Close(1);
    EXPECT_FALSE(Errors().b_IsSetError());
    const RecordVerdict verdict = CheckRecordFile(ReadBytes("test.rec"));
    EXPECT_TRUE(verdict.sound) << DescribeRecordVerdict(verdict);
}
} // namespace

TEST(RecordManagerSweep, NewObject)
{
    struct Pointer
    {
        ~Pointer() { delete manager; }
        CT_UString name{Units(u"test.rec")};
        CT_WinFile file{&name, 1024};
        CT_RecordManager* manager = nullptr;
    };
    Sweep(
        {"Database/RecordManager/RecordManager", "Ostra/Buffer/Buffer"},
        [] { return std::make_unique<Pointer>(); },
        [](Pointer& state) { state.manager = new CT_RecordManager(&state.file); },
        [](Pointer& state, bool failed) { EXPECT_TRUE(failed || state.manager); });
}

TEST(RecordManagerSweep, OpenLoadsBothTables)
{
    for (const int map : {0, 1}) {
        for (const auto mode : {CT_RecordManager::e_OpenRead, CT_RecordManager::e_OpenReadWrite}) {
            SCOPED_TRACE(testing::Message() << map << ' ' << mode);
            Sweep(
                report, [] { return Closed(20, 1); },
                [=](State& state) { state.manager.v_Open(mode, map); },
                [=](State& state, bool failed) {
                    EXPECT_EQ(state.manager.pcco_GetFile()->b_IsOpen(), !failed);
                    if (!failed)
                        state.manager.v_Close(1);
                    state.manager.v_Open(CT_RecordManager::e_OpenReadWrite, map);
                    EXPECT_TRUE(state.manager.b_ResourceExists(7));
                    EXPECT_EQ(state.Fetch(state.record), whole);
                    Check(state);
                });
        }
    }
}

TEST(RecordManagerSweep, FetchIntoAnEmptyBuffer)
{
    Sweep(
        report, [] { return Opened(); },
        [](State& state) { state.manager.v_GetRecord(state.record, &state.buffer); },
        [](State& state, bool failed) {
            EXPECT_EQ(state.Text(), failed ? "" : whole);
            Check(state);
        });
}

TEST(RecordManagerSweep, FetchIntoASharedBuffer)
{
    Sweep(
        report,
        [] {
            auto state = Opened();
            const std::string before(100, 'b');
            state->buffer.v_Set(before.data(), 100, 32);
            state->holder.v_Set(&state->buffer);
            return state;
        },
        [](State& state) { state.manager.v_GetRecord(state.record, &state.buffer); },
        [](State& state, bool failed) {
            if (!failed) {
                EXPECT_EQ(state.Text(), whole);
            }
            Check(state);
        });
}

TEST(RecordManagerSweep, WalkFetches)
{
    Sweep(
        report, [] { return Opened(); },
        [](State& state) { state.result = state.manager.n_GetNextRecord(0, &state.buffer); },
        [](State& state, bool failed) {
            EXPECT_EQ(state.result, failed ? 0 : state.record + 1);
            EXPECT_EQ(state.Text(), failed ? "" : whole);
            Check(state);
        });
}

TEST(RecordManagerSweep, FetchOfAResource)
{
    Sweep(
        report, [] { return Opened(); },
        [](State& state) { state.manager.v_GetResource(7, &state.buffer); },
        [](State& state, bool failed) {
            EXPECT_EQ(state.Text(), failed ? "" : whole);
            Check(state);
        });
}

// The free table's block holds 6 entries, then 10 with a growth of 8: a deletion may have to let it
// grow.
TEST(RecordManagerSweep, DeletionLosesABlockAtMost)
{
    for (unsigned freed = 0; freed < 24; ++freed) {
        auto state = Opened(freed);
        FailingHeap::Arm(1, FailingHeap::FROM);
        state->manager.v_DeleteRecord(state->record);
        const unsigned failures = FailingHeap::Disarm();
        const Failure failure = TakeFailure();
        EXPECT_EQ(failure == Failure(), failures == 0) << freed;
        if (failures) {
            EXPECT_EQ(failure.code, 60006u);
            EXPECT_EQ(state->manager.n_GetRecordCount(), 2u) << "what went wrong isn't counted";
        }
        Check(*state);
    }
}

TEST(RecordManagerSweep, DeletionInAFullBlockOfTheTable)
{
    Sweep(
        report, [] { return Opened(0); },
        [](State& state) { state.manager.v_DeleteRecord(state.record); },
        [](State& state, bool failed) {
            EXPECT_EQ(state.Fetch(state.record), "");
            EXPECT_EQ(TakeFailure().code, 31051u);
            EXPECT_EQ(state.manager.n_GetRecordCount(), failed ? 2u : 1u);
            Check(state);
        });
}

TEST(RecordManagerSweep, AdditionOfAResource)
{
    unsigned failing = 0;
    for (unsigned count = 0; count < 24; ++count) {
        auto state = Opened();
        for (unsigned id = 100; id < 100 + count; ++id)
            state->manager.v_AddResource(id, &state->data);
        FailingHeap::Arm(1, FailingHeap::FROM);
        state->manager.v_AddResource(8, &state->data);
        const bool failed = FailingHeap::Disarm() != 0;
        failing += failed;
        EXPECT_EQ(TakeFailure().code, failed ? 60006u : 0xFFFFFFFF) << count;
        EXPECT_EQ(state->manager.b_ResourceExists(8), !failed);
        EXPECT_EQ(state->manager.n_GetResourceCount(), count + (failed ? 1 : 2));
        state->manager.v_GetResource(7, &state->buffer);
        EXPECT_EQ(state->Text(), whole);
        Check(*state);
    }
    EXPECT_GT(failing, 0u);
}

// The chain in memory is nobody's promise: without memory for it the chain is walked in the file.
TEST(RecordManagerSweep, LongChainsAreSearchedWithoutMemoryToo)
{
    std::string files[2];
    for (const bool fails : {false, true}) {
        auto state = std::make_unique<State>();
        CT_RecordManager& manager = state->manager;
        manager.v_Create(8, 16, 0);
        const CT_Buffer small("small", 5, 32);
        std::vector<unsigned> references;
        for (unsigned i = 0; i < 400; ++i)
            references.push_back(manager.n_AddRecord(&small));
        for (unsigned i = 0; i < 380; ++i)
            manager.v_DeleteRecord(references[i]);
        if (fails)
            FailingHeap::Arm(1, FailingHeap::FROM);
        for (unsigned i = 0; i < 100; ++i) {
            const unsigned reference = manager.n_AddRecord(&state->data);
            if (i % 3 == 0)
                manager.v_DeleteRecord(reference);
        }
        EXPECT_EQ(FailingHeap::Disarm() != 0, fails);
        EXPECT_FALSE(Errors().b_IsSetError());
        manager.v_Close(1);
        files[fails] = ReadBytes("test.rec");
    }
    EXPECT_TRUE(files[0] == files[1]);
}
