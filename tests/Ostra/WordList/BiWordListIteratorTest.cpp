// tests/Ostra/WordList/BiWordListIteratorTest.cpp: walks over bilingual lists.
#include "Ostra/WordList/Widths.h"

#include <Support/Directory.h>

#include <cstring>
#include <memory>
#include <random>
#include <string>
#include <vector>

template <class Width>
struct BiWordListIterator : TextsOf<Width>
{
    typedef typename Width::Unit Unit;

    // The current pair as "source-target".
    static std::string Pair(typename Width::Walk& walk)
    {
        Unit *source = nullptr, *target = nullptr;
        walk.v_Get(&source, &target);
        return TextsOf<Width>::Ascii(source) + "-" + TextsOf<Width>::Ascii(target);
    }
};
TYPED_TEST_SUITE(BiWordListIterator, BothWidths);

TYPED_TEST(BiWordListIterator, HasItsMembersAndNoMore)
{
    struct Expected
    {
        const void* pointers[3];
        unsigned numbers[3];
    };
    EXPECT_EQ(sizeof(CT_BiWordListIteratorOstra), sizeof(Expected));
    EXPECT_EQ(sizeof(typename TypeParam::Walk), sizeof(Expected));
    EXPECT_FALSE(std::is_polymorphic_v<CT_BiWordListIteratorOstra>);
}

TYPED_TEST(BiWordListIterator, AnEmptyListIsAtHomeAndAtEnd)
{
    typename TypeParam::List list;
    typename TypeParam::Walk walk(&list);
    for (unsigned times = 0; times < 3; ++times) {
        EXPECT_TRUE(walk.b_AtHome());
        EXPECT_TRUE(walk.b_AtEnd());
        EXPECT_EQ(walk.n_GetCount(), 0U);
        EXPECT_EQ(this->Pair(walk), "-");
        EXPECT_EQ(walk.b_Next(), 0);
    }
}

TYPED_TEST(BiWordListIterator, TheFirstPairIsThereAtHomeAndAfterTheFirstStep)
{
    typename TypeParam::List list;
    this->Insert(list, "cat", "Katze");
    typename TypeParam::Walk walk(&list);
    EXPECT_TRUE(walk.b_AtHome());
    EXPECT_FALSE(walk.b_AtEnd());
    EXPECT_EQ(this->Pair(walk), "cat-Katze");
    EXPECT_EQ(walk.b_Next(), 1);
    EXPECT_FALSE(walk.b_AtHome());
    EXPECT_TRUE(walk.b_AtEnd());
    EXPECT_EQ(this->Pair(walk), "cat-Katze");
    for (unsigned times = 0; times < 3; ++times) {
        EXPECT_EQ(walk.b_Next(), 0);
        EXPECT_TRUE(walk.b_AtEnd());
        EXPECT_EQ(this->Pair(walk), "cat-Katze");
    }
}

TYPED_TEST(BiWordListIterator, ThereAreAsManyStepsAsPairs)
{
    typename TypeParam::List list;
    for (unsigned number = 0; number < 40; ++number)
        this->Insert(list, std::to_string(number), std::string(number, 'x'));
    typename TypeParam::Walk walk(&list);
    for (unsigned number = 1; number <= 40; ++number) {
        EXPECT_EQ(walk.b_Next(), 1);
        EXPECT_EQ(walk.b_AtEnd(), number == 40);
    }
    EXPECT_EQ(walk.b_Next(), 0);
    EXPECT_EQ(walk.n_GetCount(), 40U);
}

// A pair inserted on the way comes behind the others.
TYPED_TEST(BiWordListIterator, AtTheEndItGoesOnWithANewPair)
{
    typename TypeParam::List list;
    this->Insert(list, "", "");
    typename TypeParam::Walk walk(&list);
    EXPECT_EQ(walk.b_Next(), 1);
    EXPECT_EQ(walk.b_Next(), 0);
    this->Insert(list, "x", "y");
    EXPECT_FALSE(walk.b_AtEnd());
    EXPECT_EQ(walk.b_Next(), 1);
    EXPECT_EQ(walk.b_Next(), 0);
}

