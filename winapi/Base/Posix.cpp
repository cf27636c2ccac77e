// winapi/Base/Posix.cpp
#include "Base/Posix.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>

#include <spawn.h>
#include <sys/auxv.h>
#include <sys/mman.h>
#include <sys/random.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace winapi
{
namespace
{
// A file that had the number of a standard stream would take what is written to that stream.
int AboveStreams(int fd)
{
    if (fd < 0 || fd > STDERR_FILENO)
        return fd;
    const int above = ::fcntl(fd, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    const int error = errno;
    ::close(fd);
    errno = error;
    return above;
}

int Open(const char* path, int flags, mode_t mode)
{
    return AboveStreams(::open(path, flags | O_CLOEXEC | O_NOCTTY, mode));
}

int Lock(int fd, int command, struct flock* lock)
{
    return ::fcntl(fd, command, lock);
}

int Seals(int fd, int command, int seals)
{
    return ::fcntl(fd, command, seals);
}

char** Environment()
{
    return ::environ;
}

int Spawn(pid_t* process, const char* program, int output, char* const* arguments,
          char* const* variables)
{
    posix_spawn_file_actions_t actions;
    if (const int error = ::posix_spawn_file_actions_init(&actions))
        return error;
    // The output first: it has the number of a stream where those are closed.
    int error = ::posix_spawn_file_actions_adddup2(&actions, output, 1);
    if (!error)
        error = ::posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
    if (!error)
        error = ::posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", O_WRONLY, 0);
    if (!error)
        error = ::posix_spawnp(process, program, &actions, nullptr, arguments, variables);
    ::posix_spawn_file_actions_destroy(&actions);
    return error;
}
} // namespace

constinit Posix posix = {
    .open = Open,
    .close = ::close,
    .read = ::read,
    .write = ::write,
    .pread = ::pread,
    .pwrite = ::pwrite,
    .copy_file_range = ::copy_file_range,
    .lseek = ::lseek,
    .ftruncate = ::ftruncate,
    .posix_fallocate = ::posix_fallocate,
    .posix_fadvise = ::posix_fadvise,
    .fsync = ::fsync,
    .fcntl = Lock,
    .fcntl_seals = Seals,
    .memfd_create = ::memfd_create,
    .fstat = ::fstat,
    .stat = ::stat,
    .statx = ::statx,
    .fchmod = ::fchmod,
    .chmod = ::chmod,
    .fchown = ::fchown,
    .futimens = ::futimens,
    .getxattr = ::getxattr,
    .setxattr = ::setxattr,
    .removexattr = ::removexattr,
    .fgetxattr = ::fgetxattr,
    .fsetxattr = ::fsetxattr,
    .fremovexattr = ::fremovexattr,
    .unlink = ::unlink,
    .rename = ::rename,
    .renameat2 = ::renameat2,
    .mkdir = ::mkdir,
    .rmdir = ::rmdir,
    .opendir = ::opendir,
    .readdir = ::readdir,
    .closedir = ::closedir,
    .realpath = ::realpath,
    .readlink = ::readlink,
    .chdir = ::chdir,
    .getcwd = ::getcwd,
    .socket = ::socket,
    .bind = ::bind,
    .listen = ::listen,
    .connect = ::connect,
    .accept4 = ::accept4,
    .sendmsg = ::sendmsg,
    .recvmsg = ::recvmsg,
    .getsockopt = ::getsockopt,
    .poll = ::poll,
    .fdopen = ::fdopen,
    .fclose = ::fclose,
    .setvbuf = ::setvbuf,
    .ftello = ::ftello,
    .fseeko = ::fseeko,
    .mmap = ::mmap,
    .munmap = ::munmap,
    .msync = ::msync,
    .clock_gettime = ::clock_gettime,
    .tzset = ::tzset,
    .localtime_r = ::localtime_r,
    .nanosleep = ::nanosleep,
    .getpid = ::getpid,
    .gettid = ::gettid,
    .geteuid = ::geteuid,
    .getrandom = ::getrandom,
    .sched_getaffinity = ::sched_getaffinity,
    .sysconf = ::sysconf,
    .getauxval = ::getauxval,
    .atexit = std::atexit,
    .getenv = ::getenv,
    .setenv = ::setenv,
    .unsetenv = ::unsetenv,
    .environment = Environment,
    .posix_spawnp = Spawn,
    .waitpid = ::waitpid,
    .pipe2 = ::pipe2,
    .raise = ::raise,
    .dlopen = ::dlopen,
    .dlsym = ::dlsym,
    .dlclose = ::dlclose,
    .dladdr = ::dladdr,
    .dladdr1 = ::dladdr1,
    .dlinfo = ::dlinfo,
};

void Descriptor::Reset(int number)
{
    if (fd >= 0) {
        const int error = errno;
        posix.close(fd);
        errno = error;
    }
    fd = number;
}
} // namespace winapi
