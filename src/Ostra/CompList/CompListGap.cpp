// Ostra/CompList/CompListGap.cpp: inserting bytes, and repairing what points across.
#include <Ostra/CompList/CompList.h>

#include <Ostra/CompList/AlternativeIndex.h>
#include <Ostra/CompList/CompListStream.h>
#include <Ostra/CompList/ElementSize.h>

// A list of that many bytes has an index while keys are added; a smaller one is scanned as fast.
static constexpr unsigned INDEXED_SIZE = 1024;

// ---- Gaps ---------------------------------------------------------------------------------

// Opens a gap whose content is undefined, and repairs what points across it. Null when the heap is
// exhausted or the position lies outside the block; the list then is as it was.
char* CT_CompList::pc_InsertBytes(unsigned n_Position, unsigned n_Count)
{
    const unsigned n_Used = co_Buffer.n_GetUsedSize();
    if (n_Position > n_Used)
        return nullptr;
    v_OpenGap(n_Position, n_Count);
    v_TakeHeader();
    if (co_Buffer.n_GetUsedSize() != n_Used + n_Count)
        return nullptr;
    pso_Header->n_End += n_Count;
    v_RecalcAltPos(n_Position, n_Count);
    b_Changed = 1;
    return pc_GetAt(n_Position);
}

// What lands in the gap is a copy of the block's beginning. A block without room for it grows by
// what is missing, and its growth becomes that of the copy.
void CT_CompList::v_OpenGap(unsigned n_Position, unsigned n_Count)
{
    const unsigned n_Size = co_Buffer.n_GetUsedSize() + n_Count;
    if (n_Size > co_Buffer.n_GetMaximumSize()) {
        const unsigned n_Growth = co_Buffer.n_GetGrowth();
        co_Buffer.v_CopyWeWrite();
        co_Buffer.v_SetGrowth(COPY_GROWTH);
        co_Buffer.v_SetSize(n_Size, 1);
        if (n_Size > co_Buffer.n_GetMaximumSize()) {
            co_Buffer.v_SetGrowth(n_Growth);
            return;
        }
    }
    co_Buffer.v_AtInsertCopy(0, n_Count, n_Position);
}

// Takes a gap back.
void CT_CompList::v_RemoveBytes(unsigned n_Position, unsigned n_Count)
{
    v_DropIndex();
    v_RecalcAltPos(n_Position, 0 - n_Count);
    co_Buffer.v_Remove(n_Count, n_Position);
    pso_Header->n_End -= n_Count;
}

// Lets every offset and jump offset that leads to n_Position or behind it follow a gap of n_Count
// bytes there.
void CT_CompList::v_RecalcAltPos(unsigned n_Position, unsigned n_Count)
{
    if (pco_Index)
        v_FollowGap(n_Position, n_Count);
    else
        o_ForElement(n_GetElementSize(),
                     [&](auto o_Type) { v_RecalcOffsets<decltype(o_Type)>(n_Position, n_Count); });
    for (unsigned& n_Jump : pso_Header->an4_JumpOffset) {
        if (n_Jump >= n_Position)
            n_Jump += n_Count;
    }
}

// The literal way: every alternative in front of the gap is looked at.
template <class T>
void CT_CompList::v_RecalcOffsets(unsigned n_Position, unsigned n_Count)
{
    const st_Stream<T> so_Stream(this);
    for (unsigned n_At = n_FirstPosition; n_At < n_Position;) {
        const unsigned n_Stored = so_Stream.n_GetElement(n_At);
        if (n_Stored == ec_Alternative && n_At < so_Stream.n_Marks) {
            // Kept: an offset that outgrows its field is cut, and leads astray; long offsets are
            // there for large lists.
            const unsigned n_Target = so_Stream.n_GetTarget(n_At);
            if (n_Target >= n_Position)
                v_SetOffset(pc_GetAt(n_At + so_Stream.ELEMENT), n_Target - n_At + n_Count);
        }
        n_At += so_Stream.n_GetItemSize(n_Stored);
    }
}

// ---- Index --------------------------------------------------------------------------------
// The index is true only while every key is followed from item to item, so it is kept for lists
// whose items are whole, whose offsets and jump offsets lead to characters, and whose keys hold no
// reserved element. All other lists, and those that the heap has no index for, are scanned.

