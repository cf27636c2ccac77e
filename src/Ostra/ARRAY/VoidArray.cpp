// Ostra/ARRAY/VoidArray.cpp: a growable sequence of raw items of one size.
#include <Ostra/ARRAY/VoidArray.h>

#include <Ostra/ARRAY/RawItem.h>
#include <Ostra/Buffer/Block.h>
#include <Ostra/Frame/Counts.h>
#include <Ostra/Frame/Report.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

static constexpr char qccz_Source[] = "Ostra/ARRAY/VoidArray";

// ---- Construction -------------------------------------------------------------------------

CT_VoidArray::CT_VoidArray(unsigned n_Item) : n_ItemSize(n_Item), co_Buffer(0, 8 * n_Item) {}

CT_VoidArray::CT_VoidArray(unsigned n_Item, unsigned n_Growth, unsigned n_Size)
    : n_ItemSize(n_Item),
      co_Buffer(n_Size * n_Item, n_Growth * n_Item)
{}

CT_VoidArray::CT_VoidArray(const CT_VoidArray* pcco_Array)
    : n_ItemSize(pcco_Array->n_ItemSize),
      co_Buffer(&pcco_Array->co_Buffer)
{}

CT_VoidArray::CT_VoidArray(const CT_Buffer* pcco_Buffer, unsigned n_Item)
    : n_ItemSize(n_Item),
      co_Buffer(pcco_Buffer)
{}

void CT_VoidArray::v_Set(unsigned n_Growth, unsigned n_Size, int b_Keep)
{
    co_Buffer.v_SetGrowth(n_Growth * n_ItemSize);
    if (b_Keep && n_GetMaxItems() >= n_Size)
        co_Buffer.v_SetUsedSize(0);
    else
        co_Buffer.v_SetSize(n_Size * n_ItemSize, 0);
}

void CT_VoidArray::v_Set(const CT_VoidArray* pcco_Array)
{
    co_Buffer.v_Set(&pcco_Array->co_Buffer);
}

void CT_VoidArray::v_Set(const CT_Buffer* pcco_Buffer)
{
    co_Buffer.v_Set(pcco_Buffer);
}

void* CT_VoidArray::operator new(std::size_t n_Size) noexcept
{
    return CT_Report::spv_New(n_Size, qccz_Source);
}

void CT_VoidArray::operator delete(void* pv_Object)
{
    std::free(pv_Object);
}

// ---- Access -------------------------------------------------------------------------------

void CT_VoidArray::v_GetAt(void* pv_Item, int i_Index) const
{
    const unsigned n_At = (static_cast<unsigned>(i_Index) - 1) * n_ItemSize;
    if (n_At + n_ItemSize - 1 < co_Buffer.n_GetMaximumSize())
        v_CopyItem(pv_Item, static_cast<const char*>(co_Buffer.qcv_Get()) + n_At, n_ItemSize);
}

void CT_VoidArray::v_SetAt(const void* pcv_Item, int i_Index)
{
    co_Buffer.v_CopyWeWrite();
    const unsigned n_At = (static_cast<unsigned>(i_Index) - 1) * n_ItemSize;
    if (n_At + n_ItemSize - 1 < co_Buffer.n_GetMaximumSize()) {
        char* pc_Data = static_cast<char*>(const_cast<void*>(co_Buffer.qcv_Get()));
        v_CopyItem(pc_Data + n_At, pcv_Item, n_ItemSize);
    }
}

// ---- Search and comparison ----------------------------------------------------------------

unsigned CT_VoidArray::n_Find(const void* pcv_Item) const
{
    switch (n_ItemSize) {
    case 1:
        return n_FindNumber<unsigned char>(pcv_Item);
    case 2:
        return n_FindNumber<unsigned short>(pcv_Item);
    case 4:
        return n_FindNumber<unsigned>(pcv_Item);
    case 8:
        return n_FindNumber<unsigned long long>(pcv_Item);
    }
    const char* pcc_Item = static_cast<const char*>(co_Buffer.qcv_Get());
    const unsigned n_Count = n_GetCount();
    for (unsigned n_Index = 1; n_Index <= n_Count; n_Index++, pcc_Item += n_ItemSize) {
        if (!std::memcmp(pcc_Item, pcv_Item, n_ItemSize))
            return n_Index;
    }
    return 0;
}

