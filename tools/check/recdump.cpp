// tools/check/recdump.cpp: prints record files as annotated hex text.
#include "Files.h"
#include "RecordDump.h"

#include <cstdio>

namespace
{
const Tool TOOL = {"recdump",
                   "Prints record files as annotated hex text: every byte once, in order, with "
                   "what it is. Any bytes\n"
                   "will do; what is no record file is shown as it is.",
                   "all files were printed", "one can't be read",
                   [](const std::string&, const std::string& bytes) {
                       std::fputs(DumpRecordFile(bytes).c_str(), stdout);
                       return true;
                   }};
} // namespace

int main(int argc, char** argv)
{
    return RunTool(TOOL, argc, argv);
}
