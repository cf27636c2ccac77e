// winapi/tests/Files/ShareModeTest.cpp: share modes, within a process and between processes.
#include "../Support/Calls.h"

#include "Support/ChildProcess.h"
#include "Support/Directory.h"

#include <memory>

namespace
{
constexpr DWORD R = GENERIC_READ;
constexpr DWORD W = GENERIC_WRITE;
constexpr DWORD RW = R | W;
constexpr DWORD ANY = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

constexpr DWORD accesses[] = {0, R, W, RW, DELETE, R | DELETE};

// The rights that an access takes, as bits of a share mode.
DWORD RightsOf(DWORD access)
{
    return ((access & R) != 0 ? FILE_SHARE_READ : 0) | ((access & W) != 0 ? FILE_SHARE_WRITE : 0) |
           ((access & DELETE) != 0 ? FILE_SHARE_DELETE : 0);
}

bool GoTogether(DWORD access, DWORD share, DWORD other_access, DWORD other_share)
{
    const DWORD rights = RightsOf(access);
    const DWORD other_rights = RightsOf(other_access);
    if (rights == 0 || other_rights == 0)
        return true;
    return (rights & ~other_share) == 0 && (other_rights & ~share) == 0;
}

void ExpectPairs(DWORD access, DWORD share)
{
    const File first("f", access, share, OPEN_EXISTING);
    ASSERT_TRUE(first.IsOpen());
    for (const DWORD other_access : accesses)
        for (DWORD other_share = 0; other_share <= ANY; ++other_share) {
            SCOPED_TRACE(testing::Message() << std::hex << access << ' ' << share << " against "
                                            << other_access << ' ' << other_share);
            SetLastError(0);
            const bool opened = TryOpen("f", other_access, other_share, OPEN_EXISTING) == OPENED;
            const DWORD error = GetLastError();
            const bool expected = GoTogether(access, share, other_access, other_share);
            EXPECT_EQ(opened, expected);
            EXPECT_EQ(error, expected ? 0U : DWORD(ERROR_SHARING_VIOLATION));
        }
}

std::string Text(DWORD number)
{
    return std::to_string(number);
}

DWORD Number(const std::string& text)
{
    return static_cast<DWORD>(std::stoul(text));
}

void Say(const std::string& line)
{
    puts(line.c_str());
    fflush(stdout);
}
} // namespace

TEST(ShareMode, EveryPairGoesTogetherOrIsRefused)
{
    WriteBytes("f", "x");
    for (const DWORD access : accesses)
        for (DWORD share = 0; share <= ANY; ++share)
            ExpectPairs(access, share);
}

TEST(ShareMode, ARefusedOpenLeavesNothingBehind)
{
    WriteBytes("f", "x");
    {
        const File holder("f", R, FILE_SHARE_READ, OPEN_EXISTING);
        EXPECT_EQ(TryOpen("f", RW, ANY, OPEN_EXISTING), INVALID);
        EXPECT_EQ(TryOpen("f", R, 0, OPEN_EXISTING), INVALID);
        EXPECT_EQ(TryOpen("f", R, FILE_SHARE_READ, OPEN_EXISTING), OPENED);
    }
    EXPECT_EQ(TryOpen("f", RW, 0, OPEN_EXISTING), OPENED);
}

TEST(ShareMode, ManyHoldersAreEachAsked)
{
    WriteBytes("f", "x");
    std::vector<std::unique_ptr<File>> readers;
    for (int i = 0; i < 5; ++i)
        readers.push_back(
            std::make_unique<File>("f", R, DWORD(FILE_SHARE_READ), DWORD(OPEN_EXISTING)));
    while (!readers.empty()) {
        EXPECT_EQ(TryOpen("f", W, ANY, OPEN_EXISTING), INVALID);
        readers.pop_back();
    }
    EXPECT_EQ(TryOpen("f", W, ANY, OPEN_EXISTING), OPENED);
}

TEST(ShareMode, SeveralWritersThatShareAreAdmitted)
{
    // Descriptors that are only writable announce themselves in another way than those that can be
    // read.
    WriteBytes("f", "x");
    const File a("f", W, FILE_SHARE_WRITE, OPEN_EXISTING);
    const File b("f", W, FILE_SHARE_WRITE, OPEN_EXISTING);
    const File c("f", W, FILE_SHARE_WRITE, OPEN_EXISTING);
    EXPECT_TRUE(a.IsOpen() && b.IsOpen() && c.IsOpen());
    RunRows({
        CALL(TryOpen("f", R, ANY, OPEN_EXISTING), INVALID, ERROR_SHARING_VIOLATION),
        CALL(TryOpen("f", W, 0, OPEN_EXISTING), INVALID, ERROR_SHARING_VIOLATION),
    });
}

