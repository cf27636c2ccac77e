// tests/System/String/UTF8Test.cpp: the UTF-8 coders, streaming and with their oddities.
#include <System/String/UTF.h>

#include "Ostra/String/StringSupport.h"
#include "Support/Endless.h"

namespace
{
std::string Encode(const std::u16string& text)
{
    std::vector<char> out(text.size() * 3 + 2, 'Z');
    const int length = CT_UTF::si_WideToUTF8(out.data(), U(text.c_str()), unsigned(text.size()));
    EXPECT_EQ(out[length], 0);
    EXPECT_EQ(out[length + 1], 'Z');
    return {out.data(), static_cast<std::size_t>(length)};
}

std::u16string DecodePiece(const std::string& text)
{
    std::vector<unsigned short> out(text.size() + 1, 0x5A5A);
    const int length = CT_UTF::si_UTF8ToWide(out.data(), text.c_str(), unsigned(text.size()));
    EXPECT_EQ(out[length], 0x5A5A) << "no terminator is added";
    return {out.begin(), out.begin() + length};
}

std::u16string Decode(const std::string& text)
{
    CT_UTF::sv_UTF8ToWideInit();
    const std::u16string wide = DecodePiece(text);
    CT_UTF::sv_UTF8ToWideInit();
    return wide;
}

void DecodeFor(const char* bytes)
{
    unsigned short out[16];
    CT_UTF::sv_UTF8ToWideInit();
    CT_UTF::si_UTF8ToWide(out, bytes, unsigned(std::string(bytes).size()));
}
} // namespace

TEST(UTF8, CodesAsPublished)
{
    struct Case
    {
        std::u16string wide;
        std::string bytes;
    };
    const Case cases[] = {
        {u"A\u2262\u0391.", "A\xE2\x89\xA2\xCE\x91."},
        {u"\uD55C\uAD6D\uC5B4", "\xED\x95\x9C\xEA\xB5\xAD\xEC\x96\xB4"},
        {u"\u65E5\u672C\u8A9E", "\xE6\x97\xA5\xE6\x9C\xAC\xE8\xAA\x9E"},
        {u"Hi Mom \u263A!", "Hi Mom \xE2\x98\xBA!"},
        {u"\x7F", "\x7F"},
        {u"\x80", "\xC2\x80"},
        {u"\x7FF", "\xDF\xBF"},
        {u"\x800", "\xE0\xA0\x80"},
        {u"\xFFFF", "\xEF\xBF\xBF"},
        {u"\uFEFF", "\xEF\xBB\xBF"},
        {u"\xD800", "\xED\xA0\x80"},
        {u"\xDFFF", "\xED\xBF\xBF"},
        {u"\U0001F600", "\xED\xA0\xBD\xED\xB8\x80"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.bytes);
        EXPECT_EQ(Encode(c.wide), c.bytes);
        EXPECT_EQ(Decode(c.bytes), c.wide);
    }
}

TEST(UTF8, CodesEveryUnitAlone)
{
    for (unsigned u = 1; u < 0x10000; ++u) {
        const std::u16string wide(1, static_cast<char16_t>(u));
        const std::string bytes = Encode(wide);
        ASSERT_EQ(bytes.size(), u < 0x80 ? 1u : u < 0x800 ? 2u : 3u) << u;
        ASSERT_EQ(Decode(bytes), wide) << u;
    }
}

TEST(UTF8, EncoderEndsAtTheCountOrAZero)
{
    EXPECT_EQ(Encode(std::u16string(u"ab\0cd", 5)), "ab");
    EXPECT_EQ(Encode(std::u16string(u"0123456789abcdef\0ghi", 20)), "0123456789abcdef");
    EXPECT_EQ(Encode(u""), "");
    char out[4] = "ZZZ";
    EXPECT_EQ(CT_UTF::si_WideToUTF8(out, U(u"abc"), 2), 2);
    EXPECT_EQ(std::string(out, 4), std::string("ab\0\0", 4));
}

