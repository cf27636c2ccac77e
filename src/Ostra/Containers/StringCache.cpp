// Ostra/Containers/StringCache.cpp: recently used texts by texts, in a table of fixed size.
#include <Ostra/Containers/StringCache.h>

#include <Ostra/Frame/Counts.h>
#include <Ostra/HashTable/Prime.h>
#include <Ostra/String/HashFunction.h>

#include <cstdlib>
#include <cstring>

// The key of a slot whose text was freed with another slot. It isn't free, and nothing is found in
// it.
static unsigned short u_Gone = 0;

static bool b_IsSame(const unsigned short* qcuz_First, const unsigned short* qcuz_Second)
{
    for (; *qcuz_First == *qcuz_Second; qcuz_First++, qcuz_Second++) {
        if (!*qcuz_First)
            return true;
    }
    return false;
}

// Null when there is no room.
static unsigned short* quz_Copy(const unsigned short* qcuz_Text)
{
    std::size_t n_Units = 1;
    while (qcuz_Text[n_Units - 1])
        ++n_Units;
    void* pv_Copy = std::malloc(n_Units * sizeof(*qcuz_Text));
    if (pv_Copy)
        std::memcpy(pv_Copy, qcuz_Text, n_Units * sizeof(*qcuz_Text));
    return static_cast<unsigned short*>(pv_Copy);
}

// ---- Construction -------------------------------------------------------------------------

CT_StringCache::CT_StringCache(unsigned n_Size, unsigned n_Collisions)
{
    v_Init(n_Size, n_Collisions);
}

CT_StringCache::~CT_StringCache()
{
    v_Exit();
}

void CT_StringCache::v_Set(unsigned n_Size, unsigned n_Collisions)
{
    v_Exit();
    v_Init(n_Size, n_Collisions);
}

void CT_StringCache::v_Init(unsigned n_Size, unsigned n_Collisions)
{
    paso_Entries = nullptr;
    n_Slots = 0;
    n_Ways = n_Size ? n_Collisions : 0;
    if (!n_Ways)
        return;
    const unsigned long long n_Wanted = 1ull * sn_GetNextPrim(n_Size / n_Ways) * n_Ways;
    if (n_Wanted && n_Wanted < NONE)
        paso_Entries = static_cast<st_CacheEntry*>(
            std::calloc(static_cast<std::size_t>(n_Wanted), sizeof(st_CacheEntry)));
    if (paso_Entries)
        n_Slots = static_cast<unsigned>(n_Wanted);
}

void CT_StringCache::v_Exit()
{
    v_Clear();
    std::free(paso_Entries);
    paso_Entries = nullptr;
    n_Slots = 0;
    n_Ways = 0;
}

// ---- Access -------------------------------------------------------------------------------

// The row of a key, counted from 0.
inline unsigned CT_StringCache::n_Hash(const unsigned short* qcuz_Key) const
{
    return CT_HashFunction::sn_HashCaseQUZ(qcuz_Key, n_Slots / n_Ways) - 1;
}

// The first slot of the key's row; null without a key or slots.
inline CT_StringCache::st_CacheEntry*
CT_StringCache::pso_GetRow(const unsigned short* qcuz_Key) const
{
    if (!n_Slots || !qcuz_Key)
        return nullptr;
    return paso_Entries + std::size_t{n_Hash(qcuz_Key)} * n_Ways;
}

// The slot of the row with the key, or none. The first free slot ends the search.
inline unsigned CT_StringCache::n_Find(const st_CacheEntry* pcso_Row,
                                       const unsigned short* qcuz_Key) const
{
    for (unsigned n_At = 0; n_At < n_Ways && pcso_Row[n_At].quz_Key; ++n_At) {
        if (b_IsSame(pcso_Row[n_At].quz_Key, qcuz_Key) && pcso_Row[n_At].quz_Key != &u_Gone)
            return n_At;
    }
    return NONE;
}

const unsigned short* CT_StringCache::qcuz_Lookup(const unsigned short* qcuz_Key)
{
    st_CacheEntry* pso_Row = pso_GetRow(qcuz_Key);
    const unsigned n_At = pso_Row ? n_Find(pso_Row, qcuz_Key) : NONE;
    if (n_At == NONE)
        return nullptr;
    const st_CacheEntry so_Found = pso_Row[n_At];
    for (unsigned n_To = n_At; n_To; --n_To)
        pso_Row[n_To] = pso_Row[n_To - 1];
    pso_Row[0] = so_Found;
    return so_Found.quz_Value;
}

// ---- Change -------------------------------------------------------------------------------

void CT_StringCache::v_Insert(const unsigned short* qcuz_Key, const unsigned short* qcuz_Value)
{
    st_CacheEntry* pso_Row = qcuz_Value ? pso_GetRow(qcuz_Key) : nullptr;
    if (!pso_Row)
        return;
    // Kept: the key isn't looked for, and the new entry stands behind the others: only a search
    // moves an entry to the front.
    unsigned n_At = 0;
    while (n_At < n_Ways - 1 && pso_Row[n_At].quz_Key)
        ++n_At;
    // The texts may be those of the entry that goes.
    st_CacheEntry so_New = {quz_Copy(qcuz_Key), quz_Copy(qcuz_Value)};
    if (!so_New.quz_Key) {
        std::free(so_New.quz_Value);
        so_New.quz_Value = nullptr;
    }
    v_Free(pso_Row, n_At);
    pso_Row[n_At] = so_New;
}

void CT_StringCache::v_Remove(const unsigned short* qcuz_Key)
{
    st_CacheEntry* pso_Row = pso_GetRow(qcuz_Key);
    unsigned n_At = pso_Row ? n_Find(pso_Row, qcuz_Key) : NONE;
    if (n_At == NONE)
        return;
    v_Free(pso_Row, n_At);
    // Kept: free slots aren't copied and only the row's last slot is cleared. In a row that isn't
    // full the last entry stays where it was, too: the row keeps its number of slots in use.
    for (; n_At + 1 < n_Ways; ++n_At) {
        if (pso_Row[n_At + 1].quz_Key)
            pso_Row[n_At] = pso_Row[n_At + 1];
    }
    pso_Row[n_Ways - 1] = {nullptr, nullptr};
}

// Frees the texts of a slot. It and all others of the row that hold the same texts hold none then,
// but aren't free.
void CT_StringCache::v_Free(st_CacheEntry* pso_Row, unsigned n_At)
{
    const st_CacheEntry so_Gone = pso_Row[n_At];
    if (!so_Gone.quz_Key || so_Gone.quz_Key == &u_Gone)
        return;
    for (unsigned n_Other = 0; n_Other < n_Ways; ++n_Other) {
        if (pso_Row[n_Other].quz_Key == so_Gone.quz_Key)
            pso_Row[n_Other] = {&u_Gone, nullptr};
    }
    std::free(so_Gone.quz_Key);
    std::free(so_Gone.quz_Value);
}

void CT_StringCache::v_Clear()
{
    for (unsigned n_First = 0; n_First < n_Slots; n_First += n_Ways) {
        for (unsigned n_At = 0; n_At < n_Ways; ++n_At)
            v_Free(paso_Entries + n_First, n_At);
    }
    if (n_Slots)
        std::memset(static_cast<void*>(paso_Entries), 0, n_Slots * sizeof(st_CacheEntry));
}

// ---- Static services ----------------------------------------------------------------------

unsigned CT_StringCache::sn_GetNextPrim(unsigned n_From)
{
    return n_FindPrime(n_From);
}