// The search for items as wide as a number. Behind the block's header they aren't aligned for it.
template <class T>
unsigned CT_VoidArray::n_FindNumber(const void* pcv_Item) const
{
    const char* pcc_Item = static_cast<const char*>(co_Buffer.qcv_Get());
    const unsigned n_Count = n_GetCount();
    T o_Wanted, o_Found;
    std::memcpy(&o_Wanted, pcv_Item, sizeof(T));
    for (unsigned n_Index = 1; n_Index <= n_Count; n_Index++, pcc_Item += sizeof(T)) {
        std::memcpy(&o_Found, pcc_Item, sizeof(T));
        if (o_Found == o_Wanted)
            return n_Index;
    }
    return 0;
}

int CT_VoidArray::b_IsEqual(const CT_VoidArray* pcco_Array) const
{
    if (n_GetCount() != pcco_Array->n_GetCount() || n_ItemSize != pcco_Array->n_ItemSize)
        return 0;
    return !n_GetCount() || co_Buffer.b_IsEqual(&pcco_Array->co_Buffer, 0, ALL, 0);
}

// ---- Change -------------------------------------------------------------------------------

// Room for one item more. A full array takes its growth; the buffer's rounding may give it more.
void CT_VoidArray::v_Reserve()
{
    const unsigned n_Used = co_Buffer.n_GetUsedSize(), n_Room = co_Buffer.n_GetMaximumSize();
    if (n_Used + n_ItemSize <= n_Room)
        return;
    // Full is an array of n_GetMaxItems items. It is divided as little as can be: that is what a
    // step of the growth takes most of.
    const unsigned n_Count = n_Used / n_ItemSize, n_Growth = n_GetGrowth();
    if (n_Growth && n_Room - n_Count * n_ItemSize < n_ItemSize)
        co_Buffer.v_SetSize((n_Count + n_Growth) * n_ItemSize, 1);
}

// The same where the heap's block has the room already, so that nothing moves, and items have a
// size by which nothing has to be divided. The place of the item; null where it takes more.
inline char* CT_VoidArray::pc_Step()
{
    constexpr unsigned MOST = 0x40000000;
    const unsigned n_Whole = -n_ItemSize; // of a size that is a power of two
    const unsigned n_Growth = co_Buffer.n_GetGrowth();
    if (!co_Buffer.pc_Data || co_Buffer.n_ReadUseCount() != 1 || (n_ItemSize & ~n_Whole) ||
        n_Growth < n_ItemSize || n_Growth > MOST)
        return nullptr;
    CT_Buffer::st_BufferData& so_Data = *co_Buffer.pso_GetData();
    const unsigned n_Items = so_Data.n_UsedSize & n_Whole;
    if (so_Data.n_MaximumSize - n_Items >= n_ItemSize || n_Items > MOST)
        return nullptr;
    const unsigned n_Maximum = CT_Block::sn_Maximum(n_Items + (n_Growth & n_Whole), n_Growth);
    if (n_Maximum <= so_Data.n_MaximumSize || n_Maximum > CT_Block::sn_Room(co_Buffer.pc_Data))
        return nullptr;
    so_Data.n_MaximumSize = n_Maximum;
    CT_Buffer::sco_AllocCount.i4_Inc();
    return co_Buffer.pc_Take(n_ItemSize);
}

void CT_VoidArray::v_Insert(const void* pcv_Item)
{
    char* pc_Item = co_Buffer.pc_Take(n_ItemSize);
    if (!pc_Item)
        pc_Item = pc_Step();
    if (pc_Item)
        v_CopyItem(pc_Item, pcv_Item, n_ItemSize);
    else
        v_InsertItem(pcv_Item, co_Buffer.n_GetUsedSize());
}

void CT_VoidArray::v_Insert(const void* pcv_Item, unsigned n_Count)
{
    const unsigned n_Own = n_OffsetOf(pcv_Item);
    // Kept: the room becomes just what is needed: the growth is for items that come one by one.
    if (n_GetCount() + n_Count > n_GetMaxItems())
        v_SetSize(n_GetCount() + n_Count);
    while (n_Count && b_InsertBytes(pcv_Item, n_Own, co_Buffer.n_GetUsedSize()))
        --n_Count;
}

void CT_VoidArray::v_InsertAt(const void* pcv_Item, unsigned n_Index)
{
    v_InsertItem(pcv_Item, (n_Index - 1) * n_ItemSize);
}

void CT_VoidArray::v_InsertItem(const void* pcv_Item, unsigned n_To)
{
    const unsigned n_Own = n_OffsetOf(pcv_Item);
    v_Reserve();
    b_InsertBytes(pcv_Item, n_Own, n_To);
}

