// Database/RecordManager/RecordManager.cpp: opening, saving, and the way to the file's bytes.
#include <Database/RecordManager/RecordManager.h>

#include <Database/RecordManager/FreeChain.h>
#include <Database/RecordManager/RecordAccess.h>
#include <Ostra/Frame/Codes.h>
#include <Ostra/Frame/DatabaseError.h>
#include <Ostra/Frame/Report.h>
#include <Ostra/TestOut/TestOut.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace
{
constexpr char ac_FileText[22] = "VARNOK RecordManager\x1A";
constexpr unsigned SIGNATURE = 0xA1B2C3D4;
constexpr unsigned FREE_SLOTS = 128;
constexpr unsigned ENTRY_SIZE = 8;
constexpr unsigned ARRAY_GROWTH = 8;
// One byte short of 1 MiB: the first map of a file that is written.
constexpr unsigned MAP_SIZE = 0xFFFFF;
constexpr unsigned ATTRIBUTE_NORMAL = 1;
constexpr unsigned FLAG_RANDOM_ACCESS = 8;
} // namespace

// ---- Construction -----------------------------------------------------------------------------

CT_RecordManager::CT_RecordManager(const CT_WinFile* pcco_File)
    : co_File(pcco_File),
      st_Header(),
      ec_OpenMode(e_OpenRead),
      co_FreeBlocks(ENTRY_SIZE),
      co_Resources(ENTRY_SIZE, si_Compare, ARRAY_GROWTH, 0),
      pco_Chain(nullptr),
      n_ChainSteps(0),
      n_ChainCost(0)
{
    v_Init();
}

CT_RecordManager::~CT_RecordManager()
{
    delete pco_Chain;
}

void* CT_RecordManager::operator new(std::size_t n_Size) noexcept
{
    void* pv_Object = std::malloc(n_Size);
    if (!pv_Object)
        CT_Report::sv_Memory(qccz_Source);
    return pv_Object;
}

void CT_RecordManager::operator delete(void* pv_Object)
{
    std::free(pv_Object);
}

void CT_RecordManager::v_Init()
{
    n_SavedHeaderChange = 0;
    n_SavedFreeChange = 0;
    n_SavedResourceChange = 0;
}

void CT_RecordManager::v_Exit()
{
    co_FreeBlocks.v_Set(ARRAY_GROWTH, 0, 0);
    co_Resources.v_Set(ARRAY_GROWTH, 0, 0);
    co_Table.v_SetSize(0, 0);
}

// ---- Creation ---------------------------------------------------------------------------------

void CT_RecordManager::v_Create(unsigned n_RecordHeaderSize, unsigned n_BlockSize,
                                unsigned n_ResourceMaxCount)
{
    v_DropChain();
    if (co_FreeBlocks.n_GetCount() || co_Resources.n_GetCount()) {
        v_Exit();
        // Should the creation fail, an opening has to read them again.
        v_Init();
    }
    if (!b_OpenFile(CT_File::e_AccessReadWrite, CT_File::e_OpenCreate, CT_File::e_ShareNone))
        return;
    co_File.v_SetMapping(1, MAP_SIZE);
    if (CT_Report::sb_Failed(qccz_Source)) {
        co_File.vv_Close();
        return;
    }
    v_InitHeader(n_RecordHeaderSize, n_BlockSize, n_ResourceMaxCount);
    st_Header.n_Size = n_GetFirstBlock();
    const CT_Report::CT_Since co_Since;
    v_Write(0, &st_Header, sizeof st_Header);
    if (co_Since.b_Failed(qccz_Source))
        return;
    n_SavedHeaderChange = st_Header.n_HeaderChange;
    n_SavedFreeChange = st_Header.n_FreeChange;
    n_SavedResourceChange = st_Header.n_ResourceChange;
    ec_OpenMode = e_OpenReadWrite;
}

