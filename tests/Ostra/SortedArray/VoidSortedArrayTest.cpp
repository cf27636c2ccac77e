// tests/Ostra/SortedArray/VoidSortedArrayTest.cpp
#include <Ostra/SortedArray/VoidSortedArray.h>

#include <gtest/gtest.h>

#include <Support/Directory.h>
#include <Support/SmallStack.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <random>
#include <utility>
#include <vector>

namespace
{
typedef std::vector<int> Items;

int Number(const void* item)
{
    int number;
    std::memcpy(&number, item, sizeof number);
    return number;
}

int Ascending(const void* first, const void* second)
{
    return (Number(first) > Number(second)) - (Number(first) < Number(second));
}

int Descending(const void* first, const void* second)
{
    return Ascending(second, first);
}

// Compares by the tens alone, so that different items are equal.
int Tens(const void* first, const void* second)
{
    return Number(first) / 10 - Number(second) / 10;
}

// The calls of a compare function, in order.
std::vector<std::pair<int, int>> calls;

int Recorded(const void* first, const void* second)
{
    calls.push_back(std::make_pair(Number(first), Number(second)));
    return Tens(first, second);
}

void Fill(CT_VoidArray& array, const Items& items)
{
    for (int item : items)
        array.v_Insert(&item);
}

void Fill(CT_VoidSortedArray& array, const Items& items)
{
    for (int item : items)
        array.v_Insert(&item);
}

template <class Array>
Items Read(const Array& array)
{
    Items items(array.n_GetCount());
    for (unsigned index = 1; index <= items.size(); ++index)
        array.v_GetAt(&items[index - 1], index);
    return items;
}

// ---- The model: searching, inserting and sorting as told, on a vector ----------------------

typedef std::vector<std::pair<int, int>> Calls;

int Ask(Calls& log, int first, int second)
{
    log.push_back(std::make_pair(first, second));
    return first / 10 - second / 10;
}

unsigned ModelFind(const Items& items, int key, Calls& log)
{
    unsigned low = 1, high = static_cast<unsigned>(items.size());
    while (!items.empty() && low <= high) {
        const unsigned middle = (low + high) / 2;
        const int order = Ask(log, items[middle - 1], key);
        if (order == 0)
            return middle;
        if (order < 0)
            low = middle + 1;
        else
            high = middle - 1;
    }
    return 0;
}

void ModelInsert(Items& items, int item, Calls& log)
{
    unsigned low = 1, high = static_cast<unsigned>(items.size());
    while (low <= high) {
        const unsigned middle = (low + high) / 2;
        const int order = Ask(log, items[middle - 1], item);
        if (order == 0)
            break;
        (order < 0 ? low : high) = order < 0 ? middle + 1 : middle - 1;
    }
    items.insert(items.begin() + (low - 1), item);
}

void ModelSort(Items& items, unsigned left, unsigned right, Calls& log)
{
    const auto swap = [&items](unsigned first, unsigned second) {
        std::swap(items[first - 1], items[second - 1]);
    };
    do {
        swap(left, left + (right - left) / 2);
        unsigned last = left;
        for (unsigned index = left + 1; index <= right; ++index) {
            if (Ask(log, items[left - 1], items[index - 1]) > 0)
                swap(++last, index);
        }
        swap(left, last);
        if (static_cast<int>(left) < static_cast<int>(last) - 1)
            ModelSort(items, left, last - 1, log);
        left = last + 1;
    } while (right > left);
}
} // namespace

// ---- Construction -------------------------------------------------------------------------

TEST(VoidSortedArray, ANewArrayIsEmptyWithTheRoomAsked)
{
    CT_VoidSortedArray array(4, Ascending, 16, 3);
    EXPECT_EQ(array.n_GetCount(), 0u);
    EXPECT_EQ(array.n_GetItemSize(), 4u);
    EXPECT_EQ(array.n_GetGrowth(), 16u);
    EXPECT_EQ(array.n_GetMaxItems(), (64 - 12) / 4u);
    EXPECT_EQ(array.pf_GetCompare(), Ascending);
    EXPECT_TRUE(array.b_IsSorted());
    EXPECT_EQ(array.pcco_GetArray()->n_GetCount(), 0u);
}

