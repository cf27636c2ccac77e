// tests/Ostra/Frame/VectorTest.cpp: what blocks tell, beside their numbers one by one, and the ways
// by masks and by wide registers beside the plain ones.
#include <Ostra/Containers/BitWords.h>
#include <Ostra/Frame/Vector.h>
#include <Ostra/String/TextOperations.h>
#include <Ostra/String/TextStrides.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <random>
#include <vector>

#include "Support/Directory.h"
#include "Support/PageEnd.h"

namespace
{
constexpr unsigned ROUNDS = 2000;

// Bytes of which most, some or few have their highest bit.
std::array<unsigned char, 16> Bytes(std::mt19937& random)
{
    std::array<unsigned char, 16> bytes;
    const unsigned high = static_cast<unsigned>(random() % 17);
    for (unsigned char& byte : bytes)
        byte = static_cast<unsigned char>(random() % 128 + (random() % 16 < high ? 128 : 0));
    return bytes;
}

// Called only where the processor has masks.
OSTRA_FOR_MASKS unsigned MaskOf(const std::array<unsigned char, 16>& bytes)
{
    t_Block<unsigned char> block;
    CT_Vector::sv_Load(block, bytes.data());
    return CT_Vector::sn_Mask(block);
}

// What wide blocks give, called only where registers are as wide.
struct Wide
{
    bool zero;
    unsigned mask;
    std::array<unsigned char, 32> narrow; // of the units
    std::array<unsigned short, 32> widened;

