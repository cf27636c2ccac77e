// tests/Tools/ListCheckTest.cpp: the validating reader of compressed lists, and their hex text.
#include "ListCheck.h"
#include "ListDump.h"

#include <Ostra/CompList/CompList.h>

#include <gtest/gtest.h>

#include <Models/CompListKey.h>
#include <Support/Directory.h>

#include <filesystem>
#include <random>
#include <string>
#include <vector>

namespace
{
typedef CT_CompList::et_ElementSize ElementSize;

std::string Put(std::string bytes, std::size_t offset, const std::string& hex)
{
    const std::string put = Hex(hex);
    return bytes.replace(offset, put.size(), put);
}

// The head of a list without keys, and a stream.
std::string WithStream(const std::string& hex)
{
    CT_CompList list(CT_CompList::es_Byte, 1, 0, 0, 128, 0);
    std::string bytes = Block(list).substr(0, 132) + Hex(hex);
    bytes[4] = static_cast<char>(bytes.size());
    return bytes;
}

// A key of that element size that no rule forbids.
std::string RandomKey(std::mt19937& random, unsigned element)
{
    std::string text;
    for (unsigned length = 1 + random() % 6; length > 0; --length)
        text += static_cast<char>('a' + random() % 4);
    std::string key = Key(text, element);
    if (element == 4) // no unit of 0 but the last
        for (std::size_t at = 0; at + 4 < key.size(); at += 4)
            key[at + 2] = 1;
    return key;
}
} // namespace

TEST(ListCheck, WhatTheLibraryWritesIsSound)
{
    const unsigned seed = Seed(19970101);
    std::mt19937 random(seed);
    for (unsigned element : {1u, 2u, 4u})
        for (unsigned handle : {0u, 1u, 2u, 4u})
            for (int flags = 0; flags < 4; ++flags) {
                SCOPED_TRACE(testing::Message()
                             << element << " " << handle << " " << flags << " OSTRA_SEED=" << seed);
                CT_CompList list(ElementSize(element), handle, flags & 1, flags & 2, 128, 1252);
                EXPECT_EQ(CheckList(Block(list)).rule, "");
                list.b_Add(Key("", element).data(), 7);
                list.b_Add(Key("", element).data(), 8);
                for (int count = 0; count < 200; ++count) {
                    list.b_Add(RandomKey(random, element).data(), random());
                    const ListVerdict verdict = CheckList(Block(list));
                    ASSERT_TRUE(verdict.sound) << DescribeListVerdict(verdict);
                }
            }
}

TEST(ListCheck, TheWorkedExamplesAreSound)
{
    EXPECT_EQ(DescribeListVerdict(CheckList(DataFile("complist-example.hex"))), "sound\n");
    EXPECT_EQ(DescribeListVerdict(CheckList(DataFile("complist-example-grown.hex"))), "sound\n");
}

