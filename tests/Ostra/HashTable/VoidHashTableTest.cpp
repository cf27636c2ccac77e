// tests/Ostra/HashTable/VoidHashTableTest.cpp
#include "Ostra/HashTable/HashSupport.h"

#include <Ostra/String/Compare.h>
#include <Ostra/String/HashFunction.h>

#include <string>
#include <utility>

namespace
{
// The calls of a hash and a compare function, in order.
std::vector<std::pair<unsigned, unsigned>> hash_calls, compare_calls;

unsigned RecordedHash(const void* key, unsigned table_size)
{
    hash_calls.emplace_back(Number(key), table_size);
    return Number(key) % table_size + 1;
}

int RecordedCompare(const void* first, const void* second)
{
    compare_calls.emplace_back(Number(first), Number(second));
    return CompareNumbers(first, second);
}

// Keys of two numbers.
unsigned HashPair(const void* key, unsigned table_size)
{
    return (Number(key) + Number(static_cast<const char*>(key) + 4)) % table_size + 1;
}

int ComparePairs(const void* first, const void* second)
{
    return std::memcmp(first, second, 8);
}

typedef std::vector<std::pair<unsigned, unsigned>> Calls;

Calls Take(Calls& calls)
{
    return std::exchange(calls, Calls());
}

void ExpectNumbers(const CT_VoidHashTable& table, unsigned size, unsigned count,
                   unsigned collisions)
{
    EXPECT_EQ(table.n_GetTableSize(), size);
    EXPECT_EQ(table.n_GetCount(), count);
    EXPECT_EQ(table.n_GetCollisions(), collisions);
}
} // namespace

// ---- Construction -------------------------------------------------------------------------

TEST(VoidHashTable, ANewTableHasTheBucketsAskedBePrimeOrNot)
{
    for (unsigned size : {0u, 1u, 4u, 7u, 100u, 1000u}) {
        const CT_VoidHashTable table(5, 3, CT_VoidHashTable::sn_HashInteger, CompareNumbers, size);
        ExpectNumbers(table, size, 0, 0);
        EXPECT_EQ(table.n_GetDataSize(), 5u);
        EXPECT_EQ(table.n_GetKeySize(), 3u);
        for (unsigned bucket = 0; bucket <= size + 1; ++bucket)
            EXPECT_EQ(table.pso_GetAt(bucket), nullptr);
    }
}

TEST(VoidHashTable, LivesOnTheHeap)
{
    CT_VoidHashTable* table =
        new CT_VoidHashTable(4, 4, CT_VoidHashTable::sn_HashInteger, CompareNumbers, 7);
    const unsigned key = 3, data = 4;
    EXPECT_EQ(table->b_Insert(&key, &data), 0);
    EXPECT_EQ(table->n_GetCount(), 1u);
    delete table;
}

TEST(VoidHashTable, ACopyInsertsTheItemsInTheOrderOfAWalk)
{
    const Table source(20, {1, 21, 41, 2, 22, 5});
    ASSERT_EQ(Chains(source), "2:41,21,1 3:22,2 6:5");
    CT_VoidHashTable copy(&source);
    ExpectNumbers(copy, 20, 6, 3);
    EXPECT_EQ(copy.n_GetKeySize(), 4u);
    EXPECT_EQ(copy.n_GetDataSize(), 4u);
    EXPECT_EQ(Chains(copy), "2:1,21,41 3:2,22 6:5");
    const unsigned key = 21;
    unsigned data = 0;
    EXPECT_EQ(copy.b_Remove(&key, &data), 1);
    EXPECT_EQ(data, 1021u);
    EXPECT_EQ(Chains(source), "2:41,21,1 3:22,2 6:5");
}

TEST(VoidHashTable, ACopyTakesTheFunctions)
{
    CT_VoidHashTable source(4, 4, RecordedHash, RecordedCompare, 7);
    const unsigned key = 3, data = 0;
    source.b_Insert(&key, &data);
    Take(hash_calls);
    Take(compare_calls);
    CT_VoidHashTable copy(&source);
    EXPECT_EQ(Take(hash_calls), (Calls{{3, 7}}));
    EXPECT_EQ(copy.b_Get(&key, nullptr), 1);
    EXPECT_EQ(Take(compare_calls), (Calls{{3, 3}}));
}

