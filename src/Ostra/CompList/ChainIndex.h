// Ostra/CompList/ChainIndex.h: where the later nodes of long chains of alternatives are. Internal.
#pragma once

// A table from the head of a chain and an element to the node that begins with that element, so
// that a place with very many ways on isn't walked way by way. Only what lies behind the first
// nodes of a chain is entered.
//
// Node 0 is never entered: it stands for none. Says nothing when the heap is exhausted.
class CT_ChainIndex
{
public:
    CT_ChainIndex();
    ~CT_ChainIndex();
    CT_ChainIndex(const CT_ChainIndex&) = delete;
    CT_ChainIndex& operator=(const CT_ChainIndex&) = delete;

    // Makes room for so many entries more; 0 when the heap is exhausted.
    int b_MakeRoom(unsigned n_More);

    // Enters a node that was appended to a chain, as that of its element, if that has none, and as
    // the last. Needs room for two.
    void v_Enter(unsigned n_Head, unsigned n_Element, unsigned n_Node);

    // 0 for none.
    unsigned n_Find(unsigned n_Head, unsigned n_Element) const;
    unsigned n_FindLast(unsigned n_Head) const { return n_Find(n_Head, LAST); }

private:
    // No element of a key is 0.
    static constexpr unsigned LAST = 0;

    struct st_Slot
    {
        unsigned n_Head;
        unsigned n_Element;
        unsigned n_Node; // 0: the slot is free
    };

    st_Slot* pso_GetSlot(unsigned n_Head, unsigned n_Element) const;

    st_Slot* pso_Slots;
    unsigned n_Slots; // a power of 2, or 0
    unsigned n_Count;
};
