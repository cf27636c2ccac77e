// Ostra/String/Element.h: elements of containers, as compare and hash functions see them. Internal.
#pragma once

#include <Ostra/String/CString.h>
#include <Ostra/String/UString.h>

#include <cstring>

// What lies at an address that a container hands on; an element may lie at any.
template <class Type>
Type t_Element(const Type* pt_Element)
{
    Type t_Copy;
    std::memcpy(&t_Copy, pt_Element, sizeof(t_Copy));
    return t_Copy;
}

// The units of a string of either class; bytes are converted by the string's code page. Empty when
// the heap is exhausted, which the string reports.
class CT_ElementText
{
public:
    explicit CT_ElementText(const CT_String* pcco_Text)
    {
        if (const void* pcv_Units = pcco_Text->vpv_IsA(CT_UString::spcco_GetType()))
            qcuz_Text = static_cast<const CT_UString*>(pcv_Units)->qcuz_Get();
        else {
            co_Converted.v_Set(pcco_Text);
            qcuz_Text = co_Converted.qcuz_Get();
        }
    }
    CT_ElementText(const CT_ElementText&) = delete;
    CT_ElementText& operator=(const CT_ElementText&) = delete;

    const unsigned short* qcuz_Get() const { return qcuz_Text; }

private:
    CT_UString co_Converted;
    const unsigned short* qcuz_Text;
};
