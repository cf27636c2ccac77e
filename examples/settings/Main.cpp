// examples/settings/Main.cpp: values of the registry and of profile files.
#include "Commands.h"

#include <Common/Platform.h>

#include <iostream>

int main(int argc, char** argv)
{
    std::ios::sync_with_stdio(false);
    common::PrepareStreams();
    return settings::Run(common::CommandLine(argc, argv), std::cout, std::cerr);
}