// Where in the array's own block the item lies, which moves when it grows; NONE elsewhere, and
// behind the items of a shared block, where it stays.
unsigned CT_VoidArray::n_OffsetOf(const void* pcv_Item) const
{
    const unsigned n_Place = co_Buffer.n_PlaceOf(pcv_Item);
    return co_Buffer.n_GetUseCount() > 1 && n_Place >= co_Buffer.n_GetUsedSize() ? NONE : n_Place;
}

// Inserts the bytes of an item, or those at n_Own of the array's own block, which may have moved.
// Whether all was inserted.
int CT_VoidArray::b_InsertBytes(const void* pcv_Item, unsigned n_Own, unsigned n_To)
{
    if (n_Own != NONE)
        pcv_Item = static_cast<const char*>(co_Buffer.qcv_Get()) + n_Own;
    const unsigned n_Used = co_Buffer.n_GetUsedSize();
    co_Buffer.v_Insert(pcv_Item, n_ItemSize, n_To);
    return b_Settle(n_Used, n_ItemSize, n_To);
}

// Inserts a range of the array itself as it stands before. Whether all was inserted.
int CT_VoidArray::b_InsertOwn(unsigned n_From, unsigned n_Bytes, unsigned n_To)
{
    const unsigned n_Used = co_Buffer.n_GetUsedSize();
    const unsigned n_Held = n_GetHeld(this, n_From, n_Bytes);
    n_To = std::min(n_To, n_Used);
    co_Buffer.v_Insert(static_cast<unsigned char>(0), n_Bytes, n_To);
    if (!b_Settle(n_Used, n_Bytes, n_To))
        return 0;
    // What lay at the gap or behind it has moved up with it.
    const unsigned n_Before = n_From < n_To ? std::min(n_Held, n_To - n_From) : 0;
    if (n_Before)
        co_Buffer.v_Replace(&co_Buffer, n_From, n_Before, n_To);
    if (const unsigned n_Behind = n_Held - n_Before)
        co_Buffer.v_Replace(&co_Buffer, n_From + n_Before + n_Bytes, n_Behind, n_To + n_Before);
    return 1;
}

// Behind a failed growth the buffer has inserted only what fitted; that goes again, so that items
// stay whole. Whether all was inserted.
int CT_VoidArray::b_Settle(unsigned n_Used, unsigned n_Bytes, unsigned n_Offset)
{
    const unsigned n_Inserted = co_Buffer.n_GetUsedSize() - n_Used;
    if (n_Inserted == n_Bytes)
        return 1;
    if (n_Inserted)
        co_Buffer.v_Remove(n_Inserted, n_Offset);
    return 0;
}

// The bytes of n_Count items of the other array.
unsigned CT_VoidArray::n_GetBytes(const CT_VoidArray* pcco_Array, unsigned n_Count) const
{
    // Kept: -1 stands for the other's number of items even when the range begins behind its first.
    return (n_Count == ALL ? pcco_Array->n_GetCount() : n_Count) * n_ItemSize;
}

// How many of n_Bytes bytes at n_From the other array has; a range may pass its end.
unsigned CT_VoidArray::n_GetHeld(const CT_VoidArray* pcco_Array, unsigned n_From,
                                 unsigned n_Bytes) const
{
    const unsigned n_Used = pcco_Array->co_Buffer.n_GetUsedSize();
    const unsigned n_Rest = n_From < n_Used ? n_Used - n_From : 0;
    return n_Bytes < n_Rest ? n_Bytes : n_Rest;
}

void CT_VoidArray::v_Insert(const CT_VoidArray* pcco_Array, unsigned n_First, unsigned n_Count,
                            unsigned n_At)
{
    b_InsertFrom(pcco_Array, n_First, n_Count, n_At);
}

// Whether all was inserted.
int CT_VoidArray::b_InsertFrom(const CT_VoidArray* pcco_Array, unsigned n_First, unsigned n_Count,
                               unsigned n_At)
{
    const unsigned n_From = (n_First - 1) * n_ItemSize;
    const unsigned n_To = (n_At - 1) * n_ItemSize;
    const unsigned n_Bytes = n_GetBytes(pcco_Array, n_Count);
    if (pcco_Array == this)
        return b_InsertOwn(n_From, n_Bytes, n_To);
    const unsigned n_Held = n_GetHeld(pcco_Array, n_From, n_Bytes);
    const unsigned n_Used = co_Buffer.n_GetUsedSize();
    if (n_Held == n_Bytes) {
        co_Buffer.v_Insert(&pcco_Array->co_Buffer, n_From, n_Bytes, n_To);
        return b_Settle(n_Used, n_Bytes, n_To);
    }
    co_Buffer.v_Insert(static_cast<unsigned char>(0), n_Bytes, n_To);
    if (!b_Settle(n_Used, n_Bytes, n_To))
        return 0;
    co_Buffer.v_Replace(&pcco_Array->co_Buffer, n_From, n_Held, n_To);
    return 1;
}

