// tests/Faults/RecordManagerCrashTest.cpp: writers of record files that end in front of a call of a
// service. On every target a sample; the programs in tests/Programs take all of them on Linux.
#include "Database/RecordManager/RecordFile.h"

#include <string>
#include <vector>

#include "Faults/Services.h"
#include "RecordCheck.h"
#include "Support/ChildProcess.h"

namespace
{
constexpr unsigned KEPT = 8, CHANGED = 4; // records
constexpr unsigned SAMPLE = 4;            // of so many calls one

std::string Data(unsigned number)
{
    return std::string(10 + 23 * number, static_cast<char>('A' + number));
}

// The references, those that are changed last.
std::vector<unsigned> MakeBase()
{
    std::filesystem::remove("test.rec");
    RecordFile records;
    records.Create(16, 64, 4);
    records.AddResource(1, "the kept resource");
    std::vector<unsigned> references;
    for (unsigned number = 0; number < KEPT + CHANGED; ++number)
        references.push_back(records.Add(Data(number)));
    records.Close();
    return references;
}

void CheckAllowed(unsigned code)
{
    EXPECT_TRUE(code == 0 || code == 31005 || code == 31051) << code;
}

void CheckFile(const std::vector<unsigned>& references, bool map)
{
    RecordFile records;
    records.OpenToRead(map);
    for (unsigned number = 0; number < KEPT; ++number)
        EXPECT_EQ(records.Get(references[number]).substr(0, Data(number).size()), Data(number));
    EXPECT_EQ(records.GetResource(1), "the kept resource");
    EXPECT_EQ(TakeCode(), 0U);
    for (unsigned number = KEPT; number < references.size(); ++number) {
        records.Get(references[number]);
        CheckAllowed(TakeCode());
    }
    records.Close();
}

// What the checker calls sound takes more.
void Continue(const std::vector<unsigned>& references, bool map)
{
    if (!CheckRecordFile(ReadBytes("test.rec")).sound)
        return;
    RecordFile records;
    records.OpenToWrite(map);
    for (unsigned number = 0; number < 5; ++number)
        EXPECT_NE(records.Add(Data(number)), 0U);
    records.Close();
    const RecordVerdict verdict = CheckRecordFile(ReadBytes("test.rec"));
    EXPECT_TRUE(verdict.sound) << DescribeRecordVerdict(verdict);
    CheckFile(references, map);
}

// How many points were looked at.
unsigned Sweep(const char* map)
{
    unsigned points = 0;
    for (unsigned call = 1; !testing::Test::HasFailure(); call += SAMPLE, ++points) {
        SCOPED_TRACE(testing::Message() << "ended at call " << call);
        const std::vector<unsigned> references = MakeBase();
        ChildProcess::Arguments arguments{std::to_string(call), map};
        for (unsigned number = KEPT; number < references.size(); ++number)
            arguments.push_back(std::to_string(references[number]));
        const int status = ChildProcess("RecordWriter", arguments).Wait();
        if (status == 0)
            return points;
        EXPECT_EQ(status, Services::ENDED);
        CheckFile(references, points % 2 != 0);
        Continue(references, points % 4 > 1);
    }
    return points;
}
} // namespace

// Arguments: the call, whether mapped, four references.
CHILD_PROCESS(RecordWriter)
{
    const auto reference = [&](unsigned number) {
        return static_cast<unsigned>(std::stoul(arguments[2 + number]));
    };
    RecordFile records;
    Services::EndAt(static_cast<unsigned>(std::stoul(arguments[0])));
    records.OpenToWrite(arguments[1] == "mapped");
    records->v_DeleteRecord(reference(0));
    records.Add(std::string(100, 'x'));
    records.Update(reference(1), std::string(400, 'y'));
    records.AddResource(2, "another resource");
    records->v_Flush();
    records->v_DeleteRecord(reference(2));
    records.Update(reference(3), std::string(40, 'z'));
    records.Add("short");
    records->v_DeleteResource(2);
    records.Close();
    Services::Disarm();
    return TakeCode() == 0 ? 0 : 1;
}

TEST(RecordManagerCrash, UnmappedWriterThatEndsLeavesWhatItDidNotTouch)
{
    EXPECT_GE(Sweep("unmapped"), 20U);
}

TEST(RecordManagerCrash, MappedWriterThatEndsLeavesWhatItDidNotTouch)
{
    EXPECT_GE(Sweep("mapped"), 3U);
}
