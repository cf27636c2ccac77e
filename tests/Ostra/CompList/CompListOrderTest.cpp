// tests/Ostra/CompList/CompListOrderTest.cpp: lists that are built by weight: each is the block that
// adding its keys in an order would have left.
#include <Ostra/CompList/CompListBuilder.h>

#include <gtest/gtest.h>

#include <Ostra/String/CString.h>
#include <Ostra/String/UString.h>
#include <Models/CompListKey.h>
#include <Models/CompListWords.h>
#include <Models/RealWords.h>
#include <Models/WeightOrderModel.h>
#include <Support/Directory.h>
#include <Support/Failure.h>

#include <algorithm>
#include <map>

namespace
{
constexpr auto BY_WEIGHT = CT_CompListBuilder::bo_ByWeight;
constexpr auto AS_ADDED = CT_CompListBuilder::bo_AsAdded;

class CompListOrder : public testing::Test
{
protected:
    CompListOrder() { builder.v_SetOrder(BY_WEIGHT); }

    static std::string Built(const CT_CompListBuilder& from)
    {
        CT_CompList list(CT_CompList::es_Byte, 0, 0, 0, 128, 0);
        from.v_Build(&list);
        return Block(list);
    }

    // What adding these keys with their handles leaves.
    static std::string Added(const std::vector<std::pair<std::string, unsigned>>& keys)
    {
        CT_CompList list(CT_CompList::es_Byte, 2, 0, 0, 128, 1252);
        for (const auto& key : keys)
            EXPECT_EQ(list.b_Add(key.first.c_str(), key.second), 1);
        return Block(list);
    }

    CT_CompListBuilder builder{CT_CompList::es_Byte, 2, 0, 0, 128, 1252};
};

struct Kind
{
    Form form;
    unsigned count;
    unsigned alphabet;
    unsigned length;
    bool weighs;
};

// Builds by weight, and adds the keys to a list in the order of the model.
void BuildBothWays(Random& random, const Kind& kind)
{
    const Form& form = kind.form;
    CT_CompList list(ElementSize(form.element), form.handle, form.empty, form.longOffsets, 128, 7);
    CT_CompListBuilder builder(&list);
    builder.v_SetOrder(BY_WEIGHT);
    WeightOrderModel model;
    std::map<Word, unsigned> handles;
    for (const Word& word : Words(random, form.element, kind.count, kind.alphabet, kind.length)) {
        if (word.empty())
            continue;
        const std::string key = Bytes(word, form.element);
        const unsigned handle = random();
        const auto large = static_cast<unsigned>(random());
        const unsigned weights[] = {1, 1, 0, large % 10, large};
        const unsigned weight = kind.weighs ? weights[random() % 5] : 1;
        const bool isNew = model.Add(word, weight);
        const int added = weight == 1 && random() % 2 ? builder.b_Add(key.data(), handle)
                                                      : builder.b_Add(key.data(), handle, weight);
        ASSERT_EQ(added, isNew ? 1 : 0);
        handles.emplace(word, handle);
    }
    if (form.empty && random() % 2) {
        const std::string key(form.element, '\0');
        ASSERT_EQ(builder.b_Add(key.data(), 5, 9), list.b_Add(key.data(), 5));
    }
    const std::vector<Word> order = model.Order();
    ASSERT_EQ(order.size(), handles.size());
    for (const Word& word : order)
        ASSERT_EQ(list.b_Add(Bytes(word, form.element).data(), handles[word]), 1);

    CT_CompList built(CT_CompList::es_Byte, 0, 0, 0, 128, 0);
    builder.v_Build(&built);
    ASSERT_TRUE(Block(built) == Block(list)) << "a difference of bytes";
    ASSERT_EQ(built.pcco_GetBuffer()->n_GetMaximumSize(),
              list.pcco_GetBuffer()->n_GetMaximumSize());
    ASSERT_EQ(builder.n_GetEnd(), list.n_GetEnd());
}

void Build(const std::vector<std::string>& words, CT_CompListBuilder::et_Order order,
           CT_CompList* list)
{
    CT_CompListBuilder builder(CT_CompList::es_Byte, 4, 0, 1, 128, 1252);
    builder.v_SetOrder(order);
    unsigned handle = 0;
    for (const std::string& word : words)
        builder.b_Add(word.c_str(), handle++);
    builder.v_Build(list);
}

unsigned NumberAt(const std::string& block, std::size_t position)
{
    unsigned number = 0;
    for (unsigned n = 0; n < 4; ++n)
        number |= static_cast<unsigned>(static_cast<unsigned char>(block[position + n])) << 8 * n;
    return number;
}

// How many alternatives the search for a key goes to; bytes, handles and offsets of 4 bytes.
unsigned Alternatives(const std::string& block, const std::string& key)
{
    std::size_t position = 132;
    if (key[0] >= 'a' && key[0] <= 'z')
        position = NumberAt(block, 16 + 4 * static_cast<std::size_t>(key[0] - 'a'));
    unsigned count = 0;
    for (std::size_t at = 0; at < key.size();) {
        if (block[position] == 10)
            position += 5;
        else if (block[position] == 13)
            position += 5;
        else if (block[position] == key[at]) {
            ++position;
            ++at;
        } else {
            EXPECT_EQ(block[position + 1], 13) << key;
            position += 1 + NumberAt(block, position + 2);
            ++count;
        }
    }
    return count;
}
} // namespace

