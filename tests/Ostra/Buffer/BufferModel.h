// tests/Ostra/Buffer/BufferModel.h: the rules of CT_Buffer, word for word, on plain vectors.
#pragma once

#include <algorithm>
#include <memory>
#include <vector>

// One buffer of the model. A byte that no rule defines is UNKNOWN.
class BufferModel
{
public:
    static constexpr int UNKNOWN = -1;
    static constexpr unsigned ALL = 0xFFFFFFFF;
    using Range = std::vector<int>;

    struct Block
    {
        Range room; // its length is the maximum size
        unsigned used = 0;
    };

    unsigned growth = 32;
    std::shared_ptr<Block> block;
    static inline unsigned allocations = 0;

    unsigned Used() const { return block ? block->used : 0; }
    unsigned Maximum() const { return block ? static_cast<unsigned>(block->room.size()) : 0; }
    unsigned Uses() const { return block ? static_cast<unsigned>(block.use_count()) : 1; }
    bool IsShared() const { return Uses() >= 2; }

    Range Bytes(unsigned from, unsigned count) const
    {
        return count ? Range(block->room.begin() + from, block->room.begin() + from + count)
                     : Range();
    }

    // ---- Storage ----------------------------------------------------------------------------

    void Set(unsigned size, unsigned new_growth, bool keep)
    {
        if (new_growth != ALL)
            growth = new_growth;
        if (!keep || IsShared()) {
            block = size ? NewBlock(Total(size) - 12) : nullptr;
            return;
        }
        if (Maximum() < Total(size) - 12)
            block = NewBlock(Total(Total(size)) - 12);
        if (block)
            block->used = 0;
    }
    void Set(const Range& bytes, unsigned new_growth)
    {
        if (new_growth != ALL)
            growth = new_growth;
        const unsigned size = static_cast<unsigned>(bytes.size());
        block = size ? NewBlock(Total(size) - 12) : nullptr;
        if (block) {
            std::copy(bytes.begin(), bytes.end(), block->room.begin());
            block->used = size;
        }
    }
    void Share(const BufferModel& other)
    {
        growth = other.growth;
        block = other.block;
    }
    void SetSize(unsigned size, bool keep)
    {
        if (size == 0) {
            block = nullptr;
            return;
        }
        const unsigned maximum = Total(size) - 12;
        if (block && Maximum() == maximum && !IsShared()) {
            if (!keep)
                block->used = 0;
            return;
        }
        auto made = NewBlock(maximum);
        made->used = keep ? std::min(Used(), maximum) : 0;
        for (unsigned n = 0; n < made->used; ++n)
            made->room[n] = block->room[n];
        block = made;
    }
    void SetMinSize(unsigned size, bool keep)
    {
        if (!block || Maximum() < size)
            SetSize(size, keep);
    }
    void Unshare()
    {
        if (!IsShared())
            return;
        auto made = NewBlock(Maximum());
        made->used = Used();
        std::copy_n(block->room.begin(), made->used, made->room.begin());
        block = made;
    }
    void SetUsedSize(unsigned size)
    {
        Unshare();
        if (block)
            block->used = size;
    }

    // ---- Change -----------------------------------------------------------------------------

    // `bytes` has the length of the count, or for a count of -1 at least what it comes to.
    void Replace(Range bytes, bool to_end, unsigned offset)
    {
        const unsigned maximum = Maximum();
        if (!to_end && offset + bytes.size() > maximum)
            SetSize(offset + static_cast<unsigned>(bytes.size()), true);
        else
            Unshare();
        if (to_end)
            bytes.resize(Used() - offset);
        if (!block)
            return;
        std::copy(bytes.begin(), bytes.end(), block->room.begin() + offset);
        for (unsigned n = Used(); n < offset; ++n)
            block->room[n] = UNKNOWN;
        block->used = std::max(Used(), offset + static_cast<unsigned>(bytes.size()));
    }
    void Insert(const Range& bytes, unsigned offset)
    {
        const unsigned count = static_cast<unsigned>(bytes.size());
        if (Used() + count > Maximum())
            SetSize(Used() + count, true);
        else
            Unshare();
        if (!block)
            return;
        ShiftUp(offset, count);
        std::copy(bytes.begin(), bytes.end(), block->room.begin() + offset);
        block->used += count;
    }
    void Remove(unsigned count, unsigned offset)
    {
        Unshare();
        if (!block)
            return;
        if (count == ALL) {
            for (unsigned n = Used(); n < offset; ++n)
                block->room[n] = UNKNOWN;
            block->used = offset;
            return;
        }
        std::copy(block->room.begin() + offset + count, block->room.begin() + Used(),
                  block->room.begin() + offset);
        block->used -= count;
    }
    void AtInsertCopy(unsigned from, unsigned count, unsigned to)
    {
        Unshare();
        const Range range = Bytes(from, count);
        if (Used() + count <= Maximum()) {
            if (block)
                Insert(range, to);
            return;
        }
        Range bytes = Bytes(0, Used());
        bytes.insert(bytes.begin() + to, range.begin(), range.end());
        Set(bytes, 32);
    }
    void AtInsertMove(unsigned from, unsigned count, unsigned to)
    {
        if (to == from)
            return;
        Unshare();
        if (!block)
            return;
        const auto room = block->room.begin();
        if (to < from)
            std::rotate(room + to, room + from, room + from + count);
        else
            std::rotate(room + from, room + from + count, room + to);
    }

private:
    unsigned Total(unsigned size) const { return (growth + size + 11) / growth * growth; }

    static std::shared_ptr<Block> NewBlock(unsigned maximum)
    {
        ++allocations;
        auto made = std::make_shared<Block>();
        made->room.assign(maximum, UNKNOWN);
        return made;
    }
    void ShiftUp(unsigned offset, unsigned count)
    {
        const auto room = block->room.begin();
        std::copy_backward(room + offset, room + Used(), room + Used() + count);
    }
};
