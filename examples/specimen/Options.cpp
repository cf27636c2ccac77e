// examples/specimen/Options.cpp
#include "Options.h"

#include <algorithm>
#include <iterator>

namespace specimen
{
const char USAGE_TEXT[] = "usage: specimen list [FACE]\n"
                          "       specimen FACE [OPTION...]\n"
                          "       specimen measure FACE SIZE TEXT [OPTION...]\n"
                          "Try specimen --help.\n";

// tools/manpage.py makes the manual page of it.
const char HELP_TEXT[] =
    "usage: specimen list [FACE]\n"
    "       specimen FACE [OPTION...]\n"
    "       specimen measure FACE SIZE TEXT [OPTION...]\n"
    "\n"
    "Shows faces of the machine as a type specimen: the sample text of each character set that "
    "the\n"
    "face has, in several sizes, with its measures as lines. Sizes are points, of which 72 are an\n"
    "inch; widths and heights are dots, of which 96 are an inch.\n"
    "\n"
    "What isn't there is replaced by the system, and the program says which face was taken.\n"
    "\n"
    "Commands:\n"
    "  list       lists the styles of all faces, or of one: face, style, \"bold\" and \"italic\" "
    "where\n"
    "             it is that, and character sets, with tabs between them\n"
    "  measure    tells the width of a text, and beside it the one that HarfBuzz tells, if the\n"
    "             program was made with it: that one has kerning and ligatures\n"
    "\n"
    "Options:\n"
    "  -o FILE    where the sheet goes, as an SVG document, or as a PNG picture if the name ends "
    "in\n"
    "             .png, for which librsvg has to be there; the standard output where it isn't "
    "told\n"
    "  --set NUMBER\n"
    "             a character set, as list tells them; may be told several times. The sheet shows\n"
    "             all those of the face where none is told, and measure asks for 0\n"
    "  --sizes SIZE,...\n"
    "             the sizes of the sheet, from 1 to 500; 8,10,12,14,18,24,36,48,72 where they\n"
    "             aren't told\n"
    "  --bold     the bold style\n"
    "  --italic   the italic style\n"
    "  --help     prints this text\n"
    "  --version  prints the version\n"
    "  --         ends the options; a face behind it may be called as a command is\n"
    "\n"
    "Exit status:\n"
    "  0          all went well\n"
    "  1          there is no such face to list, or the output can't be written\n"
    "  2          a wrong use\n";

namespace
{
constexpr unsigned LARGEST_SET = 255;
constexpr unsigned LARGEST_SIZE = 500;
constexpr std::size_t MOST_SIZES = 32;

std::optional<unsigned> ToNumber(const std::string& digits, unsigned largest)
{
    if (digits.empty() || digits.size() > 9 ||
        digits.find_first_not_of("0123456789") != digits.npos)
        return std::nullopt;
    const unsigned number = static_cast<unsigned>(std::stoul(digits));
    return number <= largest ? std::optional(number) : std::nullopt;
}

bool ReadSizes(const std::string& text, std::vector<unsigned>* sizes)
{
    sizes->clear();
    for (std::size_t at = 0; at <= text.size();) {
        const std::size_t end = std::min(text.find(',', at), text.size());
        const std::optional<unsigned> size = ToSize(text.substr(at, end - at));
        if (!size || sizes->size() == MOST_SIZES)
            return false;
        sizes->push_back(*size);
        at = end + 1;
    }
    return true;
}
} // namespace

std::optional<unsigned> ToSize(const std::string& digits)
{
    const std::optional<unsigned> size = ToNumber(digits, LARGEST_SIZE);
    return size && *size ? size : std::nullopt;
}

std::string Options::Parse(const std::vector<std::string>& words)
{
    bool ended = false;
    for (std::size_t n = 0; n < words.size(); ++n) {
        const std::string& word = words[n];
        const std::string* const value = n + 1 < words.size() ? &words[n + 1] : nullptr;
        if (!ended && word == "--") {
            ended = true;
        } else if (!ended && word.size() > 1 && word[0] == '-') {
            const std::string wrong = TakeOption(word, value);
            if (!wrong.empty())
                return wrong;
            n += word == "-o" || word == "--set" || word == "--sizes";
        } else if (command == NONE && !ended && (word == "list" || word == "measure")) {
            command = word == "list" ? LIST : MEASURE;
        } else {
            if (command == NONE)
                command = DRAW;
            operands.push_back(word);
        }
    }
    return help || version ? "" : Check();
}

std::string Options::TakeOption(const std::string& word, const std::string* value)
{
    bool* const marks[] = {&bold, &italic, &help, &version};
    const char* const names[] = {"--bold", "--italic", "--help", "--version"};
    for (unsigned n = 0; n < std::size(marks); ++n)
        if (word == names[n]) {
            *marks[n] = true;
            return "";
        }
    if (word != "-o" && word != "--set" && word != "--sizes")
        return "unknown option " + word;
    if (!value || value->empty())
        return word + " needs a value";
    if (word == "-o") {
        output = *value;
    } else if (word == "--sizes") {
        if (!ReadSizes(*value, &sizes))
            return "--sizes needs up to 32 sizes from 1 to 500, with commas between them";
    } else if (const std::optional<unsigned> set = ToNumber(*value, LARGEST_SET)) {
        sets.push_back(*set);
    } else {
        return "--set needs the number of a character set, from 0 to 255";
    }
    return "";
}

std::string Options::Check()
{
    const bool fits = command == LIST      ? operands.size() <= 1
                      : command == DRAW    ? operands.size() == 1
                      : command == MEASURE ? operands.size() == 3
                                           : false;
    if (!fits)
        return " ";
    if (command != DRAW && (!output.empty() || !sizes.empty()))
        return "-o and --sizes are for sheets";
    if (command == LIST && (bold || italic || !sets.empty()))
        return "list takes no options";
    if (command == MEASURE && sets.size() > 1)
        return "measure takes one --set";
    if (command == MEASURE && !ToSize(operands[1]))
        return "the size is no number from 1 to 500";
    if (!operands.empty() && operands[0].empty())
        return "the face has no name";
    if (sizes.empty())
        sizes = {8, 10, 12, 14, 18, 24, 36, 48, 72};
    return "";
}
} // namespace specimen
