// examples/cookbook/scanning.cpp: a line of a price list, taken apart and put together anew.
#include <Ostra/Ostra.h>

#include <cstdio>

int main()
{
    const CT_CString line("4711;Haus mit  Garten;123456"), blank(" ");
    CT_StringScanner scanner;
    CT_CString item, word, price;

    // The count is that of the separators: items go on to one more.
    for (unsigned n = 1; n <= scanner.n_ItemCount(&line, ';') + 1; ++n) {
        scanner.v_Item(&item, &line, ';', n);
        std::printf("item %u: %s\n", n, item.qccz_Get());
    }

    scanner.v_Item(&item, &line, ';', 2);
    for (unsigned n = 1; n <= scanner.n_WordCount(&item, &blank); ++n) {
        scanner.v_SubWord(&word, &item, &blank, n);
        std::printf("word %u: %s\n", n, word.qccz_Get());
    }

    // Cents as an amount, in a column and without one.
    CT_StringTools::sv_FormatNumber(&price, 123456, 12, ',', '.', 2);
    std::printf("[%s]\n", price.qccz_Get());
    CT_StringTools::sv_FormatNumber(&price, 123456, 0xFFFFFFFF, '.', ',', 2);
    std::printf("[%s]\n", price.qccz_Get());

    // The next vowel from position 4 on.
    const CT_UString text(qcuz_Text(u"Haus am Meer"));
    std::printf("vowel at %u\n", CT_StringTools::sn_FindAny(qcuz_Text(u"aeiou"), &text, 4, 1));

    // A text of a string table: this one is the library's.
    CT_LoadString::sv_LoadString(&item, CT_OstraDLLMain::sh_GetInstance(), 60006);
    std::printf("text 60006: %s\n", item.qccz_Get());
    return CT_ErrorManager::spco_Get()->b_IsSetError();
}
