// tests/Database/RecordManager/RecordManagerDamageTest.cpp: files with a byte or a word of them
// changed.
//
// The checker says first what a file is. A sound one must take any work, and be sound afterwards; a
// damaged one is opened and read by reference, and gives data or one of the errors for such a file,
// nothing else.
#include "Database/RecordManager/RecordFile.h"

#include <random>
#include <set>

#include "RecordCheck.h"

namespace
{
std::string Worked()
{
    return DataFile("record-file.hex");
}

// Records, resources and some free blocks.
std::string Mixed()
{
    RecordFile records;
    records.Create(8, 16, 6);
    std::vector<unsigned> references;
    for (unsigned i = 0; i < 16; ++i)
        references.push_back(records.Add(std::string(i * 4, static_cast<char>('a' + i))));
    for (unsigned id : {3u, 9u, 12u, 40u})
        records.AddResource(id, std::string(id, 'r'));
    for (unsigned i : {2u, 5u, 11u})
        records->v_DeleteRecord(references[i]);
    records->v_DeleteResource(9);
    records.Close();
    return ReadBytes("test.rec");
}

// A free table that has overflowed into the chain.
std::string Overflowed()
{
    RecordFile records;
    records.Create(4, 12, 2);
    std::vector<unsigned> references;
    for (unsigned i = 0; i < 140; ++i)
        references.push_back(records.Add("abcd"));
    references.push_back(records.Add("abcd and a body"));
    records.AddResource(1, "one");
    for (unsigned i = 3; i < 138; ++i)
        records->v_DeleteRecord(references[i]);
    records.Close();
    return ReadBytes("test.rec");
}

class Sweep
{
public:
    explicit Sweep(const std::string& soundBytes) : original(soundBytes), random(Seed(31005))
    {
        const RecordVerdict verdict = CheckRecordFile(original.bytes);
        EXPECT_TRUE(verdict.sound && verdict.notes.empty()) << DescribeRecordVerdict(verdict);
    }

    // The stride keeps the run short where each opening costs much.
    void Bytes(std::size_t stride)
    {
        for (std::size_t at = 0; at < original.bytes.size(); at += stride) {
            const char byte = original.bytes[at];
            for (char other :
                 {'\0', '\xFF', static_cast<char>(byte + 1), static_cast<char>(random())}) {
                if (other == byte)
                    continue;
                Image changed = original;
                changed.bytes[at] = other;
                Try(changed, at);
            }
            if (testing::Test::HasFailure())
                return;
        }
    }

    void Words(std::size_t stride)
    {
        const unsigned size = original.Word(80);
        const unsigned block = original.Word(40);
        const unsigned last = size - block;
        for (std::size_t at = 32; at + 4 <= original.bytes.size(); at += 4 * stride) {
            for (unsigned word : {0u, 1u, 0xFFFFFFFFu, size, last, last - 4 * block}) {
                if (word == original.Word(at))
                    continue;
                Image changed = original;
                changed.SetWord(at, word);
                Try(changed, at);
            }
            if (testing::Test::HasFailure())
                return;
        }
    }

    unsigned files = 0;
    unsigned soundFiles = 0;
    std::set<unsigned> codes;

private:
    void Try(const Image& image, std::size_t at)
    {
        SCOPED_TRACE(testing::Message() << "changed at " << at);
        ++files;
        const RecordVerdict verdict = CheckRecordFile(image.bytes);
        soundFiles += verdict.sound;
        // Most changes hit bytes without a meaning: of those a sample is enough.
        if (verdict.sound && at >= 84 && soundFiles % 16 != 0)
            return;
        ReadByReference(image);
        if (verdict.sound)
            UseInFull(verdict);
    }

    void ExpectAllowed()
    {
        const unsigned code = TakeCode();
        codes.insert(code);
        const bool system = code > 0 && code < 10000;
        EXPECT_TRUE(code == 0 || code == 31005 || code == 31050 || code == 31051 ||
                    code == OUT_OF_MEMORY || system)
            << code;
    }

