// tests/Ostra/CompList/CompListContentsTest.cpp: all keys of a list at once, against the iterators.
#include <Ostra/CompList/CompList.h>

#include <gtest/gtest.h>

#include <Ostra/CompList/CCompListIterator.h>
#include <Ostra/CompList/CompListBuilder.h>
#include <Ostra/CompList/UCompListIterator.h>
#include <Ostra/String/CString.h>
#include <Ostra/String/UString.h>
#include <Models/CompListKey.h>
#include <Models/CompListWords.h>
#include <Support/Directory.h>
#include <Support/Failure.h>

#include <cstring>
#include <string>
#include <utility>
#include <vector>

namespace
{
typedef std::vector<std::pair<std::string, unsigned>> Entries; // bytes of keys, and handles

// The three buffers with what they are given.
struct Gathered
{
    explicit Gathered(const CT_CompList& list) { list.v_GetAll(&keys, &places, &handles); }

    unsigned Count() const { return places.n_GetUsedSize() / 4; }
    static unsigned At(const CT_Buffer& numbers, unsigned n)
    {
        unsigned number;
        std::memcpy(&number, static_cast<const char*>(numbers.qcv_Get()) + 4 * size_t{n}, 4);
        return number;
    }
    // Without their zero elements, which have to be there.
    Entries All(unsigned element) const
    {
        Entries all;
        const char* bytes = static_cast<const char*>(keys.qcv_Get());
        for (unsigned n = 0; n < Count(); ++n) {
            const unsigned end = n + 1 < Count() ? At(places, n + 1) : keys.n_GetUsedSize();
            const std::string key(bytes + At(places, n), bytes + end);
            EXPECT_EQ(key.substr(key.size() - element), std::string(element, '\0'));
            all.emplace_back(key.substr(0, key.size() - element), At(handles, n));
        }
        EXPECT_EQ(handles.n_GetUsedSize(), places.n_GetUsedSize());
        return all;
    }

    CT_Buffer keys, places, handles;
};

// What an iterator hands out, up to a number of entries.
Entries Walked(const CT_CompList& list, size_t limit)
{
    Entries all;
    unsigned handle;
    if (list.n_GetElementSize() == 1) {
        CT_CCompListIterator walk(&list);
        for (CT_CString key; all.size() < limit && walk.b_GetNext(&key, &handle);)
            all.emplace_back(std::string(key.qccz_Get(), key.vn_GetLength()), handle);
        return all;
    }
    CT_UCompListIterator walk(&list);
    for (CT_UString key; all.size() < limit && walk.b_GetNext(&key, &handle);)
        all.emplace_back(std::string(reinterpret_cast<const char*>(key.qcuz_Get()),
                                     size_t{2} * key.vn_GetLength()),
                         handle);
    return all;
}

std::string Text(const CT_Buffer& buffer)
{
    return std::string(static_cast<const char*>(buffer.qcv_Get()), buffer.n_GetUsedSize());
}

class CompListContents : public testing::Test
{
protected:
    void SetUp() override
    {
        unsigned handle = 0;
        for (const char* key : {"car", "cat", "do", "ca", "cart"})
            list.b_Add(key, ++handle);
    }

    CT_CompList list{CT_CompList::es_Byte, 2, 1, 1, 128, 0};
};
} // namespace

TEST_F(CompListContents, KeysComeInTheOrderOfTheIteratorsEachWithItsZero)
{
    const Gathered all(list);
    EXPECT_EQ(Text(all.keys), std::string("do\0ca\0cat\0car\0cart\0", 19));
    EXPECT_EQ(all.All(1), (Entries{{"do", 3}, {"ca", 4}, {"cat", 2}, {"car", 1}, {"cart", 5}}));
    EXPECT_EQ(Gathered::At(all.places, 4), 14u);
}

TEST_F(CompListContents, WhatTheBuffersHeldStaysInFront)
{
    CT_Buffer keys("keys", 4, 32), places("one ", 4, 32), handles("two two ", 8, 32);
    list.v_GetAll(&keys, &places, &handles);
    EXPECT_EQ(Text(keys), std::string("keysdo\0ca\0cat\0car\0cart\0", 23));
    EXPECT_EQ(Text(places).substr(0, 4), "one ");
    EXPECT_EQ(places.n_GetUsedSize(), 4u + 5 * 4);
    EXPECT_EQ(Gathered::At(places, 1), 4u);
    EXPECT_EQ(Gathered::At(places, 5), 18u);
    EXPECT_EQ(Text(handles).substr(0, 8), "two two ");
    EXPECT_EQ(Gathered::At(handles, 6), 5u);
}

