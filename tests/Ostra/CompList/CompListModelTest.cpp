// tests/Ostra/CompList/CompListModelTest.cpp: lists against the literal bytes and against a map.
#include <Ostra/CompList/CompList.h>

#include <gtest/gtest.h>

#include <Models/CompListKey.h>
#include <Models/CompListModel.h>
#include <Models/CompListWords.h>
#include <Support/Directory.h>

#include <algorithm>
#include <map>
#include <random>
#include <string>
#include <vector>

// Reaches what a list knows beside its block.
struct CompListPeer
{
    static void Scan(CT_CompList& list) { list.v_ScanFromNow(); }
    static bool IsIndexed(const CT_CompList& list) { return list.pco_Index != nullptr; }
};

namespace
{
constexpr unsigned NONE = 0xFFFFFFFF;

// What a map of whole keys says of a search: the handle, and how far the key leads along others.
struct Expected
{
    unsigned handle, matched;
};

Expected Ask(const std::map<Word, unsigned>& map, const Word& key)
{
    const auto hit = map.find(key);
    if (hit != map.end())
        return {hit->second, static_cast<unsigned>(key.size())};
    // The longest beginning of the key that is a beginning of a stored one.
    unsigned longest = 0;
    bool goesOn = false; // stored keys go on behind it
    for (unsigned length = 1; length <= key.size(); ++length) {
        const Word beginning(key.begin(), key.begin() + length);
        const auto at = map.lower_bound(beginning);
        if (at == map.end() || at->first.size() < length ||
            !std::equal(beginning.begin(), beginning.end(), at->first.begin()))
            break;
        longest = length;
        goesOn = at->first.size() > length ||
                 (std::next(at) != map.end() && std::next(at)->first.size() > length &&
                  std::equal(beginning.begin(), beginning.end(), std::next(at)->first.begin()));
    }
    if (longest == key.size() || (longest > 0 && !goesOn))
        return {NONE, longest};
    return {NONE, 0};
}
} // namespace

TEST(CompListModel, EveryAddGivesTheBytesOfTheModel)
{
    const unsigned seed = Seed(19970101);
    Random random(seed);
    for (const Form& form : Forms())
        for (unsigned round = 0; round < 3; ++round) {
            SCOPED_TRACE(Trace(form, seed));
            CT_CompList list(ElementSize(form.element), form.handle, form.empty, form.longOffsets,
                             128 << random() % 4, 1252);
            CompListModel model(form.element, form.handle, form.empty, form.longOffsets, 1252);
            const unsigned alphabet = 1 + random() % 26;
            for (const Word& word : Words(random, form.element, 120, alphabet, 6)) {
                const std::string key = Bytes(word, form.element);
                const unsigned handle = random();
                ASSERT_EQ(list.b_Add(key.data(), handle), model.Add(key, handle) ? 1 : 0);
                ASSERT_TRUE(Block(list) == model.bytes) << "a difference of bytes";
            }
        }
}

TEST(CompListModel, EverySearchAgreesWithTheModelAndWithAMap)
{
    const unsigned seed = Seed(19970101);
    Random random(seed);
    for (const Form& form : Forms()) {
        SCOPED_TRACE(Trace(form, seed));
        CT_CompList list(ElementSize(form.element), form.handle, form.empty, form.longOffsets, 4096,
                         0);
        CompListModel model(form.element, form.handle, form.empty, form.longOffsets, 0);
        const unsigned mask = form.handle == 0   ? 0
                              : form.handle == 4 ? NONE
                                                 : (1u << 8 * form.handle) - 1;
        std::map<Word, unsigned> map;
        for (const Word& word : Words(random, form.element, 200, 5, 5)) {
            const std::string key = Bytes(word, form.element);
            const unsigned handle = random() & 0x7FFFFFFF;
            if (word.empty())
                continue;
            const bool added = map.insert({word, handle & mask}).second;
            ASSERT_EQ(list.b_Add(key.data(), handle), added);
            model.Add(key, handle);
        }
        EXPECT_EQ(list.n_GetNrOfEntries(), map.size());
        std::vector<Word> wanted = Words(random, form.element, 400, 5, 6);
        for (const auto& entry : map)
            wanted.push_back(entry.first);
        for (const Word& word : wanted) {
            if (word.empty())
                continue;
            const std::string key = Bytes(word, form.element);
            const Expected expected = Ask(map, word);
            unsigned matched = 77, modelled = 78;
            ASSERT_EQ(list.n_Search(key.data(), &matched), expected.handle);
            ASSERT_EQ(matched, expected.matched);
            ASSERT_EQ(model.Search(key, &modelled), expected.handle);
            ASSERT_EQ(modelled, expected.matched);
            ASSERT_EQ(list.b_Search(key.data(), nullptr), expected.handle != NONE);
        }
    }
}

