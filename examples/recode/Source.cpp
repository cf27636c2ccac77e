// examples/recode/Source.cpp
#include "Source.h"

#include "Decoder.h"

#include <Ostra/Input/MemoryInput.h>
#include <Common/Failure.h>
#include <Common/Output.h>
#include <Common/Utf8.h>

#include <filesystem>
#include <fstream>

namespace recode
{
using namespace common;

namespace
{
namespace fs = std::filesystem;

constexpr char SOURCE[] = "recode/Source";

constexpr unsigned BLOCK = 0x10000;
constexpr std::uintmax_t LARGEST = 0xFFFFFFFE; // what the size of a file can say

const unsigned char* Bytes(std::string_view bytes)
{
    return reinterpret_cast<const unsigned char*>(bytes.data());
}
} // namespace

bool Source::Open(const CT_UString& name, std::istream* stream)
{
    CT_UString file(&name);
    if (stream) {
        if (!Keep(*stream, &file))
            return false;
    } else if (Output::IsStream(name)) {
        std::ifstream device(PathOf(name), std::ios::binary);
        if (!Keep(device, &file))
            return false;
    }
    std::error_code error;
    const fs::path path = PathOf(file);
    if (fs::is_directory(path, error))
        Fail(SOURCE, u"%s: this is a directory", name.qcuz_Get());
    else if (fs::is_regular_file(path, error) && fs::file_size(path, error) > LARGEST)
        Fail(SOURCE, u"%s: this file has 4 GiB or more", name.qcuz_Get());
    if (Failing())
        return false;
    input = std::make_unique<CT_FileInput>(BLOCK, &file);
    input->vv_Open();
    return !Failed(SOURCE);
}

bool Source::Keep(std::istream& stream, CT_UString* name)
{
    std::string file;
    if (!spool.Take(stream, &file)) {
        Fail(SOURCE, u"it can't be read, or there is no room to keep it");
        return false;
    }
    ToWide(file, name);
    return !Failing();
}

std::string_view Source::Next()
{
    const unsigned char* block = nullptr;
    unsigned size = 0;
    if (!input->vb_GetNextBuffer(&block, &size))
        return {};
    return {reinterpret_cast<const char*>(block), size};
}

bool Source::Rewind()
{
    input->vv_Close();
    if (!Failing())
        input->vv_Open();
    return !Failed(SOURCE);
}

void Source::Close()
{
    input->vv_Close();
}

bool Source::Begins(std::string_view bytes)
{
    const bool found = !Failing() && Next().starts_with(bytes);
    return Rewind() && found;
}

bool Source::Guess(Encoding* encoding)
{
    const std::string_view start = Next();
    CT_MemoryInput memory(0, Bytes(start), static_cast<unsigned>(start.size()));
    if (start.starts_with("\xEF\xBB\xBF"))
        encoding->Parse("utf-8");
    else if (start.starts_with("\xFE\xFF"))
        encoding->Parse("utf-16be");
    else if (start.starts_with("\xFF\xFE") || memory.vb_IsUnicode())
        encoding->Parse("utf-16");
    else if (Rewind() && IsUtf8())
        encoding->Parse("utf-8");
    else
        *encoding = Encoding::Ansi();
    return !Failing() && Rewind();
}

bool Source::IsUtf8()
{
    const auto decoder = Decoder::Make(Encoding());
    std::string left;
    std::u16string units;
    for (std::string_view block = Next(); !block.empty(); block = Next()) {
        left += block;
        units.clear();
        const Decoder::Step step = decoder->Decode(left, input->vb_IsEmpty(), &units);
        if (step.bad)
            return false;
        left.erase(0, step.used);
    }
    return !Failing();
}
} // namespace recode
