// tests/Database/RecordManager/RecordManagerFailuresTest.cpp: what the record manager reports, and
// what it leaves.
#include "Database/RecordManager/RecordFile.h"

#include <functional>

#include "RecordCheck.h"
#include "Support/Endless.h"

namespace
{
constexpr const char* PLACE = "Database/RecordManager/RecordManager";
constexpr unsigned NOT_THERE = 2;
constexpr unsigned ACCESS_DENIED = 5;
constexpr unsigned SHARING_VIOLATION = 32;
constexpr unsigned EMPTY_MAP = 1006;

bool IsHere(const std::string& place)
{
    return place == PLACE;
}

// A failure of the manager's own: its trail begins there.
void ExpectOwn(unsigned code, const std::u16string& text)
{
    const Failure failure = TakeFailure();
    EXPECT_EQ(failure.code, code);
    EXPECT_EQ(failure.text, Narrow(text));
    ASSERT_FALSE(failure.trail.empty());
    EXPECT_TRUE(IsHere(failure.trail.front())) << failure.trail.front();
}

// A failure from below: the first place is the file's, the last one the manager's.
void ExpectFromFile(unsigned code)
{
    const Failure failure = TakeFailure();
    EXPECT_EQ(failure.code, code);
    EXPECT_TRUE(failure.text.ends_with("[test.rec]"));
    ASSERT_GE(failure.trail.size(), 2u);
    EXPECT_TRUE(failure.trail.front().starts_with("Ostra/File/")) << failure.trail.front();
    EXPECT_TRUE(IsHere(failure.trail.back())) << failure.trail.back();
}

void WriteWorkedFile(const std::function<void(Image&)>& change = nullptr)
{
    Image image(DataFile("record-file.hex"));
    if (change)
        change(image);
    image.Save();
}
} // namespace

// ---- Opening ----------------------------------------------------------------------------------

TEST(RecordManagerFailures, MissingFileIsTheSystemsError)
{
    RecordFile records;
    for (auto mode : {CT_RecordManager::e_OpenRead, CT_RecordManager::e_OpenReadWrite}) {
        records->v_Open(mode, 1);
        ExpectFromFile(NOT_THERE);
        EXPECT_FALSE(records->pcco_GetFile()->b_IsOpen());
    }
}

TEST(RecordManagerFailures, FileWithoutTheSignatureIsNoRecordFile)
{
    for (auto mode : {CT_RecordManager::e_OpenRead, CT_RecordManager::e_OpenReadWrite}) {
        for (int map : {0, 1}) {
            SCOPED_TRACE(testing::Message() << mode << ' ' << map);
            WriteWorkedFile([](Image& image) { image.SetWord(32, 0xA1B2C3D5); });
            RecordFile records;
            records->v_Open(mode, map);
            ExpectOwn(31050, u"(31050): Invalid RecordManager file format in test.rec");
            EXPECT_FALSE(records->pcco_GetFile()->b_IsOpen());
            EXPECT_FALSE(records->pcco_GetFile()->b_GetMapping());
            EXPECT_EQ(records->n_GetBlockSize(), 64u) << "the header stays as it was read";
            const bool grown = mode == CT_RecordManager::e_OpenReadWrite && map;
            EXPECT_EQ(ReadBytes("test.rec").size(), grown ? 0xFFFFFu : 1536u);
            // The same object takes a good file.
            WriteWorkedFile();
            records.Open(mode, map);
            EXPECT_EQ(records.GetResource(7), "resource 7");
            records.Close();
        }
    }
}

TEST(RecordManagerFailures, EmptyFileIsNoRecordFileAndCanNotBeMappedByAReader)
{
    WriteBytes("test.rec", "");
    RecordFile records;
    records->v_Open(CT_RecordManager::e_OpenRead, 0);
    ExpectOwn(31050, u"(31050): Invalid RecordManager file format in test.rec");
    records->v_Open(CT_RecordManager::e_OpenRead, 1);
    ExpectFromFile(EMPTY_MAP);
    EXPECT_FALSE(records->pcco_GetFile()->b_IsOpen());
    WriteWorkedFile();
    records.OpenToRead();
    records.Close();
}

