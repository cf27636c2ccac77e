// tests/Ostra/CompList/CompListIteratorTest.cpp: walks over lists.
#include <Ostra/CompList/CCompListIterator.h>
#include <Ostra/CompList/CompListIterator.h>
#include <Ostra/CompList/UCompListIterator.h>

#include <gtest/gtest.h>

#include <Ostra/Frame/Text.h>
#include <Ostra/String/CString.h>
#include <Ostra/String/UString.h>
#include <Models/CompListKey.h>
#include <Models/KeyTree.h>
#include <Support/Directory.h>
#include <Support/Private.h>
#include <Support/Slots.h>

#include <cstring>
#include <random>
#include <string>
#include <type_traits>
#include <vector>

OSTRA_PRIVATE(Branches, CT_VoidArray CT_CompListIterator::*, &CT_CompListIterator::co_Branches);
OSTRA_PRIVATE(Position, unsigned CT_CompListIterator::*, &CT_CompListIterator::n_Position);
OSTRA_PRIVATE(Collected, const CT_String* (CT_CompListIterator::*)(),
              &CT_CompListIterator::vpcco_GetCollectedString);
OSTRA_PRIVATE(Pop, unsigned (CT_CompListIterator::*)(), &CT_CompListIterator::vn_PopCharacter);
OSTRA_PRIVATE(AppendOne, void (CT_CompListIterator::*)(unsigned),
              &CT_CompListIterator::vv_AppendCharacter);

namespace
{
typedef CT_CompList::et_ElementSize ElementSize;
typedef std::mt19937 Random;
typedef KeyTree::Key Word;
typedef KeyTree::Entries Entries;

// A list and the tree of the same keys.
struct Pair
{
    explicit Pair(unsigned size, unsigned handle = 4, int empty = 0, int longOffsets = 1)
        : element(size),
          list(ElementSize(size), handle, empty, longOffsets, 128, 0)
    {}

    // Four-byte keys hold no unit of 0: both halves of an element are the same.
    void Add(const Word& word, unsigned handle)
    {
        std::string key;
        for (unsigned index = 0; index <= word.size(); ++index)
            for (unsigned n = 0; n < element; ++n)
                key += static_cast<char>((index < word.size() ? word[index] : 0) >> 8 * (n % 2));
        list.b_Add(key.data(), handle);
        tree.Add(word, handle);
    }
    void Add(const char* text, unsigned handle)
    {
        Add(Word(text, text + std::strlen(text)), handle);
    }

    unsigned element;
    CT_CompList list;
    KeyTree tree;
};

Word Elements(const CT_CString& text)
{
    const auto* bytes = reinterpret_cast<const unsigned char*>(text.qccz_Get());
    return Word(bytes, bytes + text.vn_GetLength());
}

Word Elements(const CT_UString& text)
{
    return Word(text.qcuz_Get(), text.qcuz_Get() + text.vn_GetLength());
}

// What is left of a walk.
template <class Text>
Entries Rest(CT_CompListIterator& walk)
{
    Entries entries;
    Text key;
    unsigned handle = 0;
    while (walk.b_GetNext(&key, &handle))
        entries.emplace_back(Elements(key), handle);
    return entries;
}

std::string Keys(CT_CompListIterator& walk)
{
    std::string keys;
    for (const auto& [word, handle] : Rest<CT_CString>(walk))
        keys += std::string(word.begin(), word.end()) + "=" + std::to_string(handle) + " ";
    return keys;
}

void AddExample(Pair& pair)
{
    pair.Add("car", 1);
    pair.Add("cat", 2);
    pair.Add("do", 3);
}

Word RandomWord(Random& random, unsigned size, unsigned alphabet, unsigned length)
{
    Word word;
    for (unsigned left = random() % (length + 1); left > 0; --left) {
        unsigned element = random() % 30 ? 'a' + random() % alphabet : 0x80 + random() % 0x80;
        if (size == 2 && random() % 30 == 0)
            element = 0x100 + random() % 0xFF00;
        word.push_back(element);
    }
    return word;
}
} // namespace

