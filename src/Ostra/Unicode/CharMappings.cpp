// Ostra/Unicode/CharMappings.cpp
#include <Ostra/Unicode/CharMappings.h>

#include <Ostra/String/TextOperations.h>
#include <Ostra/String/UString.h>
#include <Ostra/Unicode/CharProperties.h>
#include <Ostra/Unicode/CharTables.h>

#include <cstring>

using Tables = CT_CharTables;

namespace
{
typedef unsigned short (*pu_Map)(unsigned short);

bool b_IsHighSurrogate(unsigned short u)
{
    const CT_CharProperties::et_UnicodeBlock ec = CT_CharProperties::seo_GetUnicodeBlock(u);
    return ec == CT_CharProperties::HighSurrogates ||
           ec == CT_CharProperties::HighPrivateUseSurrogates;
}

unsigned short su_Base(unsigned short u)
{
    const unsigned short* qcuz_Sequence = Tables::sqcuz_Decomposition(u);
    return *qcuz_Sequence ? *qcuz_Sequence : u;
}

// ---- Strings ----------------------------------------------------------------------------------

// The string's own functions, for a class that has other ones.
void v_MapFrom(CT_UString* pco_Text, unsigned n, unsigned n_Length, pu_Map u_Map)
{
    while (n < n_Length) {
        const unsigned short u = pco_Text->vu_GetAt(n);
        if (b_IsHighSurrogate(u)) {
            n += 2;
            continue;
        }
        const unsigned short u_Mapped = u_Map(u);
        if (u_Mapped != u)
            pco_Text->vv_SetAt(u_Mapped, n);
        ++n;
    }
}

// True if the string's virtual functions are those of CT_UString: an object begins with the address
// of their table.
bool b_IsPlain(const CT_UString* pcco_Text)
{
    const void* pv_Functions;
    const void* pv_Plain;
    std::memcpy(&pv_Functions, static_cast<const void*>(pcco_Text), sizeof(pv_Functions));
    std::memcpy(&pv_Plain, static_cast<const void*>(&CT_UString::sco_Object), sizeof(pv_Plain));
    return pv_Functions == pv_Plain;
}

// Goes from unit n on to the first one that u_Map changes, past high surrogates and the units
// behind them.
template <pu_Map u_Map>
unsigned n_FindChange(const unsigned short* pcu_Text, unsigned n, unsigned n_Length)
{
    while (n < n_Length) {
        if ((pcu_Text[n] & 0xFC00) == 0xD800)
            n += 2;
        else if (u_Map(pcu_Text[n]) != pcu_Text[n])
            break;
        else
            ++n;
    }
    return n;
}

template <pu_Map u_Map>
void v_MapInPlace(unsigned short* pu_Text, unsigned n, unsigned n_Length)
{
    while (n < n_Length) {
        const unsigned short u = pu_Text[n];
        if ((u & 0xFC00) == 0xD800) {
            n += 2;
            continue;
        }
        pu_Text[n++] = u_Map(u);
    }
}

// What v_MapFrom does. Only the first change asks whether the block is shared.
template <pu_Map u_Map>
void v_Map(CT_UString* pco_Text)
{
    const unsigned n_Length = pco_Text->vn_GetLength();
    if (!b_IsPlain(pco_Text)) {
        v_MapFrom(pco_Text, 0, n_Length, u_Map);
        return;
    }
    const unsigned n = n_FindChange<u_Map>(pco_Text->qcuz_Get(), 0, n_Length);
    if (n >= n_Length)
        return;
    pco_Text->vv_SetAt(u_Map(pco_Text->qcuz_Get()[n]), n);
    // No memory for a block of its own: each change is refused by itself.
    if (pco_Text->pcco_GetBuffer()->n_GetUseCount() > 1)
        v_MapFrom(pco_Text, n + 1, n_Length, u_Map);
    else
        v_MapInPlace<u_Map>(const_cast<unsigned short*>(pco_Text->qcuz_Get()), n + 1, n_Length);
}
} // namespace

void CT_CharMappings::sv_MapString(CT_UString* pco_Text, unsigned short (*u_Map)(unsigned short))
{
    v_MapFrom(pco_Text, 0, pco_Text->vn_GetLength(), u_Map);
}

