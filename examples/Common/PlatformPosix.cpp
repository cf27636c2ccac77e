// examples/Common/PlatformPosix.cpp
#include "Platform.h"

#include <unistd.h>

namespace common
{
std::vector<std::string> CommandLine(int count, char** words)
{
    return {words + (count ? 1 : 0), words + count};
}

void PrepareStreams() {}

bool IsErrorTerminal()
{
    return isatty(STDERR_FILENO) != 0;
}
} // namespace common
