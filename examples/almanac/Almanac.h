// examples/almanac/Almanac.h: the program, apart from the process that it runs in.
#pragma once

#include <Common/Status.h>

#include <ostream>
#include <string>
#include <vector>

namespace almanac
{
using common::Status;
using enum common::Status;

// Runs the program with its arguments, the program's own name not among them. All text is UTF-8.
Status Run(const std::vector<std::string>& arguments, std::ostream& output, std::ostream& errors);
} // namespace almanac
