// tools/check/recdump.cpp: prints record files as annotated hex text.
#include "Files.h"
#include "RecordDump.h"

int main(int argc, char** argv)
{
    return ForEachFile(argc, argv, [](const char*, const std::string& bytes) {
        std::fputs(DumpRecordFile(bytes).c_str(), stdout);
        return true;
    });
}