// Makes ready for the insertions that the key may need.
void CT_CompList::v_PrepareIndex(const char* pcc_Key)
{
    if (pco_Index && pco_Index->n_End != n_GetEnd())
        v_DropIndex();
    if (!b_Scan && !b_IsPlainKey(pcc_Key))
        v_ScanFromNow();
    if (!b_Scan && !pco_Index && n_GetEnd() > INDEXED_SIZE && !b_BuildIndex())
        v_ScanFromNow();
}

int CT_CompList::b_IsPlainKey(const char* pcc_Key) const
{
    unsigned n_Size = 0;
    while (const unsigned n_Element = n_GetCharacter(pcc_Key + n_Size)) {
        if (sb_IsReserved(n_Element))
            return 0;
        n_Size += n_GetElementSize();
    }
    return n_Size == n_GetKeySize(pcc_Key);
}

int CT_CompList::b_BuildIndex()
{
    pco_Index = CT_AlternativeIndex::spco_New();
    if (!pco_Index || n_GetEnd() != co_Buffer.n_GetUsedSize())
        return 0;
    pco_Index->n_End = n_GetEnd();
    return o_ForElement(n_GetElementSize(), [&](auto o_Type) {
        return b_CollectAlternatives<decltype(o_Type)>() && b_VerifyTargets<decltype(o_Type)>();
    });
}

// Takes all alternatives of the stream; 0 when it doesn't fall into whole items, an offset doesn't
// lead forward, or the heap is exhausted.
template <class T>
int CT_CompList::b_CollectAlternatives()
{
    const st_Stream<T> so_Stream(this);
    unsigned n_At = n_FirstPosition;
    while (n_At < so_Stream.n_Elements) {
        const unsigned n_Stored = so_Stream.n_GetElement(n_At);
        if (n_Stored == ec_Alternative) {
            if (n_At >= so_Stream.n_Marks || so_Stream.n_GetTarget(n_At) <= n_At ||
                !pco_Index->b_Add(n_At, so_Stream.n_GetTarget(n_At)))
                return 0;
        }
        n_At += so_Stream.n_GetItemSize(n_Stored);
    }
    pco_Index->v_Sort();
    return n_At == so_Stream.n_Limit;
}

// Whether all offsets and jump offsets lead to characters of the stream, and its last item is the
// list end.
template <class T>
int CT_CompList::b_VerifyTargets() const
{
    const st_Stream<T> so_Stream(this);
    unsigned n_Reached = 0, n_Jumps = 0, n_Stored = 0;
    for (unsigned n_At = n_FirstPosition; n_At < so_Stream.n_Elements;) {
        n_Stored = so_Stream.n_GetElement(n_At);
        const int b_Character = n_Stored != ec_ListEnd && n_Stored != ec_InnerEnd &&
                                n_Stored != ec_LeafEnd && n_Stored != ec_Alternative;
        while (b_Character && n_Reached < pco_Index->n_GetCount() &&
               pco_Index->n_GetTarget(n_Reached) == n_At)
            ++n_Reached;
        n_Jumps += n_GetJumpOffset(n_Stored) == n_At;
        n_At += so_Stream.n_GetItemSize(n_Stored);
    }
    for (const unsigned n_Jump : pso_Header->an4_JumpOffset)
        n_Jumps -= n_Jump != 0;
    return n_Stored == ec_ListEnd && n_Reached == pco_Index->n_GetCount() && !n_Jumps;
}

// Enters an alternative that leads to the newest branch.
void CT_CompList::v_NoteAlternative(unsigned n_Position, unsigned n_Target)
{
    if (pco_Index &&
        (n_Target - n_Position > n_MaximumOffset || !pco_Index->b_Add(n_Position, n_Target)))
        v_ScanFromNow();
}

void CT_CompList::v_FollowGap(unsigned n_Position, unsigned n_Count)
{
    char* pc_Block = pc_GetAt(0);
    const unsigned n_Element = n_GetElementSize();
    const int b_Fit =
        n_OffsetSize == 4
            ? pco_Index->b_Follow<unsigned>(pc_Block, n_Element, n_Position, n_Count)
            : pco_Index->b_Follow<unsigned short>(pc_Block, n_Element, n_Position, n_Count);
    pco_Index->n_End = n_GetEnd();
    if (!b_Fit)
        v_ScanFromNow();
}

void CT_CompList::v_ScanFromNow()
{
    v_DropIndex();
    b_Scan = 1;
}

void CT_CompList::v_DropIndex()
{
    CT_AlternativeIndex::sv_Delete(pco_Index);
    pco_Index = nullptr;
}
