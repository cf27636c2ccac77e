// tests/Ostra/LIST/VoidListTest.cpp
#include <Ostra/LIST/VoidList.h>

#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

namespace
{
typedef CT_VoidList::st_Position Position;

// Lists of single characters, shown as text.
void Fill(CT_VoidList& list, const std::string& items)
{
    for (char item : items)
        list.v_InsertLast(&item);
}

std::string Read(const CT_VoidList& list)
{
    std::string items;
    Position* at = list.pso_GetFirst();
    for (unsigned n = 0; n < list.n_GetCount(); n++, at = list.pso_Skip(at, 1)) {
        char item = '?';
        list.v_GetAt(&item, at);
        items += item;
    }
    return items;
}

std::string ReadBackward(const CT_VoidList& list)
{
    std::string items;
    Position* at = list.pso_GetLast();
    for (unsigned n = 0; n < list.n_GetCount(); n++, at = list.pso_Skip(at, -1)) {
        char item = '?';
        list.v_GetAt(&item, at);
        items.insert(items.begin(), item);
    }
    return items;
}

void Expect(const CT_VoidList& list, const std::string& items)
{
    EXPECT_EQ(list.n_GetCount(), items.size());
    EXPECT_EQ(Read(list), items);
    EXPECT_EQ(ReadBackward(list), items);
}

char ItemAt(const CT_VoidList& list, Position* at)
{
    char item = 0;
    list.v_GetAt(&item, at);
    return item;
}

struct Filled
{
    explicit Filled(const std::string& items) { Fill(list, items); }
    CT_VoidList list{1};
};
} // namespace

// ---- Construction -------------------------------------------------------------------------

TEST(VoidList, ANewListIsEmpty)
{
    const CT_VoidList list(7);
    EXPECT_EQ(list.n_GetCount(), 0u);
    EXPECT_EQ(list.n_GetItemSize(), 7u);
    EXPECT_EQ(list.pso_GetFirst(), nullptr);
    EXPECT_EQ(list.pso_GetLast(), nullptr);
}

TEST(VoidList, ACopyHasItemsOfItsOwn)
{
    Filled source("abc");
    CT_VoidList copy(&source.list);
    EXPECT_EQ(copy.n_GetItemSize(), 1u);
    Expect(copy, "abc");
    copy.v_SetAt("x", copy.pso_GetFirst());
    source.list.v_RemoveLast(nullptr);
    Expect(copy, "xbc");
    Expect(source.list, "ab");
    EXPECT_NE(copy.pso_GetFirst(), source.list.pso_GetFirst());
}

TEST(VoidList, SettingEmptiesAndKeepsTheItemSize)
{
    Filled state("abc");
    state.list.v_Set();
    EXPECT_EQ(state.list.n_GetItemSize(), 1u);
    EXPECT_EQ(state.list.pso_GetFirst(), nullptr);
    EXPECT_EQ(state.list.pso_GetLast(), nullptr);
    Expect(state.list, "");
    Fill(state.list, "de");
    Expect(state.list, "de");
}

TEST(VoidList, SettingToALongerItemSizeTakesTheFrontOfEachItem)
{
    CT_VoidList words(3);
    words.v_InsertLast("abc");
    words.v_InsertLast("def");
    Filled state("x");
    state.list.v_Set(&words);
    EXPECT_EQ(state.list.n_GetItemSize(), 1u);
    Expect(state.list, "ad");
}

TEST(VoidList, ShorterItemsComeWithZeros)
{
    Filled letters("abc");
    CT_VoidList words(3);
    words.v_InsertLast("xyz");
    words.v_Set(&letters.list);
    EXPECT_EQ(words.n_GetItemSize(), 3u);
    ASSERT_EQ(words.n_GetCount(), 3u);
    Position* at = words.pso_GetFirst();
    for (const char letter : {'a', 'b', 'c'}) {
        char item[] = "???";
        words.v_GetAt(item, at);
        EXPECT_EQ(std::string(item, 3), letter + std::string(2, '\0'));
        at = words.pso_Skip(at, 1);
    }
}

