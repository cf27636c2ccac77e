// benchmarks/Support/SystemCalls.cpp
#include "Support/SystemCalls.h"

#include <csignal>

#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{
constexpr int AT_CALL = SIGTRAP | 0x80;
} // namespace

long SystemCalls::Count(const std::function<void()>& work)
{
    // The stops that enclose a work are calls too.
    const long own = CountBetweenStops([] {});
    const long all = own < 0 ? own : CountBetweenStops(work);
    return all < 0 ? all : all - own;
}

long SystemCalls::CountBetweenStops(const std::function<void()>& work)
{
    const int process = fork();
    if (process < 0)
        return -1;
    if (process == 0)
        RunTraced(work);
    long count = -1;
    int status = 0;
    if (waitpid(process, &status, 0) == process && WIFSTOPPED(status) &&
        ptrace(PTRACE_SETOPTIONS, process, 0, PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL) == 0) {
        count = CountUntilStop(process);
        ptrace(PTRACE_DETACH, process, 0, 0);
    }
    // It may stand still, and has nothing more to do.
    kill(process, SIGKILL);
    waitpid(process, &status, 0);
    return count;
}

void SystemCalls::RunTraced(const std::function<void()>& work)
{
    if (ptrace(PTRACE_TRACEME, 0, 0, 0) != 0)
        _exit(1);
    std::raise(SIGSTOP);
    work();
    std::raise(SIGSTOP);
    _exit(0);
}

// A call stops its process twice, when it begins and when it ends.
long SystemCalls::CountUntilStop(int process)
{
    for (long stops = 0;; ++stops) {
        int status = 0;
        if (ptrace(PTRACE_SYSCALL, process, 0, 0) != 0 || waitpid(process, &status, 0) != process ||
            !WIFSTOPPED(status))
            return -1;
        if (WSTOPSIG(status) != AT_CALL)
            return WSTOPSIG(status) == SIGSTOP ? stops / 2 : -1;
    }
}
