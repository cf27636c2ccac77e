// tests/Ostra/Containers/BitSetTest.cpp
#include <Ostra/Containers/BitSet.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace
{
constexpr unsigned NONE = 0xFFFFFFFF;

typedef std::set<unsigned> Bits;
typedef std::vector<unsigned> Words;

void Fill(CT_BitSet& set, const Bits& bits)
{
    for (unsigned bit : bits)
        set.v_SetBit(bit, 1);
}

Bits Read(const CT_BitSet& set)
{
    Bits bits;
    for (unsigned bit = 0; bit < set.n_GetSize(); ++bit)
        if (set.b_GetBit(bit))
            bits.insert(bit);
    return bits;
}

Words ReadWords(const CT_BitSet& set)
{
    const CT_Buffer* buffer = set.pcco_GetBuffer();
    Words words(buffer->n_GetUsedSize() / 4);
    if (!words.empty())
        std::memcpy(words.data(), buffer->qcv_Get(), words.size() * 4);
    return words;
}

unsigned Uses(const CT_BitSet& set)
{
    return set.pcco_GetBuffer()->n_GetUseCount();
}

// What setting all bits leaves of them: the last word of a size of whole words becomes 0.
unsigned FullCount(unsigned size)
{
    return size % 32 ? size : size - (size ? 32 : 0);
}

const unsigned sizes[] = {0,   1,   2,   31,  32,  33,  63,  64,   65,   127,  128, 129,
                          159, 160, 255, 256, 257, 511, 512, 1000, 1024, 1025, 5000};
} // namespace

// ---- Construction -------------------------------------------------------------------------

TEST(BitSet, ANewSetHas256BitsThatAreZero)
{
    CT_BitSet set;
    EXPECT_EQ(set.n_GetSize(), 256U);
    EXPECT_EQ(ReadWords(set), Words(8, 0));
    EXPECT_EQ(set.pcco_GetBuffer()->n_GetGrowth(), 32U);
    EXPECT_TRUE(set.b_IsEmpty());
}

TEST(BitSet, TheBlockHoldsWholeWords)
{
    for (unsigned size : sizes) {
        SCOPED_TRACE(size);
        CT_BitSet set(size);
        EXPECT_EQ(set.n_GetSize(), size);
        EXPECT_EQ(ReadWords(set), Words((size + 31) / 32, 0));
    }
}

TEST(BitSet, ASetTakesOneBlock)
{
    const unsigned before = CT_Buffer::sn_GetAllocCount();
    CT_BitSet set(1000);
    EXPECT_EQ(CT_Buffer::sn_GetAllocCount(), before + 1);
    CT_BitSet copy(&set);
    CT_BitSet none(0u);
    EXPECT_EQ(CT_Buffer::sn_GetAllocCount(), before + 1);
    EXPECT_EQ(none.pcco_GetBuffer()->qcv_Get(), nullptr);
}

TEST(BitSet, AConstructedCopySharesUntilTheSourceIsWritten)
{
    CT_BitSet source(100);
    Fill(source, {3, 99});
    CT_BitSet copy(&source);
    EXPECT_EQ(copy.n_GetSize(), 100U);
    EXPECT_EQ(copy.pcco_GetBuffer()->qcv_Get(), source.pcco_GetBuffer()->qcv_Get());
    EXPECT_EQ(Uses(copy), 2U);
    source.v_SetBit(50, 1);
    EXPECT_EQ(Uses(copy), 1U);
    EXPECT_EQ(Read(copy), (Bits{3, 99}));
    EXPECT_EQ(Read(source), (Bits{3, 50, 99}));
}

TEST(BitSet, AConstructedCopySharesUntilItIsWritten)
{
    CT_BitSet source(100);
    Fill(source, {3, 99});
    CT_BitSet copy(&source);
    copy.v_Toggle(3);
    EXPECT_EQ(Uses(source), 1U);
    EXPECT_EQ(Read(source), (Bits{3, 99}));
    EXPECT_EQ(Read(copy), (Bits{99}));
}

TEST(BitSet, ADestructedCopyLeavesTheSource)
{
    CT_BitSet source(100);
    source.v_SetBit(7, 1);
    {
        CT_BitSet copy(&source);
        EXPECT_EQ(Uses(source), 2U);
    }
    EXPECT_EQ(Uses(source), 1U);
    EXPECT_EQ(Read(source), (Bits{7}));
}

