// System/ModuleVersion/ModuleVersion.cpp
#include <System/ModuleVersion/ModuleVersion.h>

#include <Ostra/Frame/Report.h>
#include <Ostra/Frame/SystemText.h>
#include <System/ModuleVersion/VersionRecord.h>

#include <windows.h>

#include <cstdlib>

static constexpr char qccz_Source[] = "System/ModuleVersion/ModuleVersion";

static constexpr char acz_RecordKey[] = "VS_VERSION_INFO";

// ---- Construction ---------------------------------------------------------------------------

CT_ModuleVersion::CT_ModuleVersion(const CT_ModuleVersion& co_Other)
    : so_Info(co_Other.so_Info),
      b_16Bit(co_Other.b_16Bit),
      co_Map(&co_Other.co_Map),
      co_Comments(co_Other.co_Comments),
      co_CompanyName(co_Other.co_CompanyName),
      co_FileDescription(co_Other.co_FileDescription),
      co_FileVersion(co_Other.co_FileVersion),
      co_InternalName(co_Other.co_InternalName),
      co_LegalCopyright(co_Other.co_LegalCopyright),
      co_LegalTrademarks(co_Other.co_LegalTrademarks),
      co_OriginalFilename(co_Other.co_OriginalFilename),
      co_PrivateBuild(co_Other.co_PrivateBuild),
      co_ProductName(co_Other.co_ProductName),
      co_ProductVersion(co_Other.co_ProductVersion),
      co_SpecialBuild(co_Other.co_SpecialBuild)
{}

CT_ModuleVersion& CT_ModuleVersion::operator=(const CT_ModuleVersion& co_Other)
{
    if (this == &co_Other)
        return *this;
    so_Info = co_Other.so_Info;
    b_16Bit = co_Other.b_16Bit;
    co_Map.v_Set(&co_Other.co_Map);
    co_Comments = co_Other.co_Comments;
    co_CompanyName = co_Other.co_CompanyName;
    co_FileDescription = co_Other.co_FileDescription;
    co_FileVersion = co_Other.co_FileVersion;
    co_InternalName = co_Other.co_InternalName;
    co_LegalCopyright = co_Other.co_LegalCopyright;
    co_LegalTrademarks = co_Other.co_LegalTrademarks;
    co_OriginalFilename = co_Other.co_OriginalFilename;
    co_PrivateBuild = co_Other.co_PrivateBuild;
    co_ProductName = co_Other.co_ProductName;
    co_ProductVersion = co_Other.co_ProductVersion;
    co_SpecialBuild = co_Other.co_SpecialBuild;
    return *this;
}

void* CT_ModuleVersion::operator new(std::size_t n_Size) noexcept
{
    return CT_Report::spv_New(n_Size, qccz_Source);
}

void CT_ModuleVersion::operator delete(void* pv_Object)
{
    std::free(pv_Object);
}

void CT_ModuleVersion::v_Init()
{
    so_Info = {};
    b_16Bit = 0;
}

// Kept: a module that is loaded isn't asked.
void CT_ModuleVersion::v_Init(HINSTANCE)
{
    v_Init();
}

void CT_ModuleVersion::v_Init(const CT_CString* pcco_File)
{
    v_Init(pcco_File->qccz_Get());
}

void CT_ModuleVersion::v_Init(const char* qccz_File)
{
    v_Init();
    DWORD n_Handle = 0;
    const DWORD n_Size = GetFileVersionInfoSizeA(qccz_File, &n_Handle);
    if (n_Size == 0)
        return;
    const auto pc_Data = static_cast<char*>(std::calloc(1, n_Size + CT_VersionRecord::TERMINATOR));
    if (!pc_Data)
        return;
    if (GetFileVersionInfoA(qccz_File, 0, n_Size, pc_Data))
        v_ParseVersionData(pc_Data, n_Size);
    std::free(pc_Data);
}

// Kept: the twelve strings stay as they are.
void CT_ModuleVersion::v_Exit()
{
    co_Map.v_Set(4);
}

void CT_ModuleVersion::v_Set(const CT_CString* pcco_File)
{
    v_Exit();
    v_Init(pcco_File);
}

void CT_ModuleVersion::v_Set(const char* qccz_File)
{
    v_Exit();
    v_Init(qccz_File);
}

void CT_ModuleVersion::v_Set(HINSTANCE h_Instance)
{
    v_Exit();
    v_Init(h_Instance);
}

// ---- The record -------------------------------------------------------------------------------

void CT_ModuleVersion::v_ParseVersionData(const char* pcv_Data, unsigned n_Size)
{
    CT_VersionRecord co_Record(pcv_Data, n_Size);
    unsigned n_At = 4;
    if (co_Record.n_GetWord(n_At) <= 1) {
        b_16Bit = 0;
        n_At = co_Record.n_SkipText(n_At + 2);
    } else {
        if (!co_Record.b_Holds(n_At, acz_RecordKey, sizeof(acz_RecordKey) - 1))
            return;
        b_16Bit = 1;
        n_At += sizeof(acz_RecordKey);
    }
    co_Record.v_SetLayout(b_16Bit);
    n_At = CT_VersionRecord::sn_Pad(n_At, 0);
    const unsigned n_Value = co_Record.n_GetValueLength(0);
    co_Record.v_Copy(&so_Info, n_At, std::min<unsigned>(n_Value, sizeof(so_Info)));
    v_ParseChildren(co_Record, CT_VersionRecord::sn_Pad(n_At + n_Value, 0));
}

