// Ostra/String/StringKind.h: which of the two encodings a string has. Internal.
#pragma once

#include <Ostra/String/CString.h>
#include <Ostra/String/UString.h>

#include <algorithm>
#include <cstring>

// Whether the object is exactly of the specimen's class, by their tables of virtual operations: so
// the library's own strings are known without a call. A class derived from them is asked.
inline bool b_IsLike(const CT_String* pcco_Text, const CT_String& co_Specimen)
{
    const void* pcv_Table;
    const void* pcv_Specimen;
    std::memcpy(&pcv_Table, static_cast<const void*>(pcco_Text), sizeof(pcv_Table));
    std::memcpy(&pcv_Specimen, static_cast<const void*>(&co_Specimen), sizeof(pcv_Specimen));
    return pcv_Table == pcv_Specimen;
}

// The string as one of bytes; null if it isn't one.
inline const CT_CString* pcco_Bytes(const CT_String* pcco_Text)
{
    if (b_IsLike(pcco_Text, CT_UString::sco_Object))
        return nullptr;
    return b_IsLike(pcco_Text, CT_CString::sco_Object) ||
                   pcco_Text->vpv_IsA(CT_CString::spcco_GetType())
               ? static_cast<const CT_CString*>(pcco_Text)
               : nullptr;
}

// The string as one of units; null if it isn't one.
inline const CT_UString* pcco_Units(const CT_String* pcco_Text)
{
    if (b_IsLike(pcco_Text, CT_CString::sco_Object))
        return nullptr;
    return b_IsLike(pcco_Text, CT_UString::sco_Object) ||
                   pcco_Text->vpv_IsA(CT_UString::spcco_GetType())
               ? static_cast<const CT_UString*>(pcco_Text)
               : nullptr;
}

// The count as far as the text has characters behind n_From.
inline unsigned n_InText(const CT_String* pcco_Text, unsigned n_From, unsigned n_Count)
{
    const unsigned n_Length = pcco_Text->vn_GetLength();
    return n_From > n_Length ? 0 : std::min(n_Count, n_Length - n_From);
}

// The same with the terminator for one.
inline unsigned n_Within(const CT_String* pcco_Text, unsigned n_From, unsigned n_Count)
{
    const unsigned n_Length = pcco_Text->vn_GetLength();
    return n_From > n_Length ? 0 : std::min(n_Count, n_Length - n_From + 1);
}
