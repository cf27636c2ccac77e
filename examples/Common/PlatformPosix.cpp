// examples/Common/PlatformPosix.cpp
#include "Platform.h"

#include <unistd.h>

#include <csignal>
#include <thread>

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

void OnStop(std::function<void()> stop)
{
    sigset_t signals;
    sigemptyset(&signals);
    for (const int number : {SIGINT, SIGTERM, SIGHUP})
        sigaddset(&signals, number);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    std::thread([signals, stop = std::move(stop)] {
        for (int number;;)
            if (sigwait(&signals, &number) == 0)
                stop();
    }).detach();
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