TEST(VoidHashTable, SettingASizeEmptiesTheTable)
{
    Table table(7, {1, 2, 8});
    table.v_Set(12);
    ExpectNumbers(table, 12, 0, 0);
    EXPECT_EQ(table.Has(1), 0);
    table.v_Set(0u);
    ExpectNumbers(table, 0, 0, 0);
}

TEST(VoidHashTable, SettingToATableKeepsOwnSizesAndFunctions)
{
    CT_VoidHashTable source(8, 8, CT_VoidHashTable::sn_HashInteger, CompareNumbers, 11);
    const unsigned key[] = {3, 77}, data[] = {5, 88};
    source.b_Insert(key, data);
    CT_VoidHashTable table(4, 4, RecordedHash, RecordedCompare, 7);
    table.b_Insert(&data[1], &data[1]);
    Take(hash_calls);
    table.v_Set(&source);
    ExpectNumbers(table, 11, 1, 0);
    EXPECT_EQ(table.n_GetKeySize(), 4u);
    EXPECT_EQ(table.n_GetDataSize(), 4u);
    EXPECT_EQ(Take(hash_calls), (Calls{{3, 11}}));
    unsigned out = 0;
    EXPECT_EQ(table.b_Get(key, &out), 1);
    EXPECT_EQ(out, 5u);
    Take(hash_calls);
    Take(compare_calls);
}

TEST(VoidHashTable, ShorterKeysAndDataComeWithZeros)
{
    const auto find = [](const CT_VoidHashTable& table, unsigned first, unsigned second) {
        const unsigned key[] = {first, second};
        unsigned data[] = {0xEEEEEEEE, 0xEEEEEEEE};
        EXPECT_EQ(table.b_Get(key, data), 1);
        return std::vector<unsigned>(data, data + table.n_GetDataSize() / 4);
    };
    const Table source(7, {1, 2});
    CT_VoidHashTable keys(4, 8, HashPair, ComparePairs, 5);
    CT_VoidHashTable data(8, 4, CT_VoidHashTable::sn_HashInteger, CompareNumbers, 5);
    keys.v_Set(&source);
    data.v_Set(&source);
    ExpectNumbers(keys, 7, 2, keys.n_GetCollisions());
    ExpectNumbers(data, 7, 2, 0);
    EXPECT_EQ(find(keys, 1, 0), (Numbers{1001}));
    EXPECT_EQ(find(keys, 2, 0), (Numbers{1002}));
    EXPECT_EQ(find(data, 1, 0), (Numbers{1001, 0}));
    EXPECT_EQ(find(data, 2, 0), (Numbers{1002, 0}));
}

TEST(VoidHashTable, SetToItselfItStays)
{
    Table table(9, {1, 10, 2, 3});
    const std::string chains = Chains(table);
    table.v_Set(&table);
    ExpectNumbers(table, 9, 4, 1);
    EXPECT_EQ(Chains(table), chains);
    EXPECT_EQ(table.Get(10), 1010u);
    EXPECT_EQ(table.Insert(1, 1), 1);
}

// A copy of a table whose bucket lost its heads has fewer collisions than its source.
TEST(VoidHashTable, ACopyCountsItsOwnCollisions)
{
    Table source(20, {1, 21, 2, 22});
    source.Remove(21);
    source.Remove(22);
    ExpectNumbers(source, 20, 2, 2);
    const CT_VoidHashTable copy(&source);
    ExpectNumbers(copy, 20, 2, 0);
}

// ---- Insertion and search -----------------------------------------------------------------

TEST(VoidHashTable, InsertingTellsWhetherTheKeyWasThere)
{
    Table table(7);
    EXPECT_EQ(table.Insert(3, 30), 0);
    EXPECT_EQ(table.Insert(4, 40), 0);
    EXPECT_EQ(table.Insert(3, 31), 1);
    ExpectNumbers(table, 7, 2, 0);
    EXPECT_EQ(table.Get(3), 31u);
    EXPECT_EQ(table.Get(4), 40u);
}