TEST(VoidSortedArray, ACopySharesTheBlockAndTheOrder)
{
    CT_VoidSortedArray first(4, Descending, 8, 0);
    Fill(first, {1, 2, 3});
    std::unique_ptr<CT_VoidSortedArray> second(new CT_VoidSortedArray(&first));
    EXPECT_EQ(second->pf_GetCompare(), Descending);
    EXPECT_EQ(second->pcco_GetArray()->pcco_GetBuffer()->qcv_Get(),
              first.pcco_GetArray()->pcco_GetBuffer()->qcv_Get());
    second->v_RemoveAt(1);
    EXPECT_EQ(Read(*second), (Items{2, 1}));
    EXPECT_EQ(Read(first), (Items{3, 2, 1}));
}

TEST(VoidSortedArray, MadeFromAnArrayItSortsTheSourceToo)
{
    CT_VoidArray source(4);
    Fill(source, {3, 1, 2});
    CT_VoidSortedArray array(&source, Ascending);
    EXPECT_EQ(Read(source), (Items{1, 2, 3}));
    EXPECT_EQ(Read(array), (Items{1, 2, 3}));
    EXPECT_EQ(source.pcco_GetBuffer()->n_GetUseCount(), 2u);
}

TEST(VoidSortedArray, SetFromAnArraySortsTheSourceToo)
{
    CT_VoidArray source(4);
    Fill(source, {3, 1, 2});
    CT_VoidSortedArray array(4, Descending, 8, 0);
    Fill(array, {9});
    array.v_Set(&source);
    EXPECT_EQ(Read(source), (Items{3, 2, 1}));
    EXPECT_EQ(Read(array), (Items{3, 2, 1}));
}

TEST(VoidSortedArray, SetFromASortedArrayKeepsTheOwnOrderAndSortsNothing)
{
    CT_VoidSortedArray source(4, Descending, 8, 0), array(4, Ascending, 8, 0);
    Fill(source, {1, 2, 3});
    Fill(array, {5});
    array.v_Set(&source);
    EXPECT_EQ(array.pf_GetCompare(), Ascending);
    EXPECT_EQ(Read(array), (Items{3, 2, 1}));
    EXPECT_FALSE(array.b_IsSorted());
    array.v_Set(&array);
    EXPECT_EQ(array.n_GetCount(), 0u);
}

TEST(VoidSortedArray, SetEmptiesAsInAnArray)
{
    CT_VoidSortedArray array(4, Ascending, 8, 0);
    Fill(array, {1, 2});
    const void* block = array.pcco_GetArray()->pcco_GetBuffer()->qcv_Get();
    array.v_Set(5, 1, 1);
    EXPECT_EQ(array.n_GetCount(), 0u);
    EXPECT_EQ(array.n_GetGrowth(), 5u);
    EXPECT_EQ(array.pcco_GetArray()->pcco_GetBuffer()->qcv_Get(), block);
    array.v_Set(8, 0, 0);
    EXPECT_EQ(array.n_GetMaxItems(), 0u);
    array.v_SetSize(10);
    array.v_SetGrowth(3);
    EXPECT_GE(array.n_GetMaxItems(), 10u);
    EXPECT_EQ(array.n_GetGrowth(), 3u);
}

// ---- Search and comparison ----------------------------------------------------------------

TEST(VoidSortedArray, FindGivesZeroForWhatIsNotThere)
{
    CT_VoidSortedArray array(4, Ascending, 8, 0);
    int key = 4;
    EXPECT_EQ(array.n_Find(&key), 0u);
    Fill(array, {5, 1, 3});
    EXPECT_EQ(array.n_Find(&key), 0u);
    for (int index = 1; index <= 3; ++index) {
        key = 2 * index - 1;
        EXPECT_EQ(array.n_Find(&key), static_cast<unsigned>(index));
    }
}

