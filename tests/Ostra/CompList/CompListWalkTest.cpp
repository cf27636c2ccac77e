// tests/Ostra/CompList/CompListWalkTest.cpp: following keys, and adding on the way.
#include <Ostra/CompList/CompList.h>

#include <gtest/gtest.h>

#include <Models/CompListKey.h>
#include <Models/CompListModel.h>
#include <Support/Directory.h>

#include <string>

// Reaches the walk in its modes; the match mode has no operation of its own.
struct CompListPeer
{
    static unsigned Walk(CT_CompList& list, const char* key, int mode, unsigned* matched)
    {
        return list.n_Walk(key, static_cast<CT_CompList::et_WalkMode>(mode), 0, matched);
    }
    static_assert(CT_CompList::wm_Search == 0);
    static_assert(CT_CompList::wm_Match == 1);
    static_assert(CT_CompList::wm_Add == 2);
};

namespace
{
constexpr unsigned NONE = 0xFFFFFFFF;
enum
{
    SEARCH,
    MATCH
};

typedef CT_CompList::et_ElementSize ElementSize;

class CompListWalk : public testing::Test
{
protected:
    CT_CompList list{CT_CompList::es_Byte, 2, 0, 0, 128, 1252};

    std::string Stream() const { return Block(list).substr(132); }
    unsigned Jump(char letter) const
    {
        const unsigned at = 16 + 4 * static_cast<unsigned>(letter - 'a');
        const std::string bytes = Block(list).substr(at, 4);
        return static_cast<unsigned char>(bytes[0]) | static_cast<unsigned char>(bytes[1]) << 8;
    }
    void AddExample()
    {
        list.b_Add("car", 1);
        list.b_Add("cat", 2);
        list.b_Add("do", 3);
    }
};
} // namespace

// ---- Search -------------------------------------------------------------------------------

TEST_F(CompListWalk, MatchedTellsHowFarAKeyWasFollowed)
{
    AddExample();
    const struct
    {
        const char* key;
        unsigned handle, searched, matched;
    } cases[] = {
        {"car", 1, 3, 3},     {"cat", 2, 3, 3},    {"do", 3, 2, 2},
        {"card", NONE, 3, 3},                      // a leaf end before the key's end
        {"cats", NONE, 3, 3}, {"cab", NONE, 0, 0}, // characters differ, no alternative is left
        {"cab1", NONE, 0, 0}, {"ca", NONE, 2, 2},  // ends inside a stored branch
        {"c", NONE, 1, 1},    {"d", NONE, 1, 1},   {"dog", NONE, 2, 2},
        {"x", NONE, 0, 0},    {"Car", NONE, 0, 0},
    };
    for (const auto& row : cases)
        for (int mode : {SEARCH, MATCH}) {
            SCOPED_TRACE(testing::Message() << row.key << " " << mode);
            unsigned matched = 77;
            EXPECT_EQ(CompListPeer::Walk(list, row.key, mode, &matched), row.handle);
            EXPECT_EQ(matched, mode == SEARCH ? row.searched : row.matched);
            EXPECT_EQ(CompListPeer::Walk(list, row.key, mode, nullptr), row.handle);
        }
}

TEST_F(CompListWalk, AnEmptyListMatchesNothing)
{
    unsigned matched = 77;
    EXPECT_EQ(list.n_Search("a", &matched), NONE);
    EXPECT_EQ(matched, 0u);
    EXPECT_FALSE(list.b_Search("a", &matched));
    EXPECT_EQ(CompListPeer::Walk(list, "a", MATCH, &matched), NONE);
    EXPECT_EQ(matched, 0u);
}

// A block whose branch stops at the list end: only there do the two modes differ.
TEST_F(CompListWalk, TheMatchModeCountsUpToTheListEnd)
{
    const std::string bytes = Block(list).substr(0, 132) + "ab" + Hex("19");
    CT_Buffer buffer(bytes.data(), static_cast<unsigned>(bytes.size()), 32);
    buffer.v_Replace("\x87", 1, 4); // the end, 135
    CT_CompList open(&buffer);
    unsigned matched = 77;
    EXPECT_EQ(CompListPeer::Walk(open, "abc", SEARCH, &matched), NONE);
    EXPECT_EQ(matched, 0u);
    EXPECT_EQ(CompListPeer::Walk(open, "abc", MATCH, &matched), NONE);
    EXPECT_EQ(matched, 2u);
}

TEST_F(CompListWalk, MatchedCountsElements)
{
    for (unsigned element : {1u, 2u, 4u}) {
        SCOPED_TRACE(element);
        CT_CompList wide(ElementSize(element), 1, 0, 0, 128, 0);
        // A key of four-byte elements has none that holds a unit of 0.
        std::string key = element == 4 ? std::string("abcdefgh") : Key("ab", element);
        key.append(4, '\0');
        ASSERT_EQ(wide.b_Add(key.data(), 8), 1);
        unsigned matched = 0;
        EXPECT_EQ(wide.n_Search(key.data(), &matched), 8u);
        EXPECT_EQ(matched, 2u);
    }
}

