// Ostra/CompList/CompListIterator.cpp: the walk over the entries of a list.
#include <Ostra/CompList/CompListIterator.h>

#include <Ostra/CompList/CollectedString.h>
#include <Ostra/CompList/CompListStream.h>
#include <Ostra/CompList/ElementSize.h>

#include <atomic>
#include <cstring>

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

// The tables of virtual operations of the two classes of the library, once one was constructed.
static std::atomic<const void*> spcv_Narrow, spcv_Wide;

// The object's table. In a constructor that of the constructor's class; later that of the class
// that was derived from it, if one was.
static const void* spcv_GetTable(const CT_CompListIterator* pcco_Object)
{
    const void* pcv_Table;
    std::memcpy(&pcv_Table, static_cast<const void*>(pcco_Object), sizeof pcv_Table);
    return pcv_Table;
}

void CT_CompListIterator::v_KnowNarrow()
{
    spcv_Narrow.store(spcv_GetTable(this), std::memory_order_relaxed);
}

void CT_CompListIterator::v_KnowWide()
{
    spcv_Wide.store(spcv_GetTable(this), std::memory_order_relaxed);
}

// The two classes of the library are known to collect in a string of their own, and are spared the
// calls; a class that was derived elsewhere sees each step.
int CT_CompListIterator::b_GetNext(CT_String* pco_Key, unsigned* pn_Handle)
{
    if (n_Position >= pcco_List->n_GetEnd())
        return 0;
    const void* pcv_Table = spcv_GetTable(this);
    const int b_Wide = pcv_Table == spcv_Wide.load(std::memory_order_relaxed);
    CT_Buffer* pco_Text = nullptr;
    if (b_Wide || pcv_Table == spcv_Narrow.load(std::memory_order_relaxed))
        pco_Text = const_cast<CT_Buffer*>(vpcco_GetCollectedString()->pcco_GetBuffer());
    return b_Wide ? b_WalkElements<unsigned short>(pco_Text, pco_Key, pn_Handle)
                  : b_WalkElements<signed char>(pco_Text, pco_Key, pn_Handle);
}

template <class Unit>
int CT_CompListIterator::b_WalkElements(CT_Buffer* pco_Text, CT_String* pco_Key,
                                        unsigned* pn_Handle)
{
    return o_ForElement(pcco_List->n_GetElementSize(), [&](auto o_Type) {
        return b_WalkToEnd<decltype(o_Type), Unit>(pco_Text, pco_Key, pn_Handle);
    });
}

// Follows the stream to the end of a key. Behind its last element the stream reads as the list end.
template <class T, class Unit>
int CT_CompListIterator::b_WalkToEnd(CT_Buffer* pco_Text, CT_String* pco_Key, unsigned* pn_Handle)
{
    const CT_CompList::st_Stream<T> so_Stream(pcco_List);
    for (;;) {
        if (pco_Text)
            v_RunAhead<T, Unit>(so_Stream, pco_Text);
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
            v_Restore<Unit>(pco_Text, so_Stream.n_MarkSize);
            return 1;
        default:
            n_Position += so_Stream.ELEMENT;
            vv_AppendCharacter(n_Element);
        }
    }
}

// Takes the characters and alternatives that lie ahead without a call for each.
template <class T, class Unit>
void CT_CompListIterator::v_RunAhead(const CT_CompList::st_Stream<T>& so_Stream,
                                     CT_Buffer* pco_Text)
{
    CT_CollectedView<Unit> co_View(pco_Text);
    unsigned n_At = n_Position;
    for (;;) {
        const unsigned n_Element = so_Stream.n_GetElement(n_At);
        Unit o_Last;
        if (!CT_CompList::sb_IsReserved(n_Element)) {
            if (!co_View.b_Append(n_Element))
                break;
            n_At += so_Stream.ELEMENT;
        } else if (n_Element == CT_CompList::ec_Alternative && n_At < so_Stream.n_Marks &&
                   co_View.b_Pop(&o_Last)) {
            const st_Branch so_Branch = {n_At, co_View.n_GetLength(),
                                         static_cast<unsigned>(o_Last)};
            n_Position = n_At;
            v_Push(&so_Branch, so_Stream.n_GetTarget(n_At));
            n_At = n_Position;
        } else
            break;
    }
    n_Position = n_At;
}

