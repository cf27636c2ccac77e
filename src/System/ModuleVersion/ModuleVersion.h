// System/ModuleVersion/ModuleVersion.h: the version record of an executable file.
#pragma once

#include <Ostra/Frame/Export.h>
#include <Ostra/Frame/Platform.h>
#include <Ostra/Frame/RawCopy.h>
#include <Ostra/Maps/StringStringMap.h>
#include <Ostra/String/CString.h>
#include <Ostra/String/UString.h>

#include <cstddef>

class CT_VersionRecord;

// The fixed part of a version record, as the file stores it.
struct st_FixedFileInfo
{
    unsigned n4_Signature; // 0xFEEF04BD in a valid record
    unsigned n4_StrucVersion;
    unsigned n4_FileVersionMS;
    unsigned n4_FileVersionLS; // the build number, too
    unsigned n4_ProductVersionMS;
    unsigned n4_ProductVersionLS;
    unsigned n4_FileFlagsMask;
    unsigned n4_FileFlags;
    unsigned n4_FileOS;
    unsigned n4_FileType;
    unsigned n4_FileSubtype;
    unsigned n4_FileDateMS;
    unsigned n4_FileDateLS;
};

// What the version record of a program or library says: its fixed part, and the strings of its
// first table. Twelve keys have operations of their own; the others stand in a map. Records of the
// layout for 32 bits, in UTF-16, are understood, and those for 16 bits, in bytes.
//
// Owns:    its strings and the map.
// Reports: nothing of its own: a file that is missing or has no record leaves an invalid object.
//          60006 comes from strings and the map when the heap is exhausted.
// Caller:  Kept: a record with a child that is neither "StringFileInfo" nor "VarFileInfo", or has
//          no length, keeps v_Set for ever. Files from strangers go through `vercheck` first. A
//          copy by reference is no hold on the strings: set a new object from the file.
// Threads: one thread at a time.
class OSTRA_API CT_ModuleVersion
{
public:
    // ---- Construction -----------------------------------------------------------------------

    // Empty, not valid.
    CT_ModuleVersion() { v_Init(); }
    // Kept: copies the words of the strings without a hold on their blocks. The map is copied as
    // a whole.
    OSTRA_RAW_COPY CT_ModuleVersion(const CT_ModuleVersion& co_Other);
    OSTRA_RAW_COPY CT_ModuleVersion& operator=(const CT_ModuleVersion& co_Other);
    ~CT_ModuleVersion() { v_Exit(); }

    // Reads the record of a file. Kept: a key that the record doesn't have keeps its old text,
    // unless it is one of the map.
    void v_Set(const CT_CString* pcco_File);
    void v_Set(const char* qccz_File);

    static void* operator new(std::size_t n_Size) noexcept;
    static void* operator new(std::size_t, void* pv_Place) noexcept { return pv_Place; }
    static void operator delete(void* pv_Object);

    // ---- Access -----------------------------------------------------------------------------

    int b_IsValid() const { return so_Info.n4_Signature == SIGNATURE; }
    // All 0 if the object isn't valid.
    const st_FixedFileInfo* pcso_GetInfo() const { return &so_Info; }
    // The low part of the file version; 0 if the object isn't valid.
    unsigned n_GetBuildNumber() const { return b_IsValid() ? so_Info.n4_FileVersionLS : 0; }

    // The keys that have no operation here, with their values.
    const CT_StringStringMap* pcco_GetMap() const { return &co_Map; }
    // The value of the key of that name; empty if there is none.
    const CT_UString* pcco_GetComments() const { return &co_Comments; }
    const CT_UString* pcco_GetCompanyName() const { return &co_CompanyName; }
    const CT_UString* pcco_GetFileDescription() const { return &co_FileDescription; }
    const CT_UString* pcco_GetFileVersion() const { return &co_FileVersion; }
    const CT_UString* pcco_GetInternalName() const { return &co_InternalName; }
    const CT_UString* pcco_GetLegalCopyright() const { return &co_LegalCopyright; }
    const CT_UString* pcco_GetLegalTrademarks() const { return &co_LegalTrademarks; }
    const CT_UString* pcco_GetOriginalFilename() const { return &co_OriginalFilename; }
    const CT_UString* pcco_GetPrivateBuild() const { return &co_PrivateBuild; }
    const CT_UString* pcco_GetProductName() const { return &co_ProductName; }
    const CT_UString* pcco_GetProductVersion() const { return &co_ProductVersion; }
    const CT_UString* pcco_GetSpecialBuild() const { return &co_SpecialBuild; }

private:
    static constexpr unsigned SIGNATURE = 0xFEEF04BD;

    void v_Init();
    void v_Init(HINSTANCE h_Instance);
    void v_Init(const CT_CString* pcco_File);
    void v_Init(const char* qccz_File);
    void v_Exit();
    void v_Set(HINSTANCE h_Instance);

    void v_ParseVersionData(const char* pcv_Data, unsigned n_Size);
    void v_ParseChildren(const CT_VersionRecord& co_Record, unsigned n_Position);
    void v_ParseStringFileInfo(const CT_VersionRecord& co_Record, unsigned n_Node);
    void v_ParseStringTables(const CT_VersionRecord& co_Record, unsigned n_Table);
    unsigned n_ParseEntry(const CT_VersionRecord& co_Record, unsigned n_Entry, unsigned n_Table,
                          unsigned n_CodePage);
    void v_InsertKeyValue(const CT_UString* pcco_Key, const CT_UString* pcco_Value);

    st_FixedFileInfo so_Info;
    int b_16Bit; // the layout of the record
    CT_StringStringMap co_Map{4};
    CT_UString co_Comments;
    CT_UString co_CompanyName;
    CT_UString co_FileDescription;
    CT_UString co_FileVersion;
    CT_UString co_InternalName;
    CT_UString co_LegalCopyright;
    CT_UString co_LegalTrademarks;
    CT_UString co_OriginalFilename;
    CT_UString co_PrivateBuild;
    CT_UString co_ProductName;
    CT_UString co_ProductVersion;
    CT_UString co_SpecialBuild;
};
