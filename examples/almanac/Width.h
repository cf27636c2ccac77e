// examples/almanac/Width.h: the room that a text takes on a terminal.
#pragma once

#include <string>

namespace almanac
{
// The columns of a UTF-8 text: two for what East Asian typography sets in a full square and for
// characters beyond U+FFFF, none for marks and for what can't be seen.
unsigned WidthOf(const std::string& text);

// The text, within marks that keep its direction to itself if it is written from right to left.
std::string Isolated(const std::string& text);

// The text with blanks behind it, or before it, so that it takes that many columns.
std::string PaddedRight(const std::string& text, unsigned width);
std::string PaddedLeft(const std::string& text, unsigned width);
} // namespace almanac
