// Database/RecordManager/RecordSpace.cpp: the free space of the file, in the table and in the chain
// behind it.
//
// The first word of a free block is its size: aligned in a freed head and in the remainder of a
// split, else as it was in use. The second is the link to the next block of the chain, and has a
// meaning there alone.
#include <Database/RecordManager/RecordManager.h>

namespace
{
constexpr unsigned CORRUPT_DATA = 31005;
constexpr unsigned LINK = 4;
} // namespace

// Up to the next multiple of the block size, in 32-bit arithmetic. Without a block size the file
// has no blocks.
unsigned CT_RecordManager::n_AlignBlockSize(unsigned n_Size) const
{
    const unsigned n_BlockSize = st_Header.n_BlockSize;
    if (n_BlockSize)
        return ((n_Size - 1) / n_BlockSize + 1) * n_BlockSize;
    v_SetError(CORRUPT_DATA);
    return 0;
}

unsigned CT_RecordManager::n_GetFirstBlock() const
{
    return n_AlignBlockSize(n_GetResourceTable() + 8 * st_Header.n_ResourceMaxCount);
}

// ---- Taking -----------------------------------------------------------------------------------

// The caller writes the block's first word; until then nothing marks it.
unsigned CT_RecordManager::n_GetFreeBlock(unsigned n_Size)
{
    ++st_Header.n_FreeChange;
    const unsigned n_Need = n_AlignBlockSize(n_Size);
    if (const unsigned n_Slot = n_FindFreeBlock(n_Need))
        return n_TakeFreeBlock(n_Slot, n_Need);
    if (const unsigned n_Block = n_TakeChainBlock(n_Need))
        return n_Block;
    const unsigned n_Block = st_Header.n_Size;
    st_Header.n_Size += n_Need;
    return n_Block;
}

// First fit: the first slot with a block that is large enough, be there a closer one behind it. A
// chain head has length 0 and is passed over.
unsigned CT_RecordManager::n_FindFreeBlock(unsigned n_Need) const
{
    const unsigned n_Count = co_FreeBlocks.n_GetCount();
    for (unsigned n_Slot = 1; n_Slot <= n_Count; ++n_Slot) {
        st_FreeBlock so_Block;
        co_FreeBlocks.v_GetAt(&so_Block, static_cast<int>(n_Slot));
        if (so_Block.n_Length >= n_Need)
            return n_Slot;
    }
    return 0;
}

// The front of a larger block; the remainder keeps the slot.
unsigned CT_RecordManager::n_TakeFreeBlock(unsigned n_Slot, unsigned n_Need)
{
    st_FreeBlock so_Block;
    co_FreeBlocks.v_GetAt(&so_Block, static_cast<int>(n_Slot));
    if (so_Block.n_Length == n_Need) {
        v_CloseFreeSlot(n_Slot);
        return so_Block.n_Offset;
    }
    const st_FreeBlock so_Rest = {so_Block.n_Offset + n_Need, so_Block.n_Length - n_Need};
    co_FreeBlocks.v_SetAt(&so_Rest, static_cast<int>(n_Slot));
    v_Write(so_Rest.n_Offset, &so_Rest.n_Length, sizeof so_Rest.n_Length);
    return so_Block.n_Offset;
}

// The last entry fills the slot. A chain head that moves becomes an ordinary entry, and the block
// behind it the head.
void CT_RecordManager::v_CloseFreeSlot(unsigned n_Slot)
{
    const unsigned n_Last = co_FreeBlocks.n_GetCount();
    const int b_Chain = b_HasFreeChain();
    st_FreeBlock so_Last;
    co_FreeBlocks.v_GetAt(&so_Last, static_cast<int>(n_Last));
    co_FreeBlocks.v_RemoveAt(n_Last);
    unsigned n_Next = 0;
    if (n_Slot != n_Last) {
        if (b_Chain) {
            so_Last.n_Length = n_AlignBlockSize(n_Read(so_Last.n_Offset));
            n_Next = n_Read(so_Last.n_Offset + LINK);
        }
        co_FreeBlocks.v_SetAt(&so_Last, static_cast<int>(n_Slot));
    }
    if (n_Next)
        v_AddFreeBlock(n_Next, 0);
    st_Header.n_FreeCount = co_FreeBlocks.n_GetCount();
}

