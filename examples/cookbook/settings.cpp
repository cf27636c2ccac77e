// examples/cookbook/settings.cpp: texts and numbers kept in a profile file.
#include <Ostra/Ostra.h>

#include <cstdio>

int main()
{
    CT_ErrorManager* errors = CT_ErrorManager::spco_Get();
    const CT_CString name("./settings.ini"); // without a directory it would lie elsewhere
    CT_IniFile settings(&name);

    settings.v_WriteString("Window", "Title", "Word list");
    settings.v_WriteN("Window", "Width", 640);
    if (errors->b_IsSetError()) // v_WriteString of raw text alone reports what fails
        return 1;

    CT_UString title;
    settings.v_ReadString("window", "title", &title, "untitled"); // letter case doesn't count
    unsigned width, height;
    settings.v_ReadN("Window", "Width", &width, 100);
    settings.v_ReadN("Window", "Height", &height, 480); // isn't there: the default
    const CT_CString shown(&title);
    std::printf("%s, %u x %u\n", shown.qccz_Get(), width, height);

    settings.v_DeleteKey("Window", "Width");
    settings.v_ReadN("Window", "Width", &width, 100);
    std::printf("then %u\n", width);
    settings.v_DeleteSection("Window");
    return errors->b_IsSetError();
}
