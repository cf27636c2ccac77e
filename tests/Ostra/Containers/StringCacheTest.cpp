// tests/Ostra/Containers/StringCacheTest.cpp
#include "Ostra/Containers/StringCacheSupport.h"

#include <gtest/gtest.h>

namespace
{
typedef std::vector<std::string> Texts;

// A cache of one row: every key meets every other.
struct OneRow
{
    explicit OneRow(const std::u16string& keys, unsigned ways = 4) : cache(ways, ways)
    {
        for (char16_t key : keys)
            Insert(cache, std::u16string(1, key), std::u16string(1, key - u'a' + u'A'));
    }
    Texts Slots() const { return Row(cache, 0); }

    CT_StringCache cache;
};
} // namespace

// ---- Construction -------------------------------------------------------------------------

TEST(StringCache, HasRowsOfFourByDefault)
{
    const CT_StringCache cache;
    EXPECT_EQ(cache.n_GetSize(), 1004u);
    EXPECT_EQ(cache.n_GetCollisions(), 4u);
    const CT_StringCache sized(500);
    EXPECT_EQ(sized.n_GetSize(), 127u * 4);
    EXPECT_EQ(sized.n_GetCollisions(), 4u);
}

TEST(StringCache, TheNumberOfRowsIsAPrime)
{
    const struct
    {
        unsigned size, ways, slots;
    } rows[] = {
        {1000, 4, 1004}, {1, 1, 1},   {2, 1, 2},     {3, 1, 3},     {4, 1, 5},
        {8, 1, 11},      {4, 4, 4},   {7, 4, 4},     {8, 4, 8},     {12, 4, 12},
        {16, 4, 20},     {17, 3, 15}, {251, 1, 251}, {250, 1, 251}, {100, 9, 99},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(std::to_string(row.size) + " in rows of " + std::to_string(row.ways));
        const CT_StringCache cache(row.size, row.ways);
        EXPECT_EQ(cache.n_GetSize(), row.slots);
        EXPECT_EQ(cache.n_GetCollisions(), row.ways);
    }
}

void ExpectToDoNothing(CT_StringCache& cache)
{
    EXPECT_EQ(cache.n_GetSize(), 0u);
    EXPECT_EQ(Slots(cache), nullptr);
    Insert(cache, u"a", u"A");
    EXPECT_EQ(Lookup(cache, u"a"), u"-");
    Remove(cache, u"a");
    cache.v_Clear();
}

TEST(StringCache, OfSizeZeroDoesNothing)
{
    CT_StringCache cache(0, 4);
    EXPECT_EQ(cache.n_GetCollisions(), 0u);
    ExpectToDoNothing(cache);
}

TEST(StringCache, BelowOneRowItHasNoRows)
{
    CT_StringCache cache(3, 4);
    EXPECT_EQ(cache.n_GetCollisions(), 4u);
    ExpectToDoNothing(cache);
}

TEST(StringCache, WithoutWaysItHasNoRows)
{
    CT_StringCache cache(1000, 0);
    EXPECT_EQ(cache.n_GetCollisions(), 0u);
    ExpectToDoNothing(cache);
}

TEST(StringCache, SettingBuildsAnew)
{
    CT_StringCache cache;
    Insert(cache, u"a", u"A");
    cache.v_Set(20, 2);
    EXPECT_EQ(cache.n_GetSize(), 22u);
    EXPECT_EQ(cache.n_GetCollisions(), 2u);
    EXPECT_EQ(Lookup(cache, u"a"), u"-");
    Insert(cache, u"a", u"A");
    EXPECT_EQ(Lookup(cache, u"a"), u"A");
    cache.v_Set(0, 2);
    ExpectToDoNothing(cache);
}

