// tests/Database/RecordManager/RecordManagerLiteralTest.cpp: the short ways, beside the ways that
// they stand for.
//
// Two managers do the same work. Of one the file's handle and view are handed out, so that every
// transfer is a seek and a transfer, and the free chain is walked in the file. Results, errors with
// their trails, counters, allocations, the file's offset and the system's pointer must be the same,
// and all bytes of the files.
#include "Database/RecordManager/RecordFile.h"

#include <Database/RecordManager/FreeChain.h>

#include <windows.h>

#include <optional>
#include <random>

#include "Database/RecordManager/FullDisk.h"
#include "Support/Private.h"

OSTRA_PRIVATE(FreeChainMember, CT_FreeChain* CT_RecordManager::*, &CT_RecordManager::pco_Chain);

namespace
{
struct Plan
{
    unsigned blockSize;
    unsigned headSize;
    unsigned operations;
    unsigned records;  // about as many live at a time
    bool wild;         // stale bodies are touched, closed files damaged
    bool full = false; // now and then the disk has no more room
};

// What an operation leaves to be compared.
struct Outcome
{
    unsigned result;
    Failure failure;
    unsigned size, records, resources, offset, allocations;
    std::string data;
    unsigned room;

    bool operator==(const Outcome&) const = default;
};

void PrintTo(const Outcome& outcome, std::ostream* out)
{
    *out << outcome.result << ' ' << testing::PrintToString(outcome.failure) << ' ' << outcome.size
         << ' ' << outcome.records << ' ' << outcome.resources << " offset " << outcome.offset
         << " allocations " << outcome.allocations << " room " << outcome.room << ' '
         << testing::PrintToString(outcome.data);
}

class Pair
{
public:
    Pair(const Plan& thePlan, unsigned seed) : plan(thePlan), random(seed) {}

    void Play()
    {
        Both([&](CT_RecordManager& manager) {
            manager.v_Create(plan.headSize, plan.blockSize, 30);
            return 0;
        });
        if (plan.full)
            FillMap();
        for (unsigned i = 0; i < plan.operations && !testing::Test::HasFailure(); ++i) {
            SCOPED_TRACE(testing::Message() << "operation " << i);
            if (Below(500) == 0)
                Reopen();
            else
                Change();
            mirrored += (*fast).*Private(FreeChainMember()) != nullptr;
            EXPECT_EQ((*literal).*Private(FreeChainMember()), nullptr);
        }
        Close(true);
    }

    unsigned mirrored = 0; // operations with the chain in memory
    unsigned refused = 0;  // operations for which the file could not grow

private:
    unsigned Below(unsigned n) { return std::uniform_int_distribution<unsigned>(0, n - 1)(random); }

    // A record that leaves little of the first map.
    void FillMap()
    {
        const std::string text(0xFFFFF - 100 * plan.blockSize, 'f');
        const CT_Buffer data(text.data(), static_cast<unsigned>(text.size()), 32);
        EXPECT_NE(Both([&](CT_RecordManager& manager) { return manager.n_AddRecord(&data); }), 0u);
    }

    std::string Data()
    {
        unsigned length = Below(plan.headSize + 3 * plan.blockSize + 1);
        if (Below(6) == 0)
            length = Below(plan.headSize + 1);
        if (Below(10) == 0)
            length += Below(12 * plan.blockSize);
        std::string data(length, ' ');
        const char first = static_cast<char>(random());
        for (unsigned i = 0; i < length; ++i)
            data[i] = static_cast<char>(Below(3) ? first + i : 0);
        return data;
    }

