// winapi/tests/Messages/MessageTest.cpp: messages, posted and sent, and timers.
#include "../Support/Calls.h"
#include "MessageTools.h"
#include "Support/ChildProcess.h"

#include <atomic>
#include <thread>

namespace
{
constexpr UINT TWICE = WM_USER + 1;
constexpr UINT NEST = WM_USER + 2;
constexpr UINT THREAD = WM_USER + 3;
constexpr UINT END = WM_USER + 4;
constexpr UINT LEAVE = 0xC123; // One that is broadcast.

// Answers what it is asked, on the thread that made the window.
LRESULT CALLBACK Answer(HWND window, UINT message, WPARAM first, LPARAM second)
{
    Told().push_back(message);
    switch (message) {
    case TWICE:
        return static_cast<LRESULT>(first) * 2 + second;
    case NEST: // Asks the asker in its turn.
        return SendMessageA(reinterpret_cast<HWND>(first), TWICE, 20, 2);
    case THREAD:
        return static_cast<LRESULT>(GetCurrentThreadId());
    case LEAVE:
        DestroyWindow(window);
        PostMessageA(nullptr, END, 0, 0);
        return 0;
    default:
        return DefWindowProcA(window, message, first, second);
    }
}

// A thread with a window, which answers until it is told to end.
class Partner
{
public:
    Partner()
        : thread([this] {
              const HWND made = MakeWindow("OstraMessage");
              id = GetCurrentThreadId();
              window = made;
              PumpUntil(nullptr, END);
              DestroyWindow(made);
          })
    {
        while (!window)
            std::this_thread::yield();
    }
    ~Partner()
    {
        PostMessageA(window, END, 0, 0);
        thread.join();
    }
    HWND Window() const { return window; }
    DWORD Id() const { return id; }

private:
    std::atomic<HWND> window = nullptr;
    std::atomic<DWORD> id = 0;
    std::thread thread;
};

class Message : public testing::Test
{
protected:
    Message() { Told().clear(); }
    ~Message() override { DestroyWindow(window); }

    const OwnClass kind{"OstraMessage", Answer};
    const HWND window = MakeWindow("OstraMessage");
};
} // namespace

TEST_F(Message, PostsComeInTheirOrder)
{
    MSG message = {};
    for (UINT i = 0; i < 50; ++i)
        EXPECT_TRUE(PostMessageA(window, WM_USER + i, i, -static_cast<LPARAM>(i)));
    for (UINT i = 0; i < 50; ++i) {
        ASSERT_TRUE(PeekMessageA(&message, window, 0, 0, PM_REMOVE));
        EXPECT_EQ(message.hwnd, window);
        EXPECT_EQ(message.message, WM_USER + i);
        EXPECT_EQ(message.wParam, i);
        EXPECT_EQ(message.lParam, -static_cast<LPARAM>(i));
    }
    EXPECT_FALSE(PeekMessageA(&message, window, 0, 0, PM_REMOVE));
}

TEST_F(Message, ALookLeavesTheMessageWhereItIs)
{
    MSG message = {};
    PostMessageA(window, TWICE, 1, 2);
    EXPECT_TRUE(PeekMessageA(&message, window, 0, 0, PM_NOREMOVE));
    EXPECT_FALSE(PeekMessageA(&message, window, TWICE + 1, TWICE + 9, PM_REMOVE));
    EXPECT_TRUE(PeekMessageA(&message, window, TWICE, TWICE, PM_REMOVE));
    EXPECT_EQ(DispatchMessageA(&message), 4);
    EXPECT_FALSE(PeekMessageA(&message, window, 0, 0, PM_REMOVE));
}

TEST_F(Message, MessagesOfOtherWindowsWait)
{
    MSG message = {};
    const HWND other = kind.Make();
    PostMessageA(other, TWICE, 0, 0);
    EXPECT_FALSE(PeekMessageA(&message, window, 0, 0, PM_REMOVE));
    EXPECT_TRUE(PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE));
    EXPECT_EQ(message.hwnd, other);
    PostMessageA(other, TWICE, 0, 0);
    EXPECT_TRUE(DestroyWindow(other));
    EXPECT_FALSE(PeekMessageA(&message, nullptr, TWICE, TWICE, PM_REMOVE));
    RunRows({CALL(PostMessageA(other, TWICE, 0, 0), 0, 1400),
             CALL(PeekMessageA(&message, other, 0, 0, PM_REMOVE), 0, 1400),
             CALL(SendMessageA(other, TWICE, 1, 1), 0, 1400)});
}