void CT_VoidArray::v_Append(const CT_VoidArray* pcco_Array, unsigned n_First, unsigned n_Count)
{
    v_Insert(pcco_Array, n_First, n_Count, n_GetCount() + 1);
}

void CT_VoidArray::v_Replace(const CT_VoidArray* pcco_Array, unsigned n_First, unsigned n_Count,
                             unsigned n_At)
{
    const unsigned n_From = (n_First - 1) * n_ItemSize;
    const unsigned n_To = (n_At - 1) * n_ItemSize;
    const unsigned n_Bytes = n_GetBytes(pcco_Array, n_Count);
    const unsigned n_Held = n_GetHeld(pcco_Array, n_From, n_Bytes);
    const unsigned n_Used = co_Buffer.n_GetUsedSize();
    // The zeros come last: they may fall on the range itself.
    co_Buffer.v_Replace(&pcco_Array->co_Buffer, n_From, n_Held, n_To);
    const unsigned n_Zeros = n_To + n_Held;
    if (n_Held != n_Bytes && n_Zeros >= n_To)
        co_Buffer.v_Replace(static_cast<unsigned char>(0), n_Bytes - n_Held, n_Zeros);
    // Behind a failed growth the last item may be cut: it goes, so that items stay whole.
    const unsigned n_Now = co_Buffer.n_GetUsedSize();
    if (n_Now > n_Used && n_Now < n_To + n_Bytes)
        co_Buffer.v_SetUsedSize(n_Now - (n_Now - n_Used) % n_ItemSize);
}

void CT_VoidArray::v_RemoveAt(unsigned n_Index)
{
    co_Buffer.v_Remove(n_ItemSize, (n_Index - 1) * n_ItemSize);
}

void CT_VoidArray::v_Remove(unsigned n_First, unsigned n_Last)
{
    co_Buffer.v_Remove((n_Last - n_First + 1) * n_ItemSize, (n_First - 1) * n_ItemSize);
}

void CT_VoidArray::v_AtInsertCopy(unsigned n_At, unsigned n_First, unsigned n_Last)
{
    const unsigned n_From = (n_First - 1) * n_ItemSize;
    const unsigned n_To = (n_At - 1) * n_ItemSize;
    const unsigned n_Bytes = (n_Last - n_First + 1) * n_ItemSize;
    // Into the range itself the buffer, while it has the room, would copy what the gap moves apart.
    if (n_First < n_At && n_At <= n_Last &&
        n_Bytes <= co_Buffer.n_GetMaximumSize() - co_Buffer.n_GetUsedSize())
        b_InsertOwn(n_From, n_Bytes, n_To);
    else
        co_Buffer.v_AtInsertCopy(n_From, n_Bytes, n_To);
}

void CT_VoidArray::v_AtInsertCopy(unsigned n_At, unsigned n_First, unsigned n_Last,
                                  const CT_VoidArray* pcco_Array)
{
    v_Insert(pcco_Array, n_First, n_Last - n_First + 1, n_At);
}

void CT_VoidArray::v_AtInsertMove(unsigned n_At, unsigned n_First, unsigned n_Last)
{
    if (n_First == n_At || n_At == n_Last + 1)
        return;
    co_Buffer.v_AtInsertMove((n_First - 1) * n_ItemSize, (n_Last - n_First + 1) * n_ItemSize,
                             (n_At - 1) * n_ItemSize);
}

void CT_VoidArray::v_AtInsertMove(unsigned n_At, unsigned n_First, unsigned n_Last,
                                  CT_VoidArray* pco_Array)
{
    if (pco_Array == this)
        v_AtInsertMove(n_At, n_First, n_Last);
    // Items that could not be inserted here stay there.
    else if (b_InsertFrom(pco_Array, n_First, n_Last - n_First + 1, n_At))
        pco_Array->v_Remove(n_First, n_Last);
}

// ---- Storage ------------------------------------------------------------------------------

void CT_VoidArray::v_SetSize(unsigned n_Items)
{
    if (n_GetMaxItems() != n_Items)
        co_Buffer.v_SetSize(n_Items * n_ItemSize, 1);
}

void CT_VoidArray::v_SetGrowth(unsigned n_Items)
{
    co_Buffer.v_SetGrowth(n_Items * n_ItemSize);
}