    bool operator==(const Wide&) const = default;
};

OSTRA_FOR_WIDE Wide WideOf(const std::array<unsigned char, 32>& bytes,
                           const std::array<unsigned short, 32>& units)
{
    Wide wide;
    t_Block<unsigned char, 32> block, narrow;
    t_Block<unsigned short, 32> low, high;
    CT_Vector::sv_Load(block, bytes.data());
    CT_Vector::sv_Load(low, units.data());
    CT_Vector::sv_Load(high, units.data() + 16);
    wide.zero = CT_Vector::sb_IsZeroWide(block);
    wide.mask = CT_Vector::sn_MaskWide(block);
    CT_Vector::sv_NarrowWide(narrow, low, high);
    CT_Vector::sv_Store(wide.narrow.data(), narrow);
    for (unsigned half = 0; half < 32; half += 16)
        CT_Vector::sv_Widen(wide.widened.data() + half,
                            reinterpret_cast<const char*>(bytes.data()) + half);
    return wide;
}

Wide PlainWideOf(const std::array<unsigned char, 32>& bytes,
                 const std::array<unsigned short, 32>& units)
{
    Wide wide{true, 0, {}, {}};
    for (unsigned n = 0; n < 32; ++n) {
        wide.zero = wide.zero && !bytes[n];
        wide.mask |= (bytes[n] >> 7 & 1u) << n;
        wide.narrow[n] = static_cast<unsigned char>(std::min<unsigned>(units[n], 255));
        wide.widened[n] = bytes[n];
    }
    return wide;
}

template <class Number>
OSTRA_FOR_WIDEST std::uint64_t SameOf(const Number* left, const Number* right, std::uint64_t among)
{
    t_Block<Number, 64> first, second;
    CT_Vector::sv_Load(first, left);
    CT_Vector::sv_Load(second, right);
    return CT_Vector::sn8_SameWidest(first, second, among);
}

template <class Number>
void ExpectSameOf(std::mt19937& random)
{
    constexpr unsigned count = 64 / sizeof(Number);
    Number left[count], right[count];
    const std::uint64_t among = std::uint64_t(random()) << 32 | random();
    std::uint64_t expected = 0;
    for (unsigned n = 0; n < count; ++n) {
        left[n] = static_cast<Number>(random());
        right[n] = random() % 2 ? left[n] : static_cast<Number>(random());
        expected |= std::uint64_t(left[n] == right[n]) << n;
    }
    ASSERT_EQ(SameOf(left, right, among), expected & among);
    ASSERT_EQ(SameOf(left, right, ~std::uint64_t()), expected);
}

template <unsigned n_Blocks>
OSTRA_FOR_MASKS unsigned MaskOf(const int* passed)
{
    t_Block<int> blocks[n_Blocks];
    for (unsigned n = 0; n < n_Blocks; ++n)
        CT_Vector::sv_Load(blocks[n], passed + 4 * n);
    return CT_Vector::sn_Mask(blocks);
}

template <unsigned n_Blocks>
unsigned PlainMaskOf(const int* passed)
{
    t_Block<int> blocks[n_Blocks];
    for (unsigned n = 0; n < n_Blocks; ++n)
        CT_Vector::sv_Load(blocks[n], passed + 4 * n);
    return CT_Vector::sn_PlainMask(blocks);
}

// A text of few different characters, with a terminator now and then.
template <class Unit>
std::vector<Unit> Text(std::mt19937& random, unsigned count)
{
    const Unit characters[] = {'a', 'b', static_cast<Unit>(0xE4), static_cast<Unit>(-1), 'a', 'a'};
    const unsigned rare = 1 + static_cast<unsigned>(random() % 512);
    std::vector<Unit> text(count);
    for (Unit& c : text)
        c = random() % rare ? 'a' : random() % 4 ? characters[random() % 6] : Unit(0);
    return text;
}

// What the stride with the first hit begins with, told by looking at each character.
template <class Unit, class Wanted>
unsigned PassOneByOne(const Unit* text, unsigned count, Wanted wanted)
{
    constexpr unsigned stride = CT_TextStrides<Unit>::STRIDE;
    unsigned at = 0;
    while (at < count && !wanted.b_IsHit(text + at))
        ++at;
    return std::min(at, count) / stride * stride;
}

template <class Unit, class Wanted>
void ExpectSamePass(const Unit* text, unsigned count, Wanted wanted)
{
    using Strides = CT_TextStrides<Unit>;
    const unsigned expected = PassOneByOne(text, count, wanted);
    ASSERT_EQ(Strides::sn_PassPlain(text, count, wanted), expected);
    ASSERT_EQ(Strides::sn_Pass(text, count, wanted), expected);
    if (CT_Vector::sb_HasWide()) {
        ASSERT_EQ(Strides::sn_PassWide(text, count, wanted), expected);
    }
    if (CT_Vector::sb_HasWidest()) {
        ASSERT_EQ(Strides::sn_PassWidest(text, count, wanted), expected);
    }
    for (unsigned at = 0; at + Strides::BLOCK <= count; at += Strides::BLOCK) {
        constexpr unsigned bits = CT_Vector::sn_MarkBits(sizeof(Unit));
        const std::uint64_t hits = wanted.n8_GetHits(text + at);
        for (unsigned n = 0; n < Strides::BLOCK; ++n)
            ASSERT_EQ(hits >> n * bits & ((1u << bits) - 1),
                      wanted.b_IsHit(text + at + n) ? (1u << bits) - 1 : 0u);
    }
}

template <class Unit>
void ExpectSameStrides(unsigned seed)
{
    std::mt19937 random(Seed(seed));
    for (unsigned round = 0; round < ROUNDS / 2; ++round) {
        const unsigned size = 1 + static_cast<unsigned>(random() % 20);
        const unsigned count = static_cast<unsigned>(random() % 600);
        const std::vector<Unit> text = Text<Unit>(random, count + size + 1);
        std::vector<Unit> find = Text<Unit>(random, size);
        ExpectSamePass(text.data() + 1, count, st_Character<Unit>{'b'});
        ExpectSamePass(text.data(), count, st_Character<Unit>{static_cast<Unit>(0xE4)});
        ExpectSamePass(text.data() + 1, count, st_Ends<Unit>(find.data(), size));
        find[size / 2] = 'b';
        ExpectSamePass(text.data(), count, st_Ends<Unit>(find.data(), size));
    }
}

// A search reads no character behind those that it was given.
template <class Unit>
void ExpectStridesWithinPages()
{
    const PageEnd page;
    for (unsigned count = 1; count < 300; ++count)
        for (const unsigned size : {1u, 2u, 3u, 12u, 40u}) {
            Unit* const text = page.Last<Unit>(count + size - 1);
            std::fill_n(text, count + size - 1, Unit('a'));
            text[count - 1] = 'b';
            const std::vector<Unit> find(text + count - 1, text + count - 1 + size);
            ExpectSamePass(text, count, st_Ends<Unit>(find.data(), size));
            ExpectSamePass(text, count, st_Character<Unit>{'b'});
        }
}

// The road of the comparisons is taken by texts that are known to have some characters.
template <class Unit>
void ExpectSameOrder(unsigned seed)
{
    using Operations = CT_TextOperations<Unit>;
    std::mt19937 random(Seed(seed));
    for (unsigned round = 0; round < ROUNDS; ++round) {
        const unsigned count = 1 + static_cast<unsigned>(random() % 80);
        std::vector<Unit> left = Text<Unit>(random, count);
        std::vector<Unit> right = left;
        if (random() % 4)
            right[random() % count] = static_cast<Unit>(random());
        if (random() % 2)
            right[random() % count] = 0;
        left[count - 1] = right[count - 1] = 0;
        const unsigned known =
            1 + std::min(Operations::sn_Length(left.data()), Operations::sn_Length(right.data()));
        ASSERT_EQ(Operations::si_CompareKnown(left.data(), right.data(), known,
                                              count >= Operations::BLOCK),
                  Operations::si_Compare(left.data(), right.data()));
    }
}

// Texts of each length that end with a page, or begin with one.
template <class Unit>
void ExpectLengthsAtPageEnds()
{
    using Operations = CT_TextOperations<Unit>;
    const PageEnd page;
    Unit* const start = page.Last<Unit>(page.Size() / sizeof(Unit));
    std::fill_n(start, page.Size() / sizeof(Unit), Unit('a'));
    for (unsigned length = 0; length < 70; ++length) {
        Unit* const last = page.Last<Unit>(length + 1);
        last[length] = 0;
        ASSERT_EQ(Operations::sn_WordLength(last), length);
        last[length] = 'a';
        for (unsigned from = 0; from < 20; ++from) {
            start[from + length] = 0;
            ASSERT_EQ(Operations::sn_WordLength(start + from), length);
            start[from + length] = 'a';
        }
    }
}

template <class T>
void ExpectSameWords(std::mt19937& random, T operation)
{
    const unsigned count = static_cast<unsigned>(random() % 100);
    const unsigned apart = static_cast<unsigned>(random() % 40);
    std::vector<char> words(4 * count + apart + 1), other(4 * count + 1);
    for (char& c : words)
        c = static_cast<char>(random());
    for (char& c : other)
        c = static_cast<char>(random());
    std::vector<char> expected = words;
    for (unsigned n = 0; n < count; ++n) {
        unsigned mine, others;
        std::memcpy(&mine, expected.data() + apart + 4 * n, 4);
        std::memcpy(&others, other.data() + 1 + 4 * n, 4);
        mine = operation(mine, others);
        std::memcpy(expected.data() + apart + 4 * n, &mine, 4);
    }
    std::vector<char> plain = words;
    CT_BitWords::sv_CombinePlain(plain.data() + apart, other.data() + 1, count, operation);
    ASSERT_EQ(plain, expected);
    std::vector<char> chosen = words;
    CT_BitWords::sv_Combine(chosen.data() + apart, other.data() + 1, count, operation);
    ASSERT_EQ(chosen, expected);
    if (CT_Vector::sb_HasWide()) {
        CT_BitWords::sv_CombineWide(words.data() + apart, other.data() + 1, count, operation);
        ASSERT_EQ(words, expected);
    }
}
} // namespace

