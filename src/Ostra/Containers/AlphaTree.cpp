// Ostra/Containers/AlphaTree.cpp
#include <Ostra/Containers/AlphaTree.h>

#include <Ostra/ARRAY/Pending.h>
#include <Ostra/Containers/BranchPool.h>
#include <Ostra/Frame/Counts.h>
#include <Ostra/Frame/Print.h>
#include <Ostra/String/CString.h>
#include <Ostra/String/UString.h>

#include <cstddef>
#include <cstdio>
#include <type_traits>

static_assert(offsetof(CT_AlphaTree::_st_node, u_Character) == 0);
static_assert(offsetof(CT_AlphaTree::_st_node, n2_NrOfBranches) == 2);
static_assert(offsetof(CT_AlphaTree::_st_node, n_Value) == 4);
static_assert(sizeof(CT_AlphaTree::_st_node) == 8 + sizeof(void*));

namespace
{
// An 8-bit character without its sign.
template <class T>
inline unsigned short u_Widen(T c)
{
    return static_cast<std::make_unsigned_t<T>>(c);
}
} // namespace

// ---- Life ---------------------------------------------------------------------------------

CT_AlphaTree::CT_AlphaTree()
{
    v_Null();
    v_Init();
}

CT_AlphaTree::~CT_AlphaTree()
{
    delete pco_Pool;
}

void CT_AlphaTree::v_Null()
{
    so_Root = {0, 0, 0, nullptr};
    pco_Pool = nullptr;
}

void CT_AlphaTree::v_Init()
{
    so_Root = {0xFFFF, 0, NONE, nullptr};
}

// Frees what is below the node. The last branch is gone into by the loop, so that the stack is
// needed where keys part and not for their lengths.
void CT_AlphaTree::v_Delete(_st_node* pso_Node)
{
    _st_node* pso_Branches = pso_Node->pso_Branches;
    unsigned n_Number = pso_Node->n2_NrOfBranches;
    while (pso_Branches) {
        for (unsigned n_Branch = 0; n_Branch + 1 < n_Number; ++n_Branch)
            v_Delete(&pso_Branches[n_Branch]);
        const _st_node so_Last = pso_Branches[n_Number - 1];
        pco_Pool->v_Free(pso_Branches, n_Number);
        pso_Branches = so_Last.pso_Branches;
        n_Number = so_Last.n2_NrOfBranches;
    }
}

// ---- Branches -----------------------------------------------------------------------------

inline CT_AlphaTree::_st_node*
CT_AlphaTree::pso_FindBranch(_st_node* pso_Branches, unsigned n_Count, unsigned short u_Character)
{
    for (_st_node* pso_End = pso_Branches + n_Count; pso_Branches != pso_End; ++pso_Branches)
        if (pso_Branches->u_Character == u_Character)
            return pso_Branches;
    return nullptr;
}

// A new last branch; the caller raises the count. Null when the heap is exhausted, and the branches
// are as they were.
CT_AlphaTree::_st_node* CT_AlphaTree::pso_AugmentBranches(_st_node** ppso_Branches,
                                                          unsigned n_Count,
                                                          unsigned short u_Character)
{
    if (!pco_Pool)
        pco_Pool = new CT_BranchPool;
    _st_node* pso_Grown = pco_Pool ? pco_Pool->pso_Grow(*ppso_Branches, n_Count) : nullptr;
    if (!pso_Grown)
        return nullptr;
    *ppso_Branches = pso_Grown;
    _st_node* pso_New = *ppso_Branches + n_Count;
    *pso_New = {u_Character, 0, NONE, nullptr};
    return pso_New;
}

// Takes out a branch from which no other branches go.
void CT_AlphaTree::v_CutBranch(_st_node* pso_Node, _st_node* pso_Branch)
{
    const unsigned n_Left = --pso_Node->n2_NrOfBranches;
    if (n_Left == 0) {
        pco_Pool->v_Free(pso_Node->pso_Branches, 1);
        pso_Node->pso_Branches = nullptr;
        return;
    }
    // Kept: the last branch takes the place, so the order of the branches changes.
    *pso_Branch = pso_Node->pso_Branches[n_Left];
    pco_Pool->v_Shrink(pso_Node->pso_Branches, n_Left + 1);
}

// Keeps the number of nodes that have one, but for the root.
void CT_AlphaTree::v_SetValue(_st_node* pso_Node, unsigned n_Value)
{
    if (pso_Node != &so_Root)
        pco_Pool->n_Entries += (n_Value != NONE) - (pso_Node->n_Value != NONE);
    pso_Node->n_Value = n_Value;
}

