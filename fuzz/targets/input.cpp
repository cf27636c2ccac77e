// fuzz/targets/input.cpp: reads of the three inputs, beside a plain text.
//
// Input: a byte for the kind, one for the block size, the text as a piece, then reads.
#include <Ostra/Input/FileInput.h>
#include <Ostra/Input/MappedFileInput.h>
#include <Ostra/Input/MemoryInput.h>
#include <Ostra/String/UString.h>

#include "Support/Folder.h"
#include "Support/Input.h"
#include "Support/Library.h"

#include <memory>

namespace
{
enum Kind
{
    MEMORY,
    BLOCKS,
    MAPPED
};

std::unique_ptr<CT_Input> Make(unsigned kind, unsigned block, const std::string& text)
{
    if (kind == MEMORY)
        return std::make_unique<CT_MemoryInput>(block,
                                                reinterpret_cast<const unsigned char*>(text.data()),
                                                static_cast<unsigned>(text.size()));
    const std::string path = PathOf("input.txt");
    WriteBytes(path, text);
    const CT_UString name(path.c_str());
    if (kind == BLOCKS)
        return std::make_unique<CT_FileInput>(block, &name);
    return std::make_unique<CT_MappedFileInput>(block, &name);
}

class Reader
{
public:
    Reader(unsigned of, CT_Input& input, const std::string& bytes)
        : kind(of),
          source(input),
          text(bytes)
    {}

    void Step(Input& steps)
    {
        unsigned size = 1 + steps.Byte();
        switch (steps.Below(5)) {
        case 0:
            Block(source.n_GetBuffer(), false);
            break;
        case 1:
            Block(size, true);
            break;
        case 2:
            Copy(size);
            break;
        case 3:
            Skip(size);
            break;
        default:
            source.v_SetBuffer(size);
        }
        REQUIRE(source.vn_GetOffset() == offset);
        REQUIRE((source.vb_IsEmpty() != 0) == (Left() == 0));
        REQUIRE(source.vn_GetSize() == text.size());
    }

private:
    unsigned Left() const { return static_cast<unsigned>(text.size()) - offset; }

    std::string Next(unsigned size)
    {
        const std::string piece = text.substr(offset, size);
        offset += static_cast<unsigned>(piece.size());
        return piece;
    }
    void Block(unsigned size, bool told)
    {
        const unsigned char* data = nullptr;
        unsigned count = 0;
        const int got = told ? source.vb_GetNextBuffer(size, &data, &count)
                             : source.vb_GetNextBuffer(&data, &count);
        REQUIRE((got != 0) == (Left() > 0));
        if (got)
            REQUIRE(std::string(reinterpret_cast<const char*>(data), count) == Next(size));
    }
    void Copy(unsigned size)
    {
        // Past its end a memory input copies what lies there: the caller's fault.
        if (kind == MEMORY && Left())
            size = std::min(size, Left());
        std::string place(size, '?');
        const bool whole = Left() >= size;
        const int got =
            source.vb_CopyNextBuffer(reinterpret_cast<unsigned char*>(place.data()), size);
        REQUIRE((got != 0) == (whole && Left() > 0));
        std::string wanted = Left() ? Next(size) : "";
        wanted.resize(size, '?');
        REQUIRE(place == wanted);
    }
    void Skip(unsigned size)
    {
        if (kind == MEMORY)
            size = std::min(size, Left());
        const bool before = Left() > 0;
        const int got = source.vb_Skip(size);
        offset += std::min(Left(), size);
        REQUIRE((got != 0) == (kind == MEMORY ? Left() > 0 : before));
    }

    unsigned kind;
    CT_Input& source;
    const std::string& text;
    unsigned offset = 0;
};
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Input input(data, size);
    const unsigned kind = input.Below(3);
    const unsigned block = 1 + input.Byte();
    std::string text = input.Piece(255);
    // An empty file has no view.
    if (text.empty())
        text = "x";
    for (unsigned times = input.Below(5); times > 0; --times)
        text += text;
    const std::unique_ptr<CT_Input> source = Make(kind, block, text);
    source->vv_Open();
    Reader reader(kind, *source, text);
    for (unsigned step = 0; step < 100 && !input.IsEmpty(); ++step)
        reader.Step(input);
    source->vv_Close();
    REQUIRE(TakeCode() == 0);
    return 0;
}
