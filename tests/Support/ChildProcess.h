// tests/Support/ChildProcess.h: tests between processes.
//
// CHILD_PROCESS(Name) { ... } stands at namespace scope and holds what a child does; `arguments`
// are those that it was started with, its result is the status that the child ends with. The child
// is the test program itself, in the parent's current directory; both talk in lines, the child by
// standard input and output.
#pragma once

#include <string>
#include <vector>

class ChildProcess
{
public:
    using Arguments = std::vector<std::string>;

    explicit ChildProcess(const std::string& name, const Arguments& arguments = {});
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;
    // Kills a child that nobody waited for.
    ~ChildProcess();

    void WriteLine(const std::string& line);
    // The next line of the child; empty when it has ended.
    std::string ReadLine();
    // Closes the child's input, waits for its end and returns its status.
    int Wait();
    // Ends the child without its doing, and waits until it is gone.
    void Kill();

private:
    void CloseInput();

    long long process = -1;
    int to_child = -1;
    int from_child = -1;
};

// The program that starts test programs which the kernel can't start by itself; null where it can.
const char* Emulator();

bool IsChildProcess(int argc, char** argv);
int RunChildProcess(int argc, char** argv);

struct ChildBody
{
    ChildBody(const char* name, int (*body)(const ChildProcess::Arguments&));
};

#define CHILD_PROCESS(name)                                                                        \
    static int Child_##name(const ChildProcess::Arguments&);                                       \
    static const ChildBody child_##name(#name, Child_##name);                                      \
    static int Child_##name([[maybe_unused]] const ChildProcess::Arguments& arguments)