// ---- Keys ---------------------------------------------------------------------------------

// Branches that were added before the heap was exhausted stay.
template <class T>
void CT_AlphaTree::v_Insert(_st_node* pso_Node, const T* qcz_Key, DWORD n4_Value)
{
    for (; *qcz_Key; ++qcz_Key) {
        const unsigned short u_Character = u_Widen(*qcz_Key);
        const unsigned n_Number = pso_Node->n2_NrOfBranches;
        _st_node* pso_Next = pso_FindBranch(pso_Node->pso_Branches, n_Number, u_Character);
        if (!pso_Next) {
            pso_Next = pso_AugmentBranches(&pso_Node->pso_Branches, n_Number, u_Character);
            if (!pso_Next)
                return;
            ++pso_Node->n2_NrOfBranches;
        }
        pso_Node = pso_Next;
    }
    v_SetValue(pso_Node, n4_Value);
}

template <class T>
DWORD CT_AlphaTree::n4_Search(_st_node* pso_Node, const T* qcz_Key)
{
    for (; *qcz_Key; ++qcz_Key) {
        pso_Node =
            pso_FindBranch(pso_Node->pso_Branches, pso_Node->n2_NrOfBranches, u_Widen(*qcz_Key));
        if (!pso_Node)
            return NONE;
    }
    return pso_Node->n_Value;
}

// One way down, which notes where the branches that go begin: below the last node that has a number
// or other branches.
template <class T>
int CT_AlphaTree::b_Remove(_st_node* pso_Node, const T* qcz_Key)
{
    _st_node* pso_Parent = nullptr; // the last node that stays, and the branch of it that may go
    _st_node* pso_First = nullptr;
    for (; *qcz_Key; ++qcz_Key) {
        _st_node* pso_Next =
            pso_FindBranch(pso_Node->pso_Branches, pso_Node->n2_NrOfBranches, u_Widen(*qcz_Key));
        if (!pso_Next)
            return 0;
        if (pso_Node->n_Value != NONE) {
            // Kept: the node's own number decides, not that of the branch: a branch below a number
            // stays for good, without a key.
            pso_First = nullptr;
        } else if (!pso_First || pso_Node->n2_NrOfBranches != 1) {
            pso_Parent = pso_Node;
            pso_First = pso_Next;
        }
        pso_Node = pso_Next;
    }
    if (pso_Node->n_Value == NONE)
        return 0;
    v_SetValue(pso_Node, NONE);
    if (pso_First && pso_Node->n2_NrOfBranches == 0) {
        v_Delete(pso_First);
        v_CutBranch(pso_Parent, pso_First);
        if (pco_Pool->b_IsMostlyUnused())
            pco_Pool->v_Pack(&so_Root);
    }
    return 1;
}

// ---- Output -------------------------------------------------------------------------------

// The characters on the way to a node.
template <class T>
struct CT_AlphaTree::st_DumpText
{
    static constexpr unsigned ROOM = 256;

    // A character that became 0 shows as a question mark; one that finds no room isn't appended.
    void v_Append(T c)
    {
        if (n_Length == ROOM - 1)
            return;
        ac_Text[n_Length++] = c ? c : '?';
        ac_Text[n_Length] = 0;
    }
    void v_Cut(unsigned n_NewLength)
    {
        n_Length = n_NewLength;
        ac_Text[n_Length] = 0;
    }
    // Characters of 16 bits print in the standard library's locale. What has no form there stops
    // the whole line, and makes way for a question mark then.
    void v_Print(unsigned n_Value) const
    {
        const char* qccz_Format = sizeof(T) == 1 ? "%s : %d\n" : "%S : %d\n";
        char ac_Line[ROOM * 6];
        if (CT_Print::si_Format(ac_Line, sizeof ac_Line, qccz_Format, ac_Text, int(n_Value)) < 0) {
            const st_DumpText so_Known = so_GetKnown();
            CT_Print::si_Format(ac_Line, sizeof ac_Line, qccz_Format, so_Known.ac_Text,
                                int(n_Value));
        }
        std::printf("%s", ac_Line);
    }
    st_DumpText so_GetKnown() const
    {
        st_DumpText so_Known = *this;
        for (unsigned n = 0; n < n_Length; ++n) {
            const T ac_One[] = {ac_Text[n], 0};
            char ac_Form[16];
            if (CT_Print::si_Format(ac_Form, sizeof ac_Form, "%S", ac_One) < 0)
                so_Known.ac_Text[n] = '?';
        }
        return so_Known;
    }

