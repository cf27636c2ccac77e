// tests/Ostra/CompList/CompListTest.cpp: the life of a list, its head, and its bytes.
#include <Ostra/CompList/CompList.h>

#include <gtest/gtest.h>

#include <Ostra/String/CString.h>
#include <Ostra/String/UString.h>
#include <Models/CompListKey.h>
#include <Support/Directory.h>
#include <Support/Endless.h>

#include <cstddef>
#include <cstring>
#include <memory>
#include <string>

static_assert(sizeof(st_CompListHeader) == 132);
static_assert(offsetof(st_CompListHeader, n_Magic) == 0);
static_assert(offsetof(st_CompListHeader, n_End) == 4);
static_assert(offsetof(st_CompListHeader, n_CodePage) == 8);
static_assert(offsetof(st_CompListHeader, n_EmptyStringHandle) == 12);
static_assert(offsetof(st_CompListHeader, an4_JumpOffset) == 16);
static_assert(offsetof(st_CompListHeader, n_NrOfEntries) == 120);
static_assert(offsetof(st_CompListHeader, n1_NetworkByteOrder) == 124);
static_assert(offsetof(st_CompListHeader, n1_ElementSize) == 125);
static_assert(offsetof(st_CompListHeader, n1_HandleSize) == 126);
static_assert(offsetof(st_CompListHeader, n1_Flags) == 127);
static_assert(offsetof(st_CompListHeader, n1_Format) == 128);
static_assert(offsetof(st_CompListHeader, an1_Reserved) == 129);
static_assert(CT_CompList::et_ElementSize(1) == CT_CompList::es_Byte);
static_assert(CT_CompList::et_ElementSize(2) == CT_CompList::es_Short);
static_assert(CT_CompList::et_ElementSize(4) == CT_CompList::es_Long);

namespace
{
constexpr unsigned NONE = 0xFFFFFFFF;

typedef CT_CompList::et_ElementSize ElementSize;

std::string Number(unsigned value, unsigned size)
{
    std::string bytes;
    for (unsigned index = 0; index < size; ++index)
        bytes += static_cast<char>(value >> 8 * index);
    return bytes;
}

const unsigned short* Wide(const char16_t* text)
{
    return reinterpret_cast<const unsigned short*>(text);
}
} // namespace

// ---- The block ----------------------------------------------------------------------------

TEST(CompList, ANewListIsItsHeadAndTheListEnd)
{
    for (unsigned element : {1u, 2u, 4u})
        for (unsigned handle : {0u, 1u, 2u, 4u})
            for (int flags = 0; flags < 4; ++flags) {
                SCOPED_TRACE(testing::Message() << element << " " << handle << " " << flags);
                CT_CompList list(ElementSize(element), handle, flags & 1, flags & 2, 128, 1251);
                const std::string expected = Number(19970101, 4) + Number(132 + element, 4) +
                                             Number(1251, 4) + Number(NONE, 4) +
                                             std::string(104, '\0') + Number(0, 4) + Number(0, 1) +
                                             Number(element, 1) + Number(handle, 1) +
                                             Number(static_cast<unsigned>(flags), 1) +
                                             Number(1, 1) + Number(0, 3) + Number(25, element);
                EXPECT_EQ(Block(list), expected);
                EXPECT_EQ(list.n_GetElementSize(), element);
                EXPECT_EQ(list.n_GetHandleSize(), handle);
                EXPECT_EQ(list.n_GetEnd(), 132 + element);
                EXPECT_EQ(list.n_GetNrOfEntries(), 0u);
                EXPECT_EQ(list.n_GetCodePage(), 1251u);
                EXPECT_EQ(list.b_HasEmptyStringSupport(), flags & 1);
                EXPECT_EQ(list.b_HasLongOffsetSupport(), flags & 2);
                EXPECT_TRUE(list.b_IsEmpty());
                EXPECT_FALSE(list.b_IsChanged());
                EXPECT_FALSE(list.b_IsInNetworkByteOrder());
            }
}

