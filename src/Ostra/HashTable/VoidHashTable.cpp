// Ostra/HashTable/VoidHashTable.cpp: raw data by raw keys, with chained buckets.
#include <Ostra/HashTable/VoidHashTable.h>

#include <Ostra/ARRAY/RawItem.h>
#include <Ostra/Frame/Counts.h>
#include <Ostra/Frame/Report.h>
#include <Ostra/HashTable/Prime.h>
#include <Ostra/String/Compare.h>

#include <algorithm>
#include <cstdlib>

static constexpr char qccz_Source[] = "Ostra/HashTable/VoidHashTable";

static constexpr unsigned POINTER = sizeof(void*);

typedef CT_VoidHashTable::st_HashItem st_HashItem;

// Behind the header of their block the pointers lie at any address.
static st_HashItem* pso_Load(const char* pcc_Buckets, unsigned n_Bucket)
{
    st_HashItem* pso_Head;
    std::memcpy(&pso_Head, pcc_Buckets + std::size_t{n_Bucket - 1} * POINTER, POINTER);
    return pso_Head;
}

static void v_Store(char* pc_Buckets, unsigned n_Bucket, st_HashItem* pso_Head)
{
    std::memcpy(pc_Buckets + std::size_t{n_Bucket - 1} * POINTER, &pso_Head, POINTER);
}

static unsigned n_ReadNumber(const void* pcv_Key)
{
    unsigned n_Number;
    std::memcpy(&n_Number, pcv_Key, sizeof(n_Number));
    return n_Number;
}

static unsigned n_HashNumber(const void* pcv_Key, unsigned n_TableSize)
{
    // Without buckets the answer is none of the table's either.
    return n_TableSize ? n_ReadNumber(pcv_Key) % n_TableSize + 1 : 1;
}

// While one bucket is worked on, the items of a later one are fetched.
static void v_Prefetch(const char* pcc_Buckets, unsigned n_Bucket, unsigned n_Buckets)
{
    constexpr unsigned AHEAD = 8;
    if (n_Bucket + AHEAD <= n_Buckets)
        __builtin_prefetch(pso_Load(pcc_Buckets, n_Bucket + AHEAD));
}

// Where a key is, or would be.
struct CT_VoidHashTable::st_Place
{
    unsigned n_Bucket; // 0 with no bucket for the key
    st_HashItem* pso_Item;
    st_HashItem* pso_Previous; // null at the bucket's first item
};

// ---- Items --------------------------------------------------------------------------------

void CT_VoidHashTable::st_HashItem::v_Set(const void* pcv_Key, unsigned n_Key, const void* pcv_Data,
                                          unsigned n_Data)
{
    char* pc_Key = reinterpret_cast<char*>(this + 1);
    pso_Following = nullptr;
    pv_Data = pc_Key + n_Key;
    v_CopyItem(pc_Key, pcv_Key, n_Key);
    v_CopyItem(pv_Data, pcv_Data, n_Data);
}

void CT_VoidHashTable::st_HashItem::v_SetData(const void* pcv_Data, unsigned n_Data)
{
    v_CopyItem(pv_Data, pcv_Data, n_Data);
}

// ---- Construction -------------------------------------------------------------------------

CT_VoidHashTable::CT_VoidHashTable(unsigned n_Data, unsigned n_Key,
                                   unsigned (*pf_Bucket)(const void*, unsigned),
                                   int (*pf_Equal)(const void*, const void*), unsigned n_TableSize)
    : co_Buckets(POINTER),
      n_KeySize(n_Key),
      n_DataSize(n_Data),
      n_Count(0),
      n_Collisions(0),
      pf_Hash(pf_Bucket),
      pf_Compare(pf_Equal),
      b_AreNumbers(
          n_Data == sizeof(unsigned) && pf_Bucket == &sn_HashInteger &&
          pf_Equal == reinterpret_cast<int (*)(const void*, const void*)>(CT_Compare::si_ComparePN))
{
    v_Init(n_TableSize);
}

CT_VoidHashTable::CT_VoidHashTable(const CT_VoidHashTable* pcco_Table)
    : CT_VoidHashTable(pcco_Table->n_DataSize, pcco_Table->n_KeySize, pcco_Table->pf_Hash,
                       pcco_Table->pf_Compare, 0)
{
    v_Init(pcco_Table);
}

