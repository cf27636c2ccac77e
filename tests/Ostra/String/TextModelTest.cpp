// tests/Ostra/String/TextModelTest.cpp: searches, comparisons, matches and translations against the
// plain ways of doing them.
#include "../../Support/Directory.h"
#include "StringSupport.h"

#include <Models/TextModel.h>

#include <map>
#include <random>

namespace
{
// ---- The plain ways -------------------------------------------------------------------------

template <class String>
unsigned PlainFind(const String& text, const String& find, unsigned from)
{
    if (find.empty())
        return from;
    const auto at = text.find(find, from);
    return at == String::npos ? NONE : static_cast<unsigned>(at);
}

// ---- Strings of both classes ----------------------------------------------------------------

struct Bytes
{
    using Text = std::string;
    using Unit = char;
    static CT_CString Of(const Text& text)
    {
        return CT_CString(text.data(), static_cast<unsigned>(text.size()));
    }
};

struct Units
{
    using Text = std::u16string;
    using Unit = unsigned short;
    static CT_UString Of(const Text& text)
    {
        return CT_UString(U(text.data()), static_cast<unsigned>(text.size()));
    }
};

class Chance
{
public:
    explicit Chance(unsigned seed) : numbers(seed) {}
    unsigned Below(unsigned n) { return numbers() % n; }
    // Of few characters, so that parts come back.
    template <class Text>
    Text Few(unsigned size, unsigned kinds)
    {
        Text text;
        while (text.size() < size)
            text += static_cast<typename Text::value_type>('a' + Below(kinds));
        return text;
    }
    // The same few over and over, with a fault now and then.
    template <class Text>
    Text Periodic(unsigned size, unsigned period)
    {
        const Text part = Few<Text>(period, 2);
        Text text;
        while (text.size() < size)
            text += part;
        text.resize(size);
        for (unsigned faults = Below(3); size && faults; --faults)
            text[Below(size)] = 'b';
        return text;
    }

private:
    std::mt19937 numbers;
};

template <class Kind>
class TextModel : public testing::Test
{};
using Kinds = testing::Types<Bytes, Units>;
TYPED_TEST_SUITE(TextModel, Kinds);

template <class Kind>
void CheckFind(const typename Kind::Text& text, const typename Kind::Text& find, unsigned from)
{
    const auto in = Kind::Of(text);
    const auto wanted = Kind::Of(find);
    EXPECT_EQ(PlainFind(text, find, from), in.vn_Find(&wanted, from));
}

template <class Kind>
void CheckMatch(const typename Kind::Text& text, const typename Kind::Text& pattern)
{
    const auto in = Kind::Of(text);
    const auto wanted = Kind::Of(pattern);
    EXPECT_EQ(PlainMatch(text, pattern), in.vb_Match(&wanted) != 0);
}

template <class Kind>
void CheckTranslate(const typename Kind::Text& text, const typename Kind::Text& from,
                    const typename Kind::Text& to)
{
    auto in = Kind::Of(text);
    const auto source = Kind::Of(from);
    const auto target = Kind::Of(to);
    in.vv_Translate(&source, &target);
    EXPECT_TRUE(PlainTranslate(text, from, to) == Text(in));
    auto stripped = Kind::Of(text);
    stripped.vv_Strip(&source);
    EXPECT_TRUE(PlainStrip(text, from) == Text(stripped));
}
} // namespace

TYPED_TEST(TextModel, FindsTextsWhereThePlainSearchDoes)
{
    using Text = typename TypeParam::Text;
    Chance chance(Seed(41));
    for (unsigned round = 0; round < 3000 && !this->HasFailure(); ++round) {
        const unsigned size = chance.Below(400);
        const Text text = round % 2 ? chance.Few<Text>(size, 1 + chance.Below(4))
                                    : chance.Periodic<Text>(size, 1 + chance.Below(9));
        Text find = chance.Below(3) ? text.substr(chance.Below(size + 1), chance.Below(90))
                                    : chance.Periodic<Text>(chance.Below(60), 1 + chance.Below(9));
        if (!find.empty() && chance.Below(2))
            find.back() = 'c';
        // A search from behind the end has no plain counterpart.
        CheckFind<TypeParam>(text, find, chance.Below(size + 1));
    }
}

TYPED_TEST(TextModel, FindsTextsThatAlmostStandEverywhere)
{
    using Text = typename TypeParam::Text;
    Chance chance(Seed(42));
    for (unsigned round = 0; round < 12 && !this->HasFailure(); ++round) {
        const unsigned period = 1 + chance.Below(6);
        Text text = chance.Periodic<Text>(6000, period);
        const unsigned length = 50 + chance.Below(1500);
        Text find = text.substr(chance.Below(period), length);
        find[chance.Below(length)] = 'c';
        CheckFind<TypeParam>(text, find, chance.Below(20));
        text += find;
        CheckFind<TypeParam>(text, find, chance.Below(20));
    }
}

