// winapi/tests/Files/FileTest.cpp: opening, transfers, the file pointer, the size, information by handle.
#include "../Support/Calls.h"

#include "Support/ChildProcess.h"
#include "Support/Directory.h"

#include <chrono>
#include <filesystem>

namespace
{
constexpr DWORD R = GENERIC_READ;
constexpr DWORD W = GENERIC_WRITE;
constexpr DWORD RW = R | W;
constexpr DWORD SHARED = FILE_SHARE_READ | FILE_SHARE_WRITE;

long long OpenWide(const std::u16string& name, DWORD disposition)
{
    const HANDLE file = CreateFileW(Wide(name).c_str(), RW, 0, nullptr, disposition, 0, nullptr);
    const DWORD error = GetLastError();
    if (file != INVALID_HANDLE_VALUE)
        CloseHandle(file);
    SetLastError(error);
    return file == INVALID_HANDLE_VALUE ? INVALID : OPENED;
}

const unsigned long long NEVER_A_HANDLE[] = {
    1, 2, 3, 5, 0x100, 0x12345678, 0x7FFFFFFC, 0x7FFFFFFF, 0x80000000, 0xFFFFF0};

HANDLE Number(unsigned long long value)
{
    return reinterpret_cast<HANDLE>(static_cast<UINT_PTR>(value));
}
} // namespace

TEST(File, NamesThatLeadNowhereTellWhatIsMissing)
{
    CreateDirectoryA("sub", nullptr);
    WriteBytes("file", "x");
    RunRows({
        CALL(TryOpen("none", R, 0, OPEN_EXISTING), INVALID, ERROR_FILE_NOT_FOUND),
        CALL(TryOpen("none", R, 0, TRUNCATE_EXISTING), INVALID,
             Side(ERROR_INVALID_PARAMETER, ERROR_FILE_NOT_FOUND)),
        CALL(TryOpen("none", W, 0, TRUNCATE_EXISTING), INVALID, ERROR_FILE_NOT_FOUND),
        CALL(TryOpen("nodir\\x", R, 0, OPEN_EXISTING), INVALID, ERROR_PATH_NOT_FOUND),
        CALL(TryOpen("nodir/x", R, 0, OPEN_EXISTING), INVALID, ERROR_PATH_NOT_FOUND),
        CALL(TryOpen("nodir\\x", W, 0, CREATE_ALWAYS), INVALID, ERROR_PATH_NOT_FOUND),
        CALL(TryOpen("file\\x", R, 0, OPEN_EXISTING), INVALID, ERROR_PATH_NOT_FOUND),
        CALL(TryOpen("none\\", R, 0, OPEN_EXISTING), INVALID, ERROR_FILE_NOT_FOUND),
        CALL(TryOpen("", R, 0, OPEN_EXISTING), INVALID, ERROR_PATH_NOT_FOUND),
        CALL(TryOpen("\\\\srv\\share\\x", R, 0, OPEN_EXISTING), INVALID, ERROR_PATH_NOT_FOUND),
        CALL(TryOpen("q:\\x", R, 0, OPEN_EXISTING), INVALID,
             Side(ERROR_PATH_NOT_FOUND, ERROR_FILE_NOT_FOUND)),
        CALL(CreateFileW(nullptr, R, 0, nullptr, OPEN_EXISTING, 0, nullptr) == INVALID_HANDLE_VALUE,
             1, ERROR_PATH_NOT_FOUND),
    });
}

