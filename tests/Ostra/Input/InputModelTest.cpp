// tests/Ostra/Input/InputModelTest.cpp: random reads of all inputs, beside a plain text.
#include <Ostra/Input/FileInput.h>
#include <Ostra/Input/MappedFileInput.h>
#include <Ostra/Input/MemoryInput.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <random>
#include <string>

#include "InputProbe.h"
#include "Support/Directory.h"

namespace
{
enum Kind
{
    MEMORY,
    FILE_BLOCKS,
    MAPPED
};

std::unique_ptr<CT_Input> Make(Kind kind, unsigned block, const std::string& text)
{
    const CT_UString name = Name("file");
    if (kind == MEMORY)
        return std::make_unique<CT_MemoryInput>(
            block, reinterpret_cast<const unsigned char*>(text.data()), unsigned(text.size()));
    if (kind == FILE_BLOCKS)
        return std::make_unique<CT_FileInput>(block, &name);
    return std::make_unique<CT_MappedFileInput>(block, &name);
}

// What an input of that text does: the text, and how much of it is consumed.
struct Model
{
    Kind kind;
    std::string text;
    unsigned offset = 0;

    unsigned Left() const { return unsigned(text.size()) - offset; }

    std::string Next(unsigned size)
    {
        if (!Left())
            return NO_BLOCK;
        const std::string block = text.substr(offset, size);
        offset += unsigned(block.size());
        return block;
    }
    Copied Copy(unsigned size)
    {
        if (!Left())
            return {0, std::string(size, '?')};
        const int whole = Left() >= size;
        std::string bytes = Next(size);
        bytes.resize(size, '?');
        return {whole, bytes};
    }
    int Skip(unsigned size)
    {
        const int left_before = Left() > 0;
        offset += std::min(Left(), size);
        return kind == MEMORY ? Left() > 0 : left_before;
    }
};

void Step(CT_Input& input, Model& model, std::mt19937& random)
{
    // Sizes that a memory input takes as the others do: neither 0 nor past the end for a copy.
    unsigned size = 1 + random() % (random() % 8 ? 40 : 400);
    switch (random() % 5) {
    case 0:
        EXPECT_EQ(Next(input), model.Next(input.n_GetBuffer()));
        break;
    case 1:
        EXPECT_EQ(Next(input, size), model.Next(size));
        break;
    case 2:
        if (model.kind == MEMORY && model.Left())
            size = std::min(size, model.Left());
        EXPECT_EQ(Copy(input, size), model.Copy(size));
        break;
    case 3:
        if (model.kind == MEMORY)
            size = std::min(size, model.Left());
        EXPECT_EQ(input.vb_Skip(size), model.Skip(size));
        break;
    default:
        input.v_SetBuffer(size);
    }
    EXPECT_EQ(input.vn_GetOffset(), model.offset);
    EXPECT_EQ(input.vb_IsEmpty(), model.Left() == 0);
    EXPECT_EQ(input.vn_GetSize(), model.text.size());
}
} // namespace

TEST(InputModel, AllInputsReadAsThePlainText)
{
    unsigned steps = 0;
    const unsigned first = Seed(19970101);
    for (unsigned seed = first; seed < first + 60; ++seed) {
        std::mt19937 random(seed);
        std::string text(1 + random() % 2000, ' ');
        for (char& c : text)
            c = char(random());
        WriteBytes("file", text);
        for (const Kind kind : {MEMORY, FILE_BLOCKS, MAPPED}) {
            SCOPED_TRACE(testing::Message() << "seed " << seed << ", kind " << kind);
            const auto input = Make(kind, 1 + random() % 100, text);
            input->vv_Open();
            Model model = {kind, text};
            for (unsigned end = 0; end < 3; end += model.Left() == 0, ++steps)
                Step(*input, model, random);
            input->vv_Close();
            EXPECT_EQ(TakeSystem(), NO_FAILURE);
            if (testing::Test::HasFailure())
                return;
        }
    }
    std::printf("model inputs: 60 seeds, %u operations, 0 differences\n", steps);
}
