// tests/Database/RecordManager/RecordManagerSpaceTest.cpp: the free space of a record file.
//
// Most of these files have heads of 8 bytes and blocks of 16, so that a short record is one block,
// and blocks of any length are those of resources. The blocks begin at 1,280 + 8 bytes for each
// resource slot.
#include "Database/RecordManager/RecordFile.h"

namespace
{
constexpr unsigned BLOCK = 16;
constexpr unsigned SLOTS = 128;

// A file with a resource slot for whatever the test needs.
class SpaceFile : public RecordFile
{
public:
    SpaceFile() { Create(8, BLOCK, 1000); }

    // A resource whose block has that many bytes.
    void AddBlock(unsigned id, unsigned length) { AddResource(id, std::string(length - 4, 'r')); }
    void FreeBlock(unsigned id) { (*this)->v_DeleteResource(id); }
    Image Closed()
    {
        EXPECT_EQ(TakeCode(), 0u);
        Close();
        return Image::Load();
    }
};

constexpr unsigned FIRST = 1280 + 8 * 1000;

// Records of one block, of which the first 128 + more are deleted in order. Returns their
// references.
std::vector<unsigned> Overflow(RecordFile& records, unsigned more)
{
    std::vector<unsigned> references;
    for (unsigned i = 0; i < SLOTS + more + 5; ++i)
        references.push_back(records.Add("12345678"));
    for (unsigned i = 0; i < SLOTS + more; ++i)
        records->v_DeleteRecord(references[i]);
    return references;
}
} // namespace

// ---- Sizes ------------------------------------------------------------------------------------

TEST(RecordManagerSpace, BlocksAreMultiplesOfTheBlockSize)
{
    struct
    {
        unsigned blockSize, headSize, length, blocks;
    } const rows[] = {
        {64, 16, 0, 1},  {64, 56, 0, 1},  {64, 57, 0, 2},  {64, 16, 17, 2}, {64, 16, 76, 2},
        {64, 16, 77, 3}, {8, 0, 0, 1},    {8, 0, 4, 2},    {8, 0, 5, 3},    {10, 2, 8, 2},
        {10, 2, 9, 3},   {100, 92, 0, 1}, {100, 93, 0, 2},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message()
                     << row.blockSize << ' ' << row.headSize << ' ' << row.length);
        RecordFile records;
        records.Create(row.headSize, row.blockSize);
        const unsigned first = records->n_GetSize();
        records.Add(std::string(row.length, 'x'));
        EXPECT_EQ(records->n_GetSize() - first, row.blocks * row.blockSize);
        records.Close();
    }
}

TEST(RecordManagerSpace, EachTakingAndGivingCounts)
{
    SpaceFile records;
    const unsigned reference = records.Add("12345678body"); // two blocks
    records.AddBlock(1, 16);
    records->v_DeleteRecord(reference); // gives two
    records.AddBlock(2, 16);
    EXPECT_EQ(records.Closed().Word(72), 1 + 2 + 1 + 2 + 1u);
}

// ---- Taking from the table --------------------------------------------------------------------

TEST(RecordManagerSpace, FirstFitSplitsALargerBlockInFrontOfAnExactOne)
{
    RecordFile records;
    records.Create(8, 64, 10);
    const unsigned first = records->n_GetSize();
    records.AddResource(1, std::string(124, 'x'));
    records.AddResource(2, std::string(60, 'x'));
    records.AddResource(3, std::string(60, 'x'));
    records->v_DeleteResource(1);
    records->v_DeleteResource(2);
    EXPECT_EQ(records.Add("front"), first / 64);
    records.Close();
    const Image image = Image::Load();
    ASSERT_EQ(image.FreeCount(), 2u);
    EXPECT_EQ(image.FreeOffset(1), first + 64) << "the remainder keeps the slot";
    EXPECT_EQ(image.FreeLength(1), 64u);
    EXPECT_EQ(image.Word(first + 64), 64u) << "its size is written";
    EXPECT_EQ(image.FreeOffset(2), first + 128);
}