TEST_F(CompListWalk, AKeyIsFoundThroughInnerEndsAndAlternatives)
{
    for (const char* key : {"b", "bad", "ba", "bat", "bats", "x1", "x", "X", "bar", "7", "b7"})
        EXPECT_EQ(list.b_Add(key, static_cast<unsigned char>(key[0]) +
                                      256u * static_cast<unsigned char>(key[1])),
                  1);
    for (const char* key : {"b", "x1", "x", "X", "7", "b7"})
        EXPECT_EQ(list.n_Search(key, nullptr),
                  static_cast<unsigned char>(key[0]) + 256u * static_cast<unsigned char>(key[1]));
    unsigned matched;
    EXPECT_EQ(list.n_Search("batsman", &matched), NONE);
    EXPECT_EQ(matched, 4u);
}

TEST_F(CompListWalk, BytesAboveAsciiAreElements)
{
    EXPECT_EQ(list.b_Add("\xFF\x80", 1), 1);
    EXPECT_EQ(list.b_Add("\xFF\x81", 2), 1);
    EXPECT_EQ(list.n_Search("\xFF\x80", nullptr), 1u);
    EXPECT_EQ(list.n_Search("\xFF\x81", nullptr), 2u);
}

// ---- Adding -------------------------------------------------------------------------------

TEST_F(CompListWalk, TheFirstKeyStandsBeforeTheListEnd)
{
    list.b_Add("car", 1);
    EXPECT_EQ(Stream(), Hex("63 61 72 1A 01 00 19"));
    EXPECT_EQ(Jump('c'), 132u);
}

TEST_F(CompListWalk, ADifferenceAddsAMarkAndABranch)
{
    list.b_Add("car", 1);
    list.b_Add("cat", 2);
    EXPECT_EQ(Stream(), Hex("63 61 72 0D 06 00 1A 01 00 74 1A 02 00 19"));
    EXPECT_EQ(Jump('c'), 132u);
    EXPECT_EQ(Jump('t'), 0u);
}

TEST_F(CompListWalk, AThirdWayHangsOnTheSecond)
{
    list.b_Add("r", 1);
    list.b_Add("s", 2);
    list.b_Add("t", 3);
    EXPECT_EQ(Stream(), Hex("72 0D 06 00 1A 01 00  73 0D 06 00 1A 02 00  74 1A 03 00  19"));
}

TEST_F(CompListWalk, AnInnerEndLeavesTheOtherHandles)
{
    list.b_Add("car", 1);
    list.b_Add("cat", 2);
    list.b_Add("ca", 4);
    EXPECT_EQ(Stream(), Hex("63 61 0A 04 00 72 0D 06 00 1A 01 00 74 1A 02 00 19"));
    EXPECT_EQ(list.n_Search("car", nullptr), 1u);
    EXPECT_EQ(list.n_Search("cat", nullptr), 2u);
    EXPECT_EQ(list.n_Search("ca", nullptr), 4u);
}

TEST_F(CompListWalk, AnInnerEndBehindAnAlternativeStandsBehindItsMark)
{
    list.b_Add("ab", 1);
    list.b_Add("x", 2);
    list.b_Add("a", 3);
    EXPECT_EQ(Stream(), Hex("61 0D 0A 00 0A 03 00 62 1A 01 00  78 1A 02 00 19"));
    EXPECT_EQ(list.b_Add("a", 9), 0);
}

TEST_F(CompListWalk, ALeafEndOpensForALongerKey)
{
    list.b_Add("car", 1);
    list.b_Add("cart", 5);
    EXPECT_EQ(Stream(), Hex("63 61 72 0A 01 00 74 1A 05 00 19"));
}

TEST_F(CompListWalk, LettersAToZGetAJumpOffset)
{
    for (const char* key : {"a1", "B1", "{1", "`1", "z1", "m1", "m2"})
        list.b_Add(key, 0);
    for (char letter = 'a'; letter <= 'z'; ++letter) {
        const unsigned jump = Jump(letter);
        if (letter == 'a' || letter == 'm' || letter == 'z')
            EXPECT_EQ(Block(list)[jump], letter);
        else
            EXPECT_EQ(jump, 0u) << letter;
    }
}

TEST_F(CompListWalk, WideElementsUseTheSameLetters)
{
    CT_CompList wide(CT_CompList::es_Short, 0, 0, 0, 128, 0);
    wide.b_Add(Key("q", 2).data(), 0);
    wide.b_Add(std::string("\x71\x01\0\0", 4).data(), 0); // not a letter: only its low byte is q
    EXPECT_EQ(Block(wide).substr(16 + 4 * 16, 4), Hex("84 00 00 00"));
    CompListModel model(2, 0, false, false, 0);
    model.Add(Key("q", 2), 0);
    model.Add(std::string("\x71\x01\0\0", 4), 0);
    EXPECT_EQ(Block(wide), model.bytes);
}

