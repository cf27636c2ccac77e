// Ostra/File/WinFile.cpp
#include <Ostra/File/WinFile.h>

#include <Ostra/File/Road.h>
#include <Ostra/File/Sources.h>
#include <Ostra/Frame/Report.h>

#include <windows.h>

#include <cstdlib>

static constexpr auto& qccz_Source = qccz_WinFileSource;

namespace
{
constexpr unsigned RENAMED_BUFFER_SIZE = 16384;

// Kept: the disposition of the second attempt of an append has no name. Windows doesn't know it and
// refuses it as such; elsewhere it is an attempt like the first one and tells what is in the way.
constexpr unsigned SECOND_ATTEMPT = 7;

struct st_Bit
{
    unsigned n_Bit;
    unsigned n_System;
};

constexpr st_Bit aso_Attributes[] = {
    {CT_File::e_AttributeNormal, FILE_ATTRIBUTE_NORMAL},
    {CT_File::e_AttributeArchive, FILE_ATTRIBUTE_ARCHIVE},
    {CT_File::e_AttributeCompressed, FILE_ATTRIBUTE_COMPRESSED},
    {CT_File::e_AttributeHidden, FILE_ATTRIBUTE_HIDDEN},
    {CT_File::e_AttributeReadOnly, FILE_ATTRIBUTE_READONLY},
    {CT_File::e_AttributeSystem, FILE_ATTRIBUTE_SYSTEM},
    {CT_File::e_AttributeDirectory, FILE_ATTRIBUTE_DIRECTORY},
    {CT_File::e_AttributeTemporary, FILE_ATTRIBUTE_TEMPORARY},
};
constexpr st_Bit aso_Flags[] = {
    {CT_File::e_FlagWriteThrough, FILE_FLAG_WRITE_THROUGH},
    {CT_File::e_FlagOverlapped, FILE_FLAG_OVERLAPPED},
    {CT_File::e_FlagNoBuffering, FILE_FLAG_NO_BUFFERING},
    {CT_File::e_FlagRandomAccess, FILE_FLAG_RANDOM_ACCESS},
    {CT_File::e_FlagSequentialScan, FILE_FLAG_SEQUENTIAL_SCAN},
    {CT_File::e_FlagDeleteOnClose, FILE_FLAG_DELETE_ON_CLOSE},
};

template <unsigned n_Bits>
unsigned n_Merge(unsigned n_Set, const st_Bit (&aso_Bits)[n_Bits])
{
    unsigned n_Word = 0;
    for (const st_Bit& so_Bit : aso_Bits) {
        if (n_Set & so_Bit.n_Bit)
            n_Word |= so_Bit.n_System;
    }
    return n_Word;
}

unsigned n_Disposition(CT_File::et_Open ec_Open)
{
    switch (ec_Open) {
    case CT_File::e_OpenExisting:
        return OPEN_EXISTING;
    case CT_File::e_OpenCreate:
        return CREATE_ALWAYS;
    case CT_File::e_OpenAppend:
        return OPEN_ALWAYS;
    }
    return 0; // which the system refuses
}

unsigned n_DesiredAccess(CT_File::et_Access ec_Access)
{
    return (ec_Access & CT_File::e_AccessRead ? GENERIC_READ : 0) |
           (ec_Access & CT_File::e_AccessWrite ? GENERIC_WRITE : 0);
}

// Reports the last error with two names; the second one may need a conversion first.
void v_ReportWith(const CT_UString& co_FullName, const CT_String* pcco_Other,
                  unsigned n_Line = __builtin_LINE())
{
    const DWORD n_Error = GetLastError();
    const CT_UString co_Other(pcco_Other);
    SetLastError(n_Error);
    CT_Report::sv_System(qccz_Source, co_FullName.qcuz_Get(), co_Other.qcuz_Get(), n_Line);
}
} // namespace

// ---- Construction ------------------------------------------------------------------------------

CT_WinFile::CT_WinFile()
{
    v_Null();
}

CT_WinFile::CT_WinFile(const CT_String* pco_FullName, unsigned n_Size)
    : CT_File(pco_FullName, n_Size)
{
    v_Null();
}

CT_WinFile::CT_WinFile(const CT_WinFile* pco_File) : CT_File(pco_File)
{
    v_Null();
}

CT_WinFile::~CT_WinFile()
{
    v_CloseOpen();
}

void* CT_WinFile::operator new(std::size_t n_Size) noexcept
{
    return CT_Report::spv_New(n_Size, qccz_Source);
}

void CT_WinFile::operator delete(void* pv_Object)
{
    std::free(pv_Object);
}