// An older error ends the opening, too, but not before the file is open: a new one is empty then.
int CT_RecordManager::b_OpenFile(CT_File::et_Access ec_Access, CT_File::et_Open ec_Open,
                                 CT_File::et_Share ec_Share)
{
    const int b_WasOpen = co_File.b_IsOpen();
    co_File.vv_Open(ec_Access, ec_Open, ec_Share, ATTRIBUTE_NORMAL, FLAG_RANDOM_ACCESS);
    if (!CT_Report::sb_Failed(qccz_Source))
        return 1;
    if (co_File.b_IsOpen() && !b_WasOpen)
        co_File.vv_Close();
    return 0;
}

// Filler and reserved bytes are 0, so that equal content gives equal files.
void CT_RecordManager::v_InitHeader(unsigned n_RecordHeaderSize, unsigned n_BlockSize,
                                    unsigned n_ResourceMaxCount)
{
    st_Header = {};
    std::memcpy(st_Header.ac_Text, ac_FileText, sizeof ac_FileText);
    st_Header.n_Signature = SIGNATURE;
    st_Header.n_Version = 1;
    st_Header.n_BlockSize = n_BlockSize;
    st_Header.n_RecordHeaderSize = n_RecordHeaderSize;
    st_Header.n_FreeMaxCount = FREE_SLOTS;
    st_Header.n_ResourceMaxCount = n_ResourceMaxCount;
    st_Header.n_HeaderChange = 1;
    st_Header.n_ResourceChange = 1;
    st_Header.n_FreeChange = 1;
}

// ---- Opening ----------------------------------------------------------------------------------

void CT_RecordManager::v_Open(et_OpenMode ec_Mode, int b_Map)
{
    v_DropChain();
    ec_OpenMode = ec_Mode;
    const bool b_Write = ec_Mode == e_OpenReadWrite;
    if (!b_OpenFile(b_Write ? CT_File::e_AccessReadWrite : CT_File::e_AccessRead,
                    CT_File::e_OpenExisting, b_Write ? CT_File::e_ShareNone : CT_File::e_ShareRead))
        return;
    if (b_Map) {
        co_File.v_SetMapping(1, MAP_SIZE);
        if (CT_Report::sb_Failed(qccz_Source)) {
            co_File.vv_Close();
            return;
        }
    }
    if (!b_LoadHeader() || !b_LoadFreeBlocks() || !b_LoadResources())
        v_CloseBadFile();
}

int CT_RecordManager::b_LoadHeader()
{
    v_Read(&st_Header, 0, sizeof st_Header);
    if (CT_Report::sb_Failed(qccz_Source))
        return 0;
    n_SavedHeaderChange = st_Header.n_HeaderChange;
    if (st_Header.n_Signature == SIGNATURE)
        return 1;
    v_SetError(INVALID_FORMAT);
    return 0;
}

// A reader has no use for the free table.
int CT_RecordManager::b_LoadFreeBlocks()
{
    if (ec_OpenMode != e_OpenReadWrite)
        return 1;
    if (st_Header.n_FreeChange != 0 && st_Header.n_FreeChange == n_SavedFreeChange)
        return 1;
    if (!b_LoadTable(sizeof st_Header, st_Header.n_FreeCount))
        return 0;
    co_FreeBlocks.v_Set(&co_Table);
    co_FreeBlocks.v_SetGrowth(ARRAY_GROWTH);
    co_Table.v_SetSize(0, 0);
    n_SavedFreeChange = st_Header.n_FreeChange;
    return 1;
}

int CT_RecordManager::b_LoadResources()
{
    if (st_Header.n_ResourceChange != 0 && st_Header.n_ResourceChange == n_SavedResourceChange)
        return 1;
    if (!b_LoadTable(n_GetResourceTable(), st_Header.n_ResourceCount))
        return 0;
    const CT_VoidArray co_Items(&co_Table, ENTRY_SIZE);
    co_Resources.v_Set(&co_Items);
    co_Resources.v_SetGrowth(ARRAY_GROWTH);
    co_Table.v_SetSize(0, 0);
    if (CT_Report::sb_Failed(qccz_Source))
        return 0;
    n_SavedResourceChange = st_Header.n_ResourceChange;
    return 1;
}

