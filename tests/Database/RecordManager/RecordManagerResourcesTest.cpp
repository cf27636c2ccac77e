// tests/Database/RecordManager/RecordManagerResourcesTest.cpp: resources of a record file.
#include "Database/RecordManager/RecordFile.h"

TEST(RecordManagerResources, ResourceComesBackAsItWas)
{
    for (unsigned length : {0u, 1u, 60u, 61u, 5000u}) {
        SCOPED_TRACE(length);
        RecordFile records;
        records.Create(16, 64, 2);
        records.AddResource(9, std::string(length, 'r'));
        EXPECT_EQ(records->n_GetResourceCount(), 1u);
        EXPECT_EQ(records.GetResource(9), std::string(length, 'r'));
        records.Close();
        records.OpenToRead();
        EXPECT_EQ(records.GetResource(9), std::string(length, 'r'));
        records.Close();
    }
}

TEST(RecordManagerResources, BlockHoldsSizeAndData)
{
    RecordFile records;
    records.Create(16, 64, 2);
    records.AddResource(9, "0123456789");
    records.Close();
    const Image image = Image::Load();
    const unsigned block = image.BlockOf(9);
    EXPECT_EQ(block, 1344u);
    EXPECT_EQ(image.Word(block), 14u);
    EXPECT_EQ(image.bytes.substr(block + 4, 10), "0123456789");
}

TEST(RecordManagerResources, TableAscendsByUnsignedNumber)
{
    RecordFile records;
    records.Create(16, 64, 10);
    const std::vector<unsigned> ids = {7, 0xFFFFFFFF, 0, 0x80000000, 1, 0x7FFFFFFF};
    for (unsigned id : ids)
        records.AddResource(id, std::to_string(id));
    for (unsigned id : ids)
        EXPECT_EQ(records.GetResource(id), std::to_string(id));
    records.Close();
    const Image image = Image::Load();
    ASSERT_EQ(image.Word(60), ids.size());
    const unsigned ascending[] = {0, 1, 7, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF};
    for (unsigned slot = 1; slot <= ids.size(); ++slot)
        EXPECT_EQ(image.ResourceId(slot), ascending[slot - 1]);
    records.OpenToRead(false);
    for (unsigned id : ids)
        EXPECT_EQ(records.GetResource(id), std::to_string(id));
    records.Close();
}

TEST(RecordManagerResources, ManyResourcesAreFoundAfterOpening)
{
    RecordFile records;
    records.Create(8, 16, 1000);
    for (unsigned i = 0; i < 1000; ++i)
        records.AddResource(i * 7919 % 1000, std::to_string(i));
    EXPECT_EQ(TakeCode(), 0u);
    records.Close();
    records.OpenToWrite();
    for (unsigned i = 0; i < 1000; ++i)
        EXPECT_EQ(records.GetResource(i * 7919 % 1000), std::to_string(i));
    records.Close();
}

TEST(RecordManagerResources, ExistenceIsAskedWithoutAnError)
{
    RecordFile records;
    records.Create(16, 64, 2);
    records.AddResource(9, "");
    EXPECT_TRUE(records->b_ResourceExists(9));
    EXPECT_FALSE(records->b_ResourceExists(8));
    EXPECT_EQ(TakeCode(), 0u);
    records.Close();
}

TEST(RecordManagerResources, UpdateWithinTheBlocksCountStaysInPlace)
{
    RecordFile records;
    records.Create(16, 64, 2);
    records.AddResource(9, std::string(60, 'a'));
    const unsigned end = records->n_GetSize();
    records.ReplaceResource(9, "short");
    EXPECT_EQ(records.GetResource(9), "short");
    EXPECT_EQ(records->n_GetSize(), end);
    records.Close();
    const Image image = Image::Load();
    EXPECT_EQ(image.BlockOf(9), 1344u);
    EXPECT_EQ(image.Word(1344), 9u);
    EXPECT_EQ(image.FreeCount(), 0u);
    EXPECT_EQ(image.Word(64), 3u) << "header changes: the addition and the update";
    EXPECT_EQ(image.Word(68), 2u) << "resource changes: the addition alone";
}

TEST(RecordManagerResources, UpdateToAnotherCountOfBlocksMoves)
{
    RecordFile records;
    records.Create(16, 64, 2);
    records.AddResource(8, "eight");
    records.AddResource(9, std::string(60, 'a'));
    records.ReplaceResource(9, std::string(61, 'b'));
    EXPECT_EQ(records.GetResource(9), std::string(61, 'b'));
    EXPECT_EQ(records.GetResource(8), "eight");
    EXPECT_EQ(records->n_GetResourceCount(), 2u);
    records.Close();
    const Image image = Image::Load();
    EXPECT_EQ(image.BlockOf(9), 1344u + 2 * 64);
    ASSERT_EQ(image.FreeCount(), 1u);
    EXPECT_EQ(image.FreeOffset(1), 1344u + 64);
    EXPECT_EQ(image.Word(64), 4u);
    EXPECT_EQ(image.Word(68), 4u);
}

// The old block is free before the new one is sought: a larger old block gives its front.
TEST(RecordManagerResources, UpdateMayTakeTheFrontOfItsOldBlock)
{
    RecordFile records;
    records.Create(16, 64, 2);
    records.AddResource(9, std::string(150, 'a'));
    records.ReplaceResource(9, "b");
    records.Close();
    const Image image = Image::Load();
    EXPECT_EQ(image.BlockOf(9), 1344u);
    ASSERT_EQ(image.FreeCount(), 1u);
    EXPECT_EQ(image.FreeOffset(1), 1344u + 64);
    EXPECT_EQ(image.FreeLength(1), 128u);
}

TEST(RecordManagerResources, DeletionFreesBlockAndSlot)
{
    RecordFile records;
    records.Create(16, 64, 2);
    records.AddResource(8, "eight");
    records.AddResource(9, "nine");
    records.AddResource(10, "one too many");
    EXPECT_EQ(TakeCode(), 31052u);
    records->v_DeleteResource(8);
    EXPECT_EQ(records->n_GetResourceCount(), 1u);
    EXPECT_FALSE(records->b_ResourceExists(8));
    records.AddResource(10, "ten");
    EXPECT_EQ(TakeCode(), 0u);
    EXPECT_EQ(records.GetResource(9), "nine");
    EXPECT_EQ(records.GetResource(10), "ten");
    records.Close();
    EXPECT_EQ(Image::Load().BlockOf(10), 1344u);
    EXPECT_EQ(Image::Load().Word(64), 5u);
    EXPECT_EQ(Image::Load().Word(68), 5u);
}

TEST(RecordManagerResources, FetchOfAnEmptyResourceEmptiesTheBuffer)
{
    RecordFile records;
    records.Create(16, 64, 2);
    records.AddResource(9, "");
    CT_Buffer buffer("before", 6, 32);
    records->v_GetResource(9, &buffer);
    EXPECT_EQ(buffer.n_GetUsedSize(), 0u);
    records.Close();
}