void CT_WinFile::vv_Set(const CT_File* pco_File)
{
    v_CloseOpen();
    CT_File::vv_Set(pco_File);
    v_Null();
}

void CT_WinFile::vv_Set(const CT_String* pco_FullName, unsigned n_Size)
{
    v_CloseOpen();
    CT_File::vv_Set(pco_FullName, n_Size);
    v_Null();
}

void CT_WinFile::vv_Set()
{
    v_CloseOpen();
    CT_File::vv_Set();
    v_Null();
}

void CT_WinFile::v_Null()
{
    h_File = nullptr;
    n_Offset = 0;
    h_Map = nullptr;
    pv_Map = nullptr;
    n_MapSize = 0;
    v_Forget();
}

// What is known of the handle and the view.
void CT_WinFile::v_Forget()
{
    n_ReadEnd = 0;
    n_WriteEnd = 0;
    n_Pointer = 0;
    b_PointerLate = 0;
    b_HandleKnown = 0;
    b_ViewKnown = 0;
}

void CT_WinFile::v_CloseOpen()
{
    if (!b_Open)
        return;
    CT_WinFile::vv_Close();
    CT_Report::sb_Failed(qccz_Source);
}

// ---- Open and close ----------------------------------------------------------------------------

void CT_WinFile::vv_Open(et_Access ec_Access, et_Open ec_Open, et_Share ec_Share,
                         unsigned n_Attribut, unsigned n_Flag)
{
    // A handle that is open already is lost, with its pointer.
    v_Forget();
    const unsigned n_Word = n_Merge(n_Attribut, aso_Attributes) | n_Merge(n_Flag, aso_Flags);
    h_File = h_Create(ec_Access, n_Disposition(ec_Open), ec_Share, n_Word);
    if (h_File == INVALID_HANDLE_VALUE && ec_Open == e_OpenAppend) {
        SetLastError(0);
        h_File = h_Create(ec_Access, SECOND_ATTEMPT, ec_Share, n_Word);
    }
    if (h_File == INVALID_HANDLE_VALUE) {
        CT_Report::sv_System(qccz_Source, co_FullName.qcuz_Get());
        return;
    }
    // An append to an existing file leaves a note there.
    if (GetLastError())
        SetLastError(0);
    n_Offset = ec_Open == e_OpenAppend ? SetFilePointer(h_File, 0, nullptr, FILE_END) : 0;
    if (n_Offset == INVALID_SET_FILE_POINTER) {
        // Kept: the handle stays, though the object isn't open.
        CT_Report::sv_System(qccz_Source, co_FullName.qcuz_Get());
        return;
    }
    ec_OpenAccess = ec_Access;
    ec_OpenModi = ec_Open;
    ec_OpenShare = ec_Share;
    n_OpenAttribut = n_Attribut;
    n_OpenFlag = n_Flag;
    v_SetOpen(1);
}

HANDLE CT_WinFile::h_Create(et_Access ec_Access, unsigned n_How, et_Share ec_Share,
                            unsigned n_Word) const
{
    return t_Call(CreateFileW, CreateFileA, &co_FullName, n_DesiredAccess(ec_Access),
                  DWORD(ec_Share), LPSECURITY_ATTRIBUTES(), n_How, n_Word, HANDLE());
}

void CT_WinFile::vv_Close()
{
    if (h_Map && !b_CloseMap(0))
        CT_Report::sb_Failed(qccz_Source);
    if (!CloseHandle(h_File)) {
        CT_Report::sv_System(qccz_Source, co_FullName.qcuz_Get());
        return;
    }
    h_File = nullptr;
    n_Offset = 0;
    v_NullOpen();
}

void CT_WinFile::vv_Flush()
{
    if (!FlushFileBuffers(h_File))
        CT_Report::sv_System(qccz_Source, co_FullName.qcuz_Get());
}

// ---- Files by name -----------------------------------------------------------------------------

void CT_WinFile::vv_Remove()
{
    if (!t_Call(DeleteFileW, DeleteFileA, &co_FullName))
        CT_Report::sv_System(qccz_Source, co_FullName.qcuz_Get());
}

void CT_WinFile::vv_Rename(const CT_String* pco_NewName)
{
    if (b_Move(pco_NewName) || b_MoveClosed(pco_NewName))
        vv_Set(pco_NewName, RENAMED_BUFFER_SIZE);
}

int CT_WinFile::b_Move(const CT_String* pcco_NewName) const
{
    const auto f_MoveW = [](LPCWSTR qcuz_Old, LPCWSTR qcuz_New) {
        return MoveFileExW(qcuz_Old, qcuz_New, MOVEFILE_COPY_ALLOWED);
    };
    return t_Call(f_MoveW, MoveFileA, &co_FullName, pcco_NewName) != 0;
}

