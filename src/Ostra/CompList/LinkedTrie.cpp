// Ostra/CompList/LinkedTrie.cpp: nodes and chains.
#include <Ostra/CompList/LinkedTrie.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>

static constexpr unsigned FIRST_ROOM = 64;

// Leaves a buffer room for its own head and for rounding.
static constexpr unsigned LAST_END = 0xFFFFFF00;

// ---- Life ---------------------------------------------------------------------------------

CT_LinkedTrie::CT_LinkedTrie(unsigned n_HandleSize, unsigned n_Offset)
    : pso_Nodes(nullptr),
      n_Nodes(0),
      n_NodeRoom(0),
      pn_Weights(nullptr),
      an_Jump(),
      n_HandleBytes(n_HandleSize),
      n_OffsetBytes(n_Offset),
      n_End(0)
{}

CT_LinkedTrie::~CT_LinkedTrie()
{
    std::free(pso_Nodes);
    std::free(pn_Weights);
}

void* CT_LinkedTrie::operator new(std::size_t n_Size) noexcept
{
    return std::malloc(n_Size);
}

void CT_LinkedTrie::operator delete(void* pv_Object)
{
    std::free(pv_Object);
}

// ---- Nodes --------------------------------------------------------------------------------

// Makes room for so many nodes more; 0 when the heap is exhausted.
int CT_LinkedTrie::b_MakeNodes(unsigned n_More)
{
    if (n_Nodes + n_More <= n_NodeRoom)
        return 1;
    const std::uint64_t n_Room =
        n_NodeRoom ? std::uint64_t{n_NodeRoom} + n_NodeRoom / 2 : FIRST_ROOM;
    if (n_Room > SIZE_MAX / sizeof(st_Node) || n_Room > UINT32_MAX)
        return 0;
    void* pv_New = std::realloc(pso_Nodes, static_cast<std::size_t>(n_Room) * sizeof(st_Node));
    if (!pv_New)
        return 0;
    pso_Nodes = static_cast<st_Node*>(pv_New);
    if (pn_Weights) {
        pv_New = std::realloc(pn_Weights, static_cast<std::size_t>(n_Room) * sizeof(unsigned));
        if (!pv_New)
            return 0;
        pn_Weights = static_cast<unsigned*>(pv_New);
    }
    n_NodeRoom = static_cast<unsigned>(n_Room);
    return 1;
}

// Lets keys have weights, those that are there 1; 0 when the heap is exhausted.
int CT_LinkedTrie::b_MakeWeights()
{
    if (pn_Weights)
        return 1;
    if (!b_MakeNodes(1))
        return 0;
    pn_Weights = static_cast<unsigned*>(
        std::malloc(static_cast<std::size_t>(n_NodeRoom) * sizeof(unsigned)));
    if (!pn_Weights)
        return 0;
    std::fill_n(pn_Weights, n_Nodes, 1u);
    return 1;
}

// A node without elements yet; there is room for it.
unsigned CT_LinkedTrie::n_NewNode(unsigned n_Start, unsigned n_First)
{
    pso_Nodes[n_Nodes] = {n_Start, 0, 0, 0, n_First, 0, 0, 0};
    return n_Nodes++;
}

// Lets a key end at a node.
void CT_LinkedTrie::v_SetEnd(unsigned n_Node, unsigned n_Handle, unsigned n_Weight)
{
    pso_Nodes[n_Node].b_End = 1;
    pso_Nodes[n_Node].n_Handle = n_Handle;
    if (pn_Weights)
        pn_Weights[n_Node] = n_Weight;
}

int CT_LinkedTrie::b_Fits(unsigned long long n_More) const
{
    return n_End + n_More <= LAST_END;
}

// ---- Chains -------------------------------------------------------------------------------

// Looks behind the nodes that are walked. On 0 the place tells the last one.
int CT_LinkedTrie::b_FindFar(unsigned n_Element, st_Place* pso_Place) const
{
    const unsigned n_Found = co_Chains.n_Find(pso_Place->n_Head, n_Element);
    pso_Place->n_Node = n_Found ? n_Found : co_Chains.n_FindLast(pso_Place->n_Head);
    return n_Found != 0;
}

// Appends a node to the chain that the place tells; there is room in the index.
void CT_LinkedTrie::v_Append(const st_Place* pcso_Place, unsigned n_Node)
{
    pso_Nodes[pcso_Place->n_Node].n_Next = n_Node;
    if (pcso_Place->b_Long)
        co_Chains.v_Enter(pcso_Place->n_Head, pso_Nodes[n_Node].n_First, n_Node);
}

// Enters the long chains of a trie that was read.
CT_LinkedTrie::et_Result CT_LinkedTrie::ec_IndexChains()
{
    et_Result ec_Result = lr_Done;
    for (unsigned n_Node = 0; n_Node < n_Nodes && ec_Result == lr_Done; ++n_Node) {
        if (!n_Node || !pso_Nodes[n_Node].b_Branch)
            ec_Result = ec_IndexChain(n_Node);
    }
    return ec_Result;
}

CT_LinkedTrie::et_Result CT_LinkedTrie::ec_IndexChain(unsigned n_Head)
{
    unsigned n_Walked = 1;
    for (unsigned n_Node = pso_Nodes[n_Head].n_Next; n_Node; n_Node = pso_Nodes[n_Node].n_Next) {
        if (++n_Walked <= WALKED)
            continue;
        if (!co_Chains.b_MakeRoom(2))
            return lr_Memory;
        co_Chains.v_Enter(n_Head, pso_Nodes[n_Node].n_First, n_Node);
    }
    return lr_Done;
}

// ---- Jumps --------------------------------------------------------------------------------

unsigned CT_LinkedTrie::n_GetJump(unsigned n_Element) const
{
    const unsigned n_Letter = n_Element - 'a';
    return n_Letter < 26 ? an_Jump[n_Letter] : 0;
}

void CT_LinkedTrie::v_SetJump(unsigned n_Element, unsigned n_Node)
{
    const unsigned n_Letter = n_Element - 'a';
    if (n_Letter < 26)
        an_Jump[n_Letter] = n_Node + 1;
}