TEST_F(Message, ASendIsACallOnTheThreadOfTheWindow)
{
    EXPECT_EQ(SendMessageA(window, TWICE, 20, 2), 42);
    EXPECT_EQ(SendMessageA(window, THREAD, 0, 0), static_cast<LRESULT>(GetCurrentThreadId()));
    const Partner partner;
    EXPECT_EQ(SendMessageA(partner.Window(), TWICE, 20, 2), 42);
    EXPECT_EQ(SendMessageA(partner.Window(), THREAD, 0, 0), static_cast<LRESULT>(partner.Id()));
    EXPECT_EQ(SendMessageA(partner.Window(), TWICE, 0, -7), -7);
}

TEST_F(Message, TheSenderGoesOnTakingWhatIsSent)
{
    const Partner partner;
    EXPECT_EQ(SendMessageA(partner.Window(), NEST, reinterpret_cast<WPARAM>(window), 0), 42);
    EXPECT_EQ(Only({TWICE}), std::vector<UINT>{TWICE});
}

TEST_F(Message, NoWindowAndItsThreadTakesNone)
{
    const HWND foreign = reinterpret_cast<HWND>(static_cast<UINT_PTR>(0x7FFFFFF0));
    RunRows({CALL(PostMessageA(foreign, TWICE, 0, 0), 0, 1400),
             CALL(SendMessageA(foreign, TWICE, 0, 0), 0, 1400),
             CALL(SendMessageA(nullptr, TWICE, 0, 0), 0, 1400)});
}

TEST_F(Message, ABroadcastReachesAllThatAreNotPrivate)
{
    const HWND second = kind.Make(), third = kind.Make();
    const Partner partner;
    Told().clear();
    EXPECT_NE(SendMessageA(HWND_BROADCAST, LEAVE, 0, 0), 0);
    // Each of them has destroyed itself meanwhile.
    EXPECT_EQ(Only({LEAVE}), (std::vector<UINT>{LEAVE, LEAVE, LEAVE}));
    for (const HWND gone : {window, second, third, partner.Window()})
        EXPECT_FALSE(IsWindow(gone));
    const HWND last = kind.Make();
    Told().clear();
    for (const UINT own : {TWICE, 0x7FFFU, 0x8000U, 0xBFFFU})
        SendMessageA(HWND_BROADCAST, own, 0, 0);
    EXPECT_EQ(Only({TWICE, 0x7FFF, 0x8000, 0xBFFF}), std::vector<UINT>{});
    EXPECT_TRUE(DestroyWindow(last));
    PumpUntil(nullptr, 0);
}

TEST_F(Message, ATimerComesAgainAndAgainUntilItIsKilled)
{
    EXPECT_NE(SetTimer(window, 5, 1, nullptr), 0U);
    for (int i = 0; i < 3; ++i) {
        const MSG message = PumpUntil(window, WM_TIMER);
        EXPECT_EQ(message.wParam, 5U);
        EXPECT_EQ(message.lParam, 0);
    }
    EXPECT_TRUE(KillTimer(window, 5));
    RunRows({CALL(KillTimer(window, 5), 0, 87), CALL(KillTimer(nullptr, 12345), 0, 87)});
}

TEST_F(Message, ATimerWaitsForItsTimeAndComesBehindPosts)
{
    MSG message = {};
    const DWORD start = GetTickCount();
    SetTimer(window, 1, 60, nullptr);
    SetTimer(window, 1, 100, nullptr);
    EXPECT_FALSE(PeekMessageA(&message, window, 0, 0, PM_REMOVE));
    PumpUntil(window, WM_TIMER);
    EXPECT_GE(GetTickCount() - start, 90U);
    std::this_thread::sleep_for(std::chrono::milliseconds(350));
    PostMessageA(window, TWICE, 0, 0);
    EXPECT_TRUE(PeekMessageA(&message, window, 0, 0, PM_REMOVE));
    EXPECT_EQ(message.message, TWICE);
    // One waits, however often its time has come.
    EXPECT_TRUE(PeekMessageA(&message, window, 0, 0, PM_REMOVE));
    EXPECT_EQ(message.message, static_cast<UINT>(WM_TIMER));
    EXPECT_FALSE(PeekMessageA(&message, window, 0, 0, PM_REMOVE));
    EXPECT_TRUE(KillTimer(window, 1));
}

