// System/String/StringConvertString.cpp: conversion of string objects.
#include <System/String/StringConvert.h>

#include <Ostra/Frame/Counts.h>
#include <Ostra/Frame/Report.h>
#include <Ostra/String/CString.h>
#include <Ostra/String/Scratch.h>
#include <Ostra/String/TextBuffer.h>
#include <Ostra/String/UString.h>
#include <System/String/CodePages.h>
#include <System/String/Sources.h>
#include <System/String/UTF.h>

#include <cstring>

static constexpr auto& qccz_Source = qccz_StringConvertSource;

using Bytes = CT_TextBuffer<char>;
using Units = CT_TextBuffer<unsigned short>;

// Lets f_Convert write into n_Bytes of the buffer, and ends the text at the length that it gives.
template <class t_Text, class t_Convert>
static int i_Fill(CT_Buffer& co_Buffer, std::uint64_t n_Bytes, t_Convert f_Convert)
{
    auto* p_Out = t_Text::spc_Target(co_Buffer, n_Bytes);
    if (!p_Out)
        return 0;
    const int i_Length = f_Convert(p_Out);
    t_Text::sv_End(co_Buffer, i_Length);
    return i_Length;
}

// Codes into the buffer, which has the room that serves most code pages: others need more.
static int i_Code(CT_Buffer& co_Buffer, const unsigned short* qcuz_In, unsigned n_Count,
                  unsigned n_CodePage, const char* qccz_Default, int* pb_Used)
{
    const std::size_t n_Room = CT_CodePages::sn_CodedRoom(n_Count);
    const CT_Scratch<char> co_Coded(n_Room);
    if (!co_Coded.pc_Get()) {
        CT_Report::sv_Memory(qccz_Source);
        return 0;
    }
    const int i_Length = CT_CodePages::si_WideToMulti(co_Coded.pc_Get(), n_Room, qcuz_In, n_Count,
                                                      n_CodePage, qccz_Default, pb_Used);
    return i_Fill<Bytes>(co_Buffer, std::uint64_t(i_Length) + 1, [&](char* pc_Out) {
        std::memcpy(pc_Out, co_Coded.pc_Get(), i_Length);
        return i_Length;
    });
}

// ---- To a string ------------------------------------------------------------------------------

int CT_StringConvert::si_MultiToWide(CT_UString* pco_Out, const char* qccz_In, unsigned n_Count,
                                     unsigned n_CodePage)
{
    n_Count = Bytes::Text::sn_CountOf(qccz_In, n_Count);
    CT_Buffer& co_Buffer = pco_Out->co_Buffer;
    unsigned short* pu_Out = Units::spc_Target(co_Buffer, std::uint64_t(n_Count) * 2 + 2);
    if (!pu_Out)
        return 0;
    const int i_Length = si_MultiToWide(pu_Out, qccz_In, n_Count, n_CodePage);
    // Kept: behind the count of bytes. Where fewer units came of them, the string doesn't end in a
    // zero.
    pu_Out[n_Count] = 0;
    co_Buffer.v_SetUsedSize(2 * i_Length + 2);
    return i_Length;
}

int CT_StringConvert::si_MultiToWideANSI(CT_UString* pco_Out, const char* qccz_In, unsigned n_Count)
{
    return si_MultiToWide(pco_Out, qccz_In, n_Count, 0);
}

int CT_StringConvert::si_WideToMulti(CT_CString* pco_Out, const unsigned short* qcuz_In,
                                     unsigned n_Count, unsigned n_CodePage,
                                     const char* qccz_Default, int* pb_Used)
{
    // Kept: the terminator counts, so that the string is one longer than its text.
    if (n_Count == ALL)
        n_Count = Units::Text::sn_Length(qcuz_In) + 1;
    CT_Buffer& co_Buffer = pco_Out->co_Buffer;
    char* pc_Out = Bytes::spc_Target(co_Buffer, std::uint64_t(n_Count) * 2 + 2);
    if (!pc_Out)
        return 0;
    if (CT_CodePages::sb_NeedsRoom(n_CodePage))
        return i_Code(co_Buffer, qcuz_In, n_Count, n_CodePage, qccz_Default, pb_Used);
    const int i_Length =
        si_WideToMulti(pc_Out, qcuz_In, n_Count, n_CodePage, qccz_Default, pb_Used);
    Bytes::sv_End(co_Buffer, i_Length);
    return i_Length;
}