// ---- The classes --------------------------------------------------------------------------

// The destructor, slot 0, takes two entries of the table.
TEST(CompListIterator, HasItsFiveSlotsInOrder)
{
    EXPECT_TRUE(std::has_virtual_destructor_v<CT_CompListIterator>);
    EXPECT_EQ(EntryOf(&CT_CompListIterator::vv_Set), 1U + 1);
    EXPECT_EQ(EntryOf(Private(Collected())), 2U + 1);
    EXPECT_EQ(EntryOf(Private(Pop())), 3U + 1);
    EXPECT_EQ(EntryOf(Private(AppendOne())), 4U + 1);
    EXPECT_TRUE(std::is_abstract_v<CT_CompListIterator>);
}

TEST(CompListIterator, HasItsMembersAndNoMore)
{
    struct Expected
    {
        void* table;
        const CT_CompList* list;
        unsigned position;
        CT_VoidArray branches;
    };
    EXPECT_EQ(sizeof(CT_CompListIterator), sizeof(Expected));
    EXPECT_EQ(sizeof(CT_CCompListIterator), sizeof(Expected) + sizeof(CT_CString));
    EXPECT_EQ(sizeof(CT_UCompListIterator), sizeof(Expected) + sizeof(CT_UString));
    Pair pair(1);
    CT_CCompListIterator walk(&pair.list);
    const CT_VoidArray& branches = walk.*Private(Branches());
    EXPECT_EQ(branches.n_GetItemSize(), 12U);
    EXPECT_EQ(branches.n_GetGrowth(), 8U);
    EXPECT_EQ(branches.n_GetMaxItems(), 0U);
    EXPECT_EQ(walk.*Private(Position()), 132U);
    EXPECT_EQ((walk.*Private(Collected()))()->vn_GetGrowth(), 32U);
}

TEST(CompListIterator, CharactersAreWidenedAsTheirStringIs)
{
    Pair pair(1);
    CT_CCompListIterator bytes(&pair.list);
    (bytes.*Private(AppendOne()))(0x141);
    (bytes.*Private(AppendOne()))(0xFFFFFFE4);
    EXPECT_EQ((bytes.*Private(Collected()))()->vn_GetLength(), 2U);
    EXPECT_EQ((bytes.*Private(Pop()))(), 0xFFFFFFE4);
    EXPECT_EQ((bytes.*Private(Pop()))(), 0x41U);
    CT_UCompListIterator units(&pair.list);
    (units.*Private(AppendOne()))(0x10041);
    (units.*Private(AppendOne()))(0xFFFFABCD);
    EXPECT_EQ((units.*Private(Collected()))()->vn_GetLength(), 2U);
    EXPECT_EQ((units.*Private(Pop()))(), 0xABCDU);
    EXPECT_EQ((units.*Private(Pop()))(), 0x41U);
    // An empty string has no character to give.
    EXPECT_EQ((units.*Private(Pop()))(), 0U);
    EXPECT_EQ((units.*Private(Collected()))()->vn_GetLength(), 0U);
}

// ---- Order --------------------------------------------------------------------------------

TEST(CompListIterator, TheExamplesComeInTheirOrder)
{
    for (const unsigned element : {1U, 2U, 4U}) {
        SCOPED_TRACE(element);
        Pair pair(element);
        AddExample(pair);
        CT_CCompListIterator bytes(&pair.list);
        EXPECT_EQ(Keys(bytes), "do=3 cat=2 car=1 ");
        pair.Add("ca", 4);
        pair.Add("cart", 5);
        bytes.vv_Set(&pair.list);
        EXPECT_EQ(Keys(bytes), "do=3 ca=4 cat=2 car=1 cart=5 ");
        CT_UCompListIterator units(&pair.list);
        EXPECT_EQ(Keys(units), "do=3 ca=4 cat=2 car=1 cart=5 ");
    }
}

