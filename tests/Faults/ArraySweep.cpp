// tests/Faults/ArraySweep.cpp: arrays with an exhausted heap.
#include <Ostra/ARRAY/VoidArray.h>
#include <Ostra/SortedArray/VoidSortedArray.h>

#include "Faults/Sweep.h"

#include <cstring>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace
{
const SweepReport report("Ostra/Buffer/Buffer");

// Items of three bytes, so that a block's room is no whole number of them.
constexpr unsigned ITEM_SIZE = 3;

int Compare(const void* first, const void* second)
{
    return std::memcmp(first, second, ITEM_SIZE);
}

int Unsigned(const void* first, const void* second)
{
    unsigned a, b;
    std::memcpy(&a, first, sizeof a);
    std::memcpy(&b, second, sizeof b);
    return (a > b) - (a < b);
}

std::string Items(const CT_VoidArray& array)
{
    const CT_Buffer* buffer = array.pcco_GetBuffer();
    return std::string(static_cast<const char*>(buffer->qcv_Get()), buffer->n_GetUsedSize());
}

struct State
{
    CT_VoidArray array{ITEM_SIZE, 1, 0};
    CT_VoidArray source{ITEM_SIZE};
    CT_VoidArray holder{ITEM_SIZE};
};

// Six items in a block of 20 bytes, which two more bytes would fit.
const std::string before = "aaabbbcccdddeeefff";

std::unique_ptr<State> Full()
{
    auto state = std::make_unique<State>();
    CT_Buffer buffer(before.data(), static_cast<unsigned>(before.size()), 32);
    state->array.v_Set(&buffer);
    CT_Buffer numbers("111222333", 9, 32);
    state->source.v_Set(&numbers);
    return state;
}

void ExpectUsable(CT_VoidArray& array)
{
    array.v_Set(8, 0, 0);
    array.v_Insert("xyz");
    EXPECT_EQ(Items(array), "xyz");
}

// An insertion is there whole or not at all. Where the first request for room failed and the next
// one didn't, the item is there and the failure is reported all the same.
template <typename T_Operation>
void SweepInsertion(T_Operation operation, const std::string& after)
{
    Sweep(
        report, Full, [=](State& state) { operation(state); },
        [&](State& state, bool failed) {
            const std::string items = Items(state.array);
            EXPECT_TRUE(items == after || (failed && items == before)) << items;
            EXPECT_EQ(Items(state.source), "111222333");
            ExpectUsable(state.array);
        });
}
} // namespace

TEST(VoidArraySweep, NewObject)
{
    struct Pointer
    {
        ~Pointer() { delete array; }
        CT_VoidArray* array = nullptr;
    };
    Sweep(
        "Ostra/ARRAY/VoidArray", [] { return std::make_unique<Pointer>(); },
        [](Pointer& state) { state.array = new CT_VoidArray(ITEM_SIZE); },
        [](Pointer& state, bool failed) { EXPECT_EQ(state.array == nullptr, failed); });
}

TEST(VoidArraySweep, ConstructorWithASize)
{
    struct Place
    {
        ~Place()
        {
            if (array)
                array->~CT_VoidArray();
        }
        alignas(CT_VoidArray) char place[sizeof(CT_VoidArray)];
        CT_VoidArray* array = nullptr;
    };
    Sweep(
        report, [] { return std::make_unique<Place>(); },
        [](Place& state) { state.array = new (state.place) CT_VoidArray(ITEM_SIZE, 8, 5); },
        [](Place& state, bool failed) {
            EXPECT_EQ(state.array->n_GetMaxItems(), failed ? 0U : 12U);
            EXPECT_EQ(state.array->n_GetCount(), 0U);
            ExpectUsable(*state.array);
        });
}

TEST(VoidArraySweep, AnInsertionIsThereWholeOrNotAtAll)
{
    SweepInsertion([](State& state) { state.array.v_Insert("zzz"); }, before + "zzz");
    SweepInsertion([](State& state) { state.array.v_InsertAt("zzz", 2); }, "aaazzzbbbcccdddeeefff");
    SweepInsertion([](State& state) { state.array.v_Insert(&state.source, 1, 3, 2); },
                   "aaa111222333bbbcccdddeeefff");
    SweepInsertion([](State& state) { state.array.v_Append(&state.source, 2, 0xFFFFFFFF); },
                   before + "222333" + std::string(3, '\0'));
    SweepInsertion([](State& state) { state.array.v_AtInsertCopy(1, 5, 6); }, "eeefff" + before);
    SweepInsertion([](State& state) { state.array.v_Insert(&state.array, 1, 2, 2); },
                   "aaaaaabbbbbbcccdddeeefff");
}