TEST(VoidList, SetToItselfItStays)
{
    Filled state("abc");
    Position* const first = state.list.pso_GetFirst();
    state.list.v_Set(&state.list);
    Expect(state.list, "abc");
    EXPECT_EQ(state.list.pso_GetFirst(), first);
}

TEST(VoidList, LivesOnTheHeap)
{
    CT_VoidList* list = new CT_VoidList(1);
    Fill(*list, "ab");
    Expect(*list, "ab");
    delete list;
}

// ---- Insertion ----------------------------------------------------------------------------

TEST(VoidList, InsertsAtBothEnds)
{
    CT_VoidList list(1);
    list.v_InsertFirst("b");
    Expect(list, "b");
    EXPECT_EQ(list.pso_GetFirst(), list.pso_GetLast());
    list.v_InsertFirst("a");
    list.v_InsertLast("c");
    Expect(list, "abc");
    EXPECT_EQ(ItemAt(list, list.pso_GetFirst()), 'a');
    EXPECT_EQ(ItemAt(list, list.pso_GetLast()), 'c');
}

TEST(VoidList, InsertsLastIntoAnEmptyList)
{
    CT_VoidList list(1);
    list.v_InsertLast("a");
    Expect(list, "a");
}

TEST(VoidList, InsertsBesideAPosition)
{
    Filled state("ac");
    CT_VoidList& list = state.list;
    list.v_InsertAfter("b", list.pso_GetFirst());
    Expect(list, "abc");
    list.v_InsertAfter("d", list.pso_GetLast());
    Expect(list, "abcd");
    list.v_InsertBefore("-", list.pso_GetFirst());
    Expect(list, "-abcd");
    list.v_InsertBefore("+", list.pso_GetLast());
    Expect(list, "-abc+d");
}

TEST(VoidList, WithoutAPositionBeforeIsTheEndAndAfterIsTheStart)
{
    Filled state("bc");
    state.list.v_InsertBefore("d", nullptr);
    Expect(state.list, "bcd");
    state.list.v_InsertAfter("a", nullptr);
    Expect(state.list, "abcd");

    CT_VoidList before(1), after(1);
    before.v_InsertBefore("x", nullptr);
    after.v_InsertAfter("x", nullptr);
    Expect(before, "x");
    Expect(after, "x");
}

TEST(VoidList, APositionStaysGoodWhileOthersComeAndGo)
{
    Filled state("abc");
    CT_VoidList& list = state.list;
    Position* const b = list.pso_Skip(list.pso_GetFirst(), 1);
    list.v_InsertBefore("1", b);
    list.v_InsertAfter("2", b);
    list.v_RemoveFirst(nullptr);
    list.v_RemoveLast(nullptr);
    Expect(list, "1b2");
    EXPECT_EQ(ItemAt(list, b), 'b');
}

// ---- Removal ------------------------------------------------------------------------------

TEST(VoidList, RemovesAtBothEndsAndHandsTheItemOut)
{
    Filled state("abcd");
    char item = '?';
    state.list.v_RemoveFirst(&item);
    EXPECT_EQ(item, 'a');
    state.list.v_RemoveLast(&item);
    EXPECT_EQ(item, 'd');
    Expect(state.list, "bc");
    state.list.v_RemoveFirst(nullptr);
    state.list.v_RemoveLast(nullptr);
    Expect(state.list, "");
    EXPECT_EQ(state.list.pso_GetFirst(), nullptr);
    EXPECT_EQ(state.list.pso_GetLast(), nullptr);
}

TEST(VoidList, RemovesAtAPosition)
{
    Filled state("abcd");
    CT_VoidList& list = state.list;
    char item = '?';
    list.v_RemoveAt(&item, list.pso_Skip(list.pso_GetFirst(), 2));
    EXPECT_EQ(item, 'c');
    Expect(list, "abd");
    list.v_RemoveAt(nullptr, list.pso_GetLast());
    Expect(list, "ab");
    list.v_RemoveAt(nullptr, list.pso_GetFirst());
    Expect(list, "b");
}

