// Ostra/CompList/CollectedString.h: what the iterators for both widths do with their string.
// Internal.
#pragma once

#include <Ostra/String/CString.h>
#include <Ostra/String/UString.h>

// The key of the way that an iterator has come. Each operation is false when the heap is exhausted,
// with the string as it was.
template <class Text, class Unit>
class CT_CollectedString
{
public:
    static bool sb_Empty(Text* pco_Text)
    {
        if (pco_Text->vn_GetLength())
            pco_Text->vv_SetLength(0);
        return !pco_Text->vn_GetLength();
    }

    // Takes the last character off; an empty string has a 0.
    static bool sb_Pop(Text* pco_Text, Unit* pt_Last)
    {
        const unsigned n_Length = pco_Text->vn_GetLength();
        *pt_Last = n_Length ? sc_GetAt(pco_Text, n_Length - 1) : Unit(0);
        if (n_Length)
            pco_Text->vv_SetLength(n_Length - 1);
        return !n_Length || pco_Text->vn_GetLength() < n_Length;
    }

    // Kept: the element is cut to the string's width, and one that is cut to 0 appends nothing.
    static bool sb_Append(Text* pco_Text, unsigned n_Character)
    {
        const Unit t_Character = static_cast<Unit>(n_Character);
        const unsigned n_Length = pco_Text->vn_GetLength();
        pco_Text->v_Append(t_Character);
        return !t_Character || pco_Text->vn_GetLength() > n_Length;
    }

private:
    static char sc_GetAt(const CT_CString* pcco_Text, unsigned n_Offset)
    {
        return pcco_Text->vc_GetAt(n_Offset);
    }
    static unsigned short sc_GetAt(const CT_UString* pcco_Text, unsigned n_Offset)
    {
        return pcco_Text->vu_GetAt(n_Offset);
    }
};
