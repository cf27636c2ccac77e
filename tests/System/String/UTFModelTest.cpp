// tests/System/String/UTFModelTest.cpp: the coders against a second, plain account of their rules.
#include <System/String/UTF.h>

#include <random>

#include "Models/UTFModel.h"
#include "Ostra/String/StringSupport.h"
#include "Support/Directory.h"

using namespace utf_model;

namespace
{
std::string SevenEncode(const std::u16string& text, bool exit)
{
    std::vector<char> out(text.size() * 3 + 16);
    int length = CT_UTF::si_WideToUTF7(out.data(), U(text.c_str()), unsigned(text.size()));
    if (exit)
        length += CT_UTF::si_WideToUTF7Exit(out.data() + length);
    return {out.data(), static_cast<std::size_t>(length)};
}

template <class Decode>
std::u16string Decoded(Decode decode, const std::string& text)
{
    // No room but what the contract asks for, so that a sanitizer sees every unit too many.
    std::unique_ptr<unsigned short[]> out(new unsigned short[text.size()]);
    const int length = decode(out.get(), text.c_str(), unsigned(text.size()));
    return {reinterpret_cast<const char16_t*>(out.get()), static_cast<std::size_t>(length)};
}

std::u16string SevenDecode(const std::string& text)
{
    return Decoded(CT_UTF::si_UTF7ToWide, text);
}

std::u16string EightDecode(const std::string& text)
{
    return Decoded(CT_UTF::si_UTF8ToWide, text);
}

std::string RealEightEncode(const std::u16string& text)
{
    std::unique_ptr<char[]> out(new char[text.size() * 3 + 1]);
    const int length = CT_UTF::si_WideToUTF8(out.get(), U(text.c_str()), unsigned(text.size()));
    return {out.get(), static_cast<std::size_t>(length)};
}

// Units about which one of the coders changes what it does.
const std::u16string EDGES = std::u16string(
    u"\x01\t\r !'()*+,-./09:;<?@AZ[\\]_az{~\x7F\x80\xFF\x100\x7FF\x800"
    u"\x1000\x2020\x3FFF\xD7FF\xD800\xDBFF\xDC00\xDFFF\xE000\xFF7F\xFF80\xFFFD\xFFFE\xFFFF");

std::u16string RandomText(std::mt19937& random, unsigned kind)
{
    std::u16string text;
    for (unsigned n = random() % 60; n; --n)
        switch (kind) {
        case 0: // mostly runs of ASCII
            text += random() % 20 ? static_cast<char16_t>(1 + random() % 127)
                                  : static_cast<char16_t>(1 + random() % 0xFFFF);
            break;
        case 1:
            text += EDGES[random() % EDGES.size()];
            break;
        case 2:
            text += static_cast<char16_t>(1 + random() % 0xFFFF);
            break;
        default: // a zero ends the text early
            text += random() % 30 ? EDGES[random() % EDGES.size()] : u'\0';
        }
    return text;
}

std::string RandomBytes(std::mt19937& random, unsigned limit)
{
    const std::string marks = "+-+-AB/z. ";
    std::string text;
    for (unsigned n = random() % 60; n; --n)
        text += random() % 3 ? marks[random() % marks.size()]
                             : static_cast<char>(random() % 40 ? 1 + random() % (limit - 1) : 0);
    return text;
}

// Cuts a text at random places.
template <class Text>
std::vector<Text> Pieces(std::mt19937& random, const Text& text)
{
    std::vector<Text> pieces;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t count = random() % 3 ? random() % 4 : random() % 30;
        pieces.push_back(text.substr(at, count));
        at += count;
    }
    return pieces;
}

void ExpectBothCoders(const std::u16string& wide)
{
    CT_UTF::sv_WideToUTF7Init();
    SevenEncoder model;
    std::string seven = model.Piece(wide);
    seven += model.Piece(std::u16string(1, 0));
    ASSERT_EQ(SevenEncode(wide, true), seven);
    CT_UTF::sv_UTF7ToWideInit();
    ASSERT_EQ(SevenDecode(seven), SevenDecoder().Piece(seven)) << seven;
    const std::string eight = EightEncode(wide);
    ASSERT_EQ(RealEightEncode(wide), eight);
    CT_UTF::sv_UTF8ToWideInit();
    ASSERT_EQ(EightDecode(eight), wide.substr(0, wide.find(u'\0')));
}
} // namespace

