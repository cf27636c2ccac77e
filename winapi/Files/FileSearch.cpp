// winapi/Files/FileSearch.cpp: directory search.
//
// The directory is read when a search begins, and the search keeps a list of names alone: searches
// are often left unclosed, and so cost some memory but no descriptor. What is told of an entry is
// looked up when its turn comes; one that has gone by then is left out.
#include "winapi/Files/FileSearch.h"

#include "Base/Handles.h"
#include "Base/Posix.h"
#include "Errors/Failure.h"
#include "Files/Attributes.h"
#include "Files/Names.h"
#include "Files/Wildcard.h"
#include "Text/UpperCase.h"

#include <algorithm>
#include <mutex>
#include <vector>

namespace winapi
{
namespace
{
class Search : public Object
{
public:
    static constexpr Kind KIND = Kind::SEARCH;
    Search() : Object(KIND) {}

    std::string directory; // With the separator.
    std::vector<std::string> names;
    std::mutex mutex; // What follows.
    std::size_t next = 0;
};

struct Entry
{
    WideText key; // The name without regard to case: the order of the platform.
    std::string name;
    bool operator<(const Entry& other) const
    {
        return key != other.key ? key < other.key : name < other.name;
    }
};

struct Directory
{
    explicit Directory(const char* path) : stream(posix.opendir(path)) {}
    Directory(const Directory&) = delete;
    Directory& operator=(const Directory&) = delete;
    ~Directory()
    {
        if (stream)
            posix.closedir(stream);
    }

