// Database/RecordManager/RecordData.cpp: records, a head with the first bytes and a body with the
// rest.
#include <Database/RecordManager/RecordManager.h>

#include <Database/RecordManager/RecordAccess.h>
#include <Ostra/Frame/Codes.h>
#include <Ostra/Frame/Report.h>

#include <algorithm>

namespace
{
constexpr unsigned RECORD_MARK = 0xFFFFFFFF;
// In a head: the offset of the body, and the record's first bytes.
constexpr unsigned HEAD_BODY = 4;
constexpr unsigned HEAD_DATA = 8;
} // namespace

// ---- Finding ----------------------------------------------------------------------------------

void CT_RecordManager::v_CheckReference(unsigned n_Offset) const
{
    if (n_Offset > st_Header.n_Size || n_Read(n_Offset) != RECORD_MARK)
        v_SetError(INVALID_REFERENCE);
}

// Offset and size of the body of the record at n_Offset, 0 for one without.
void CT_RecordManager::v_GetBody(unsigned n_Offset, unsigned* pn_Body, unsigned* pn_Size) const
{
    *pn_Body = n_Read(n_Offset + HEAD_BODY);
    *pn_Size = *pn_Body ? n_Read(*pn_Body) : 0;
    if (*pn_Size <= st_Header.n_Size)
        return;
    *pn_Size = 0;
    v_SetError(CORRUPT_DATA);
}

int CT_RecordManager::b_FindRecord(unsigned n_Offset, unsigned* pn_Body, unsigned* pn_Size) const
{
    v_CheckReference(n_Offset);
    if (CT_Report::sb_Failed(qccz_Source))
        return 0;
    v_GetBody(n_Offset, pn_Body, pn_Size);
    return !CT_Report::sb_Failed(qccz_Source);
}

// The size word of the body that the data needs; 0 when the head takes all of it.
unsigned CT_RecordManager::n_GetBodySize(const CT_Buffer* pcco_Data) const
{
    const unsigned n_Used = pcco_Data->n_GetUsedSize();
    const unsigned n_Head = st_Header.n_RecordHeaderSize;
    return n_Used > n_Head ? n_Used - n_Head + SIZE_WORD : 0;
}

// ---- Reading ----------------------------------------------------------------------------------

void CT_RecordManager::v_GetRecord(unsigned n_Reference, CT_Buffer* pco_Buffer) const
{
    pco_Buffer->v_SetUsedSize(0);
    const unsigned n_Offset = st_Header.n_BlockSize * n_Reference;
    if (b_GetMapped(n_Offset, pco_Buffer))
        return;
    unsigned n_Body;
    unsigned n_Size;
    if (!b_FindRecord(n_Offset, &n_Body, &n_Size))
        return;
    v_Read(pco_Buffer, n_Offset + HEAD_DATA, st_Header.n_RecordHeaderSize);
    if (CT_Report::sb_Failed(qccz_Source)) {
        pco_Buffer->v_SetUsedSize(0);
        return;
    }
    if (!n_Body)
        return;
    // A size that doesn't count its own word wraps here, and fails as a range.
    v_ReadAppend(pco_Buffer, n_Body + SIZE_WORD, n_Size - SIZE_WORD);
    if (CT_Report::sb_Failed(qccz_Source))
        pco_Buffer->v_SetUsedSize(0);
}

