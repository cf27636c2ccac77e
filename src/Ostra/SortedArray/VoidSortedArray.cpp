// Ostra/SortedArray/VoidSortedArray.cpp: raw items in the order of a compare function.
#include <Ostra/SortedArray/VoidSortedArray.h>

#include <Ostra/Frame/Report.h>

#include <cstdlib>
#include <cstring>

static constexpr char qccz_Source[] = "Ostra/SortedArray/VoidSortedArray";

// ---- Construction -------------------------------------------------------------------------

CT_VoidSortedArray::CT_VoidSortedArray(unsigned n_Item, int (*pf_Order)(const void*, const void*),
                                       unsigned n_Growth, unsigned n_Size)
    : co_Array(n_Item, n_Growth, n_Size),
      pf_Compare(pf_Order)
{}

CT_VoidSortedArray::CT_VoidSortedArray(const CT_VoidSortedArray* pcco_Array)
    : co_Array(&pcco_Array->co_Array),
      pf_Compare(pcco_Array->pf_Compare)
{}

CT_VoidSortedArray::CT_VoidSortedArray(const CT_VoidArray* pcco_Array,
                                       int (*pf_Order)(const void*, const void*))
    : co_Array(pcco_Array),
      pf_Compare(pf_Order)
{
    v_ReSort();
}

void CT_VoidSortedArray::v_Set(unsigned n_Growth, unsigned n_Size, int b_Keep)
{
    co_Array.v_Set(n_Growth, n_Size, b_Keep);
}

void CT_VoidSortedArray::v_Set(const CT_VoidSortedArray* pcco_Array)
{
    v_Set(8, 0, 0);
    // Kept: the own compare function stays and nothing is sorted: the items are taken over as they
    // stand, the order isn't.
    co_Array.v_Set(&pcco_Array->co_Array);
}

void CT_VoidSortedArray::v_Set(const CT_VoidArray* pcco_Array)
{
    v_Set(8, 0, 0);
    co_Array.v_Set(pcco_Array);
    v_ReSort();
}

void* CT_VoidSortedArray::operator new(std::size_t n_Size) noexcept
{
    return CT_Report::spv_New(n_Size, qccz_Source);
}

void CT_VoidSortedArray::operator delete(void* pv_Object)
{
    std::free(pv_Object);
}

// ---- Access -------------------------------------------------------------------------------

void CT_VoidSortedArray::v_GetAt(void* pv_Item, unsigned n_Index) const
{
    co_Array.v_GetAt(pv_Item, static_cast<int>(n_Index));
}

void CT_VoidSortedArray::v_SetAt(const void* pcv_Item, unsigned n_Index)
{
    co_Array.v_RemoveAt(n_Index);
    v_Insert(pcv_Item);
}

// ---- Search and comparison ----------------------------------------------------------------

unsigned CT_VoidSortedArray::n_Find(const void* pcv_Key) const
{
    unsigned n_Low = 1, n_High = n_GetCount();
    while (n_Low <= n_High) {
        const unsigned n_Middle = (n_Low + n_High) >> 1;
        const int i_Order = i_Compare(n_Middle, pcv_Key);
        if (!i_Order)
            return n_Middle;
        if (i_Order < 0)
            n_Low = n_Middle + 1;
        else
            n_High = n_Middle - 1;
    }
    return 0;
}

int CT_VoidSortedArray::b_IsEqual(const CT_VoidSortedArray* pcco_Array) const
{
    if (n_GetCount() != pcco_Array->n_GetCount() || pf_Compare != pcco_Array->pf_Compare ||
        n_GetItemSize() != pcco_Array->n_GetItemSize())
        return 0;
    for (unsigned n_Index = 1; n_Index <= n_GetCount(); n_Index++) {
        if (i_Compare(n_Index, pcco_Array->pc_GetItem(n_Index)))
            return 0;
    }
    return 1;
}

int CT_VoidSortedArray::b_IsSorted() const
{
    for (unsigned n_Index = 1; n_Index < n_GetCount(); n_Index++) {
        if (i_Compare(n_Index, n_Index + 1) > 0)
            return 0;
    }
    return 1;
}

// ---- Change -------------------------------------------------------------------------------

