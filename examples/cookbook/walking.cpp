// examples/cookbook/walking.cpp: all words of a lexicon, with their handles.
#include <Ostra/Ostra.h>

#include <cstdio>

int main()
{
    CT_CompList list(CT_CompList::es_Byte, 2, 0, 1, 128, 0);
    const char* const words[] = {"car", "cat", "do", "ca", "cart"};
    for (unsigned n = 0; n < 5; ++n)
        list.b_Add(words[n], n + 1);

    // The order is that of the block: a word before those that go on from it, else the newest way
    // first.
    CT_CCompListIterator walk(&list);
    CT_CString key;
    unsigned handle = 0;
    while (walk.b_GetNext(&key, &handle))
        std::printf("%s = %u\n", key.qccz_Get(), handle);

    // From the start again, for strings of the other kind; handles aren't asked for.
    CT_UString wide;
    unsigned longest = 0;
    walk.vv_Set(&list);
    while (walk.b_GetNext(&wide, nullptr))
        longest = wide.vn_GetLength() > longest ? wide.vn_GetLength() : longest;
    std::printf("the longest of %u has %u characters\n", list.n_GetNrOfEntries(), longest);
    return CT_ErrorManager::spco_Get()->b_IsSetError();
}
