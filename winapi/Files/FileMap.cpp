// winapi/Files/FileMap.cpp: mappings of files and their views.
//
// A mapping and each of its views hold the file's object, so that the file's handle may be closed
// before them. While there are any, the file is announced as mapped.
#include "winapi/Files/FileMap.h"

#include "Errors/Failure.h"
#include "Files/OpenFile.h"

#include <map>
#include <mutex>

#include <sys/mman.h>
#include <unistd.h>

namespace winapi
{
namespace
{
constexpr std::uint64_t GRANULARITY = 0x10000;
constexpr off_t BLOCK = 512; // Unit of st_blocks.

// Counts among the file's mappings as long as it lives.
class Hold
{
public:
    explicit Hold(Reference<OpenFile> mapped) : file(std::move(mapped)) { file->Map(); }
    Hold(const Hold&) = delete;
    Hold& operator=(const Hold&) = delete;
    ~Hold() { file->Unmap(); }

    const Reference<OpenFile> file;
};

class Mapping : public Object
{
public:
    static constexpr Kind KIND = Kind::MAPPING;

    Mapping(std::shared_ptr<Hold> whole, std::uint64_t bytes, bool mayWrite)
        : Object(KIND),
          hold(std::move(whole)),
          size(bytes),
          writable(mayWrite)
    {}

