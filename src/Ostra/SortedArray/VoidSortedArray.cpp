// Ostra/SortedArray/VoidSortedArray.cpp: raw items in the order of a compare function.
#include <Ostra/SortedArray/VoidSortedArray.h>

#include <Ostra/ARRAY/Pending.h>
#include <Ostra/ARRAY/RawItem.h>
#include <Ostra/Frame/Report.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <utility>

static constexpr char qccz_Source[] = "Ostra/SortedArray/VoidSortedArray";

// The first number if all bits of the mask are set, the second if none is.
template <class T>
static inline T n_Choose(std::size_t n_Mask, T n_First, T n_Second)
{
    return n_Second ^ ((n_First ^ n_Second) & static_cast<T>(n_Mask));
}

// Moves the items below the first one to the front of those behind it; the last of them. The items
// are as wide as a number. No processor foresees which of them move: two are written each time, as
// they were or exchanged.
template <class T>
[[gnu::noinline]] static char* pc_Partition(char* pc_First, unsigned n_Behind,
                                            int (*pf_Order)(const void*, const void*))
{
    char* pc_Next = pc_First + sizeof(T); // behind the last item below
    char* pc_End = pc_Next + n_Behind * sizeof(T);
    for (char* pc_Item = pc_Next; pc_Item != pc_End; pc_Item += sizeof(T)) {
        const T n_Below = -T{pf_Order(pc_First, pc_Item) > 0};
        T n_Next, n_Item;
        std::memcpy(&n_Next, pc_Next, sizeof(T));
        std::memcpy(&n_Item, pc_Item, sizeof(T));
        const T n_Changes = (n_Next ^ n_Item) & n_Below;
        n_Next ^= n_Changes;
        n_Item ^= n_Changes;
        std::memcpy(pc_Next, &n_Next, sizeof(T));
        std::memcpy(pc_Item, &n_Item, sizeof(T));
        pc_Next += n_Below & sizeof(T);
    }
    return pc_Next - sizeof(T);
}

// Items from the left one to the right one. A part of none has its right one before the left.
struct CT_VoidSortedArray::st_Part
{
    unsigned n_GetLength() const { return n_Right + 1 - n_Left; }
    bool b_IsSorted() const { return n_GetLength() < 2; }

    unsigned n_Left;
    unsigned n_Right;
};

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
    // One of the array's own items may move when the other goes.
    const auto n_Place = reinterpret_cast<std::uintptr_t>(pcv_Item) -
                         reinterpret_cast<std::uintptr_t>(pc_GetItem(1));
    const bool b_Own = n_Place < co_Array.pcco_GetBuffer()->n_GetUsedSize();
    const CT_Buffer co_Held(b_Own ? pcv_Item : nullptr, b_Own ? n_GetItemSize() : 0, 32);
    if (b_Own && !co_Held.qcv_Get())
        return;
    co_Array.v_RemoveAt(n_Index);
    v_Insert(b_Own ? co_Held.qcv_Get() : pcv_Item);
}

// ---- Search and comparison ----------------------------------------------------------------

unsigned CT_VoidSortedArray::n_Find(const void* pcv_Key) const
{
    unsigned n_Low;
    return n_Halve(pcv_Key, n_Low);
}

// The item that halving finds equal, or 0; and the lower bound that it reached.
//
// No processor foresees in which half the search goes on, so the middles of both are reckoned and
// fetched beside the call, and one is taken without a branch. The middle of items n_Low to n_High
// is (n_Low + n_High) >> 1: below it are (n_Count - 1) >> 1 of the n_Count items.
inline unsigned CT_VoidSortedArray::n_Halve(const void* pcv_Key, unsigned& n_Low) const
{
    const auto pf_Order = pf_Compare;
    const std::size_t n_Item = n_GetItemSize();
    const std::size_t n_First = reinterpret_cast<std::size_t>(pc_GetItem(1));
    const auto n_NumberOf = [=](std::size_t n_At) {
        return static_cast<unsigned>(n_At - n_First) / static_cast<unsigned>(n_Item) + 1;
    };
    unsigned n_Count = n_GetCount();
    std::size_t n_Middle = n_First + ((n_Count + 1) >> 1) * n_Item - n_Item;
    while (n_Count) {
        const unsigned n_Below = (n_Count - 1) >> 1, n_Above = n_Count - 1 - n_Below;
        const std::size_t n_Down = n_Middle - ((n_Below >> 1) + std::size_t{1}) * n_Item;
        const std::size_t n_Up = n_Middle + ((n_Above + 1) >> 1) * n_Item;
        __builtin_prefetch(reinterpret_cast<const void*>(n_Down));
        __builtin_prefetch(reinterpret_cast<const void*>(n_Up));
        const int i_Order = pf_Order(reinterpret_cast<const void*>(n_Middle), pcv_Key);
        if (!i_Order) {
            n_Low = n_NumberOf(n_Middle) - n_Below;
            return n_NumberOf(n_Middle);
        }
        const std::size_t n_IsAbove = -std::size_t{i_Order < 0}; // all bits, or none
        n_Count = n_Choose(n_IsAbove, n_Above, n_Below);
        n_Middle = n_Choose(n_IsAbove, n_Up, n_Down);
    }
    n_Low = n_NumberOf(n_Middle + n_Item);
    return 0;
}

