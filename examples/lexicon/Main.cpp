// examples/lexicon/Main.cpp: a bilingual dictionary in a record file.
#include "Commands.h"
#include "Platform.h"

#include <iostream>

int main(int argc, char** argv)
{
    std::ios::sync_with_stdio(false);
    lexicon::PrepareStreams();
    std::ostream* terminal = lexicon::IsErrorTerminal() ? &std::cerr : nullptr;
    return lexicon::Run(lexicon::CommandLine(argc, argv), {std::cout, std::cerr, terminal});
}
