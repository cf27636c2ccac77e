// examples/specimen/Specimen.h: the program without its process.
#pragma once

#include <Common/Status.h>

#include <ostream>
#include <string>
#include <vector>

namespace specimen
{
using common::Status;
using enum common::Status;

// Arguments are UTF-8; so is what is written.
Status Run(const std::vector<std::string>& arguments, std::ostream& output, std::ostream& errors);
} // namespace specimen
