// Ostra/HashTable/VoidHashTable.h: raw data by raw keys, with chained buckets.
#pragma once

#include <Ostra/ARRAY/VoidArray.h>
#include <Ostra/Frame/Export.h>

#include <cstddef>
#include <cstring>

// Raw data by raw keys: items of a key and its data in chained buckets. The table grows by itself
// when too many items share a bucket.
//
// The hash function is called with a key and the table size, and answers a bucket. The compare
// function answers 0 for equal keys; its first argument is the key in the table, its second the key
// given. Keys and data in the table lie at any address: a function that reads numbers copies them
// out.
//
// Units:   buckets count from 1; the table size is the number of buckets.
// Owns:    a heap block for each item; keys and data are copied in and out by their bytes.
// Reports: nothing of its own; 60006 comes from the buffer when there is no room for the buckets.
//          An item that finds no room isn't there, without a report.
// Caller:  keeps no item across its removal, and no iterator on it: both are freed pointers then.
//          Has functions that agree on what is equal.
// Threads: one thread at a time.
class OSTRA_API CT_VoidHashTable
{
public:
    // One item, in one heap block: the links, then the key, then directly behind it the data.
    struct OSTRA_API st_HashItem
    {
        // The next item of the bucket; null at its end.
        const st_HashItem* pcso_GetFollowing() const { return pso_Following; }
        const void* pcv_GetKey() const { return this + 1; }
        const void* pcv_GetData() const { return pv_Data; }

        // Copies key and data into a block that has room for them; nothing follows.
        void v_Set(const void* pcv_Key, unsigned n_Key, const void* pcv_Data, unsigned n_Data);
        void v_SetData(const void* pcv_Data, unsigned n_Data);

        st_HashItem* pso_Following;
        void* pv_Data; // in the same block, at the key's end
    };

    // ---- Construction ---------------------------------------------------------------------

    // Empty, with n_TableSize buckets, be it a prime or not. Mind the order of the sizes.
    CT_VoidHashTable(unsigned n_Data, unsigned n_Key, unsigned (*pf_Bucket)(const void*, unsigned),
                     int (*pf_Equal)(const void*, const void*), unsigned n_TableSize);
    // Takes the other's sizes and functions, and inserts its items as v_Set does.
    explicit CT_VoidHashTable(const CT_VoidHashTable* pcco_Table);
    CT_VoidHashTable(const CT_VoidHashTable&) = delete;
    CT_VoidHashTable& operator=(const CT_VoidHashTable&) = delete;
    ~CT_VoidHashTable();

    // Empties the table and gives it n_TableSize buckets.
    void v_Set(unsigned n_TableSize);
    // The same with the other's table size; then inserts its items one by one. The own sizes and
    // functions stay: longer keys and data are cut, shorter ones filled with zeros. A table that is
    // set to itself stays as it is.
    void v_Set(const CT_VoidHashTable* pcco_Table);

    static void* operator new(std::size_t n_Size) noexcept;
    static void* operator new(std::size_t, void* pv_Place) noexcept { return pv_Place; }
    static void operator delete(void* pv_Object);

    // ---- Access ---------------------------------------------------------------------------

    // The number of buckets; 0 if there was no memory for them.
    unsigned n_GetTableSize() const
    {
        return co_Buckets.pcco_GetBuffer()->n_GetUsedSize() / unsigned{sizeof(st_HashItem*)};
    }
    unsigned n_GetDataSize() const { return n_DataSize; }
    unsigned n_GetKeySize() const { return n_KeySize; }
    unsigned n_GetCount() const { return n_Count; }
    // Items that were added to a bucket in use, less those that were removed from behind another
    // one. Removing the first of a bucket isn't counted: only v_Resize makes the number true again.
    unsigned n_GetCollisions() const { return n_Collisions; }

    // Whether the key is there. Copies its data out unless pv_Data is null; without the key that
    // becomes zeros.
    int b_Get(const void* pcv_Key, void* pv_Data) const;
    // The first item of a bucket, which is the newest; null for none.
    st_HashItem* pso_GetAt(unsigned n_Bucket) const;

    // ---- Change ---------------------------------------------------------------------------

