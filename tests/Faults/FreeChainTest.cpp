// tests/Faults/FreeChainTest.cpp: the chain of free blocks in memory, beside a plain list that is
// walked. Here because it is no part of the library's interface.
#include <Database/RecordManager/FreeChain.h>

#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <vector>

#include "Faults/FailingHeap.h"
#include "Support/Directory.h"

namespace
{
class Chains
{
public:
    Chains(unsigned theBlockSize, unsigned seed)
        : blockSize(theBlockSize),
          chain(new CT_FreeChain(theBlockSize)),
          random(seed)
    {}

    void Push() { Push(blockSize * (1 + Below(Below(20) ? 8 : 400))); }
    void Push(unsigned size)
    {
        const unsigned offset = blockSize * (1 + Below(5000));
        bool known = false;
        for (const Block& block : blocks)
            known |= block.offset == offset;
        EXPECT_EQ(chain->b_Push(offset, size) != 0, !known);
        if (!known)
            blocks.push_back({offset, size});
    }
    void Pop()
    {
        if (blocks.empty())
            return;
        chain->v_PopHead();
        blocks.pop_back();
    }
    void Take() { Take(blockSize * (1 + Below(Below(4) ? 9 : 300))); }
    void Take(unsigned need)
    {
        if (blocks.empty())
            return;
        size_t at = blocks.size() - 1;
        do
            --at;
        while (at < blocks.size() && blocks[at].size < need);
        CT_FreeChain::st_Found found{};
        ASSERT_EQ(chain->b_Find(need, &found) != 0, at < blocks.size());
        if (at >= blocks.size()) {
            EXPECT_EQ(found.n_Block, blocks[0].offset);
            return;
        }
        EXPECT_EQ(found.n_Block, blocks[at].offset);
        EXPECT_EQ(found.n_Size, blocks[at].size);
        EXPECT_EQ(found.n_Newer, blocks[at + 1].offset);
        EXPECT_EQ(found.n_Older, at ? blocks[at - 1].offset : 0);
        chain->v_Take(found);
        const Block rest = {found.n_Block + need, found.n_Size - need};
        blocks.erase(blocks.begin() + static_cast<std::ptrdiff_t>(at));
        bool known = rest.size == 0;
        for (const Block& block : blocks)
            known |= block.offset == rest.offset;
        if (known)
            return;
        EXPECT_TRUE(chain->b_PutRest(found, need));
        blocks.insert(blocks.begin() + static_cast<std::ptrdiff_t>(at), rest);
    }
    void Hit()
    {
        const unsigned offset = Below(blockSize * 5500);
        const unsigned size = Below(blockSize * (Below(3) ? 3 : 90));
        bool hit = false;
        for (const Block& block : blocks)
            hit |= size && block.offset < offset + size && block.offset + 8 > offset;
        EXPECT_EQ(chain->b_IsHit(offset, size) != 0, hit) << offset << ' ' << size;
    }
    // Blocks of one size come and go behind the head, so that empty positions are left.
    void Wear(unsigned count, unsigned steps)
    {
        while (blocks.size() < count)
            Push(blockSize);
        for (unsigned step = 0; step < steps && !testing::Test::HasFailure(); ++step) {
            Push(blockSize);
            if (blocks.size() > count)
                Take(blockSize);
            Hit();
            EXPECT_EQ(chain->n_GetCount(), blocks.size());
            EXPECT_EQ(chain->n_GetHead(), blocks.back().offset);
        }
        while (!blocks.empty()) {
            EXPECT_EQ(chain->n_GetHead(), blocks.back().offset);
            Pop();
        }
        EXPECT_EQ(chain->n_GetCount(), 0U);
        EXPECT_EQ(chain->n_GetHead(), 0U);
        Push();
        EXPECT_EQ(chain->n_GetHead(), blocks.back().offset);
    }
    void Play(unsigned steps)
    {
        Push();
        for (unsigned step = 0; step < steps && !testing::Test::HasFailure(); ++step) {
            if (step % 1500 == 0)
                growing = !growing;
            const unsigned kind = Below(10);
            if (kind < (growing ? 6u : 2u))
                Push();
            else if (kind < 8)
                Take();
            else if (kind < 9)
                Hit();
            else
                Pop();
            EXPECT_EQ(chain->n_GetCount(), blocks.size());
            EXPECT_EQ(chain->n_GetHead(), blocks.empty() ? 0 : blocks.back().offset);
        }
    }

private:
    struct Block
    {
        unsigned offset, size;
    };

    unsigned Below(unsigned n) { return static_cast<unsigned>(random() % n); }

    const unsigned blockSize;
    const std::unique_ptr<CT_FreeChain> chain;
    std::vector<Block> blocks; // the head last
    std::mt19937 random;
    bool growing = false;
};
} // namespace

TEST(FreeChain, AgreesWithAListThatIsWalked)
{
    unsigned seed = Seed(16);
    for (const unsigned blockSize : {8u, 64u, 24u, 512u}) {
        SCOPED_TRACE(blockSize);
        Chains(blockSize, seed++).Play(9000);
    }
}

