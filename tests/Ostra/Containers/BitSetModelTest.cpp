// tests/Ostra/Containers/BitSetModelTest.cpp: random operations on sets that share blocks, and on
// their model.
#include <Ostra/Containers/BitSet.h>

#include "Support/Directory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bitset>
#include <cstring>
#include <memory>
#include <random>
#include <vector>

namespace
{
constexpr unsigned SETS = 4;
constexpr unsigned NONE = 0xFFFFFFFF;

// A block: the words it has room for.
typedef std::vector<unsigned> Block;

unsigned Room(unsigned words)
{
    return (32 + 4 * words + 11) / 32 * 8 - 3;
}

struct Model
{
    unsigned bits = 0;
    unsigned words = 0;
    std::shared_ptr<Block> block;

    void Set(unsigned newBits, bool keep)
    {
        bits = newBits;
        words = (bits + 31) / 32;
        if (words == 0) {
            block = nullptr;
            return;
        }
        if (!block || block.use_count() > 1 || block->size() != Room(words)) {
            auto fresh = std::make_shared<Block>(Room(words));
            if (block && keep)
                std::copy_n(block->begin(), std::min<size_t>(used, Room(words)), fresh->begin());
            block = fresh;
        }
        if (!keep)
            std::fill(block->begin(), block->end(), 0);
        used = words;
    }
    void Own()
    {
        if (!block || block.use_count() == 1)
            return;
        block = std::make_shared<Block>(*block);
        std::fill(block->begin() + used, block->end(), 0);
    }
    void Put(unsigned bit, bool value)
    {
        Own();
        const unsigned word = Word(bit / 32), mask = 1U << bit % 32;
        (*block)[bit / 32] = value ? word | mask : word & ~mask;
    }
    bool Get(unsigned bit) const { return Word(bit / 32) >> bit % 32 & 1; }
    unsigned Word(unsigned index) const { return (*block)[index]; }
    template <class Operation>
    void Combine(const Model& other, Operation operation)
    {
        Own();
        for (unsigned n = 0; n < words; ++n)
            (*block)[n] = operation(Word(n), other.Word(n));
    }
    void Mask()
    {
        if (words)
            (*block)[words - 1] = Word(words - 1) & ((1U << bits % 32) - 1);
    }
    unsigned Count() const
    {
        unsigned count = 0;
        for (unsigned n = 0; n < words; ++n)
            count += static_cast<unsigned>(std::bitset<32>(Word(n)).count());
        return count;
    }
    unsigned First() const
    {
        for (unsigned bit = 0; bit < words * 32; ++bit)
            if (Get(bit))
                return bit;
        return NONE;
    }
    long Uses() const { return block ? block.use_count() : 1; }

    unsigned used = 0; // words of the block that are in use
};

class Players
{
public:
    explicit Players(unsigned seed) : random(seed)
    {
        for (unsigned n = 0; n < SETS; ++n)
            Resize(n, 70, false);
    }

    void Play()
    {
        mine = Below(SETS);
        theirs = Below(SETS);
        static void (Players::*const plays[])() = {
            &Players::PlayBit,     &Players::PlayBit,    &Players::PlayBit,
            &Players::PlaySize,    &Players::PlayShare,  &Players::PlayShare,
            &Players::PlayAssign,  &Players::PlayAll,    &Players::PlayComplement,
            &Players::PlayAlgebra, &Players::PlayAlgebra};
        (this->*plays[Below(std::size(plays))])();
    }

    void Compare() const
    {
        for (unsigned n = 0; n < SETS; ++n) {
            SCOPED_TRACE(n);
            const CT_BitSet& set = sets[n];
            const Model& model = models[n];
            const CT_Buffer* buffer = set.pcco_GetBuffer();
            ASSERT_EQ(set.n_GetSize(), model.bits);
            ASSERT_EQ(buffer->n_GetUsedSize(), model.words * 4);
            ASSERT_EQ(buffer->n_GetUseCount(), static_cast<unsigned>(model.Uses()));
            for (unsigned word = 0; word < model.words; ++word) {
                unsigned found;
                std::memcpy(&found, static_cast<const char*>(buffer->qcv_Get()) + 4 * word, 4);
                ASSERT_EQ(found, model.Word(word)) << "word " << word;
            }
            ASSERT_EQ(set.n_NrSetBits(), model.Count());
            ASSERT_EQ(set.n_NrUnsetBits(), model.bits - std::min(model.bits, model.Count()));
            ASSERT_EQ(set.n_FirstSetBit(), model.First());
            ASSERT_EQ(set.b_IsEmpty(), model.Count() == 0);
            CompareWith(n, (n + 1) % SETS);
        }
    }

private:
    void CompareWith(unsigned n, unsigned other) const
    {
        const Model& model = models[n];
        if (model.words != models[other].words)
            return;
        bool equal = true, subset = true;
        for (unsigned word = 0; word < model.words; ++word) {
            equal = equal && model.Word(word) == models[other].Word(word);
            subset = subset && !(model.Word(word) & ~models[other].Word(word));
        }
        ASSERT_EQ(sets[n].b_IsEqual(&sets[other]), equal);
        ASSERT_EQ(sets[n].b_IsSubset(&sets[other]), subset);
    }