TEST(VoidList, WithoutAPositionTheFirstItemIsRemoved)
{
    Filled state("abc");
    state.list.v_RemoveAt(nullptr, nullptr);
    Expect(state.list, "bc");
    char item = '?';
    state.list.v_RemoveAt(&item, nullptr);
    EXPECT_EQ(item, 'b');
    Expect(state.list, "c");
}

TEST(VoidList, RemovingFromAnEmptyListDoesNothing)
{
    CT_VoidList list(1);
    char item = '?';
    list.v_RemoveFirst(&item);
    list.v_RemoveLast(&item);
    list.v_RemoveAt(&item, nullptr);
    EXPECT_EQ(item, '?');
    Expect(list, "");
}

// ---- Positions ----------------------------------------------------------------------------

TEST(VoidList, TheListIsARingForSteps)
{
    Filled state("abc");
    const CT_VoidList& list = state.list;
    EXPECT_EQ(list.pso_Skip(list.pso_GetLast(), 1), list.pso_GetFirst());
    EXPECT_EQ(list.pso_Skip(list.pso_GetFirst(), -1), list.pso_GetLast());
    EXPECT_EQ(list.pso_Skip(list.pso_GetFirst(), 0), list.pso_GetFirst());
}

TEST(VoidList, StepsOfAnyNumberGoRoundTheRing)
{
    const std::string items = "abcdefg";
    for (unsigned count = 1; count <= items.size(); ++count) {
        Filled state(items.substr(0, count));
        const CT_VoidList& list = state.list;
        std::vector<Position*> at(1, list.pso_GetFirst());
        while (at.size() < count)
            at.push_back(list.pso_Skip(at.back(), 1));
        std::vector<int> steps = {INT_MIN, INT_MIN + 1, -1000000007, 1000000007, INT_MAX};
        for (int step = -20; step <= 20; ++step)
            steps.push_back(step);
        for (unsigned from = 0; from < count; ++from) {
            for (int step : steps) {
                SCOPED_TRACE(std::to_string(count) + " items, " + std::to_string(step) +
                             " steps from " + std::to_string(from));
                const long long size = count;
                const long long to = ((from + static_cast<long long>(step)) % size + size) % size;
                EXPECT_EQ(list.pso_Skip(at[from], step), at[to]);
            }
        }
    }
}

TEST(VoidList, IndexesCountFromOneAndGoOnRoundTheRing)
{
    const std::string items = "abcdef";
    for (unsigned count = 1; count <= items.size(); ++count) {
        SCOPED_TRACE(count);
        Filled state(items.substr(0, count));
        const CT_VoidList& list = state.list;
        EXPECT_EQ(list.pso_GetPosition(1), list.pso_GetFirst());
        EXPECT_EQ(list.pso_GetPosition(count), list.pso_GetLast());
        EXPECT_EQ(list.pso_GetPosition(0), list.pso_GetLast());
        EXPECT_EQ(list.pso_GetPosition(count + 1), list.pso_GetFirst());
        for (unsigned index = 1; index <= 3 * count; ++index)
            EXPECT_EQ(ItemAt(list, list.pso_GetPosition(index)), items[(index - 1) % count]);
    }
}

TEST(VoidList, AnEmptyListHasNoPositions)
{
    const CT_VoidList list(1);
    EXPECT_EQ(list.pso_GetPosition(0), nullptr);
    EXPECT_EQ(list.pso_GetPosition(1), nullptr);
    EXPECT_EQ(list.pso_Skip(nullptr, 3), nullptr);
}

TEST(VoidList, ItemsAreSetAndReadAtTheirPosition)
{
    Filled state("abc");
    CT_VoidList& list = state.list;
    list.v_SetAt("x", list.pso_GetPosition(2));
    Expect(list, "axc");
    char item = '?';
    list.v_GetAt(&item, nullptr);
    list.v_SetAt("y", nullptr);
    EXPECT_EQ(item, '?');
    Expect(list, "axc");
}