// Every entry once, with its handle, in the order of a tree whose newest branches come first.
TEST(CompListIterator, RandomKeysComeAsTheTreeHasThem)
{
    const unsigned seed = Seed(5202);
    SCOPED_TRACE(testing::Message() << "OSTRA_SEED=" << seed);
    Random random(seed);
    for (unsigned round = 0; round < 400; ++round) {
        const unsigned element = 1U << round % 3;
        Pair pair(element, 4, round & 1);
        const unsigned alphabet = 1 + random() % 12, length = 1 + random() % 12;
        for (unsigned count = random() % 200; count > 0; --count)
            pair.Add(RandomWord(random, element, alphabet, length), random());
        const Entries expected = pair.tree.Walk();
        if (element == 1) {
            CT_CCompListIterator bytes(&pair.list);
            ASSERT_EQ(Rest<CT_CString>(bytes), expected);
        }
        CT_UCompListIterator units(&pair.list);
        ASSERT_EQ(Rest<CT_UString>(units), expected);
    }
}

// A list long enough for every kind of insertion, and for more branches than the stack begins with.
TEST(CompListIterator, ALongListComesAsTheTreeHasIt)
{
    const unsigned seed = Seed(5203);
    SCOPED_TRACE(testing::Message() << "OSTRA_SEED=" << seed);
    Random random(seed);
    Pair pair(2);
    for (unsigned count = 0; count < 6000; ++count)
        pair.Add(RandomWord(random, 2, 26, 14), count);
    CT_UCompListIterator walk(&pair.list);
    const Entries first = Rest<CT_UString>(walk);
    EXPECT_TRUE(first == pair.tree.Walk());
    EXPECT_GE((walk.*Private(Branches())).n_GetMaxItems(), 26U);
    EXPECT_EQ((walk.*Private(Branches())).n_GetCount(), 0U);
    walk.vv_Set(&pair.list);
    EXPECT_TRUE(Rest<CT_UString>(walk) == first);
}

TEST(CompListIterator, TheHandlesAreOfTheListsWidth)
{
    const struct
    {
        unsigned size, expected;
    } cases[] = {{0, 0}, {1, 0x78}, {2, 0x5678}, {4, 0x12345678}};
    for (const auto& row : cases) {
        SCOPED_TRACE(row.size);
        Pair pair(2, row.size);
        pair.Add("ab", 0x12345678);
        pair.Add("abc", 0x12345678);
        CT_UCompListIterator walk(&pair.list);
        const Entries expected = {{{'a', 'b'}, row.expected}, {{'a', 'b', 'c'}, row.expected}};
        EXPECT_EQ(Rest<CT_UString>(walk), expected);
    }
}

TEST(CompListIterator, ShortOffsetsLeadTheSameWay)
{
    Pair pair(1, 2, 0, 0);
    AddExample(pair);
    CT_CCompListIterator walk(&pair.list);
    EXPECT_EQ(Keys(walk), "do=3 cat=2 car=1 ");
}

// ---- Ends ---------------------------------------------------------------------------------

TEST(CompListIterator, AnEmptyListHasNothing)
{
    for (const unsigned element : {1U, 2U, 4U}) {
        SCOPED_TRACE(element);
        Pair pair(element);
        CT_CCompListIterator bytes(&pair.list);
        CT_UCompListIterator units(&pair.list);
        CT_CString key("before");
        unsigned handle = 77;
        for (unsigned times = 0; times < 3; ++times) {
            EXPECT_EQ(bytes.b_GetNext(&key, &handle), 0);
            EXPECT_EQ(units.b_GetNext(&key, &handle), 0);
        }
        EXPECT_STREQ(key.qccz_Get(), "before");
        EXPECT_EQ(handle, 77U);
    }
}

