// tests/Tools/RecordCheckTest.cpp: the validating reader of record files, and their hex text.
#include "RecordCheck.h"
#include "RecordDump.h"

#include <Database/RecordManager/RecordManager.h>
#include <Ostra/Frame/Text.h>
#include <Ostra/String/UString.h>

#include "Support/Directory.h"
#include "Support/Failure.h"

#include <ctime>
#include <functional>
#include <random>
#include <sstream>
#include <vector>

namespace
{
// The worked file: record 21 with its body at 1408, resource 7 at 1472, the end at 1536.
class Bytes
{
public:
    Bytes() : bytes(DataFile("record-file.hex")) {}

    void Set(std::size_t offset, unsigned word)
    {
        for (int i = 0; i < 4; ++i)
            bytes.at(offset + i) = static_cast<char>(word >> 8 * i);
    }

    // A block of 64 bytes at the end, with that first word.
    unsigned AddBlock(unsigned word)
    {
        const unsigned offset = static_cast<unsigned>(bytes.size());
        bytes.resize(bytes.size() + 64);
        Set(offset, word);
        Set(80, static_cast<unsigned>(bytes.size()));
        return offset;
    }

    // An entry of the free table.
    void AddFree(unsigned offset, unsigned length)
    {
        Set(256 + 8 * free, offset);
        Set(260 + 8 * free, length);
        Set(52, ++free);
    }

    // 128 free blocks in the table, the last of them heading a chain of two.
    void FillFreeTable()
    {
        for (unsigned i = 0; i < 127; ++i)
            AddFree(AddBlock(64), 64);
        const unsigned end = AddBlock(30);
        const unsigned head = AddBlock(64);
        AddFree(head, 0);
        Set(head + 4, end);
    }

    std::string bytes;
    unsigned free = 0;
};

RecordVerdict Check(const std::function<void(Bytes&)>& change)
{
    Bytes file;
    change(file);
    return CheckRecordFile(file.bytes);
}
} // namespace

TEST(RecordCheck, WorkedFileIsSoundWithoutANote)
{
    const RecordVerdict verdict = CheckRecordFile(DataFile("record-file.hex"));
    EXPECT_TRUE(verdict.sound);
    EXPECT_TRUE(verdict.notes.empty());
    EXPECT_EQ(DescribeRecordVerdict(verdict), "sound\n");
}

TEST(RecordCheck, NamesTheFirstRuleBrokenAndItsPlace)
{
    struct
    {
        std::function<void(Bytes&)> change;
        std::uint64_t offset;
        const char* rule;
    } const rows[] = {
        {[](Bytes& f) { f.bytes.resize(255); }, 255, "shorter than a header"},
        {[](Bytes& f) { f.bytes.clear(); }, 0, "shorter than a header"},
        {[](Bytes& f) { f.Set(32, 0xA1B2C3D5); }, 32, "no signature"},
        {[](Bytes& f) { f.Set(40, 0); }, 40, "a block has no room for the link of the free chain"},
        {[](Bytes& f) { f.Set(40, 7); }, 40, "a block has no room for the link of the free chain"},
        {[](Bytes& f) { f.Set(44, 0xFFFFFFF8); }, 44, "the length of a record head passes 32 bits"},
        {[](Bytes& f) { f.Set(48, 127); }, 48, "the free table has 128 slots"},
        {[](Bytes& f) { f.Set(52, 129); }, 52, "more free blocks than slots"},
        {[](Bytes& f) { f.Set(60, 5); }, 60, "more resources than slots"},
        {[](Bytes& f) { f.Set(56, 0xFFFFFFFF); }, 80, "the end lies before the first block"},
        {[](Bytes& f) { f.Set(80, 1280); }, 80, "the end lies before the first block"},
        {[](Bytes& f) { f.Set(80, 1537); }, 80, "the end isn't at a block's end"},
        {[](Bytes& f) { f.bytes.resize(1287); }, 1287, "the file ends within the resource table"},
        {[](Bytes& f) { f.Set(80, 1600); }, 1536, "the file ends before the block"},
        {[](Bytes& f) { f.Set(1408, 0); }, 1408, "a size that doesn't count its own word"},
        {[](Bytes& f) { f.Set(1408, 3); }, 1408, "a size that doesn't count its own word"},
        {[](Bytes& f) { f.Set(1408, 129); }, 1408, "the block runs past the end"},
        {[](Bytes& f) { f.Set(1408, 0xFFFFFFFE); }, 1408, "the block runs past the end"},
        {[](Bytes& f) { f.AddFree(1345, 64); }, 256, "a free block that is none"},
        {[](Bytes& f) { f.AddFree(0, 64); }, 256, "a free block that is none"},
        {[](Bytes& f) { f.AddFree(1344, 64); }, 256, "a free block that is none"},
        {[](Bytes& f) { f.AddFree(f.AddBlock(64), 128); }, 260,
         "the table and the block tell different sizes"},
        {[](Bytes& f) { f.AddFree(f.AddBlock(64), 0); }, 260,
         "the table and the block tell different sizes"},
        {[](Bytes& f) {
             const unsigned block = f.AddBlock(20);
             f.AddFree(block, 64);
             f.AddFree(block, 64);
         },
         264, "a block is free twice"},
        {[](Bytes& f) {
             f.FillFreeTable();
             f.Set(f.bytes.size() - 60, 1344);
         },
         1536 + 128 * 64 + 4, "the free chain leads to what is no free block"},
        {[](Bytes& f) {
             f.FillFreeTable();
             f.Set(f.bytes.size() - 60, 1536);
         },
         1536 + 128 * 64 + 4, "the free chain leads to a block that is free already"},
        {[](Bytes& f) {
             f.FillFreeTable();
             f.Set(f.bytes.size() - 124, 1536 + 127 * 64);
         },
         1536 + 127 * 64 + 4, "the free chain leads to a block that is free already"},
        {[](Bytes& f) { f.Set(1284, 1408 + 4); }, 1284, "a resource without a block"},
        {[](Bytes& f) { f.Set(1284, 1344); }, 1284, "a resource without a block"},
        {[](Bytes& f) { f.AddFree(1472, 64); }, 1284, "the resource's block has another holder"},
        {[](Bytes& f) {
             f.Set(60, 2);
             f.Set(1288, 7);
             f.Set(1292, f.AddBlock(20));
         },
         1288, "the resources don't ascend"},
        {[](Bytes& f) { f.bytes.resize(1480); }, 1472, "the file ends within the resource"},
        {[](Bytes& f) { f.Set(1348, 1409); }, 1348, "a record's body that is none"},
        {[](Bytes& f) { f.Set(1348, 1344); }, 1348, "a record's body that is none"},
        {[](Bytes& f) {
             const unsigned body = f.AddBlock(60);
             f.Set(1348, body);
             f.bytes.resize(body + 59);
         },
         1536, "the file ends within the body"},
    };
    for (std::size_t row = 0; row < std::size(rows); ++row) {
        SCOPED_TRACE(row);
        const RecordVerdict verdict = Check(rows[row].change);
        EXPECT_FALSE(verdict.sound);
        EXPECT_EQ(verdict.rule, rows[row].rule);
        EXPECT_EQ(verdict.offset, rows[row].offset);
        EXPECT_EQ(DescribeRecordVerdict(verdict).find("damaged at "), 0u);
    }
}

