// examples/Common/Platform.h: what the process has differently on each system.
#pragma once

#include <cstdio>
#include <functional>
#include <string>
#include <vector>

namespace common
{
// The program's arguments as UTF-8, its own name not among them.
std::vector<std::string> CommandLine(int count, char** words);

// Makes the standard streams carry the bytes that they are given, as UTF-8, and a limit of the size
// of files a failure like others.
void PrepareStreams();

// Calls that on a thread of its own when the process is asked to end, by a key, by its terminal or by
// the system, which then doesn't end it. For once in a process, before it starts other threads.
void OnStop(std::function<void()> stop);

// True if the standard error stream is a terminal.
bool IsErrorTerminal();

// A new empty file for the time of the process, with the name to open it by; null if none can be
// had. What is written reaches the file with FlushTemporary; DropTemporary takes it away.
struct Temporary
{
    std::FILE* file = nullptr;
    std::string name;
};

Temporary OpenTemporary();
bool FlushTemporary(Temporary* temporary);
void DropTemporary(Temporary* temporary);
} // namespace common
