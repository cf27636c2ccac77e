// tests/Examples/RecodePiecesTest.cpp: decoders and encoders of the recode program on random texts
// in random pieces.
#include <Converter.h>
#include <Decoder.h>
#include <Encoder.h>

#include <gtest/gtest.h>

#include <windows.h>

#include "Support/Directory.h"

#include <algorithm>
#include <random>
#include <string>

using recode::Converter;
using recode::Encoding;

namespace
{
const char* const NAMES[] = {"utf-8", "utf-16", "utf-16be", "utf-7", "1252", "1251", "932", "949"};

Encoding Named(const std::string& name)
{
    Encoding encoding;
    EXPECT_TRUE(encoding.Parse(name)) << name;
    return encoding;
}

// The bytes through a converter, in pieces that chance makes; whole without it.
std::string Through(const std::string& from, const std::string& to, const std::string& bytes,
                    std::mt19937* chance)
{
    recode::Options options;
    options.replace = true;
    Converter converter(Named(from), Named(to), options);
    std::string made;
    size_t at = 0;
    do {
        const size_t left = bytes.size() - at;
        const size_t size = chance ? std::min<size_t>(left, (*chance)() % 5) : left;
        EXPECT_TRUE(converter.Take(std::string_view(bytes).substr(at, size),
                                   at + size == bytes.size(), &made));
        at += size;
    } while (at < bytes.size());
    return made;
}

// Characters from everywhere: letters, line ends, pairs, what UTF-7 has to write otherwise.
std::u16string RandomText(std::mt19937& random)
{
    std::u16string text;
    for (unsigned n = random() % 60; n; --n) {
        switch (random() % 7) {
        case 0:
            text += u"+-\\~\r\n\t &="[random() % 10];
            break;
        case 1:
            text += static_cast<char16_t>(0xD800 + random() % 0x400);
            text += static_cast<char16_t>(0xDC00 + random() % 0x400);
            break;
        case 2:
            text += static_cast<char16_t>(random() % 0xD800);
            break;
        case 3:
            text += static_cast<char16_t>(0xE000 + random() % 0x2000);
            break;
        default:
            text += static_cast<char16_t>(' ' + random() % 95);
        }
    }
    return text;
}

// Counts the bytes that it is given, also those that it is given again.
class CountingDecoder : public recode::Decoder
{
public:
    CountingDecoder(const Encoding& encoding, size_t* bytes) : decoder(Make(encoding)), count(bytes)
    {}
    Step Decode(std::string_view bytes, bool last, std::u16string* units) override
    {
        *count += bytes.size();
        return decoder->Decode(bytes, last, units);
    }

private:
    const std::unique_ptr<Decoder> decoder;
    size_t* const count;
};

struct Replaced
{
    std::string made;
    std::string told;
    size_t given = 0; // to the decoder

    bool operator==(const Replaced& other) const
    {
        return made == other.made && told == other.told;
    }
};

// The bytes as UTF-8, in pieces of that size.
Replaced Replace(const std::string& from, const std::string& bytes, size_t piece)
{
    recode::Options options;
    options.replace = true;
    Replaced replaced;
    Converter converter(Named(from), Named("utf-8"), options,
                        std::make_unique<CountingDecoder>(Named(from), &replaced.given));
    for (size_t at = 0; at < bytes.size(); at += piece)
        EXPECT_TRUE(converter.Take(std::string_view(bytes).substr(at, piece),
                                   at + piece >= bytes.size(), &replaced.made));
    replaced.told = converter.IllFormed();
    return replaced;
}

struct Ill
{
    const char* encoding;
    std::string text;
    std::string bad; // ill-formed bytes
};

const Ill ILLS[] = {
    {"utf-8", "a\xE2\x82\xAC", "\xFF"},
    {"utf-8", "\xF0\x9F\x98\x80", "\xE2\x82"},
    {"utf-16", {"a\0\x3D\xD8\0\xDE", 6}, {"\0\xDC", 2}},
    {"utf-16be", {"\0a\xD8\x3D\xDE\0", 6}, {"\xDC\0", 2}},
    {"utf-7", "+2D3eAA-x", "\xFF"},
    {"1253", "a\xE1", "\xD2"},
    {"932", "a\x82\xA0", "\xFF"},
};
} // namespace

TEST(RecodePieces, TextGoesThereAndBackInAnyPieces)
{
    const unsigned first = Seed(19970103);
    for (unsigned seed = first; seed < first + 400; ++seed) {
        std::mt19937 random(seed);
        const std::u16string text = RandomText(random);
        std::string bytes;
        recode::Encoder::Make(Named("utf-16"))->Encode(text, &bytes);
        if (text.starts_with(recode::MARK))
            continue;
        for (const char* name : {"utf-8", "utf-16be", "utf-7"}) {
            SCOPED_TRACE(testing::Message() << "seed " << seed << ", " << name);
            const std::string there = Through("utf-16", name, bytes, &random);
            EXPECT_EQ(there, Through("utf-16", name, bytes, nullptr));
            const std::string back = Through(name, "utf-16", there, &random);
            EXPECT_EQ(back, "\xFF\xFE" + bytes);
            if (testing::Test::HasFailure())
                return;
        }
    }
}

// Whatever the bytes are: pieces make no difference, and what comes out is a text.
TEST(RecodePieces, AnyBytesInAnyPieces)
{
    const unsigned first = Seed(19970104);
    for (unsigned seed = first; seed < first + 400; ++seed) {
        std::mt19937 random(seed);
        std::string bytes(random() % 80, ' ');
        const char* const some = "+-A/\r\n\x82\xE2\x82\xAC\xF0\x9F\xFF\xD8\xDC";
        for (char& c : bytes)
            c = random() % 2 ? some[random() % 15] : static_cast<char>(random());
        for (const char* name : NAMES) {
            SCOPED_TRACE(testing::Message() << "seed " << seed << ", " << name);
            const std::string whole = Through(name, "utf-8", bytes, nullptr);
            EXPECT_EQ(Through(name, "utf-8", bytes, &random), whole);
            recode::Options strict;
            Converter again(Named("utf-8"), Named("utf-16"), strict);
            std::string made;
            EXPECT_TRUE(again.Take(whole, true, &made)) << "well-formed";
            if (testing::Test::HasFailure())
                return;
        }
    }
}

// From bytes that are all ill-formed to few in a long text.
TEST(RecodePieces, IllFormedBytesMakeTheSameOfABlockAsOfSingleBytes)
{
    std::mt19937 random(Seed(19970105));
    for (const Ill& ill : ILLS) {
        for (const unsigned distance : {1U, 2U, 9U, 60U, 700U}) {
            SCOPED_TRACE(testing::Message() << ill.encoding << ", " << distance);
            std::string bytes;
            while (bytes.size() < 3000)
                bytes += random() % distance ? ill.text : ill.bad;
            EXPECT_EQ(Replace(ill.encoding, bytes, bytes.size()), Replace(ill.encoding, bytes, 1));
        }
    }
}

TEST(RecodePieces, IllFormedBytesAreNoReasonToGoOverTheRestOfABlockAgain)
{
    for (const Ill& ill : ILLS) {
        for (const unsigned distance : {1U, 2U, 9U, 60U, 700U}) {
            std::string bytes;
            while (bytes.size() < 0x8000) {
                for (unsigned n = 1; n < distance; ++n)
                    bytes += ill.text;
                bytes += ill.bad;
            }
            EXPECT_LT(Replace(ill.encoding, bytes, bytes.size()).given, 20 * bytes.size())
                << ill.encoding << ", " << distance;
        }
    }
}
