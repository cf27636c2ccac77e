// examples/cookbook/utf8.cpp: UTF-8 in and out: texts, arguments, names of files.
#include <Ostra/Ostra.h>

#include <cstdio>

static void Print(const char* what, const CT_UString& text)
{
    std::printf("%s:", what);
    for (unsigned n = 0; n < text.vn_GetLength(); ++n)
        std::printf(" %04X", text.u_GetAt(n));
    std::printf("\n");
}

// Bytes from outside are checked on their way in, and what is ill-formed is refused or replaced.
static void ReadAndWrite()
{
    CT_UString text;
    CT_StandardUTF8::sb_ToWide(&text, "Gr\xC3\xBC\xC3\x9F"
                                      "e \xF0\x9F\x98\x80");
    Print("text", text);
    CT_CString bytes;
    CT_StandardUTF8::sb_FromWide(&bytes, &text);
    std::printf("%u units, %u bytes of page %u\n", text.vn_GetLength(), bytes.vn_GetLength(),
                bytes.n_GetCodePage());

    CT_ErrorManager* errors = CT_ErrorManager::spco_Get();
    if (!CT_StandardUTF8::sb_ToWide(&text, "cut: \xE2\x82")) {
        const CT_CString message(errors->qcuz_GetErrorMessage());
        std::printf("%s\n", message.qccz_Get());
        errors->v_ClearError();
    }
    CT_StandardUTF8::sb_ToWide(&text, "\xE2\x82!", 0xFFFFFFFF, CT_StandardUTF8::e_Replace);
    Print("replaced", text);
}

// Pieces of a stream end anywhere; what is open waits in the state.
static void ReadPieces()
{
    CT_UString text;
    CT_StandardUTF8::st_ToWide state;
    for (const char* piece : {"a\xF0\x9F", "\x98", "\x80z"})
        CT_StandardUTF8::sb_PieceToWide(&text, &state, piece);
    CT_StandardUTF8::sb_EndToWide(&text, &state);
    Print("pieces", text);
}

// An 8-bit name is one of the ANSI code page, as argv is: UTF-8 in a program that links
// Ostra::utf8.
static void NameFile(const char* argument)
{
    const CT_CString name(argument);
    CT_WinFile file(&name, 0);
    file.vv_Open(CT_File::e_AccessWrite, CT_File::e_OpenCreate, CT_File::e_ShareRead, 1, 0);
    file.vv_Close();
    Print("file", *file.pcco_GetFullName());

    std::printf("found: %d\n", CT_FileSystem::sb_IsExistent(file.pcco_GetFullName()));
    file.vv_Remove();
}

int main(int argc, char** argv)
{
    ReadAndWrite();
    ReadPieces();
    NameFile(argc > 1 ? argv[1] : "\xE8\xBE\x9E\xE6\x9B\xB8.txt");
    return CT_ErrorManager::spco_Get()->b_IsSetError();
}