// A table of the file into co_Table. More entries than 32 bits can count bytes for lie behind the
// end in any case.
int CT_RecordManager::b_LoadTable(unsigned n_Offset, unsigned n_Count)
{
    const std::uint64_t n8_Bytes = std::uint64_t{ENTRY_SIZE} * n_Count;
    co_Table.v_SetUsedSize(0);
    if (n8_Bytes > st_Header.n_Size)
        v_SetError(CORRUPT_DATA);
    else
        v_ReadAppend(&co_Table, n_Offset, static_cast<unsigned>(n8_Bytes));
    return !CT_Report::sb_Failed(qccz_Source);
}

void CT_RecordManager::v_CloseBadFile()
{
    if (co_File.b_GetMapping())
        co_File.v_SetMapping(0, 0);
    co_File.vv_Close();
}

// ---- Saving -----------------------------------------------------------------------------------

void CT_RecordManager::v_Close(int b_Exit)
{
    v_WriteHeader();
    v_DropChain();
    if (co_File.b_GetMapping())
        co_File.v_SetMapping(0, st_Header.n_Size);
    co_File.vv_Close();
    if (b_Exit) {
        v_Exit();
        v_Init();
    }
    CT_Report::sb_Failed(qccz_Source);
}

void CT_RecordManager::v_Flush()
{
    v_WriteHeader();
    if (co_File.b_GetMapping())
        co_File.v_FlushMap();
    else
        co_File.vv_Flush();
    CT_Report::sb_Failed(qccz_Source);
}

// What differs from the disk: header, free table, resource table, in this order.
void CT_RecordManager::v_WriteHeader()
{
    if (st_Header.n_HeaderChange != n_SavedHeaderChange) {
        v_Write(0, &st_Header, sizeof st_Header);
        n_SavedHeaderChange = st_Header.n_HeaderChange;
    }
    if (ec_OpenMode == e_OpenReadWrite && st_Header.n_FreeChange != n_SavedFreeChange) {
        if (st_Header.n_FreeCount)
            v_WriteTable(sizeof st_Header, st_Header.n_FreeCount, &co_FreeBlocks);
        n_SavedFreeChange = st_Header.n_FreeChange;
    }
    if (st_Header.n_ResourceChange != n_SavedResourceChange) {
        v_WriteTable(n_GetResourceTable(), st_Header.n_ResourceCount, co_Resources.pcco_GetArray());
        n_SavedResourceChange = st_Header.n_ResourceChange;
    }
}

void CT_RecordManager::v_WriteTable(unsigned n_Offset, unsigned n_Count,
                                    const CT_VoidArray* pcco_Table)
{
    // Both counts are one, unless the object went on after a failure.
    const unsigned n_Entries = std::min(n_Count, pcco_Table->n_GetCount());
    v_Write(n_Offset, pcco_Table->pcco_GetBuffer()->qcv_Get(), n_Entries * ENTRY_SIZE);
}

// ---- The way to the file's bytes --------------------------------------------------------------

unsigned CT_RecordManager::n_ReadSlowly(unsigned n_Offset) const
{
    if (!co_File.b_Seek(CT_File::e_OriginBegin, static_cast<int>(n_Offset))) {
        CT_Report::sb_Failed(qccz_Source);
        return 0;
    }
    unsigned n_Word = 0;
    return co_File.vn_Read(&n_Word, sizeof n_Word) == sizeof n_Word ? n_Word : 0;
}

// What the file doesn't hold reads as zeros: a record at the end of a file that was written without
// a map may have fewer bytes than are read for it.
void CT_RecordManager::v_Read(void* pv_Target, unsigned n_Offset, unsigned n_Size) const
{
    if (!n_Size || !b_CheckRange(n_Offset, n_Size))
        return;
    const unsigned n_Got = n_ReadBytes(pv_Target, n_Offset, n_Size);
    std::memset(static_cast<char*>(pv_Target) + n_Got, 0, n_Size - n_Got);
}

