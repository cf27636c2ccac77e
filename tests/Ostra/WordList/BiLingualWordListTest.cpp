// tests/Ostra/WordList/BiLingualWordListTest.cpp: bilingual lists of both widths.
#include "Ostra/WordList/Widths.h"

#include <Models/CompListKey.h>
#include <Support/Directory.h>

#include <map>
#include <memory>
#include <random>
#include <type_traits>
#include <vector>

template <class Width>
struct BiLingualWordList : TextsOf<Width>
{};
TYPED_TEST_SUITE(BiLingualWordList, BothWidths);

namespace
{
constexpr unsigned NONE = 0xFFFFFFFF;

// An index as it must be: the keys of the words added in that order, with these handles.
template <class Unit>
CT_CompList* NewIndex()
{
    return new CT_CompList(CT_CompList::et_ElementSize(sizeof(Unit)), 4, 0, 0, 128, 0);
}

template <class Text>
void ExpectIndexForm(const CT_CompList* index, unsigned element, Text what)
{
    SCOPED_TRACE(what);
    EXPECT_EQ(index->n_GetElementSize(), element);
    EXPECT_EQ(index->n_GetHandleSize(), 4U);
    EXPECT_FALSE(index->b_HasEmptyStringSupport());
    EXPECT_FALSE(index->b_HasLongOffsetSupport());
    EXPECT_EQ(index->n_GetCodePage(), 0U);
    EXPECT_EQ(index->pcco_GetBuffer()->n_GetGrowth(), 128U);
    EXPECT_TRUE(index->b_IsEmpty());
    EXPECT_EQ(index->n_GetNrOfEntries(), 0U);
}

std::string RandomText(std::mt19937& random, unsigned letters)
{
    std::string text;
    for (unsigned left = random() % 9; left > 0; --left)
        text += static_cast<char>('a' + random() % letters);
    return text;
}
} // namespace

// ---- A new list ---------------------------------------------------------------------------

TYPED_TEST(BiLingualWordList, ANewListIsEmpty)
{
    typename TypeParam::List list;
    EXPECT_EQ(list.n_GetCount(), 0U);
    for (const CT_Buffer* buffer : {list.pcco_GetSourceBuffer(), list.pcco_GetTargetBuffer()}) {
        EXPECT_EQ(buffer->n_GetUsedSize(), 0U);
        EXPECT_EQ(buffer->n_GetGrowth(), 32U);
        EXPECT_EQ(buffer->qcv_Get(), nullptr);
    }
    ExpectIndexForm(list.pcco_GetSourceIndex(), this->SIZE, "source");
    ExpectIndexForm(list.pcco_GetTargetIndex(), this->SIZE, "target");
    EXPECT_EQ(this->Source(list, "cat"), "(null)");
    EXPECT_EQ(this->Target(list, "cat"), "(null)");
    // The empty word leads to the first text, of which there is none.
    EXPECT_EQ(this->Source(list, ""), "(null)");
    EXPECT_EQ(this->Target(list, ""), "(null)");
}

TYPED_TEST(BiLingualWordList, HasItsMembersAndNoMore)
{
    struct Base
    {
        void* table;
        CT_Buffer buffers[2];
        unsigned count;
    };
    EXPECT_EQ(sizeof(CT_BiLingualWordListOstra), sizeof(Base));
    EXPECT_GE(sizeof(typename TypeParam::List),
              sizeof(Base) - sizeof(void*) + 2 * sizeof(CT_CompList));
    EXPECT_LE(sizeof(typename TypeParam::List), sizeof(Base) + 2 * sizeof(CT_CompList));
    EXPECT_TRUE(std::has_virtual_destructor_v<CT_BiLingualWordListOstra>);
    EXPECT_TRUE((std::is_base_of_v<CT_BiLingualWordListOstra, typename TypeParam::List>));
}

TYPED_TEST(BiLingualWordList, IsMadeAndGoesOnTheHeap)
{
    auto* list = new typename TypeParam::List;
    this->Insert(*list, "cat", "Katze");
    std::unique_ptr<CT_BiLingualWordListOstra> holder(list);
    EXPECT_EQ(holder->n_GetCount(), 1U);
}

