// examples/cookbook/translating.cpp: words of two languages, found from either side.
#include <Ostra/Ostra.h>

#include <cstdio>

static void Show(const char* word, const char* found)
{
    std::printf("%s: %s\n", word, found ? found : "not there");
}

int main()
{
    CT_BiLingualCWordList list;
    list.v_Insert("cat", "Katze");
    list.v_Insert("dog", "Hund");
    // A word that is there keeps its first translation; the other one is found from its own side.
    list.v_Insert("dog", "Dogge");

    Show("dog", list.qccz_FindSource("dog"));
    Show("Dogge", list.qccz_FindTarget("Dogge"));
    Show("Hund", list.qccz_FindSource("Hund"));

    // All pairs, in the order of insertion.
    CT_BiCWordListIterator walk(&list);
    CT_CString source, target;
    while (walk.b_Next()) {
        walk.v_Get(&source, &target);
        std::printf("%s - %s\n", source.qccz_Get(), target.qccz_Get());
    }
    return CT_ErrorManager::spco_Get()->b_IsSetError();
}
