// tests/Database/RecordManager/RecordManagerTest.cpp: creating, opening, saving, and records.
#include <Ostra/TestOut/TestOut.h>

#include "Database/RecordManager/RecordFile.h"

#include "RecordCheck.h"

#include <memory>
#include <type_traits>

namespace
{
std::string Counting(unsigned count, unsigned first = 0)
{
    std::string text;
    for (unsigned i = 0; i < count; ++i)
        text += static_cast<char>(first + i);
    return text;
}

void CreateWorkedFile()
{
    RecordFile records;
    records.Create(16, 64, 4);
    EXPECT_EQ(records.Add(Counting(40)), 21u);
    records.AddResource(7, "resource 7");
    records.Close();
}

struct Mode
{
    CT_RecordManager::et_OpenMode mode;
    bool map;
};
const Mode modes[] = {
    {CT_RecordManager::e_OpenRead, false},
    {CT_RecordManager::e_OpenRead, true},
    {CT_RecordManager::e_OpenReadWrite, false},
    {CT_RecordManager::e_OpenReadWrite, true},
};
} // namespace

// ---- The file ---------------------------------------------------------------------------------

TEST(RecordManager, WritesTheWorkedFileByteForByte)
{
    CreateWorkedFile();
    EXPECT_EQ(ReadBytes("test.rec"), DataFile("record-file.hex"));
}

TEST(RecordManager, ReadsTheWorkedFileInEachMode)
{
    const std::string bytes = DataFile("record-file.hex");
    for (const Mode& mode : modes) {
        SCOPED_TRACE(testing::Message() << "mode " << mode.mode << " map " << mode.map);
        WriteBytes("test.rec", bytes);
        RecordFile records;
        records.Open(mode.mode, mode.map);
        EXPECT_EQ(records->n_GetRecordHeaderSize(), 16u);
        EXPECT_EQ(records->n_GetBlockSize(), 64u);
        EXPECT_EQ(records->n_GetResourceMaxCount(), 4u);
        EXPECT_EQ(records->n_GetRecordCount(), 1u);
        EXPECT_EQ(records->n_GetResourceCount(), 1u);
        EXPECT_EQ(records->n_GetSize(), 1536u);
        EXPECT_EQ(records.Get(21), Counting(40));
        EXPECT_EQ(records.GetResource(7), "resource 7");
        EXPECT_EQ(records.Walk(), std::vector<unsigned>{21});
        records.Close();
        EXPECT_EQ(ReadBytes("test.rec"), bytes);
    }
}

TEST(RecordManager, ReaderLooksAtTheSignatureOnly)
{
    Image image(DataFile("record-file.hex"));
    image.bytes.replace(0, 20, "Another text, longer");
    image.SetWord(36, 99);
    image.Save();
    RecordFile records;
    records.OpenToRead();
    EXPECT_EQ(records.Get(21), Counting(40));
    records.Close();
}

TEST(RecordManager, FillerAndReservedBytesAreZeroInANewFileAndKeptInAnOldOne)
{
    CreateWorkedFile();
    Image image = Image::Load();
    EXPECT_EQ(image.bytes.substr(22, 10), std::string(10, '\0'));
    EXPECT_EQ(image.bytes.substr(84, 172), std::string(172, '\0'));
    image.bytes.replace(22, 10, "0123456789");
    image.bytes[255] = 'x';
    image.Save();
    RecordFile records;
    records.OpenToWrite();
    records.Add("");
    records.Close();
    EXPECT_EQ(Image::Load().bytes.substr(22, 10), "0123456789");
    EXPECT_EQ(Image::Load().bytes[255], 'x');
}

TEST(RecordManager, OtherModeNumbersRead)
{
    CreateWorkedFile();
    for (int mode : {0, 1, 3, 77}) {
        RecordFile first, second;
        first.Open(static_cast<CT_RecordManager::et_OpenMode>(mode), true);
        second.OpenToRead();
        EXPECT_EQ(first.Get(21), Counting(40)) << mode;
        first.Close();
        second.Close();
    }
}

// ---- Construction -----------------------------------------------------------------------------

