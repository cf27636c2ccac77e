// Ostra/CompList/CompListIterator.cpp: the walk over the entries of a list.
#include <Ostra/CompList/CompListIterator.h>

#include <Ostra/CompList/CCompListIterator.h>
#include <Ostra/CompList/CollectedString.h>
#include <Ostra/CompList/CompListStream.h>
#include <Ostra/CompList/UCompListIterator.h>

#include <cstring>
#include <type_traits>
#include <typeinfo>

static constexpr unsigned BRANCH_GROWTH = 8;

// The characters of a string of known type.
static const char* p_Collected(const CT_CString* pcco_Collected)
{
    return pcco_Collected->qccz_Get();
}

static const unsigned short* p_Collected(const CT_UString* pcco_Collected)
{
    return pcco_Collected->qcuz_Get();
}

static const char* p_Collected(const CT_String*)
{
    return "";
}

// Appends to a text of that length, which isn't empty, if it takes no call.
template <class Text>
static int b_PutBack(const CT_String* pcco_Collected, unsigned n_Length, unsigned n_Character)
{
    const auto* p_Text = p_Collected(static_cast<const Text*>(pcco_Collected));
    if (!*p_Text)
        return 0;
    CT_CollectedView co_View(p_Text);
    return co_View.n_GetLength() == n_Length && co_View.b_Append(n_Character);
}

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

// What collects the key, or CT_String for a class that was derived elsewhere, which sees each step.
int CT_CompListIterator::b_GetNext(CT_String* pco_Key, unsigned* pn_Handle)
{
    if (n_Position >= pcco_List->n_GetEnd())
        return 0;
    const std::type_info& co_Type = typeid(*this);
    if (co_Type == typeid(CT_CCompListIterator))
        return b_WalkElements<CT_CString>(pco_Key, pn_Handle);
    if (co_Type == typeid(CT_UCompListIterator))
        return b_WalkElements<CT_UString>(pco_Key, pn_Handle);
    return b_WalkElements<CT_String>(pco_Key, pn_Handle);
}

template <class Text>
int CT_CompListIterator::b_WalkElements(CT_String* pco_Key, unsigned* pn_Handle)
{
    switch (pcco_List->n_GetElementSize()) {
    case 1:
        return b_WalkToEnd<unsigned char, Text>(pco_Key, pn_Handle);
    case 2:
        return b_WalkToEnd<unsigned short, Text>(pco_Key, pn_Handle);
    default:
        return b_WalkToEnd<unsigned, Text>(pco_Key, pn_Handle);
    }
}

// Follows the stream to the end of a key. Behind its last element the stream reads as the list end.
template <class T, class Text>
int CT_CompListIterator::b_WalkToEnd(CT_String* pco_Key, unsigned* pn_Handle)
{
    const CT_CompList::st_Stream<T> so_Stream(pcco_List);
    for (;;) {
        if constexpr (!std::is_same_v<Text, CT_String>)
            v_RunAhead(so_Stream,
                       p_Collected(static_cast<const Text*>(vpcco_GetCollectedString())));
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
            v_Restore<Text>(so_Stream.n_MarkSize);
            return 1;
        default:
            n_Position += so_Stream.ELEMENT;
            vv_AppendCharacter(n_Element);
        }
    }
}

// Takes the characters and alternatives that lie ahead without a call for each.
template <class Unit, class Stream>
void CT_CompListIterator::v_RunAhead(const Stream& so_Stream, const Unit* p_Collected)
{
    // An empty string may have no block.
    if (!*p_Collected)
        return;
    CT_CollectedView<Unit> co_View(p_Collected);
    unsigned n_At = n_Position;
    for (;;) {
        const unsigned n_Element = so_Stream.n_GetElement(n_At);
        if (!CT_CompList::sb_IsReserved(n_Element)) {
            if (!co_View.b_Append(n_Element))
                break;
            n_At += so_Stream.ELEMENT;
        } else if (n_Element == CT_CompList::ec_Alternative && n_At < so_Stream.n_Marks &&
                   co_View.b_CanPop()) {
            const unsigned n_Character = static_cast<unsigned>(co_View.c_Pop());
            const st_Branch so_Branch = {n_At, co_View.n_GetLength(), n_Character};
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
template <class Text>
void CT_CompListIterator::v_Restore(unsigned n_MarkSize)
{
    st_Branch so_Branch;
    if (!b_Pop(&so_Branch)) {
        v_Stop();
        return;
    }
    CT_String* pco_Collected = const_cast<CT_String*>(vpcco_GetCollectedString());
    pco_Collected->vv_SetLength(so_Branch.n_Length);
    n_Position = so_Branch.n_Position + n_MarkSize;
    if (b_PutBack<Text>(pco_Collected, so_Branch.n_Length, so_Branch.n_Character))
        return;
    if (pco_Collected->vn_GetLength() != so_Branch.n_Length)
        v_Stop();
    else
        vv_AppendCharacter(so_Branch.n_Character);
}
