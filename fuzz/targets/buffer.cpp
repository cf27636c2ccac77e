// fuzz/targets/buffer.cpp: operations on buffers that share blocks, each beside its model.
//
// Input: operations: a byte for the operation, one for the two buffers, then what it takes.
#include "Ostra/Buffer/BufferModel.h"

#include "Support/Input.h"
#include "Support/Library.h"

namespace
{
constexpr unsigned ALL = 0xFFFFFFFF;
constexpr unsigned BUFFERS = 3;

class Player
{
public:
    explicit Player(Input& operations) : input(operations), before(CT_Buffer::sn_GetAllocCount())
    {
        BufferModel::allocations = 0;
    }

    void Step()
    {
        const unsigned operation = input.Below(16);
        const unsigned who = input.Byte();
        mine = who % BUFFERS;
        theirs = who / BUFFERS % BUFFERS;
        if (operation < 8)
            Whole(operation);
        else
            Part(operation);
        Compare();
    }

private:
    CT_Buffer& Buffer() { return buffers[mine]; }
    CT_Buffer& Other() { return buffers[theirs]; }
    BufferModel& Mine() { return models[mine]; }
    BufferModel& Theirs() { return models[theirs]; }
    unsigned Size()
    {
        const unsigned size = input.Byte();
        return size < 0xF0 ? size % 60 : size * 3;
    }
    // Offsets behind the used bytes are the caller's fault.
    unsigned Offset() { return input.Byte() % (Mine().Used() + 1); }
    std::string Bytes()
    {
        std::string bytes(Size(), '\0');
        const unsigned first = input.Byte();
        for (std::size_t n = 0; n < bytes.size(); ++n)
            bytes[n] = static_cast<char>(first + n);
        return bytes;
    }
    static BufferModel::Range RangeOf(const std::string& bytes)
    {
        const auto* const at = reinterpret_cast<const unsigned char*>(bytes.data());
        return {at, at + bytes.size()};
    }

    void Whole(unsigned operation)
    {
        constexpr unsigned GROWTHS[] = {32, 1, 7, 16, 64, 100};
        const bool keep = input.Flag();
        if (operation == 0) {
            const unsigned size = Size();
            const unsigned growth = keep ? ALL : GROWTHS[input.Below(std::size(GROWTHS))];
            Buffer().v_Set(size, growth, keep);
            Mine().Set(size, growth, keep);
        } else if (operation == 1) {
            const std::string bytes = Bytes();
            Buffer().v_Set(bytes.data(), static_cast<unsigned>(bytes.size()), ALL);
            Mine().Set(RangeOf(bytes), ALL);
        } else if (operation == 2 || operation == 3) {
            Buffer().v_Set(&Other());
            Mine().Share(Theirs());
        } else if (operation == 4) {
            const unsigned size = Size();
            Buffer().v_SetSize(size, keep);
            Mine().SetSize(size, keep);
        } else if (operation == 5) {
            const unsigned size = Size();
            Buffer().v_SetMinSize(size, keep);
            Mine().SetMinSize(size, keep);
        } else if (operation == 6) {
            const unsigned size = Offset();
            Buffer().v_SetUsedSize(size);
            Mine().SetUsedSize(size);
        } else {
            const unsigned growth = GROWTHS[input.Below(std::size(GROWTHS))];
            Buffer().v_SetGrowth(growth);
            Mine().growth = growth;
        }
    }

    void Part(unsigned operation)
    {
        const unsigned offset = Offset();
        if (operation == 8) {
            const std::string bytes = Bytes();
            Buffer().v_Replace(bytes.data(), static_cast<unsigned>(bytes.size()), offset);
            Mine().Replace(RangeOf(bytes), false, offset);
        } else if (operation == 9) {
            const std::string bytes = Bytes();
            Buffer().v_Insert(bytes.data(), static_cast<unsigned>(bytes.size()), offset);
            Mine().Insert(RangeOf(bytes), offset);
        } else if (operation == 10) {
            const std::string bytes = Bytes();
            Buffer().v_Append(bytes.data(), static_cast<unsigned>(bytes.size()));
            Mine().Insert(RangeOf(bytes), Mine().Used());
        } else if (operation == 11) {
            const unsigned count = input.Byte() % (Mine().Used() - offset + 1);
            Buffer().v_Remove(count, offset);
            Mine().Remove(count, offset);
        } else if (operation == 12) {
            const unsigned count = input.Byte() % (Mine().Used() - offset + 1);
            const unsigned to = Offset();
            Buffer().v_AtInsertCopy(offset, count, to);
            Mine().AtInsertCopy(offset, count, to);
        } else if (operation == 13) {
            const unsigned count = input.Byte() % (Mine().Used() - offset + 1);
            unsigned to = input.Byte() % (Mine().Used() - count + 1);
            to += to > offset ? count : 0;
            Buffer().v_AtInsertMove(offset, count, to);
            Mine().AtInsertMove(offset, count, to);
        } else {
            Ranges(operation == 14, offset);
        }
    }

    // Of the other buffer, which may be this one; a count may pass the end.
    void Ranges(bool inserts, unsigned offset)
    {
        const unsigned from = input.Byte() % (Theirs().Used() + 1);
        const unsigned told = input.Byte();
        const unsigned count = std::min(told, Theirs().Used() - from);
        const BufferModel::Range range = Theirs().Bytes(from, count);
        if (inserts) {
            Buffer().v_Insert(&Other(), from, told, offset);
            Mine().Insert(range, offset);
        } else {
            Buffer().v_Replace(&Other(), from, told, offset);
            Mine().Replace(range, false, offset);
        }
    }

    void Compare() const
    {
        for (unsigned n = 0; n < BUFFERS; ++n) {
            const CT_Buffer& buffer = buffers[n];
            const BufferModel& model = models[n];
            REQUIRE(buffer.n_GetGrowth() == model.growth);
            REQUIRE(buffer.n_GetUsedSize() == model.Used());
            REQUIRE(buffer.n_GetMaximumSize() == model.Maximum());
            REQUIRE(buffer.n_GetUseCount() == model.Uses());
            for (unsigned other = 0; other < n; ++other)
                REQUIRE((buffer.qcv_Get() == buffers[other].qcv_Get()) ==
                        (model.block == models[other].block));
            const auto* const bytes = static_cast<const unsigned char*>(buffer.qcv_Get());
            for (unsigned at = 0; at < model.Used(); ++at)
                REQUIRE(model.block->room[at] == BufferModel::UNKNOWN ||
                        model.block->room[at] == bytes[at]);
        }
        REQUIRE(CT_Buffer::sn_GetAllocCount() - before == BufferModel::allocations);
    }

    Input& input;
    CT_Buffer buffers[BUFFERS];
    BufferModel models[BUFFERS];
    unsigned before;
    unsigned mine = 0, theirs = 0;
};
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Input input(data, size);
    Player player(input);
    for (unsigned step = 0; step < 200 && !input.IsEmpty(); ++step)
        player.Step();
    REQUIRE(TakeCode() == 0);
    return 0;
}
