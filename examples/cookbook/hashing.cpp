// examples/cookbook/hashing.cpp: words counted in a hash table, and taken out by a walk.
#include <Ostra/Ostra.h>

#include <cstdio>
#include <cstring>

// A key is the pointer to a word; the functions get the address of that pointer.
using Hash = unsigned (*)(const void*, unsigned);
using Compare = int (*)(const void*, const void*);

int main()
{
    const char* const text[] = {"to", "be", "or", "not", "to", "be", "that", "is"};

    CT_VoidHashTable counts(sizeof(unsigned), sizeof(char*),
                            reinterpret_cast<Hash>(CT_HashFunction::sn_HashCasePQCZ),
                            reinterpret_cast<Compare>(CT_Compare::si_CompareCasePQCZ), 7);
    for (const char* const& word : text) {
        unsigned count;
        counts.b_Get(&word, &count); // zeros for a word that isn't there
        ++count;
        counts.b_Insert(&word, &count);
    }
    std::printf("%u words in %u buckets\n", counts.n_GetCount(), counts.n_GetTableSize());

    CT_VoidHashIterator walk(&counts);
    while (walk.b_Next()) {
        const char* word;
        unsigned count;
        walk.v_GetKey(&word);
        walk.v_Get(&count);
        std::printf("%s %u\n", word, count);
    }

    const char* const gone = "be";
    unsigned count;
    if (counts.b_Remove(&gone, &count))
        std::printf("without \"be\", which was there %u times: %u\n", count, counts.n_GetCount());
    return CT_ErrorManager::spco_Get()->b_IsSetError();
}
