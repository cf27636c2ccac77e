// Ostra/LIST/VoidList.cpp: a doubly linked list of raw items of one size.
#include <Ostra/LIST/VoidList.h>

#include <Ostra/ARRAY/RawItem.h>
#include <Ostra/Frame/Report.h>

#include <algorithm>
#include <cstdlib>

static constexpr char qccz_Source[] = "Ostra/LIST/VoidList";

// One heap block an item; the item's bytes stand behind the links.
struct CT_VoidList::st_Position
{
    st_Position* pso_Next;     // null at the last item
    st_Position* pso_Previous; // null at the first item

    void* pv_Item() { return this + 1; }
    const void* pcv_Item() const { return this + 1; }
};

// ---- Construction -------------------------------------------------------------------------

CT_VoidList::CT_VoidList(unsigned n_Item)
    : n_Count(0),
      n_ItemSize(n_Item),
      pso_Last(nullptr),
      pso_First(nullptr)
{}

CT_VoidList::CT_VoidList(const CT_VoidList* pcco_List) : CT_VoidList(pcco_List->n_ItemSize)
{
    v_Init(pcco_List);
}

CT_VoidList::~CT_VoidList()
{
    v_Exit();
}

void CT_VoidList::v_Init(const CT_VoidList* pcco_List)
{
    const unsigned n_Size = std::min(n_ItemSize, pcco_List->n_ItemSize);
    for (const st_Position* pcso = pcco_List->pso_First; pcso; pcso = pcso->pso_Next) {
        if (st_Position* pso_New = pso_Link(pso_Last, nullptr)) {
            v_CopyItem(pso_New->pv_Item(), pcso->pcv_Item(), n_Size);
            std::memset(static_cast<char*>(pso_New->pv_Item()) + n_Size, 0, n_ItemSize - n_Size);
        }
    }
}

void CT_VoidList::v_Exit()
{
    while (pso_First) {
        st_Position* pso_Next = pso_First->pso_Next;
        std::free(pso_First);
        pso_First = pso_Next;
    }
    pso_Last = nullptr;
    n_Count = 0;
}

void CT_VoidList::v_Set()
{
    v_Exit();
}

void CT_VoidList::v_Set(const CT_VoidList* pcco_List)
{
    if (pcco_List == this)
        return;
    v_Exit();
    v_Init(pcco_List);
}

void* CT_VoidList::operator new(std::size_t n_Size) noexcept
{
    return CT_Report::spv_New(n_Size, qccz_Source);
}

void CT_VoidList::operator delete(void* pv_Object)
{
    std::free(pv_Object);
}

// ---- Access -------------------------------------------------------------------------------

CT_VoidList::st_Position* CT_VoidList::pso_GetPosition(unsigned n_Index) const
{
    if (n_Index > n_Count >> 1)
        return pso_Skip(pso_Last, static_cast<int>(n_Index - n_Count));
    return pso_Skip(pso_First, static_cast<int>(n_Index - 1));
}

CT_VoidList::st_Position* CT_VoidList::pso_Skip(st_Position* pso_Position, int i_Steps) const
{
    if (!pso_Position || !n_Count)
        return pso_Position;
    // Whole rounds lead nowhere, and of two ways round the ring one is shorter.
    long long n_Steps = i_Steps % static_cast<long long>(n_Count);
    if (2 * n_Steps > n_Count)
        n_Steps -= n_Count;
    else if (-2 * n_Steps > n_Count)
        n_Steps += n_Count;
    for (; n_Steps > 0; --n_Steps)
        pso_Position = pso_Position->pso_Next ? pso_Position->pso_Next : pso_First;
    for (; n_Steps < 0; ++n_Steps)
        pso_Position = pso_Position->pso_Previous ? pso_Position->pso_Previous : pso_Last;
    return pso_Position;
}

void CT_VoidList::v_GetAt(void* pv_Item, st_Position* pso_Position) const
{
    if (pso_Position)
        v_CopyItem(pv_Item, pso_Position->pcv_Item(), n_ItemSize);
}