// ---- The order ----------------------------------------------------------------------------

TEST_F(CompListOrder, KeysComeAsAddedUnlessToldOtherwise)
{
    CT_CompListBuilder other(CT_CompList::es_Byte, 2, 0, 0, 128, 1252);
    EXPECT_EQ(other.ec_GetOrder(), AS_ADDED);
    for (const char* key : {"do", "car", "cat"})
        other.b_Add(key, 1, key[0] == 'c' ? 9 : 1);
    EXPECT_EQ(Built(other), Added({{"do", 1}, {"car", 1}, {"cat", 1}}));
}

TEST_F(CompListOrder, TheBranchWithMostKeysComesFirst)
{
    EXPECT_EQ(builder.ec_GetOrder(), BY_WEIGHT);
    builder.b_Add("do", 1);
    builder.b_Add("car", 2);
    builder.b_Add("cat", 3);
    EXPECT_EQ(Built(builder), Added({{"car", 2}, {"do", 1}, {"cat", 3}}));
    builder.b_Add("cats", 4);
    EXPECT_EQ(Built(builder), Added({{"cats", 4}, {"do", 1}, {"car", 2}, {"cat", 3}}));
}

TEST_F(CompListOrder, EqualBranchesComeAsTheyWereAdded)
{
    builder.b_Add("m", 1);
    builder.b_Add("z", 2);
    builder.b_Add("a", 3);
    EXPECT_EQ(Built(builder), Added({{"m", 1}, {"z", 2}, {"a", 3}}));
}

TEST_F(CompListOrder, WeightsOfKeysCountTogether)
{
    builder.b_Add("do", 1, 5);
    builder.b_Add("car", 2, 2);
    builder.b_Add("cat", 3, 3);
    builder.b_Add("eel", 4, 6);
    // c and d weigh the same; t weighs more than r.
    EXPECT_EQ(Built(builder), Added({{"eel", 4}, {"do", 1}, {"cat", 3}, {"car", 2}}));
}

// A search for one of the others passes all that stand in front of it.
TEST_F(CompListOrder, LettersThatSearchesJumpToComeBehindOtherStarts)
{
    for (const char* key : {"za", "a", "Za", "{", "`", "Zz"})
        builder.b_Add(key, 1, key[0] == 'z' ? 9 : 1);
    EXPECT_EQ(Built(builder),
              Added({{"Za", 1}, {"{", 1}, {"`", 1}, {"za", 1}, {"a", 1}, {"Zz", 1}}));
    builder.b_Add("Zaz", 2);
    builder.b_Add("Zaa", 2, 2);
    EXPECT_EQ(Built(builder), Added({{"Zaa", 2},
                                     {"{", 1},
                                     {"`", 1},
                                     {"za", 1},
                                     {"a", 1},
                                     {"Zz", 1},
                                     {"Zaz", 2},
                                     {"Za", 1}}));
}

