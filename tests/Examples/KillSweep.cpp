// tests/Examples/KillSweep.cpp: a program that makes a file of another one and is killed at each of
// its system calls leaves the old file or the new one, whole, and the next run works; at no call has
// anybody a right to the new one whom the old one kept out; a run whose flush fails tells so and
// leaves the old one. Runs the program from outside:
//
//   kill_sweep FOLDER takes|leaves PROGRAM ARGUMENT...
//
// INPUT and OUTPUT among the arguments stand for the two files. A program that takes a whole file
// which an earlier run left beside the place gives it its name. The exit status is 77 where a process can't follow another's calls.
#include <sys/ptrace.h>
#include <sys/reg.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>
#include <vector>

namespace
{
namespace fs = std::filesystem;

constexpr int SKIPPED = 77;
constexpr const char* FILE_NAME = "words.out";
constexpr const char* FRESH_NAME = "words.out.new";
constexpr fs::perms PRIVATE = fs::perms::owner_read | fs::perms::owner_write;

std::vector<std::string> command;

std::optional<std::string> Bytes(const std::string& name)
{
    std::ifstream file(name, std::ios::binary);
    if (!file.is_open())
        return std::nullopt;
    return std::string(std::istreambuf_iterator<char>(file), {});
}

void Write(const std::string& name, const std::string& bytes)
{
    std::ofstream(name, std::ios::binary) << bytes;
}

[[noreturn]] void Fail(const std::string& what)
{
    std::printf("%s\n", what.c_str());
    std::exit(1);
}

[[noreturn]] void RunBuild(const char* input, bool traced)
{
    if (!std::freopen("/dev/null", "w", stdout))
        _exit(SKIPPED);
    if (traced && ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0)
        _exit(SKIPPED);
    // A leak checker that would trace the process, too.
    setenv("ASAN_OPTIONS", "detect_leaks=0", 1);
    std::vector<char*> words;
    for (std::string& word : command)
        words.push_back(word == "INPUT"    ? const_cast<char*>(input)
                        : word == "OUTPUT" ? const_cast<char*>(FILE_NAME)
                                           : word.data());
    words.push_back(nullptr);
    execv(words[0], words.data());
    _exit(SKIPPED);
}

pid_t Start(const char* input, bool traced)
{
    const pid_t child = fork();
    if (child == 0)
        RunBuild(input, traced);
    return child;
}

void Build(const char* input)
{
    int status = 0;
    waitpid(Start(input, false), &status, 0);
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0)
        Fail("a build of " + std::string(input) + " ends with " + std::to_string(status));
}

// A build that stops at each call, to begin with at the program's start.
pid_t StartTraced(const char* input)
{
    int status = 0;
    const pid_t child = Start(input, true);
    waitpid(child, &status, 0);
    if (WIFEXITED(status) && WEXITSTATUS(status) == SKIPPED)
        std::exit(SKIPPED);
    ptrace(PTRACE_SETOPTIONS, child, nullptr, PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL);
    return child;
}

// Lets the build go on to where a call begins or is done; false if it comes to its end before.
bool Step(pid_t child, int* status)
{
    do {
        ptrace(PTRACE_SYSCALL, child, nullptr, nullptr);
        waitpid(child, status, 0);
        if (WIFEXITED(*status))
            return false;
    } while (!WIFSTOPPED(*status) || WSTOPSIG(*status) != (SIGTRAP | 0x80));
    return true;
}

// Ends the build before its call of that number; false if it comes to an end before.
bool KillAt(const char* input, int call)
{
    int status = 0;
    const pid_t child = StartTraced(input);
    for (int stops = 0; stops < 2 * call - 1; ++stops)
        if (!Step(child, &status))
            return false;
    kill(child, SIGKILL);
    waitpid(child, &status, 0);
    return true;
}