void CT_VoidList::v_SetAt(const void* pcv_Item, st_Position* pso_Position)
{
    if (pso_Position)
        v_CopyItem(pso_Position->pv_Item(), pcv_Item, n_ItemSize);
}

// ---- Search and comparison ----------------------------------------------------------------

CT_VoidList::st_Position* CT_VoidList::pso_Find(const void* pcv_Item, unsigned* pn_Index) const
{
    unsigned n_Index = 1;
    st_Position* pso_Found = pso_First;
    while (pso_Found && std::memcmp(pso_Found->pcv_Item(), pcv_Item, n_ItemSize)) {
        pso_Found = pso_Found->pso_Next;
        ++n_Index;
    }
    if (pn_Index)
        *pn_Index = pso_Found ? n_Index : 0;
    return pso_Found;
}

int CT_VoidList::b_IsEqual(const CT_VoidList* pcco_List) const
{
    if (n_Count != pcco_List->n_Count)
        return 0;
    if (n_Count && pcco_List->n_ItemSize < n_ItemSize)
        return 0;
    const st_Position* pcso_Other = pcco_List->pso_First;
    for (const st_Position* pcso = pso_First; pcso; pcso = pcso->pso_Next) {
        if (std::memcmp(pcso->pcv_Item(), pcso_Other->pcv_Item(), n_ItemSize))
            return 0;
        pcso_Other = pcso_Other->pso_Next;
    }
    return 1;
}

// ---- Change -------------------------------------------------------------------------------

void CT_VoidList::v_InsertFirst(const void* pcv_Item)
{
    v_Link(pcv_Item, nullptr, pso_First);
}

void CT_VoidList::v_InsertLast(const void* pcv_Item)
{
    v_Link(pcv_Item, pso_Last, nullptr);
}

void CT_VoidList::v_InsertAfter(const void* pcv_Item, st_Position* pso_Position)
{
    v_Link(pcv_Item, pso_Position, pso_Position ? pso_Position->pso_Next : pso_First);
}

void CT_VoidList::v_InsertBefore(const void* pcv_Item, st_Position* pso_Position)
{
    v_Link(pcv_Item, pso_Position ? pso_Position->pso_Previous : pso_Last, pso_Position);
}

void CT_VoidList::v_Link(const void* pcv_Item, st_Position* pso_Previous, st_Position* pso_Next)
{
    if (st_Position* pso_New = pso_Link(pso_Previous, pso_Next))
        v_CopyItem(pso_New->pv_Item(), pcv_Item, n_ItemSize);
}

// A position between two neighbours; null stands for the ends of the list. Null without memory.
inline CT_VoidList::st_Position* CT_VoidList::pso_Link(st_Position* pso_Previous,
                                                       st_Position* pso_Next)
{
    auto* pso_New = static_cast<st_Position*>(
        std::malloc(sizeof(st_Position) + static_cast<std::size_t>(n_ItemSize)));
    if (!pso_New)
        return nullptr;
    pso_New->pso_Next = pso_Next;
    pso_New->pso_Previous = pso_Previous;
    (pso_Previous ? pso_Previous->pso_Next : pso_First) = pso_New;
    (pso_Next ? pso_Next->pso_Previous : pso_Last) = pso_New;
    ++n_Count;
    return pso_New;
}

void CT_VoidList::v_RemoveFirst(void* pv_Item)
{
    v_RemoveAt(pv_Item, pso_First);
}

void CT_VoidList::v_RemoveLast(void* pv_Item)
{
    v_RemoveAt(pv_Item, pso_Last);
}

void CT_VoidList::v_RemoveAt(void* pv_Item, st_Position* pso_Position)
{
    st_Position* pso_Gone = pso_Position ? pso_Position : pso_First;
    if (!pso_Gone)
        return;
    if (pv_Item)
        v_CopyItem(pv_Item, pso_Gone->pcv_Item(), n_ItemSize);
    (pso_Gone->pso_Previous ? pso_Gone->pso_Previous->pso_Next : pso_First) = pso_Gone->pso_Next;
    (pso_Gone->pso_Next ? pso_Gone->pso_Next->pso_Previous : pso_Last) = pso_Gone->pso_Previous;
    std::free(pso_Gone);
    --n_Count;
}
