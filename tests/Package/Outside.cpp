// tests/Package/Outside.cpp: uses every layer of the installed library once.
#include <Ostra/Ostra.h>

#include <cstdio>
#include <cstring>

namespace
{
// The library is up before the statics of a program, and knows its own module and the texts in it.
struct Early
{
    Early()
    {
        CT_ErrorManager* errors = CT_ErrorManager::spco_Get();
        errors->v_SetError(60006, nullptr, 60006);
        has_text =
            errors->qcuz_GetErrorMessage()[0] == '(' && errors->qcuz_GetErrorMessage()[9] == 'O';
        errors->v_ClearError();
        is_up = CT_OstraDLLMain::sh_GetInstance() != nullptr && CT_OS::sn_GetNumCPU() != 0;
    }
    bool has_text;
    bool is_up;
};
const Early early;
} // namespace

int main()
{
    if (!early.is_up || !early.has_text)
        return 4;
    char version[40];
    std::snprintf(version, sizeof(version), "%u.%u.%u", ostra_version() / 10000,
                  ostra_version() / 100 % 100, ostra_version() % 100);
    if (ostra_version() != OSTRA_VERSION || std::strcmp(version, PACKAGE_VERSION) != 0)
        return 5;
    // A code page, whose tables come from a library beside this one.
    const CT_CString greek(u"\u03B1", 0xFFFFFFFF, 1253);
    if (greek.vn_GetLength() != 1 || greek.c_GetAt(0) != '\xE1')
        return 6;
    CT_CompList words(CT_CompList::es_Short, 4, 0, 1, 1024, 0);
    CT_UString word(qcuz_Text(u"Gr\u00FC\u00DFe"));
    if (!words.b_Add(&word, 42))
        return 1;

    CT_UString name(qcuz_Text(u"outside.rec"));
    CT_WinFile file(&name, 0);
    CT_RecordManager records(&file);
    records.v_Create(16, 64, 4);
    const unsigned n_Reference = records.n_AddRecord(words.pcco_GetBuffer());
    records.v_Close(1);

    records.v_Open(CT_RecordManager::e_OpenRead, 1);
    CT_Buffer block;
    records.v_GetRecord(n_Reference, &block);
    records.v_Close(1);
    file.vv_Remove();
    if (CT_ErrorManager::spco_Get()->b_IsSetError())
        return 2;

    const CT_CompList stored(&block);
    std::printf("%u\n", stored.n_Search(&word, 0));
    return stored.n_Search(&word, 0) == 42 ? 0 : 3;
}
