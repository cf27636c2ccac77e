// examples/settings/Versions.h: version records of programs and libraries, as a table.
#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace settings
{
// Prints a line for each file that has a record, and tells of the others what is wrong with them.
// Result: whether all have one.
bool ShowVersions(const std::vector<std::string>& files, std::ostream& output,
                  std::ostream& errors);
} // namespace settings
