// examples/cookbook/many.cpp: many words of a lexicon looked up at once, and all of them taken.
#include <Ostra/Ostra.h>

#include <cstdio>

int main()
{
    CT_CompList list(CT_CompList::es_Byte, 2, 0, 1, 128, 0);
    const char* const words[] = {"car", "cat", "do", "ca", "cart"};
    for (unsigned n = 0; n < 5; ++n)
        list.b_Add(words[n], n + 1);

    // A text word by word: in a large list this takes a fraction of the time of single searches.
    const char* const text[] = {"the", "cat", "saw", "the", "cart"};
    unsigned handles[5];
    list.v_SearchAll(text, 5, handles, nullptr);
    for (unsigned n = 0; n < 5; ++n) {
        if (handles[n] != 0xFFFFFFFF)
            std::printf("%s = %u\n", text[n], handles[n]);
    }

    // All keys, each with its zero; where each begins, and its handle.
    CT_Buffer keys, places, numbers;
    list.v_GetAll(&keys, &places, &numbers);
    const char* key = static_cast<const char*>(keys.qcv_Get());
    const unsigned* place = static_cast<const unsigned*>(places.qcv_Get());
    const unsigned* number = static_cast<const unsigned*>(numbers.qcv_Get());
    for (unsigned n = 0; n < places.n_GetUsedSize() / 4; ++n)
        std::printf("%u: %s\n", number[n], key + place[n]);
    return CT_ErrorManager::spco_Get()->b_IsSetError();
}