    void ReadByReference(const Image& image)
    {
        // A file made anew costs some file systems much less than one cut to nothing.
        std::filesystem::remove("test.rec");
        image.Save();
        RecordFile records;
        const int map = files % 4 != 0;
        records->v_Open(CT_RecordManager::e_OpenRead, map);
        ExpectAllowed();
        if (!records->pcco_GetFile()->b_IsOpen())
            return;
        const unsigned block = original.Word(40);
        const unsigned references = static_cast<unsigned>(image.bytes.size()) / block + 2;
        const unsigned step = references > 150 ? 5 : 1;
        for (unsigned reference = files % step; reference < references; reference += step) {
            const std::string data = records.Get(reference);
            EXPECT_LE(data.size(), image.bytes.size() + records->n_GetRecordHeaderSize());
            ExpectAllowed();
        }
        for (unsigned id : {0u, 1u, 3u, 7u, 12u, 40u}) {
            if (records->b_ResourceExists(id))
                records.GetResource(id);
            ExpectAllowed();
        }
        records.Close();
    }

    void UseInFull(const RecordVerdict& verdict)
    {
        RecordFile records;
        records.OpenToWrite(files % 2 != 0);
        if (verdict.Has(RecordNote::NotWalkable) || verdict.Has(RecordNote::StaleBody)) {
            records.Close();
            return;
        }
        const std::vector<unsigned> references = records.Walk();
        for (unsigned reference : references) {
            const std::string data = records.Get(reference);
            records.UpdateHeader(reference, "head");
            records.Update(reference, data + std::string(random() % 40, 'u'));
        }
        for (unsigned i = 0; i < 20; ++i)
            records.Add(std::string(random() % 60, 'n'));
        for (unsigned id = 0; id < 50; ++id) {
            if (records->b_ResourceExists(id) && random() % 2)
                records.ReplaceResource(id, std::string(random() % 60, 'q'));
            else if (records->b_ResourceExists(id))
                records->v_DeleteResource(id);
            else if (records->n_GetResourceCount() < records->n_GetResourceMaxCount())
                records.AddResource(id, std::string(random() % 60, 'q'));
        }
        for (unsigned reference : references)
            if (random() % 2)
                records->v_DeleteRecord(reference);
        EXPECT_EQ(TakeCode(), 0u);
        records.Close();
        const RecordVerdict after = CheckRecordFile(ReadBytes("test.rec"));
        EXPECT_TRUE(after.sound) << DescribeRecordVerdict(after);
        EXPECT_FALSE(after.Has(RecordNote::StaleBody)) << DescribeRecordVerdict(after);
    }

    Image original;
    std::mt19937 random;
};

// Every place in the plain native run; a sample where files or code are slow.
#ifdef _WIN32
constexpr std::size_t STRIDE = 13;
#elif defined __SANITIZE_ADDRESS__
constexpr std::size_t STRIDE = 3;
#else
constexpr std::size_t STRIDE = 1;
#endif

void SweepFile(const char* name, const std::string& bytes)
{
    Sweep sweep(bytes);
    sweep.Bytes(STRIDE);
    sweep.Words(STRIDE);
    EXPECT_GT(sweep.soundFiles, 0u);
    EXPECT_GT(sweep.files, sweep.soundFiles);
    for (unsigned code : {0u, 31005u, 31050u, 31051u})
        EXPECT_EQ(sweep.codes.count(code), 1u) << code;
    std::printf("damage sweep: %s, %zu bytes, %u files, %u of them sound\n", name, bytes.size(),
                sweep.files, sweep.soundFiles);
}
} // namespace

TEST(RecordManagerDamage, WorkedFileWithAChange)
{
    SweepFile("worked", Worked());
}

TEST(RecordManagerDamage, MixedFileWithAChange)
{
    SweepFile("mixed", Mixed());
}

TEST(RecordManagerDamage, OverflowedFileWithAChange)
{
    SweepFile("overflowed", Overflowed());
}