TEST(CompList, AnyTrueValueAsksForSupport)
{
    CT_CompList list(CT_CompList::es_Byte, 2, 8, -1, 128, 0);
    EXPECT_EQ(list.b_HasEmptyStringSupport(), 1);
    EXPECT_EQ(list.b_HasLongOffsetSupport(), 2);
}

TEST(CompList, TheGrowthIs128AtLeast)
{
    const struct
    {
        unsigned growth, expected;
    } cases[] = {{0, 128}, {127, 128}, {128, 128}, {129, 129}, {5000, 5000}};
    for (const auto& row : cases) {
        SCOPED_TRACE(row.growth);
        CT_CompList list(CT_CompList::es_Byte, 2, 0, 0, row.growth, 0);
        EXPECT_EQ(list.pcco_GetBuffer()->n_GetGrowth(), row.expected);
        EXPECT_EQ(list.pcco_GetBuffer()->n_GetMaximumSize(),
                  (row.expected + 133 + 11) / row.expected * row.expected - 12);
        EXPECT_EQ(list.pcco_GetBuffer()->n_GetUsedSize(), 133u);
    }
}

TEST(CompList, TheWorkedExampleComesOutByteForByte)
{
    CT_CompList list(CT_CompList::es_Byte, 2, 0, 0, 128, 1252);
    EXPECT_EQ(list.b_Add("car", 1), 1);
    EXPECT_EQ(list.b_Add("cat", 2), 1);
    EXPECT_EQ(list.b_Add("do", 3), 1);
    EXPECT_EQ(Block(list), DataFile("complist-example.hex"));
    EXPECT_EQ(list.n_GetEnd(), 154u);
    EXPECT_EQ(list.b_Add("ca", 4), 1);
    EXPECT_EQ(list.b_Add("cart", 5), 1);
    EXPECT_EQ(Block(list), DataFile("complist-example-grown.hex"));
    EXPECT_EQ(list.n_GetEnd(), 161u);
    EXPECT_EQ(list.n_GetNrOfEntries(), 5u);
    EXPECT_TRUE(list.b_IsChanged());
}

TEST(CompList, AStoredBlockIsTheList)
{
    const std::string bytes = DataFile("complist-example-grown.hex");
    CT_Buffer buffer(bytes.data(), static_cast<unsigned>(bytes.size()), 32);
    CT_CompList list(&buffer);
    EXPECT_EQ(list.pcco_GetBuffer()->qcv_Get(), buffer.qcv_Get());
    EXPECT_EQ(list.n_GetNrOfEntries(), 5u);
    EXPECT_EQ(list.n_GetElementSize(), 1u);
    EXPECT_EQ(list.n_GetHandleSize(), 2u);
    EXPECT_EQ(list.n_GetCodePage(), 1252u);
    EXPECT_FALSE(list.b_IsChanged());
    EXPECT_EQ(list.n_Search("cart", nullptr), 5u);
    EXPECT_EQ(list.n_Search("do", nullptr), 3u);
    EXPECT_EQ(list.b_Add("dot", 6), 1);
    EXPECT_EQ(std::string(static_cast<const char*>(buffer.qcv_Get()), 7), bytes.substr(0, 7));
    EXPECT_EQ(list.n_Search("dot", nullptr), 6u);
}

TEST(CompList, TheHeadIsTakenAtItsWord)
{
    std::string bytes = DataFile("complist-example.hex");
    bytes[0] = 0;    // the magic
    bytes[120] = 77; // entries
    bytes[124] = 1;  // byte order
    bytes[127] = 1;  // empty string support
    bytes[128] = 9;  // format mark
    bytes[12] = 5, bytes[13] = bytes[14] = bytes[15] = 0;
    CT_Buffer buffer(bytes.data(), static_cast<unsigned>(bytes.size()), 32);
    CT_CompList list(&buffer);
    EXPECT_EQ(list.n_GetNrOfEntries(), 77u);
    EXPECT_TRUE(list.b_IsInNetworkByteOrder());
    EXPECT_TRUE(list.b_HasEmptyStringSupport());
    EXPECT_EQ(list.n_Search("", nullptr), 5u);
    EXPECT_EQ(list.n_Search("cat", nullptr), 2u);
}

