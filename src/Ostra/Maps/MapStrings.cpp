// Ostra/Maps/MapStrings.cpp
#include <Ostra/Maps/MapStrings.h>

#include <Ostra/Frame/Counts.h>
#include <System/String/StringConvert.h>

#include <cstring>

// Behind the block's header pointers aren't aligned.
static CT_String* pco_At(const CT_VoidArray& co_Array, unsigned n_Offset)
{
    const char* pcc_Items = static_cast<const char*>(co_Array.pcco_GetBuffer()->qcv_Get());
    CT_String* pco_Text;
    std::memcpy(&pco_Text, pcc_Items + std::size_t(n_Offset) * sizeof(pco_Text), sizeof(pco_Text));
    return pco_Text;
}

// ---- Access and search ----------------------------------------------------------------------

CT_String* CT_MapStrings::spco_Get(const CT_VoidArray& co_Array, unsigned n_Index)
{
    return n_Index - 1 < co_Array.n_GetCount() ? pco_At(co_Array, n_Index - 1) : nullptr;
}

unsigned CT_MapStrings::sn_Find(const CT_VoidArray& co_Array, const CT_String* pcco_Key)
{
    if (!pcco_Key)
        return 0;
    const unsigned n_Count = co_Array.n_GetCount();
    for (unsigned n_At = 0; n_At < n_Count; ++n_At)
        if (!pco_At(co_Array, n_At)->vi_Compare(pcco_Key, 0, ALL, 0))
            return n_At + 1;
    return 0;
}

const void* CT_MapStrings::spcv_GetText(const CT_String* pcco_Text)
{
    static constexpr unsigned short auz_Empty[] = {0, 0};
    return pcco_Text && pcco_Text->vn_GetLength() ? pcco_Text->pcco_GetBuffer()->qcv_Get()
                                                  : auz_Empty;
}

// ---- Change ---------------------------------------------------------------------------------

int CT_MapStrings::sb_Insert(CT_VoidArray& co_Array, const CT_String* pcco_Text)
{
    return pcco_Text && sb_Take(co_Array, pcco_Text->vpco_Create());
}

int CT_MapStrings::sb_Take(CT_VoidArray& co_Array, CT_String* pco_Text)
{
    if (!pco_Text)
        return 0;
    const unsigned n_Count = co_Array.n_GetCount();
    co_Array.v_Insert(&pco_Text);
    if (co_Array.n_GetCount() != n_Count)
        return 1;
    delete pco_Text;
    return 0;
}

void CT_MapStrings::sv_SetAt(CT_VoidArray& co_Array, const CT_String* pcco_Text, unsigned n_Index)
{
    CT_String* pco_Text = spco_Get(co_Array, n_Index);
    if (pco_Text && pcco_Text && pco_Text != pcco_Text)
        pco_Text->v_Set(pcco_Text);
}

void CT_MapStrings::sv_RemoveAt(CT_VoidArray& co_Array, unsigned n_Index)
{
    CT_String* pco_Text = spco_Get(co_Array, n_Index);
    if (!pco_Text)
        return;
    co_Array.v_RemoveAt(n_Index);
    delete pco_Text;
}

void CT_MapStrings::sv_RemoveAll(CT_VoidArray& co_Array)
{
    const unsigned n_Count = co_Array.n_GetCount();
    for (unsigned n_At = 0; n_At < n_Count; ++n_At)
        delete pco_At(co_Array, n_At);
    co_Array.v_Set(8, 0, 1);
}

unsigned short CT_MapStrings::su_Separator(char c_Separator)
{
    return CT_StringConvert::sus_MultiToWide(c_Separator, 0);
}
