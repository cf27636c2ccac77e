// examples/lexicon/Main.cpp: a bilingual dictionary in a record file.
#include "Commands.h"

#include <Common/Platform.h>

#include <iostream>

int main(int argc, char** argv)
{
    std::ios::sync_with_stdio(false);
    common::PrepareStreams();
    std::ostream* terminal = common::IsErrorTerminal() ? &std::cerr : nullptr;
    return lexicon::Run(common::CommandLine(argc, argv),
                        {std::cout, std::cerr, terminal, &std::cin});
}
