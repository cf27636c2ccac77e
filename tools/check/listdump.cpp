// tools/check/listdump.cpp: prints compressed lists as annotated hex text.
#include "Files.h"
#include "ListDump.h"

int main(int argc, char** argv)
{
    return ForEachFile(argc, argv, [](const char*, const std::string& bytes) {
        std::fputs(DumpList(bytes).c_str(), stdout);
        return true;
    });
}
