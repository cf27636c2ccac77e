// examples/cookbook/fonts.cpp: fonts are hired, shared and fired; a text is measured.
#include <Ostra/Ostra.h>

#include <windows.h>

#include <cstdio>

int main()
{
    const HWND desktop = GetDesktopWindow();
    const HDC dc = GetDC(desktop);
    CT_FontManager* const manager = CT_FontManager::spco_GetFontManager();

    // The suffix goes with the character set, so both are one font.
    const CT_CString name("DejaVu Sans"), with_suffix("DejaVu Sans Cyr");
    CT_LogicalFont* const font = manager->pco_Hire(dc, &name, 204, 12, 1, 0, 0, 0);
    CT_LogicalFont* const same = manager->pco_Hire(dc, &with_suffix, 204, 12, 1, 0, 0, 0);
    std::printf("one font: %s, hired %d times, code page %u\n", same == font ? "yes" : "no",
                font->b_IsLocked(), font->n_GetCodePage());

    // Characters outside ASCII are measured by the font that is selected.
    const HGDIOBJ old = SelectObject(dc, font->h_GetHandle());
    const CT_UString wide(u"width \u0448\u0438\u0440\u0438\u043D\u0430");
    const CT_CString narrow(&wide, font->n_GetCodePage());
    const unsigned width = font->n_GetTextExtent(dc, &wide, 0, CT_String::ALL);
    std::printf("as wide in bytes as in units: %s\n",
                width == font->n_GetTextExtent(dc, &narrow, 0, CT_String::ALL) ? "yes" : "no");
    SelectObject(dc, old);

    manager->v_Fire(font);
    manager->v_Fire(same);
    std::printf("still in the pool, hired %d times\n", font->b_IsLocked());
    manager->v_FreeUnused();
    ReleaseDC(desktop, dc);
    return 0;
}
