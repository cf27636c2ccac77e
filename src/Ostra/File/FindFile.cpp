// Ostra/File/FindFile.cpp
#include <Ostra/File/FindFile.h>

#include <Ostra/File/FileSystem.h>
#include <Ostra/File/Road.h>
#include <Ostra/Frame/Counts.h>
#include <Ostra/Frame/Report.h>

#include <windows.h>

#include <cstdlib>
#include <cstring>

static constexpr char qccz_Source[] = "Ostra/File/FindFile";

namespace
{
// Seconds since 1970; -1 for a time that the system doesn't have.
unsigned n_Seconds(const FILETIME& so_Time)
{
    constexpr unsigned long long n_To1970 = 116444736000000000;
    constexpr unsigned long long n_TicksPerSecond = 10000000;
    const unsigned long long n_Ticks =
        static_cast<unsigned long long>(so_Time.dwHighDateTime) << 32 | so_Time.dwLowDateTime;
    return n_Ticks ? static_cast<unsigned>((n_Ticks - n_To1970) / n_TicksPerSecond) : -1;
}

// The record of a road.
template <class t_Wide, class t_Narrow>
auto& so_Record(CT_WideRoad, t_Wide& so_Wide, t_Narrow&)
{
    return so_Wide;
}

template <class t_Wide, class t_Narrow>
auto& so_Record(CT_NarrowRoad, t_Wide&, t_Narrow& so_Narrow)
{
    return so_Narrow;
}

// Takes over what the system found.
void v_Take(auto& so_Record, const auto& so_Found)
{
    static_assert(sizeof(so_Record.au_Name) == sizeof(so_Found.cFileName));
    const unsigned n_Attributes = so_Found.dwFileAttributes;
    // Kept: a normal file has no attributes, so that a filter by attributes doesn't let it pass.
    so_Record.n_Attributes = n_Attributes == FILE_ATTRIBUTE_NORMAL ? 0 : n_Attributes;
    so_Record.n_CreateTime = n_Seconds(so_Found.ftCreationTime);
    so_Record.n_AccessTime = n_Seconds(so_Found.ftLastAccessTime);
    so_Record.n_WriteTime = n_Seconds(so_Found.ftLastWriteTime);
    so_Record.n_Size = so_Found.nFileSizeLow;
    std::memcpy(so_Record.au_Name, so_Found.cFileName, sizeof(so_Found.cFileName));
}
} // namespace

CT_FindFile::CT_FindFile(CT_String* pco_Pattern, unsigned n_IncludeAny, unsigned n_ExcludeAny,
                         int b_Full)
{
    v_Null();
    v_Init(pco_Pattern, n_IncludeAny, n_ExcludeAny, b_Full);
}

void* CT_FindFile::operator new(std::size_t n_Size) noexcept
{
    return CT_Report::spv_New(n_Size, qccz_Source);
}

void CT_FindFile::operator delete(void* pv_Object)
{
    std::free(pv_Object);
}

void CT_FindFile::v_Set(CT_String* pco_Pattern, unsigned n_IncludeAny, unsigned n_ExcludeAny,
                        int b_Full)
{
    co_Directory.vv_SetSize(0, 0);
    co_Pattern.vv_SetSize(0, 0);
    v_Init(pco_Pattern, n_IncludeAny, n_ExcludeAny, b_Full);
}

void CT_FindFile::v_Null()
{
    std::memset(&st_DataU, 0, sizeof(st_DataU));
    std::memset(&st_DataC, 0, sizeof(st_DataC));
    i_Handle = -1;
    n_Include = 0;
    n_Exclude = 0;
    b_FullPath = 0;
}

// Kept: a search that is under way isn't closed, here or anywhere else.
void CT_FindFile::v_Init(CT_String* pco_Pattern, unsigned n_IncludeAny, unsigned n_ExcludeAny,
                         int b_Full)
{
    co_Pattern.v_Set(pco_Pattern);
    n_Include = n_IncludeAny;
    n_Exclude = n_ExcludeAny;
    if (CT_OS::sb_GetIsWindowsNT())
        std::memset(&st_DataU, 0, sizeof(st_DataU));
    else
        std::memset(&st_DataC, 0, sizeof(st_DataC));
    b_FullPath = b_Full;
    i_Handle = -1;
    if (b_FullPath) {
        CT_UString co_Drive;
        CT_UString co_Path;
        CT_FileSystem::sv_SplitPath(&co_Pattern, &co_Drive, &co_Path, nullptr, nullptr);
        CT_FileSystem::sv_MakePath(&co_Directory, &co_Drive, &co_Path, nullptr, nullptr);
    }
}

int CT_FindFile::b_FindFirst(CT_String* pco_Name, unsigned* pn_Attributes)
{
    return b_Step(1) && (b_Accept(pco_Name, pn_Attributes) || b_FindNext(pco_Name, pn_Attributes));
}

int CT_FindFile::b_FindNext(CT_String* pco_Name, unsigned* pn_Attributes)
{
    while (b_Step(0)) {
        if (b_Accept(pco_Name, pn_Attributes))
            return 1;
    }
    return 0;
}

// Starts the search or goes on; true with the entry in the record of the road.
int CT_FindFile::b_Step(int b_First)
{
    return t_OnRoad([=, this](auto o_Road) {
        using t_Road = decltype(o_Road);
        typename t_Road::t_FindData so_Found;
        if (b_First) {
            const typename t_Road::CT_Name co_Name(&co_Pattern);
            const HANDLE h_Search = t_Road::sh_FindFirst(co_Name, &so_Found);
            i_Handle = reinterpret_cast<INT_PTR>(h_Search);
            if (h_Search == INVALID_HANDLE_VALUE)
                return 0;
        } else if (!t_Road::sb_FindNext(reinterpret_cast<HANDLE>(i_Handle), &so_Found))
            return 0;
        v_Take(so_Record(o_Road, st_DataU, st_DataC), so_Found);
        return 1;
    });
}

int CT_FindFile::b_Accept(CT_String* pco_Name, unsigned* pn_Attributes) const
{
    *pn_Attributes = CT_OS::sb_GetIsWindowsNT() ? st_DataU.n_Attributes : st_DataC.n_Attributes;
    if (!b_TestAttribut(*pn_Attributes))
        return 0;
    v_MakeName(pco_Name);
    return 1;
}

int CT_FindFile::b_TestAttribut(unsigned n_Attributes) const
{
    return (!n_Include || n_Attributes & n_Include) && !(n_Attributes & n_Exclude);
}

void CT_FindFile::v_MakeName(CT_String* pco_Name) const
{
    if (b_FullPath)
        pco_Name->v_Set(&co_Directory);
    else
        pco_Name->vv_SetLength(0);
    t_OnRoad([=, this](auto o_Road) {
        pco_Name->v_Append(so_Record(o_Road, st_DataU, st_DataC).au_Name, ALL);
    });
}
