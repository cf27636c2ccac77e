// tests/Ostra/Input/MemoryInputTest.cpp
#include <Ostra/Input/MemoryInput.h>

#include <gtest/gtest.h>

#include <windows.h>

#include <memory>
#include <string>

#include "InputProbe.h"

namespace
{
const unsigned char* Bytes(const std::string& text)
{
    return reinterpret_cast<const unsigned char*>(text.data());
}

// An input over the whole text, which has to stay.
std::unique_ptr<CT_MemoryInput> Over(const std::string& text, unsigned block = 8)
{
    return std::make_unique<CT_MemoryInput>(block, Bytes(text), unsigned(text.size()));
}
} // namespace

TEST(MemoryInput, BlocksLieInTheSource)
{
    const std::string text(250, 'x');
    CT_MemoryInput input(100, Bytes(text), 250);
    EXPECT_EQ(input.vn_GetSize(), 250u);
    const unsigned char* data = nullptr;
    unsigned size = 0;
    for (const unsigned expected : {100u, 100u, 50u}) {
        EXPECT_EQ(input.vb_IsEmpty(), 0);
        const unsigned before = input.vn_GetOffset();
        EXPECT_EQ(input.vb_GetNextBuffer(&data, &size), 1);
        EXPECT_EQ(size, expected);
        EXPECT_EQ(data, Bytes(text) + before);
        EXPECT_EQ(input.vn_GetOffset(), before + expected);
    }
    EXPECT_EQ(input.vb_IsEmpty(), 1);
    data = nullptr;
    size = 4711;
    EXPECT_EQ(input.vb_GetNextBuffer(&data, &size), 0);
    EXPECT_EQ(input.vb_GetNextBuffer(10, &data, &size), 0);
    EXPECT_EQ(data, nullptr) << "nothing is said of a block that isn't there";
    EXPECT_EQ(size, 4711u);
    EXPECT_EQ(input.vn_GetOffset(), 250u);
}

TEST(MemoryInput, ThereIsNothingInNothing)
{
    CT_MemoryInput input(8, nullptr, 0);
    EXPECT_EQ(input.vb_IsEmpty(), 1);
    EXPECT_EQ(input.vn_GetSize(), 0u);
    EXPECT_EQ(input.vn_GetOffset(), 0u);
    EXPECT_EQ(Next(input), NO_BLOCK);
    EXPECT_EQ(Next(input, 1), NO_BLOCK);
    EXPECT_EQ(Copy(input, 2), (Copied{0, "??"}));
    EXPECT_EQ(input.vb_Skip(0), 0);
    EXPECT_EQ(input.vb_IsUnicode(), IsTextUnicode(nullptr, 0, nullptr));
}

TEST(MemoryInput, TheSizeOfACallGovernsThatCall)
{
    const auto input = Over(INPUT_TEXT, 4);
    EXPECT_EQ(Next(*input), "0123");
    EXPECT_EQ(Next(*input, 7), "456789a");
    EXPECT_EQ(Next(*input), "bcde");
    EXPECT_EQ(Next(*input, 0), "") << "a block of no bytes is one";
    input->v_SetBuffer(2);
    EXPECT_EQ(input->n_GetBuffer(), 2u);
    EXPECT_EQ(Next(*input), "fg");
    EXPECT_EQ(Next(*input, 0xFFFFFFFF), "hij");
    EXPECT_EQ(Next(*input, 0), NO_BLOCK);
}

TEST(MemoryInput, OpenAndCloseDoNothing)
{
    const auto input = Over(INPUT_TEXT, 4);
    EXPECT_EQ(Next(*input), "0123");
    input->vv_Open();
    EXPECT_EQ(input->vn_GetOffset(), 4u);
    input->vv_Close();
    EXPECT_EQ(Next(*input), "4567");
    EXPECT_EQ(input->vn_GetSize(), 20u);
}

TEST(MemoryInput, ACopyIsntHeldToTheEnd)
{
    // The input has the first ten bytes of a larger memory.
    CT_MemoryInput input(4, Bytes(INPUT_TEXT), 10);
    EXPECT_EQ(Copy(input, 4), (Copied{1, "0123"}));
    EXPECT_EQ(input.vn_GetOffset(), 4u);
    EXPECT_EQ(Copy(input, 0), (Copied{1, ""}));
    EXPECT_EQ(Copy(input, 9), (Copied{1, "456789abc"}));
    EXPECT_EQ(input.vn_GetOffset(), 13u);
    EXPECT_EQ(input.vn_GetSize(), 10u);
    EXPECT_EQ(input.vb_IsEmpty(), 1);
    EXPECT_EQ(Copy(input, 2), (Copied{0, "??"}));
    EXPECT_EQ(Next(input), NO_BLOCK);
}