TEST(StringCache, TheNextPrimeIsTheFirstNumberWithoutADivisor)
{
    const struct
    {
        unsigned from, prime;
    } rows[] = {
        {0, 0},     {1, 1},     {2, 2},         {3, 3},         {4, 5},
        {5, 5},     {6, 7},     {8, 11},        {9, 11},        {14, 17},
        {24, 29},   {25, 29},   {49, 53},       {121, 127},     {200, 211},
        {250, 251}, {251, 251}, {65520, 65521}, {65522, 65537}, {0xFFFFFFF0, 0xFFFFFFFB},
    };
    for (const auto& row : rows)
        EXPECT_EQ(CT_StringCache::sn_GetNextPrim(row.from), row.prime) << row.from;
}

// ---- Rows ---------------------------------------------------------------------------------

TEST(StringCache, KeysStandInTheRowOfTheirHash)
{
    for (const std::u16string& key :
         {std::u16string(u""), std::u16string(u"A"), std::u16string(u"word"),
          std::u16string(u"a long key that folds"), std::u16string(u"\u65E5\u672C\u8A9E\uFFFF")}) {
        CT_StringCache cache(28, 4);
        ASSERT_EQ(cache.n_GetSize(), 28u);
        Insert(cache, key, u"value");
        EXPECT_EQ(Row(cache, RowOf(key, 7))[0], Narrow(key) + "=value");
        EXPECT_EQ(Lookup(cache, key), u"value");
    }
    EXPECT_EQ(RowOf(u"", 7), 0u);
    EXPECT_EQ(RowOf(u"A", 7), 2u) << "65 modulo 7";
}

TEST(StringCache, ALookupFindsExactTexts)
{
    OneRow state(u"ab");
    EXPECT_EQ(Lookup(state.cache, u"a"), u"A");
    EXPECT_EQ(Lookup(state.cache, u"b"), u"B");
    EXPECT_EQ(Lookup(state.cache, u"c"), u"-");
    EXPECT_EQ(Lookup(state.cache, u"B"), u"-");
    EXPECT_EQ(Lookup(state.cache, u""), u"-");
    EXPECT_EQ(Lookup(state.cache, u"ab"), u"-");
    Insert(state.cache, u"", u"empty");
    EXPECT_EQ(Lookup(state.cache, u""), u"empty");
}

TEST(StringCache, NullIsNoKeyAndNoValue)
{
    OneRow state(u"a");
    EXPECT_EQ(state.cache.qcuz_Lookup(nullptr), nullptr);
    state.cache.v_Insert(Units(u"b"), nullptr);
    state.cache.v_Insert(nullptr, Units(u"B"));
    state.cache.v_Remove(nullptr);
    EXPECT_EQ(state.Slots(), (Texts{"a=A", "", "", ""}));
}

TEST(StringCache, HoldsCopies)
{
    CT_StringCache cache;
    std::u16string key = u"key", value = u"value";
    Insert(cache, key, value);
    key[0] = value[0] = u'x';
    EXPECT_EQ(Lookup(cache, u"key"), u"value");
    const unsigned short* owned = cache.qcuz_Lookup(Units(u"key"));
    EXPECT_EQ(owned, cache.qcuz_Lookup(Units(u"key")));
}

TEST(StringCache, ANewEntryStandsBehindTheOthers)
{
    OneRow state(u"abc");
    EXPECT_EQ(state.Slots(), (Texts{"a=A", "b=B", "c=C", ""}));
}

TEST(StringCache, AFullRowLosesItsLastEntry)
{
    OneRow state(u"abcde");
    EXPECT_EQ(state.Slots(), (Texts{"a=A", "b=B", "c=C", "e=E"}));
    EXPECT_EQ(Lookup(state.cache, u"d"), u"-");
}

TEST(StringCache, ALookupMovesTheEntryToTheFront)
{
    OneRow state(u"abcd");
    EXPECT_EQ(Lookup(state.cache, u"a"), u"A");
    EXPECT_EQ(state.Slots(), (Texts{"a=A", "b=B", "c=C", "d=D"}));
    EXPECT_EQ(Lookup(state.cache, u"c"), u"C");
    EXPECT_EQ(state.Slots(), (Texts{"c=C", "a=A", "b=B", "d=D"}));
    EXPECT_EQ(Lookup(state.cache, u"d"), u"D");
    EXPECT_EQ(state.Slots(), (Texts{"d=D", "c=C", "a=A", "b=B"}));
    Insert(state.cache, u"e", u"E");
    EXPECT_EQ(state.Slots(), (Texts{"d=D", "c=C", "a=A", "e=E"}));
}

