// tests/Database/RecordManager/RecordManagerRoomTest.cpp: records larger than the map, and files
// that can't grow by what is added to them.
#include "Database/RecordManager/RecordFile.h"

#include <functional>
#include <vector>

#include "Database/RecordManager/FullDisk.h"
#include "RecordCheck.h"

namespace
{
constexpr unsigned MAP = 0xFFFFF; // of a new file

std::string Bytes(unsigned size)
{
    std::string bytes(size, ' ');
    unsigned state = size;
    for (char& byte : bytes)
        byte = static_cast<char>((state = state * 69069 + 1) >> 24);
    return bytes;
}

// Data that no file has room for: its bytes aren't there, and are never asked for.
struct Endless : CT_Buffer
{
    explicit Endless(unsigned size) : CT_Buffer("0123456789", 10, 32) { v_SetUsedSize(size); }
};

// The end of the file passes 32 bits; the size of the block does.
constexpr unsigned SIZES[] = {0xFFFFFF00, 0xFFFFFFD0};

void ExpectSound(const std::string& bytes)
{
    const RecordVerdict verdict = CheckRecordFile(bytes);
    EXPECT_TRUE(verdict.sound && verdict.notes.empty()) << DescribeRecordVerdict(verdict);
}

// The file up to its end: without a map a last block that isn't full is written in part.
std::string Whole()
{
    Image image = Image::Load();
    image.bytes.resize(image.Word(80));
    return image.bytes;
}

// What may not differ behind a failure.
struct State
{
    explicit State(RecordFile& file)
        : size(file->n_GetSize()),
          records(file->n_GetRecordCount()),
          resources(file->n_GetResourceCount()),
          map(file->pcco_GetFile()->b_GetMapping()),
          length(file->pcco_GetFile()->vn_GetSize())
    {
        for (unsigned reference : file.Walk())
            contents.push_back(file.Get(reference));
    }

    bool operator==(const State&) const = default;

    unsigned size, records, resources;
    int map;
    unsigned length;
    std::vector<std::string> contents;
};
} // namespace

// ---- Large records ----------------------------------------------------------------------------

TEST(RecordManagerRoom, RecordsOfAnySizeFitANewFile)
{
    // Around the steps of the map, and many of them at once.
    for (unsigned size : {MAP - 1408, MAP, MAP + 1, 2 * MAP, 2 * MAP + 1, 3 * MAP, 5000000u}) {
        SCOPED_TRACE(size);
        const std::string large = Bytes(size);
        std::string files[2];
        for (bool map : {false, true}) {
            RecordFile records;
            records.Create(56, 64, 1);
            if (!map) {
                records.Close();
                records.OpenToWrite(false);
            }
            const unsigned before = records.Add("before");
            const unsigned reference = records.Add(large);
            records.AddResource(7, large);
            const unsigned behind = records.Add("behind");
            EXPECT_EQ(TakeCode(), 0u);
            records.Close();
            files[map] = ReadBytes("test.rec");
            records.OpenToRead(map);
            EXPECT_TRUE(records.Get(reference) == large);
            EXPECT_TRUE(records.GetResource(7) == large);
            EXPECT_EQ(records.Get(before).substr(0, 6), "before");
            EXPECT_EQ(records.Get(behind).substr(0, 6), "behind");
            EXPECT_EQ(records.Walk(), (std::vector<unsigned>{before, reference, behind}));
            records.Close();
        }
        ExpectSound(files[1]);
        files[0].resize(files[1].size());
        EXPECT_TRUE(files[0] == files[1]) << "the map makes no difference but at the end";
    }
}

TEST(RecordManagerRoom, UpdatesOfAnySizeFit)
{
    RecordFile records;
    records.Create(8, 16, 2);
    const unsigned reference = records.Add("a record with a body");
    records.AddResource(7, "seven");
    const std::string large = Bytes(5000000);
    records.Update(reference, large);
    records.ReplaceResource(7, large);
    EXPECT_EQ(TakeCode(), 0u);
    EXPECT_TRUE(records.Get(reference) == large);
    EXPECT_TRUE(records.GetResource(7) == large);
    records.Close();
    ExpectSound(ReadBytes("test.rec"));
}

