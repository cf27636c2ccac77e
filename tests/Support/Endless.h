// tests/Support/Endless.h: tests of behaviour that never ends.
//
// ENDLESS(Name) { ... } stands at namespace scope and holds what must not come to an end.
// RunsForEver("Name") runs it in a child process and is true when it was still running after a
// second; a body that returns, or ends the process, makes it false.
#pragma once

#include <string>

bool RunsForEver(const std::string& name);

bool IsEndlessChild(int argc, char** argv);
int RunEndlessChild(int argc, char** argv);

struct EndlessBody
{
    EndlessBody(const char* name, void (*body)());
};

#define ENDLESS(name)                                                                              \
    static void Endless_##name();                                                                  \
    static const EndlessBody endless_##name(#name, Endless_##name);                                \
    static void Endless_##name()
