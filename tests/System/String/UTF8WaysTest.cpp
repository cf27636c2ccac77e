// tests/System/String/UTF8WaysTest.cpp: the ways of the UTF-8 coder beside its plain rules, at the
// ends of pages, and on texts that it takes in pieces.
#include <Ostra/Frame/Text.h>
#include <System/String/UTF.h>
#include <System/String/UTF8Ways.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "Models/UTFModel.h"
#include "Support/Directory.h"
#include "Support/PageEnd.h"

using namespace utf_model;

namespace
{
using Encode = char* (*)(char*, const unsigned short*&, const unsigned short*);
using EncodeText = char* (*)(char*, const unsigned short*, unsigned);
using Decode = unsigned short* (*)(unsigned short*, const char*&, const char*);

std::vector<Encode> EncodingWays()
{
    std::vector<Encode> ways{CT_UTF8Ways::spc_EncodePlain, CT_UTF8Ways::spc_Encode};
    if (CT_Vector::sb_HasWide())
        ways.push_back(CT_UTF8Ways::spc_EncodeWide);
    return ways;
}

// Pieces of 100 units, of which the last one ends at a terminator.
char* EncodePieces(char* out, const unsigned short* text, unsigned count)
{
    const auto extend = [](const unsigned short*& known, unsigned& left) {
        unsigned piece = std::min(left, 100u);
        left -= piece;
        for (; piece && *known; --piece)
            ++known;
        return left && !piece;
    };
    return CT_UTF8Ways::spc_EncodePieces(out, text, count, extend);
}

char* EncodeByCoder(char* out, const unsigned short* text, unsigned count)
{
    return out + CT_UTF::si_WideToUTF8(out, text, count);
}

std::vector<EncodeText> TextWays()
{
    std::vector<EncodeText> ways{EncodePieces, EncodeByCoder};
    if (CT_VectorPacks::sb_Has())
        ways.push_back(CT_UTF8Ways::spc_EncodePacked);
    return ways;
}

std::vector<Decode> DecodingWays()
{
    std::vector<Decode> ways{CT_UTF8Ways::spu_DecodePlain, CT_UTF8Ways::spu_Decode};
    if (CT_Vector::sb_HasWide())
        ways.push_back(CT_UTF8Ways::spu_DecodeWide);
    return ways;
}

// Runs of one kind of characters, of which one in `rare` is of another.
std::u16string MixedText(std::mt19937& random, std::size_t size)
{
    const char16_t starts[] = {0x20, 0x20, 0x410, 0x3040, 0xD800, 0xFF00};
    const char16_t start = starts[random() % std::size(starts)];
    const unsigned rare = 1 + random() % 90;
    std::u16string text;
    while (text.size() < size) {
        const char16_t from = random() % rare ? start : starts[random() % std::size(starts)];
        text += static_cast<char16_t>(from + random() % 0x60);
    }
    return text;
}

// The bytes end with a page, and so does the room, of which the last byte is the terminator's.
void ExpectEncoded(Encode way, const PageEnd& in, const PageEnd& out, const std::u16string& text)
{
    const std::string expected = EightEncode(text);
    const unsigned short* from = in.Last<unsigned short>(text.size());
    std::memcpy(in.Last<unsigned short>(text.size()), text.data(), text.size() * 2);
    char* const room = out.Last<char>(expected.size() + 1);
    const unsigned short* const end = from + text.size();
    char* to = way(room, from, end);
    while (from < end)
        to = pc_Encode(to, *from++);
    ASSERT_EQ(std::string(room, to), expected);
}

// Whether each way gives the text up to its terminator, and leaves what lies behind the result and
// the byte of a terminator.
void ExpectTextEncoded(const unsigned short* text, unsigned count, const std::string& expected)
{
    for (const EncodeText way : TextWays()) {
        std::string room(3 * expected.size() + 300, '?');
        char* const end = way(room.data(), text, count);
        ASSERT_EQ(std::string(room.data(), end), expected);
        const auto behind = static_cast<std::size_t>(end - room.data()) + 1;
        ASSERT_EQ(room.find_first_not_of('?', behind), std::string::npos);
    }
}

// Of the room, a unit for each byte, nothing behind the result may have changed.
void ExpectDecoded(Decode way, const PageEnd& in, const PageEnd& out, const std::string& bytes,
                   const std::u16string& expected)
{
    constexpr unsigned short FILL = 0x5A5A;
    const char* from = in.Last<char>(bytes.size());
    std::memcpy(in.Last<char>(bytes.size()), bytes.data(), bytes.size());
    unsigned short* const room = out.Last<unsigned short>(bytes.size());
    std::fill_n(room, bytes.size(), FILL);
    const char* const end = from + bytes.size();
    unsigned short* to = way(room, from, end);
    while (from < end)
        to = CT_UTF8Ways::spu_Sequence(to, from);
    ASSERT_EQ(std::u16string(room, to), expected);
    ASSERT_EQ(std::count(to, room + bytes.size(), FILL), room + bytes.size() - to);
}

std::u16string DecodedAtOnce(const std::string& bytes)
{
    std::vector<unsigned short> out(bytes.size());
    const int length = CT_UTF::si_UTF8ToWide(out.data(), bytes.data(), unsigned(bytes.size()));
    return {out.begin(), out.begin() + length};
}
} // namespace