    // 0: the key was added. 1: the key was there already and has the new data now.
    int b_Insert(const void* pcv_Key, const void* pcv_Data);
    // Whether the key was there. Copies its data out as b_Get does, and removes the item.
    int b_Remove(const void* pcv_Key, void* pv_Data);
    // Removes an item, which is in that bucket.
    void v_RemoveAt(unsigned n_Bucket, st_HashItem* pso_Item);

    // ---- Storage --------------------------------------------------------------------------

    // Moves the items into n_TableSize buckets; 0 stands for the present number. When a quarter of
    // that isn't above the collisions, it becomes the next prime of its double.
    void v_Resize(unsigned n_TableSize);

    // ---- Static services ------------------------------------------------------------------

    // For keys of an unsigned number: the number modulo the table size, plus 1.
    static unsigned sn_HashInteger(const void* pcv_Key, unsigned n_TableSize);
    // 1 if the first number is below the second, else 0: greater numbers count as equal, too. For a
    // table of numbers take CT_Compare::si_ComparePN.
    static int si_CompareInteger(const void* pcv_First, const void* pcv_Second);

private:
    // ---- Life -----------------------------------------------------------------------------

    void v_Init(unsigned n_TableSize);
    void v_Init(const CT_VoidHashTable* pcco_Table);
    void v_InsertFrom(const CT_VoidHashTable* pcco_Table, char* pc_Wide);
    void v_Exit();
    static void sv_MakeBuckets(CT_Buffer* pco_Block, unsigned n_TableSize);

    // ---- Work -----------------------------------------------------------------------------

    struct st_Place;
    unsigned n_GetBucket(const void* pcv_Key, unsigned n_TableSize) const;
    int b_Find(const void* pcv_Key, st_Place* pso_Place) const;
    int b_GetByCalls(const void* pcv_Key, void* pv_Data) const;
    int b_Answer(const st_HashItem* pcso_Item, void* pv_Data) const;
    st_HashItem* pso_New(const void* pcv_Key, const void* pcv_Data) const;
    void v_Move(char* pc_To, unsigned n_TableSize);
    void v_RemoveData(unsigned n_Bucket, st_HashItem* pso_Item, st_HashItem* pso_Previous);
    static unsigned n_GetNextPrim(unsigned n_From);
    char* pc_GetBuckets() const;

    // ---- Members --------------------------------------------------------------------------

    // The order of the members is part of the interface.
    CT_VoidArray co_Buckets; // pointers to the first items; null for an empty bucket
    unsigned n_KeySize;
    unsigned n_DataSize;
    unsigned n_Count;
    unsigned n_Collisions;
    unsigned (*pf_Hash)(const void*, unsigned);
    int (*pf_Compare)(const void*, const void*);
    int b_AreNumbers; // keys and data are numbers of 32 bits, and the functions the library's own
};

// ---- Access -------------------------------------------------------------------------------

// Numbers are searched for without a call, in few instructions: how many searches wait for memory
// at the same time depends on their length.
inline int CT_VoidHashTable::b_Get(const void* pcv_Key, void* pv_Data) const
{
    const unsigned n_Buckets = n_GetTableSize();
    if (!b_AreNumbers || !n_Buckets || !pv_Data)
        return b_GetByCalls(pcv_Key, pv_Data);
    unsigned n_Number, n_Found;
    std::memcpy(&n_Number, pcv_Key, sizeof n_Number);
    const char* pcc_Buckets = static_cast<const char*>(co_Buckets.pcco_GetBuffer()->qcv_Get());
    const st_HashItem* pcso_Item; // at any address
    std::memcpy(&pcso_Item, pcc_Buckets + std::size_t{n_Number % n_Buckets} * sizeof pcso_Item,
                sizeof pcso_Item);
    for (; pcso_Item; pcso_Item = pcso_Item->pso_Following) {
        std::memcpy(&n_Found, pcso_Item->pcv_GetKey(), sizeof n_Found);
        if (n_Found == n_Number) {
            std::memcpy(pv_Data, pcso_Item->pcv_GetData(), sizeof n_Found);
            return 1;
        }
    }
    std::memset(pv_Data, 0, sizeof n_Found);
    return 0;
}