    T ac_Text[ROOM] = {};
    unsigned n_Length = 0;
};

template <class T>
void CT_AlphaTree::v_Dump(_st_node* pso_Node, st_DumpText<T>* pso_Text)
{
    pso_Text->v_Append(static_cast<T>(pso_Node->u_Character));
    if (pso_Node->n_Value != NONE)
        pso_Text->v_Print(pso_Node->n_Value);
}

// Branches that wait until those below another one are printed.
struct CT_AlphaTree::st_Waiting
{
    _st_node* pso_Branches;
    unsigned n_Number;
    unsigned n_Length; // of the text in front of them
};

// Branches wait on the heap, since a way may be as long as a key; without memory, on the stack.
template <class T>
void CT_AlphaTree::v_DumpBranches(_st_node* pso_Node, st_DumpText<T>* pso_Text)
{
    CT_Pending<st_Waiting> co_Waiting;
    st_Waiting so_Now = {pso_Node->pso_Branches, pso_Node->n2_NrOfBranches, pso_Text->n_Length};
    do {
        pso_Text->v_Cut(so_Now.n_Length);
        while (so_Now.n_Number) {
            pso_Node = so_Now.pso_Branches++;
            --so_Now.n_Number;
            const bool b_Down = !so_Now.n_Number || co_Waiting.b_Push(so_Now);
            v_Dump(pso_Node, pso_Text);
            if (b_Down) {
                so_Now = {pso_Node->pso_Branches, pso_Node->n2_NrOfBranches, pso_Text->n_Length};
            } else {
                v_DumpBranches(pso_Node, pso_Text);
                pso_Text->v_Cut(so_Now.n_Length);
            }
        }
    } while (co_Waiting.b_Pop(&so_Now));
}

void CT_AlphaTree::v_Dump(et_ElementSize ec_ElementSize)
{
    if (ec_ElementSize == es_Byte) {
        st_DumpText<char> so_Text;
        v_DumpBranches(&so_Root, &so_Text);
    } else {
        st_DumpText<unsigned short> so_Text;
        v_DumpBranches(&so_Root, &so_Text);
    }
}

unsigned CT_AlphaTree::n_GetNrOfEntries()
{
    return (so_Root.n_Value != NONE) + (pco_Pool ? pco_Pool->n_Entries : 0);
}

// ---- The forms of a key -------------------------------------------------------------------

unsigned CT_AlphaTree::n_Search(const char* qccz_Key)
{
    return n4_Search(&so_Root, qccz_Key);
}

unsigned CT_AlphaTree::n_Search(const unsigned short* qcuz_Key)
{
    return n4_Search(&so_Root, qcuz_Key);
}

unsigned CT_AlphaTree::n_Search(const CT_CString* pcco_Key)
{
    return n4_Search(&so_Root, pcco_Key->qccz_Get());
}

unsigned CT_AlphaTree::n_Search(const CT_UString* pcco_Key)
{
    return n4_Search(&so_Root, pcco_Key->qcuz_Get());
}

void CT_AlphaTree::v_Add(const char* qccz_Key, DWORD n4_Value)
{
    v_Insert(&so_Root, qccz_Key, n4_Value);
}

void CT_AlphaTree::v_Add(const unsigned short* qcuz_Key, DWORD n4_Value)
{
    v_Insert(&so_Root, qcuz_Key, n4_Value);
}

void CT_AlphaTree::v_Add(const CT_CString* pcco_Key, DWORD n4_Value)
{
    v_Insert(&so_Root, pcco_Key->qccz_Get(), n4_Value);
}

void CT_AlphaTree::v_Add(const CT_UString* pcco_Key, DWORD n4_Value)
{
    v_Insert(&so_Root, pcco_Key->qcuz_Get(), n4_Value);
}

int CT_AlphaTree::b_Remove(const char* qccz_Key)
{
    return b_Remove(&so_Root, qccz_Key);
}

int CT_AlphaTree::b_Remove(const unsigned short* qcuz_Key)
{
    return b_Remove(&so_Root, qcuz_Key);
}

int CT_AlphaTree::b_Remove(const CT_CString* pcco_Key)
{
    return b_Remove(&so_Root, pcco_Key->qccz_Get());
}

int CT_AlphaTree::b_Remove(const CT_UString* pcco_Key)
{
    return b_Remove(&so_Root, pcco_Key->qcuz_Get());
}