// A sound record, all of it in the view, into a buffer with the room for it. False, with the buffer
// untouched, for anything else.
int CT_RecordManager::b_GetMapped(unsigned n_Offset, CT_Buffer* pco_Buffer) const
{
    const unsigned n_HeadSize = st_Header.n_RecordHeaderSize;
    if (CT_Report::sb_IsSet())
        return 0;
    // Reading moves the file's offset: what is refused unread isn't to be looked at.
    const char* pcc_Words = n_Offset > st_Header.n_Size ? nullptr : pcc_ReadAt(n_Offset, HEAD_DATA);
    if (!pcc_Words || n_WordAt(pcc_Words) != RECORD_MARK || !n_HeadSize ||
        !b_IsInside(n_Offset + HEAD_DATA, n_HeadSize))
        return 0;
    const unsigned n_Body = n_WordAt(pcc_Words + HEAD_BODY);
    const unsigned n_Size = n_Body ? n_Read(n_Body) : SIZE_WORD;
    if (n_Body && (n_Size <= SIZE_WORD || !b_IsInside(n_Body + SIZE_WORD, n_Size - SIZE_WORD)))
        return 0;
    const char* pcc_Head = pcc_ReadAt(n_Offset + HEAD_DATA, n_HeadSize);
    const char* pcc_Body = n_Body ? pcc_ReadAt(n_Body + SIZE_WORD, n_Size - SIZE_WORD) : pcc_Head;
    const unsigned n_Used = n_HeadSize + (n_Size - SIZE_WORD);
    if (!pcc_Head || !pcc_Body || pco_Buffer->n_GetMaximumSize() < n_Used ||
        pco_Buffer->n_GetUseCount() != 1)
        return 0;
    char* pc_Target = static_cast<char*>(const_cast<void*>(pco_Buffer->qcv_Get()));
    std::memcpy(pc_Target, pcc_Head, n_HeadSize);
    std::memcpy(pc_Target + n_HeadSize, pcc_Body, n_Size - SIZE_WORD);
    pco_Buffer->v_SetUsedSize(n_Used);
    return 1;
}

unsigned CT_RecordManager::n_GetNextRecord(unsigned n_Cursor, CT_Buffer* pco_Buffer) const
{
    unsigned n_Offset = n_Cursor ? st_Header.n_BlockSize * n_Cursor : n_GetFirstBlock();
    if (!st_Header.n_BlockSize) {
        v_SetError(CORRUPT_DATA);
        return 0;
    }
    for (;;) {
        if (n_Offset >= st_Header.n_Size)
            return 0;
        const unsigned n_Word = n_Read(n_Offset);
        if (n_Word == RECORD_MARK)
            break;
        // Kept: nothing guards the walk against a size word of 0, which makes it stand still for
        // ever when the block size is a power of two. A word that couldn't be read ends it, and a
        // size that passes 32 bits, aligned or from here on, passes the end.
        const unsigned n_Step = n_AlignBlockSize(n_Word);
        if (!n_Step && CT_Report::sb_Failed(qccz_Source))
            return 0;
        if (n_Word && (n_Step < n_Word || n_Step > 0xFFFFFFFF - n_Offset))
            return 0;
        n_Offset += n_Step;
    }
    if (pco_Buffer)
        v_GetRecord(n_GetReference(n_Offset), pco_Buffer);
    if (CT_Report::sb_Failed(qccz_Source))
        return 0;
    return n_GetReference(n_Offset) + 1;
}

// ---- Adding and deleting ----------------------------------------------------------------------

unsigned CT_RecordManager::n_AddRecord(const CT_Buffer* pcco_Data)
{
    const unsigned n_BodySize = n_GetBodySize(pcco_Data);
    // With an error set it would fail behind the first write: nothing is taken for it.
    if (CT_Report::sb_Failed(qccz_Source) || !b_IsBlockSize(n_BodySize))
        return 0;
    const unsigned n_OldEnd = st_Header.n_Size;
    const unsigned n_HeadSize = st_Header.n_RecordHeaderSize + HEAD_DATA;
    if (!b_ReserveBody(n_HeadSize, n_BodySize))
        return 0;
    const unsigned n_InHead =
        HEAD_DATA + std::min(pcco_Data->n_GetUsedSize(), st_Header.n_RecordHeaderSize);
    const unsigned n_Head = n_GetFreeBlock(n_HeadSize);
    const unsigned n_Body = n_BodySize ? n_GetFreeBlock(n_BodySize) : 0;
    if (!b_Extend(n_OldEnd, n_Head, n_InHead) || !b_Extend(n_OldEnd, n_Body, n_BodySize)) {
        v_GiveBack(n_OldEnd, n_Head, n_HeadSize);
        v_GiveBack(n_OldEnd, n_Body, n_BodySize);
        return 0;
    }
    if (!b_WriteHead(n_Head, n_Body, pcco_Data) ||
        (n_Body && !b_WriteSized(n_Body, pcco_Data, st_Header.n_RecordHeaderSize, n_BodySize))) {
        // Kept: blocks of the free space stay taken.
        if (n_Head >= n_OldEnd)
            st_Header.n_Size = n_OldEnd;
        return 0;
    }
    ++st_Header.n_RecordCount;
    ++st_Header.n_HeaderChange;
    return n_GetReference(n_Head);
}