// ---- v_Set --------------------------------------------------------------------------------

TEST(BitSet, ANewSizeClearsTheBits)
{
    for (unsigned size : {0U, 10U, 300U, 256U, 2000U}) {
        SCOPED_TRACE(size);
        CT_BitSet set;
        set.v_SetBits(1);
        set.v_Set(size, 0);
        EXPECT_EQ(set.n_GetSize(), size);
        EXPECT_EQ(ReadWords(set), Words((size + 31) / 32, 0));
    }
}

TEST(BitSet, ANewSizeLeavesTheOtherHolderOfTheBlock)
{
    for (int keep : {0, 1}) {
        CT_BitSet source(64);
        Fill(source, {0, 63});
        CT_BitSet set(&source);
        set.v_Set(64, keep);
        EXPECT_EQ(Uses(set), 1U);
        EXPECT_EQ(Read(set), keep ? (Bits{0, 63}) : Bits());
        EXPECT_EQ(Read(source), (Bits{0, 63}));
    }
}

TEST(BitSet, ALargerSizeKeepsTheOldBits)
{
    CT_BitSet set(40);
    Fill(set, {0, 31, 32, 39});
    set.v_Set(4000, 1);
    EXPECT_EQ(set.n_GetSize(), 4000U);
    EXPECT_EQ(set.pcco_GetBuffer()->n_GetUsedSize(), 500U);
    const Words words = ReadWords(set);
    EXPECT_EQ(words[0], 0x80000001U);
    EXPECT_EQ(words[1], 0x00000081U);
}

// The last word keeps what the smaller size hides, and counts see it.
TEST(BitSet, ASmallerSizeThatKeepsHasStaleBitsInItsLastWord)
{
    CT_BitSet set(64);
    Fill(set, {1, 9, 30, 40});
    set.v_Set(10, 1);
    EXPECT_EQ(set.n_GetSize(), 10U);
    EXPECT_EQ(ReadWords(set), (Words{0x40000202}));
    EXPECT_EQ(set.n_NrSetBits(), 3U);
    EXPECT_EQ(set.n_NrUnsetBits(), 7U);
}

// 4 and 8 bytes have blocks of one size, so the buffer changes nothing.
TEST(BitSet, ASizeThatComesBackWithinOneBlockFindsItsBitsAgain)
{
    CT_BitSet set(64);
    Fill(set, {1, 40});
    set.v_Set(32, 1);
    EXPECT_EQ(Read(set), (Bits{1}));
    set.v_Set(64, 1);
    EXPECT_EQ(Read(set), (Bits{1, 40}));
}

namespace
{
// Lets the heap hand out blocks that are full of bits.
void SoilTheHeap()
{
    std::vector<void*> blocks;
    for (int round = 0; round < 8; ++round)
        for (std::size_t size = 24; size < 700; size += 8) {
            blocks.push_back(std::malloc(size));
            std::memset(blocks.back(), 0xFF, size);
        }
    for (void* block : blocks)
        std::free(block);
}
} // namespace

TEST(BitSet, NewWordsOfALargerSizeThatKeepsAreZero)
{
    for (unsigned first : {0U, 1U, 32U, 96U}) {
        for (unsigned size : {96U, 160U, 161U, 300U, 1000U, 3000U}) {
            SCOPED_TRACE(testing::Message() << first << " to " << size);
            SoilTheHeap();
            CT_BitSet set(first);
            set.v_Set(size, 1);
            EXPECT_EQ(set.n_NrSetBits(), 0U);
            EXPECT_TRUE(set.b_IsEmpty());

            // In a block that was shared, too.
            SoilTheHeap();
            CT_BitSet source(first), copy(&source);
            copy.v_Set(size, 1);
            EXPECT_EQ(copy.n_NrSetBits(), 0U);
            SoilTheHeap();
            CT_BitSet written(&source);
            written.v_SetBit(0, 1);
            written.v_Set(size, 1);
            EXPECT_EQ(written.n_NrSetBits(), first ? 1U : 0U);
        }
    }
}

// 18 bits of a larger size are left in the word of a set of 2.
TEST(BitSet, NoMoreBitsAreUnsetThanTheSetHasAndNeverLessThanNone)
{
    CT_BitSet set(20);
    set.v_SetBits(1);
    set.v_Set(2, 1);
    EXPECT_EQ(set.n_NrSetBits(), 20U);
    EXPECT_EQ(set.n_NrUnsetBits(), 0U);
    set.v_SetBits(0);
    EXPECT_EQ(set.n_NrUnsetBits(), 2U);
}

