// Ostra/String/HashFunction.cpp
#include <Ostra/String/HashFunction.h>

#include <Ostra/String/Element.h>
#include <Ostra/String/TextOperations.h>

namespace
{
template <class Unit>
struct CT_Exact
{
    static unsigned sn_Value(Unit c) { return typename CT_TextOperations<Unit>::Value(c); }
};

template <class Unit>
struct CT_Folded
{
    static unsigned sn_Value(Unit c) { return CT_TextOperations<Unit>::su_Upper(c); }
};

// The four bits that each step shifts out are folded back in; 28 bits remain.
template <template <class> class Fold, class Unit>
unsigned n_Bucket(const Unit* qc_Text, unsigned n_Size)
{
    unsigned n_Hash = 0;
    for (; *qc_Text; ++qc_Text) {
        n_Hash = 16 * n_Hash + Fold<Unit>::sn_Value(*qc_Text);
        n_Hash = (n_Hash ^ (n_Hash >> 28 << 4)) & 0x0FFFFFFF;
    }
    return n_Hash % n_Size + 1;
}
} // namespace

// ---- Texts ------------------------------------------------------------------------------------

unsigned CT_HashFunction::sn_HashCaseQCZ(const char* qccz_Text, unsigned n_Size)
{
    return n_Bucket<CT_Exact>(qccz_Text, n_Size);
}

unsigned CT_HashFunction::sn_HashNoCaseQCZ(const char* qccz_Text, unsigned n_Size)
{
    return n_Bucket<CT_Folded>(qccz_Text, n_Size);
}

unsigned CT_HashFunction::sn_HashCaseQUZ(const unsigned short* qcuz_Text, unsigned n_Size)
{
    return n_Bucket<CT_Exact>(qcuz_Text, n_Size);
}

unsigned CT_HashFunction::sn_HashNoCaseQUZ(const unsigned short* qcuz_Text, unsigned n_Size)
{
    return n_Bucket<CT_Folded>(qcuz_Text, n_Size);
}

unsigned CT_HashFunction::sn_HashCasePQCZ(const char* const* pqccz_Text, unsigned n_Size)
{
    return sn_HashCaseQCZ(t_Element(pqccz_Text), n_Size);
}

unsigned CT_HashFunction::sn_HashNoCasePQCZ(const char* const* pqccz_Text, unsigned n_Size)
{
    return sn_HashNoCaseQCZ(t_Element(pqccz_Text), n_Size);
}

unsigned CT_HashFunction::sn_HashCasePQUZ(const unsigned short* const* pqcuz_Text, unsigned n_Size)
{
    return sn_HashCaseQUZ(t_Element(pqcuz_Text), n_Size);
}

unsigned CT_HashFunction::sn_HashNoCasePQUZ(const unsigned short* const* pqcuz_Text,
                                            unsigned n_Size)
{
    return sn_HashNoCaseQUZ(t_Element(pqcuz_Text), n_Size);
}

// ---- Strings ----------------------------------------------------------------------------------

unsigned CT_HashFunction::sn_HashCStringPPCO(const CT_CString* const* ppcco_Text, unsigned n_Size)
{
    return sn_HashCaseQCZ(t_Element(ppcco_Text)->qccz_Get(), n_Size);
}

unsigned CT_HashFunction::sn_HashCStringNoCasePPCO(const CT_CString* const* ppcco_Text,
                                                   unsigned n_Size)
{
    return sn_HashNoCaseQCZ(t_Element(ppcco_Text)->qccz_Get(), n_Size);
}

unsigned CT_HashFunction::sn_HashUStringPPCO(const CT_UString* const* ppcco_Text, unsigned n_Size)
{
    return sn_HashCaseQUZ(t_Element(ppcco_Text)->qcuz_Get(), n_Size);
}

unsigned CT_HashFunction::sn_HashUStringNoCasePPCO(const CT_UString* const* ppcco_Text,
                                                   unsigned n_Size)
{
    return sn_HashNoCaseQUZ(t_Element(ppcco_Text)->qcuz_Get(), n_Size);
}

unsigned CT_HashFunction::sn_HashStringPPCO(const CT_String* const* ppcco_Text, unsigned n_Size)
{
    return sn_HashCaseQUZ(CT_ElementText(t_Element(ppcco_Text)).qcuz_Get(), n_Size);
}

unsigned CT_HashFunction::sn_HashStringNoCasePPCO(const CT_String* const* ppcco_Text,
                                                  unsigned n_Size)
{
    return sn_HashNoCaseQUZ(CT_ElementText(t_Element(ppcco_Text)).qcuz_Get(), n_Size);
}
