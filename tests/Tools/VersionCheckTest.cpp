// tests/Tools/VersionCheckTest.cpp: the validating reader of version records.
#include "VersionCheck.h"

#include <System/ModuleVersion/ModuleVersion.h>

#include <gtest/gtest.h>

#include <random>

#include "Support/Directory.h"
#include "Support/VersionFiles.h"

namespace
{
const Pairs PAIRS = {{"Comments", "text"}, {"Empty", ""}, {"ProductName", "name"}};

std::string Put(std::string bytes, std::size_t offset, const std::string& put)
{
    return bytes.replace(offset, put.size(), put);
}

std::string RuleOf(const std::string& record)
{
    const VersionVerdict verdict = CheckVersion(record);
    EXPECT_EQ(verdict.sound, verdict.rule.empty());
    EXPECT_EQ(DescribeVersionVerdict(verdict),
              verdict.sound
                  ? "sound\n"
                  : "damaged at " + std::to_string(verdict.offset) + ": " + verdict.rule + "\n");
    return verdict.rule;
}

std::string WithChild(const std::string& child)
{
    return RuleOf(Record(Layout::WIDE, {child}));
}

std::string WithTable(const std::string& table)
{
    return WithChild(StringFileInfo(Layout::WIDE, {table}));
}
} // namespace

TEST(VersionCheck, RecordsOfBothLayoutsAreSound)
{
    for (const Layout layout : {Layout::WIDE, Layout::NARROW}) {
        EXPECT_EQ(RuleOf(SimpleRecord(layout, PAIRS)), "");
        EXPECT_EQ(RuleOf(Record(layout, {})), "");
        EXPECT_EQ(RuleOf(Record(layout, {VarFileInfo(layout)}, "")), "");
        EXPECT_EQ(RuleOf(SimpleRecord(layout, PAIRS) + "what comes behind"), "");
    }
}

TEST(VersionCheck, WhatHoldsNoNodeIsRefused)
{
    const std::string record = SimpleRecord(Layout::WIDE, PAIRS);
    const std::string outside = "a node runs past the end of what holds it";
    EXPECT_EQ(RuleOf(""), "shorter than a node");
    EXPECT_EQ(RuleOf(Put(record, 0, Word(0))), "a node without length");
    EXPECT_EQ(RuleOf(Put(record, 0, Word(0xFFFF))), outside);
    EXPECT_EQ(RuleOf(record.substr(0, record.size() - 1)), outside);
    EXPECT_EQ(RuleOf(Put(record, 0, Word(7))), "a key without end");
    EXPECT_EQ(RuleOf(Put(record, 4, Word(2))), "neither layout of a record");
}

TEST(VersionCheck, AFixedPartThatIsTooLongIsRefused)
{
    EXPECT_EQ(RuleOf(Record(Layout::WIDE, {}, FixedPart() + Long(1))),
              "a fixed part of more than 52 bytes");
    const std::string record = Put(Record(Layout::WIDE, {}, FixedPart().substr(0, 8)), 2, Word(12));
    EXPECT_EQ(RuleOf(record), "the fixed part runs past the end");
}

TEST(VersionCheck, AChildThatWouldBeReadForEverIsRefused)
{
    EXPECT_EQ(WithChild(Bytes(Layout::WIDE, {"Other", "", 0, {}, 1})),
              "a child of a kind that isn't known");
    EXPECT_EQ(WithChild(Put(VarFileInfo(Layout::WIDE), 0, Word(0))), "a node without length");
    EXPECT_EQ(RuleOf(Record(Layout::WIDE, {VarFileInfo(Layout::WIDE), std::string(8, '\0')})),
              "a node without length");
}

TEST(VersionCheck, TablesAndEntriesNest)
{
    const std::string table = StringTable(Layout::WIDE, "040904B0", PAIRS);
    const std::string outside = "a node runs past the end of what holds it";
    EXPECT_EQ(WithTable(table), "");
    EXPECT_EQ(WithTable(Put(table, 0, Word(0))), "a node without length");
    EXPECT_EQ(WithTable(Put(table, 0, Word(0xFFF0))), outside);
    const std::size_t entry = 24;
    EXPECT_EQ(WithTable(Put(table, entry, Word(0xFFF0))), outside);
    EXPECT_EQ(WithTable(Put(table, entry, Word(8))), "a key without end");
    EXPECT_EQ(WithTable(Put(table, entry + 2, Word(0x7000))),
              "a value runs past the end of its table");
    const std::string zeros = Bytes(Layout::WIDE, {"040904B0", "", 0, {std::string(16, '\0')}, 1});
    EXPECT_EQ(WithTable(zeros), "");
}

TEST(VersionCheck, TheRecordOfAFileIsFound)
{
    const std::string wide = SimpleRecord(Layout::WIDE, PAIRS);
    const std::string narrow = SimpleRecord(Layout::NARROW, PAIRS);
    EXPECT_EQ(FindVersionRecord(PortableFile(wide)), wide);
    EXPECT_EQ(FindVersionRecord(PortableFile(wide, true)), wide);
    EXPECT_EQ(FindVersionRecord(SegmentedFile(narrow)), Padded(narrow, 16));
    EXPECT_EQ(FindVersionRecord("MZ"), "");
    EXPECT_EQ(FindVersionRecord(""), "");
    EXPECT_EQ(FindVersionRecord(std::string(1000, 'x')), "");
    const std::string file = PortableFile(wide);
    for (std::size_t size = 0; size < PE_RECORD + wide.size(); ++size)
        EXPECT_EQ(FindVersionRecord(file.substr(0, size)), "") << size;
}

// What it calls sound, the library reads to its end, whatever it says.
TEST(VersionCheck, WhatIsCalledSoundCanBeRead)
{
    std::mt19937 random(Seed(20263));
    const std::string numbers[] = {Word(0), Word(1), Word(2), Word(0xFFFF), Word(0x100)};
    unsigned sound = 0;
    for (const Layout layout : {Layout::WIDE, Layout::NARROW}) {
        const std::string record = SimpleRecord(layout, PAIRS);
        for (int run = 0; run < 3000; ++run) {
            std::string changed = record;
            for (unsigned count = 1 + random() % 3; count != 0; --count) {
                const std::size_t at = random() % (changed.size() - 2);
                if (random() % 2)
                    changed = Put(changed, at, numbers[random() % std::size(numbers)]);
                else
                    changed[at] = static_cast<char>(random());
            }
            if (!CheckVersion(changed).sound)
                continue;
            ++sound;
            if (run % 10)
                continue;
            WriteBytes("a.dll",
                       layout == Layout::WIDE ? PortableFile(changed) : SegmentedFile(changed));
            CT_ModuleVersion version;
            version.v_Set(".\\a.dll");
        }
    }
    EXPECT_GT(sound, 1000U);
}
