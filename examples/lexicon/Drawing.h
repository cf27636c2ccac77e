// examples/lexicon/Drawing.h: a picture of a part of a compressed list.
#pragma once

#include "Subtree.h"

#include <functional>
#include <string>

namespace lexicon
{
// What a handle stands for, in well-formed UTF-8; empty for nothing that is to be shown.
using Note = std::function<std::string(unsigned handle)>;

// The nodes of a subtree as an SVG document that refers to nothing outside of itself. All its
// numbers are whole, so a list gives the same bytes everywhere.
std::string Draw(const Subtree& subtree, unsigned elementSize, const Note& note);
} // namespace lexicon