TEST(MemoryInput, ACopyMayGoToItsOwnSource)
{
    std::string text = INPUT_TEXT;
    const auto bytes = reinterpret_cast<unsigned char*>(text.data());
    CT_MemoryInput input(4, bytes, unsigned(text.size()));
    input.vb_Skip(2);
    EXPECT_EQ(input.vb_CopyNextBuffer(bytes, 18), 1);
    EXPECT_EQ(text, "23456789abcdefghijij");
}

TEST(MemoryInput, ASkipTellsWhetherSomethingIsLeftBehindIt)
{
    const auto input = Over(INPUT_TEXT);
    EXPECT_EQ(input->vb_Skip(5), 1);
    EXPECT_EQ(Next(*input, 2), "56");
    EXPECT_EQ(input->vb_Skip(0), 1);
    EXPECT_EQ(input->vb_Skip(12), 1);
    EXPECT_EQ(input->vn_GetOffset(), 19u);
    EXPECT_EQ(input->vb_Skip(1), 0) << "the end is reached";
    EXPECT_EQ(input->vn_GetOffset(), 20u);
    EXPECT_EQ(input->vb_Skip(5), 0);
    EXPECT_EQ(input->vn_GetOffset(), 25u) << "and passed";
    EXPECT_GT(input->vn_GetOffset(), input->vn_GetSize());
    EXPECT_EQ(input->vb_IsEmpty(), 1);
    EXPECT_EQ(Next(*input), NO_BLOCK);
}

TEST(MemoryInput, SetTakesAnotherMemory)
{
    const std::string other = "other";
    const auto input = Over(INPUT_TEXT, 4);
    input->vb_Skip(30);
    input->v_Set(3, Bytes(other), 5);
    EXPECT_EQ(input->n_GetBuffer(), 3u);
    EXPECT_EQ(input->vn_GetSize(), 5u);
    EXPECT_EQ(input->vn_GetOffset(), 0u);
    EXPECT_EQ(Next(*input), "oth");
    EXPECT_EQ(Next(*input), "er");
}

// The system's answer for the first hundred bytes, wherever the input stands.
TEST(MemoryInput, IsUnicodeIsTheSystemsGuess)
{
    const auto guess = [](const std::string& text, unsigned size) {
        return IsTextUnicode(text.data(), int(size), nullptr) != 0;
    };
    std::string wide;
    for (const char c : std::string("plain text as sixteen-bit units, longer than fifty of them"))
        wide += {c, '\0'};
    const std::string narrow = "plain text as bytes, which no statistics takes for wide units, "
                               "longer than a hundred of them, all in all";
    for (const std::string& text :
         {wide, narrow, narrow.substr(0, 100) + wide, wide.substr(0, 100) + narrow,
          std::string("\xFF\xFE\x41\x00\x0A\x00", 6), std::string("\xFF\xFE\x41\x12", 4),
          std::string("A")}) {
        SCOPED_TRACE(text.substr(0, 20));
        const auto input = Over(text);
        const bool expected = guess(text, unsigned(std::min<std::size_t>(text.size(), 100)));
        EXPECT_EQ(input->vb_IsUnicode() != 0, expected);
        input->vb_Skip(3);
        EXPECT_EQ(input->vb_IsUnicode() != 0, expected);
        EXPECT_EQ(input->vn_GetOffset(), 3u);
    }
    EXPECT_NE(Over(wide)->vb_IsUnicode(), 0);
    EXPECT_EQ(Over(narrow)->vb_IsUnicode(), 0);
    EXPECT_NE(Over(wide.substr(0, 100) + narrow)->vb_IsUnicode(), 0);
}

TEST(MemoryInput, ObjectsLiveOnTheHeapToo)
{
    CT_Input* input = new CT_MemoryInput(4, Bytes(INPUT_TEXT), 20);
    EXPECT_EQ(Next(*input), "0123");
    delete input;
}
