// examples/Common/Spool.h: a stream kept in a file, for what has to be read as a file.
#pragma once

#include "Platform.h"

#include <istream>
#include <string>

namespace common
{
class Spool
{
public:
    Spool() = default;
    Spool(const Spool&) = delete;
    ~Spool();

    // Reads the stream to its end. Tells the name of the file, which goes with the object; false
    // when the stream can't be read or the file can't be written.
    bool Take(std::istream& stream, std::string* name);

private:
    Temporary temporary;
};
} // namespace common
