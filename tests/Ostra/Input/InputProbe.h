// tests/Ostra/Input/InputProbe.h: inputs asked with few words.
#pragma once

#include <Ostra/File/WinFile.h>
#include <Ostra/Input/Input.h>

#include <filesystem>
#include <string>
#include <vector>

#include "Support/Directory.h"
#include "Support/Files.h"

// Blocks as texts; a block that isn't there as this one.
const std::string NO_BLOCK = "(none)";

inline std::string Next(CT_Input& input)
{
    const unsigned char* data = nullptr;
    unsigned size = 4711;
    if (!input.vb_GetNextBuffer(&data, &size))
        return NO_BLOCK;
    return std::string(reinterpret_cast<const char*>(data), size);
}

inline std::string Next(CT_Input& input, unsigned wanted)
{
    const unsigned char* data = nullptr;
    unsigned size = 4711;
    if (!input.vb_GetNextBuffer(wanted, &data, &size))
        return NO_BLOCK;
    return std::string(reinterpret_cast<const char*>(data), size);
}

// What a copy delivers: its result, and the bytes with those that it left alone as "?".
struct Copied
{
    int result;
    std::string bytes;

    bool operator==(const Copied&) const = default;
};

inline void PrintTo(const Copied& copied, std::ostream* out)
{
    *out << copied.result << " \"" << copied.bytes << "\"";
}

inline Copied Copy(CT_Input& input, unsigned size)
{
    std::string bytes(size, '?');
    const int result =
        input.vb_CopyNextBuffer(reinterpret_cast<unsigned char*>(bytes.data()), size);
    return {result, bytes};
}

// The file behind an input, as its owner has it.
inline CT_WinFile& FileOf(const CT_File* file)
{
    return *static_cast<CT_WinFile*>(const_cast<CT_File*>(file));
}

const std::string INPUT_TEXT = "0123456789abcdefghij";

typedef std::vector<std::string> Trail;

const std::string FILE_PLACE = "Ostra/File/File";
const std::string WINFILE_PLACE = "Ostra/File/WinFile";
const std::string FILE_INPUT_PLACE = "Ostra/Input/FileInput";
const std::string MAPPED_INPUT_PLACE = "Ostra/Input/MappedFileInput";
const SystemFailure NO_FAILURE;

// An input of the file "file" with that content, opened.
template <class T_Input>
class OpenedInput : public T_Input
{
public:
    explicit OpenedInput(const std::string& content = INPUT_TEXT, unsigned block = 8)
        : T_Input(block, &Set(content))
    {
        this->vv_Open();
    }

    CT_WinFile& File() const { return FileOf(this->pcco_GetFile()); }

private:
    static const CT_UString& Set(const std::string& content)
    {
        static const CT_UString name = Name("file");
        WriteBytes("file", content);
        return name;
    }
};

// An input that is open begins anew, and no handle is left.
template <class T_Input>
void ExpectOpensAnew()
{
    {
        OpenedInput<T_Input> input;
        EXPECT_EQ(Next(input), "01234567");
        input.vv_Open();
        EXPECT_EQ(TakeSystem(), NO_FAILURE);
        EXPECT_EQ(input.vn_GetSize(), INPUT_TEXT.size());
        EXPECT_EQ(input.vn_GetOffset(), 0u);
        EXPECT_EQ(Next(input), "01234567");
    }
    std::filesystem::rename("file", "renamed");
    EXPECT_EQ(TakeSystem(), NO_FAILURE);
}
