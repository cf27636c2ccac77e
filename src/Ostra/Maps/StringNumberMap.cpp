// Ostra/Maps/StringNumberMap.cpp: a row of pairs of a string and a number.
#include <Ostra/Maps/StringNumberMap.h>

#include <Ostra/Frame/Counts.h>
#include <Ostra/Frame/Report.h>
#include <Ostra/Maps/MapStrings.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

static constexpr char qccz_Source[] = "Ostra/Maps/StringNumberMap";

using Bytes = CT_MapText<CT_CString>;
using Units = CT_MapText<CT_UString>;

// ---- Construction ---------------------------------------------------------------------------

CT_StringNumberMap::CT_StringNumberMap(unsigned n_Growth)
    : co_Strings(sizeof(CT_String*), n_Growth, 0),
      co_Numbers(sizeof(unsigned), n_Growth, 0)
{}

CT_StringNumberMap::CT_StringNumberMap(const CT_StringNumberMap* pcco_Map)
    : co_Strings(sizeof(CT_String*)),
      co_Numbers(sizeof(unsigned))
{
    v_Init(pcco_Map);
}

CT_StringNumberMap::~CT_StringNumberMap()
{
    v_Exit();
}

void CT_StringNumberMap::v_Set(unsigned n_Growth)
{
    v_Exit();
    v_Init(n_Growth);
}

void CT_StringNumberMap::v_Set(const CT_StringNumberMap* pcco_Map)
{
    v_Exit();
    v_Init(pcco_Map);
}

void CT_StringNumberMap::v_Init(unsigned n_Growth)
{
    co_Strings.v_SetGrowth(n_Growth);
    co_Numbers.v_SetGrowth(n_Growth);
}

void CT_StringNumberMap::v_Init(const CT_StringNumberMap* pcco_Map)
{
    v_Init(pcco_Map->co_Strings.n_GetGrowth());
    v_AppendFrom(pcco_Map, ALL);
}

void CT_StringNumberMap::v_Exit()
{
    CT_MapStrings::sv_RemoveAll(co_Strings);
    co_Numbers.v_Set(8, 0, 1);
}

void* CT_StringNumberMap::operator new(std::size_t n_Size) noexcept
{
    return CT_Report::spv_New(n_Size, qccz_Source);
}

void CT_StringNumberMap::operator delete(void* pv_Object)
{
    std::free(pv_Object);
}

// ---- Access by index ------------------------------------------------------------------------

unsigned CT_StringNumberMap::n_GetAt(unsigned n_Index) const
{
    unsigned n_Number = 0;
    if (n_Index - 1 < n_GetCount())
        co_Numbers.v_GetAt(&n_Number, static_cast<int>(n_Index));
    return n_Number;
}

const CT_String* CT_StringNumberMap::pcco_GetAt(unsigned n_Index) const
{
    return CT_MapStrings::spco_Get(co_Strings, n_Index);
}

// Kept: the held text behind the pointer asked for, whatever its width.
const char* CT_StringNumberMap::qccz_GetAt(unsigned n_Index) const
{
    return static_cast<const char*>(CT_MapStrings::spcv_GetText(pcco_GetAt(n_Index)));
}

const unsigned short* CT_StringNumberMap::qcuz_GetAt(unsigned n_Index) const
{
    return static_cast<const unsigned short*>(CT_MapStrings::spcv_GetText(pcco_GetAt(n_Index)));
}

// ---- Search ---------------------------------------------------------------------------------

unsigned CT_StringNumberMap::n_Get(const CT_String* pcco_Text) const
{
    // Kept: the 0 of a string that isn't there is no different from a stored one.
    return n_GetAt(CT_MapStrings::sn_Find(co_Strings, pcco_Text));
}

unsigned CT_StringNumberMap::n_Get(const char* qccz_Text) const
{
    return n_Get(Bytes(qccz_Text));
}

unsigned CT_StringNumberMap::n_Get(const unsigned short* qcuz_Text) const
{
    return n_Get(Units(qcuz_Text));
}

const CT_String* CT_StringNumberMap::pcco_Get(unsigned n_Number) const
{
    return pcco_GetAt(co_Numbers.n_Find(&n_Number));
}

const char* CT_StringNumberMap::qccz_Get(unsigned n_Number) const
{
    return qccz_GetAt(co_Numbers.n_Find(&n_Number));
}

const unsigned short* CT_StringNumberMap::qcuz_Get(unsigned n_Number) const
{
    return qcuz_GetAt(co_Numbers.n_Find(&n_Number));
}

// ---- Change ---------------------------------------------------------------------------------

void CT_StringNumberMap::v_Insert(const CT_String* pcco_Text, unsigned n_Number)
{
    b_Insert(pcco_Text, n_Number);
}

void CT_StringNumberMap::v_Insert(const char* qccz_Text, unsigned n_Number)
{
    b_Insert(Bytes(qccz_Text), n_Number);
}

void CT_StringNumberMap::v_Insert(const unsigned short* qcuz_Text, unsigned n_Number)
{
    b_Insert(Units(qcuz_Text), n_Number);
}

// Whether the entry is there, in both arrays.
int CT_StringNumberMap::b_Insert(const CT_String* pcco_Text, unsigned n_Number)
{
    if (!CT_MapStrings::sb_Insert(co_Strings, pcco_Text))
        return 0;
    co_Numbers.v_Insert(&n_Number);
    if (co_Numbers.n_GetCount() == n_GetCount())
        return 1;
    CT_MapStrings::sv_RemoveAt(co_Strings, n_GetCount());
    return 0;
}