// Whether the handle of the object may be why the system has refused. A file that goes with its
// handle isn't closed for a try.
int CT_WinFile::b_StandsInTheWay() const
{
    return b_Open && GetLastError() == ERROR_SHARING_VIOLATION &&
           !(n_OpenFlag & e_FlagDeleteOnClose);
}

// Renames the file without the handle, if that may help. If it fails the object is open as it was.
int CT_WinFile::b_MoveClosed(const CT_String* pcco_NewName)
{
    if (!b_StandsInTheWay()) {
        v_ReportWith(co_FullName, pcco_NewName);
        return 0;
    }
    const st_Opening so_Opening = so_GetOpening();
    CT_WinFile::vv_Close();
    if (!b_Open && b_Move(pcco_NewName))
        return 1;
    v_ReportWith(co_FullName, pcco_NewName);
    if (!b_Open)
        v_OpenAgain(so_Opening);
    return 0;
}

CT_WinFile::st_Opening CT_WinFile::so_GetOpening() const
{
    b_SettlePointer();
    const DWORD n_Place = SetFilePointer(h_File, 0, nullptr, FILE_CURRENT);
    return {ec_OpenAccess, ec_OpenModi,       ec_OpenShare, n_OpenAttribut, n_OpenFlag,
            ec_FileAccess, pv_Map != nullptr, n_Offset,     n_Place};
}

// A file that was made by the first opening is there now.
void CT_WinFile::v_OpenAgain(const st_Opening& so_Opening)
{
    CT_WinFile::vv_Open(so_Opening.ec_Access, e_OpenExisting, so_Opening.ec_Share,
                        so_Opening.n_Attribut, so_Opening.n_Flag);
    if (!b_Open)
        return;
    ec_OpenModi = so_Opening.ec_Modi;
    if (so_Opening.b_Mapped)
        b_CreateMap(WHOLE_FILE);
    b_PutPointer(so_Opening.n_Pointer);
    n_Offset = so_Opening.n_Offset;
    ec_FileAccess = so_Opening.ec_Direction;
}

void CT_WinFile::v_CopyFile(const CT_String* pco_Target) const
{
    if (!t_Call(CopyFileW, CopyFileA, &co_FullName, pco_Target, FALSE))
        v_ReportWith(co_FullName, pco_Target);
}

void CT_WinFile::v_SetAttributes(unsigned n_Attributes)
{
    t_Call(SetFileAttributesW, SetFileAttributesA, &co_FullName, n_Attributes);
    // Kept: there is a report whatever the system answered, and callers expect it.
    CT_Report::sv_System(qccz_Source, co_FullName.qcuz_Get());
}

unsigned CT_WinFile::n_GetAttributes()
{
    const DWORD n_Word = t_Call(GetFileAttributesW, GetFileAttributesA, &co_FullName);
    if (n_Word == INVALID_FILE_ATTRIBUTES)
        CT_Report::sv_System(qccz_Source, co_FullName.qcuz_Get());
    return n_Word;
}

// ---- Transfers ---------------------------------------------------------------------------------

// The direction of a transfer. It is taken unless the seek has failed.
int CT_WinFile::b_Turn(et_FileAccess ec_Access)
{
    v_SetAccess(ec_Access);
    if (ec_FileAccess == ec_Access)
        return 1;
    CT_Report::sb_Failed(qccz_Source);
    return 0;
}

unsigned CT_WinFile::vn_Read(void* pv_Data, unsigned n_Size)
{
    if (!n_Size)
        return 0;
    if (!b_Turn(e_FileAccessRead))
        return 0;
    DWORD n_Count = 0;
    if (pv_Map)
        n_Count = n_ReadMap(n_Offset, pv_Data, n_Size);
    else if (!ReadFile(h_File, pv_Data, n_Size, &n_Count, nullptr)) {
        CT_Report::sv_System(qccz_Source, co_FullName.qcuz_Get());
        return 0;
    }
    n_Offset += n_Count;
    return n_Count;
}

// Kept: a write of no bytes names its direction and asks the system, unlike a read.
unsigned CT_WinFile::vn_Write(const void* pv_Data, unsigned n_Size)
{
    if (!b_Turn(e_FileAccessWrite))
        return 0;
    DWORD n_Count = 0;
    if (pv_Map) {
        if (!b_WriteMap(n_Offset, pv_Data, n_Size)) {
            CT_Report::sb_Failed(qccz_Source);
            return 0;
        }
        n_Count = n_Size;
    } else if (!WriteFile(h_File, pv_Data, n_Size, &n_Count, nullptr)) {
        CT_Report::sv_System(qccz_Source, co_FullName.qcuz_Get());
        return 0;
    }
    n_Offset += n_Count;
    return n_Count;
}