// ---- Pairs --------------------------------------------------------------------------------

TYPED_TEST(BiLingualWordList, TheExampleIsStoredCrosswise)
{
    typename TypeParam::List list;
    this->Insert(list, "cat", "Katze");
    this->Insert(list, "dog", "Hund");
    EXPECT_EQ(this->Bytes(list.pcco_GetSourceBuffer()), this->Bytes({"cat", "dog"}));
    EXPECT_EQ(this->Bytes(list.pcco_GetTargetBuffer()), this->Bytes({"Katze", "Hund"}));
    const CT_CompList *source = list.pcco_GetSourceIndex(), *target = list.pcco_GetTargetIndex();
    EXPECT_EQ(source->n_Search(this->Of("cat").c_str(), nullptr), 0U);
    EXPECT_EQ(source->n_Search(this->Of("dog").c_str(), nullptr), 6U * this->SIZE);
    EXPECT_EQ(target->n_Search(this->Of("Katze").c_str(), nullptr), 0U);
    EXPECT_EQ(target->n_Search(this->Of("Hund").c_str(), nullptr), 4U * this->SIZE);
    EXPECT_EQ(list.n_GetCount(), 2U);
    EXPECT_EQ(this->Source(list, "cat"), "Katze");
    EXPECT_EQ(this->Source(list, "dog"), "Hund");
    EXPECT_EQ(this->Target(list, "Katze"), "cat");
    EXPECT_EQ(this->Target(list, "Hund"), "dog");
}

TYPED_TEST(BiLingualWordList, WordsOfTheOtherSideBeginningsAndMoreAreNotFound)
{
    typename TypeParam::List list;
    this->Insert(list, "cat", "Katze");
    for (const char* word : {"Katze", "c", "ca", "cats", "dog", "CAT"})
        EXPECT_EQ(this->Source(list, word), "(null)") << word;
    for (const char* word : {"cat", "K", "Katz", "Katzen", "katze"})
        EXPECT_EQ(this->Target(list, word), "(null)") << word;
}

TYPED_TEST(BiLingualWordList, AWordKeepsTheFirstTextAndThePairCounts)
{
    typename TypeParam::List list;
    this->Insert(list, "bank", "Ufer");
    this->Insert(list, "bank", "Geldhaus");
    this->Insert(list, "shore", "Ufer");
    EXPECT_EQ(list.n_GetCount(), 3U);
    EXPECT_EQ(this->Source(list, "bank"), "Ufer");
    EXPECT_EQ(this->Target(list, "Geldhaus"), "bank");
    EXPECT_EQ(this->Target(list, "Ufer"), "bank");
    EXPECT_EQ(this->Source(list, "shore"), "Ufer");
    EXPECT_EQ(this->Bytes(list.pcco_GetSourceBuffer()), this->Bytes({"bank", "bank", "shore"}));
    EXPECT_EQ(this->Bytes(list.pcco_GetTargetBuffer()), this->Bytes({"Ufer", "Geldhaus", "Ufer"}));
    EXPECT_EQ(list.pcco_GetSourceIndex()->n_GetNrOfEntries(), 2U);
}

TYPED_TEST(BiLingualWordList, AnEmptyWordIsStoredAndLeadsToTheFirstText)
{
    typename TypeParam::List list;
    this->Insert(list, "one", "eins");
    this->Insert(list, "", "leer");
    this->Insert(list, "blank", "");
    EXPECT_EQ(list.n_GetCount(), 3U);
    EXPECT_EQ(this->Source(list, ""), "eins");
    EXPECT_EQ(this->Target(list, ""), "one");
    EXPECT_EQ(this->Target(list, "leer"), "");
    EXPECT_EQ(this->Source(list, "blank"), "");
    EXPECT_EQ(list.pcco_GetSourceIndex()->n_GetNrOfEntries(), 2U);
    EXPECT_EQ(list.pcco_GetTargetIndex()->n_GetNrOfEntries(), 2U);
    EXPECT_EQ(this->Bytes(list.pcco_GetSourceBuffer()), this->Bytes({"one", "", "blank"}));
    EXPECT_EQ(this->Bytes(list.pcco_GetTargetBuffer()), this->Bytes({"eins", "leer", ""}));
}