CT_VoidHashTable::~CT_VoidHashTable()
{
    v_Exit();
}

void CT_VoidHashTable::v_Set(unsigned n_TableSize)
{
    v_Exit();
    v_Init(n_TableSize);
}

void CT_VoidHashTable::v_Set(const CT_VoidHashTable* pcco_Table)
{
    if (pcco_Table == this)
        return;
    v_Exit();
    v_Init(pcco_Table);
}

void CT_VoidHashTable::v_Init(unsigned n_TableSize)
{
    CT_Buffer co_Block(0, 8 * POINTER);
    sv_MakeBuckets(&co_Block, n_TableSize);
    co_Buckets.v_Set(&co_Block);
}

// Inserts the other's items. Shorter keys and data get room for the zeros behind them.
void CT_VoidHashTable::v_Init(const CT_VoidHashTable* pcco_Table)
{
    v_Init(pcco_Table->n_GetTableSize());
    if (pcco_Table->n_KeySize >= n_KeySize && pcco_Table->n_DataSize >= n_DataSize) {
        v_InsertFrom(pcco_Table, nullptr);
    } else if (void* pv_Wide = std::calloc(1, std::size_t{n_KeySize} + n_DataSize)) {
        v_InsertFrom(pcco_Table, static_cast<char*>(pv_Wide));
        std::free(pv_Wide);
    }
}

// In the order of a walk; as they stand, or by way of zeros of this table's key and data size.
void CT_VoidHashTable::v_InsertFrom(const CT_VoidHashTable* pcco_Table, char* pc_Wide)
{
    const unsigned n_Key = std::min(n_KeySize, pcco_Table->n_KeySize);
    const unsigned n_Data = std::min(n_DataSize, pcco_Table->n_DataSize);
    const unsigned n_Buckets = pcco_Table->n_GetTableSize();
    for (unsigned n_Bucket = 1; n_Bucket <= n_Buckets; ++n_Bucket) {
        const st_HashItem* pcso_Item = pcco_Table->pso_GetAt(n_Bucket);
        for (; pcso_Item; pcso_Item = pcso_Item->pso_Following) {
            if (!pc_Wide) {
                b_Insert(pcso_Item->pcv_GetKey(), pcso_Item->pcv_GetData());
                continue;
            }
            v_CopyItem(pc_Wide, pcso_Item->pcv_GetKey(), n_Key);
            v_CopyItem(pc_Wide + n_KeySize, pcso_Item->pcv_GetData(), n_Data);
            b_Insert(pc_Wide, pc_Wide + n_KeySize);
        }
    }
}

// Frees the items and lets go of the buckets.
void CT_VoidHashTable::v_Exit()
{
    const unsigned n_Buckets = n_GetTableSize();
    for (unsigned n_Bucket = 1; n_Bucket <= n_Buckets; ++n_Bucket) {
        v_Prefetch(pc_GetBuckets(), n_Bucket, n_Buckets);
        st_HashItem* pso_Item = pso_Load(pc_GetBuckets(), n_Bucket);
        while (pso_Item) {
            st_HashItem* pso_Following = pso_Item->pso_Following;
            std::free(pso_Item);
            pso_Item = pso_Following;
        }
    }
    co_Buckets.v_Set(8, 0, 0);
    n_Count = 0;
    n_Collisions = 0;
}

// Empty buckets for an empty block; it stays empty when they find no room.
void CT_VoidHashTable::sv_MakeBuckets(CT_Buffer* pco_Block, unsigned n_TableSize)
{
    const unsigned n_Bytes = n_TableSize > ALL / POINTER ? ALL : n_TableSize * POINTER;
    pco_Block->v_SetSize(n_Bytes, 0);
    if (pco_Block->n_GetMaximumSize() >= n_Bytes)
        pco_Block->v_Insert(static_cast<unsigned char>(0), n_Bytes, 0);
}

void* CT_VoidHashTable::operator new(std::size_t n_Size) noexcept
{
    return CT_Report::spv_New(n_Size, qccz_Source);
}

void CT_VoidHashTable::operator delete(void* pv_Object)
{
    std::free(pv_Object);
}

