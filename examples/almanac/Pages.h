// examples/almanac/Pages.h: a month as a table on a terminal, and as a page to print.
#pragma once

#include "Calendars.h"

#include <ostream>

namespace almanac
{
void PrintTable(const Month& month, std::ostream& output);

// An SVG document of the size of a sheet of A4.
void PrintPage(const Month& month, std::ostream& output);
} // namespace almanac