TEST(VoidHashTable, NewItemsStandFirstInTheirBucket)
{
    const Table table(20, {3, 23, 43});
    EXPECT_EQ(Chains(table), "4:43,23,3");
    ExpectNumbers(table, 20, 3, 2);
}

TEST(VoidHashTable, NewDataDoesNotMoveAnItem)
{
    Table table(20, {3, 23, 43});
    EXPECT_EQ(table.Insert(3, 9), 1);
    EXPECT_EQ(Chains(table), "4:43,23,3");
    ExpectNumbers(table, 20, 3, 2);
}

TEST(VoidHashTable, AbsentKeysClearTheData)
{
    Table table(7, {3});
    const unsigned absent = 10;
    unsigned data = 0xEEEEEEEE;
    EXPECT_EQ(table.b_Get(&absent, &data), 0);
    EXPECT_EQ(data, 0u);
    data = 0xEEEEEEEE;
    EXPECT_EQ(table.b_Remove(&absent, &data), 0);
    EXPECT_EQ(data, 0u);
    EXPECT_EQ(table.b_Get(&absent, nullptr), 0);
    EXPECT_EQ(table.b_Remove(&absent, nullptr), 0);
    ExpectNumbers(table, 7, 1, 0);
}

TEST(VoidHashTable, TheStoredKeyIsComparedFirst)
{
    hash_calls.clear();
    compare_calls.clear();
    CT_VoidHashTable table(4, 4, RecordedHash, RecordedCompare, 20);
    for (unsigned key : {1u, 21u, 41u})
        table.b_Insert(&key, &key);
    EXPECT_EQ(Take(hash_calls), (Calls{{1, 20}, {21, 20}, {41, 20}}));
    EXPECT_EQ(Take(compare_calls), (Calls{{1, 21}, {21, 41}, {1, 41}}));
    const unsigned key = 1, absent = 61;
    table.b_Get(&key, nullptr);
    EXPECT_EQ(Take(compare_calls), (Calls{{41, 1}, {21, 1}, {1, 1}}));
    table.b_Get(&absent, nullptr);
    EXPECT_EQ(Take(compare_calls), (Calls{{41, 61}, {21, 61}, {1, 61}}));
    table.b_Remove(&key, nullptr);
    EXPECT_EQ(Take(compare_calls), (Calls{{41, 1}, {21, 1}, {1, 1}}));
    EXPECT_EQ(Take(hash_calls), (Calls{{1, 20}, {61, 20}, {1, 20}}));
}

TEST(VoidHashTable, ATableWithoutBucketsHasNothing)
{
    hash_calls.clear();
    compare_calls.clear();
    CT_VoidHashTable table(4, 4, RecordedHash, RecordedCompare, 0);
    const unsigned key = 3;
    unsigned data = 0xEEEEEEEE;
    EXPECT_EQ(table.b_Get(&key, &data), 0);
    EXPECT_EQ(data, 0u);
    data = 0xEEEEEEEE;
    EXPECT_EQ(table.b_Remove(&key, &data), 0);
    EXPECT_EQ(data, 0u);
    EXPECT_EQ(table.b_Get(&key, nullptr), 0);
    EXPECT_EQ(Take(hash_calls), Calls());
    EXPECT_EQ(Take(compare_calls), Calls());
}

unsigned asked_size = 99;
unsigned OneAlways(const void*, unsigned table_size)
{
    asked_size = table_size;
    return 1;
}

TEST(VoidHashTable, WithoutBucketsAnInsertionAsksTheHashAndIsRefused)
{
    CT_VoidHashTable table(4, 4, OneAlways, CompareNumbers, 0);
    const unsigned key = 3;
    EXPECT_EQ(table.b_Insert(&key, &key), 0);
    EXPECT_EQ(asked_size, 0u);
    ExpectNumbers(table, 0, 0, 0);
    Table integers(0);
    EXPECT_EQ(integers.Insert(3, 4), 0);
    ExpectNumbers(integers, 0, 0, 0);
}

