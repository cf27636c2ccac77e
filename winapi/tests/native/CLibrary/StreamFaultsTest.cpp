// winapi/tests/native/CLibrary/StreamFaultsTest.cpp: streams where the host refuses or fails, and
// what is particular to it.
#include "../../Support/Calls.h"

#include "../../Support/Replace.h"
#include "Support/Directory.h"

#include "CLibrary/ErrorNumber.h"
#include "winapi/CLibrary/Stream.h"

#include <cerrno>
#include <filesystem>

namespace fs = std::filesystem;

namespace
{
int code;

template <class Result, Result failure, class... Arguments>
Result Fail(Arguments...)
{
    errno = code;
    return failure;
}

std::FILE* FailToOpen(int, const char*)
{
    errno = code;
    return nullptr;
}

unsigned Descriptors()
{
    unsigned count = 0;
    for ([[maybe_unused]] const auto& entry : fs::directory_iterator("/proc/self/fd"))
        ++count;
    return count;
}

int OpenError(const char* mode = "rb")
{
    errno = 0;
    std::FILE* const stream = streams::fopen("file", mode);
    if (!stream)
        return errno;
    streams::fclose(stream);
    return 0;
}
} // namespace

TEST(StreamFaults, ErrorsOfTheHostHaveThePlatformsNumbers)
{
    WriteBytes("file", "abc");
    const struct
    {
        int host, told;
    } cases[] = {{EACCES, 13}, {EPERM, 13},       {ENOENT, 2}, {ENOTDIR, 2}, {EMFILE, 24},
                 {ENFILE, 24}, {ENAMETOOLONG, 2}, {EROFS, 13}, {ENOMEM, 12}, {ENOSPC, 28},
                 {EDQUOT, 28}, {EBUSY, 13},       {EIO, 5},    {ELOOP, 22},  {EINVAL, 22},
                 {EISDIR, 13}, {ETXTBSY, 13}};
    for (const auto& row : cases) {
        SCOPED_TRACE(row.host);
        code = row.host;
        const Replace open(posix.open, Fail<int, -1, const char*, int, mode_t>);
        SetLastError(4711);
        EXPECT_EQ(OpenError(), row.told);
        EXPECT_EQ(GetLastError(), 4711U) << "errno alone tells";
    }
}

TEST(StreamFaults, AStreamThatCantBeMadeLeavesNoDescriptor)
{
    WriteBytes("file", "abc");
    const unsigned before = Descriptors();
    for (const int error : {ENOMEM, EINVAL}) {
        code = error;
        const Replace fdopen(posix.fdopen, FailToOpen);
        EXPECT_EQ(OpenError(), error);
        EXPECT_EQ(OpenError("wb"), error);
    }
    EXPECT_EQ(Descriptors(), before);
    EXPECT_EQ(OpenError(), 0);
    EXPECT_EQ(Descriptors(), before);
}

TEST(StreamFaults, ABufferThatIsRefusedIsFreed)
{
    std::FILE* const stream = streams::fopen("file", "wb");
    code = EIO;
    {
        const Replace setvbuf(posix.setvbuf, Fail<int, -1, std::FILE*, char*, int, size_t>);
        errno = 0;
        EXPECT_EQ(streams::setvbuf(stream, nullptr, _IOFBF, 4096), -1);
        EXPECT_EQ(errno, EIO);
    }
    EXPECT_EQ(streams::setvbuf(stream, nullptr, _IOFBF, 4096), 0);
    EXPECT_EQ(streams::fclose(stream), 0);
}

TEST(StreamFaults, AStreamClosedByTheHostLeavesItsBufferToTheNext)
{
    for (int round = 0; round < 3; ++round) {
        std::FILE* const stream = streams::fopen("file", "wb");
        EXPECT_EQ(streams::setvbuf(stream, nullptr, _IOFBF, 4096), 0);
        EXPECT_EQ(std::fwrite("abc", 1, 3, stream), 3U);
        EXPECT_EQ(round < 2 ? std::fclose(stream) : streams::fclose(stream), 0);
        EXPECT_EQ(ReadBytes("file"), "abc");
    }
}

TEST(StreamFaults, AForeignBufferIsTheCallers)
{
    char buffer[4096];
    std::FILE* const stream = streams::fopen("file", "wb");
    EXPECT_EQ(streams::setvbuf(stream, buffer, _IOFBF, sizeof buffer), 0);
    EXPECT_EQ(std::fwrite("abc", 1, 3, stream), 3U);
    EXPECT_EQ(std::string(buffer, 3), "abc");
    EXPECT_EQ(streams::fclose(stream), 0);
}

TEST(StreamFaults, ChmodThatIsRefused)
{
    WriteBytes("file", "abc");
    code = EPERM;
    const Replace chmod(posix.chmod, Fail<int, -1, const char*, mode_t>);
    errno = 0;
    EXPECT_EQ(_chmod("file", 0), -1);
    EXPECT_EQ(errno, 13);
    EXPECT_EQ(_chmod("file", 0x80), 0) << "nothing to change";
}

TEST(StreamFaults, StreamsAreNotInherited)
{
    std::FILE* const stream = streams::fopen("file", "wb");
    EXPECT_NE(fcntl(fileno(stream), F_GETFD) & FD_CLOEXEC, 0);
    EXPECT_EQ(streams::fclose(stream), 0);
}

TEST(StreamFaults, NamesBeyondTheHostsLimitsAreMissing)
{
    const std::string name(300, 'x');
    errno = 0;
    EXPECT_EQ(streams::fopen(name.c_str(), "wb"), nullptr);
    EXPECT_EQ(errno, 2);
    EXPECT_EQ(streams::remove(name.c_str()), -1);
    EXPECT_EQ(errno, 2);
}

TEST(StreamFaults, ALoneSurrogateIsNoName)
{
    const WCHAR name[] = {'a', 0xD800, 0};
    const WCHAR mode[] = {'w', 0};
    struct _stat facts;
    errno = 0;
    EXPECT_EQ(_wfopen(name, mode), nullptr);
    EXPECT_EQ(errno, 22);
    EXPECT_EQ(_wremove(name), -1);
    EXPECT_EQ(errno, 22);
    EXPECT_EQ(_wstat(name, &facts), -1);
    EXPECT_EQ(errno, 22);
}

TEST(StreamFaults, AnExclusiveNewFile)
{
    EXPECT_EQ(OpenError("wbx"), 0);
    EXPECT_EQ(OpenError("wbx"), EEXIST);
    EXPECT_EQ(OpenError("rx"), EINVAL);
    EXPECT_EQ(OpenError("rq"), EINVAL);
}
