// Ostra/CompList/CompListWalk.cpp: following a key through a list, for searching and for adding.
#include <Ostra/CompList/CompList.h>

#include <Ostra/CompList/CompListLanes.h>
#include <Ostra/CompList/CompListStream.h>
#include <Ostra/CompList/CompListText.h>
#include <Ostra/CompList/ElementSize.h>
#include <Ostra/Frame/Counts.h>

#include <cstring>

// ---- Search -------------------------------------------------------------------------------

unsigned CT_CompList::n_Search(const char* qccz_Key, unsigned* pn_Matched) const
{
    return n_SearchKey(pcc_Text(qccz_Key), pn_Matched);
}

unsigned CT_CompList::n_Search(const unsigned short* qcuz_Key, unsigned* pn_Matched) const
{
    return n_SearchKey(pcc_Text(qcuz_Key), pn_Matched);
}

unsigned CT_CompList::n_Search(const CT_CString* pcco_Key, unsigned* pn_Matched) const
{
    return n_SearchKey(pcc_Text(pcco_Key), pn_Matched);
}

unsigned CT_CompList::n_Search(const CT_UString* pcco_Key, unsigned* pn_Matched) const
{
    return n_SearchKey(pcc_Text(pcco_Key), pn_Matched);
}

int CT_CompList::b_Search(const char* qccz_Key, unsigned* pn_Matched) const
{
    return n_Search(qccz_Key, pn_Matched) != NO_HANDLE;
}

int CT_CompList::b_Search(const unsigned short* qcuz_Key, unsigned* pn_Matched) const
{
    return n_Search(qcuz_Key, pn_Matched) != NO_HANDLE;
}

int CT_CompList::b_Search(const CT_CString* pcco_Key, unsigned* pn_Matched) const
{
    return n_Search(pcco_Key, pn_Matched) != NO_HANDLE;
}

int CT_CompList::b_Search(const CT_UString* pcco_Key, unsigned* pn_Matched) const
{
    return n_Search(pcco_Key, pn_Matched) != NO_HANDLE;
}

unsigned CT_CompList::n_SearchKey(const char* pcc_Key, unsigned* pn_Matched) const
{
    // A walk changes the list in the adding mode only.
    return const_cast<CT_CompList*>(this)->n_Walk(pcc_Key, wm_Search, 0, pn_Matched);
}

void CT_CompList::v_SearchAll(const char* const* pqccz_Keys, unsigned n_Count, unsigned* pn_Handles,
                              unsigned* pn_Matched) const
{
    const st_Keys so_Keys(pqccz_Keys, n_Count, pn_Handles, pn_Matched);
    v_SearchKeys(&so_Keys);
}

void CT_CompList::v_SearchAll(const unsigned short* const* pqcuz_Keys, unsigned n_Count,
                              unsigned* pn_Handles, unsigned* pn_Matched) const
{
    const st_Keys so_Keys(pqcuz_Keys, n_Count, pn_Handles, pn_Matched);
    v_SearchKeys(&so_Keys);
}

void CT_CompList::v_SearchAll(const CT_CString* const* ppcco_Keys, unsigned n_Count,
                              unsigned* pn_Handles, unsigned* pn_Matched) const
{
    const st_Keys so_Keys(ppcco_Keys, n_Count, pn_Handles, pn_Matched);
    v_SearchKeys(&so_Keys);
}

void CT_CompList::v_SearchAll(const CT_UString* const* ppcco_Keys, unsigned n_Count,
                              unsigned* pn_Handles, unsigned* pn_Matched) const
{
    const st_Keys so_Keys(ppcco_Keys, n_Count, pn_Handles, pn_Matched);
    v_SearchKeys(&so_Keys);
}

void CT_CompList::v_SearchKeys(const st_Keys* pcso_Keys) const
{
    o_ForElement(
        n_GetElementSize(),
        [&](auto o_Type) {
            if (n_OffsetSize == 4)
                st_Lanes<decltype(o_Type), unsigned>(this, pcso_Keys).v_Run();
            else
                st_Lanes<decltype(o_Type), unsigned short>(this, pcso_Keys).v_Run();
        },
        [&] {
            for (unsigned n_Key = 0; n_Key < pcso_Keys->n_Count; ++n_Key)
                pcso_Keys->v_Search(this, n_Key);
        });
}

// ---- Change -------------------------------------------------------------------------------

int CT_CompList::b_Add(const char* qccz_Key, unsigned n_Handle)
{
    return b_AddKey(pcc_Text(qccz_Key), n_Handle);
}

int CT_CompList::b_Add(const unsigned short* qcuz_Key, unsigned n_Handle)
{
    return b_AddKey(pcc_Text(qcuz_Key), n_Handle);
}

