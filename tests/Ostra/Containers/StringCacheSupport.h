// tests/Ostra/Containers/StringCacheSupport.h: what stands in the rows of a string cache.
#pragma once

#include <Ostra/Containers/StringCache.h>

#include "Support/Failure.h"

#include <cstring>
#include <string>
#include <vector>

struct CacheSlot
{
    const unsigned short* key;
    const unsigned short* value;
};

// All slots, row after row: the first member of a cache points to them.
inline const CacheSlot* Slots(const CT_StringCache& cache)
{
    const CacheSlot* slots = nullptr;
    std::memcpy(&slots, &cache, sizeof(slots));
    return slots;
}

// A slot as "key=value", "" when it is free, "*" when it is in use and holds nothing.
inline std::string Show(const CacheSlot& slot)
{
    if (!slot.key)
        return slot.value ? "a value without a key" : "";
    if (Wide(slot.key).empty() && !slot.value)
        return "*";
    return Narrow(Wide(slot.key)) + "=" + Narrow(Wide(slot.value));
}

inline std::vector<std::string> Row(const CT_StringCache& cache, unsigned row)
{
    std::vector<std::string> out;
    for (unsigned n = 0; n < cache.n_GetCollisions(); ++n)
        out.push_back(Show(Slots(cache)[row * cache.n_GetCollisions() + n]));
    return out;
}

// The row of a key, counted from 0.
inline unsigned RowOf(const std::u16string& key, unsigned rows)
{
    unsigned hash = 0;
    for (char16_t unit : key) {
        hash = hash * 16 + unit;
        const unsigned top = hash & 0xF0000000;
        if (top)
            hash = (hash ^ (top >> 24)) & 0x0FFFFFFF;
    }
    return hash % rows;
}

inline void Insert(CT_StringCache& cache, const std::u16string& key, const std::u16string& value)
{
    cache.v_Insert(Units(key.c_str()), Units(value.c_str()));
}

// "-" for none.
inline std::u16string Lookup(CT_StringCache& cache, const std::u16string& key)
{
    const unsigned short* value = cache.qcuz_Lookup(Units(key.c_str()));
    return value ? Wide(value) : u"-";
}

inline void Remove(CT_StringCache& cache, const std::u16string& key)
{
    cache.v_Remove(Units(key.c_str()));
}
