// winapi/tests/Memory/GlobalTest.cpp
#include "../Support/Calls.h"
#include "../Support/Reference.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <thread>
#include <vector>

namespace
{
// Neither address nor handle of a block; on the platform such a value counts as a handle.
HGLOBAL Foreign()
{
    return reinterpret_cast<HGLOBAL>(UINT_PTR(0x7FFF1236));
}

bool IsClear(HGLOBAL block)
{
    const char* const bytes = static_cast<const char*>(GlobalLock(block));
    const bool clear = std::all_of(bytes, bytes + GlobalSize(block), [](char c) { return !c; });
    GlobalUnlock(block);
    return clear;
}
} // namespace

TEST(Global, MovableBlocksHaveHandlesAndTheirSizes)
{
    for (const UINT flags : {GMEM_MOVEABLE, GMEM_MOVEABLE | GMEM_DDESHARE}) {
        const HGLOBAL block = GlobalAlloc(flags, 10);
        ASSERT_NE(nullptr, block);
        void* const address = GlobalLock(block);
        EXPECT_NE(nullptr, address);
        EXPECT_NE(block, address);
        std::memset(address, 'x', 10);
        EXPECT_EQ(10U, GlobalSize(block));
        EXPECT_FALSE(GlobalUnlock(block));
        EXPECT_EQ(address, GlobalLock(block));
        EXPECT_EQ(0, std::memcmp(address, "xxxxxxxxxx", 10));
        EXPECT_EQ(nullptr, GlobalFree(block));
    }
}

TEST(Global, FixedBlocksAreTheirAddresses)
{
    for (const UINT flags : {GMEM_FIXED, GMEM_DDESHARE}) {
        const HGLOBAL block = GlobalAlloc(flags, 5);
        ASSERT_NE(nullptr, block);
        EXPECT_EQ(0U, reinterpret_cast<UINT_PTR>(block) % 8);
        std::memset(block, 'x', 5);
        SetLastError(77);
        EXPECT_EQ(block, GlobalLock(block));
        EXPECT_EQ(5U, GlobalSize(block));
        for (int i = 0; i < 3; ++i)
            EXPECT_TRUE(GlobalUnlock(block));
        EXPECT_EQ(nullptr, GlobalFree(block));
        EXPECT_EQ(77U, GetLastError());
    }
}

TEST(Global, NewBlocksAreClearedOnDemand)
{
    for (const UINT flags : {GHND, GPTR, GMEM_DDESHARE | GMEM_MOVEABLE | GMEM_ZEROINIT}) {
        // Something to find there.
        const HGLOBAL used = GlobalAlloc(flags, 1000);
        std::memset(GlobalLock(used), 'x', 1000);
        GlobalFree(used);
        const HGLOBAL block = GlobalAlloc(flags, 1000);
        EXPECT_EQ(1000U, GlobalSize(block));
        EXPECT_TRUE(IsClear(block));
        EXPECT_EQ(nullptr, GlobalFree(block));
    }
}

TEST(Global, LocksAreCounted)
{
    const HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE, 10);
    RunRows({
        CALL(GlobalUnlock(block), 0, ERROR_NOT_LOCKED),
        CALL(GlobalLock(block) != nullptr, 1, 0),
        CALL(GlobalLock(block) != nullptr, 1, 0),
        CALL(GlobalUnlock(block), 1, 0),
        CALL(GlobalUnlock(block), 0, 0),
        CALL(GlobalUnlock(block), 0, ERROR_NOT_LOCKED),
    });
    GlobalLock(block);
    SetLastError(77);
    EXPECT_FALSE(GlobalUnlock(block));
    EXPECT_EQ(0U, GetLastError());
    GlobalFree(block);
}

TEST(Global, LocksAreCountedUpTo255)
{
    const HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE, 10);
    void* const address = GlobalLock(block);
    for (int i = 1; i < 300; ++i)
        EXPECT_EQ(address, GlobalLock(block));
    for (int i = 1; i < 255; ++i)
        EXPECT_TRUE(GlobalUnlock(block));
    EXPECT_FALSE(GlobalUnlock(block));
    GlobalFree(block);
}

TEST(Global, MovableBlocksOfNoBytesCannotBeLocked)
{
    const HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE, 0);
    ASSERT_NE(nullptr, block);
    RunRows({
        CALL(GlobalSize(block), 0, 0),
        CALL(GlobalLock(block) != nullptr, 0, ERROR_DISCARDED),
        CALL(GlobalUnlock(block), 0, ERROR_NOT_LOCKED),
        CALL(GlobalFree(block) != nullptr, 0, 0),
    });
}

TEST(Global, FixedBlocksOfNoBytesHaveAnAddress)
{
    const HGLOBAL block = GlobalAlloc(GMEM_FIXED, 0);
    const HGLOBAL other = GlobalAlloc(GPTR, 0);
    ASSERT_NE(nullptr, block);
    EXPECT_NE(block, other);
    EXPECT_EQ(block, GlobalLock(block));
    EXPECT_PUBLISHED(0U, GlobalSize(block));
    EXPECT_EQ(nullptr, GlobalFree(block));
    EXPECT_EQ(nullptr, GlobalFree(other));
}

