// winapi/Files/OpenFile.cpp
#include "Files/OpenFile.h"

#include "Errors/Failure.h"
#include "Files/Attributes.h"
#include "Files/Names.h"
#include "winapi/Files/File.h"

#include <cstdlib>

#include <pthread.h>
#include <unistd.h>

namespace winapi
{
namespace
{
constexpr int CREATION_TRIES = 8;

bool Truncates(const OpenRequest& request)
{
    return request.disposition == CREATE_ALWAYS || request.disposition == TRUNCATE_EXISTING;
}

int OpenFlags(const OpenRequest& request)
{
    const bool read = (request.rights & RIGHT_READ) != 0;
    const bool write = (request.rights & RIGHT_WRITE) != 0;
    if (!write && !Truncates(request))
        return O_RDONLY;
    const int flags = read || !write ? O_RDWR : O_WRONLY;
    return (request.flags & FILE_FLAG_WRITE_THROUGH) != 0 ? flags | O_DSYNC : flags;
}

int OpenAgain(const char* path, int flags, mode_t mode)
{
    return Retried([&] { return posix.open(path, flags, mode); });
}

// Opens what exists. Without rights it need be neither readable nor writable, and a directory is
// never written.
int OpenExisting(const OpenRequest& request, int flags)
{
    const char* const path = request.path.c_str();
    const int fd = OpenAgain(path, flags, 0);
    if (fd >= 0)
        return fd;
    if (errno == EISDIR && (request.flags & FILE_FLAG_BACKUP_SEMANTICS) != 0)
        return OpenAgain(path, O_RDONLY | O_DIRECTORY, 0);
    if (errno == EACCES && (request.rights & (RIGHT_READ | RIGHT_WRITE)) == 0 && flags == O_RDONLY)
        return OpenAgain(path, O_PATH, 0);
    return fd;
}

int OpenNew(const OpenRequest& request, int flags)
{
    const bool readOnly = (request.flags & FILE_ATTRIBUTE_READONLY) != 0;
    const mode_t mode = readOnly ? request.mode & ~mode_t{0222} : request.mode;
    return OpenAgain(request.path.c_str(), flags | O_CREAT, mode);
}

// Whether a file was there before must be known for certain, hence first the one and then the
// other.
int OpenOrCreate(const OpenRequest& request, bool& existed)
{
    const int flags = OpenFlags(request);
    const bool mayCreate =
        request.disposition != OPEN_EXISTING && request.disposition != TRUNCATE_EXISTING;
    for (int i = 0; i < CREATION_TRIES; ++i) {
        existed = request.disposition != CREATE_NEW;
        if (existed) {
            const int fd = OpenExisting(request, flags);
            if (fd >= 0 || errno != ENOENT || !mayCreate)
                return fd;
        }
        existed = false;
        const int fd = OpenNew(request, flags | O_EXCL);
        if (fd >= 0 || errno != EEXIST || request.disposition == CREATE_NEW)
            return fd;
    }
    return OpenNew(request, flags); // A symbolic link whose target is missing.
}

DWORD CodeOfOpen(int error, const OpenRequest& request)
{
    if (error == EEXIST)
        return ERROR_FILE_EXISTS;
    return CodeOf(error, request.path);
}

// What the platform refuses though the host may allow it.
DWORD Admit(const OpenRequest& request, const HeldFile& held, const struct stat& facts)
{
    if (S_ISDIR(facts.st_mode)) {
        const bool asked = (request.flags & FILE_FLAG_BACKUP_SEMANTICS) != 0 && !Truncates(request);
        return asked ? 0 : ERROR_ACCESS_DENIED;
    }
    const bool changes = (request.rights & RIGHT_WRITE) != 0 || Truncates(request) ||
                         (request.flags & FILE_FLAG_DELETE_ON_CLOSE) != 0;
    const bool refused =
        held.existed && changes && S_ISREG(facts.st_mode) && IsReadOnly(facts.st_mode);
    return refused ? ERROR_ACCESS_DENIED : 0;
}

DWORD AnnounceHeld(const OpenRequest& request, HeldFile& held)
{
    if (!S_ISREG(held.mode) || (!held.readable && !held.writable))
        return 0;
    const DWORD code = Announce(held.ForLocks(), request.rights, request.shares);
    held.announced = code == 0 && request.rights != 0;
    return code;
}

// One turn. `gone` tells that the file was deleted between its opening and its announcement.
DWORD OpenOnce(const OpenRequest& request, HeldFile& held, bool& gone)
{
    held.fd.Reset(OpenOrCreate(request, held.existed));
    if (!held.fd)
        return CodeOfOpen(errno, request);
    struct stat facts;
    if (posix.fstat(held.fd.Get(), &facts) != 0)
        return CodeOf(errno);
    if (const DWORD code = Admit(request, held, facts))
        return code;
    const int access = OpenFlags(request) & O_ACCMODE;
    held.mode = facts.st_mode;
    held.readable = access != O_WRONLY;
    held.writable = access != O_RDONLY;
    if (const DWORD code = AnnounceHeld(request, held))
        return code;
    gone = held.announced && posix.fstat(held.fd.Get(), &facts) == 0 && facts.st_nlink == 0;
    return 0;
}

// The old contents go last, when nothing can refuse any more; the attributes stay.
DWORD Overwrite(const HeldFile& held)
{
    const int fd = held.fd.Get();
    if (!S_ISREG(held.mode))
        return 0;
    if (IsMappedByOthers(fd))
        return ERROR_USER_MAPPED_FILE;
    return Retried([&] { return posix.ftruncate(fd, 0); }) == 0 ? 0 : CodeOf(errno);
}

// Files to be deleted that are still open. A process that ends in order closes its handles, so they
// go then. Never destroyed: services may be called until the very end.
struct Doomed
{
    std::mutex mutex;
    std::vector<const OpenFile*> files;
};

Doomed& AllDoomed()
{
    static Doomed* const doomed = new Doomed;
    return *doomed;
}

// Deletes the file under the name that it was opened by, unless another has that name now.
void DeleteByName(const OpenFile& file)
{
    const char* const path = file.pathToDelete.c_str();
    struct stat mine;
    struct stat named;
    if (posix.fstat(file.Fd(), &mine) == 0 && posix.stat(path, &named) == 0 &&
        mine.st_dev == named.st_dev && mine.st_ino == named.st_ino)
        posix.unlink(path);
}

void DeleteAllDoomed()
{
    Doomed& doomed = AllDoomed();
    const std::lock_guard lock(doomed.mutex);
    for (const OpenFile* file : doomed.files)
        DeleteByName(*file);
    doomed.files.clear();
}

void Lock()
{
    AllDoomed().mutex.lock();
}

void Unlock()
{
    AllDoomed().mutex.unlock();
}

// A child deletes nothing: what it has inherited is its parent's.
void Forget()
{
    AllDoomed().files.clear();
    Unlock();
}

void Doom(const OpenFile& file)
{
    [[maybe_unused]] static const int registered =
        posix.atexit(DeleteAllDoomed) | pthread_atfork(Lock, Unlock, Forget);
    Doomed& doomed = AllDoomed();
    const std::lock_guard lock(doomed.mutex);
    doomed.files.push_back(&file);
}

void DeleteDoomed(const OpenFile& file)
{
    Doomed& doomed = AllDoomed();
    const std::lock_guard lock(doomed.mutex);
    if (std::erase(doomed.files, &file) != 0)
        DeleteByName(file);
}
} // namespace

void HeldFile::Release()
{
    if (announced)
        Withdraw(fd.Get());
    announced = false;
}

DWORD OpenHeld(const OpenRequest& request, HeldFile& held)
{
    bool gone = false;
    for (int i = 0; i == 0 || (gone && i < CREATION_TRIES); ++i) {
        held.Release();
        if (const DWORD code = OpenOnce(request, held, gone))
            return code;
    }
    if (held.existed && Truncates(request))
        return Overwrite(held);
    if (!held.existed && (request.flags & FILE_ATTRIBUTES_HIDDEN_SYSTEM) != 0)
        StoreAttributes(held.fd.Get(), request.flags);
    return 0;
}

DWORD CheckRegular(const std::string& path)
{
    struct stat facts;
    const bool other = posix.stat(path.c_str(), &facts) == 0 && !S_ISREG(facts.st_mode);
    return other ? ERROR_ACCESS_DENIED : 0;
}

DWORD HoldForDelete(const std::string& path, HeldFile& held)
{
    struct statx facts;
    if (!GetFacts(AT_FDCWD, path.c_str(), AT_SYMLINK_NOFOLLOW, facts))
        return CodeOf(errno, path);
    held.mode = facts.stx_mode;
    held.existed = true;
    if (!S_ISREG(held.mode))
        return 0;
    held.readable = true;
    held.fd.Reset(OpenAgain(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK, 0));
    if (!held.fd) {
        held.readable = false;
        held.writable = true;
        held.fd.Reset(OpenAgain(path.c_str(), O_WRONLY | O_NOFOLLOW | O_NONBLOCK, 0));
    }
    if (!held.fd)
        return 0;
    const DWORD code = Announce(held.ForLocks(), RIGHT_DELETE, RIGHTS_ALL);
    held.announced = code == 0;
    return code;
}

void OpenFile::Opened(const OpenRequest& request)
{
    name = LastComponent(request.path);
    positioned = S_ISREG(held.mode) || posix.lseek(Fd(), 0, SEEK_CUR) != -1;
    if ((request.flags & FILE_FLAG_DELETE_ON_CLOSE) != 0) {
        pathToDelete = AbsoluteName(request.path).value_or(request.path);
        Doom(*this);
    }
    if ((request.flags & FILE_FLAG_RANDOM_ACCESS) != 0)
        posix.posix_fadvise(Fd(), 0, 0, POSIX_FADV_RANDOM);
    if ((request.flags & FILE_FLAG_SEQUENTIAL_SCAN) != 0)
        posix.posix_fadvise(Fd(), 0, 0, POSIX_FADV_SEQUENTIAL);
}

void OpenFile::Closed()
{
    if (!pathToDelete.empty())
        DeleteDoomed(*this);
    held.Release();
}

void OpenFile::Map()
{
    const std::lock_guard lock(lists);
    if (mappings++ == 0)
        AnnounceMapping(Fd());
}

void OpenFile::Unmap()
{
    const std::lock_guard lock(lists);
    if (--mappings == 0)
        WithdrawMapping(Fd());
}

bool OpenFile::IsMapped()
{
    const std::lock_guard lock(lists);
    return mappings > 0 || IsMappedByOthers(Fd());
}
} // namespace winapi