TEST_F(CompListContents, PlacesAndHandlesMayBeLeftOut)
{
    CT_Buffer keys, places, handles;
    list.v_GetAll(&keys, nullptr, nullptr);
    EXPECT_EQ(keys.n_GetUsedSize(), 19u);
    list.v_GetAll(&keys, &places, nullptr);
    EXPECT_EQ(Gathered::At(places, 0), 19u);
    list.v_GetAll(&keys, nullptr, &handles);
    EXPECT_EQ(handles.n_GetUsedSize(), 20u);
}

TEST_F(CompListContents, OtherHoldersOfTheBlocksKeepWhatTheyHad)
{
    CT_Buffer keys("ab", 2, 64), places(64, 32), handles("12345678", 8, 64);
    const CT_Buffer keysHolder(&keys), placesHolder(&places), handlesHolder(&handles);
    list.v_GetAll(&keys, &places, &handles);
    EXPECT_EQ(Text(keysHolder), "ab");
    EXPECT_EQ(placesHolder.n_GetUsedSize(), 0u);
    EXPECT_EQ(Text(handlesHolder), "12345678");
    EXPECT_EQ(keys.n_GetUsedSize(), 21u);
}

TEST_F(CompListContents, AnEmptyListAndTheEmptyStringGiveNothing)
{
    list.v_Set(CT_CompList::es_Byte, 2, 1, 1, 128, 0);
    list.b_Add("", 7);
    CT_Buffer keys("x", 1, 32), places, handles;
    list.v_GetAll(&keys, &places, &handles);
    EXPECT_EQ(Text(keys), "x");
    EXPECT_EQ(places.n_GetUsedSize(), 0u);
    EXPECT_EQ(handles.n_GetUsedSize(), 0u);
}

TEST_F(CompListContents, ElementsStayAsWideAsTheyAre)
{
    CT_CompList wide(CT_CompList::es_Long, 0, 0, 1, 128, 0);
    const unsigned key[] = {0x11F600, 0x30041, 0};
    wide.b_Add(reinterpret_cast<const char*>(key), 1);
    const Gathered all(wide);
    EXPECT_EQ(Text(all.keys), std::string(reinterpret_cast<const char*>(key), sizeof key));
    EXPECT_EQ(Gathered::At(all.handles, 0), 0u);
}

TEST_F(CompListContents, KeysThatWouldOutgrow32BitsAreReported)
{
    CT_Buffer keys("keys", 4, 32), places("1234", 4, 32), handles;
    // Nothing checks what a buffer is told to use.
    keys.v_SetUsedSize(0xFFFFFFF0);
    list.v_GetAll(&keys, &places, &handles);
    const Failure limit = {60021, "(60021): Limits violated", {"Ostra/CompList/CompList"}};
    EXPECT_EQ(TakeFailure(), limit);
    EXPECT_EQ(keys.n_GetUsedSize(), 0xFFFFFFF0u);
    keys.v_SetUsedSize(4);
    EXPECT_EQ(Text(keys), "keys");
    EXPECT_EQ(Text(places), "1234");
    EXPECT_EQ(handles.n_GetUsedSize(), 0u);
}

// ---- Against the iterators ----------------------------------------------------------------

TEST(CompListContentsModel, RandomListsGiveWhatTheIteratorsHandOut)
{
    const unsigned seed = Seed(20261124);
    Random random(seed);
    for (const Form& form : Forms())
        for (unsigned round = 0; round < 8; ++round) {
            if (form.element == 4)
                continue;
            SCOPED_TRACE(Trace(form, seed));
            CT_CompListBuilder builder(ElementSize(form.element), form.handle, form.empty,
                                       form.longOffsets, 128, 0);
            if (round % 2)
                builder.v_SetOrder(CT_CompListBuilder::bo_ByWeight);
            const unsigned length = round < 4 ? 6 : 120;
            const unsigned alphabet = 1 + random() % 26;
            for (const Word& word : Words(random, form.element, 150, alphabet, length))
                builder.b_Add(Bytes(word, form.element).data(), random());
            CT_CompList list(CT_CompList::es_Byte, 0, 0, 0, 128, 0);
            builder.v_Build(&list);
            const Entries entries = Walked(list, 1000);
            ASSERT_GT(entries.size(), 0u);
            ASSERT_EQ(Gathered(list).All(form.element), entries);
        }
}

