// tests/Ostra/CompList/CompListBuilderTest.cpp: building lists, and what is reported.
#include <Ostra/CompList/CompListBuilder.h>

#include <gtest/gtest.h>

#include <Ostra/String/CString.h>
#include <Ostra/String/UString.h>
#include <Models/CompListKey.h>
#include <Support/Directory.h>
#include <Support/Failure.h>

#include <memory>
#include <string>

namespace
{
const char* const SOURCE = "Ostra/CompList/CompListBuilder";
const Failure RESERVED = {60012, "(60012): Semantic error: reserved element in a key", {SOURCE}};
const Failure LIMIT = {60021, "(60021): Limits violated", {SOURCE}};

class CompListBuilder : public testing::Test
{
protected:
    static std::string Built(const CT_CompListBuilder& from)
    {
        CT_CompList list(CT_CompList::es_Byte, 0, 0, 0, 128, 0);
        from.v_Build(&list);
        return Block(list);
    }

    CT_CompListBuilder builder{CT_CompList::es_Byte, 2, 0, 0, 128, 1252};
};
} // namespace

// ---- The block ----------------------------------------------------------------------------

TEST_F(CompListBuilder, ANewListIsItsHeadAndTheListEnd)
{
    const CT_CompList list(CT_CompList::es_Byte, 2, 0, 0, 128, 1252);
    EXPECT_EQ(Built(builder), Block(list));
    EXPECT_EQ(builder.n_GetEnd(), 133u);
    EXPECT_EQ(builder.n_GetNrOfEntries(), 0u);
}

TEST_F(CompListBuilder, TheWorkedExampleComesOutByteForByte)
{
    EXPECT_EQ(builder.b_Add("car", 1), 1);
    EXPECT_EQ(builder.b_Add("cat", 2), 1);
    EXPECT_EQ(builder.b_Add("do", 3), 1);
    EXPECT_EQ(Built(builder), DataFile("complist-example.hex"));
    EXPECT_EQ(builder.n_GetEnd(), 154u);
    EXPECT_EQ(builder.n_GetNrOfEntries(), 3u);

    EXPECT_EQ(builder.b_Add("ca", 4), 1);
    EXPECT_EQ(builder.b_Add("cart", 5), 1);
    EXPECT_EQ(Built(builder), DataFile("complist-example-grown.hex"));
    EXPECT_EQ(builder.n_GetEnd(), 161u);
    EXPECT_EQ(builder.n_GetNrOfEntries(), 5u);
}

TEST_F(CompListBuilder, AKnownKeyKeepsItsHandle)
{
    builder.b_Add("car", 1);
    builder.b_Add("ca", 2);
    const std::string before = Built(builder);
    EXPECT_EQ(builder.b_Add("car", 7), 0);
    EXPECT_EQ(builder.b_Add("ca", 7), 0);
    EXPECT_EQ(Built(builder), before);
    EXPECT_EQ(builder.n_GetNrOfEntries(), 2u);
}

TEST_F(CompListBuilder, TheEmptyKeyNeedsSupportAndCountsEachTime)
{
    EXPECT_EQ(builder.b_Add("", 1), 0);
    EXPECT_EQ(builder.n_GetNrOfEntries(), 0u);

    builder.v_Set(CT_CompList::es_Short, 4, 7, 1, 128, 1200);
    CT_CompList list(CT_CompList::es_Short, 4, 7, 1, 128, 1200);
    const std::string empty(2, '\0');
    for (const unsigned handle : {5u, 6u}) {
        EXPECT_EQ(builder.b_Add(empty.data(), handle), 1);
        EXPECT_EQ(list.b_Add(empty.data(), handle), 1);
    }
    EXPECT_EQ(builder.n_GetNrOfEntries(), 2u);
    EXPECT_EQ(Built(builder), Block(list));
}

