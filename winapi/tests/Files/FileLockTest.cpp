// winapi/tests/Files/FileLockTest.cpp: byte-range locks.
#include "../Support/Calls.h"

#include "Support/ChildProcess.h"
#include "Support/Directory.h"

namespace
{
constexpr DWORD R = GENERIC_READ;
constexpr DWORD RW = GENERIC_READ | GENERIC_WRITE;
constexpr DWORD SHARED = FILE_SHARE_READ | FILE_SHARE_WRITE;

// The reference run answers an unlock that fits no lock with 33; documented is 158.
constexpr DWORD NO_SUCH_LOCK = Side(ERROR_NOT_LOCKED, ERROR_LOCK_VIOLATION);
} // namespace

TEST(FileLock, ARangeIsHeldByOneHandle)
{
    WriteBytes("f", "0123456789");
    const File a("f", RW, SHARED, OPEN_EXISTING);
    const File b("f", RW, SHARED, OPEN_EXISTING);
    RunRows({
        CALL(LockFile(a, 0, 0, 10, 0), 1, 0),
        CALL(LockFile(a, 0, 0, 10, 0), 0, ERROR_LOCK_VIOLATION),
        CALL(LockFile(a, 5, 0, 10, 0), 0, ERROR_LOCK_VIOLATION),
        CALL(LockFile(b, 5, 0, 1, 0), 0, ERROR_LOCK_VIOLATION),
        CALL(LockFile(b, 9, 0, 1, 0), 0, ERROR_LOCK_VIOLATION),
        CALL(LockFile(b, 10, 0, 1, 0), 1, 0),
        CALL(UnlockFile(a, 0, 0, 5, 0), 0, NO_SUCH_LOCK),
        CALL(UnlockFile(b, 0, 0, 10, 0), 0, NO_SUCH_LOCK),
        CALL(UnlockFile(a, 0, 0, 10, 0), 1, 0),
        CALL(UnlockFile(a, 0, 0, 10, 0), 0, NO_SUCH_LOCK),
        CALL(LockFile(b, 0, 0, 10, 0), 1, 0),
        CALL(UnlockFile(b, 10, 0, 1, 0), 1, 0),
        CALL(LockFile(a, 10, 0, 1, 0), 1, 0),
    });
}

TEST(FileLock, NeighboursAreUnlockedEachByItself)
{
    const File a("f");
    const File b("f");
    RunRows({
        CALL(LockFile(a, 0, 0, 10, 0), 1, 0),
        CALL(LockFile(a, 10, 0, 10, 0), 1, 0),
        CALL(LockFile(a, 20, 0, 10, 0), 1, 0),
        CALL(UnlockFile(a, 10, 0, 10, 0), 1, 0),
        CALL(LockFile(b, 10, 0, 10, 0), 1, 0),
        CALL(LockFile(b, 9, 0, 1, 0), 0, ERROR_LOCK_VIOLATION),
        CALL(LockFile(b, 20, 0, 1, 0), 0, ERROR_LOCK_VIOLATION),
    });
}

TEST(FileLock, LocksDontHinderTransfers)
{
    // Documented is that they do; the reference run doesn't refuse them either.
    WriteBytes("f", "0123456789");
    const File a("f", RW, SHARED, OPEN_EXISTING);
    const File b("f", RW, SHARED, OPEN_EXISTING);
    ASSERT_TRUE(LockFile(a, 0, 0, 10, 0));
    EXPECT_EQ(Read(b, 2), "01");
    EXPECT_EQ(Write(b, "zz"), 2U);
    EXPECT_EQ(Read(a, 4), "01zz");
}

