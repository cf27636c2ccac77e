// Ostra/File/WinFileMap.cpp: the mapped mode.
#include <Ostra/File/WinFile.h>

#include <Ostra/File/Sources.h>
#include <Ostra/Frame/Report.h>

#include <windows.h>

#include <algorithm>
#include <cstring>

static constexpr auto& qccz_Source = qccz_WinFileSource;

namespace
{
constexpr unsigned LARGEST_MAP = 0xFFFFFFFE; // one more means the whole file
constexpr unsigned LARGEST_TO_DOUBLE = 0x7FFFFFFF;
constexpr unsigned LARGEST_OFFSET = 0x7FFFFFFF; // of a seek from the beginning
} // namespace

void CT_WinFile::v_SetMapping(int b_Map, unsigned n_Size)
{
    if (!(b_Map ? b_CreateMap(n_Size) : b_LeaveMap(n_Size)))
        CT_Report::sb_Failed(qccz_Source);
}

void CT_WinFile::v_FlushMap()
{
    if (!FlushViewOfFile(pv_Map, 0))
        CT_Report::sv_System(qccz_Source, co_FullName.qcuz_Get());
}

int CT_WinFile::b_CreateMap(unsigned n_Size)
{
    const CT_Report::CT_Since co_Since;
    const unsigned n_FileSize = vn_GetSize();
    if (co_Since.b_Failed(qccz_Source))
        return 0;
    if (!b_Open)
        return b_RefuseMap(ERROR_INVALID_HANDLE);
    const int b_Reader = ec_OpenAccess == e_AccessRead;
    if (b_Reader || n_Size == WHOLE_FILE)
        n_Size = n_FileSize;
    else if (!b_FitMap(&n_Size, n_FileSize))
        return 0;
    n_MapSize = n_Size;
    h_Map = CreateFileMappingA(h_File, nullptr, b_Reader ? PAGE_READONLY : PAGE_READWRITE, 0,
                               n_MapSize, nullptr);
    if (h_Map)
        pv_Map =
            MapViewOfFile(h_Map, b_Reader ? FILE_MAP_READ : FILE_MAP_ALL_ACCESS, 0, 0, n_MapSize);
    if (h_Map && pv_Map) {
        v_OpenQuiet();
        return 1;
    }
    CT_Report::sv_System(qccz_Source, co_FullName.qcuz_Get());
    return 0;
}

// From here on the view is all that transfers and seeks need, unless somebody has the handle.
void CT_WinFile::v_OpenQuiet()
{
    b_ViewKnown = 0;
    if (b_HandleKnown)
        return;
    n_ReadEnd = std::min(n_MapSize, LARGEST_OFFSET + 1);
    n_WriteEnd = ec_OpenAccess == e_AccessRead ? 0 : n_ReadEnd;
}

void CT_WinFile::v_CloseQuiet() const
{
    n_ReadEnd = 0;
    n_WriteEnd = 0;
    b_SettlePointer();
}

// Whoever has the view can change its bytes at any time.
void* CT_WinFile::pv_GetMapping() const
{
    b_ViewKnown = 1;
    return pv_Map;
}

// Doubles the size of a writer's map until it is larger than the file. A size of 0 never becomes
// so, and one of more than 32 bits can't be: both are refused.
int CT_WinFile::b_FitMap(unsigned* pn_Size, unsigned n_FileSize) const
{
    while (*pn_Size <= n_FileSize) {
        if (!*pn_Size)
            return b_RefuseMap(ERROR_INVALID_PARAMETER);
        if (*pn_Size > LARGEST_TO_DOUBLE)
            return b_RefuseMap(ERROR_NOT_ENOUGH_MEMORY);
        *pn_Size *= 2;
    }
    return 1;
}

// Reports what the system isn't asked for.
int CT_WinFile::b_RefuseMap(unsigned n_Error, unsigned n_Line) const
{
    SetLastError(n_Error);
    CT_Report::sv_System(qccz_Source, co_FullName.qcuz_Get(), n_Line);
    return 0;
}