TYPED_TEST(BiLingualWordList, StringsDoAsTextsDo)
{
    typename TypeParam::List list;
    typedef typename TypeParam::String String;
    const String cat(this->Of("cat").c_str()), katze(this->Of("Katze").c_str()), none;
    list.v_Insert(&cat, &katze);
    list.v_Insert(&none, &cat);
    list.v_Insert(&katze, &none);
    EXPECT_EQ(this->Bytes(list.pcco_GetSourceBuffer()), this->Bytes({"cat", "", "Katze"}));
    EXPECT_EQ(this->Bytes(list.pcco_GetTargetBuffer()), this->Bytes({"Katze", "cat", ""}));
    EXPECT_EQ(this->Ascii(TypeParam::FindSource(list, &cat)), "Katze");
    EXPECT_EQ(this->Ascii(TypeParam::FindTarget(list, &katze)), "cat");
    EXPECT_EQ(this->Ascii(TypeParam::FindTarget(list, &cat)), "");
    EXPECT_EQ(this->Ascii(TypeParam::FindSource(list, &katze)), "");
    EXPECT_EQ(this->Ascii(TypeParam::FindSource(list, &none)), "Katze");
    EXPECT_EQ(this->Ascii(TypeParam::FindTarget(list, &none)), "cat");
}

// A text that is found is the buffer's own.
TYPED_TEST(BiLingualWordList, FoundTextsLieInTheBuffers)
{
    typename TypeParam::List list;
    this->Insert(list, "cat", "Katze");
    this->Insert(list, "dog", "Hund");
    const auto* targets = static_cast<const char*>(list.pcco_GetTargetBuffer()->qcv_Get());
    const auto* sources = static_cast<const char*>(list.pcco_GetSourceBuffer()->qcv_Get());
    EXPECT_EQ(static_cast<const void*>(TypeParam::FindSource(list, this->Of("dog").c_str())),
              targets + 6 * this->SIZE);
    EXPECT_EQ(static_cast<const void*>(TypeParam::FindTarget(list, this->Of("Hund").c_str())),
              sources + 4 * this->SIZE);
}

TYPED_TEST(BiLingualWordList, AListMayBeGivenItsOwnTexts)
{
    typename TypeParam::List list;
    this->Insert(list, "0", "zero");
    std::string last = "0";
    for (unsigned number = 1; number < 60; ++number) {
        const auto* source =
            TypeParam::FindTarget(list, this->Of(number == 1 ? "zero" : last).c_str());
        ASSERT_NE(source, nullptr);
        last += 'x';
        list.v_Insert(source, this->Of(last).c_str());
        ASSERT_EQ(this->Target(list, last), "0");
    }
    list.v_Insert(TypeParam::FindSource(list, this->Of("0").c_str()),
                  TypeParam::FindSource(list, this->Of("0").c_str()));
    EXPECT_EQ(this->Source(list, "zero"), "zero");
    EXPECT_EQ(list.n_GetCount(), 61U);
    // Of a pair the second alone.
    list.v_Insert(this->Of("nil").c_str(), TypeParam::FindSource(list, this->Of("0").c_str()));
    EXPECT_EQ(this->Source(list, "nil"), "zero");
    EXPECT_EQ(list.n_GetCount(), 62U);
}