TYPED_TEST(TextModel, FindsNothingBehindATerminatorInTheText)
{
    using Text = typename TypeParam::Text;
    for (unsigned size : {5u, 40u, 700u}) {
        Text text(size, 'a');
        text += Text(1, 0);
        text += Text(size, 'a') + Text(1, 'b');
        const auto in = TypeParam::Of(text);
        const auto find = TypeParam::Of(Text(3, 'a') + Text(1, 'b'));
        const auto first = TypeParam::Of(Text(3, 'a'));
        EXPECT_EQ(NONE, in.vn_Find(&find));
        EXPECT_EQ(size - 3, in.vn_Find(&first, size - 3));
        EXPECT_EQ(NONE, in.vn_Find(typename TypeParam::Unit('b')));
        EXPECT_EQ(size, in.vn_Find(typename TypeParam::Unit(0)));
    }
}

TEST(TextModelUnits, FindsEachUnitInATextOfOthers)
{
    std::u16string text;
    for (unsigned n = 0; n < 150; ++n)
        text += static_cast<char16_t>(0x3000 + n);
    CT_UString in(U(text.data()), 150);
    for (unsigned u = 1; u < 0x10000 && !testing::Test::HasFailure(); ++u) {
        const unsigned place = u % 149;
        const auto unit = static_cast<unsigned short>(u);
        const unsigned short kept = in.u_GetAt(place);
        const bool stands = u >= 0x3000 && u < 0x3000 + 150;
        EXPECT_EQ(stands ? u - 0x3000 : NONE, in.vn_Find(unit));
        in.v_SetAt(unit, place);
        EXPECT_EQ(stands ? std::min(u - 0x3000, place) : place, in.vn_Find(unit));
        in.v_SetAt(kept, place);
    }
}

TEST(TextModelUnits, ComparesEachUnitWithItsNeighbour)
{
    for (unsigned u = 1; u < 0x10000 && !testing::Test::HasFailure(); ++u) {
        const unsigned place = u % 9;
        std::u16string text(9, u'x');
        text[place] = static_cast<char16_t>(u);
        const CT_UString low(U(text.data()), 9);
        text[place] = static_cast<char16_t>(u + 1);
        const CT_UString high(U(text.data()), 9);
        // The last one's neighbour ends the text.
        EXPECT_EQ(u == 0xFFFF ? 1 : -1, low.vi_Compare(&high));
        EXPECT_EQ(u == 0xFFFF ? -1 : 1, high.vi_Compare(&low));
        EXPECT_EQ(0, low.vi_Compare(&low));
    }
}

TYPED_TEST(TextModel, ComparesAsThePlainComparisonDoes)
{
    using Text = typename TypeParam::Text;
    Chance chance(Seed(43));
    for (unsigned round = 0; round < 5000 && !this->HasFailure(); ++round) {
        const Text left = chance.Few<Text>(chance.Below(40), 2);
        Text right = chance.Below(2) ? left.substr(0, chance.Below(40)) : left;
        if (!right.empty() && chance.Below(2))
            right[chance.Below(static_cast<unsigned>(right.size()))] =
                static_cast<typename Text::value_type>(0x7E + chance.Below(4));
        const auto own = TypeParam::Of(left);
        const auto other = TypeParam::Of(right);
        EXPECT_EQ(PlainCompare(left, right), own.vi_Compare(&other));
        const unsigned from = chance.Below(static_cast<unsigned>(right.size()) + 1);
        // From the same place on they are the same for long.
        const unsigned offset = from <= left.size() && chance.Below(2)
                                    ? from
                                    : chance.Below(static_cast<unsigned>(left.size()) + 1);
        EXPECT_EQ(PlainCompare(left.substr(offset), right.substr(from)),
                  own.vi_Compare(&other, from, ALL, offset));
    }
}

TYPED_TEST(TextModel, ComparesUpToATerminatorInTheText)
{
    using Text = typename TypeParam::Text;
    for (unsigned size = 0; size < 20; ++size) {
        Text left(size, 'a');
        left += Text(1, 0);
        const auto own = TypeParam::Of(left + Text(9, 'x'));
        const auto other = TypeParam::Of(left + Text(9, 'y'));
        EXPECT_EQ(0, own.vi_Compare(&other));
    }
}