int CT_VoidSortedArray::b_IsEqual(const CT_VoidSortedArray* pcco_Array) const
{
    if (n_GetCount() != pcco_Array->n_GetCount() || pf_Compare != pcco_Array->pf_Compare ||
        n_GetItemSize() != pcco_Array->n_GetItemSize())
        return 0;
    for (unsigned n_Index = 1; n_Index <= n_GetCount(); ++n_Index) {
        if (i_Compare(n_Index, pcco_Array->pc_GetItem(n_Index)))
            return 0;
    }
    return 1;
}

int CT_VoidSortedArray::b_IsSorted() const
{
    for (unsigned n_Index = 1; n_Index < n_GetCount(); ++n_Index) {
        if (i_Compare(n_Index, n_Index + 1) > 0)
            return 0;
    }
    return 1;
}

// ---- Change -------------------------------------------------------------------------------

void CT_VoidSortedArray::v_Insert(const void* pcv_Item)
{
    unsigned n_Low;
    // Kept: an equal item ends the halving where it stands, and the new item goes before the lower
    // bound reached, which may lie far in front of its equal. Keys are meant to differ; v_ReSort
    // restores the order.
    n_Halve(pcv_Item, n_Low);
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
// of their function. The part in front always comes first. Some orders let nearly as many parts
// wait as there are items, so what waits isn't on the stack.
void CT_VoidSortedArray::v_QuickSort(CT_Buffer* pco_Spare, unsigned n_Left, unsigned n_Right)
{
    CT_Pending<st_Part> co_Waiting;
    st_Part so_Part = {n_Left, n_Right};
    do {
        v_Swap(so_Part.n_Left, so_Part.n_Left + ((so_Part.n_Right - so_Part.n_Left) >> 1),
               pco_Spare);
        const unsigned n_Last = n_Partition(pco_Spare, so_Part.n_Left, so_Part.n_Right);
        v_Swap(so_Part.n_Left, n_Last, pco_Spare);

        st_Part so_Front = {so_Part.n_Left, n_Last - 1}, so_Back = {n_Last + 1, so_Part.n_Right};
        if (!so_Front.b_IsSorted() && !so_Back.b_IsSorted() && !co_Waiting.b_Push(so_Back)) {
            // Without memory the smaller part doesn't wait. The items come out the same.
            if (so_Back.n_GetLength() < so_Front.n_GetLength())
                std::swap(so_Front, so_Back);
            v_QuickSort(pco_Spare, so_Front.n_Left, so_Front.n_Right);
            so_Front = so_Back;
        }
        so_Part = so_Front.b_IsSorted() ? so_Back : so_Front;
    } while (!so_Part.b_IsSorted() || co_Waiting.b_Pop(&so_Part));
}

// Moves the items below the first to the front; the last of them.
unsigned CT_VoidSortedArray::n_Partition(CT_Buffer* pco_Spare, unsigned n_Left,
                                         unsigned n_Right) const
{
    const unsigned n_Item = n_GetItemSize();
    if (n_Item == 4 || n_Item == 8) {
        char* pc_First = pc_GetItem(n_Left);
        const auto pf_Partition =
            n_Item == 4 ? pc_Partition<unsigned> : pc_Partition<std::uint64_t>;
        const char* pcc_Last = pf_Partition(pc_First, n_Right - n_Left, pf_Compare);
        return n_Left + static_cast<unsigned>(pcc_Last - pc_First) / n_Item;
    }
    unsigned n_Last = n_Left;
    for (unsigned n_Index = n_Left + 1; n_Index <= n_Right; ++n_Index) {
        if (i_Compare(n_Left, n_Index) > 0)
            v_Swap(++n_Last, n_Index, pco_Spare);
    }
    return n_Last;
}

void CT_VoidSortedArray::v_Swap(unsigned n_First, unsigned n_Second, CT_Buffer* pco_Spare) const
{
    if (n_First == n_Second)
        return;
    // Kept: items are exchanged within the block even while it is shared, so that every holder sees
    // the new order.
    void* pv_Spare = const_cast<void*>(pco_Spare->qcv_Get());
    v_CopyItem(pv_Spare, pc_GetItem(n_First), n_GetItemSize());
    v_CopyItem(pc_GetItem(n_First), pc_GetItem(n_Second), n_GetItemSize());
    v_CopyItem(pc_GetItem(n_Second), pv_Spare, n_GetItemSize());
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
