// Ostra/Buffer/Block.h: the heap blocks behind buffers. Internal.
//
// A block is its real room (4 bytes), the header that buffers share (12 bytes), and the data. The
// real room may be larger than the maximum size in the header: the header follows the rule of the
// buffer, while a block that grows step by step is moved only now and then.
#pragma once

#include <Ostra/Buffer/Buffer.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

class CT_Block
{
public:
    static constexpr unsigned HEADER_SIZE = 12;
    // A maximum size that doesn't fit 32 bits; no block can be had for it.
    static constexpr unsigned TOO_LARGE = 0xFFFFFFFF;
    // The most real room that a block keeps when its content becomes smaller.
    static constexpr unsigned KEPT_ROOM = 4096;

    // Maximum size of a block for n_Size bytes: the least multiple of the growth, which is never 0,
    // that holds them and the header, less the header.
    static unsigned sn_Maximum(unsigned n_Size, unsigned n_Growth)
    {
        unsigned n_Sum;
        if (__builtin_add_overflow(n_Size, n_Growth, &n_Sum) ||
            __builtin_add_overflow(n_Sum, HEADER_SIZE - 1, &n_Sum))
            return TOO_LARGE;
        // Most growths are a power of two, and a division takes longer than the rest of a step.
        if (!(n_Growth & (n_Growth - 1)))
            return sn_RoundDown(n_Sum, n_Growth);
        return n_Sum / n_Growth * n_Growth - HEADER_SIZE;
    }
    // The same where the growth is a power of two and no sum passes 32 bits.
    static unsigned sn_SmallMaximum(unsigned n_Size, unsigned n_Growth)
    {
        return sn_RoundDown(n_Size + n_Growth + HEADER_SIZE - 1, n_Growth);
    }
    // The sum, or TOO_LARGE.
    static unsigned sn_Sum(unsigned n_First, unsigned n_Second)
    {
        unsigned n_Sum;
        return __builtin_add_overflow(n_First, n_Second, &n_Sum) ? TOO_LARGE : n_Sum;
    }

    // Bytes of data that the heap block really has room for.
    static unsigned sn_Room(const char* pcc_Data)
    {
        unsigned n_Room;
        std::memcpy(&n_Room, pcc_Data - HEADER_SIZE - sizeof(n_Room), sizeof(n_Room));
        return n_Room;
    }

    // The data of a new block with use count 1, used size 0; null when the heap is exhausted.
    static char* spc_New(unsigned n_Maximum);
    // The block with that maximum size and the bytes that fit, at the same place or another; null
    // when the heap is exhausted, and the block is as it was. The caller is the only holder, and
    // sets the used size.
    static char* spc_Resize(char* pc_Data, unsigned n_Maximum);
    // The block with that much real room at least, if the heap has it. The caller is the only
    // holder.
    static char* spc_Reserve(char* pc_Data, unsigned n_Room);
    static void sv_Delete(char* pc_Data) { std::free(spso_Of(pc_Data)); }

private:
    struct st_Block
    {
        unsigned n_Room; // bytes of data that the heap block really has room for
        CT_Buffer::st_BufferData so_Data;
    };

    static unsigned sn_RoundDown(unsigned n_Total, unsigned n_Growth)
    {
        return (n_Total & -n_Growth) - HEADER_SIZE;
    }
    static st_Block* spso_Of(char* pc_Data) { return reinterpret_cast<st_Block*>(pc_Data) - 1; }
    static char* spc_DataOf(st_Block* pso_Block) { return reinterpret_cast<char*>(pso_Block + 1); }
    static st_Block* spso_Take(st_Block* pso_Old, unsigned n_Room);
    static st_Block* spso_Grow(st_Block* pso_Old, unsigned n_Room);
};

inline char* CT_Block::spc_New(unsigned n_Maximum)
{
    std::size_t n_Bytes;
    if (n_Maximum == TOO_LARGE || __builtin_add_overflow(n_Maximum, sizeof(st_Block), &n_Bytes))
        return nullptr;
    st_Block* pso_Block = static_cast<st_Block*>(std::malloc(n_Bytes));
    if (!pso_Block)
        return nullptr;
    *pso_Block = {n_Maximum, {1, n_Maximum, 0}};
    return spc_DataOf(pso_Block);
}

// Raises the used size by that much, and the maximum size if need be, where the heap's block has
// the room already, so that nothing moves, and where steps are a power of two and the maximum is
// one of them. The place to write at; null where it takes more, and for nothing.
inline char* CT_Buffer::pc_Step(unsigned n_Count)
{
    constexpr unsigned MOST = 0x40000000; // no sum of three passes 32 bits
    char* const pc_Block = pc_Data;
    if (!pc_Block || n_ReadUseCount() != 1)
        return nullptr;
    st_BufferData* const pso_Data = reinterpret_cast<st_BufferData*>(pc_Block) - 1;
    const unsigned n_Old = pso_Data->n_MaximumSize;
    const unsigned n_Used = pso_Data->n_UsedSize;
    if ((((n_Old + CT_Block::HEADER_SIZE) | n_Growth) & (n_Growth - 1)) ||
        ((n_Count - 1) | n_Used | n_Growth) >= MOST)
        return nullptr;
    // Which pieces pass the maximum can't be foreseen: no branch. What fits it has no larger one.
    const unsigned n_Size = n_Used + n_Count;
    const unsigned n_Maximum = std::max(n_Old, CT_Block::sn_SmallMaximum(n_Size, n_Growth));
    if (n_Maximum > CT_Block::sn_Room(pc_Block))
        return nullptr;
    sco_AllocCount.v_Add(n_Size > n_Old);
    pso_Data->n_MaximumSize = n_Maximum;
    pso_Data->n_UsedSize = n_Size;
    return pc_Block + n_Used;
}
