// tools/check/listcheck.cpp: tells whether compressed lists are sound.
#include "ListCheck.h"
#include "Files.h"

#include <cstdio>

namespace
{
const Tool TOOL = {"listcheck",
                   "Tells whether compressed lists are sound. Prints a line for each: \"sound\", "
                   "or the first rule\n"
                   "broken with its offset.",
                   "all lists are sound", "one isn't, or can't be read",
                   [](const std::string& name, const std::string& bytes) {
                       const ListVerdict verdict = CheckList(bytes);
                       std::printf("%s: %s", name.c_str(), DescribeListVerdict(verdict).c_str());
                       return verdict.sound;
                   }};
} // namespace

int main(int argc, char** argv)
{
    return RunTool(TOOL, argc, argv);
}
