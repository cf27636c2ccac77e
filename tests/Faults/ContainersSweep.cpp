// tests/Faults/ContainersSweep.cpp: bit sets and alphabet trees with an exhausted heap.
#include <Ostra/Containers/AlphaTree.h>
#include <Ostra/Containers/BitSet.h>

#include "Faults/Sweep.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <string>

namespace
{
constexpr unsigned NONE = 0xFFFFFFFF;
const SweepReport report("Ostra/Buffer/Buffer");

// Two sets of 70 bits on one block, with bits 3 and 69.
struct Sets
{
    Sets()
    {
        source.v_SetBit(3, 1);
        source.v_SetBit(69, 1);
        set.v_Set(&source);
    }
    CT_BitSet source{70};
    CT_BitSet set{70};
};

void ExpectSourceAsItWas(const Sets& sets)
{
    EXPECT_EQ(sets.source.n_NrSetBits(), 2U);
    EXPECT_TRUE(sets.source.b_GetBit(3));
    EXPECT_TRUE(sets.source.b_GetBit(69));
}

void ExpectUsable(CT_BitSet& set)
{
    set.v_Set(100, 0);
    EXPECT_TRUE(set.b_IsEmpty());
    set.v_SetBits(1);
    EXPECT_EQ(set.n_NrSetBits(), 100U);
}

// A write that can't have a block of its own changes neither set.
template <typename T_Write>
void SweepWrite(T_Write write, unsigned after)
{
    Sweep(
        report, [] { return std::make_unique<Sets>(); },
        [write](Sets& sets) { write(sets.set, sets.source); },
        [after](Sets& sets, bool failed) {
            EXPECT_EQ(sets.set.n_NrSetBits(), failed ? 2U : after);
            ExpectSourceAsItWas(sets);
            ExpectUsable(sets.set);
        });
}
} // namespace

TEST(BitSetSweep, AWriteWithoutABlockOfItsOwnIsNotDone)
{
    SweepWrite([](CT_BitSet& set, const CT_BitSet&) { set.v_SetBit(4, 1); }, 3);
    SweepWrite([](CT_BitSet& set, const CT_BitSet&) { set.v_And(3, 0); }, 1);
    SweepWrite([](CT_BitSet& set, const CT_BitSet&) { set.v_Toggle(3); }, 1);
    SweepWrite([](CT_BitSet& set, const CT_BitSet&) { set.v_SetBits(1); }, 70);
    SweepWrite([](CT_BitSet& set, const CT_BitSet&) { set.v_SetBits(0); }, 0);
    SweepWrite([](CT_BitSet& set, const CT_BitSet&) { set.v_Complement(); }, 68);
    SweepWrite([](CT_BitSet& set, const CT_BitSet& other) { set.v_NAssign(&other); }, 68);
    SweepWrite([](CT_BitSet& set, const CT_BitSet& other) { set.v_Xor(&other); }, 0);
}

TEST(BitSetSweep, ANewSetWithoutABlockHasZeros)
{
    struct Place
    {
        ~Place() { reinterpret_cast<CT_BitSet*>(room)->~CT_BitSet(); }
        alignas(CT_BitSet) char room[sizeof(CT_BitSet)];
    };
    Sweep(
        report, [] { return std::make_unique<Place>(); },
        [](Place& place) { ::new (place.room) CT_BitSet(5000); },
        [](Place& place, bool failed) {
            CT_BitSet& set = *reinterpret_cast<CT_BitSet*>(place.room);
            EXPECT_EQ(set.n_GetSize(), 5000U);
            EXPECT_TRUE(set.b_IsEmpty());
            set.v_SetBits(1);
            EXPECT_EQ(set.n_NrSetBits(), failed ? 0U : 5000U);
            set.v_SetBit(4999, 1);
            EXPECT_EQ(set.b_GetBit(4999), !failed);
            set.v_Complement();
            EXPECT_EQ(set.n_FirstSetBit(), NONE);
            ExpectUsable(set);
        });
}