TEST(File, DirectoriesAreOpenedOnlyWhenAskedFor)
{
    CreateDirectoryA("sub", nullptr);
    RunRows({
        CALL(TryOpen(".", R, 0, OPEN_EXISTING), INVALID, ERROR_ACCESS_DENIED),
        CALL(TryOpen("..", R, 0, OPEN_EXISTING), INVALID, ERROR_ACCESS_DENIED),
        CALL(TryOpen("sub", R, SHARED, OPEN_EXISTING), INVALID, ERROR_ACCESS_DENIED),
        CALL(TryOpen("sub", W, SHARED, CREATE_ALWAYS), INVALID, ERROR_ACCESS_DENIED),
        CALL(TryOpen("sub", R, SHARED, CREATE_NEW), INVALID, ERROR_FILE_EXISTS),
        CALL(TryOpen("sub", R, SHARED, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS), OPENED, 0),
        CALL(TryOpen("sub", W, SHARED, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS), OPENED, 0),
    });
    const File directory("sub", R, SHARED, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS);
    char one;
    DWORD count;
    BY_HANDLE_FILE_INFORMATION info;
    RunRows({
        CALL(GetFileSize(directory, nullptr), 0, 0),
        CALL(ReadFile(directory, &one, 1, &count, nullptr), 0, ERROR_INVALID_FUNCTION),
        CALL(GetFileInformationByHandle(directory, &info), 1, 0),
    });
    EXPECT_EQ(info.dwFileAttributes, static_cast<DWORD>(FILE_ATTRIBUTE_DIRECTORY));
}

TEST(File, NamesMayBeWhateverTheHostAllows)
{
    const auto reserved = [](const char* name) {
        SetLastError(0);
        EXPECT_EQ(TryOpen(name, W, 0, CREATE_ALWAYS), Side(OPENED, INVALID)) << name;
        EXPECT_EQ(GetLastError(), DWORD(Side(0, ERROR_INVALID_NAME))) << name;
    };
    for (const char* name : {"a*b", "a?b", "a<b", "a|b", "a\"b"})
        reserved(name);
    EXPECT_EQ(TryOpen("A", W, 0, CREATE_NEW), OPENED);
    EXPECT_EQ(TryOpen("a", W, 0, CREATE_NEW), Side(OPENED, INVALID)); // Case counts on the host.
}

TEST(File, NamesAreUtf8OnTheHost)
{
    EXPECT_EQ(OpenWide(u"\u00E4\u4E2D\U0001F600.txt", CREATE_NEW), OPENED);
    EXPECT_TRUE(std::filesystem::exists(u8"\u00E4\u4E2D\U0001F600.txt"));
    WriteBytes(std::filesystem::path(u8"\u0416\u00DF"), "x");
    EXPECT_EQ(OpenWide(u"\u0416\u00DF", OPEN_EXISTING), OPENED);
}

TEST(File, NamesBeyondTheLimitsAreRefused)
{
    const std::string longer(300, 'a');
    const std::string second = std::string(200, 'a') + "\\" + std::string(300, 'b');
    CreateDirectoryA(std::string(200, 'a').c_str(), nullptr);
    RunRows({
        CALL(TryOpen(longer.c_str(), W, 0, CREATE_ALWAYS), INVALID, ERROR_FILENAME_EXCED_RANGE),
        CALL(TryOpen(second.c_str(), W, 0, CREATE_ALWAYS), INVALID, ERROR_FILENAME_EXCED_RANGE),
    });
}

TEST(File, DispositionsDecideAboutExistence)
{
    RunRows({
        CALL(TryOpen("x", R, 0, 0), INVALID, ERROR_INVALID_PARAMETER),
        CALL(TryOpen("x", R, 0, 6), INVALID, ERROR_INVALID_PARAMETER),
        // The host takes 7 for one more attempt to open always, and tells why it fails.
        CALL(TryOpen("x", R, 0, 7), Side(OPENED, INVALID), Side(0, ERROR_INVALID_PARAMETER)),
        CALL(TryOpen("x", R, 0, 7), Side(OPENED, INVALID),
             Side(ERROR_ALREADY_EXISTS, ERROR_INVALID_PARAMETER)),
        CALL(TryOpen("nodir\\x", R, 0, 7), INVALID,
             Side(ERROR_PATH_NOT_FOUND, ERROR_INVALID_PARAMETER)),
        CALL(TryOpen("f", W, SHARED, OPEN_ALWAYS), OPENED, 0),
        CALL(TryOpen("f", R, SHARED, OPEN_ALWAYS), OPENED, ERROR_ALREADY_EXISTS),
        CALL(TryOpen("f", W, SHARED, CREATE_ALWAYS), OPENED, ERROR_ALREADY_EXISTS),
        CALL(TryOpen("f", W, SHARED, CREATE_NEW), INVALID, ERROR_FILE_EXISTS),
        CALL(TryOpen("g", W, SHARED, CREATE_ALWAYS), OPENED, 0),
        CALL(TryOpen("h", W, SHARED, CREATE_NEW), OPENED, 0),
        CALL(TryOpen("h", W, SHARED, OPEN_EXISTING), OPENED, 0),
        CALL(TryOpen("h", W, SHARED, TRUNCATE_EXISTING), OPENED, 0),
        CALL(TryOpen("i", 0, 0, CREATE_NEW), OPENED, 0),
    });
}

