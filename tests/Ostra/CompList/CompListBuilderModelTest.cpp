// tests/Ostra/CompList/CompListBuilderModelTest.cpp: lists that are built against lists that keys
// are added to: the blocks are the same.
#include <Ostra/CompList/CompListBuilder.h>

#include <gtest/gtest.h>

#include <Models/CompListKey.h>
#include <Models/CompListModel.h>
#include <Models/CompListWords.h>
#include <Models/RealWords.h>
#include <Support/Directory.h>
#include <Support/Failure.h>

#include <algorithm>
#include <fstream>
#include <memory>
#include <set>
#include <sstream>

namespace
{
const Failure LIMIT = {60021, "(60021): Limits violated", {"Ostra/CompList/CompListBuilder"}};

std::string Built(const CT_CompListBuilder& builder)
{
    CT_Buffer buffer;
    builder.v_Build(&buffer);
    return std::string(static_cast<const char*>(buffer.qcv_Get()), buffer.n_GetUsedSize());
}

// The bytes, and the room for what comes next.
void ExpectSame(const CT_CompListBuilder& builder, const CT_CompList& list)
{
    CT_CompList built(CT_CompList::es_Byte, 0, 0, 0, 128, 0);
    builder.v_Build(&built);
    const CT_Buffer* mine = built.pcco_GetBuffer();
    const CT_Buffer* others = list.pcco_GetBuffer();
    ASSERT_TRUE(Block(built) == Block(list)) << "a difference of bytes";
    EXPECT_EQ(mine->n_GetGrowth(), others->n_GetGrowth());
    EXPECT_EQ(mine->n_GetMaximumSize(), others->n_GetMaximumSize());
    EXPECT_EQ(mine->n_GetUseCount(), 1u);
    EXPECT_EQ(builder.n_GetEnd(), list.n_GetEnd());
    EXPECT_EQ(builder.n_GetNrOfEntries(), list.n_GetNrOfEntries());
}

CT_CompList NewList(const Form& form, unsigned growth)
{
    return CT_CompList(ElementSize(form.element), form.handle, form.empty, form.longOffsets, growth,
                       1252);
}

// Words that look like those of a language, all different.
std::vector<std::string> Dictionary(Random& random, unsigned count)
{
    const char* const starts[] = {"b", "d", "f", "g", "h",  "k",  "l",   "m",  "n",  "p",  "r", "s",
                                  "t", "v", "w", "z", "br", "st", "sch", "tr", "kl", "pf", "",  ""};
    const char* const cores[] = {"a", "e", "i", "o", "u", "ei", "au", "ie", "\xE4", "\xF6"};
    const char* const ends[] = {"", "", "", "n", "r", "l", "s", "t", "ng", "ch", "st", "m"};
    std::set<std::string> words;
    std::vector<std::string> list;
    std::ifstream sample(OSTRA_SAMPLE_PAIRS);
    for (std::string line; std::getline(sample, line);) {
        std::istringstream fields(line);
        for (std::string word; std::getline(fields, word, '\t');)
            if (words.insert(word).second)
                list.push_back(word);
    }
    EXPECT_GT(list.size(), 500u);
    while (list.size() < count) {
        std::string word;
        for (unsigned syllables = 1 + random() % 4; syllables > 0; --syllables)
            word += std::string(starts[random() % 24]) + cores[random() % 10] + ends[random() % 12];
        if (random() % 4 == 0)
            word[0] = static_cast<char>(word[0] & ~0x20);
        if (words.insert(word).second)
            list.push_back(word);
    }
    return list;
}

void BuildBothWays(const std::vector<std::string>& words, unsigned element)
{
    CT_CompList list(ElementSize(element), 4, 0, 1, 128, 1252);
    CT_CompListBuilder builder(&list);
    unsigned handle = 0;
    for (const std::string& word : words) {
        const std::string key = Key(word, element);
        ++handle;
        ASSERT_EQ(builder.b_Add(key.data(), handle), list.b_Add(key.data(), handle));
    }
    ASSERT_EQ(list.n_GetNrOfEntries(), words.size());
    ExpectSame(builder, list);
}
} // namespace

TEST(CompListBuilderModel, ThousandsOfRandomListsComeOutTheSame)
{
    const unsigned seed = Seed(20261121);
    Random random(seed);
    unsigned sets = 0;
    for (const Form& form : Forms())
        for (unsigned round = 0; round < 70; round++, sets++) {
            SCOPED_TRACE(Trace(form, seed));
            const unsigned growth = 128 << random() % 8;
            CT_CompList list = NewList(form, growth);
            CT_CompListBuilder builder(ElementSize(form.element), form.handle, form.empty,
                                       form.longOffsets, growth, 1252);
            const unsigned alphabet = 1 + random() % 26;
            for (const Word& word : Words(random, form.element, random() % 120, alphabet, 6)) {
                const std::string key = Bytes(word, form.element);
                const unsigned handle = random();
                ASSERT_EQ(builder.b_Add(key.data(), handle), list.b_Add(key.data(), handle));
            }
            ASSERT_NO_FATAL_FAILURE(ExpectSame(builder, list));
        }
    EXPECT_GT(sets, 3000u);
}

