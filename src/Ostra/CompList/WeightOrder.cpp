// Ostra/CompList/WeightOrder.cpp
#include <Ostra/CompList/WeightOrder.h>

#include <algorithm>
#include <cstdlib>

// Up to so many keys below a place make branches come depth first.
static constexpr unsigned FEW_KEYS = 64;

CT_WeightOrder::CT_WeightOrder(const CT_LinkedTrie::st_Node* pcso_Nodes, unsigned n_Nodes,
                               const unsigned* pcn_Weights)
    : pcso_All(pcso_Nodes),
      n_NodeCount(n_Nodes),
      pcn_KeyWeights(pcn_Weights),
      pso_Ways(nullptr),
      n_Ways(0),
      an_Jump(),
      pn_Places(nullptr),
      n_Head(0),
      n_Tail(0),
      n_Bottom(0),
      n_NextWay(0),
      n_WayEnd(0)
{}

CT_WeightOrder::~CT_WeightOrder()
{
    std::free(pso_Ways);
    std::free(pn_Places);
}

// ---- Ways ---------------------------------------------------------------------------------

int CT_WeightOrder::b_Make()
{
    pso_Ways = static_cast<st_Way*>(std::calloc(std::size_t{n_NodeCount} + 1, sizeof(st_Way)));
    if (!pso_Ways)
        return 0;
    v_Collect();
    v_Weigh();
    unsigned n_Places = 1;
    for (unsigned n_Way = 0; n_Way < n_Ways; ++n_Way) {
        v_SortPlace(&pso_Ways[n_Way]);
        n_Places += pso_Ways[n_Way].n_Children > 1;
    }
    v_SetJumps();
    // There is always something to ask for.
    pn_Places = static_cast<unsigned*>(std::malloc(std::size_t{n_Places} * sizeof(unsigned)));
    if (!pn_Places)
        return 0;
    if (pso_Ways->n_Children > 1)
        pn_Places[n_Tail++] = 0;
    n_NextWay = 1;
    n_WayEnd = n_Ways > 1 ? 2 : 1;
    return 1;
}

// The ways of each place one behind the other, the places breadth first.
void CT_WeightOrder::v_Collect()
{
    n_Ways = 1;
    for (unsigned n_Way = 0; n_Way < n_Ways && n_NodeCount; ++n_Way) {
        const unsigned n_First = n_Way ? pcso_All[pso_Ways[n_Way].n_Node].n_Child : 0;
        if (!n_Way || n_First)
            v_AddPlace(&pso_Ways[n_Way], n_First);
    }
}

void CT_WeightOrder::v_AddPlace(st_Way* pso_Parent, unsigned n_Node)
{
    pso_Parent->n_Child = n_Ways;
    do {
        pso_Ways[n_Ways++].n_Node = n_Node;
        pso_Parent->n_Children++;
        n_Node = pcso_All[n_Node].n_Next;
    } while (n_Node);
}

// What lies behind a way has a higher number.
void CT_WeightOrder::v_Weigh()
{
    for (unsigned n_Way = n_Ways; n_Way-- > 0;) {
        st_Way& so_Way = pso_Ways[n_Way];
        if (n_Way && pcso_All[so_Way.n_Node].b_End) {
            so_Way.n_Keys = 1;
            so_Way.n8_Weight = pcn_KeyWeights ? pcn_KeyWeights[so_Way.n_Node] : 1;
        }
        for (unsigned n_At = 0; n_At < so_Way.n_Children; ++n_At) {
            const st_Way& so_Child = pso_Ways[so_Way.n_Child + n_At];
            so_Way.n_Keys += so_Child.n_Keys;
            so_Way.n8_Weight += so_Child.n8_Weight;
        }
    }
}

void CT_WeightOrder::v_SortPlace(const st_Way* pcso_Parent)
{
    if (!pcso_Parent->n_Children)
        return;
    st_Way* pso_First = pso_Ways + pcso_Parent->n_Child;
    st_Way* pso_End = pso_First + pcso_Parent->n_Children;
    const int b_Start = pcso_Parent == pso_Ways;
    // In the order of adding the numbers of nodes rise behind the first.
    const unsigned n_Oldest = pso_First->n_Node;
    std::sort(pso_First, pso_End, [=, this](const st_Way& so_Left, const st_Way& so_Right) {
        if (b_Start && b_IsJumpedTo(so_Left) != b_IsJumpedTo(so_Right))
            return b_IsJumpedTo(so_Right);
        if (so_Left.n8_Weight != so_Right.n8_Weight)
            return so_Left.n8_Weight > so_Right.n8_Weight;
        return so_Right.n_Node != n_Oldest &&
               (so_Left.n_Node == n_Oldest || so_Left.n_Node < so_Right.n_Node);
    });
    pso_End[-1].b_Last = 1;
}

// Whether searches go to that way at the start of a key without passing others.
bool CT_WeightOrder::b_IsJumpedTo(const st_Way& so_Way) const
{
    return pcso_All[so_Way.n_Node].n_First - 'a' < 26;
}

void CT_WeightOrder::v_SetJumps()
{
    for (unsigned n_Way = pso_Ways->n_Children; n_Way > 0; --n_Way) {
        const unsigned n_Letter = pcso_All[pso_Ways[n_Way].n_Node].n_First - 'a';
        if (n_Letter < 26)
            an_Jump[n_Letter] = n_Way + 1;
    }
}

// ---- Branches -----------------------------------------------------------------------------

int CT_WeightOrder::b_GetBranch(unsigned* pn_Way)
{
    if (n_NextWay == n_WayEnd && !b_GetPlace())
        return 0;
    *pn_Way = n_NextWay++;
    v_NotePlaces(*pn_Way);
    return 1;
}

// The places on a branch, from its start on.
void CT_WeightOrder::v_NotePlaces(unsigned n_Way)
{
    for (; n_Way; n_Way = pso_Ways[n_Way].n_Child) {
        if (pso_Ways[n_Way].n_Children > 1)
            pn_Places[n_Tail++] = n_Way;
    }
}

// Goes to the alternatives of the next place; 0 behind the last.
int CT_WeightOrder::b_GetPlace()
{
    unsigned n_Way;
    if (n_Bottom && n_Tail > n_Bottom)
        n_Way = pn_Places[--n_Tail];
    else if (n_Head < n_Tail) {
        n_Way = pn_Places[n_Head++];
        n_Bottom = pso_Ways[n_Way].n_Keys <= FEW_KEYS ? n_Tail : 0;
    } else
        return 0;
    n_NextWay = pso_Ways[n_Way].n_Child + 1;
    n_WayEnd = pso_Ways[n_Way].n_Child + pso_Ways[n_Way].n_Children;
    return 1;
}