void CT_RecordManager::v_Read(CT_Buffer* pco_Buffer, unsigned n_Offset, unsigned n_Size) const
{
    if (!n_Size)
        pco_Buffer->v_SetUsedSize(0);
    else if (b_CheckRange(n_Offset, n_Size) && b_MakeRoom(pco_Buffer, 0, n_Size))
        v_Read(const_cast<void*>(pco_Buffer->qcv_Get()), n_Offset, n_Size);
}

// Here a size promises the bytes: a file that doesn't hold them is corrupt.
void CT_RecordManager::v_ReadAppend(CT_Buffer* pco_Buffer, unsigned n_Offset, unsigned n_Size) const
{
    const unsigned n_Used = pco_Buffer->n_GetUsedSize();
    if (!n_Size || !b_CheckRange(n_Offset, n_Size) || !b_MakeRoom(pco_Buffer, n_Used, n_Size))
        return;
    char* pc_Target = static_cast<char*>(const_cast<void*>(pco_Buffer->qcv_Get())) + n_Used;
    if (n_ReadBytes(pc_Target, n_Offset, n_Size) == n_Size)
        return;
    pco_Buffer->v_SetUsedSize(n_Used);
    v_SetError(CORRUPT_DATA);
}

// The count of bytes that the file holds there; 0 on failure.
unsigned CT_RecordManager::n_ReadBytes(void* pv_Target, unsigned n_Offset, unsigned n_Size) const
{
    co_File.vv_SetOffset(CT_File::e_OriginBegin, n_Offset);
    if (CT_Report::sb_Failed(qccz_Source))
        return 0;
    return co_File.vn_Read(pv_Target, n_Size);
}

// The header itself, at offset 0, is read before the end is known.
int CT_RecordManager::b_IsInside(unsigned n_Offset, unsigned n_Size) const
{
    const unsigned n_End = st_Header.n_Size;
    return !n_Offset || (n_Size <= n_End && n_Offset <= n_End - n_Size);
}

// Whether the file has all of these bytes.
int CT_RecordManager::b_IsHeld(unsigned n_Offset, unsigned n_Size) const
{
    if (co_File.pcc_PeekAt(n_Offset, n_Size))
        return 1;
    const unsigned n_End = co_File.vn_GetSize();
    return n_Size <= n_End && n_Offset <= n_End - n_Size;
}

int CT_RecordManager::b_CheckRange(unsigned n_Offset, unsigned n_Size) const
{
    if (b_IsInside(n_Offset, n_Size))
        return 1;
    v_SetError(CORRUPT_DATA);
    return 0;
}

// Gives the buffer a block of its own with n_Size bytes used behind the first n_Keep, which stay.
int CT_RecordManager::b_MakeRoom(CT_Buffer* pco_Buffer, unsigned n_Keep, unsigned n_Size) const
{
    const unsigned n_Used = n_Keep + n_Size;
    if (n_Used >= n_Size)
        pco_Buffer->v_SetMinSize(n_Used, n_Keep != 0);
    if (n_Used < n_Size || pco_Buffer->n_GetMaximumSize() < n_Used) {
        CT_Report::sv_Memory(qccz_Source);
        return 0;
    }
    pco_Buffer->v_SetUsedSize(n_Used);
    return !CT_Report::sb_Failed(qccz_Source);
}

// Nothing is tested here. An older error stops no write; a seek that fails does.
void CT_RecordManager::v_Write(unsigned n_Offset, const void* pcv_Data, unsigned n_Size)
{
    v_WriteOver(n_Offset, pcv_Data, n_Size);
    v_Written(n_Offset, n_Size);
}

// The same without a look at the chain.
void CT_RecordManager::v_WriteOver(unsigned n_Offset, const void* pcv_Data, unsigned n_Size)
{
    if (!b_WriteWords(n_Offset, nullptr, 0, pcv_Data, n_Size) &&
        co_File.b_Seek(CT_File::e_OriginBegin, static_cast<int>(n_Offset)))
        co_File.vn_Write(pcv_Data, n_Size);
}

