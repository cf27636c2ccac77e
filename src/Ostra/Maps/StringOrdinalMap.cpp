// Ostra/Maps/StringOrdinalMap.cpp: a row of strings, each known by its place.
#include <Ostra/Maps/StringOrdinalMap.h>

#include <Ostra/Frame/Counts.h>
#include <Ostra/Frame/Report.h>
#include <Ostra/Maps/MapStrings.h>
#include <Ostra/String/StringScanner.h>

#include <algorithm>
#include <cstdlib>

static constexpr char qccz_Source[] = "Ostra/Maps/StringOrdinalMap";

using Bytes = CT_MapText<CT_CString>;
using Units = CT_MapText<CT_UString>;

// ---- Construction ---------------------------------------------------------------------------

CT_StringOrdinalMap::CT_StringOrdinalMap(unsigned n_Growth)
    : co_Strings(sizeof(CT_String*), n_Growth, 0)
{}

CT_StringOrdinalMap::CT_StringOrdinalMap(const CT_StringOrdinalMap* pcco_Map)
    : co_Strings(sizeof(CT_String*))
{
    v_Init(pcco_Map);
}

CT_StringOrdinalMap::~CT_StringOrdinalMap()
{
    v_Exit();
}

void CT_StringOrdinalMap::v_Set(unsigned n_Growth)
{
    v_Exit();
    v_Init(n_Growth);
}

void CT_StringOrdinalMap::v_Set(const CT_StringOrdinalMap* pcco_Map)
{
    v_Exit();
    v_Init(pcco_Map);
}

void CT_StringOrdinalMap::v_Init(unsigned n_Growth)
{
    co_Strings.v_SetGrowth(n_Growth);
}

void CT_StringOrdinalMap::v_Init(const CT_StringOrdinalMap* pcco_Map)
{
    v_Init(pcco_Map->co_Strings.n_GetGrowth());
    v_AppendFrom(pcco_Map, ALL);
}

void CT_StringOrdinalMap::v_Exit()
{
    CT_MapStrings::sv_RemoveAll(co_Strings);
}

void* CT_StringOrdinalMap::operator new(std::size_t n_Size) noexcept
{
    return CT_Report::spv_New(n_Size, qccz_Source);
}

void CT_StringOrdinalMap::operator delete(void* pv_Object)
{
    std::free(pv_Object);
}

// ---- Access ---------------------------------------------------------------------------------

const CT_String* CT_StringOrdinalMap::pcco_Get(unsigned n_Index) const
{
    return CT_MapStrings::spco_Get(co_Strings, n_Index);
}

// Kept: the held text behind the pointer asked for, whatever its width.
const char* CT_StringOrdinalMap::qccz_Get(unsigned n_Index) const
{
    return static_cast<const char*>(CT_MapStrings::spcv_GetText(pcco_Get(n_Index)));
}

const unsigned short* CT_StringOrdinalMap::qcuz_Get(unsigned n_Index) const
{
    return static_cast<const unsigned short*>(CT_MapStrings::spcv_GetText(pcco_Get(n_Index)));
}

// ---- Search ---------------------------------------------------------------------------------

unsigned CT_StringOrdinalMap::n_Get(const CT_String* pcco_Text) const
{
    return CT_MapStrings::sn_Find(co_Strings, pcco_Text);
}

unsigned CT_StringOrdinalMap::n_Get(const char* qccz_Text) const
{
    return n_Get(Bytes(qccz_Text));
}

unsigned CT_StringOrdinalMap::n_Get(const unsigned short* qcuz_Text) const
{
    return n_Get(Units(qcuz_Text));
}

// ---- Change ---------------------------------------------------------------------------------

void CT_StringOrdinalMap::v_Insert(const CT_String* pcco_Text)
{
    n_Insert(pcco_Text);
}

void CT_StringOrdinalMap::v_Insert(const char* qccz_Text)
{
    n_Insert(qccz_Text);
}

void CT_StringOrdinalMap::v_Insert(const unsigned short* qcuz_Text)
{
    n_Insert(qcuz_Text);
}

unsigned CT_StringOrdinalMap::n_Insert(const CT_String* pcco_Text)
{
    return CT_MapStrings::sb_Insert(co_Strings, pcco_Text) ? n_GetCount() : 0;
}

unsigned CT_StringOrdinalMap::n_Insert(const char* qccz_Text)
{
    return n_Insert(Bytes(qccz_Text));
}

unsigned CT_StringOrdinalMap::n_Insert(const unsigned short* qcuz_Text)
{
    return n_Insert(Units(qcuz_Text));
}

void CT_StringOrdinalMap::v_Append(CT_StringOrdinalMap* pco_Map, unsigned n_Count)
{
    v_AppendFrom(pco_Map, n_Count);
}

// Stops at an entry that can't be made.
void CT_StringOrdinalMap::v_AppendFrom(const CT_StringOrdinalMap* pcco_Map, unsigned n_Count)
{
    n_Count = std::min(n_Count, pcco_Map->n_GetCount());
    for (unsigned n = 1; n <= n_Count && n_Insert(pcco_Map->pcco_Get(n)); ++n)
        ;
}

void CT_StringOrdinalMap::v_SetAt(const CT_String* pcco_Text, unsigned n_Index)
{
    CT_MapStrings::sv_SetAt(co_Strings, pcco_Text, n_Index);
}

void CT_StringOrdinalMap::v_SetAt(const char* qccz_Text, unsigned n_Index)
{
    v_SetAt(Bytes(qccz_Text), n_Index);
}

void CT_StringOrdinalMap::v_SetAt(const unsigned short* qcuz_Text, unsigned n_Index)
{
    v_SetAt(Units(qcuz_Text), n_Index);
}

void CT_StringOrdinalMap::v_RemoveAt(unsigned n_Index)
{
    CT_MapStrings::sv_RemoveAt(co_Strings, n_Index);
}

// ---- Flat form ------------------------------------------------------------------------------

void CT_StringOrdinalMap::v_Map2String(CT_String* pco_Out, char c_Separator)
{
    pco_Out->v_Set(0u, 1);
    for (unsigned n = 1; n <= n_GetCount(); ++n) {
        pco_Out->v_Append(pcco_Get(n));
        pco_Out->v_Append(c_Separator);
    }
}

// A new string of the class of the text with that item; null if it is empty or can't be made.
static CT_String* pco_NewItem(const CT_String* pcco_In, unsigned short u_Separator, unsigned n_Item)
{
    CT_String* pco_Item = pcco_In->vpco_Create();
    if (!pco_Item)
        return nullptr;
    // Its share in the text goes first, or the item would get a block of the text's size.
    pco_Item->vv_SetSize(0, 0);
    CT_StringScanner().v_Item(pco_Item, pcco_In, u_Separator, n_Item);
    if (pco_Item->vn_GetLength())
        return pco_Item;
    delete pco_Item;
    return nullptr;
}

void CT_StringOrdinalMap::v_String2Map(const CT_String* pcco_In, char c_Separator)
{
    // The text may be one of the map's own.
    CT_String* pco_In = pcco_In->vpco_Create();
    v_Set(8);
    if (!pco_In)
        return;
    const unsigned short u_Separator = CT_MapStrings::su_Separator(c_Separator);
    // Kept: an empty item isn't told from the end.
    for (unsigned n = 1; CT_MapStrings::sb_Take(co_Strings, pco_NewItem(pco_In, u_Separator, n));
         ++n)
        ;
    delete pco_In;
}
