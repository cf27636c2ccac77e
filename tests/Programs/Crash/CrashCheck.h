// tests/Programs/Crash/CrashCheck.h: what has to hold of a file that a crash has left.
#pragma once

#include "Crash/CrashScript.h"

struct CrashFigures
{
    unsigned files = 0;
    unsigned chained = 0;  // the free table had overflowed
    unsigned refused = 0;  // no record file yet
    unsigned unclosed = 0; // the length tells that it wasn't closed
    unsigned sound = 0;    // as the checker says; those were worked on
    unsigned touchedReads = 0;
    unsigned touchedErrors = 0; // of those: told as damaged or gone
    unsigned foreign = 0;       // of those: gave bytes of an untouched one
};

class CrashCheck
{
public:
    enum Cause
    {
        KILLED,
        POWER_LOST // the order of writes isn't kept
    };

    CrashCheck(const CrashScript& theScript, Cause theCause) : script(theScript), cause(theCause) {}

    // Looks at the file that stands in its place, if one does.
    void Look(const Since& since, unsigned seed);

    CrashFigures figures;

private:
    bool OpenToRead(Records& records, bool map);
    void CheckHeader() const;
    void ReadRecords(Records& records);
    void ReadResources(Records& records);
    void CheckTouched(const std::string& data, unsigned code, unsigned gone);
    void MakeAnew();
    void Work(const RecordVerdict& verdict);
    void Change(Records& records, std::vector<unsigned>& live);
    const SavedState& Saved() const { return script.states[now.state]; }
    unsigned Below(unsigned n) { return static_cast<unsigned>(random() % n); }

    const CrashScript& script;
    const Cause cause;
    Since now;
    std::string image;
    std::mt19937 random;
};