TEST_F(CompListWalk, AGapAtAJumpOffsetMovesItAndOneBehindDoesNot)
{
    list.b_Add("car", 1);
    list.b_Add("do", 2);
    ASSERT_EQ(Jump('c'), 132u);
    ASSERT_EQ(Jump('d'), 141u);
    list.b_Add("ca", 3);
    EXPECT_EQ(Jump('c'), 132u);
    EXPECT_EQ(Jump('d'), 144u);
    // The branch of car grows at its end, which is where that of do begins.
    list.b_Add("cart", 4);
    EXPECT_EQ(Jump('d'), 148u);
    EXPECT_EQ(Block(list)[148], 'd');
}

TEST_F(CompListWalk, ALetterIsReachedDirectlyAndOthersThroughTheChain)
{
    // The chain of first letters leads astray behind its first: d has its jump offset.
    AddExample();
    list.b_Add("Emu", 4);
    std::string bytes = Block(list);
    bytes[134] = 0x10; // c's alternative leads into the branch of do
    bytes[135] = 0;
    CT_Buffer buffer(bytes.data(), static_cast<unsigned>(bytes.size()), 32);
    CT_CompList cut(&buffer);
    EXPECT_EQ(cut.n_Search("do", nullptr), 3u);
    EXPECT_EQ(cut.n_Search("Emu", nullptr), NONE);
    EXPECT_EQ(list.n_Search("Emu", nullptr), 4u);
}

TEST_F(CompListWalk, OffsetsThatOutgrowTheirFieldAreCut)
{
    const std::string first = "a" + std::string(40000, 'x'), second = "b" + std::string(40000, 'x');
    CompListModel model(1, 2, false, false, 1252);
    for (const std::string& key : {first, second, std::string("c"), std::string("d")}) {
        EXPECT_EQ(list.b_Add(key.c_str(), 1), 1);
        model.Add(key + '\0', 1);
        ASSERT_EQ(Block(list), model.bytes);
    }
    // The mark behind a reaches b; a gap in front of b then makes it 65536 and more, which is cut.
    const std::string third = "a" + std::string(30000, 'y');
    EXPECT_EQ(list.b_Add(("a" + std::string(40000, 'x') + std::string(30000, 'z')).c_str(), 1), 1);
    model.Add("a" + std::string(40000, 'x') + std::string(30000, 'z') + '\0', 1);
    EXPECT_EQ(Block(list), model.bytes);
    EXPECT_EQ(list.b_Add(third.c_str(), 1), 1);
    model.Add(third + '\0', 1);
    EXPECT_EQ(Block(list), model.bytes);
}

TEST_F(CompListWalk, FourByteElementsAreMeasuredInUnits)
{
    CT_CompList wide(CT_CompList::es_Long, 1, 0, 0, 128, 0);
    CompListModel model(4, 1, false, false, 0);
    // The upper half of the letter is a unit of 0: the key is measured as two bytes.
    const std::string key = Key("a", 4);
    EXPECT_EQ(wide.b_Add(key.data(), 7), 1);
    EXPECT_TRUE(model.Add(key, 7));
    EXPECT_EQ(Block(wide), model.bytes);
    EXPECT_EQ(Block(wide).substr(132), Hex("61 00 1A 00 00 00 07 19 00 00 00"));

    // Keys without a unit of 0 are whole.
    CT_CompList other(CT_CompList::es_Long, 1, 0, 0, 128, 0);
    EXPECT_EQ(other.b_Add(std::string("abcdABCD\0\0\0\0", 12).data(), 1), 1);
    EXPECT_EQ(Block(other).substr(132), "abcdABCD" + Hex("1A 00 00 00 01 19 00 00 00"));
}

TEST_F(CompListWalk, AKeyThatPartsBehindItsMeasuredEndIsLeftOut)
{
    CT_CompList wide(CT_CompList::es_Long, 1, 0, 0, 128, 0);
    std::string bytes =
        Block(wide).substr(0, 132) + Key("ab", 4).substr(0, 8) + Hex("1A 00 00 00 07 19 00 00 00");
    bytes[4] = static_cast<char>(bytes.size());
    CT_Buffer buffer(bytes.data(), static_cast<unsigned>(bytes.size()), 32);
    for (const char* text : {"ax", "abc"}) {
        SCOPED_TRACE(text);
        CT_CompList stored(&buffer);
        EXPECT_EQ(stored.n_Search(Key("ab", 4).data(), nullptr), 7u);
        EXPECT_EQ(stored.b_Add(Key(text, 4).data(), 1), 0);
        EXPECT_EQ(Block(stored), bytes);
    }
}

TEST_F(CompListWalk, AKeyWithAReservedElementDamagesTheListAsTold)
{
    CompListModel model(1, 2, false, false, 1252);
    const struct
    {
        std::string key;
        int added;
    } cases[] = {{"ab", 1}, {"a\x0D\x01\x01zz", 1}, {"c\x0A\x19", 1}, {"c\x1Ax", 1}};
    for (const auto& row : cases) {
        SCOPED_TRACE(row.key);
        EXPECT_EQ(list.b_Add(row.key.c_str(), 7), row.added);
        EXPECT_EQ(model.Add(row.key + '\0', 7), row.added != 0);
        ASSERT_EQ(Block(list), model.bytes);
    }
}