    // The same for both, and what it leaves the same.
    template <class Work>
    unsigned Both(Work work)
    {
        const CT_WinFile* file = literal->pcco_GetFile();
        std::optional<FullDisk> disk;
        if (plan.full && file->b_IsOpen() && Below(8))
            disk.emplace(file->vn_GetSize());
        const Outcome outcome = Run(fast, fastBuffer, work);
        file->h_GetHandle();
        file->pv_GetMapping();
        const Outcome expected = Run(literal, literalBuffer, work);
        EXPECT_EQ(outcome, expected);
        EXPECT_TRUE(!file->b_IsOpen() || file->b_GetMapping());
        refused += disk && outcome.failure.code < 10000;
        return outcome.result;
    }
    template <class Work>
    Outcome Run(RecordFile& records, CT_Buffer& theBuffer, Work work)
    {
        buffer = &theBuffer;
        const unsigned before = CT_Buffer::sn_GetAllocCount();
        Outcome outcome{};
        outcome.result = work(*records);
        outcome.allocations = CT_Buffer::sn_GetAllocCount() - before;
        outcome.failure = Errors().b_IsSetError() ? TakeFailure() : Failure();
        const size_t name = outcome.failure.text.find(".rec");
        if (name != std::string::npos)
            outcome.failure.text[name - 1] = '?';
        outcome.size = records->n_GetSize();
        outcome.records = records->n_GetRecordCount();
        outcome.resources = records->n_GetResourceCount();
        outcome.offset = records->pcco_GetFile()->vn_GetOffset();
        outcome.data = Text(theBuffer);
        outcome.room = theBuffer.n_GetMaximumSize();
        return outcome;
    }

    unsigned Reference()
    {
        if (plan.wild && Below(100) == 0)
            return Below(literal->n_GetSize() / plan.blockSize + 2);
        return live.empty() ? 0 : live[Below(static_cast<unsigned>(live.size()))];
    }

    void Change()
    {
        if (live.size() > plan.records)
            shrinking = true;
        if (live.size() < plan.records / 6)
            shrinking = false;
        const unsigned kind = Below(100);
        if (kind < 50)
            (Below(6) == 0) == shrinking ? Add() : Delete();
        else if (kind < 75)
            Update();
        else if (kind < 80)
            UpdateHeader();
        else if (kind < 90)
            Get();
        else
            Resource();
    }
    void Add()
    {
        SCOPED_TRACE("add");
        std::string text = Data();
        if (plan.wild && text.size() > plan.headSize)
            text.resize(plan.headSize); // one block an operation
        const CT_Buffer data(text.data(), static_cast<unsigned>(text.size()), 32);
        const unsigned reference =
            Both([&](CT_RecordManager& manager) { return manager.n_AddRecord(&data); });
        if (reference)
            live.push_back(reference);
    }
    void Delete()
    {
        SCOPED_TRACE("delete");
        const unsigned reference = Reference();
        Both([&](CT_RecordManager& manager) { return manager.v_DeleteRecord(reference), 0; });
        if (!plan.wild || Below(60))
            std::erase(live, reference);
    }
    void Update()
    {
        SCOPED_TRACE("update");
        std::string text = Data();
        if (!plan.wild && text.size() <= plan.headSize)
            text.resize(plan.headSize + 1);
        const CT_Buffer data(text.data(), static_cast<unsigned>(text.size()), 32);
        const unsigned reference = Reference();
        Both(
            [&](CT_RecordManager& manager) { return manager.v_UpdateRecord(reference, &data), 0; });
    }
    void UpdateHeader()
    {
        SCOPED_TRACE("update the header");
        const std::string text = Data();
        const CT_Buffer data(text.data(), static_cast<unsigned>(text.size()), 32);
        const unsigned reference = Reference();
        Both([&](CT_RecordManager& manager) {
            return manager.v_UpdateRecordHeader(reference, &data), 0;
        });
    }
    void Get()
    {
        SCOPED_TRACE("get");
        const unsigned reference = Reference();
        const unsigned kind = Below(8);
        const CT_Buffer holder;
        Both([&](CT_RecordManager& manager) {
            if (kind == 0)
                buffer->v_SetSize(0, 0);
            CT_Buffer sharing;
            if (kind == 1)
                sharing.v_Set(buffer);
            return manager.v_GetRecord(reference, buffer), 0;
        });
    }
    void Resource()
    {
        SCOPED_TRACE("resource");
        const unsigned id = Below(40);
        const std::string text = Data();
        const CT_Buffer data(text.data(), static_cast<unsigned>(text.size()), 32);
        const unsigned kind = Below(4);
        Both([&](CT_RecordManager& manager) {
            if (kind == 0)
                manager.v_AddResource(id, &data);
            else if (kind == 1 && !plan.wild)
                manager.v_UpdateResource(id, &data);
            else if (kind == 2)
                manager.v_DeleteResource(id);
            else
                manager.v_GetResource(id, buffer);
            return 0;
        });
    }

