// Database/RecordManager/RecordSpace.cpp: the free space of the file, in the table and in the chain
// behind it.
//
// The first word of a free block is its size: aligned in a freed head and in the remainder of a
// split, else as it was in use. The second is the link to the next block of the chain, and has a
// meaning there alone.
#include <Database/RecordManager/RecordManager.h>

#include <Database/RecordManager/FreeChain.h>
#include <Database/RecordManager/RecordAccess.h>
#include <Database/RecordManager/SizeSearch.h>

#include <Ostra/Frame/Codes.h>
#include <Ostra/Frame/Report.h>

#include <windows.h>

#include <algorithm>
#include <cstdint>

namespace
{
constexpr unsigned LINK = 4;
constexpr unsigned MAX_END = 0xFFFFFFFF; // of the blocks
// A chain is put into memory when walking it has cost about as much.
constexpr unsigned CHAIN_COST = 32;
} // namespace

// Without a block size the file has no blocks.
unsigned CT_RecordManager::n_AlignOddly(unsigned n_Size) const
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
    const void* pcv_Entries = co_FreeBlocks.pcco_GetBuffer()->qcv_Get();
    const unsigned n_At = n_FirstFit(static_cast<const char*>(pcv_Entries), n_Count, n_Need);
    return n_At < n_Count ? n_At + 1 : 0;
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