TEST(RecordManagerSpace, BlocksThatAreTooSmallArePassedOver)
{
    SpaceFile records;
    for (unsigned id = 0; id < 6; ++id)
        records.AddBlock(id, id % 2 ? 16 : 16 * (id + 1)); // 16 16 48 16 80 16
    for (unsigned id : {0u, 2u, 4u})
        records.FreeBlock(id);
    records.AddBlock(10, 64);
    const Image image = records.Closed();
    EXPECT_EQ(image.BlockOf(10), FIRST + 16 + 16 + 48 + 16);
    ASSERT_EQ(image.FreeCount(), 3u);
    EXPECT_EQ(image.FreeLength(1), 16u);
    EXPECT_EQ(image.FreeLength(2), 48u);
    EXPECT_EQ(image.FreeLength(3), 16u);
}

TEST(RecordManagerSpace, ExactFitInTheLastSlotShortensTheTable)
{
    SpaceFile records;
    records.AddBlock(1, 16);
    records.AddBlock(2, 32);
    records.AddBlock(3, 16);
    records.FreeBlock(1);
    records.FreeBlock(2);
    records.AddBlock(4, 32);
    const Image image = records.Closed();
    EXPECT_EQ(image.BlockOf(4), FIRST + 16);
    ASSERT_EQ(image.FreeCount(), 1u);
    EXPECT_EQ(image.FreeOffset(1), FIRST);
}

TEST(RecordManagerSpace, ExactFitInTheMiddleTakesTheLastEntryIntoItsSlot)
{
    SpaceFile records;
    for (unsigned id = 1; id <= 4; ++id)
        records.AddBlock(id, 16 * id);
    records.AddBlock(5, 16);
    for (unsigned id : {2u, 3u, 4u})
        records.FreeBlock(id);
    records.AddBlock(6, 32);
    const Image image = records.Closed();
    EXPECT_EQ(image.BlockOf(6), FIRST + 16);
    ASSERT_EQ(image.FreeCount(), 2u);
    EXPECT_EQ(image.FreeOffset(1), FIRST + 16 + 32 + 48) << "the block of 64";
    EXPECT_EQ(image.FreeLength(1), 64u);
    EXPECT_EQ(image.FreeLength(2), 48u);
}

TEST(RecordManagerSpace, NothingLargeEnoughExtendsTheFile)
{
    SpaceFile records;
    records.AddBlock(1, 16);
    records.AddBlock(2, 16);
    records.FreeBlock(1);
    records.FreeBlock(2);
    const unsigned end = records->n_GetSize();
    records.AddBlock(3, 32);
    EXPECT_EQ(records->n_GetSize(), end + 32) << "blocks that touch are not joined";
    const Image image = records.Closed();
    EXPECT_EQ(image.BlockOf(3), end);
    EXPECT_EQ(image.FreeCount(), 2u);
}

TEST(RecordManagerSpace, FileNeverShrinks)
{
    SpaceFile records;
    for (unsigned id = 1; id <= 50; ++id)
        records.AddBlock(id, 16 * id);
    const unsigned end = records->n_GetSize();
    for (unsigned id = 50; id >= 1; --id)
        records.FreeBlock(id);
    EXPECT_EQ(records->n_GetSize(), end);
    EXPECT_EQ(records.Closed().bytes.size(), end);
}

// ---- Giving back ------------------------------------------------------------------------------

TEST(RecordManagerSpace, FreedHeadGetsItsAlignedSize)
{
    RecordFile records;
    records.Create(20, 64);
    const unsigned reference = records.Add("a head");
    records->v_DeleteRecord(reference);
    records.Close();
    const Image image = Image::Load();
    EXPECT_EQ(image.Word(reference * 64), 64u);
    EXPECT_EQ(image.FreeOffset(1), reference * 64);
    EXPECT_EQ(image.FreeLength(1), 64u);
}

TEST(RecordManagerSpace, FreedBodyAndResourceKeepTheirSizeWord)
{
    RecordFile records;
    records.Create(20, 64, 1);
    records.AddResource(1, "0123456789");
    const unsigned reference = records.Add(std::string(50, 'x'));
    records->v_DeleteResource(1);
    records->v_DeleteRecord(reference);
    records.Close();
    const Image image = Image::Load();
    ASSERT_EQ(image.FreeCount(), 3u);
    EXPECT_EQ(image.FreeLength(1), 64u);
    EXPECT_EQ(image.Word(image.FreeOffset(1)), 14u);
    EXPECT_EQ(image.FreeLength(3), 64u);
    EXPECT_EQ(image.Word(image.FreeOffset(3)), 34u);
}