TEST(CompList, TheFlagOfLongOffsetsSetsTheirWidth)
{
    CT_CompList written(CT_CompList::es_Byte, 2, 0, 1, 128, 0);
    written.b_Add("car", 1);
    written.b_Add("cat", 2);
    CT_CompList list(written.pcco_GetBuffer());
    EXPECT_EQ(list.n_Search("cat", nullptr), 2u);
    EXPECT_EQ(list.b_Add("cab", 3), 1);
    EXPECT_EQ(list.n_Search("cab", nullptr), 3u);
    EXPECT_EQ(list.n_Search("cat", nullptr), 2u);
}

TEST(CompList, ABlockWithoutRoomForAHeadReadsAsNothing)
{
    for (unsigned size : {0u, 1u, 20u, 100u}) {
        SCOPED_TRACE(size);
        CT_Buffer buffer(std::string(100, 'x').data(), size, 4);
        CT_CompList list(&buffer);
        EXPECT_EQ(list.pcco_GetBuffer() == nullptr, size == 0);
        EXPECT_EQ(list.n_GetEnd(), 0u);
        EXPECT_EQ(list.n_GetNrOfEntries(), 0u);
        EXPECT_EQ(list.n_Search("car", nullptr), 0u);
        EXPECT_EQ(list.b_Add("car", 1), 0);
    }
}

TEST(CompList, ACutBlockEndsWhereItsBytesEnd)
{
    const std::string bytes = DataFile("complist-example-grown.hex");
    for (unsigned size = 127; size < bytes.size(); ++size) {
        SCOPED_TRACE(size);
        const std::string cut = bytes.substr(0, size) + std::string(12, '\0');
        CT_Buffer buffer(cut.data(), static_cast<unsigned>(cut.size()), 1);
        buffer.v_SetUsedSize(size);
        CT_CompList list(&buffer);
        EXPECT_EQ(list.n_GetEnd(), 161u);
        unsigned matched;
        list.n_Search("cart", &matched);
        list.n_Search("do", &matched);
        list.n_Search("zebra", &matched);
        EXPECT_EQ(list.n_Search("ca", &matched), size < 138u ? NONE : size < 140u ? 0u : 4u);
    }
}

namespace
{
// b, a, a mark that leads to the other b, and a leaf end; its offset isn't the list's own.
std::string ListThatLeads(unsigned element, unsigned offset)
{
    CT_CompList list(CT_CompList::et_ElementSize(element), 1, 0, 1, 128, 0);
    list.b_Add(element == 1 ? "ba\0\0" : reinterpret_cast<const char*>(u"ba"), 1);
    list.b_Add(element == 1 ? "bb\0\0" : reinterpret_cast<const char*>(u"bb"), 2);
    return Block(list).replace(132 + 3 * element, 4, Number(offset, 4));
}

void SearchAndAdd(const std::string& bytes)
{
    const CT_Buffer buffer(bytes.data(), static_cast<unsigned>(bytes.size()), 32);
    CT_CompList list(&buffer);
    const bool wide = list.n_GetElementSize() == 2;
    const auto search = [&](const char* narrow, const char16_t* key, unsigned* matched) {
        return wide ? list.n_Search(Wide(key), matched) : list.n_Search(narrow, matched);
    };
    unsigned matched = 7;
    EXPECT_EQ(search("ba", u"ba", &matched), 1u);
    EXPECT_EQ(matched, 2u);
    EXPECT_EQ(search("bb", u"bb", &matched), NONE);
    EXPECT_EQ(matched, 0u);
    EXPECT_EQ(search("bc", u"bc", nullptr), NONE);
    EXPECT_EQ(wide ? list.b_Add(Wide(u"bc"), 3) : list.b_Add("bc", 3), 0);
    EXPECT_EQ(Block(list), bytes);
}

ENDLESS(AlternativesThatLeadBack)
{
    for (unsigned element : {1u, 2u})
        for (unsigned back = 1; back <= 2 * element; ++back)
            SearchAndAdd(ListThatLeads(element, 0 - back));
}
} // namespace