TEST(VoidSortedArray, OfEqualItemsTheHalvingsFirstIsFound)
{
    CT_VoidArray source(4);
    Fill(source, {10, 20, 21, 22, 23, 30, 40});
    CT_VoidSortedArray array(4, Tens, 8, 0);
    array.v_Set(&source);
    const int key = 29;
    EXPECT_EQ(array.n_Find(&key), 4u);
}

TEST(VoidSortedArray, TheCompareFunctionGetsTheItemFirstAndTheKeySecond)
{
    CT_VoidSortedArray array(4, Recorded, 8, 0);
    calls.clear();
    Fill(array, {10, 20, 30});
    EXPECT_EQ(calls, (Calls{{10, 20}, {10, 30}, {20, 30}}));
    calls.clear();
    const int key = 31;
    EXPECT_EQ(array.n_Find(&key), 3u);
    EXPECT_EQ(calls, (Calls{{20, 31}, {30, 31}}));
    calls.clear();
    EXPECT_TRUE(array.b_IsSorted());
    EXPECT_EQ(calls, (Calls{{10, 20}, {20, 30}}));
}

TEST(VoidSortedArray, EqualityIsThatOfTheCompareFunction)
{
    CT_VoidSortedArray first(4, Tens, 8, 0), second(4, Tens, 8, 0), other(4, Ascending, 8, 0);
    CT_VoidSortedArray bytes(1, Tens, 8, 0);
    EXPECT_TRUE(first.b_IsEqual(&second));
    EXPECT_FALSE(first.b_IsEqual(&other));
    EXPECT_FALSE(first.b_IsEqual(&bytes));
    Fill(first, {11, 21});
    EXPECT_FALSE(first.b_IsEqual(&second));
    Fill(second, {12, 22});
    EXPECT_TRUE(first.b_IsEqual(&second));
    Fill(other, {11, 21});
    EXPECT_FALSE(first.b_IsEqual(&other));
    const int item = 35;
    second.v_SetAt(&item, 2);
    EXPECT_FALSE(first.b_IsEqual(&second));
}

TEST(VoidSortedArray, EqualNeighboursAreInOrder)
{
    CT_VoidArray source(4);
    Fill(source, {1, 2, 2, 3});
    CT_VoidSortedArray array(&source, Ascending);
    EXPECT_TRUE(array.b_IsSorted());
    CT_VoidSortedArray one(4, Ascending, 8, 0);
    Fill(one, {7});
    EXPECT_TRUE(one.b_IsSorted());
}

// ---- Change -------------------------------------------------------------------------------

TEST(VoidSortedArray, DifferentItemsAreInsertedInOrder)
{
    CT_VoidSortedArray array(4, Ascending, 2, 0);
    Fill(array, {5, 1, 9, 7, 3});
    EXPECT_EQ(Read(array), (Items{1, 3, 5, 7, 9}));
}

TEST(VoidSortedArray, AnEqualItemGoesBeforeTheLowerBoundReached)
{
    CT_VoidArray source(4);
    Fill(source, {1, 2, 3, 3, 4, 5, 6});
    CT_VoidSortedArray array(&source, Ascending);
    const int three = 3;
    array.v_Insert(&three);
    EXPECT_EQ(Read(array), (Items{3, 1, 2, 3, 3, 4, 5, 6}));
    EXPECT_FALSE(array.b_IsSorted());
    array.v_ReSort();
    EXPECT_EQ(Read(array), (Items{1, 2, 3, 3, 3, 4, 5, 6}));
    EXPECT_TRUE(array.b_IsSorted());
}

TEST(VoidSortedArray, SetAtMayMoveItems)
{
    CT_VoidSortedArray array(4, Ascending, 8, 0);
    Fill(array, {1, 3, 5, 7});
    const int six = 6;
    array.v_SetAt(&six, 1);
    EXPECT_EQ(Read(array), (Items{3, 5, 6, 7}));
}

TEST(VoidSortedArray, RemoveAtCopiesTheItemOutFirst)
{
    CT_VoidSortedArray array(4, Ascending, 8, 0);
    Fill(array, {1, 3, 5});
    int item = 0;
    array.v_RemoveAt(&item, 2);
    EXPECT_EQ(item, 3);
    EXPECT_EQ(Read(array), (Items{1, 5}));
    array.v_RemoveAt(1);
    EXPECT_EQ(Read(array), (Items{5}));
}

