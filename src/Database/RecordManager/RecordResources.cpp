// Database/RecordManager/RecordResources.cpp: resources, blocks found by number through the sorted
// table.
#include <Database/RecordManager/RecordManager.h>

#include <Database/RecordManager/RecordAccess.h>
#include <Ostra/Frame/Codes.h>
#include <Ostra/Frame/Report.h>

#include <cstring>

// ---- Finding ----------------------------------------------------------------------------------

// By number; the items lie at any address.
int CT_RecordManager::si_Compare(const void* pcv_First, const void* pcv_Second)
{
    unsigned n_First;
    unsigned n_Second;
    std::memcpy(&n_First, pcv_First, sizeof n_First);
    std::memcpy(&n_Second, pcv_Second, sizeof n_Second);
    return n_First > n_Second ? 1 : n_First < n_Second ? -1 : 0;
}

// Fills in the entry with that number and returns its slot; 0 on failure.
unsigned CT_RecordManager::n_FindResource(st_Resource* pso_Resource) const
{
    const unsigned n_Slot = co_Resources.n_Find(pso_Resource);
    if (n_Slot)
        co_Resources.v_GetAt(pso_Resource, n_Slot);
    else
        v_SetError(RESOURCE_NOT_FOUND);
    return n_Slot;
}

int CT_RecordManager::b_ResourceExists(unsigned n_ID)
{
    const st_Resource so_Resource = {n_ID, 0};
    return co_Resources.n_Find(&so_Resource) != 0;
}

void CT_RecordManager::v_GetResource(unsigned n_ID, CT_Buffer* pco_Buffer)
{
    st_Resource so_Resource = {n_ID, 0};
    n_FindResource(&so_Resource);
    if (CT_Report::sb_Failed(qccz_Source))
        return;
    // A size that doesn't count its own word wraps here, and fails as a range.
    const unsigned n_Size = n_Read(so_Resource.n_Offset) - SIZE_WORD;
    const unsigned n_From = so_Resource.n_Offset + SIZE_WORD;
    if (n_Size && b_CheckRange(n_From, n_Size) && !b_IsHeld(n_From, n_Size))
        v_SetError(CORRUPT_DATA);
    if (CT_Report::sb_Failed(qccz_Source))
        return;
    pco_Buffer->v_SetUsedSize(0);
    v_ReadAppend(pco_Buffer, n_From, n_Size);
    CT_Report::sb_Failed(qccz_Source);
}

// ---- Changing ---------------------------------------------------------------------------------

void CT_RecordManager::v_AddResource(unsigned n_ID, const CT_Buffer* pcco_Data)
{
    if (st_Header.n_ResourceCount == st_Header.n_ResourceMaxCount) {
        v_SetError(TOO_MANY_RESOURCES);
        return;
    }
    if (b_ResourceExists(n_ID)) {
        v_SetError(RESOURCE_EXISTS);
        return;
    }
    const unsigned n_OldEnd = st_Header.n_Size;
    const unsigned n_Size = pcco_Data->n_GetUsedSize() + SIZE_WORD;
    const st_Resource so_Resource = {n_ID, n_MoveBlock(0, 0, pcco_Data, 0, n_Size)};
    if (!so_Resource.n_Offset)
        return;
    co_Resources.v_Insert(&so_Resource);
    if (CT_Report::sb_Failed(qccz_Source)) {
        if (so_Resource.n_Offset >= n_OldEnd)
            st_Header.n_Size = n_OldEnd;
        return;
    }
    ++st_Header.n_ResourceCount;
    ++st_Header.n_HeaderChange;
    ++st_Header.n_ResourceChange;
}

void CT_RecordManager::v_UpdateResource(unsigned n_ID, const CT_Buffer* pcco_Data)
{
    st_Resource so_Resource = {n_ID, 0};
    const unsigned n_Slot = n_FindResource(&so_Resource);
    if (CT_Report::sb_Failed(qccz_Source))
        return;
    const unsigned n_Size = pcco_Data->n_GetUsedSize() + SIZE_WORD;
    const unsigned n_OldSize = n_Read(so_Resource.n_Offset);
    if (n_OldSize > st_Header.n_Size)
        v_SetError(CORRUPT_DATA);
    if (CT_Report::sb_Failed(qccz_Source))
        return;
    if (n_AlignBlockSize(n_Size) == n_AlignBlockSize(n_OldSize)) {
        v_WriteSized(so_Resource.n_Offset, pcco_Data, 0, n_Size);
    } else {
        so_Resource.n_Offset = n_MoveBlock(so_Resource.n_Offset, n_OldSize, pcco_Data, 0, n_Size);
        if (!so_Resource.n_Offset)
            return;
        co_Resources.v_SetAt(&so_Resource, n_Slot);
        ++st_Header.n_ResourceChange;
    }
    ++st_Header.n_HeaderChange;
    CT_Report::sb_Failed(qccz_Source);
}

void CT_RecordManager::v_DeleteResource(unsigned n_ID)
{
    st_Resource so_Resource = {n_ID, 0};
    const unsigned n_Slot = n_FindResource(&so_Resource);
    if (CT_Report::sb_Failed(qccz_Source))
        return;
    const unsigned n_Size = n_Read(so_Resource.n_Offset);
    if (n_Size > st_Header.n_Size)
        v_SetError(CORRUPT_DATA);
    if (CT_Report::sb_Failed(qccz_Source))
        return;
    v_PutFreeBlock(0, so_Resource.n_Offset, n_Size);
    if (CT_Report::sb_Failed(qccz_Source))
        return;
    co_Resources.v_RemoveAt(n_Slot);
    --st_Header.n_ResourceCount;
    ++st_Header.n_HeaderChange;
    ++st_Header.n_ResourceChange;
}