unsigned answered;
unsigned Answer(const void*, unsigned)
{
    return answered;
}

TEST(VoidHashTable, AKeyWhoseHashIsNoBucketIsNotThere)
{
    CT_VoidHashTable table(4, 4, Answer, CompareNumbers, 7);
    const unsigned key = 3;
    for (unsigned wrong : {0u, 8u, 0x20000001u, 0xFFFFFFFFu}) {
        answered = wrong;
        EXPECT_EQ(table.b_Insert(&key, &key), 0);
        EXPECT_EQ(table.b_Get(&key, nullptr), 0);
        EXPECT_EQ(table.b_Remove(&key, nullptr), 0);
        ExpectNumbers(table, 7, 0, 0);
    }
    answered = 7;
    EXPECT_EQ(table.b_Insert(&key, &key), 0);
    ExpectNumbers(table, 7, 1, 0);
    answered = 0;
    table.v_Resize(20);
    ExpectNumbers(table, 20, 0, 0);
}

// ---- Removal ------------------------------------------------------------------------------

TEST(VoidHashTable, RemovingHandsTheDataOut)
{
    Table table(7, {3, 4});
    const unsigned key = 3;
    unsigned data = 0;
    EXPECT_EQ(table.b_Remove(&key, &data), 1);
    EXPECT_EQ(data, 1003u);
    EXPECT_EQ(table.Remove(3), 0);
    EXPECT_EQ(table.Remove(4), 1);
    ExpectNumbers(table, 7, 0, 0);
}

TEST(VoidHashTable, RemovingTheHeadOfABucketLeavesTheCollisions)
{
    Table table(20, {3, 23});
    ExpectNumbers(table, 20, 2, 1);
    EXPECT_EQ(table.Remove(23), 1);
    ExpectNumbers(table, 20, 1, 1);
    EXPECT_EQ(table.Remove(3), 1);
    ExpectNumbers(table, 20, 0, 1);
}

TEST(VoidHashTable, RemovingTheSecondOfABucketLowersTheCollisions)
{
    Table table(20, {3, 23});
    EXPECT_EQ(table.Remove(3), 1);
    ExpectNumbers(table, 20, 1, 0);
    EXPECT_EQ(Chains(table), "4:23");
}

TEST(VoidHashTable, OnlyAResizeMakesTheCollisionsTrue)
{
    Table table(20, {3, 23, 43, 4});
    table.Remove(43);
    table.Remove(23);
    ExpectNumbers(table, 20, 2, 2);
    table.v_Resize(0);
    ExpectNumbers(table, 20, 2, 0);
}

TEST(VoidHashTable, RemovesAnItemOfABucket)
{
    Table table(20, {3, 23, 43});
    CT_VoidHashTable::st_HashItem* const head = table.pso_GetAt(4);
    auto* const second = const_cast<CT_VoidHashTable::st_HashItem*>(head->pcso_GetFollowing());
    table.v_RemoveAt(4, second);
    EXPECT_EQ(Chains(table), "4:43,3");
    ExpectNumbers(table, 20, 2, 1);
    table.v_RemoveAt(4, head);
    EXPECT_EQ(Chains(table), "4:3");
    ExpectNumbers(table, 20, 1, 1);
}

TEST(VoidHashTable, AnItemThatIsNotInTheBucketIsNotRemoved)
{
    Table table(20, {3, 4});
    CT_VoidHashTable::st_HashItem* const item = table.pso_GetAt(4);
    for (unsigned bucket : {0u, 1u, 5u, 20u, 21u, 0xFFFFFFFFu})
        table.v_RemoveAt(bucket, item);
    table.v_RemoveAt(4, nullptr);
    ExpectNumbers(table, 20, 2, 0);
}

// ---- Growth -------------------------------------------------------------------------------

