// examples/cookbook/lines.cpp: a text file is written and read again line by line.
#include <Ostra/Ostra.h>

#include <cstdio>

int main()
{
    constexpr unsigned normal_file = 1, no_flags = 0;
    const CT_UString name(u"notes.txt");
    CT_WinFile file(&name, 0);

    // The bytes of a string of the page 65001 are UTF-8, and stand so in the file.
    file.vv_Open(CT_File::e_AccessWrite, CT_File::e_OpenCreate, CT_File::e_ShareNone, normal_file,
                 no_flags);
    CT_CString line(u"Stra\u00DFe 7", 0xFFFFFFFF, 65001);
    file.v_WriteLineC(&line, 1); // with CR LF
    file.v_WriteLineC(nullptr, 1);
    line.v_Set(u"  the last line  ");
    file.v_WriteLineC(&line, 0);
    file.vv_Close();

    // Only the end of the file gives 0: an empty line counts its line feed. With an error set a
    // file reads nothing, so the loop ends then, too.
    file.vv_Open(CT_File::e_AccessRead, CT_File::e_OpenExisting, CT_File::e_ShareRead, normal_file,
                 no_flags);
    const CT_CString blank(" ");
    for (unsigned n = 1; file.n_ReadLineC(&line, &blank); ++n) {
        const CT_UString text(&line); // by the page of the line
        std::printf("line %u: %u bytes, %u characters\n", n, line.vn_GetLength(),
                    text.vn_GetLength());
    }
    file.vv_Close();
    file.vv_Remove();
    return CT_ErrorManager::spco_Get()->b_IsSetError();
}