TEST(RecordManagerSpace, DeletionGivesTheHeadFirst)
{
    RecordFile records;
    records.Create(20, 64);
    const unsigned reference = records.Add(std::string(50, 'x'));
    records->v_DeleteRecord(reference);
    records.Close();
    const Image image = Image::Load();
    EXPECT_EQ(image.FreeOffset(1), reference * 64);
    EXPECT_EQ(image.FreeOffset(2), reference * 64 + 64);
}

// ---- The chain --------------------------------------------------------------------------------

TEST(RecordManagerSpace, FullTableWithoutAChainHasOrdinaryEntriesOnly)
{
    RecordFile records;
    records.Create(8, BLOCK);
    const std::vector<unsigned> references = Overflow(records, 0);
    records.Close();
    const Image image = Image::Load();
    ASSERT_EQ(image.FreeCount(), SLOTS);
    EXPECT_EQ(image.FreeOffset(SLOTS), references[127] * BLOCK);
    EXPECT_EQ(image.FreeLength(SLOTS), BLOCK);
}

TEST(RecordManagerSpace, BlockBeyondTheTableHeadsTheChain)
{
    RecordFile records;
    records.Create(8, BLOCK);
    const std::vector<unsigned> references = Overflow(records, 1);
    records.Close();
    const Image image = Image::Load();
    ASSERT_EQ(image.FreeCount(), SLOTS);
    EXPECT_EQ(image.FreeOffset(SLOTS), references[128] * BLOCK);
    EXPECT_EQ(image.FreeLength(SLOTS), 0u);
    EXPECT_EQ(image.Word(references[128] * BLOCK), BLOCK) << "its length is in its size word";
    EXPECT_EQ(image.Word(references[128] * BLOCK + 4), references[127] * BLOCK);
    EXPECT_EQ(image.Word(references[127] * BLOCK + 4), 0u) << "the former last entry ends it";
}

TEST(RecordManagerSpace, EachFurtherBlockTakesThePlaceOfTheHead)
{
    RecordFile records;
    records.Create(8, BLOCK);
    const std::vector<unsigned> references = Overflow(records, 3);
    records.Close();
    const Image image = Image::Load();
    EXPECT_EQ(image.FreeOffset(SLOTS), references[130] * BLOCK);
    for (unsigned i = 130; i > 127; --i)
        EXPECT_EQ(image.Word(references[i] * BLOCK + 4), references[i - 1] * BLOCK);
    EXPECT_EQ(image.Word(references[127] * BLOCK + 4), 0u);
}

TEST(RecordManagerSpace, ExactFitFromAFullTableMovesTheChainHeadIntoItsSlot)
{
    SpaceFile records;
    // 140 blocks, the fifth of 32 bytes.
    for (unsigned id = 1; id <= 140; ++id)
        records.AddBlock(id, id == 5 ? 32 : 16);
    for (unsigned id = 1; id <= 130; ++id)
        records.FreeBlock(id);
    records.AddBlock(1000, 32);
    const Image image = records.Closed();
    EXPECT_EQ(image.BlockOf(1000), FIRST + 4 * 16);
    ASSERT_EQ(image.FreeCount(), SLOTS);
    EXPECT_EQ(image.FreeOffset(5), FIRST + 130 * 16) << "the newest block";
    EXPECT_EQ(image.FreeLength(5), 16u);
    EXPECT_EQ(image.FreeOffset(SLOTS), FIRST + 129 * 16) << "the next one of the chain";
    EXPECT_EQ(image.FreeLength(SLOTS), 0u);
}

TEST(RecordManagerSpace, ChainHeadWithoutASuccessorEndsTheChain)
{
    SpaceFile records;
    // The 128th block is the only one of 48 bytes, the fifth of 32.
    for (unsigned id = 1; id <= 140; ++id)
        records.AddBlock(id, id == 5 ? 32 : id == 128 ? 48 : 16);
    for (unsigned id = 1; id <= 129; ++id)
        records.FreeBlock(id);
    const unsigned end = records->n_GetSize();
    records.AddBlock(1000, 48); // the block behind the head
    records.AddBlock(1001, 32); // from slot 5, where the head goes
    EXPECT_EQ(records->n_GetSize(), end);
    const Image image = records.Closed();
    EXPECT_EQ(image.BlockOf(1000), FIRST + 128 * 16);
    ASSERT_EQ(image.FreeCount(), SLOTS - 1);
    EXPECT_EQ(image.FreeOffset(5), FIRST + 128 * 16 + 48);
    EXPECT_EQ(image.FreeLength(5), 16u);
    EXPECT_EQ(image.FreeLength(SLOTS - 1), 16u);
}