TEST(RecordManagerFailures, HeaderThatTheFileDoesNotHoldWholeReadsAsZeros)
{
    RecordFile records;
    WriteWorkedFile();
    records.OpenToRead();
    records.Close(); // the header image is full of that file now
    Image image(DataFile("record-file.hex"));
    image.bytes.resize(36);
    image.Save();
    records->v_Open(CT_RecordManager::e_OpenRead, 0);
    EXPECT_EQ(TakeCode(), 0u) << "the signature is there";
    EXPECT_EQ(records->n_GetSize(), 0u);
    EXPECT_EQ(records->n_GetRecordCount(), 0u);
    EXPECT_EQ(records.Get(21), "");
    EXPECT_EQ(TakeCode(), 31051u);
    records.Close();
}

TEST(RecordManagerFailures, TableBehindTheEndIsCorrupt)
{
    struct
    {
        unsigned field, value;
        bool reader;
    } const rows[] = {
        {52, 1000, false},      {52, 0x20000001, false}, {60, 1000, true},
        {60, 0x20000001, true}, {60, 0xFFFFFFFF, true},  {52, 0xFFFFFFFF, false},
        {48, 0x10000000, true},
    };
    for (const auto& row : rows) {
        for (auto mode : {CT_RecordManager::e_OpenRead, CT_RecordManager::e_OpenReadWrite}) {
            SCOPED_TRACE(testing::Message() << row.field << ' ' << row.value << ' ' << mode);
            WriteWorkedFile([&](Image& image) { image.SetWord(row.field, row.value); });
            RecordFile records;
            records->v_Open(mode, 0);
            if (row.reader || mode == CT_RecordManager::e_OpenReadWrite) {
                ExpectOwn(31005, u"(31005): Corrupt data");
                EXPECT_FALSE(records->pcco_GetFile()->b_IsOpen());
            } else {
                EXPECT_EQ(TakeCode(), 0u) << "a reader doesn't look at the free table";
                records.Close();
            }
        }
    }
}

TEST(RecordManagerFailures, TableThatTheFileDoesNotHoldIsCorrupt)
{
    Image image(DataFile("record-file.hex"));
    image.bytes.resize(1284);
    image.Save();
    RecordFile records;
    records->v_Open(CT_RecordManager::e_OpenRead, 0);
    ExpectOwn(31005, u"(31005): Corrupt data");
}

// ---- Sharing ----------------------------------------------------------------------------------

TEST(RecordManagerFailures, WriterHoldsTheFileAlone)
{
    WriteWorkedFile();
    RecordFile writer, other;
    writer.OpenToWrite();
    for (auto mode : {CT_RecordManager::e_OpenRead, CT_RecordManager::e_OpenReadWrite}) {
        other->v_Open(mode, 0);
        ExpectFromFile(SHARING_VIOLATION);
    }
    writer.Close();
    other.OpenToRead();
    RecordFile third;
    third.OpenToRead();
    EXPECT_EQ(third.GetResource(7), "resource 7");
    writer->v_Open(CT_RecordManager::e_OpenReadWrite, 0);
    ExpectFromFile(SHARING_VIOLATION);
    third.Close();
    other.Close();
}

TEST(RecordManagerFailures, TablesAreReadAgainBehindACreationThatFailed)
{
    RecordFile records;
    const unsigned free = records.CreateAndKeepTables().free;
    {
        RecordFile other;
        other.OpenToRead();
        records->v_Create(8, 16, 4);
        EXPECT_EQ(TakeFailure().code, 32u) << "the file is in use";
        other.Close();
    }
    records.OpenToWrite();
    EXPECT_TRUE(records->b_ResourceExists(7));
    EXPECT_EQ(records.Add("third"), free);
    records.AddResource(3, "three");
    records.Close();
    records.OpenToRead();
    EXPECT_EQ(records.GetResource(3), "three");
    EXPECT_EQ(records.GetResource(7), "seven");
    records.Close();
}

// ---- References -------------------------------------------------------------------------------