TEST_F(CompListBuilder, KeysComeInEveryForm)
{
    const CT_CString narrow("narrow");
    EXPECT_EQ(builder.b_Add(&narrow, 1), 1);
    EXPECT_EQ(builder.b_Add(static_cast<const CT_CString*>(nullptr), 2), 0);
    builder.v_Set(CT_CompList::es_Short, 2, 1, 0, 128, 1200);
    const CT_UString wide(Units(u"wide"));
    EXPECT_EQ(builder.b_Add(&wide, 3), 1);
    EXPECT_EQ(builder.b_Add(Units(u"wider"), 4), 1);
    EXPECT_EQ(builder.b_Add(Key("wid", 2).data(), 5), 1);
    EXPECT_EQ(builder.b_Add(static_cast<const CT_UString*>(nullptr), 6), 1);
    CT_CompList list(CT_CompList::es_Byte, 0, 0, 0, 128, 0);
    builder.v_Build(&list);
    EXPECT_EQ(list.n_Search(&wide, nullptr), 3u);
    EXPECT_EQ(list.n_Search(Units(u"wider"), nullptr), 4u);
    EXPECT_EQ(list.n_Search(Units(u"wid"), nullptr), 5u);
    EXPECT_EQ(list.n_Search(Units(u""), nullptr), 6u);
    EXPECT_EQ(list.n_GetNrOfEntries(), 4u);
}

TEST_F(CompListBuilder, SetForgetsWhatWasBuilt)
{
    builder.b_Add("car", 1);
    CT_CompList list(CT_CompList::es_Byte, 1, 0, 0, 128, 0);
    list.b_Add("dog", 9);
    builder.v_Set(&list);
    EXPECT_EQ(Built(builder), Block(list));
    builder.v_Set(list.pcco_GetBuffer());
    EXPECT_EQ(Built(builder), Block(list));
    builder.v_Set(CT_CompList::es_Byte, 1, 0, 0, 128, 0);
    EXPECT_EQ(builder.n_GetNrOfEntries(), 0u);
}

TEST_F(CompListBuilder, TheBlocksOfABuilderAreNobodyElses)
{
    CT_CompList source(CT_CompList::es_Byte, 2, 1, 0, 128, 0);
    source.b_Add("car", 1);
    const CT_CompListBuilder from(&source);
    CT_CompList first(&source);
    from.v_Build(&first);
    CT_CompList second(&source);
    from.v_Build(&second);
    // What would be seen by every holder of the block.
    first.b_Add("", 5);
    first.b_Add("carts", 2);
    EXPECT_EQ(Block(second), Block(source));
    EXPECT_EQ(Built(from), Block(source));
}

// Bytes of a head that nobody reads stay as they came.
TEST_F(CompListBuilder, TheHeadOfABlockStays)
{
    builder.b_Add("car", 1);
    std::string bytes = Built(builder);
    bytes[0] = 'x';
    bytes[8] = 'y';
    bytes[124] = 1;
    bytes[127] = static_cast<char>(bytes[127] | 0x40);
    bytes[129] = 'z';
    const CT_Buffer buffer(bytes.data(), static_cast<unsigned>(bytes.size()), 32);
    CT_CompListBuilder other(&buffer);
    EXPECT_EQ(Built(other), bytes);
    CT_CompList list(&buffer);
    EXPECT_EQ(other.b_Add("dog", 2), 1);
    EXPECT_EQ(list.b_Add("dog", 2), 1);
    EXPECT_EQ(Built(other), Block(list));
}

TEST_F(CompListBuilder, ABlockWithoutRoomForAHeadTakesNoKeys)
{
    const CT_Buffer none;
    const CT_Buffer little("abc", 3, 32);
    for (const CT_Buffer* buffer : {&none, &little}) {
        CT_CompListBuilder other(buffer);
        EXPECT_EQ(other.b_Add("car", 1), CT_CompList(buffer).b_Add("car", 1));
        EXPECT_EQ(other.n_GetEnd(), 0u);
        EXPECT_EQ(other.n_GetNrOfEntries(), CT_CompList(buffer).n_GetNrOfEntries());
    }
}

// Handles of three bytes are never written, and elements of three can't be read.
TEST_F(CompListBuilder, UnknownSizesAreTakenAsAListTakesThem)
{
    CT_CompList list(CT_CompList::es_Byte, 3, 0, 0, 128, 0);
    builder.v_Set(CT_CompList::es_Byte, 3, 0, 0, 128, 0);
    for (const char* key : {"car", "cat", "ca", "cats"})
        EXPECT_EQ(builder.b_Add(key, 0x01020304), list.b_Add(key, 0x01020304));
    EXPECT_EQ(Built(builder), Block(list));
    builder.v_Set(CT_CompList::et_ElementSize(3), 1, 0, 0, 128, 0);
    EXPECT_EQ(builder.b_Add("abcdef\0\0", 1), 0);
}

