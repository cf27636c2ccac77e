// System/String/StringConvert.h: the one road between 8-bit and wide text.
#pragma once

#include <Ostra/Frame/Export.h>

class CT_CString;
class CT_UString;

// Conversion between the bytes of a code page and UTF-16 units: by the system for its code pages,
// by CT_UTF for 65000 (UTF-7) and 65001 (UTF-8). A code page that the system doesn't have acts as
// 0, its ANSI code page.
//
// Units:   counts are bytes of 8-bit text and units of wide text; results are what was written, in
//          the target's. A count of -1 means up to the terminator: with it for code pages, without
//          it for the two coders.
// Reports: the system's last error, where wide text converts to nothing. The other direction
//          reports nothing.
// Caller:  gives room in raw targets: a unit for each byte and one for the terminator; 2 bytes for
//          each unit in a code page, 3 in UTF-7 and UTF-8, and for UTF-7 three more.
// Threads: UTF-7 and UTF-8 on one thread at a time in the whole process; code pages on any.
class OSTRA_API CT_StringConvert
{
public:
    static constexpr unsigned ALL = 0xFFFFFFFF; // a count: up to the terminator

    // ---- Raw text ---------------------------------------------------------------------------

    // Kept: a single byte that converts to a zero unit gives a question mark, an empty text with a
    // count of -1 too.
    static int si_MultiToWide(unsigned short* pu_Out, const char* qccz_In, unsigned n_Count,
                              unsigned n_CodePage);
    static int si_MultiToWideANSI(unsigned short* pu_Out, const char* qccz_In,
                                  unsigned n_Count = ALL);
    // The default character stands for units that the code page doesn't have, and sets the flag;
    // both may be null.
    static int si_WideToMulti(char* pc_Out, const unsigned short* qcuz_In, unsigned n_Count,
                              unsigned n_CodePage, const char* qccz_Default, int* pb_Used);
    static int si_WideToMultiANSI(char* pc_Out, const unsigned short* qcuz_In,
                                  unsigned n_Count = ALL);

    // One character. A byte without a unit gives any; a unit that isn't one byte, a question mark.
    static unsigned short sus_MultiToWide(char c_In, unsigned n_CodePage);
    static char sc_WideToMulti(unsigned short u_In, unsigned n_CodePage);

    // Each begins anew, and terminates the text.
    static int si_UTF7ToWide(unsigned short* pu_Out, const char* qccz_In, unsigned n_Count = ALL);
    static int si_WideToUTF7(char* pc_Out, const unsigned short* qcuz_In, unsigned n_Count = ALL);
    // Adds no terminator. Kept: goes on with a sequence that an earlier text left open.
    static int si_UTF8ToWide(unsigned short* pu_Out, const char* qccz_In, unsigned n_Count = ALL);
    static int si_WideToUTF8(char* pc_Out, const unsigned short* qcuz_In, unsigned n_Count = ALL);

    // ---- To a string ------------------------------------------------------------------------

    // Kept: the terminator stands behind as many units as there were bytes, not behind the units
    // that came of them.
    static int si_MultiToWide(CT_UString* pco_Out, const char* qccz_In, unsigned n_Count,
                              unsigned n_CodePage);
    static int si_MultiToWideANSI(CT_UString* pco_Out, const char* qccz_In, unsigned n_Count = ALL);
    // The code page of the target is neither asked nor changed. Kept: a count of -1 makes the
    // string one longer than its text.
    static int si_WideToMulti(CT_CString* pco_Out, const unsigned short* qcuz_In, unsigned n_Count,
                              unsigned n_CodePage, const char* qccz_Default, int* pb_Used);
    static int si_WideToMultiANSI(CT_CString* pco_Out, const unsigned short* qcuz_In,
                                  unsigned n_Count = ALL);
    static int si_UTF7ToWide(CT_UString* pco_Out, const char* qccz_In, unsigned n_Count = ALL);
    static int si_WideToUTF7(CT_CString* pco_Out, const unsigned short* qcuz_In,
                             unsigned n_Count = ALL);
    // Kept: writes no terminator into a block that is large enough; vv_Update follows where that
    // counts.
    static int si_UTF8ToWide(CT_UString* pco_Out, const char* qccz_In, unsigned n_Count = ALL);
    static int si_WideToUTF8(CT_CString* pco_Out, const unsigned short* qcuz_In,
                             unsigned n_Count = ALL);

    // ---- From a string, with the terminator for code pages -----------------------------------

    // The whole text, by the page given and not by the string's own.
    static int si_MultiToWide(unsigned short* pu_Out, const CT_CString* pcco_In,
                              unsigned n_CodePage);
    static int si_MultiToWideANSI(unsigned short* pu_Out, const CT_CString* pcco_In);
    static int si_WideToMulti(char* pc_Out, const CT_UString* pcco_In, unsigned n_CodePage,
                              const char* qccz_Default, int* pb_Used);
    static int si_WideToMultiANSI(char* pc_Out, const CT_UString* pcco_In);
    static int si_UTF7ToWide(unsigned short* pu_Out, const CT_CString* pcco_In);
    static int si_WideToUTF7(char* pc_Out, const CT_UString* pcco_In);
    static int si_UTF8ToWide(unsigned short* pu_Out, const CT_CString* pcco_In);
    static int si_WideToUTF8(char* pc_Out, const CT_UString* pcco_In);

    // ---- From string to string, without the terminator ----------------------------------------

    // The same; what is said above of terminators and lengths of string targets holds.
    static int si_MultiToWide(CT_UString* pco_Out, const CT_CString* pcco_In, unsigned n_CodePage);
    static int si_MultiToWideANSI(CT_UString* pco_Out, const CT_CString* pcco_In);
    static int si_WideToMulti(CT_CString* pco_Out, const CT_UString* pcco_In, unsigned n_CodePage,
                              const char* qccz_Default, int* pb_Used);
    static int si_WideToMultiANSI(CT_CString* pco_Out, const CT_UString* pcco_In);
    static int si_UTF7ToWide(CT_UString* pco_Out, const CT_CString* pcco_In);
    static int si_WideToUTF7(CT_CString* pco_Out, const CT_UString* pcco_In);
    static int si_UTF8ToWide(CT_UString* pco_Out, const CT_CString* pcco_In);
    static int si_WideToUTF8(CT_CString* pco_Out, const CT_UString* pcco_In);
};