TEST_F(CompListOrder, AWeightOfNoneComesLast)
{
    builder.b_Add("a", 1, 0);
    builder.b_Add("b", 2);
    EXPECT_EQ(Built(builder), Added({{"b", 2}, {"a", 1}}));
}

TEST_F(CompListOrder, SumsOfWeightsDontWrapAround)
{
    builder.b_Add("b", 1, 0xFFFFFFFF);
    for (const char* key : {"ax", "ay", "az"})
        builder.b_Add(key, 2, 0xFFFFFFFF);
    EXPECT_EQ(Built(builder), Added({{"ax", 2}, {"b", 1}, {"ay", 2}, {"az", 2}}));
}

TEST_F(CompListOrder, AKnownKeyKeepsItsWeight)
{
    builder.b_Add("a", 1, 2);
    builder.b_Add("b", 2, 3);
    EXPECT_EQ(builder.b_Add("a", 7, 9), 0);
    EXPECT_EQ(builder.b_Add("a", 7), 0);
    EXPECT_EQ(Built(builder), Added({{"b", 2}, {"a", 1}}));
}

TEST_F(CompListOrder, KeysInFrontOfTheFirstWeightWeighOne)
{
    builder.b_Add("ax", 1);
    builder.b_Add("ay", 2);
    builder.b_Add("b", 3);
    builder.b_Add("bz", 4, 2);
    EXPECT_EQ(Built(builder), Added({{"bz", 4}, {"b", 3}, {"ax", 1}, {"ay", 2}}));
}

TEST_F(CompListOrder, WeightsGoWithKeysInEveryForm)
{
    builder.v_Set(CT_CompList::es_Short, 2, 1, 0, 128, 1252);
    const CT_UString wide(Units(u"b"));
    EXPECT_EQ(builder.b_Add(Key("a", 2).data(), 1), 1);
    EXPECT_EQ(builder.b_Add(&wide, 2, 3), 1);
    EXPECT_EQ(builder.b_Add(Units(u"c"), 3, 2), 1);
    EXPECT_EQ(builder.b_Add(static_cast<const CT_UString*>(nullptr), 4, 7), 1);
    CT_CompList list(CT_CompList::es_Short, 2, 1, 0, 128, 1252);
    for (const char16_t* key : {u"b", u"c", u"a", u""})
        list.b_Add(Units(key), key[0] == 0 ? 4 : key[0] == 'a' ? 1 : key[0] == 'b' ? 2 : 3);
    EXPECT_EQ(Built(builder), Block(list));

    builder.v_Set(CT_CompList::es_Byte, 2, 0, 0, 128, 1252);
    const CT_CString narrow("b");
    EXPECT_EQ(builder.b_Add("a", 1), 1);
    EXPECT_EQ(builder.b_Add(&narrow, 2, 3), 1);
    EXPECT_EQ(builder.b_Add(static_cast<const CT_CString*>(nullptr), 2, 9), 0);
    EXPECT_EQ(Built(builder), Added({{"b", 2}, {"a", 1}}));
}

TEST_F(CompListOrder, TheOrderCanChangeWhileKeysCome)
{
    builder.b_Add("do", 1);
    builder.b_Add("car", 2);
    builder.b_Add("cat", 3);
    const std::string byWeight = Built(builder);
    builder.v_SetOrder(AS_ADDED);
    EXPECT_EQ(Built(builder), Added({{"do", 1}, {"car", 2}, {"cat", 3}}));
    builder.v_SetOrder(BY_WEIGHT);
    EXPECT_EQ(Built(builder), byWeight);
}