int CT_WinFile::b_CloseMap(unsigned n_Size)
{
    const CT_Report::CT_Since co_Since;
    v_CloseQuiet();
    if (!UnmapViewOfFile(pv_Map))
        CT_Report::sv_System(qccz_Source, co_FullName.qcuz_Get());
    pv_Map = nullptr;
    if (!CloseHandle(h_Map))
        CT_Report::sv_System(qccz_Source, co_FullName.qcuz_Get());
    h_Map = nullptr;
    if (ec_OpenAccess == e_AccessRead || !n_Size)
        return !co_Since.b_HasFailed();
    // Where the pointer could not be set nothing is cut.
    if (b_Seek(e_OriginBegin, static_cast<int>(n_Size)))
        v_SetEndOfFile();
    return !co_Since.b_Failed(qccz_Source);
}

// Transfers go on at the offset: where nothing is cut, the system's pointer isn't there yet.
int CT_WinFile::b_LeaveMap(unsigned n_Size)
{
    const bool b_Stays = pv_Map && (ec_OpenAccess == e_AccessRead || !n_Size);
    const int b_Closed = b_CloseMap(n_Size);
    return (!b_Stays || b_PutPointer(n_Offset)) && b_Closed;
}

unsigned CT_WinFile::n_ReadMap(unsigned n_From, void* pv_Data, unsigned n_Size)
{
    if (n_From >= n_MapSize)
        return 0;
    if (n_Size > n_MapSize - n_From)
        n_Size = n_MapSize - n_From;
    std::memmove(pv_Data, static_cast<const char*>(pv_Map) + n_From, n_Size);
    return n_Size;
}

int CT_WinFile::b_WriteMap(unsigned n_From, const void* pv_Data, unsigned n_Size)
{
    const unsigned long long n_End = static_cast<unsigned long long>(n_From) + n_Size;
    if (ec_OpenAccess == e_AccessRead)
        return b_RefuseMap(ERROR_ACCESS_DENIED);
    if (n_End > n_MapSize && !b_GrowMap(n_MapSize + 1ULL))
        return 0;
    // Kept: the map grows once. A write that needs more than twice the map is refused.
    if (n_End > n_MapSize)
        return b_RefuseMap(ERROR_NOT_ENOUGH_MEMORY);
    if (n_Size) // NOLINTNEXTLINE(clang-analyzer-core.NonNullParamChecker): a size has a map
        std::memmove(static_cast<char*>(pv_Map) + n_From, pv_Data, n_Size);
    return 1;
}

// Doubles the map until it has that many bytes, if it can.
int CT_WinFile::b_GrowMap(unsigned long long n_End)
{
    const unsigned n_OldSize = n_MapSize;
    unsigned long long n_Size = n_OldSize;
    while (n_Size < n_End)
        n_Size *= 2;
    if (n_Size > LARGEST_MAP)
        return b_RefuseMap(ERROR_NOT_ENOUGH_MEMORY);
    if (b_CloseMap(0) && b_CreateMap(static_cast<unsigned>(n_Size)))
        return 1;
    CT_Report::sb_Failed(qccz_Source);
    v_RestoreMap(n_OldSize);
    return 0;
}

// Makes the map as it was before a growth that has failed; where that fails as well the file goes
// on without one.
void CT_WinFile::v_RestoreMap(unsigned n_Size)
{
    const DWORD n_Place = SetFilePointer(h_File, 0, nullptr, FILE_CURRENT);
    if (h_Map && CloseHandle(h_Map))
        h_Map = nullptr;
    // The file has grown if only the view was refused.
    if (GetFileSize(h_File, nullptr) != n_Size && b_PutPointer(n_Size))
        v_SetEndOfFile();
    b_PutPointer(b_CreateMap(WHOLE_FILE) ? n_Place : n_Offset);
}