TEST(CompListBuilderModel, EveryStepIsTheModelsBlock)
{
    const unsigned seed = Seed(20261122);
    Random random(seed);
    for (const Form& form : Forms()) {
        SCOPED_TRACE(Trace(form, seed));
        CT_CompListBuilder builder(ElementSize(form.element), form.handle, form.empty,
                                   form.longOffsets, 128, 7);
        CompListModel model(form.element, form.handle, form.empty, form.longOffsets, 7);
        for (const Word& word : Words(random, form.element, 80, 1 + random() % 8, 5)) {
            const std::string key = Bytes(word, form.element);
            const unsigned handle = random();
            ASSERT_EQ(builder.b_Add(key.data(), handle), model.Add(key, handle) ? 1 : 0);
            ASSERT_TRUE(Built(builder) == model.bytes) << "a difference of bytes";
        }
    }
}

// The block goes to and fro between the two, which add in turn.
TEST(CompListBuilderModel, AnExistingBlockGoesOnTheSame)
{
    const unsigned seed = Seed(20261123);
    Random random(seed);
    for (const Form& form : Forms())
        for (unsigned round = 0; round < 12; ++round) {
            SCOPED_TRACE(Trace(form, seed));
            CT_CompList list = NewList(form, 128 << random() % 6);
            std::vector<Word> words = Words(random, form.element, 150, 1 + random() % 26, 6);
            auto builder = std::make_unique<CT_CompListBuilder>(&list);
            for (const Word& word : words) {
                if (random() % 16 == 0) {
                    builder->v_Set(list.pcco_GetBuffer());
                    ASSERT_NO_FATAL_FAILURE(ExpectSame(*builder, list));
                }
                if (random() % 16 == 0) {
                    CT_CompList built(&list);
                    builder->v_Build(&built);
                    builder = std::make_unique<CT_CompListBuilder>(&built);
                }
                const std::string key = Bytes(word, form.element);
                ASSERT_EQ(builder->b_Add(key.data(), round), list.b_Add(key.data(), round));
            }
            ASSERT_NO_FATAL_FAILURE(ExpectSame(*builder, list));
        }
}

// Places with hundreds of ways on, first letters among them.
TEST(CompListBuilderModel, LongChainsComeOutTheSame)
{
    const unsigned seed = Seed(20261124);
    Random random(seed);
    for (const unsigned element : {1u, 2u, 4u}) {
        const Form form = {element, 2, true, true};
        SCOPED_TRACE(Trace(form, seed));
        CT_CompList list = NewList(form, 128);
        auto builder = std::make_unique<CT_CompListBuilder>(&list);
        for (unsigned number = 0; number < 4000; ++number) {
            Word word;
            for (unsigned length = 1 + random() % 3; length > 0; --length) {
                unsigned next = 0;
                while (next == 0 || IsReserved(next))
                    next = random() % (element == 1 ? 256 : 600);
                word.push_back(element == 4 ? next << 16 | 1 : next);
            }
            const std::string key = Bytes(word, element);
            ASSERT_EQ(builder->b_Add(key.data(), number), list.b_Add(key.data(), number));
            if (number == 2000)
                builder = std::make_unique<CT_CompListBuilder>(&list);
        }
        ASSERT_NO_FATAL_FAILURE(ExpectSame(*builder, list));
    }
}

// Keys of four-byte elements that are measured short: the damage is that of the list.
TEST(CompListBuilderModel, KeysThatAreCutComeOutTheSame)
{
    const unsigned seed = Seed(20261125);
    SCOPED_TRACE(testing::Message() << "OSTRA_SEED=" << seed);
    Random random(seed);
    unsigned added = 0;
    for (unsigned round = 0; round < 400; ++round) {
        const Form form = {4, 2, false, true};
        CT_CompList list = NewList(form, 128);
        CT_CompListBuilder builder(&list);
        for (unsigned number = 0; number < 30; ++number) {
            Word word;
            for (unsigned length = random() % 5; length > 0; --length) {
                const unsigned unit = 'a' + random() % 3;
                const unsigned kind = random() % 30;
                word.push_back(kind == 0 ? unit : kind == 1 ? unit << 16 : unit << 16 | unit);
            }
            const std::string key = Bytes(word, 4);
            const int result = list.b_Add(key.data(), number);
            ASSERT_EQ(builder.b_Add(key.data(), number), result) << round << " " << number;
            added += result;
        }
        ASSERT_NO_FATAL_FAILURE(ExpectSame(builder, list)) << round;
    }
    EXPECT_GT(added, 4000u);
}

