// tests/Ostra/Frame/SharedTest.cpp
#include <Ostra/Frame/Shared.h>

#include <gtest/gtest.h>

namespace
{
class Thing : public CT_Shared
{
public:
    explicit Thing(int& destroyed) : count(destroyed) {}
    Thing(const Thing&) = default;
    ~Thing() override { ++count; }

    void CopyCount(const Thing& other) { CT_Shared::operator=(other); }

private:
    int& count;
};
} // namespace

TEST(Shared, StartsWithoutAReference)
{
    int destroyed = 0;
    const Thing thing(destroyed);
    EXPECT_EQ(thing.n_GetReferences(), 0U);
}

TEST(Shared, LastGiveDestroysTheObject)
{
    int destroyed = 0;
    Thing* thing = new Thing(destroyed);
    thing->v_TakeReference();
    thing->v_TakeReference();
    thing->v_GiveReference();
    EXPECT_EQ(destroyed, 0);
    EXPECT_EQ(thing->n_GetReferences(), 1U);
    thing->v_GiveReference();
    EXPECT_EQ(destroyed, 1);
}

TEST(Shared, GiveOnAFreshObjectLeavesItAliveWithACountThatWraps)
{
    int destroyed = 0;
    Thing thing(destroyed);
    thing.v_GiveReference();
    EXPECT_EQ(destroyed, 0);
    EXPECT_EQ(thing.n_GetReferences(), 0xFFFFFFFFU);
}

TEST(Shared, CopyStartsWithTheCountOfItsSource)
{
    int destroyed = 0;
    Thing thing(destroyed);
    thing.v_TakeReference();
    thing.v_TakeReference();
    const Thing copy(thing);
    EXPECT_EQ(copy.n_GetReferences(), 2U);
}

TEST(Shared, AssignmentCopiesTheCount)
{
    int destroyed = 0;
    Thing thing(destroyed);
    thing.v_TakeReference();
    Thing other(destroyed);
    other.CopyCount(thing);
    EXPECT_EQ(other.n_GetReferences(), 1U);
}