TEST(RecordManagerFailures, WrongReferencesAreRefusedEverywhere)
{
    WriteWorkedFile();
    RecordFile records;
    records.OpenToWrite();
    const CT_Buffer data("data", 4, 32);
    CT_Buffer buffer("before", 6, 32);
    const std::function<void(unsigned)> operations[] = {
        [&](unsigned reference) { records->v_GetRecord(reference, &buffer); },
        [&](unsigned reference) { records->v_UpdateRecord(reference, &data); },
        [&](unsigned reference) { records->v_UpdateRecordHeader(reference, &data); },
        [&](unsigned reference) { records->v_DeleteRecord(reference); },
    };
    // The text at the file's start, a body, a resource, the end, behind it, and one that wraps
    // around.
    for (unsigned reference : {0u, 22u, 23u, 24u, 25u, 1000000u, 0x04000000u}) {
        for (const auto& operation : operations) {
            SCOPED_TRACE(reference);
            operation(reference);
            ExpectOwn(31051, u"(31051): Invalid record reference in test.rec");
        }
    }
    EXPECT_EQ(buffer.n_GetUsedSize(), 0u);
    records.Close();
    EXPECT_EQ(ReadBytes("test.rec"), DataFile("record-file.hex")) << "nothing has changed";
}

TEST(RecordManagerFailures, DeletedRecordIsNoRecord)
{
    WriteWorkedFile();
    RecordFile records;
    records.OpenToWrite();
    records->v_DeleteRecord(21);
    EXPECT_EQ(TakeCode(), 0u);
    records->v_DeleteRecord(21);
    ExpectOwn(31051, u"(31051): Invalid record reference in test.rec");
    EXPECT_EQ(records->n_GetRecordCount(), 0u);
    records.Close();
}

// ---- Corrupt data -----------------------------------------------------------------------------

TEST(RecordManagerFailures, BodyLargerThanTheFileIsCorrupt)
{
    for (unsigned size : {1537u, 0x80000000u, 0xFFFFFFFFu}) {
        SCOPED_TRACE(size);
        WriteWorkedFile([&](Image& image) { image.SetWord(1408, size); });
        RecordFile records;
        records.OpenToWrite();
        EXPECT_EQ(records.Get(21), "");
        ExpectOwn(31005, u"(31005): Corrupt data");
        records.Update(21, "data");
        ExpectOwn(31005, u"(31005): Corrupt data");
        records->v_DeleteRecord(21);
        ExpectOwn(31005, u"(31005): Corrupt data");
        EXPECT_EQ(records->n_GetRecordCount(), 1u);
        records.UpdateHeader(21, "the body isn't looked at");
        EXPECT_EQ(TakeCode(), 0u);
        records.Close();
    }
}

TEST(RecordManagerFailures, SizesThatRunOverTheEndAreCorrupt)
{
    // The last good size first, then one more, then those that don't count their own word.
    for (unsigned size : {128u, 129u, 1536u, 0u, 1u, 2u, 3u}) {
        SCOPED_TRACE(size);
        WriteWorkedFile([&](Image& image) { image.SetWord(1408, size); });
        RecordFile records;
        records.OpenToRead();
        const std::string data = records.Get(21);
        if (size == 128) {
            EXPECT_EQ(data.size(), 16u + 124);
            EXPECT_EQ(TakeCode(), 0u);
        } else {
            EXPECT_EQ(data, "");
            ExpectOwn(31005, u"(31005): Corrupt data");
        }
        records.Close();
    }
}

// A writer's view goes on behind the file's end: the bytes there are no record's.
TEST(RecordManagerFailures, BodyThatPassesTheEndIsCorruptInABufferWithRoomToo)
{
    for (unsigned size : {129u, 1536u}) {
        SCOPED_TRACE(size);
        WriteWorkedFile([&](Image& image) { image.SetWord(1408, size); });
        for (bool map : {false, true}) {
            RecordFile records;
            records.OpenToWrite(map);
            CT_Buffer buffer("before", 6, 4096);
            records->v_GetRecord(21, &buffer);
            ExpectOwn(31005, u"(31005): Corrupt data");
            EXPECT_EQ(Text(buffer), "");
            records.Close();
        }
    }
}

TEST(RecordManagerFailures, SizeOfFourIsAnEmptyBody)
{
    WriteWorkedFile([](Image& image) { image.SetWord(1408, 4); });
    RecordFile records;
    records.OpenToRead();
    EXPECT_EQ(records.Get(21).size(), 16u);
    EXPECT_EQ(TakeCode(), 0u);
    records.Close();
}

