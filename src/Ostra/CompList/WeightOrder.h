// Ostra/CompList/WeightOrder.h: the branches of a trie in the order that suits searches. Internal.
#pragma once

#include <Ostra/CompList/LinkedTrie.h>

#include <cstdint>

// A search passes the alternatives of a place one by one, and each lies elsewhere in the block. So
// at each place the way that carries most comes first, and of ways that carry the same the one that
// was added first; where keys begin the letters a to z come behind all others, as searches jump to
// them. The branches come place by place, breadth first: what most searches pass lies
// together at the start. Below a place with few keys they come depth first, as its searches stay
// there.
//
// What comes out is an order in which keys could have been added: a branch comes behind the one
// that it leaves, and alternatives follow their chain.
//
// The ways are the nodes of the trie in the order of places, from 1 on. Takes 24 bytes for each,
// and 4 for each place with alternatives.
class CT_WeightOrder
{
public:
    // No weights stand for 1 each. Nodes and weights have to stay.
    CT_WeightOrder(const CT_LinkedTrie::st_Node* pcso_Nodes, unsigned n_Nodes,
                   const unsigned* pcn_Weights);
    ~CT_WeightOrder();
    CT_WeightOrder(const CT_WeightOrder&) = delete;
    CT_WeightOrder& operator=(const CT_WeightOrder&) = delete;

    // 0 when the heap is exhausted.
    int b_Make();

    unsigned n_GetWays() const { return n_NodeCount + 1; }
    unsigned n_GetNode(unsigned n_Way) const { return pso_Ways[n_Way].n_Node; }
    // The alternative to a way, and what goes on behind it in the same branch; 0 for none.
    unsigned n_GetNext(unsigned n_Way) const { return pso_Ways[n_Way].b_Last ? 0 : n_Way + 1; }
    unsigned n_GetChild(unsigned n_Way) const { return pso_Ways[n_Way].n_Child; }
    // Of each letter from a to z the way + 1; 0 for none.
    const unsigned* pcn_GetJump() const { return an_Jump; }

    // Gives the way that the next branch begins with; 0 behind the last branch.
    int b_GetBranch(unsigned* pn_Way);

private:
    // Way 0 stands for the start of all keys.
    struct st_Way
    {
        std::uint64_t n8_Weight; // of all keys that go this way
        unsigned n_Keys : 31;    // how many these are
        unsigned b_Last : 1;     // no alternative follows
        unsigned n_Node;
        unsigned n_Child;    // the first of the ways behind it; 0 for none
        unsigned n_Children; // how many these are
    };

    void v_Collect();
    void v_AddPlace(st_Way* pso_Parent, unsigned n_Node);
    void v_Weigh();
    void v_SortPlace(const st_Way* pcso_Parent);
    bool b_IsJumpedTo(const st_Way& so_Way) const;
    void v_SetJumps();
    void v_NotePlaces(unsigned n_Way);
    int b_GetPlace();

    const CT_LinkedTrie::st_Node* pcso_All;
    const unsigned n_NodeCount;
    const unsigned* pcn_KeyWeights;
    st_Way* pso_Ways;
    unsigned n_Ways;
    unsigned an_Jump[26];

    // Places with alternatives that are still to come, as the way that leads to them: a queue, with
    // a stack behind its end while branches come depth first.
    unsigned* pn_Places;
    unsigned n_Head;
    unsigned n_Tail;
    unsigned n_Bottom;  // of that stack; 0 for none
    unsigned n_NextWay; // the place's alternatives that are left
    unsigned n_WayEnd;
};