TEST(CompList, ASearchEndsAtAnAlternativeThatLeadsBackOrOutOfTheBlock)
{
    ASSERT_FALSE(RunsForEver("AlternativesThatLeadBack"));
    for (unsigned element : {1u, 2u}) {
        for (unsigned back : {1u, 2u, 3u, 100u, 134u, 200u, 0x80000000u}) {
            SCOPED_TRACE(testing::Message() << element << " " << back);
            SearchAndAdd(ListThatLeads(element, 0 - back));
        }
        for (unsigned out : {100u, 10000u, 0x7FFFFF00u})
            SearchAndAdd(ListThatLeads(element, out));
    }
}

// ---- Sharing ------------------------------------------------------------------------------

TEST(CompList, AListOfAListSharesTheBlockAndTakesTheChangedFlag)
{
    CT_CompList list(CT_CompList::es_Short, 4, 1, 1, 128, 0);
    CT_CompList fresh(&list);
    EXPECT_FALSE(fresh.b_IsChanged());
    list.b_Add(Wide(u"word"), 7);
    CT_CompList copy(&list);
    EXPECT_TRUE(copy.b_IsChanged());
    EXPECT_EQ(copy.pcco_GetBuffer()->qcv_Get(), list.pcco_GetBuffer()->qcv_Get());
    EXPECT_EQ(copy.pcco_GetBuffer()->n_GetGrowth(), list.pcco_GetBuffer()->n_GetGrowth());
    EXPECT_EQ(copy.n_Search(Wide(u"word"), nullptr), 7u);
    EXPECT_EQ(fresh.n_Search(Wide(u"word"), nullptr), NONE);

    CT_CompList buffered(list.pcco_GetBuffer());
    EXPECT_FALSE(buffered.b_IsChanged());
}

TEST(CompList, InsertedBytesGoToABlockOfTheirOwn)
{
    CT_CompList list(CT_CompList::es_Byte, 1, 0, 0, 128, 0);
    list.b_Add("car", 1);
    CT_CompList copy(&list);
    EXPECT_EQ(copy.b_Add("cat", 2), 1);
    EXPECT_EQ(list.n_Search("cat", nullptr), NONE);
    EXPECT_EQ(list.n_GetNrOfEntries(), 1u);
    EXPECT_EQ(copy.n_GetNrOfEntries(), 2u);
    EXPECT_EQ(copy.pcco_GetBuffer()->n_GetUseCount(), 1u);
}

TEST(CompList, ALeafEndThatOpensIsSeenByEveryHolder)
{
    CT_CompList list(CT_CompList::es_Byte, 1, 0, 0, 128, 0);
    list.b_Add("car", 1);
    CT_CompList copy(&list);
    ASSERT_EQ(Block(list).substr(135), Hex("1A 01 19"));
    EXPECT_EQ(copy.b_Add("cart", 2), 1);
    EXPECT_EQ(Block(list).substr(135), Hex("0A 01 19"));
    EXPECT_EQ(Block(copy).substr(135), Hex("0A 01 74 1A 02 19"));
    EXPECT_EQ(list.n_GetNrOfEntries(), 1u);
}

TEST(CompList, TheEmptyStringIsStoredForEveryHolder)
{
    CT_CompList list(CT_CompList::es_Byte, 1, 1, 0, 128, 0);
    CT_CompList copy(&list);
    EXPECT_EQ(copy.b_Add("", 9), 1);
    EXPECT_EQ(list.n_Search("", nullptr), 9u);
    EXPECT_EQ(list.n_GetNrOfEntries(), 1u);
    EXPECT_EQ(list.pcco_GetBuffer()->n_GetUseCount(), 2u);
}

