// tests/Programs/Crash/PowerLoss.cpp
#include "Crash/PowerLoss.h"

#include <algorithm>

namespace
{
constexpr std::size_t WORD = 4;

void Put(std::string& file, const HostWrite& write, std::size_t size)
{
    const auto at = static_cast<std::size_t>(write.at);
    if (write.kind == HostWrite::CUT)
        return file.resize(at);
    if (size == 0)
        return;
    file.resize(std::max(file.size(), at + size));
    file.replace(at, size, write.bytes, 0, size);
}
} // namespace

PowerLoss::PowerLoss(const CrashScript& theScript) : script(theScript)
{
    std::filesystem::remove(PathOf("records.rec"));
    WriteBytes(PathOf("records.rec"), script.base);
    Records records;
    CrashHost::Log(&writes);
    for (unsigned number = 0; number < script.operations.size(); ++number) {
        script.Play(records, script.operations[number]);
        operations.resize(writes.size(), number);
    }
    CrashHost::Stop();
    std::string file = script.base;
    for (const HostWrite& write : writes)
        Put(file, write, write.bytes.size());
    REQUIRE(file == records.Load());
}

// How many of them, up to and with the last flush.
unsigned PowerLoss::Flushed(unsigned count) const
{
    while (count > 0 && writes[count - 1].kind != HostWrite::FLUSH)
        --count;
    return count;
}

std::string PowerLoss::Image(unsigned count, unsigned seed) const
{
    std::mt19937 random(seed);
    std::string file = script.base;
    std::size_t length = 0; // with all of them
    const unsigned flushed = Flushed(count);
    for (unsigned n = 0; n < count; ++n) {
        const HostWrite& write = writes[n];
        const std::size_t size = write.bytes.size();
        length = std::max(length, static_cast<std::size_t>(write.at) + size);
        const unsigned fate = n < flushed ? 0 : random() % 3;
        if (fate == 0)
            Put(file, write, size);
        else if (fate == 1 && size > WORD)
            Put(file, write, random() % (size / WORD) * WORD);
    }
    // The disk may know of the length and not of the bytes.
    if (random() % 2)
        file.resize(std::max(file.size(), length));
    return file;
}

Since PowerLoss::SinceFlush(unsigned count) const
{
    Since since;
    unsigned first = 0;
    if (const unsigned flushed = Flushed(count)) {
        first = operations[flushed - 1] + 1;
        since.state = *script.DuringOperation(first - 1).saving.begin();
    }
    const unsigned end = count ? operations[count - 1] + 1 : 0;
    for (unsigned number = first; number < end; ++number) {
        const Since during = script.DuringOperation(number);
        since.records.insert(during.records.begin(), during.records.end());
        since.resources.insert(during.resources.begin(), during.resources.end());
        since.saving.insert(during.saving.begin(), during.saving.end());
        since.chained = during.chained;
    }
    return since;
}
