// examples/Common/Spool.cpp
#include "Spool.h"

#include <vector>

namespace common
{
Spool::~Spool()
{
    if (!temporary.name.empty())
        DropTemporary(&temporary);
}

bool Spool::Take(std::istream& stream, std::string* name)
{
    // A stream that is closed is found out before the file takes its number.
    stream.peek();
    if (stream.bad())
        return false;
    stream.clear();
    temporary = OpenTemporary();
    if (!temporary.file)
        return false;
    std::vector<char> bytes(0x10000);
    bool good = true;
    while (good && stream) {
        stream.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        const size_t count = static_cast<size_t>(stream.gcount());
        good = std::fwrite(bytes.data(), 1, count, temporary.file) == count;
    }
    *name = temporary.name;
    return FlushTemporary(&temporary) && good && !stream.bad();
}
} // namespace common