// 500 MB need a map of 512 MiB, for which a process of 32 bits may have no room: then the file is
// as it was before.
TEST(RecordManagerRoom, FiveHundredMegabytesAreARecord)
{
    constexpr unsigned HUGE_SIZE = 500000000;
    constexpr unsigned STEP = 999983;
    constexpr bool SURE = sizeof(void*) == 8;
    RecordFile records;
    records.Create(56, 64, 1);
    const unsigned small = records.Add("small");
    unsigned reference = 0;
    {
        CT_Buffer data(HUGE_SIZE, 32);
        ASSERT_TRUE(!SURE || TakeCode() == 0);
        if (data.n_GetMaximumSize() >= HUGE_SIZE) {
            char* bytes = static_cast<char*>(const_cast<void*>(data.qcv_Get()));
            for (unsigned at = 0; at < HUGE_SIZE; at += STEP)
                bytes[at] = static_cast<char>(at / STEP + 1);
            data.v_SetUsedSize(HUGE_SIZE);
            const unsigned end = records->n_GetSize();
            reference = records->n_AddRecord(&data);
            if (!reference) {
                EXPECT_EQ(records->n_GetSize(), end);
            }
        }
    }
    EXPECT_EQ(reference != 0, TakeCode() == 0);
    EXPECT_TRUE(!SURE || reference);
    EXPECT_EQ(records->n_GetRecordCount(), reference ? 2u : 1u);
    const unsigned behind = records.Add("behind");
    EXPECT_EQ(records.Get(behind).substr(0, 6), "behind");
    records.Close();
    records.OpenToRead(false);
    EXPECT_EQ(records.Get(small).substr(0, 5), "small");
    EXPECT_EQ(records.Get(behind).substr(0, 6), "behind");
    CT_Buffer data;
    if (reference)
        records->v_GetRecord(reference, &data);
    if (reference && TakeCode() == 0) {
        ASSERT_EQ(data.n_GetUsedSize(), HUGE_SIZE);
        const char* bytes = static_cast<const char*>(data.qcv_Get());
        for (unsigned at = 0; at < HUGE_SIZE; at += STEP)
            ASSERT_EQ(bytes[at], static_cast<char>(at / STEP + 1)) << at;
    }
    records.Close();
    std::printf("500 MB: %s\n", reference ? "added" : "refused, the file as it was");
    std::filesystem::remove("test.rec");
}

// ---- No room ----------------------------------------------------------------------------------

TEST(RecordManagerRoom, AdditionThatPassesThirtyTwoBitsChangesNothing)
{
    for (bool map : {false, true}) {
        SCOPED_TRACE(map);
        RecordFile records;
        records.Create(8, 64, 4);
        records.Add("a record with a body");
        records.AddResource(7, "seven");
        records.Close();
        records.OpenToWrite(map);
        const State before(records);
        for (unsigned size : SIZES) {
            const Endless endless(size);
            EXPECT_EQ(records->n_AddRecord(&endless), 0u);
            EXPECT_EQ(TakeCode(), 8u);
            EXPECT_TRUE(State(records) == before);
            records->v_AddResource(8, &endless);
            EXPECT_EQ(TakeCode(), 8u);
            EXPECT_TRUE(State(records) == before);
        }
        const unsigned added = records.Add("another record with a body");
        EXPECT_EQ(records.Get(added), "another record with a body");
        records.Close();
        ExpectSound(Whole());
    }
}

// The block that the head would have got is free again.
TEST(RecordManagerRoom, RefusedAdditionGivesTheHeadBack)
{
    RecordFile records;
    records.Create(8, 64, 0);
    const unsigned gone = records.Add("gone");
    const unsigned kept = records.Add("kept");
    records->v_DeleteRecord(gone);
    const State before(records);
    for (unsigned size : SIZES) {
        const Endless endless(size);
        EXPECT_EQ(records->n_AddRecord(&endless), 0u);
        EXPECT_EQ(TakeCode(), 8u);
        EXPECT_TRUE(State(records) == before);
    }
    EXPECT_EQ(records.Add("in its place"), gone);
    EXPECT_EQ(records.Get(kept).substr(0, 4), "kept");
    records.Close();
}

// In a table with room, and in one that has a chain: the head that is refused a body cuts nothing.
TEST(RecordManagerRoom, RefusedAdditionsCutNoFreeBlocks)
{
    const std::string large(3000, 'l');
    for (unsigned freed : {0u, 130u}) {
        SCOPED_TRACE(freed);
        RecordFile records;
        records.Create(8, 64, 0);
        const unsigned gone = records.Add(large);
        std::vector<unsigned> references;
        for (unsigned i = 0; i < freed; ++i)
            references.push_back(records.Add("freed"));
        records.Add("kept");
        records->v_DeleteRecord(gone);
        for (unsigned reference : references)
            records->v_DeleteRecord(reference);
        const unsigned end = records->n_GetSize();
        for (unsigned i = 0; i < 100; ++i) {
            const Endless endless(SIZES[0]);
            EXPECT_EQ(records->n_AddRecord(&endless), 0u);
            EXPECT_EQ(TakeCode(), 8u);
        }
        records.Add(large);
        EXPECT_EQ(records->n_GetSize(), end) << "the place of the one that went";
        records.Close();
        ExpectSound(ReadBytes("test.rec"));
    }
}