// ---- Access -------------------------------------------------------------------------------

// No other holds the block of the buckets: it is written where it stands.
inline char* CT_VoidHashTable::pc_GetBuckets() const
{
    return static_cast<char*>(const_cast<void*>(co_Buckets.pcco_GetBuffer()->qcv_Get()));
}

// The hash of a key. The library's own function needs no call.
inline unsigned CT_VoidHashTable::n_GetBucket(const void* pcv_Key, unsigned n_TableSize) const
{
    return pf_Hash == &sn_HashInteger ? n_HashNumber(pcv_Key, n_TableSize)
                                      : pf_Hash(pcv_Key, n_TableSize);
}

// Whether the key is there. A hash that is no bucket of the table leaves no place for it.
inline int CT_VoidHashTable::b_Find(const void* pcv_Key, st_Place* pso_Place) const
{
    const unsigned n_Buckets = n_GetTableSize();
    const unsigned n_Bucket = n_GetBucket(pcv_Key, n_Buckets);
    pso_Place->n_Bucket = 0;
    if (n_Bucket - 1 >= n_Buckets)
        return 0;
    pso_Place->n_Bucket = n_Bucket;
    pso_Place->pso_Previous = nullptr;
    pso_Place->pso_Item = pso_Load(pc_GetBuckets(), n_Bucket);
    while (pso_Place->pso_Item && pf_Compare(pso_Place->pso_Item->pcv_GetKey(), pcv_Key)) {
        pso_Place->pso_Previous = pso_Place->pso_Item;
        pso_Place->pso_Item = pso_Place->pso_Item->pso_Following;
    }
    return pso_Place->pso_Item != nullptr;
}

// Copies the data of the item out, or zeros for none; whether there is one.
int CT_VoidHashTable::b_Answer(const st_HashItem* pcso_Item, void* pv_Data) const
{
    if (pv_Data && pcso_Item)
        v_CopyItem(pv_Data, pcso_Item->pcv_GetData(), n_DataSize);
    else if (pv_Data)
        std::memset(pv_Data, 0, n_DataSize);
    return pcso_Item != nullptr;
}

int CT_VoidHashTable::b_GetByCalls(const void* pcv_Key, void* pv_Data) const
{
    st_Place so_Place;
    const int b_There = n_GetTableSize() && b_Find(pcv_Key, &so_Place);
    return b_Answer(b_There ? so_Place.pso_Item : nullptr, pv_Data);
}

CT_VoidHashTable::st_HashItem* CT_VoidHashTable::pso_GetAt(unsigned n_Bucket) const
{
    return n_Bucket - 1 < n_GetTableSize() ? pso_Load(pc_GetBuckets(), n_Bucket) : nullptr;
}

// ---- Change -------------------------------------------------------------------------------

int CT_VoidHashTable::b_Insert(const void* pcv_Key, const void* pcv_Data)
{
    st_Place so_Place;
    if (b_Find(pcv_Key, &so_Place)) {
        so_Place.pso_Item->v_SetData(pcv_Data, n_DataSize);
        return 1;
    }
    st_HashItem* pso_Item = so_Place.n_Bucket ? pso_New(pcv_Key, pcv_Data) : nullptr;
    if (!pso_Item)
        return 0;
    pso_Item->pso_Following = pso_Load(pc_GetBuckets(), so_Place.n_Bucket);
    v_Store(pc_GetBuckets(), so_Place.n_Bucket, pso_Item);
    ++n_Count;
    n_Collisions += pso_Item->pso_Following != nullptr;
    if (n_GetTableSize() >> 2 < n_Collisions)
        v_Resize(0);
    return 0;
}

CT_VoidHashTable::st_HashItem* CT_VoidHashTable::pso_New(const void* pcv_Key,
                                                         const void* pcv_Data) const
{
    const std::size_t n_Size = sizeof(st_HashItem) + std::size_t{n_KeySize} + n_DataSize;
    st_HashItem* pso_Item = static_cast<st_HashItem*>(std::malloc(n_Size));
    if (pso_Item)
        pso_Item->v_Set(pcv_Key, n_KeySize, pcv_Data, n_DataSize);
    return pso_Item;
}