TEST(BitSet, SettingToASetTakesItsSizeAndShares)
{
    CT_BitSet source(77);
    Fill(source, {0, 76});
    CT_BitSet set(10);
    set.v_Set(&source);
    EXPECT_EQ(set.n_GetSize(), 77U);
    EXPECT_EQ(Uses(set), 2U);
    EXPECT_EQ(Read(set), (Bits{0, 76}));
    set.v_SetBits(0);
    EXPECT_EQ(Read(source), (Bits{0, 76}));
}

TEST(BitSet, ASetThatIsSetOrAssignedToItselfStays)
{
    CT_BitSet set(77);
    Fill(set, {0, 76});
    set.v_Set(&set);
    set.v_Assign(&set);
    EXPECT_EQ(Read(set), (Bits{0, 76}));
    set.v_NAssign(&set);
    EXPECT_EQ(set.n_NrSetBits(), 75U);
    EXPECT_FALSE(set.b_GetBit(76));
}

// ---- Assignment ---------------------------------------------------------------------------

TEST(BitSet, AssignSharesAndKeepsTheSize)
{
    CT_BitSet source(60);
    Fill(source, {2, 58});
    CT_BitSet set(57);
    set.v_Assign(&source);
    EXPECT_EQ(set.n_GetSize(), 57U);
    EXPECT_EQ(Uses(set), 2U);
    EXPECT_EQ(set.pcco_GetBuffer()->qcv_Get(), source.pcco_GetBuffer()->qcv_Get());
    EXPECT_EQ(Read(set), (Bits{2}));
}

TEST(BitSet, NAssignOf256BitsClearsTheLastWord)
{
    CT_BitSet source;
    source.v_SetBit(0, 1);
    CT_BitSet set;
    set.v_NAssign(&source);
    EXPECT_EQ(ReadWords(set), (Words{0xFFFFFFFE, NONE, NONE, NONE, NONE, NONE, NONE, 0}));
    EXPECT_EQ(Read(source), (Bits{0}));
    EXPECT_EQ(Uses(set), 1U);
    EXPECT_EQ(Uses(source), 1U);
}

// ---- One bit ------------------------------------------------------------------------------

TEST(BitSet, BitsLieInWordsFromTheLowestUp)
{
    for (unsigned bit = 0; bit < 100; ++bit) {
        SCOPED_TRACE(bit);
        CT_BitSet set(100);
        set.v_SetBit(bit, 1);
        Words words(4, 0);
        words[bit / 32] = 1U << bit % 32;
        EXPECT_EQ(ReadWords(set), words);
        EXPECT_EQ(Read(set), (Bits{bit}));
    }
}

TEST(BitSet, OperationsOnOneBit)
{
    static const struct
    {
        const char* name;
        void (*operation)(CT_BitSet&, unsigned bit);
        bool fromZero, fromOne;
    } cases[] = {
        {"set to 1", [](CT_BitSet& set, unsigned bit) { set.v_SetBit(bit, 1); }, true, true},
        {"set to 0", [](CT_BitSet& set, unsigned bit) { set.v_SetBit(bit, 0); }, false, false},
        {"set to 256", [](CT_BitSet& set, unsigned bit) { set.v_SetBit(bit, 256); }, true, true},
        {"or 1", [](CT_BitSet& set, unsigned bit) { set.v_Or(bit, 1); }, true, true},
        {"or 0", [](CT_BitSet& set, unsigned bit) { set.v_Or(bit, 0); }, false, true},
        {"or -2", [](CT_BitSet& set, unsigned bit) { set.v_Or(bit, -2); }, true, true},
        {"and 1", [](CT_BitSet& set, unsigned bit) { set.v_And(bit, 1); }, false, true},
        {"and 0", [](CT_BitSet& set, unsigned bit) { set.v_And(bit, 0); }, false, false},
        {"and 2", [](CT_BitSet& set, unsigned bit) { set.v_And(bit, 2); }, false, true},
        {"xor 1", [](CT_BitSet& set, unsigned bit) { set.v_Xor(bit, 1); }, true, false},
        {"xor 0", [](CT_BitSet& set, unsigned bit) { set.v_Xor(bit, 0); }, false, true},
        {"xor 2", [](CT_BitSet& set, unsigned bit) { set.v_Xor(bit, 2); }, true, false},
        {"toggle", [](CT_BitSet& set, unsigned bit) { set.v_Toggle(bit); }, true, false},
    };
    for (const auto& row : cases) {
        for (unsigned bit : {0U, 1U, 31U, 32U, 63U, 64U, 69U}) {
            SCOPED_TRACE(std::string(row.name) + ", bit " + std::to_string(bit));
            CT_BitSet zeros(70), ones(70);
            ones.v_SetBits(1);
            Bits around = Read(ones);
            row.operation(zeros, bit);
            row.operation(ones, bit);
            EXPECT_EQ(Read(zeros), row.fromZero ? Bits{bit} : Bits());
            if (!row.fromOne)
                around.erase(bit);
            EXPECT_EQ(Read(ones), around);
        }
    }
}

