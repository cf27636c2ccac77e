// examples/almanac/Reading.h: how a date text is read, field by field.
#pragma once

#include <ostream>
#include <string>

namespace almanac
{
// Reads a text after a picture of the platform's kind, an empty one being the locale's short date,
// and tells what each field took and what came of it. False if the text is no date; the reason is
// told then.
bool TellReading(const std::string& text, const std::string& picture, unsigned locale,
                 std::ostream& output, std::string* reason);
} // namespace almanac