// In a table with room, in a full one, and in one that has a chain.
TEST(RecordManagerRoom, RefusedUpdateLeavesTheOldBody)
{
    const Endless endless(SIZES[0]);
    for (unsigned freed : {0u, 3u, 127u, 128u, 130u}) {
        SCOPED_TRACE(freed);
        RecordFile records;
        records.Create(8, 64, 4);
        std::vector<unsigned> references;
        for (unsigned i = 0; i < freed; ++i)
            references.push_back(records.Add("freed"));
        const unsigned reference = records.Add("a record with a body");
        records.AddResource(7, "resource seven");
        for (unsigned gone : references)
            records->v_DeleteRecord(gone);
        const State before(records);
        records->v_UpdateRecord(reference, &endless);
        EXPECT_EQ(TakeCode(), 8u);
        EXPECT_TRUE(State(records) == before);
        records->v_UpdateResource(7, &endless);
        EXPECT_EQ(TakeCode(), 8u);
        EXPECT_EQ(records.GetResource(7), "resource seven");
        records->v_Flush();
        EXPECT_EQ(TakeCode(), 0u);
        EXPECT_TRUE(State(records) == before);
        EXPECT_EQ(records.Get(reference), "a record with a body");
        records.Close();
        ExpectSound(ReadBytes("test.rec"));
        EXPECT_EQ(Image::Load().FreeCount(), std::min(freed, 128u));
    }
}

TEST(RecordManagerRoom, AdditionWithAnErrorSetTakesNothing)
{
    const CT_Buffer data("a record with a body", 20, 32);
    RecordFile records;
    records.Create(8, 64, 4);
    records.Add("a record with a body");
    const State before(records);
    records->v_DeleteRecord(0);
    EXPECT_EQ(records->n_AddRecord(&data), 0u);
    records->v_AddResource(7, &data);
    EXPECT_EQ(TakeCode(), 31051u);
    EXPECT_TRUE(State(records) == before);
    records.Close();
    ExpectSound(ReadBytes("test.rec"));
}

#ifndef _WIN32
TEST(RecordManagerRoom, FullDiskChangesNothing)
{
    const std::string large = Bytes(5000000);
    for (bool map : {false, true}) {
        SCOPED_TRACE(map);
        RecordFile records;
        records.Create(8, 64, 4);
        const unsigned reference = records.Add("a record with a body");
        records.AddResource(7, "resource seven");
        records.Close();
        records.OpenToWrite(map);
        const State before(records);
        const auto expect = [&](const std::function<void()>& change) {
            {
                const FullDisk disk(map ? 3 * MAP : before.size);
                change();
            }
            const unsigned code = TakeCode();
            EXPECT_TRUE(code && code < 10000) << code;
            State after(records);
            if (!map)
                after.length = before.length; // the header's bytes are written without a map
            EXPECT_TRUE(after == before);
        };
        expect([&] { EXPECT_EQ(records.Add(large), 0u); });
        expect([&] { records.Update(reference, large); });
        expect([&] { records.AddResource(8, large); });
        expect([&] { records.ReplaceResource(7, large); });
        EXPECT_EQ(records.Get(reference), "a record with a body");
        EXPECT_EQ(records.GetResource(7), "resource seven");
        const unsigned added = records.Add(large);
        EXPECT_TRUE(records.Get(added) == large) << "there is room again";
        records.Close();
        ExpectSound(Whole());
    }
}

// The head begins in the map and ends behind it.
TEST(RecordManagerRoom, ARefusedRecordWithoutABodyWritesNothingBehindTheEnd)
{
    RecordFile records;
    records.Create(56, 64, 0);
    // All of the data but a head's goes into a body with a word for its size.
    const unsigned left = (MAP / 64 - 1) * 64 - records->n_GetSize();
    records.Add(Bytes(56 + left - 4));
    const State before(records);
    ASSERT_EQ(before.size, MAP / 64 * 64);
    const std::string bytes = ReadBytes("test.rec");
    {
        const FullDisk disk(before.length);
        EXPECT_EQ(records.Add(Bytes(56)), 0u);
    }
    const unsigned code = TakeCode();
    EXPECT_TRUE(code && code < 10000) << code;
    EXPECT_TRUE(State(records) == before);
    EXPECT_TRUE(ReadBytes("test.rec") == bytes);
    EXPECT_NE(records.Add(Bytes(56)), 0u) << "there is room again";
    records.Close();
    ExpectSound(ReadBytes("test.rec"));
}
#endif