int CT_RecordManager::b_WriteHead(unsigned n_Head, unsigned n_Body, const CT_Buffer* pcco_Data)
{
    const unsigned n_Size = std::min(pcco_Data->n_GetUsedSize(), st_Header.n_RecordHeaderSize);
    const unsigned an_Words[] = {RECORD_MARK, n_Body};
    if (b_WriteWords(n_Head, an_Words, sizeof an_Words, pcco_Data->qcv_Get(), n_Size)) {
        v_Written(n_Head, sizeof an_Words + n_Size);
        return 1;
    }
    return b_Write(n_Head, &RECORD_MARK, sizeof RECORD_MARK) &&
           b_Write(n_Head + HEAD_BODY, &n_Body, sizeof n_Body) &&
           b_Write(n_Head + HEAD_DATA, pcco_Data->qcv_Get(), n_Size);
}

void CT_RecordManager::v_DeleteRecord(unsigned n_Reference)
{
    const unsigned n_Offset = st_Header.n_BlockSize * n_Reference;
    unsigned n_Body;
    unsigned n_Size;
    if (!b_FindRecord(n_Offset, &n_Body, &n_Size))
        return;
    // The size overwrites the mark, so that the reference is good no more.
    v_PutFreeBlock(1, n_Offset, st_Header.n_RecordHeaderSize + HEAD_DATA);
    if (CT_Report::sb_Failed(qccz_Source))
        return;
    if (n_Body)
        v_PutFreeBlock(0, n_Body, n_Size);
    if (CT_Report::sb_Failed(qccz_Source))
        return;
    --st_Header.n_RecordCount;
    ++st_Header.n_HeaderChange;
}

// ---- Updating ---------------------------------------------------------------------------------

void CT_RecordManager::v_UpdateRecord(unsigned n_Reference, const CT_Buffer* pcco_Data)
{
    const unsigned n_Offset = st_Header.n_BlockSize * n_Reference;
    unsigned n_Body;
    unsigned n_Size;
    if (!b_FindRecord(n_Offset, &n_Body, &n_Size))
        return;
    unsigned n_NewSize = n_GetBodySize(pcco_Data);
    if (n_NewSize && n_Body && n_AlignBlockSize(n_NewSize) == n_AlignBlockSize(n_Size)) {
        // Kept: the size goes on counting its own word, so that the last four bytes of the head
        // keep their old content below.
        v_WriteSized(n_Body, pcco_Data, st_Header.n_RecordHeaderSize, n_NewSize);
    } else if (n_NewSize) {
        n_Body = n_MoveBlock(n_Body, n_Size, pcco_Data, st_Header.n_RecordHeaderSize, n_NewSize);
        if (!n_Body)
            return;
        v_Write(n_Offset + HEAD_BODY, &n_Body, sizeof n_Body);
        // Kept: behind a new body in a new block the size counts the data alone, and the head is
        // written whole.
        n_NewSize -= SIZE_WORD;
    } else if (n_Body) {
        // Kept: without a new body the head goes on pointing to the old one, which is free now, and
        // reading the record appends whatever stands there.
        v_PutFreeBlock(0, n_Body, n_Size);
        if (CT_Report::sb_Failed(qccz_Source))
            return;
    }
    const unsigned n_Used = pcco_Data->n_GetUsedSize();
    // With fewer than four bytes in a head nothing of it is left to write.
    v_Write(n_Offset + HEAD_DATA, pcco_Data->qcv_Get(), n_Used - std::min(n_Used, n_NewSize));
    ++st_Header.n_HeaderChange;
    CT_Report::sb_Failed(qccz_Source);
}

void CT_RecordManager::v_UpdateRecordHeader(unsigned n_Reference, const CT_Buffer* pcco_Data)
{
    const unsigned n_Offset = st_Header.n_BlockSize * n_Reference;
    v_CheckReference(n_Offset);
    if (CT_Report::sb_Failed(qccz_Source))
        return;
    const unsigned n_Size = std::min(pcco_Data->n_GetUsedSize(), st_Header.n_RecordHeaderSize);
    v_Write(n_Offset + HEAD_DATA, pcco_Data->qcv_Get(), n_Size);
    ++st_Header.n_HeaderChange;
    CT_Report::sb_Failed(qccz_Source);
}
