// winapi/Files/MoveCopyDelete.cpp: deleting, moving and copying files by name.
#include "Errors/Failure.h"
#include "Files/Attributes.h"
#include "Files/Names.h"
#include "Files/OpenFile.h"
#include "winapi/Files/File.h"

#include <cstdio>

#include <unistd.h>

namespace winapi
{
namespace
{
constexpr DWORD MOVEFILE_SUPPORTED = MOVEFILE_REPLACE_EXISTING | MOVEFILE_COPY_ALLOWED;
constexpr std::size_t PIECE = 1 << 16;
constexpr int NAME_TRIES = 1000;

// Directories aren't deleted or replaced as files are, and read-only files not at all.
bool IsReplaceable(mode_t mode)
{
    return !S_ISDIR(mode) && !(S_ISREG(mode) && IsReadOnly(mode));
}

DWORD Delete(const std::string& path)
{
    HeldFile held;
    if (const DWORD code = HoldForDelete(path, held))
        return code;
    if (!IsReplaceable(held.mode))
        return ERROR_ACCESS_DENIED;
    return posix.unlink(path.c_str()) == 0 ? 0 : CodeOf(errno, path);
}

bool IsSameEntry(const std::string& a, const std::string& b)
{
    if (LastComponent(a) != LastComponent(b))
        return false;
    struct stat first;
    struct stat second;
    return posix.stat(ParentOf(a).c_str(), &first) == 0 &&
           posix.stat(ParentOf(b).c_str(), &second) == 0 && first.st_dev == second.st_dev &&
           first.st_ino == second.st_ino;
}

bool IsTaken(const std::string& path)
{
    struct statx facts;
    return GetFacts(AT_FDCWD, path.c_str(), AT_SYMLINK_NOFOLLOW, facts);
}

// Renames where nothing has the new name; 0 or the error number.
int RenameToFree(const char* from, const std::string& to)
{
    if (posix.renameat2(AT_FDCWD, from, AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0)
        return 0;
    if (errno != EINVAL && errno != ENOSYS)
        return errno;
    // A file system that can't be asked so: there remains a moment between question and deed.
    if (IsTaken(to))
        return EEXIST;
    return posix.rename(from, to.c_str()) == 0 ? 0 : errno;
}

int Rename(const std::string& from, const std::string& to, bool replaces)
{
    if (!replaces)
        return RenameToFree(from.c_str(), to);
    return posix.rename(from.c_str(), to.c_str()) == 0 ? 0 : errno;
}

// What a file has to allow that is to be replaced; a directory replaces nothing.
DWORD HoldToReplace(const std::string& path, bool directory, HeldFile& held)
{
    const DWORD code = HoldForDelete(path, held);
    if (code == ERROR_FILE_NOT_FOUND)
        return 0;
    if (code == 0 && (directory || !IsReplaceable(held.mode)))
        return ERROR_ACCESS_DENIED;
    return code;
}

DWORD CodeOfRename(int error, const std::string& to)
{
    switch (error) {
    case EEXIST:
    case ENOTEMPTY:
        return ERROR_ALREADY_EXISTS;
    case ENOENT: // The old name was there: so it's the new one's directory.
        return ERROR_PATH_NOT_FOUND;
    default:
        return CodeOf(error, to);
    }
}

bool CopyPiece(int from, int to, char* piece, ssize_t& count)
{
    count = Retried([&] { return posix.read(from, piece, PIECE); });
    for (ssize_t done = 0; done < count;) {
        const ssize_t written = Retried(
            [&] { return posix.write(to, piece + done, static_cast<std::size_t>(count - done)); });
        if (written < 0)
            return false;
        done += written;
    }
    return count >= 0;
}

// 0 or the error number.
int CopyByPieces(int from, int to)
{
    std::string piece(PIECE, '\0');
    ssize_t count;
    do
        if (!CopyPiece(from, to, piece.data(), count))
            return errno;
    while (count > 0);
    return 0;
}

int CopyContents(int from, int to)
{
    constexpr std::size_t ALL = 1 << 30;
    bool begun = false;
    for (;;) {
        const ssize_t count =
            Retried([&] { return posix.copy_file_range(from, nullptr, to, nullptr, ALL, 0); });
        if (count > 0) {
            begun = true;
            continue;
        }
        // Files that tell no size, such as those of /proc, end at once when copied this way.
        if (count == 0)
            return begun ? 0 : CopyByPieces(from, to);
        const bool unable =
            errno == EXDEV || errno == EINVAL || errno == ENOSYS || errno == EOPNOTSUPP;
        return unable ? CopyByPieces(from, to) : errno;
    }
}

// The time of writing and the attributes go with the contents.
void CopyFacts(int from, const struct stat& facts, int to)
{
    StoreAttributes(to, StoredAttributes(from));
    const timespec times[2] = {facts.st_atim, facts.st_mtim};
    posix.futimens(to, times);
    struct stat target;
    if (IsReadOnly(facts.st_mode) && posix.fstat(to, &target) == 0)
        posix.fchmod(to, ModeWith(target.st_mode, FILE_ATTRIBUTE_READONLY));
}

DWORD Copy(const std::string& from, const std::string& to, bool failIfExists)
{
    HeldFile source;
    struct stat facts;
    if (const DWORD code = OpenHeld({.path = from,
                                     .rights = RIGHT_READ,
                                     .shares = RIGHT_READ | RIGHT_WRITE,
                                     .disposition = OPEN_EXISTING},
                                    source))
        return code;
    if (posix.fstat(source.fd.Get(), &facts) != 0)
        return CodeOf(errno);
    HeldFile target;
    if (const DWORD code =
            OpenHeld({.path = to,
                      .rights = RIGHT_WRITE,
                      .shares = 0,
                      .disposition = DWORD(failIfExists ? CREATE_NEW : CREATE_ALWAYS),
                      .mode = (facts.st_mode & 0777) | 0200},
                     target))
        return code;
    const int error = CopyContents(source.fd.Get(), target.fd.Get());
    // A device or a FIFO stays as it is.
    if (S_ISREG(target.mode)) {
        if (error == 0)
            CopyFacts(source.fd.Get(), facts, target.fd.Get());
        else
            posix.unlink(to.c_str());
    }
    return error == 0 ? 0 : CodeOf(error);
}

// Copies to a name that nobody has in the directory of another one. It doesn't hold that one, which
// may be as long as names can be.
DWORD CopyBeside(const std::string& from, const std::string& to, std::string& copy)
{
    const std::string start = ParentOf(to) + "/." + std::to_string(posix.getpid()) + '-';
    DWORD code = ERROR_FILE_EXISTS;
    for (int i = 0; i < NAME_TRIES && code == ERROR_FILE_EXISTS; ++i) {
        copy = start + std::to_string(i) + ".new";
        code = Copy(from, copy, true);
    }
    return code;
}

// The old file or link gives way as a whole, and only when there is all of the new one.
DWORD MoveAcross(const std::string& from, const std::string& to, mode_t mode, DWORD flags)
{
    if ((flags & MOVEFILE_COPY_ALLOWED) == 0)
        return ERROR_NOT_SAME_DEVICE;
    if (!S_ISREG(mode))
        return ERROR_ACCESS_DENIED;
    const bool replaces = (flags & MOVEFILE_REPLACE_EXISTING) != 0;
    if (!replaces && IsTaken(to))
        return ERROR_ALREADY_EXISTS;
    std::string copy;
    if (const DWORD code = CopyBeside(from, to, copy))
        return code;
    if (const int error = Rename(copy, to, replaces)) {
        posix.unlink(copy.c_str());
        return CodeOfRename(error, to);
    }
    return posix.unlink(from.c_str()) == 0 ? 0 : CodeOf(errno, from);
}

DWORD Move(const std::string& from, const std::string& to, DWORD flags)
{
    if ((flags & ~MOVEFILE_SUPPORTED) != 0)
        return ERROR_NOT_SUPPORTED;
    HeldFile source;
    if (const DWORD code = HoldForDelete(from, source))
        return code;
    if (IsSameEntry(from, to))
        return 0;
    HeldFile target;
    const bool replaces = (flags & MOVEFILE_REPLACE_EXISTING) != 0;
    if (replaces)
        if (const DWORD code = HoldToReplace(to, S_ISDIR(source.mode), target))
            return code;
    const int error = Rename(from, to, replaces);
    if (error != EXDEV)
        return error ? CodeOfRename(error, to) : 0;
    const mode_t mode = source.mode;
    source.Release(); // The copy opens the file anew.
    return MoveAcross(from, to, mode, flags);
}
} // namespace

BOOL DeleteFileW(LPCWSTR lpFileName)
{
    return Guarded(FALSE, [&] {
        const auto path = HostName(lpFileName);
        return path && Finish(Delete(*path)) ? TRUE : FALSE;
    });
}

BOOL DeleteFileA(LPCSTR lpFileName)
{
    return Guarded(FALSE, [&] { return DeleteFileW(Widened(lpFileName)); });
}

BOOL MoveFileExW(LPCWSTR lpExistingFileName, LPCWSTR lpNewFileName, DWORD dwFlags)
{
    return Guarded(FALSE, [&] {
        const auto from = HostName(lpExistingFileName);
        const auto to = from ? HostName(lpNewFileName) : from;
        return to && Finish(Move(*from, *to, dwFlags)) ? TRUE : FALSE;
    });
}

BOOL MoveFileExA(LPCSTR lpExistingFileName, LPCSTR lpNewFileName, DWORD dwFlags)
{
    return Guarded(FALSE, [&] {
        return MoveFileExW(Widened(lpExistingFileName), Widened(lpNewFileName), dwFlags);
    });
}

BOOL MoveFileA(LPCSTR lpExistingFileName, LPCSTR lpNewFileName)
{
    return MoveFileExA(lpExistingFileName, lpNewFileName, MOVEFILE_COPY_ALLOWED);
}

BOOL CopyFileW(LPCWSTR lpExistingFileName, LPCWSTR lpNewFileName, BOOL bFailIfExists)
{
    return Guarded(FALSE, [&] {
        const auto from = HostName(lpExistingFileName);
        const auto to = from ? HostName(lpNewFileName) : from;
        return to && Finish(Copy(*from, *to, bFailIfExists != 0)) ? TRUE : FALSE;
    });
}

BOOL CopyFileA(LPCSTR lpExistingFileName, LPCSTR lpNewFileName, BOOL bFailIfExists)
{
    return Guarded(FALSE, [&] {
        return CopyFileW(Widened(lpExistingFileName), Widened(lpNewFileName), bFailIfExists);
    });
}
} // namespace winapi
