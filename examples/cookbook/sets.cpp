// examples/cookbook/sets.cpp: which letters words have, and numbers for words that come and go.
#include <Ostra/Ostra.h>

#include <cstdio>

static void Show(const char* title, const CT_BitSet& letters)
{
    std::printf("%-9s ", title);
    for (unsigned letter = 0; letter < letters.n_GetSize(); ++letter)
        std::putchar(letters.b_GetBit(letter) ? static_cast<int>('a' + letter) : '-');
    std::printf(" %u of %u\n", letters.n_NrSetBits(), letters.n_GetSize());
}

static void Enter(CT_BitSet& letters, const char* word)
{
    for (; *word; ++word)
        letters.v_SetBit(static_cast<unsigned>(*word - 'a'), 1);
}

int main()
{
    CT_BitSet house(26), garden(26);
    Enter(house, "house");
    Enter(garden, "garden");
    Show("house", house);
    Show("garden", garden);

    // A set made from another shares its bits until one of them is written.
    CT_BitSet letters(&house);
    letters.v_And(&garden);
    Show("both", letters);
    letters.v_Assign(&house);
    letters.v_Difference(&garden);
    Show("one only", letters);
    letters.v_NAssign(&house);
    Show("neither", letters);
    std::printf("first letter of garden: %c\n", static_cast<int>('a' + garden.n_FirstSetBit()));

    // A key may be 8-bit or 16-bit text, or a string: its characters count.
    CT_AlphaTree numbers;
    const CT_UString key(qcuz_Text(u"gard\u00E9n"));
    numbers.v_Add("garden", 1);
    numbers.v_Add(&key, 2);
    numbers.v_Add("house", 3);
    std::printf("%u keys, house %u, hous %d\n", numbers.n_GetNrOfEntries(),
                numbers.n_Search("house"), static_cast<int>(numbers.n_Search("hous")));
    if (numbers.b_Remove("gard\xE9n"))
        numbers.v_Dump(CT_AlphaTree::es_Byte);
    return CT_ErrorManager::spco_Get()->b_IsSetError();
}
