// tests/Ostra/Buffer/BufferAppendTest.cpp: appends beside the plain way, an insertion at the end.
#include "Ostra/Buffer/BufferText.h"

#include <cstring>
#include <random>
#include <thread>

namespace
{
// Two buffers that everything is done to alike, but for how pieces are added.
class Pair
{
public:
    explicit Pair(unsigned seed) : random(seed) {}

    void Add()
    {
        const unsigned count = Below(8) ? Below(20) : Below(400);
        const unsigned used = inserted.n_GetUsedSize();
        const bool own = used && !Below(9);
        const unsigned from = own ? Below(used) : Below(100);
        const unsigned size = own ? count % (used - from + 1) : count;
        const bool shared = !Below(9);
        const CT_Buffer first(shared ? &appended : nothing), second(shared ? &inserted : nothing);
        const unsigned ours =
            Allocations([&] { appended.v_Append(At(appended, own, from), size); });
        const unsigned plain =
            Allocations([&] { inserted.v_Insert(At(inserted, own, from), size, used); });
        ASSERT_EQ(ours, plain);
        Compare();
        ASSERT_EQ(Bytes(first), Bytes(second));
    }

    // What lets the next pieces find another block.
    void Change()
    {
        const unsigned what = Below(24), used = inserted.n_GetUsedSize(), more = Below(90);
        const unsigned growth = growths[Below(std::size(growths))];
        for (CT_Buffer* buffer : {&appended, &inserted}) {
            if (what < 2)
                buffer->v_SetGrowth(growth);
            else if (what < 4)
                buffer->v_SetSize(used + more + 1, 1);
            else if (what < 6)
                buffer->v_SetUsedSize(used - used / 3);
            else if (what == 6 && used > 5000)
                buffer->v_Set(more, growth, 0);
        }
        Compare();
    }

private:
    static constexpr unsigned growths[] = {32, 32, 1, 8, 48, 1000, 4096, 65536};

    unsigned Below(std::size_t limit) { return static_cast<unsigned>(random() % limit); }

    const char* At(const CT_Buffer& buffer, bool own, unsigned from) const
    {
        return (own ? static_cast<const char*>(buffer.qcv_Get()) : pieces.data()) + from;
    }

    template <class Work>
    static unsigned Allocations(Work work)
    {
        const unsigned before = CT_Buffer::sn_GetAllocCount();
        work();
        return CT_Buffer::sn_GetAllocCount() - before;
    }

    void Compare() const
    {
        ASSERT_EQ(appended.n_GetGrowth(), inserted.n_GetGrowth());
        ASSERT_EQ(appended.n_GetMaximumSize(), inserted.n_GetMaximumSize());
        ASSERT_EQ(appended.n_GetUseCount(), inserted.n_GetUseCount());
        ASSERT_EQ(Bytes(appended), Bytes(inserted));
    }

    static std::string Letters()
    {
        std::string letters;
        while (letters.size() < 500)
            letters += static_cast<char>('A' + letters.size() * 7 % 59);
        return letters;
    }

    std::mt19937 random;
    const std::string pieces = Letters();
    const CT_Buffer empty;
    const CT_Buffer* const nothing = &empty;
    CT_Buffer appended, inserted;
};

void AddAndChange(unsigned seed)
{
    Pair pair(seed);
    for (unsigned turn = 0; turn < 3000 && !testing::Test::HasFatalFailure(); ++turn) {
        SCOPED_TRACE(turn);
        pair.Add();
        pair.Change();
    }
}
} // namespace

TEST(BufferAppend, LeavesWhatAnInsertionAtTheEndLeaves)
{
    for (const unsigned seed : {1U, 2U, 3U, 4U}) {
        SCOPED_TRACE(seed);
        AddAndChange(seed);
    }
}

// The count of allocations goes another way where there are several threads.
TEST(BufferAppend, LeavesTheSameInAProcessOfTwoThreads)
{
    std::thread([] { AddAndChange(5); }).join();
}

TEST(BufferAppend, EachStepOfTheMaximumIsCounted)
{
    CT_Buffer buffer;
    const unsigned count = CT_Buffer::sn_GetAllocCount();
    unsigned steps = 0;
    for (unsigned used = 8; used <= 4096; used += 8) {
        const unsigned maximum = buffer.n_GetMaximumSize();
        buffer.v_Append("12345678", 8);
        ASSERT_EQ(buffer.n_GetMaximumSize(), (used + 12 + 31) / 32 * 32 - 12);
        steps += buffer.n_GetMaximumSize() != maximum;
        ASSERT_EQ(CT_Buffer::sn_GetAllocCount(), count + steps);
    }
    EXPECT_EQ(steps, 129U);
}

TEST(BufferAppend, NothingAddedChangesNothing)
{
    CT_Buffer buffer("abc", 3, 32);
    const unsigned count = CT_Buffer::sn_GetAllocCount();
    buffer.v_Append(nullptr, 0);
    buffer.v_Append("x", 0);
    EXPECT_EQ(Bytes(buffer), "abc");
    EXPECT_EQ(buffer.n_GetMaximumSize(), 20U);
    EXPECT_EQ(CT_Buffer::sn_GetAllocCount(), count);
}