// What changes nothing is a write with and, and none with or and xor.
TEST(BitSet, OnlyAndMakesTheBlockItsOwnWhereTheBitStays)
{
    CT_BitSet source(70);
    CT_BitSet set(&source);
    set.v_Or(3, 0);
    set.v_Xor(3, 0);
    EXPECT_EQ(set.b_GetBit(3), 0);
    EXPECT_EQ(Uses(set), 2U);
    const unsigned before = CT_Buffer::sn_GetAllocCount();
    set.v_And(3, 1);
    EXPECT_EQ(Uses(set), 1U);
    EXPECT_EQ(CT_Buffer::sn_GetAllocCount(), before + 1);
}

TEST(BitSet, EachWriteMakesTheBlockItsOwn)
{
    static const struct
    {
        const char* name;
        void (*write)(CT_BitSet& set, const CT_BitSet& other);
    } writes[] = {
        {"v_SetBit 0",
         [](CT_BitSet& set, const CT_BitSet&) {
             set.v_SetBit(3, 0);
         }},
        {"v_SetBit 1",
         [](CT_BitSet& set, const CT_BitSet&) {
             set.v_SetBit(3, 1);
         }},
        {"v_Or a bit",
         [](CT_BitSet& set, const CT_BitSet&) {
             set.v_Or(3, 1);
         }},
        {"v_And a bit",
         [](CT_BitSet& set, const CT_BitSet&) {
             set.v_And(3, 0);
         }},
        {"v_Xor a bit",
         [](CT_BitSet& set, const CT_BitSet&) {
             set.v_Xor(3, 1);
         }},
        {"v_Toggle a bit",
         [](CT_BitSet& set, const CT_BitSet&) {
             set.v_Toggle(3);
         }},
        {"v_SetBits 0",
         [](CT_BitSet& set, const CT_BitSet&) {
             set.v_SetBits(0);
         }},
        {"v_SetBits 1",
         [](CT_BitSet& set, const CT_BitSet&) {
             set.v_SetBits(1);
         }},
        {"v_Toggle",
         [](CT_BitSet& set, const CT_BitSet&) {
             set.v_Toggle();
         }},
        {"v_Complement",
         [](CT_BitSet& set, const CT_BitSet&) {
             set.v_Complement();
         }},
        {"v_Or",
         [](CT_BitSet& set, const CT_BitSet& other) {
             set.v_Or(&other);
         }},
        {"v_And",
         [](CT_BitSet& set, const CT_BitSet& other) {
             set.v_And(&other);
         }},
        {"v_Xor",
         [](CT_BitSet& set, const CT_BitSet& other) {
             set.v_Xor(&other);
         }},
        {"v_Difference",
         [](CT_BitSet& set, const CT_BitSet& other) {
             set.v_Difference(&other);
         }},
        {"v_RDifference",
         [](CT_BitSet& set, const CT_BitSet& other) {
             set.v_RDifference(&other);
         }},
    };
    for (const auto& row : writes) {
        SCOPED_TRACE(row.name);
        CT_BitSet source(70), other(70);
        Fill(source, {3, 44});
        Fill(other, {44, 45});
        CT_BitSet set(&source);
        const unsigned before = CT_Buffer::sn_GetAllocCount();
        row.write(set, other);
        EXPECT_EQ(CT_Buffer::sn_GetAllocCount(), before + 1);
        EXPECT_EQ(Uses(set), 1U);
        EXPECT_EQ(Read(source), (Bits{3, 44}));
        row.write(set, other);
        EXPECT_EQ(CT_Buffer::sn_GetAllocCount(), before + 1);
    }
}

