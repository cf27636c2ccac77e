// tests/Database/RecordManager/FullDisk.h: a disk without room, where the host can play it.
#pragma once

#ifndef _WIN32
#include <sys/resource.h>

#include <csignal>
#endif

#ifndef _WIN32
// While it lives, no file of the process grows beyond that size.
class FullDisk
{
public:
    explicit FullDisk(unsigned size)
    {
        handler = std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &before);
        const rlimit limit = {size, before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;
    ~FullDisk()
    {
        setrlimit(RLIMIT_FSIZE, &before);
        std::signal(SIGXFSZ, handler);
    }

private:
    void (*handler)(int);
    rlimit before;
};
#else
struct FullDisk
{
    explicit FullDisk(unsigned) {}
};
#endif
