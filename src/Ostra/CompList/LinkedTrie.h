// Ostra/CompList/LinkedTrie.h: the trie of a list with its parts linked, for adding. Internal.
#pragma once

#include <Ostra/CompList/ChainIndex.h>

#include <cstddef>

struct st_CompListHeader;

// What the stream of a list says, as nodes: a run of elements, of which only the first has an
// alternative and only the last an end behind it. A key that parts from a run splits it. Branches
// are the nodes marked as such, in the order of their numbers, each with what hangs below it as
// child; a node gets its number when it is made, so they come in the order in which keys brought
// them.
//
// A trie is of one element size, CT_TypedTrie, and lives on the heap. It says nothing when that is
// exhausted but the result, and is then what it was before.
class CT_LinkedTrie
{
public:
    enum et_Result
    {
        lr_Done,
        lr_Known,  // the key is there
        lr_Memory, // the heap is exhausted
        lr_Limit,  // an offset or the block outgrows its field
        lr_Foreign // the block isn't a sound list
    };

    struct st_Node
    {
        unsigned n_Text;        // where its elements are in the text
        unsigned n_Length : 30; // of its elements
        unsigned b_End : 1;     // a key ends behind the last of them
        unsigned b_Branch : 1;  // a branch of the stream begins with it
        unsigned n_First;       // the first of its elements
        unsigned n_Next;        // the alternative to that; 0 for none
        unsigned n_Child;       // what goes on behind it in the same branch; 0 for nothing
        unsigned n_Handle;
    };

    virtual ~CT_LinkedTrie();
    static void* operator new(std::size_t n_Size) noexcept;
    static void operator delete(void* pv_Object);

    // Adds a key, which isn't empty and holds no reserved element.
    virtual et_Result vec_Add(const char* pcc_Key, unsigned n_Handle, unsigned n_Weight) = 0;
    // Writes the stream and the jump offsets to a block of n_GetEnd() bytes, with the branches as
    // keys brought them, or in the order of CT_WeightOrder.
    virtual et_Result vec_Write(st_CompListHeader* pso_Header) const = 0;
    virtual et_Result vec_WriteByWeight(st_CompListHeader* pso_Header) const = 0;

    unsigned n_GetEnd() const { return n_End; }

protected:
    // Where following a key came to a stop.
    struct st_Place
    {
        unsigned n_Node;    // the last node
        unsigned n_Within;  // its elements that were followed
        unsigned n_Matched; // the key's elements that were followed
        unsigned n_Head;    // of the chain with no way on; n_Within is 0 then
        int b_Long;         // that chain's next node belongs into the index
        int b_KeyEnds;
    };

    // So many nodes of a chain are walked, the others looked up.
    static constexpr unsigned WALKED = 8;

    CT_LinkedTrie(unsigned n_HandleSize, unsigned n_Offset);

    int b_MakeNodes(unsigned n_More);
    int b_MakeWeights();
    unsigned n_NewNode(unsigned n_Start, unsigned n_First);
    void v_SetEnd(unsigned n_Node, unsigned n_Handle, unsigned n_Weight);
    int b_Find(unsigned n_Head, unsigned n_Element, st_Place* pso_Place) const;
    int b_FindFar(unsigned n_Element, st_Place* pso_Place) const;
    void v_Append(const st_Place* pcso_Place, unsigned n_Node);
    et_Result ec_IndexChains();
    et_Result ec_IndexChain(unsigned n_Head);
    int b_Fits(unsigned long long n_More) const;
    unsigned n_GetJump(unsigned n_Element) const;
    void v_SetJump(unsigned n_Element, unsigned n_Node);

    st_Node* pso_Nodes; // the first begins the first branch
    unsigned n_Nodes;
    unsigned n_NodeRoom;
    unsigned* pn_Weights; // of the keys that end at the nodes; null while each weighs 1
    CT_ChainIndex co_Chains;
    unsigned an_Jump[26]; // a node's number + 1; 0 for none
    const unsigned n_HandleBytes;
    const unsigned n_OffsetBytes;
    unsigned n_End; // of the block
};

// Looks for the node of a chain that begins with an element. On 0 the place tells the last one.
inline int CT_LinkedTrie::b_Find(unsigned n_Head, unsigned n_Element, st_Place* pso_Place) const
{
    unsigned n_Node = n_Head;
    unsigned n_Walked = 1;
    const st_Node* pcso_Node = &pso_Nodes[n_Head];
    while (pcso_Node->n_First != n_Element && pcso_Node->n_Next && n_Walked < WALKED) {
        n_Node = pcso_Node->n_Next;
        pcso_Node = &pso_Nodes[n_Node];
        ++n_Walked;
    }
    pso_Place->n_Head = n_Head;
    pso_Place->n_Node = n_Node;
    pso_Place->b_Long = n_Walked == WALKED;
    if (pcso_Node->n_First == n_Element)
        return 1;
    return pcso_Node->n_Next ? b_FindFar(n_Element, pso_Place) : 0;
}