TEST(BitSet, ABitBehindTheWordsIsZeroAndStaysSo)
{
    CT_BitSet set(40);
    for (unsigned bit : {64U, 65U, 4000U, 0x80000000U, NONE}) {
        SCOPED_TRACE(bit);
        set.v_SetBit(bit, 1);
        set.v_Toggle(bit);
        EXPECT_EQ(set.b_GetBit(bit), 0);
    }
    EXPECT_EQ(ReadWords(set), Words(2, 0));
}

// ---- All bits -----------------------------------------------------------------------------

// The mask of the last word is taken by the size modulo 32, and that of 0 has no bits.
TEST(BitSet, SettingAllBitsClearsTheLastOfWholeWords)
{
    for (unsigned size : sizes) {
        SCOPED_TRACE(size);
        CT_BitSet set(size);
        set.v_SetBits(1);
        Bits expected;
        for (unsigned bit = 0; bit < FullCount(size); ++bit)
            expected.insert(bit);
        EXPECT_EQ(Read(set), expected);
        EXPECT_EQ(set.n_NrSetBits(), FullCount(size));
        EXPECT_EQ(set.n_NrUnsetBits(), size - FullCount(size));
        set.v_SetBits(0);
        EXPECT_TRUE(set.b_IsEmpty());
    }
}

TEST(BitSet, TheComplementClearsTheLastOfWholeWords)
{
    for (unsigned size : sizes) {
        SCOPED_TRACE(size);
        CT_BitSet set(size), toggled(size);
        Bits expected;
        for (unsigned bit = 0; bit < size; ++bit)
            if (bit % 3 == 0)
                set.v_SetBit(bit, 1);
            else if (bit < FullCount(size))
                expected.insert(bit);
        toggled.v_Assign(&set);
        set.v_Complement();
        EXPECT_EQ(Read(set), expected);
        EXPECT_EQ(set.n_NrSetBits(), expected.size());
        toggled.v_Toggle();
        EXPECT_EQ(Read(toggled), expected);
    }
}

TEST(BitSet, TheLastWordOfWholeWordsWorksBitByBit)
{
    CT_BitSet set(64);
    set.v_SetBits(1);
    EXPECT_EQ(ReadWords(set), (Words{NONE, 0}));
    for (unsigned bit = 32; bit < 64; ++bit)
        set.v_SetBit(bit, 1);
    EXPECT_EQ(set.n_NrSetBits(), 64U);
    EXPECT_EQ(set.n_NrUnsetBits(), 0U);
}

TEST(BitSet, AThirtyThirdBitHasItsOwnMask)
{
    CT_BitSet set(33);
    set.v_SetBits(1);
    EXPECT_EQ(set.n_NrSetBits(), 33U);
    EXPECT_EQ(set.n_NrUnsetBits(), 0U);
    EXPECT_EQ(ReadWords(set), (Words{NONE, 1}));
}

TEST(BitSet, ASetOfNoBitsHasNoWords)
{
    CT_BitSet set(0u), other(0u), full(100);
    full.v_SetBits(1);
    set.v_SetBits(1);
    set.v_Complement();
    set.v_Or(&other);
    set.v_And(&full);
    EXPECT_EQ(set.n_GetSize(), 0U);
    EXPECT_EQ(set.n_FirstSetBit(), NONE);
    EXPECT_EQ(set.n_NrSetBits(), 0U);
    EXPECT_EQ(set.n_NrUnsetBits(), 0U);
    EXPECT_TRUE(set.b_IsEmpty());
    EXPECT_TRUE(set.b_IsSubset(&other));
    EXPECT_TRUE(set.b_IsSubset(&full));
    EXPECT_TRUE(set.b_IsEqual(&full));
}

// ---- Counts and search --------------------------------------------------------------------

TEST(BitSet, TheFirstSetBitIsFoundInEachPlace)
{
    constexpr unsigned TOTAL = 700;
    CT_BitSet set(TOTAL);
    EXPECT_EQ(set.n_FirstSetBit(), NONE);
    for (unsigned bit = TOTAL; bit-- > 0;) {
        CT_BitSet alone(TOTAL);
        alone.v_SetBit(bit, 1);
        EXPECT_EQ(alone.n_FirstSetBit(), bit);
        EXPECT_FALSE(alone.b_IsEmpty());
        set.v_SetBit(bit, 1);
        EXPECT_EQ(set.n_FirstSetBit(), bit);
    }
}

