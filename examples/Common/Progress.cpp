// examples/Common/Progress.cpp
#include "Progress.h"

namespace common
{
namespace
{
using namespace std::chrono_literals;

constexpr auto FIRST = 500ms;
constexpr auto STEP = 100ms;
constexpr unsigned BAR = 40;
} // namespace

Progress::Progress(std::ostream* stream, const std::string& text, Clock::time_point (*clock)())
    : output(stream),
      label(text),
      now(clock),
      next(clock() + FIRST)
{}

Progress::~Progress()
{
    // By blanks: not every terminal knows how to erase a line.
    if (width)
        *output << '\r' << std::string(width, ' ') << '\r' << std::flush;
}

void Progress::Show(unsigned done, unsigned total)
{
    if (!output)
        return;
    const Clock::time_point time = now();
    if (time < next)
        return;
    next = time + STEP;
    Draw(total ? static_cast<unsigned>(100ull * done / total) : 100);
}

void Progress::Draw(unsigned percent)
{
    const unsigned full = BAR * percent / 100;
    std::string line = label + " [" + std::string(full, '#') + std::string(BAR - full, '.') + "] " +
                       std::to_string(percent) + " %";
    *output << '\r' << line << std::flush;
    width = line.size();
}
} // namespace common