TEST(CompListIterator, TheEmptyStringIsNotHandedOut)
{
    Pair pair(1, 4, 1);
    pair.Add("", 9);
    CT_CCompListIterator walk(&pair.list);
    EXPECT_EQ(Keys(walk), "");
    EXPECT_EQ(pair.list.n_GetNrOfEntries(), 1U);
    AddExample(pair);
    walk.vv_Set(&pair.list);
    EXPECT_EQ(Rest<CT_CString>(walk).size(), pair.list.n_GetNrOfEntries() - 1);
}

TEST(CompListIterator, BehindTheLastEntryItStays)
{
    Pair pair(1);
    AddExample(pair);
    CT_CCompListIterator walk(&pair.list);
    CT_CString key;
    unsigned handle = 0;
    for (unsigned times = 0; times < 3; ++times)
        EXPECT_EQ(walk.b_GetNext(&key, &handle), 1);
    for (unsigned times = 0; times < 5; ++times) {
        EXPECT_EQ(walk.b_GetNext(&key, &handle), 0);
        EXPECT_STREQ(key.qccz_Get(), "car");
        EXPECT_EQ(handle, 1U);
    }
    EXPECT_EQ(walk.*Private(Position()), pair.list.n_GetEnd());
    walk.vv_Set(&pair.list);
    EXPECT_EQ(Keys(walk), "do=3 cat=2 car=1 ");
}

TEST(CompListIterator, AHandleNeedNotBeAskedFor)
{
    Pair pair(1);
    AddExample(pair);
    CT_CCompListIterator walk(&pair.list);
    CT_CString key;
    for (const char* expected : {"do", "cat", "car"}) {
        EXPECT_EQ(walk.b_GetNext(&key, nullptr), 1);
        EXPECT_STREQ(key.qccz_Get(), expected);
    }
    EXPECT_EQ(walk.b_GetNext(&key, nullptr), 0);
}

TEST(CompListIterator, SetGoesToAnotherListFromAnywhere)
{
    Pair first(1), second(2);
    AddExample(first);
    second.Add("xy", 7);
    second.Add("xz", 8);
    for (unsigned steps = 0; steps < 5; ++steps) {
        SCOPED_TRACE(steps);
        CT_UCompListIterator walk(&first.list);
        CT_CString key;
        for (unsigned step = 0; step < steps; ++step)
            walk.b_GetNext(&key, nullptr);
        walk.vv_Set(&second.list);
        EXPECT_EQ(Keys(walk), "xz=8 xy=7 ");
    }
}

TEST(CompListIterator, SetKeepsTheRoomOfTheBranches)
{
    Pair pair(1);
    for (char letter = 'a'; letter < 'a' + 9; ++letter)
        pair.Add(Word{static_cast<unsigned>(letter)}, 1);
    CT_CCompListIterator walk(&pair.list);
    CT_UString key; // of another encoding: the collected string has its block to itself
    while (walk.b_GetNext(&key, nullptr)) {
    }
    const CT_VoidArray& branches = walk.*Private(Branches());
    const unsigned room = branches.n_GetMaxItems();
    EXPECT_GE(room, 8U);
    const unsigned allocations = CT_Buffer::sn_GetAllocCount();
    walk.vv_Set(&pair.list);
    EXPECT_EQ(branches.n_GetCount(), 0U);
    EXPECT_EQ(branches.n_GetMaxItems(), room);
    EXPECT_EQ(CT_Buffer::sn_GetAllocCount(), allocations);
}

TEST(CompListIterator, SeveralWalkOneList)
{
    Pair pair(1);
    AddExample(pair);
    CT_CCompListIterator one(&pair.list), other(&pair.list);
    CT_CString key;
    one.b_GetNext(&key, nullptr);
    other.b_GetNext(&key, nullptr);
    EXPECT_STREQ(key.qccz_Get(), "do");
    other.b_GetNext(&key, nullptr);
    EXPECT_EQ(Keys(one), "cat=2 car=1 ");
    EXPECT_EQ(Keys(other), "car=1 ");
}

// ---- Keys ---------------------------------------------------------------------------------

