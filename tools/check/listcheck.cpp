// tools/check/listcheck.cpp: tells whether compressed lists are sound.
#include "Files.h"
#include "ListCheck.h"

int main(int argc, char** argv)
{
    return ForEachFile(argc, argv, [](const char* path, const std::string& bytes) {
        const ListVerdict verdict = CheckList(bytes);
        std::printf("%s: %s", path, DescribeListVerdict(verdict).c_str());
        return verdict.sound;
    });
}
