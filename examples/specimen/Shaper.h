// examples/specimen/Shaper.h: the width of a text as shaping tells it.
#pragma once

#include <optional>
#include <string>

namespace specimen
{
// In dots at so many of them an em, with the hints of the face. Nothing without HarfBuzz, or where
// it can't read the face.
std::optional<unsigned> ShapedWidth(const std::string& face, bool bold, bool italic, unsigned dots,
                                    const std::string& text, bool kerned);
} // namespace specimen
