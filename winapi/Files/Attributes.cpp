// winapi/Files/Attributes.cpp
//
// Hidden and system have no place in a mode. They are kept in the extended attribute that other
// programs use for them, as a number in hex digits behind "0x".
#include "Files/Attributes.h"

#include "Base/Posix.h"
#include "Errors/Failure.h"
#include "Files/Names.h"

#include <charconv>
#include <string_view>

namespace winapi
{
namespace
{
constexpr char XATTR[] = "user.DOSATTRIB";
constexpr std::int64_t SECONDS_TO_1970 = 11'644'473'600;

DWORD Parse(std::string_view text)
{
    if (!text.starts_with("0x"))
        return 0;
    DWORD value = 0;
    std::from_chars(text.data() + 2, text.data() + text.size(), value, 16);
    return value & FILE_ATTRIBUTES_HIDDEN_SYSTEM;
}

DWORD Parse(const char* text, ssize_t size)
{
    return size > 0 ? Parse({text, static_cast<std::size_t>(size)}) : 0;
}

struct Written
{
    explicit Written(DWORD attributes) : text{'0', 'x', static_cast<char>('0' + attributes)} {}
    char text[3];
};
} // namespace

DWORD StoredAttributes(const char* path)
{
    char text[16];
    return Parse(text, posix.getxattr(path, XATTR, text, sizeof text));
}

DWORD StoredAttributes(int fd)
{
    char text[16];
    return Parse(text, posix.fgetxattr(fd, XATTR, text, sizeof text));
}

// Failure is no failure of the service: a file system without a place for them loses the two
// attributes.
void StoreAttributes(const char* path, DWORD attributes)
{
    const Written value(attributes & FILE_ATTRIBUTES_HIDDEN_SYSTEM);
    if ((attributes & FILE_ATTRIBUTES_HIDDEN_SYSTEM) != 0)
        posix.setxattr(path, XATTR, value.text, sizeof value.text, 0);
    else
        posix.removexattr(path, XATTR);
}

void StoreAttributes(int fd, DWORD attributes)
{
    const Written value(attributes & FILE_ATTRIBUTES_HIDDEN_SYSTEM);
    if ((attributes & FILE_ATTRIBUTES_HIDDEN_SYSTEM) != 0)
        posix.fsetxattr(fd, XATTR, value.text, sizeof value.text, 0);
    else
        posix.fremovexattr(fd, XATTR);
}

DWORD AttributesOf(mode_t mode, DWORD stored, std::string_view name)
{
    DWORD attributes = stored & FILE_ATTRIBUTES_HIDDEN_SYSTEM;
    if (name.starts_with('.') && name != "." && name != "..")
        attributes |= FILE_ATTRIBUTE_HIDDEN;
    if (S_ISDIR(mode))
        return attributes | FILE_ATTRIBUTE_DIRECTORY;
    if (IsReadOnly(mode))
        attributes |= FILE_ATTRIBUTE_READONLY;
    return attributes | FILE_ATTRIBUTE_ARCHIVE;
}

bool GetFacts(int directory, const char* path, int flags, struct statx& facts)
{
    return posix.statx(directory, path, flags, FACTS, &facts) == 0;
}

FILETIME ToFileTime(const struct statx_timestamp& time)
{
    const std::int64_t ticks = (time.tv_sec + SECONDS_TO_1970) * 10'000'000 + time.tv_nsec / 100;
    return {static_cast<DWORD>(ticks), static_cast<DWORD>(ticks >> 32)};
}

FILETIME CreationTime(const struct statx& facts)
{
    if ((facts.stx_mask & STATX_BTIME) != 0)
        return ToFileTime(facts.stx_btime);
    const bool writtenFirst = facts.stx_mtime.tv_sec < facts.stx_ctime.tv_sec ||
                              (facts.stx_mtime.tv_sec == facts.stx_ctime.tv_sec &&
                               facts.stx_mtime.tv_nsec < facts.stx_ctime.tv_nsec);
    return ToFileTime(writtenFirst ? facts.stx_mtime : facts.stx_ctime);
}

BOOL SetFileAttributesW(LPCWSTR lpFileName, DWORD dwFileAttributes)
{
    return Guarded(FALSE, [&]() -> BOOL {
        const auto path = HostName(lpFileName);
        if (!path)
            return FALSE;
        struct stat facts;
        if (posix.stat(path->c_str(), &facts) != 0)
            return Finish(CodeOf(errno, *path));
        const mode_t mode = ModeWith(facts.st_mode, dwFileAttributes);
        const bool changes = !S_ISDIR(facts.st_mode) && mode != (facts.st_mode & 07777);
        // Extended attributes can be written as long as the file can.
        if (changes && !IsReadOnly(mode) && posix.chmod(path->c_str(), mode) != 0)
            return Finish(CodeOf(errno, *path));
        StoreAttributes(path->c_str(), dwFileAttributes);
        if (changes && IsReadOnly(mode) && posix.chmod(path->c_str(), mode) != 0)
            return Finish(CodeOf(errno, *path));
        return TRUE;
    });
}

BOOL SetFileAttributesA(LPCSTR lpFileName, DWORD dwFileAttributes)
{
    return Guarded(FALSE,
                   [&] { return SetFileAttributesW(Widened(lpFileName), dwFileAttributes); });
}

DWORD GetFileAttributesW(LPCWSTR lpFileName)
{
    return Guarded(INVALID_FILE_ATTRIBUTES, [&]() -> DWORD {
        const auto path = HostName(lpFileName);
        if (!path)
            return INVALID_FILE_ATTRIBUTES;
        struct stat facts;
        if (posix.stat(path->c_str(), &facts) != 0) {
            SetLastError(CodeOf(errno, *path));
            return INVALID_FILE_ATTRIBUTES;
        }
        return AttributesOf(facts.st_mode, StoredAttributes(path->c_str()), LastComponent(*path));
    });
}

DWORD GetFileAttributesA(LPCSTR lpFileName)
{
    return Guarded(INVALID_FILE_ATTRIBUTES,
                   [&] { return GetFileAttributesW(Widened(lpFileName)); });
}
} // namespace winapi
