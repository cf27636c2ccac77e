// benchmarks/Support/Memory.h: what a work takes of memory.
#pragma once

#include <functional>

class Memory
{
public:
    // By how many MiB the pages rise, at their peak, that a process has in memory: those of files
    // that it maps are among them. The work runs in a child, once so that the code that it needs is
    // mapped, and once more when the child has given back what its heap doesn't use and had its
    // peak taken back (/proc/self/clear_refs). The system counts pages by and by, so LEAST stands
    // for anything up to it. Below 0 where the system doesn't tell.
    static double Peak(const std::function<void()>& work);

    static constexpr double LEAST = 0.25;
};