TEST(VoidSortedArray, AnInsertIntoASharedBlockLeavesTheOtherHolder)
{
    CT_VoidSortedArray first(4, Ascending, 8, 0);
    Fill(first, {1, 3});
    CT_VoidSortedArray second(&first);
    const int two = 2;
    second.v_Insert(&two);
    EXPECT_EQ(Read(first), (Items{1, 3}));
    EXPECT_EQ(Read(second), (Items{1, 2, 3}));
}

TEST(VoidSortedArray, ReSortTakesOneItemOfSwapSpaceAndOnlyFromTwoItemsOn)
{
    CT_VoidSortedArray array(4, Ascending, 8, 4);
    const unsigned before = CT_Buffer::sn_GetAllocCount();
    array.v_ReSort();
    Fill(array, {1});
    array.v_ReSort();
    EXPECT_EQ(CT_Buffer::sn_GetAllocCount(), before);
    Fill(array, {2});
    array.v_ReSort();
    EXPECT_EQ(CT_Buffer::sn_GetAllocCount(), before + 1);
}

TEST(VoidSortedArray, ItemsOfAnySizeAreSorted)
{
    for (unsigned size : {4u, 5u, 12u, 40u}) {
        SCOPED_TRACE(size);
        CT_VoidArray source(size);
        for (int number : {5, 2, 4, 1, 3}) {
            std::vector<char> item(size, static_cast<char>('a' + number));
            std::memcpy(item.data(), &number, sizeof number);
            source.v_Insert(item.data());
        }
        CT_VoidSortedArray array(&source, Ascending);
        for (int number = 1; number <= 5; ++number) {
            std::vector<char> item(size);
            array.v_GetAt(item.data(), static_cast<unsigned>(number));
            EXPECT_EQ(Number(item.data()), number);
            EXPECT_EQ(size == 4 ? 'a' + number : item.back(), 'a' + number);
        }
    }
}

// ---- Model --------------------------------------------------------------------------------

namespace
{
// An item of any size: the number, and bytes that go with it.
std::vector<char> Item(int number, unsigned size)
{
    std::vector<char> item(size, static_cast<char>(number * 7));
    std::memcpy(item.data(), &number, sizeof number);
    return item;
}

Items ReadItems(const CT_VoidSortedArray& array)
{
    Items items;
    std::vector<char> item(array.n_GetItemSize());
    for (unsigned index = 1; index <= array.n_GetCount(); ++index) {
        array.v_GetAt(item.data(), index);
        items.push_back(Number(item.data()));
        EXPECT_EQ(item, Item(items.back(), array.n_GetItemSize()));
    }
    return items;
}

void CompareWithModel(unsigned size, int values, std::mt19937& random)
{
    CT_VoidSortedArray array(size, Recorded, 1 + random() % 8, 0);
    Items model;
    const unsigned count = random() % 60;
    for (unsigned step = 0; step < count; ++step) {
        const int item = static_cast<int>(random() % values);
        Calls log;
        calls.clear();
        array.v_Insert(Item(item, size).data());
        ModelInsert(model, item, log);
        ASSERT_EQ(ReadItems(array), model);
        ASSERT_EQ(calls, log);

        const int key = static_cast<int>(random() % values);
        log.clear();
        calls.clear();
        ASSERT_EQ(array.n_Find(&key), ModelFind(model, key, log));
        ASSERT_EQ(calls, log);
    }
    Calls log;
    calls.clear();
    array.v_ReSort();
    if (model.size() > 1)
        ModelSort(model, 1, static_cast<unsigned>(model.size()), log);
    ASSERT_EQ(ReadItems(array), model);
    ASSERT_EQ(calls, log);
    ASSERT_TRUE(array.b_IsSorted());
}
} // namespace