void CT_VoidSortedArray::v_Insert(const void* pcv_Item)
{
    unsigned n_Low = 1, n_High = n_GetCount();
    while (n_Low <= n_High) {
        const unsigned n_Middle = (n_Low + n_High) >> 1;
        const int i_Order = i_Compare(n_Middle, pcv_Item);
        // Kept: an equal item ends the halving where it stands, and the new item goes before the
        // lower bound reached, which may lie far in front of its equal. Keys are meant to differ;
        // v_ReSort restores the order.
        if (!i_Order)
            break;
        if (i_Order < 0)
            n_Low = n_Middle + 1;
        else
            n_High = n_Middle - 1;
    }
    co_Array.v_InsertAt(pcv_Item, n_Low);
}

void CT_VoidSortedArray::v_RemoveAt(void* pv_Item, unsigned n_Index)
{
    v_GetAt(pv_Item, n_Index);
    v_RemoveAt(n_Index);
}

void CT_VoidSortedArray::v_RemoveAt(unsigned n_Index)
{
    co_Array.v_RemoveAt(n_Index);
}

void CT_VoidSortedArray::v_ReSort()
{
    if (n_GetCount() > 1)
        v_QuickSort();
}

// ---- Storage ------------------------------------------------------------------------------

void CT_VoidSortedArray::v_SetSize(unsigned n_Items)
{
    co_Array.v_SetSize(n_Items);
}

void CT_VoidSortedArray::v_SetGrowth(unsigned n_Items)
{
    co_Array.v_SetGrowth(n_Items);
}

// ---- Work ---------------------------------------------------------------------------------

void CT_VoidSortedArray::v_QuickSort()
{
    CT_Buffer co_Spare(n_GetItemSize(), 32);
    // Without swap space the items stay as they are; the buffer has reported.
    if (co_Spare.qcv_Get())
        v_QuickSort(&co_Spare, 1, n_GetCount());
}

// The steps of the partition are part of what callers see: the order of equal items, and the calls
// of their function.
void CT_VoidSortedArray::v_QuickSort(CT_Buffer* pco_Spare, unsigned n_Left, unsigned n_Right)
{
    for (;;) {
        v_Swap(n_Left, n_Left + ((n_Right - n_Left) >> 1), pco_Spare);
        unsigned n_Last = n_Left;
        for (unsigned n_Index = n_Left + 1; n_Index <= n_Right; n_Index++) {
            if (i_Compare(n_Left, n_Index) > 0)
                v_Swap(++n_Last, n_Index, pco_Spare);
        }
        v_Swap(n_Left, n_Last, pco_Spare);

        if (n_Left + 1 < n_Last)
            v_QuickSort(pco_Spare, n_Left, n_Last - 1);
        if (n_Right <= n_Last + 1)
            return;
        n_Left = n_Last + 1;
    }
}

void CT_VoidSortedArray::v_Swap(unsigned n_First, unsigned n_Second, CT_Buffer* pco_Spare)
{
    if (n_First == n_Second)
        return;
    // Kept: items are exchanged within the block even while it is shared, so that every holder sees
    // the new order.
    char* pc_First = pc_GetItem(n_First);
    char* pc_Second = pc_GetItem(n_Second);
    void* pv_Spare = const_cast<void*>(pco_Spare->qcv_Get());
    std::memcpy(pv_Spare, pc_First, n_GetItemSize());
    std::memcpy(pc_First, pc_Second, n_GetItemSize());
    std::memcpy(pc_Second, pv_Spare, n_GetItemSize());
}

int CT_VoidSortedArray::i_Compare(unsigned n_First, unsigned n_Second) const
{
    return pf_Compare(pc_GetItem(n_First), pc_GetItem(n_Second));
}

int CT_VoidSortedArray::i_Compare(unsigned n_Index, const void* pcv_Key) const
{
    return pf_Compare(pc_GetItem(n_Index), pcv_Key);
}

char* CT_VoidSortedArray::pc_GetItem(unsigned n_Index) const
{
    const char* pcc_Data = static_cast<const char*>(co_Array.pcco_GetBuffer()->qcv_Get());
    return const_cast<char*>(pcc_Data) + (n_Index - 1) * n_GetItemSize();
}
