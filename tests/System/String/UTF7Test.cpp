// tests/System/String/UTF7Test.cpp: the UTF-7 coders, streaming and with their oddities.
#include <System/String/UTF.h>

#include <System/String/StringConvert.h>

#include "Ostra/String/StringSupport.h"

namespace
{
std::string Encode(const std::u16string& text)
{
    std::vector<char> out(text.size() * 3 + 8, 'Z');
    const int length =
        CT_StringConvert::si_WideToUTF7(out.data(), U(text.c_str()), unsigned(text.size()));
    EXPECT_EQ(out[length], 0);
    return {out.data(), static_cast<std::size_t>(length)};
}

// One piece, without a reset before it.
std::u16string DecodePiece(const std::string& text)
{
    std::vector<unsigned short> out(text.size() + 1, 0x5A5A);
    const int length = CT_UTF::si_UTF7ToWide(out.data(), text.c_str(), unsigned(text.size()));
    EXPECT_EQ(out[length], 0x5A5A) << "no terminator is added";
    return {out.begin(), out.begin() + length};
}

std::u16string Decode(const std::string& text)
{
    CT_UTF::sv_UTF7ToWideInit();
    return DecodePiece(text);
}

std::string EncodePiece(const std::u16string& text)
{
    std::vector<char> out(text.size() * 3 + 8);
    return {out.data(), static_cast<std::size_t>(CT_UTF::si_WideToUTF7(out.data(), U(text.c_str()),
                                                                       unsigned(text.size())))};
}

std::string EncodeExit()
{
    char out[8] = "ZZZZZZZ";
    const int length = CT_UTF::si_WideToUTF7Exit(out);
    EXPECT_EQ(out[length], 0);
    return {out, static_cast<std::size_t>(length)};
}
} // namespace

TEST(UTF7, EncodesAsPublished)
{
    struct Case
    {
        std::u16string wide;
        std::string bytes;
    };
    // The minus that ends a run is always written here, also where the next character would end it.
    const Case cases[] = {
        {u"A\u2262\u0391.", "A+ImIDkQ-."},
        {u"Hi Mom -\u263A-!", "Hi Mom -+Jjo--+ACE-"},
        {u"\u65E5\u672C\u8A9E", "+ZeVnLIqe-"},
        {u"Item 3 is \u00A31.", "Item 3 is +AKM-1."},
        {u"a+b", "a+-b"},
        {u"\u00E9", "+AOk-"},
        {u"+", "+-"},
        {u"\u00E9+\u00E9", "+AOkAKwDp-"},
        {u"\u00E9-", "+AOk--"},
        {u"~\\", "+AH4AXA-"},
        {u"\U0001F600", "+2D3eAA-"},
        {u"\u007F\u0080", "+AH8AgA-"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.bytes);
        EXPECT_EQ(Encode(c.wide), c.bytes);
        EXPECT_EQ(Decode(c.bytes), c.wide == u"+" ? u"" : c.wide);
    }
}

TEST(UTF7, DecodesWhatOtherEncodersWrite)
{
    EXPECT_EQ(Decode("A+ImIDkQ.\n"), u"A\u2262\u0391.\n");
    EXPECT_EQ(Decode("Hi Mom -+Jjo--!"), u"Hi Mom -\u263A-!");
    EXPECT_EQ(Decode("+ZeVnLIqe-"), u"\u65E5\u672C\u8A9E");
    EXPECT_EQ(Decode("Item 3 is +AKM-1."), u"Item 3 is \u00A31.");
}

TEST(UTF7, DirectCharactersStandForThemselves)
{
    const std::string direct =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789'(),-./:? \t\r\n";
    for (char16_t u = 1; u < 128; ++u) {
        const bool stands = direct.find(static_cast<char>(u)) != std::string::npos;
        const std::string bytes = Encode({u});
        EXPECT_EQ(bytes.size(), stands ? 1u : u == u'+' ? 2u : 5u) << int(u);
        EXPECT_EQ(bytes[0], stands ? static_cast<char>(u) : '+');
    }
}

TEST(UTF7, EncoderEndsAtTheCountOrAfterAZero)
{
    CT_UTF::sv_WideToUTF7Init();
    EXPECT_EQ(EncodePiece(u"ab\0cd"), "ab");
    char out[8] = "ZZZZZZZ";
    const unsigned short wide[] = {0xE9, 0, 'x'};
    EXPECT_EQ(CT_UTF::si_WideToUTF7(out, wide, 3), 5)
        << "the terminator is written and not counted";
    EXPECT_EQ(std::string(out, 7), std::string("+AOk-\0Z", 7));
    EXPECT_EQ(CT_UTF::si_WideToUTF7(out, wide, 0), 0);
}