TEST(VoidSortedArray, SearchInsertAndSortTakeTheStepsOfTheModel)
{
    const unsigned seed = Seed(19970101);
    SCOPED_TRACE(testing::Message() << "OSTRA_SEED=" << seed);
    std::mt19937 random(seed);
    for (unsigned size : {4u, 8u, 13u}) {
        SCOPED_TRACE(size);
        for (int round = 0; round < 80; ++round) {
            CompareWithModel(size, round % 2 ? 50 : 1000, random);
            if (testing::Test::HasFatalFailure())
                return;
        }
    }
}

// Each key from below the first item to above the last, for each count.
TEST(VoidSortedArray, SearchTakesTheStepsOfTheModelForEachCountAndKey)
{
    Items model;
    CT_VoidSortedArray array(4, Recorded, 8, 0);
    for (int count = 0; count <= 70; ++count) {
        for (int key = -5; key <= 10 * count + 5; key += 5) {
            Calls log;
            calls.clear();
            ASSERT_EQ(array.n_Find(&key), ModelFind(model, key, log)) << count << " " << key;
            ASSERT_EQ(calls, log) << count << " " << key;
        }
        const int next = 10 * count;
        array.v_Insert(&next);
        model.push_back(next);
        ASSERT_EQ(Read(array), model);
    }
}

// ---- Orders that cost most ----------------------------------------------------------------

namespace
{
// An order in which each step of the sort finds all items of its part below the middle one but
// `behind`: made from its end, by taking back the step for the largest part last.
Items KillerOrder(int count, int behind)
{
    Items items = {1};
    while (static_cast<int>(items.size()) < count) {
        const int last = static_cast<int>(items.size()); // place of the middle item after the step
        Items larger = items;
        larger.push_back(items[0]);
        larger[0] = last + 1;
        for (int item = 1; item <= behind; ++item)
            larger.push_back(last + 1 + item);
        std::swap(larger[0], larger[(larger.size() - 1) / 2]);
        items = larger;
    }
    for (int& item : items)
        item *= 10; // the calls are recorded by the tens
    return items;
}

unsigned Sorted(const Items& items)
{
    unsigned sorted = 0;
    OnSmallStack([&] {
        CT_VoidSortedArray array(4, Ascending, 8, 0);
        CT_VoidArray source(4);
        Fill(source, items);
        array.v_Set(&source);
        sorted = array.b_IsSorted() ? array.n_GetCount() : 0;
    });
    return sorted;
}
} // namespace

TEST(VoidSortedArray, NoOrderTakesMuchStack)
{
    for (int behind : {0, 1, 2, 3}) {
        SCOPED_TRACE(behind);
        const Items items = KillerOrder(12000, behind);
        EXPECT_EQ(Sorted(items), items.size());
    }
}

TEST(VoidSortedArray, AKillerOrderIsSortedInTheStepsOfTheModel)
{
    for (int behind : {0, 1, 2, 5, 40}) {
        SCOPED_TRACE(behind);
        Items model = KillerOrder(400, behind);
        CT_VoidArray source(4);
        Fill(source, model);
        Calls log;
        ModelSort(model, 1, static_cast<unsigned>(model.size()), log);
        calls.clear();
        CT_VoidSortedArray array(&source, Recorded);
        EXPECT_EQ(Read(array), model);
        EXPECT_EQ(calls, log);
        EXPECT_TRUE(array.b_IsSorted());
    }
}

TEST(VoidSortedArray, SetAtTakesAnOwnItemAsItStandsBefore)
{
    for (unsigned from : {1u, 2u, 3u, 4u, 5u})
        for (unsigned at : {1u, 2u, 3u, 4u, 5u}) {
            SCOPED_TRACE(testing::Message() << "item " << from << " at " << at);
            Items model = {10, 20, 30, 40, 50};
            CT_VoidArray source(4);
            Fill(source, model);
            CT_VoidSortedArray array(&source, Ascending);
            const void* data = array.pcco_GetArray()->pcco_GetBuffer()->qcv_Get();
            const int item = model[from - 1];
            array.v_SetAt(static_cast<const char*>(data) + (from - 1) * 4, at);
            CT_VoidSortedArray expected(&source, Ascending);
            expected.v_SetAt(&item, at);
            EXPECT_EQ(Read(array), Read(expected));
        }
}