int CT_StringConvert::si_WideToMultiANSI(CT_CString* pco_Out, const unsigned short* qcuz_In,
                                         unsigned n_Count)
{
    return si_WideToMulti(pco_Out, qcuz_In, n_Count, 0, nullptr, nullptr);
}

int CT_StringConvert::si_UTF7ToWide(CT_UString* pco_Out, const char* qccz_In, unsigned n_Count)
{
    n_Count = Bytes::Text::sn_CountOf(qccz_In, n_Count);
    return i_Fill<Units>(
        pco_Out->co_Buffer, std::uint64_t(n_Count) * 2 + 2,
        [=](unsigned short* pu_Out) { return si_UTF7ToWide(pu_Out, qccz_In, n_Count); });
}

int CT_StringConvert::si_WideToUTF7(CT_CString* pco_Out, const unsigned short* qcuz_In,
                                    unsigned n_Count)
{
    n_Count = Units::Text::sn_CountOf(qcuz_In, n_Count);
    return i_Fill<Bytes>(pco_Out->co_Buffer, CT_CodePages::sn_CodedRoom(n_Count),
                         [=](char* pc_Out) { return si_WideToUTF7(pc_Out, qcuz_In, n_Count); });
}

int CT_StringConvert::si_UTF8ToWide(CT_UString* pco_Out, const char* qccz_In, unsigned n_Count)
{
    n_Count = Bytes::Text::sn_CountOf(qccz_In, n_Count);
    CT_Buffer& co_Buffer = pco_Out->co_Buffer;
    const std::uint64_t n_Bytes = std::uint64_t(n_Count) * 2 + 2;
    // Where the block keeps what it held; there is nothing to keep in a block that is made now.
    const unsigned n_Held = n_Bytes > co_Buffer.n_GetMaximumSize() ? 0
                            : co_Buffer.n_GetUseCount() > 1        ? co_Buffer.n_GetUsedSize()
                                                                   : co_Buffer.n_GetMaximumSize();
    unsigned short* pu_Out = Units::spc_Target(co_Buffer, n_Bytes);
    if (!pu_Out)
        return 0;
    const int i_Length = si_UTF8ToWide(pu_Out, qccz_In, n_Count);
    // Kept: no terminator is written over what the block held.
    if (2u * i_Length + 2 > n_Held)
        pu_Out[i_Length] = 0;
    co_Buffer.v_SetUsedSize(2 * i_Length + 2);
    return i_Length;
}

int CT_StringConvert::si_WideToUTF8(CT_CString* pco_Out, const unsigned short* qcuz_In,
                                    unsigned n_Count)
{
    n_Count = Units::Text::sn_CountOf(qcuz_In, n_Count);
    return i_Fill<Bytes>(pco_Out->co_Buffer, std::uint64_t(n_Count) * 3 + 1,
                         [=](char* pc_Out) { return si_WideToUTF8(pc_Out, qcuz_In, n_Count); });
}

// ---- From a string ------------------------------------------------------------------------

int CT_StringConvert::si_MultiToWide(unsigned short* pu_Out, const CT_CString* pcco_In,
                                     unsigned n_CodePage)
{
    return si_MultiToWide(pu_Out, pcco_In->qccz_Get(), pcco_In->vn_GetLength() + 1, n_CodePage);
}

