// Ostra/String/UStringText.cpp: what CT_UString does with its text.
#include <Ostra/String/UString.h>

#include <Ostra/Frame/Counts.h>
#include <Ostra/Frame/Report.h>
#include <Ostra/String/Scratch.h>
#include <Ostra/String/StringKind.h>
#include <Ostra/String/TextBuffer.h>
#include <System/String/StringConvert.h>

#include <algorithm>

using Units = CT_TextBuffer<unsigned short>;
using Bytes = CT_TextOperations<char>;

static constexpr auto qccz_Source = Units::SOURCE;

// ---- Replace ----------------------------------------------------------------------------------

void CT_UString::vv_StringReplace(const unsigned short* qcuz_Text, unsigned n_Count,
                                  unsigned n_Offset)
{
    Units::sv_StringReplace(co_Buffer, qcuz_Text, n_Count, n_Offset);
}

void CT_UString::vv_StringReplace(const char* qccz_Text, unsigned n_Count, unsigned n_Offset,
                                  unsigned n_CodePage)
{
    if (!n_Count && !n_Offset)
        CT_UString::vv_SetLength(0);
    else if (unsigned short* pu_To = Units::spc_Prepare(co_Buffer, n_Count, n_Offset)) {
        const int i_Length =
            CT_StringConvert::si_MultiToWide(pu_To, qccz_Text, n_Count, n_CodePage);
        Units::sv_End(co_Buffer, n_Offset + i_Length);
    }
}

void CT_UString::vv_StringReplace(const CT_String* pcco_Text, unsigned n_From, unsigned n_Count,
                                  unsigned n_Offset)
{
    n_Count = n_Within(pcco_Text, n_From, n_Count);
    if (const CT_CString* pcco_Narrow = pcco_Bytes(pcco_Text))
        CT_UString::vv_StringReplace(pcco_Narrow->qccz_Get() + n_From, n_Count, n_Offset,
                                     pcco_Narrow->n_GetCodePage());
    else if (const CT_UString* pcco = pcco_Units(pcco_Text))
        CT_UString::vv_StringReplace(pcco->qcuz_Get() + n_From, n_Count, n_Offset);
}

void CT_UString::vv_Replace(unsigned short u_Fill, unsigned n_Count, unsigned n_Offset)
{
    if (n_Count == ALL || n_Count == ALL - 1)
        n_Count = vn_GetLength();
    // Kept: the zero behind the range lands within a longer text, whose length stays.
    Units::sv_Fill(co_Buffer, u_Fill, n_Count, n_Offset, true);
}

void CT_UString::vv_Replace(char c_Fill, unsigned n_Count, unsigned n_Offset)
{
    if (n_Count == ALL)
        n_Count = vn_GetLength();
    Units::sv_Fill(co_Buffer, CT_StringConvert::sus_MultiToWide(c_Fill, 0), n_Count, n_Offset,
                   false);
}

// ---- Insert -----------------------------------------------------------------------------------

void CT_UString::vv_StringInsert(const unsigned short* qcuz_Text, unsigned n_Count,
                                 unsigned n_Offset)
{
    if (co_Buffer.n_GetUsedSize() || Units::sb_SetEmpty(co_Buffer, std::uint64_t(n_Count) + 1))
        Units::sv_StringInsert(co_Buffer, qcuz_Text, n_Count, n_Offset);
}

void CT_UString::vv_StringInsert(const char* qccz_Text, unsigned n_Count, unsigned n_Offset,
                                 unsigned n_CodePage)
{
    CT_UString co_Text;
    const int i_Length = CT_StringConvert::si_MultiToWide(&co_Text, qccz_Text, n_Count, n_CodePage);
    CT_UString::vv_StringInsert(co_Text.qcuz_Get(), i_Length, n_Offset);
}

void CT_UString::vv_StringInsert(const CT_String* pcco_Text, unsigned n_From, unsigned n_Count,
                                 unsigned n_Offset)
{
    n_Count = n_InText(pcco_Text, n_From, n_Count);
    if (const CT_CString* pcco_Narrow = pcco_Bytes(pcco_Text))
        CT_UString::vv_StringInsert(pcco_Narrow->qccz_Get() + n_From, n_Count, n_Offset,
                                    pcco_Narrow->n_GetCodePage());
    else if (const CT_UString* pcco = pcco_Units(pcco_Text))
        CT_UString::vv_StringInsert(pcco->qcuz_Get() + n_From, n_Count, n_Offset);
}