TEST(RecordManager, TakesNameAndBufferSizeOfTheFileGiven)
{
    CT_UString name(qcuz_Text(u"some.rec"));
    CT_WinFile file(&name, 3000);
    const CT_RecordManager manager(&file);
    EXPECT_NE(manager.pcco_GetFile(), &file);
    EXPECT_EQ(static_cast<const void*>(manager.pcco_GetFile()), static_cast<const void*>(&manager));
    EXPECT_EQ(manager.pcco_GetFile()->n_GetBufferSize(), file.n_GetBufferSize());
    EXPECT_EQ(Wide(manager.pcco_GetFile()->pcco_GetFullName()->qcuz_Get()), u"some.rec");
    EXPECT_FALSE(manager.pcco_GetFile()->b_IsOpen());
}

TEST(RecordManager, HasNoVirtualOperations)
{
    EXPECT_FALSE(std::is_polymorphic_v<CT_RecordManager>);
}

TEST(RecordManager, CountsAreZeroBeforeOpening)
{
    RecordFile records;
    EXPECT_EQ(records->n_GetRecordCount(), 0u);
    EXPECT_EQ(records->n_GetResourceCount(), 0u);
    EXPECT_EQ(records->n_GetSize(), 0u);
    EXPECT_FALSE(records->b_ResourceExists(0));
}

TEST(RecordManager, LivesOnTheHeap)
{
    CT_UString name(qcuz_Text(u"test.rec"));
    CT_WinFile file(&name, 0);
    std::unique_ptr<CT_RecordManager> manager(new CT_RecordManager(&file));
    ASSERT_TRUE(manager);
    manager->v_Create(8, 16, 0);
    manager->v_Close(1);
    EXPECT_EQ(TakeCode(), 0u);
}

TEST(RecordManager, DiagnosticsDoNothing)
{
    CreateWorkedFile();
    RecordFile records;
    records.OpenToRead();
    records->v_Print("label", nullptr);
    records->v_PrintHeader("label", nullptr);
    records->v_PrintLists("label", nullptr);
    records->v_ConsistencyReport("label", nullptr);
    CT_TestOut out("./trace.txt", "label");
    records->v_Print("label", &out);
    records->v_PrintHeader("label", &out);
    records->v_PrintLists("label", &out);
    records->v_ConsistencyReport("label", &out);
    EXPECT_EQ(TakeCode(), 0u);
    out.v_Close();
    EXPECT_EQ(ReadBytes("trace.txt"), "");
    records.Close();
    EXPECT_EQ(ReadBytes("test.rec"), DataFile("record-file.hex"));
}

// ---- Creating ---------------------------------------------------------------------------------

TEST(RecordManager, NewFileEndsAtItsFirstBlock)
{
    struct
    {
        unsigned blockSize, resourceMax, size;
    } const rows[] = {
        {64, 4, 1344}, {64, 8, 1344},   {64, 9, 1408},   {8, 0, 1280},
        {10, 1, 1290}, {512, 32, 1536}, {512, 33, 2048}, {4096, 0, 4096},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message() << row.blockSize << ' ' << row.resourceMax);
        RecordFile records;
        records.Create(0, row.blockSize, row.resourceMax);
        EXPECT_EQ(records->n_GetSize(), row.size);
        EXPECT_EQ(records.Add(""), row.size / row.blockSize);
        records.Close();
    }
}

// A close right behind the creation finds nothing changed: the creation itself writes the end.
TEST(RecordManager, FileClosedRightAfterCreationHasItsTrueEnd)
{
    for (bool map : {false, true}) {
        SCOPED_TRACE(map);
        RecordFile records;
        records.Create(16, 64, 4);
        EXPECT_EQ(records->n_GetSize(), 1344u);
        records.Close();
        const Image image = Image::Load();
        EXPECT_EQ(image.bytes.size(), 1344u);
        EXPECT_EQ(image.Word(32), 0xA1B2C3D4u);
        EXPECT_EQ(image.Word(64), 1u);
        EXPECT_EQ(image.Word(68), 1u);
        EXPECT_EQ(image.Word(72), 1u);
        EXPECT_EQ(image.Word(80), 1344u);
        const RecordVerdict verdict = CheckRecordFile(image.bytes);
        EXPECT_TRUE(verdict.sound && verdict.notes.empty()) << DescribeRecordVerdict(verdict);
        records.OpenToWrite(map);
        const unsigned reference = records.Add("the first one, with a body");
        EXPECT_EQ(reference, 21u);
        records.Close();
        records.OpenToRead();
        EXPECT_EQ(records.Get(reference), "the first one, with a body");
        records.Close();
    }
}

