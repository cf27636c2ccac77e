// winapi/Base/Posix.cpp
#include "Base/Posix.h"

#include <cstdio>
#include <ctime>

#include <sys/mman.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace winapi
{
namespace
{
int Open(const char* path, int flags, mode_t mode)
{
    return ::open(path, flags | O_CLOEXEC | O_NOCTTY, mode);
}

int Lock(int fd, int command, struct flock* lock)
{
    return ::fcntl(fd, command, lock);
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
    .fstat = ::fstat,
    .stat = ::stat,
    .statx = ::statx,
    .fchmod = ::fchmod,
    .chmod = ::chmod,
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
    .chdir = ::chdir,
    .getcwd = ::getcwd,
    .mmap = ::mmap,
    .munmap = ::munmap,
    .msync = ::msync,
    .nanosleep = ::nanosleep,
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