TEST(File, AnOpenThatSucceedsClearsTheLastError)
{
    WriteBytes("f", "x");
    SetLastError(99);
    EXPECT_EQ(TryOpen("f", R, 0, OPEN_EXISTING), OPENED);
    EXPECT_EQ(GetLastError(), 0U);
}

TEST(File, OldContentsGoWithCreateAlwaysAndTruncateExisting)
{
    for (const DWORD disposition : {CREATE_ALWAYS, TRUNCATE_EXISTING}) {
        WriteBytes("f", "contents");
        EXPECT_EQ(TryOpen("f", W, 0, disposition), OPENED);
        EXPECT_EQ(ReadBytes("f"), "");
    }
    WriteBytes("f", "contents");
    EXPECT_EQ(TryOpen("f", R, 0, CREATE_ALWAYS), OPENED);
    EXPECT_EQ(ReadBytes("f"), "");
}

TEST(File, OldContentsStayWhenTheOpenIsRefused)
{
    WriteBytes("f", "contents");
    const File holder("f", R, FILE_SHARE_READ, OPEN_EXISTING);
    RunRows({CALL(TryOpen("f", W, SHARED, CREATE_ALWAYS), INVALID, ERROR_SHARING_VIOLATION)});
    EXPECT_EQ(Read(holder, 100), "contents");
}

TEST(File, ReadOnlyFilesRefuseWriters)
{
    WriteBytes("ro", "x");
    SetFileAttributesA("ro", FILE_ATTRIBUTE_READONLY);
    RunRows({
        CALL(TryOpen("ro", R, 0, OPEN_EXISTING), OPENED, 0),
        // The reference run lets the superuser write.
        CALL(TryOpen("ro", W, 0, OPEN_EXISTING), Side(INVALID, OPENED),
             Side(ERROR_ACCESS_DENIED, 0)),
        CALL(TryOpen("ro", W, 0, CREATE_ALWAYS), Side(INVALID, OPENED),
             Side(ERROR_ACCESS_DENIED, ERROR_ALREADY_EXISTS)),
        CALL(TryOpen("ro", R, 0, OPEN_EXISTING, FILE_FLAG_DELETE_ON_CLOSE), INVALID,
             ERROR_ACCESS_DENIED),
    });
    EXPECT_EQ(ReadBytes("ro"), Side("x", ""));
    SetFileAttributesA("ro", FILE_ATTRIBUTE_NORMAL);
    EXPECT_EQ(TryOpen("ro", W, 0, OPEN_EXISTING), OPENED);
}

TEST(File, AFileCreatedReadOnlyIsWrittenByItsCreator)
{
    {
        const File creator("ro", W, 0, CREATE_NEW, FILE_ATTRIBUTE_READONLY);
        EXPECT_EQ(Write(creator, "text"), 4U);
    }
    EXPECT_EQ(ReadBytes("ro"), "text");
    EXPECT_EQ(GetFileAttributesA("ro"), DWORD(FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_ARCHIVE));
    SetFileAttributesA("ro", 0);
}