TEST(Vector, LengthsOfWordsReadNoOtherPage)
{
    ExpectLengthsAtPageEnds<char>();
    ExpectLengthsAtPageEnds<unsigned short>();
}

TEST(Vector, MasksHaveTheHighestBitOfEachByte)
{
    std::mt19937 random(Seed(1401));
    for (unsigned round = 0; round < ROUNDS; ++round) {
        const auto bytes = Bytes(random);
        unsigned expected = 0;
        for (unsigned n = 0; n < 16; ++n)
            expected |= (bytes[n] >> 7 & 1u) << n;
        t_Block<unsigned char> block;
        CT_Vector::sv_Load(block, bytes.data());
        ASSERT_EQ(CT_Vector::sn_PlainMask(block), expected);
        if (CT_Vector::sb_HasMasks()) {
            ASSERT_EQ(MaskOf(bytes), expected);
        }
    }
}

TEST(Vector, MasksHaveTwoBitsOfEachOfEightNumbersAndOneOfEachOfSixteen)
{
    for (unsigned bits = 0; bits < 0x10000; ++bits) {
        int passed[16];
        unsigned twice = 0;
        for (unsigned n = 0; n < 16; ++n) {
            passed[n] = bits >> n & 1 ? -1 : 0;
            twice |= n < 8 && passed[n] ? 3u << 2 * n : 0;
        }
        ASSERT_EQ(PlainMaskOf<4>(passed), bits);
        ASSERT_EQ(PlainMaskOf<2>(passed), twice);
        if (CT_Vector::sb_HasMasks()) {
            ASSERT_EQ(MaskOf<4>(passed), bits);
            ASSERT_EQ(MaskOf<2>(passed), twice);
        }
    }
}

