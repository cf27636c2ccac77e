// tests/Ostra/CompList/CompListManyTest.cpp: many keys at once against as many single searches.
#include <Ostra/CompList/CompList.h>

#include <gtest/gtest.h>

#include <Ostra/CompList/CompListBuilder.h>
#include <Ostra/String/CString.h>
#include <Ostra/String/UString.h>
#include <Models/CompListKey.h>
#include <Models/CompListWords.h>
#include <Support/Directory.h>
#include <Support/Failure.h>

#include <algorithm>
#include <string>
#include <vector>

namespace
{
constexpr unsigned NONE = 0xFFFFFFFF;

struct Answers
{
    explicit Answers(size_t count) : handles(count + 1, 7), matched(count + 1, 8) {}
    bool operator==(const Answers&) const = default;

    std::vector<unsigned> handles, matched; // with one behind the end, which nobody writes
};

// Keys, as bytes with their zero element, searched in both ways.
void ExpectSameAnswers(const CT_CompList& list, const std::vector<std::string>& keys)
{
    const unsigned count = static_cast<unsigned>(keys.size());
    Answers single(count), together(count), wide(count);
    std::vector<const char*> pointers;
    std::vector<const unsigned short*> units;
    for (unsigned n = 0; n < count; ++n) {
        pointers.push_back(keys[n].data());
        units.push_back(reinterpret_cast<const unsigned short*>(keys[n].data()));
        single.handles[n] = list.n_Search(keys[n].data(), &single.matched[n]);
    }
    list.v_SearchAll(pointers.data(), count, together.handles.data(), together.matched.data());
    EXPECT_TRUE(together == single);
    list.v_SearchAll(units.data(), count, wide.handles.data(), nullptr);
    EXPECT_TRUE(wide.handles == single.handles);
    EXPECT_TRUE(wide.matched == Answers(count).matched);
}

std::vector<std::string> Keys(Random& random, unsigned element, unsigned count)
{
    std::vector<std::string> keys;
    for (const Word& word : Words(random, element, count, 1 + random() % 8, 7))
        keys.push_back(Bytes(word, element));
    return keys;
}

// Elements that no list holds among the others.
std::string Foreign(Random& random, std::string key, unsigned element)
{
    const size_t at = random() % (key.size() / element) * element;
    if (at + element < key.size())
        key[at] = "\x0A\x0D\x19\x1A\x01\x0B"[random() % 6];
    return key;
}

class CompListMany : public testing::Test
{
protected:
    void SetUp() override
    {
        unsigned handle = 0;
        for (const char* key : {"car", "cat", "do", "ca", "cart", "Upper"})
            list.b_Add(key, ++handle);
    }

    CT_CompList list{CT_CompList::es_Byte, 2, 0, 1, 128, 0};
};
} // namespace

TEST_F(CompListMany, EachKeyGetsTheAnswerOfItsOwnSearch)
{
    const char* const keys[] = {"cat", "card",  "cab",   "c",    "",
                                "do",  "zebra", "Upper", "cart", "ca"};
    const unsigned handles[] = {2, NONE, NONE, NONE, 0, 3, NONE, 6, 5, 4};
    const unsigned matched[] = {3, 0, 0, 1, 0, 2, 0, 5, 4, 2};
    Answers answers(std::size(keys));
    list.v_SearchAll(keys, std::size(keys), answers.handles.data(), answers.matched.data());
    for (size_t n = 0; n < std::size(keys); ++n) {
        SCOPED_TRACE(keys[n]);
        EXPECT_EQ(answers.handles[n], handles[n]);
        EXPECT_EQ(answers.matched[n], matched[n]);
    }
    EXPECT_EQ(answers.handles.back(), 7u);
    EXPECT_EQ(answers.matched.back(), 8u);
}

TEST_F(CompListMany, NoKeysGetNoAnswers)
{
    unsigned handle = 7, matched = 8;
    list.v_SearchAll(static_cast<const char* const*>(nullptr), 0, &handle, &matched);
    EXPECT_EQ(handle, 7u);
    EXPECT_EQ(matched, 8u);
}

TEST_F(CompListMany, TheSameKeyMayComeAgainAndAgain)
{
    const std::vector<const char*> keys(100, "cart");
    Answers answers(keys.size());
    list.v_SearchAll(keys.data(), 100, answers.handles.data(), nullptr);
    for (unsigned n = 0; n < 100; ++n)
        EXPECT_EQ(answers.handles[n], 5u);
}

TEST_F(CompListMany, KeysComeAsStringsToo)
{
    const CT_CString car("car"), empty, missing("cow");
    const CT_CString* const strings[] = {&car, nullptr, &missing, &empty, &car};
    unsigned handles[5], matched[5];
    list.v_SearchAll(strings, 5, handles, matched);
    for (unsigned n = 0; n < 5; ++n) {
        unsigned expected = 9;
        EXPECT_EQ(handles[n], list.n_Search(strings[n], &expected));
        EXPECT_EQ(matched[n], expected);
    }

    CT_CompList wide(CT_CompList::es_Short, 4, 1, 1, 128, 1200);
    const CT_UString word(reinterpret_cast<const unsigned short*>(u"\u042F\u0431"), -1);
    const CT_UString nothing;
    wide.b_Add(&word, 11);
    wide.b_Add(&nothing, 12);
    const CT_UString* const units[] = {&word, &nothing, nullptr};
    wide.v_SearchAll(units, 3, handles, matched);
    EXPECT_EQ(handles[0], 11u);
    EXPECT_EQ(handles[1], 12u);
    EXPECT_EQ(handles[2], 12u);
    EXPECT_EQ(matched[0], 2u);
    EXPECT_EQ(matched[1], 0u);
}