// The block leaves the list and comes back between adds, as from a file.
TEST(CompListModel, AStoredListGoesOnAsIfItHadStayed)
{
    const unsigned seed = Seed(19970101);
    SCOPED_TRACE(testing::Message() << "OSTRA_SEED=" << seed);
    Random random(seed);
    for (unsigned round = 0; round < 40; ++round) {
        const unsigned element = 1 + round % 2;
        CT_CompList list(ElementSize(element), 4, 0, round & 2, 128, 0);
        CompListModel model(element, 4, false, round & 2, 0);
        for (const Word& word : Words(random, element, 250, 6, 6)) {
            if (random() % 4 == 0) {
                const std::string bytes = Block(list);
                CT_Buffer buffer(bytes.data(), static_cast<unsigned>(bytes.size()),
                                 16 + random() % 500);
                list.v_Set(&buffer);
            }
            if (random() % 4 == 0) {
                CT_CompList other(&list);
                other.b_Add(Bytes(Word{'q'}, element).data(), 1);
            }
            const std::string key = Bytes(word, element);
            ASSERT_EQ(list.b_Add(key.data(), round), model.Add(key, round) ? 1 : 0);
            ASSERT_TRUE(Block(list) == model.bytes) << "a difference of bytes";
        }
    }
}

// Lists of some thousand keys, in the order of a dictionary and in none.
TEST(CompListModel, LongListsAreTheModelsBytesAtTheEnd)
{
    const unsigned seed = Seed(19970101);
    SCOPED_TRACE(testing::Message() << "OSTRA_SEED=" << seed);
    Random random(seed);
    for (unsigned round = 0; round < 4; ++round) {
        const unsigned element = 1 + round % 2;
        std::vector<Word> words = Words(random, element, 1500, 26, 8);
        if (round < 2)
            std::sort(words.begin(), words.end());
        CT_CompList list(ElementSize(element), 4, 0, 1, 128, 0);
        CompListModel model(element, 4, false, true, 0);
        unsigned handle = 0;
        for (const Word& word : words) {
            const std::string key = Bytes(word, element);
            ++handle;
            ASSERT_EQ(list.b_Add(key.data(), handle), model.Add(key, handle) ? 1 : 0);
        }
        ASSERT_TRUE(Block(list) == model.bytes) << "a difference of bytes";
    }
}

// What a list knows beside its block must not show in it: a list that scans its stream for every
// insertion has the same bytes. With short offsets the list outgrows them on the way.
TEST(CompListModel, TheIndexGivesTheBytesOfTheScan)
{
    const unsigned seed = Seed(19970101);
    SCOPED_TRACE(testing::Message() << "OSTRA_SEED=" << seed);
    Random random(seed);
    const struct
    {
        unsigned element;
        bool longOffsets, inOrder;
    } cases[] = {{1, true, false}, {2, true, true},  {2, true, false},
                 {4, true, false}, {1, false, true}, {4, false, false}};
    for (const auto& row : cases) {
        SCOPED_TRACE(testing::Message() << row.element << row.longOffsets << row.inOrder);
        std::vector<Word> words = Words(random, row.element, 2500, 26, 12);
        if (row.inOrder)
            std::sort(words.begin(), words.end());
        CT_CompList list(ElementSize(row.element), 4, 0, row.longOffsets, 128, 0);
        CT_CompList scanned(&list);
        CompListPeer::Scan(scanned);
        unsigned indexed = 0;
        for (const Word& word : words) {
            const std::string key = Bytes(word, row.element);
            ASSERT_EQ(list.b_Add(key.data(), 1), scanned.b_Add(key.data(), 1));
            indexed += CompListPeer::IsIndexed(list);
        }
        ASSERT_TRUE(Block(list) == Block(scanned)) << "a difference of bytes";
        EXPECT_GT(indexed, row.longOffsets ? 2000u : 500u);
        EXPECT_FALSE(CompListPeer::IsIndexed(scanned));
        const bool outgrown = row.element == 4 && !row.longOffsets;
        EXPECT_EQ(CompListPeer::IsIndexed(list), !outgrown);
    }
}

// Keys with the elements that the stream reserves: the damage is the model's, too, for as long as
// the model finds its way; also when the damaged block comes from elsewhere.
TEST(CompListModel, DamageByReservedElementsIsThatOfTheModel)
{
    const unsigned seed = Seed(19970101);
    SCOPED_TRACE(testing::Message() << "OSTRA_SEED=" << seed);
    Random random(seed);
    unsigned longest = 0;
    for (unsigned round = 0; round < 300; ++round) {
        const unsigned element = 1 + round % 2;
        CT_CompList list(ElementSize(element), 1, 0, round & 2, 128, 0);
        CompListModel model(element, 1, false, round & 2, 0);
        for (const Word& word : Words(random, element, round % 5 * 60, 4, 6)) {
            const std::string key = Bytes(word, element);
            list.b_Add(key.data(), 1);
            model.Add(key, 1);
        }
        ASSERT_TRUE(Block(list) == model.bytes);
        for (unsigned step = 0; step < 25; ++step) {
            if (random() % 4 == 0) {
                const std::string bytes = Block(list);
                CT_Buffer buffer(bytes.data(), static_cast<unsigned>(bytes.size()), 32);
                list.v_Set(&buffer);
            }
            const unsigned reserved[] = {10, 13, 25, 26};
            Word word;
            for (unsigned length = 1 + random() % 5; length > 0; --length)
                word.push_back(random() % 12 ? 'a' + random() % 3 : reserved[random() % 4]);
            const std::string key = Bytes(word, element);
            bool added = false;
            try {
                added = model.Add(key, step);
            } catch (const std::exception&) {
                break; // outside the block: no outcome
            }
            ASSERT_EQ(list.b_Add(key.data(), step), added ? 1 : 0) << round << " " << step;
            ASSERT_TRUE(Block(list) == model.bytes) << round << " " << step;
        }
        longest = std::max(longest, list.n_GetEnd());
    }
    EXPECT_GT(longest, 2000u);
}
