// examples/Common/Platform.h: what the process has differently on each system.
#pragma once

#include <string>
#include <vector>

namespace common
{
// The program's arguments as UTF-8, its own name not among them.
std::vector<std::string> CommandLine(int count, char** words);

// Makes the standard streams carry the bytes that are written to them, as UTF-8.
void PrepareStreams();

// True if the standard error stream is a terminal.
bool IsErrorTerminal();
} // namespace common
