// winapi/Profile/Replacement.cpp
#include "Profile/Replacement.h"

#include "Base/Posix.h"
#include "Errors/Failure.h"
#include "Files/Attributes.h"
#include "Files/Names.h"

namespace winapi
{
namespace
{
constexpr char ACCESS_LIST[] = "system.posix_acl_access";
constexpr mode_t MODE_BITS = 07777;

// Whoever has the turn has this name for his own; what a killed run left is used up by the next.
std::string NameBeside(const std::string& path)
{
    std::string name = ParentOf(path);
    ((name += "/.") += LastComponent(path)) += ".new";
    return name;
}

// 0 or the error number.
int WriteWhole(int fd, const std::string& contents)
{
    for (std::size_t done = 0; done < contents.size();) {
        const ssize_t count = Retried([&] {
            return posix.pwrite(fd, contents.data() + done, contents.size() - done,
                                static_cast<off_t>(done));
        });
        if (count < 0)
            return errno;
        done += static_cast<std::size_t>(count);
    }
    return 0;
}

int Flush(int fd)
{
    return Retried([&] { return posix.fsync(fd); }) == 0 ? 0 : errno;
}

bool CopyAccessList(int from, int to)
{
    char list[4096];
    const ssize_t size = posix.fgetxattr(from, ACCESS_LIST, list, sizeof list);
    if (size < 0)
        return errno == ENODATA || errno == EOPNOTSUPP;
    return posix.fsetxattr(to, ACCESS_LIST, list, static_cast<std::size_t>(size), 0) == 0;
}

// Whose the file is and who may use it.
bool CopyOwnership(int from, int to)
{
    struct stat wanted;
    struct stat given;
    if (posix.fstat(from, &wanted) != 0 || posix.fstat(to, &given) != 0)
        return false;
    const bool same = wanted.st_uid == given.st_uid && wanted.st_gid == given.st_gid;
    if (!same && posix.fchown(to, wanted.st_uid, wanted.st_gid) != 0)
        return false;
    if (posix.fchmod(to, wanted.st_mode & MODE_BITS) != 0 || !CopyAccessList(from, to))
        return false;
    if (const DWORD attributes = StoredAttributes(from))
        StoreAttributes(to, attributes);
    return true;
}

Descriptor Create(const std::string& name)
{
    const auto create = [&] {
        return Retried(
            [&] { return posix.open(name.c_str(), O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW, 0600); });
    };
    Descriptor fd(create());
    if (!fd && errno == EEXIST && posix.unlink(name.c_str()) == 0)
        fd.Reset(create());
    return fd;
}

// Makes the file beside the old one, and like it. 0 or the error number.
int Prepare(const std::string& name, int old, Descriptor& fd)
{
    fd = Create(name);
    if (!fd)
        return errno;
    if (CopyOwnership(old, fd.Get()))
        return 0;
    posix.unlink(name.c_str());
    return EPERM;
}

// There can be no file beside the old one, though there is one.
constexpr bool LeavesThePlace(int error)
{
    return error == EACCES || error == EPERM || error == EROFS || error == ENAMETOOLONG;
}

int WriteInPlace(int fd, const std::string& contents)
{
    struct stat facts;
    if (posix.fstat(fd, &facts) != 0)
        return errno;
    const auto size = static_cast<off_t>(contents.size());
    if (size > facts.st_size) {
        const int error = posix.posix_fallocate(fd, facts.st_size, size - facts.st_size);
        if (error != 0) {
            posix.ftruncate(fd, facts.st_size);
            return error;
        }
    }
    if (const int error = WriteWhole(fd, contents))
        return error;
    if (Retried([&] { return posix.ftruncate(fd, size); }) != 0)
        return errno;
    return Flush(fd);
}
} // namespace

DWORD ReplaceFile(const std::string& path, Lockable file, const std::string& contents)
{
    const std::string name = NameBeside(path);
    Descriptor fd;
    int error = Prepare(name, file.fd, fd);
    if (LeavesThePlace(error)) {
        if (const DWORD code = TakeTurn(file, Turn::CONTENTS, false))
            return code;
        error = WriteInPlace(file.fd, contents);
        return error ? CodeOf(error) : 0;
    }
    if (error != 0)
        return CodeOf(error);
    error = WriteWhole(fd.Get(), contents);
    if (error == 0)
        error = Flush(fd.Get());
    if (error == 0 && posix.rename(name.c_str(), path.c_str()) != 0)
        error = errno;
    if (error == 0)
        return 0;
    posix.unlink(name.c_str());
    return CodeOf(error);
}
} // namespace winapi