TEST(UTF8Ways, EncodeTheSame)
{
    std::mt19937 random(Seed(2410));
    const PageEnd in, out;
    for (unsigned round = 0; round < 4000; ++round) {
        const std::u16string text = MixedText(random, random() % 300);
        for (const Encode way : EncodingWays())
            ASSERT_NO_FATAL_FAILURE(ExpectEncoded(way, in, out, text)) << round;
    }
}

// Texts at each place of a block, whose terminator ends a page or lies before the count.
TEST(UTF8Ways, EncodeTextsTheSameUpToATerminator)
{
    std::mt19937 random(Seed(2414));
    const PageEnd page;
    for (unsigned round = 0; round < 6000; ++round) {
        std::u16string text = MixedText(random, random() % 300);
        const std::size_t size = text.size();
        if (round % 2)
            text.resize(size + random() % 100, u'\0');
        text += u'\0';
        auto* const units = page.Last<unsigned short>(text.size());
        std::memcpy(units, text.data(), 2 * text.size());
        const std::string expected = EightEncode(text.substr(0, size));
        for (const std::size_t count : {size, size + 1, size + 1000, std::size_t(0xFFFFFFFF)})
            ASSERT_NO_FATAL_FAILURE(ExpectTextEncoded(units, unsigned(count), expected)) << round;
        const std::size_t less = random() % (size + 1);
        ASSERT_NO_FATAL_FAILURE(
            ExpectTextEncoded(units, unsigned(less), EightEncode(text.substr(0, less))));
    }
}

// Without a terminator nothing behind the count is read.
TEST(UTF8Ways, EncodeTextsToTheEndOfAPage)
{
    std::mt19937 random(Seed(2415));
    const PageEnd page;
    for (std::size_t size = 0; size < 200; ++size) {
        const std::u16string text = MixedText(random, size);
        auto* const units = page.Last<unsigned short>(size);
        std::memcpy(units, text.data(), 2 * size);
        ASSERT_NO_FATAL_FAILURE(ExpectTextEncoded(units, unsigned(size), EightEncode(text)));
    }
}

TEST(UTF8Ways, EncodeEachUnitTheSame)
{
    std::u16string text(0xFFFF, u'\0');
    for (unsigned unit = 1; unit <= 0xFFFF; ++unit)
        text[unit - 1] = static_cast<char16_t>(unit);
    ASSERT_NO_FATAL_FAILURE(ExpectTextEncoded(qcuz_Text(text.c_str()), 0xFFFF, EightEncode(text)));
}

TEST(UTF8Ways, DecodeTheSame)
{
    std::mt19937 random(Seed(2411));
    const PageEnd in, out;
    for (unsigned round = 0; round < 4000; ++round) {
        const std::u16string text = MixedText(random, random() % 300);
        for (const Decode way : DecodingWays())
            ASSERT_NO_FATAL_FAILURE(ExpectDecoded(way, in, out, EightEncode(text), text)) << round;
    }
}

