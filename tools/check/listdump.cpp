// tools/check/listdump.cpp: prints compressed lists as annotated hex text.
#include "ListDump.h"
#include "Files.h"

#include <cstdio>

namespace
{
const Tool TOOL = {"listdump",
                   "Prints compressed lists as annotated hex text: every byte once, in order, with "
                   "what it is. Any\n"
                   "bytes will do; what is no list is shown as it is.",
                   "all lists were printed", "one can't be read",
                   [](const std::string&, const std::string& bytes) {
                       std::fputs(DumpList(bytes).c_str(), stdout);
                       return true;
                   }};
} // namespace

int main(int argc, char** argv)
{
    return RunTool(TOOL, argc, argv);
}
