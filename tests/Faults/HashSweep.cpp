// tests/Faults/HashSweep.cpp: linked list, hash table and string cache with an exhausted heap.
#include <Ostra/Containers/StringCache.h>
#include <Ostra/HashTable/VoidHashIterator.h>
#include <Ostra/HashTable/VoidHashTable.h>
#include <Ostra/LIST/VoidList.h>

#include "Faults/Sweep.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <string>

namespace
{
const SweepReport report("Ostra/Buffer/Buffer");

unsigned Number(const void* key)
{
    unsigned number;
    std::memcpy(&number, key, sizeof(number));
    return number;
}

int CompareNumbers(const void* first, const void* second)
{
    return Number(first) != Number(second);
}

struct Table : CT_VoidHashTable
{
    explicit Table(unsigned size) : CT_VoidHashTable(4, 4, sn_HashInteger, CompareNumbers, size) {}
    int Insert(unsigned key) { return b_Insert(&key, &key); }
    bool Has(unsigned key) const { return b_Get(&key, nullptr) != 0; }
};

// Keys of the table by walking, and whether each is found.
unsigned Reach(const CT_VoidHashTable& table)
{
    unsigned count = 0, key = 0, data = 0;
    CT_VoidHashIterator walk(&table);
    while (walk.b_Next()) {
        walk.v_GetKey(&key);
        EXPECT_EQ(table.b_Get(&key, &data), 1);
        EXPECT_EQ(data, key);
        ++count;
    }
    EXPECT_EQ(table.n_GetCount(), count);
    return count;
}

void ExpectUsable(Table& table)
{
    table.v_Set(7);
    EXPECT_EQ(table.n_GetTableSize(), 7u);
    EXPECT_EQ(table.Insert(3), 0);
    EXPECT_TRUE(table.Has(3));
}

// Three keys in seven buckets, two of them in one.
std::unique_ptr<Table> Colliding()
{
    auto table = std::make_unique<Table>(7);
    table->Insert(1);
    table->Insert(2);
    table->Insert(8);
    return table;
}

// A list of characters as text.
std::string Items(const CT_VoidList& list)
{
    std::string items;
    CT_VoidList::st_Position* at = list.pso_GetFirst();
    for (unsigned n = 0; n < list.n_GetCount(); n++, at = list.pso_Skip(at, 1)) {
        items += '?';
        list.v_GetAt(&items.back(), at);
    }
    EXPECT_EQ(at, list.pso_GetFirst());
    return items;
}
} // namespace

// ---- Linked list --------------------------------------------------------------------------

TEST(VoidListSweep, NewObject)
{
    struct Pointer
    {
        ~Pointer() { delete list; }
        CT_VoidList* list = nullptr;
    };
    Sweep(
        {"Ostra/LIST/VoidList"}, [] { return std::make_unique<Pointer>(); },
        [](Pointer& state) { state.list = new CT_VoidList(3); },
        [](Pointer& state, bool failed) { EXPECT_EQ(state.list == nullptr, failed); });
}

TEST(VoidListSweep, AnItemThatFindsNoRoomIsNotThereAndNothingIsReported)
{
    for (const FailingHeap::Mode mode : {FailingHeap::ONCE, FailingHeap::FROM}) {
        for (unsigned number = 1; number <= 5; ++number) {
            SCOPED_TRACE("allocation " + std::to_string(number));
            FailingHeap::Track();
            {
                CT_VoidList list(1);
                FailingHeap::Arm(number, mode);
                list.v_InsertLast("b");
                list.v_InsertFirst("a");
                list.v_InsertAfter("c", list.pso_GetLast());
                list.v_InsertBefore("d", nullptr);
                const unsigned failures = FailingHeap::Disarm();
                std::string expected = "bacd";
                expected.erase(number - 1 < 4 ? number - 1 : 4, mode == FailingHeap::ONCE ? 1 : 4);
                std::sort(expected.begin(), expected.end());
                EXPECT_EQ(Items(list), expected);
                EXPECT_EQ(failures, 4 - expected.size());
                list.v_InsertLast("z");
                EXPECT_EQ(Items(list), expected + "z");
            }
            EXPECT_EQ(FailingHeap::Live(), 0u) << "blocks leak";
            EXPECT_TRUE(TakeFailure() == Failure());
        }
    }
}