int CT_VoidHashTable::b_Remove(const void* pcv_Key, void* pv_Data)
{
    st_Place so_Place;
    if (!n_GetTableSize() || !b_Find(pcv_Key, &so_Place))
        return b_Answer(nullptr, pv_Data);
    b_Answer(so_Place.pso_Item, pv_Data);
    v_RemoveData(so_Place.n_Bucket, so_Place.pso_Item, so_Place.pso_Previous);
    return 1;
}

void CT_VoidHashTable::v_RemoveAt(unsigned n_Bucket, st_HashItem* pso_Item)
{
    st_HashItem* pso_Previous = nullptr;
    st_HashItem* pso_Found = pso_GetAt(n_Bucket);
    while (pso_Found && pso_Found != pso_Item) {
        pso_Previous = pso_Found;
        pso_Found = pso_Found->pso_Following;
    }
    if (pso_Found)
        v_RemoveData(n_Bucket, pso_Found, pso_Previous);
}

void CT_VoidHashTable::v_RemoveData(unsigned n_Bucket, st_HashItem* pso_Item,
                                    st_HashItem* pso_Previous)
{
    // Kept: the collisions don't fall with the first item of a bucket, also when others stand
    // behind it: they stay an upper estimate until the next resize, and resizes come when they
    // always came.
    if (pso_Previous) {
        pso_Previous->pso_Following = pso_Item->pso_Following;
        --n_Collisions;
    } else {
        v_Store(pc_GetBuckets(), n_Bucket, pso_Item->pso_Following);
    }
    std::free(pso_Item);
    --n_Count;
}

// ---- Storage ------------------------------------------------------------------------------

void CT_VoidHashTable::v_Resize(unsigned n_TableSize)
{
    unsigned n_Buckets = n_TableSize ? n_TableSize : n_GetTableSize();
    // Kept: sizes below 4 have a quarter of 0 and are always doubled, also in an empty table.
    if (n_Buckets >> 2 <= n_Collisions)
        n_Buckets = n_GetNextPrim(2 * n_Buckets);
    CT_Buffer co_Block(0, 8 * POINTER);
    sv_MakeBuckets(&co_Block, n_Buckets);
    if (co_Block.n_GetUsedSize() / POINTER != n_Buckets)
        return;
    n_Collisions = 0;
    v_Move(static_cast<char*>(const_cast<void*>(co_Block.qcv_Get())), n_Buckets);
    co_Buckets.v_Set(&co_Block);
}

// Moves all items into empty buckets. Chains come out reversed.
void CT_VoidHashTable::v_Move(char* pc_To, unsigned n_TableSize)
{
    const unsigned n_Buckets = n_GetTableSize();
    for (unsigned n_Bucket = 1; n_Bucket <= n_Buckets; ++n_Bucket) {
        v_Prefetch(pc_GetBuckets(), n_Bucket, n_Buckets);
        st_HashItem* pso_Item = pso_Load(pc_GetBuckets(), n_Bucket);
        while (pso_Item) {
            st_HashItem* pso_Next = pso_Item->pso_Following;
            const unsigned n_To = n_GetBucket(pso_Item->pcv_GetKey(), n_TableSize);
            if (n_To - 1 < n_TableSize) {
                pso_Item->pso_Following = pso_Load(pc_To, n_To);
                n_Collisions += pso_Item->pso_Following != nullptr;
                v_Store(pc_To, n_To, pso_Item);
            } else {
                std::free(pso_Item);
                --n_Count;
            }
            pso_Item = pso_Next;
        }
    }
}

unsigned CT_VoidHashTable::n_GetNextPrim(unsigned n_From)
{
    return n_FindPrime(n_From);
}

// ---- Static services ----------------------------------------------------------------------

unsigned CT_VoidHashTable::sn_HashInteger(const void* pcv_Key, unsigned n_TableSize)
{
    return n_HashNumber(pcv_Key, n_TableSize);
}

int CT_VoidHashTable::si_CompareInteger(const void* pcv_First, const void* pcv_Second)
{
    // Kept: 0 for a greater number, too. A search with this function ends at the first item of the
    // bucket that isn't below the number, and tables made with it rely on what they find there.
    return n_ReadNumber(pcv_First) < n_ReadNumber(pcv_Second);
}
