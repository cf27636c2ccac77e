// winapi/Profile/ProfileFile.cpp: where a profile lies, how it is read, and what it consists of.
#include "Profile/ProfileFile.h"

#include "Base/DataFolder.h"
#include "Base/Posix.h"
#include "Files/OpenFile.h"
#include "Profile/Replacement.h"
#include "winapi/Files/File.h"
#include "winapi/Text/CodePage.h"

#include <unistd.h>

namespace winapi
{
namespace
{
constexpr int LINKS = 40; // As many as the host follows.
constexpr int TRIES = 10'000;
constexpr off_t LARGEST = off_t{256} << 20; // It is read as a whole, and rewritten in memory.
constexpr std::string_view MARKS[] = {"", "\xEF\xBB\xBF", "\xFF\xFE", "\xFE\xFF"};
constexpr ProfileMark WITH_MARK[] = {ProfileMark::UTF8, ProfileMark::UTF16,
                                     ProfileMark::UTF16_SWAPPED};

std::string_view TextOf(ProfileMark mark)
{
    return MARKS[static_cast<int>(mark)];
}

ProfileMark MarkOf(std::string_view file)
{
    for (const ProfileMark mark : WITH_MARK)
        if (file.substr(0, TextOf(mark).size()) == TextOf(mark))
            return mark;
    return ProfileMark::NONE;
}

std::optional<std::string> InWindowsDirectory(const std::string& name, bool toWrite)
{
    const auto data = DataFolder(toWrite);
    if (!data)
        return {};
    const std::string folder = *data + "/windows";
    if (toWrite && posix.mkdir(folder.c_str(), 0700) != 0 && errno != EEXIST) {
        SetLastError(CodeOf(errno));
        return {};
    }
    return folder + '/' + name;
}

// The file that a symbolic link leads to, whether it is there or not: that one is replaced.
DWORD FollowLinks(std::string& path)
{
    for (int i = 0; i < LINKS; ++i) {
        char target[4096];
        const ssize_t length = posix.readlink(path.c_str(), target, sizeof target);
        if (length <= 0)
            return 0;
        const std::string next(target, static_cast<std::size_t>(length));
        if (next[0] != '/')
            path = ParentOf(path).append("/").append(next);
        else
            path = next;
    }
    return CodeOf(ELOOP);
}

DWORD ReadWhole(int fd, std::string& file)
{
    struct stat facts;
    if (posix.fstat(fd, &facts) != 0)
        return CodeOf(errno);
    if (facts.st_size > LARGEST)
        return ERROR_NOT_ENOUGH_MEMORY;
    file.resize(static_cast<std::size_t>(facts.st_size));
    for (std::size_t done = 0; done < file.size();) {
        const ssize_t count = Retried([&] {
            return posix.pread(fd, file.data() + done, file.size() - done,
                               static_cast<off_t>(done));
        });
        if (count < 0)
            return CodeOf(errno);
        if (count == 0)
            file.resize(done);
        done += static_cast<std::size_t>(count);
    }
    return 0;
}

// Whether the descriptor's file still has the name, once its turn has come.
bool IsNamed(int fd, const std::string& path)
{
    struct stat mine;
    struct stat named;
    return posix.fstat(fd, &mine) == 0 && posix.stat(path.c_str(), &named) == 0 &&
           mine.st_dev == named.st_dev && mine.st_ino == named.st_ino;
}

DWORD RewriteHeld(const std::string& path, const HeldFile& held, const Rewriting& rewrite)
{
    std::string file;
    DWORD code = ReadWhole(held.fd.Get(), file);
    if (code == 0)
        if (const auto changed = rewrite(file))
            code = ReplaceFile(path, held.ForLocks(), *changed);
    if (code != 0 && !held.existed && file.empty())
        posix.unlink(path.c_str());
    return code;
}

// One turn; `gone` tells that the file was replaced while its turn was waited for.
DWORD RewriteOnce(const std::string& path, bool mayCreate, const Rewriting& rewrite, bool& gone)
{
    HeldFile held;
    DWORD code = OpenHeld({.path = path,
                           .rights = RIGHT_READ | RIGHT_WRITE,
                           .shares = RIGHT_READ | RIGHT_WRITE,
                           .disposition = DWORD(mayCreate ? OPEN_ALWAYS : OPEN_EXISTING)},
                          held);
    if (code == 0)
        code = TakeTurn(held.ForLocks(), Turn::REWRITING, false);
    if (code != 0)
        return code;
    gone = !IsNamed(held.fd.Get(), path);
    return gone ? 0 : RewriteHeld(path, held, rewrite);
}
} // namespace

ProfileContents::ProfileContents(const std::string& file) : mark(MarkOf(file))
{
    bytes = file.substr(TextOf(mark).size());
    if (!IsWide())
        return;
    const int low = mark == ProfileMark::UTF16 ? 0 : 1;
    units.resize(bytes.size() / 2);
    for (std::size_t i = 0; i < units.size(); ++i)
        units[i] = static_cast<WCHAR>(static_cast<BYTE>(bytes[2 * i + low]) |
                                      static_cast<BYTE>(bytes[2 * i + 1 - low]) << 8);
}

UINT ProfileContents::Page() const
{
    return mark == ProfileMark::UTF8 ? CP_UTF8 : GetACP();
}

std::string ProfileContents::File() const
{
    std::string file(TextOf(mark));
    if (!IsWide()) {
        // A text that begins with bytes of a mark, once the blanks in front are gone, gets an empty
        // line there: it would be read as another one.
        if (mark == ProfileMark::NONE && MarkOf(bytes) != ProfileMark::NONE)
            file = "\r\n";
        return file + bytes;
    }
    const int low = mark == ProfileMark::UTF16 ? 0 : 8;
    for (const WCHAR unit : units) {
        file += static_cast<char>(unit >> low);
        file += static_cast<char>(unit >> (8 - low));
    }
    return file;
}

std::optional<std::string> ProfilePath(LPCWSTR name, bool toWrite)
{
    if (!name)
        return InWindowsDirectory("win.ini", toWrite);
    auto path = HostName(name, ERROR_ACCESS_DENIED);
    if (!path || path->find('/') != std::string::npos)
        return path;
    return InWindowsDirectory(*path, toWrite);
}

DWORD ReadProfile(const std::string& path, std::string& file)
{
    if (const DWORD code = CheckRegular(path))
        return code;
    HeldFile held;
    DWORD code = OpenHeld(
        {.path = path, .rights = RIGHT_READ, .shares = RIGHTS_ALL, .disposition = OPEN_EXISTING},
        held);
    if (code == 0)
        code = TakeTurn(held.ForLocks(), Turn::CONTENTS, true);
    return code ? code : ReadWhole(held.fd.Get(), file);
}

DWORD RewriteProfile(const std::string& path, bool mayCreate, const Rewriting& rewrite)
{
    std::string target = path;
    DWORD code = FollowLinks(target);
    if (code == 0)
        code = CheckRegular(target);
    bool gone = code == 0;
    for (int i = 0; i < TRIES && gone; ++i) {
        gone = false;
        code = RewriteOnce(target, mayCreate, rewrite, gone);
    }
    if (gone)
        return ERROR_SHARING_VIOLATION;
    return code == ERROR_FILE_NOT_FOUND && !mayCreate ? 0 : code;
}
} // namespace winapi