TEST(VoidListSweep, ACopyLacksTheItemsThatFindNoRoomAndNothingIsReported)
{
    CT_VoidList source(1);
    for (const char* item : {"a", "b", "c", "d"})
        source.v_InsertLast(item);
    for (const FailingHeap::Mode mode : {FailingHeap::ONCE, FailingHeap::FROM}) {
        for (unsigned number = 1; number <= 5; ++number) {
            SCOPED_TRACE("allocation " + std::to_string(number));
            FailingHeap::Track();
            {
                CT_VoidList list(1);
                FailingHeap::Arm(number, mode);
                list.v_Set(&source);
                FailingHeap::Disarm();
                std::string expected = "abcd";
                expected.erase(number - 1, mode == FailingHeap::ONCE ? 1 : 4);
                EXPECT_EQ(Items(list), expected);
                list.v_InsertLast("z");
                EXPECT_EQ(Items(list), expected + "z");
            }
            EXPECT_EQ(FailingHeap::Live(), 0u) << "blocks leak";
            EXPECT_TRUE(TakeFailure() == Failure());
        }
    }
    EXPECT_EQ(Items(source), "abcd");
}

// ---- Hash table ---------------------------------------------------------------------------

TEST(VoidHashTableSweep, NewObject)
{
    struct Pointer
    {
        ~Pointer() { delete table; }
        CT_VoidHashTable* table = nullptr;
    };
    Sweep(
        {"Ostra/HashTable/VoidHashTable"}, [] { return std::make_unique<Pointer>(); },
        [](Pointer& state) {
            state.table =
                new CT_VoidHashTable(4, 4, CT_VoidHashTable::sn_HashInteger, CompareNumbers, 0);
        },
        [](Pointer& state, bool failed) { EXPECT_EQ(state.table == nullptr, failed); });
}

TEST(VoidHashTableSweep, WithoutRoomForItsBucketsATableHasNone)
{
    struct Place
    {
        ~Place()
        {
            if (table)
                table->~Table();
        }
        alignas(Table) char place[sizeof(Table)];
        Table* table = nullptr;
    };
    Sweep(
        report, [] { return std::make_unique<Place>(); },
        [](Place& state) { state.table = new (state.place) Table(7); },
        [](Place& state, bool failed) {
            EXPECT_EQ(state.table->n_GetTableSize(), failed ? 0u : 7u);
            EXPECT_EQ(state.table->Insert(3), 0);
            EXPECT_EQ(state.table->Has(3), !failed);
            ExpectUsable(*state.table);
        });
}

TEST(VoidHashTableSweep, SettingWithoutRoomLeavesTheTableEmpty)
{
    Sweep(
        report, Colliding, [](Table& table) { table.v_Set(20); },
        [](Table& table, bool failed) {
            EXPECT_EQ(table.n_GetTableSize(), failed ? 0u : 20u);
            EXPECT_EQ(Reach(table), 0u);
            ExpectUsable(table);
        });
}

// Shorter data is filled up by way of one item's room.
TEST(VoidHashTableSweep, ShorterItemsAreTakenWhereThereIsRoom)
{
    for (unsigned failing = 1; failing <= 6; ++failing) {
        SCOPED_TRACE(failing);
        const auto source = Colliding();
        CT_VoidHashTable wide(8, 4, CT_VoidHashTable::sn_HashInteger, CompareNumbers, 5);
        FailingHeap::Arm(failing, FailingHeap::ONCE);
        wide.v_Set(source.get());
        const bool failed = FailingHeap::Disarm() > 0;
        CT_ErrorManager::spco_Get()->v_ClearError();
        EXPECT_EQ(failed, failing <= 5);
        // The buckets and the room bring all items, each other allocation one.
        EXPECT_EQ(wide.n_GetCount(), failing <= 2 ? 0u : failed ? 2u : 3u);
        for (const unsigned key : {1u, 2u, 8u}) {
            unsigned data[] = {7, 7};
            const int found = wide.b_Get(&key, data);
            EXPECT_EQ(data[0], found ? key : 0);
            EXPECT_EQ(data[1], 0u);
        }
    }
}

// Only the buckets are reported; an item without room is left out.
TEST(VoidHashTableSweep, ACopyHasTheItemsThatFoundRoom)
{
    struct State
    {
        std::unique_ptr<Table> source = Colliding();
        Table target{5};
    };
    Sweep(
        report, [] { return std::make_unique<State>(); },
        [](State& state) { state.target.v_Set(state.source.get()); },
        [](State& state, bool failed) {
            EXPECT_EQ(state.target.n_GetTableSize(), failed ? 0u : 7u);
            EXPECT_LE(Reach(state.target), failed ? 0u : 3u);
            EXPECT_EQ(Reach(*state.source), 3u);
            ExpectUsable(state.target);
        });
}

