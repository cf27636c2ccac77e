// examples/ask/Command.h: the command that adds a pair, as text: [add("word","translation")], with a
// quotation mark twice where one is meant.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace ask
{
struct Addition
{
    std::string word;
    std::string translation;

    bool operator==(const Addition&) const = default;
};

std::string CommandOf(const Addition& addition);
// Blanks may stand between the parts, and case doesn't count in the name. Nothing for another text.
std::optional<Addition> ReadCommand(std::string_view text);
} // namespace ask