TEST(CompListIterator, AKeySharesTheCollectedStringUntilTheNextStep)
{
    Pair pair(1);
    AddExample(pair);
    CT_CCompListIterator walk(&pair.list);
    const CT_String* collected = (walk.*Private(Collected()))();
    CT_CString one, other(1252);
    walk.b_GetNext(&one, nullptr);
    walk.b_GetNext(&other, nullptr);
    EXPECT_STREQ(one.qccz_Get(), "do");
    EXPECT_STREQ(other.qccz_Get(), "cat");
    EXPECT_EQ(other.n_GetCodePage(), 0U);
    walk.b_GetNext(&one, nullptr);
    EXPECT_STREQ(other.qccz_Get(), "cat");
    // The last key: nothing was left to go back to.
    EXPECT_EQ(one.pcco_GetBuffer()->qcv_Get(), collected->pcco_GetBuffer()->qcv_Get());
    EXPECT_EQ(one.pcco_GetBuffer()->n_GetUseCount(), 2U);
    one.vv_ToUpper();
    EXPECT_STREQ(static_cast<const CT_CString*>(collected)->qccz_Get(), "car");
    walk.vv_Set(&pair.list);
    EXPECT_STREQ(one.qccz_Get(), "CAR");
}

TEST(CompListIterator, AKeyMayOutliveItsIterator)
{
    Pair pair(2);
    pair.Add("long enough for a block of its own", 1);
    CT_UString key;
    {
        CT_UCompListIterator walk(&pair.list);
        walk.b_GetNext(&key, nullptr);
    }
    EXPECT_EQ(Elements(key).size(), 34U);
}

TEST(CompListIterator, EitherIteratorFillsEitherString)
{
    Pair bytes(1), units(2);
    bytes.Add(Word{'K', 0xE4, 's', 'e'}, 1);
    units.Add(Word{'K', 0xE4, 's', 'e'}, 1);
    CT_CString narrow(1252);
    CT_UString wide;

    CT_UCompListIterator unitWalk(&units.list);
    unitWalk.b_GetNext(&narrow, nullptr);
    EXPECT_STREQ(narrow.qccz_Get(), "K\xE4se"); // in the key's code page
    EXPECT_EQ(narrow.n_GetCodePage(), 1252U);
    unitWalk.vv_Set(&units.list);
    unitWalk.b_GetNext(&wide, nullptr);
    EXPECT_EQ(Elements(wide), (Word{'K', 0xE4, 's', 'e'}));

    CT_CCompListIterator byteWalk(&bytes.list);
    byteWalk.b_GetNext(&narrow, nullptr);
    EXPECT_STREQ(narrow.qccz_Get(), "K\xE4se");
    byteWalk.vv_Set(&bytes.list);
    byteWalk.b_GetNext(&wide, nullptr);
    // Bytes of the system's code page.
    const CT_CString systems("K\xE4se");
    EXPECT_EQ(Elements(wide), Elements(CT_UString(&systems)));
}

TEST(CompListIterator, TheBytesComeAsTheyAreWhateverCodePageTheListHas)
{
    CT_CompList list(CT_CompList::es_Byte, 2, 0, 0, 128, 1251);
    list.b_Add("\xC4\xE0", 1);
    CT_CCompListIterator walk(&list);
    CT_CString key(1251);
    EXPECT_EQ(walk.b_GetNext(&key, nullptr), 1);
    EXPECT_STREQ(key.qccz_Get(), "\xC4\xE0");
    EXPECT_EQ(key.n_GetCodePage(), 0U);
}