TEST(ListCheck, EachRuleIsFoundWhereItBreaks)
{
    const std::string example = DataFile("complist-example-grown.hex");
    const struct
    {
        std::string bytes;
        unsigned offset;
        const char* rule;
    } cases[] = {
        {"", 0, "shorter than a head"},
        {example.substr(0, 131), 131, "shorter than a head"},
        {Put(example, 3, "02"), 0, "not the magic of a list"},
        {Put(example, 4, "A2"), 4, "the end isn't the number of bytes"},
        {example + '\x19', 4, "the end isn't the number of bytes"},
        {Put(example, 124, "01"), 124, "numbers in network byte order"},
        {Put(example, 125, "03"), 125, "an element size other than 1, 2 and 4"},
        {Put(example, 125, "00"), 125, "an element size other than 1, 2 and 4"},
        {Put(example, 126, "03"), 126, "a handle size other than 0, 1, 2 and 4"},
        {Put(example, 127, "04"), 127, "an unknown flag"},
        {Put(example, 128, "00"), 128, "a format mark other than 1"},
        {Put(example, 12, "01"), 12, "a handle of the empty string without support for it"},
        {WithStream(""), 132, "no list end"},
        {WithStream("61"), 133, "no list end"},
        {WithStream("61 1A 19"), 135, "no list end"},
        {WithStream("61 1A 01 1A"), 135, "an item that passes the end"},
        {WithStream("61 0D 01"), 133, "an item that passes the end"},
        {WithStream("00 19"), 132, "an element of value 0"},
        {WithStream("61 19 19"), 133, "a list end before the end"},
        {WithStream("61 19"), 133, "a branch without a leaf end"},
        {WithStream("0D 01 00 19"), 132, "an alternative that isn't behind a character"},
        {WithStream("61 0D 01 00 0D 01 00 1A 01 19"), 136,
         "an alternative that isn't behind a character"},
        {WithStream("61 0A 01 0D 01 00 62 1A 01 19"), 135,
         "an alternative that isn't behind a character"},
        {WithStream("0A 01 61 1A 01 19"), 132, "an inner end that isn't behind a character"},
        {WithStream("61 0A 01 0A 01 62 1A 01 19"), 135,
         "an inner end that isn't behind a character"},
        {WithStream("1A 01 19"), 132, "a leaf end that isn't behind a character"},
        {WithStream("61 0A 01 1A 01 19"), 135, "a leaf end that isn't behind a character"},
        {WithStream("61 0A 01 19"), 135, "a branch without a leaf end"},
        {Put(example, 134, "00 00"), 133, "an offset that doesn't lead forward"},
        {Put(example, 134, "1C 00"), 133, "an offset that doesn't lead to an element"},
        {Put(example, 134, "19 00"), 133, "an offset that doesn't lead to an element"},
        {Put(example, 134, "FF FF"), 133, "an offset that doesn't lead to an element"},
        {Put(example, 134, "1B 00"), 133, "an offset that doesn't lead to a branch of its own"},
        {Put(example, 134, "17 00"), 133, "an offset that doesn't lead to a branch of its own"},
        {Put(example, 134, "12 00"), 141, "an offset that doesn't lead to a branch of its own"},
        {WithStream("61 1A 01 62 1A 02 19"), 135, "a branch that no alternative leads to"},
        {Put(example, 155, "63"), 155, "the same character twice at one place"},
        {Put(example, 24, "00"), 24, "a jump offset that misses its letter"},
        {Put(example, 16, "88"), 16, "a jump offset that misses its letter"},
        {Put(example, 28, "84"), 28, "a jump offset that misses its letter"},
        {Put(example, 120, "04"), 120, "the number of entries isn't that of the keys"},
        {Put(example, 120, "06"), 120, "the number of entries isn't that of the keys"},
        {Put(Put(example, 120, "04"), 127, "01"), 120,
         "the number of entries isn't that of the keys"},
    };
    unsigned row = 0;
    for (const auto& damage : cases) {
        SCOPED_TRACE(row++);
        const ListVerdict verdict = CheckList(damage.bytes);
        EXPECT_FALSE(verdict.sound);
        EXPECT_EQ(verdict.rule, damage.rule);
        EXPECT_EQ(verdict.offset, damage.offset);
    }
}

TEST(ListCheck, WideElementsMustBeWhole)
{
    CT_CompList list(CT_CompList::es_Short, 1, 0, 0, 128, 0);
    list.b_Add(Key("a", 2).data(), 1);
    std::string bytes = Block(list) + '\0';
    bytes[4] = static_cast<char>(bytes.size());
    // The list end is no longer the last element.
    EXPECT_EQ(CheckList(bytes).rule, "a list end before the end");
    bytes = Block(list);
    bytes.resize(bytes.size() - 1);
    bytes[4] = static_cast<char>(bytes.size());
    EXPECT_EQ(CheckList(bytes).rule, "the rest of an element");
    EXPECT_EQ(CheckList(bytes).offset, bytes.size() - 1);
}

TEST(ListCheck, WhatMayDifferIsSound)
{
    const std::string example = DataFile("complist-example-grown.hex");
    EXPECT_TRUE(CheckList(Put(example, 8, "01 02 03 04")).sound) << "the code page";
    EXPECT_TRUE(CheckList(Put(example, 129, "CC CC CC")).sound) << "the reserved bytes";
    EXPECT_TRUE(CheckList(Put(example, 127, "01")).sound) << "empty string support";
    EXPECT_TRUE(CheckList(Put(Put(example, 120, "09"), 127, "01")).sound) << "it was added often";
    EXPECT_TRUE(CheckList(Put(example, 138, "FF FF")).sound) << "a handle";
}

// Whatever the reader calls sound, the library can search and add to, and what comes out is sound.
TEST(ListCheck, TheLibraryCanWorkOnEverythingSound)
{
    const unsigned seed = Seed(19970101);
    SCOPED_TRACE(testing::Message() << "OSTRA_SEED=" << seed);
    std::mt19937 random(seed);
    unsigned sound = 0;
    for (unsigned round = 0; round < 2000; ++round) {
        const unsigned element = 1 + round % 2;
        CT_CompList list(ElementSize(element), round % 3, 0, round & 4, 128, 0);
        for (unsigned keys = 1 + random() % 8; keys > 0; --keys)
            list.b_Add(RandomKey(random, element).data(), keys);
        std::string bytes = Block(list);
        const unsigned at = random() % 8 ? 132 + random() % (bytes.size() - 132) : random() % 132;
        bytes[at] = static_cast<char>(random() % 2 ? random()
                                                   : "\0\x0A\x0D\x19\x1A"
                                                     "abc"[random() % 8]);
        if (!CheckList(bytes).sound)
            continue;
        ++sound;
        CT_Buffer buffer(bytes.data(), static_cast<unsigned>(bytes.size()), 32);
        CT_CompList stored(&buffer);
        for (int step = 0; step < 20; ++step) {
            const std::string key = RandomKey(random, element);
            const unsigned before = stored.n_GetNrOfEntries();
            const bool known = stored.b_Search(key.data(), nullptr);
            ASSERT_EQ(stored.b_Add(key.data(), 1), !known);
            ASSERT_EQ(stored.n_GetNrOfEntries(), before + !known);
            ASSERT_TRUE(stored.b_Search(key.data(), nullptr));
            const ListVerdict verdict = CheckList(Block(stored));
            ASSERT_TRUE(verdict.sound) << DescribeListVerdict(verdict);
        }
    }
    EXPECT_GT(sound, 50u);
}

