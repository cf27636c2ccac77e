// examples/cookbook/finding.cpp: the files of a directory whose names match a pattern.
#include <Ostra/Ostra.h>

#include <cstdio>

static void Make(const char16_t* text)
{
    const CT_UString name(text);
    CT_WinFile file(&name, 0);
    file.vv_Open(CT_File::e_AccessWrite, CT_File::e_OpenCreate, CT_File::e_ShareNone, 1, 0);
    if (!CT_ErrorManager::spco_Get()->b_IsSetError())
        file.vv_Close();
}

int main()
{
    constexpr unsigned directory = 0x10, any = 0;
    for (const char16_t* name : {u"apple.txt", u"pear.txt", u"plum.doc"})
        Make(name);
    const CT_UString folder(u"more.txt");
    CT_FileSystem::sb_MakePath(&folder);

    // The names come in strings of either kind; with 1 in place of 0, behind the pattern's path.
    CT_UString pattern(u"*.txt");
    CT_FindFile search(&pattern, any, directory, 0);
    CT_CString name;
    unsigned attributes = 0;
    for (int found = search.b_FindFirst(&name, &attributes); found;
         found = search.b_FindNext(&name, &attributes)) {
        const CT_WinFile file(&name, 0);
        std::printf("%s, without its extension %s\n", name.qccz_Get(),
                    CT_CString(file.pcco_GetName()).qccz_Get());
    }
    return CT_ErrorManager::spco_Get()->b_IsSetError();
}
