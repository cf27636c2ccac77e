// Ostra/CompList/CompListIterator.cpp: the walk over the entries of a list.
#include <Ostra/CompList/CompListIterator.h>

#include <Ostra/CompList/CompListStream.h>
#include <Ostra/String/String.h>

static constexpr unsigned BRANCH_GROWTH = 8;

CT_CompListIterator::CT_CompListIterator(const CT_CompList* pcco_NewList)
    : pcco_List(pcco_NewList),
      n_Position(pcco_NewList->n_FirstPosition),
      co_Branches(sizeof(st_Branch), BRANCH_GROWTH, 0)
{}

CT_CompListIterator::~CT_CompListIterator() {}

void CT_CompListIterator::vv_Set(const CT_CompList* pcco_NewList)
{
    co_Branches.v_Set(BRANCH_GROWTH, 0, 1);
    pcco_List = pcco_NewList;
    n_Position = pcco_List->n_FirstPosition;
}

// The position doesn't leave the list's end until the walk is set anew, whatever branches are left.
void CT_CompListIterator::v_Stop()
{
    n_Position = pcco_List->n_GetEnd();
}

int CT_CompListIterator::b_GetNext(CT_String* pco_Key, unsigned* pn_Handle)
{
    if (n_Position >= pcco_List->n_GetEnd())
        return 0;
    switch (pcco_List->n_GetElementSize()) {
    case 1:
        return b_WalkToEnd<unsigned char>(pco_Key, pn_Handle);
    case 2:
        return b_WalkToEnd<unsigned short>(pco_Key, pn_Handle);
    default:
        return b_WalkToEnd<unsigned>(pco_Key, pn_Handle);
    }
}

// Follows the stream to the end of a key. Behind its last element the stream reads as the list end.
template <class T>
int CT_CompListIterator::b_WalkToEnd(CT_String* pco_Key, unsigned* pn_Handle)
{
    const CT_CompList::st_Stream<T> so_Stream(pcco_List);
    for (;;) {
        const unsigned n_Element = so_Stream.n_GetElement(n_Position);
        switch (n_Element) {
        case CT_CompList::ec_ListEnd:
            return 0;
        case CT_CompList::ec_Alternative:
            if (n_Position >= so_Stream.n_Marks)
                return 0;
            v_TakeAlternative(so_Stream.n_GetTarget(n_Position));
            break;
        case CT_CompList::ec_InnerEnd:
            v_HandOut(pco_Key, pn_Handle);
            // The collected string stays: longer keys go on from it.
            n_Position += so_Stream.n_EndSize;
            return 1;
        case CT_CompList::ec_LeafEnd:
            v_HandOut(pco_Key, pn_Handle);
            v_Restore(so_Stream.n_MarkSize);
            return 1;
        default:
            n_Position += so_Stream.ELEMENT;
            vv_AppendCharacter(n_Element);
        }
    }
}

// Goes on with the alternative of the last character, which waits for v_Restore.
void CT_CompListIterator::v_TakeAlternative(unsigned n_Target)
{
    st_Branch so_Branch = {n_Position, 0, 0};
    // Without the memory for it the walk is stopped: n_Position has changed.
    so_Branch.n_Character = vn_PopCharacter();
    so_Branch.n_Length = vpcco_GetCollectedString()->vn_GetLength();
    const unsigned n_Count = co_Branches.n_GetCount();
    co_Branches.v_Insert(&so_Branch);
    // Every alternative leads forward; one that doesn't would keep the walk in a circle.
    if (n_Position != so_Branch.n_Position || co_Branches.n_GetCount() == n_Count ||
        n_Target <= n_Position)
        v_Stop();
    else
        n_Position = n_Target;
}

// What the end mark at the position says.
void CT_CompListIterator::v_HandOut(CT_String* pco_Key, unsigned* pn_Handle)
{
    if (pn_Handle)
        *pn_Handle = pcco_List->n_GetHandle(n_Position + pcco_List->n_GetElementSize());
    pco_Key->v_Set(vpcco_GetCollectedString());
}

// Goes back to the last character that an alternative was taken for, and on behind its mark.
void CT_CompListIterator::v_Restore(unsigned n_MarkSize)
{
    const unsigned n_Last = co_Branches.n_GetCount();
    if (!n_Last) {
        v_Stop();
        return;
    }
    st_Branch so_Branch;
    co_Branches.v_GetAt(&so_Branch, static_cast<int>(n_Last));
    co_Branches.v_RemoveAt(n_Last);
    CT_String* pco_Collected = const_cast<CT_String*>(vpcco_GetCollectedString());
    pco_Collected->vv_SetLength(so_Branch.n_Length);
    n_Position = so_Branch.n_Position + n_MarkSize;
    if (pco_Collected->vn_GetLength() != so_Branch.n_Length)
        v_Stop();
    else
        vv_AppendCharacter(so_Branch.n_Character);
}
