// examples/lexicon/Arguments.h: what the command line asks for.
#pragma once

#include <string>
#include <vector>

namespace lexicon
{
// How the program is called, and all that it has to tell of itself.
extern const char USAGE_TEXT[];
extern const char HELP_TEXT[];

struct Arguments
{
    std::string command;
    // What follows the command, options left out.
    std::vector<std::string> operands;
    // The file that draw writes, and the words that it draws at most.
    std::string output;
    unsigned limit = 200;
    bool reverse = false;
    bool trace = false;
    bool help = false;
    bool version = false;

    // Options may stand anywhere; behind "--" there are none. Returns what is wrong, or an empty
    // text.
    std::string Parse(const std::vector<std::string>& words);

private:
    bool TakeSwitch(const std::string& word);
    std::string TakeOption(const std::string& word, const std::string* value);
    std::string TakeLimit(const std::string& value);
    std::string Check() const;

    bool limited = false;
};
} // namespace lexicon