// Blocks with bytes changed anywhere, most of them no sound lists: they go on as lists do.
TEST(CompListBuilderModel, DamagedBlocksGoOnAsListsDo)
{
    const unsigned seed = Seed(20261126);
    SCOPED_TRACE(testing::Message() << "OSTRA_SEED=" << seed);
    Random random(seed);
    for (unsigned round = 0; round < 3000; ++round) {
        const unsigned element = 1 + round % 2;
        CT_CompList whole(ElementSize(element), 1, 0, round & 2, 128, 0);
        for (const Word& word : Words(random, element, 12, 4, 4))
            whole.b_Add(Bytes(word, element).data(), round);
        std::string bytes = Block(whole);
        for (unsigned changes = 1 + random() % 2; changes > 0; --changes)
            bytes[132 + random() % (bytes.size() - 132)] = "\x0A\x0D\x19\x1A\0ab\x05"[random() % 8];
        if (random() % 4 == 0)
            bytes[16 + 4 * (random() % 4)] = static_cast<char>(132 + random() % 60);
        const CT_Buffer buffer(bytes.data(), static_cast<unsigned>(bytes.size()), 64);
        CT_CompListBuilder builder(&buffer);
        CT_Buffer copy(bytes.data(), static_cast<unsigned>(bytes.size()), 64);
        CT_CompList list(&copy);
        for (const Word& word : Words(random, element, 8, 4, 4)) {
            const std::string key = Bytes(word, element);
            ASSERT_EQ(builder.b_Add(key.data(), round), list.b_Add(key.data(), round)) << round;
        }
        ASSERT_TRUE(Built(builder) == Block(list)) << round;
        const std::string before(static_cast<const char*>(buffer.qcv_Get()),
                                 buffer.n_GetUsedSize());
        ASSERT_TRUE(before == bytes) << "the block handed in was changed";
    }
}

// With short offsets the list is the same as long as nothing is cut, and reported from then on.
TEST(CompListBuilderModel, OffsetsThatOutgrowTheirFieldAreReportedWhereTheyAreCut)
{
    const unsigned seed = Seed(20261127);
    SCOPED_TRACE(testing::Message() << "OSTRA_SEED=" << seed);
    Random random(seed);
    for (const unsigned element : {1u, 2u}) {
        CT_CompListBuilder shorts(ElementSize(element), 4, 0, 0, 128, 0);
        CT_CompListBuilder longs(ElementSize(element), 4, 0, 1, 128, 0);
        CT_CompList list(ElementSize(element), 4, 0, 0, 128, 0);
        unsigned number = 0;
        unsigned reported = 0;
        for (const std::string& word : Dictionary(random, 9000)) {
            const std::string key = Key(word, element);
            ASSERT_EQ(shorts.b_Add(key.data(), number), list.b_Add(key.data(), number));
            longs.b_Add(key.data(), number);
            if (++number % 128)
                continue;
            CT_Buffer block;
            shorts.v_Build(&block);
            const Failure failure = TakeFailure();
            if (failure == LIMIT) {
                ASSERT_EQ(block.qcv_Get(), nullptr);
                ++reported;
                break;
            }
            ASSERT_EQ(failure, Failure());
            ASSERT_TRUE(Built(shorts) == Block(list)) << "a difference of bytes";
        }
        EXPECT_EQ(reported, 1u);
        EXPECT_GT(longs.n_GetEnd(), 0xFFFFu);
        EXPECT_LT(number, 9000u);
        EXPECT_EQ(longs.n_GetNrOfEntries(), number);
    }
}

TEST(CompListBuilderModel, ThirtyThousandWordsInOrderComeOutTheSame)
{
    std::vector<std::string> words = RealWords();
    std::sort(words.begin(), words.end());
    BuildBothWays(words, 1);
}

TEST(CompListBuilderModel, ThirtyThousandWordsInReverseOrderComeOutTheSame)
{
    std::vector<std::string> words = RealWords();
    std::sort(words.rbegin(), words.rend());
    BuildBothWays(words, 2);
}

TEST(CompListBuilderModel, ThirtyThousandShuffledWordsComeOutTheSame)
{
    std::vector<std::string> words = RealWords();
    Random random(19970101);
    std::shuffle(words.begin(), words.end(), random);
    BuildBothWays(words, 1);
}
