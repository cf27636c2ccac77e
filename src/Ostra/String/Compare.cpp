// Ostra/String/Compare.cpp
#include <Ostra/String/Compare.h>

#include <Ostra/String/Element.h>
#include <Ostra/String/TextOperations.h>

using Bytes = CT_TextOperations<char>;
using Units = CT_TextOperations<unsigned short>;

// ---- Numbers ----------------------------------------------------------------------------------

template <class Number>
static int si_Order(Number o_Left, Number o_Right)
{
    return o_Right > o_Left ? -1 : o_Right < o_Left;
}

int CT_Compare::si_CompareN(unsigned n_Left, unsigned n_Right)
{
    return si_Order(n_Left, n_Right);
}

int CT_Compare::si_ComparePN(const unsigned* pn_Left, const unsigned* pn_Right)
{
    return si_Order(t_Element(pn_Left), t_Element(pn_Right));
}

int CT_Compare::si_CompareI(int i_Left, int i_Right)
{
    return si_Order(i_Left, i_Right);
}

int CT_Compare::si_ComparePI(const int* pi_Left, const int* pi_Right)
{
    return si_Order(t_Element(pi_Left), t_Element(pi_Right));
}

// ---- Texts ------------------------------------------------------------------------------------

int CT_Compare::si_CompareCaseQCZ(const char* qccz_Left, const char* qccz_Right)
{
    return Bytes::si_Compare(qccz_Left, qccz_Right);
}

int CT_Compare::si_CompareCasePQCZ(const char* const* pqccz_Left, const char* const* pqccz_Right)
{
    return Bytes::si_Compare(t_Element(pqccz_Left), t_Element(pqccz_Right));
}

int CT_Compare::si_CompareNoCaseQCZ(const char* qccz_Left, const char* qccz_Right)
{
    return Bytes::si_CompareNoCase(qccz_Left, qccz_Right);
}

int CT_Compare::si_CompareNoCasePQCZ(const char* const* pqccz_Left, const char* const* pqccz_Right)
{
    return Bytes::si_CompareNoCase(t_Element(pqccz_Left), t_Element(pqccz_Right));
}

int CT_Compare::si_CompareCaseQUZ(const unsigned short* qcuz_Left, const unsigned short* qcuz_Right)
{
    return Units::si_Compare(qcuz_Left, qcuz_Right);
}

int CT_Compare::si_CompareCasePQUZ(const unsigned short* const* pqcuz_Left,
                                   const unsigned short* const* pqcuz_Right)
{
    return Units::si_Compare(t_Element(pqcuz_Left), t_Element(pqcuz_Right));
}

int CT_Compare::si_CompareNoCaseQUZ(const unsigned short* qcuz_Left,
                                    const unsigned short* qcuz_Right)
{
    return Units::si_CompareNoCase(qcuz_Left, qcuz_Right);
}

int CT_Compare::si_CompareNoCasePQUZ(const unsigned short* const* pqcuz_Left,
                                     const unsigned short* const* pqcuz_Right)
{
    return Units::si_CompareNoCase(t_Element(pqcuz_Left), t_Element(pqcuz_Right));
}

// ---- Strings ----------------------------------------------------------------------------------

int CT_Compare::si_CompareCStringPPCO(const CT_CString* const* ppcco_Left,
                                      const CT_CString* const* ppcco_Right)
{
    return si_CompareCaseQCZ(t_Element(ppcco_Left)->qccz_Get(), t_Element(ppcco_Right)->qccz_Get());
}

int CT_Compare::si_CompareCStringNoCasePPCO(const CT_CString* const* ppcco_Left,
                                            const CT_CString* const* ppcco_Right)
{
    return si_CompareNoCaseQCZ(t_Element(ppcco_Left)->qccz_Get(),
                               t_Element(ppcco_Right)->qccz_Get());
}

int CT_Compare::si_CompareUStringPPCO(const CT_UString* const* ppcco_Left,
                                      const CT_UString* const* ppcco_Right)
{
    return si_CompareCaseQUZ(t_Element(ppcco_Left)->qcuz_Get(), t_Element(ppcco_Right)->qcuz_Get());
}

int CT_Compare::si_CompareUStringNoCasePPCO(const CT_UString* const* ppcco_Left,
                                            const CT_UString* const* ppcco_Right)
{
    return si_CompareNoCaseQUZ(t_Element(ppcco_Left)->qcuz_Get(),
                               t_Element(ppcco_Right)->qcuz_Get());
}

int CT_Compare::si_CompareStringPPCO(const CT_String* const* ppcco_Left,
                                     const CT_String* const* ppcco_Right)
{
    const CT_ElementText co_Left(t_Element(ppcco_Left));
    const CT_ElementText co_Right(t_Element(ppcco_Right));
    return si_CompareCaseQUZ(co_Left.qcuz_Get(), co_Right.qcuz_Get());
}

int CT_Compare::si_CompareStringNoCasePPCO(const CT_String* const* ppcco_Left,
                                           const CT_String* const* ppcco_Right)
{
    const CT_ElementText co_Left(t_Element(ppcco_Left));
    const CT_ElementText co_Right(t_Element(ppcco_Right));
    return si_CompareNoCaseQUZ(co_Left.qcuz_Get(), co_Right.qcuz_Get());
}