TEST(FreeChain, EmptyPositionsAreClosedWhereTheRoomEnds)
{
    unsigned seed = Seed(17);
    for (const unsigned count : {2u, 20u, 127u, 128u, 129u, 600u}) {
        SCOPED_TRACE(count);
        Chains(64, seed++).Wear(count, 3000);
    }
}

// Room for more positions, marks for further blocks: what can't be had leaves the chain as it was.
TEST(FreeChain, WithoutMemoryABlockIsRefusedAndTheRestStays)
{
    constexpr unsigned BLOCK = 64, FIRST_ROOM = 256, FIRST_MARKS = 4096;
    const auto refused = [](auto operation) {
        FailingHeap::Arm(1, FailingHeap::ONCE);
        const int done = operation();
        return FailingHeap::Disarm() == 1 && !done;
    };
    CT_FreeChain chain(BLOCK);
    EXPECT_TRUE(refused([&] { return chain.b_Push(BLOCK, BLOCK); })) << "the first room";
    EXPECT_TRUE(refused([&] { return chain.b_Push(BLOCK, BLOCK) && chain.b_Push(BLOCK, BLOCK); }));
    EXPECT_EQ(chain.n_GetCount(), 0U);
    for (unsigned n = 1; n <= FIRST_ROOM; ++n)
        ASSERT_TRUE(chain.b_Push(n * BLOCK, BLOCK));
    EXPECT_TRUE(refused([&] { return chain.b_Push(BLOCK * 1000, BLOCK); })) << "room for more";
    EXPECT_EQ(chain.n_GetHead(), FIRST_ROOM * BLOCK);
    EXPECT_TRUE(chain.b_Push(BLOCK * 1000, BLOCK));
    EXPECT_TRUE(refused([&] { return chain.b_Push(BLOCK * FIRST_MARKS, BLOCK); })) << "more marks";
    EXPECT_EQ(chain.n_GetHead(), BLOCK * 1000);

    ASSERT_TRUE(chain.b_Push(BLOCK * (FIRST_MARKS - 1), 2 * BLOCK));
    ASSERT_TRUE(chain.b_Push(BLOCK * 1001, BLOCK));
    CT_FreeChain::st_Found found;
    ASSERT_TRUE(chain.b_Find(BLOCK, &found));
    EXPECT_EQ(found.n_Block, BLOCK * (FIRST_MARKS - 1));
    chain.v_Take(found);
    EXPECT_TRUE(refused([&] { return chain.b_PutRest(found, BLOCK); }));
    EXPECT_TRUE(chain.b_PutRest(found, BLOCK));
    ASSERT_TRUE(chain.b_Find(BLOCK, &found));
    EXPECT_EQ(found.n_Block, BLOCK * FIRST_MARKS);
    EXPECT_EQ(chain.n_GetCount(), FIRST_ROOM + 3);
}

TEST(FreeChain, ARestThatCantBeHeldIsRefused)
{
    CT_FreeChain chain(64);
    ASSERT_TRUE(chain.b_Push(0x7FFFFFC0, 128));
    ASSERT_TRUE(chain.b_Push(640, 192));
    ASSERT_TRUE(chain.b_Push(768, 64));
    CT_FreeChain::st_Found found;
    ASSERT_TRUE(chain.b_Find(128, &found));
    EXPECT_EQ(found.n_Block, 640U);
    chain.v_Take(found);
    EXPECT_FALSE(chain.b_PutRest(found, 128)) << "a block of the chain is there already";
    ASSERT_TRUE(chain.b_Find(64, &found));
    EXPECT_EQ(found.n_Block, 0x7FFFFFC0U);
    chain.v_Take(found);
    EXPECT_FALSE(chain.b_PutRest(found, 64)) << "too far from the beginning";
    EXPECT_EQ(chain.n_GetCount(), 1U);
}

TEST(FreeChain, BlocksThatCantBeHeldAreRefused)
{
    CT_FreeChain chain(64);
    EXPECT_TRUE(chain.b_Push(640, 64));
    EXPECT_FALSE(chain.b_Push(640, 64)) << "twice";
    EXPECT_FALSE(chain.b_Push(650, 64)) << "between blocks";
    EXPECT_FALSE(chain.b_Push(0, 64));
    EXPECT_FALSE(chain.b_Push(1280, 0));
    EXPECT_FALSE(chain.b_Push(0x80000000, 64));
    EXPECT_FALSE(chain.b_Push(1280, 0x80000000));
    EXPECT_EQ(chain.n_GetHead(), 640u);
}

TEST(FreeChain, ReversedChainHasItsHeadLast)
{
    CT_FreeChain chain(8);
    for (unsigned n = 1; n <= 1000; ++n)
        ASSERT_TRUE(chain.b_Push(n * 80, n % 7 ? 8 : 8 * (n % 10 + 1)));
    chain.v_Reverse();
    EXPECT_EQ(chain.n_GetHead(), 80u);
    CT_FreeChain::st_Found found;
    ASSERT_TRUE(chain.b_Find(80, &found));
    EXPECT_EQ(found.n_Block, 49u * 80);
    EXPECT_EQ(found.n_Newer, 48u * 80);
    EXPECT_EQ(found.n_Older, 50u * 80);
}
