// tests/Ostra/Output/OutputModelTest.cpp: random appends to all outputs, beside plain texts.
#include <Ostra/Output/FileOutput.h>
#include <Ostra/Output/HugeOutput.h>
#include <Ostra/Output/MemoryOutput.h>
#include <Ostra/Output/StringOutput.h>

#include <gtest/gtest.h>

#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <random>
#include <string>

#include "OutputProbe.h"
#include "Support/Directory.h"

namespace
{
// All outputs, each beside what it should hold.
class Outputs
{
public:
    explicit Outputs(unsigned seed) : random(seed), file(&NameOf()), huge(nullptr, 0, Growth()) {}

    void Step()
    {
        switch (random() % 6) {
        case 0:
        case 1:
            AppendAll(Bytes(random() % 100));
            break;
        case 2:
            Runs(static_cast<unsigned char>('a' + random() % 26), random() % 100);
            break;
        case 3:
            Replaces(Bytes(random() % 50));
            break;
        case 4:
            Joins();
            break;
        default:
            AppendAll(Bytes(random() % 3000));
        }
        Check();
    }
    void Finish()
    {
        CT_File* given = file.pco_GiveFile();
        if (!owned)
            owned.reset(given);
        EXPECT_EQ(ReadBytes("file"), file_text);
        const HGLOBAL handle = huge.h_GiveBuffer();
        const void* bytes = GlobalLock(handle);
        EXPECT_EQ(std::string(static_cast<const char*>(bytes), bytes ? huge.vn_GetSize() : 0),
                  huge_text);
        GlobalUnlock(handle);
        GlobalFree(handle);
    }

private:
    static const CT_UString& NameOf()
    {
        static const CT_UString name = Name("file");
        return name;
    }
    unsigned Growth() { return 1 + random() % 500; }
    std::string Bytes(unsigned size)
    {
        std::string bytes(size, ' ');
        for (char& c : bytes)
            c = char('A' + random() % 26);
        return bytes;
    }

    void AppendAll(const std::string& bytes)
    {
        for (CT_Output* output : {static_cast<CT_Output*>(&memory), static_cast<CT_Output*>(&file),
                                  static_cast<CT_Output*>(&string), static_cast<CT_Output*>(&huge)})
            Append(*output, bytes);
        memory_text += bytes;
        file_text += bytes;
        string_text += bytes;
        huge_text += bytes;
    }
    void Runs(unsigned char byte, unsigned count)
    {
        memory.vv_Append(byte, count);
        file.vv_Append(byte, count);
        string.vv_Append(byte, count);
        huge.vv_Append(byte, count);
        const std::string run(count, char(byte));
        memory_text += run;
        file_text += run;
        string_text += run;
    }
    static void Overwrite(std::string& text, const std::string& bytes, unsigned offset)
    {
        text.resize(std::max<std::size_t>(text.size(), offset + bytes.size()));
        text.replace(offset, bytes.size(), bytes);
    }
    void Replaces(const std::string& bytes)
    {
        const unsigned size = unsigned(bytes.size());
        const unsigned at = random() % (memory_text.size() + 1);
        memory.vv_Replace(bytes.data(), size, at);
        Overwrite(memory_text, bytes, at);
        const unsigned at_file = random() % (file_text.size() + 1);
        file.vv_Replace(bytes.data(), size, at_file);
        Overwrite(file_text, bytes, at_file);
        string.vv_Replace(bytes.data(), size, 0);
    }
    // Each takes another one; what would double a text each time is left out for long ones.
    void Joins()
    {
        if (memory_text.size() + file_text.size() > 20000)
            return;
        if (random() % 2) {
            file.vv_Append(memory);
            file_text += memory_text;
        } else {
            const bool has_room = memory.pcco_GetMemory()->n_GetMaximumSize() > 0;
            memory.vv_Append(file);
            memory_text += has_room ? file_text : "";
            // The file is closed now: it is taken again at its end.
            CT_File* given = file.pco_GiveFile();
            given->vv_Open(CT_File::e_AccessWrite, CT_File::e_OpenExisting, CT_File::e_ShareNone, 1,
                           0);
            file.v_Set(given);
            if (!owned)
                owned.reset(given);
        }
        string.vv_Append(memory);
        huge.vv_Append(file);
    }
    void Check()
    {
        EXPECT_EQ(Text(memory.pcco_GetMemory()), memory_text);
        EXPECT_EQ(file.vn_GetSize(), file_text.size());
        EXPECT_EQ(std::string(narrow.qccz_Get()), string_text);
        EXPECT_EQ(string.vn_GetSize(), string_text.size());
        EXPECT_EQ(huge.vn_GetSize(), huge_text.size());
        EXPECT_EQ(TakeSystem(), NO_FAILURE);
    }

    std::mt19937 random;
    std::unique_ptr<CT_File> owned; // once the output has given it away
    CT_CString narrow;
    CT_MemoryOutput memory;
    CT_FileOutput file;
    CT_StringOutput string{narrow};
    CT_HugeOutput huge;
    std::string memory_text, file_text, string_text, huge_text;
};
} // namespace

TEST(OutputModel, AllOutputsHoldWhatThePlainTextsHold)
{
    const unsigned first = Seed(19970102);
    unsigned steps = 0;
    for (unsigned seed = first; seed < first + 30; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        Outputs outputs(seed);
        for (unsigned n = 0; n < 60; ++n, ++steps) {
            outputs.Step();
            if (testing::Test::HasFailure())
                return;
        }
        outputs.Finish();
    }
    std::printf("model outputs: 30 seeds, %u operations, 0 differences\n", steps);
}
