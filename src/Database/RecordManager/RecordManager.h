// Database/RecordManager/RecordManager.h: numbered records and resources in one file.
#pragma once

#include <Ostra/ARRAY/VoidArray.h>
#include <Ostra/Buffer/Buffer.h>
#include <Ostra/File/WinFile.h>
#include <Ostra/Frame/Export.h>
#include <Ostra/SortedArray/VoidSortedArray.h>

#include <cstddef>

class CT_FreeChain;
class CT_TestOut;

// Records and resources of any length in one record file, with the file's free space.
//
// A record is found by its reference, which it keeps as long as it lives; a resource by a number
// that the caller chooses. Construct, create or open, work, close. Header and tables live in memory
// between opening and closing and are written by v_Close and v_Flush alone: a file that isn't
// closed keeps the header of the last save.
//
// Units:   sizes are bytes; references count blocks from the file's start, so that none is 0.
// Owns:    its own file object, made from the name and buffer size of the one given.
// Reports: 31005 corrupt data, 31050 no record file, 31051 no record there, 31052 all resource
//          slots taken, 31053 no such resource, 31054 resource number in use; what the file and the
//          heap report passes through. What finds no room in the file changes nothing. An operation
//          that fails half way otherwise leaves what it wrote, and blocks of the free space that it
//          took stay taken. With an error set only saving and closing work.
// Caller:  opens the file for changes before changing it, with a block size of 8 or more; closes
//          what is open before opening again. Files of strangers are checked first: reading trusts
//          sizes and links that lie within the file.
// Threads: one thread at a time; reading moves the file's offset, too.
class OSTRA_API CT_RecordManager
{
public:
    enum et_OpenMode : int
    {
        e_OpenRead = 1, // and any other number but 2
        e_OpenReadWrite = 2,
    };

    // ---- Construction -----------------------------------------------------------------------

    // Closed: nothing is opened or read before v_Create or v_Open.
    explicit CT_RecordManager(const CT_WinFile* pcco_File);
    CT_RecordManager(const CT_RecordManager&) = delete;
    CT_RecordManager& operator=(const CT_RecordManager&) = delete;
    // Closes the file without saving: header and tables stay as on the disk, a mapped file as long
    // as its map.
    ~CT_RecordManager();

    static void* operator new(std::size_t n_Size) noexcept;
    static void* operator new(std::size_t, void* pv_Place) noexcept { return pv_Place; }
    static void operator delete(void* pv_Object);

    // ---- Life -------------------------------------------------------------------------------

    // Makes an empty file, replacing an old one, and opens it for changes with a map. A record's
    // head holds its first n_RecordHeaderSize bytes and 8 more; a file to be walked has a block
    // size in which that fits. An error that is set when it is called isn't looked at in time: an
    // old file of the name is emptied, and no new one is made. Clear it, or stop, before.
    void v_Create(unsigned n_RecordHeaderSize, unsigned n_BlockSize, unsigned n_ResourceMaxCount);
    // Opens for changes, alone, or for reading beside other readers. With b_Map transfers go
    // through a view of the file. After a failure the object is closed and can be opened again.
    void v_Open(et_OpenMode ec_Mode, int b_Map);
    // Saves and closes, also with an error set. Without b_Exit the tables stay in memory, and
    // opening the same file again reads a table only if it has changed meanwhile.
    void v_Close(int b_Exit);
    // Saves, and hands the bytes to the disk.
    void v_Flush();

    // ---- Access -----------------------------------------------------------------------------

    const CT_WinFile* pcco_GetFile() const { return &co_File; }
    unsigned n_GetRecordHeaderSize() const { return st_Header.n_RecordHeaderSize; }
    unsigned n_GetBlockSize() const { return st_Header.n_BlockSize; }
    unsigned n_GetResourceMaxCount() const { return st_Header.n_ResourceMaxCount; }
    unsigned n_GetRecordCount() const { return st_Header.n_RecordCount; }
    unsigned n_GetResourceCount() const { return st_Header.n_ResourceCount; }
    // The offset of the end of the blocks.
    unsigned n_GetSize() const { return st_Header.n_Size; }

