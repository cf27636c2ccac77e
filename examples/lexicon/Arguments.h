// examples/lexicon/Arguments.h: what the command line asks for.
#pragma once

#include <string>
#include <vector>

namespace lexicon
{
extern const char USAGE_TEXT[];

struct Arguments
{
    std::string command;
    // What follows the command, options left out.
    std::vector<std::string> operands;
    bool reverse = false;
    bool trace = false;
    bool help = false;

    // Options may stand anywhere; behind "--" there are none. Returns what is wrong, or an empty
    // text.
    std::string Parse(const std::vector<std::string>& words);

private:
    bool TakeOption(const std::string& word);
    std::string Check() const;
};
} // namespace lexicon