// The stores against plain bytes, maps, and compressed lists that are filled word by word.
TYPED_TEST(BiLingualWordList, RandomPairsAreFoundBothWays)
{
    const unsigned seed = Seed(5301);
    SCOPED_TRACE(testing::Message() << "OSTRA_SEED=" << seed);
    std::mt19937 random(seed);
    for (unsigned round = 0; round < 60; ++round) {
        typename TypeParam::List list;
        std::unique_ptr<CT_CompList> indexes[2] = {
            std::unique_ptr<CT_CompList>(NewIndex<typename TypeParam::Unit>()),
            std::unique_ptr<CT_CompList>(NewIndex<typename TypeParam::Unit>())};
        std::string sources, targets;
        std::map<std::string, std::string> first, back;
        const unsigned pairs = random() % 120, letters = 1 + random() % 8;
        for (unsigned count = 0; count < pairs; ++count) {
            const std::string source = RandomText(random, letters);
            const std::string target = RandomText(random, letters);
            this->Insert(list, source, target);
            indexes[0]->b_Add(this->Of(source).c_str(), static_cast<unsigned>(targets.size()));
            indexes[1]->b_Add(this->Of(target).c_str(), static_cast<unsigned>(sources.size()));
            sources += this->Bytes({source.c_str()});
            targets += this->Bytes({target.c_str()});
            if (first.empty()) {
                first[""] = target;
                back[""] = source;
            }
            first.insert({source, target});
            back.insert({target, source});
        }
        ASSERT_EQ(list.n_GetCount(), pairs);
        ASSERT_EQ(this->Bytes(list.pcco_GetSourceBuffer()), sources);
        ASSERT_EQ(this->Bytes(list.pcco_GetTargetBuffer()), targets);
        ASSERT_TRUE(Block(*list.pcco_GetSourceIndex()) == Block(*indexes[0]));
        ASSERT_TRUE(Block(*list.pcco_GetTargetIndex()) == Block(*indexes[1]));
        for (const auto& [word, text] : first)
            ASSERT_EQ(this->Source(list, word), text) << word;
        for (const auto& [word, text] : back)
            ASSERT_EQ(this->Target(list, word), text) << word;
        for (unsigned count = 0; count < 50; ++count) {
            const std::string word = RandomText(random, letters + 1);
            ASSERT_EQ(this->Source(list, word), first.count(word) ? first[word] : "(null)");
            ASSERT_EQ(this->Target(list, word), back.count(word) ? back[word] : "(null)");
        }
    }
}

// Without long offsets an index is damaged once an alternative lies too far away, and nobody says so.
TYPED_TEST(BiLingualWordList, ThousandsOfPairsAreTooMany)
{
    std::mt19937 random(Seed(5302));
    const auto lost = [&](unsigned pairs) {
        typename TypeParam::List list;
        std::vector<std::string> words;
        for (unsigned count = 0; count < pairs; ++count) {
            std::string word = std::to_string(count) + "-";
            for (unsigned left = 6; left > 0; --left)
                word.insert(word.begin(), static_cast<char>('A' + random() % 26));
            words.push_back(word);
            this->Insert(list, word, word);
        }
        unsigned missing = 0;
        for (const std::string& word : words)
            missing += this->Source(list, word) != word;
        EXPECT_EQ(list.n_GetCount(), pairs);
        return missing;
    };
    EXPECT_EQ(lost(1000), 0U);
    EXPECT_GT(lost(5000), 0U);
}

TEST(BiLingualUWordList, UnitsOfAllKindsAreKeys)
{
    CT_BiLingualUWordList list;
    const unsigned short source[] = {0x4E2D, 0x6587, 0}, target[] = {0xFFFF, 0xD800, 0x100, 0};
    list.v_Insert(source, target);
    EXPECT_EQ(list.pcco_GetSourceBuffer()->n_GetUsedSize(), 6U);
    EXPECT_EQ(list.pcco_GetTargetBuffer()->n_GetUsedSize(), 8U);
    ASSERT_NE(list.qcuz_FindSource(source), nullptr);
    EXPECT_EQ(std::u16string(reinterpret_cast<const char16_t*>(list.qcuz_FindSource(source))),
              std::u16string(u"\uFFFF\xD800\u0100"));
}

TEST(BiLingualCWordList, BytesOfAllKindsAreKeys)
{
    CT_BiLingualCWordList list;
    list.v_Insert("K\xE4se\xFF", "\x80\x01");
    EXPECT_STREQ(list.qccz_FindSource("K\xE4se\xFF"), "\x80\x01");
    EXPECT_STREQ(list.qccz_FindTarget("\x80\x01"), "K\xE4se\xFF");
}

