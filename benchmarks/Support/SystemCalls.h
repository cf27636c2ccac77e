// benchmarks/Support/SystemCalls.h: what a work asks of the kernel.
#pragma once

#include <functional>

class SystemCalls
{
public:
    // All calls that the work makes, whichever they are: it is done in a process of its own, which
    // this one traces. -1 where tracing isn't permitted. The work's effects on memory are lost.
    static long Count(const std::function<void()>& work);

private:
    static long CountBetweenStops(const std::function<void()>& work);
    static void RunTraced(const std::function<void()>& work);
    static long CountUntilStop(int process);
};