TEST(Global, TooLargeBlocksAreRefused)
{
    constexpr SIZE_T ALL = ~SIZE_T(0);
    RunRows({
        CALL(GlobalAlloc(GMEM_MOVEABLE, ALL) != nullptr, 0, ERROR_NOT_ENOUGH_MEMORY),
        CALL(GlobalAlloc(GMEM_FIXED, ALL - 100) != nullptr, 0, ERROR_NOT_ENOUGH_MEMORY),
        CALL(GlobalAlloc(GHND, ALL / 2 + 1) != nullptr, 0, ERROR_NOT_ENOUGH_MEMORY),
    });
}

TEST(Global, NullIsNoFailureWhenItIsLockedOrFreed)
{
    RunRows({
        CALL(GlobalLock(nullptr) != nullptr, 0, 0),
        CALL(GlobalFree(nullptr) != nullptr, 0, 0),
        CALL(GlobalUnlock(nullptr), 0, ERROR_INVALID_HANDLE),
        CALL(GlobalSize(nullptr), 0, ERROR_INVALID_HANDLE),
    });
}

TEST(Global, ForeignHandlesAreRefused)
{
    RunRows({
        CALL(GlobalLock(Foreign()) != nullptr, 0, ERROR_INVALID_HANDLE),
        CALL(GlobalUnlock(Foreign()), 0, ERROR_INVALID_HANDLE),
        CALL(GlobalSize(Foreign()), 0, ERROR_INVALID_HANDLE),
        CALL(GlobalFree(Foreign()) == Foreign(), 1, ERROR_INVALID_HANDLE),
    });
}

TEST(Global, LockedBlocksMayBeFreedAndAreGoneThen)
{
    const HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE, 10);
    GlobalLock(block);
    RunRows({
        CALL(GlobalFree(block) != nullptr, 0, 0),
        CALL(GlobalLock(block) != nullptr, 0, ERROR_INVALID_HANDLE),
        CALL(GlobalUnlock(block), 0, ERROR_INVALID_HANDLE),
        CALL(GlobalSize(block), 0, ERROR_INVALID_HANDLE),
        CALL(GlobalFree(block) == block, 1, ERROR_INVALID_HANDLE),
    });
}

#ifndef _WIN32
TEST(Global, HandlesOfFreedBlocksDoNotComeBack)
{
    const HGLOBAL gone = GlobalAlloc(GMEM_MOVEABLE, 10);
    GlobalFree(gone);
    std::vector<HGLOBAL> blocks;
    for (int i = 0; i < 1000; ++i)
        blocks.push_back(GlobalAlloc(GMEM_MOVEABLE, 10));
    EXPECT_EQ(nullptr, GlobalLock(gone));
    for (const HGLOBAL block : blocks)
        EXPECT_EQ(nullptr, GlobalFree(block));
}

// What the platform takes for a fixed block without a look, here is none.
TEST(Global, AddressesThatAreNoBlocksAreRefused)
{
    const HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE, 100);
    char* const address = static_cast<char*>(GlobalLock(block));
    alignas(16) char own[16] = {};
    for (char* const other : {address, address + 16, own})
        RunRows({
            CALL(GlobalLock(other) != nullptr, 0, ERROR_INVALID_HANDLE),
            CALL(GlobalUnlock(other), 0, ERROR_INVALID_HANDLE),
            CALL(GlobalSize(other), 0, ERROR_INVALID_HANDLE),
            CALL(GlobalFree(other) == other, 1, ERROR_INVALID_HANDLE),
        });
    GlobalFree(block);
}

TEST(Global, AHandleOfAnotherKindIsNoBlock)
{
    const File file("file.txt");
    const HANDLE handle = file;
    RunRows({
        CALL(GlobalLock(handle) != nullptr, 0, ERROR_INVALID_HANDLE),
        CALL(GlobalFree(handle) == handle, 1, ERROR_INVALID_HANDLE),
    });
    EXPECT_TRUE(file.IsOpen());
    const HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE, 100);
    RunRows({CALL(CloseHandle(block), 0, ERROR_INVALID_HANDLE)});
    EXPECT_EQ(nullptr, GlobalFree(block));
}
#endif

TEST(Global, BlocksGoFromThreadToThread)
{
    constexpr int ROUNDS = 2000;
    std::atomic<HGLOBAL> passed = nullptr;
    int wrong = 0;
    std::thread taker([&] {
        for (int i = 0; i < ROUNDS; ++i) {
            HGLOBAL block;
            while (!(block = passed.exchange(nullptr)))
                std::this_thread::yield();
            wrong += *static_cast<int*>(GlobalLock(block)) != i;
            GlobalUnlock(block);
            wrong += GlobalFree(block) != nullptr;
        }
    });
    for (int i = 0; i < ROUNDS; ++i) {
        const HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE, sizeof i);
        std::memcpy(GlobalLock(block), &i, sizeof i);
        GlobalUnlock(block);
        passed = block;
        while (passed.load())
            std::this_thread::yield();
    }
    taker.join();
    EXPECT_EQ(0, wrong);
}
