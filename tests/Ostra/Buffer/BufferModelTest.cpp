// tests/Ostra/Buffer/BufferModelTest.cpp: random operations on buffers and on their model.
#include "Ostra/Buffer/BufferModel.h"
#include "Ostra/Buffer/BufferText.h"

#include "Support/Directory.h"

#include <random>

namespace
{
constexpr unsigned BUFFERS = 4;
constexpr unsigned ALL = 0xFFFFFFFF;

// Buffers that share blocks among one another, each with its model.
class Players
{
public:
    explicit Players(unsigned seed) : random(seed), allocations(CT_Buffer::sn_GetAllocCount())
    {
        BufferModel::allocations = 0;
    }

    void Play()
    {
        mine = Below(BUFFERS);
        theirs = Below(BUFFERS);
        static void (Players::*const plays[])() = {
            &Players::PlaySet,          &Players::PlaySetBytes,     &Players::PlayShare,
            &Players::PlayShare,        &Players::PlaySetSize,      &Players::PlaySetMinSize,
            &Players::PlayUsedSize,     &Players::PlayReplace,      &Players::PlayReplaceFill,
            &Players::PlayReplaceToEnd, &Players::PlayReplaceRange, &Players::PlayInsert,
            &Players::PlayInsertFill,   &Players::PlayInsertRange,  &Players::PlayAppend,
            &Players::PlayAppendByte,   &Players::PlayAppendByte,   &Players::PlayRemove,
            &Players::PlayRemove,       &Players::PlayRemoveToEnd,  &Players::PlayInsertCopy,
            &Players::PlayInsertMove,   &Players::PlayMoveOver,     &Players::PlayGrowth,
            &Players::PlayOwnBytes,     &Players::PlayOwnBytes,
        };
        (this->*plays[Below(std::size(plays))])();
    }

    void Compare() const
    {
        for (unsigned n = 0; n < BUFFERS; ++n) {
            SCOPED_TRACE("buffer " + std::to_string(n));
            const CT_Buffer& buffer = buffers[n];
            const BufferModel& model = models[n];
            ASSERT_EQ(buffer.n_GetGrowth(), model.growth);
            ASSERT_EQ(buffer.n_GetUsedSize(), model.Used());
            ASSERT_EQ(buffer.n_GetMaximumSize(), model.Maximum());
            ASSERT_EQ(buffer.n_GetUseCount(), model.Uses());
            ASSERT_EQ(buffer.qcv_Get() == nullptr, model.block == nullptr);
            for (unsigned other = 0; other < n; ++other)
                ASSERT_EQ(buffer.qcv_Get() == buffers[other].qcv_Get(),
                          model.block == models[other].block);
            CompareBytes(buffer, model);
        }
        ASSERT_EQ(CT_Buffer::sn_GetAllocCount() - allocations, BufferModel::allocations);
    }

    const char* Name() const { return name; }

private:
    static void CompareBytes(const CT_Buffer& buffer, const BufferModel& model)
    {
        const unsigned char* bytes = static_cast<const unsigned char*>(buffer.qcv_Get());
        for (unsigned n = 0; n < model.Used(); ++n) {
            const int expected = model.block->room[n];
            ASSERT_TRUE(expected == BufferModel::UNKNOWN || expected == bytes[n]) << "at " << n;
        }
    }

    unsigned Below(std::size_t limit)
    {
        return limit ? static_cast<unsigned>(random() % limit) : 0;
    }
    // Small sizes mostly, so that blocks are kept, filled up, and grow.
    unsigned Size() { return Below(4) ? Below(40) : Below(300); }
    unsigned Offset() { return Below(Mine().Used() + 1); }
    bool Coin() { return Below(2) != 0; }

    CT_Buffer& Buffer() { return buffers[mine]; }
    CT_Buffer& Other() { return buffers[theirs]; }
    BufferModel& Mine() { return models[mine]; }
    BufferModel& Theirs() { return models[theirs]; }

    std::string RandomBytes(unsigned count)
    {
        std::string bytes;
        for (unsigned n = 0; n < count; ++n)
            bytes += static_cast<char>(random());
        return bytes;
    }
    static BufferModel::Range ToRange(const std::string& bytes)
    {
        return {reinterpret_cast<const unsigned char*>(bytes.data()),
                reinterpret_cast<const unsigned char*>(bytes.data()) + bytes.size()};
    }