    void Reopen()
    {
        const bool flush = Below(4) == 0;
        const bool exit = Below(2) != 0;
        if (flush)
            Both([](CT_RecordManager& manager) { return manager.v_Flush(), 0; });
        Close(exit);
        if (plan.wild)
            Damage();
        Both([](CT_RecordManager& manager) {
            return manager.v_Open(CT_RecordManager::e_OpenReadWrite, 1), 0;
        });
    }
    // The links of some free blocks become others.
    void Damage()
    {
        Image image = Image::Load("a.rec");
        for (unsigned count = Below(3); count && image.FreeCount(); --count) {
            const unsigned offset = image.FreeOffset(1 + Below(image.FreeCount()));
            const unsigned at = offset + 4 * Below(2);
            if (at + 4 <= image.bytes.size())
                image.SetWord(at, plan.blockSize * Below(image.Word(80) / plan.blockSize));
        }
        image.Save("a.rec");
        image.Save("b.rec");
    }
    void Close(bool exit)
    {
        SCOPED_TRACE("close");
        const auto pointer = [](const CT_WinFile* file) {
            return SetFilePointer(file->h_GetHandle(), 0, nullptr, FILE_CURRENT);
        };
        EXPECT_EQ(pointer(fast->pcco_GetFile()), pointer(literal->pcco_GetFile()));
        Both([=](CT_RecordManager& manager) { return manager.v_Close(exit), 0; });
        EXPECT_TRUE(ReadBytes("a.rec") == ReadBytes("b.rec"));
    }

    Plan plan;
    std::mt19937 random;
    RecordFile fast{u"a.rec"};
    RecordFile literal{u"b.rec"};
    CT_Buffer fastBuffer, literalBuffer;
    CT_Buffer* buffer = nullptr; // of the two the one whose turn it is
    std::vector<unsigned> live;
    bool shrinking = false;
};

// Returns how many operations found no room.
unsigned PlayAll(const std::vector<Plan>& plans, unsigned seeds, unsigned least)
{
    const unsigned first = Seed(20260101);
    unsigned mirrored = 0, refused = 0;
    for (const Plan& plan : plans) {
        for (unsigned seed = first; seed < first + seeds; ++seed) {
            SCOPED_TRACE(testing::Message() << "seed " << seed << " block size " << plan.blockSize
                                            << " head size " << plan.headSize);
            Pair pair(plan, seed);
            pair.Play();
            mirrored += pair.mirrored;
            refused += pair.refused;
            if (testing::Test::HasFailure())
                return refused;
        }
    }
    std::printf("literal record: %zu plans, %u seeds each, the chain in memory for %u operations\n",
                plans.size(), seeds, mirrored);
    EXPECT_GT(mirrored, least);
    return refused;
}
} // namespace

TEST(RecordManagerLiteral, ShortWaysDoTheSameInSoundFiles)
{
    PlayAll({{64, 56, 3000, 500, false}, {24, 12, 2000, 400, false}, {16, 40, 2000, 400, false}}, 1,
            1000);
}

TEST(RecordManagerLiteral, ShortWaysDoTheSameInDamagedFiles)
{
    PlayAll({{64, 56, 2000, 400, true}, {16, 8, 2000, 400, true}, {12, 4, 2000, 400, true}}, 6,
            100);
}

#ifndef _WIN32
TEST(RecordManagerLiteral, ShortWaysDoTheSameWhereFilesCannotGrow)
{
    EXPECT_GT(PlayAll({{64, 56, 2000, 250, true, true}, {24, 12, 2000, 300, true, true}}, 4, 0),
              3u);
}
#endif
