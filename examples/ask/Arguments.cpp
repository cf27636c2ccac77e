// examples/ask/Arguments.cpp
#include "Arguments.h"

namespace ask
{
const char USAGE_TEXT[] = "usage: ask [OPTION...] WORD...\n"
                          "       ask serve FILE.rec\n"
                          "Try ask --help.\n";

const char HELP_TEXT[] =
    R"(usage: ask WORD...
       ask --add WORD TRANSLATION
       ask [--application NAME] [--topic NAME] ITEM...
       ask [--application NAME] [--topic NAME] --execute COMMAND...
       ask serve FILE.rec

Asks other programs in the platform's data exchange by messages, and answers them from a lexicon.
All text is UTF-8.

Commands:
  WORD    prints a line for each translation that the serving lexicon has: word, tab, translation;
          words that differ in case only are one item, and get the translations of all
  --add   asks the server to add a pair to its lexicon, and waits until it is kept
  ITEM    with --application or --topic: prints what that server answers, as it comes
  --execute
          sends commands, one after the other, until one isn't carried out
  serve   answers from a lexicon that the program lexicon has built, until it is interrupted; a
          pair that is added is in the file before that is acknowledged

Options:
  --application NAME
          who is asked, or under which name is served: Ostra without it
  --topic NAME
          about what: Lexicon without it
  --timeout SECONDS
          how long an answer is waited for: 5 without it, 86400 at most
  --help  prints this text
  --version
          prints the version
  --      ends the options; also keeps a word "serve" from being the command

Exit status:
  0       all were answered; a server was told to end
  1       a word isn't found, an item or a command is refused, or the file can't be used
  2       a wrong use
  3       nobody answers, or not in time
)";

namespace
{
constexpr unsigned LONGEST_TIMEOUT = 86400;
constexpr std::size_t MOST_DIGITS = 5;
} // namespace

std::string Arguments::Parse(const std::vector<std::string>& words)
{
    std::size_t unguarded = words.size(); // Operands in front of "--".
    for (std::size_t at = 0; at < words.size(); ++at) {
        const std::string& word = words[at];
        if (unguarded < words.size() || !word.starts_with("--"))
            operands.push_back(word);
        else if (word == "--")
            unguarded = operands.size();
        else if (!TakeSwitch(word)) {
            std::string wrong = TakeOption(word, at + 1 < words.size() ? &words[at + 1] : nullptr);
            if (!wrong.empty())
                return wrong;
            ++at;
        }
    }
    FindCommand(unguarded);
    return help || version ? std::string() : Check();
}

bool Arguments::TakeSwitch(const std::string& word)
{
    if (word == "--help")
        help = true;
    else if (word == "--version")
        version = true;
    else if (word == "--add")
        mode = ADD;
    else if (word == "--execute")
        mode = EXECUTE;
    else
        return false;
    return true;
}

std::string Arguments::TakeOption(const std::string& word, const std::string* value)
{
    if (word != "--application" && word != "--topic" && word != "--timeout")
        return "unknown option " + word;
    if (!value)
        return word + " needs a value";
    if (word == "--timeout")
        return TakeTimeout(*value);
    (word == "--topic" ? topic : application) = *value;
    isLexicon = false;
    return {};
}

std::string Arguments::TakeTimeout(const std::string& value)
{
    const bool isNumber = !value.empty() && value.size() <= MOST_DIGITS &&
                          value.find_first_not_of("0123456789") == std::string::npos;
    timeout = isNumber ? static_cast<unsigned>(std::stoul(value)) : 0;
    return timeout && timeout <= LONGEST_TIMEOUT
               ? std::string()
               : "--timeout needs a number of seconds from 1 to 86400";
}

void Arguments::FindCommand(std::size_t unguarded)
{
    if (mode != ASK || operands.empty() || unguarded == 0 || operands[0] != "serve")
        return;
    mode = SERVE;
    operands.erase(operands.begin());
}

std::string Arguments::Check() const
{
    if (mode == SERVE && operands.size() != 1)
        return "serve needs one file";
    if (mode == ADD && operands.size() != 2)
        return "--add needs a word and its translation";
    return operands.empty() ? "nothing to ask" : std::string();
}
} // namespace ask