TEST(RecordManager, CreationReplacesAnOldFile)
{
    WriteBytes("test.rec", std::string(5000, 'x'));
    CreateWorkedFile();
    EXPECT_EQ(ReadBytes("test.rec"), DataFile("record-file.hex"));
}

// The order stays: the file is opened first, and the error looked at then.
TEST(RecordManager, CreationWithAnErrorSetEmptiesAnOldFile)
{
    CreateWorkedFile();
    Errors().v_SetError(4711, qcuz_Text(u"earlier"));
    RecordFile records;
    records->v_Create(16, 64, 4);
    EXPECT_EQ(TakeCode(), 4711u);
    EXPECT_EQ(ReadBytes("test.rec"), "");
    EXPECT_FALSE(records->pcco_GetFile()->b_IsOpen());
    records.Create(16, 64, 4);
    EXPECT_EQ(records.Add("record"), 21u);
    records.Close();
}

TEST(RecordManager, OpeningWithAnErrorSetLeavesTheObjectClosed)
{
    CreateWorkedFile();
    RecordFile records;
    for (auto mode : {CT_RecordManager::e_OpenRead, CT_RecordManager::e_OpenReadWrite}) {
        for (int map : {0, 1}) {
            Errors().v_SetError(4711, qcuz_Text(u"earlier"));
            records->v_Open(mode, map);
            EXPECT_EQ(TakeCode(), 4711u);
            EXPECT_FALSE(records->pcco_GetFile()->b_IsOpen());
        }
    }
    EXPECT_EQ(ReadBytes("test.rec"), DataFile("record-file.hex"));
    records.OpenToWrite();
    records.Close();
}

TEST(RecordManager, CreationForgetsTheTablesOfAnEarlierFile)
{
    RecordFile records;
    records.Create(8, 16, 4);
    const unsigned gone = records.Add("12345678");
    records.AddResource(3, "three");
    records->v_DeleteRecord(gone);
    records.Close(false);
    EXPECT_TRUE(records->b_ResourceExists(3));
    records.Create(8, 16, 4);
    EXPECT_FALSE(records->b_ResourceExists(3));
    EXPECT_EQ(records.Add("x"), (256u + 1024 + 32) / 16) << "not from the old free table";
    records.Close();
}

TEST(RecordManager, SameContentGivesTheSameFile)
{
    CreateWorkedFile();
    {
        RecordFile records;
        records.OpenToWrite();
        records.Add(std::string(500, 'x'));
        records.Close(false);
        // The object's header image is another one now.
        records.Create(16, 64, 4);
        records.Add(Counting(40));
        records.AddResource(7, "resource 7");
        records.Close();
    }
    EXPECT_EQ(ReadBytes("test.rec"), DataFile("record-file.hex"));
}

// ---- Saving -----------------------------------------------------------------------------------

TEST(RecordManager, ObjectDestroyedWithoutClosingLeavesTheHeaderUnsaved)
{
    {
        RecordFile records;
        records.Create(16, 64, 4);
        records.Add("lost");
    }
    const Image image = Image::Load();
    EXPECT_EQ(image.bytes.size(), 0xFFFFFu) << "as long as the map";
    EXPECT_EQ(image.Word(76), 0u);
    EXPECT_EQ(image.Word(1344), 0xFFFFFFFFu) << "the record itself went through the map";
}

TEST(RecordManager, FlushSavesHeaderAndTables)
{
    for (bool map : {false, true}) {
        SCOPED_TRACE(map);
        CreateWorkedFile();
        {
            RecordFile records;
            records.OpenToWrite(map);
            records->v_DeleteRecord(21);
            records.AddResource(6, "six");
            records->v_Flush();
            EXPECT_EQ(TakeCode(), 0u);
            records.AddResource(5, "behind the flush");
        }
        const Image image = Image::Load();
        EXPECT_EQ(image.Word(76), 0u);
        EXPECT_EQ(image.FreeCount(), 1u);
        EXPECT_EQ(image.Word(60), 2u);
        EXPECT_EQ(image.ResourceId(1), 6u);
        EXPECT_EQ(image.ResourceId(2), 7u);
    }
}

TEST(RecordManager, UnchangedFileIsNotWritten)
{
    CreateWorkedFile();
    RecordFile records;
    records.OpenToWrite(false);
    records.Close(false);
    // With a counter that goes back nothing is saved either: only a difference counts.
    Image image = Image::Load();
    image.SetWord(76, 1000);
    image.Save();
    records.OpenToWrite(false);
    EXPECT_EQ(records->n_GetRecordCount(), 1000u);
    records.Close();
    EXPECT_EQ(Image::Load().Word(76), 1000u);
}