// A key for each of many lengths, so that the common beginnings are of all sizes.
TEST(CompListContentsModel, KeysThatAreBeginningsOfOthersComeWhole)
{
    CT_CompList list(CT_CompList::es_Byte, 4, 0, 1, 1024, 0);
    std::string key;
    for (unsigned length = 1; length <= 300; ++length) {
        key += static_cast<char>('a' + length % 7);
        list.b_Add(key.c_str(), length);
        list.b_Add((key + 'z').c_str(), 1000 + length);
    }
    EXPECT_EQ(Gathered(list).All(1), Walked(list, 1000));
}

// Alternatives may lead to places where others lead, too: an iterator would hand out the same keys
// again and again.
TEST(CompListContentsModel, DamagedListsGiveABeginningOfWhatTheIteratorsHandOut)
{
    const unsigned seed = Seed(20261125);
    SCOPED_TRACE(testing::Message() << "OSTRA_SEED=" << seed);
    Random random(seed);
    unsigned same = 0;
    for (unsigned round = 0; round < 3000; ++round) {
        const unsigned element = 1 + round % 2;
        std::string bytes = DamagedBlock(random, element, round);
        if (round % 3 == 0)
            bytes.resize(132 + random() % (bytes.size() - 131));
        if (round % 7 == 0)
            bytes.replace(120, 4, 4, '\xFF'); // entries
        const CT_Buffer buffer(bytes.data(), static_cast<unsigned>(bytes.size()), 64);
        const CT_CompList list(&buffer);
        const Entries gathered = Gathered(list).All(element);
        Entries walked = Walked(list, 200);
        same += walked.size() == gathered.size();
        ASSERT_LE(gathered.size(), walked.size()) << round;
        walked.resize(gathered.size());
        ASSERT_EQ(gathered, walked) << round;
    }
    EXPECT_GT(same, 1000u);
}

// Each mark leads behind the next one: the ways double at each of them.
TEST(CompListContentsModel, AListWhoseWaysMeetEnds)
{
    CT_CompList list(CT_CompList::es_Byte, 1, 0, 0, 128, 0);
    std::string bytes = Block(list);
    bytes.pop_back();
    for (unsigned n = 0; n < 64; ++n)
        bytes += std::string("a\x0D\x04\0b", 5);
    bytes += std::string("a\x1A\x01\x19", 4);
    const unsigned end = static_cast<unsigned>(bytes.size());
    bytes.replace(4, 4, reinterpret_cast<const char*>(&end), 4);
    const CT_Buffer buffer(bytes.data(), end, 64);
    const CT_CompList damaged(&buffer);
    const Gathered all(damaged);
    EXPECT_GT(all.Count(), 0u);
    EXPECT_LT(all.Count(), 200u);
}

// The same where the room to walk is spent in front of an end, or of a way that parts.
TEST(CompListContentsModel, AListWhoseWaysMeetEndsWhereverItIsSpent)
{
    for (unsigned ways = 6; ways <= 64; ++ways) {
        for (unsigned lead = 0; lead < 12; ++lead) {
            CT_CompList list(CT_CompList::es_Byte, 1, 0, 0, 128, 0);
            std::string bytes = Block(list);
            bytes.pop_back();
            for (unsigned n = 0; n < ways; ++n)
                bytes += std::string(lead, 'c') + std::string("a\x0D\x04\0b", 5);
            bytes += std::string("a\x1A\x01\x19", 4);
            const unsigned end = static_cast<unsigned>(bytes.size());
            bytes.replace(4, 4, reinterpret_cast<const char*>(&end), 4);
            const CT_Buffer buffer(bytes.data(), end, 64);
            const CT_CompList damaged(&buffer);
            const Gathered all(damaged);
            EXPECT_GT(all.Count(), 0u);
            EXPECT_LT(all.Count(), 400u);
        }
    }
}

TEST(CompListContentsModel, AHandleThatIsCutOffIsWhatTheIteratorsReadOfIt)
{
    CT_CompList list(CT_CompList::es_Byte, 4, 0, 0, 128, 0);
    list.b_Add("ab", 0x01020304);
    const std::string whole = Block(list);
    for (unsigned less = 1; less <= 5; ++less) {
        std::string bytes = whole.substr(0, whole.size() - less);
        const unsigned end = static_cast<unsigned>(bytes.size());
        bytes.replace(4, 4, reinterpret_cast<const char*>(&end), 4);
        const CT_Buffer buffer(bytes.data(), end, 64);
        const CT_CompList damaged(&buffer);
        EXPECT_EQ(Gathered(damaged).All(1), Walked(damaged, 10)) << less;
    }
}
