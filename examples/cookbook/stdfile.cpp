// examples/cookbook/stdfile.cpp: a file behind a stream of the standard library.
#include <Ostra/Ostra.h>

#include <cstdio>

static void Show(const char* text, const CT_StdFile& file)
{
    std::printf("%s: %u bytes", text, file.vn_GetSize());
    CT_ErrorManager* const errors = CT_ErrorManager::spco_Get();
    if (errors->b_IsSetError()) {
        std::printf(", code %u", errors->n_GetErrorCode());
        errors->v_ClearError();
    }
    std::printf("\n");
}

int main()
{
    constexpr unsigned normal_file = 1, no_flags = 0;
    // What is written waits in a buffer of that size, so small pieces cost no call of the system.
    const CT_UString name(u"squares.txt");
    CT_StdFile file(&name, 65536);
    file.vv_Open(CT_File::e_AccessWrite, CT_File::e_OpenCreate, CT_File::e_ShareNone, normal_file,
                 no_flags);
    for (unsigned n = 1; n <= 1000; ++n) {
        CT_CString number;
        number.v_Format("%u", n * n);
        file.v_WriteLineC(&number, 1);
    }
    Show("written", file);
    file.vv_Close(); // a full disk shows here at the latest

    // All that works on CT_File takes it. The end is known once a read has met it.
    file.vv_Open(CT_File::e_AccessRead, CT_File::e_OpenExisting, CT_File::e_ShareRead, normal_file,
                 no_flags);
    CT_CString line;
    unsigned count = 0;
    while (file.n_ReadLineCSequential(&line, nullptr))
        ++count;
    std::printf("%u lines, end %d\n", count, file.vb_IsEof());
    file.vv_Close();

    file.v_Chmod(CT_StdFile::e_PermissionRead); // read-only
    file.vv_Remove();
    std::printf("removing it: code %u\n", CT_ErrorManager::spco_Get()->n_GetErrorCode());
    CT_ErrorManager::spco_Get()->v_ClearError();
    file.v_Chmod(CT_StdFile::e_PermissionReadWrite);
    file.vv_Remove();
    file.vv_Remove(); // a file that isn't there is no failure
    Show("removed", file);
    return CT_ErrorManager::spco_Get()->b_IsSetError();
}