TEST(RecordManagerSpace, ChainHeadItselfIsNotTaken)
{
    SpaceFile records;
    for (unsigned id = 1; id <= 140; ++id)
        records.AddBlock(id, id == 129 ? 32 : 16);
    for (unsigned id = 1; id <= 129; ++id)
        records.FreeBlock(id);
    const unsigned end = records->n_GetSize();
    records.AddBlock(1000, 32); // the head has 32 bytes
    EXPECT_EQ(records->n_GetSize(), end + 32);
    EXPECT_EQ(records.Closed().BlockOf(1000), end);
}

TEST(RecordManagerSpace, ChainIsSearchedForTheFirstBlockThatIsLargeEnough)
{
    SpaceFile records;
    for (unsigned id = 1; id <= 140; ++id)
        records.AddBlock(id, id == 130 ? 64 : id == 131 ? 48 : 16);
    for (unsigned id = 1; id <= 134; ++id)
        records.FreeBlock(id);
    // The chain: 134 133 132 131 130 129 128.
    const unsigned at131 = FIRST + 129 * 16 + 64;
    const unsigned at132 = at131 + 48;
    records.AddBlock(1000, 64); // exact, behind one that is too small
    records.AddBlock(1001, 32); // the front of 131
    const Image image = records.Closed();
    EXPECT_EQ(image.BlockOf(1000), FIRST + 129 * 16);
    EXPECT_EQ(image.BlockOf(1001), at131);
    EXPECT_EQ(image.Word(at132 + 4), at131 + 32) << "the remainder takes the block's place";
    EXPECT_EQ(image.Word(at131 + 32), 16u);
    EXPECT_EQ(image.Word(at131 + 36), FIRST + 128 * 16) << "130 is out of the chain";
    EXPECT_EQ(image.FreeCount(), SLOTS);
    EXPECT_EQ(image.FreeOffset(SLOTS), at132 + 32) << "the head stays";
}

TEST(RecordManagerSpace, UnalignedSizeWordsCountAlignedInTheChain)
{
    SpaceFile records;
    for (unsigned id = 1; id <= 140; ++id)
        records.AddBlock(id, id == 129 ? 37 : 16); // a block of 48
    for (unsigned id = 1; id <= 130; ++id)
        records.FreeBlock(id);
    records.AddBlock(1000, 48);
    EXPECT_EQ(records.Closed().BlockOf(1000), FIRST + 128 * 16);
}

TEST(RecordManagerSpace, EveryBlockOfAnOverflownTableComesBack)
{
    RecordFile records;
    records.Create(8, BLOCK);
    std::vector<unsigned> references = Overflow(records, 300);
    const unsigned end = records->n_GetSize();
    records.Close();
    records.OpenToWrite(false);
    std::vector<bool> taken(end / BLOCK);
    for (unsigned i = 0; i < SLOTS + 300; ++i) {
        const unsigned reference = records.Add("again");
        ASSERT_LT(reference, end / BLOCK) << i;
        EXPECT_FALSE(taken[reference]);
        taken[reference] = true;
    }
    EXPECT_EQ(records->n_GetSize(), end);
    records.Add("behind");
    EXPECT_EQ(records->n_GetSize(), end + BLOCK);
    records.Close();
    EXPECT_EQ(Image::Load().FreeCount(), 0u);
}

TEST(RecordManagerSpace, FileWithoutABlockSizeFails)
{
    RecordFile records;
    records->v_Create(16, 0, 4);
    EXPECT_EQ(TakeCode(), 31005u);
    EXPECT_EQ(records.Add("nowhere"), 0u);
    EXPECT_EQ(TakeCode(), 31005u);
    for (unsigned cursor : {0u, 1u}) {
        EXPECT_EQ(records->n_GetNextRecord(cursor, nullptr), 0u);
        EXPECT_EQ(TakeCode(), 31005u);
    }
    records->v_Close(1);
    TakeCode();
}