TEST(RecordCheck, NotesWhatIsNoDamage)
{
    struct
    {
        std::function<void(Bytes&)> change;
        RecordNote::Kind kind;
        std::uint32_t offset;
    } const rows[] = {
        {[](Bytes& f) { f.bytes[0] = 'v'; }, RecordNote::FileText, 0},
        {[](Bytes& f) { f.Set(36, 2); }, RecordNote::FileText, 36},
        {[](Bytes& f) { f.bytes[255] = 1; }, RecordNote::Reserved, 84},
        {[](Bytes& f) { f.bytes += "behind"; }, RecordNote::Length, 80},
        {[](Bytes& f) {
             f.Set(76, 2);
             f.AddBlock(0xFFFFFFFF);
             f.bytes.resize(1536 + 8);
         },
         RecordNote::Length, 80},
        {[](Bytes& f) { f.Set(76, 7); }, RecordNote::RecordCount, 76},
        {[](Bytes& f) { f.AddBlock(20); }, RecordNote::NobodysBlock, 1536},
        {[](Bytes& f) { f.AddFree(1408, 64); }, RecordNote::StaleBody, 1344},
        {[](Bytes& f) {
             f.Set(76, 2);
             f.Set(f.AddBlock(0xFFFFFFFF) + 4, 1408);
         },
         RecordNote::StaleBody, 1536},
        {[](Bytes& f) {
             f.Set(76, 2);
             f.Set(f.AddBlock(0xFFFFFFFF) + 4, 1472);
         },
         RecordNote::StaleBody, 1536},
        {[](Bytes& f) {
             f.Set(76, 2);
             f.Set(f.AddBlock(0xFFFFFFFF) + 4, 1344);
         },
         RecordNote::StaleBody, 1536},
        {[](Bytes& f) {
             f.Set(44, 57);
             f.Set(1348, 0);
         },
         RecordNote::NotWalkable, 44},
    };
    for (std::size_t row = 0; row < std::size(rows); ++row) {
        SCOPED_TRACE(row);
        const RecordVerdict verdict = Check(rows[row].change);
        EXPECT_TRUE(verdict.sound) << DescribeRecordVerdict(verdict);
        ASSERT_EQ(verdict.notes.size(), 1u) << DescribeRecordVerdict(verdict);
        EXPECT_EQ(verdict.notes[0].kind, rows[row].kind);
        EXPECT_EQ(verdict.notes[0].offset, rows[row].offset);
        EXPECT_TRUE(verdict.Has(rows[row].kind));
    }
}

