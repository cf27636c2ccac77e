// examples/lexicon/Arguments.cpp
#include "Arguments.h"

#include <algorithm>

namespace lexicon
{
const char USAGE_TEXT[] =
    "usage: lexicon build INPUT.tsv OUTPUT.rec\n"
    "       lexicon lookup FILE.rec [--reverse] WORD...\n"
    "       lexicon list FILE.rec\n"
    "       lexicon info FILE.rec\n"
    "\n"
    "  build   makes a lexicon from lines of UTF-8: source, tab, target\n"
    "  lookup  prints the targets of sources, or with --reverse the sources of targets;\n"
    "          exit status 1 if a word was not found\n"
    "  list    prints all pairs\n"
    "  info    prints what the file holds\n"
    "\n"
    "  --trace shows behind an error where it arose; -- ends the options\n";

namespace
{
struct Command
{
    const char* name;
    size_t fewest;
    size_t most;
};

constexpr Command COMMANDS[] = {
    {"build", 2, 2}, {"lookup", 2, static_cast<size_t>(-1)}, {"list", 1, 1}, {"info", 1, 1}};
} // namespace

std::string Arguments::Parse(const std::vector<std::string>& words)
{
    bool options = true;
    for (const std::string& word : words) {
        if (options && word == "--")
            options = false;
        else if (options && word.starts_with("-") && word != "-") {
            if (!TakeOption(word))
                return "unknown option " + word;
        } else if (command.empty())
            command = word;
        else
            operands.push_back(word);
    }
    return help ? "" : Check();
}

bool Arguments::TakeOption(const std::string& word)
{
    if (word == "--reverse")
        reverse = true;
    else if (word == "--trace")
        trace = true;
    else if (word == "--help" || word == "-h")
        help = true;
    else
        return false;
    return true;
}

std::string Arguments::Check() const
{
    if (command.empty())
        return "no command";
    const Command* found = std::find_if(std::begin(COMMANDS), std::end(COMMANDS),
                                        [this](const Command& c) { return command == c.name; });
    if (found == std::end(COMMANDS))
        return "unknown command " + command;
    if (operands.size() < found->fewest)
        return command + ": too few arguments";
    if (operands.size() > found->most)
        return command + ": too many arguments";
    if (reverse && command != "lookup")
        return command + ": --reverse belongs to lookup";
    return "";
}
} // namespace lexicon