// Growth 1: nothing lies behind the texts that could be read.
TYPED_TEST(TextModel, ComparesTextsWhoseBlocksEndWithThem)
{
    using Text = typename TypeParam::Text;
    const auto block = [](const Text& text) {
        return CT_Buffer(text.c_str(), (unsigned(text.size()) + 1) * sizeof(text[0]), 1);
    };
    for (unsigned left = 0; left < 36; ++left) {
        for (unsigned right = 0; right < 36; ++right) {
            const CT_Buffer leftBlock = block(Text(left, 'a'));
            const CT_Buffer rightBlock = block(Text(right, 'a'));
            const decltype(TypeParam::Of(Text())) own(&leftBlock);
            const decltype(TypeParam::Of(Text())) other(&rightBlock);
            EXPECT_EQ((left > right) - (left < right), own.vi_Compare(&other));
        }
    }
}

TYPED_TEST(TextModel, MatchesAsThePlainMatchDoes)
{
    using Text = typename TypeParam::Text;
    Chance chance(Seed(44));
    for (unsigned round = 0; round < 4000 && !this->HasFailure(); ++round) {
        const Text text = chance.Few<Text>(chance.Below(60), 2);
        Text pattern = chance.Few<Text>(chance.Below(30), 2);
        for (auto& c : pattern)
            if (!chance.Below(4))
                c = chance.Below(3) ? '*' : '?';
        CheckMatch<TypeParam>(text, pattern);
    }
}

TYPED_TEST(TextModel, MatchesWhatStandsAtTheEnd)
{
    using Text = typename TypeParam::Text;
    Chance chance(Seed(46));
    for (unsigned length = 0; length < 80; ++length)
        for (unsigned round = 0; round < 60 && !this->HasFailure(); ++round) {
            const Text text = chance.Few<Text>(length, 2);
            Text pattern = text.substr(length - chance.Below(length + 1));
            for (unsigned faults = chance.Below(3); !pattern.empty() && faults; --faults)
                pattern[chance.Below(static_cast<unsigned>(pattern.size()))] = "?b"[faults - 1];
            pattern.insert(0, chance.Below(4) ? 1 : 2, '*');
            if (chance.Below(3))
                pattern.insert(0, text.substr(0, chance.Below(length + 1)));
            CheckMatch<TypeParam>(text, pattern);
        }
}

TYPED_TEST(TextModel, MatchesUpToATerminatorInTheText)
{
    using Text = typename TypeParam::Text;
    Chance chance(Seed(47));
    for (unsigned round = 0; round < 1000 && !this->HasFailure(); ++round) {
        const Text text = chance.Few<Text>(chance.Below(60), 2);
        const Text behind = chance.Few<Text>(1 + chance.Below(30), 2);
        const auto in = TypeParam::Of(text + Text(1, 0) + behind);
        ASSERT_EQ(text.size() + 1 + behind.size(), in.vn_GetLength());
        for (const Text& end : {text.substr(chance.Below(unsigned(text.size()) + 1)), behind}) {
            const Text pattern = Text(1, '*') + end;
            const auto wanted = TypeParam::Of(pattern);
            EXPECT_EQ(PlainMatch(text, pattern), in.vb_Match(&wanted) != 0);
        }
    }
}

TYPED_TEST(TextModel, MatchesTextsThatMislead)
{
    using Text = typename TypeParam::Text;
    Chance chance(Seed(45));
    for (unsigned round = 0; round < 40 && !this->HasFailure(); ++round) {
        const unsigned period = 1 + chance.Below(5);
        const Text text = chance.Periodic<Text>(1500, period);
        Text pattern(1, '*');
        for (unsigned parts = 1 + chance.Below(3); parts; --parts) {
            Text part = text.substr(chance.Below(period), 60 + chance.Below(200));
            if (!chance.Below(3))
                part[chance.Below(static_cast<unsigned>(part.size()))] = 'c';
            for (unsigned gaps = chance.Below(3); gaps; --gaps)
                part[chance.Below(static_cast<unsigned>(part.size()))] = '?';
            pattern += part;
            if (chance.Below(4))
                pattern += '*';
        }
        CheckMatch<TypeParam>(text, pattern);
    }
}