int CT_StringConvert::si_MultiToWideANSI(unsigned short* pu_Out, const CT_CString* pcco_In)
{
    return si_MultiToWide(pu_Out, pcco_In, 0);
}

int CT_StringConvert::si_WideToMulti(char* pc_Out, const CT_UString* pcco_In, unsigned n_CodePage,
                                     const char* qccz_Default, int* pb_Used)
{
    return si_WideToMulti(pc_Out, pcco_In->qcuz_Get(), pcco_In->vn_GetLength() + 1, n_CodePage,
                          qccz_Default, pb_Used);
}

int CT_StringConvert::si_WideToMultiANSI(char* pc_Out, const CT_UString* pcco_In)
{
    return si_WideToMulti(pc_Out, pcco_In, 0, nullptr, nullptr);
}

int CT_StringConvert::si_UTF7ToWide(unsigned short* pu_Out, const CT_CString* pcco_In)
{
    return si_UTF7ToWide(pu_Out, pcco_In->qccz_Get(), pcco_In->vn_GetLength());
}

int CT_StringConvert::si_WideToUTF7(char* pc_Out, const CT_UString* pcco_In)
{
    return si_WideToUTF7(pc_Out, pcco_In->qcuz_Get(), pcco_In->vn_GetLength());
}

int CT_StringConvert::si_UTF8ToWide(unsigned short* pu_Out, const CT_CString* pcco_In)
{
    return si_UTF8ToWide(pu_Out, pcco_In->qccz_Get(), pcco_In->vn_GetLength());
}

int CT_StringConvert::si_WideToUTF8(char* pc_Out, const CT_UString* pcco_In)
{
    return si_WideToUTF8(pc_Out, pcco_In->qcuz_Get(), pcco_In->vn_GetLength());
}

// ---- From string to string ----------------------------------------------------------------

int CT_StringConvert::si_MultiToWide(CT_UString* pco_Out, const CT_CString* pcco_In,
                                     unsigned n_CodePage)
{
    return si_MultiToWide(pco_Out, pcco_In->qccz_Get(), pcco_In->vn_GetLength(), n_CodePage);
}

int CT_StringConvert::si_MultiToWideANSI(CT_UString* pco_Out, const CT_CString* pcco_In)
{
    return si_MultiToWide(pco_Out, pcco_In, 0);
}

int CT_StringConvert::si_WideToMulti(CT_CString* pco_Out, const CT_UString* pcco_In,
                                     unsigned n_CodePage, const char* qccz_Default, int* pb_Used)
{
    return si_WideToMulti(pco_Out, pcco_In->qcuz_Get(), pcco_In->vn_GetLength(), n_CodePage,
                          qccz_Default, pb_Used);
}

int CT_StringConvert::si_WideToMultiANSI(CT_CString* pco_Out, const CT_UString* pcco_In)
{
    return si_WideToMulti(pco_Out, pcco_In, 0, nullptr, nullptr);
}

int CT_StringConvert::si_UTF7ToWide(CT_UString* pco_Out, const CT_CString* pcco_In)
{
    return si_UTF7ToWide(pco_Out, pcco_In->qccz_Get(), pcco_In->vn_GetLength());
}

int CT_StringConvert::si_WideToUTF7(CT_CString* pco_Out, const CT_UString* pcco_In)
{
    return si_WideToUTF7(pco_Out, pcco_In->qcuz_Get(), pcco_In->vn_GetLength());
}

int CT_StringConvert::si_UTF8ToWide(CT_UString* pco_Out, const CT_CString* pcco_In)
{
    return si_UTF8ToWide(pco_Out, pcco_In->qccz_Get(), pcco_In->vn_GetLength());
}

int CT_StringConvert::si_WideToUTF8(CT_CString* pco_Out, const CT_UString* pcco_In)
{
    return si_WideToUTF8(pco_Out, pcco_In->qcuz_Get(), pcco_In->vn_GetLength());
}