// From the chain behind its head; 0 if there is no block large enough.
unsigned CT_RecordManager::n_TakeChainBlock(unsigned n_Need)
{
    if (!b_HasFreeChain())
        return 0;
    st_FreeBlock so_Head;
    co_FreeBlocks.v_GetAt(&so_Head, static_cast<int>(co_FreeBlocks.n_GetCount()));
    unsigned n_Previous = so_Head.n_Offset;
    for (;;) {
        const unsigned n_Block = n_Read(n_Previous + LINK);
        if (!n_Block)
            return 0;
        const unsigned n_Size = n_AlignBlockSize(n_Read(n_Block));
        if (n_Size >= n_Need) {
            v_Unchain(n_Previous, n_Block, n_Size, n_Need);
            return n_Block;
        }
        n_Previous = n_Block;
    }
}

// Takes a block, or the front of it, out of the chain.
void CT_RecordManager::v_Unchain(unsigned n_Previous, unsigned n_Block, unsigned n_Size,
                                 unsigned n_Need)
{
    const unsigned n_Next = n_Read(n_Block + LINK);
    if (n_Size == n_Need) {
        v_Write(n_Previous + LINK, &n_Next, sizeof n_Next);
        return;
    }
    const unsigned n_Rest = n_Block + n_Need;
    const unsigned n_RestSize = n_Size - n_Need;
    v_Write(n_Previous + LINK, &n_Rest, sizeof n_Rest);
    v_Write(n_Rest, &n_RestSize, sizeof n_RestSize);
    v_Write(n_Rest + LINK, &n_Next, sizeof n_Next);
}

int CT_RecordManager::b_HasFreeChain() const
{
    const unsigned n_Count = co_FreeBlocks.n_GetCount();
    if (!n_Count || n_Count != st_Header.n_FreeMaxCount)
        return 0;
    st_FreeBlock so_Last;
    co_FreeBlocks.v_GetAt(&so_Last, static_cast<int>(n_Count));
    return so_Last.n_Length == 0;
}

// ---- Giving back ------------------------------------------------------------------------------

// b_WriteSize is for record heads, whose first word is the mark. Blocks that touch stay apart.
void CT_RecordManager::v_PutFreeBlock(int b_WriteSize, unsigned n_Offset, unsigned n_Size)
{
    ++st_Header.n_FreeChange;
    const unsigned n_Length = n_AlignBlockSize(n_Size);
    if (b_WriteSize)
        v_Write(n_Offset, &n_Length, sizeof n_Length);
    const unsigned n_Count = co_FreeBlocks.n_GetCount();
    if (!n_Count || n_Count < st_Header.n_FreeMaxCount) {
        v_AddFreeBlock(n_Offset, n_Length);
        return;
    }
    // The newest block heads the chain, which the entry in the last slot opens if there is none
    // yet.
    st_FreeBlock so_Last;
    co_FreeBlocks.v_GetAt(&so_Last, static_cast<int>(n_Count));
    if (so_Last.n_Length) {
        const unsigned n_End = 0;
        v_Write(so_Last.n_Offset + LINK, &n_End, sizeof n_End);
    }
    v_Write(n_Offset + LINK, &so_Last.n_Offset, sizeof so_Last.n_Offset);
    so_Last = {n_Offset, 0};
    co_FreeBlocks.v_SetAt(&so_Last, static_cast<int>(n_Count));
}

// Without memory for a longer table the block is lost, and the table stays as it is.
void CT_RecordManager::v_AddFreeBlock(unsigned n_Offset, unsigned n_Length)
{
    const st_FreeBlock so_Block = {n_Offset, n_Length};
    co_FreeBlocks.v_Insert(&so_Block);
    st_Header.n_FreeCount = co_FreeBlocks.n_GetCount();
}