TEST(VoidHashTableSweep, ATableThatCannotGrowStaysAsItIs)
{
    Sweep(
        report, Colliding, [](Table& table) { table.v_Resize(100); },
        [](Table& table, bool failed) {
            EXPECT_EQ(table.n_GetTableSize(), failed ? 7u : 100u);
            EXPECT_EQ(table.n_GetCollisions(), failed ? 1u : 0u);
            EXPECT_EQ(Reach(table), 3u);
            ExpectUsable(table);
        });
}

// The key is in, or it found no room itself; the growth that it would bring comes with a later one.
TEST(VoidHashTableSweep, AnInsertionThatCannotGrowTheTableIsDoneAllTheSame)
{
    Sweep(
        report, Colliding, [](Table& table) { table.Insert(15); },
        [](Table& table, bool failed) {
            EXPECT_EQ(Reach(table), table.Has(15) ? 4u : 3u);
            if (failed) {
                EXPECT_TRUE(table.Has(15));
                EXPECT_EQ(table.n_GetTableSize(), 7u);
                EXPECT_EQ(table.n_GetCollisions(), 2u);
            }
            table.Insert(22);
            EXPECT_EQ(table.n_GetTableSize(), 17u);
            EXPECT_EQ(Reach(table), table.Has(15) ? 5u : 4u);
            ExpectUsable(table);
        });
}

TEST(VoidHashTableSweep, SizesThatNoBlockHasRoomForAreReported)
{
    for (unsigned size : {0x20000000u, 0x40000000u, 0x80000001u, 0xFFFFFFFFu}) {
        SCOPED_TRACE(size);
        const Table table(size);
        EXPECT_EQ(table.n_GetTableSize(), 0u);
        const Failure failure = TakeFailure();
        EXPECT_EQ(failure.code, 60006u);
        ASSERT_FALSE(failure.trail.empty());
        EXPECT_EQ(failure.trail.front(), "Ostra/Buffer/Buffer");
    }
}

// ---- String cache -------------------------------------------------------------------------

TEST(StringCacheSweep, WithoutItsTableACacheHasNoSlots)
{
    FailingHeap::Arm(1, FailingHeap::ONCE);
    CT_StringCache cache(40, 4);
    EXPECT_EQ(FailingHeap::Disarm(), 1u);
    EXPECT_EQ(cache.n_GetSize(), 0u);
    cache.v_Insert(Units(u"a"), Units(u"A"));
    EXPECT_EQ(cache.qcuz_Lookup(Units(u"a")), nullptr);
    cache.v_Remove(Units(u"a"));
    cache.v_Set(40, 4);
    EXPECT_EQ(cache.n_GetSize(), 44u);
}

// Without a key an entry isn't there, without a value it has none; nothing is reported.
TEST(StringCacheSweep, ATextThatFindsNoRoomIsMissing)
{
    const struct
    {
        unsigned number;
        FailingHeap::Mode mode;
        bool key, value;
    } rows[] = {
        {1, FailingHeap::ONCE, false, false},
        {1, FailingHeap::FROM, false, false},
        {2, FailingHeap::ONCE, true, false},
        {3, FailingHeap::ONCE, true, true},
    };
    for (const auto& row : rows) {
        for (const bool full : {false, true}) {
            SCOPED_TRACE(std::to_string(row.number) + (full ? ", full row" : ", free slot"));
            FailingHeap::Track();
            {
                CT_StringCache cache(2, 2);
                cache.v_Set(2, 2);
                cache.v_Insert(Units(u"first"), Units(u"1"));
                if (full)
                    cache.v_Insert(Units(u"second"), Units(u"2"));
                FailingHeap::Arm(row.number, row.mode);
                cache.v_Insert(Units(u"key"), Units(u"value"));
                FailingHeap::Disarm();
                EXPECT_EQ(cache.qcuz_Lookup(Units(u"second")), nullptr) << "it was dropped";
                const unsigned short* value = cache.qcuz_Lookup(Units(u"key"));
                EXPECT_EQ(Wide(value), row.value ? u"value" : u"");
                cache.v_Insert(Units(u"next"), Units(u"n"));
                EXPECT_EQ(Wide(cache.qcuz_Lookup(Units(u"next"))), u"n");
                // A found entry stands first and stays; a slot without a key was free for the next.
                EXPECT_EQ(cache.qcuz_Lookup(Units(u"first")) != nullptr, !row.key);
            }
            EXPECT_EQ(FailingHeap::Live(), 0u) << "blocks leak";
            EXPECT_TRUE(TakeFailure() == Failure());
        }
    }
}
