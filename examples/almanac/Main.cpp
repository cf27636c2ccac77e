// examples/almanac/Main.cpp: months in three calendars, the reading of dates, locales.
#include "Almanac.h"

#include <Common/Platform.h>

#include <iostream>

int main(int argc, char** argv)
{
    std::ios::sync_with_stdio(false);
    common::PrepareStreams();
    return almanac::Run(common::CommandLine(argc, argv), std::cout, std::cerr);
}