TEST(UTFModel, AgreesOnEveryUnitAlone)
{
    for (unsigned u = 1; u < 0x10000; ++u)
        ExpectBothCoders(std::u16string(1, static_cast<char16_t>(u)));
}

TEST(UTFModel, AgreesOnEveryPairOfEdges)
{
    for (char16_t left : EDGES)
        for (char16_t right : EDGES) {
            ExpectBothCoders({left, right});
            ExpectBothCoders({left, right, left});
            ExpectBothCoders({left, left, right, u'a'});
        }
}

TEST(UTFModel, AgreesOnRandomTexts)
{
    std::mt19937 random(Seed(24));
    for (unsigned round = 0; round < 20000; ++round)
        ExpectBothCoders(RandomText(random, round % 4));
}

TEST(UTFModel, RoundTripsWhatEndsInADirectCharacterPair)
{
    std::mt19937 random(Seed(25));
    for (unsigned round = 0; round < 5000; ++round) {
        const std::u16string wide = RandomText(random, round % 3) + u"ab";
        CT_UTF::sv_WideToUTF7Init();
        CT_UTF::sv_UTF7ToWideInit();
        ASSERT_EQ(SevenDecode(SevenEncode(wide, true)), wide);
        CT_UTF::sv_UTF8ToWideInit();
        ASSERT_EQ(EightDecode(RealEightEncode(wide)), wide);
    }
}

TEST(UTFModel, AgreesOnTextsInPieces)
{
    std::mt19937 random(Seed(26));
    CT_UTF::sv_WideToUTF7Init();
    SevenEncoder model;
    for (unsigned round = 0; round < 20000; ++round) {
        for (const std::u16string& piece : Pieces(random, RandomText(random, round % 4)))
            ASSERT_EQ(SevenEncode(piece, false), model.Piece(piece));
        if (random() % 4 == 0) {
            ASSERT_EQ(SevenEncode(u"", true), model.Piece(std::u16string(1, 0)));
        }
        if (random() % 16 == 0) {
            CT_UTF::sv_WideToUTF7Init();
            model = {};
        }
    }
}

TEST(UTFModel, AgreesOnIllFormedSevenBitsInPieces)
{
    std::mt19937 random(Seed(27));
    CT_UTF::sv_UTF7ToWideInit();
    SevenDecoder model;
    for (unsigned round = 0; round < 30000; ++round) {
        for (const std::string& piece : Pieces(random, RandomBytes(random, 128)))
            ASSERT_EQ(SevenDecode(piece), model.Piece(piece)) << piece;
        if (random() % 16 == 0) {
            CT_UTF::sv_UTF7ToWideInit();
            model = {};
        }
    }
}

TEST(UTFModel, AgreesOnIllFormedEightBitsInPieces)
{
    std::mt19937 random(Seed(28));
    CT_UTF::sv_UTF8ToWideInit();
    EightDecoder model;
    for (unsigned round = 0; round < 30000; ++round) {
        for (const std::string& piece : Pieces(random, RandomBytes(random, 0x100)))
            ASSERT_EQ(EightDecode(piece), model.Piece(piece));
        if (random() % 16 == 0) {
            CT_UTF::sv_UTF8ToWideInit();
            model = {};
        }
    }
    CT_UTF::sv_UTF8ToWideInit();
}