// The growth is asked for first, then the room for the item. Only the first is refused here.
TEST(VoidArraySweep, AnItemGoesInWhereOnlyTheGrowthIsRefused)
{
    CT_VoidArray array{ITEM_SIZE, 100, 1};
    while (array.n_GetCount() < array.n_GetMaxItems())
        array.v_Insert("abc");
    const std::string full = Items(array);
    FailingHeap::Arm(1, FailingHeap::ONCE);
    array.v_Insert("zzz");
    EXPECT_EQ(FailingHeap::Disarm(), 1U);
    EXPECT_EQ(TakeFailure().code, 60006U);
    EXPECT_EQ(Items(array), full + "zzz");
}

TEST(VoidArraySweep, CopiesStopAtTheFirstThatDoesNotFit)
{
    Sweep(
        report, Full, [](State& state) { state.array.v_Insert("zzz", 9); },
        [](State& state, bool failed) {
            const std::string items = Items(state.array);
            EXPECT_EQ(items.substr(0, before.size()), before);
            EXPECT_EQ(items.size() % ITEM_SIZE, 0U);
            EXPECT_EQ(items.find_first_not_of('z', before.size()), std::string::npos);
            EXPECT_TRUE(failed || items.size() == before.size() + 27);
            ExpectUsable(state.array);
        });
}

TEST(VoidArraySweep, AnOverwritingThatDoesNotFitLeavesItemsWhole)
{
    Sweep(
        report, Full, [](State& state) { state.array.v_Replace(&state.source, 1, 3, 5); },
        [](State& state, bool failed) {
            EXPECT_EQ(Items(state.array), failed ? "aaabbbcccddd111222" : "aaabbbcccddd111222333");
            ExpectUsable(state.array);
        });
}

TEST(VoidArraySweep, AMoveThatFailsLeavesTheItemsWhereTheyWere)
{
    Sweep(
        report, Full, [](State& state) { state.array.v_AtInsertMove(1, 1, 2, &state.source); },
        [](State& state, bool failed) {
            EXPECT_EQ(Items(state.array), failed ? before : "111222" + before);
            EXPECT_EQ(Items(state.source), failed ? "111222333" : "333");
        });
}

TEST(VoidArraySweep, RoomThatCannotBeHadLeavesTheArray)
{
    Sweep(
        report, Full, [](State& state) { state.array.v_SetSize(50); },
        [](State& state, bool failed) {
            EXPECT_EQ(Items(state.array), before);
            EXPECT_EQ(state.array.n_GetMaxItems() >= 50, !failed);
        });
    Sweep(
        report, Full, [](State& state) { state.array.v_Set(8, 50, 1); },
        [](State& state, bool failed) {
            EXPECT_EQ(Items(state.array), failed ? before : "");
            EXPECT_EQ(state.array.n_GetGrowth(), 8U);
        });
}

// A block that can't be copied is written while it is shared.
TEST(VoidArraySweep, AnItemOfASharedBlockIsSetAllTheSame)
{
    Sweep(
        report,
        [] {
            auto state = Full();
            state->holder.v_Set(&state->array);
            return state;
        },
        [](State& state) { state.array.v_SetAt("zzz", 1); },
        [](State& state, bool failed) {
            EXPECT_EQ(Items(state.array).substr(0, 3), "zzz");
            EXPECT_EQ(Items(state.holder).substr(0, 3), failed ? "zzz" : "aaa");
        });
}

// ---- Sorted arrays --------------------------------------------------------------------------

TEST(VoidSortedArraySweep, NewObject)
{
    struct Pointer
    {
        ~Pointer() { delete array; }
        CT_VoidSortedArray* array = nullptr;
    };
    Sweep(
        {"Ostra/SortedArray/VoidSortedArray"}, [] { return std::make_unique<Pointer>(); },
        [](Pointer& state) { state.array = new CT_VoidSortedArray(ITEM_SIZE, Compare, 8, 0); },
        [](Pointer& state, bool failed) { EXPECT_EQ(state.array == nullptr, failed); });
}

TEST(VoidSortedArraySweep, WithoutSwapSpaceTheItemsStayAsTheyAre)
{
    struct Sorted
    {
        CT_VoidSortedArray array{ITEM_SIZE, Compare, 8, 0};
        CT_VoidArray source{ITEM_SIZE};
    };
    Sweep(
        report,
        [] {
            auto state = std::make_unique<Sorted>();
            CT_Buffer buffer("cccaaabbb", 9, 32);
            state->source.v_Set(&buffer);
            return state;
        },
        [](Sorted& state) { state.array.v_Set(&state.source); },
        [](Sorted& state, bool failed) {
            EXPECT_EQ(Items(state.source), failed ? "cccaaabbb" : "aaabbbccc");
            EXPECT_EQ(state.array.n_GetCount(), 3U);
            state.array.v_ReSort();
            EXPECT_TRUE(state.array.b_IsSorted());
        });
}

