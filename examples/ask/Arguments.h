// examples/ask/Arguments.h: what the command line asks for.
#pragma once

#include <string>
#include <vector>

namespace ask
{
extern const char USAGE_TEXT[];
extern const char HELP_TEXT[];

struct Arguments
{
    enum Mode
    {
        ASK,
        ADD,
        EXECUTE,
        SERVE
    };

    Mode mode = ASK;
    std::vector<std::string> operands;
    std::string application = "Ostra";
    std::string topic = "Lexicon";
    // A lexicon's answers are printed as one, others as they come.
    bool isLexicon = true;
    unsigned timeout = 5; // seconds
    bool help = false;
    bool version = false;

    // Options may stand anywhere; behind "--" there are none. Returns what is wrong, or an empty
    // text.
    std::string Parse(const std::vector<std::string>& words);

private:
    bool TakeSwitch(const std::string& word);
    std::string TakeOption(const std::string& word, const std::string* value);
    std::string TakeTimeout(const std::string& value);
    void FindCommand(std::size_t unguarded);
    std::string Check() const;
};
} // namespace ask
