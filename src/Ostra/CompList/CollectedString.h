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

// The characters of a collected string, held by nobody else, for as long as that is so: what is put
// on and taken off shows in the string when the view goes. Of a string that is empty, or shared,
// there is no view, and each operation gives 0.
template <class Unit>
class CT_CollectedView
{
public:
    explicit CT_CollectedView(CT_Buffer* pco_Text)
        : p_Text(static_cast<Unit*>(const_cast<void*>(pco_Text->qcv_Get()))),
          n_Length(0),
          n_Room(0)
    {
        if (pco_Text->n_GetUsedSize() < 2 * sizeof(Unit) || pco_Text->n_GetUseCount() != 1)
            return;
        n_Length = pco_Text->n_GetUsedSize() / sizeof(Unit) - 1;
        n_Room = pco_Text->n_GetMaximumSize() / sizeof(Unit) - 1;
    }
    CT_CollectedView(const CT_CollectedView&) = delete;
    ~CT_CollectedView()
    {
        if (!n_Room)
            return;
        p_Text[n_Length] = 0;
        (reinterpret_cast<CT_Buffer::st_BufferData*>(p_Text) - 1)->n_UsedSize =
            (n_Length + 1) * sizeof(Unit);
    }

    unsigned n_GetLength() const { return n_Length; }
    // Not when it takes another block, or the string would end.
    int b_Append(unsigned n_Character)
    {
        if (n_Length >= n_Room || !static_cast<Unit>(n_Character))
            return 0;
        p_Text[n_Length++] = static_cast<Unit>(n_Character);
        return 1;
    }
    // One character stays: an empty string has another block.
    int b_Pop(Unit* pt_Last)
    {
        if (n_Length < 2)
            return 0;
        *pt_Last = p_Text[--n_Length];
        return 1;
    }
    int b_Cut(unsigned n_NewLength)
    {
        if (!n_NewLength || n_NewLength > n_Length)
            return 0;
        n_Length = n_NewLength;
        return 1;
    }

private:
    Unit* p_Text;
    unsigned n_Length;
    unsigned n_Room; // 0: no view
};