TEST(StringCache, ALookupInVainMovesNothing)
{
    OneRow state(u"abcd");
    EXPECT_EQ(Lookup(state.cache, u"x"), u"-");
    EXPECT_EQ(state.Slots(), (Texts{"a=A", "b=B", "c=C", "d=D"}));
}

TEST(StringCache, AKeyInsertedTwiceStandsTwice)
{
    OneRow state(u"a");
    Insert(state.cache, u"a", u"other");
    EXPECT_EQ(state.Slots(), (Texts{"a=A", "a=other", "", ""}));
    EXPECT_EQ(Lookup(state.cache, u"a"), u"A");
    Insert(state.cache, u"b", u"B");
    Insert(state.cache, u"c", u"C");
    Remove(state.cache, u"a");
    EXPECT_EQ(Lookup(state.cache, u"a"), u"other");
}

TEST(StringCache, ARowOfOneSlotHoldsTheLatest)
{
    OneRow state(u"ab", 1);
    EXPECT_EQ(state.Slots(), (Texts{"b=B"}));
    Remove(state.cache, u"b");
    EXPECT_EQ(state.Slots(), (Texts{""}));
    Insert(state.cache, u"c", u"C");
    EXPECT_EQ(Lookup(state.cache, u"c"), u"C");
}

TEST(StringCache, TheDroppedEntrysOwnValueCanBeInserted)
{
    OneRow state(u"abcd");
    const unsigned short* last = Slots(state.cache)[3].value;
    state.cache.v_Insert(Units(u"x"), last);
    EXPECT_EQ(state.Slots(), (Texts{"a=A", "b=B", "c=C", "x=D"}));
}

// ---- Removal ------------------------------------------------------------------------------

TEST(StringCache, RemovingFromAFullRowLeavesOneFreeSlotAtItsEnd)
{
    const struct
    {
        const char16_t* key;
        Texts slots;
    } rows[] = {
        {u"a", {"b=B", "c=C", "d=D", ""}},
        {u"b", {"a=A", "c=C", "d=D", ""}},
        {u"c", {"a=A", "b=B", "d=D", ""}},
        {u"d", {"a=A", "b=B", "c=C", ""}},
    };
    for (const auto& row : rows) {
        OneRow state(u"abcd");
        Remove(state.cache, row.key);
        EXPECT_EQ(state.Slots(), row.slots);
        EXPECT_EQ(Lookup(state.cache, row.key), u"-");
    }
}

TEST(StringCache, RemovingWhatIsNotThereChangesNothing)
{
    OneRow state(u"abc");
    Remove(state.cache, u"x");
    EXPECT_EQ(state.Slots(), (Texts{"a=A", "b=B", "c=C", ""}));
}

TEST(StringCache, RemovingFromARowThatIsNotFullLeavesTheLastEntryTwice)
{
    OneRow state(u"abc");
    Remove(state.cache, u"a");
    EXPECT_EQ(state.Slots(), (Texts{"b=B", "c=C", "c=C", ""}));
    const CacheSlot* slots = Slots(state.cache);
    EXPECT_EQ(slots[1].key, slots[2].key);
    EXPECT_EQ(slots[1].value, slots[2].value);
    EXPECT_EQ(Lookup(state.cache, u"c"), u"C");
    EXPECT_EQ(state.Slots(), (Texts{"c=C", "b=B", "c=C", ""}));
    Insert(state.cache, u"d", u"D");
    EXPECT_EQ(state.Slots(), (Texts{"c=C", "b=B", "c=C", "d=D"}));
}