    const std::shared_ptr<Hold> hold;
    const std::uint64_t size;
    const bool writable;
};

struct View
{
    std::size_t size;
    std::shared_ptr<Hold> hold;
};

// The views of the process by their addresses. Never destroyed: services may be called until the
// very end.
struct Views
{
    std::mutex mutex;
    std::map<std::uintptr_t, View> byAddress;
};

Views& AllViews()
{
    static Views* const views = new Views;
    return *views;
}

// How far a file has room on the disk from its beginning on. Enough blocks don't tell that it has
// no holes, since its attributes take some; nor does the host everywhere know of holes.
off_t ReservedLength(const OpenFile& file, const struct stat& facts)
{
    if (facts.st_blocks * BLOCK < facts.st_size)
        return 0;
    const off_t hole = posix.lseek(file.Fd(), 0, SEEK_HOLE);
    return hole < 0 ? facts.st_size : hole;
}

// Makes the file as long as the mapping and gives it room on the disk, so that a full disk is told
// here and not by a fault at some later write to a view.
DWORD Reserve(const OpenFile& file, const struct stat& facts, off_t size)
{
    const off_t from = ReservedLength(file, facts); // what has room isn't gone through again
    if (size <= from)
        return 0;
    int error;
    do
        error = posix.posix_fallocate(file.Fd(), from, size - from);
    while (error == EINTR);
    if (error != 0 && size > facts.st_size)
        posix.ftruncate(file.Fd(), facts.st_size);
    return error ? CodeOf(error) : 0;
}

DWORD CheckProtection(const OpenFile& file, DWORD protection)
{
    if (protection != PAGE_READONLY && protection != PAGE_READWRITE)
        return ERROR_INVALID_PARAMETER;
    const bool allowed =
        file.Has(RIGHT_READ) && (protection == PAGE_READONLY || file.Has(RIGHT_WRITE));
    return allowed ? 0 : ERROR_ACCESS_DENIED;
}

// Settles the size and makes the file as long.
DWORD Prepare(OpenFile& file, DWORD protection, std::uint64_t& size)
{
    if (const DWORD code = CheckProtection(file, protection))
        return code;
    struct stat facts;
    if (posix.fstat(file.Fd(), &facts) != 0)
        return CodeOf(errno);
    const auto present = static_cast<std::uint64_t>(facts.st_size);
    if (size == 0 && present == 0)
        return ERROR_FILE_INVALID;
    if (size == 0)
        size = present;
    if (size > INT64_MAX)
        return ERROR_INVALID_PARAMETER;
    if (protection == PAGE_READWRITE)
        return Reserve(file, facts, static_cast<off_t>(size));
    return size > present ? ERROR_NOT_ENOUGH_MEMORY : 0;
}

DWORD CheckView(const Mapping& mapping, DWORD access, std::uint64_t offset, std::uint64_t& size)
{
    if ((access & (FILE_MAP_READ | FILE_MAP_WRITE)) == 0)
        return ERROR_INVALID_PARAMETER;
    if (offset % GRANULARITY != 0)
        return ERROR_MAPPED_ALIGNMENT;
    if ((access & FILE_MAP_WRITE) != 0 && !mapping.writable)
        return ERROR_ACCESS_DENIED;
    if (offset >= mapping.size)
        return ERROR_ACCESS_DENIED;
    if (size == 0)
        size = mapping.size - offset;
    return size > mapping.size - offset ? ERROR_ACCESS_DENIED : 0;
}

void* MapView(const Mapping& mapping, DWORD access, std::uint64_t offset, std::uint64_t size)
{
    const int protection = PROT_READ | ((access & FILE_MAP_WRITE) != 0 ? PROT_WRITE : 0);
    void* const address = posix.mmap(nullptr, size, protection, MAP_SHARED,
                                     mapping.hold->file->Fd(), static_cast<off_t>(offset));
    if (address == MAP_FAILED) {
        SetLastError(CodeOf(errno));
        return nullptr;
    }
    try {
        Views& views = AllViews();
        const std::lock_guard lock(views.mutex);
        views.byAddress.insert_or_assign(reinterpret_cast<std::uintptr_t>(address),
                                         View{size, mapping.hold});
    } catch (...) {
        posix.munmap(address, size);
        throw;
    }
    return address;
}

// The view that an address lies in.
std::map<std::uintptr_t, View>::iterator FindView(Views& views, std::uintptr_t address)
{
    auto found = views.byAddress.upper_bound(address);
    if (found == views.byAddress.begin())
        return views.byAddress.end();
    --found;
    return address - found->first < found->second.size ? found : views.byAddress.end();
}

// How many bytes of a view lie from an address on; 0 when it is in none.
std::size_t RestOfView(std::uintptr_t address)
{
    Views& views = AllViews();
    const std::lock_guard lock(views.mutex);
    const auto found = FindView(views, address);
    return found == views.byAddress.end() ? 0 : found->second.size - (address - found->first);
}
} // namespace

HANDLE CreateFileMappingA(HANDLE hFile, LPSECURITY_ATTRIBUTES, DWORD flProtect,
                          DWORD dwMaximumSizeHigh, DWORD dwMaximumSizeLow, LPCSTR lpName)
{
    return Guarded(HANDLE(nullptr), [&]() -> HANDLE {
        if (!hFile) {
            SetLastError(ERROR_INVALID_PARAMETER);
            return nullptr;
        }
        if (lpName || hFile == INVALID_HANDLE_VALUE) {
            SetLastError(ERROR_NOT_SUPPORTED);
            return nullptr;
        }
        Reference<OpenFile> file(hFile);
        if (!file)
            return nullptr;
        std::uint64_t size = std::uint64_t{dwMaximumSizeHigh} << 32 | dwMaximumSizeLow;
        if (!Finish(Prepare(*file, flProtect, size)))
            return nullptr;
        auto hold = std::make_shared<Hold>(std::move(file));
        const HANDLE handle = MakeHandle(
            std::make_unique<Mapping>(std::move(hold), size, flProtect == PAGE_READWRITE));
        if (handle)
            SetLastError(ERROR_SUCCESS);
        return handle;
    });
}

LPVOID MapViewOfFile(HANDLE hFileMappingObject, DWORD dwDesiredAccess, DWORD dwFileOffsetHigh,
                     DWORD dwFileOffsetLow, SIZE_T dwNumberOfBytesToMap)
{
    return Guarded(LPVOID(nullptr), [&]() -> LPVOID {
        const Reference<Mapping> mapping(hFileMappingObject);
        if (!mapping)
            return nullptr;
        const std::uint64_t offset = std::uint64_t{dwFileOffsetHigh} << 32 | dwFileOffsetLow;
        std::uint64_t size = dwNumberOfBytesToMap;
        if (!Finish(CheckView(*mapping, dwDesiredAccess, offset, size)))
            return nullptr;
        return MapView(*mapping, dwDesiredAccess, offset, size);
    });
}

BOOL UnmapViewOfFile(LPCVOID lpBaseAddress)
{
    return Guarded(FALSE, [&] {
        Views& views = AllViews();
        std::unique_lock lock(views.mutex);
        const auto found = FindView(views, reinterpret_cast<std::uintptr_t>(lpBaseAddress));
        if (found == views.byAddress.end())
            return Finish(ERROR_INVALID_ADDRESS);
        const auto node = views.byAddress.extract(found);
        lock.unlock();
        posix.munmap(reinterpret_cast<void*>(node.key()), node.mapped().size);
        return TRUE;
    });
}

BOOL FlushViewOfFile(LPCVOID lpBaseAddress, SIZE_T dwNumberOfBytesToFlush)
{
    return Guarded(FALSE, [&] {
        const auto address = reinterpret_cast<std::uintptr_t>(lpBaseAddress);
        const std::size_t rest = RestOfView(address);
        if (rest == 0 || dwNumberOfBytesToFlush > rest)
            return Finish(ERROR_INVALID_PARAMETER);
        // Views begin on whole pages; what is flushed may not.
        const std::size_t before = address % static_cast<std::size_t>(posix.sysconf(_SC_PAGESIZE));
        const std::size_t size = (dwNumberOfBytesToFlush ? dwNumberOfBytesToFlush : rest) + before;
        return Finish(posix.msync(reinterpret_cast<void*>(address - before), size, MS_SYNC) == 0
                          ? 0
                          : CodeOf(errno));
    });
}
} // namespace winapi
