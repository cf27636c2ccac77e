// examples/Common/Progress.h: the bar that long work shows on a terminal.
#pragma once

#include <chrono>
#include <ostream>
#include <string>

namespace common
{
// Nothing is written in the first half second, and then at most ten times a second. The bar is gone
// at the end.
class Progress
{
public:
    using Clock = std::chrono::steady_clock;

    // Without an output there is no bar.
    Progress(std::ostream* output, const std::string& label,
             Clock::time_point (*now)() = &Clock::now);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    void Show(unsigned done, unsigned total);

private:
    void Draw(unsigned percent);

    std::ostream* output;
    std::string label;
    Clock::time_point (*now)();
    Clock::time_point next;
    size_t width = 0;
};
} // namespace common