TEST_F(CompListOrder, ABuilderThatStartsAnewKeepsItsOrderAndNoWeights)
{
    builder.b_Add("x", 1, 9);
    builder.v_Set(CT_CompList::es_Byte, 2, 0, 0, 128, 1252);
    EXPECT_EQ(builder.ec_GetOrder(), BY_WEIGHT);
    for (const char* key : {"x", "a", "ab"})
        builder.b_Add(key, 1);
    EXPECT_EQ(Built(builder), Added({{"ab", 1}, {"x", 1}, {"a", 1}}));
}

TEST_F(CompListOrder, NoKeysAreAnEmptyList)
{
    EXPECT_EQ(Built(builder), Added({}));
}

// ---- Lists that are there -----------------------------------------------------------------

TEST_F(CompListOrder, AListThatWasReadIsBroughtIntoOrder)
{
    CT_CompList list(CT_CompList::es_Byte, 2, 0, 0, 128, 1252);
    for (const char* key : {"do", "car", "cat"})
        list.b_Add(key, 1);
    builder.v_Set(&list);
    EXPECT_EQ(Built(builder), Added({{"car", 1}, {"do", 1}, {"cat", 1}}));
    builder.b_Add("d", 2, 5);
    EXPECT_EQ(Built(builder), Added({{"do", 1}, {"d", 2}, {"car", 1}, {"cat", 1}}));
}

TEST_F(CompListOrder, ABlockThatIsNoSoundListStaysAsItIs)
{
    CT_CompList list(CT_CompList::es_Byte, 2, 0, 0, 128, 1252);
    for (const char* key : {"do", "car", "cat", "\x1A"})
        list.b_Add(key, 1);
    builder.v_Set(&list);
    EXPECT_EQ(Built(builder), Block(list));
    EXPECT_EQ(builder.b_Add("cats", 2, 9), list.b_Add("cats", 2));
    EXPECT_EQ(Built(builder), Block(list));
}

TEST_F(CompListOrder, FromAKeyThatIsCutOnKeysComeAsAdded)
{
    builder.v_Set(CT_CompList::es_Long, 2, 0, 0, 128, 1252);
    CT_CompList list(CT_CompList::es_Long, 2, 0, 0, 128, 1252);
    const auto key = [](const char* text) {
        return Bytes({text[0] * 0x10001u}, 4);
    };
    builder.b_Add(key("a").data(), 1);
    builder.b_Add(key("b").data(), 2, 5);
    list.b_Add(key("b").data(), 2);
    list.b_Add(key("a").data(), 1);
    EXPECT_EQ(builder.b_Add(Key("c", 4).data(), 3, 9), list.b_Add(Key("c", 4).data(), 3));
    EXPECT_EQ(builder.b_Add(key("d").data(), 4, 9), list.b_Add(key("d").data(), 4));
    EXPECT_EQ(Built(builder), Block(list));
}

// The last key of the first branch lies behind what the others have in between.
TEST_F(CompListOrder, AnOffsetBeyondItsFieldIsReported)
{
    const Failure limit = {60021, "(60021): Limits violated", {"Ostra/CompList/CompListBuilder"}};
    builder.b_Add("a", 1);
    builder.b_Add((std::string(70000, 'x')).c_str(), 2, 2);
    CT_Buffer block;
    builder.v_Build(&block);
    EXPECT_EQ(TakeFailure(), limit);
    EXPECT_EQ(block.qcv_Get(), nullptr);
    builder.v_SetOrder(AS_ADDED);
    EXPECT_EQ(Built(builder).size(), builder.n_GetEnd());
}

// ---- Many ---------------------------------------------------------------------------------

