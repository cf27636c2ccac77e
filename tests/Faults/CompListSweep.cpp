// tests/Faults/CompListSweep.cpp: CT_CompList with an exhausted heap.
#include <Ostra/CompList/CompList.h>

#include "Faults/Sweep.h"
#include "ListCheck.h"
#include "Models/CompListKey.h"

#include <memory>
#include <string>
#include <vector>

namespace
{
const SweepReport report("Ostra/Buffer/Buffer");

struct State
{
    CT_CompList list{CT_CompList::es_Byte, 2, 0, 1, 128, 0};
    CT_CompList holder{&list};
    int added = -1;
    std::string before, holders;
};

// A list whose block is full to the last `spare` bytes. The keys car and cat are in it.
std::unique_ptr<State> Full(unsigned spare, bool shared = false)
{
    auto state = std::make_unique<State>();
    state->list.b_Add("car", 1);
    state->list.b_Add("cat", 2);
    const CT_Buffer* buffer = state->list.pcco_GetBuffer();
    const unsigned room = buffer->n_GetMaximumSize() - buffer->n_GetUsedSize();
    // An alternative of five bytes, a leaf end and a handle of three.
    state->list.b_Add(std::string(room - spare - 8, 'x').c_str(), 3);
    EXPECT_EQ(buffer->n_GetMaximumSize() - buffer->n_GetUsedSize(), spare);
    if (shared)
        state->holder.v_Set(&state->list);
    else
        state->holder.v_Set(CT_CompList::es_Byte, 2, 0, 1, 128, 0);
    state->before = Block(state->list);
    state->holders = Block(state->holder);
    return state;
}

// What every holder must have after an adding that failed or didn't: a sound list with the keys
// that it had, and the new one if b_Add said so.
void Check(State& state, const std::string& key, bool failed)
{
    EXPECT_TRUE(CheckList(Block(state.list)).sound)
        << DescribeListVerdict(CheckList(Block(state.list)));
    EXPECT_EQ(state.list.n_Search("car", nullptr), 1U);
    EXPECT_EQ(state.list.n_Search("cat", nullptr), 2U);
    EXPECT_EQ(state.list.b_Search(key.c_str(), nullptr), state.added);
    EXPECT_TRUE(failed || state.added);
    if (!state.added) {
        EXPECT_EQ(Block(state.list), state.before);
    }
    // The list goes on.
    EXPECT_EQ(state.list.b_Add(key.c_str(), 9), !state.added);
    EXPECT_EQ(state.list.b_Add("another", 4), 1);
    EXPECT_EQ(state.list.n_Search("another", nullptr), 4U);
    EXPECT_TRUE(CheckList(Block(state.list)).sound);
}

// Keys for each place of insertion: an inner end, a branch behind a leaf end, an alternative.
const char* const keys[] = {"ca", "carts", "do", "Upper", "cab"};
} // namespace

TEST(CompListSweep, NewObject)
{
    struct Pointer
    {
        ~Pointer() { delete list; }
        CT_CompList* list = nullptr;
    };
    Sweep(
        {"Ostra/CompList/CompList", "Ostra/Buffer/Buffer"},
        [] { return std::make_unique<Pointer>(); },
        [](Pointer& state) { state.list = new CT_CompList(CT_CompList::es_Byte, 2, 0, 1, 128, 0); },
        [](Pointer& state, bool failed) {
            if (!state.list)
                return;
            // Without a block the list has no elements, and can be set.
            EXPECT_EQ(state.list->pcco_GetBuffer() == nullptr, failed);
            EXPECT_EQ(state.list->n_GetEnd(), failed ? 0U : 133U);
            EXPECT_EQ(state.list->b_Add("car", 1), !failed);
            state.list->v_Set(CT_CompList::es_Byte, 2, 0, 1, 128, 0);
            EXPECT_EQ(state.list->b_Add("car", 1), 1);
        });
}

TEST(CompListSweep, SetKeepsTheOldListWhenThereIsNoNewBlock)
{
    Sweep(
        report, [] { return Full(0); },
        [](State& state) { state.list.v_Set(CT_CompList::es_Short, 4, 1, 0, 4096, 1252); },
        [](State& state, bool failed) {
            if (failed) {
                EXPECT_EQ(Block(state.list), state.before);
            }
            EXPECT_EQ(state.list.n_GetElementSize(), failed ? 1U : 2U);
            EXPECT_EQ(state.list.n_Search("car", nullptr), failed ? 1U : 0xFFFFFFFF);
        });
}

TEST(CompListSweep, AKeyIsAddedWholeOrNotAtAll)
{
    const struct
    {
        const char* key;
        std::vector<unsigned> spares; // fewer than it takes; from five on the mark of a branch fits
    } cases[] = {{"ca", {0, 2}},
                 {"carts", {0, 4}},
                 {"do", {0, 4, 5, 9}},
                 {"Upper", {0, 4, 5, 12}},
                 {"cab", {0, 5, 8}}};
    for (const auto& row : cases)
        for (const unsigned spare : row.spares) {
            const char* const key = row.key;
            SCOPED_TRACE(testing::Message() << key << ", " << spare << " bytes to spare");
            Sweep(
                report, [=] { return Full(spare); },
                [=](State& state) { state.added = state.list.b_Add(key, 5); },
                [=](State& state, bool failed) {
                    EXPECT_EQ(state.added, !failed);
                    Check(state, key, failed);
                });
        }
}

TEST(CompListSweep, AKeyOfASharedListIsAddedWholeOrNotAtAll)
{
    for (const char* key : keys)
        for (const unsigned spare : {0U, 5U, 60U}) {
            SCOPED_TRACE(testing::Message() << key << ", " << spare << " bytes to spare");
            Sweep(
                report, [=] { return Full(spare, true); },
                [=](State& state) { state.added = state.list.b_Add(key, 5); },
                [=](State& state, bool failed) {
                    // A leaf end that opens does so for all holders, come what may.
                    if (std::string(key) != "carts" && (!state.added || !failed)) {
                        EXPECT_EQ(Block(state.holder), state.holders);
                    }
                    Check(state, key, failed);
                });
        }
}

// What a list knows beside its block may be lost: nobody hears of it, and nothing else changes.
TEST(CompListSweep, TheIndexIsMissedInSilence)
{
    struct Long
    {
        CT_CompList list{CT_CompList::es_Byte, 1, 0, 1, 128, 0};
        std::vector<std::string> keys;
    };
    const auto prepare = [] {
        auto state = std::make_unique<Long>();
        for (unsigned number = 0; number < 500; ++number)
            state->keys.push_back(std::to_string(number * 7919 % 500) + "end");
        return state;
    };
    const auto whole = prepare();
    for (const std::string& key : whole->keys)
        whole->list.b_Add(key.c_str(), 1);
    const std::string expected = Block(whole->list);

    for (const FailingHeap::Mode mode : {FailingHeap::ONCE, FailingHeap::FROM})
        for (unsigned number = 1, failing = 1; failing > 0; ++number) {
            SCOPED_TRACE(number);
            const auto state = prepare();
            CT_Buffer room(10000, 32);
            room.v_Append(state->list.pcco_GetBuffer(), 0, 0xFFFFFFFF);
            state->list.v_Set(&room);
            room.v_SetSize(0, 0);
            FailingHeap::Arm(number, mode);
            for (const std::string& key : state->keys)
                state->list.b_Add(key.c_str(), 1);
            failing = FailingHeap::Disarm();
            EXPECT_EQ(TakeFailure(), Failure());
            ASSERT_TRUE(Block(state->list) == expected);
            ASSERT_LT(number, 20U);
        }
}
