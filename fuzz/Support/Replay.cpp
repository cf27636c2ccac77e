// fuzz/Support/Replay.cpp: runs every kept input through its target, without a fuzzer.
//
//   fuzz_replay CORPUS            the inputs of all targets
//   fuzz_replay TARGET FILE...    these inputs
//
// A broken promise ends the process, and the input's name is told.
#include "Support/Folder.h"
#include "Support/Library.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

namespace fs = std::filesystem;

#define FUZZ_TARGET(NAME) extern "C" int fuzz_##NAME(const std::uint8_t*, std::size_t);
#include "Targets.inc"
#undef FUZZ_TARGET

namespace
{
struct Target
{
    const char* name;
    int (*run)(const std::uint8_t*, std::size_t);
};

const Target targets[] = {
#define FUZZ_TARGET(NAME) {#NAME, fuzz_##NAME},
#include "Targets.inc"
#undef FUZZ_TARGET
};

std::string current;

// A target that ends the process leaves the name of its input as the last thing to be read.
void TellCurrent(int signal)
{
    std::fprintf(stderr, "the input is %s\n", current.c_str());
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

bool Run(const Target& target, const fs::path& file)
{
    current = file.string();
    const std::string bytes = ReadBytes(file);
    // A copy of just that size: reading behind it is seen.
    const std::vector<std::uint8_t> exact(bytes.begin(), bytes.end());
    target.run(exact.data(), exact.size());
    const unsigned code = TakeCode();
    if (code != 0)
        std::printf("%s leaves error %u\n", current.c_str(), code);
    return code == 0;
}

int RunFiles(const std::string& name, int count, char** files)
{
    for (const Target& target : targets) {
        if (name != target.name)
            continue;
        bool good = true;
        for (int index = 0; index < count; ++index)
            good = Run(target, files[index]) && good;
        return good ? 0 : 1;
    }
    std::printf("no target %s\n", name.c_str());
    return 2;
}

int RunAll(const fs::path& corpus)
{
    bool good = true;
    std::size_t inputs = 0;
    for (const Target& target : targets) {
        std::vector<fs::path> files;
        std::error_code error;
        for (const auto& entry : fs::directory_iterator(corpus / target.name, error))
            files.push_back(entry.path());
        std::sort(files.begin(), files.end());
        if (files.empty())
            std::printf("no inputs for %s\n", target.name);
        good = good && !files.empty();
        const auto start = std::chrono::steady_clock::now();
        for (const fs::path& file : files)
            good = Run(target, file) && good;
        const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
        std::printf("%s: %zu inputs in %.2f s\n", target.name, files.size(), taken.count());
        inputs += files.size();
    }
    std::printf("fuzz replay: %zu targets, %zu inputs, %s\n", std::size(targets), inputs,
                good ? "0 findings" : "FAILED");
    return good ? 0 : 1;
}
} // namespace

int main(int argc, char** argv)
{
    std::setvbuf(stdout, nullptr, _IONBF, 0);
    std::signal(SIGABRT, TellCurrent);
    std::signal(SIGSEGV, TellCurrent);
    if (argc > 2)
        return RunFiles(argv[1], argc - 2, argv + 2);
    if (argc == 2)
        return RunAll(argv[1]);
    std::printf("usage: fuzz_replay CORPUS | fuzz_replay TARGET FILE...\n");
    return 2;
}