TEST(RecordManagerFailures, HeadThatRunsOverTheEndIsCorrupt)
{
    WriteWorkedFile([](Image& image) { image.SetWord(44, 185); });
    RecordFile records;
    records.OpenToRead();
    EXPECT_EQ(records.Get(21), "");
    ExpectOwn(31005, u"(31005): Corrupt data");
    records.Close();
}

TEST(RecordManagerFailures, BodyThatTheFileDoesNotHoldIsCorrupt)
{
    Image image(DataFile("record-file.hex"));
    image.bytes.resize(1420);
    image.Save();
    for (bool map : {false, true}) {
        RecordFile records;
        records.OpenToRead(map);
        EXPECT_EQ(records.Get(21), "");
        ExpectOwn(31005, u"(31005): Corrupt data");
        records.Close();
    }
}

TEST(RecordManagerFailures, ResourceSizesAreTested)
{
    for (unsigned size : {65u, 1537u, 0xFFFFFFFFu, 0u, 3u}) {
        SCOPED_TRACE(size);
        WriteWorkedFile([&](Image& image) { image.SetWord(1472, size); });
        RecordFile records;
        records.OpenToWrite(false);
        EXPECT_EQ(records.GetResource(7), "");
        ExpectOwn(31005, u"(31005): Corrupt data");
        if (size > 1536) {
            records->v_DeleteResource(7);
            ExpectOwn(31005, u"(31005): Corrupt data");
            EXPECT_TRUE(records->b_ResourceExists(7));
        }
        records.Close();
    }
}

// With an end that isn't true any size passes its test: the file has the last word, and no memory
// is asked for twice.
TEST(RecordManagerFailures, HugeEndLetsNoBytesOutThatTheFileDoesNotHold)
{
    WriteWorkedFile([](Image& image) {
        image.SetWord(80, 0xFFFFFFFF);
        image.SetWord(1408, 0x70000000);
    });
    RecordFile records;
    records.OpenToRead();
    EXPECT_EQ(records.Get(21), "");
    const unsigned code = TakeCode();
    EXPECT_TRUE(code == 31005 || code == OUT_OF_MEMORY) << code;
    records.Close();
}

ENDLESS(RecordWalkOverASizeOfZero)
{
    WriteWorkedFile([](Image& image) { image.SetWord(1344, 0); });
    RecordFile records;
    records.OpenToRead();
    records->n_GetNextRecord(0, nullptr);
}

TEST(RecordManagerFailures, WalkStandsStillAtASizeOfZero)
{
    EXPECT_TRUE(RunsForEver("RecordWalkOverASizeOfZero"));
}

TEST(RecordManagerFailures, WalkEndsAtASizeThatPassesTheEnd)
{
    for (unsigned size :
         {0xFFFFFFC1u, 0xFFFFFFFEu, 0xFFFFFFC0u, 0x80000000u, 0xFFFFFABFu, 193u, 192u}) {
        SCOPED_TRACE(size);
        WriteWorkedFile([&](Image& image) { image.SetWord(1344, size); });
        RecordFile records;
        records.OpenToRead();
        EXPECT_EQ(records->n_GetNextRecord(0, nullptr), 0u);
        EXPECT_EQ(records->n_GetNextRecord(21, nullptr), 0u);
        EXPECT_EQ(TakeCode(), 0u);
        records.Close();
    }
}

// ---- Resources --------------------------------------------------------------------------------

TEST(RecordManagerFailures, CorruptResourceLeavesTheBufferAlone)
{
    for (unsigned size : {65u, 1537u, 0xFFFFFFFFu, 0u, 3u}) {
        for (bool map : {false, true}) {
            SCOPED_TRACE(testing::Message() << size << ' ' << map);
            WriteWorkedFile([&](Image& image) { image.SetWord(1472, size); });
            RecordFile records;
            records.OpenToRead(map);
            CT_Buffer buffer("before", 6, 32);
            records->v_GetResource(7, &buffer);
            ExpectOwn(31005, u"(31005): Corrupt data");
            EXPECT_EQ(Text(buffer), "before");
            records.Close();
        }
    }
}

TEST(RecordManagerFailures, ResourceThatTheFileDoesNotHoldLeavesTheBufferAlone)
{
    Image image(DataFile("record-file.hex"));
    image.bytes.resize(1480);
    image.Save();
    for (bool map : {false, true}) {
        RecordFile records;
        records.OpenToRead(map);
        CT_Buffer buffer("before", 6, 32);
        records->v_GetResource(7, &buffer);
        ExpectOwn(31005, u"(31005): Corrupt data");
        EXPECT_EQ(Text(buffer), "before");
        records.Close();
    }
}