TYPED_TEST(BiWordListIterator, IsEqualComparesListAndNumber)
{
    typedef typename TypeParam::Walk Walk;
    typename TypeParam::List list, other(&list);
    this->Insert(list, "cat", "Katze");
    this->Insert(list, "dog", "Hund");
    const typename TypeParam::List sharer(&list);
    Walk one(&list), two(&list), elsewhere(&sharer);
    EXPECT_TRUE(one.b_IsEqual(&one));
    EXPECT_TRUE(one.b_IsEqual(&two));
    EXPECT_FALSE(one.b_IsEqual(&elsewhere));
    one.b_Next();
    EXPECT_FALSE(one.b_IsEqual(&two));
    two.b_Next();
    EXPECT_TRUE(two.b_IsEqual(&one));
    // Wherever they stand in the texts: the list was emptied under one of them.
    one.b_Next();
    list.v_Set();
    two.b_Next();
    EXPECT_TRUE(one.b_IsEqual(&two));
}

TYPED_TEST(BiWordListIterator, AWalkIsTakenFromAnother)
{
    typedef typename TypeParam::Walk Walk;
    typename TypeParam::List list, other;
    this->Insert(list, "cat", "Katze");
    this->Insert(list, "dog", "Hund");
    Walk walk(&list);
    walk.b_Next();
    walk.b_Next();
    Walk copy(&walk), third(&other);
    EXPECT_TRUE(copy.b_IsEqual(&walk));
    EXPECT_EQ(this->Pair(copy), this->Pair(walk));
    third.v_Set(&walk);
    EXPECT_TRUE(third.b_IsEqual(&walk));
    EXPECT_TRUE(third.b_AtEnd());
    // The common part of a walk, too.
    const CT_BiWordListIteratorOstra common(&walk), start(&list);
    EXPECT_TRUE(common.b_IsEqual(&walk));
    EXPECT_TRUE(start.b_AtHome());
    walk.v_Set(&list);
    EXPECT_TRUE(walk.b_AtHome());
    EXPECT_EQ(this->Pair(walk), "cat-Katze");
    EXPECT_EQ(copy.b_Next(), 0);
}

TYPED_TEST(BiWordListIterator, IsMadeAndGoesOnTheHeap)
{
    typename TypeParam::List list;
    this->Insert(list, "cat", "Katze");
    const std::unique_ptr<typename TypeParam::Walk> walk(new typename TypeParam::Walk(&list));
    EXPECT_EQ(walk->b_Next(), 1);
}

TYPED_TEST(BiWordListIterator, TheTextsLieInTheBuffers)
{
    typename TypeParam::List list;
    this->Insert(list, "cat", "Katze");
    typename TypeParam::Walk walk(&list);
    typename TypeParam::Unit *source = nullptr, *target = nullptr;
    walk.v_Get(&source, &target);
    EXPECT_EQ(static_cast<const void*>(source), list.pcco_GetSourceBuffer()->qcv_Get());
    EXPECT_EQ(static_cast<const void*>(target), list.pcco_GetTargetBuffer()->qcv_Get());
}

// The count of an emptied list tells of pairs that have no text any more.
TYPED_TEST(BiWordListIterator, AnEmptiedListHasStepsWithoutTexts)
{
    typename TypeParam::List list;
    this->Insert(list, "cat", "Katze");
    this->Insert(list, "dog", "Hund");
    list.v_Set();
    typename TypeParam::Walk walk(&list);
    CT_CString source("x"), target("y");
    for (unsigned number = 1; number <= 2; ++number) {
        EXPECT_EQ(walk.b_Next(), 1);
        EXPECT_EQ(this->Pair(walk), "-");
        walk.v_Get(&source, &target);
        EXPECT_EQ(source.vn_GetLength(), 0U);
        EXPECT_EQ(target.vn_GetLength(), 0U);
    }
    EXPECT_EQ(walk.b_Next(), 0);
}

// Where no zero byte is left, the step leads to the beginning.
TYPED_TEST(BiWordListIterator, BehindTheLastTextComesTheFirstAgain)
{
    typename TypeParam::List list;
    this->Insert(list, "a", "b");
    this->Insert(list, "c", "d");
    list.v_Set();
    this->Insert(list, "x", "y");
    ASSERT_EQ(list.n_GetCount(), 3U);
    typename TypeParam::Walk walk(&list);
    std::string pairs;
    CT_CString source, target;
    while (walk.b_Next()) {
        walk.v_Get(&source, &target);
        pairs += std::string(source.qccz_Get()) + "-" + target.qccz_Get() + " ";
    }
    // In 16 bits: behind the character, within the terminator.
    EXPECT_EQ(pairs, this->SIZE == 1 ? "x-y - x-y " : "x-y - - ");
}

