// tests/Examples/RunLexicon.h: the lexicon program, run in the process of the test.
#pragma once

#include <string>
#include <utility>
#include <vector>

struct Answer
{
    int status;
    std::string output;
    std::string errors;
};

using Arguments = std::vector<std::string>;
using Pairs = std::vector<std::pair<std::string, std::string>>;

Answer RunLexicon(const Arguments& arguments);

// The pairs as lines of the input.
std::string Lines(const Pairs& pairs);

// Builds words.rec of words.tsv, which gets this text.
Answer BuildLexicon(const std::string& text);

// Builds words.rec and fails the test when that fails.
void MakeLexicon(const std::string& text);

// "(code): text [names]" as the error manager has it for the system's error.
std::string SystemError(unsigned code, const std::string& names);

// The names in the current directory, sorted.
std::vector<std::string> Names();

// True if the answer is a refusal: nothing but one line of error, and exit status 1.
bool IsRefusal(const Answer& answer);
