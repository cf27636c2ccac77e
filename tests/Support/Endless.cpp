// tests/Support/Endless.cpp
#include "Support/Endless.h"

#include "Support/ChildProcess.h"

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <thread>

namespace
{
constexpr int TIMED_OUT = 42;
constexpr const char* SWITCH = "--endless=";

std::map<std::string, void (*)()>& Bodies()
{
    static std::map<std::string, void (*)()> bodies;
    return bodies;
}

// Absolute: the tests run in other directories.
std::filesystem::path& ProgramPath()
{
    static std::filesystem::path path;
    return path;
}
} // namespace

EndlessBody::EndlessBody(const char* name, void (*body)())
{
    Bodies()[name] = body;
}

bool IsEndlessChild(int argc, char** argv)
{
    ProgramPath() = std::filesystem::absolute(argv[0]);
    return argc == 2 && std::string(argv[1]).starts_with(SWITCH);
}

// The child ends itself: a watchdog thread leaves with a status of its own after the limit.
int RunEndlessChild(int, char** argv)
{
    const auto body = Bodies().find(std::string(argv[1]).substr(std::string(SWITCH).size()));
    if (body == Bodies().end())
        return 3;
    std::thread([] {
        std::this_thread::sleep_for(std::chrono::seconds(1));
        std::_Exit(TIMED_OUT);
    }).detach();
    body->second();
    return 0;
}

bool RunsForEver(const std::string& name)
{
    std::string command = '"' + ProgramPath().string() + "\" " + SWITCH + name;
    if (const char* emulator = Emulator())
        command = emulator + (' ' + command);
    const int status = std::system(command.c_str());
#ifdef _WIN32
    return status == TIMED_OUT;
#else
    return status == TIMED_OUT << 8;
#endif
}