    void PlayGrowth()
    {
        name = "v_SetGrowth";
        static const unsigned growths[] = {32, 0, 1, 7, 16, 64, 100};
        const unsigned growth = growths[Below(std::size(growths))];
        Mine().growth = growth ? growth : 32;
        Buffer().v_SetGrowth(growth);
    }
    void PlaySet()
    {
        name = "v_Set with a size";
        const unsigned size = Size();
        const unsigned growth = Coin() ? ALL : 1 + Below(80);
        const bool keep = Coin();
        Buffer().v_Set(size, growth, keep);
        Mine().Set(size, growth, keep);
    }
    void PlaySetBytes()
    {
        name = "v_Set with bytes";
        const std::string bytes = RandomBytes(Size());
        const unsigned growth = Coin() ? ALL : 32;
        Buffer().v_Set(bytes.data(), static_cast<unsigned>(bytes.size()), growth);
        Mine().Set(ToRange(bytes), growth);
    }
    void PlayShare()
    {
        name = "sharing";
        Coin() ? Buffer().v_Set(&Other()) : Buffer().v_Replace(&Other());
        Mine().Share(Theirs());
    }
    void PlaySetSize()
    {
        name = "v_SetSize";
        const unsigned size = Size();
        const bool keep = Below(4) != 0;
        Buffer().v_SetSize(size, keep);
        Mine().SetSize(size, keep);
    }
    void PlaySetMinSize()
    {
        name = "v_SetMinSize";
        const unsigned size = Size();
        const bool keep = Below(4) != 0;
        Buffer().v_SetMinSize(size, keep);
        Mine().SetMinSize(size, keep);
    }
    void PlayUsedSize()
    {
        name = "v_SetUsedSize";
        const unsigned size = Offset();
        Buffer().v_SetUsedSize(size);
        Mine().SetUsedSize(size);
    }
    void PlayReplace()
    {
        name = "v_Replace with bytes";
        const std::string bytes = RandomBytes(Size());
        const unsigned offset = Below(5) ? Offset() : Size();
        Buffer().v_Replace(bytes.data(), static_cast<unsigned>(bytes.size()), offset);
        Mine().Replace(ToRange(bytes), false, offset);
    }
    void PlayReplaceFill()
    {
        name = "v_Replace with a byte";
        const unsigned count = Size();
        const unsigned offset = Offset();
        const unsigned char byte = static_cast<unsigned char>(random());
        Buffer().v_Replace(byte, count, offset);
        Mine().Replace(BufferModel::Range(count, byte), false, offset);
    }
    void PlayReplaceToEnd()
    {
        name = "v_Replace to the end";
        const std::string bytes = RandomBytes(Mine().Used());
        const unsigned offset = Offset();
        Buffer().v_Replace(bytes.data(), ALL, offset);
        Mine().Replace(ToRange(bytes), true, offset);
    }
    // A range of the other buffer, which may be this one. It may be told with a count that passes
    // the end.
    struct Source
    {
        unsigned from;
        unsigned count;
        unsigned told;
    };
    Source OtherRange()
    {
        Source source{};
        source.from = Below(Theirs().Used() + 1);
        source.count = Below(Theirs().Used() - source.from + 1);
        source.told = source.count;
        if (Below(4) == 0) {
            source.count = Theirs().Used() - source.from;
            source.told = Coin() ? ALL : source.count + Size();
        }
        return source;
    }
    void PlayReplaceRange()
    {
        name = "v_Replace with a range";
        const Source source = OtherRange();
        const unsigned offset = Offset();
        Buffer().v_Replace(&Other(), source.from, source.told, offset);
        Mine().Replace(Theirs().Bytes(source.from, source.count), false, offset);
    }
    void PlayInsert()
    {
        name = "v_Insert with bytes";
        const std::string bytes = RandomBytes(Size());
        const unsigned offset = Offset();
        Buffer().v_Insert(bytes.data(), static_cast<unsigned>(bytes.size()), offset);
        Mine().Insert(ToRange(bytes), offset);
    }
    void PlayInsertFill()
    {
        name = "v_Insert with a byte";
        const unsigned count = Size();
        const unsigned offset = Offset();
        Buffer().v_Insert('f', count, offset);
        Mine().Insert(BufferModel::Range(count, 'f'), offset);
    }
    void PlayInsertRange()
    {
        name = "v_Insert with a range";
        const Source source = OtherRange();
        const unsigned offset = Offset();
        if (Coin())
            Buffer().v_Insert(&Other(), source.from, source.told, offset);
        else
            Buffer().v_AtInsertCopy(&Other(), source.from, source.told, offset);
        Mine().Insert(Theirs().Bytes(source.from, source.count), offset);
    }
    void PlayAppend()
    {
        name = "v_Append with bytes";
        const std::string bytes = RandomBytes(Size());
        const unsigned used = Mine().Used();
        Buffer().v_Append(bytes.data(), static_cast<unsigned>(bytes.size()));
        Mine().Insert(ToRange(bytes), used);
    }
    void PlayAppendByte()
    {
        name = "v_Append with a byte";
        for (unsigned n = Below(30); n > 0; --n) {
            Buffer().v_Append('a');
            Mine().Insert({'a'}, Mine().Used());
        }
    }
    void PlayRemove()
    {
        name = "v_Remove";
        const unsigned offset = Offset();
        const unsigned count = Below(Mine().Used() - offset + 1);
        Buffer().v_Remove(count, offset);
        Mine().Remove(count, offset);
    }
    void PlayRemoveToEnd()
    {
        name = "v_Remove to the end";
        const unsigned offset = Below(4) ? Offset() : Below(Mine().Maximum() + 1);
        Buffer().v_Remove(ALL, offset);
        Mine().Remove(ALL, offset);
    }
    void PlayInsertCopy()
    {
        name = "v_AtInsertCopy";
        const unsigned from = Offset();
        const unsigned count = Below(Mine().Used() - from + 1);
        const unsigned to = Offset();
        Buffer().v_AtInsertCopy(from, count, to);
        Mine().AtInsertCopy(from, count, to);
    }
    void PlayInsertMove()
    {
        name = "v_AtInsertMove";
        const unsigned from = Offset();
        const unsigned count = Below(Mine().Used() - from + 1);
        const unsigned outside = Mine().Used() - count;
        unsigned to = Below(outside + 1);
        if (to > from)
            to += count;
        Buffer().v_AtInsertMove(from, count, to);
        Mine().AtInsertMove(from, count, to);
    }
    void PlayMoveOver()
    {
        name = "v_AtInsertMove from another buffer";
        const Source source = OtherRange();
        const unsigned offset = Offset();
        Buffer().v_AtInsertMove(&Other(), source.from, source.told, offset);
        if (theirs != mine) {
            Mine().Insert(Theirs().Bytes(source.from, source.count), offset);
            Theirs().Remove(source.count, source.from);
        } else if (offset <= source.from || offset >= source.from + source.count) {
            Mine().AtInsertMove(source.from, source.count, offset);
        } else {
            Mine().Unshare();
        }
    }
    void PlayOwnBytes()
    {
        name = "bytes of its own";
        theirs = mine;
        Source source = OtherRange();
        const BufferModel::Range range = Mine().Bytes(source.from, source.count);
        const char* const bytes = static_cast<const char*>(Buffer().qcv_Get()) + source.from;
        const unsigned offset = Offset();
        switch (Below(4)) {
        case 0:
            Buffer().v_Set(bytes, source.count, ALL);
            return Mine().Set(range, ALL);
        case 1:
            Buffer().v_Replace(bytes, source.count, offset);
            return Mine().Replace(range, false, offset);
        case 2:
            Buffer().v_Insert(bytes, source.count, offset);
            return Mine().Insert(range, offset);
        default:
            Buffer().v_Append(bytes, source.count);
            return Mine().Insert(range, Mine().Used());
        }
    }

    std::mt19937 random;
    CT_Buffer buffers[BUFFERS];
    BufferModel models[BUFFERS];
    unsigned allocations;
    unsigned mine = 0;
    unsigned theirs = 0;
    const char* name = "";
};
} // namespace

TEST(BufferModel, RandomOperationsDoAsTheModelDoes)
{
    constexpr unsigned ROUNDS = 40;
    constexpr unsigned OPERATIONS = 500;
    const unsigned first = Seed(20010);
    for (unsigned seed = first; seed < first + ROUNDS; ++seed) {
        Players players(seed);
        for (unsigned n = 0; n < OPERATIONS; ++n) {
            players.Play();
            players.Compare();
            ASSERT_FALSE(HasFatalFailure())
                << "seed " << seed << ", operation " << n << ", " << players.Name();
        }
    }
    std::printf("model buffer: %u seeds, %u operations, 0 differences\n", ROUNDS,
                ROUNDS * OPERATIONS);
}
