// Ostra/HashTable/VoidHashIterator.cpp: a walk over the items of a hash table.
#include <Ostra/HashTable/VoidHashIterator.h>

#include <Ostra/ARRAY/RawItem.h>

// ---- Construction -------------------------------------------------------------------------

CT_VoidHashIterator::CT_VoidHashIterator(const CT_VoidHashTable* pcco_NewTable)
{
    v_Set(pcco_NewTable);
}

CT_VoidHashIterator::CT_VoidHashIterator(const CT_VoidHashIterator* pcco_Iterator)
{
    v_Set(pcco_Iterator);
}

void CT_VoidHashIterator::v_Set()
{
    pso_Item = nullptr;
    n_Bucket = 0;
    b_Home = 1;
}

void CT_VoidHashIterator::v_Set(const CT_VoidHashTable* pcco_NewTable)
{
    pcco_Table = pcco_NewTable;
    v_Set();
}

void CT_VoidHashIterator::v_Set(const CT_VoidHashIterator* pcco_Iterator)
{
    *this = *pcco_Iterator;
}

// ---- Access -------------------------------------------------------------------------------

int CT_VoidHashIterator::b_Next()
{
    if (b_Home) {
        b_Home = 0;
        v_ToNextBucket();
    } else if (pso_Item) {
        pso_Item = pso_Item->pso_Following;
        if (!pso_Item)
            v_ToNextBucket();
    }
    return pso_Item != nullptr;
}

void CT_VoidHashIterator::v_ToNextBucket()
{
    const unsigned n_Buckets = pcco_Table->n_GetTableSize();
    pso_Item = nullptr;
    while (!pso_Item && ++n_Bucket <= n_Buckets)
        pso_Item = pcco_Table->pso_GetAt(n_Bucket);
}

void CT_VoidHashIterator::v_Get(void* pv_Data) const
{
    if (pso_Item)
        v_CopyItem(pv_Data, pso_Item->pcv_GetData(), pcco_Table->n_GetDataSize());
}

void CT_VoidHashIterator::v_GetKey(void* pv_Key) const
{
    if (pso_Item)
        v_CopyItem(pv_Key, pso_Item->pcv_GetKey(), pcco_Table->n_GetKeySize());
}

int CT_VoidHashIterator::b_IsEqual(const CT_VoidHashIterator* pcco_Iterator) const
{
    return pcco_Table == pcco_Iterator->pcco_Table && pso_Item == pcco_Iterator->pso_Item &&
           b_Home == pcco_Iterator->b_Home && n_Bucket == pcco_Iterator->n_Bucket;
}

// ---- Change -------------------------------------------------------------------------------

void CT_VoidHashIterator::v_Remove(void* pv_Data)
{
    if (pv_Data)
        v_Get(pv_Data);
    v_RemoveItem();
}

void CT_VoidHashIterator::v_RemoveKey(void* pv_Key)
{
    if (pv_Key)
        v_GetKey(pv_Key);
    v_RemoveItem();
}

// Removes the current item, if there is one.
void CT_VoidHashIterator::v_RemoveItem()
{
    CT_VoidHashTable::st_HashItem* pso_Gone = pso_Item;
    const unsigned n_From = n_Bucket;
    if (!pso_Gone)
        return;
    // Kept: the walk goes on with the next bucket. A step to the item behind the removed one would
    // make a walk that removes see other items than it always has.
    v_ToNextBucket();
    const_cast<CT_VoidHashTable*>(pcco_Table)->v_RemoveAt(n_From, pso_Gone);
}