TEST(RecordManagerFailures, ResourceWithASizeBeyondTheEndIsNotFreed)
{
    for (unsigned size : {1537u, 0x80000000u, 0xFFFFFFFFu}) {
        SCOPED_TRACE(size);
        WriteWorkedFile([&](Image& image) { image.SetWord(1472, size); });
        RecordFile records;
        records.OpenToWrite();
        records.ReplaceResource(7,
                                "another text of some more bytes, so that it takes another block");
        ExpectOwn(31005, u"(31005): Corrupt data");
        EXPECT_EQ(records->n_GetSize(), 1536u);
        records.Close();
        const Image image = Image::Load();
        EXPECT_EQ(image.FreeCount(), 0u);
        EXPECT_EQ(image.Word(1284), 1472u);
        EXPECT_EQ(image.Word(1472), size);
    }
}

TEST(RecordManagerFailures, FullResourceTableRefusesEvenANumberInUse)
{
    RecordFile records;
    records.Create(16, 64, 1);
    records.AddResource(7, "seven");
    for (unsigned id : {7u, 8u}) {
        records.AddResource(id, "more");
        ExpectOwn(31052, u"(31052): Resource max count exceeded in test.rec");
    }
    EXPECT_EQ(records->n_GetResourceCount(), 1u);
    EXPECT_EQ(records.GetResource(7), "seven");
    records.Close();
}

TEST(RecordManagerFailures, FileForNoResourcesRefusesEach)
{
    RecordFile records;
    records.Create(16, 64, 0);
    records.AddResource(0, "");
    ExpectOwn(31052, u"(31052): Resource max count exceeded in test.rec");
    records.Close();
}

TEST(RecordManagerFailures, ResourceNumberIsTakenOnce)
{
    RecordFile records;
    records.Create(16, 64, 4);
    records.AddResource(7, "seven");
    const unsigned end = records->n_GetSize();
    records.AddResource(7, "again");
    ExpectOwn(31054, u"(31054): Resource already exists in test.rec");
    EXPECT_EQ(records->n_GetSize(), end);
    EXPECT_EQ(records.GetResource(7), "seven");
    records.Close();
}

TEST(RecordManagerFailures, MissingResourceIsReportedByAllButTheQuestion)
{
    RecordFile records;
    records.Create(16, 64, 4);
    records.AddResource(7, "seven");
    CT_Buffer buffer("before", 6, 32);
    records->v_GetResource(8, &buffer);
    ExpectOwn(31053, u"(31053): Resource not found in test.rec");
    EXPECT_EQ(Text(buffer), "before");
    records.ReplaceResource(8, "data");
    ExpectOwn(31053, u"(31053): Resource not found in test.rec");
    records->v_DeleteResource(8);
    ExpectOwn(31053, u"(31053): Resource not found in test.rec");
    EXPECT_FALSE(records->b_ResourceExists(8));
    EXPECT_EQ(records->n_GetResourceCount(), 1u);
    records.Close();
}

// ---- The text ---------------------------------------------------------------------------------

// The finished text is a format again, with the name as its argument.
TEST(RecordManagerFailures, PerCentSignsInTheNameAreDirectives)
{
    struct
    {
        const char16_t* name;
        const char16_t* text;
    } const rows[] = {
        {u"a%%b.rec", u"(31051): Invalid record reference in a%b.rec"},
        {u"a%sb.rec", u"(31051): Invalid record reference in aa%sb.recb.rec"},
        // Further arguments are empty texts.
        {u"%s%sa%s%s%s.rec", u"(31051): Invalid record reference in %s%sa%s%s%s.reca.rec"},
    };
    for (const auto& row : rows) {
        RecordFile records(row.name);
        records.Create(16, 64, 0);
        records->v_DeleteRecord(0);
        ExpectOwn(31051, row.text);
        records.Close();
    }
}

TEST(RecordManagerFailures, EveryFurtherDirectiveInTheNameIsAnEmptyText)
{
    std::u16string name;
    for (int i = 0; i < 100; ++i)
        name += u"%s";
    name += u".rec";
    RecordFile records(name.c_str());
    records.Create(16, 64, 0);
    records->v_DeleteRecord(0);
    ExpectOwn(31051, u"(31051): Invalid record reference in " + name + u".rec");
    records.Close();
}

