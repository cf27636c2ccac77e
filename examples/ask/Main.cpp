// examples/ask/Main.cpp: a lexicon that answers other programs, and questions to such programs.
#include "Commands.h"

#include <Common/Platform.h>

#include <iostream>

int main(int argc, char** argv)
{
    std::ios::sync_with_stdio(false);
    common::PrepareStreams();
    return ask::Run(common::CommandLine(argc, argv), {std::cout, std::cerr, common::OnStop});
}
