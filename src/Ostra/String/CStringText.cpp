// Ostra/String/CStringText.cpp: what CT_CString does with its text.
#include <Ostra/String/CString.h>

#include <Ostra/Frame/Counts.h>
#include <Ostra/Frame/Report.h>
#include <Ostra/String/Scratch.h>
#include <Ostra/String/StringKind.h>
#include <Ostra/String/TextBuffer.h>
#include <System/String/CodePages.h>
#include <System/String/StringConvert.h>

#include <algorithm>

using Bytes = CT_TextBuffer<char>;
using Units = CT_TextOperations<unsigned short>;

static constexpr auto qccz_Source = Bytes::SOURCE;

// ---- Replace ----------------------------------------------------------------------------------

void CT_CString::vv_StringReplace(const char* qccz_Text, unsigned n_Count, unsigned n_Offset,
                                  unsigned)
{
    Bytes::sv_StringReplace(co_Buffer, qccz_Text, n_Count, n_Offset);
}

void CT_CString::vv_StringReplace(const unsigned short* qcuz_Text, unsigned n_Count,
                                  unsigned n_Offset)
{
    if (!n_Count && !n_Offset) {
        CT_CString::vv_SetLength(0);
        return;
    }
    char* pc_To = Bytes::spc_Prepare(co_Buffer, std::uint64_t(n_Count) * 2, n_Offset);
    if (!pc_To)
        return;
    if (!CT_CodePages::sb_NeedsRoom(n_CodePage)) {
        const int i_Length = CT_StringConvert::si_WideToMulti(pc_To, qcuz_Text, n_Count, n_CodePage,
                                                              nullptr, nullptr);
        Bytes::sv_End(co_Buffer, n_Offset + i_Length);
        return;
    }
    // Others may need more room than that.
    const std::size_t n_Room = CT_CodePages::sn_CodedRoom(n_Count);
    const CT_Scratch<char> co_Coded(n_Room);
    if (!co_Coded.pc_Get()) {
        CT_Report::sv_Memory(qccz_Source);
        return;
    }
    const int i_Length = CT_CodePages::si_WideToMulti(co_Coded.pc_Get(), n_Room, qcuz_Text, n_Count,
                                                      n_CodePage, nullptr, nullptr);
    Bytes::sv_StringReplace(co_Buffer, co_Coded.pc_Get(), i_Length, n_Offset);
}

void CT_CString::vv_StringReplace(const CT_String* pcco_Text, unsigned n_From, unsigned n_Count,
                                  unsigned n_Offset)
{
    n_Count = n_Within(pcco_Text, n_From, n_Count);
    if (const CT_CString* pcco = pcco_Bytes(pcco_Text))
        CT_CString::vv_StringReplace(pcco->qccz_Get() + n_From, n_Count, n_Offset, n_CodePage);
    else if (const CT_UString* pcco_Wide = pcco_Units(pcco_Text))
        CT_CString::vv_StringReplace(pcco_Wide->qcuz_Get() + n_From, n_Count, n_Offset);
}

void CT_CString::vv_Replace(char c_Fill, unsigned n_Count, unsigned n_Offset)
{
    if (n_Count == ALL)
        n_Count = vn_GetLength();
    // Kept: the zero behind the range lands within a longer text, whose length stays.
    Bytes::sv_Fill(co_Buffer, c_Fill, n_Count, n_Offset, true);
}

void CT_CString::vv_Replace(unsigned short u_Fill, unsigned n_Count, unsigned n_Offset)
{
    CT_CString::vv_Replace(CT_StringConvert::sc_WideToMulti(u_Fill, n_CodePage), n_Count, n_Offset);
}

// ---- Insert -----------------------------------------------------------------------------------

void CT_CString::vv_StringInsert(const char* qccz_Text, unsigned n_Count, unsigned n_Offset,
                                 unsigned)
{
    if (co_Buffer.n_GetUsedSize() || Bytes::sb_MakeEmpty(co_Buffer, n_Count))
        Bytes::sv_StringInsert(co_Buffer, qccz_Text, n_Count, n_Offset);
}

void CT_CString::vv_StringInsert(const unsigned short* qcuz_Text, unsigned n_Count,
                                 unsigned n_Offset)
{
    const CT_CString co_Text(qcuz_Text, n_Count, n_CodePage);
    CT_CString::vv_StringInsert(co_Text.qccz_Get(), co_Text.vn_GetLength(), n_Offset, n_CodePage);
}

void CT_CString::vv_StringInsert(const CT_String* pcco_Text, unsigned n_From, unsigned n_Count,
                                 unsigned n_Offset)
{
    n_Count = n_InText(pcco_Text, n_From, n_Count);
    if (const CT_CString* pcco = pcco_Bytes(pcco_Text))
        CT_CString::vv_StringInsert(pcco->qccz_Get() + n_From, n_Count, n_Offset, n_CodePage);
    else if (const CT_UString* pcco_Wide = pcco_Units(pcco_Text))
        CT_CString::vv_StringInsert(pcco_Wide->qcuz_Get() + n_From, n_Count, n_Offset);
}