TEST_F(CompListBuilder, TheHeapGivesAndTakesBuilders)
{
    const auto made = std::make_unique<CT_CompListBuilder>(CT_CompList::es_Byte, 2, 0, 0, 128, 0);
    auto* object = new CT_CompListBuilder(CT_CompList::es_Byte, 2, 0, 0, 128, 0);
    EXPECT_EQ(object->b_Add("car", 1), 1);
    EXPECT_EQ(made->n_GetNrOfEntries(), 0u);
    delete object;
}

// ---- Reports ------------------------------------------------------------------------------

TEST_F(CompListBuilder, AReservedElementIsReportedAndTheKeyLeftOut)
{
    for (const unsigned element : {1u, 2u, 4u})
        for (const char reserved : {10, 13, 25, 26}) {
            SCOPED_TRACE(testing::Message() << element << " " << int(reserved));
            builder.v_Set(CT_CompList::et_ElementSize(element), 2, 1, 1, 128, 0);
            // Four-byte elements without a unit of 0 are plain, so that a zero one in them is the
            // reserved one's.
            const std::string plain =
                element == 4 ? std::string("abcdefgh\0\0\0\0", 12) : Key("ab", element);
            builder.b_Add(plain.data(), 1);
            const std::string before = Built(builder);
            for (const std::string& text : {std::string{reserved}, std::string("ab") + reserved,
                                            std::string("x") + reserved + "y"}) {
                EXPECT_EQ(builder.b_Add(Key(text, element).data(), 2), 0);
                EXPECT_EQ(TakeFailure(), RESERVED);
            }
            EXPECT_EQ(Built(builder), before);
            EXPECT_EQ(builder.n_GetNrOfEntries(), 1u);
        }
}

TEST_F(CompListBuilder, ElementsThatOnlyLookReservedAreNot)
{
    builder.v_Set(CT_CompList::es_Short, 2, 1, 1, 128, 0);
    CT_CompList list(CT_CompList::es_Short, 2, 1, 1, 128, 0);
    for (const char16_t* key : {u"\u0A0A", u"\u0D0D\u1A00", u"\u1919\u0A00\u190A", u"\u0D00"}) {
        EXPECT_EQ(builder.b_Add(Units(key), 1), 1);
        EXPECT_EQ(list.b_Add(Units(key), 1), 1);
    }
    EXPECT_EQ(Built(builder), Block(list));
}

// The last offset that fits, and the first that doesn't.
TEST_F(CompListBuilder, AnOffsetBeyondItsFieldIsReported)
{
    for (const unsigned more : {0u, 1u}) {
        SCOPED_TRACE(more);
        for (const int longOffsets : {0, 1}) {
            builder.v_Set(CT_CompList::es_Byte, 2, 0, longOffsets, 128, 0);
            CT_CompList list(CT_CompList::es_Byte, 2, 0, longOffsets, 128, 0);
            // From its mark to the target: mark and offset, the key's rest, leaf end and handle.
            const std::string key(65535 - 3 - 3 + 1 + more, 'x');
            for (const std::string& next : {key, std::string("b")}) {
                EXPECT_EQ(builder.b_Add(next.c_str(), 1), 1);
                list.b_Add(next.c_str(), 1);
            }
            CT_Buffer block;
            builder.v_Build(&block);
            CT_CompList target(CT_CompList::es_Byte, 0, 0, 0, 128, 5);
            if (more && !longOffsets) {
                EXPECT_EQ(TakeFailure(), LIMIT);
                EXPECT_EQ(block.qcv_Get(), nullptr);
                builder.v_Build(&target);
                EXPECT_EQ(TakeFailure(), LIMIT);
                EXPECT_EQ(target.n_GetCodePage(), 5u);
            } else
                EXPECT_EQ(Built(builder), Block(list));
        }
    }
}

// A key that is cut makes a list of what was built, which may be too large.
TEST_F(CompListBuilder, AKeyThatIsCutIsReportedWhenTheListCantBeMade)
{
    builder.v_Set(CT_CompList::es_Long, 2, 0, 0, 128, 0);
    builder.b_Add((std::string(70000, 'x') + std::string(4, '\0')).data(), 1);
    builder.b_Add((std::string(4, 'y') + std::string(4, '\0')).data(), 1);
    EXPECT_EQ(builder.b_Add(Key("ab", 4).data(), 1), 0);
    EXPECT_EQ(TakeFailure(), LIMIT);
    EXPECT_EQ(builder.n_GetNrOfEntries(), 2u);
}