TEST(UTF8Ways, OneCharacterOfManyIsSeenAtEachPlace)
{
    const PageEnd in, out;
    for (const unsigned size : {1u, 8u, 16u, 31u, 32u, 33u, 64u, 127u, 128u, 129u})
        for (unsigned at = 0; at < size; ++at)
            for (const char16_t c : {u'\x7F', u'\x80', u'\x800', u'\x8000', u'\xFF80'}) {
                std::u16string text(size, u'x');
                text[at] = c;
                for (const Encode way : EncodingWays())
                    ASSERT_NO_FATAL_FAILURE(ExpectEncoded(way, in, out, text)) << at;
                for (const Decode way : DecodingWays())
                    ASSERT_NO_FATAL_FAILURE(ExpectDecoded(way, in, out, EightEncode(text), text));
            }
}

// A text is measured and coded piece by piece; characters lie across their ends.
TEST(UTF8Ways, LongTextsAreCodedAsShortOnes)
{
    std::mt19937 random(Seed(2412));
    for (unsigned round = 0; round < 60; ++round) {
        const std::u16string text = MixedText(random, 8000 * (1 + round % 3) + random() % 400);
        const std::string expected = EightEncode(text);
        std::vector<char> out(text.size() * 3 + 1);
        for (const unsigned count : {unsigned(text.size()), 0xFFFFFFFFu}) {
            const int length = CT_UTF::si_WideToUTF8(out.data(), qcuz_Text(text.c_str()), count);
            ASSERT_EQ(std::string(out.data(), static_cast<std::size_t>(length)), expected);
            ASSERT_EQ(out[static_cast<std::size_t>(length)], '\0');
        }
        CT_UTF::sv_UTF8ToWideInit();
        ASSERT_EQ(DecodedAtOnce(expected), text);
    }
}

TEST(UTF8Ways, LongTextsEndAtATerminator)
{
    const PageEnd page;
    for (const std::size_t size : {0u, 1u, 31u, 127u, 128u, 129u, 1000u, 2000u}) {
        const std::u16string text(size, u'x');
        auto* const units = page.Last<unsigned short>(size + 1);
        std::memcpy(units, text.c_str(), 2 * (size + 1));
        std::string out(3 * size + 1, '?');
        ASSERT_EQ(CT_UTF::si_WideToUTF8(out.data(), units, 100000), int(size));
        char* const bytes = page.Last<char>(size + 1);
        std::memcpy(bytes, std::string(size, 'x').c_str(), size + 1);
        std::vector<unsigned short> room(size);
        CT_UTF::sv_UTF8ToWideInit();
        ASSERT_EQ(CT_UTF::si_UTF8ToWide(room.data(), bytes, 100000), int(size));
    }
    for (std::size_t at = 8100; at < 8300; ++at) {
        std::u16string text(9000, u'\u044F');
        text[at] = 0;
        std::string out(3 * text.size() + 1, '?');
        ASSERT_EQ(CT_UTF::si_WideToUTF8(out.data(), qcuz_Text(text.c_str()), 9000), int(2 * at));
    }
}

// What is no UTF-8 is decoded as piece by piece, wherever the coder's own pieces end.
TEST(UTF8Ways, LongIllFormedTextsAreDecodedAsTheModelDoes)
{
    std::mt19937 random(Seed(2413));
    for (unsigned round = 0; round < 60; ++round) {
        std::string bytes = EightEncode(MixedText(random, 6000 + random() % 6000));
        for (unsigned faults = random() % 2000; faults; --faults)
            bytes[random() % bytes.size()] = static_cast<char>(1 + random() % 0xFF);
        CT_UTF::sv_UTF8ToWideInit();
        EightDecoder model;
        ASSERT_EQ(DecodedAtOnce(bytes), model.Piece(bytes));
        ASSERT_EQ(DecodedAtOnce("abc"), model.Piece("abc"));
    }
    CT_UTF::sv_UTF8ToWideInit();
}