// A list set to another has its own count: the walk ends there.
TYPED_TEST(BiWordListIterator, TheCountOfTheListEndsTheWalk)
{
    typename TypeParam::List list, other;
    this->Insert(list, "cat", "Katze");
    this->Insert(list, "dog", "Hund");
    other.v_Set(&list);
    typename TypeParam::Walk walk(&other);
    EXPECT_EQ(walk.b_Next(), 0);
    EXPECT_TRUE(walk.b_AtHome());
    EXPECT_TRUE(walk.b_AtEnd());
    EXPECT_EQ(this->Pair(walk), "cat-Katze");
}

// ---- 8 bits -------------------------------------------------------------------------------

TEST(BiCWordListIterator, ThePairsComeInTheOrderOfInsertion)
{
    const char* const pairs[][2] = {{"cat", "Katze"}, {"dog", "Hund"},  {"", "leer"},
                                    {"bank", ""},     {"cat", "Kater"}, {"z", "Z"}};
    CT_BiLingualCWordList list;
    for (const auto& pair : pairs)
        list.v_Insert(pair[0], pair[1]);
    CT_BiCWordListIterator walk(&list);
    CT_CString source, target;
    for (const auto& pair : pairs) {
        ASSERT_EQ(walk.b_Next(), 1);
        char *sourceText = nullptr, *targetText = nullptr;
        walk.v_Get(&sourceText, &targetText);
        EXPECT_STREQ(sourceText, pair[0]);
        EXPECT_STREQ(targetText, pair[1]);
        walk.v_Get(&source, &target);
        EXPECT_STREQ(source.qccz_Get(), pair[0]);
        EXPECT_STREQ(target.qccz_Get(), pair[1]);
    }
    EXPECT_EQ(walk.b_Next(), 0);
    EXPECT_STREQ(source.qccz_Get(), "z");
}

// The strings keep their code page; bytes that become units are of the system's.
TEST(BiCWordListIterator, StringsOfBothKindsTakeTheTexts)
{
    CT_BiLingualCWordList list;
    list.v_Insert("K\xE4se", "cheese");
    CT_BiCWordListIterator walk(&list);
    CT_CString bytes(1251);
    CT_UString units;
    walk.v_Get(&bytes, &units);
    EXPECT_STREQ(bytes.qccz_Get(), "K\xE4se");
    EXPECT_EQ(bytes.n_GetCodePage(), 1251U);
    EXPECT_EQ(units.vn_GetLength(), 6U);
    EXPECT_EQ(units.vu_GetAt(5), u'e');
    walk.v_Get(&units, &bytes);
    const CT_CString systems("K\xE4se");
    const CT_UString expected(&systems);
    EXPECT_EQ(units.vi_Compare(&expected), 0);
    EXPECT_STREQ(bytes.qccz_Get(), "cheese");
}

// ---- 16 bits ------------------------------------------------------------------------------

namespace
{
typedef std::vector<unsigned short> Units;

Units UnitsOf(const CT_UString& text)
{
    return Units(text.qcuz_Get(), text.qcuz_Get() + text.vn_GetLength());
}

void Insert(CT_BiLingualUWordList& list, Units source, Units target)
{
    source.push_back(0);
    target.push_back(0);
    list.v_Insert(source.data(), target.data());
}

// The texts of one side by their bytes: what a search for a zero byte makes of them.
struct Side
{
    explicit Side(const CT_Buffer* buffer)
        : bytes(static_cast<const char*>(buffer->qcv_Get()), buffer->n_GetUsedSize())
    {}

    void Step() { position = bytes.find('\0', position) + 1; }
    Units Text() const
    {
        Units text;
        for (std::size_t at = position; at + 2 <= bytes.size(); at += 2) {
            const auto unit =
                static_cast<unsigned short>(static_cast<unsigned char>(bytes[at]) |
                                            static_cast<unsigned char>(bytes[at + 1]) << 8);
            if (!unit)
                break;
            text.push_back(unit);
        }
        return text;
    }