// ---- Append -----------------------------------------------------------------------------------

void CT_CString::v_Append(char c_Append)
{
    if (c_Append)
        Bytes::sv_Append(co_Buffer, c_Append, 1);
}

void CT_CString::v_Append(unsigned short u_Append)
{
    if (!u_Append)
        return;
    char ac_Bytes[8];
    const int i_Length = CT_CodePages::si_WideToMulti(
        ac_Bytes, CT_CodePages::sn_Room(n_CodePage, 1), &u_Append, 1, n_CodePage, nullptr, nullptr);
    CT_CString::v_Append(ac_Bytes, i_Length);
}

void CT_CString::v_Append(const char* qccz_Text, unsigned n_Count)
{
    n_Count = Bytes::Text::sn_CountOf(qccz_Text, n_Count);
    if (n_Count)
        Bytes::sv_Append(co_Buffer, qccz_Text, n_Count);
}

void CT_CString::v_Append(const unsigned short* qcuz_Text, unsigned n_Count)
{
    n_Count = Units::sn_CountOf(qcuz_Text, n_Count);
    if (!n_Count)
        return;
    const std::size_t n_Room = CT_CodePages::sn_Room(n_CodePage, n_Count);
    const CT_Scratch<char> co_Bytes(n_Room);
    if (!co_Bytes.pc_Get()) {
        CT_Report::sv_Memory(qccz_Source);
        return;
    }
    const int i_Length = CT_CodePages::si_WideToMulti(co_Bytes.pc_Get(), n_Room, qcuz_Text, n_Count,
                                                      n_CodePage, nullptr, nullptr);
    CT_CString::v_Append(co_Bytes.pc_Get(), i_Length);
}

void CT_CString::v_Append(const CT_String* pcco_Text, unsigned n_Count)
{
    n_Count = std::min(n_Count, pcco_Text->vn_GetLength());
    if (const CT_CString* pcco = pcco_Bytes(pcco_Text))
        CT_CString::v_Append(pcco->qccz_Get(), n_Count);
    else if (const CT_UString* pcco_Wide = pcco_Units(pcco_Text))
        CT_CString::v_Append(pcco_Wide->qcuz_Get(), n_Count);
}

// ---- Search and comparison ----------------------------------------------------------------

unsigned CT_CString::vn_Find(char c_Find, unsigned n_From) const
{
    return Bytes::sn_FindFrom(co_Buffer, c_Find, n_From);
}

unsigned CT_CString::vn_Find(unsigned short u_Find, unsigned n_From) const
{
    const CT_CString co_Find(&u_Find, 1, n_CodePage);
    return Bytes::sn_FindFrom(co_Buffer, co_Find.qccz_Get(), n_From);
}

unsigned CT_CString::vn_Find(const CT_String* pcco_Find, unsigned n_From) const
{
    if (const CT_CString* pcco = pcco_Bytes(pcco_Find))
        return Bytes::sn_FindFrom(co_Buffer, pcco->qccz_Get(), n_From);
    const CT_CString co_Find(pcco_Find, n_CodePage);
    return Bytes::sn_FindFrom(co_Buffer, co_Find.qccz_Get(), n_From);
}

int CT_CString::b_RMatch(const char* qccz_Text, const char* qccz_Pattern) const
{
    return Bytes::Text::sb_Match(qccz_Text, qccz_Pattern);
}

int CT_CString::b_Match(const char* qccz_Pattern) const
{
    return b_RMatch(Bytes::spc_Get(co_Buffer), qccz_Pattern);
}

// A match with a pattern of whatever class; the common one isn't to pay for its frame.
[[gnu::noinline]] static int b_MatchAny(const CT_CString* pcco_Own, const CT_String* pcco_Pattern)
{
    if (const CT_CString* pcco = pcco_Bytes(pcco_Pattern))
        return pcco_Own->b_Match(pcco->qccz_Get());
    const CT_CString co_Pattern(pcco_Pattern, pcco_Own->n_GetCodePage());
    return pcco_Own->b_Match(co_Pattern.qccz_Get());
}

int CT_CString::vb_Match(const CT_String* pcco_Pattern) const
{
    if (!b_IsLike(pcco_Pattern, sco_Object))
        return b_MatchAny(this, pcco_Pattern);
    return Bytes::Text::sb_Match(Bytes::spc_Get(co_Buffer),
                                 Bytes::spc_Get(*pcco_Pattern->pcco_GetBuffer()));
}

