// Ostra/HashTable/VoidHashIterator.h: a walk over the items of a hash table.
#pragma once

#include <Ostra/Frame/Export.h>
#include <Ostra/HashTable/VoidHashTable.h>

// A walk over the items of a hash table, bucket by bucket from 1, within a bucket from the newest
// item on. It begins at home, before the first item, and can remove while it walks.
//
//     CT_VoidHashIterator co_Walk(&co_Table);
//     while (co_Walk.b_Next())
//         co_Walk.v_GetKey(&n_Key);
//
// Owns:    nothing; keeps the pointer of the table.
// Reports: nothing.
// Caller:  removes the item it stands on through this iterator alone, and neither resizes nor sets
//          the table during a walk (an insertion may resize): the iterator holds a freed pointer
//          then, or walks on in other buckets.
// Threads: those of the table.
class OSTRA_API CT_VoidHashIterator
{
public:
    // ---- Construction ---------------------------------------------------------------------

    // At home on the table, or where the other stands.
    explicit CT_VoidHashIterator(const CT_VoidHashTable* pcco_Table);
    explicit CT_VoidHashIterator(const CT_VoidHashIterator* pcco_Iterator);

    // Back home on the same table; the others as the constructors.
    void v_Set();
    void v_Set(const CT_VoidHashTable* pcco_Table);
    void v_Set(const CT_VoidHashIterator* pcco_Iterator);

    // ---- Access ---------------------------------------------------------------------------

    // Steps on; whether there is an item. Behind the last item it stays at the end.
    int b_Next();

    // Copy out of the current item; nothing without one.
    void v_Get(void* pv_Data) const;
    void v_GetKey(void* pv_Key) const;

    // Not stepped yet; stepped behind the last item.
    int b_AtHome() const { return b_Home; }
    int b_AtEnd() const { return !b_Home && !pso_Item; }

    // The number of items of the table.
    unsigned n_GetCount() const { return pcco_Table->n_GetCount(); }
    // Whether both stand at the same place of the same table.
    int b_IsEqual(const CT_VoidHashIterator* pcco_Iterator) const;

    // ---- Change ---------------------------------------------------------------------------

    // Copy data or key out of the current item, unless the pointer is null, and remove it. The
    // first item of the next bucket in use becomes the current one: the items behind the removed
    // one in its bucket aren't met by this walk.
    void v_Remove(void* pv_Data);
    void v_RemoveKey(void* pv_Key);

private:
    void v_ToNextBucket();
    void v_RemoveItem();

    // The order of the members is part of the interface.
    const CT_VoidHashTable* pcco_Table;
    CT_VoidHashTable::st_HashItem* pso_Item; // null at home and at the end
    unsigned n_Bucket;                       // 0 before the first
    int b_Home;                              // 1 until the first step
};