TEST(RecordManager, MappedFileGrowsOverItsMapAndIsCutToItsEnd)
{
    RecordFile records;
    records.Create(56, 64, 1);
    std::vector<unsigned> references;
    for (unsigned i = 0; i < 400; ++i)
        references.push_back(records.Add(std::string(10000, static_cast<char>('a' + i % 26))));
    EXPECT_EQ(TakeCode(), 0u);
    const unsigned size = records->n_GetSize();
    EXPECT_GT(size, 3 * 0xFFFFFu);
    records.Close();
    EXPECT_EQ(ReadBytes("test.rec").size(), size);
    records.OpenToRead();
    for (unsigned i = 0; i < 400; ++i)
        EXPECT_EQ(records.Get(references[i]), std::string(10000, static_cast<char>('a' + i % 26)));
    records.Close();
}

// Without a map the file ends at the last byte written, be the end of the blocks behind it.
TEST(RecordManager, UnmappedFileEndsAtItsLastByte)
{
    RecordFile records;
    records.Create(16, 64, 0);
    records.AddResource(1, "");
    EXPECT_EQ(TakeCode(), 31052u);
    records.Add("first");
    records.Close();
    records.OpenToWrite(false);
    const unsigned reference = records.Add("second");
    EXPECT_EQ(records.Get(reference), "second" + std::string(10, '\0')) << "zeros behind the file";
    records.Close();
    const Image image = Image::Load();
    EXPECT_EQ(image.bytes.size(), reference * 64u + 8 + 6);
    EXPECT_EQ(image.Word(80), reference * 64u + 64);
    for (const Mode& mode : modes) {
        records.Open(mode.mode, mode.map);
        EXPECT_EQ(records.Get(reference), "second" + std::string(10, '\0'));
        records.Close();
    }
}

// ---- Opening again ----------------------------------------------------------------------------

TEST(RecordManager, TablesKeptByCloseAreNotReadAgain)
{
    RecordFile records;
    const auto references = records.CreateAndKeepTables();
    // Nobody else would change the tables without their counters.
    Image image = Image::Load();
    image.SetWord(256, references.used * 16);
    image.SetWord(1280, 99);
    image.Save();
    records.OpenToWrite();
    EXPECT_TRUE(records->b_ResourceExists(7));
    EXPECT_FALSE(records->b_ResourceExists(99));
    EXPECT_EQ(records.Add("third"), references.free);
    records.Close(true);
    // The resource table of the disk counts as saved all the time.
    EXPECT_EQ(Image::Load().ResourceId(1), 99u);
    records.OpenToRead();
    EXPECT_TRUE(records->b_ResourceExists(99)) << "read, for the tables were let go";
    records.Close();
}

TEST(RecordManager, TablesAreReadWhenTheirCountersDiffer)
{
    RecordFile records;
    const unsigned free = records.CreateAndKeepTables().free;
    {
        RecordFile other;
        other.OpenToWrite(false);
        EXPECT_EQ(other.Add("taken"), free);
        other.AddResource(8, "eight");
        other.Close();
    }
    records.OpenToWrite();
    EXPECT_TRUE(records->b_ResourceExists(8));
    EXPECT_NE(records.Add("third"), free);
    records.Close();
}

TEST(RecordManager, CountersOfZeroLetTheTablesBeRead)
{
    RecordFile records;
    records.Create(8, 16, 4);
    const unsigned first = records.Add("first");
    records.Add("second");
    records.AddResource(7, "seven");
    records->v_DeleteRecord(first);
    records.Close(true);
    Image image = Image::Load();
    image.SetWord(68, 0);
    image.SetWord(72, 0);
    image.Save();
    records.OpenToWrite(); // the saved counters of the object are 0, too
    EXPECT_TRUE(records->b_ResourceExists(7));
    EXPECT_EQ(records.Add("again"), first);
    records.Close();
}