void CT_CharMappings::sv_ToUpper(CT_UString* pco_Text)
{
    v_Map<Tables::su_Map<Tables::e_Upper>>(pco_Text);
}

void CT_CharMappings::sv_ToLower(CT_UString* pco_Text)
{
    v_Map<Tables::su_Map<Tables::e_Lower>>(pco_Text);
}

void CT_CharMappings::sv_ToBase(CT_UString* pco_Text)
{
    v_Map<su_Base>(pco_Text);
}

void CT_CharMappings::sv_FoldDigit(CT_UString* pco_Text)
{
    v_Map<Tables::su_Map<Tables::e_Digit>>(pco_Text);
}

void CT_CharMappings::sv_FoldCZone(CT_UString* pco_Text)
{
    v_Map<Tables::su_Map<Tables::e_CZone>>(pco_Text);
}

void CT_CharMappings::sv_HiraganaToKatakana(CT_UString* pco_Text)
{
    v_Map<Tables::su_Map<Tables::e_Katakana>>(pco_Text);
}

void CT_CharMappings::sv_KatakanaToHiragana(CT_UString* pco_Text)
{
    v_Map<Tables::su_Map<Tables::e_Hiragana>>(pco_Text);
}

// ---- Characters -------------------------------------------------------------------------------

unsigned short CT_CharMappings::su_ToUpper(unsigned short u_Char)
{
    return Tables::su_Map<Tables::e_Upper>(u_Char);
}

unsigned short CT_CharMappings::su_ToLower(unsigned short u_Char)
{
    return Tables::su_Map<Tables::e_Lower>(u_Char);
}

unsigned short CT_CharMappings::su_ToBase(unsigned short u_Char)
{
    return su_Base(u_Char);
}

unsigned short CT_CharMappings::su_FoldDigit(unsigned short u_Char)
{
    return Tables::su_Map<Tables::e_Digit>(u_Char);
}

unsigned short CT_CharMappings::su_FoldCZone(unsigned short u_Char)
{
    return Tables::su_Map<Tables::e_CZone>(u_Char);
}

unsigned short CT_CharMappings::su_HiraganaToKatakana(unsigned short u_Char)
{
    return Tables::su_Map<Tables::e_Katakana>(u_Char);
}

unsigned short CT_CharMappings::su_KatakanaToHiragana(unsigned short u_Char)
{
    return Tables::su_Map<Tables::e_Hiragana>(u_Char);
}

// ---- Decomposition ----------------------------------------------------------------------------

unsigned int CT_CharMappings::sn_Decompose(unsigned short u_Char, CT_UString* pco_Result)
{
    const unsigned short* qcuz_Sequence = Tables::sqcuz_Decomposition(u_Char);
    if (!*qcuz_Sequence)
        return 1;
    if (pco_Result)
        pco_Result->v_Set(qcuz_Sequence);
    return CT_TextOperations<unsigned short>::sn_Length(qcuz_Sequence);
}

void CT_CharMappings::sv_Decompose(const CT_UString* pcco_Source, CT_UString* pco_Result)
{
    if (pcco_Source == pco_Result) {
        sv_Decompose(pco_Result);
        return;
    }
    CT_UString co_Sequence;
    const unsigned n_Length = pcco_Source->vn_GetLength();
    pco_Result->vv_SetLength(0);
    for (unsigned n = 0; n < n_Length; ++n) {
        const unsigned short u = pcco_Source->vu_GetAt(n);
        if (b_IsHighSurrogate(u)) {
            pco_Result->v_Append(u);
            pco_Result->v_Append(pcco_Source->vu_GetAt(++n)); // a zero appends nothing
            continue;
        }
        // Kept: without a decomposition the sequence stays that of a character before, or empty,
        // and is appended all the same.
        sn_Decompose(u, &co_Sequence);
        pco_Result->v_Append(&co_Sequence);
    }
}

void CT_CharMappings::sv_Decompose(CT_UString* pco_Text)
{
    CT_UString co_Result;
    sv_Decompose(pco_Text, &co_Result);
    pco_Text->v_Set(&co_Result);
}
