// tests/Database/RecordManager/RecordManagerModelTest.cpp: random work, compared with the model of
// the file.
//
// Each operation must have the model's outcome, and each closed file the model's bytes, all of
// them. What the rules call sound after a close stays so, unless the run takes bodies away and
// touches such records again.
#include "Database/RecordManager/RecordFile.h"

#include <random>

#include "Models/RecordModel.h"
#include "RecordCheck.h"

namespace
{
struct Plan
{
    unsigned blockSize;
    unsigned headSize;
    unsigned resourceMax;
    unsigned operations;
    unsigned records; // about as many live at a time
    bool stale;       // updates may take bodies away
};

class Player
{
public:
    Player(const Plan& thePlan, unsigned seed) : plan(thePlan), random(seed) {}

    void Play()
    {
        records.Create(plan.headSize, plan.blockSize, plan.resourceMax);
        model.Create(plan.headSize, plan.blockSize, plan.resourceMax);
        Change(); // a file that is closed unchanged has no true end
        for (unsigned i = 0; i < plan.operations && !testing::Test::HasFailure(); ++i) {
            SCOPED_TRACE(testing::Message() << "operation " << i);
            if (Below(60) == 0)
                Reopen();
            else
                Change();
            longestChain = std::max(longestChain, model.ChainLength());
        }
        Close(true);
    }

    std::size_t longestChain = 0;
    unsigned closes = 0;

private:
    struct Record
    {
        unsigned reference;
        bool body;
        bool stale;
    };

    unsigned Below(unsigned n) { return std::uniform_int_distribution<unsigned>(0, n - 1)(random); }

    // Mostly around the block sizes, now and then long.
    std::string Data()
    {
        unsigned length = Below(plan.headSize + 3 * plan.blockSize + 1);
        if (Below(8) == 0)
            length = Below(plan.headSize + 1);
        if (Below(20) == 0)
            length += Below(20 * plan.blockSize);
        std::string data(length, ' ');
        const char first = static_cast<char>(random());
        for (unsigned i = 0; i < length; ++i)
            data[i] = static_cast<char>(first + i);
        return data;
    }

    bool HasBody(const std::string& data) const { return data.size() > plan.headSize; }

    void Change()
    {
        const unsigned kind = Below(100);
        const bool growing = shrinking ? Below(6) == 0 : Below(6) != 0;
        if (live.size() > plan.records)
            shrinking = true;
        if (live.size() < plan.records / 8)
            shrinking = false;
        if (kind < 45)
            growing || live.empty() ? Add() : Delete();
        else if (kind < 60)
            Update();
        else if (kind < 65)
            UpdateHeader();
        else if (kind < 75)
            Get();
        else if (kind < 77)
            Wrong();
        else if (kind < 79)
            Walk();
        else
            Resource();
    }

    void ExpectSame(unsigned expected)
    {
        EXPECT_EQ(TakeCode(), expected);
        EXPECT_EQ(records->n_GetSize(), model.Size());
        EXPECT_EQ(records->n_GetRecordCount(), model.RecordCount());
        EXPECT_EQ(records->n_GetResourceCount(), model.ResourceCount());
    }

    void Add()
    {
        SCOPED_TRACE("add");
        const std::string data = Data();
        unsigned reference;
        const unsigned error = model.Add(data, reference);
        EXPECT_EQ(records.Add(data), reference);
        ExpectSame(error);
        live.push_back({reference, HasBody(data), false});
    }

    // A record whose body was taken away must not be touched again: that would free or fill a block
    // twice.
    Record* Any()
    {
        Record* record = live.empty() ? nullptr : &live[Below(static_cast<unsigned>(live.size()))];
        return record && record->stale ? nullptr : record;
    }

    void Delete()
    {
        SCOPED_TRACE("delete");
        Record* record = Any();
        if (!record)
            return;
        records->v_DeleteRecord(record->reference);
        ExpectSame(model.Delete(record->reference));
        *record = live.back();
        live.pop_back();
    }

    void Update()
    {
        SCOPED_TRACE("update");
        Record* record = Any();
        if (!record)
            return;
        std::string data = Data();
        if (record->body && !HasBody(data)) {
            if (plan.stale)
                record->stale = true;
            else
                data.resize(plan.headSize + 1);
        }
        records.Update(record->reference, data);
        ExpectSame(model.Update(record->reference, data));
        record->body |= HasBody(data);
    }

    void UpdateHeader()
    {
        SCOPED_TRACE("update the header");
        if (live.empty())
            return;
        const unsigned reference = live[Below(static_cast<unsigned>(live.size()))].reference;
        const std::string data = Data();
        records.UpdateHeader(reference, data);
        ExpectSame(model.UpdateHeader(reference, data));
    }

    void Get()
    {
        SCOPED_TRACE("get");
        if (!live.empty())
            Get(live[Below(static_cast<unsigned>(live.size()))].reference);
    }

    void Get(unsigned reference)
    {
        std::string expected;
        const unsigned error = model.Get(reference, expected);
        EXPECT_EQ(records.Get(reference), expected);
        ExpectSame(error);
    }

    // Any number for a reference, and resources that may not be there.
    void Wrong()
    {
        SCOPED_TRACE("wrong");
        Get(Below(2) ? Below(model.Size() / plan.blockSize + 2) : static_cast<unsigned>(random()));
        std::string expected;
        const unsigned id = Below(2 * plan.resourceMax + 2);
        const unsigned error = model.GetResource(id, expected);
        EXPECT_EQ(records.GetResource(id), expected);
        ExpectSame(error);
    }

