// winapi/Base/Posix.h: the calls of the host that the services make, in one table.
#pragma once

#include "winapi/Base/Types.h"

#include <cerrno>
#include <cstdio>

#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <poll.h>
#include <sched.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <time.h>

namespace winapi
{
// Each entry is the host's call of that name, with its own results and errno. A test may put a
// pointer of its own in place of one while no other thread is within a service; the product never
// writes here.
struct Posix
{
    // Files. What is opened never has the number of a standard stream, also where that is closed.
    int (*open)(const char* path, int flags, mode_t mode);
    int (*close)(int fd);
    ssize_t (*read)(int fd, void* data, size_t size);
    ssize_t (*write)(int fd, const void* data, size_t size);
    ssize_t (*pread)(int fd, void* data, size_t size, off_t offset);
    ssize_t (*pwrite)(int fd, const void* data, size_t size, off_t offset);
    ssize_t (*copy_file_range)(int from, off_t* fromOffset, int to, off_t* toOffset, size_t size,
                               unsigned flags);
    off_t (*lseek)(int fd, off_t offset, int whence);
    int (*ftruncate)(int fd, off_t size);
    int (*posix_fallocate)(int fd, off_t offset, off_t size); // The error number is the result.
    int (*posix_fadvise)(int fd, off_t offset, off_t size, int advice);
    int (*fsync)(int fd);
    int (*fcntl)(int fd, int command, struct flock* lock);
    int (*fcntl_seals)(int fd, int command, int seals); // The same call.
    int (*memfd_create)(const char* name, unsigned flags);
    // Facts and attributes.
    int (*fstat)(int fd, struct stat* facts);
    int (*stat)(const char* path, struct stat* facts);
    int (*statx)(int directory, const char* path, int flags, unsigned mask, struct statx* facts);
    int (*fchmod)(int fd, mode_t mode);
    int (*chmod)(const char* path, mode_t mode);
    int (*fchown)(int fd, uid_t owner, gid_t group);
    int (*futimens)(int fd, const struct timespec times[2]);
    ssize_t (*getxattr)(const char* path, const char* name, void* value, size_t size);
    int (*setxattr)(const char* path, const char* name, const void* value, size_t size, int flags);
    int (*removexattr)(const char* path, const char* name);
    ssize_t (*fgetxattr)(int fd, const char* name, void* value, size_t size);
    int (*fsetxattr)(int fd, const char* name, const void* value, size_t size, int flags);
    int (*fremovexattr)(int fd, const char* name);
    // Names.
    int (*unlink)(const char* path);
    int (*rename)(const char* from, const char* to);
    int (*renameat2)(int fromDirectory, const char* from, int toDirectory, const char* to,
                     unsigned flags);
    int (*mkdir)(const char* path, mode_t mode);
    int (*rmdir)(const char* path);
    DIR* (*opendir)(const char* path);
    struct dirent* (*readdir)(DIR* directory);
    int (*closedir)(DIR* directory);
    char* (*realpath)(const char* path, char* resolved);
    ssize_t (*readlink)(const char* path, char* target, size_t size);
    int (*chdir)(const char* path);
    char* (*getcwd)(char* buffer, size_t size);
    // Sockets.
    int (*socket)(int domain, int type, int protocol);
    int (*bind)(int fd, const struct sockaddr* name, socklen_t size);
    int (*listen)(int fd, int backlog);
    int (*connect)(int fd, const struct sockaddr* name, socklen_t size);
    int (*accept4)(int fd, struct sockaddr* name, socklen_t* size, int flags);
    ssize_t (*sendmsg)(int fd, const struct msghdr* message, int flags);
    ssize_t (*recvmsg)(int fd, struct msghdr* message, int flags);
    int (*getsockopt)(int fd, int level, int option, void* value, socklen_t* size);
    int (*poll)(struct pollfd* list, nfds_t count, int milliseconds);
    // Streams.
    std::FILE* (*fdopen)(int fd, const char* mode);
    int (*fclose)(std::FILE* stream);
    int (*setvbuf)(std::FILE* stream, char* buffer, int mode, size_t size);
    off_t (*ftello)(std::FILE* stream);
    int (*fseeko)(std::FILE* stream, off_t offset, int origin);
    // Memory.
    void* (*mmap)(void* address, size_t size, int protection, int flags, int fd, off_t offset);
    int (*munmap)(void* address, size_t size);
    int (*msync)(void* address, size_t size, int flags);
    // Time.
    int (*clock_gettime)(clockid_t clock, struct timespec* now);
    void (*tzset)();
    struct tm* (*localtime_r)(const time_t* moment, struct tm* date);
    int (*nanosleep)(const struct timespec* span, struct timespec* rest);
    // The process, its threads and its variables.
    pid_t (*getpid)();
    pid_t (*gettid)();
    uid_t (*geteuid)();
    ssize_t (*getrandom)(void* data, size_t size, unsigned flags);
    int (*sched_getaffinity)(pid_t thread, size_t size, cpu_set_t* processors);
    long (*sysconf)(int name);
    unsigned long (*getauxval)(unsigned long type);
    int (*atexit)(void (*handler)());
    char* (*getenv)(const char* name);
    int (*setenv)(const char* name, const char* value, int overwrite);
    int (*unsetenv)(const char* name);
    char** (*environment)(); // The variables themselves.
    // Looks for the program as a shell does. Its output goes to that descriptor; it has no input,
    // and what it says of errors is lost. The error number is the result.
    int (*posix_spawnp)(pid_t* process, const char* program, int output, char* const* arguments,
                        char* const* variables);
    pid_t (*waitpid)(pid_t process, int* status, int options);
    int (*pipe2)(int ends[2], int flags);
    int (*raise)(int signal);
    // Modules.
    void* (*dlopen)(const char* path, int flags);
    void* (*dlsym)(void* module, const char* name);
    int (*dlclose)(void* module);
    int (*dladdr)(const void* address, Dl_info* info);
    int (*dladdr1)(const void* address, Dl_info* info, void** extra, int flags);
    int (*dlinfo)(void* module, int request, void* answer);
};

extern Posix posix;

// Repeats a call that a signal interrupted.
template <class Call>
auto Retried(Call call) -> decltype(call())
{
    for (;;) {
        const auto result = call();
        if (result != -1 || errno != EINTR)
            return result;
    }
}

// A descriptor that is closed at the end of its scope.
class Descriptor
{
public:
    explicit Descriptor(int number = -1) : fd(number) {}
    Descriptor(Descriptor&& other) noexcept : fd(other.Release()) {}
    Descriptor& operator=(Descriptor&& other) noexcept
    {
        if (this != &other)
            Reset(other.Release());
        return *this;
    }
    ~Descriptor() { Reset(); }

    explicit operator bool() const { return fd >= 0; }
    int Get() const { return fd; }
    int Release()
    {
        const int number = fd;
        fd = -1;
        return number;
    }
    // Leaves errno alone, so that a failure can be told behind it.
    void Reset(int number = -1);

private:
    int fd;
};
} // namespace winapi