// ---- Append -----------------------------------------------------------------------------------

void CT_UString::v_Append(unsigned short u_Append)
{
    if (u_Append)
        Units::sv_Append(co_Buffer, u_Append, 2);
}

void CT_UString::v_Append(char c_Append, unsigned n_CodePage)
{
    if (!c_Append)
        return;
    unsigned short au_Units[2];
    CT_StringConvert::si_MultiToWide(au_Units, &c_Append, 1, n_CodePage);
    CT_UString::v_Append(au_Units[0]);
}

void CT_UString::v_Append(const unsigned short* qcuz_Text, unsigned n_Count)
{
    n_Count = Units::Text::sn_CountOf(qcuz_Text, n_Count);
    if (n_Count)
        Units::sv_Append(co_Buffer, qcuz_Text, n_Count);
}

void CT_UString::v_Append(const char* qccz_Text, unsigned n_Count, unsigned n_CodePage)
{
    n_Count = Bytes::sn_CountOf(qccz_Text, n_Count);
    if (!n_Count)
        return;
    const CT_Scratch<unsigned short> co_Units(std::size_t(n_Count) + 1);
    if (!co_Units.pc_Get()) {
        CT_Report::sv_Memory(qccz_Source);
        return;
    }
    CT_StringConvert::si_MultiToWide(co_Units.pc_Get(), qccz_Text, n_Count, n_CodePage);
    // Kept: the count of bytes is appended, also where fewer units came of them.
    CT_UString::v_Append(co_Units.pc_Get(), n_Count);
}

void CT_UString::v_Append(const CT_String* pcco_Text, unsigned n_Count)
{
    n_Count = std::min(n_Count, pcco_Text->vn_GetLength());
    // Kept: code page 0, not that of the source.
    if (const CT_CString* pcco_Narrow = pcco_Bytes(pcco_Text))
        CT_UString::v_Append(pcco_Narrow->qccz_Get(), n_Count, 0);
    else if (const CT_UString* pcco = pcco_Units(pcco_Text))
        CT_UString::v_Append(pcco->qcuz_Get(), n_Count);
}

// ---- Search and comparison ----------------------------------------------------------------

unsigned CT_UString::vn_Find(unsigned short u_Find, unsigned n_From) const
{
    return Units::sn_FindFrom(co_Buffer, u_Find, n_From);
}

unsigned CT_UString::vn_Find(char c_Find, unsigned n_From) const
{
    return Units::sn_FindFrom(co_Buffer, CT_StringConvert::sus_MultiToWide(c_Find, 0), n_From);
}

unsigned CT_UString::vn_Find(const CT_String* pcco_Find, unsigned n_From) const
{
    if (const CT_UString* pcco = pcco_Units(pcco_Find))
        return Units::sn_FindFrom(co_Buffer, pcco->qcuz_Get(), n_From);
    const CT_UString co_Find(pcco_Find);
    return Units::sn_FindFrom(co_Buffer, co_Find.qcuz_Get(), n_From);
}

int CT_UString::b_RMatch(const unsigned short* qcuz_Text, const unsigned short* qcuz_Pattern) const
{
    return Units::Text::sb_Match(qcuz_Text, qcuz_Pattern);
}

int CT_UString::b_Match(const unsigned short* qcuz_Pattern) const
{
    return b_RMatch(Units::spc_Get(co_Buffer), qcuz_Pattern);
}

// A match with a pattern of whatever class; the common one isn't to pay for its frame.
[[gnu::noinline]] static int b_MatchAny(const CT_UString* pcco_Own, const CT_String* pcco_Pattern)
{
    if (const CT_UString* pcco = pcco_Units(pcco_Pattern))
        return pcco_Own->b_Match(pcco->qcuz_Get());
    const CT_UString co_Pattern(pcco_Pattern);
    return pcco_Own->b_Match(co_Pattern.qcuz_Get());
}

int CT_UString::vb_Match(const CT_String* pcco_Pattern) const
{
    if (!b_IsLike(pcco_Pattern, sco_Object))
        return b_MatchAny(this, pcco_Pattern);
    return Units::Text::sb_Match(Units::spc_Get(co_Buffer),
                                 Units::spc_Get(*pcco_Pattern->pcco_GetBuffer()));
}

int CT_UString::vi_Compare(const unsigned short* qcuz_Other, unsigned n_Count,
                           unsigned n_Offset) const
{
    const unsigned short* qcuz_Own = Units::spc_From(co_Buffer, n_Offset);
    return n_Count == ALL ? Units::Text::si_Compare(qcuz_Own, qcuz_Other)
                          : Units::Text::si_Compare(qcuz_Own, qcuz_Other, n_Count);
}