TEST(VoidHashTable, SevenBucketsGrowToSeventeenOnTheSecondCollision)
{
    Table table(7, {1, 8});
    ExpectNumbers(table, 7, 2, 1);
    table.Insert(15, 0);
    ExpectNumbers(table, 17, 3, 0);
    EXPECT_EQ(Chains(table), "2:1 9:8 16:15");
}

TEST(VoidHashTable, AForcedSizeIsTakenWhenItsQuarterIsAboveTheCollisions)
{
    const struct
    {
        unsigned collisions, asked, size;
    } rows[] = {{0, 100, 100}, {24, 100, 100}, {25, 100, 211}, {25, 104, 104}, {25, 103, 211}};
    for (const auto& row : rows) {
        SCOPED_TRACE(std::to_string(row.asked) + " with " + std::to_string(row.collisions));
        Table table(101);
        table.Insert(50, 0);
        for (unsigned n = 0; n < row.collisions; ++n) {
            table.Insert(n, 0);
            table.Insert(n + 101, 0);
        }
        ExpectNumbers(table, 101, 2 * row.collisions + 1, row.collisions);
        table.v_Resize(row.asked);
        EXPECT_EQ(table.n_GetTableSize(), row.size);
        EXPECT_EQ(table.n_GetCount(), 2 * row.collisions + 1);
    }
}

TEST(VoidHashTable, AResizeReversesChains)
{
    Table table(20, {1, 21, 41});
    ASSERT_EQ(Chains(table), "2:41,21,1");
    table.v_Resize(0);
    EXPECT_EQ(Chains(table), "2:1,21,41");
    ExpectNumbers(table, 20, 3, 2);
    table.v_Resize(10);
    EXPECT_EQ(table.n_GetTableSize(), 23u) << "10 >> 2 is not above 2 collisions";
    EXPECT_EQ(Chains(table), "2:1 19:41 22:21");
}

TEST(VoidHashTable, AResizeWalksTheBucketsFromTheFirstOn)
{
    CT_VoidHashTable table(4, 4, RecordedHash, RecordedCompare, 12);
    for (unsigned key : {5u, 2u, 14u, 0u})
        table.b_Insert(&key, &key);
    Take(hash_calls);
    Take(compare_calls);
    table.v_Resize(8);
    EXPECT_EQ(Take(hash_calls), (Calls{{0, 8}, {14, 8}, {2, 8}, {5, 8}}));
    EXPECT_EQ(Take(compare_calls), Calls());
    EXPECT_EQ(Chains(table), "1:0 3:2 6:5 7:14");
}

TEST(VoidHashTable, ASmallerSizeIsTakenToo)
{
    Table table(100, {1, 2, 3, 9});
    table.v_Resize(8);
    ExpectNumbers(table, 8, 4, 1);
    EXPECT_EQ(Chains(table), "2:9,1 3:2 4:3");
    EXPECT_EQ(table.Get(9), 1009u);
}

// The sizes below 4 have a quarter of 0, which is never above the collisions.
TEST(VoidHashTable, TheSmallestSizesAreDoubledToAPrime)
{
    const struct
    {
        unsigned asked, size;
    } rows[] = {{1, 2}, {2, 5}, {3, 7}, {4, 4}, {5, 5}, {6, 6}, {100, 100}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.asked);
        Table table(10);
        table.v_Resize(row.asked);
        ExpectNumbers(table, row.size, 0, 0);
        Table same(row.asked);
        same.v_Resize(0);
        ExpectNumbers(same, row.size, 0, 0);
    }
    Table none(0);
    none.v_Resize(0);
    ExpectNumbers(none, 0, 0, 0);
    none.v_Resize(7);
    ExpectNumbers(none, 7, 0, 0);
}

