// Ostra/CompList/ChainIndex.cpp
#include <Ostra/CompList/ChainIndex.h>

#include <algorithm>
#include <cstddef>
#include <cstdlib>

static constexpr unsigned FIRST_SLOTS = 64;
static constexpr unsigned MOST_SLOTS = 0x40000000;

CT_ChainIndex::CT_ChainIndex() : pso_Slots(nullptr), n_Slots(0), n_Count(0) {}

CT_ChainIndex::~CT_ChainIndex()
{
    std::free(pso_Slots);
}

// Half of the slots stay free.
int CT_ChainIndex::b_MakeRoom(unsigned n_More)
{
    if (n_Count + n_More <= n_Slots / 2)
        return 1;
    unsigned n_NewSlots = std::max(n_Slots, FIRST_SLOTS);
    while (n_Count + n_More > n_NewSlots / 2 && n_NewSlots < MOST_SLOTS)
        n_NewSlots *= 2;
    st_Slot* pso_New = static_cast<st_Slot*>(std::calloc(n_NewSlots, sizeof(st_Slot)));
    if (!pso_New || n_Count + n_More > n_NewSlots / 2) {
        std::free(pso_New);
        return 0;
    }
    st_Slot* pso_Old = pso_Slots;
    const unsigned n_Old = n_Slots;
    pso_Slots = pso_New;
    n_Slots = n_NewSlots;
    for (unsigned n_At = 0; n_At < n_Old; ++n_At) {
        if (pso_Old[n_At].n_Node)
            *pso_GetSlot(pso_Old[n_At].n_Head, pso_Old[n_At].n_Element) = pso_Old[n_At];
    }
    std::free(pso_Old);
    return 1;
}

void CT_ChainIndex::v_Enter(unsigned n_Head, unsigned n_Element, unsigned n_Node)
{
    st_Slot* pso_Slot = pso_GetSlot(n_Head, n_Element);
    if (!pso_Slot->n_Node) {
        *pso_Slot = {n_Head, n_Element, n_Node};
        ++n_Count;
    }
    st_Slot* pso_Last = pso_GetSlot(n_Head, LAST);
    n_Count += !pso_Last->n_Node;
    *pso_Last = {n_Head, LAST, n_Node};
}

unsigned CT_ChainIndex::n_Find(unsigned n_Head, unsigned n_Element) const
{
    return n_Slots ? pso_GetSlot(n_Head, n_Element)->n_Node : 0;
}

// The slot of an entry, or the free one where it belongs.
CT_ChainIndex::st_Slot* CT_ChainIndex::pso_GetSlot(unsigned n_Head, unsigned n_Element) const
{
    unsigned n_Hash = n_Head * 0x9E3779B1 + n_Element * 0x85EBCA77;
    n_Hash = (n_Hash ^ n_Hash >> 15) * 0x2C1B3C6D;
    for (unsigned n_At = n_Hash ^ n_Hash >> 16;; ++n_At) {
        st_Slot* pso_Slot = pso_Slots + (n_At & (n_Slots - 1));
        if (!pso_Slot->n_Node || (pso_Slot->n_Head == n_Head && pso_Slot->n_Element == n_Element))
            return pso_Slot;
    }
}
