// Ostra/ARRAY/VoidArray.h: a growable sequence of raw items of one size.
#pragma once

#include <Ostra/Buffer/Buffer.h>
#include <Ostra/Frame/Export.h>

#include <cstddef>
#include <cstring>

// A growable sequence of raw items of one size, kept in a CT_Buffer.
//
// Units:   indexes count from 1; sizes, counts and growths are items.
// Owns:    its hold on the buffer's block; items are copied in and out by their bytes.
// Reports: nothing of its own; 60006 comes from the buffer when the heap is exhausted.
// Caller:  keeps indexes within the array; an item size is above 0, and that of two arrays that
//          meet is one.
// Threads: one thread at a time; arrays that share a block may be read and released on two.
class OSTRA_API CT_VoidArray
{
public:
    // ---- Construction ---------------------------------------------------------------------

    // Empty, with a growth of 8 items and no block. An item has n_Item bytes.
    explicit CT_VoidArray(unsigned n_Item);
    // Empty, with room for n_Size items.
    CT_VoidArray(unsigned n_Item, unsigned n_Growth, unsigned n_Size);
    // Shares the block of the other array, or of a buffer, which is read as items of n_Item bytes.
    explicit CT_VoidArray(const CT_VoidArray* pcco_Array);
    CT_VoidArray(const CT_Buffer* pcco_Buffer, unsigned n_Item);
    CT_VoidArray(const CT_VoidArray&) = delete;
    CT_VoidArray& operator=(const CT_VoidArray&) = delete;

    // Empties the array. With b_Keep a block that has room for n_Size items stays.
    void v_Set(unsigned n_Growth, unsigned n_Size, int b_Keep);
    // Shares the other's block and growth; the item size stays.
    void v_Set(const CT_VoidArray* pcco_Array);
    void v_Set(const CT_Buffer* pcco_Buffer);

    static void* operator new(std::size_t n_Size) noexcept;
    static void* operator new(std::size_t, void* pv_Place) noexcept { return pv_Place; }
    static void operator delete(void* pv_Object);

    // ---- Access ---------------------------------------------------------------------------

    unsigned n_GetCount() const { return co_Buffer.n_GetUsedSize() / n_ItemSize; }
    // The items that the block has room for.
    unsigned n_GetMaxItems() const { return co_Buffer.n_GetMaximumSize() / n_ItemSize; }
    unsigned n_GetItemSize() const { return n_ItemSize; }
    unsigned n_GetGrowth() const { return co_Buffer.n_GetGrowth() / n_ItemSize; }
    const CT_Buffer* pcco_GetBuffer() const { return &co_Buffer; }

    // Copies an item out or in. An index outside the block's room copies nothing.
    void v_GetAt(void* pv_Item, int i_Index) const;
    void v_SetAt(const void* pcv_Item, int i_Index);

    // ---- Search and comparison ------------------------------------------------------------

    // The index of the first item with the same bytes; 0 for none.
    unsigned n_Find(const void* pcv_Item) const;
    int b_IsEqual(const CT_VoidArray* pcco_Array) const;

    // ---- Change ---------------------------------------------------------------------------

    // Appends an item, or n_Count copies of it. It may lie in the array's own block.
    void v_Insert(const void* pcv_Item);
    void v_Insert(const void* pcv_Item, unsigned n_Count);
    // Inserts an item before item n_Index.
    void v_InsertAt(const void* pcv_Item, unsigned n_Index);

    // Items n_First and following of another array, before item n_At, behind the last, or over
    // item n_At and following. A count of -1 means as many as the other array has, whatever
    // n_First is; what lies behind its last item comes as zeros. The other array may be this one:
    // its items are taken as they stand before the change.
    void v_Insert(const CT_VoidArray* pcco_Array, unsigned n_First, unsigned n_Count,
                  unsigned n_At);
    void v_Append(const CT_VoidArray* pcco_Array, unsigned n_First, unsigned n_Count);
    void v_Replace(const CT_VoidArray* pcco_Array, unsigned n_First, unsigned n_Count,
                   unsigned n_At);

    // One item, or items n_First to n_Last.
    void v_RemoveAt(unsigned n_Index);
    void v_Remove(unsigned n_First, unsigned n_Last);

    // Copies items n_First to n_Last, of this array or another, before item n_At.
    void v_AtInsertCopy(unsigned n_At, unsigned n_First, unsigned n_Last);
    void v_AtInsertCopy(unsigned n_At, unsigned n_First, unsigned n_Last,
                        const CT_VoidArray* pcco_Array);
    // Moves items n_First to n_Last, of this array or another, before item n_At as the array stands
    // before the move.
    void v_AtInsertMove(unsigned n_At, unsigned n_First, unsigned n_Last);
    void v_AtInsertMove(unsigned n_At, unsigned n_First, unsigned n_Last, CT_VoidArray* pco_Array);

    // ---- Storage --------------------------------------------------------------------------

    // Sets the room; items that no longer fit are dropped.
    void v_SetSize(unsigned n_Items);
    void v_SetGrowth(unsigned n_Items);

protected:
    // Appends an item of a size that the compiler knows. False where that takes more than copying
    // it: a larger block, or one of its own.
    template <unsigned SIZE>
    bool b_Put(const void* pcv_Item)
    {
        char* pc_Item = co_Buffer.pc_Take(SIZE);
        if (pc_Item)
            std::memcpy(pc_Item, pcv_Item, SIZE);
        return pc_Item;
    }

private:
    void v_Reserve();
    char* pc_Step();
    void v_InsertItem(const void* pcv_Item, unsigned n_To);
    unsigned n_OffsetOf(const void* pcv_Item) const;
    int b_InsertBytes(const void* pcv_Item, unsigned n_Own, unsigned n_To);
    int b_InsertOwn(unsigned n_From, unsigned n_Bytes, unsigned n_To);
    int b_Settle(unsigned n_Used, unsigned n_Bytes, unsigned n_Offset);
    int b_InsertFrom(const CT_VoidArray* pcco_Array, unsigned n_First, unsigned n_Count,
                     unsigned n_At);
    unsigned n_GetBytes(const CT_VoidArray* pcco_Array, unsigned n_Count) const;
    unsigned n_GetHeld(const CT_VoidArray* pcco_Array, unsigned n_From, unsigned n_Bytes) const;
    template <class T>
    unsigned n_FindNumber(const void* pcv_Item) const;

    unsigned n_ItemSize;
    CT_Buffer co_Buffer;
};