TEST(BitSetSweep, ALargerSizeKeepsTheBitsThatThereIsRoomFor)
{
    Sweep(
        report, [] { return std::make_unique<Sets>(); },
        [](Sets& sets) { sets.set.v_Set(9000, 1); },
        [](Sets& sets, bool failed) {
            EXPECT_EQ(sets.set.n_GetSize(), 9000U);
            EXPECT_TRUE(sets.set.b_GetBit(3));
            EXPECT_TRUE(sets.set.b_GetBit(69));
            if (failed) {
                EXPECT_EQ(sets.set.n_NrSetBits(), 2U);
            }
            ExpectSourceAsItWas(sets);
            ExpectUsable(sets.set);
        });
}

TEST(BitSetSweep, ALargerSizeOfASetAloneKeepsTheBitsThatThereIsRoomFor)
{
    Sweep(
        report,
        [] {
            auto set = std::make_unique<CT_BitSet>(70);
            set->v_SetBit(69, 1);
            return set;
        },
        [](CT_BitSet& set) { set.v_Set(9000, 1); },
        [](CT_BitSet& set, bool failed) {
            EXPECT_EQ(set.n_GetSize(), 9000U);
            EXPECT_EQ(set.n_FirstSetBit(), 69U);
            set.v_SetBit(8999, 1);
            EXPECT_EQ(set.b_GetBit(8999), !failed);
            ExpectUsable(set);
        });
}

TEST(BitSetSweep, ANewSizeWithoutABlockHasZeros)
{
    Sweep(
        report, [] { return std::make_unique<Sets>(); },
        [](Sets& sets) { sets.set.v_Set(9000, 0); },
        [](Sets& sets, bool) {
            EXPECT_EQ(sets.set.n_GetSize(), 9000U);
            EXPECT_TRUE(sets.set.b_IsEmpty());
            ExpectSourceAsItWas(sets);
            ExpectUsable(sets.set);
        });
}

// ---- Alphabet tree ------------------------------------------------------------------------

namespace
{
constexpr unsigned TEXTS = 40; // of nodes that take more memory than the tree has

std::unique_ptr<CT_AlphaTree> Tree()
{
    auto tree = std::make_unique<CT_AlphaTree>();
    tree->v_Add("abc", 1);
    tree->v_Add("abd", 2);
    return tree;
}

const char* Text(unsigned n)
{
    static char text[TEXTS][12];
    std::memcpy(text[n], "abxyzxyzxyz", 12);
    text[n][2 + n / 10] = '0';
    text[n][7] = static_cast<char>('0' + n % 10);
    return text[n];
}
} // namespace

// Nothing is reported. What was there stays.
TEST(AlphaTreeSweep, AKeyThatFindsNoMemoryIsNotEntered)
{
    Sweep(
        report, Tree,
        [](CT_AlphaTree& tree) {
            for (unsigned n = 0; n < TEXTS; ++n)
                tree.v_Add(Text(n), 3 + n);
        },
        [](CT_AlphaTree& tree, bool failed) {
            EXPECT_FALSE(failed);
            EXPECT_EQ(tree.n_Search("abc"), 1U);
            EXPECT_EQ(tree.n_Search("abd"), 2U);
            unsigned entries = 2;
            for (unsigned n = 0; n < TEXTS; ++n) {
                const unsigned value = tree.n_Search(Text(n));
                EXPECT_TRUE(value == 3 + n || value == NONE);
                entries += value != NONE;
            }
            EXPECT_EQ(tree.n_GetNrOfEntries(), entries);
            for (unsigned n = 0; n < TEXTS; ++n) {
                const bool added = tree.n_Search(Text(n)) != NONE;
                EXPECT_EQ(tree.b_Remove(Text(n)), added);
                tree.v_Add(Text(n), 4);
                EXPECT_EQ(tree.n_Search(Text(n)), 4U);
            }
        });
}

TEST(AlphaTreeSweep, TheFirstKeyThatFindsNoMemoryIsNotEntered)
{
    Sweep(
        report, [] { return std::make_unique<CT_AlphaTree>(); },
        [](CT_AlphaTree& tree) { tree.v_Add("a", 1); },
        [](CT_AlphaTree& tree, bool failed) {
            EXPECT_FALSE(failed);
            EXPECT_EQ(tree.n_GetNrOfEntries(), tree.n_Search("a") == 1 ? 1U : 0U);
            tree.v_Add("a", 2);
            EXPECT_EQ(tree.n_Search("a"), 2U);
        });
}

