// examples/specimen/Main.cpp: the faces of the machine, sheets that show one, widths of texts.
#include "Specimen.h"

#include <Common/Platform.h>

#include <iostream>

int main(int argc, char** argv)
{
    std::ios::sync_with_stdio(false);
    common::PrepareStreams();
    return specimen::Run(common::CommandLine(argc, argv), std::cout, std::cerr);
}
