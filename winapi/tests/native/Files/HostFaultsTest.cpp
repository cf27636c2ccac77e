// winapi/tests/native/Files/HostFaultsTest.cpp: what becomes of failures and oddities of the host.
#include "../../Support/Calls.h"

#include "../../Support/ClosedStreams.h"
#include "../../Support/Replace.h"
#include "Support/ChildProcess.h"
#include "Support/Directory.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <set>
#include <thread>

#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{
int interruptions;

template <class Result>
bool Interrupt(Result& result)
{
    if (interruptions-- <= 0)
        return false;
    errno = EINTR;
    result = -1;
    return true;
}

ssize_t InterruptedRead(int fd, void* data, size_t size, off_t offset)
{
    ssize_t result;
    return Interrupt(result) ? result : pread(fd, data, size, offset);
}

ssize_t InterruptedWrite(int fd, const void* data, size_t size, off_t offset)
{
    ssize_t result;
    return Interrupt(result) ? result : pwrite(fd, data, size, offset);
}

int InterruptedOpen(const char* path, int flags, mode_t mode)
{
    int result;
    return Interrupt(result) ? result : open(path, flags | O_CLOEXEC, mode);
}

ssize_t ThreeBytesRead(int fd, void* data, size_t size, off_t offset)
{
    return pread(fd, data, std::min<size_t>(size, 3), offset);
}

ssize_t ThreeBytesWritten(int fd, const void* data, size_t size, off_t offset)
{
    return pwrite(fd, data, std::min<size_t>(size, 3), offset);
}

// A disk with room for eight bytes of a file.
ssize_t FullDiskWrite(int fd, const void* data, size_t size, off_t offset)
{
    if (offset >= 8) {
        errno = ENOSPC;
        return -1;
    }
    return pwrite(fd, data, std::min<size_t>(size, static_cast<size_t>(8 - offset)), offset);
}

// Attributes and lists of extents take blocks, too.
int MoreBlocks(int fd, struct stat* facts)
{
    const int result = fstat(fd, facts);
    facts->st_blocks += 1 << 20;
    return result;
}

// A host that knows of no holes but the one behind the file.
off_t SeekWithoutHoles(int fd, off_t offset, int whence)
{
    return lseek(fd, offset, whence == SEEK_HOLE ? SEEK_END : whence);
}

// Takes half of the room, as some file systems leave it when it runs out.
int FullDiskAllocate(int fd, off_t offset, off_t size)
{
    posix_fallocate(fd, offset, size / 2);
    return ENOSPC;
}

int InterruptedAllocate(int fd, off_t offset, off_t size)
{
    return interruptions-- > 0 ? EINTR : posix_fallocate(fd, offset, size);
}

ssize_t FailingCopy(int, off_t*, int, off_t*, size_t, unsigned)
{
    errno = EXDEV;
    return -1;
}

ssize_t FullDiskCopy(int, off_t*, int, off_t*, size_t, unsigned)
{
    errno = ENOSPC;
    return -1;
}

// Names in different directories lie on different devices.
bool AreOnOneDevice(const char* from, const char* to)
{
    const auto directory = [](const char* name) {
        return std::filesystem::absolute(name).parent_path().lexically_normal();
    };
    errno = EXDEV;
    return directory(from) == directory(to);
}

int RenameOnDevice(const char* from, const char* to)
{
    return AreOnOneDevice(from, to) ? rename(from, to) : -1;
}

int RenameToFreeOnDevice(int fromDirectory, const char* from, int toDirectory, const char* to,
                         unsigned flags)
{
    return AreOnOneDevice(from, to) ? renameat2(fromDirectory, from, toDirectory, to, flags) : -1;
}

// The file "f" and another device's directory "d" with the file "h".
class OtherDevice
{
public:
    OtherDevice()
    {
        WriteBytes("f", "contents");
        CreateDirectoryA("d", nullptr);
        WriteBytes("d/h", "other");
    }

private:
    const Replace<int(const char*, const char*)> renaming{posix.rename, RenameOnDevice};
    const Replace<int(int, const char*, int, const char*, unsigned)> renamingToFree{
        posix.renameat2, RenameToFreeOnDevice};
};

std::set<std::string> NamesIn(const char* directory)
{
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(directory))
        names.insert(entry.path().filename().string());
    return names;
}

int UnableToAsk(int, const char*, int, const char*, unsigned)
{
    errno = EINVAL;
    return -1;
}

int LocklessFcntl(int, int, struct flock*)
{
    errno = EINVAL;
    return -1;
}

