// tests/Models/CompListKey.h: keys in the element sizes of a list.
#pragma once

#include <Ostra/CompList/CompList.h>

#include <string>

// The text's characters as elements of that size, and a zero element.
inline std::string Key(const std::string& text, unsigned elementSize)
{
    std::string key;
    for (char character : text + '\0') {
        key += character;
        key.append(elementSize - 1, '\0');
    }
    return key;
}

// The block of a list.
inline std::string Block(const CT_CompList& list)
{
    const CT_Buffer* buffer = list.pcco_GetBuffer();
    return buffer
               ? std::string(static_cast<const char*>(buffer->qcv_Get()), buffer->n_GetUsedSize())
               : std::string();
}