// Only a damaged list has two marks in a row. Behind the second one stands the end of another key.
TEST_F(CompListMany, AKeyThatEndsInFrontOfTwoMarksPassesOneOfThem)
{
    for (const unsigned element : {1U, 2U}) {
        SCOPED_TRACE(element);
        CT_CompList whole(ElementSize(element), element, 0, element == 2, 128, 0);
        unsigned handle = 0;
        for (const char* key : {"p", "pq", "pqr", "ps"})
            whole.b_Add(Key(key, element).data(), ++handle);
        // The end of the first key becomes a mark, whose offset is its handle and what follows.
        std::string bytes = Block(whole);
        const size_t end = bytes.find(Key("p\x0A", element).substr(0, 2 * element), 132);
        ASSERT_NE(end, std::string::npos);
        bytes[end + element] = 0x0D;
        const CT_Buffer buffer(bytes.data(), static_cast<unsigned>(bytes.size()), 32);
        const CT_CompList damaged(&buffer);
        const std::string key = Key("p", element) + std::string(4, '\0');
        EXPECT_EQ(damaged.n_Search(key.data(), nullptr), NONE);
        for (const unsigned count : {1U, 40U})
            ExpectSameAnswers(damaged, std::vector<std::string>(count, key));
    }
}

TEST_F(CompListMany, NothingIsTakenFromTheHeapAndNothingReported)
{
    const char* const keys[] = {"cat", "card", "", "do"};
    unsigned handles[4];
    const unsigned blocks = CT_Buffer::sn_GetAllocCount();
    list.v_SearchAll(keys, 4, handles, nullptr);
    EXPECT_EQ(CT_Buffer::sn_GetAllocCount(), blocks);
    EXPECT_EQ(TakeFailure(), Failure());
    EXPECT_EQ(list.b_IsChanged(), 1);
}

// ---- Against single searches --------------------------------------------------------------

TEST(CompListManyModel, RandomListsAnswerAlike)
{
    const unsigned seed = Seed(20261122);
    Random random(seed);
    for (const Form& form : Forms())
        for (unsigned round = 0; round < 12; ++round) {
            SCOPED_TRACE(Trace(form, seed));
            CT_CompListBuilder builder(ElementSize(form.element), form.handle, form.empty,
                                       form.longOffsets, 128, 0);
            if (round % 2)
                builder.v_SetOrder(CT_CompListBuilder::bo_ByWeight);
            std::vector<std::string> keys = Keys(random, form.element, 4 + random() % 300);
            for (const std::string& key : keys)
                builder.b_Add(key.data(), random());
            CT_CompList list(CT_CompList::es_Byte, 0, 0, 0, 128, 0);
            builder.v_Build(&list);
            for (std::string& key : Keys(random, form.element, 60)) {
                keys.push_back(Foreign(random, key, form.element));
                keys.push_back(std::move(key));
            }
            std::shuffle(keys.begin(), keys.end(), random);
            ExpectSameAnswers(list, keys);
            keys.resize(random() % 20);
            ExpectSameAnswers(list, keys);
            ASSERT_FALSE(HasFailure());
        }
}

// Each key lies in a block of its own size, so that reading behind it would show.
TEST(CompListManyModel, DamagedListsAnswerAlike)
{
    const unsigned seed = Seed(20261123);
    SCOPED_TRACE(testing::Message() << "OSTRA_SEED=" << seed);
    Random random(seed);
    for (unsigned round = 0; round < 4000; ++round) {
        const unsigned element = 1 << round % 3;
        CT_CompList whole(ElementSize(element), 1 << random() % 3, 0, round & 4, 128, 0);
        std::vector<std::string> keys = Keys(random, element, 20);
        for (const std::string& key : keys)
            whole.b_Add(key.data(), round);
        std::string bytes = Block(whole);
        for (unsigned changes = random() % 5; changes > 0; --changes)
            bytes[132 + random() % (bytes.size() - 132)] =
                random() % 2 ? "\x0A\x0D\x19\x1A\0ab\x05"[random() % 8] : char(random());
        if (round % 5 == 0)
            bytes[random() % 132] = char(random());
        if (round % 3 == 0)
            bytes.resize(random() % (bytes.size() + 1));
        const CT_Buffer buffer(bytes.data(), static_cast<unsigned>(bytes.size()), 1);
        const CT_CompList list(&buffer);
        for (size_t n = 0; n < 20; ++n)
            keys.push_back(Foreign(random, keys[n], element));
        for (std::string& key : keys)
            key.append(4, '\0'); // whatever size the head tells now
        ExpectSameAnswers(list, keys);
        ASSERT_FALSE(HasFailure()) << round;
    }
}
