// Ostra/String/Compare.h: comparisons for containers.
#pragma once

#include <Ostra/Frame/Export.h>

class CT_CString;
class CT_String;
class CT_UString;

// Comparisons of what containers hold, to be passed as function pointers. A container hands on the
// address of an element, so the element is what the argument points to:
//
//     CT_VoidSortedArray co_Words(sizeof(CT_UString*),
//         reinterpret_cast<int (*)(const void*, const void*)>(CT_Compare::si_CompareUStringPPCO),
//         8, 0);
//
// In a name N is an unsigned and I a signed number, QCZ a text of bytes and QUZ one of units, P a
// pointer to such a one, PPCO a pointer to a pointer to an object. NoCase takes A to Z for a to z
// and no other letters for each other, whatever locale the program sets; a NoCase hash of
// CT_HashFunction agrees on what is equal, but folds up.
//
// Results are below, at or above 0 as the first argument orders before, with or behind the second;
// exact comparisons give -1, 0 or 1, NoCase ones the difference of the folded characters. Bytes are
// unsigned. Pointed-to elements may lie at any address.
//
// Reports: nothing; the forms for CT_String make temporary strings, which report 60006 when the
//          heap is exhausted and then count as empty.
// Caller:  hands no null.
// Threads: any number; converting UTF-7 and UTF-8 one at a time.
class OSTRA_API CT_Compare
{
public:
    // ---- Numbers ----------------------------------------------------------------------------

    static int si_CompareN(unsigned n_Left, unsigned n_Right);
    static int si_ComparePN(const unsigned* pn_Left, const unsigned* pn_Right);
    static int si_CompareI(int i_Left, int i_Right);
    static int si_ComparePI(const int* pi_Left, const int* pi_Right);

    // ---- Texts ------------------------------------------------------------------------------

    static int si_CompareCaseQCZ(const char* qccz_Left, const char* qccz_Right);
    static int si_CompareCasePQCZ(const char* const* pqccz_Left, const char* const* pqccz_Right);
    static int si_CompareNoCaseQCZ(const char* qccz_Left, const char* qccz_Right);
    static int si_CompareNoCasePQCZ(const char* const* pqccz_Left, const char* const* pqccz_Right);
    static int si_CompareCaseQUZ(const unsigned short* qcuz_Left, const unsigned short* qcuz_Right);
    static int si_CompareCasePQUZ(const unsigned short* const* pqcuz_Left,
                                  const unsigned short* const* pqcuz_Right);
    static int si_CompareNoCaseQUZ(const unsigned short* qcuz_Left,
                                   const unsigned short* qcuz_Right);
    static int si_CompareNoCasePQUZ(const unsigned short* const* pqcuz_Left,
                                    const unsigned short* const* pqcuz_Right);

    // ---- Strings ----------------------------------------------------------------------------

    static int si_CompareCStringPPCO(const CT_CString* const* ppcco_Left,
                                     const CT_CString* const* ppcco_Right);
    static int si_CompareCStringNoCasePPCO(const CT_CString* const* ppcco_Left,
                                           const CT_CString* const* ppcco_Right);
    static int si_CompareUStringPPCO(const CT_UString* const* ppcco_Left,
                                     const CT_UString* const* ppcco_Right);
    static int si_CompareUStringNoCasePPCO(const CT_UString* const* ppcco_Left,
                                           const CT_UString* const* ppcco_Right);
    // Strings of either class, by their units: bytes are converted by their string's code page.
    static int si_CompareStringPPCO(const CT_String* const* ppcco_Left,
                                    const CT_String* const* ppcco_Right);
    static int si_CompareStringNoCasePPCO(const CT_String* const* ppcco_Left,
                                          const CT_String* const* ppcco_Right);
};
