// tests/Faults/CompListBuilderSweep.cpp: CT_CompListBuilder with an exhausted heap.
#include <Ostra/CompList/CompListBuilder.h>

#include "Faults/Sweep.h"
#include "Models/CompListKey.h"

#include <memory>
#include <string>
#include <vector>

namespace
{
const SweepReport report({"Ostra/CompList/CompListBuilder", "Ostra/Buffer/Buffer",
                          "Ostra/CompList/CompList"});

struct State
{
    CT_CompListBuilder builder{CT_CompList::es_Byte, 2, 0, 1, 128, 0};
    CT_CompList list{CT_CompList::es_Byte, 2, 0, 1, 128, 0};
    std::vector<std::string> keys;
    std::vector<int> added;
};

std::string Built(const CT_CompListBuilder& builder)
{
    CT_CompList list(CT_CompList::es_Byte, 0, 0, 0, 128, 0);
    builder.v_Build(&list);
    return Block(list);
}

// Keys that part everywhere, a chain of many first elements among them.
std::unique_ptr<State> Many(unsigned element = 1)
{
    auto state = std::make_unique<State>();
    state->builder.v_Set(CT_CompList::et_ElementSize(element), 2, 0, 1, 128, 0);
    state->list.v_Set(CT_CompList::et_ElementSize(element), 2, 0, 1, 128, 0);
    for (unsigned number = 0; number < 200; ++number)
        state->keys.push_back(
            Key(static_cast<char>(33 + number * 31 % 90) + std::to_string(number * 7), element));
    state->added.resize(state->keys.size(), -1);
    return state;
}

void AddAll(State& state)
{
    for (std::size_t at = 0; at < state.keys.size(); ++at)
        state.added[at] = state.builder.b_Add(state.keys[at].data(), 7);
}

// The builder holds what it said it took, and takes the rest.
void CheckAll(State& state, bool failed)
{
    std::size_t missed = 0;
    for (std::size_t at = 0; at < state.keys.size(); ++at) {
        missed += !state.added[at];
        if (state.added[at])
            state.list.b_Add(state.keys[at].data(), 7);
    }
    EXPECT_EQ(missed > 0, failed);
    EXPECT_TRUE(Built(state.builder) == Block(state.list));
    for (const std::string& key : state.keys)
        EXPECT_EQ(state.builder.b_Add(key.data(), 8), state.list.b_Add(key.data(), 8));
    EXPECT_TRUE(Built(state.builder) == Block(state.list));
}
} // namespace

TEST(CompListBuilderSweep, NewObject)
{
    struct Pointer
    {
        ~Pointer() { delete builder; }
        CT_CompListBuilder* builder = nullptr;
    };
    Sweep(
        report, [] { return std::make_unique<Pointer>(); },
        [](Pointer& state) {
            state.builder = new CT_CompListBuilder(CT_CompList::es_Byte, 2, 0, 1, 128, 0);
        },
        [](Pointer& state, bool failed) {
            if (!state.builder)
                return;
            EXPECT_EQ(state.builder->b_Add("car", 1), !failed);
            CT_CompList list(CT_CompList::es_Byte, 1, 0, 0, 128, 3);
            state.builder->v_Build(&list);
            EXPECT_EQ(list.n_GetCodePage(), failed ? 3U : 0U);
            state.builder->v_Set(CT_CompList::es_Byte, 2, 0, 1, 128, 0);
            EXPECT_EQ(state.builder->b_Add("car", 1), 1);
        });
}

TEST(CompListBuilderSweep, AKeyIsTakenWholeOrNotAtAll)
{
    for (const unsigned element : {1U, 2U})
        Sweep(
            report, [=] { return Many(element); }, AddAll, CheckAll);
}

TEST(CompListBuilderSweep, AnEndInsideALongerKeyIsTakenOrNot)
{
    const auto prepare = [] {
        auto state = Many();
        for (const std::string& key : state->keys) {
            const std::string longer = key.c_str() + std::string("tail");
            state->builder.b_Add(longer.c_str(), 9);
            state->list.b_Add(longer.c_str(), 9);
        }
        return state;
    };
    Sweep(report, prepare, AddAll, CheckAll);
}

TEST(CompListBuilderSweep, ReadingABlockLeavesWhatWasBuilt)
{
    for (const bool sound : {true, false}) {
        SCOPED_TRACE(sound);
        const auto prepare = [=] {
            auto state = Many();
            for (const std::string& key : state->keys)
                state->list.b_Add(key.data(), 7);
            if (!sound)
                state->list.b_Add("\x1A", 1);
            state->builder.b_Add("car", 1);
            return state;
        };
        Sweep(
            report, prepare, [](State& state) { state.builder.v_Set(&state.list); },
            [](State& state, bool failed) {
                EXPECT_EQ(state.builder.n_GetNrOfEntries(),
                          failed ? 1U : state.list.n_GetNrOfEntries());
                EXPECT_EQ(Built(state.builder) == Block(state.list), !failed);
                EXPECT_EQ(state.builder.b_Add("carts", 1), 1);
            });
    }
}