// The exit status of a build whose flushes fail, and how many there were.
int BuildUnflushed(const char* input, int* flushes)
{
    int status = 0;
    const pid_t child = StartTraced(input);
    while (Step(child, &status)) {
        const long call = ptrace(PTRACE_PEEKUSER, child, 8 * ORIG_RAX, nullptr);
        const bool flush = call == SYS_fsync || call == SYS_fdatasync;
        if (flush)
            ptrace(PTRACE_POKEUSER, child, 8 * ORIG_RAX, -1L); // a call that isn't there
        if (!Step(child, &status))
            break;
        if (flush)
            ptrace(PTRACE_POKEUSER, child, 8 * RAX, -static_cast<long>(EIO));
        *flushes += flush;
    }
    return WEXITSTATUS(status);
}

// What a build finds: the file, and what an earlier one left beside it.
struct Before
{
    std::optional<std::string> file;
    std::optional<std::string> fresh;
};

void Prepare(const Before& before)
{
    for (const auto& entry : fs::directory_iterator("."))
        if (entry.path().extension() != ".tsv")
            fs::remove(entry.path());
    if (before.file) {
        Write(FILE_NAME, *before.file);
        fs::permissions(FILE_NAME, PRIVATE);
    }
    if (before.fresh)
        Write(FRESH_NAME, *before.fresh);
}

// The old file, under its name or where it was, or the new one.
bool IsNothingLost(const Before& before, const std::string& after)
{
    const std::optional<std::string> left = Bytes(FILE_NAME);
    const bool untouched = left == before.file && Bytes(FRESH_NAME) == before.fresh;
    const std::optional<std::string>& old = before.file ? before.file : before.fresh;
    return left == after || left == old || untouched || (!old && !left);
}

// Whether what stands in the place, or has begun to stand beside it, is the owner's alone.
bool IsPrivate()
{
    for (const char* name : {FILE_NAME, FRESH_NAME})
        if (fs::exists(name) && fs::file_size(name) && fs::status(name).permissions() != PRIVATE)
            return false;
    return true;
}

// The number of calls.
int Sweep(const Before& before, const std::string& after)
{
    for (int call = 1;; ++call) {
        Prepare(before);
        if (!KillAt("new.tsv", call))
            return call - 1;
        const std::string where = "killed at call " + std::to_string(call) + ": ";
        if (!IsNothingLost(before, after))
            Fail(where + "neither the old nor the new file is left");
        if (before.file && !IsPrivate())
            Fail(where + "others may read what is left");
        Build("new.tsv");
        if (Bytes(FILE_NAME) != after)
            Fail(where + "the next build makes another file");
        if (fs::exists(FRESH_NAME))
            Fail(where + "the next build leaves a .new");
    }
}
} // namespace

int main(int argc, char** argv)
{
    if (argc < 4)
        return 2;
    const bool takes = std::string(argv[2]) == "takes";
    command.assign(argv + 3, argv + argc);
    fs::remove_all(argv[1]);
    fs::create_directories(argv[1]);
    fs::current_path(argv[1]);
    Write("old.tsv", "a\tb\n");
    Write("new.tsv", "c\td\ne\tf\n");
    Build("old.tsv");
    const std::string before = Bytes(FILE_NAME).value();
    Build("new.tsv");
    const std::string after = Bytes(FILE_NAME).value();
    if (before == after)
        Fail("the two files are the same");

    Prepare({before, {}});
    int flushes = 0;
    if (BuildUnflushed("new.tsv", &flushes) != 1 || flushes == 0)
        Fail("a flush that fails isn't told, or there was none");
    if (Bytes(FILE_NAME) != before || fs::exists(FRESH_NAME))
        Fail("a flush that fails leaves something else than the old file");

    const int replacing = Sweep({before, {}}, after);
    const int making = Sweep({}, after);
    const int taking = takes ? Sweep({{}, before}, after) : 0;
    std::printf(
        "kill sweep of %s: %d calls over an old file, %d without one, %d beside one without "
        "its name\n",
        fs::path(argv[3]).filename().c_str(), replacing, making, taking);
    return 0;
}