// ---- Setting ------------------------------------------------------------------------------

TYPED_TEST(BiLingualWordList, SetEmptiesTheStoresAndLeavesTheCount)
{
    typename TypeParam::List list;
    this->Insert(list, "cat", "Katze");
    this->Insert(list, "dog", "Hund");
    list.v_Set();
    EXPECT_EQ(list.n_GetCount(), 2U);
    EXPECT_EQ(list.pcco_GetSourceBuffer()->n_GetUsedSize(), 0U);
    EXPECT_EQ(list.pcco_GetTargetBuffer()->n_GetUsedSize(), 0U);
    EXPECT_EQ(list.pcco_GetSourceBuffer()->n_GetGrowth(), 32U);
    ExpectIndexForm(list.pcco_GetSourceIndex(), this->SIZE, "source");
    ExpectIndexForm(list.pcco_GetTargetIndex(), this->SIZE, "target");
    for (const char* word : {"cat", "dog", ""}) {
        EXPECT_EQ(this->Source(list, word), "(null)");
        EXPECT_EQ(this->Target(list, word), "(null)");
    }
    this->Insert(list, "dog", "Dogge");
    EXPECT_EQ(list.n_GetCount(), 3U);
    EXPECT_EQ(this->Source(list, "dog"), "Dogge");
    EXPECT_EQ(this->Bytes(list.pcco_GetSourceBuffer()), this->Bytes({"dog"}));
}

TYPED_TEST(BiLingualWordList, AListOfAListSharesItsStoresAndHasItsCount)
{
    typename TypeParam::List list;
    this->Insert(list, "cat", "Katze");
    this->Insert(list, "dog", "Hund");
    const typename TypeParam::List other(&list);
    EXPECT_EQ(other.n_GetCount(), 2U);
    EXPECT_EQ(other.pcco_GetSourceBuffer()->qcv_Get(), list.pcco_GetSourceBuffer()->qcv_Get());
    EXPECT_EQ(other.pcco_GetTargetBuffer()->qcv_Get(), list.pcco_GetTargetBuffer()->qcv_Get());
    EXPECT_EQ(other.pcco_GetSourceIndex()->pcco_GetBuffer()->qcv_Get(),
              list.pcco_GetSourceIndex()->pcco_GetBuffer()->qcv_Get());
    EXPECT_EQ(other.pcco_GetTargetIndex()->pcco_GetBuffer()->qcv_Get(),
              list.pcco_GetTargetIndex()->pcco_GetBuffer()->qcv_Get());
    this->Insert(list, "emu", "Emu");
    EXPECT_EQ(other.n_GetCount(), 2U);
    EXPECT_EQ(this->Source(other, "emu"), "(null)");
    EXPECT_EQ(this->Source(other, "cat"), "Katze");
    EXPECT_EQ(this->Target(other, "Hund"), "dog");
    EXPECT_EQ(this->Source(list, "emu"), "Emu");
}

TYPED_TEST(BiLingualWordList, SetToAListSharesItsStoresAndLeavesTheCount)
{
    typename TypeParam::List list, other;
    this->Insert(list, "cat", "Katze");
    this->Insert(list, "dog", "Hund");
    this->Insert(other, "one", "eins");
    other.v_Set(&list);
    EXPECT_EQ(other.n_GetCount(), 1U);
    EXPECT_EQ(other.pcco_GetSourceBuffer()->qcv_Get(), list.pcco_GetSourceBuffer()->qcv_Get());
    EXPECT_EQ(this->Source(other, "cat"), "Katze");
    EXPECT_EQ(this->Target(other, "Hund"), "dog");
    EXPECT_EQ(this->Source(other, "one"), "(null)");
    this->Insert(other, "emu", "Emu");
    EXPECT_EQ(other.n_GetCount(), 2U);
    EXPECT_EQ(this->Source(list, "emu"), "(null)");
    EXPECT_EQ(list.n_GetCount(), 2U);
}