// An iterator of the other width takes the elements as far as its characters go.
TEST(CompListIterator, ElementsAreCutToTheWidthOfTheString)
{
    Pair pair(2);
    pair.Add(Word{0x141, 0x4E00, 'c'}, 1);
    pair.Add(Word{0x141, 0x4E00, 'd'}, 2);
    pair.Add(Word{0xE4}, 3);
    CT_CCompListIterator walk(&pair.list);
    // A cut element of 0 appends nothing.
    const Entries expected = {{{0xE4}, 3}, {{'A', 'd'}, 2}, {{'A', 'c'}, 1}};
    EXPECT_EQ(Rest<CT_CString>(walk), expected);

    CT_CompList bytes(CT_CompList::es_Byte, 1, 0, 0, 128, 0);
    bytes.b_Add("\xE4\xFF", 5);
    CT_UCompListIterator units(&bytes);
    const Entries wide = {{{0xE4, 0xFF}, 5}};
    EXPECT_EQ(Rest<CT_UString>(units), wide);
}

// The mark behind such an element takes the character before it off, and puts it back.
TEST(CompListIterator, AnAlternativeToNothingTakesTheCharacterBefore)
{
    Pair pair(2);
    pair.Add(Word{'a', 0x100, 'b'}, 1);
    pair.Add(Word{'a', 'x'}, 2);
    pair.Add(Word{'y'}, 3);
    CT_CCompListIterator walk(&pair.list);
    EXPECT_EQ(Keys(walk), "y=3 x=2 ab=1 ");
    Pair first(2);
    first.Add(Word{0x100, 'b'}, 1);
    first.Add(Word{'x'}, 2);
    CT_CCompListIterator other(&first.list);
    EXPECT_EQ(Keys(other), "x=2 b=1 ");
}

// ---- Blocks that are no lists ---------------------------------------------------------------

namespace
{
// The head of a new list with another stream.
std::string WithStream(const std::string& stream)
{
    CT_CompList list(CT_CompList::es_Byte, 1, 0, 0, 128, 0);
    std::string block = Block(list).substr(0, 132) + stream;
    const unsigned end = static_cast<unsigned>(block.size());
    std::memcpy(&block[4], &end, sizeof(end));
    return block;
}
} // namespace

TEST(CompListIterator, OtherStreamsEndTheWalk)
{
    const struct
    {
        const char* what;
        std::string stream, expected;
    } cases[] = {
        {"nothing", "", ""},
        {"no end", "abc", ""},
        {"an end without its handle", "ab\x1A", "ab=0 "},
        {"a list end first",
         std::string("\x19"
                     "a\x1A\x01",
                     4),
         ""},
        {"a list end behind a branch",
         std::string("a\x0D\x05\x00"
                     "b\x19"
                     "c\x1A\x01",
                     9),
         "c=1 "},
        {"a list end before a branch",
         std::string("a\x0D\x06\x00"
                     "b\x1A\x01\x19",
                     8),
         ""},
        {"a mark without its offset", "a\x0D\x05", ""},
        {"a mark before any character",
         std::string("\x0D\x04\x00"
                     "a"
                     "b\x1A\x07",
                     7),
         "b=7 ab=7 "},
        {"an offset of 0",
         std::string("a\x0D\x00\x00"
                     "b\x1A\x01\x19",
                     8),
         ""},
        {"an offset behind the end",
         std::string("a\x0D\xFF\xFF"
                     "b\x1A\x01\x19",
                     8),
         ""},
        {"a key with a list end",
         std::string("ab\x19"
                     "c\x1A\x01\x19",
                     7),
         ""},
        {"a key with an end",
         std::string("a\x1A"
                     "b\x1A\x01\x19",
                     6),
         "a=98 "},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.what);
        const std::string block = WithStream(row.stream);
        CT_Buffer buffer(block.data(), static_cast<unsigned>(block.size()), 32);
        CT_CompList list(&buffer);
        CT_CCompListIterator walk(&list);
        EXPECT_EQ(Keys(walk), row.expected);
        EXPECT_EQ(Keys(walk), "");
        walk.vv_Set(&list);
        EXPECT_EQ(Keys(walk), row.expected);
    }
}

// A block too short for a head has no elements.
TEST(CompListIterator, ABlockWithoutAHeadHasNothing)
{
    const CT_Buffer none;
    CT_CompList list(&none);
    CT_CCompListIterator walk(&list);
    EXPECT_EQ(Keys(walk), "");
}