// What lies behind the room isn't looked at.
void CT_ModuleVersion::v_ParseChildren(const CT_VersionRecord& co_Record, unsigned n_Position)
{
    const unsigned n_End = std::min(co_Record.n_GetLength(0), co_Record.n_GetRoom());
    // A child of another kind, or of length 0, is looked at again and again.
    for (volatile unsigned n_Child = n_Position; n_Child < n_End;) {
        const unsigned n_Key = n_Child + co_Record.n_GetHeader();
        if (co_Record.b_IsText(n_Key, "StringFileInfo"))
            v_ParseStringFileInfo(co_Record, n_Child);
        else if (!co_Record.b_IsText(n_Key, "VarFileInfo"))
            continue; // Kept: without a step, so for ever.
        // The translations of a VarFileInfo are passed over.
        n_Child = CT_VersionRecord::sn_Pad(n_Child + co_Record.n_GetLength(n_Child), 0);
    }
}

// Kept: of its tables, the first alone.
void CT_ModuleVersion::v_ParseStringFileInfo(const CT_VersionRecord& co_Record, unsigned n_Node)
{
    const unsigned n_End = n_Node + co_Record.n_GetLength(n_Node);
    const unsigned n_Table = CT_VersionRecord::sn_Pad(co_Record.n_SkipHeader(n_Node), n_Node);
    if (n_Table < n_End)
        v_ParseStringTables(co_Record, n_Table);
}

void CT_ModuleVersion::v_ParseStringTables(const CT_VersionRecord& co_Record, unsigned n_Table)
{
    // The key is language and code page.
    const unsigned n_CodePage = co_Record.n_GetHex(n_Table + co_Record.n_GetHeader()) & 0xFFFF;
    const unsigned n_End =
        std::min(n_Table + co_Record.n_GetLength(n_Table), co_Record.n_GetRoom());
    unsigned n_Entry = CT_VersionRecord::sn_Pad(co_Record.n_SkipHeader(n_Table), n_Table);
    while (n_Entry < n_End)
        n_Entry = n_ParseEntry(co_Record, n_Entry, n_Table, n_CodePage);
}

// The place of the next entry.
unsigned CT_ModuleVersion::n_ParseEntry(const CT_VersionRecord& co_Record, unsigned n_Entry,
                                        unsigned n_Table, unsigned n_CodePage)
{
    const unsigned n_Key = n_Entry + co_Record.n_GetHeader();
    if (co_Record.n_GetLength(n_Entry) == 0)
        return CT_VersionRecord::sn_Pad(n_Key, n_Table);
    const unsigned n_Value = CT_VersionRecord::sn_Pad(co_Record.n_SkipHeader(n_Entry), n_Table);
    const unsigned n_Count = co_Record.n_GetValueLength(n_Entry);
    CT_UString co_Key, co_Value;
    // Kept: the number of the code page serves as the most bytes of a key or value.
    co_Record.v_GetText(&co_Key, n_Key, n_CodePage);
    if (n_Count)
        co_Record.v_GetText(&co_Value, n_Value, n_CodePage);
    v_InsertKeyValue(&co_Key, &co_Value);
    return CT_VersionRecord::sn_Pad(n_Value + (b_16Bit ? n_Count : 2 * n_Count), n_Table);
}

void CT_ModuleVersion::v_InsertKeyValue(const CT_UString* pcco_Key, const CT_UString* pcco_Value)
{
    const struct
    {
        const char16_t* qcuz_Key;
        CT_UString* pco_Field;
    } aso_Fields[] = {
        {u"Comments", &co_Comments},
        {u"CompanyName", &co_CompanyName},
        {u"FileDescription", &co_FileDescription},
        {u"FileVersion", &co_FileVersion},
        {u"InternalName", &co_InternalName},
        {u"LegalCopyright", &co_LegalCopyright},
        {u"LegalTrademarks", &co_LegalTrademarks},
        {u"OriginalFilename", &co_OriginalFilename},
        {u"PrivateBuild", &co_PrivateBuild},
        {u"ProductName", &co_ProductName},
        {u"ProductVersion", &co_ProductVersion},
        {u"SpecialBuild", &co_SpecialBuild},
    };
    for (const auto& so_Field : aso_Fields)
        if (pcco_Key->vi_Compare(so_Field.qcuz_Key) == 0) {
            so_Field.pco_Field->v_Set(pcco_Value->qcuz_Get());
            return;
        }
    co_Map.v_Insert(pcco_Key, pcco_Value);
}