TEST(RecordManager, ReaderLeavesTheFreeTableInMemoryEvenWhenStale)
{
    RecordFile records;
    records.Create(8, 16, 4);
    const unsigned first = records.Add("first");
    const unsigned second = records.Add("second");
    records->v_DeleteRecord(first);
    records.Close(false); // its table in memory: the first block
    {
        RecordFile other;
        other.OpenToWrite();
        EXPECT_EQ(other.Add("taken"), first);
        other->v_DeleteRecord(second);
        other.Close();
    }
    Image image = Image::Load();
    const unsigned changed = image.Word(72);
    records.OpenToRead();
    records.Close(false);
    // A file whose counter is the old one again finds the old table.
    image.SetWord(72, changed - 2);
    image.Save();
    records.OpenToWrite(false);
    EXPECT_EQ(records.Add("from the old table"), first);
    records.Close(true);
    image.SetWord(72, changed);
    image.Save();
    records.OpenToWrite(false);
    EXPECT_EQ(records.Add("from the file's table"), second);
    records.Close();
}

// ---- Records ----------------------------------------------------------------------------------

TEST(RecordManager, RecordComesBackAsItWas)
{
    for (unsigned length : {16u, 17u, 40u, 64u, 72u, 73u, 136u, 1000u, 70000u}) {
        SCOPED_TRACE(length);
        RecordFile records;
        records.Create(16, 64, 4);
        const std::string data(length, 'r');
        const unsigned reference = records.Add(data);
        EXPECT_EQ(records->n_GetRecordCount(), 1u);
        EXPECT_EQ(records.Get(reference), data);
        records.Close();
        records.OpenToRead(false);
        EXPECT_EQ(records.Get(reference), data);
        records.Close();
    }
}

TEST(RecordManager, RecordOfTheHeadSizeHasNoBody)
{
    RecordFile records;
    records.Create(16, 64);
    const unsigned whole = records.Add(Counting(16));
    const unsigned longer = records.Add(Counting(17));
    EXPECT_EQ(records->n_GetSize(), 1280u + 3 * 64);
    records.Close();
    const Image image = Image::Load();
    EXPECT_EQ(image.Word(whole * 64 + 4), 0u);
    const unsigned body = image.Word(longer * 64 + 4);
    EXPECT_EQ(body, longer * 64 + 64);
    EXPECT_EQ(image.Word(body), 5u);
    EXPECT_EQ(image.bytes[body + 4], 16);
}

TEST(RecordManager, ShortRecordComesBackWithWhatStoodThere)
{
    RecordFile records;
    records.Create(16, 64);
    const unsigned old = records.Add("0123456789abcdef");
    EXPECT_EQ(records.Get(records.Add("")), std::string(16, '\0'));
    EXPECT_EQ(records.Get(records.Add("short")), "short" + std::string(11, '\0'));
    records->v_DeleteRecord(old);
    EXPECT_EQ(records.Add("short"), old);
    EXPECT_EQ(records.Get(old), "short56789abcdef");
    records.Close();
}

TEST(RecordManager, HeadsOfNoBytesWork)
{
    RecordFile records;
    records.Create(0, 8);
    const unsigned empty = records.Add("");
    const unsigned full = records.Add("all in the body");
    EXPECT_EQ(records.Get(empty), "");
    EXPECT_EQ(records.Get(full), "all in the body");
    EXPECT_EQ(records.Walk(), (std::vector<unsigned>{empty, full}));
    records.Close();
}

TEST(RecordManager, FetchLeavesABufferThatSharesTheBlock)
{
    RecordFile records;
    records.Create(16, 64);
    const unsigned reference = records.Add("0123456789abcdef");
    const std::string before = "something else, and longer than the record";
    CT_Buffer buffer(before.data(), static_cast<unsigned>(before.size()), 32);
    const CT_Buffer other(&buffer);
    records->v_GetRecord(reference, &buffer);
    EXPECT_EQ(Text(buffer), "0123456789abcdef");
    EXPECT_EQ(Text(other), before);
    records.Close();
}

TEST(RecordManager, FetchKeepsTheRoomOfTheBuffer)
{
    RecordFile records;
    records.Create(16, 64);
    const unsigned reference = records.Add(Counting(100));
    CT_Buffer buffer(1000, 32);
    const void* block = buffer.qcv_Get();
    records->v_GetRecord(reference, &buffer);
    EXPECT_EQ(Text(buffer), Counting(100));
    EXPECT_EQ(buffer.qcv_Get(), block);
    records.Close();
}