TEST(AlphaTreeSweep, ARemovalNeedsNoMemory)
{
    const auto tree = Tree();
    FailingHeap::Track();
    FailingHeap::Arm(1, FailingHeap::FROM);
    EXPECT_EQ(tree->b_Remove("abc"), 1);
    EXPECT_EQ(FailingHeap::Disarm(), 0U);
    EXPECT_EQ(tree->n_Search("abc"), NONE);
    EXPECT_EQ(tree->n_Search("abd"), 2U);
    EXPECT_EQ(tree->b_Remove("abd"), 1);
    EXPECT_EQ(tree->n_GetNrOfEntries(), 0U);
}

// ---- Memory of an alphabet tree -----------------------------------------------------------

namespace
{
constexpr unsigned KEYS = 20000;

std::string Key(unsigned number)
{
    return std::to_string(number) + "x";
}

void AddAll(CT_AlphaTree& tree)
{
    for (unsigned n = 0; n < KEYS; ++n)
        tree.v_Add(Key(n).c_str(), n);
}

// Leaves ten keys, of which the first three begin with the same character.
void RemoveMost(CT_AlphaTree& tree)
{
    for (unsigned n = 10; n < KEYS; ++n)
        EXPECT_EQ(tree.b_Remove(Key(n).c_str()), 1);
}

void ExpectTen(CT_AlphaTree& tree)
{
    EXPECT_EQ(tree.n_GetNrOfEntries(), 10U);
    for (unsigned n = 0; n < 20; ++n)
        EXPECT_EQ(tree.n_Search(Key(n).c_str()), n < 10 ? n : NONE);
}
} // namespace

TEST(AlphaTreeSweep, MemoryComesBackWhenMostOfItIsUnused)
{
    CT_AlphaTree full, packed, emptied;
    FailingHeap::Track();
    AddAll(full);
    EXPECT_GE(FailingHeap::Live(), 8U);
    FailingHeap::Track();
    AddAll(packed);
    RemoveMost(packed);
    // The pool and one block of nodes.
    EXPECT_EQ(FailingHeap::Live(), 2U);
    ExpectTen(packed);
    FailingHeap::Track();
    AddAll(emptied);
    RemoveMost(emptied);
    for (unsigned n = 0; n < 10; ++n)
        emptied.b_Remove(Key(n).c_str());
    EXPECT_EQ(FailingHeap::Live(), 1U);
}

// Giving back needs a block for what stays; without one everything stays where it is.
TEST(AlphaTreeSweep, RemovingNeedsNoMemory)
{
    CT_AlphaTree tree;
    AddAll(tree);
    FailingHeap::Arm(1, FailingHeap::FROM);
    for (unsigned n = 10; n < KEYS; ++n)
        tree.b_Remove(Key(n).c_str());
    EXPECT_GT(FailingHeap::Disarm(), 0U);
    ExpectTen(tree);
    AddAll(tree);
    EXPECT_EQ(tree.n_GetNrOfEntries(), KEYS);
    EXPECT_EQ(tree.n_Search(Key(KEYS - 1).c_str()), KEYS - 1);
}

// Branches that wait are on the heap; without it they are on the stack.
TEST(AlphaTreeSweep, ADumpWithoutMemoryForWhatWaitsIsTheSame)
{
    CT_AlphaTree tree;
    std::string key;
    for (unsigned n = 0; n < 100; ++n) {
        tree.v_Add((key + "a").c_str(), 2 * n);
        tree.v_Add((key + "b").c_str(), 2 * n + 1);
        key += 'a';
    }
    const auto dump = [&tree](unsigned number, unsigned* failures) {
        testing::internal::CaptureStdout();
        FailingHeap::Arm(number, FailingHeap::FROM);
        tree.v_Dump(CT_AlphaTree::es_Byte);
        *failures = FailingHeap::Disarm();
        return testing::internal::GetCapturedStdout();
    };
    unsigned failures;
    const std::string whole = dump(0, &failures);
    EXPECT_EQ(std::count(whole.begin(), whole.end(), '\n'), 200);
    EXPECT_EQ(dump(1, &failures), whole);
    EXPECT_GT(failures, 0U) << "nothing waited on the heap";
    EXPECT_EQ(dump(2, &failures), whole);
    EXPECT_EQ(TakeFailure(), Failure());
}
