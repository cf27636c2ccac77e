// tests/Ostra/HashTable/HashSupport.h: tables of numbers, and what stands in their buckets.
#pragma once

#include <Ostra/HashTable/VoidHashIterator.h>
#include <Ostra/HashTable/VoidHashTable.h>

#include <gtest/gtest.h>

#include <cstring>
#include <initializer_list>
#include <string>
#include <vector>

typedef std::vector<unsigned> Numbers;

inline unsigned Number(const void* key)
{
    unsigned number;
    std::memcpy(&number, key, sizeof(number));
    return number;
}

inline int CompareNumbers(const void* first, const void* second)
{
    return Number(first) == Number(second) ? 0 : 1;
}

// Numbers by numbers; the data of a key is by default 1000 more.
class Table : public CT_VoidHashTable
{
public:
    explicit Table(unsigned table_size, std::initializer_list<unsigned> keys = {})
        : CT_VoidHashTable(4, 4, sn_HashInteger, CompareNumbers, table_size)
    {
        for (unsigned key : keys)
            Insert(key, key + 1000);
    }

    int Insert(unsigned key, unsigned data) { return b_Insert(&key, &data); }
    int Has(unsigned key) const { return b_Get(&key, nullptr); }
    int Remove(unsigned key) { return b_Remove(&key, nullptr); }
    // 0 without the key.
    unsigned Get(unsigned key) const
    {
        unsigned data = 0xEEEEEEEE;
        const int found = b_Get(&key, &data);
        EXPECT_TRUE(found || data == 0);
        return data;
    }
};

// The keys of a bucket in the order of its chain.
inline Numbers Keys(const CT_VoidHashTable& table, unsigned bucket)
{
    Numbers keys;
    const CT_VoidHashTable::st_HashItem* item = table.pso_GetAt(bucket);
    for (; item; item = item->pcso_GetFollowing())
        keys.push_back(Number(item->pcv_GetKey()));
    return keys;
}

// The keys of all buckets: of a bucket "3:17,3" for the keys 17 and 3 in bucket 3.
inline std::string Chains(const CT_VoidHashTable& table)
{
    std::string chains;
    for (unsigned bucket = 1; bucket <= table.n_GetTableSize(); ++bucket) {
        const Numbers keys = Keys(table, bucket);
        for (std::size_t n = 0; n < keys.size(); ++n) {
            if (n == 0)
                chains += (chains.empty() ? "" : " ") + std::to_string(bucket) + ":";
            chains += (n ? "," : "") + std::to_string(keys[n]);
        }
    }
    return chains;
}

// The keys in the order of a walk.
inline Numbers Walk(const CT_VoidHashTable& table)
{
    Numbers keys;
    CT_VoidHashIterator walk(&table);
    while (walk.b_Next()) {
        unsigned key = 0;
        walk.v_GetKey(&key);
        keys.push_back(key);
    }
    return keys;
}