// 2 * n is doubled to the first number that has no divisor, found here by trying all of them.
TEST(VoidHashTable, GrowsToTheNextPrimeOfTheDouble)
{
    for (unsigned size = 1; size <= 200; ++size) {
        SCOPED_TRACE(size);
        Table table(size);
        // All in one bucket, one collision above the quarter.
        for (unsigned n = 0; n <= size / 4 + 1; ++n)
            table.Insert(n * size, n);
        unsigned prime = 2 * size;
        const auto divides = [&prime] {
            for (unsigned n = 2; n < prime; ++n) {
                if (prime % n == 0)
                    return true;
            }
            return false;
        };
        while (divides())
            ++prime;
        EXPECT_EQ(table.n_GetTableSize(), prime);
        EXPECT_EQ(table.n_GetCount(), size / 4 + 2);
        for (unsigned n = 0; n <= size / 4 + 1; ++n)
            EXPECT_EQ(table.Has(n * size), 1);
    }
}

TEST(VoidHashTable, TheSequenceOfSizesIsFixed)
{
    CT_VoidHashTable table(
        4, 4, [](const void* key, unsigned size) { return Number(key) / 2 % size + 1; },
        CompareNumbers, 7);
    Numbers sizes, counts;
    for (unsigned key = 0; key < 2000; ++key) {
        if (sizes.empty() || sizes.back() != table.n_GetTableSize()) {
            sizes.push_back(table.n_GetTableSize());
            counts.push_back(table.n_GetCount());
        }
        table.b_Insert(&key, &key);
    }
    // Every second key collides: a table of n grows when collision n / 4 + 1 comes.
    EXPECT_EQ(sizes, (Numbers{7, 17, 37, 79, 163, 331, 673, 1361, 2729, 5471}));
    EXPECT_EQ(counts, (Numbers{0, 4, 10, 20, 40, 82, 166, 338, 682, 1366}));
}

// ---- Items --------------------------------------------------------------------------------

// Data stands directly behind the key, whatever their sizes; neither needs an aligned address.
TEST(VoidHashTable, DataStandsDirectlyBehindTheKey)
{
    const auto hash = [](const void* key, unsigned size) {
        return static_cast<unsigned>(*static_cast<const unsigned char*>(key)) % size + 1;
    };
    for (unsigned key_size : {1u, 2u, 3u, 4u, 5u, 8u, 11u}) {
        for (unsigned data_size : {0u, 1u, 2u, 4u, 7u, 8u, 40u}) {
            SCOPED_TRACE(std::to_string(key_size) + " and " + std::to_string(data_size));
            CT_VoidHashTable table(
                data_size, key_size, hash,
                [](const void* a, const void* b) {
                    return *static_cast<const char*>(a) - *static_cast<const char*>(b);
                },
                5);
            const std::string key(key_size, 'k'), data(data_size, 'd');
            table.b_Insert(key.data(), data.data());
            const auto* item = table.pso_GetAt('k' % 5 + 1);
            ASSERT_NE(item, nullptr);
            const char* bytes = static_cast<const char*>(item->pcv_GetKey());
            EXPECT_EQ(std::string(bytes, key_size + data_size), key + data);
            EXPECT_EQ(item->pcv_GetData(), bytes + key_size);
            EXPECT_EQ(item->pcso_GetFollowing(), nullptr);
            std::string out = "<" + std::string(data_size, '?') + ">";
            EXPECT_EQ(table.b_Get(key.data(), &out[1]), 1);
            EXPECT_EQ(out, "<" + data + ">");
            const std::string absent(key_size, 'a');
            EXPECT_EQ(table.b_Get(absent.data(), &out[1]), 0);
            EXPECT_EQ(out, "<" + std::string(data_size, '\0') + ">");
        }
    }
}

TEST(VoidHashTable, AnItemCanBeFilledInAnyBlock)
{
    alignas(CT_VoidHashTable::st_HashItem) char block[sizeof(CT_VoidHashTable::st_HashItem) + 8];
    std::memset(block, '?', sizeof(block));
    auto* item = reinterpret_cast<CT_VoidHashTable::st_HashItem*>(block);
    item->v_Set("key", 3, "data", 4);
    EXPECT_EQ(item->pcso_GetFollowing(), nullptr);
    EXPECT_EQ(std::string(static_cast<const char*>(item->pcv_GetKey()), 8), "keydata?");
    item->v_SetData("DA", 2);
    EXPECT_EQ(std::string(static_cast<const char*>(item->pcv_GetData()), 5), "DAta?");
}