TEST(RecordManager, DeletedRecordFailsAndItsReferenceMayComeAgain)
{
    RecordFile records;
    records.Create(16, 64);
    const unsigned reference = records.Add(Counting(40));
    const unsigned other = records.Add(Counting(50));
    records->v_DeleteRecord(reference);
    EXPECT_EQ(records->n_GetRecordCount(), 1u);
    EXPECT_EQ(records.Get(reference), "");
    EXPECT_EQ(TakeCode(), 31051u);
    EXPECT_EQ(records.Get(other), Counting(50));
    EXPECT_EQ(records.Add("next"), reference);
    records.Close();
}

TEST(RecordManager, ReferenceBehindTheLastBlockIsRefusedUnread)
{
    RecordFile records;
    records.Create(16, 64);
    const unsigned reference = records.Add(Counting(40));
    EXPECT_EQ(records.Get(reference), Counting(40));
    const unsigned offset = records->pcco_GetFile()->vn_GetOffset();
    // The view goes on behind the last block.
    EXPECT_EQ(records.Get(records->n_GetSize() / 64 + 1), "");
    EXPECT_EQ(TakeCode(), 31051u);
    EXPECT_EQ(records->pcco_GetFile()->vn_GetOffset(), offset);
    records.Close();
}

// ---- Updates ----------------------------------------------------------------------------------

TEST(RecordManager, UpdateKeepsTheReference)
{
    RecordFile records;
    records.Create(16, 64);
    const unsigned reference = records.Add(Counting(10));
    for (unsigned length : {300u, 17u, 5000u, 100u, 1000u}) {
        records.Update(reference, std::string(length, 'u'));
        EXPECT_EQ(TakeCode(), 0u);
        EXPECT_EQ(records.Get(reference), std::string(length, 'u')) << length;
    }
    EXPECT_EQ(records->n_GetRecordCount(), 1u);
    records.Close();
}

TEST(RecordManager, UpdateWithANewBlockWritesTheWholeHead)
{
    RecordFile records;
    records.Create(16, 64);
    const unsigned fromNone = records.Add(Counting(16));
    records.Update(fromNone, "ABCDEFGHIJKLMNOPqrst");
    EXPECT_EQ(records.Get(fromNone), "ABCDEFGHIJKLMNOPqrst");
    const std::string longer = "ZYXWVUTSRQPONMLK" + std::string(61, 'z');
    records.Update(fromNone, longer);
    EXPECT_EQ(records.Get(fromNone), longer);
    records.Close();
}

TEST(RecordManager, UpdateInTheSameBlockLeavesTheLastFourBytesOfTheHead)
{
    RecordFile records;
    records.Create(16, 64);
    const unsigned reference = records.Add("0123456789abcdefgh");
    records.Update(reference, "ABCDEFGHIJKLMNOPqrstuvw");
    EXPECT_EQ(records.Get(reference), "ABCDEFGHIJKLcdefqrstuvw");
    records.Close();
    const Image image = Image::Load();
    EXPECT_EQ(image.Word(reference * 64 + 4), reference * 64 + 64) << "the body stays in its block";
    EXPECT_EQ(image.Word(reference * 64 + 64), 11u);
}

// Nobody should have such heads; nothing of them is written then.
TEST(RecordManager, UpdateInTheSameBlockLeavesHeadsOfFewerThanFourBytes)
{
    for (unsigned headSize : {0u, 1u, 3u, 4u}) {
        SCOPED_TRACE(headSize);
        RecordFile records;
        records.Create(headSize, 64);
        const unsigned reference = records.Add("abcdefgh");
        records.Update(reference, "ABCDEFGHI");
        EXPECT_EQ(records.Get(reference), std::string("abcdefgh").substr(0, headSize) +
                                              std::string("ABCDEFGHI").substr(headSize));
        records.Close();
    }
}

TEST(RecordManager, UpdateThatTakesTheBodyAwayGoesOnReadingIt)
{
    RecordFile records;
    records.Create(16, 64);
    const unsigned reference = records.Add(Counting(40));
    records.Update(reference, "no body any more");
    EXPECT_EQ(TakeCode(), 0u);
    EXPECT_EQ(records.Get(reference), "no body any more" + Counting(24, 16));
    records.Close();
    const Image image = Image::Load();
    EXPECT_EQ(image.Word(reference * 64 + 4), image.FreeOffset(1)) << "it points to a free block";
}