    DIR* const stream;
};

// A name that isn't UTF-8, or holds what every service takes for a separator, could be used with no
// service: it is left out.
bool IsUsable(std::string_view name)
{
    return name.find('\\') == std::string_view::npos;
}

bool IsDots(std::string_view name)
{
    return name == "." || name == "..";
}

void Consider(std::string_view name, WideView pattern, std::vector<Entry>& entries)
{
    auto wide = IsUsable(name) ? FromUtf8(name) : std::nullopt;
    if (!wide || IsDots(name) || !FitsPattern(*wide, pattern))
        return;
    for (WCHAR& unit : *wide)
        unit = UpperCase(unit);
    entries.push_back({std::move(*wide), std::string(name)});
}

// 0 or the code of the failure.
DWORD ReadNames(WideView pattern, Search& search)
{
    const Directory directory(search.directory.c_str());
    if (!directory.stream)
        return errno == ENOTDIR  ? ERROR_INVALID_NAME
               : errno == ENOENT ? ERROR_PATH_NOT_FOUND
                                 : CodeOf(errno);
    for (const char* dots : {".", ".."})
        if (FitsPattern(*FromUtf8(dots), pattern))
            search.names.emplace_back(dots);
    std::vector<Entry> entries;
    errno = 0;
    while (const dirent* entry = posix.readdir(directory.stream))
        Consider(entry->d_name, pattern, entries);
    if (errno != 0)
        return CodeOf(errno);
    std::sort(entries.begin(), entries.end());
    search.names.reserve(search.names.size() + entries.size());
    for (Entry& entry : entries)
        search.names.push_back(std::move(entry.name));
    return 0;
}

// Facts of the entry, or of a symbolic link whose target is missing.
bool Look(const std::string& path, struct statx& facts)
{
    return GetFacts(AT_FDCWD, path.c_str(), 0, facts) ||
           GetFacts(AT_FDCWD, path.c_str(), AT_SYMLINK_NOFOLLOW, facts);
}

void Fill(const struct statx& facts, DWORD attributes, WIN32_FIND_DATAW& data)
{
    data.dwFileAttributes = attributes;
    data.ftCreationTime = CreationTime(facts);
    data.ftLastAccessTime = ToFileTime(facts.stx_atime);
    data.ftLastWriteTime = ToFileTime(facts.stx_mtime);
    const std::uint64_t size = S_ISDIR(facts.stx_mode) ? 0 : facts.stx_size;
    data.nFileSizeHigh = static_cast<DWORD>(size >> 32);
    data.nFileSizeLow = static_cast<DWORD>(size);
}

bool FillNext(Search& search, WIN32_FIND_DATAW& data)
{
    const std::lock_guard lock(search.mutex);
    while (search.next < search.names.size()) {
        const std::string& name = search.names[search.next++];
        const std::string path = search.directory + name;
        struct statx facts;
        if (!Look(path, facts))
            continue;
        data = {};
        Fill(facts, AttributesOf(facts.stx_mode, StoredAttributes(path.c_str()), name), data);
        const auto wide = FromUtf8(name);
        StoreText(*wide, MAX_PATH, data.cFileName);
        return true;
    }
    return false;
}

// Splits a pattern into the directory, absolute, and what its entries are to fit.
bool Split(LPCWSTR text, Search& search, WideText& pattern)
{
    const auto name = HostName(text);
    if (!name)
        return false;
    const std::size_t start = name->rfind('/') + 1;
    auto directory = AbsoluteName(start > 0 ? name->substr(0, start) : "./");
    if (!directory)
        return false;
    search.directory = std::move(*directory);
    pattern = *FromUtf8(std::string_view(*name).substr(start));
    return true;
}

// A name without wildcards is looked up, not searched.
DWORD FindName(WideView pattern, Search& search)
{
    struct statx facts;
    std::string name = *ToUtf8(pattern);
    if (!Look(search.directory + name, facts))
        return errno == ENOTDIR ? ERROR_INVALID_NAME : CodeOf(errno, search.directory + name);
    if (IsDots(name)) {
        // Found under the directory's own name; the root has none.
        const auto whole = AbsoluteName(search.directory + name);
        search.directory = ParentOf(*whole) + '/';
        name = *whole == "/" ? "" : LastComponent(*whole);
    }
    if (name.empty())
        return ERROR_FILE_NOT_FOUND;
    search.names.push_back(std::move(name));
    return 0;
}

HANDLE FindFirst(LPCWSTR text, WIN32_FIND_DATAW& data)
{
    auto search = std::make_unique<Search>();
    WideText pattern;
    if (!Split(text, *search, pattern))
        return INVALID_HANDLE_VALUE;
    if (!Finish(HasWildcard(pattern) ? ReadNames(pattern, *search) : FindName(pattern, *search)))
        return INVALID_HANDLE_VALUE;
    if (!FillNext(*search, data)) {
        SetLastError(ERROR_FILE_NOT_FOUND);
        return INVALID_HANDLE_VALUE;
    }
    const HANDLE handle = MakeHandle(std::move(search));
    return handle ? handle : INVALID_HANDLE_VALUE;
}

// The narrow record; a name that is too long for it in the ANSI code page is cut.
void Narrow(const WIN32_FIND_DATAW& wide, WIN32_FIND_DATAA& data)
{
    data = {};
    data.dwFileAttributes = wide.dwFileAttributes;
    data.ftCreationTime = wide.ftCreationTime;
    data.ftLastAccessTime = wide.ftLastAccessTime;
    data.ftLastWriteTime = wide.ftLastWriteTime;
    data.nFileSizeHigh = wide.nFileSizeHigh;
    data.nFileSizeLow = wide.nFileSizeLow;
    std::string name = Narrowed(wide.cFileName);
    name.resize(std::min<std::size_t>(name.size(), MAX_PATH - 1));
    StoreText(name, MAX_PATH, data.cFileName);
}
} // namespace

HANDLE FindFirstFileW(LPCWSTR lpFileName, LPWIN32_FIND_DATAW lpFindFileData)
{
    return Guarded(INVALID_HANDLE_VALUE, [&]() -> HANDLE {
        if (lpFindFileData)
            return FindFirst(lpFileName, *lpFindFileData);
        SetLastError(ERROR_INVALID_PARAMETER);
        return INVALID_HANDLE_VALUE;
    });
}

HANDLE FindFirstFileA(LPCSTR lpFileName, LPWIN32_FIND_DATAA lpFindFileData)
{
    return Guarded(INVALID_HANDLE_VALUE, [&]() -> HANDLE {
        WIN32_FIND_DATAW wide;
        const HANDLE handle = FindFirstFileW(Widened(lpFileName), lpFindFileData ? &wide : nullptr);
        if (handle != INVALID_HANDLE_VALUE)
            Narrow(wide, *lpFindFileData);
        return handle;
    });
}

BOOL FindNextFileW(HANDLE hFindFile, LPWIN32_FIND_DATAW lpFindFileData)
{
    return Guarded(FALSE, [&]() -> BOOL {
        const Reference<Search> search(hFindFile);
        if (!search)
            return FALSE;
        if (!lpFindFileData)
            return Finish(ERROR_INVALID_PARAMETER);
        return FillNext(*search, *lpFindFileData) || Finish(ERROR_NO_MORE_FILES);
    });
}

BOOL FindNextFileA(HANDLE hFindFile, LPWIN32_FIND_DATAA lpFindFileData)
{
    return Guarded(FALSE, [&]() -> BOOL {
        WIN32_FIND_DATAW wide;
        if (!FindNextFileW(hFindFile, lpFindFileData ? &wide : nullptr))
            return FALSE;
        Narrow(wide, *lpFindFileData);
        return TRUE;
    });
}

BOOL FindClose(HANDLE hFindFile)
{
    return ReleaseHandle(hFindFile, true);
}
} // namespace winapi