TEST(UTF8, DecoderEndsAtTheCountOrAZero)
{
    EXPECT_EQ(Decode(std::string("ab\0cd", 5)), u"ab");
    EXPECT_EQ(Decode(std::string("\0cd", 3)), u"");
    EXPECT_EQ(Decode(std::string("\xE2\0\x82\xAC", 4)), u"") << "within a sequence as well";
    unsigned short out[4] = {};
    EXPECT_EQ(CT_UTF::si_UTF8ToWide(out, "abc", 2), 2);
    EXPECT_EQ(out[2], 0);
}

// The count may be larger than the text: nothing behind the terminator is read.
TEST(UTF8, CountMayExceedATerminatedText)
{
    for (unsigned length = 0; length < 40; ++length) {
        std::unique_ptr<char[]> text(new char[length + 1]);
        std::fill_n(text.get(), length, 'x');
        text[length] = 0;
        std::vector<unsigned short> out(length + 1);
        EXPECT_EQ(CT_UTF::si_UTF8ToWide(out.data(), text.get(), 1000), int(length));
        std::unique_ptr<unsigned short[]> wide(new unsigned short[length + 1]);
        std::fill_n(wide.get(), length, 'x');
        wide[length] = 0;
        std::vector<char> coded(length + 1);
        EXPECT_EQ(CT_UTF::si_WideToUTF8(coded.data(), wide.get(), 1000), int(length));
    }
}

TEST(UTF8, IncompleteSequenceWaitsForTheNextPiece)
{
    CT_UTF::sv_UTF8ToWideInit();
    EXPECT_EQ(DecodePiece("a\xE2"), u"a");
    EXPECT_EQ(DecodePiece(""), u"");
    EXPECT_EQ(DecodePiece("\x82"), u"");
    EXPECT_EQ(DecodePiece("\xAC\xC3"), u"\u20AC");
    EXPECT_EQ(DecodePiece("\xA9z"), u"\u00E9z");
    EXPECT_EQ(DecodePiece("\xC3"), u"");
    CT_UTF::sv_UTF8ToWideInit();
    EXPECT_EQ(DecodePiece("z"), u"z") << "the reset forgets it";
}

TEST(UTF8, ZeroAtTheStartKeepsASequenceOpen)
{
    CT_UTF::sv_UTF8ToWideInit();
    EXPECT_EQ(DecodePiece("\xC3"), u"");
    EXPECT_EQ(DecodePiece(std::string("\0\xA9", 2)), u"");
    EXPECT_EQ(DecodePiece("\xA9"), u"\u00E9");
}

// A byte that can't start a sequence stands for itself.
TEST(UTF8, ContinuationByteAtTheStartStandsForItself)
{
    EXPECT_EQ(Decode("\x80"), u"\x80");
    EXPECT_EQ(Decode("a\xBF\x9Fz"), u"a\xBF\x9Fz");
}

// What follows a first byte is taken for the rest of its sequence.
TEST(UTF8, ContinuationBytesAreNotTested)
{
    // 0xC3 and 'A': (0xC3 << 6) + 0x41 - 0x3080
    EXPECT_EQ(Decode("\xC3"
                     "Az"),
              u"\x81z");
    // 0xE2, 'A', 'B': (((0xE2 << 6) + 0x41) << 6) + 0x42 - 0xE2080
    EXPECT_EQ(Decode("\xE2"
                     "ABz"),
              u"\x1002z");
    EXPECT_EQ(Decode("\xC3\xC3"), u"\x103");
    EXPECT_EQ(Decode("\xC0\x80z"), std::u16string(u"\0z", 2));
}

ENDLESS(FourByteSequence)
{
    DecodeFor("ab\xF0\x9F\x98\x80");
}

ENDLESS(FiveByteSequence)
{
    DecodeFor("\xF8\x88\x80\x80\x80");
}

ENDLESS(NoSequenceAtAll)
{
    DecodeFor("\xFF");
}

// The coder's contract covers sequences of three bytes; a longer one is never taken and never
// passed.
TEST(UTF8, LongerSequenceNeverEnds)
{
    EXPECT_TRUE(RunsForEver("FourByteSequence"));
    EXPECT_TRUE(RunsForEver("FiveByteSequence"));
    EXPECT_TRUE(RunsForEver("NoSequenceAtAll"));
}
