// tools/check/reccheck.cpp: tells whether record files are sound.
#include "Files.h"
#include "RecordCheck.h"

#include <cstdio>

namespace
{
const Tool TOOL = {
    "reccheck",
    "Tells whether record files are sound. Prints a line for each: \"sound\", or the first rule\n"
    "broken with its offset; and a line for each note, which is worth knowing and no damage.",
    "all files are sound", "one isn't, or can't be read",
    [](const std::string& name, const std::string& bytes) {
        const RecordVerdict verdict = CheckRecordFile(bytes);
        std::printf("%s: %s", name.c_str(), DescribeRecordVerdict(verdict).c_str());
        return verdict.sound;
    }};
} // namespace

int main(int argc, char** argv)
{
    return RunTool(TOOL, argc, argv);
}