TEST(StringCache, TheTwiceHeldTextIsFreedOnce)
{
    OneRow cleared(u"abc"), set(u"abc"), destructed(u"abc");
    Remove(cleared.cache, u"a");
    cleared.cache.v_Clear();
    EXPECT_EQ(cleared.Slots(), (Texts{"", "", "", ""}));
    Remove(set.cache, u"b");
    set.cache.v_Set(4, 4);
    EXPECT_EQ(set.Slots(), (Texts{"", "", "", ""}));
    Remove(destructed.cache, u"a");
}

TEST(StringCache, RemovingTheLastEntryLeavesItsSlotInUse)
{
    OneRow state(u"abc");
    Remove(state.cache, u"c");
    EXPECT_EQ(state.Slots(), (Texts{"a=A", "b=B", "*", ""}));
    EXPECT_EQ(Lookup(state.cache, u"c"), u"-");
    EXPECT_EQ(Lookup(state.cache, u""), u"-");
    Insert(state.cache, u"d", u"D");
    EXPECT_EQ(state.Slots(), (Texts{"a=A", "b=B", "*", "d=D"}));
    Remove(state.cache, u"");
    EXPECT_EQ(state.Slots(), (Texts{"a=A", "b=B", "*", "d=D"}));
    EXPECT_EQ(Lookup(state.cache, u"d"), u"D");
    EXPECT_EQ(state.Slots(), (Texts{"d=D", "a=A", "b=B", "*"}));
    Insert(state.cache, u"e", u"E");
    EXPECT_EQ(state.Slots(), (Texts{"d=D", "a=A", "b=B", "e=E"}));
}

TEST(StringCache, ARemovedOnlyEntryIsNotFoundAndCanComeBack)
{
    CT_StringCache cache;
    Insert(cache, u"key", u"old");
    Remove(cache, u"key");
    EXPECT_EQ(Lookup(cache, u"key"), u"-");
    Insert(cache, u"key", u"new");
    EXPECT_EQ(Lookup(cache, u"key"), u"new");
    cache.v_Clear();
    EXPECT_EQ(Lookup(cache, u"key"), u"-");
}

// One of two slots on one text is freed: by removal, and when the row drops its last entry.
TEST(StringCache, WhatIsFreedInOneSlotIsFoundInNone)
{
    OneRow removed(u"abc");
    Remove(removed.cache, u"a");
    Remove(removed.cache, u"c");
    EXPECT_EQ(removed.Slots(), (Texts{"b=B", "*", "*", ""}));
    EXPECT_EQ(Lookup(removed.cache, u"c"), u"-");
    EXPECT_EQ(Lookup(removed.cache, u"b"), u"B");

    OneRow dropped(u"abc");
    Remove(dropped.cache, u"a");
    Insert(dropped.cache, u"d", u"D");
    EXPECT_EQ(Lookup(dropped.cache, u"d"), u"D");
    EXPECT_EQ(dropped.Slots(), (Texts{"d=D", "b=B", "c=C", "c=C"}));
    Insert(dropped.cache, u"e", u"E");
    EXPECT_EQ(dropped.Slots(), (Texts{"d=D", "b=B", "*", "e=E"}));
    EXPECT_EQ(Lookup(dropped.cache, u"c"), u"-");
}

TEST(StringCache, ClearingKeepsTheTable)
{
    CT_StringCache cache(40, 4);
    for (char16_t key = u'a'; key <= u'z'; ++key)
        Insert(cache, std::u16string(1, key), u"value");
    const CacheSlot* slots = Slots(cache);
    cache.v_Clear();
    EXPECT_EQ(cache.n_GetSize(), 44u);
    EXPECT_EQ(cache.n_GetCollisions(), 4u);
    EXPECT_EQ(Slots(cache), slots);
    for (unsigned n = 0; n < 44; ++n)
        EXPECT_EQ(Show(slots[n]), "");
    Insert(cache, u"a", u"again");
    EXPECT_EQ(Lookup(cache, u"a"), u"again");
}
