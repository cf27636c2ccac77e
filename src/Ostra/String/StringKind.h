// Ostra/String/StringKind.h: which of the two encodings a string has. Internal.
#pragma once

#include <Ostra/String/CString.h>
#include <Ostra/String/UString.h>

#include <algorithm>

// The string as one of bytes; null if it isn't one.
inline const CT_CString* pcco_Bytes(const CT_String* pcco_Text)
{
    return pcco_Text->vpv_IsA(CT_CString::spcco_GetType())
               ? static_cast<const CT_CString*>(pcco_Text)
               : 0;
}

// The string as one of units; null if it isn't one.
inline const CT_UString* pcco_Units(const CT_String* pcco_Text)
{
    return pcco_Text->vpv_IsA(CT_UString::spcco_GetType())
               ? static_cast<const CT_UString*>(pcco_Text)
               : 0;
}

// The count as far as the text has characters behind n_From, its terminator included.
inline unsigned n_Within(const CT_String* pcco_Text, unsigned n_From, unsigned n_Count)
{
    const unsigned n_Length = pcco_Text->vn_GetLength();
    return n_From > n_Length ? 0 : std::min(n_Count, n_Length - n_From + 1);
}