    // ---- Records ----------------------------------------------------------------------------

    // The reference of the new record; 0 on failure. Of any size that the file has room for below
    // 4 GiB; offsets from 2 GiB up are out of the file's reach.
    unsigned n_AddRecord(const CT_Buffer* pcco_Data);
    // Fetches a record. One that was shorter than the record header size comes back with that size,
    // the rest being whatever stood there. Empties the buffer first, and on failure.
    void v_GetRecord(unsigned n_Reference, CT_Buffer* pco_Buffer) const;
    // Replaces a record's content. Two outcomes to know: when the body stays in its block, the last
    // four bytes of the record header size keep their old content; and a record that loses its
    // body, by data of up to n_RecordHeaderSize bytes, keeps a stale one: it points to a block that
    // is free, reads what others put there, and gives it back once more when it is updated or
    // deleted. Who wants neither deletes the record and adds it again.
    void v_UpdateRecord(unsigned n_Reference, const CT_Buffer* pcco_Data);
    // Replaces up to n_RecordHeaderSize first bytes; the rest of the record stays.
    void v_UpdateRecordHeader(unsigned n_Reference, const CT_Buffer* pcco_Data);
    void v_DeleteRecord(unsigned n_Reference);
    // Walks all records: begin with 0 and pass each result as the next cursor; 0 ends the walk, or
    // tells of a failure. The record found has the result less 1 as its reference. A null buffer
    // fetches nothing.
    unsigned n_GetNextRecord(unsigned n_Cursor, CT_Buffer* pco_Buffer) const;

    // ---- Resources --------------------------------------------------------------------------

    // Stores the buffer's used bytes, none among them, under a number that is free.
    void v_AddResource(unsigned n_ID, const CT_Buffer* pcco_Data);
    // Replaces the bytes of a resource that is there.
    void v_UpdateResource(unsigned n_ID, const CT_Buffer* pcco_Data);
    // The buffer stays as it is if there is no such resource, or none that can be.
    void v_GetResource(unsigned n_ID, CT_Buffer* pco_Buffer);
    int b_ResourceExists(unsigned n_ID);
    void v_DeleteResource(unsigned n_ID);

    // ---- Diagnostics: these do nothing ------------------------------------------------------

    void v_Print(const char* qccz_Label, CT_TestOut* pco_Out);
    void v_PrintHeader(const char* qccz_Label, CT_TestOut* pco_Out);
    void v_PrintLists(const char* qccz_Label, CT_TestOut* pco_Out);
    void v_ConsistencyReport(const char* qccz_Label, CT_TestOut* pco_Out);

private:
    // The first 256 bytes of the file.
    struct _st_Header
    {
        char ac_Text[22]; // "VARNOK RecordManager", 1A, 00; never read
        char ac_Filler[10];
        unsigned n_Signature; // the one field that opening tests
        unsigned n_Version;   // 1; never read
        unsigned n_BlockSize;
        unsigned n_RecordHeaderSize;
        unsigned n_FreeMaxCount; // slots of the free table, 128
        unsigned n_FreeCount;
        unsigned n_ResourceMaxCount;
        unsigned n_ResourceCount;
        unsigned n_HeaderChange;   // the three change counters only grow; what differs from
        unsigned n_ResourceChange; // the saved value is written by the next save
        unsigned n_FreeChange;
        unsigned n_RecordCount;
        unsigned n_Size; // end of the blocks
        char ac_Reserved[172];
    };
    static_assert(sizeof(_st_Header) == 256);
    static_assert(offsetof(_st_Header, ac_Text) == 0);
    static_assert(offsetof(_st_Header, ac_Filler) == 22);
    static_assert(offsetof(_st_Header, n_Signature) == 32);
    static_assert(offsetof(_st_Header, n_Version) == 36);
    static_assert(offsetof(_st_Header, n_BlockSize) == 40);
    static_assert(offsetof(_st_Header, n_RecordHeaderSize) == 44);
    static_assert(offsetof(_st_Header, n_FreeMaxCount) == 48);
    static_assert(offsetof(_st_Header, n_FreeCount) == 52);
    static_assert(offsetof(_st_Header, n_ResourceMaxCount) == 56);
    static_assert(offsetof(_st_Header, n_ResourceCount) == 60);
    static_assert(offsetof(_st_Header, n_HeaderChange) == 64);
    static_assert(offsetof(_st_Header, n_ResourceChange) == 68);
    static_assert(offsetof(_st_Header, n_FreeChange) == 72);
    static_assert(offsetof(_st_Header, n_RecordCount) == 76);
    static_assert(offsetof(_st_Header, n_Size) == 80);
    static_assert(offsetof(_st_Header, ac_Reserved) == 84);

