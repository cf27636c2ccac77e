// tools/check/vercheck.cpp: tells whether the version records of files are sound.
#include "Files.h"
#include "VersionCheck.h"

#include <cstdio>

namespace
{
bool Show(const std::string& name, const std::string& bytes)
{
    const bool executable = bytes.compare(0, 2, "MZ") == 0;
    const std::string record = executable ? FindVersionRecord(bytes) : bytes;
    if (executable && record.empty()) {
        std::printf("%s: no version record\n", name.c_str());
        return true;
    }
    const VersionVerdict verdict = CheckVersion(record);
    std::printf("%s: %s", name.c_str(), DescribeVersionVerdict(verdict).c_str());
    return verdict.sound;
}

const Tool TOOL = {
    "vercheck",
    "Tells whether the version records of programs and libraries for Windows are "
    "sound. Prints a\n"
    "line for each: \"sound\", \"no version record\", or the first rule broken with "
    "its offset in\n"
    "the record. A file that doesn't begin with \"MZ\" is taken for a record itself.",
    "no record is damaged", "one is, or can't be read", Show};
} // namespace

int main(int argc, char** argv)
{
    return RunTool(TOOL, argc, argv);
}
