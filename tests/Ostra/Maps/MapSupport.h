// tests/Ostra/Maps/MapSupport.h: what the tests of the string maps share.
#pragma once

#include <Ostra/Ostra.h>

#include "Ostra/String/StringSupport.h"

#include <string>
#include <vector>

// A held string with its class: "b:text" of bytes, "u:text" of units.
inline std::string Held(const CT_String* text)
{
    if (!text)
        return "null";
    return (text->vpv_IsA(CT_CString::spcco_GetType()) ? "b:" : "u:") + Ascii(*text);
}

typedef std::vector<std::string> Entries;

inline Entries Read(const CT_StringOrdinalMap& map)
{
    Entries entries;
    for (unsigned n = 1; n <= map.n_GetCount(); ++n)
        entries.push_back(Held(map.pcco_Get(n)));
    return entries;
}

inline Entries Read(const CT_StringNumberMap& map)
{
    Entries entries;
    for (unsigned n = 1; n <= map.n_GetCount(); ++n)
        entries.push_back(Held(map.pcco_GetAt(n)) + "=" + std::to_string(map.n_GetAt(n)));
    return entries;
}

inline Entries Read(const CT_StringStringMap& map)
{
    Entries entries;
    for (unsigned n = 1; n <= map.n_GetCount(); ++n) {
        CT_String *first = nullptr, *second = nullptr;
        map.v_GetAt(&first, &second, n);
        entries.push_back(Held(first) + "=" + Held(second));
    }
    return entries;
}

inline std::string Bytes(const CT_Buffer& buffer)
{
    return {static_cast<const char*>(buffer.qcv_Get()), buffer.n_GetUsedSize()};
}

// One and the same pointer, whatever it points to.
inline const void* Address(const void* pointer)
{
    return pointer;
}