    // An entry of the free table, as on disk.
    struct st_FreeBlock
    {
        unsigned n_Offset;
        unsigned n_Length; // aligned; 0 in the last slot of a full table: head of the free chain
    };
    static_assert(sizeof(st_FreeBlock) == 8);

    // An entry of the resource table, as on disk.
    struct st_Resource
    {
        unsigned n_ID;
        unsigned n_Offset;
    };
    static_assert(sizeof(st_Resource) == 8);

    // ---- Life -------------------------------------------------------------------------------

    void v_Init();
    void v_Exit();
    void v_InitHeader(unsigned n_RecordHeaderSize, unsigned n_BlockSize,
                      unsigned n_ResourceMaxCount);
    int b_OpenFile(CT_File::et_Access ec_Access, CT_File::et_Open ec_Open,
                   CT_File::et_Share ec_Share);
    int b_LoadHeader();
    int b_LoadFreeBlocks();
    int b_LoadResources();
    int b_LoadTable(unsigned n_Offset, unsigned n_Count);
    void v_CloseBadFile();
    void v_WriteHeader();
    void v_WriteTable(unsigned n_Offset, unsigned n_Count, const CT_VoidArray* pcco_Table);
    unsigned n_GetResourceTable() const
    {
        return sizeof(_st_Header) + 8 * st_Header.n_FreeMaxCount;
    }

    // ---- Access to the file -----------------------------------------------------------------

    const char* pcc_ReadAt(unsigned n_Offset, unsigned n_Size) const;
    char* pc_WriteAt(unsigned n_Offset, unsigned n_Size);
    void v_Written(unsigned n_Offset, unsigned n_Size);
    unsigned n_Read(unsigned n_Offset) const;
    unsigned n_ReadSlowly(unsigned n_Offset) const;
    void v_Read(void* pv_Target, unsigned n_Offset, unsigned n_Size) const;
    void v_Read(CT_Buffer* pco_Buffer, unsigned n_Offset, unsigned n_Size) const;
    void v_ReadAppend(CT_Buffer* pco_Buffer, unsigned n_Offset, unsigned n_Size) const;
    unsigned n_ReadBytes(void* pv_Target, unsigned n_Offset, unsigned n_Size) const;
    int b_IsInside(unsigned n_Offset, unsigned n_Size) const;
    int b_IsHeld(unsigned n_Offset, unsigned n_Size) const;
    int b_CheckRange(unsigned n_Offset, unsigned n_Size) const;
    int b_MakeRoom(CT_Buffer* pco_Buffer, unsigned n_Keep, unsigned n_Size) const;
    void v_Write(unsigned n_Offset, const void* pcv_Data, unsigned n_Size);
    void v_WriteOver(unsigned n_Offset, const void* pcv_Data, unsigned n_Size);
    void v_WriteLink(unsigned n_Block, unsigned n_Next);
    int b_Write(unsigned n_Offset, const void* pcv_Data, unsigned n_Size);
    void v_WriteSized(unsigned n_Offset, const CT_Buffer* pcco_Data, unsigned n_From,
                      unsigned n_Size);
    int b_WriteSized(unsigned n_Offset, const CT_Buffer* pcco_Data, unsigned n_From,
                     unsigned n_Size);
    int b_WriteWords(unsigned n_Offset, const void* pcv_Words, unsigned n_Words,
                     const void* pcv_Data, unsigned n_Size);
    void v_SetError(unsigned n_Code) const;

