// tests/Programs/Crash/CrashHost.cpp
//
// Calls are counted in the table that the services make them by. A view is kept protected: a store
// faults, is counted, and done alone, by the processor's single step.
#include "Crash/CrashHost.h"

#include "Base/Posix.h"

#include <csignal>

#include <sys/mman.h>
#include <sys/ucontext.h>
#include <unistd.h>

namespace
{
using winapi::Posix;

constexpr greg_t TRAP_FLAG = 0x100;

struct View
{
    char* address;
    size_t size;
};

Posix whole;
unsigned stepsLeft; // 0: nothing ends
std::vector<HostWrite>* writes;
View views[4];
View* open; // the view that a store is being done in

void Step()
{
    if (stepsLeft && --stepsLeft == 0)
        kill(getpid(), SIGKILL);
}

// ---- Calls --------------------------------------------------------------------------------

template <auto member>
struct Counted;

template <class Result, class... Arguments, Result (*Posix::*member)(Arguments...)>
struct Counted<member>
{
    static Result Call(Arguments... arguments)
    {
        Step();
        return (whole.*member)(arguments...);
    }
};

ssize_t Write(int fd, const void* data, size_t size, off_t at)
{
    Step();
    if (writes)
        writes->push_back({HostWrite::WRITE, at, {static_cast<const char*>(data), size}});
    return whole.pwrite(fd, data, size, at);
}

int Cut(int fd, off_t size)
{
    Step();
    if (writes)
        writes->push_back({HostWrite::CUT, size, {}});
    return whole.ftruncate(fd, size);
}

int Flush(int fd)
{
    Step();
    if (writes)
        writes->push_back({HostWrite::FLUSH, 0, {}});
    return whole.fsync(fd);
}

void* Map(void* address, size_t size, int protection, int flags, int fd, off_t offset)
{
    Step();
    void* const view = whole.mmap(address, size, protection, flags, fd, offset);
    if (view == MAP_FAILED || !(protection & PROT_WRITE) || fd < 0 || !stepsLeft)
        return view;
    for (View& place : views) {
        if (place.address)
            continue;
        place = {static_cast<char*>(view), size};
        mprotect(view, size, PROT_READ);
        return view;
    }
    std::abort();
}

int Unmap(void* address, size_t size)
{
    Step();
    for (View& view : views)
        if (view.address == address)
            view = {};
    return whole.munmap(address, size);
}

void Install()
{
    whole = winapi::posix;
#define COUNTED(call) winapi::posix.call = Counted<&Posix::call>::Call
    COUNTED(open);
    COUNTED(close);
    COUNTED(pread);
    COUNTED(posix_fallocate);
    COUNTED(lseek);
    COUNTED(fstat);
    COUNTED(msync);
    COUNTED(unlink);
#undef COUNTED
    winapi::posix.pwrite = Write;
    winapi::posix.ftruncate = Cut;
    winapi::posix.fsync = Flush;
    winapi::posix.mmap = Map;
    winapi::posix.munmap = Unmap;
}

// ---- Stores -------------------------------------------------------------------------------

greg_t& Flags(void* context)
{
    return static_cast<ucontext_t*>(context)->uc_mcontext.gregs[REG_EFL];
}

void OnStore(int signal, siginfo_t* fault, void* context)
{
    const int before = errno;
    const char* const at = static_cast<const char*>(fault->si_addr);
    for (View& view : views) {
        if (!view.address || at < view.address || at >= view.address + view.size)
            continue;
        Step();
        mprotect(view.address, view.size, PROT_READ | PROT_WRITE);
        open = &view;
        Flags(context) |= TRAP_FLAG;
        errno = before;
        return;
    }
    std::signal(signal, SIG_DFL);
}

void OnStored(int, siginfo_t*, void* context)
{
    const int before = errno;
    mprotect(open->address, open->size, PROT_READ);
    Flags(context) &= ~TRAP_FLAG;
    errno = before;
}

void Handle(int signal, void (*handler)(int, siginfo_t*, void*))
{
    struct sigaction action = {};
    action.sa_sigaction = handler;
    action.sa_flags = SA_SIGINFO;
    sigaction(signal, &action, nullptr);
}
} // namespace

void CrashHost::EndAt(unsigned step)
{
    Handle(SIGSEGV, OnStore);
    Handle(SIGTRAP, OnStored);
    stepsLeft = step;
    Install();
}

void CrashHost::Log(std::vector<HostWrite>* target)
{
    writes = target;
    Install();
}

void CrashHost::Stop()
{
    writes = nullptr;
    winapi::posix = whole;
}
