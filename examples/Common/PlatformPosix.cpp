// examples/Common/PlatformPosix.cpp
#include "Platform.h"

#include <unistd.h>

#include <csignal>

namespace common
{
std::vector<std::string> CommandLine(int count, char** words)
{
    return {words + (count ? 1 : 0), words + count};
}

// Where the system limits the size of files, writing fails then in place of the process's end: the
// program says so, and takes away what it has begun.
void PrepareStreams()
{
    std::signal(SIGXFSZ, SIG_IGN);
}

bool IsErrorTerminal()
{
    return isatty(STDERR_FILENO) != 0;
}

// It has no entry in a directory, so nothing is left behind however the process ends.
Temporary OpenTemporary()
{
    Temporary temporary;
    temporary.file = std::tmpfile();
    if (temporary.file)
        temporary.name = "/proc/self/fd/" + std::to_string(fileno(temporary.file));
    return temporary;
}

bool FlushTemporary(Temporary* temporary)
{
    return std::fflush(temporary->file) == 0;
}

void DropTemporary(Temporary* temporary)
{
    std::fclose(temporary->file);
}
} // namespace common
