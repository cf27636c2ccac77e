// Ostra/Containers/StringCache.h: recently used texts by texts, in a table of fixed size.
#pragma once

#include <Ostra/Frame/Export.h>

// Texts by texts, in rows of a few slots each, as a set-associative cache has them: a search looks
// at one row, and a full row loses the entry that was used least recently. It never grows, and an
// entry may go at any insertion.
//
// Units:   sizes are slots; texts are zero-terminated and compared exactly.
// Owns:    a heap copy of each key and value.
// Reports: nothing. A text that finds no room is missing: without its key an entry isn't there,
//          without its value it is found with null.
// Caller:  keeps no value across a change: that of an entry that was removed or dropped is a freed
//          pointer. Removes with care: v_Remove from a row that isn't full leaves the entry that
//          stood last in it in two slots, and the slot of that entry itself is never free again
//          until the row drops it or the cache is cleared. Such a slot would by rights hold freed
//          pointers; here it holds no text, and nothing is freed twice.
// Threads: one thread at a time; a search, too, changes the order of a row.
class OSTRA_API CT_StringCache
{
public:
    // ---- Construction ---------------------------------------------------------------------

    // A prime number of rows with n_Collisions slots each: the first from n_Size / n_Collisions on.
    // No slots with a size below n_Collisions, 0 among them.
    explicit CT_StringCache(unsigned n_Size = 1000, unsigned n_Collisions = 4);
    CT_StringCache(const CT_StringCache&) = delete;
    CT_StringCache& operator=(const CT_StringCache&) = delete;
    ~CT_StringCache();

    // Frees all and builds the table anew.
    void v_Set(unsigned n_Size, unsigned n_Collisions);

    // ---- Access ---------------------------------------------------------------------------

    // All slots, and those of a row.
    unsigned n_GetSize() const { return n_Slots; }
    unsigned n_GetCollisions() const { return n_Ways; }

    // The value of a key, owned by the cache, or null. The entry becomes the first of its row.
    const unsigned short* qcuz_Lookup(const unsigned short* qcuz_Key);

    // ---- Change ---------------------------------------------------------------------------

    // Stores a pair in the first free slot of its row, or in place of the row's last entry. A key
    // that is there already isn't looked for: the older entry is found until it goes.
    void v_Insert(const unsigned short* qcuz_Key, const unsigned short* qcuz_Value);
    // Removes the key's first entry.
    void v_Remove(const unsigned short* qcuz_Key);
    // Empties all slots; the table stays.
    void v_Clear();

    // ---- Static services ------------------------------------------------------------------

    // The first prime at or above n_From; 0 and 1 as they are.
    static unsigned sn_GetNextPrim(unsigned n_From);

private:
    struct st_CacheEntry
    {
        unsigned short* quz_Key; // null in a free slot
        unsigned short* quz_Value;
    };

    void v_Init(unsigned n_Size, unsigned n_Collisions);
    void v_Exit();
    unsigned n_Hash(const unsigned short* qcuz_Key) const;
    st_CacheEntry* pso_GetRow(const unsigned short* qcuz_Key) const;
    unsigned n_Find(const st_CacheEntry* pcso_Row, const unsigned short* qcuz_Key) const;
    void v_Free(st_CacheEntry* pso_Row, unsigned n_At);

    // The order of the members is part of the interface.
    st_CacheEntry* paso_Entries; // row after row; null with no slots
    unsigned n_Slots;
    unsigned n_Ways;
};