TEST(RecordManager, StaleBodyIsThatOfTheNextRecordThatTakesTheBlock)
{
    RecordFile records;
    records.Create(8, 64);
    const unsigned stale = records.Add("HEADHEADbody of the first");
    const unsigned other = records.Add("headhead");
    records.Update(stale, "HEADHEAD");
    records.Update(other, "headheadbody of the second");
    EXPECT_EQ(records.Get(stale), "HEADHEADbody of the second");
    // A head there is a size of FFFFFFFF.
    const unsigned third = records.Add("HEADHEADbody of the third");
    const unsigned body = third + 1;
    records.Update(third, "HEADHEAD");
    EXPECT_EQ(records.Add("a head"), body);
    EXPECT_EQ(records.Get(third), "");
    EXPECT_EQ(TakeCode(), 31005u);
    records.Close();
}

TEST(RecordManager, UpdateToFewerBytesThanTheHeadLeavesTheRest)
{
    RecordFile records;
    records.Create(16, 64);
    const unsigned reference = records.Add("0123456789abcdef");
    records.Update(reference, "short");
    EXPECT_EQ(records.Get(reference), "short56789abcdef");
    records.Update(reference, "");
    EXPECT_EQ(records.Get(reference), "short56789abcdef");
    records.Close();
}

TEST(RecordManager, HeaderUpdateLeavesTheBody)
{
    RecordFile records;
    records.Create(16, 64);
    const unsigned reference = records.Add("0123456789abcdefBODY");
    records.UpdateHeader(reference, "ABCD");
    EXPECT_EQ(records.Get(reference), "ABCD456789abcdefBODY");
    records.UpdateHeader(reference, "a text that is longer than the head");
    EXPECT_EQ(records.Get(reference), "a text that is lBODY");
    records.UpdateHeader(reference, "");
    EXPECT_EQ(records.Get(reference), "a text that is lBODY");
    records.Close();
    EXPECT_EQ(Image::Load().Word(64), 5u) << "each of them counts as a change";
}

// ---- The walk ---------------------------------------------------------------------------------

TEST(RecordManager, WalkFindsAllRecordsInTheOrderOfTheFile)
{
    RecordFile records;
    records.Create(16, 64, 4);
    EXPECT_EQ(records->n_GetNextRecord(0, nullptr), 0u) << "no record";
    std::vector<unsigned> references;
    for (unsigned i = 0; i < 20; ++i) {
        references.push_back(records.Add(Counting(i * 13, i)));
        if (i % 5 == 0)
            records.AddResource(i, Counting(i * 20));
    }
    EXPECT_EQ(records.Walk(), references);
    // Freed heads, bodies and resources are passed over by their sizes.
    for (unsigned i : {15u, 7u, 0u}) {
        records->v_DeleteRecord(references[i]);
        references.erase(references.begin() + i);
    }
    records->v_DeleteResource(10);
    EXPECT_EQ(records.Walk(), references);
    records.Close();
}

TEST(RecordManager, WalkFetchesEachRecord)
{
    RecordFile records;
    records.Create(8, 16);
    const unsigned first = records.Add("the first record");
    const unsigned second = records.Add("the second record");
    CT_Buffer buffer;
    unsigned cursor = records->n_GetNextRecord(0, &buffer);
    EXPECT_EQ(cursor, first + 1);
    EXPECT_EQ(Text(buffer), "the first record");
    cursor = records->n_GetNextRecord(cursor, &buffer);
    EXPECT_EQ(cursor, second + 1);
    EXPECT_EQ(Text(buffer), "the second record");
    EXPECT_EQ(records->n_GetNextRecord(cursor, &buffer), 0u);
    EXPECT_EQ(records->n_GetNextRecord(100000, &buffer), 0u) << "behind the end";
    EXPECT_EQ(Text(buffer), "the second record");
    records.Close();
}

// A head longer than a block: the walk goes on within it and takes the record's bytes for a size.
TEST(RecordManager, WalkOfHeadsLongerThanABlockReadsTheRecordsBytes)
{
    RecordFile records;
    records.Create(24, 16);
    const unsigned first = records.Add("12345678" + std::string("\x10\0\0\0", 4) + "____________");
    const unsigned second = records.Add("12345678" + std::string("\xFF\xFF\xFF\xFF", 4) +
                                        std::string("\0\0\0\0", 4) + "________");
    EXPECT_EQ(records.Walk(), (std::vector<unsigned>{first, second, second + 1}));
    records.Close();
}