// Behind a part that was searched for the pattern goes on in any way, or ends.
TYPED_TEST(TextModel, MatchesWhatFollowsAPartThatMisleads)
{
    using Text = typename TypeParam::Text;
    const auto wide = [](const std::string& text) {
        return Text(text.begin(), text.end());
    };
    const std::string part = "*" + std::string(100, 'a') + "b";
    for (const char* tail : {"", "x", "xy", "xyz", "xyxyz"}) {
        const Text text = wide(std::string(1500, 'a') + "b" + tail);
        for (const char* end : {"", "*", "***", "?", "*?", "?*", "*??*", "*???*", "*??*z", "*?*?*z",
                                "*z", "?*z", "*q*", "*q", "*x?*"})
            CheckMatch<TypeParam>(text, wide(part + end));
    }
}

TYPED_TEST(TextModel, LongPatternsTakeNoLongerThanTheirText)
{
    using Text = typename TypeParam::Text;
    const Text text(100000, 'a');
    // Each place of the text fits nearly all of the pattern.
    CheckMatch<TypeParam>(Text(2000, 'a'), Text(1, '*') + Text(900, 'a') + Text(1, 'b'));
    const auto in = TypeParam::Of(text);
    const auto long_ = TypeParam::Of(Text(1, '*') + Text(50000, 'a') + Text(1, 'b') + Text(1, '*'));
    EXPECT_FALSE(in.vb_Match(&long_));
    const auto find = TypeParam::Of(Text(50000, 'a') + Text(1, 'b'));
    EXPECT_EQ(NONE, in.vn_Find(&find));
}

TYPED_TEST(TextModel, TranslatesAndStripsByLargeSets)
{
    using Text = typename TypeParam::Text;
    Chance chance(Seed(46));
    for (unsigned round = 0; round < 100 && !this->HasFailure(); ++round) {
        Text text = chance.Few<Text>(chance.Below(3000), 60);
        const Text from = chance.Few<Text>(chance.Below(200), 40);
        const Text to = chance.Few<Text>(chance.Below(200), 40);
        CheckTranslate<TypeParam>(text, from, to);
    }
}

TEST(TextModelUnits, TranslatesEachUnit)
{
    // The set has each odd unit twice, and the second time goes for nothing.
    std::u16string text;
    std::u16string from;
    for (unsigned u = 1; u < 0x10000; ++u)
        text += static_cast<char16_t>(u);
    for (unsigned u = 0xFFFF; u < 0x10000; u -= 2)
        from += static_cast<char16_t>(u);
    std::u16string to = from.substr(0, from.size() / 2);
    std::reverse(to.begin(), to.end());
    std::map<char16_t, size_t> places;
    for (size_t n = 0; n < from.size(); ++n)
        places.emplace(from[n], n);
    from += from;
    std::u16string expected;
    for (const char16_t c : text)
        if (!places.count(c))
            expected += c;
        else if (places[c] < to.size())
            expected += to[places[c]];
    CT_UString in = {U(text.data()), static_cast<unsigned>(text.size())};
    const CT_UString source(U(from.data()), static_cast<unsigned>(from.size()));
    const CT_UString target(U(to.data()), static_cast<unsigned>(to.size()));
    in.vv_Translate(&source, &target);
    EXPECT_TRUE(expected == Text(in));
}

TEST(TextModelBytes, ATextTranslatesByItselfAsItChanges)
{
    // The set is the block that the replacements go to.
    std::string text;
    for (unsigned n = 0; n < 300; ++n)
        text += static_cast<char>('a' + n * 7 % 26);
    std::string expected = text;
    const std::string to = "bcdefghijklm";
    for (size_t n = 0; n < expected.size(); ++n) {
        const size_t place = expected.find(expected[n]);
        if (place >= to.size()) {
            std::string rest;
            const std::string set = expected;
            for (size_t left = n; left < set.size(); ++left)
                if (set.find(set[left]) < to.size())
                    rest += to[set.find(set[left])];
            expected = expected.substr(0, n) + rest;
            break;
        }
        expected[n] = to[place];
    }
    CT_CString in(text.data(), 300);
    const CT_CString with(to.data(), ALL);
    in.vv_Translate(&in, &with);
    EXPECT_EQ(expected, Text(in));
}

TYPED_TEST(TextModel, AppendsWithinTheRoomWithoutABlock)
{
    using Text = typename TypeParam::Text;
    auto in = TypeParam::Of(Text(3, 'a'));
    in.vv_SetMinSize(100, 1);
    const unsigned blocks = CT_Buffer::sn_GetAllocCount();
    Text expected(3, 'a');
    while (expected.size() <= 50) {
        const auto more = expected;
        in.v_Append(reinterpret_cast<const typename TypeParam::Unit*>(more.data()),
                    static_cast<unsigned>(more.size()));
        expected += more;
        EXPECT_TRUE(expected == ::Text(in));
    }
    EXPECT_EQ(blocks, CT_Buffer::sn_GetAllocCount());
}