// Goes on with the alternative of the last character, which waits for v_Restore.
void CT_CompListIterator::v_TakeAlternative(unsigned n_Target)
{
    st_Branch so_Branch = {n_Position, 0, 0};
    // Without the memory for it the walk is stopped: n_Position has changed.
    so_Branch.n_Character = vn_PopCharacter();
    so_Branch.n_Length = vpcco_GetCollectedString()->vn_GetLength();
    v_Push(&so_Branch, n_Target);
}

void CT_CompListIterator::v_Push(const st_Branch* pcso_Branch, unsigned n_Target)
{
    const unsigned n_Used = co_Branches.pcco_GetBuffer()->n_GetUsedSize();
    if (!b_PushInPlace(pcso_Branch))
        co_Branches.v_Insert(pcso_Branch);
    // Every alternative leads forward; one that doesn't would keep the walk in a circle.
    if (n_Position != pcso_Branch->n_Position || n_Target <= n_Position ||
        co_Branches.pcco_GetBuffer()->n_GetUsedSize() == n_Used)
        v_Stop();
    else
        n_Position = n_Target;
}

// 0 when the branch takes a larger block. Nobody else holds that of the branches.
int CT_CompListIterator::b_PushInPlace(const st_Branch* pcso_Branch)
{
    const CT_Buffer* pcco_Block = co_Branches.pcco_GetBuffer();
    const unsigned n_Used = pcco_Block->n_GetUsedSize();
    if (n_Used + sizeof(st_Branch) > pcco_Block->n_GetMaximumSize())
        return 0;
    char* pc_Block = static_cast<char*>(const_cast<void*>(pcco_Block->qcv_Get()));
    std::memcpy(pc_Block + n_Used, pcso_Branch, sizeof(st_Branch));
    const_cast<CT_Buffer*>(pcco_Block)->v_SetUsedSize(n_Used + sizeof(st_Branch));
    return 1;
}

int CT_CompListIterator::b_Pop(st_Branch* pso_Branch)
{
    CT_Buffer* pco_Block = const_cast<CT_Buffer*>(co_Branches.pcco_GetBuffer());
    if (!pco_Block->n_GetUsedSize())
        return 0;
    const unsigned n_Left = pco_Block->n_GetUsedSize() - sizeof(st_Branch);
    std::memcpy(pso_Branch, static_cast<const char*>(pco_Block->qcv_Get()) + n_Left,
                sizeof(st_Branch));
    pco_Block->v_SetUsedSize(n_Left);
    return 1;
}

// What the end mark at the position says.
void CT_CompListIterator::v_HandOut(CT_String* pco_Key, unsigned* pn_Handle)
{
    if (pn_Handle)
        *pn_Handle = pcco_List->n_GetHandle(n_Position + pcco_List->n_GetElementSize());
    pco_Key->v_Set(vpcco_GetCollectedString());
}

// Goes back to the last character that an alternative was taken for, and on behind its mark.
template <class Unit>
void CT_CompListIterator::v_Restore(CT_Buffer* pco_Text, unsigned n_MarkSize)
{
    st_Branch so_Branch;
    if (!b_Pop(&so_Branch)) {
        v_Stop();
        return;
    }
    n_Position = so_Branch.n_Position + n_MarkSize;
    if (pco_Text && so_Branch.n_Length) {
        pco_Text->v_CopyWeWrite();
        CT_CollectedView<Unit> co_View(pco_Text);
        if (co_View.b_Cut(so_Branch.n_Length) && co_View.b_Append(so_Branch.n_Character))
            return;
    }
    CT_String* pco_Collected = const_cast<CT_String*>(vpcco_GetCollectedString());
    pco_Collected->vv_SetLength(so_Branch.n_Length);
    if (pco_Collected->vn_GetLength() != so_Branch.n_Length)
        v_Stop();
    else
        vv_AppendCharacter(so_Branch.n_Character);
}
