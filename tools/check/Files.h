// tools/check/Files.h: what the programs that look at files have in common.
#pragma once

#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>

// Reads the file whole; false, with a line on the error output, when that fails.
inline bool ReadWholeFile(const char* path, std::string& bytes)
{
    std::ifstream file(path, std::ios::binary);
    bytes.assign(std::istreambuf_iterator<char>(file), {});
    if (file.is_open() && !file.bad())
        return true;
    std::fprintf(stderr, "%s: can't be read\n", path);
    return false;
}

// Calls show(path, bytes) for each file named; it answers whether the file is as it should be. The
// result is the exit status: 0, 1 when a file isn't or can't be read, 2 for a call without files.
template <class Show>
int ForEachFile(int argc, char** argv, Show show)
{
    if (argc < 2) {
        std::fprintf(stderr, "usage: %s FILE...\n", argv[0]);
        return 2;
    }
    int status = 0;
    for (int i = 1; i < argc; ++i) {
        std::string bytes;
        if (!ReadWholeFile(argv[i], bytes) || !show(argv[i], bytes))
            status = 1;
    }
    return status;
}