namespace
{
// Sorts the numbers, also where a part that is left behind has nowhere to wait.
void ExpectSortedWithoutWaiting(const std::vector<unsigned>& order)
{
    struct Sorted
    {
        CT_VoidSortedArray array{4, Unsigned, 8, 0};
        CT_VoidArray source{4, 8, 2000};
    };
    const auto prepare = [&order] {
        auto state = std::make_unique<Sorted>();
        for (const unsigned item : order)
            state->source.v_Insert(&item);
        return state;
    };
    for (const unsigned failing : {0U, 2U, 3U, 4U}) {
        SCOPED_TRACE(failing);
        const auto state = prepare();
        FailingHeap::Arm(failing, FailingHeap::FROM);
        state->array.v_Set(&state->source);
        EXPECT_EQ(FailingHeap::Disarm() > 0, failing > 0);
        EXPECT_FALSE(CT_ErrorManager::spco_Get()->b_IsSetError());
        EXPECT_EQ(state->array.n_GetCount(), order.size());
        EXPECT_TRUE(state->array.b_IsSorted());
    }
}
} // namespace

namespace
{
// Puts items around the order, such that two of four bytes are left behind at each step, which wait
// for the rest.
std::vector<unsigned> LeavingTwoBehind(std::vector<unsigned> order)
{
    while (order.size() < 1000) {
        const unsigned last = static_cast<unsigned>(order.size());
        order.insert(order.end(), {order[0], last + 3, last + 2});
        order[0] = last + 1;
        std::swap(order[0], order[(order.size() - 1) / 2]);
    }
    return order;
}
} // namespace

TEST(VoidSortedArraySweep, PartsThatCannotWaitAreSortedAtOnce)
{
    ExpectSortedWithoutWaiting(LeavingTwoBehind({1}));
}

// Innermost the two items lie in front of the rest.
TEST(VoidSortedArraySweep, TheSmallerPartIsSortedAtOnceWhereverItLies)
{
    std::vector<unsigned> order = {1};
    while (order.size() < 40) {
        for (unsigned& item : order)
            item += 3;
        order.insert(order.begin(), {3, 1, 2});
        std::swap(order[0], order[(order.size() - 1) / 2]);
    }
    ExpectSortedWithoutWaiting(LeavingTwoBehind(order));
}

TEST(VoidSortedArraySweep, AnInsertionIsThereWholeOrNotAtAll)
{
    Sweep(
        report, [] { return std::make_unique<CT_VoidSortedArray>(ITEM_SIZE, Compare, 8, 0); },
        [](CT_VoidSortedArray& array) {
            array.v_Insert("bbb");
            array.v_Insert("aaa");
        },
        [](CT_VoidSortedArray& array, bool failed) {
            EXPECT_TRUE(array.b_IsSorted());
            EXPECT_TRUE(failed || array.n_GetCount() == 2);
            EXPECT_EQ(array.pcco_GetArray()->pcco_GetBuffer()->n_GetUsedSize(),
                      ITEM_SIZE * array.n_GetCount());
        });
}

// An item of its own is held first, as it may move when the other goes.
TEST(VoidSortedArraySweep, AnItemIsSetToAnotherOneOfItsOwnOrStays)
{
    Sweep(
        report,
        [] {
            auto array = std::make_unique<CT_VoidSortedArray>(ITEM_SIZE, Compare, 8, 0);
            for (const char* item : {"aaa", "bbb", "ccc"})
                array->v_Insert(item);
            return array;
        },
        [](CT_VoidSortedArray& array) {
            const void* last =
                static_cast<const char*>(array.pcco_GetArray()->pcco_GetBuffer()->qcv_Get()) +
                2 * ITEM_SIZE;
            array.v_SetAt(last, 1);
        },
        [](CT_VoidSortedArray& array, bool failed) {
            std::string items;
            for (unsigned n = 1; n <= array.n_GetCount(); ++n) {
                char item[ITEM_SIZE];
                array.v_GetAt(item, n);
                items.append(item, ITEM_SIZE);
            }
            EXPECT_EQ(items, failed ? "aaabbbccc" : "bbbcccccc");
            EXPECT_TRUE(array.b_IsSorted());
        });
}
