// examples/recode/Options.h: what the command line asks for.
#pragma once

#include "Encoding.h"
#include "LineEnds.h"

#include <optional>
#include <string>
#include <vector>

namespace recode
{
// How the program is called, and all that it has to tell of itself.
extern const char USAGE_TEXT[];
extern const char HELP_TEXT[];

struct Options
{
    std::optional<Encoding> from; // else it is found out
    std::optional<Encoding> to;   // else that of the source
    LineEnds::Kind ends = LineEnds::KEEP;
    bool replace = false;
    bool box = false;
    bool trace = false;
    bool help = false;
    bool version = false;
    std::string source;
    std::string target;

    // Options may stand anywhere; behind "--" there are none. Returns what is wrong, or an empty
    // text.
    std::string Parse(const std::vector<std::string>& words);

private:
    bool TakeSwitch(const std::string& word);
    std::string TakeOption(const std::string& word, const std::string* value);
    std::string TakeOperands(const std::vector<std::string>& operands);
};
} // namespace recode
