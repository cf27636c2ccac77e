// tools/check/reccheck.cpp: tells whether record files are sound.
#include "Files.h"
#include "RecordCheck.h"

int main(int argc, char** argv)
{
    return ForEachFile(argc, argv, [](const char* path, const std::string& bytes) {
        const RecordVerdict verdict = CheckRecordFile(bytes);
        std::printf("%s: %s", path, DescribeRecordVerdict(verdict).c_str());
        return verdict.sound;
    });
}
