// Ostra/String/HashFunction.h: hash functions for containers.
#pragma once

#include <Ostra/Frame/Export.h>

class CT_CString;
class CT_String;
class CT_UString;

// Bucket numbers, from 1 to the size of a table, of what containers hold; to be passed as function
// pointers, as those of CT_Compare are. Names follow the same scheme.
//
// The hash is the shift-and-fold of ELF symbol tables, over bytes or units as unsigned values. The
// values are part of the interface: a text of ASCII characters has the same one in both widths.
// NoCase takes a to z for A to Z and no other letters for each other, whatever locale the program
// sets. Pointed-to elements may lie at any address.
//
// Reports: nothing; the forms for CT_String make temporary strings, which report 60006 when the
//          heap is exhausted and then count as empty.
// Caller:  hands no null, and no size of 0.
// Threads: any number; converting UTF-7 and UTF-8 one at a time.
class OSTRA_API CT_HashFunction
{
public:
    // ---- Texts ------------------------------------------------------------------------------

    static unsigned sn_HashCaseQCZ(const char* qccz_Text, unsigned n_Size);
    static unsigned sn_HashNoCaseQCZ(const char* qccz_Text, unsigned n_Size);
    static unsigned sn_HashCaseQUZ(const unsigned short* qcuz_Text, unsigned n_Size);
    static unsigned sn_HashNoCaseQUZ(const unsigned short* qcuz_Text, unsigned n_Size);

    static unsigned sn_HashCasePQCZ(const char* const* pqccz_Text, unsigned n_Size);
    static unsigned sn_HashNoCasePQCZ(const char* const* pqccz_Text, unsigned n_Size);
    static unsigned sn_HashCasePQUZ(const unsigned short* const* pqcuz_Text, unsigned n_Size);
    static unsigned sn_HashNoCasePQUZ(const unsigned short* const* pqcuz_Text, unsigned n_Size);

    // ---- Strings ----------------------------------------------------------------------------

    static unsigned sn_HashCStringPPCO(const CT_CString* const* ppcco_Text, unsigned n_Size);
    static unsigned sn_HashCStringNoCasePPCO(const CT_CString* const* ppcco_Text, unsigned n_Size);
    static unsigned sn_HashUStringPPCO(const CT_UString* const* ppcco_Text, unsigned n_Size);
    static unsigned sn_HashUStringNoCasePPCO(const CT_UString* const* ppcco_Text, unsigned n_Size);
    // Strings of either class, by their units: bytes are converted by their string's code page.
    static unsigned sn_HashStringPPCO(const CT_String* const* ppcco_Text, unsigned n_Size);
    static unsigned sn_HashStringNoCasePPCO(const CT_String* const* ppcco_Text, unsigned n_Size);
};