TEST(File, RightsAndBuffersAreCheckedAtTransfers)
{
    char b[100];
    DWORD n;
    const File w("f", W, SHARED, CREATE_ALWAYS);
    RunRows({
        CALL(WriteFile(w, "hello world", 11, &n, nullptr), 1, 0),
        CALL(ReadFile(w, b, 5, &n, nullptr), 0, ERROR_ACCESS_DENIED),
        CALL(GetFileSize(w, nullptr), 11, 0),
        CALL(SetFilePointer(w, 3, nullptr, FILE_BEGIN), 3, 0),
        CALL(SetEndOfFile(w), 1, 0),
        CALL(GetFileSize(w, nullptr), 3, 0),
        CALL(WriteFile(w, "", 0, &n, nullptr), 1, 0),
        CALL(WriteFile(w, nullptr, 0, &n, nullptr), 1, 0),
        CALL(WriteFile(w, nullptr, 5, &n, nullptr), 0, ERROR_INVALID_USER_BUFFER),
        CALL(FlushFileBuffers(w), 1, 0),
    });
    const File r("f", R, SHARED, OPEN_EXISTING);
    RunRows({
        CALL(WriteFile(r, "x", 1, &n, nullptr), 0, ERROR_ACCESS_DENIED),
        CALL(SetEndOfFile(r), 0, ERROR_INVALID_PARAMETER),
        CALL(ReadFile(r, b, 100, &n, nullptr), 1, 0),
        CALL(n, 3, 0),
        CALL(ReadFile(r, b, 100, &n, nullptr), 1, 0),
        CALL(n, 0, 0),
        CALL(ReadFile(r, nullptr, 0, &n, nullptr), 1, 0),
        CALL(FlushFileBuffers(r), 0, ERROR_ACCESS_DENIED),
    });
    SetFilePointer(r, 0, nullptr, FILE_BEGIN);
    RunRows({CALL(ReadFile(r, nullptr, 5, &n, nullptr), 0, ERROR_NOACCESS)});
}

TEST(File, AFailedTransferCountsNothing)
{
    char b[4];
    DWORD n = 77;
    const File w("f", W, SHARED, CREATE_ALWAYS);
    EXPECT_FALSE(ReadFile(w, b, 4, &n, nullptr));
    EXPECT_EQ(n, 0U);
    n = 77;
    EXPECT_FALSE(WriteFile(nullptr, b, 4, &n, nullptr));
    EXPECT_EQ(n, 0U);
}

TEST(File, ForeignValuesAreNoHandles)
{
    char b[1];
    DWORD n;
    BY_HANDLE_FILE_INFORMATION info;
    RunRows({
        CALL(ReadFile(nullptr, b, 1, &n, nullptr), 0, ERROR_INVALID_HANDLE),
        CALL(WriteFile(nullptr, b, 1, &n, nullptr), 0, ERROR_INVALID_HANDLE),
        CALL(GetFileSize(nullptr, nullptr), ALL_BITS, ERROR_INVALID_HANDLE),
        CALL(SetFilePointer(nullptr, 0, nullptr, 0), ALL_BITS, ERROR_INVALID_HANDLE),
        CALL(SetEndOfFile(nullptr), 0, ERROR_INVALID_HANDLE),
        CALL(FlushFileBuffers(nullptr), 0, ERROR_INVALID_HANDLE),
        CALL(LockFile(nullptr, 0, 0, 1, 0), 0, ERROR_INVALID_HANDLE),
        CALL(UnlockFile(nullptr, 0, 0, 1, 0), 0, ERROR_INVALID_HANDLE),
        CALL(GetFileInformationByHandle(nullptr, &info), 0, ERROR_INVALID_HANDLE),
        CALL(CloseHandle(nullptr), 0, ERROR_INVALID_HANDLE),
        CALL(CloseHandle(INVALID_HANDLE_VALUE), 1, 0),
    });
    if (!HOST_PATHS)
        return; // Any of these may be a handle of the platform's own.
    for (const unsigned long long value : NEVER_A_HANDLE) {
        SetLastError(0);
        EXPECT_EQ(GetFileSize(Number(value), nullptr), INVALID_FILE_SIZE) << value;
        EXPECT_EQ(GetLastError(), DWORD(ERROR_INVALID_HANDLE)) << value;
        EXPECT_FALSE(CloseHandle(Number(value))) << value;
    }
}

