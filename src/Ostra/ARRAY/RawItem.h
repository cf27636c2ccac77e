// Ostra/ARRAY/RawItem.h: copies and compares the raw items of containers. Internal.
#pragma once

#include <cstring>

// Most items have 1, 2, 4 or 8 bytes: with a size known here a copy is one load and one store.
// Items lie at any address.
inline void v_CopyItem(void* pv_To, const void* pcv_From, unsigned n_Size)
{
    switch (n_Size) {
    case 1:
        std::memcpy(pv_To, pcv_From, 1);
        return;
    case 2:
        std::memcpy(pv_To, pcv_From, 2);
        return;
    case 4:
        std::memcpy(pv_To, pcv_From, 4);
        return;
    case 8:
        std::memcpy(pv_To, pcv_From, 8);
        return;
    default:
        if (n_Size)
            std::memmove(pv_To, pcv_From, n_Size);
    }
}