// Nothing but ordinary calls: the front of the block that was the body becomes a head.
TEST(RecordCheck, BlockOfAStaleBodyThatBecameAHeadIsNoDamage)
{
    const CT_UString name(qcuz_Text(u"test.rec"));
    const CT_WinFile file(&name, 4096);
    CT_RecordManager records(&file);
    records.v_Create(8, 16, 4);
    const std::string text(40, 'x');
    const CT_Buffer whole(text.data(), 40, 32), shorter("four", 4, 32), other("new", 3, 32);
    const unsigned stale = records.n_AddRecord(&whole);
    records.v_UpdateRecord(stale, &shorter);
    records.n_AddRecord(&other);
    records.v_Close(1);
    EXPECT_FALSE(Errors().b_IsSetError());
    const RecordVerdict verdict = CheckRecordFile(ReadBytes("test.rec"));
    EXPECT_TRUE(verdict.sound) << DescribeRecordVerdict(verdict);
    ASSERT_EQ(verdict.notes.size(), 1u);
    EXPECT_TRUE(verdict.Has(RecordNote::StaleBody));
    EXPECT_EQ(verdict.notes[0].offset, stale * 16);
}

TEST(RecordCheck, FullFreeTableWithAChainIsSound)
{
    const RecordVerdict verdict = Check([](Bytes& f) { f.FillFreeTable(); });
    EXPECT_TRUE(verdict.sound) << DescribeRecordVerdict(verdict);
    EXPECT_TRUE(verdict.notes.empty());
}

// Whatever the bytes, there is an answer, and the hex text has every byte.
TEST(RecordCheck, AnyBytesGetAnAnswer)
{
    std::mt19937 random(Seed(20260101));
    const Bytes small;
    Bytes full;
    full.FillFreeTable();
    for (int round = 0; round < 2000; ++round) {
        std::string bytes = round % 2 ? full.bytes : small.bytes;
        for (unsigned changes = random() % 6; changes > 0; --changes) {
            const std::size_t offset =
                random() % 3 ? random() % bytes.size() : 4 * (random() % 21) + 32;
            bytes[offset] = random() % 4 ? static_cast<char>(random()) : '\xFF';
        }
        if (random() % 4 == 0)
            bytes.resize(random() % bytes.size());
        const RecordVerdict verdict = CheckRecordFile(bytes);
        EXPECT_EQ(verdict.sound, verdict.rule.empty());
        if (round % 16 < 2) {
            EXPECT_EQ(Hex(DumpRecordFile(bytes)), bytes);
        }
    }
}

TEST(RecordDump, PrintsTheWorkedFileAsItIsKept)
{
    const std::string kept = ReadBytes(std::string(OSTRA_TEST_DATA) + "/record-file.hex");
    EXPECT_EQ(DumpRecordFile(Hex(kept)), kept);
}

TEST(RecordDump, NamesBlocksByTheirHolders)
{
    Bytes file;
    file.AddFree(file.AddBlock(20), 64);
    const std::string dump = DumpRecordFile(file.bytes);
    for (const char* line : {"# 256 free block 1 1536\n", "# 1280 resource 7\n",
                             "# 1344 record 21 FFFFFFFF\n", "# 1408 body of record 21, size 28\n",
                             "# 1472 resource 7, size 14\n", "# 1536 free block, size 20\n"})
        EXPECT_NE(dump.find(line), std::string::npos) << line;
}

TEST(RecordDump, PrintsWhatIsNoRecordFile)
{
    EXPECT_EQ(DumpRecordFile(std::string("abc")),
              "61 62 63                                        # 0 no record file\n");
    EXPECT_EQ(DumpRecordFile(std::string()), "");
}

// A header of a few bytes may tell of tables with 2^32 entries.
TEST(RecordDump, ATableIsReadNoFurtherThanTheFileGoes)
{
    Bytes file;
    file.Set(52, 0xFFFFFFFF);
    file.Set(60, 0xFFFFFFFF);
    const std::clock_t start = std::clock();
    EXPECT_EQ(Hex(DumpRecordFile(file.bytes)), file.bytes);
    EXPECT_LT((std::clock() - start) / CLOCKS_PER_SEC, 3);
}

// The document shows the lines of the dump that aren't all zeros.
TEST(RecordDump, DocumentShowsTheWorkedFile)
{
    const std::string data = OSTRA_TEST_DATA;
    const std::string dump = '\n' + ReadBytes(data + "/record-file.hex");
    const std::string text = ReadBytes(data + "/../../docs/formats/record-file.md");
    const std::size_t start = text.find("```\n") + 4;
    std::istringstream lines(text.substr(start, text.find("```", start) - start));
    unsigned count = 0;
    for (std::string line; std::getline(lines, line); ++count)
        EXPECT_NE(dump.find('\n' + line + '\n'), std::string::npos) << line;
    EXPECT_GT(count, 20u);
}