// ---- v_Set --------------------------------------------------------------------------------

TEST(CompList, SetStartsANewList)
{
    CT_CompList list(CT_CompList::es_Byte, 1, 1, 0, 128, 1250);
    list.b_Add("", 4);
    list.b_Add("car", 1);
    CT_CompList holder(&list);
    list.v_Set(CT_CompList::es_Short, 4, 0, 1, 256, 1252);
    CT_CompList fresh(CT_CompList::es_Short, 4, 0, 1, 256, 1252);
    EXPECT_EQ(Block(list), Block(fresh));
    EXPECT_FALSE(list.b_IsChanged());
    EXPECT_EQ(list.pcco_GetBuffer()->n_GetGrowth(), 256u);
    EXPECT_EQ(holder.n_Search("car", nullptr), 1u);
    EXPECT_EQ(list.b_Add(Wide(u"car"), 70000), 1);
    EXPECT_EQ(list.n_Search(Wide(u"car"), nullptr), 70000u);
}

TEST(CompList, SetOnAnUnsharedListClearsItsBytes)
{
    CT_CompList list(CT_CompList::es_Byte, 1, 1, 0, 128, 1250);
    list.b_Add("", 4);
    list.b_Add("z", 1);
    list.v_Set(CT_CompList::es_Byte, 1, 1, 0, 128, 1250);
    CT_CompList fresh(CT_CompList::es_Byte, 1, 1, 0, 128, 1250);
    EXPECT_EQ(Block(list), Block(fresh));
}

TEST(CompList, SetFromAListOrABufferShares)
{
    CT_CompList source(CT_CompList::es_Short, 2, 0, 1, 128, 0),
        list(CT_CompList::es_Byte, 1, 0, 0, 128, 0);
    source.b_Add(Wide(u"ab"), 1);
    source.b_Add(Wide(u"ac"), 2);
    list.v_Set(&source);
    EXPECT_TRUE(list.b_IsChanged());
    EXPECT_EQ(list.n_Search(Wide(u"ac"), nullptr), 2u);
    EXPECT_EQ(list.b_Add(Wide(u"ad"), 3), 1);
    EXPECT_EQ(source.n_GetNrOfEntries(), 2u);
    list.v_Set(source.pcco_GetBuffer());
    EXPECT_FALSE(list.b_IsChanged());
    EXPECT_EQ(list.n_GetNrOfEntries(), 2u);
    EXPECT_EQ(list.n_Search(Wide(u"ac"), nullptr), 2u);
    list.v_Set(&list);
    EXPECT_EQ(list.n_Search(Wide(u"ac"), nullptr), 2u);
}

TEST(CompList, TheHeapGivesAndTakesLists)
{
    std::unique_ptr<CT_CompList> list(new CT_CompList(CT_CompList::es_Byte, 1, 0, 0, 128, 0));
    EXPECT_TRUE(list->b_IsEmpty());
    alignas(CT_CompList) char place[sizeof(CT_CompList)];
    CT_CompList* placed = new (place) CT_CompList(list.get());
    EXPECT_EQ(placed->n_GetEnd(), 133u);
    placed->~CT_CompList();
}

// ---- Adding -------------------------------------------------------------------------------

TEST(CompList, AKnownKeyKeepsItsHandleAndLeavesTheList)
{
    CT_CompList list(CT_CompList::es_Byte, 2, 0, 0, 128, 0);
    list.b_Add("car", 1);
    list.b_Add("ca", 2);
    CT_CompList stored(list.pcco_GetBuffer());
    const std::string before = Block(stored);
    EXPECT_EQ(stored.b_Add("car", 9), 0);
    EXPECT_EQ(stored.b_Add("ca", 9), 0);
    EXPECT_EQ(Block(stored), before);
    EXPECT_FALSE(stored.b_IsChanged());
    EXPECT_EQ(stored.n_GetNrOfEntries(), 2u);
    EXPECT_EQ(stored.pcco_GetBuffer()->n_GetUseCount(), 2u);
}