int CT_UString::vi_Compare(const char* qccz_Other, unsigned n_Count, unsigned n_Offset) const
{
    const CT_UString co_Other(qccz_Other, ALL, 0);
    return CT_UString::vi_Compare(co_Other.qcuz_Get(), n_Count, n_Offset);
}

// A comparison from and with whatever there is; the common one isn't to pay for its frame.
[[gnu::noinline]] static int i_CompareAny(const CT_UString* pcco_Own, const CT_String* pcco_Other,
                                          unsigned n_From, unsigned n_Count, unsigned n_Offset)
{
    const CT_Buffer& co_Own = *pcco_Own->pcco_GetBuffer();
    if (const CT_UString* pcco = pcco_Units(pcco_Other))
        return Units::si_Compare(co_Own, n_Offset, *pcco->pcco_GetBuffer(), n_From, n_Count);
    const CT_UString co_Other(pcco_Other);
    return Units::si_Compare(co_Own, n_Offset, *co_Other.pcco_GetBuffer(), n_From, n_Count);
}

int CT_UString::vi_Compare(const CT_String* pcco_Other, unsigned n_From, unsigned n_Count,
                           unsigned n_Offset) const
{
    const CT_Buffer& co_Other = *pcco_Other->pcco_GetBuffer();
    if (n_Count == ALL && !(n_From | n_Offset) && b_IsLike(pcco_Other, sco_Object))
        if (const unsigned n_Known = Units::sn_KnownOfBoth(co_Buffer, co_Other))
            return Units::si_CompareWhole(co_Buffer, co_Other, n_Known);
    return i_CompareAny(this, pcco_Other, n_From, n_Count, n_Offset);
}

// ---- Change -----------------------------------------------------------------------------------

void CT_UString::vv_ToLower()
{
    Units::sv_ToLower(co_Buffer);
}

void CT_UString::vv_ToUpper()
{
    Units::sv_ToUpper(co_Buffer);
}

void CT_UString::vv_Remove(unsigned n_Count, unsigned n_Offset)
{
    Units::sv_Remove(co_Buffer, n_Count, n_Offset);
}

void CT_UString::vv_StripLeft()
{
    Units::sv_StripLeft(co_Buffer);
}

void CT_UString::vv_StripRight()
{
    const unsigned short* qcuz_Text = qcuz_Get();
    unsigned n_End = 0; // where the last run of space began
    unsigned n = 0;
    for (; qcuz_Text[n]; ++n)
        if (!Units::Text::sb_IsSpace(qcuz_Text[n]))
            n_End = n + 1;
    if (n_End == n)
        return;
    // Kept: the block is cut before the string has one of its own.
    Units::sv_CutInPlace(co_Buffer, n_End);
    CT_UString::vv_Update();
}

void CT_UString::vv_Strip(const CT_String* pcco_Set)
{
    if (!pcco_Set) {
        CT_UString::vv_StripLeft();
        CT_UString::vv_StripRight();
        return;
    }
    const CT_UString co_Set(pcco_Set);
    Units::sv_Strip(co_Buffer, co_Set.qcuz_Get());
}

void CT_UString::vv_Translate(const CT_String* pcco_From, const CT_String* pcco_To)
{
    if (!vn_GetLength())
        return;
    const CT_UString co_From(pcco_From);
    const CT_UString co_To(pcco_To);
    Units::sv_Translate(co_Buffer, co_From.qcuz_Get(), co_To.qcuz_Get(), co_To.vn_GetLength());
}

// ---- Formatting -------------------------------------------------------------------------------

void CT_UString::vv_Format(const CT_String* pcco_Format, ...)
{
    va_list args;
    va_start(args, pcco_Format);
    CT_UString::vv_VFormat(pcco_Format, args);
    va_end(args);
}

void CT_UString::vv_Format(const CT_String* pcco_Format, va_list args)
{
    CT_UString::vv_VFormat(pcco_Format, args);
}

void CT_UString::vv_VFormat(const CT_String* pcco_Format, va_list args)
{
    if (const CT_CString* pcco_Narrow = pcco_Bytes(pcco_Format))
        v_Format(pcco_Narrow->qccz_Get(), args);
    else if (const CT_UString* pcco = pcco_Units(pcco_Format))
        v_Format(pcco->qcuz_Get(), args);
}
