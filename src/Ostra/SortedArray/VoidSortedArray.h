// Ostra/SortedArray/VoidSortedArray.h: raw items in the order of a compare function.
#pragma once

#include <Ostra/ARRAY/VoidArray.h>
#include <Ostra/Frame/Export.h>

#include <cstddef>

class CT_Buffer;

// A sequence of raw items of one size in the order of a compare function, found by halving.
//
// The function answers below 0, 0 or above 0 as for qsort; its first argument is an item of the
// array, its second an item of the array or the key given. Items lie at any address: a function
// that reads numbers copies them out.
//
// Units:   indexes count from 1; sizes and growths are items.
// Owns:    its hold on the buffer's block.
// Reports: nothing of its own; 60006 comes from the buffer when the heap is exhausted.
// Caller:  keeps indexes within the array; after inserting equal items asks b_IsSorted, or calls
//          v_ReSort.
// Threads: one thread at a time; sorting shows in every array that shares the block.
class OSTRA_API CT_VoidSortedArray
{
public:
    // ---- Construction ---------------------------------------------------------------------

    // Empty, for items of n_Item bytes, with room for n_Size of them.
    CT_VoidSortedArray(unsigned n_Item, int (*pf_Order)(const void*, const void*),
                       unsigned n_Growth, unsigned n_Size);
    // Shares the other's block as it stands, and takes its compare function.
    explicit CT_VoidSortedArray(const CT_VoidSortedArray* pcco_Array);
    // Shares the array's block and sorts it in place: the source array reads in the new order, too.
    CT_VoidSortedArray(const CT_VoidArray* pcco_Array, int (*pf_Order)(const void*, const void*));
    CT_VoidSortedArray(const CT_VoidSortedArray&) = delete;
    CT_VoidSortedArray& operator=(const CT_VoidSortedArray&) = delete;

    // Empties the array. With b_Keep a block that has room for n_Size items stays.
    void v_Set(unsigned n_Growth, unsigned n_Size, int b_Keep);
    // Shares the other's block; the own compare function stays, and nothing is sorted by it.
    // Kept: an array set to itself is empty.
    void v_Set(const CT_VoidSortedArray* pcco_Array);
    // Shares the array's block and sorts it in place.
    void v_Set(const CT_VoidArray* pcco_Array);

    static void* operator new(std::size_t n_Size) noexcept;
    static void* operator new(std::size_t, void* pv_Place) noexcept { return pv_Place; }
    static void operator delete(void* pv_Object);

    // ---- Access ---------------------------------------------------------------------------

    unsigned n_GetCount() const { return co_Array.n_GetCount(); }
    unsigned n_GetMaxItems() const { return co_Array.n_GetMaxItems(); }
    unsigned n_GetItemSize() const { return co_Array.n_GetItemSize(); }
    unsigned n_GetGrowth() const { return co_Array.n_GetGrowth(); }
    int (*pf_GetCompare() const)(const void*, const void*) { return pf_Compare; }
    const CT_VoidArray* pcco_GetArray() const { return &co_Array; }

    // Copies an item out. An index outside the block's room copies nothing.
    void v_GetAt(void* pv_Item, unsigned n_Index) const;
    // Removes item n_Index and inserts the new one, which may land anywhere.
    void v_SetAt(const void* pcv_Item, unsigned n_Index);

    // ---- Search and comparison ------------------------------------------------------------

    // The index of an item that compares equal to the key: of several the one that halving meets
    // first. 0 for none.
    unsigned n_Find(const void* pcv_Key) const;
    // Whether both have the same compare function and item size and compare equal item by item.
    int b_IsEqual(const CT_VoidSortedArray* pcco_Array) const;
    int b_IsSorted() const;

    // ---- Change ---------------------------------------------------------------------------

    // Inserts by compare. With an equal item in the array the place may be out of order.
    void v_Insert(const void* pcv_Item);
    // Removes item n_Index; the first form copies it out before.
    void v_RemoveAt(void* pv_Item, unsigned n_Index);
    void v_RemoveAt(unsigned n_Index);
    // Sorts in place; equal items may change their order.
    void v_ReSort();

    // ---- Storage --------------------------------------------------------------------------

    // Sets the room; items that no longer fit are dropped.
    void v_SetSize(unsigned n_Items);
    void v_SetGrowth(unsigned n_Items);

private:
    struct st_Part;
    unsigned n_Halve(const void* pcv_Key, unsigned& n_Low) const;
    void v_QuickSort();
    void v_QuickSort(CT_Buffer* pco_Spare, unsigned n_Left, unsigned n_Right);
    unsigned n_Partition(CT_Buffer* pco_Spare, unsigned n_Left, unsigned n_Right) const;
    void v_Swap(unsigned n_First, unsigned n_Second, CT_Buffer* pco_Spare) const;
    int i_Compare(unsigned n_First, unsigned n_Second) const;
    int i_Compare(unsigned n_Index, const void* pcv_Key) const;
    char* pc_GetItem(unsigned n_Index) const;

    CT_VoidArray co_Array;
    int (*pf_Compare)(const void*, const void*);
};
