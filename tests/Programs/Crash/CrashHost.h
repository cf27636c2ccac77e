// tests/Programs/Crash/CrashHost.h: what a process does to its files, step by step: each call of the
// host, and each store into a view of a file.
#pragma once

#include <string>
#include <vector>

#include <sys/types.h>

// A call that changes a file, or hands it to the disk.
struct HostWrite
{
    enum Kind
    {
        WRITE,
        CUT,
        FLUSH
    };

    Kind kind;
    off_t at = 0;      // of a cut: the new length
    std::string bytes; // of a write
};

class CrashHost
{
public:
    // Ends this process, as a kill does, in front of that step, counted from 1.
    static void EndAt(unsigned step);
    // Puts down what changes files, until Stop.
    static void Log(std::vector<HostWrite>* target);
    static void Stop();
};
