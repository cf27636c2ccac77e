// examples/ask/Commands.h: the commands of the program, apart from the process they run in.
#pragma once

#include <functional>
#include <ostream>
#include <string>
#include <vector>

namespace ask
{
// Exit statuses.
enum Status
{
    DONE = 0,
    FAILED = 1,
    USAGE = 2,
    SILENT = 3 // Nobody answers, or not in time.
};

struct Surroundings
{
    std::ostream& output;
    std::ostream& errors;
    // Takes what ends a server, which is called on another thread; may be empty.
    std::function<void(std::function<void()> stop)> onStop;
};

// Runs the program with its arguments, the program's own name not among them. All text is UTF-8.
Status Run(const std::vector<std::string>& arguments, const Surroundings& around);
} // namespace ask
