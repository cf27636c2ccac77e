// tools/check/Files.h: what the programs that look at files have in common.
#pragma once

#include <string>

// A program that shows files one by one.
struct Tool
{
    const char* name;
    // What it does, and what its exit statuses 0 and 1 say of the files; lines of up to 90 columns.
    const char* summary;
    const char* good;
    const char* bad;
    // Prints what it has to say to the standard output; answers whether the file is as it should
    // be.
    bool (*show)(const std::string& name, const std::string& bytes);
};

// Runs the program with its arguments. What is wrong with one file is told on the error output, and
// the others have their turn all the same. The result is the exit status: 0, 1 when a file isn't as
// it should be, can't be read, or the output can't be written, 2 for a wrong use.
int RunTool(const Tool& tool, int argc, char** argv);