TEST(CompList, TheEmptyKeyNeedsSupport)
{
    CT_CompList list(CT_CompList::es_Byte, 2, 0, 0, 128, 0);
    unsigned matched = 5;
    EXPECT_EQ(list.b_Add("", 1), 0);
    EXPECT_EQ(list.n_GetNrOfEntries(), 0u);
    EXPECT_EQ(list.n_Search("", &matched), 0u);
    EXPECT_EQ(matched, 0u);
    EXPECT_TRUE(list.b_Search("", nullptr));
}

TEST(CompList, TheEmptyKeyIsAddedAndCountedEachTime)
{
    CT_CompList list(CT_CompList::es_Short, 1, 1, 0, 128, 0);
    unsigned matched = 5;
    EXPECT_FALSE(list.b_Search(Wide(u""), &matched));
    EXPECT_EQ(matched, 0u);
    EXPECT_EQ(list.b_Add(Wide(u""), 0x12345678), 1);
    EXPECT_EQ(list.n_Search(Wide(u""), nullptr), 0x12345678u);
    EXPECT_EQ(list.b_Add(Wide(u""), 6), 1);
    EXPECT_EQ(list.n_Search(Wide(u""), nullptr), 6u);
    EXPECT_EQ(list.n_GetNrOfEntries(), 2u);
    EXPECT_TRUE(list.b_IsEmpty());
    EXPECT_FALSE(list.b_IsChanged());
}

TEST(CompList, HandlesAreCutToTheirSize)
{
    const struct
    {
        unsigned size, expected;
    } cases[] = {{0, 0}, {1, 0x78}, {2, 0x5678}, {4, 0x12345678}};
    for (const auto& row : cases) {
        SCOPED_TRACE(row.size);
        CT_CompList list(CT_CompList::es_Byte, row.size, 0, 0, 128, 0);
        EXPECT_EQ(list.b_Add("ab", 0x12345678), 1);
        EXPECT_EQ(list.b_Add("a", 0x12345678), 1);
        EXPECT_EQ(list.n_Search("ab", nullptr), row.expected);
        EXPECT_EQ(list.n_Search("a", nullptr), row.expected);
        EXPECT_EQ(list.n_GetEnd(), 133 + 4 + 2 * row.size);
    }
}

TEST(CompList, AHandleOfAllBitsLooksLikeNone)
{
    CT_CompList wide(CT_CompList::es_Byte, 4, 0, 0, 128, 0),
        narrow(CT_CompList::es_Byte, 2, 0, 0, 128, 0);
    wide.b_Add("a", NONE);
    narrow.b_Add("a", NONE);
    unsigned matched = 0;
    EXPECT_EQ(wide.n_Search("a", &matched), NONE);
    EXPECT_EQ(matched, 1u);
    EXPECT_FALSE(wide.b_Search("a", nullptr));
    EXPECT_EQ(wide.b_Add("a", 1), 0);
    EXPECT_EQ(narrow.n_Search("a", nullptr), 0xFFFFu);
    EXPECT_TRUE(narrow.b_Search("a", nullptr));
}