TEST(ShareMode, FilesAreOneUnderAllTheirNames)
{
    CreateDirectoryA("sub", nullptr);
    WriteBytes("f", "x");
    const File holder("f", RW, 0, OPEN_EXISTING);
    RunRows({
        CALL(TryOpen(".\\f", R, ANY, OPEN_EXISTING), INVALID, ERROR_SHARING_VIOLATION),
        CALL(TryOpen("sub/../f", R, ANY, OPEN_EXISTING), INVALID, ERROR_SHARING_VIOLATION),
    });
}

// Opens "f" as told, says what came of it, and holds it until it is ended.
CHILD_PROCESS(Hold)
{
    const File file("f", Number(arguments[0]), Number(arguments[1]), OPEN_EXISTING);
    Say(file.IsOpen() ? "open" : "error " + Text(GetLastError()));
    getchar();
    return 0;
}

TEST(ShareMode, ModesHoldBetweenProcesses)
{
    WriteBytes("f", "x");
    ChildProcess child("Hold", {Text(R), Text(FILE_SHARE_READ)});
    ASSERT_EQ(child.ReadLine(), "open");
    RunRows({
        CALL(TryOpen("f", R, FILE_SHARE_READ, OPEN_EXISTING), OPENED, 0),
        CALL(TryOpen("f", W, ANY, OPEN_EXISTING), INVALID, ERROR_SHARING_VIOLATION),
        CALL(TryOpen("f", R, 0, OPEN_EXISTING), INVALID, ERROR_SHARING_VIOLATION),
        CALL(DeleteFileA("f"), 0, ERROR_SHARING_VIOLATION),
    });
    ChildProcess other("Hold", {Text(W), Text(ANY)});
    EXPECT_EQ(other.ReadLine(), "error 32");
    EXPECT_EQ(child.Wait(), 0);
    RunRows({CALL(TryOpen("f", RW, 0, OPEN_EXISTING), OPENED, 0)});
}

TEST(ShareMode, AKilledHolderFreesTheFile)
{
    WriteBytes("f", "x");
    ChildProcess child("Hold", {Text(RW), "0"});
    ASSERT_EQ(child.ReadLine(), "open");
    RunRows({CALL(TryOpen("f", R, ANY, OPEN_EXISTING), INVALID, ERROR_SHARING_VIOLATION)});
    child.Kill();
    RunRows({CALL(TryOpen("f", RW, 0, OPEN_EXISTING), OPENED, 0)});
}

// Opens "f" again and again for itself alone. Whoever holds it raises a number in the file and
// lowers it before closing: another holder would be seen by a number that isn't 0. Says how often
// it held the file.
CHILD_PROCESS(RaceForFile)
{
    Say("ready");
    getchar();
    int held = 0;
    for (int i = 0; i < 400; ++i) {
        const File file("f", RW, 0, OPEN_EXISTING);
        if (!file.IsOpen()) {
            if (GetLastError() != ERROR_SHARING_VIOLATION)
                return 2;
            continue;
        }
        ++held;
        if (Read(file, 1) != "0")
            return 3;
        SetFilePointer(file, 0, nullptr, FILE_BEGIN);
        Write(file, "1");
        SetFilePointer(file, 0, nullptr, FILE_BEGIN);
        if (Read(file, 1) != "1")
            return 4;
        SetFilePointer(file, 0, nullptr, FILE_BEGIN);
        Write(file, "0");
    }
    Say(Text(static_cast<DWORD>(held)));
    return 0;
}

TEST(ShareMode, OfSeveralRacersOneHoldsTheFile)
{
    WriteBytes("f", "0");
    std::vector<std::unique_ptr<ChildProcess>> racers;
    for (int i = 0; i < 6; ++i)
        racers.push_back(std::make_unique<ChildProcess>("RaceForFile"));
    for (const auto& racer : racers)
        EXPECT_EQ(racer->ReadLine(), "ready");
    for (const auto& racer : racers)
        racer->WriteLine("go");
    DWORD held = 0;
    for (const auto& racer : racers) {
        const std::string line = racer->ReadLine();
        EXPECT_NE(line, "");
        held += line.empty() ? 0 : Number(line);
        EXPECT_EQ(racer->Wait(), 0);
    }
    EXPECT_GT(held, 100U);
    EXPECT_EQ(ReadBytes("f"), "0");
}
