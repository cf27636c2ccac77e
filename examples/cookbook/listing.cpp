// examples/cookbook/listing.cpp: a list that changes while positions in it stay good.
#include <Ostra/Ostra.h>

#include <cstdio>

static void Show(const char* title, const CT_VoidList& list)
{
    std::printf("%s:", title);
    CT_VoidList::st_Position* at = list.pso_GetFirst();
    for (unsigned n = 0; n < list.n_GetCount(); ++n, at = list.pso_Skip(at, 1)) {
        int number;
        list.v_GetAt(&number, at);
        std::printf(" %d", number);
    }
    std::printf("\n");
}

int main()
{
    CT_VoidList list(sizeof(int));
    for (int number = 1; number <= 5; ++number)
        list.v_InsertLast(&number);

    const int wanted = 3;
    unsigned index;
    CT_VoidList::st_Position* three = list.pso_Find(&wanted, &index);
    std::printf("3 is item %u\n", index);

    list.v_RemoveFirst(nullptr);
    list.v_InsertBefore(&wanted, nullptr); // without a position: at the end
    const int thirty = 30;
    list.v_SetAt(&thirty, three);
    Show("changed", list);

    // The list is a ring: three steps back from the second item.
    int number;
    list.v_GetAt(&number, list.pso_Skip(three, -3));
    std::printf("three steps back from 30: %d\n", number);
    return CT_ErrorManager::spco_Get()->b_IsSetError();
}
