// examples/cookbook/comparing.cpp: one array of strings in two encodings, sorted by their text.
#include <Ostra/Ostra.h>

#include <cstdio>

using Compare = int (*)(const void*, const void*);

static void Show(const char* title, const CT_VoidSortedArray& words)
{
    std::printf("%s:", title);
    for (unsigned n = 1; n <= words.n_GetCount(); ++n) {
        const CT_String* word;
        words.v_GetAt(&word, n);
        const CT_CString text(word); // bytes for the terminal, whatever the word holds
        std::printf(" %s", text.qccz_Get());
    }
    std::printf("\n");
}

int main()
{
    const CT_UString house(qcuz_Text(u"house"));
    const CT_CString boat("Boat"), ark("ark");
    const CT_String* all[] = {&house, &boat, &ark};

    CT_VoidSortedArray exact(sizeof(CT_String*),
                             reinterpret_cast<Compare>(CT_Compare::si_CompareStringPPCO), 8, 0);
    CT_VoidSortedArray folded(sizeof(CT_String*),
                              reinterpret_cast<Compare>(CT_Compare::si_CompareStringNoCasePPCO), 8,
                              0);
    for (const CT_String*& word : all) {
        exact.v_Insert(&word);
        folded.v_Insert(&word);
    }
    Show("by value", exact);
    Show("without case", folded);

    // A hash is a bucket from 1 to the size of a table; strings that compare equal have the same.
    const CT_CString upper("HOUSE");
    const CT_String* key = &upper;
    std::printf("buckets %u and %u\n", CT_HashFunction::sn_HashStringNoCasePPCO(&all[0], 101),
                CT_HashFunction::sn_HashStringNoCasePPCO(&key, 101));
    return CT_ErrorManager::spco_Get()->b_IsSetError();
}
