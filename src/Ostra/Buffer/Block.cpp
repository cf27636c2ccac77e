// Ostra/Buffer/Block.cpp
#include <Ostra/Buffer/Block.h>

#include <algorithm>
#include <cstdlib>

namespace
{
struct st_Block
{
    unsigned n_Room; // bytes of data that the heap block really has room for
    CT_Buffer::st_BufferData so_Data;
};
static_assert(sizeof(st_Block) == 4 + CT_Block::HEADER_SIZE, "the data keeps the heap's alignment");

st_Block* pso_BlockOf(char* pc_Data)
{
    return reinterpret_cast<st_Block*>(pc_Data) - 1;
}

char* pc_DataOf(st_Block* pso_Block)
{
    return reinterpret_cast<char*>(pso_Block + 1);
}

// The heap's block for that much data, moved from the old one unless that is null. Null on
// exhaustion.
st_Block* pso_Take(st_Block* pso_Old, unsigned n_Room)
{
    std::size_t n_Bytes;
    if (__builtin_add_overflow(n_Room, sizeof(st_Block), &n_Bytes))
        return nullptr;
    void* pv_Block = pso_Old ? std::realloc(pso_Old, n_Bytes) : std::malloc(n_Bytes);
    st_Block* pso_Block = static_cast<st_Block*>(pv_Block);
    if (pso_Block)
        pso_Block->n_Room = n_Room;
    return pso_Block;
}

// A growing block takes half as much again as it has, if the heap has that.
st_Block* pso_Grow(st_Block* pso_Old, unsigned n_Room)
{
    const unsigned n_Ample = CT_Block::sn_Sum(pso_Old->n_Room, pso_Old->n_Room / 2);
    if (n_Ample > n_Room)
        if (st_Block* pso_Block = pso_Take(pso_Old, n_Ample))
            return pso_Block;
    return pso_Take(pso_Old, n_Room);
}
} // namespace

unsigned CT_Block::sn_Maximum(unsigned n_Size, unsigned n_Growth)
{
    unsigned n_Sum;
    if (__builtin_add_overflow(n_Size, n_Growth, &n_Sum) ||
        __builtin_add_overflow(n_Sum, HEADER_SIZE - 1, &n_Sum))
        return TOO_LARGE;
    // Most growths are a power of two, and a division takes longer than the rest of a step.
    if (n_Growth && !(n_Growth & (n_Growth - 1)))
        return (n_Sum & -n_Growth) - HEADER_SIZE;
    // A growth of 0 is the caller's fault, and stops the program here as it always did.
    // NOLINTNEXTLINE(clang-analyzer-core.DivideZero)
    return n_Sum / n_Growth * n_Growth - HEADER_SIZE;
}

char* CT_Block::spc_New(unsigned n_Maximum)
{
    st_Block* pso_Block = n_Maximum == TOO_LARGE ? nullptr : pso_Take(nullptr, n_Maximum);
    if (!pso_Block)
        return nullptr;
    pso_Block->so_Data = {1, n_Maximum, 0};
    return pc_DataOf(pso_Block);
}

char* CT_Block::spc_Resize(char* pc_Data, unsigned n_Maximum)
{
    if (n_Maximum == TOO_LARGE)
        return nullptr;
    st_Block* pso_Block = pso_BlockOf(pc_Data);
    if (n_Maximum < pso_Block->so_Data.n_MaximumSize)
        pso_Block = pso_Take(pso_Block, n_Maximum);
    else if (n_Maximum > pso_Block->n_Room)
        pso_Block = pso_Grow(pso_Block, n_Maximum);
    if (!pso_Block)
        return nullptr;
    pso_Block->so_Data.n_MaximumSize = n_Maximum;
    return pc_DataOf(pso_Block);
}

void CT_Block::sv_Delete(char* pc_Data)
{
    std::free(pso_BlockOf(pc_Data));
}