// Some words and data behind them, all of it within the view; false, with nothing written, where it
// isn't. The data is the last transfer.
int CT_RecordManager::b_WriteWords(unsigned n_Offset, const void* pcv_Words, unsigned n_Words,
                                   const void* pcv_Data, unsigned n_Size)
{
    char* pc_Words = n_Words ? pc_WriteAt(n_Offset, n_Words) : nullptr;
    char* pc_Data = !n_Words || pc_Words ? pc_WriteAt(n_Offset + n_Words, n_Size) : nullptr;
    if (!pc_Data)
        return 0;
    if (n_Words)
        std::memcpy(pc_Words, pcv_Words, n_Words);
    if (n_Size)
        std::memmove(pc_Data, pcv_Data, n_Size);
    return 1;
}

// What was written may belong to the chain, which was written by none of its own ways then.
void CT_RecordManager::v_Written(unsigned n_Offset, unsigned n_Size)
{
    if (pco_Chain && (!b_IsChainSafe() || pco_Chain->b_IsHit(n_Offset, n_Size)))
        v_DropChain();
}

int CT_RecordManager::b_Write(unsigned n_Offset, const void* pcv_Data, unsigned n_Size)
{
    v_Write(n_Offset, pcv_Data, n_Size);
    return !CT_Report::sb_Failed(qccz_Source);
}

// A body or resource block: the size word, which counts itself, and the data from n_From on.
void CT_RecordManager::v_WriteSized(unsigned n_Offset, const CT_Buffer* pcco_Data, unsigned n_From,
                                    unsigned n_Size)
{
    const char* pcc_Data = static_cast<const char*>(pcco_Data->qcv_Get()) + n_From;
    if (b_WriteWords(n_Offset, &n_Size, sizeof n_Size, pcc_Data, n_Size - 4)) {
        v_Written(n_Offset, n_Size);
        return;
    }
    v_Write(n_Offset, &n_Size, sizeof n_Size);
    v_Write(n_Offset + 4, pcc_Data, n_Size - 4);
}

// The same, stopping at a failure.
int CT_RecordManager::b_WriteSized(unsigned n_Offset, const CT_Buffer* pcco_Data, unsigned n_From,
                                   unsigned n_Size)
{
    const char* pcc_Data = static_cast<const char*>(pcco_Data->qcv_Get()) + n_From;
    if (b_WriteWords(n_Offset, &n_Size, sizeof n_Size, pcc_Data, n_Size - 4)) {
        v_Written(n_Offset, n_Size);
        return 1;
    }
    return b_Write(n_Offset, &n_Size, sizeof n_Size) && b_Write(n_Offset + 4, pcc_Data, n_Size - 4);
}

// Kept: the finished text is the format of the report, with the name as its argument, so that a
// per-cent sign in the name of a file is read as a directive. What further ones ask for is empty.
void CT_RecordManager::v_SetError(unsigned n_Code) const
{
    constexpr unsigned TEXT_LENGTH = 255;
    unsigned short au_Text[TEXT_LENGTH];
    const unsigned short* qcuz_Name = co_File.pcco_GetFullName()->qcuz_Get();
    CT_DatabaseError::sv_FormatError(au_Text, TEXT_LENGTH, n_Code, qcuz_Name);
    CT_Report::sv_Text(qccz_Source, n_Code, au_Text, qcuz_Name);
}

// ---- Diagnostics ------------------------------------------------------------------------------

void CT_RecordManager::v_Print(const char*, CT_TestOut*) {}
void CT_RecordManager::v_PrintHeader(const char*, CT_TestOut*) {}
void CT_RecordManager::v_PrintLists(const char*, CT_TestOut*) {}
void CT_RecordManager::v_ConsistencyReport(const char*, CT_TestOut*) {}
