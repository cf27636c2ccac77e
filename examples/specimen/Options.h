// examples/specimen/Options.h: what the command line asks for.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace specimen
{
// How the program is called, and all that it has to tell of itself.
extern const char USAGE_TEXT[];
extern const char HELP_TEXT[];

struct Options
{
    enum Command
    {
        NONE,
        LIST,
        DRAW,
        MEASURE
    };

    Command command = NONE;
    // What follows the command, options left out: of DRAW the face.
    std::vector<std::string> operands;
    std::string output;          // empty for the standard output
    std::vector<unsigned> sets;  // empty for those of the face
    std::vector<unsigned> sizes; // points
    bool bold = false;
    bool italic = false;
    bool help = false;
    bool version = false;

    // Options may stand anywhere; behind "--" there are none, and no commands. Returns what is
    // wrong, or an empty text; a blank where the usage tells enough.
    std::string Parse(const std::vector<std::string>& words);

private:
    std::string TakeOption(const std::string& word, const std::string* value);
    std::string Check();
};

// A size in points: 1 to 500.
std::optional<unsigned> ToSize(const std::string& digits);
} // namespace specimen