    // ---- Space ------------------------------------------------------------------------------

    unsigned n_AlignBlockSize(unsigned n_Size) const;
    unsigned n_AlignOddly(unsigned n_Size) const;
    unsigned n_GetReference(unsigned n_Offset) const;
    unsigned n_GetFirstBlock() const;
    unsigned n_GetFreeBlock(unsigned n_Size);
    unsigned n_FindFreeBlock(unsigned n_Need) const;
    unsigned n_TakeFreeBlock(unsigned n_Slot, unsigned n_Need);
    void v_CloseFreeSlot(unsigned n_Slot);
    unsigned n_TakeChainBlock(unsigned n_Need);
    unsigned n_WalkChain(unsigned n_Head, unsigned n_Need);
    int b_TakeMirrored(unsigned n_Head, unsigned n_Need, unsigned* pn_Block);
    void v_Unchain(unsigned n_Previous, unsigned n_Block, unsigned n_Size, unsigned n_Need);
    int b_HasFreeChain() const;
    int b_IsChainSafe() const;
    int b_IsMirrored(unsigned n_Head) const;
    void v_MirrorChain(unsigned n_Head);
    void v_DropChain();
    void v_PushChain(unsigned n_Head, unsigned n_Block);
    void v_PopChain(unsigned n_Head, unsigned n_Next);
    void v_PutFreeBlock(int b_WriteSize, unsigned n_Offset, unsigned n_Size);
    void v_AddFreeBlock(unsigned n_Offset, unsigned n_Length);

    // What giving a block back changes.
    struct st_Given
    {
        unsigned n_Count;     // of the table
        st_FreeBlock so_Last; // its last entry, if it is full
        unsigned n_Link;      // the block's second word then
    };

    int b_IsTableFull() const;
    int b_IsBlockSize(unsigned n_Size) const;
    int b_ChainHas(unsigned n_Need, int b_Head) const;
    int b_ReserveBody(unsigned n_HeadSize, unsigned n_BodySize);
    int b_Extend(unsigned n_OldEnd, unsigned n_Block, unsigned n_Size);
    void v_GiveBack(unsigned n_OldEnd, unsigned n_Block, unsigned n_Size);
    st_Given so_BeforeGiving(unsigned n_Block) const;
    void v_TakeBack(unsigned n_Block, const st_Given& so_Given);
    unsigned n_MoveBlock(unsigned n_Old, unsigned n_OldSize, const CT_Buffer* pcco_Data,
                         unsigned n_From, unsigned n_Size);

    // ---- Records and resources --------------------------------------------------------------

    void v_CheckReference(unsigned n_Offset) const;
    void v_GetBody(unsigned n_Offset, unsigned* pn_Body, unsigned* pn_Size) const;
    int b_GetMapped(unsigned n_Offset, CT_Buffer* pco_Buffer) const;
    int b_FindRecord(unsigned n_Offset, unsigned* pn_Body, unsigned* pn_Size) const;
    unsigned n_GetBodySize(const CT_Buffer* pcco_Data) const;
    int b_WriteHead(unsigned n_Head, unsigned n_Body, const CT_Buffer* pcco_Data);
    unsigned n_FindResource(st_Resource* pso_Resource) const;
    static int si_Compare(const void* pcv_First, const void* pcv_Second);

    // The order of the members is part of the interface.
    mutable CT_WinFile co_File; // reading seeks
    _st_Header st_Header;       // the image of the file's first bytes
    et_OpenMode ec_OpenMode;
    CT_VoidArray co_FreeBlocks;      // of st_FreeBlock
    CT_VoidSortedArray co_Resources; // of st_Resource
    unsigned n_SavedHeaderChange;    // what the disk holds
    unsigned n_SavedFreeChange;
    unsigned n_SavedResourceChange;
    CT_Buffer co_Table; // scratch for loading the tables

    // The free chain as memory has it; null where it is walked in the file.
    CT_FreeChain* pco_Chain;
    unsigned n_ChainSteps; // of such walks since it was made
    unsigned n_ChainCost;  // the steps that its making is worth
};