int CT_CString::vi_Compare(const char* qccz_Other, unsigned n_Count, unsigned n_Offset) const
{
    const char* qccz_Own = Bytes::spc_From(co_Buffer, n_Offset);
    return n_Count == ALL ? Bytes::Text::si_Compare(qccz_Own, qccz_Other)
                          : Bytes::Text::si_Compare(qccz_Own, qccz_Other, n_Count);
}

int CT_CString::vi_Compare(const unsigned short* qcuz_Other, unsigned n_Count,
                           unsigned n_Offset) const
{
    const CT_CString co_Other(qcuz_Other, ALL, n_CodePage);
    return CT_CString::vi_Compare(co_Other.qccz_Get(), n_Count, n_Offset);
}

// A comparison from and with whatever there is; the common one isn't to pay for its frame.
[[gnu::noinline]] static int i_CompareAny(const CT_CString* pcco_Own, const CT_String* pcco_Other,
                                          unsigned n_From, unsigned n_Count, unsigned n_Offset)
{
    const CT_Buffer& co_Own = *pcco_Own->pcco_GetBuffer();
    if (const CT_CString* pcco = pcco_Bytes(pcco_Other))
        return Bytes::si_Compare(co_Own, n_Offset, *pcco->pcco_GetBuffer(), n_From, n_Count);
    const CT_CString co_Other(pcco_Other, pcco_Own->n_GetCodePage());
    return Bytes::si_Compare(co_Own, n_Offset, *co_Other.pcco_GetBuffer(), n_From, n_Count);
}

int CT_CString::vi_Compare(const CT_String* pcco_Other, unsigned n_From, unsigned n_Count,
                           unsigned n_Offset) const
{
    const CT_Buffer& co_Other = *pcco_Other->pcco_GetBuffer();
    if (n_Count == ALL && !(n_From | n_Offset) && b_IsLike(pcco_Other, sco_Object))
        if (const unsigned n_Known = Bytes::sn_KnownOfBoth(co_Buffer, co_Other))
            return Bytes::si_CompareWhole(co_Buffer, co_Other, n_Known);
    return i_CompareAny(this, pcco_Other, n_From, n_Count, n_Offset);
}

// ---- Change -----------------------------------------------------------------------------------

void CT_CString::vv_ToLower()
{
    Bytes::sv_ToLower(co_Buffer);
}

void CT_CString::vv_ToUpper()
{
    Bytes::sv_ToUpper(co_Buffer);
}

void CT_CString::vv_Remove(unsigned n_Count, unsigned n_Offset)
{
    Bytes::sv_Remove(co_Buffer, n_Count, n_Offset);
}

void CT_CString::vv_StripLeft()
{
    Bytes::sv_StripLeft(co_Buffer);
}

void CT_CString::vv_StripRight()
{
    const char* qccz_Text = qccz_Get();
    unsigned n_End = vn_GetLength();
    while (n_End && Bytes::Text::sb_IsSpace(qccz_Text[n_End - 1]))
        --n_End;
    // Kept: the block is cut before the string has one of its own, even where there is nothing to
    // strip.
    Bytes::sv_CutInPlace(co_Buffer, n_End);
    CT_CString::vv_Update();
}

void CT_CString::vv_Strip(const CT_String* pcco_Set)
{
    if (!pcco_Set) {
        CT_CString::vv_StripLeft();
        CT_CString::vv_StripRight();
        return;
    }
    const CT_CString co_Set(pcco_Set, n_CodePage);
    Bytes::sv_Strip(co_Buffer, co_Set.qccz_Get());
}

void CT_CString::vv_Translate(const CT_String* pcco_From, const CT_String* pcco_To)
{
    if (!vn_GetLength())
        return;
    const CT_CString co_From(pcco_From, n_CodePage);
    const CT_CString co_To(pcco_To, n_CodePage);
    Bytes::sv_Translate(co_Buffer, co_From.qccz_Get(), co_To.qccz_Get(), co_To.vn_GetLength());
}

// ---- Formatting -------------------------------------------------------------------------------

void CT_CString::vv_Format(const CT_String* pcco_Format, ...)
{
    va_list args;
    va_start(args, pcco_Format);
    CT_CString::vv_VFormat(pcco_Format, args);
    va_end(args);
}

void CT_CString::vv_Format(const CT_String* pcco_Format, va_list args)
{
    CT_CString::vv_VFormat(pcco_Format, args);
}

void CT_CString::vv_VFormat(const CT_String* pcco_Format, va_list args)
{
    if (const CT_CString* pcco = pcco_Bytes(pcco_Format))
        v_Format(pcco->qccz_Get(), args);
    else if (const CT_UString* pcco_Wide = pcco_Units(pcco_Format))
        v_Format(pcco_Wide->qcuz_Get(), args);
}
