// examples/specimen/Specimen.h: the program without its process.
#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace specimen
{
enum Status
{
    DONE,
    FAILED,
    USAGE
};

// Arguments are UTF-8; so is what is written.
Status Run(const std::vector<std::string>& arguments, std::ostream& output, std::ostream& errors);
} // namespace specimen
