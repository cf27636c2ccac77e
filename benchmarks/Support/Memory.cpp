// benchmarks/Support/Memory.cpp
#include "Support/Memory.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <string>

#include <malloc.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{
// A figure of /proc/self/status, in KiB; -1 where there is none.
long Status(const std::string& name)
{
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.starts_with(name + ":"))
            return std::strtol(line.c_str() + name.size() + 1, nullptr, 10);
    return -1;
}

double PeakHere(const std::function<void()>& work)
{
    work();
    malloc_trim(0);
    std::ofstream refs("/proc/self/clear_refs");
    refs << "5" << std::flush;
    const long before = Status("VmRSS");
    if (!refs || before < 0)
        return -1;
    work();
    return std::max(static_cast<double>(Status("VmHWM") - before) / 1024, Memory::LEAST);
}
} // namespace

double Memory::Peak(const std::function<void()>& work)
{
    int ends[2];
    if (pipe(ends) != 0)
        return -1;
    const pid_t child = fork();
    if (child == 0) {
        const double peak = PeakHere(work);
        _exit(write(ends[1], &peak, sizeof peak) == sizeof peak ? 0 : 1);
    }
    close(ends[1]);
    double peak = -1;
    if (child < 0 || read(ends[0], &peak, sizeof peak) != sizeof peak)
        peak = -1;
    close(ends[0]);
    if (child > 0)
        waitpid(child, nullptr, 0);
    return peak;
}
