// tests/System/String/UTF8Test.cpp: the UTF-8 coders, streaming and with their oddities.
#include <Ostra/Ostra.h>
#include <System/String/UTF.h>

#include "Ostra/String/StringSupport.h"

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

// A piece with no room but a unit for each byte.
std::u16string DecodeExactly(const std::string& piece)
{
    std::unique_ptr<unsigned short[]> out(new unsigned short[piece.size()]);
    const int length = CT_UTF::si_UTF8ToWide(out.get(), piece.data(), unsigned(piece.size()));
    EXPECT_LE(length, int(piece.size()));
    return {out.get(), out.get() + length};
}

// A text in two pieces.
std::u16string DecodeCut(const std::string& text, std::size_t cut)
{
    CT_UTF::sv_UTF8ToWideInit();
    std::u16string wide = DecodeExactly(text.substr(0, cut));
    wide += DecodeExactly(text.substr(cut));
    CT_UTF::sv_UTF8ToWideInit();
    return wide;
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

TEST(UTF8, FourBytesGiveASurrogatePair)
{
    EXPECT_EQ(Decode("\xF0\x90\x80\x80"), u"\xD800\xDC00");
    EXPECT_EQ(Decode("\xF0\x9F\x98\x80"), u"\U0001F600");
    EXPECT_EQ(Decode("ab\xF0\x9D\x84\x9E"
                     "cd"),
              u"ab\U0001D11Ecd");
    EXPECT_EQ(Decode("\xF4\x8F\xBF\xBF"), u"\xDBFF\xDFFF");
    for (char32_t value = 0x10000; value < 0x110000; ++value) {
        const char bytes[] = {char(0xF0 | value >> 18), char(0x80 | (value >> 12 & 0x3F)),
                              char(0x80 | (value >> 6 & 0x3F)), char(0x80 | (value & 0x3F))};
        unsigned short out[4];
        ASSERT_EQ(CT_UTF::si_UTF8ToWide(out, bytes, 4), 2) << unsigned(value);
        ASSERT_EQ(out[0], 0xD800 + ((value - 0x10000) >> 10));
        ASSERT_EQ(out[1], 0xDC00 + (value & 0x3FF));
    }
}

TEST(UTF8, FourBytesOfAnotherValueGiveAReplacementCharacter)
{
    EXPECT_EQ(Decode("\xF0\x8F\xBF\xBFz"), u"\uFFFDz") << "U+FFFF in too many bytes";
    EXPECT_EQ(Decode("\xF0\x80\x80\x80z"), u"\uFFFDz");
    EXPECT_EQ(Decode("\xF0\x01\x01\x01z"), u"\uFFFDz") << "a value below zero";
    EXPECT_EQ(Decode("\xF4\x90\x80\x80z"), u"\uFFFDz") << "U+110000";
    EXPECT_EQ(Decode("\xF7\xBF\xBF\xBFz"), u"\uFFFDz");
    EXPECT_EQ(Decode("\xF7\xFF\xFF\xFFz"), u"\uFFFDz");
}

// 0xF0, "A", "B", "C": their marks are taken away though they have none.
TEST(UTF8, BytesBehindALongFirstByteAreNotTested)
{
    EXPECT_EQ(Decode("\xF1"
                     "ABCz"),
              u"\uFFFDz")
        << "0x40000 + 0x41000 + 0x1080 + 0x43 - 0x82080 is 0x43";
    EXPECT_EQ(Decode("\xF2"
                     "ABCz"),
              u"\xD8C0\xDC43z");
    EXPECT_EQ(Decode("\xF0\xF0\xF0\xF0z"), u"\xD987\xDC70z");
}

TEST(UTF8, FirstByteFromF8UpIsTakenAlone)
{
    EXPECT_EQ(Decode("\xF8\x88\x80\x80\x80"), u"\uFFFD\x88\x80\x80\x80");
    EXPECT_EQ(Decode("\xFC"), u"\uFFFD");
    EXPECT_EQ(Decode("a\xFF\xFEz"), u"a\uFFFD\uFFFDz");
    EXPECT_EQ(Decode(std::string(100, '\xFF')), std::u16string(100, u'\uFFFD'));
}

TEST(UTF8, FourBytesAreTakenUpWhereverTheyAreCut)
{
    const std::string coded = "\xF0\x9F\x98\x80";
    for (const std::string before : {"", "a", "abcdefgh", "\xC3\xA9", "\xE2\x82\xAC"})
        for (const std::string behind : {"", "z", "0123456789abcdef0123456789abcdef0123456789",
                                         "\xE2\x82\xAC", "\xF4\x8F\xBF\xBF"}) {
            const std::string text = before + coded + behind;
            const std::u16string wide = Decode(text);
            for (std::size_t cut = 0; cut <= text.size(); ++cut)
                ASSERT_EQ(DecodeCut(text, cut), wide) << cut;
        }
    std::u16string wide;
    for (char each : "\xF0\x9F\x98\x80\xF4\x8F\xBF\xBF\xF8\xF0\x80\x80\x80")
        wide += DecodeExactly(std::string(each ? 1 : 0, each));
    EXPECT_EQ(wide, u"\U0001F600\xDBFF\xDFFF\uFFFD\uFFFD");
}

// A last byte alone has room for one unit: the first of the pair comes with the byte before it, as
// soon as it is known.
TEST(UTF8, PieceNeverGivesMoreUnitsThanItHasBytes)
{
    CT_UTF::sv_UTF8ToWideInit();
    EXPECT_EQ(DecodeExactly("\xF0\x9F"), u"");
    EXPECT_EQ(DecodeExactly("\x98"), u"\xD83D");
    EXPECT_EQ(DecodePiece(""), u"") << "once";
    EXPECT_EQ(DecodeExactly("\x80"
                            "ab"),
              u"\xDE00"
              u"ab");
    EXPECT_EQ(DecodeExactly("\xF0\x9F\x98"), u"\xD83D");
    EXPECT_EQ(DecodeExactly("A"), u"\xDDC1") << "any byte of the same half";
    EXPECT_EQ(DecodeExactly("\xF0\x9F\x90"), u"\xD83D");
    EXPECT_EQ(DecodeExactly("A"), u"\uFFFD") << "a byte that would change the half written";
    EXPECT_EQ(DecodeExactly("\xF4\x90\x80"), u"");
    EXPECT_EQ(DecodeExactly("\x80"), u"\uFFFD");
    EXPECT_EQ(DecodeExactly("\xF0\x8F\xBF"), u"");
    EXPECT_EQ(DecodeExactly("\xC0"), u"\uFFFD") << "U+10000, for which there is no room";
    CT_UTF::sv_UTF8ToWideInit();
}

// Nothing behind the result is written to, whatever mixture comes and however long it is.
TEST(UTF8, PairsLeaveWhatLiesBehindTheResult)
{
    for (unsigned ascii = 0; ascii < 40; ++ascii)
        for (unsigned pairs = 0; pairs < 20; ++pairs)
            for (const char* long_one : {"\xF0\x9F\x98\x80", "\xF7\xBF\xBF\xBF"}) {
                std::string text(ascii, 'x');
                for (unsigned n = 0; n < pairs; ++n)
                    text += long_one;
                std::vector<unsigned short> out(text.size() + 1, 0x5A5A);
                const unsigned length =
                    unsigned(CT_UTF::si_UTF8ToWide(out.data(), text.data(), unsigned(text.size())));
                ASSERT_EQ(length, ascii + pairs * (long_one[1] == '\x9F' ? 2 : 1));
                for (std::size_t n = length; n < out.size(); ++n)
                    ASSERT_EQ(out[n], 0x5A5A) << ascii << ' ' << pairs;
            }
}

// The strings give a block by the bytes of the text, and convert into it.
TEST(UTF8, RoomOfEveryStringSufficesForPairs)
{
    for (unsigned length = 0; length < 70; ++length)
        for (std::size_t cut = 0; cut < 5; ++cut) {
            const std::string text =
                std::string(length, 'x') + "\xF0\x9F\x98\x80" + std::string(length % 3, 'y');
            const std::string first = text.substr(0, length + cut);
            const std::string second = text.substr(length + cut);
            CT_UTF::sv_UTF8ToWideInit();
            CT_UString wide(first.c_str(), unsigned(-1), 65001);
            CT_UString rest(second.c_str(), unsigned(-1), 65001);
            wide.v_Append(&rest, unsigned(-1));
            const std::u16string expected =
                std::u16string(length, u'x') + u"\U0001F600" + std::u16string(length % 3, u'y');
            ASSERT_EQ(Text(wide), expected) << length << ' ' << cut;

            CT_CString narrow(second.c_str(), unsigned(-1), 65001);
            CT_UTF::sv_UTF8ToWideInit();
            CT_UString target;
            std::u16string joined;
            for (int count : {CT_StringConvert::si_UTF8ToWide(&target, first.c_str()), -1}) {
                if (count < 0)
                    count = CT_StringConvert::si_MultiToWide(&target, &narrow, 65001);
                joined.append(target.qcuz_Get(), target.qcuz_Get() + count);
            }
            ASSERT_EQ(joined, expected);
            CT_UTF::sv_UTF8ToWideInit();
        }
}

TEST(UTF8, StringOfAnEmojiIsMade)
{
    const CT_UString wide("\xF0\x9F\x98\x80", unsigned(-1), 65001);
    EXPECT_EQ(Text(wide), u"\U0001F600");
    EXPECT_EQ(wide.vn_GetLength(), 2u);
    const CT_CString narrow("a\xF0\x9F\x98\x80z", unsigned(-1), 65001);
    EXPECT_EQ(Text(CT_UString(&narrow)), u"a\U0001F600z");
}