TEST(UTF7, EncoderLeavesARunOpenForTheNextPiece)
{
    CT_UTF::sv_WideToUTF7Init();
    EXPECT_EQ(EncodePiece(u"a\u00E9"), "a+AO");
    EXPECT_EQ(EncodePiece(u""), "");
    EXPECT_EQ(EncodePiece(u"\u00E9"), "kA6");
    EXPECT_EQ(EncodeExit(), "Q-");
    EXPECT_EQ(EncodeExit(), "") << "nothing is open any more";
    EXPECT_EQ(EncodePiece(u"\u00E9"), "+AO");
    CT_UTF::sv_WideToUTF7Init();
    EXPECT_EQ(EncodePiece(u"b"), "b") << "the reset forgets the run";
}

// What ends a run is not written when it is the last of the input.
TEST(UTF7, DecoderLosesTheLastByteWhenItEndsARun)
{
    EXPECT_EQ(Decode("a+-"), u"a");
    EXPECT_EQ(Decode("a+-b"), u"a+b");
    EXPECT_EQ(Decode("+AOk."), u"\u00E9");
    EXPECT_EQ(Decode("+AOk.."), u"\u00E9..");
    EXPECT_EQ(Decode("+AOk-"), u"\u00E9");
    EXPECT_EQ(Decode("+AOk-b"), u"\u00E9b");
    EXPECT_EQ(Decode("+AOk-+"), u"\u00E9");
    EXPECT_EQ(Decode("+."), u"");
}

TEST(UTF7, DecoderTakesAMinusAsTheEndOfARun)
{
    struct Case
    {
        const char* bytes;
        std::u16string wide;
    };
    const Case cases[] = {{"+-+-+-x", u"+++x"},     {"+--x", u"+-x"},
                          {"+AOk--x", u"\u00E9-x"}, {"+AOk-+AOk-x", u"\u00E9\u00E9x"},
                          {"+AOk.x", u"\u00E9.x"},  {"+-+AOk-x", u"+\u00E9x"},
                          {"-+-x", u"-+x"},         {"+AOk-\x01x", u"\u00E9\x01x"}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.bytes);
        EXPECT_EQ(Decode(c.bytes), c.wide);
    }
}

// It is a Base64 character itself.
TEST(UTF7, PlusWithinARunDoesNotEndIt)
{
    EXPECT_EQ(Decode("++x"), u"");
    EXPECT_EQ(Decode("++-x"), u"x") << "a Base64 character stood before the minus";
    EXPECT_EQ(Decode("+AOk+AOk-x"), u"\u00E9\x3E00x");
}

TEST(UTF7, DecoderDropsTheBitsLeftOver)
{
    EXPECT_EQ(Decode("+AO-x"), u"x");
    EXPECT_EQ(Decode("+AOn/-x"), u"\u00E9x");
    EXPECT_EQ(Decode("+AO-+AOk-x"), u"\u00E9x") << "the next run starts without them";
}

TEST(UTF7, DecoderKeepsARunOpenForTheNextPiece)
{
    EXPECT_EQ(Decode("a+A"), u"a");
    EXPECT_EQ(DecodePiece("Ok"), u"\u00E9");
    EXPECT_EQ(DecodePiece(""), u"");
    EXPECT_EQ(DecodePiece("AOk-x"), u":x") << "two bits were left of the unit before";
    CT_UTF::sv_UTF7ToWideInit();
    EXPECT_EQ(DecodePiece("AOk"), u"AOk");
}

TEST(UTF7, DecoderEndsAtAZero)
{
    EXPECT_EQ(Decode(std::string("ab\0cd", 5)), u"ab");
    EXPECT_EQ(Decode(std::string("\0cd", 3)), u"");
    EXPECT_EQ(Decode(std::string("+AOk-\0b", 7)), u"\u00E9");
}

TEST(UTF7, ByteAboveAsciiIsSignExtended)
{
    EXPECT_EQ(Decode("\x80\xFF"), u"\xFF80\xFFFF");
    EXPECT_EQ(Decode("+AOk\xE9x"), u"\u00E9\xFFE9x") << "such a byte is no Base64";
}
