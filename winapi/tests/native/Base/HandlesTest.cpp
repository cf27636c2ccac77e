// winapi/tests/native/Base/HandlesTest.cpp: the table of handles.
#include "../../Support/Calls.h"

#include "Base/Handles.h"
#include "Support/Directory.h"

#include <atomic>
#include <set>
#include <thread>

using namespace winapi;

namespace
{
std::atomic<int> living;
std::atomic<int> closed;

class Thing : public Object
{
public:
    static constexpr Kind KIND = Kind::MAPPING;
    Thing() : Object(KIND) { ++living; }
    ~Thing() override { --living; }
    void Closed() override { ++closed; }
    int value = 7;
};

class Other : public Object
{
public:
    static constexpr Kind KIND = Kind::SEARCH;
    Other() : Object(KIND) {}
};
} // namespace

TEST(Handles, AnObjectLivesUntilItsLastReference)
{
    closed = 0;
    const HANDLE handle = MakeHandle(std::make_unique<Thing>());
    {
        const Reference<Thing> reference(handle);
        ASSERT_TRUE(reference);
        EXPECT_TRUE(ReleaseHandle(handle, false));
        EXPECT_EQ(closed, 1);
        EXPECT_EQ(living, 1);
        EXPECT_EQ(reference->value, 7);
        EXPECT_FALSE(Reference<Thing>(handle));
        EXPECT_FALSE(ReleaseHandle(handle, false));
    }
    EXPECT_EQ(living, 0);
    EXPECT_EQ(closed, 1);
}

TEST(Handles, KindsArentMistaken)
{
    const HANDLE thing = MakeHandle(std::make_unique<Thing>());
    const HANDLE other = MakeHandle(std::make_unique<Other>());
    EXPECT_FALSE(Reference<Other>(thing));
    EXPECT_EQ(GetLastError(), DWORD(ERROR_INVALID_HANDLE));
    EXPECT_FALSE(ReleaseHandle(thing, true));
    EXPECT_FALSE(ReleaseHandle(other, false));
    EXPECT_TRUE(ReleaseHandle(thing, false));
    EXPECT_TRUE(ReleaseHandle(other, true));
}

TEST(Handles, AClosedValueDoesntComeBackSoon)
{
    std::set<HANDLE> seen;
    for (int i = 0; i < 1000; ++i) {
        const HANDLE handle = MakeHandle(std::make_unique<Thing>());
        EXPECT_TRUE(seen.insert(handle).second) << i;
        EXPECT_TRUE(ReleaseHandle(handle, false));
    }
    for (const HANDLE handle : seen)
        EXPECT_FALSE(Reference<Thing>(handle));
    EXPECT_EQ(living, 0);
}

TEST(Handles, ManyAreOpenAtOnce)
{
    std::set<HANDLE> handles;
    for (int i = 0; i < 10'000; ++i)
        EXPECT_TRUE(handles.insert(MakeHandle(std::make_unique<Thing>())).second);
    for (const HANDLE handle : handles)
        EXPECT_TRUE(Reference<Thing>(handle));
    for (const HANDLE handle : handles)
        EXPECT_TRUE(ReleaseHandle(handle, false));
    EXPECT_EQ(living, 0);
}

TEST(Handles, AnyValueMayBeLookedUp)
{
    const HANDLE handle = MakeHandle(std::make_unique<Thing>());
    const auto own = reinterpret_cast<UINT_PTR>(handle);
    for (UINT_PTR value = 0; value < 1 << 20; ++value) {
        const AnyReference reference(reinterpret_cast<HANDLE>(value));
        EXPECT_TRUE(!reference.Get() || value % 4 == 0) << value;
    }
    for (unsigned bit = 0; bit < 64; ++bit)
        EXPECT_FALSE(Reference<Thing>(reinterpret_cast<HANDLE>(own ^ UINT_PTR{1} << bit))) << bit;
    EXPECT_TRUE(ReleaseHandle(handle, false));
}

TEST(Handles, ThreadsMakeUseAndCloseTheirOwn)
{
    const auto work = [] {
        for (int i = 0; i < 2000; ++i) {
            const HANDLE handle = MakeHandle(std::make_unique<Thing>());
            {
                const Reference<Thing> reference(handle);
                EXPECT_TRUE(reference);
            }
            EXPECT_TRUE(ReleaseHandle(handle, false));
        }
    };
    std::thread other(work);
    work();
    other.join();
    EXPECT_EQ(living, 0);
}

TEST(Handles, ClosingBesideUseIsSafe)
{
    closed = 0;
    for (int i = 0; i < 500; ++i) {
        const HANDLE handle = MakeHandle(std::make_unique<Thing>());
        std::atomic<bool> go = false;
        std::thread user([&] {
            go = true;
            while (const Reference<Thing> reference{handle})
                EXPECT_EQ(reference->value, 7);
        });
        while (!go)
            std::this_thread::yield();
        EXPECT_TRUE(ReleaseHandle(handle, false));
        user.join();
    }
    EXPECT_EQ(living, 0);
    EXPECT_EQ(closed, 500);
}

TEST(Handles, ThreadsTransferThroughOneHandleInTurn)
{
    const File file("f", GENERIC_READ | GENERIC_WRITE, 0, CREATE_ALWAYS);
    const auto write = [&] {
        for (int i = 0; i < 1000; ++i)
            Write(file, "0123456789");
    };
    std::thread other(write);
    write();
    other.join();
    std::string expected;
    for (int i = 0; i < 2000; ++i)
        expected += "0123456789";
    EXPECT_EQ(ReadBytes("f"), expected);
}