// Takes the entry out of the table. The last one fills its slot, so that the table has no gaps. A
// chain head that moves there becomes an ordinary entry, and the block behind it the head in a new
// last slot. A head itself is never taken, so without a move there was no chain.
void CT_RecordManager::v_CloseFreeSlot(unsigned n_Slot)
{
    const unsigned n_Last = co_FreeBlocks.n_GetCount();
    const int b_Chain = b_HasFreeChain();
    st_FreeBlock so_Last;
    co_FreeBlocks.v_GetAt(&so_Last, static_cast<int>(n_Last));
    co_FreeBlocks.v_RemoveAt(n_Last);
    unsigned n_Next = 0;
    if (n_Slot == n_Last) {
        v_DropChain();
    } else {
        if (b_Chain) {
            so_Last.n_Length = n_AlignBlockSize(n_Read(so_Last.n_Offset));
            n_Next = n_Read(so_Last.n_Offset + LINK);
            v_PopChain(so_Last.n_Offset, n_Next);
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
    unsigned n_Block;
    if (b_TakeMirrored(so_Head.n_Offset, n_Need, &n_Block))
        return n_Block;
    v_DropChain();
    n_Block = n_WalkChain(so_Head.n_Offset, n_Need);
    if (n_ChainSteps >= std::max(n_ChainCost, CHAIN_COST))
        v_MirrorChain(so_Head.n_Offset);
    return n_Block;
}

// A walk of more blocks than the file has goes in a ring, and finds nothing.
unsigned CT_RecordManager::n_WalkChain(unsigned n_Head, unsigned n_Need)
{
    unsigned n_Previous = n_Head;
    unsigned n_Left = st_Header.n_BlockSize ? st_Header.n_Size / st_Header.n_BlockSize : 0;
    for (; n_Left; --n_Left, ++n_ChainSteps) {
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
    return 0;
}

// Takes a block, or the front of it, out of the chain.
void CT_RecordManager::v_Unchain(unsigned n_Previous, unsigned n_Block, unsigned n_Size,
                                 unsigned n_Need)
{
    const unsigned n_Next = n_Read(n_Block + LINK);
    if (n_Size == n_Need) {
        v_WriteLink(n_Previous, n_Next);
        return;
    }
    const unsigned n_Rest = n_Block + n_Need;
    const unsigned n_RestSize = n_Size - n_Need;
    v_WriteLink(n_Previous, n_Rest);
    v_Write(n_Rest, &n_RestSize, sizeof n_RestSize);
    v_Write(n_Rest + LINK, &n_Next, sizeof n_Next);
}

// The link of a block of the chain, which memory knows without being told.
void CT_RecordManager::v_WriteLink(unsigned n_Block, unsigned n_Next)
{
    v_WriteOver(n_Block + LINK, &n_Next, sizeof n_Next);
    if (!b_IsChainSafe())
        v_DropChain();
}

int CT_RecordManager::b_IsTableFull() const
{
    const unsigned n_Count = co_FreeBlocks.n_GetCount();
    return n_Count && n_Count >= st_Header.n_FreeMaxCount;
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

// ---- The chain in memory ----------------------------------------------------------------------

// Whether the chain stands in memory, with that head.
int CT_RecordManager::b_IsMirrored(unsigned n_Head) const
{
    return b_IsChainSafe() && pco_Chain->n_GetHead() == n_Head;
}

void CT_RecordManager::v_DropChain()
{
    delete pco_Chain;
    pco_Chain = nullptr;
    n_ChainSteps = 0;
}

// Walks the whole chain once. One that can't be told in memory, as it comes back to itself or leads
// away from the blocks, goes on being walked.
void CT_RecordManager::v_MirrorChain(unsigned n_Head)
{
    constexpr unsigned LEAST_BLOCK = 8; // room for the two words
    v_DropChain();
    if (!b_HasFreeChain() || !co_File.b_IsViewOwn() || st_Header.n_BlockSize < LEAST_BLOCK)
        return;
    CT_FreeChain* pco_New = new CT_FreeChain(st_Header.n_BlockSize);
    unsigned n_Block = n_Head;
    unsigned n_Steps = 0;
    for (; pco_New && n_Block; ++n_Steps) {
        const char* pcc_Words = co_File.pcc_PeekAt(n_Block, 2 * LINK);
        if (!pcc_Words || !pco_New->b_Push(n_Block, n_AlignBlockSize(n_WordAt(pcc_Words)))) {
            delete pco_New;
            pco_New = nullptr;
            break;
        }
        n_Block = n_WordAt(pcc_Words + LINK);
    }
    n_ChainCost = n_Steps;
    if (pco_New)
        pco_New->v_Reverse();
    pco_Chain = pco_New;
}

// Finds the block without a walk and takes it, or finds none. False if memory and file differ.
int CT_RecordManager::b_TakeMirrored(unsigned n_Head, unsigned n_Need, unsigned* pn_Block)
{
    if (!b_IsMirrored(n_Head) || !n_Need || n_Need > 0x7FFFFFFF)
        return 0;
    CT_FreeChain::st_Found so_Found;
    if (!pco_Chain->b_Find(n_Need, &so_Found)) {
        *pn_Block = 0;
        return n_Read(so_Found.n_Block + LINK) == 0;
    }
    if (n_Read(so_Found.n_Newer + LINK) != so_Found.n_Block ||
        n_AlignBlockSize(n_Read(so_Found.n_Block)) != so_Found.n_Size ||
        n_Read(so_Found.n_Block + LINK) != so_Found.n_Older)
        return 0;
    pco_Chain->v_Take(so_Found);
    v_Unchain(so_Found.n_Newer, so_Found.n_Block, so_Found.n_Size, n_Need);
    if (pco_Chain && so_Found.n_Size != n_Need && !pco_Chain->b_PutRest(so_Found, n_Need))
        v_DropChain();
    *pn_Block = so_Found.n_Block;
    return 1;
}

// A block has become the head.
void CT_RecordManager::v_PushChain(unsigned n_Head, unsigned n_Block)
{
    if (!pco_Chain)
        return;
    const char* pcc_Size = b_IsMirrored(n_Head) ? co_File.pcc_PeekAt(n_Block, LINK) : nullptr;
    if (!pcc_Size || !pco_Chain->b_Push(n_Block, n_AlignBlockSize(n_WordAt(pcc_Size))))
        v_DropChain();
}

// The head has gone, and the block behind it is the head.
void CT_RecordManager::v_PopChain(unsigned n_Head, unsigned n_Next)
{
    if (!pco_Chain)
        return;
    const int b_Known = b_IsMirrored(n_Head);
    if (b_Known)
        pco_Chain->v_PopHead();
    if (!b_Known || !n_Next || pco_Chain->n_GetHead() != n_Next)
        v_DropChain();
}

// ---- Giving back ------------------------------------------------------------------------------

// b_WriteSize is for record heads, whose first word is the mark. Blocks that touch stay apart.
void CT_RecordManager::v_PutFreeBlock(int b_WriteSize, unsigned n_Offset, unsigned n_Size)
{
    ++st_Header.n_FreeChange;
    const unsigned n_Length = n_AlignBlockSize(n_Size);
    if (b_WriteSize)
        v_Write(n_Offset, &n_Length, sizeof n_Length);
    if (!b_IsTableFull()) {
        v_AddFreeBlock(n_Offset, n_Length);
        return;
    }
    const unsigned n_Count = co_FreeBlocks.n_GetCount();
    // The newest block heads the chain, which the entry in the last slot opens if there is none
    // yet.
    st_FreeBlock so_Last;
    co_FreeBlocks.v_GetAt(&so_Last, static_cast<int>(n_Count));
    if (so_Last.n_Length) {
        v_DropChain();
        const unsigned n_End = 0;
        v_Write(so_Last.n_Offset + LINK, &n_End, sizeof n_End);
    }
    v_Write(n_Offset + LINK, &so_Last.n_Offset, sizeof so_Last.n_Offset);
    v_PushChain(so_Last.n_Offset, n_Offset);
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

// ---- All or nothing ---------------------------------------------------------------------------

// Whether a block for that many bytes has a size of 32 bits.
int CT_RecordManager::b_IsBlockSize(unsigned n_Size) const
{
    if (n_AlignBlockSize(n_Size) >= n_Size)
        return 1;
    co_File.b_RefuseMap(ERROR_NOT_ENOUGH_MEMORY);
    CT_Report::sb_Failed(qccz_Source);
    return 0;
}

// Whether a block of the chain, behind its head or with it, is that large.
int CT_RecordManager::b_ChainHas(unsigned n_Need, int b_Head) const
{
    if (!b_HasFreeChain())
        return 0;
    st_FreeBlock so_Head;
    co_FreeBlocks.v_GetAt(&so_Head, static_cast<int>(co_FreeBlocks.n_GetCount()));
    unsigned n_Block = b_Head ? so_Head.n_Offset : n_Read(so_Head.n_Offset + LINK);
    unsigned n_Left = st_Header.n_BlockSize ? st_Header.n_Size / st_Header.n_BlockSize : 0;
    for (; n_Block && n_Left; --n_Left) {
        if (n_AlignBlockSize(n_Read(n_Block)) >= n_Need)
            return 1;
        n_Block = n_Read(n_Block + LINK);
    }
    return 0;
}

// Makes the file reach as far as a new body is written that no free block can have: a refusal comes
// before anything is taken, or each try would cut a free block for the head. While the file is long
// enough, or the free space may have the room, there is nothing to do.
int CT_RecordManager::b_ReserveBody(unsigned n_HeadSize, unsigned n_BodySize)
{
    const unsigned n_Head = n_AlignBlockSize(n_HeadSize), n_Body = n_AlignBlockSize(n_BodySize);
    std::uint64_t n8_End = std::uint64_t{st_Header.n_Size} + n_Head + n_Body;
    if (!n_BodySize || n8_End <= (co_File.b_GetMapping() ? co_File.n_MapSize : MAX_END) ||
        n_FindFreeBlock(n_Body) || b_ChainHas(n_Body, 1))
        return 1;
    if (n_FindFreeBlock(n_Head) || b_ChainHas(n_Head, 0))
        n8_End -= n_Head;
    if (n8_End > MAX_END)
        co_File.b_RefuseMap(ERROR_NOT_ENOUGH_MEMORY);
    else if (co_File.b_Reserve(static_cast<unsigned>(n8_End) - n_Body + n_BodySize))
        return 1;
    CT_Report::sb_Failed(qccz_Source);
    return 0;
}

// Makes the file reach as far as a block that was taken is written, if that lies at the end. Only
// there can it fail for want of room, and nothing has been written then. The map grows by all of
// it.
int CT_RecordManager::b_Extend(unsigned n_OldEnd, unsigned n_Block, unsigned n_Size)
{
    if (CT_Report::sb_Failed(qccz_Source))
        return 0;
    const bool b_Wraps = st_Header.n_Size < n_OldEnd;
    if (!b_Wraps && (st_Header.n_Size == n_OldEnd || n_Block < n_OldEnd))
        return 1;
    if (b_Wraps)
        co_File.b_RefuseMap(ERROR_NOT_ENOUGH_MEMORY);
    else if (co_File.b_Reserve(n_Block + n_Size))
        return 1;
    CT_Report::sb_Failed(qccz_Source);
    return 0;
}

// A block that was taken and not written.
void CT_RecordManager::v_GiveBack(unsigned n_OldEnd, unsigned n_Block, unsigned n_Size)
{
    if (n_Block >= n_OldEnd || st_Header.n_Size < n_OldEnd)
        st_Header.n_Size = n_OldEnd;
    if (n_Block && n_Block < n_OldEnd)
        v_PutFreeBlock(1, n_Block, n_Size);
}

CT_RecordManager::st_Given CT_RecordManager::so_BeforeGiving(unsigned n_Block) const
{
    st_Given so_Given = {co_FreeBlocks.n_GetCount(), {}, 0};
    if (b_IsTableFull()) {
        co_FreeBlocks.v_GetAt(&so_Given.so_Last, static_cast<int>(so_Given.n_Count));
        so_Given.n_Link = n_Read(n_Block + LINK);
    }
    return so_Given;
}

// Out of the free space again, to which it was given last.
void CT_RecordManager::v_TakeBack(unsigned n_Block, const st_Given& so_Given)
{
    v_DropChain();
    if (co_FreeBlocks.n_GetCount() > so_Given.n_Count) {
        co_FreeBlocks.v_RemoveAt(co_FreeBlocks.n_GetCount());
        st_Header.n_FreeCount = co_FreeBlocks.n_GetCount();
        return;
    }
    co_FreeBlocks.v_SetAt(&so_Given.so_Last, static_cast<int>(so_Given.n_Count));
    v_Write(n_Block + LINK, &so_Given.n_Link, sizeof so_Given.n_Link);
}

// Gives the old block back, if there is one, and writes size and data into a new one; 0 on failure.
// The old block stays what it was if the file can't grow by the new one.
unsigned CT_RecordManager::n_MoveBlock(unsigned n_Old, unsigned n_OldSize,
                                       const CT_Buffer* pcco_Data, unsigned n_From, unsigned n_Size)
{
    if (CT_Report::sb_Failed(qccz_Source) || !b_IsBlockSize(n_Size))
        return 0;
    const unsigned n_OldEnd = st_Header.n_Size;
    const st_Given so_Given = n_Old ? so_BeforeGiving(n_Old) : st_Given();
    if (n_Old)
        v_PutFreeBlock(0, n_Old, n_OldSize);
    if (CT_Report::sb_Failed(qccz_Source))
        return 0;
    const unsigned n_New = n_GetFreeBlock(n_Size);
    if (b_Extend(n_OldEnd, n_New, n_Size) && b_WriteSized(n_New, pcco_Data, n_From, n_Size))
        return n_New;
    if (n_New >= n_OldEnd || st_Header.n_Size < n_OldEnd) {
        st_Header.n_Size = n_OldEnd;
        if (n_Old)
            v_TakeBack(n_Old, so_Given);
    }
    return 0;
}