// Sequences of all lengths with a byte changed now and then, amid runs of ASCII.
TEST(UTFModel, AgreesOnSequencesOfAllLengthsInPieces)
{
    std::mt19937 random(Seed(29));
    const std::string characters[] = {"x",
                                      "0123456789",
                                      "\xC3\xA9",
                                      "\xE2\x82\xAC",
                                      "\xF0\x9F\x98\x80",
                                      "\xF4\x8F\xBF\xBF",
                                      "\xF0\x90\x80\x80",
                                      "\xF7\xBF\xBF\xBF",
                                      "\xF9"};
    CT_UTF::sv_UTF8ToWideInit();
    EightDecoder model;
    for (unsigned round = 0; round < 30000; ++round) {
        std::string text;
        for (unsigned n = random() % 40; n; --n)
            text += characters[random() % std::size(characters)];
        if (!text.empty() && random() % 3 == 0)
            text[random() % text.size()] = static_cast<char>(1 + random() % 0xFF);
        for (const std::string& piece : Pieces(random, text))
            ASSERT_EQ(EightDecode(piece), model.Piece(piece));
    }
    CT_UTF::sv_UTF8ToWideInit();
}

TEST(UTFModel, AgreesWhereRunsOfAsciiEnd)
{
    for (unsigned length = 0; length < 70; ++length)
        for (unsigned first :
             {0x01u, 0x7Fu, 0x80u, 0xBFu, 0xC3u, 0xE2u, 0xEFu, 0xF0u, 0xF4u, 0xF8u, 0xFFu})
            for (unsigned at = 0; at < length; ++at) {
                std::string text(length, 'x');
                text[at] = static_cast<char>(first);
                CT_UTF::sv_UTF8ToWideInit();
                EightDecoder model;
                ASSERT_EQ(EightDecode(text), model.Piece(text));
                ASSERT_EQ(EightDecode(text), model.Piece(text));
                std::u16string wide(length, u'x');
                wide[at] = static_cast<char16_t>(first << 8 | first);
                ASSERT_EQ(RealEightEncode(wide), EightEncode(wide));
            }
    CT_UTF::sv_UTF8ToWideInit();
}

TEST(UTFModel, AgreesWhereRunsOfDirectCharactersEnd)
{
    for (unsigned length = 1; length < 40; length += 3)
        for (unsigned u = 1; u < 0x102; ++u) {
            std::u16string wide(length, u'x');
            wide[u % length] = static_cast<char16_t>(u);
            ExpectBothCoders(wide);
            std::string seven(length, 'x');
            seven[u % length] = static_cast<char>(u);
            CT_UTF::sv_UTF7ToWideInit();
            ASSERT_EQ(SevenDecode(seven), SevenDecoder().Piece(seven));
        }
}

TEST(UTFModel, AgreesOnRunsOfAnyLength)
{
    for (unsigned length = 0; length < 30; ++length)
        for (unsigned split = 0; split <= length; ++split) {
            const std::u16string wide = u"ab" + std::u16string(length, u'\u0416') + u"cd";
            CT_UTF::sv_WideToUTF7Init();
            std::string seven = SevenEncode(wide.substr(0, split), false);
            seven += SevenEncode(wide.substr(split), false);
            CT_UTF::sv_UTF7ToWideInit();
            std::u16string back = SevenDecode(seven.substr(0, split));
            back += SevenDecode(seven.substr(split));
            ASSERT_EQ(back, wide);
        }
}

// Runs are written many units at a time, and what ends them differs: characters that stand for
// themselves and others, nothing, a piece that ends there.
TEST(UTFModel, AgreesOnBase64RunsByWhatEndsThem)
{
    std::mt19937 random(Seed(2417));
    const std::u16string ends[] = {u"",          u" ", u"a\u0416", u"\"",
                                   u"\"\u0416 ", u"+", u"-+",      u"\\\x7F"};
    for (unsigned length = 0; length < 80; ++length)
        for (const std::u16string& end : ends) {
            SevenEncoder model;
            CT_UTF::sv_WideToUTF7Init();
            for (unsigned piece = 0; piece < 3; ++piece) {
                std::u16string wide(length, u'\0');
                for (char16_t& unit : wide)
                    unit = static_cast<char16_t>(0x80 + random() % 0xFF80);
                ASSERT_EQ(SevenEncode(wide + end, false), model.Piece(wide + end)) << length;
            }
        }
}