// ---- Functions ----------------------------------------------------------------------------

TEST(VoidHashTable, IntegersHashToTheirRemainderPlusOne)
{
    const struct
    {
        unsigned key, size, bucket;
    } rows[] = {
        {0, 7, 1},
        {6, 7, 7},
        {7, 7, 1},
        {0xFFFFFFFF, 7, 4},
        {5, 1, 1},
        {9, 10, 10},
        {0x80000000, 0xFFFFFFFF, 0x80000001},
    };
    for (const auto& row : rows)
        EXPECT_EQ(CT_VoidHashTable::sn_HashInteger(&row.key, row.size), row.bucket);
    for (unsigned size = 0; size < 50; ++size) {
        for (unsigned key = 0; key < 100; ++key)
            EXPECT_NE(CT_VoidHashTable::sn_HashInteger(&key, size), 0u);
    }
}

TEST(VoidHashTable, IntegersAreReadAtAnyAddress)
{
    char bytes[12] = {};
    for (unsigned offset = 0; offset < 8; ++offset) {
        const unsigned number = 0x80000001 + offset, above = number + 1;
        std::memcpy(bytes + offset, &number, sizeof(number));
        EXPECT_EQ(CT_VoidHashTable::sn_HashInteger(bytes + offset, 1000), number % 1000 + 1);
        EXPECT_EQ(CT_VoidHashTable::si_CompareInteger(bytes + offset, &above), 1);
        EXPECT_EQ(CT_VoidHashTable::si_CompareInteger(&above, bytes + offset), 0);
    }
}

TEST(VoidHashTable, TheIntegerComparisonTakesGreaterForEqual)
{
    const struct
    {
        unsigned first, second;
        int result;
    } rows[] = {
        {1, 2, 1}, {2, 1, 0}, {2, 2, 0}, {0, 0xFFFFFFFF, 1}, {0xFFFFFFFF, 0, 0}, {0, 0, 0},
    };
    for (const auto& row : rows)
        EXPECT_EQ(CT_VoidHashTable::si_CompareInteger(&row.first, &row.second), row.result);
}

TEST(VoidHashTable, WithTheIntegerComparisonASearchEndsAtTheFirstKeyNotBelow)
{
    CT_VoidHashTable table(4, 4, CT_VoidHashTable::sn_HashInteger,
                           CT_VoidHashTable::si_CompareInteger, 20);
    unsigned key = 25, data = 1;
    table.b_Insert(&key, &data);
    key = 5, data = 2;
    // The stored 25 isn't below 5: its data is replaced.
    EXPECT_EQ(table.b_Insert(&key, &data), 1);
    ExpectNumbers(table, 20, 1, 0);
    key = 45, data = 3;
    EXPECT_EQ(table.b_Insert(&key, &data), 0);
    EXPECT_EQ(Chains(table), "6:45,25");
    key = 25;
    EXPECT_EQ(table.b_Get(&key, &data), 1);
    EXPECT_EQ(data, 3u) << "45 stands first";
}

TEST(VoidHashTable, TakesTextsByTheirPointers)
{
    CT_VoidHashTable table(
        4, sizeof(char*),
        reinterpret_cast<unsigned (*)(const void*, unsigned)>(CT_HashFunction::sn_HashCasePQCZ),
        reinterpret_cast<int (*)(const void*, const void*)>(CT_Compare::si_CompareCasePQCZ), 7);
    const char* const words[] = {"one", "two", "three", "four", "five", "six", "seven"};
    for (unsigned n = 0; n < std::size(words); ++n)
        EXPECT_EQ(table.b_Insert(&words[n], &n), 0);
    const std::string three = "three";
    const char* key = three.c_str();
    unsigned data = 99;
    EXPECT_EQ(table.b_Get(&key, &data), 1);
    EXPECT_EQ(data, 2u);
    key = "eight";
    EXPECT_EQ(table.b_Get(&key, nullptr), 0);
}