// Items of each size, with marks beside them that must stay.
TEST(VoidList, CopiesJustTheBytesOfAnItem)
{
    for (unsigned size : {1u, 2u, 3u, 4u, 5u, 7u, 8u, 9u, 16u, 33u}) {
        SCOPED_TRACE(size);
        std::string first(size, '\0'), second(size, '\0');
        for (unsigned n = 0; n < size; ++n) {
            first[n] = static_cast<char>(1 + n);
            second[n] = static_cast<char>(0x80 + n);
        }
        CT_VoidList list(size);
        list.v_InsertLast(first.data());
        list.v_InsertLast(second.data());
        std::string out = "<" + std::string(size, '?') + ">";
        list.v_GetAt(&out[1], list.pso_GetFirst());
        EXPECT_EQ(out, "<" + first + ">");
        list.v_SetAt(first.data(), list.pso_GetLast());
        list.v_RemoveLast(&out[1]);
        EXPECT_EQ(out, "<" + first + ">");
        list.v_GetAt(&out[1], list.pso_GetFirst());
        EXPECT_EQ(out, "<" + first + ">");
    }
}

// ---- Search and comparison ----------------------------------------------------------------

TEST(VoidList, FindsTheFirstItemWithTheSameBytes)
{
    Filled state("abcb");
    const CT_VoidList& list = state.list;
    unsigned index = 99;
    EXPECT_EQ(list.pso_Find("b", &index), list.pso_GetPosition(2));
    EXPECT_EQ(index, 2u);
    EXPECT_EQ(list.pso_Find("a", &index), list.pso_GetFirst());
    EXPECT_EQ(index, 1u);
    EXPECT_EQ(list.pso_Find("c", nullptr), list.pso_GetPosition(3));
}

TEST(VoidList, WhatIsAbsentHasIndexZero)
{
    Filled state("abc");
    unsigned index = 99;
    EXPECT_EQ(state.list.pso_Find("x", &index), nullptr);
    EXPECT_EQ(index, 0u);
    EXPECT_EQ(state.list.pso_Find("x", nullptr), nullptr);
    index = 99;
    EXPECT_EQ(CT_VoidList(1).pso_Find("x", &index), nullptr);
    EXPECT_EQ(index, 0u);
}

TEST(VoidList, AllBytesOfAnItemCount)
{
    CT_VoidList list(3);
    list.v_InsertLast("abc");
    list.v_InsertLast("abd");
    unsigned index = 0;
    EXPECT_EQ(list.pso_Find("abd", &index), list.pso_GetLast());
    EXPECT_EQ(index, 2u);
}

TEST(VoidList, ListsAreEqualByCountAndBytes)
{
    struct
    {
        const char *first, *second;
        int equal;
    } const rows[] = {
        {"", "", 1},       {"a", "", 0},      {"", "a", 0},      {"abc", "abc", 1},
        {"abc", "ab", 0},  {"ab", "abc", 0},  {"abc", "abd", 0}, {"xbc", "abc", 0},
        {"abc", "acb", 0}, {"aaa", "aaa", 1},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(std::string(row.first) + " and " + row.second);
        Filled first(row.first), second(row.second);
        EXPECT_EQ(first.list.b_IsEqual(&second.list), row.equal);
    }
}

TEST(VoidList, ThisListsItemSizeIsCompared)
{
    Filled letters("ad");
    CT_VoidList words(3);
    words.v_InsertLast("abc");
    words.v_InsertLast("def");
    EXPECT_EQ(letters.list.b_IsEqual(&words), 1);
    EXPECT_EQ(words.b_IsEqual(&letters.list), 0);
    EXPECT_EQ(CT_VoidList(3).b_IsEqual(std::make_unique<CT_VoidList>(1).get()), 1);
    EXPECT_EQ(words.b_IsEqual(&words), 1);
}