    std::string bytes;
    std::size_t position = 0;
};
} // namespace

TEST(BiUWordListIterator, AStepFromAsciiLeadsToTheNextCharacter)
{
    CT_BiLingualUWordList list;
    for (const char* word : {"cat", "dog", "emu", "fox"}) {
        const CT_CString text(word);
        const CT_UString source(&text);
        list.v_Insert(&source, &source);
    }
    CT_BiUWordListIterator walk(&list);
    CT_CString source, target;
    for (const char* expected : {"cat", "at", "t", ""}) {
        ASSERT_EQ(walk.b_Next(), 1);
        walk.v_Get(&source, &target);
        EXPECT_STREQ(source.qccz_Get(), expected);
        EXPECT_STREQ(target.qccz_Get(), expected);
        unsigned short *sourceText = nullptr, *targetText = nullptr;
        walk.v_Get(&sourceText, &targetText);
        EXPECT_EQ(sourceText,
                  static_cast<const unsigned short*>(list.pcco_GetSourceBuffer()->qcv_Get()) + 3 -
                      std::strlen(expected));
    }
    EXPECT_EQ(walk.b_Next(), 0);
}

TEST(BiUWordListIterator, AStepFromTextWithoutZeroBytesLeadsToAnOddPosition)
{
    CT_BiLingualUWordList list;
    Insert(list, {0x4E2D, 0x6587}, {0x4142});
    Insert(list, {0x4344}, {0x4546});
    CT_BiUWordListIterator walk(&list);
    walk.b_Next();
    walk.b_Next();
    const auto* sources = static_cast<const char*>(list.pcco_GetSourceBuffer()->qcv_Get());
    unsigned short *source = nullptr, *target = nullptr;
    walk.v_Get(&source, &target);
    EXPECT_EQ(reinterpret_cast<const char*>(source), sources + 5);
    CT_UString sourceText, targetText;
    walk.v_Get(&sourceText, &targetText);
    // 00 44 | 43 00, and the last byte of the buffer is half a unit.
    EXPECT_EQ(UnitsOf(sourceText), (Units{0x4400, 0x0043}));
    EXPECT_EQ(UnitsOf(targetText), (Units{0x4600, 0x0045}));
}

TEST(BiUWordListIterator, EveryStepIsThatOfTheBytes)
{
    const unsigned seed = Seed(5303);
    SCOPED_TRACE(testing::Message() << "OSTRA_SEED=" << seed);
    std::mt19937 random(seed);
    const unsigned short units[] = {'a', 'b', 0x100, 0x4E00, 0x4E2D, 0x6587, 0xFF};
    for (unsigned round = 0; round < 200; ++round) {
        CT_BiLingualUWordList list;
        unsigned pairs = 1 + random() % 12;
        for (unsigned count = 0; count < pairs; ++count) {
            Units words[2];
            for (Units& word : words)
                for (unsigned left = random() % 5; left > 0; --left)
                    word.push_back(units[random() % (round % 2 ? 7 : 5)]);
            Insert(list, words[0], words[1]);
        }
        Side sources(list.pcco_GetSourceBuffer()), targets(list.pcco_GetTargetBuffer());
        CT_BiUWordListIterator walk(&list);
        CT_UString source, target;
        for (unsigned number = 1; number <= pairs; ++number) {
            ASSERT_EQ(walk.b_Next(), 1);
            if (number > 1) {
                sources.Step();
                targets.Step();
            }
            walk.v_Get(&source, &target);
            ASSERT_EQ(UnitsOf(source), sources.Text());
            ASSERT_EQ(UnitsOf(target), targets.Text());
        }
        ASSERT_EQ(walk.b_Next(), 0);
    }
}

TEST(BiUWordListIterator, BytesTakeTheTextsInTheirCodePage)
{
    CT_BiLingualUWordList list;
    Insert(list, {'K', 0xE4, 's', 'e'}, {0x410});
    CT_BiUWordListIterator walk(&list);
    CT_CString western(1252), cyrillic(1251);
    walk.v_Get(&western, &cyrillic);
    EXPECT_STREQ(western.qccz_Get(), "K\xE4se");
    EXPECT_STREQ(cyrillic.qccz_Get(), "\xC0");
}