// At the end of the map and with a full disk. The head of the chain isn't given away, and the head of
// the record, whose block is in the table, makes the next one the head.
TEST(RecordManagerRoom, ABlockOfTheChainIsTakenBeforeTheFileGrows)
{
    const std::string large = Bytes(3000);
    for (unsigned behind : {0u, 1u, 2u}) {
        SCOPED_TRACE(behind);
        RecordFile records;
        records.Create(8, 64, 0);
        const unsigned gone = records.Add(large);
        std::vector<unsigned> small;
        for (unsigned i = 0; i < 140; ++i)
            small.push_back(records.Add("small"));
        const std::string filler = Bytes(MAP - 2000 - records->n_GetSize());
        const unsigned rest = records.Add(filler);
        for (unsigned i = 0; i < 132; ++i)
            records->v_DeleteRecord(small[i]);
        records->v_DeleteRecord(gone);
        for (unsigned i = 0; i < behind; ++i)
            records->v_DeleteRecord(small[132 + i]);
        const unsigned end = records->n_GetSize();
        const unsigned length = records->pcco_GetFile()->vn_GetSize();
        unsigned added;
        {
            const FullDisk disk(length);
            added = records.Add(large);
        }
        const unsigned code = TakeCode();
        EXPECT_EQ(code == 0, added != 0);
        if (added) {
            EXPECT_TRUE(records.Get(added) == large);
        }
        if (behind == 2) {
            EXPECT_EQ(code, 0u);
            EXPECT_EQ(records->pcco_GetFile()->vn_GetSize(), length);
        }
        if (behind == 2 || code) {
            EXPECT_EQ(records->n_GetSize(), end);
        }
        EXPECT_TRUE(records.Get(rest) == filler);
        records.Close();
        ExpectSound(ReadBytes("test.rec"));
    }
}

// The blocks of the table are too small for a head, which comes from behind the chain's own. So the
// body alone has to find room at the end of the map, on a disk that has no more.
TEST(RecordManagerRoom, AHeadOfTheChainLeavesTheRestOfTheMapToTheBody)
{
    RecordFile records;
    records.Create(100, 64, 0);
    const unsigned gone = records.Add(Bytes(140));
    std::vector<unsigned> grown;
    for (unsigned i = 0; i < 128; ++i)
        grown.push_back(records.Add(Bytes(140)));
    for (unsigned reference : grown)
        records.Update(reference, Bytes(200));
    records.Add(Bytes(MAP - 2000 - records->n_GetSize()));
    records->v_DeleteRecord(gone);
    const unsigned body = (MAP - records->n_GetSize()) / 64 * 64;
    ASSERT_GT(body, 128u);
    const std::string data = Bytes(100 + body - 4);
    const unsigned length = records->pcco_GetFile()->vn_GetSize();
    unsigned added;
    {
        const FullDisk disk(length);
        added = records.Add(data);
    }
    EXPECT_EQ(TakeCode(), 0u);
    EXPECT_EQ(added, gone);
    EXPECT_TRUE(records.Get(added) == data);
    EXPECT_EQ(records->pcco_GetFile()->vn_GetSize(), length);
    records.Close();
    // A head that is longer than a block is noted.
    const RecordVerdict verdict = CheckRecordFile(ReadBytes("test.rec"));
    EXPECT_TRUE(verdict.sound) << DescribeRecordVerdict(verdict);
}

// ---- Rings ------------------------------------------------------------------------------------

// A record whose body was taken away gives it back once more when it is deleted. Behind a full
// table the chain goes in a ring then.
TEST(RecordManagerRoom, ChainThatGoesInARingIsWalkedOnce)
{
    for (bool lent : {false, true}) {
        RecordFile records;
        records.Create(8, 16, 0);
        std::vector<unsigned> small;
        for (unsigned i = 0; i < 130; ++i)
            small.push_back(records.Add("small"));
        const unsigned stale = records.Add("a record with a body");
        for (unsigned reference : small)
            records->v_DeleteRecord(reference);
        if (lent)
            records->pcco_GetFile()->pv_GetMapping();
        records.Update(stale, "short");
        records->v_DeleteRecord(stale);
        const unsigned end = records->n_GetSize();
        for (unsigned i = 0; i < 100; ++i) {
            const std::string data =
                "a record that needs more room than there is" + std::to_string(i);
            const unsigned reference = records.Add(data);
            EXPECT_EQ(records.Get(reference), data);
        }
        EXPECT_GT(records->n_GetSize(), end);
        records.Close();
    }
}