TEST(ListCheck, AnyBytesGetAnAnswer)
{
    const unsigned seed = Seed(19970101);
    SCOPED_TRACE(testing::Message() << "OSTRA_SEED=" << seed);
    std::mt19937 random(seed);
    const std::string example = DataFile("complist-example-grown.hex");
    for (int round = 0; round < 5000; ++round) {
        std::string bytes = example.substr(0, random() % 4 ? 132 : random() % example.size());
        for (unsigned count = random() % 40; count > 0; --count)
            bytes += "\x0A\x0D\x19\x1A\x01\x06"
                     "ab"[random() % 8];
        if (bytes.size() >= 132) {
            bytes[4] = static_cast<char>(bytes.size());
            bytes[125] = "\1\1\2\4"[random() % 4];
            bytes[126] = "\0\1\2\4"[random() % 4];
            bytes[127] = static_cast<char>(random() % 4);
        }
        const ListVerdict verdict = CheckList(bytes);
        EXPECT_EQ(verdict.sound, verdict.rule.empty());
        EXPECT_EQ(Hex(DumpList(bytes)), bytes);
    }
}

// ---- Hex text -----------------------------------------------------------------------------

TEST(ListDump, TheTextIsThatOfTheHexFiles)
{
    for (const char* name : {"complist-example.hex", "complist-example-grown.hex"}) {
        SCOPED_TRACE(name);
        const std::string file = ReadBytes(std::filesystem::path(OSTRA_TEST_DATA) / name);
        // The first line is the file's title.
        EXPECT_EQ(DumpList(DataFile(name)), file.substr(file.find('\n') + 1));
    }
}

// The stream of each example, as docs/formats/compressed-list.md shows it.
TEST(ListDump, TheDocumentShowsTheExamples)
{
    const std::filesystem::path data = OSTRA_TEST_DATA;
    const std::filesystem::path formats = data.parent_path().parent_path() / "docs/formats";
    const std::string document = ReadBytes(formats / "compressed-list.md");
    for (const char* name : {"complist-example.hex", "complist-example-grown.hex"}) {
        SCOPED_TRACE(name);
        const std::string text = DumpList(DataFile(name));
        const std::string stream = text.substr(text.find("63          # 132"));
        EXPECT_NE(document.find("\n```\n" + stream + "```\n"), std::string::npos);
    }
}

TEST(ListDump, CharactersOutsideAsciiShowTheirNumber)
{
    CT_CompList list(CT_CompList::es_Short, 4, 1, 1, 128, 0);
    list.b_Add(reinterpret_cast<const unsigned short*>(u"\u00E9"), 0x01020304);
    list.b_Add(reinterpret_cast<const unsigned short*>(u"x"), 5);
    list.b_Add(reinterpret_cast<const unsigned short*>(u""), 6);
    const std::string text = DumpList(Block(list));
    EXPECT_NE(text.find("\n06 00 00 00       #  12  empty string handle: 6\n"), std::string::npos)
        << text;
    EXPECT_NE(text.find("flags: empty string, offsets of 4 bytes\n"), std::string::npos);
    EXPECT_EQ(text.substr(text.find("\nE9 00") + 1),
              "E9 00             # 132  character E9\n"
              "0D 00 0C 00 00 00 # 134  alternative at 146\n"
              "1A 00 04 03 02 01 # 140  leaf end, handle 16909060\n"
              "78 00             # 146  x\n"
              "1A 00 05 00 00 00 # 148  leaf end, handle 5\n"
              "19 00             # 154  list end\n");
}

TEST(ListDump, BytesThatAreNoListAreShownAsTheyAre)
{
    EXPECT_EQ(DumpList(""), "");
    EXPECT_EQ(DumpList("0123456789abcdefX"),
              "30 31 32 33 34 35 36 37 38 39 61 62 63 64 65 66 #   0\n58          #  16\n");
}
