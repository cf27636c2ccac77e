// tests/Ostra/HashTable/VoidHashIteratorTest.cpp
#include "Ostra/HashTable/HashSupport.h"

namespace
{
unsigned KeyAt(const CT_VoidHashIterator& walk)
{
    unsigned key = 0xEEEEEEEE;
    walk.v_GetKey(&key);
    return key;
}
} // namespace

TEST(VoidHashIterator, ANewIteratorIsAtHome)
{
    const Table table(7, {1, 2});
    const CT_VoidHashIterator walk(&table);
    EXPECT_EQ(walk.b_AtHome(), 1);
    EXPECT_EQ(walk.b_AtEnd(), 0);
    EXPECT_EQ(walk.n_GetCount(), 2u);
}

TEST(VoidHashIterator, AnEmptyTableIsAtItsEndAfterAStep)
{
    for (unsigned size : {0u, 1u, 7u}) {
        const Table table(size);
        CT_VoidHashIterator walk(&table);
        EXPECT_EQ(walk.b_Next(), 0);
        EXPECT_EQ(walk.b_AtEnd(), 1);
        EXPECT_EQ(walk.b_AtHome(), 0);
        EXPECT_EQ(walk.b_Next(), 0);
        EXPECT_EQ(walk.n_GetCount(), 0u);
    }
}

TEST(VoidHashIterator, WalksBucketByBucketAndFromTheNewestOn)
{
    const Table table(20, {19, 5, 0, 25, 45, 20});
    EXPECT_EQ(Chains(table), "1:20,0 6:45,25,5 20:19");
    EXPECT_EQ(Walk(table), (Numbers{20, 0, 45, 25, 5, 19}));
}

TEST(VoidHashIterator, CopiesDataAndKeyOfTheCurrentItem)
{
    const Table table(7, {3});
    CT_VoidHashIterator walk(&table);
    unsigned data = 5;
    walk.v_Get(&data);
    EXPECT_EQ(data, 5u) << "at home there is no item";
    EXPECT_EQ(walk.b_Next(), 1);
    EXPECT_EQ(walk.b_AtEnd(), 0);
    walk.v_Get(&data);
    EXPECT_EQ(data, 1003u);
    EXPECT_EQ(KeyAt(walk), 3u);
    EXPECT_EQ(walk.b_Next(), 0);
    data = 5;
    walk.v_Get(&data);
    EXPECT_EQ(data, 5u);
    EXPECT_EQ(KeyAt(walk), 0xEEEEEEEE);
}

TEST(VoidHashIterator, SettingLeadsHome)
{
    const Table table(7, {1, 2}), other(7, {3});
    CT_VoidHashIterator walk(&table);
    walk.b_Next();
    walk.v_Set();
    EXPECT_EQ(walk.b_AtHome(), 1);
    walk.b_Next();
    EXPECT_EQ(KeyAt(walk), 1u);
    walk.v_Set(&other);
    EXPECT_EQ(walk.b_AtHome(), 1);
    EXPECT_EQ(walk.n_GetCount(), 1u);
    walk.b_Next();
    EXPECT_EQ(KeyAt(walk), 3u);
}

TEST(VoidHashIterator, ACopyStandsAtTheSamePlaceAndGoesItsOwnWay)
{
    const Table table(7, {1, 2, 3});
    CT_VoidHashIterator walk(&table);
    walk.b_Next();
    walk.b_Next();
    CT_VoidHashIterator copy(&walk);
    EXPECT_EQ(KeyAt(copy), 2u);
    copy.b_Next();
    EXPECT_EQ(KeyAt(copy), 3u);
    EXPECT_EQ(KeyAt(walk), 2u);
    copy.v_Set(&walk);
    EXPECT_EQ(KeyAt(copy), 2u);
    EXPECT_EQ(copy.b_IsEqual(&walk), 1);
}

