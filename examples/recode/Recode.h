// examples/recode/Recode.h: the program, apart from the process that it runs in.
#pragma once

#include <Common/Status.h>

#include <istream>
#include <ostream>
#include <string>
#include <vector>

namespace recode
{
using common::Status;
using enum common::Status;

struct Streams
{
    std::ostream& output;
    std::ostream& errors;
    // Where a progress bar may be shown; null for nowhere.
    std::ostream* terminal;
    // What "-" in place of the source stands for.
    std::istream* input;
};

// Runs the program with its arguments, the program's own name not among them. All text is UTF-8.
Status Run(const std::vector<std::string>& arguments, const Streams& streams);
} // namespace recode