// Each length of run meets each remainder of the words that are counted together.
TEST(BitSet, CountsAreThoseOfTheBits)
{
    for (unsigned size = 1; size < 3000; size += 37) {
        SCOPED_TRACE(size);
        CT_BitSet set(size);
        unsigned count = 0;
        for (unsigned bit = 0; bit < size; ++bit) {
            const bool value = bit * bit % 7 < 3;
            set.v_SetBit(bit, value);
            count += value;
        }
        EXPECT_EQ(set.n_NrSetBits(), count);
        EXPECT_EQ(set.n_NrUnsetBits(), size - count);
    }
}

TEST(BitSet, ManyBitsAreCounted)
{
    constexpr unsigned TOTAL = 5000001;
    CT_BitSet set(TOTAL);
    set.v_SetBits(1);
    EXPECT_EQ(set.n_NrSetBits(), TOTAL);
    set.v_SetBit(TOTAL - 1, 0);
    set.v_SetBit(0, 0);
    EXPECT_EQ(set.n_NrSetBits(), TOTAL - 2);
    EXPECT_EQ(set.n_NrUnsetBits(), 2U);
}

// ---- Comparison ---------------------------------------------------------------------------

TEST(BitSet, EqualityIsThatOfTheWords)
{
    for (unsigned size : {1U, 33U, 64U, 200U, 1000U}) {
        for (unsigned bit = 0; bit < size; bit += 1 + size / 50) {
            SCOPED_TRACE(std::to_string(size) + ", bit " + std::to_string(bit));
            CT_BitSet first(size), second(size);
            EXPECT_TRUE(first.b_IsEqual(&second));
            first.v_SetBit(bit, 1);
            EXPECT_FALSE(first.b_IsEqual(&second));
            EXPECT_FALSE(second.b_IsEqual(&first));
            second.v_SetBit(bit, 1);
            EXPECT_TRUE(first.b_IsEqual(&second));
        }
    }
}

TEST(BitSet, EqualityLooksAtAsManyWordsAsThisSetHas)
{
    CT_BitSet small(40), large(4000);
    Fill(small, {1, 39});
    Fill(large, {1, 39, 64, 3999});
    EXPECT_TRUE(small.b_IsEqual(&large));
    CT_BitSet wider(64);
    Fill(wider, {1, 39});
    EXPECT_TRUE(small.b_IsEqual(&wider));
    EXPECT_TRUE(wider.b_IsEqual(&small));
    wider.v_SetBit(40, 1);
    EXPECT_FALSE(small.b_IsEqual(&wider));
}

TEST(BitSet, ASubsetHasNoBitThatTheOtherLacks)
{
    for (unsigned size : {1U, 33U, 64U, 200U, 1000U}) {
        for (unsigned bit = 0; bit < size; bit += 1 + size / 50) {
            SCOPED_TRACE(std::to_string(size) + ", bit " + std::to_string(bit));
            CT_BitSet empty(size), set(size), full(size);
            for (unsigned each = 0; each < size; ++each)
                full.v_SetBit(each, 1);
            set.v_SetBit(bit, 1);
            EXPECT_TRUE(empty.b_IsSubset(&set));
            EXPECT_TRUE(set.b_IsSubset(&set));
            EXPECT_TRUE(set.b_IsSubset(&full));
            EXPECT_FALSE(set.b_IsSubset(&empty));
            full.v_SetBit(bit, 0);
            EXPECT_FALSE(set.b_IsSubset(&full));
        }
    }
}

TEST(BitSet, OfTwoSizesWhatTheOtherHasNoRoomForIsLacking)
{
    CT_BitSet small(33), large(1000);
    EXPECT_TRUE(large.b_IsSubset(&small));
    EXPECT_TRUE(small.b_IsSubset(&large));
    large.v_SetBit(900, 1);
    EXPECT_FALSE(large.b_IsSubset(&small));
    EXPECT_TRUE(small.b_IsSubset(&large));
    small.v_SetBit(32, 1);
    EXPECT_FALSE(small.b_IsSubset(&large));
    large.v_SetBit(900, 0);
    large.v_SetBit(32, 1);
    EXPECT_TRUE(small.b_IsSubset(&large));
    EXPECT_TRUE(large.b_IsSubset(&small));
}

