// examples/cookbook/streams.cpp: bytes go from one file to another in blocks, and into memory.
#include <Ostra/Ostra.h>

#include <cstdio>

// Counts the bytes of a source of any kind, and hands them on.
static void Copy(CT_Input& input, CT_Output& output)
{
    const unsigned char* block = nullptr;
    unsigned size = 0;
    unsigned blocks = 0;
    input.vv_Open();
    while (input.vb_GetNextBuffer(&block, &size)) {
        output.vv_Append(block, size);
        ++blocks;
    }
    input.vv_Close();
    std::printf("%u of %u bytes in %u blocks, now there are %u\n", input.vn_GetOffset(),
                input.vn_GetSize(), blocks, output.vn_GetSize());
}

int main()
{
    const CT_UString name(u"first.bin");
    const CT_UString second_name(u"second.bin");
    {
        CT_FileOutput output(&name);
        output.vv_Append('-', 10000);
        output.vv_Replace("begin", 5, 0);
        output.vv_Append("end", 3);
    } // the file is closed here

    // The same reader for a file that is read and for one that is mapped. A block lies where the
    // source has it, until the next call.
    CT_FileInput read(4096, &name);
    CT_MappedFileInput mapped(4096, &name);
    CT_FileOutput second(&second_name);
    CT_MemoryOutput memory;
    Copy(read, second);
    Copy(mapped, memory);

    // The buffer is an input again; its first hundred bytes tell whether they look like UTF-16.
    const CT_Buffer* buffer = memory.pcco_GetMemory();
    CT_MemoryInput again(6000, static_cast<const unsigned char*>(buffer->qcv_Get()),
                         buffer->n_GetUsedSize());
    CT_CString text;
    CT_StringOutput string(text);
    std::printf("UTF-16: %s\n", again.vb_IsUnicode() ? "yes" : "no");
    again.vb_Skip(9990);
    Copy(again, string);
    std::printf("the end: %s\n", text.qccz_Get());

    // What an output has made is handed over closed: a failed write to a full disk is told here at
    // the latest.
    CT_File* made = second.pco_GiveFile();
    made->vv_Remove();
    delete made;
    CT_WinFile(&name, 0).vv_Remove();
    return CT_ErrorManager::spco_Get()->b_IsSetError();
}