void CT_StringNumberMap::v_Append(CT_StringNumberMap* pco_Map, unsigned n_Count)
{
    v_AppendFrom(pco_Map, n_Count);
}

// Stops at an entry that can't be made.
void CT_StringNumberMap::v_AppendFrom(const CT_StringNumberMap* pcco_Map, unsigned n_Count)
{
    n_Count = std::min(n_Count, pcco_Map->n_GetCount());
    for (unsigned n = 1; n <= n_Count && b_Insert(pcco_Map->pcco_GetAt(n), pcco_Map->n_GetAt(n));
         ++n)
        ;
}

void CT_StringNumberMap::v_Update(const CT_String* pcco_Text, unsigned n_Number)
{
    v_SetAt(pcco_Text, co_Numbers.n_Find(&n_Number));
}

void CT_StringNumberMap::v_Update(const char* qccz_Text, unsigned n_Number)
{
    v_Update(Bytes(qccz_Text), n_Number);
}

void CT_StringNumberMap::v_Update(const unsigned short* qcuz_Text, unsigned n_Number)
{
    v_Update(Units(qcuz_Text), n_Number);
}

void CT_StringNumberMap::v_SetAt(const CT_String* pcco_Text, unsigned n_Index)
{
    CT_MapStrings::sv_SetAt(co_Strings, pcco_Text, n_Index);
}

void CT_StringNumberMap::v_SetAt(const char* qccz_Text, unsigned n_Index)
{
    v_SetAt(Bytes(qccz_Text), n_Index);
}

void CT_StringNumberMap::v_SetAt(const unsigned short* qcuz_Text, unsigned n_Index)
{
    v_SetAt(Units(qcuz_Text), n_Index);
}

void CT_StringNumberMap::v_SetAt(unsigned n_Number, unsigned n_Index)
{
    if (n_Index - 1 < n_GetCount())
        co_Numbers.v_SetAt(&n_Number, static_cast<int>(n_Index));
}

void CT_StringNumberMap::v_Remove(unsigned n_Number)
{
    v_RemoveAt(co_Numbers.n_Find(&n_Number));
}

void CT_StringNumberMap::v_RemoveAt(unsigned n_Index)
{
    if (n_Index - 1 >= n_GetCount())
        return;
    CT_MapStrings::sv_RemoveAt(co_Strings, n_Index);
    co_Numbers.v_RemoveAt(n_Index);
}

// ---- Binary form ----------------------------------------------------------------------------

// An entry whole, or nothing of it.
static int b_AppendEntry(CT_Buffer* pco_Out, unsigned n_Number, const CT_Buffer* pcco_Text)
{
    const unsigned n_Used = pco_Out->n_GetUsedSize();
    pco_Out->v_Append(&n_Number, sizeof(n_Number));
    // Kept: the bytes of the string, whatever its class; one without a block adds none.
    pco_Out->v_Append(pcco_Text, 0, ALL);
    if (pco_Out->n_GetUsedSize() - n_Used == sizeof(n_Number) + pcco_Text->n_GetUsedSize())
        return 1;
    pco_Out->v_SetUsedSize(n_Used);
    return 0;
}

void CT_StringNumberMap::v_Map2Buffer(CT_Buffer* pco_Out) const
{
    pco_Out->v_Set(0, ALL, 1);
    for (unsigned n = 1; n <= n_GetCount(); ++n)
        if (!b_AppendEntry(pco_Out, n_GetAt(n), pcco_GetAt(n)->pcco_GetBuffer()))
            return;
}

void CT_StringNumberMap::v_Buffer2Map(const CT_Buffer* pcco_In, int b_Wide)
{
    // The buffer may be that of a string of the map.
    const CT_Buffer co_In(pcco_In);
    v_Set(8);
    if (b_Wide)
        v_Read<CT_UString, unsigned short>(&co_In);
    else
        v_Read<CT_CString, char>(&co_In);
}

// The bytes in front of the terminator, or of what is less than a unit at the end. Nothing is
// aligned.
template <class Unit>
static unsigned n_TextBytes(const char* pcc_Text, unsigned n_Rest)
{
    unsigned n_Bytes = 0;
    for (Unit c; n_Rest - n_Bytes >= sizeof(c); n_Bytes += sizeof(c)) {
        std::memcpy(&c, pcc_Text + n_Bytes, sizeof(c));
        if (!c)
            break;
    }
    return n_Bytes;
}

// A text without terminator ends with the buffer. What is less than a number at the end is none.
template <class String, class Unit>
void CT_StringNumberMap::v_Read(const CT_Buffer* pcco_In)
{
    static constexpr Unit END = 0;
    const char* pcc_At = static_cast<const char*>(pcco_In->qcv_Get());
    unsigned n_Rest = pcco_In->n_GetUsedSize();
    unsigned n_Number;
    while (n_Rest >= sizeof(n_Number)) {
        std::memcpy(&n_Number, pcc_At, sizeof(n_Number));
        pcc_At += sizeof(n_Number);
        n_Rest -= sizeof(n_Number);
        const unsigned n_Bytes = n_TextBytes<Unit>(pcc_At, n_Rest);
        const unsigned n_Size = n_Bytes + sizeof(END);
        CT_Buffer co_Text(n_Size, 32);
        co_Text.v_Append(pcc_At, n_Bytes);
        co_Text.v_Append(&END, sizeof(END));
        const String co_String(&co_Text);
        if (co_Text.n_GetUsedSize() != n_Size || !b_Insert(&co_String, n_Number))
            return;
        pcc_At += n_Size;
        n_Rest -= std::min(n_Size, n_Rest);
    }
}