TEST(RecordManagerFailures, TextIsCutAt254Characters)
{
    std::u16string name;
    for (int i = 0; i < 115; ++i)
        name += u"./";
    name += u"test.rec";
    RecordFile records(name.c_str());
    records.Create(16, 64, 0);
    records->v_DeleteRecord(0);
    ExpectOwn(31051, u"(31051): " + (u"Invalid record reference in " + name).substr(0, 254));
    records.Close();
}

TEST(RecordManagerFailures, EarlierErrorStaysAndGetsTheTrail)
{
    RecordFile records;
    records.Create(16, 64, 4);
    CT_ErrorManager::spco_Get()->v_SetError(4711, qcuz_Text(u"earlier"));
    CT_Buffer buffer;
    records->v_GetResource(1, &buffer);
    const Failure failure = TakeFailure();
    EXPECT_EQ(failure.code, 4711u);
    EXPECT_EQ(failure.text, "(4711): earlier");
    EXPECT_FALSE(failure.trail.empty());
    records.Close();
}

// ---- Writing ----------------------------------------------------------------------------------

TEST(RecordManagerFailures, ReaderCanNotChangeAnUnmappedFile)
{
    WriteWorkedFile();
    RecordFile records;
    records.OpenToRead(false);
    EXPECT_EQ(records.Add("record"), 0u);
    ExpectFromFile(ACCESS_DENIED);
    EXPECT_EQ(records->n_GetRecordCount(), 1u);
    records.Update(21, "record");
    ExpectFromFile(ACCESS_DENIED);
    records->v_DeleteRecord(21);
    ExpectFromFile(ACCESS_DENIED);
    EXPECT_EQ(records->n_GetRecordCount(), 1u);
    records.AddResource(8, "eight");
    ExpectFromFile(ACCESS_DENIED);
    EXPECT_EQ(records->n_GetResourceCount(), 1u);
    records->v_Close(1);
    TakeFailure();
    EXPECT_FALSE(records->pcco_GetFile()->b_IsOpen());
    EXPECT_EQ(ReadBytes("test.rec"), DataFile("record-file.hex"));
}

TEST(RecordManagerFailures, FailedSaveIsReportedByCloseAndFlush)
{
    WriteWorkedFile();
    RecordFile records;
    records.OpenToRead(false);
    records.UpdateHeader(21, "counts as a change of the header");
    ExpectFromFile(ACCESS_DENIED);
    records->v_Flush();
    ExpectFromFile(ACCESS_DENIED);
    records.UpdateHeader(21, "counts as a change of the header");
    TakeFailure();
    records->v_Close(1);
    ExpectFromFile(ACCESS_DENIED);
    EXPECT_FALSE(records->pcco_GetFile()->b_IsOpen());
}

// A harmless error of before doesn't cost the session.
TEST(RecordManagerFailures, CloseWithAnErrorSetSavesAll)
{
    for (bool map : {false, true}) {
        SCOPED_TRACE(map);
        WriteWorkedFile();
        RecordFile records;
        records.OpenToWrite(map);
        const unsigned reference = records.Add("record");
        records->v_DeleteRecord(0);
        records->v_Close(1);
        EXPECT_EQ(TakeCode(), 31051u);
        EXPECT_FALSE(records->pcco_GetFile()->b_IsOpen());
        const Image image = Image::Load();
        EXPECT_EQ(image.Word(76), 2u);
        EXPECT_TRUE(CheckRecordFile(image.bytes).sound);
        records.OpenToRead();
        EXPECT_EQ(records.Get(reference).substr(0, 6), "record");
        records.Close();
    }
}

TEST(RecordManagerFailures, FlushWithAnErrorSetSavesAll)
{
    RecordFile records;
    records.Create(56, 64, 1);
    records.Add("record");
    records.AddResource(7, "seven");
    records->v_DeleteRecord(0);
    records->v_Flush();
    EXPECT_EQ(TakeCode(), 31051u);
    EXPECT_EQ(static_cast<const char*>(records->pcco_GetFile()->pv_GetMapping())[76], 1);
    records.Close();
}
