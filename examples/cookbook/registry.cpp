// examples/cookbook/registry.cpp: settings of a program, in the registry of its user.
#include <Ostra/Ostra.h>

#include <windows.h>

#include <cstdio>

int main()
{
    const CT_UString home(u"\\Software\\Ostra Cookbook"), window(u"Window"), up(u"..");
    const CT_UString title(u"title"), words(u"Gr\u00FC\u00DFe"), place(u"place");
    const unsigned char corner[] = {10, 20};
    const CT_Buffer bytes(corner, 2, 32);

    CT_Registry settings(HKEY_CURRENT_USER);
    settings.v_CreateKey(&home); // from the root: a path that begins with a separator
    settings.v_SetKey(&home);
    settings.v_CreateKey(&window); // below the cursor
    settings.v_SetKey(&window);
    settings.v_SetValue(&title, &words);
    settings.v_SetValue(&place, &bytes);

    CT_UString text;
    CT_Buffer data;
    settings.v_GetValue(&title, &text);
    settings.v_GetValue(&place, &data);
    std::printf("%u characters, %u bytes\n", text.vn_GetLength(), data.n_GetUsedSize());

    // Another type is an error, and leaves the output.
    settings.v_GetValue(&place, &text);
    CT_ErrorManager* errors = CT_ErrorManager::spco_Get();
    std::printf("code %u, still %u characters\n", errors->n_GetErrorCode(), text.vn_GetLength());
    errors->v_ClearError();

    // The key goes with all that it holds.
    settings.v_SetKey(&up);
    settings.v_SetKey(&up);
    const CT_UString own(u"Ostra Cookbook");
    settings.v_DeleteKey(&own);
    settings.v_SetKey(&own);
    std::printf("code %u: it is gone\n", errors->n_GetErrorCode());
    errors->v_ClearError();
    return 0;
}
