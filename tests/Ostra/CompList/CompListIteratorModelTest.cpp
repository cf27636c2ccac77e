// tests/Ostra/CompList/CompListIteratorModelTest.cpp: the iterators against classes derived from
// them, for which every step is a call.
#include <Ostra/CompList/CCompListIterator.h>
#include <Ostra/CompList/UCompListIterator.h>

#include <gtest/gtest.h>

#include <Ostra/String/CString.h>
#include <Ostra/String/UString.h>
#include <Models/CompListKey.h>
#include <Models/CompListWords.h>
#include <Support/Directory.h>

namespace
{
template <class Iterator>
class Derived : public Iterator
{
public:
    explicit Derived(const CT_CompList* list) : Iterator(list) {}
};

std::string Bytes(const CT_CString& text)
{
    return std::string(text.qccz_Get(), text.vn_GetLength());
}

std::u16string Bytes(const CT_UString& text)
{
    return std::u16string(reinterpret_cast<const char16_t*>(text.qcuz_Get()), text.vn_GetLength());
}

// What a step leaves behind, with the blocks that it took.
template <class Text, class Iterator>
unsigned Step(Iterator& walk, Text& key, unsigned& handle, int& result)
{
    const unsigned before = CT_Buffer::sn_GetAllocCount();
    result = walk.b_GetNext(&key, &handle);
    return CT_Buffer::sn_GetAllocCount() - before;
}

// Returns the number of entries.
template <class Text, class Iterator>
unsigned WalkBothWays(const CT_CompList& list)
{
    Iterator quick(&list);
    Derived<Iterator> slow(&list);
    Text key, slowKey;
    unsigned handle = 0, slowHandle = 0, entries = 0;
    for (int result = 1, slowResult = 1; result && entries < 100000; entries += result) {
        const unsigned blocks = Step(quick, key, handle, result);
        const unsigned slowBlocks = Step(slow, slowKey, slowHandle, slowResult);
        EXPECT_EQ(result, slowResult);
        EXPECT_EQ(Bytes(key), Bytes(slowKey));
        EXPECT_EQ(handle, slowHandle);
        EXPECT_EQ(blocks, slowBlocks);
        EXPECT_EQ(key.vn_GetMaximumLength(), slowKey.vn_GetMaximumLength());
        EXPECT_EQ(key.pcco_GetBuffer()->n_GetUseCount(), slowKey.pcco_GetBuffer()->n_GetUseCount());
        if (testing::Test::HasFailure())
            return entries;
    }
    return entries;
}

unsigned WalkAllWays(const CT_CompList& list)
{
    const unsigned entries = WalkBothWays<CT_CString, CT_CCompListIterator>(list);
    EXPECT_EQ((WalkBothWays<CT_UString, CT_UCompListIterator>(list)), entries);
    EXPECT_EQ((WalkBothWays<CT_UString, CT_CCompListIterator>(list)), entries);
    return entries;
}
} // namespace

// Keys of up to some hundred characters, and elements wider than those of the strings among them.
TEST(CompListIteratorModel, StepsAreThoseOfADerivedClass)
{
    const unsigned seed = Seed(20261128);
    Random random(seed);
    for (const Form& form : Forms())
        for (unsigned round = 0; round < 6; ++round) {
            SCOPED_TRACE(Trace(form, seed));
            CT_CompList list(ElementSize(form.element), form.handle, 0, form.longOffsets, 128, 0);
            unsigned added = 0;
            const unsigned length = round < 3 ? 6 : 120;
            for (const Word& word : Words(random, form.element, 60, 1 + random() % 26, length))
                added += word.size() && list.b_Add(Bytes(word, form.element).data(), random());
            ASSERT_EQ(WalkAllWays(list), added);
            if (testing::Test::HasFailure())
                return;
        }
}

TEST(CompListIteratorModel, DamagedListsAreWalkedAlike)
{
    const unsigned seed = Seed(20261129);
    SCOPED_TRACE(testing::Message() << "OSTRA_SEED=" << seed);
    Random random(seed);
    for (unsigned round = 0; round < 1500; ++round) {
        const std::string bytes = DamagedBlock(random, 1 + round % 2, round);
        const CT_Buffer buffer(bytes.data(), static_cast<unsigned>(bytes.size()), 64);
        const CT_CompList list(&buffer);
        WalkAllWays(list);
        ASSERT_FALSE(testing::Test::HasFailure()) << round;
    }
}
