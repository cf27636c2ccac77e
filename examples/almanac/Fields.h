// examples/almanac/Fields.h: the fields of a date picture and what they take of a text.
#pragma once

#include <string>
#include <vector>

namespace almanac
{
// What a part of the picture took.
struct Field
{
    std::u16string picture; // its letters; empty for what stands between fields
    std::u16string taken;
    int value; // a number, the place of a name counted from 1, or the id of an era
};

// Walks a picture and a text side by side. Ends at the first field that finds nothing it can take,
// and tells the reason; empty if all found something.
std::vector<Field> WalkFields(const std::u16string& picture, const std::u16string& text,
                              unsigned locale, std::string* reason);

std::string ToText(const std::u16string& text);
std::u16string ToUnits(const std::string& text);
} // namespace almanac