unsigned CT_WinFile::vn_GetSize() const
{
    if (!b_Open)
        return n_MeasureClosed();
    const DWORD n_Size = GetFileSize(h_File, nullptr);
    if (n_Size != INVALID_FILE_SIZE)
        return n_Size;
    CT_Report::sv_System(qccz_Source, co_FullName.qcuz_Get());
    return 0;
}

// The object is open for the moment only, and as it was afterwards.
unsigned CT_WinFile::n_MeasureClosed() const
{
    CT_WinFile* pco_This = const_cast<CT_WinFile*>(this);
    pco_This->vv_Open(e_AccessRead, e_OpenExisting, e_ShareNone, 1, 0);
    if (!b_Open) {
        CT_Report::sb_Failed(qccz_Source);
        return 0;
    }
    const unsigned n_Size = vn_GetSize();
    pco_This->vv_Close();
    if (!b_Open)
        return n_Size;
    CT_Report::sb_Failed(qccz_Source);
    return 0;
}

unsigned CT_WinFile::vn_GetOffset() const
{
    return n_Offset;
}

void CT_WinFile::vv_SetOffset(et_Origin ec_Origin, int i_Offset)
{
    b_Seek(ec_Origin, i_Offset);
}

// The offset is computed here: in mapped mode the system's pointer isn't where the last transfer
// ended.
int CT_WinFile::b_Seek(et_Origin ec_Origin, int i_Offset)
{
    if (n_ReadEnd && ec_Origin == e_OriginBegin && i_Offset >= 0) {
        n_Pointer = n_Offset = static_cast<unsigned>(i_Offset);
        b_PointerLate = 1;
        return 1;
    }
    if (!b_SettlePointer())
        return 0;
    if (SetFilePointer(h_File, i_Offset, nullptr, ec_Origin) == INVALID_SET_FILE_POINTER) {
        CT_Report::sv_System(qccz_Source, co_FullName.qcuz_Get());
        return 0;
    }
    if (ec_Origin == e_OriginBegin)
        n_Offset = 0;
    else if (ec_Origin == e_OriginEnd) {
        const CT_Report::CT_Since co_Since;
        n_Offset = vn_GetSize();
        co_Since.b_Failed(qccz_Source);
    }
    n_Offset += i_Offset;
    return 1;
}

// Moves the system's pointer to where the last seek went.
int CT_WinFile::b_SettlePointer() const
{
    if (!b_PointerLate)
        return 1;
    b_PointerLate = 0;
    return b_PutPointer(n_Pointer);
}

int CT_WinFile::b_PutPointer(unsigned n_Place) const
{
    if (SetFilePointer(h_File, static_cast<LONG>(n_Place), nullptr, FILE_BEGIN) !=
        INVALID_SET_FILE_POINTER)
        return 1;
    CT_Report::sv_System(qccz_Source, co_FullName.qcuz_Get());
    return 0;
}

int CT_WinFile::vb_IsEof() const
{
    return vn_GetOffset() >= vn_GetSize();
}

// ---- Services on the handle --------------------------------------------------------------------

// Whoever has the handle can ask for the pointer at any time.
HANDLE CT_WinFile::h_GetHandle() const
{
    v_CloseQuiet();
    b_HandleKnown = 1;
    return h_File;
}

void CT_WinFile::v_GetFileInfo(_BY_HANDLE_FILE_INFORMATION* pso_Info)
{
    if (!GetFileInformationByHandle(h_File, pso_Info))
        CT_Report::sv_System(qccz_Source, co_FullName.qcuz_Get());
}

void CT_WinFile::v_LockFile(unsigned n_From, unsigned n_Length)
{
    if (!LockFile(h_File, n_From, 0, n_Length, 0))
        CT_Report::sv_System(qccz_Source, co_FullName.qcuz_Get());
}

void CT_WinFile::v_UnlockFile(unsigned n_From, unsigned n_Length)
{
    if (!UnlockFile(h_File, n_From, 0, n_Length, 0))
        CT_Report::sv_System(qccz_Source, co_FullName.qcuz_Get());
}

void CT_WinFile::v_SetEndOfFile()
{
    if (b_SettlePointer() && !SetEndOfFile(h_File))
        CT_Report::sv_System(qccz_Source, co_FullName.qcuz_Get());
}

void CT_WinFile::sv_SetHandleCount(unsigned n_Count)
{
    SetHandleCount(n_Count);
}
