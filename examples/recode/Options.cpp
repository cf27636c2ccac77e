// examples/recode/Options.cpp
#include "Options.h"

namespace recode
{
#define USAGE_LINES "usage: recode [OPTION...] SOURCE TARGET\n"

const char USAGE_TEXT[] = USAGE_LINES "Try recode --help.\n";

// tools/manpage.py makes the manual page of it.
const char HELP_TEXT[] = USAGE_LINES
    "\n"
    "Converts a text file to another encoding, or to other line ends. The source may be the "
    "target.\n"
    "\n"
    "Options:\n"
    "  --from ENCODING\n"
    "             the encoding of the source. Without it the program finds out and says which it "
    "is:\n"
    "             by the mark at the start; by what the first 100 bytes look like, for UTF-16;\n"
    "             UTF-8 if all of the text is that; else the ANSI code page\n"
    "  --to ENCODING\n"
    "             the encoding of the target; without it that of the source\n"
    "  --eol END  makes all line ends lf, crlf or cr\n"
    "  --replace  takes what is ill-formed in the source for U+FFFD, and characters that the "
    "target\n"
    "             doesn't hold for what its code page has instead. Without it either is refused.\n"
    "  --box      shows a failure in a window, too\n"
    "  --trace    shows behind an error where it arose\n"
    "  --help     prints this text\n"
    "  --version  prints the version\n"
    "  --         ends the options\n"
    "\n"
    "Encodings:\n"
    "  utf-8      a mark in the source isn't kept\n"
    "  utf-8-mark\n"
    "             the same, and the target begins with the mark\n"
    "  utf-16     a target begins with the mark; in a source that has none the low byte is first\n"
    "  utf-16be   the same with the high byte first\n"
    "  utf-7      7-bit text\n"
    "  ansi       the system's ANSI code page\n"
    "  NUMBER     a code page, as in 1252 or 932\n"
    "\n"
    "Files:\n"
    "  -          the standard input or output\n"
    "  TARGET.new\n"
    "             where a new file comes into being. An old one stays until the new one is whole "
    "and\n"
    "             on the disk, and is then replaced in one step. A symbolic link goes on "
    "pointing.\n"
    "             What isn't a plain file, and the standard output, gets the text as it is made.\n"
    "\n"
    "Exit status:\n"
    "  0          all went well\n"
    "  1          an error: nothing was made, or what went to a stream isn't whole\n"
    "  2          a wrong use\n";

std::string Options::Parse(const std::vector<std::string>& words)
{
    std::vector<std::string> operands;
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
        } else
            operands.push_back(word);
    }
    return help || version ? "" : TakeOperands(operands);
}

bool Options::TakeSwitch(const std::string& word)
{
    bool* const known = word == "--replace"                ? &replace
                        : word == "--box"                  ? &box
                        : word == "--trace"                ? &trace
                        : word == "--help" || word == "-h" ? &help
                        : word == "--version"              ? &version
                                                           : nullptr;
    if (known)
        *known = true;
    return known != nullptr;
}

// An option with a value; returns what is wrong.
std::string Options::TakeOption(const std::string& word, const std::string* value)
{
    if (word != "--from" && word != "--to" && word != "--eol")
        return "unknown option " + word;
    if (!value)
        return word + ": the value is missing";
    if (word == "--eol")
        return LineEnds::Parse(*value, &ends) ? "" : "--eol: " + *value + " is no line end";
    Encoding encoding;
    if (!encoding.Parse(*value))
        return word + ": " + *value + " is no encoding that this program knows";
    (word == "--from" ? from : to) = encoding;
    return "";
}

std::string Options::TakeOperands(const std::vector<std::string>& operands)
{
    if (operands.size() != 2)
        return operands.size() < 2 ? "a source and a target are needed"
                                   : "more than a source and a target";
    if (!to && ends == LineEnds::KEEP)
        return "nothing to do: --to or --eol is missing";
    source = operands[0];
    target = operands[1];
    return source.empty() || target.empty() ? "a name is empty" : "";
}
} // namespace recode