TEST_F(Message, ATimerWithoutAWindowHasANumberOfItsOwn)
{
    MSG message = {};
    const UINT_PTR timer = SetTimer(nullptr, 0, 10, nullptr);
    EXPECT_NE(timer, 0U);
    do
        WaitMessage();
    while (!PeekMessageA(&message, nullptr, WM_TIMER, WM_TIMER, PM_REMOVE));
    EXPECT_EQ(message.hwnd, nullptr);
    EXPECT_EQ(message.wParam, timer);
    EXPECT_TRUE(KillTimer(nullptr, timer));
}

// Longer than the numbers last, which come again then.
TEST_F(Message, EachTimerWithoutAWindowIsKilledByItsNumberHoweverManyThereWere)
{
    const UINT_PTR kept = SetTimer(nullptr, 0, 1000000, nullptr);
    for (int i = 0; i < 33000; ++i) {
        const UINT_PTR timer = SetTimer(nullptr, 0, 1000000, nullptr);
        ASSERT_NE(timer, 0U) << i;
        ASSERT_NE(timer, kept) << i;
        ASSERT_TRUE(KillTimer(nullptr, timer)) << i;
    }
    EXPECT_TRUE(KillTimer(nullptr, kept));
}

TEST_F(Message, AThreadThatEndsReleasesWhoWaitsForIt)
{
    std::atomic<HWND> silent = nullptr;
    std::thread thread([&] {
        silent = MakeWindow("OstraMessage");
        std::this_thread::sleep_for(std::chrono::milliseconds(200));
    });
    while (!silent)
        std::this_thread::yield();
    RunRows({CALL(SendMessageA(silent, TWICE, 1, 1), 0, Side(1400, 5))});
    thread.join();
    EXPECT_FALSE(IsWindow(silent));
    RunRows({CALL(PostMessageA(silent, TWICE, 1, 1), 0, 1400)});
}

CHILD_PROCESS(MessagePartner)
{
    const OwnClass kind(arguments[0].c_str(), Answer);
    const HWND window = kind.Make();
    ChildLine("ready");
    PumpUntil(window, END);
    return DestroyWindow(window) ? 0 : 1;
}

TEST_F(Message, ProcessesPostAndSend)
{
    const std::string name = "OstraPartner" + std::to_string(GetTickCount());
    ChildProcess child("MessagePartner", {name});
    ASSERT_EQ(child.ReadLine(), "ready");
    const HWND partner = FindWindowA(name.c_str(), nullptr);
    ASSERT_NE(partner, nullptr);
    EXPECT_TRUE(IsWindow(partner));
    EXPECT_EQ(SendMessageA(partner, TWICE, 20, 2), 42);
    EXPECT_EQ(SendMessageA(partner, NEST, reinterpret_cast<WPARAM>(window), 0), 42);
    RunRows({CALL(SetWindowLongA(partner, GWLP_USERDATA, 1), 0, Side(5, 0)),
             CALL(DestroyWindow(partner), 0, 5)});
    EXPECT_TRUE(PostMessageA(partner, END, 0, 0));
    EXPECT_EQ(child.Wait(), 0);
    EXPECT_EQ(FindWindowA(name.c_str(), nullptr), nullptr);
    RunRows({CALL(PostMessageA(partner, TWICE, 0, 0), 0, 1400)});
}

TEST_F(Message, TheWindowsOfAKilledProcessAreGone)
{
    const std::string name = "OstraKilled" + std::to_string(GetTickCount());
    ChildProcess child("MessagePartner", {name});
    ASSERT_EQ(child.ReadLine(), "ready");
    const HWND partner = FindWindowA(name.c_str(), nullptr);
    ASSERT_NE(partner, nullptr);
    child.Kill();
    EXPECT_EQ(FindWindowA(name.c_str(), nullptr), nullptr);
    EXPECT_FALSE(IsWindow(partner));
    RunRows({CALL(PostMessageA(partner, TWICE, 0, 0), 0, 1400),
             CALL(SendMessageA(partner, TWICE, 0, 0), 0, 1400)});
}
