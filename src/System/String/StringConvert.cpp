// System/String/StringConvert.cpp: conversion of raw text.
#include <System/String/StringConvert.h>

#include <Ostra/Frame/Counts.h>
#include <Ostra/Frame/Report.h>
#include <Ostra/Frame/SystemText.h>
#include <Ostra/String/TextOperations.h>
#include <System/String/CodePages.h>
#include <System/String/Sources.h>
#include <System/String/UTF.h>

static constexpr auto& qccz_Source = qccz_StringConvertSource;

using Bytes = CT_TextOperations<char>;
using Units = CT_TextOperations<unsigned short>;

// ---- Code pages -------------------------------------------------------------------------------

int CT_StringConvert::si_MultiToWide(unsigned short* pu_Out, const char* qccz_In, unsigned n_Count,
                                     unsigned n_CodePage)
{
    *pu_Out = 0;
    if (!n_Count)
        return 0;
    if (n_CodePage == CT_CodePages::UTF7)
        return si_UTF7ToWide(pu_Out, qccz_In, n_Count);
    if (n_CodePage == CT_CodePages::UTF8)
        return si_UTF8ToWide(pu_Out, qccz_In, n_Count);
    // Kept: the terminator is converted too, and counts.
    if (n_Count == ALL)
        n_Count = Bytes::sn_Length(qccz_In) + 1;
    const int i_Count = static_cast<int>(n_Count);
    const int i_Length = MultiByteToWideChar(CT_CodePages::sn_Valid(n_CodePage), MB_PRECOMPOSED,
                                             qccz_In, i_Count, qcuz_System(pu_Out), i_Count);
    // Kept: one byte that gives a zero unit counts as one without a mapping, also when it is the
    // terminator.
    if (i_Length == 1 && !*pu_Out)
        *pu_Out = '?';
    return i_Length;
}

int CT_StringConvert::si_MultiToWideANSI(unsigned short* pu_Out, const char* qccz_In,
                                         unsigned n_Count)
{
    return si_MultiToWide(pu_Out, qccz_In, n_Count, 0);
}

int CT_StringConvert::si_WideToMulti(char* pc_Out, const unsigned short* qcuz_In, unsigned n_Count,
                                     unsigned n_CodePage, const char* qccz_Default, int* pb_Used)
{
    // Kept: the terminator is converted too, and counts.
    if (n_Count == ALL && !CT_CodePages::sb_IsCoder(n_CodePage))
        n_Count = Units::sn_Length(qcuz_In) + 1;
    return CT_CodePages::si_WideToMulti(pc_Out, std::size_t(n_Count) * 2, qcuz_In, n_Count,
                                        n_CodePage, qccz_Default, pb_Used);
}

int CT_CodePages::si_WideToMulti(char* pc_Out, std::size_t n_Room, const unsigned short* qcuz_In,
                                 unsigned n_Count, unsigned n_CodePage, const char* qccz_Default,
                                 int* pb_Used)
{
    *pc_Out = 0;
    if (!n_Count)
        return 0;
    if (n_CodePage == UTF7)
        return CT_StringConvert::si_WideToUTF7(pc_Out, qcuz_In, n_Count);
    if (n_CodePage == UTF8)
        return CT_StringConvert::si_WideToUTF8(pc_Out, qcuz_In, n_Count);
    const int i_Length = WideCharToMultiByte(sn_Valid(n_CodePage), 0, qcuz_System(qcuz_In),
                                             static_cast<int>(n_Count), pc_Out,
                                             static_cast<int>(n_Room), qccz_Default, pb_Used);
    if (!i_Length)
        CT_Report::sv_System(qccz_Source);
    return i_Length;
}

int CT_StringConvert::si_WideToMultiANSI(char* pc_Out, const unsigned short* qcuz_In,
                                         unsigned n_Count)
{
    return si_WideToMulti(pc_Out, qcuz_In, n_Count, 0, nullptr, nullptr);
}

// ---- Single characters ------------------------------------------------------------------------

unsigned short CT_StringConvert::sus_MultiToWide(char c_In, unsigned n_CodePage)
{
    unsigned short u_Out = 0;
    MultiByteToWideChar(CT_CodePages::sn_Valid(n_CodePage), MB_PRECOMPOSED, &c_In, 1,
                        qcuz_System(&u_Out), 1);
    return u_Out;
}

char CT_StringConvert::sc_WideToMulti(unsigned short u_In, unsigned n_CodePage)
{
    char c_Out;
    const int i_Length = WideCharToMultiByte(CT_CodePages::sn_Valid(n_CodePage), 0,
                                             qcuz_System(&u_In), 1, &c_Out, 1, nullptr, nullptr);
    // A zero for what isn't one byte would cut texts.
    return i_Length ? c_Out : '?';
}

// ---- UTF-7 and UTF-8 --------------------------------------------------------------------------

int CT_StringConvert::si_UTF7ToWide(unsigned short* pu_Out, const char* qccz_In, unsigned n_Count)
{
    *pu_Out = 0;
    if (!n_Count)
        return 0;
    n_Count = Bytes::sn_CountOf(qccz_In, n_Count);
    CT_UTF::sv_UTF7ToWideInit();
    const int i_Length = CT_UTF::si_UTF7ToWide(pu_Out, qccz_In, n_Count);
    pu_Out[i_Length] = 0;
    return i_Length;
}

int CT_StringConvert::si_WideToUTF7(char* pc_Out, const unsigned short* qcuz_In, unsigned n_Count)
{
    *pc_Out = 0;
    if (!n_Count)
        return 0;
    n_Count = Units::sn_CountOf(qcuz_In, n_Count);
    CT_UTF::sv_WideToUTF7Init();
    int i_Length = CT_UTF::si_WideToUTF7(pc_Out, qcuz_In, n_Count);
    i_Length += CT_UTF::si_WideToUTF7Exit(pc_Out + i_Length);
    if (!i_Length)
        CT_Report::sv_System(qccz_Source);
    return i_Length;
}

int CT_StringConvert::si_UTF8ToWide(unsigned short* pu_Out, const char* qccz_In, unsigned n_Count)
{
    *pu_Out = 0;
    if (!n_Count)
        return 0;
    // Kept: a sequence that an earlier text left open goes on, as the decoder isn't reset here.
    return CT_UTF::si_UTF8ToWide(pu_Out, qccz_In, Bytes::sn_CountOf(qccz_In, n_Count));
}

int CT_StringConvert::si_WideToUTF8(char* pc_Out, const unsigned short* qcuz_In, unsigned n_Count)
{
    *pc_Out = 0;
    if (!n_Count)
        return 0;
    const int i_Length =
        CT_UTF::si_WideToUTF8(pc_Out, qcuz_In, Units::sn_CountOf(qcuz_In, n_Count));
    if (!i_Length)
        CT_Report::sv_System(qccz_Source);
    return i_Length;
}
