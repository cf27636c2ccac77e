// examples/charinfo/Main.cpp: what the library knows of the characters of a text.
#include "CharInfo.h"

#include <Common/Platform.h>

#include <iostream>

int main(int argc, char** argv)
{
    std::ios::sync_with_stdio(false);
    common::PrepareStreams();
    return charinfo::Run(common::CommandLine(argc, argv), std::cout, std::cerr);
}