int failure;

int FailingOpen(const char*, int, mode_t)
{
    errno = failure;
    return -1;
}

int FailingMsync(void*, size_t, int)
{
    errno = EIO;
    return -1;
}

void* FailingMmap(void*, size_t, int, int, int, off_t)
{
    errno = ENOMEM;
    return MAP_FAILED;
}

int FailingSetxattr(int, const char*, const void*, size_t, int)
{
    errno = EOPNOTSUPP;
    return -1;
}
} // namespace

TEST(HostFaults, InterruptedCallsAreRepeated)
{
    const Replace opening(posix.open, InterruptedOpen);
    const Replace reading(posix.pread, InterruptedRead);
    const Replace writing(posix.pwrite, InterruptedWrite);
    interruptions = 3;
    const File file("f", GENERIC_READ | GENERIC_WRITE, 0, CREATE_ALWAYS);
    ASSERT_TRUE(file.IsOpen());
    interruptions = 3;
    EXPECT_EQ(Write(file, "text"), 4U);
    SetFilePointer(file, 0, nullptr, FILE_BEGIN);
    interruptions = 3;
    EXPECT_EQ(Read(file, 9), "text");
}

TEST(HostFaults, ShortTransfersGoOn)
{
    const Replace reading(posix.pread, ThreeBytesRead);
    const Replace writing(posix.pwrite, ThreeBytesWritten);
    const File file("f", GENERIC_READ | GENERIC_WRITE, 0, CREATE_ALWAYS);
    EXPECT_EQ(Write(file, "0123456789"), 10U);
    SetFilePointer(file, 0, nullptr, FILE_BEGIN);
    EXPECT_EQ(Read(file, 8), "01234567");
    EXPECT_EQ(Read(file, 100), "89");
}

TEST(HostFaults, AFullDiskFailsTheWriteAndTellsWhatWasWritten)
{
    const Replace writing(posix.pwrite, FullDiskWrite);
    const File file("f", GENERIC_READ | GENERIC_WRITE, 0, CREATE_ALWAYS);
    EXPECT_EQ(Write(file, "12345"), 5U);
    DWORD count = 99;
    RunRows({
        CALL(WriteFile(file, "67890", 5, &count, nullptr), 0, ERROR_DISK_FULL),
        CALL(count, 3, 0),
        CALL(SetFilePointer(file, 0, nullptr, FILE_CURRENT), 8, 0),
        CALL(WriteFile(file, "9", 1, &count, nullptr), 0, ERROR_DISK_FULL),
        CALL(count, 0, 0),
    });
    EXPECT_EQ(ReadBytes("f"), "12345678");
}

TEST(HostFaults, AFullDiskFailsTheMappingAndLeavesTheFile)
{
    const File file("f", GENERIC_READ | GENERIC_WRITE, 0, CREATE_ALWAYS);
    Write(file, "text");
    {
        const Replace allocating(posix.posix_fallocate, FullDiskAllocate);
        RunRows({
            CALL(CreateFileMappingA(file, nullptr, PAGE_READWRITE, 0, 1 << 20, nullptr) != nullptr,
                 0, ERROR_DISK_FULL),
            CALL(GetFileSize(file, nullptr), 4, 0),
        });
    }
    const Replace allocating(posix.posix_fallocate, InterruptedAllocate);
    interruptions = 3;
    const HANDLE mapping = CreateFileMappingA(file, nullptr, PAGE_READWRITE, 0, 1 << 20, nullptr);
    EXPECT_NE(mapping, nullptr);
    EXPECT_EQ(GetFileSize(file, nullptr), 1U << 20);
    CloseHandle(mapping);
}

TEST(HostFaults, AFullDeviceTellsAFullDisk)
{
    const File full("/dev/full", GENERIC_WRITE, FILE_SHARE_WRITE, OPEN_EXISTING);
    DWORD count;
    RunRows({CALL(WriteFile(full, "x", 1, &count, nullptr), 0, ERROR_DISK_FULL)});
}

