// examples/lexicon/Arguments.cpp
#include "Arguments.h"

#include <algorithm>
#include <charconv>

namespace lexicon
{
#define USAGE_LINES                                                                                \
    "usage: lexicon build INPUT.tsv OUTPUT.rec\n"                                                  \
    "       lexicon lookup FILE.rec [--reverse] WORD...\n"                                         \
    "       lexicon match FILE.rec [--reverse] PATTERN\n"                                          \
    "       lexicon list FILE.rec\n"                                                               \
    "       lexicon info FILE.rec\n"                                                               \
    "       lexicon stats FILE.rec\n"                                                              \
    "       lexicon draw FILE.rec [--reverse] [--limit WORDS] PREFIX -o OUTPUT.svg\n"

const char USAGE_TEXT[] = USAGE_LINES "Try lexicon --help.\n";

// tools/manpage.py makes the manual page of it.
const char HELP_TEXT[] = USAGE_LINES
    "\n"
    "Makes a bilingual dictionary in a record file, and searches it.\n"
    "\n"
    "Commands:\n"
    "  build      makes a lexicon from lines of UTF-8: source, tab, target\n"
    "  lookup     prints the targets of sources, or with --reverse the sources of targets;\n"
    "             exit status 1 if a word was not found\n"
    "  match      prints the words that a pattern matches: * is any run of characters, ? any one,\n"
    "             and \\ takes the character behind it as it is; exit status 1 if there is none\n"
    "  list       prints all pairs\n"
    "  info       prints what the file holds\n"
    "  stats      prints what the lists of words are made of\n"
    "  draw       draws the part of a list below a prefix, of up to 200 words\n"
    "\n"
    "Options:\n"
    "  --reverse  looks from the targets\n"
    "  --limit WORDS\n"
    "             lets draw take that many words\n"
    "  -o OUTPUT.svg\n"
    "             the picture that draw makes\n"
    "  --trace    shows behind an error where it arose\n"
    "  --help     prints this text\n"
    "  --version  prints the version\n"
    "  --         ends the options\n"
    "\n"
    "Files:\n"
    "  -          in place of a file to read: the standard input\n"
    "  OUTPUT.rec.new\n"
    "             where a new lexicon comes into being. The old one stays until the new one is\n"
    "             whole and on the disk, and is then replaced in one step. A symbolic link goes "
    "on\n"
    "             pointing; what is neither a plain file nor missing is refused.\n"
    "\n"
    "Exit status:\n"
    "  0          all went well\n"
    "  1          an error, or nothing was found\n"
    "  2          a wrong use\n";

namespace
{
struct Command
{
    const char* name;
    size_t fewest;
    size_t most;
    bool reverses;
};

constexpr Command COMMANDS[] = {
    {"build", 2, 2, false}, {"lookup", 2, static_cast<size_t>(-1), true},
    {"match", 2, 2, true},  {"list", 1, 1, false},
    {"info", 1, 1, false},  {"stats", 1, 1, false},
    {"draw", 2, 2, true}};
} // namespace

std::string Arguments::Parse(const std::vector<std::string>& words)
{
    bool options = true;
    for (size_t n = 0; n < words.size(); ++n) {
        const std::string& word = words[n];
        if (options && word == "--")
            options = false;
        else if (options && word.starts_with("-") && word != "-") {
            if (TakeSwitch(word))
                continue;
            const std::string wrong =
                TakeOption(word, n + 1 < words.size() ? &words[n + 1] : nullptr);
            if (!wrong.empty())
                return wrong;
            ++n;
        } else if (command.empty())
            command = word;
        else
            operands.push_back(word);
    }
    return help || version ? "" : Check();
}

bool Arguments::TakeSwitch(const std::string& word)
{
    if (word == "--reverse")
        reverse = true;
    else if (word == "--trace")
        trace = true;
    else if (word == "--help" || word == "-h")
        help = true;
    else if (word == "--version")
        version = true;
    else
        return false;
    return true;
}

// An option with a value; returns what is wrong.
std::string Arguments::TakeOption(const std::string& word, const std::string* value)
{
    if (word != "-o" && word != "--limit")
        return "unknown option " + word;
    if (!value || value->empty())
        return word + ": the value is missing";
    if (word == "--limit")
        return TakeLimit(*value);
    output = *value;
    return "";
}

std::string Arguments::TakeLimit(const std::string& value)
{
    const char* end = value.data() + value.size();
    const auto [last, error] = std::from_chars(value.data(), end, limit);
    if (error != std::errc() || last != end || !limit)
        return "--limit: " + value + " is no number of words";
    limited = true;
    return "";
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
    if (reverse && !found->reverses)
        return command + ": --reverse belongs to lookup, match and draw";
    if (command == "draw")
        return output.empty() ? "draw: -o with the name of the picture is missing" : "";
    if (!output.empty())
        return command + ": -o belongs to draw";
    return limited ? command + ": --limit belongs to draw" : "";
}
} // namespace lexicon