TEST(FileLock, LocksOfReadersExcludeEachOther)
{
    WriteBytes("f", "0123456789");
    const File a("f", R, SHARED, OPEN_EXISTING);
    const File b("f", R, SHARED, OPEN_EXISTING);
    const File w("f", GENERIC_WRITE, SHARED, OPEN_EXISTING);
    RunRows({
        CALL(LockFile(a, 0, 0, 10, 0), 1, 0),
        CALL(LockFile(b, 0, 0, 10, 0), 0, ERROR_LOCK_VIOLATION),
        CALL(LockFile(w, 0, 0, 10, 0), 0, ERROR_LOCK_VIOLATION),
        CALL(LockFile(b, 10, 0, 10, 0), 1, 0),
        CALL(LockFile(w, 20, 0, 10, 0), 1, 0),
        CALL(LockFile(a, 29, 0, 1, 0), 0, ERROR_LOCK_VIOLATION),
    });
}

TEST(FileLock, ALockReachesBeyondTheEndAndFourGigabytes)
{
    const File a("f");
    const File b("f");
    RunRows({
        CALL(LockFile(a, 0xFFFFFFF0, 0, 0xFFFF, 0), 1, 0),
        CALL(LockFile(b, 5, 1, 1, 0), 0, ERROR_LOCK_VIOLATION),
        CALL(LockFile(b, 5, 3, 0, 2), 1, 0),
        CALL(LockFile(a, 5, 4, 1, 0), 0, ERROR_LOCK_VIOLATION),
        CALL(UnlockFile(b, 5, 3, 0, 2), 1, 0),
        CALL(LockFile(a, 0xFFFFFFFF, 0xFFFFFFFF, 5, 0), 0, ERROR_INVALID_PARAMETER),
    });
}

TEST(FileLock, ARangeOfNoBytesLocksNothing)
{
    const File a("f");
    const File b("f");
    RunRows({
        CALL(LockFile(a, 0, 0, 0, 0), 1, 0),
        CALL(UnlockFile(a, 0, 0, 0, 0), 1, 0),
        CALL(LockFile(a, 7, 0, 0, 0), 1, 0),
    });
    if (!HOST_PATHS)
        return; // The reference run locks to the end.
    RunRows({
        CALL(LockFile(b, 0, 0, 100, 0), 1, 0),
        CALL(UnlockFile(a, 7, 0, 0, 0), 1, 0),
        CALL(UnlockFile(a, 7, 0, 0, 0), 0, ERROR_NOT_LOCKED),
    });
}

TEST(FileLock, ClosingEndsTheLocks)
{
    const File b("f");
    {
        const File a("f");
        ASSERT_TRUE(LockFile(a, 0, 0, 10, 0));
        ASSERT_FALSE(LockFile(b, 0, 0, 10, 0));
    }
    RunRows({CALL(LockFile(b, 0, 0, 10, 0), 1, 0)});
}

TEST(FileLock, ClosingAnotherHandleLeavesTheLocks)
{
    const File a("f");
    const File b("f");
    ASSERT_TRUE(LockFile(a, 0, 0, 10, 0));
    {
        const File c("f");
    }
    RunRows({CALL(LockFile(b, 0, 0, 10, 0), 0, ERROR_LOCK_VIOLATION)});
}

// Locks ten bytes, tells that, and waits to be ended.
CHILD_PROCESS(LockTen)
{
    const File file("f");
    puts(LockFile(file, 10, 0, 10, 0) ? "locked" : "refused");
    fflush(stdout);
    getchar();
    return 0;
}

TEST(FileLock, LocksHoldBetweenProcesses)
{
    const File file("f");
    ChildProcess child("LockTen");
    ASSERT_EQ(child.ReadLine(), "locked");
    RunRows({
        CALL(LockFile(file, 15, 0, 10, 0), 0, ERROR_LOCK_VIOLATION),
        CALL(LockFile(file, 0, 0, 10, 0), 1, 0),
    });
    ChildProcess late("LockTen");
    EXPECT_EQ(late.ReadLine(), "refused");
    EXPECT_EQ(child.Wait(), 0);
    RunRows({CALL(LockFile(file, 15, 0, 10, 0), 1, 0)});
}

TEST(FileLock, AKilledHolderLetsGo)
{
    const File file("f");
    ChildProcess child("LockTen");
    ASSERT_EQ(child.ReadLine(), "locked");
    child.Kill();
    RunRows({CALL(LockFile(file, 10, 0, 10, 0), 1, 0)});
}
