// tests/Faults/FailingHost.h: a host whose calls fail, each in turn.
#pragma once

#include <sys/mman.h>

#include <cerrno>
#include <filesystem>
#include <string>
#include <type_traits>

#include "../../winapi/Base/Posix.h"
#include "Faults/Swept.h"

// The host, one of whose calls fails.
class FailingHost
{
public:
    // How a call tells its failure.
    enum Kind
    {
        PLAIN,
        ERROR_IS_RESULT,
        DONE_ALL_THE_SAME
    };

    // Lets call `number`, counted from 1, fail with an error number; no one for 0.
    static void Arm(unsigned number, int error)
    {
        left = number;
        code = error;
        failed = "";
        Install();
    }
    // The host is whole again. Result: the call that failed, empty for none.
    static std::string Disarm()
    {
        winapi::posix = whole;
        return failed;
    }

private:
    template <auto member, Kind kind>
    struct Wrapped;

    // The calls that a signal may interrupt on the host.
    static bool IsInterruptible(const std::string& name)
    {
        for (const char* call : {"open", "close", "read", "write", "pread", "pwrite", "ftruncate",
                                 "posix_fallocate", "fsync", "copy_file_range"}) {
            if (name == call)
                return true;
        }
        return false;
    }
    static bool Fails(const char* name)
    {
        if (code == EINTR && !IsInterruptible(name))
            return false;
        if (left == 0 || --left)
            return false;
        failed = name;
        Swept::Mark(Swept::SERVICE);
        errno = code;
        return true;
    }
    static void Install();

    static inline winapi::Posix whole;
    static inline unsigned left;
    static inline int code;
    static inline const char* failed;
};

template <class Result, class... Arguments, Result (*winapi::Posix::*member)(Arguments...),
          FailingHost::Kind kind>
struct FailingHost::Wrapped<member, kind>
{
    static inline const char* name;

    static Result Call(Arguments... arguments)
    {
        if (!Fails(name))
            return (whole.*member)(arguments...);
        if constexpr (kind == ERROR_IS_RESULT)
            return code;
        else if constexpr (kind == DONE_ALL_THE_SAME) {
            (whole.*member)(arguments...);
            errno = code;
            return -1;
        } else if constexpr (std::is_same_v<Result, void*>)
            return MAP_FAILED;
        else if constexpr (std::is_pointer_v<Result>)
            return nullptr;
        else
            return static_cast<Result>(-1);
    }
    static void Install(const char* text)
    {
        name = text;
        winapi::posix.*member = Call;
    }
};

inline void FailingHost::Install()
{
    whole = winapi::posix;
#define WRAP_AS(call, kind) Wrapped<&winapi::Posix::call, kind>::Install(#call)
#define WRAP(call) WRAP_AS(call, PLAIN)
    WRAP(open);
    WRAP_AS(close, DONE_ALL_THE_SAME);
    WRAP(read);
    WRAP(write);
    WRAP(pread);
    WRAP(pwrite);
    WRAP(copy_file_range);
    WRAP(lseek);
    WRAP(ftruncate);
    WRAP_AS(posix_fallocate, ERROR_IS_RESULT);
    WRAP(fsync);
    WRAP(fstat);
    WRAP(stat);
    WRAP(statx);
    WRAP(fchmod);
    WRAP(fchown);
    WRAP(chmod);
    WRAP(unlink);
    WRAP(rename);
    WRAP(renameat2);
    WRAP(mkdir);
    WRAP(readlink);
    WRAP(mmap);
    WRAP(munmap);
    WRAP(msync);
    WRAP(pipe2);
    WRAP_AS(posix_spawnp, ERROR_IS_RESULT);
    WRAP(waitpid);
#undef WRAP
#undef WRAP_AS
}

// How many descriptors the process has open.
inline unsigned Descriptors()
{
    unsigned count = 0;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd"))
        count += entry.exists() || true;
    return count;
}
