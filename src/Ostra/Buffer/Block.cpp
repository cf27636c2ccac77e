// Ostra/Buffer/Block.cpp
#include <Ostra/Buffer/Block.h>

#include <cstdlib>

// The heap's block for that much data, moved from the old one. Null on exhaustion.
CT_Block::st_Block* CT_Block::spso_Take(st_Block* pso_Old, unsigned n_Room)
{
    static_assert(sizeof(st_Block) == 4 + HEADER_SIZE, "the data keeps the heap's alignment");
    std::size_t n_Bytes;
    if (__builtin_add_overflow(n_Room, sizeof(st_Block), &n_Bytes))
        return nullptr;
    st_Block* pso_Block = static_cast<st_Block*>(std::realloc(pso_Old, n_Bytes));
    if (pso_Block)
        pso_Block->n_Room = n_Room;
    return pso_Block;
}

// A growing block takes half as much again as it has, if the heap has that.
CT_Block::st_Block* CT_Block::spso_Grow(st_Block* pso_Old, unsigned n_Room)
{
    const unsigned n_Ample = sn_Sum(pso_Old->n_Room, pso_Old->n_Room / 2);
    if (n_Ample > n_Room)
        if (st_Block* pso_Block = spso_Take(pso_Old, n_Ample))
            return pso_Block;
    return spso_Take(pso_Old, n_Room);
}

char* CT_Block::spc_Reserve(char* pc_Data, unsigned n_Room)
{
    st_Block* pso_Block = spso_Of(pc_Data);
    if (pso_Block->n_Room < n_Room)
        pso_Block = spso_Take(pso_Block, n_Room);
    return pso_Block ? spc_DataOf(pso_Block) : pc_Data;
}

char* CT_Block::spc_Resize(char* pc_Data, unsigned n_Maximum)
{
    if (n_Maximum == TOO_LARGE)
        return nullptr;
    st_Block* pso_Block = spso_Of(pc_Data);
    if (n_Maximum < pso_Block->so_Data.n_MaximumSize)
        pso_Block = spso_Take(pso_Block, n_Maximum);
    else if (n_Maximum > pso_Block->n_Room)
        pso_Block = spso_Grow(pso_Block, n_Maximum);
    if (!pso_Block)
        return nullptr;
    pso_Block->so_Data.n_MaximumSize = n_Maximum;
    return spc_DataOf(pso_Block);
}
