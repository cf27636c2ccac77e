// winapi/tests/Support/ClosedStreams.h: a program whose standard streams are closed.
#pragma once

#include <cstdio>
#include <iostream>

#include <fcntl.h>
#include <unistd.h>

// Closes the streams whose bits are set, until the end of the scope: 1 for input, 2 for output, 4
// for errors.
class ClosedStreams
{
public:
    explicit ClosedStreams(unsigned bits)
    {
        std::cout.flush();
        std::fflush(stdout);
        for (int fd = 0; fd < 3; ++fd) {
            kept[fd] = bits >> fd & 1 ? ::fcntl(fd, F_DUPFD_CLOEXEC, 3) : -1;
            if (kept[fd] >= 0)
                ::close(fd);
        }
    }
    ClosedStreams(const ClosedStreams&) = delete;
    ClosedStreams& operator=(const ClosedStreams&) = delete;
    ~ClosedStreams()
    {
        for (int fd = 0; fd < 3; ++fd)
            if (kept[fd] >= 0) {
                ::dup2(kept[fd], fd);
                ::close(kept[fd]);
            }
    }

private:
    int kept[3];
};