TEST(CompList, KeysComeInEveryForm)
{
    CT_CompList bytes(CT_CompList::es_Byte, 1, 1, 0, 128, 0),
        units(CT_CompList::es_Short, 1, 1, 0, 128, 0);
    CT_CString narrow("narrow", -1, 0), nothing;
    CT_UString wide(Wide(u"wide"), -1), empty;
    unsigned matched = 0;
    EXPECT_EQ(bytes.b_Add("text", 1), 1);
    EXPECT_EQ(bytes.b_Add(&narrow, 2), 1);
    EXPECT_EQ(bytes.b_Add(&nothing, 3), 1);
    EXPECT_EQ(bytes.n_Search("narrow", nullptr), 2u);
    EXPECT_EQ(bytes.n_Search(&narrow, &matched), 2u);
    EXPECT_EQ(matched, 6u);
    EXPECT_TRUE(bytes.b_Search(&narrow, nullptr));
    EXPECT_EQ(bytes.n_Search(&nothing, nullptr), 3u);
    EXPECT_TRUE(bytes.b_Search(&nothing, nullptr));

    EXPECT_EQ(units.b_Add(Wide(u"text"), 4), 1);
    EXPECT_EQ(units.b_Add(&wide, 5), 1);
    EXPECT_EQ(units.b_Add(&empty, 6), 1);
    EXPECT_EQ(units.n_Search(Wide(u"wide"), nullptr), 5u);
    EXPECT_EQ(units.n_Search(&wide, &matched), 5u);
    EXPECT_EQ(matched, 4u);
    EXPECT_TRUE(units.b_Search(&wide, nullptr));
    EXPECT_TRUE(units.b_Search(Wide(u"text"), nullptr));
    EXPECT_EQ(units.n_Search(&empty, nullptr), 6u);
    EXPECT_TRUE(units.b_Search(&empty, nullptr));
    EXPECT_EQ(units.n_GetNrOfEntries(), 3u);
}

TEST(CompList, TheElementSizeRulesNotThePointer)
{
    CT_CompList units(CT_CompList::es_Short, 1, 0, 0, 128, 0),
        bytes(CT_CompList::es_Byte, 1, 0, 0, 128, 0);
    EXPECT_EQ(units.b_Add(reinterpret_cast<const char*>(u"ab"), 1), 1);
    EXPECT_EQ(units.n_Search(Wide(u"ab"), nullptr), 1u);
    const char key[] = "ab";
    alignas(2) char aligned[4];
    std::memcpy(aligned, key, 3);
    EXPECT_EQ(bytes.b_Add(reinterpret_cast<const unsigned short*>(aligned), 2), 1);
    EXPECT_EQ(bytes.n_Search("ab", nullptr), 2u);
    // The same of strings: the bytes of an 8-bit text, read as units.
    CT_CString text("a\0b\0\0", 5, 0);
    EXPECT_EQ(units.n_Search(&text, nullptr), 1u);
}

TEST(CompList, GrowingSetsTheGrowthTo32)
{
    CT_CompList list(CT_CompList::es_Byte, 4, 0, 0, 1000, 0);
    const unsigned room = list.pcco_GetBuffer()->n_GetMaximumSize();
    const std::string filling(room - 133 - 5, 'x');
    list.b_Add(filling.c_str(), 1);
    ASSERT_EQ(list.pcco_GetBuffer()->n_GetUsedSize(), room);
    EXPECT_EQ(list.pcco_GetBuffer()->n_GetGrowth(), 1000u);
    const unsigned before = CT_Buffer::sn_GetAllocCount();
    list.b_Add("y", 1);
    // A mark of three bytes, then a branch of six: the first step of 32 bytes holds both.
    EXPECT_EQ(CT_Buffer::sn_GetAllocCount(), before + 1);
    EXPECT_EQ(list.pcco_GetBuffer()->n_GetGrowth(), 32u);
    EXPECT_EQ(list.pcco_GetBuffer()->n_GetMaximumSize(), (32 + room + 3 + 11) / 32 * 32 - 12);
}

TEST(CompList, AKeyLongerThanTheBlockIsAdded)
{
    CT_CompList list(CT_CompList::es_Byte, 1, 0, 0, 128, 0);
    const std::string key(5000, 'k');
    EXPECT_EQ(list.b_Add(key.c_str(), 3), 1);
    unsigned matched = 0;
    EXPECT_EQ(list.n_Search(key.c_str(), &matched), 3u);
    EXPECT_EQ(matched, 5000u);
    EXPECT_EQ(Block(list).substr(132), key + Hex("1A 03 19"));
}