int CT_CompList::b_Add(const CT_CString* pcco_Key, unsigned n_Handle)
{
    return b_AddKey(pcc_Text(pcco_Key), n_Handle);
}

int CT_CompList::b_Add(const CT_UString* pcco_Key, unsigned n_Handle)
{
    return b_AddKey(pcc_Text(pcco_Key), n_Handle);
}

int CT_CompList::b_AddKey(const char* pcc_Key, unsigned n_Handle)
{
    if (!n_Walk(pcc_Key, wm_Add, n_Handle, nullptr))
        return 0;
    ++pso_Header->n_NrOfEntries;
    return 1;
}

// ---- Walk ---------------------------------------------------------------------------------

// Follows a key through the stream. In the modes of searching the result is the handle, in the
// adding mode whether the key was added.
unsigned CT_CompList::n_Walk(const char* pcc_Key, et_WalkMode ec_Mode, unsigned n_Handle,
                             unsigned* pn_Matched)
{
    return o_ForElement(
        n_GetElementSize(),
        [&](auto o_Type) {
            return n_WalkElements<decltype(o_Type)>(pcc_Key, ec_Mode, n_Handle, pn_Matched);
        },
        // Elements of an unknown size read as 0.
        [&] { return n_WalkEmptyKey(ec_Mode, n_Handle, pn_Matched); });
}

template <class T>
unsigned CT_CompList::n_WalkElements(const char* pcc_Key, et_WalkMode ec_Mode, unsigned n_Handle,
                                     unsigned* pn_Matched)
{
    const unsigned n_First = n_Load<T>(pcc_Key);
    if (!n_First)
        return n_WalkEmptyKey(ec_Mode, n_Handle, pn_Matched);

    const unsigned n_Jump = n_GetJumpOffset(n_First);
    st_Walk so_Walk = {pcc_Key, n_First, n_Jump ? n_Jump : n_FirstPosition, 0, 0};
    const et_Stop ec_Stop = st_Stream<T>(this).ec_Follow(pcc_Key, &so_Walk);
    if (ec_Mode == wm_Add)
        return n_Extend(&so_Walk, ec_Stop, n_Handle);
    return n_Answer<T>(&so_Walk, ec_Stop, ec_Mode, pn_Matched);
}

unsigned CT_CompList::n_WalkEmptyKey(et_WalkMode ec_Mode, unsigned n_Handle, unsigned* pn_Matched)
{
    if (pn_Matched)
        *pn_Matched = 0;
    // Kept: a list without a place for the empty string finds it, with handle 0.
    if (!b_HasEmptyStringSupport())
        return 0;
    if (ec_Mode != wm_Add)
        return n_GetEmptyStringHandle();
    // Kept: the handle is replaced without regard to an earlier one or to who shares the block, no
    // bytes are inserted and so the list doesn't count as changed; yet the caller counts one more
    // entry.
    v_SetEmptyStringHandle(n_Handle);
    return 1;
}

// The result of a search that came to its stop.
template <class T>
unsigned CT_CompList::n_Answer(const st_Walk* pcso_Walk, et_Stop ec_Stop, et_WalkMode ec_Mode,
                               unsigned* pn_Matched) const
{
    unsigned n_Matched = pcso_Walk->n_Offset / unsigned{sizeof(T)};
    // Kept: where elements differ, and in the searching mode at the list end, nothing counts as
    // matched, however far the key was followed.
    if (ec_Stop == ws_Differs)
        n_Matched = 0;
    if (ec_Stop == ws_BranchEnds && pcso_Walk->n_Stored == ec_ListEnd && ec_Mode == wm_Search)
        n_Matched = 0;
    if (pn_Matched)
        *pn_Matched = n_Matched;
    const int b_End = pcso_Walk->n_Stored == ec_InnerEnd || pcso_Walk->n_Stored == ec_LeafEnd;
    return ec_Stop == ws_KeyEnds && b_End ? n_GetHandle(pcso_Walk->n_Position + sizeof(T))
                                          : NO_HANDLE;
}

// ---- Adding -------------------------------------------------------------------------------

// Adds what the list lacks of the key: 1 when it was added.
unsigned CT_CompList::n_Extend(const st_Walk* pcso_Walk, et_Stop ec_Stop, unsigned n_Handle)
{
    v_PrepareIndex(pcso_Walk->pcc_Key);
    switch (ec_Stop) {
    case ws_KeyEnds:
        return n_AddInnerEnd(pcso_Walk, n_Handle);
    case ws_BranchEnds:
        return n_AddBehindEnd(pcso_Walk, n_Handle);
    default:
        return n_AddAlternative(pcso_Walk, n_Handle);
    }
}

