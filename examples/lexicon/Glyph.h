// examples/lexicon/Glyph.h: how the characters of a key are shown.
#pragma once

#include <string>
#include <vector>

namespace lexicon
{
// A character as it is shown alone: itself, or its code where it has no form of its own.
struct Glyph
{
    std::string text;
    bool isCode;
};

// An element of a key in elements of that size; the one in front of it tells what the second half
// of a pair stands for. A blank is shown as an open box, a mark over a dotted circle. Elements of
// one byte are shown up to the end of ASCII, since a list doesn't say what those beyond are.
Glyph ShowCharacter(unsigned character, unsigned before, unsigned elementSize);

// A key as text without controls and without what no XML document can hold: they become U+FFFD.
std::string ShowText(const std::vector<unsigned>& key, unsigned elementSize);

// The same for well-formed UTF-8.
std::string ShowText(const std::string& text);

// How many pixels a text may take in a font of a size, rather more than less.
unsigned EstimateWidth(const std::string& text, unsigned fontSize);
} // namespace lexicon
