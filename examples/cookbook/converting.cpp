// examples/cookbook/converting.cpp: texts between code pages, and what a page can't hold.
#include <Ostra/Ostra.h>

#include <cstdio>

static void Show(const char* title, const CT_CString& bytes)
{
    std::printf("%-8s", title);
    for (unsigned n = 0; n < bytes.vn_GetLength(); ++n)
        std::printf(" %02X", static_cast<unsigned char>(bytes.c_GetAt(n)));
    std::printf("\n");
}

// Bytes in a page, and what became of the text.
static void Convert(const CT_UString& text, unsigned page)
{
    CT_CString bytes(page);
    int was_replaced = 0;
    CT_StringConvert::si_WideToMulti(&bytes, &text, page, "?", &was_replaced);
    // A best fit, as A for A with a macron, is no replacement: only the way back tells.
    const CT_UString back(&bytes);
    const bool is_whole = back.vi_Compare(&text) == 0;
    std::printf("%s in %u: %s\n", bytes.qccz_Get(), page,
                was_replaced ? "replaced in part" : (is_whole ? "whole" : "best fits"));
}

int main()
{
    // From page to page: by way of UTF-16, which has them all.
    const CT_CString greek("\xE1\xE2\xE3", 0xFFFFFFFF, 1253);
    const CT_UString units(&greek); // by the page of the string
    Show("1253", greek);
    Show("737", CT_CString(&units, 737));
    Show("UTF-8", CT_CString(&units, 65001));
    Show("UTF-7", CT_CString(&units, 65000));

    Convert(CT_UString(u"R\u012Bga"), 1250);
    Convert(CT_UString(u"Riga"), 1250);
    Convert(CT_UString(u"Riga \u03B1"), 1250);
    return CT_ErrorManager::spco_Get()->b_IsSetError();
}