TEST(File, AClosedHandleIsOneNoMore)
{
    const HANDLE file = CreateFileA("f", RW, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    RunRows({
        CALL(CloseHandle(file), 1, 0),
        CALL(CloseHandle(file), 0, ERROR_INVALID_HANDLE),
        CALL(GetFileSize(file, nullptr), ALL_BITS, ERROR_INVALID_HANDLE),
    });
}

TEST(File, HandlesFitInThirtyTwoBits)
{
    std::vector<HANDLE> files;
    for (int i = 0; i < 200; ++i)
        files.push_back(CreateFileA("f", R, SHARED, nullptr, OPEN_ALWAYS, 0, nullptr));
    for (const HANDLE file : files) {
        const auto kept = static_cast<int>(reinterpret_cast<INT_PTR>(file));
        EXPECT_GT(kept, 0);
        EXPECT_EQ(reinterpret_cast<HANDLE>(static_cast<INT_PTR>(kept)), file);
        EXPECT_TRUE(CloseHandle(file));
    }
}

TEST(File, ThePointerMovesByThreeMethods)
{
    const File f("f", RW, SHARED, CREATE_ALWAYS);
    Write(f, "0123456789");
    RunRows({
        CALL(SetFilePointer(f, 0, nullptr, FILE_CURRENT), 10, 0),
        CALL(SetFilePointer(f, -100, nullptr, FILE_BEGIN), ALL_BITS, ERROR_NEGATIVE_SEEK),
        CALL(SetFilePointer(f, -100, nullptr, FILE_CURRENT), ALL_BITS, ERROR_NEGATIVE_SEEK),
        CALL(SetFilePointer(f, -11, nullptr, FILE_END), ALL_BITS, ERROR_NEGATIVE_SEEK),
        CALL(SetFilePointer(f, 0, nullptr, 3), ALL_BITS, ERROR_INVALID_PARAMETER),
        CALL(SetFilePointer(f, 0, nullptr, FILE_CURRENT), 10, 0),
        CALL(SetFilePointer(f, -3, nullptr, FILE_END), 7, 0),
        CALL(SetFilePointer(f, -2, nullptr, FILE_CURRENT), 5, 0),
        CALL(SetFilePointer(f, 0x7FFFFFFF, nullptr, FILE_BEGIN), 0x7FFFFFFF, 0),
        CALL(SetFilePointer(f, 4, nullptr, FILE_BEGIN), 4, 0),
    });
    EXPECT_EQ(Read(f, 3), "456");
    EXPECT_EQ(Read(f, 100), "789");
    EXPECT_EQ(Read(f, 100), "");
}

TEST(File, ThePointerHasSixtyFourBitsWithAHighPart)
{
    const File f("f", RW, SHARED, CREATE_ALWAYS);
    LONG high = 1;
    RunRows({
        CALL(SetFilePointer(f, 3, &high, FILE_BEGIN), 3, 0),
        CALL(high, 1, 0),
        CALL((high = -1, SetFilePointer(f, -2, &high, FILE_CURRENT)), 1, 0),
        CALL(high, 1, 0),
        CALL((high = 0, SetFilePointer(f, -1, &high, FILE_BEGIN)), ALL_BITS, 0),
        CALL(high, 0, 0),
        CALL((high = -1, SetFilePointer(f, 0, &high, FILE_BEGIN)), ALL_BITS, ERROR_NEGATIVE_SEEK),
    });
    SetLastError(99);
    high = 0;
    EXPECT_EQ(SetFilePointer(f, -1, &high, FILE_BEGIN), INVALID_SET_FILE_POINTER);
    EXPECT_EQ(GetLastError(), 0U); // All bits set are a position here, and no failure.
}

TEST(File, APositionThatNeedsAHighPartFailsWithoutOne)
{
    const File f("f", RW, SHARED, CREATE_ALWAYS);
    SetFilePointer(f, 0x7FFFFFFF, nullptr, FILE_BEGIN);
    EXPECT_EQ(SetFilePointer(f, 0x7FFFFFFF, nullptr, FILE_CURRENT), 0xFFFFFFFE);
    if (!HOST_PATHS)
        return; // The reference run hands out the low part of what is documented to fail.
    RunRows({
        CALL(SetFilePointer(f, 0x7FFFFFFF, nullptr, FILE_CURRENT), ALL_BITS,
             ERROR_INVALID_PARAMETER),
        CALL(SetFilePointer(f, 0, nullptr, FILE_CURRENT), 0xFFFFFFFE, 0),
    });
}

TEST(File, WritingPastTheEndLeavesZeros)
{
    const File f("f", RW, SHARED, CREATE_ALWAYS);
    SetFilePointer(f, 4, nullptr, FILE_BEGIN);
    Write(f, "x");
    EXPECT_EQ(ReadBytes("f"), std::string("\0\0\0\0x", 5));
}

TEST(File, TheEndIsSetAtThePointer)
{
    const File f("f", RW, SHARED, CREATE_ALWAYS);
    Write(f, "0123456789");
    SetFilePointer(f, 4, nullptr, FILE_BEGIN);
    EXPECT_TRUE(SetEndOfFile(f));
    EXPECT_EQ(ReadBytes("f"), "0123");
    SetFilePointer(f, 8, nullptr, FILE_BEGIN);
    EXPECT_TRUE(SetEndOfFile(f));
    EXPECT_EQ(GetFileSize(f, nullptr), 8U);
    EXPECT_EQ(ReadBytes("f"), std::string("0123\0\0\0\0", 8));
    EXPECT_EQ(SetFilePointer(f, 0, nullptr, FILE_CURRENT), 8U);
}

TEST(File, SizesAboveFourGigabytesHaveAHighPart)
{
    const File f("f", RW, SHARED, CREATE_ALWAYS);
    LONG high = 1;
    SetFilePointer(f, 5, &high, FILE_BEGIN);
    ASSERT_TRUE(SetEndOfFile(f));
    DWORD high_size = 0;
    EXPECT_EQ(GetFileSize(f, &high_size), 5U);
    EXPECT_EQ(high_size, 1U);
    BY_HANDLE_FILE_INFORMATION info;
    ASSERT_TRUE(GetFileInformationByHandle(f, &info));
    EXPECT_EQ(info.nFileSizeHigh, 1U);
    EXPECT_EQ(info.nFileSizeLow, 5U);
}

TEST(File, EachHandleHasItsOwnPointer)
{
    WriteBytes("f", "0123456789");
    const File a("f", R, SHARED, OPEN_EXISTING);
    const File b("f", R, SHARED, OPEN_EXISTING);
    EXPECT_EQ(Read(a, 4), "0123");
    EXPECT_EQ(Read(b, 2), "01");
    EXPECT_EQ(Read(a, 2), "45");
}

TEST(File, InformationByHandleTellsTheFile)
{
    WriteBytes("f", "12345");
    WriteBytes("g", "");
    const File f("f", R, SHARED, OPEN_EXISTING);
    const File again("f", R, SHARED, OPEN_EXISTING);
    const File g("g", 0, SHARED, OPEN_EXISTING);
    BY_HANDLE_FILE_INFORMATION a;
    BY_HANDLE_FILE_INFORMATION b;
    BY_HANDLE_FILE_INFORMATION c;
    ASSERT_TRUE(GetFileInformationByHandle(f, &a));
    ASSERT_TRUE(GetFileInformationByHandle(again, &b));
    ASSERT_TRUE(GetFileInformationByHandle(g, &c));
    EXPECT_EQ(a.dwFileAttributes, DWORD(FILE_ATTRIBUTE_ARCHIVE));
    EXPECT_EQ(a.nFileSizeHigh, 0U);
    EXPECT_EQ(a.nFileSizeLow, 5U);
    EXPECT_EQ(a.nNumberOfLinks, 1U);
    EXPECT_EQ(a.nFileIndexLow, b.nFileIndexLow);
    EXPECT_EQ(a.nFileIndexHigh, b.nFileIndexHigh);
    EXPECT_NE(a.nFileIndexLow, c.nFileIndexLow);
    EXPECT_EQ(a.dwVolumeSerialNumber, c.dwVolumeSerialNumber);
}

TEST(File, TimesCountFromTheYear1601)
{
    WriteBytes("f", "x");
    using Ticks = std::chrono::duration<long long, std::ratio<1, 10'000'000>>;
    const auto time =
        std::chrono::sys_days(std::chrono::January / 2 / 2001) + std::chrono::seconds(1);
    std::filesystem::last_write_time("f", std::chrono::file_clock::from_sys(time));
    const File f("f", R, SHARED, OPEN_EXISTING);
    BY_HANDLE_FILE_INFORMATION info;
    ASSERT_TRUE(GetFileInformationByHandle(f, &info));
    const auto expected = std::chrono::duration_cast<Ticks>(
        time - std::chrono::sys_days(std::chrono::January / 1 / 1601));
    const auto ticks = static_cast<unsigned long long>(info.ftLastWriteTime.dwHighDateTime) << 32 |
                       info.ftLastWriteTime.dwLowDateTime;
    EXPECT_EQ(ticks, static_cast<unsigned long long>(expected.count()));
}

TEST(File, DeleteOnCloseRemovesTheFile)
{
    {
        const File f("tmpdel", RW, 0, CREATE_NEW, FILE_FLAG_DELETE_ON_CLOSE);
        Write(f, "x");
        RunRows({CALL(GetFileAttributesA("tmpdel"), FILE_ATTRIBUTE_ARCHIVE, 0)});
    }
    RunRows({CALL(GetFileAttributesA("tmpdel"), ALL_BITS, ERROR_FILE_NOT_FOUND)});
}

// Leaves a file that is to be deleted open.
CHILD_PROCESS(LeaveOpen)
{
    return CreateFileA("tmpdel", RW, 0, nullptr, CREATE_NEW, FILE_FLAG_DELETE_ON_CLOSE, nullptr) ==
           INVALID_HANDLE_VALUE;
}

TEST(File, DeleteOnCloseTakesPlaceAtTheEndOfTheProcess)
{
    ChildProcess child("LeaveOpen");
    EXPECT_EQ(child.Wait(), 0);
    EXPECT_FALSE(std::filesystem::exists("tmpdel"));
}

TEST(File, DeleteOnCloseHoldsWhenTheDirectoryChanges)
{
    CreateDirectoryA("sub", nullptr);
    File f("tmpdel", RW, 0, CREATE_NEW, FILE_FLAG_DELETE_ON_CLOSE);
    SetCurrentDirectoryA("sub");
    f.Close();
    EXPECT_FALSE(std::filesystem::exists("../tmpdel"));
    SetCurrentDirectoryA("..");
}

TEST(File, OtherFlagsAreAcceptedAndChangeNothingVisible)
{
    for (const DWORD flag : {DWORD(FILE_FLAG_WRITE_THROUGH), DWORD(FILE_FLAG_RANDOM_ACCESS),
                             DWORD(FILE_FLAG_SEQUENTIAL_SCAN)}) {
        const File f("f", RW, 0, CREATE_ALWAYS, flag | FILE_ATTRIBUTE_TEMPORARY);
        ASSERT_TRUE(f.IsOpen());
        Write(f, "text");
        SetFilePointer(f, 0, nullptr, FILE_BEGIN);
        EXPECT_EQ(Read(f, 9), "text");
    }
}

TEST(File, HandleCountIsHandedBack)
{
    RunRows({CALL(SetHandleCount(77), 77, 0), CALL(SetHandleCount(100000), 100000, 0)});
}
