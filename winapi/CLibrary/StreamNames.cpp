// winapi/CLibrary/StreamNames.cpp: files by name.
#include "winapi/CLibrary/Stream.h"

#include "Base/Posix.h"
#include "CLibrary/ErrorNumber.h"
#include "Files/Names.h"
#include "winapi/Files/File.h"

namespace winapi
{
namespace
{
constexpr int MAY_WRITE = 0x80;

mode_t ModeTold(mode_t mode, int told)
{
    return 07777 & ((told & MAY_WRITE) != 0 ? mode | S_IWUSR : mode & ~mode_t{0222});
}

// Each gives the code of its failure.
DWORD ChangeMode(const std::string& path, int told)
{
    struct stat facts;
    if (posix.stat(path.c_str(), &facts) != 0)
        return CodeOf(errno, path);
    const mode_t mode = ModeTold(facts.st_mode, told);
    if (S_ISDIR(facts.st_mode) || mode == (facts.st_mode & 07777))
        return 0;
    return posix.chmod(path.c_str(), mode) == 0 ? 0 : CodeOf(errno, path);
}

DWORD TellFacts(const std::string& path, struct stat& facts)
{
    return posix.stat(path.c_str(), &facts) == 0 ? 0 : CodeOf(errno, path);
}

template <class Work>
BOOL OnHostName(LPCWSTR name, Work work)
{
    const auto path = HostName(name);
    return path && Finish(work(*path));
}

BOOL ChangeModeOf(LPCWSTR name, int told)
{
    return OnHostName(name, [=](auto& path) { return ChangeMode(path, told); });
}

BOOL TellFactsOf(LPCWSTR name, struct stat& facts)
{
    return OnHostName(name, [&](auto& path) { return TellFacts(path, facts); });
}
} // namespace

int _wremove(LPCWSTR filename)
{
    return ToldBySuccess([&] { return DeleteFileW(filename); });
}

int streams::remove(LPCSTR filename)
{
    return ToldBySuccess([&] { return DeleteFileA(filename); });
}

int _wrename(LPCWSTR oldname, LPCWSTR newname)
{
    return ToldBySuccess([&] { return MoveFileExW(oldname, newname, MOVEFILE_COPY_ALLOWED); });
}

int streams::rename(LPCSTR oldname, LPCSTR newname)
{
    return ToldBySuccess([&] { return MoveFileA(oldname, newname); });
}

int _wchmod(LPCWSTR filename, int mode)
{
    return ToldBySuccess([&] { return ChangeModeOf(filename, mode); });
}

int _chmod(LPCSTR filename, int mode)
{
    return ToldBySuccess([&] { return ChangeModeOf(Widened(filename), mode); });
}

int _wstat(LPCWSTR filename, struct _stat* info)
{
    return ToldBySuccess([&] { return TellFactsOf(filename, *info); });
}
} // namespace winapi

int _stat(LPCSTR filename, struct _stat* info)
{
    using namespace winapi;
    return ToldBySuccess([&] { return TellFactsOf(Widened(filename), *info); });
}