// The key ends within a stored branch: its end is marked there, unless it is marked already.
unsigned CT_CompList::n_AddInnerEnd(const st_Walk* pcso_Walk, unsigned n_Handle)
{
    if (pcso_Walk->n_Stored == ec_InnerEnd || pcso_Walk->n_Stored == ec_LeafEnd)
        return 0;
    char* pc_End = pc_InsertBytes(pcso_Walk->n_Position, n_GetElementSize() + n_GetHandleSize());
    if (!pc_End)
        return 0;
    v_SetCharacter(pc_End, ec_InnerEnd);
    v_SetHandle(pc_End + n_GetElementSize(), n_Handle);
    return 1;
}

// The stored branch ends before the key: the branch goes on with the rest of it.
unsigned CT_CompList::n_AddBehindEnd(const st_Walk* pcso_Walk, unsigned n_Handle)
{
    const int b_LeafEnd = pcso_Walk->n_Stored == ec_LeafEnd;
    unsigned n_Position = pcso_Walk->n_Position;
    if (b_LeafEnd) {
        // Kept: the mark changes in the block as it is, before a shared one is copied for the
        // insertion, so that every holder sees it.
        v_SetCharacter(pc_GetAt(n_Position), ec_InnerEnd);
        n_Position += n_GetElementSize() + n_GetHandleSize();
    }
    if (!b_AddTail(pcso_Walk, n_Position, n_Handle)) {
        if (b_LeafEnd)
            v_SetCharacter(pc_GetAt(pcso_Walk->n_Position), ec_LeafEnd);
        return 0;
    }
    if (!b_LeafEnd && !pcso_Walk->n_Offset)
        v_SetJumpOffset(pcso_Walk->n_First, n_Position);
    return 1;
}

// The key differs from every stored character at its place: a mark behind the last of them leads to
// a new branch at the list's end.
unsigned CT_CompList::n_AddAlternative(const st_Walk* pcso_Walk, unsigned n_Handle)
{
    const unsigned n_Mark = pcso_Walk->n_Position + n_GetElementSize();
    // One that leads back is damage; another in front of it would hide an end.
    if (n_Mark + n_GetElementSize() <= n_GetLimit() &&
        n_GetCharacter(pc_GetAt(n_Mark)) == ec_Alternative)
        return 0;
    const unsigned n_MarkSize = n_GetElementSize() + n_OffsetSize;
    char* pc_Mark = pc_InsertBytes(n_Mark, n_MarkSize);
    if (!pc_Mark)
        return 0;
    v_SetCharacter(pc_Mark, ec_Alternative);
    v_SetOffset(pc_Mark + n_GetElementSize(), 0);

    const unsigned n_Target = n_GetEnd() - n_GetElementSize();
    if (!b_AddTail(pcso_Walk, n_Target, n_Handle)) {
        v_RemoveBytes(n_Mark, n_MarkSize);
        return 0;
    }
    v_SetOffset(pc_GetAt(n_Mark + n_GetElementSize()), n_Target - n_Mark);
    v_NoteAlternative(n_Mark, n_Target);
    if (!pcso_Walk->n_Offset)
        v_SetJumpOffset(pcso_Walk->n_First, n_Target);
    return 1;
}

// Inserts the rest of the key, a leaf end and the handle.
int CT_CompList::b_AddTail(const st_Walk* pcso_Walk, unsigned n_Position, unsigned n_Handle)
{
    const unsigned n_Size = n_GetKeySize(pcso_Walk->pcc_Key);
    if (n_Size < pcso_Walk->n_Offset)
        return 0;
    const unsigned n_Rest = n_Size - pcso_Walk->n_Offset;
    char* pc_Tail = pc_InsertBytes(n_Position, n_Rest + n_GetElementSize() + n_GetHandleSize());
    if (!pc_Tail)
        return 0;
    std::memcpy(pc_Tail, pcso_Walk->pcc_Key + pcso_Walk->n_Offset, n_Rest);
    v_SetCharacter(pc_Tail + n_Rest, ec_LeafEnd);
    v_SetHandle(pc_Tail + n_Rest + n_GetElementSize(), n_Handle);
    return 1;
}

// The key's size in bytes.
unsigned CT_CompList::n_GetKeySize(const char* pcc_Key) const
{
    if (n_GetElementSize() == 1)
        return static_cast<unsigned>(std::strlen(pcc_Key));
    // Kept: wider elements are all measured in units of two bytes, so that a key of four-byte
    // elements ends at its first unit of 0.
    unsigned n_Size = 0;
    while (n_Load<unsigned short>(pcc_Key + n_Size))
        n_Size += 2;
    return n_Size;
}
