// tests/Support/ChildProcess.cpp
#include "Support/ChildProcess.h"

#include <windows.h>

#include <cstdint>
#include <cstdlib>
#include <map>

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#include <process.h>
#else
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#include <csignal>
#endif

namespace
{
constexpr const char* SWITCH = "--child=";

std::map<std::string, int (*)(const ChildProcess::Arguments&)>& Bodies()
{
    static std::map<std::string, int (*)(const ChildProcess::Arguments&)> bodies;
    return bodies;
}

std::string ProgramPath()
{
    char path[4096];
    GetModuleFileNameA(nullptr, path, sizeof path);
    return path;
}

#ifdef _WIN32
void MakePipe(int (&ends)[2])
{
    _pipe(ends, 4096, _O_BINARY | _O_NOINHERIT);
}

// An argument as the start-up code of a program reads it back.
std::string Quoted(const std::string& argument)
{
    return '"' + argument + '"';
}

long long Start(const std::string& program, const ChildProcess::Arguments& words, int input,
                int output)
{
    std::vector<std::string> quoted;
    for (const std::string& word : words)
        quoted.push_back(Quoted(word));
    std::vector<const char*> argv;
    for (const std::string& word : quoted)
        argv.push_back(word.c_str());
    argv.push_back(nullptr);
    const int own_input = _dup(0);
    const int own_output = _dup(1);
    _dup2(input, 0);
    _dup2(output, 1);
    const intptr_t process = _spawnv(_P_NOWAIT, program.c_str(), argv.data());
    _dup2(own_input, 0);
    _dup2(own_output, 1);
    _close(own_input);
    _close(own_output);
    return process;
}

int WaitFor(long long process)
{
    int status = -1;
    _cwait(&status, static_cast<intptr_t>(process), 0);
    return status;
}

void Terminate(long long process)
{
    TerminateProcess(reinterpret_cast<HANDLE>(static_cast<intptr_t>(process)), 9);
}
#else
void MakePipe(int (&ends)[2])
{
    if (pipe2(ends, O_CLOEXEC) != 0)
        ends[0] = ends[1] = -1;
}

// Under an emulator the kernel can't start the program: the emulator is what is started.
long long Start(std::string program, ChildProcess::Arguments words, int input, int output)
{
    if (const char* emulator = Emulator()) {
        program = emulator;
        words.insert(words.begin(), program);
    }
    std::vector<char*> argv;
    for (const std::string& word : words)
        argv.push_back(const_cast<char*>(word.c_str()));
    argv.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, input, 0);
    posix_spawn_file_actions_adddup2(&actions, output, 1);
    pid_t process = -1;
    if (posix_spawn(&process, program.c_str(), &actions, nullptr, argv.data(), environ) != 0)
        process = -1;
    posix_spawn_file_actions_destroy(&actions);
    return process;
}

int WaitFor(long long process)
{
    int status = -1;
    waitpid(static_cast<pid_t>(process), &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

void Terminate(long long process)
{
    kill(static_cast<pid_t>(process), SIGKILL);
}
#endif
} // namespace

const char* Emulator()
{
    return std::getenv("OSTRA_TEST_EMULATOR");
}

ChildBody::ChildBody(const char* name, int (*body)(const ChildProcess::Arguments&))
{
    Bodies()[name] = body;
}

bool IsChildProcess(int argc, char** argv)
{
    return argc >= 2 && std::string(argv[1]).starts_with(SWITCH);
}

int RunChildProcess(int argc, char** argv)
{
    const auto body = Bodies().find(std::string(argv[1]).substr(std::string(SWITCH).size()));
    if (body == Bodies().end())
        return 99;
    return body->second(ChildProcess::Arguments(argv + 2, argv + argc));
}

ChildProcess::ChildProcess(const std::string& name, const Arguments& arguments)
{
    const std::string program = ProgramPath();
    Arguments words = {program, SWITCH + name};
    words.insert(words.end(), arguments.begin(), arguments.end());
    int input[2];
    int output[2];
    MakePipe(input);
    MakePipe(output);
    process = Start(program, words, input[0], output[1]);
    close(input[0]);
    close(output[1]);
    to_child = input[1];
    from_child = output[0];
}

ChildProcess::~ChildProcess()
{
    Kill();
    close(from_child);
}

void ChildProcess::WriteLine(const std::string& line)
{
    const std::string text = line + '\n';
    [[maybe_unused]] const auto written =
        write(to_child, text.data(), static_cast<unsigned>(text.size()));
}

std::string ChildProcess::ReadLine()
{
    std::string line;
    for (char c; read(from_child, &c, 1) == 1 && c != '\n';)
        if (c != '\r')
            line += c;
    return line;
}

void ChildProcess::CloseInput()
{
    if (to_child >= 0)
        close(to_child);
    to_child = -1;
}

int ChildProcess::Wait()
{
    CloseInput();
    const int status = process == -1 ? -1 : WaitFor(process);
    process = -1;
    return status;
}

void ChildProcess::Kill()
{
    if (process != -1)
        Terminate(process);
    Wait();
}
