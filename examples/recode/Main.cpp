// examples/recode/Main.cpp: converts text files between encodings.
#include "Recode.h"

#include <Common/Platform.h>

#include <iostream>

int main(int argc, char** argv)
{
    std::ios::sync_with_stdio(false);
    common::PrepareStreams();
    std::ostream* terminal = common::IsErrorTerminal() ? &std::cerr : nullptr;
    return recode::Run(common::CommandLine(argc, argv),
                       {std::cout, std::cerr, terminal, &std::cin});
}