TEST(CompListBuilderSweep, BuildingLeavesTheArgumentAlone)
{
    struct Target : State
    {
        CT_CompList target{CT_CompList::es_Byte, 2, 0, 1, 128, 1252};
    };
    for (const bool sound : {true, false}) {
        SCOPED_TRACE(sound);
        const auto prepare = [=] {
            auto state = std::make_unique<Target>();
            if (!sound)
                state->list.b_Add("\x1A", 1);
            state->builder.v_Set(&state->list);
            for (const char* key : {"car", "cat", "cart", "dog"}) {
                state->builder.b_Add(key, 1);
                state->list.b_Add(key, 1);
            }
            return state;
        };
        Sweep(
            report, prepare, [](Target& state) { state.builder.v_Build(&state.target); },
            [](Target& state, bool failed) {
                EXPECT_EQ(state.target.n_GetCodePage(), failed ? 1252U : 0U);
                EXPECT_EQ(Built(state.builder), Block(state.list));
            });
    }
}

// The keys come in an order of their own, so the block is that of the same builder without a fault.
TEST(CompListBuilderSweep, BuildingByWeightLeavesTheArgumentAlone)
{
    struct Target : State
    {
        CT_CompList target{CT_CompList::es_Byte, 2, 0, 1, 128, 1252};
        std::string whole;
    };
    const auto prepare = [] {
        auto state = std::make_unique<Target>();
        state->builder.v_SetOrder(CT_CompListBuilder::bo_ByWeight);
        for (const char* key : {"dog", "car", "cat", "cart"})
            state->builder.b_Add(key, 1, 3);
        state->whole = Built(state->builder);
        return state;
    };
    Sweep(
        report, prepare, [](Target& state) { state.builder.v_Build(&state.target); },
        [](Target& state, bool failed) {
            EXPECT_EQ(state.target.n_GetCodePage(), failed ? 1252U : 0U);
            EXPECT_EQ(Built(state.builder), state.whole);
            if (!failed) {
                EXPECT_EQ(Block(state.target), state.whole);
            }
        });
}

// The first key with a weight brings the weights of all.
TEST(CompListBuilderSweep, AKeyWithAWeightIsTakenWholeOrNotAtAll)
{
    const auto prepare = [] {
        auto state = Many();
        state->builder.v_SetOrder(CT_CompListBuilder::bo_ByWeight);
        return state;
    };
    const auto addAll = [](State& state) {
        for (std::size_t at = 0; at < state.keys.size(); ++at)
            state.added[at] = state.builder.b_Add(state.keys[at].data(), 7, at % 3);
    };
    Sweep(report, prepare, addAll, [](State& state, bool failed) {
        CT_CompListBuilder whole(CT_CompList::es_Byte, 2, 0, 1, 128, 0);
        whole.v_SetOrder(CT_CompListBuilder::bo_ByWeight);
        std::size_t missed = 0;
        for (std::size_t at = 0; at < state.keys.size(); ++at) {
            missed += !state.added[at];
            if (state.added[at])
                whole.b_Add(state.keys[at].data(), 7, at % 3);
        }
        EXPECT_EQ(missed > 0, failed);
        EXPECT_TRUE(Built(state.builder) == Built(whole));
    });
}

TEST(CompListBuilderSweep, ABuilderThatCouldNotBeginTakesNoKeyThatIsCut)
{
    FailingHeap::Arm(1, FailingHeap::FROM);
    CT_CompListBuilder builder(CT_CompList::es_Long, 2, 0, 1, 128, 0);
    EXPECT_GT(FailingHeap::Disarm(), 0U);
    EXPECT_EQ(TakeFailure().code, 60006U);
    const std::string key = Key("ab", 4);
    EXPECT_EQ(builder.b_Add(key.data(), 2), 0);
    EXPECT_EQ(builder.n_GetNrOfEntries(), 0U);
    builder.v_Set(CT_CompList::es_Long, 2, 0, 1, 128, 0);
    EXPECT_EQ(builder.b_Add(key.data(), 2), 1);
}

// From the first key that is cut the builder is a list.
TEST(CompListBuilderSweep, AKeyThatIsCutIsAddedOrNot)
{
    struct Cut : State
    {
        std::string plain = std::string("abcdefgh") + std::string(4, '\0');
        std::string key = Key("ab", 4);
        int last = -1;
    };
    const auto prepare = [] {
        auto state = std::make_unique<Cut>();
        state->builder.v_Set(CT_CompList::es_Long, 2, 0, 1, 128, 0);
        state->list.v_Set(CT_CompList::es_Long, 2, 0, 1, 128, 0);
        state->builder.b_Add(state->plain.data(), 1);
        state->list.b_Add(state->plain.data(), 1);
        return state;
    };
    Sweep(
        report, prepare, [](Cut& state) { state.last = state.builder.b_Add(state.key.data(), 2); },
        [](Cut& state, bool failed) {
            EXPECT_EQ(state.last, !failed);
            if (!state.last) {
                EXPECT_EQ(state.builder.b_Add(state.key.data(), 2), 1);
            }
            EXPECT_EQ(state.list.b_Add(state.key.data(), 2), 1);
            EXPECT_EQ(Built(state.builder), Block(state.list));
        });
}