namespace
{
// Makes a file of 1 MiB with a hole behind its text and maps it. Result: its bytes on the disk.
long long ReservedByMapping()
{
    const File file("f", GENERIC_READ | GENERIC_WRITE, 0, CREATE_ALWAYS);
    Write(file, std::string(100'000, 'x'));
    SetFilePointer(file, 1 << 20, nullptr, FILE_BEGIN);
    EXPECT_TRUE(SetEndOfFile(file));
    const HANDLE mapping = CreateFileMappingA(file, nullptr, PAGE_READWRITE, 0, 0, nullptr);
    EXPECT_NE(mapping, nullptr);
    CloseHandle(mapping);
    struct stat facts;
    EXPECT_EQ(stat("f", &facts), 0);
    return facts.st_blocks * 512;
}
} // namespace

TEST(HostFaults, AMappingReservesTheHolesOfItsFile)
{
    EXPECT_GE(ReservedByMapping(), 1 << 20);
    const Replace seeking(posix.lseek, SeekWithoutHoles);
    EXPECT_GE(ReservedByMapping(), 1 << 20);
}

TEST(HostFaults, AMappingReservesTheHolesOfAFileThatTakesMoreBlocks)
{
    const Replace telling(posix.fstat, MoreBlocks);
    EXPECT_GE(ReservedByMapping(), 1 << 20);
}

TEST(HostFaults, AFlushBeginsWithAPageOfTheHost)
{
    static std::uintptr_t begin;
    static std::size_t size;
    const File file("f", GENERIC_READ | GENERIC_WRITE, 0, CREATE_ALWAYS);
    const HANDLE mapping = CreateFileMappingA(file, nullptr, PAGE_READWRITE, 0, 200'000, nullptr);
    void* const view = MapViewOfFile(mapping, FILE_MAP_WRITE, 0, 0, 0);
    const Replace asking(
        posix.sysconf, +[](int name) { return name == _SC_PAGESIZE ? 0x4000L : sysconf(name); });
    const Replace flushing(
        posix.msync, +[](void* address, size_t bytes, int) {
            begin = reinterpret_cast<std::uintptr_t>(address);
            size = bytes;
            return 0;
        });
    const std::uintptr_t place = reinterpret_cast<std::uintptr_t>(view) + 100'000;
    EXPECT_TRUE(FlushViewOfFile(reinterpret_cast<void*>(place), 10));
    EXPECT_EQ(begin % 0x4000, 0U);
    EXPECT_EQ(begin, place / 0x4000 * 0x4000);
    EXPECT_EQ(begin + size, place + 10);
    UnmapViewOfFile(view);
    CloseHandle(mapping);
}

TEST(HostFaults, AViewThatCantBeMadeOrFlushedTellsWhy)
{
    const File file("f", GENERIC_READ | GENERIC_WRITE, 0, CREATE_ALWAYS);
    const HANDLE mapping = CreateFileMappingA(file, nullptr, PAGE_READWRITE, 0, 100, nullptr);
    {
        const Replace mapping_call(posix.mmap, FailingMmap);
        RunRows({CALL(MapViewOfFile(mapping, FILE_MAP_WRITE, 0, 0, 0) != nullptr, 0,
                      ERROR_NOT_ENOUGH_MEMORY)});
    }
    void* const view = MapViewOfFile(mapping, FILE_MAP_WRITE, 0, 0, 0);
    {
        const Replace flushing(posix.msync, FailingMsync);
        RunRows({CALL(FlushViewOfFile(view, 0), 0, ERROR_IO_DEVICE)});
    }
    UnmapViewOfFile(view);
    CloseHandle(mapping);
}

TEST(HostFaults, NamedAndFilelessMappingsArentSupported)
{
    const File file("f", GENERIC_READ | GENERIC_WRITE, 0, CREATE_ALWAYS);
    RunRows({
        CALL(CreateFileMappingA(file, nullptr, PAGE_READWRITE, 0, 100, "name") != nullptr, 0,
             ERROR_NOT_SUPPORTED),
        CALL(CreateFileMappingA(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, 100, nullptr) !=
                 nullptr,
             0, ERROR_NOT_SUPPORTED),
    });
}

TEST(HostFaults, OverlappedTransfersArentSupported)
{
    const File file("f", GENERIC_READ | GENERIC_WRITE, 0, CREATE_ALWAYS);
    char byte = 0;
    DWORD count;
    auto* const overlapped = reinterpret_cast<LPOVERLAPPED>(&byte);
    RunRows({
        CALL(WriteFile(file, "x", 1, &count, overlapped), 0, ERROR_NOT_SUPPORTED),
        CALL(ReadFile(file, &byte, 1, &count, overlapped), 0, ERROR_NOT_SUPPORTED),
        CALL(MoveFileExA("f", "g", 4), 0, ERROR_NOT_SUPPORTED),
    });
}

TEST(HostFaults, CopiesGoByPiecesWhereTheHostCantCopy)
{
    WriteBytes("f", std::string(200'000, 'x') + "end");
    const Replace copying(posix.copy_file_range, FailingCopy);
    EXPECT_TRUE(CopyFileA("f", "g", TRUE));
    EXPECT_EQ(ReadBytes("g"), ReadBytes("f"));
}

TEST(HostFaults, ACopyThatFailsLeavesNoTarget)
{
    WriteBytes("f", "contents");
    const Replace copying(posix.copy_file_range, FullDiskCopy);
    RunRows({
        CALL(CopyFileA("f", "g", TRUE), 0, ERROR_DISK_FULL),
        CALL(GetFileAttributesA("g"), ALL_BITS, ERROR_FILE_NOT_FOUND),
    });
}

TEST(HostFaults, ACopyThatFailsLeavesADevice)
{
    WriteBytes("f", "contents");
    ASSERT_EQ(symlink("/dev/full", "g"), 0);
    RunRows({CALL(CopyFileA("f", "g", FALSE), 0, ERROR_DISK_FULL)});
    struct stat facts;
    EXPECT_EQ(lstat("g", &facts), 0);
}

TEST(HostFaults, ACopyLeavesTheFactsOfAFIFO)
{
    WriteBytes("f", "contents");
    SetFileAttributesA("f", FILE_ATTRIBUTE_READONLY);
    ASSERT_EQ(mkfifo("pipe", 0600), 0);
    const File both("pipe", GENERIC_READ | GENERIC_WRITE, 0, OPEN_EXISTING);
    RunRows({CALL(CopyFileA("f", "pipe", FALSE), 1, 0)});
    struct stat facts;
    ASSERT_EQ(stat("pipe", &facts), 0);
    EXPECT_EQ(facts.st_mode & 0777, 0600U);
    char bytes[16];
    DWORD count = 0;
    EXPECT_TRUE(ReadFile(both, bytes, sizeof bytes, &count, nullptr));
    EXPECT_EQ(std::string(bytes, count), "contents");
    SetFileAttributesA("f", FILE_ATTRIBUTE_NORMAL);
}

TEST(HostFaults, AnOpeningOfAFIFOWaitsForTheOtherEnd)
{
    ASSERT_EQ(mkfifo("pipe", 0600), 0);
    std::thread writer([] {
        const File end("pipe", GENERIC_WRITE, 0, OPEN_EXISTING);
        DWORD count = 0;
        EXPECT_TRUE(WriteFile(end, "text", 4, &count, nullptr));
    });
    {
        const File end("pipe", GENERIC_READ, 0, OPEN_EXISTING);
        char bytes[8];
        DWORD count = 0;
        EXPECT_TRUE(ReadFile(end, bytes, sizeof bytes, &count, nullptr));
        EXPECT_EQ(std::string(bytes, count), "text");
    }
    writer.join();
    // Who asks for both is the other end.
    const File both("pipe", GENERIC_READ | GENERIC_WRITE, 0, OPEN_EXISTING);
    RunRows({CALL(both != INVALID_HANDLE_VALUE, 1, 0)});
}

TEST(HostFaults, AMoveToAnotherDeviceCopies)
{
    const OtherDevice device;
    CreateDirectoryA("sub", nullptr);
    const std::string longest(255, 'x');
    WriteBytes("long", "long");
    RunRows({
        CALL(MoveFileExA("f", "d/g", 0), 0, ERROR_NOT_SAME_DEVICE),
        CALL(MoveFileExA("f", "d/h", MOVEFILE_COPY_ALLOWED), 0, ERROR_ALREADY_EXISTS),
        CALL(MoveFileExA("sub", "d/e", MOVEFILE_COPY_ALLOWED), 0, ERROR_ACCESS_DENIED),
        CALL(MoveFileExA("f", "d/g", MOVEFILE_COPY_ALLOWED), 1, 0),
        CALL(GetFileAttributesA("f"), ALL_BITS, ERROR_FILE_NOT_FOUND),
        CALL(MoveFileExA("long", ("d/" + longest).c_str(), MOVEFILE_COPY_ALLOWED), 1, 0),
    });
    EXPECT_EQ(ReadBytes("d/g"), "contents");
    EXPECT_EQ(ReadBytes("d/h"), "other");
    EXPECT_EQ(NamesIn("d"), (std::set<std::string>{"g", "h", longest}));
}

TEST(HostFaults, AMoveToAnotherDeviceReplacesALinkItself)
{
    for (const char* behind : {"h", "missing", "/dev/null"}) {
        const OtherDevice device;
        std::filesystem::create_symlink(behind, "d/link");
        RunRows({
            CALL(MoveFileExA("f", "d/link", MOVEFILE_COPY_ALLOWED), 0, ERROR_ALREADY_EXISTS),
            CALL(MoveFileExA("f", "d/link", MOVEFILE_COPY_ALLOWED | MOVEFILE_REPLACE_EXISTING), 1,
                 0),
            CALL(GetFileAttributesA("f"), ALL_BITS, ERROR_FILE_NOT_FOUND),
        });
        EXPECT_FALSE(std::filesystem::is_symlink("d/link")) << behind;
        EXPECT_EQ(ReadBytes("d/link"), "contents") << behind;
        EXPECT_EQ(ReadBytes("d/h"), "other") << behind;
        EXPECT_EQ(NamesIn("d"), (std::set<std::string>{"h", "link"})) << behind;
        std::filesystem::remove("d/link");
    }
}

TEST(HostFaults, AMoveToAnotherDeviceThatFailsLeavesBothFiles)
{
    constexpr DWORD REPLACE = MOVEFILE_COPY_ALLOWED | MOVEFILE_REPLACE_EXISTING;
    const OtherDevice device;
    {
        const Replace copying(posix.copy_file_range, FullDiskCopy);
        RunRows({CALL(MoveFileExA("f", "d/h", REPLACE), 0, ERROR_DISK_FULL)});
    }
    {
        const Replace renaming(
            posix.rename, +[](const char* from, const char*) {
                errno = *from == 'f' ? EXDEV : EBUSY;
                return -1;
            });
        RunRows({CALL(MoveFileExA("f", "d/h", REPLACE), 0, ERROR_SHARING_VIOLATION)});
    }
    EXPECT_EQ(ReadBytes("f"), "contents");
    EXPECT_EQ(ReadBytes("d/h"), "other");
    EXPECT_EQ(NamesIn("d"), std::set<std::string>{"h"});
}

TEST(HostFaults, AMoveToAnotherDeviceLeavesOutNamesThatAreTaken)
{
    const OtherDevice device;
    // What killed runs left.
    static int taken;
    taken = 3;
    const Replace opening(
        posix.open, +[](const char* path, int flags, mode_t mode) {
            if ((flags & O_EXCL) == 0 || taken-- <= 0)
                return open(path, flags | O_CLOEXEC, mode);
            errno = EEXIST;
            return -1;
        });
    RunRows({CALL(MoveFileExA("f", "d/g", MOVEFILE_COPY_ALLOWED), 1, 0)});
    EXPECT_EQ(ReadBytes("d/g"), "contents");
    EXPECT_EQ(NamesIn("d"), (std::set<std::string>{"g", "h"}));
}

TEST(HostFaults, AFileSystemWithoutExclusiveRenamesIsAskedFirst)
{
    WriteBytes("f", "f");
    WriteBytes("g", "g");
    const Replace renaming(posix.renameat2, UnableToAsk);
    RunRows({
        CALL(MoveFileExA("f", "g", MOVEFILE_COPY_ALLOWED), 0, ERROR_ALREADY_EXISTS),
        CALL(MoveFileExA("f", "h", MOVEFILE_COPY_ALLOWED), 1, 0),
    });
    EXPECT_EQ(ReadBytes("h"), "f");
}

TEST(HostFaults, ADirectoryReplacesNoFile)
{
    WriteBytes("f", "f");
    CreateDirectoryA("d", nullptr);
    RunRows({CALL(MoveFileExA("d", "f", MOVEFILE_REPLACE_EXISTING), 0, ERROR_ACCESS_DENIED)});
}

TEST(HostFaults, AFileSystemWithoutLocksSharesEverything)
{
    const Replace locking(posix.fcntl, LocklessFcntl);
    const File a("f", GENERIC_READ | GENERIC_WRITE, 0, CREATE_ALWAYS);
    const File b("f", GENERIC_READ | GENERIC_WRITE, 0, OPEN_EXISTING);
    EXPECT_TRUE(a.IsOpen());
    EXPECT_TRUE(b.IsOpen());
    EXPECT_TRUE(LockFile(a, 0, 0, 10, 0));
    EXPECT_TRUE(UnlockFile(a, 0, 0, 10, 0));
}

TEST(HostFaults, AttributesWithoutAPlaceAreLost)
{
    const Replace storing(posix.fsetxattr, FailingSetxattr);
    EXPECT_EQ(TryOpen("f", GENERIC_WRITE, 0, CREATE_NEW, FILE_ATTRIBUTE_HIDDEN), OPENED);
    EXPECT_EQ(GetFileAttributesA("f"), DWORD(FILE_ATTRIBUTE_ARCHIVE));
}

TEST(HostFaults, EachErrorOfTheHostHasItsCodeAndAText)
{
    struct Pair
    {
        int error;
        DWORD code;
    };
    const Pair pairs[] = {
        {EACCES, 5},   {EPERM, 5},          {EISDIR, 5},      {EEXIST, 80}, {ENOSPC, 112},
        {EDQUOT, 112}, {ENAMETOOLONG, 206}, {EMFILE, 4},      {ENFILE, 4},  {EROFS, 19},
        {EBUSY, 32},   {ETXTBSY, 32},       {EIO, 1117},      {ENOMEM, 8},  {EINVAL, 87},
        {ESPIPE, 87},  {EFAULT, 998},       {ENOTEMPTY, 145}, {ENOTDIR, 3}, {ENOENT, 2},
        {ELOOP, 1921}, {EPROTO, 31},
    };
    const Replace opening(posix.open, FailingOpen);
    for (const Pair& pair : pairs) {
        failure = pair.error;
        SetLastError(0);
        EXPECT_EQ(TryOpen("f", GENERIC_READ, 0, OPEN_EXISTING), INVALID);
        EXPECT_EQ(GetLastError(), pair.code) << pair.error;
        char text[200];
        EXPECT_NE(0U, FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM, nullptr, pair.code, 0, text,
                                     sizeof text, nullptr))
            << pair.code;
    }
    failure = ENOENT;
    SetLastError(0);
    EXPECT_EQ(TryOpen("no/f", GENERIC_READ, 0, OPEN_EXISTING), INVALID);
    EXPECT_EQ(GetLastError(), 3U);
}

TEST(HostFaults, ASearchTellsWhatReadingTheDirectoryMetWith)
{
    WIN32_FIND_DATAA found;
    {
        const Replace opening(
            posix.opendir, +[](const char*) -> DIR* {
                errno = EMFILE;
                return nullptr;
            });
        SetLastError(0);
        EXPECT_EQ(FindFirstFileA("*", &found), INVALID_HANDLE_VALUE);
        EXPECT_EQ(GetLastError(), ERROR_TOO_MANY_OPEN_FILES);
    }
    static int closed = 0;
    const Replace reading(
        posix.readdir, +[](DIR*) -> dirent* {
            errno = EIO;
            return nullptr;
        });
    const Replace closing(
        posix.closedir, +[](DIR* stream) { return ++closed, closedir(stream); });
    EXPECT_EQ(FindFirstFileA("*", &found), INVALID_HANDLE_VALUE);
    EXPECT_EQ(GetLastError(), ERROR_IO_DEVICE);
    EXPECT_EQ(closed, 1);
}

TEST(HostFaults, AFileDoesNotTakeThePlaceOfAClosedStream)
{
    ssize_t said[2];
    {
        const ClosedStreams streams(7);
        const HANDLE file = CreateFileA("file", GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, 0);
        DWORD count;
        WriteFile(file, "abc", 3, &count, nullptr);
        for (int fd : {1, 2})
            said[fd - 1] = ::write(fd, "said", 4);
        CloseHandle(file);
    }
    EXPECT_EQ(-1, said[0]);
    EXPECT_EQ(-1, said[1]);
    EXPECT_EQ("abc", ReadBytes("file"));
}

// Leaves a file that is to be deleted open, lets a child of its own end, and tells of the file.
CHILD_PROCESS(LeaveOpenToAFork)
{
    const HANDLE file =
        CreateFileA("f", GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_FLAG_DELETE_ON_CLOSE, nullptr);
    std::string answers;
    for (const bool closes : {false, true}) {
        const pid_t child = fork();
        if (child == 0) {
            if (closes)
                CloseHandle(file);
            std::exit(0);
        }
        waitpid(child, nullptr, 0);
        answers += access("f", F_OK) == 0 ? "there " : "gone ";
    }
    std::puts(answers.c_str());
    std::fflush(stdout);
    return 0;
}

TEST(HostFaults, AForkedChildDeletesNoFileOfItsParent)
{
    ChildProcess child("LeaveOpenToAFork");
    EXPECT_EQ(child.ReadLine(), "there there ");
    EXPECT_EQ(child.Wait(), 0);
    EXPECT_FALSE(std::filesystem::exists("f"));
}