TEST(BitSet, OfALargerSetTheBitsBeyondTheOtherCount)
{
    CT_BitSet small(64), large(4000);
    Fill(small, {1, 63});
    Fill(large, {1, 63});
    EXPECT_TRUE(large.b_IsEqual(&small));
    EXPECT_TRUE(large.b_IsSubset(&small));
    for (const unsigned bit : {64U, 3999U}) {
        large.v_SetBit(bit, 1);
        EXPECT_FALSE(large.b_IsEqual(&small));
        EXPECT_FALSE(large.b_IsSubset(&small));
        large.v_SetBit(bit, 0);
    }
}

// ---- Sets and sets ------------------------------------------------------------------------

TEST(BitSet, SetAlgebraIsThatOfTheBits)
{
    static const struct
    {
        const char* name;
        void (CT_BitSet::*operation)(const CT_BitSet*);
        bool (*truth)(bool mine, bool other);
    } cases[] = {
        {"or", &CT_BitSet::v_Or,
         [](bool mine, bool other) {
             return mine || other;
         }},
        {"and", &CT_BitSet::v_And,
         [](bool mine, bool other) {
             return mine && other;
         }},
        {"xor", &CT_BitSet::v_Xor,
         [](bool mine, bool other) {
             return mine != other;
         }},
        {"difference", &CT_BitSet::v_Difference,
         [](bool mine, bool other) {
             return mine && !other;
         }},
        {"reverse difference", &CT_BitSet::v_RDifference,
         [](bool mine, bool other) {
             return other && !mine;
         }},
    };
    for (const auto& row : cases) {
        for (unsigned size : sizes) {
            SCOPED_TRACE(std::string(row.name) + " of " + std::to_string(size));
            CT_BitSet mine(size), other(size);
            Bits expected, others;
            for (unsigned bit = 0; bit < size; ++bit) {
                mine.v_SetBit(bit, bit % 3 == 0);
                other.v_SetBit(bit, bit % 5 < 2);
                if (bit % 5 < 2)
                    others.insert(bit);
                if (row.truth(bit % 3 == 0, bit % 5 < 2))
                    expected.insert(bit);
            }
            (mine.*row.operation)(&other);
            EXPECT_EQ(Read(mine), expected);
            EXPECT_EQ(Read(other), others);
        }
    }
}

TEST(BitSet, ASetMeetsItselfAndAHolderOfItsBlock)
{
    const Bits bits{0, 31, 32, 64, 69};
    CT_BitSet source(70);
    Fill(source, bits);
    for (bool self : {true, false}) {
        CT_BitSet set(&source);
        const CT_BitSet* other = self ? &set : &source;
        set.v_Or(other);
        EXPECT_EQ(Read(set), bits);
        set.v_And(other);
        EXPECT_EQ(Read(set), bits);
        set.v_Xor(other);
        EXPECT_EQ(Read(set), Bits());
        set.v_Set(&source);
        set.v_Difference(other);
        EXPECT_EQ(Read(set), Bits());
        set.v_Set(&source);
        set.v_RDifference(other);
        EXPECT_EQ(Read(set), Bits());
    }
    EXPECT_EQ(Read(source), bits);
}

TEST(BitSet, WordsThatTheOtherLacksAreZero)
{
    CT_BitSet large(100), small(30);
    Fill(small, {1});
    Fill(large, {1, 2, 40, 99});
    const CT_BitSet source(&large);
    EXPECT_FALSE(large.b_IsEqual(&small));
    EXPECT_FALSE(large.b_IsSubset(&small));
    large.v_Or(&small);
    EXPECT_EQ(Read(large), (Bits{1, 2, 40, 99}));
    large.v_Xor(&small);
    EXPECT_EQ(Read(large), (Bits{2, 40, 99}));
    large.v_And(&small);
    EXPECT_EQ(Read(large), Bits());
    EXPECT_TRUE(large.b_IsSubset(&small));
    large.v_Assign(&source);
    large.v_RDifference(&small);
    EXPECT_EQ(Read(large), Bits());
    large.v_Assign(&source);
    large.v_Difference(&small);
    EXPECT_EQ(Read(large), (Bits{2, 40, 99}));
    large.v_Assign(&small);
    large.v_SetBits(1);
    EXPECT_EQ(large.n_NrSetBits(), 32U);
    EXPECT_EQ(large.n_FirstSetBit(), 0U);
}
