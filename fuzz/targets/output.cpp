// fuzz/targets/output.cpp: appending to all outputs and replacing in them, beside plain texts.
//
// Input: operations: a byte for the operation, then what it takes.
#include <Ostra/Output/FileOutput.h>
#include <Ostra/Output/HugeOutput.h>
#include <Ostra/Output/MemoryOutput.h>
#include <Ostra/Output/StringOutput.h>
#include <Ostra/String/CString.h>
#include <Ostra/String/UString.h>

#include <windows.h>

#include "Support/Folder.h"
#include "Support/Input.h"
#include "Support/Library.h"

#include <memory>

namespace
{
class Outputs
{
public:
    Outputs() : path(PathOf("output.txt")), name(path.c_str()), file(&name) {}

    void Step(Input& input)
    {
        const unsigned operation = input.Below(4);
        if (operation == 0) {
            AppendAll(std::string(input.Byte() * 16, static_cast<char>('A' + input.Below(26))));
        } else if (operation == 1) {
            AppendAll(input.Text(40));
        } else if (operation == 2) {
            Runs(static_cast<unsigned char>(1 + input.Below(127)), input.Byte());
        } else {
            const std::string bytes = input.Text(40);
            // An offset behind the end is the caller's fault.
            const unsigned at = input.Word() % (static_cast<unsigned>(memoryText.size()) + 1);
            memory.vv_Replace(bytes.data(), static_cast<unsigned>(bytes.size()), at);
            Overwrite(memoryText, bytes, at);
            file.vv_Replace(bytes.data(), static_cast<unsigned>(bytes.size()), at);
            Overwrite(fileText, bytes, at);
        }
        Check();
    }

    void Finish()
    {
        if (memoryText.size() < 5000) {
            file.vv_Append(memory);
            fileText += memoryText;
        }
        Check();
        const std::unique_ptr<CT_File> given(file.pco_GiveFile());
        REQUIRE(ReadBytes(path) == fileText);
        const HGLOBAL handle = huge.h_GiveBuffer();
        const void* const bytes = GlobalLock(handle);
        REQUIRE(std::string(static_cast<const char*>(bytes), bytes ? huge.vn_GetSize() : 0) ==
                hugeText);
        GlobalUnlock(handle);
        GlobalFree(handle);
    }

private:
    void AppendAll(const std::string& bytes)
    {
        for (CT_Output* const output :
             {static_cast<CT_Output*>(&memory), static_cast<CT_Output*>(&file),
              static_cast<CT_Output*>(&string), static_cast<CT_Output*>(&huge)})
            output->vv_Append(bytes.data(), static_cast<unsigned>(bytes.size()));
        for (std::string* const text : {&memoryText, &fileText, &stringText, &hugeText})
            *text += bytes;
    }
    void Runs(unsigned char byte, unsigned count)
    {
        memory.vv_Append(byte, count);
        file.vv_Append(byte, count);
        string.vv_Append(byte, count);
        for (std::string* const text : {&memoryText, &fileText, &stringText})
            text->append(count, static_cast<char>(byte));
    }
    static void Overwrite(std::string& text, const std::string& bytes, unsigned offset)
    {
        text.resize(std::max<std::size_t>(text.size(), offset + bytes.size()));
        text.replace(offset, bytes.size(), bytes);
    }
    void Check()
    {
        REQUIRE(BytesOf(*memory.pcco_GetMemory()) == memoryText);
        REQUIRE(file.vn_GetSize() == fileText.size());
        REQUIRE(narrow.qccz_Get() == stringText);
        REQUIRE(string.vn_GetSize() == stringText.size());
        REQUIRE(huge.vn_GetSize() == hugeText.size());
    }

    std::string path;
    CT_UString name;
    CT_CString narrow;
    CT_MemoryOutput memory;
    CT_FileOutput file;
    CT_StringOutput string{narrow};
    CT_HugeOutput huge{nullptr, 0, 100};
    std::string memoryText, fileText, stringText, hugeText;
};
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Input input(data, size);
    Outputs outputs;
    for (unsigned step = 0; step < 60 && !input.IsEmpty(); ++step)
        outputs.Step(input);
    REQUIRE(TakeCode() == 0);
    outputs.Finish();
    REQUIRE(TakeCode() == 0);
    return 0;
}