    void Walk()
    {
        SCOPED_TRACE("walk");
        if (plan.headSize + 8 > plan.blockSize)
            return;
        unsigned cursor = 0;
        do {
            std::string expected;
            unsigned next;
            const unsigned error = model.Next(cursor, expected, next);
            CT_Buffer buffer;
            EXPECT_EQ(records->n_GetNextRecord(cursor, &buffer), next);
            EXPECT_EQ(Text(buffer), expected);
            ExpectSame(error);
            cursor = error ? 0 : next;
        } while (cursor && !testing::Test::HasFailure());
    }

    void Resource()
    {
        SCOPED_TRACE("resource");
        const unsigned id = Below(plan.resourceMax + plan.resourceMax / 4 + 2);
        const std::string data = Data();
        switch (Below(4)) {
        case 0:
            records.AddResource(id, data);
            return ExpectSame(model.AddResource(id, data));
        case 1:
            records.ReplaceResource(id, data);
            return ExpectSame(model.ReplaceResource(id, data));
        case 2:
            records->v_DeleteResource(id);
            return ExpectSame(model.DeleteResource(id));
        default:
            EXPECT_EQ(records->b_ResourceExists(id) != 0, model.HasResource(id));
            ExpectSame(0);
        }
    }

    void Reopen()
    {
        MaybeFlush();
        Close(Below(2) == 0);
        if (Below(4) == 0) { // a look by a reader in between
            const bool map = Below(2) != 0;
            records.OpenToRead(map);
            EXPECT_EQ(model.Open(false, map), 0u);
            for (unsigned i = 0; i < 5; ++i)
                Get();
            Close(Below(2) == 0);
        }
        const bool map = Below(3) != 0;
        records.OpenToWrite(map);
        EXPECT_EQ(model.Open(true, map), 0u);
    }

    void MaybeFlush()
    {
        if (Below(8) == 0) {
            records->v_Flush();
            model.Flush();
        }
    }

    void Close(bool exit)
    {
        SCOPED_TRACE("close");
        records.Close(exit);
        model.Close(exit);
        ++closes;
        Compare(ReadBytes("test.rec"), model.Bytes());
    }

    void Compare(const std::string& bytes, const std::string& expected)
    {
        EXPECT_EQ(bytes.size(), expected.size());
        const auto [found, wanted] =
            std::mismatch(bytes.begin(), bytes.end(), expected.begin(), expected.end());
        if (found != bytes.end() || wanted != expected.end())
            ADD_FAILURE() << "the files differ at " << found - bytes.begin();
        const RecordVerdict verdict = CheckRecordFile(bytes);
        EXPECT_TRUE(verdict.sound) << DescribeRecordVerdict(verdict);
        // Blocks that a stale body names may have become heads or bodies of others.
        if (plan.stale)
            return;
        EXPECT_FALSE(verdict.Has(RecordNote::NobodysBlock)) << DescribeRecordVerdict(verdict);
        EXPECT_FALSE(verdict.Has(RecordNote::StaleBody));
        EXPECT_FALSE(verdict.Has(RecordNote::RecordCount));
    }

    Plan plan;
    std::mt19937 random;
    RecordFile records;
    RecordModel model;
    std::vector<Record> live;
    bool shrinking = false;
};

void PlayAll(const std::vector<Plan>& plans, unsigned seeds)
{
    const unsigned first = Seed(19970101);
    unsigned operations = 0, closes = 0;
    for (const Plan& plan : plans) {
        for (unsigned seed = first; seed < first + seeds; ++seed) {
            SCOPED_TRACE(testing::Message() << "seed " << seed << " block size " << plan.blockSize
                                            << " head size " << plan.headSize);
            Player player(plan, seed);
            player.Play();
            operations += plan.operations;
            closes += player.closes;
            if (plan.records >= 400) {
                EXPECT_GT(player.longestChain, 20u) << "the free table must overflow";
            }
            if (testing::Test::HasFailure())
                return;
        }
    }
    std::printf("model record: %zu plans, %u seeds each, %u operations, %u closes, 0 differences\n",
                plans.size(), seeds, operations, closes);
}
} // namespace

TEST(RecordManagerModel, SmallFilesAgreeWithTheModel)
{
    PlayAll({{64, 16, 4, 400, 30, false},
             {64, 56, 40, 400, 30, false},
             {8, 0, 5, 400, 30, false},
             {16, 8, 0, 400, 30, false},
             {48, 40, 7, 400, 30, false},
             {10, 4, 3, 400, 30, false},
             {27, 19, 11, 400, 30, false},
             {512, 100, 100, 400, 30, false}},
            6);
}

TEST(RecordManagerModel, HeadsLongerThanABlockAgreeWithTheModel)
{
    PlayAll({{16, 100, 4, 500, 40, false}, {8, 25, 9, 500, 40, false}}, 4);
}

TEST(RecordManagerModel, OverflowingFreeTablesAgreeWithTheModel)
{
    PlayAll({{16, 8, 20, 6000, 400, false},
             {64, 16, 200, 6000, 500, false},
             {24, 12, 50, 6000, 600, false}},
            1);
}

TEST(RecordManagerModel, StaleBodiesAgreeWithTheModel)
{
    PlayAll({{64, 16, 4, 1500, 100, true}, {16, 8, 10, 1500, 100, true}}, 4);
}

TEST(RecordManagerModel, FilesLargerThanTheFirstMapAgreeWithTheModel)
{
    PlayAll({{4096, 500, 20, 500, 350, false}}, 1);
}