TEST(Vector, BlockIsZeroIfNoBitIsSet)
{
    t_Block<unsigned short> block{};
    EXPECT_TRUE(CT_Vector::sb_IsZero(block));
    for (unsigned bit = 0; bit < 128; ++bit) {
        unsigned char bytes[16] = {};
        bytes[bit / 8] = static_cast<unsigned char>(1 << bit % 8);
        CT_Vector::sv_Load(block, bytes);
        EXPECT_FALSE(CT_Vector::sb_IsZero(block)) << bit;
    }
}

TEST(Vector, WideBlocksGiveWhatTheirNumbersDo)
{
    if (!CT_Vector::sb_HasWide())
        GTEST_SKIP() << "no registers of 32 bytes";
    std::mt19937 random(Seed(1405));
    const unsigned most[] = {0x7F, 0xFF, 0x100, 0x7FFF, 0x8000, 0xFFFF};
    for (unsigned round = 0; round < ROUNDS; ++round) {
        std::array<unsigned char, 32> bytes;
        std::array<unsigned short, 32> units;
        const unsigned rare = 1 + static_cast<unsigned>(random() % 64);
        for (unsigned char& one : bytes)
            one = static_cast<unsigned char>(random() % rare ? 0 : random());
        for (unsigned short& unit : units)
            unit = static_cast<unsigned short>(most[random() % 6] - random() % 2);
        ASSERT_TRUE(WideOf(bytes, units) == PlainWideOf(bytes, units)) << round;
    }
}

TEST(Vector, TheWidestBlocksTellWhichNumbersAreTheSame)
{
    if (!CT_Vector::sb_HasWidest())
        GTEST_SKIP() << "no registers of 64 bytes";
    std::mt19937 random(Seed(1406));
    for (unsigned round = 0; round < ROUNDS; ++round) {
        ExpectSameOf<unsigned char>(random);
        ExpectSameOf<unsigned short>(random);
    }
}

TEST(Vector, StridesOfBytesAreTheSameByEachWay)
{
    ExpectSameStrides<char>(1402);
}

TEST(Vector, StridesOfUnitsAreTheSameByEachWay)
{
    ExpectSameStrides<unsigned short>(1403);
}

TEST(Vector, StridesReadNoOtherPage)
{
    ExpectStridesWithinPages<char>();
    ExpectStridesWithinPages<unsigned short>();
}

TEST(Vector, ComparisonByBlocksIsThatOfCharacters)
{
    ExpectSameOrder<char>(1404);
    ExpectSameOrder<unsigned short>(1405);
}

TEST(Vector, WordsAreCombinedTheSameByEachWayAtAnyAddress)
{
    std::mt19937 random(Seed(1406));
    for (unsigned round = 0; round < ROUNDS; ++round) {
        ExpectSameWords(random, [](unsigned mine, unsigned other) { return mine | other; });
        ExpectSameWords(random, [](unsigned mine, unsigned other) { return other & ~mine; });
    }
}