TEST(VoidHashIterator, EqualAreTheSamePlacesOfOneTable)
{
    const Table table(20, {1, 21, 2}), twin(20, {1, 21, 2});
    CT_VoidHashIterator first(&table), second(&table), third(&twin);
    EXPECT_EQ(first.b_IsEqual(&second), 1);
    EXPECT_EQ(first.b_IsEqual(&third), 0);
    for (int step = 0; step < 4; ++step) {
        first.b_Next();
        EXPECT_EQ(first.b_IsEqual(&second), 0);
        second.b_Next();
        EXPECT_EQ(first.b_IsEqual(&second), 1);
    }
    EXPECT_EQ(first.b_AtEnd(), 1);
    second.v_Set();
    EXPECT_EQ(first.b_IsEqual(&second), 0) << "home isn't the end";
}

// ---- Removal ------------------------------------------------------------------------------

TEST(VoidHashIterator, RemovingHandsTheDataOutAndStepsToTheNextBucket)
{
    Table table(20, {1, 2, 3});
    CT_VoidHashIterator walk(&table);
    walk.b_Next();
    unsigned data = 0;
    walk.v_Remove(&data);
    EXPECT_EQ(data, 1001u);
    EXPECT_EQ(KeyAt(walk), 2u);
    unsigned key = 0;
    walk.v_RemoveKey(&key);
    EXPECT_EQ(key, 2u);
    EXPECT_EQ(KeyAt(walk), 3u);
    EXPECT_EQ(Chains(table), "4:3");
    walk.v_Remove(nullptr);
    EXPECT_EQ(walk.b_AtEnd(), 1);
    EXPECT_EQ(walk.b_Next(), 0);
    EXPECT_EQ(table.n_GetCount(), 0u);
}

TEST(VoidHashIterator, WhatStandsBehindARemovedItemIsPassedOver)
{
    Table table(20, {5, 25, 45, 7});
    ASSERT_EQ(Chains(table), "6:45,25,5 8:7");
    CT_VoidHashIterator walk(&table);
    walk.b_Next();
    walk.b_Next();
    EXPECT_EQ(KeyAt(walk), 25u);
    walk.v_RemoveKey(nullptr);
    EXPECT_EQ(KeyAt(walk), 7u);
    EXPECT_EQ(walk.b_Next(), 0);
    EXPECT_EQ(Chains(table), "6:45,5 8:7") << "5 wasn't met, but is there";
    EXPECT_EQ(table.n_GetCollisions(), 1u);
}

TEST(VoidHashIterator, AWalkThatRemovesAndStepsSkipsEverySecondBucket)
{
    Table table(20, {1, 2, 3, 4, 5});
    CT_VoidHashIterator walk(&table);
    Numbers gone;
    while (walk.b_Next()) {
        unsigned key = 0;
        walk.v_RemoveKey(&key);
        gone.push_back(key);
    }
    EXPECT_EQ(gone, (Numbers{1, 3, 5}));
    EXPECT_EQ(Walk(table), (Numbers{2, 4}));
}

TEST(VoidHashIterator, RemovingTheHeadLeavesTheCollisions)
{
    Table table(20, {5, 25, 45});
    CT_VoidHashIterator walk(&table);
    walk.b_Next();
    walk.v_Remove(nullptr);
    EXPECT_EQ(Chains(table), "6:25,5");
    EXPECT_EQ(table.n_GetCollisions(), 2u);
    EXPECT_EQ(walk.b_AtEnd(), 1);
}

TEST(VoidHashIterator, WithoutAnItemNothingIsRemoved)
{
    Table table(20, {5});
    CT_VoidHashIterator walk(&table);
    unsigned key = 7;
    walk.v_RemoveKey(&key);
    walk.v_Remove(&key);
    EXPECT_EQ(walk.b_AtHome(), 1);
    EXPECT_EQ(key, 7u);
    EXPECT_EQ(walk.b_Next(), 1);
    EXPECT_EQ(walk.b_Next(), 0);
    walk.v_Remove(&key);
    EXPECT_EQ(key, 7u);
    EXPECT_EQ(table.n_GetCount(), 1u);
}
