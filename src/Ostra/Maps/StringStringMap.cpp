// Ostra/Maps/StringStringMap.cpp: a row of pairs of two strings.
#include <Ostra/Maps/StringStringMap.h>

#include <Ostra/Frame/Counts.h>
#include <Ostra/Frame/Report.h>
#include <Ostra/Maps/MapStrings.h>
#include <Ostra/String/StringScanner.h>

#include <algorithm>
#include <cstdlib>

static constexpr char qccz_Source[] = "Ostra/Maps/StringStringMap";

using Bytes = CT_MapText<CT_CString>;
using Units = CT_MapText<CT_UString>;

// ---- Construction ---------------------------------------------------------------------------

CT_StringStringMap::CT_StringStringMap(unsigned n_Growth)
    : co_First(n_Growth, 0),
      co_Second(n_Growth, 0)
{}

CT_StringStringMap::CT_StringStringMap(const CT_StringStringMap* pcco_Map)
{
    v_Init(pcco_Map);
}

CT_StringStringMap::~CT_StringStringMap()
{
    v_Exit();
}

void CT_StringStringMap::v_Set(unsigned n_Growth)
{
    v_Exit();
    v_Init(n_Growth);
}

void CT_StringStringMap::v_Set(const CT_StringStringMap* pcco_Map)
{
    v_Exit();
    v_Init(pcco_Map);
}

void CT_StringStringMap::v_Init(unsigned n_Growth)
{
    co_First.v_SetGrowth(n_Growth);
    co_Second.v_SetGrowth(n_Growth);
}

void CT_StringStringMap::v_Init(const CT_StringStringMap* pcco_Map)
{
    v_Init(pcco_Map->co_First.n_GetGrowth());
    v_AppendFrom(pcco_Map, ALL);
}

void CT_StringStringMap::v_Exit()
{
    CT_MapStrings::sv_RemoveAll(co_First);
    CT_MapStrings::sv_RemoveAll(co_Second);
}

void* CT_StringStringMap::operator new(std::size_t n_Size) noexcept
{
    return CT_Report::spv_New(n_Size, qccz_Source);
}

void CT_StringStringMap::operator delete(void* pv_Object)
{
    std::free(pv_Object);
}

// ---- Access and search ----------------------------------------------------------------------

void CT_StringStringMap::v_GetAt(CT_String** ppco_First, CT_String** ppco_Second,
                                 unsigned n_Index) const
{
    *ppco_First = CT_MapStrings::spco_Get(co_First, n_Index);
    *ppco_Second = CT_MapStrings::spco_Get(co_Second, n_Index);
}

const CT_String* CT_StringStringMap::pcco_Get(const Strings* pcco_Searched,
                                              const Strings* pcco_Answered,
                                              const CT_String* pcco_Key) const
{
    return CT_MapStrings::spco_Get(*pcco_Answered,
                                   CT_MapStrings::sn_Find(*pcco_Searched, pcco_Key));
}

const CT_String* CT_StringStringMap::pcco_GetString1(const CT_String* pcco_Second) const
{
    return pcco_Get(&co_Second, &co_First, pcco_Second);
}

const CT_String* CT_StringStringMap::pcco_GetString1(const char* qccz_Second) const
{
    return pcco_GetString1(Bytes(qccz_Second));
}

const CT_String* CT_StringStringMap::pcco_GetString1(const unsigned short* qcuz_Second) const
{
    return pcco_GetString1(Units(qcuz_Second));
}

const CT_String* CT_StringStringMap::pcco_GetString2(const CT_String* pcco_First) const
{
    return pcco_Get(&co_First, &co_Second, pcco_First);
}

const CT_String* CT_StringStringMap::pcco_GetString2(const char* qccz_First) const
{
    return pcco_GetString2(Bytes(qccz_First));
}

const CT_String* CT_StringStringMap::pcco_GetString2(const unsigned short* qcuz_First) const
{
    return pcco_GetString2(Units(qcuz_First));
}

// ---- Change ---------------------------------------------------------------------------------

void CT_StringStringMap::v_Insert(const CT_String* pcco_First, const CT_String* pcco_Second)
{
    b_Insert(pcco_First, pcco_Second);
}

void CT_StringStringMap::v_Insert(const char* qccz_First, const char* qccz_Second)
{
    b_Insert(Bytes(qccz_First), Bytes(qccz_Second));
}

void CT_StringStringMap::v_Insert(const unsigned short* qcuz_First,
                                  const unsigned short* qcuz_Second)
{
    b_Insert(Units(qcuz_First), Units(qcuz_Second));
}

// Whether the pair is there, in both arrays.
int CT_StringStringMap::b_Insert(const CT_String* pcco_First, const CT_String* pcco_Second)
{
    if (!CT_MapStrings::sb_Insert(co_First, pcco_First))
        return 0;
    if (CT_MapStrings::sb_Insert(co_Second, pcco_Second))
        return 1;
    CT_MapStrings::sv_RemoveAt(co_First, n_GetCount());
    return 0;
}

void CT_StringStringMap::v_Append(CT_StringStringMap* pco_Map, unsigned n_Count)
{
    v_AppendFrom(pco_Map, n_Count);
}

// Stops at a pair that can't be made.
void CT_StringStringMap::v_AppendFrom(const CT_StringStringMap* pcco_Map, unsigned n_Count)
{
    CT_String *pco_First, *pco_Second;
    n_Count = std::min(n_Count, pcco_Map->n_GetCount());
    for (unsigned n = 1; n <= n_Count; ++n) {
        pcco_Map->v_GetAt(&pco_First, &pco_Second, n);
        if (!b_Insert(pco_First, pco_Second))
            return;
    }
}

void CT_StringStringMap::v_RemoveAt(unsigned n_Index)
{
    CT_MapStrings::sv_RemoveAt(co_First, n_Index);
    CT_MapStrings::sv_RemoveAt(co_Second, n_Index);
}

// ---- Flat form ------------------------------------------------------------------------------

void CT_StringStringMap::v_Map2String(CT_String* pco_Out, char c_Inner, char c_Outer) const
{
    CT_String *pco_First, *pco_Second;
    pco_Out->v_Set(0u, 1);
    for (unsigned n = 1; n <= n_GetCount(); ++n) {
        v_GetAt(&pco_First, &pco_Second, n);
        pco_Out->v_Append(pco_First);
        pco_Out->v_Append(c_Inner);
        pco_Out->v_Append(pco_Second);
        pco_Out->v_Append(c_Outer);
    }
}

void CT_StringStringMap::v_String2Map(const CT_String* pcco_In, char c_Inner, char c_Outer)
{
    const CT_UString co_In(pcco_In);
    v_Set(4);
    CT_StringScanner co_Scanner;
    CT_UString co_Row, co_Column1, co_Column2;
    // Kept: rows and columns are counted from 0 while items count from 1. There is no row 0, so no
    // row is ever read.
    for (unsigned n_Row = 0;; ++n_Row) {
        co_Scanner.v_Item(&co_Row, &co_In, CT_MapStrings::su_Separator(c_Outer), n_Row);
        if (!co_Row.vn_GetLength())
            return;
        const unsigned short u_Inner = CT_MapStrings::su_Separator(c_Inner);
        co_Scanner.v_Item(&co_Column1, &co_Row, u_Inner, 0);
        co_Scanner.v_Item(&co_Column2, &co_Row, u_Inner, 1);
        v_Insert(&co_Column1, &co_Column2);
    }
}
