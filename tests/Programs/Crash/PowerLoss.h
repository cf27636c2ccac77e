// tests/Programs/Crash/PowerLoss.h: the files that may be left when power is lost while a record file
// is written without a map.
#pragma once

#include <string>
#include <vector>

#include "Crash/CrashHost.h"
#include "Crash/CrashScript.h"

class PowerLoss
{
public:
    // Does the work once, and puts down what it writes.
    explicit PowerLoss(const CrashScript& theScript);

    // Writes, cuts and flushes: power may be lost behind each of so many, and before the first.
    unsigned Count() const { return static_cast<unsigned>(writes.size()); }
    // A file with each write that wasn't flushed kept, dropped or cut; between words, for those no
    // disk tears.
    std::string Image(unsigned count, unsigned seed) const;
    // What the file may hold beside the last save that was flushed.
    Since SinceFlush(unsigned count) const;

private:
    unsigned Flushed(unsigned count) const;

    const CrashScript& script;
    std::vector<HostWrite> writes;
    std::vector<unsigned> operations; // of each write
};