TEST(CompListOrderModel, ThousandsOfRandomListsAreThoseOfTheirOrder)
{
    for (const unsigned first : {20261130u, 20261131u, 20261132u}) {
        const unsigned seed = Seed(first);
        Random random(seed);
        for (const Form& form : Forms())
            for (unsigned round = 0; round < 20; ++round) {
                SCOPED_TRACE(Trace(form, seed));
                const auto chance = static_cast<unsigned>(random());
                const Kind kind = {form, chance % 120, 1 + chance / 256 % 26, 6, chance % 7 > 1};
                ASSERT_NO_FATAL_FAILURE(BuildBothWays(random, kind));
            }
    }
}

// Large enough for branches that come breadth first.
TEST(CompListOrderModel, LargeListsAreThoseOfTheirOrder)
{
    const unsigned seed = Seed(20261133);
    Random random(seed);
    for (const unsigned element : {1u, 2u, 4u})
        for (const bool weighs : {false, true})
            for (const unsigned alphabet : {2u, 5u, 26u}) {
                const Form form = {element, 4, false, true};
                SCOPED_TRACE(Trace(form, seed));
                const Kind kind = {form, 5000, alphabet, 9, weighs};
                ASSERT_NO_FATAL_FAILURE(BuildBothWays(random, kind));
            }
}

// Places with hundreds of ways on.
TEST(CompListOrderModel, LongChainsAreThoseOfTheirOrder)
{
    const unsigned seed = Seed(20261134);
    Random random(seed);
    for (const unsigned element : {1u, 2u, 4u}) {
        const Form form = {element, 2, true, true};
        SCOPED_TRACE(Trace(form, seed));
        CT_CompList list(ElementSize(element), 2, 1, 1, 128, 7);
        CT_CompListBuilder builder(&list);
        builder.v_SetOrder(BY_WEIGHT);
        WeightOrderModel model;
        for (unsigned number = 0; number < 3000; ++number) {
            Word word;
            for (unsigned length = 1 + random() % 3; length > 0; --length) {
                unsigned next = 0;
                while (IsReserved(next))
                    next = random() % (element == 1 ? 256 : 600);
                word.push_back(element == 4 ? next * 0x10001 : next);
            }
            const unsigned weight = random() % 4;
            ASSERT_EQ(builder.b_Add(Bytes(word, element).data(), 7, weight),
                      model.Add(word, weight) ? 1 : 0);
        }
        for (const Word& word : model.Order())
            list.b_Add(Bytes(word, element).data(), 7);
        CT_Buffer block;
        builder.v_Build(&block);
        const std::string bytes(static_cast<const char*>(block.qcv_Get()), block.n_GetUsedSize());
        ASSERT_TRUE(bytes == Block(list)) << "a difference of bytes";
    }
}

TEST(CompListOrderModel, ThirtyThousandWordsAreFoundByWeight)
{
    std::vector<std::string> words = RealWords();
    std::sort(words.begin(), words.end());
    CT_CompList list(CT_CompList::es_Byte, 0, 0, 0, 128, 0);
    Build(words, BY_WEIGHT, &list);
    for (std::size_t number = 0; number < words.size(); ++number)
        ASSERT_EQ(list.n_Search(words[number].c_str(), nullptr), number);
    EXPECT_EQ(list.n_GetNrOfEntries(), words.size());
    EXPECT_EQ(list.n_Search("xyzzyx", nullptr), 0xFFFFFFFFu);
}

TEST(CompListOrderModel, SearchesByWeightPassLessThanTwoThirdsOfTheAlternatives)
{
    std::vector<std::string> words = RealWords();
    std::sort(words.begin(), words.end());
    CT_CompList list(CT_CompList::es_Byte, 0, 0, 0, 128, 0);
    Build(words, AS_ADDED, &list);
    const std::string asAdded = Block(list);
    Build(words, BY_WEIGHT, &list);
    const std::string byWeight = Block(list);
    EXPECT_EQ(asAdded.size(), byWeight.size());
    unsigned before = 0, after = 0;
    for (const std::string& word : words) {
        before += Alternatives(asAdded, word);
        after += Alternatives(byWeight, word);
    }
    EXPECT_GT(after, words.size());
    EXPECT_LT(after, before / 3 * 2);
}