    unsigned Below(size_t limit) { return static_cast<unsigned>(random() % limit); }
    CT_BitSet& Set() { return sets[mine]; }
    const CT_BitSet* Other() { return &sets[theirs]; }
    Model& Mine() { return models[mine]; }
    Model& Theirs() { return models[theirs]; }

    void Resize(unsigned n, unsigned bits, bool keep)
    {
        sets[n].v_Set(bits, keep);
        models[n].Set(bits, keep);
    }
    void PlaySize() { Resize(mine, Below(3) ? 32 * Below(4) + Below(3) : Below(700), Below(2)); }
    void PlayShare()
    {
        if (mine == theirs)
            return;
        Set().v_Set(Other());
        Mine() = Theirs();
    }
    void PlayAssign()
    {
        if (mine == theirs || Mine().bits != Theirs().bits)
            return;
        const bool negate = Below(2);
        if (negate)
            Set().v_NAssign(Other());
        else
            Set().v_Assign(Other());
        Mine() = Theirs();
        if (negate)
            ComplementModel();
    }
    void PlayBit()
    {
        if (Mine().bits == 0)
            return;
        const unsigned bit = Below(Mine().bits);
        const int value = static_cast<int>(Below(2));
        switch (Below(5)) {
        case 0:
            Set().v_SetBit(bit, value);
            return Mine().Put(bit, value);
        case 1:
            Set().v_Or(bit, value);
            return value ? Mine().Put(bit, true) : void();
        case 2:
            Set().v_And(bit, value);
            return Mine().Put(bit, value && Mine().Get(bit));
        case 3:
            Set().v_Xor(bit, value);
            return value ? Mine().Put(bit, !Mine().Get(bit)) : void();
        default:
            Set().v_Toggle(bit);
            return Mine().Put(bit, !Mine().Get(bit));
        }
    }
    void PlayAll()
    {
        const int value = static_cast<int>(Below(2));
        Set().v_SetBits(value);
        Mine().Combine(Mine(), [=](unsigned, unsigned) { return value ? NONE : 0; });
        Mine().Mask();
    }
    void ComplementModel()
    {
        Mine().Combine(Mine(), [](unsigned word, unsigned) { return ~word; });
        Mine().Mask();
    }
    void PlayComplement()
    {
        if (Below(2))
            Set().v_Complement();
        else
            Set().v_Toggle();
        ComplementModel();
    }
    void PlayAlgebra()
    {
        if (Mine().words != Theirs().words)
            return;
        const auto combine = [this](auto operation) {
            Mine().Combine(Theirs(), operation);
        };
        switch (Below(5)) {
        case 0:
            Set().v_Or(Other());
            return combine([](unsigned word, unsigned other) { return word | other; });
        case 1:
            Set().v_And(Other());
            return combine([](unsigned word, unsigned other) { return word & other; });
        case 2:
            Set().v_Xor(Other());
            return combine([](unsigned word, unsigned other) { return word ^ other; });
        case 3:
            Set().v_Difference(Other());
            return combine([](unsigned word, unsigned other) { return word & ~other; });
        default:
            Set().v_RDifference(Other());
            return combine([](unsigned word, unsigned other) { return other & ~word; });
        }
    }

    std::mt19937 random;
    CT_BitSet sets[SETS];
    Model models[SETS];
    unsigned mine = 0;
    unsigned theirs = 0;
};
} // namespace

TEST(BitSetModel, RandomOperationsGiveTheModelsBitsAndSharing)
{
    const unsigned seed = Seed(44);
    SCOPED_TRACE("OSTRA_SEED=" + std::to_string(seed));
    Players players(seed);
    for (unsigned step = 0; step < 20000; ++step) {
        players.Play();
        players.Compare();
        ASSERT_FALSE(testing::Test::HasFatalFailure()) << "step " << step;
    }
}
