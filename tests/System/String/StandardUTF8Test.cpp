// tests/System/String/StandardUTF8Test.cpp
#include "System/String/StandardUTF8Support.h"

#include <algorithm>
#include <random>

#include "Support/Directory.h"
#include "Support/Failure.h"

using namespace standard;

namespace
{
const std::string SOURCE = "System/String/StandardUTF8";

Failure IllFormed(const std::string& complaint)
{
    return {60012, "(60012): Semantic error: " + complaint, {SOURCE}};
}

void ExpectAsModel(const std::string& bytes)
{
    const Result model = Model(bytes);
    ASSERT_EQ(Widened(bytes), model.wide);
    ASSERT_EQ(Standard::sn_FindIllFormed(bytes.data(), unsigned(bytes.size())),
              static_cast<unsigned>(model.ill));
}

void ExpectAsModel(const std::u16string& wide)
{
    const ByteResult model = Model(wide);
    ASSERT_EQ(Narrowed(wide), model.bytes);
    ASSERT_EQ(Standard::sn_FindIllFormed(U(wide.data()), unsigned(wide.size())),
              static_cast<unsigned>(model.ill));
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

std::u16string InPieces(const std::vector<std::string>& pieces)
{
    CT_UString out;
    Standard::st_ToWide state;
    for (const std::string& piece : pieces)
        EXPECT_TRUE(
            Standard::sb_PieceToWide(&out, &state, piece.data(), unsigned(piece.size()), REPLACE));
    EXPECT_TRUE(Standard::sb_EndToWide(&out, &state, REPLACE));
    EXPECT_EQ(state.n8_Taken + state.n_Open, 0u) << "the end begins anew";
    return Text(out);
}

std::string InPieces(const std::vector<std::u16string>& pieces)
{
    CT_CString out;
    Standard::st_FromWide state;
    for (const std::u16string& piece : pieces)
        EXPECT_TRUE(Standard::sb_PieceFromWide(&out, &state, U(piece.data()),
                                               unsigned(piece.size()), REPLACE));
    EXPECT_TRUE(Standard::sb_EndFromWide(&out, &state, REPLACE));
    EXPECT_EQ(state.n8_Taken + state.n_Open, 0u);
    return Text(out);
}

// Bytes at which some range of well-formed UTF-8 begins or ends.
const std::string EDGES("\x00\x01\x41\x7F\x80\x8F\x90\x9F\xA0\xBF\xC0\xC1\xC2\xDF\xE0\xE1\xEC\xED"
                        "\xEE\xEF\xF0\xF1\xF3\xF4\xF5\xF7\xF8\xFF",
                        28);
const std::u16string UNITS(u"\0a\x7F\x80\x7FF\x800\xD7FF\xD800\xD801\xDBFF\xDC00\xDC01\xDFFF\xE000"
                           u"\xFFFD\xFFFF",
                           16);
} // namespace

TEST(StandardUTF8Model, EveryCharacterGoesBothWays)
{
    for (char32_t value = 0; value < 0x110000; ++value) {
        if (value == 0xD800)
            value = 0xE000;
        const std::string bytes = Bytes(value);
        std::u16string wide;
        PutUnits(value, wide);
        CT_UString units;
        ASSERT_TRUE(Standard::sb_ToWide(&units, bytes.data(), unsigned(bytes.size())));
        ASSERT_EQ(Text(units), wide) << unsigned(value);
        CT_CString back;
        ASSERT_TRUE(Standard::sb_FromWide(&back, &units));
        ASSERT_EQ(Text(back), bytes) << unsigned(value);
    }
}

TEST(StandardUTF8Model, EveryUnitAloneAndEveryPairOfEdges)
{
    for (unsigned unit = 0; unit < 0x10000; ++unit)
        ExpectAsModel(std::u16string(1, static_cast<char16_t>(unit)));
    for (unsigned unit = 0xD700; unit < 0xE100; ++unit)
        for (char16_t edge : UNITS) {
            ExpectAsModel(std::u16string{static_cast<char16_t>(unit), edge});
            ExpectAsModel(std::u16string{edge, static_cast<char16_t>(unit)});
        }
    for (char16_t a : UNITS)
        for (char16_t b : UNITS)
            for (char16_t c : UNITS)
                ExpectAsModel(std::u16string{a, b, c});
}

TEST(StandardUTF8Model, EveryTwoBytesAndAllEdgesOfFour)
{
    for (unsigned a = 0; a < 0x100; ++a)
        for (unsigned b = 0; b < 0x100; ++b)
            ExpectAsModel(std::string{static_cast<char>(a), static_cast<char>(b)});
    for (char a : EDGES)
        for (char b : EDGES)
            for (char c : EDGES) {
                std::string text;
                for (char d : EDGES)
                    text += {a, b, c, d, 'x'};
                ExpectAsModel(text);
                ExpectAsModel(std::string{a, b, c});
            }
}

// In each first byte's class, with all that can stand behind.
TEST(StandardUTF8Model, EveryThreeBytes)
{
    for (char first : EDGES)
        for (unsigned second = 0; second < 0x100; ++second) {
            std::string text;
            for (unsigned third = 0; third < 0x100; ++third)
                text += {first, static_cast<char>(second), static_cast<char>(third), 'x'};
            ExpectAsModel(text);
        }
}

// The standard's own examples of what maximal subparts are.
TEST(StandardUTF8, MaximalSubpartsAreReplacedAsPublished)
{
    EXPECT_EQ(Widened("\xC0\xAF\xE0\x80\xBF\xF0\x81\x82\x41"),
              u"\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\u0041");
    EXPECT_EQ(Widened("\xED\xA0\x80\xED\xBF\xBF\xED\xAF\x41"),
              u"\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\u0041");
    EXPECT_EQ(Widened("\xF4\x91\x92\x93\xFF\x41\x80\xBF\x42"),
              u"\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\u0041\uFFFD\uFFFD\u0042");
    EXPECT_EQ(Widened("\xE1\x80\xE2\xF0\x91\x92\xF1\xBF\x41"), u"\uFFFD\uFFFD\uFFFD\uFFFD\u0041");
    EXPECT_EQ(Widened("\x61\xF1\x80\x80\xE1\x80\xC2\x62\x80\x63\x80\xBF\x64"),
              u"\u0061\uFFFD\uFFFD\uFFFD\u0062\uFFFD\u0063\uFFFD\uFFFD\u0064");
}

TEST(StandardUTF8, LoneSurrogatesAreReplaced)
{
    EXPECT_EQ(Narrowed(u"a\xD800"), "a\xEF\xBF\xBD");
    EXPECT_EQ(Narrowed(u"\xDC00\xD800z"), "\xEF\xBF\xBD\xEF\xBF\xBDz");
    EXPECT_EQ(Narrowed(u"\xD800\xD83D\xDE00"), "\xEF\xBF\xBD\xF0\x9F\x98\x80");
}

TEST(StandardUTF8, IllFormedTextIsRefusedWithItsOffset)
{
    const std::pair<const char*, unsigned> cases[] = {{"\x80", 0},
                                                      {"abc\xC3(", 3},
                                                      {"\xE2\x82\xAC\xE2\x82", 3},
                                                      {"\xED\xA0\x80", 0},
                                                      {"0123456789abcdef\xF5", 16},
                                                      {"a\xF4\x90\x80\x80", 1}};
    for (const auto& [bytes, offset] : cases) {
        CT_UString out(U(u"before"));
        EXPECT_FALSE(Standard::sb_ToWide(&out, bytes));
        EXPECT_EQ(TakeFailure(), IllFormed("ill-formed UTF-8 at offset " + std::to_string(offset)));
        EXPECT_EQ(Text(out), u"before");
        EXPECT_EQ(Standard::sn_FindIllFormed(bytes), offset);
    }
    CT_CString out("before");
    EXPECT_FALSE(Standard::sb_FromWide(&out, U(u"ab\xD800z")));
    EXPECT_EQ(TakeFailure(), IllFormed("lone surrogate at offset 2"));
    EXPECT_EQ(Text(out), "before");
    EXPECT_EQ(out.n_GetCodePage(), 0u);
    EXPECT_EQ(Standard::sn_FindIllFormed(U(u"a\xD83D\xDE00\xDE00")), 3u);
    EXPECT_EQ(Standard::sn_FindIllFormed("a\xF0\x9F\x98\x80"), ALL);
}

TEST(StandardUTF8, CountsTakeZerosAndTheLackOfOneEndsAtTheTerminator)
{
    CT_UString wide;
    EXPECT_TRUE(Standard::sb_ToWide(&wide, "a\0b\xC3\xA9", 5));
    EXPECT_EQ(Text(wide), std::u16string(u"a\0b\u00E9", 4));
    CT_CString narrow(1252);
    EXPECT_TRUE(Standard::sb_FromWide(&narrow, &wide));
    EXPECT_EQ(Text(narrow), std::string("a\0b\xC3\xA9", 5));
    EXPECT_EQ(narrow.n_GetCodePage(), 65001u);
    EXPECT_TRUE(Standard::sb_ToWide(&wide, "a\0b"));
    EXPECT_EQ(Text(wide), u"a");
    EXPECT_TRUE(Standard::sb_ToWide(&wide, "abc", 0));
    EXPECT_EQ(Text(wide), u"");
    EXPECT_TRUE(Standard::sb_FromWide(&narrow, U(u"")));
    EXPECT_EQ(Text(narrow), "");
}

TEST(StandardUTF8, StringOfBytesIsTakenWhateverItsCodePage)
{
    const CT_CString bytes("\xE2\x82\xAC", ALL, 1252);
    CT_UString wide;
    EXPECT_TRUE(Standard::sb_ToWide(&wide, &bytes));
    EXPECT_EQ(Text(wide), u"\u20AC");
}

TEST(StandardUTF8, TargetMayHoldTheText)
{
    CT_CString text("aa\xC3\xA9", ALL, 65001);
    CT_CString sharer(&text);
    CT_UString wide(U(u"\u00E9\u00E9"));
    EXPECT_TRUE(Standard::sb_FromWide(&text, &wide));
    EXPECT_EQ(Text(text), "\xC3\xA9\xC3\xA9");
    EXPECT_EQ(Text(sharer), "aa\xC3\xA9");
    const auto* bytes = reinterpret_cast<const char*>(wide.qcuz_Get());
    EXPECT_TRUE(Standard::sb_ToWide(&wide, bytes, 1, REPLACE));
    EXPECT_EQ(Text(wide), u"\uFFFD");
}

TEST(StandardUTF8, CharactersAreTakenUpWhereverTheyAreCut)
{
    const std::string bytes = "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80z";
    const std::u16string wide = u"a\u00E9\u20AC\U0001F600z";
    for (std::size_t cut = 0; cut <= bytes.size(); ++cut)
        EXPECT_EQ(InPieces({bytes.substr(0, cut), bytes.substr(cut)}), wide) << cut;
    for (std::size_t cut = 0; cut <= wide.size(); ++cut)
        EXPECT_EQ(InPieces({wide.substr(0, cut), wide.substr(cut)}), bytes) << cut;
    std::vector<std::string> single;
    for (char each : bytes)
        single.emplace_back(1, each);
    EXPECT_EQ(InPieces(single), wide);
}

TEST(StandardUTF8, TwoTextsInPiecesDoNotMeet)
{
    CT_UString first, second;
    Standard::st_ToWide one, two;
    EXPECT_TRUE(Standard::sb_PieceToWide(&first, &one, "\xE2\x82"));
    EXPECT_TRUE(Standard::sb_PieceToWide(&second, &two, "\xF0\x9F"));
    EXPECT_TRUE(Standard::sb_PieceToWide(&first, &one, "\xAC"));
    EXPECT_TRUE(Standard::sb_PieceToWide(&second, &two, "\x98\x80"));
    EXPECT_EQ(Text(first), u"\u20AC");
    EXPECT_EQ(Text(second), u"\U0001F600");
}

TEST(StandardUTF8, RefusedPieceAppendsNothingAndCanBeHandedInAgain)
{
    CT_UString out;
    Standard::st_ToWide state;
    EXPECT_TRUE(Standard::sb_PieceToWide(&out, &state, "ab\xE2\x82"));
    EXPECT_FALSE(Standard::sb_PieceToWide(&out, &state, "xyz"));
    EXPECT_EQ(TakeFailure(), IllFormed("ill-formed UTF-8 at offset 2"));
    EXPECT_FALSE(Standard::sb_PieceToWide(&out, &state, "\xACxyz\xFF"));
    EXPECT_EQ(TakeFailure(), IllFormed("ill-formed UTF-8 at offset 8"));
    EXPECT_EQ(Text(out), u"ab");
    EXPECT_FALSE(Standard::sb_EndToWide(&out, &state));
    EXPECT_EQ(TakeFailure(), IllFormed("ill-formed UTF-8 at offset 2"));
    EXPECT_TRUE(Standard::sb_PieceToWide(&out, &state, "\xAC"));
    EXPECT_TRUE(Standard::sb_EndToWide(&out, &state));
    EXPECT_EQ(Text(out), u"ab\u20AC");

    CT_CString bytes;
    Standard::st_FromWide back;
    EXPECT_TRUE(Standard::sb_PieceFromWide(&bytes, &back, U(u"ab\xD83D")));
    EXPECT_FALSE(Standard::sb_PieceFromWide(&bytes, &back, U(u"z")));
    EXPECT_EQ(TakeFailure(), IllFormed("lone surrogate at offset 2"));
    EXPECT_FALSE(Standard::sb_EndFromWide(&bytes, &back));
    EXPECT_EQ(TakeFailure(), IllFormed("lone surrogate at offset 2"));
    EXPECT_TRUE(Standard::sb_PieceFromWide(&bytes, &back, U(u"\xDE00")));
    EXPECT_TRUE(Standard::sb_EndFromWide(&bytes, &back));
    EXPECT_EQ(Text(bytes), "ab\xF0\x9F\x98\x80");
}

TEST(StandardUTF8, PieceAppendedToASharedBlockLeavesTheOtherHolder)
{
    CT_UString out(U(u"head "));
    const CT_UString sharer(&out);
    Standard::st_ToWide state;
    EXPECT_TRUE(Standard::sb_PieceToWide(&out, &state, "tail"));
    EXPECT_EQ(Text(out), u"head tail");
    EXPECT_EQ(Text(sharer), u"head ");
}

TEST(StandardUTF8Model, RandomBytesAgreeWholeAndInPieces)
{
    std::mt19937 random(Seed(91));
    const std::string characters[] = {"x",
                                      "0123456789abcdef",
                                      "\xC3\xA9",
                                      "\xE2\x82\xAC",
                                      "\xF0\x9F\x98\x80",
                                      "\xF4\x8F\xBF\xBF",
                                      "\xED\x9F\xBF",
                                      std::string(1, '\0')};
    for (unsigned round = 0; round < 8000; ++round) {
        std::string text;
        for (unsigned n = random() % 30; n; --n)
            text += random() % 4 ? characters[random() % std::size(characters)]
                                 : std::string(1, EDGES[random() % EDGES.size()]);
        for (unsigned n = round % 3; n && !text.empty(); --n)
            text[random() % text.size()] = static_cast<char>(random());
        ExpectAsModel(text);
        ASSERT_EQ(InPieces(Pieces(random, text)), Model(text).wide);
    }
}

TEST(StandardUTF8Model, RandomUnitsAgreeWholeAndInPieces)
{
    std::mt19937 random(Seed(92));
    for (unsigned round = 0; round < 8000; ++round) {
        std::u16string text;
        for (unsigned n = random() % 40; n; --n)
            switch (random() % 4) {
            case 0:
                text += UNITS[random() % UNITS.size()];
                break;
            case 1:
                text += u"0123456789abcdefg";
                break;
            case 2:
                text += u"\U0001F600";
                break;
            default:
                text += static_cast<char16_t>(random());
            }
        ExpectAsModel(text);
        ASSERT_EQ(InPieces(Pieces(random, text)), Model(text).bytes);
    }
}

// Every length and place, so that each step of the short ways ends once at each of them.
TEST(StandardUTF8Model, RunsOfAsciiEndAnywhere)
{
    const std::string odd[] = {"\xC3\xA9", "\xE2\x82\xAC", "\xF0\x9F\x98\x80",
                               "\x80",     "\xF0\x9F",     "\xE2"};
    for (unsigned length = 0; length < 40; ++length)
        for (unsigned at = 0; at <= length; ++at)
            for (const std::string& bytes : odd) {
                ExpectAsModel(std::string(length, 'x').insert(at, bytes));
                ExpectAsModel(std::u16string(length, u'x').insert(at, Model(bytes).wide));
                ExpectAsModel(std::u16string(length, u'x').insert(at, u"\xD83D"));
            }
}

TEST(StandardUTF8, PartsOfALongTextAreSearchedWithoutAGap)
{
    for (unsigned before = 505; before < 515; ++before) {
        ExpectAsModel(std::string(before, 'x') + "\xF0\x9F\x98\x80" + std::string(600, 'y'));
        ExpectAsModel(std::string(before, 'x') + "\xF0\x9F\x98" + std::string(600, 'y'));
        ExpectAsModel(std::u16string(before, u'x') + u"\U0001F600" + std::u16string(600, u'y'));
        ExpectAsModel(std::u16string(before, u'x') + u"\xD83D" + std::u16string(600, u'y'));
    }
}

TEST(StandardUTF8, LongTextInManyPiecesIsJoined)
{
    CT_UString out;
    Standard::st_ToWide state;
    for (unsigned n = 0; n < 20000; ++n)
        ASSERT_TRUE(Standard::sb_PieceToWide(&out, &state, n % 2 ? "\x82\xAC!" : "0\xE2"));
    EXPECT_TRUE(Standard::sb_EndToWide(&out, &state));
    EXPECT_EQ(out.vn_GetLength(), 30000u);
    EXPECT_EQ(Text(out).substr(29997), u"0\u20AC!");
}