TYPED_TEST(BiLingualWordList, SetToItselfChangesNothing)
{
    typename TypeParam::List list;
    this->Insert(list, "cat", "Katze");
    list.v_Set(&list);
    EXPECT_EQ(this->Source(list, "cat"), "Katze");
    EXPECT_EQ(this->Target(list, "Katze"), "cat");
    EXPECT_EQ(list.n_GetCount(), 1U);
}

TYPED_TEST(BiLingualWordList, SetOfASharedListLeavesTheOther)
{
    typename TypeParam::List list;
    this->Insert(list, "cat", "Katze");
    const typename TypeParam::List other(&list);
    list.v_Set();
    EXPECT_EQ(this->Source(list, "cat"), "(null)");
    EXPECT_EQ(this->Source(other, "cat"), "Katze");
    EXPECT_EQ(this->Target(other, "Katze"), "cat");
}

// What both widths have in common can be held and set by itself.
TYPED_TEST(BiLingualWordList, TheCommonPartSharesAndEmptiesTheTexts)
{
    typename TypeParam::List list;
    this->Insert(list, "cat", "Katze");
    CT_BiLingualWordListOstra common(&list), fresh;
    EXPECT_EQ(common.n_GetCount(), 1U);
    EXPECT_EQ(this->Bytes(common.pcco_GetSourceBuffer()), this->Bytes({"cat"}));
    EXPECT_EQ(fresh.n_GetCount(), 0U);
    fresh.v_Set(&common);
    EXPECT_EQ(fresh.n_GetCount(), 0U);
    EXPECT_EQ(this->Bytes(fresh.pcco_GetTargetBuffer()), this->Bytes({"Katze"}));
    EXPECT_EQ(fresh.pcco_GetTargetBuffer()->qcv_Get(), list.pcco_GetTargetBuffer()->qcv_Get());
    common.v_Set();
    EXPECT_EQ(common.n_GetCount(), 1U);
    EXPECT_EQ(common.pcco_GetSourceBuffer()->n_GetUsedSize(), 0U);
    EXPECT_EQ(this->Source(list, "cat"), "Katze");
}

// Emptied, a block that is a list's own stays.
TYPED_TEST(BiLingualWordList, SetKeepsTheBlocksOfTheTexts)
{
    typename TypeParam::List list;
    const std::string source(300, 's'), target(500, 't');
    this->Insert(list, source.c_str(), target.c_str());
    const CT_Buffer& sources = *list.pcco_GetSourceBuffer();
    const CT_Buffer& targets = *list.pcco_GetTargetBuffer();
    const void* const blocks[] = {sources.qcv_Get(), targets.qcv_Get()};
    const unsigned sizes[] = {sources.n_GetMaximumSize(), targets.n_GetMaximumSize()};
    list.v_Set();
    EXPECT_EQ(sources.qcv_Get(), blocks[0]);
    EXPECT_EQ(sources.n_GetMaximumSize(), sizes[0]);
    EXPECT_EQ(targets.qcv_Get(), blocks[1]);
    EXPECT_EQ(targets.n_GetMaximumSize(), sizes[1]);
}

// The four stores are all there is of a list.
TYPED_TEST(BiLingualWordList, TheStoresHoldTheList)
{
    typename TypeParam::List list;
    for (const char* word : {"cat", "car", "cart", "dog"})
        this->Insert(list, word, std::string(word) + "!");
    const CT_Buffer source(list.pcco_GetSourceIndex()->pcco_GetBuffer());
    const std::string targets = this->Bytes(list.pcco_GetTargetBuffer());
    CT_CompList index(&source);
    for (const char* word : {"cat", "car", "cart", "dog"}) {
        const unsigned at = index.n_Search(this->Of(word).c_str(), nullptr);
        ASSERT_NE(at, NONE);
        const std::string expected = this->Bytes({(std::string(word) + "!").c_str()});
        EXPECT_EQ(targets.substr(at, expected.size()), expected);
    }
}
