// winapi/tests/Messages/WindowTest.cpp: classes of windows, and windows.
#include "../Support/Calls.h"
#include "MessageTools.h"

#include <cstring>

namespace
{
LRESULT CALLBACK Record(HWND window, UINT message, WPARAM first, LPARAM second)
{
    Told().push_back(message);
    return DefWindowProcA(window, message, first, second);
}

LRESULT CALLBACK RefuseCreate(HWND window, UINT message, WPARAM first, LPARAM second)
{
    Told().push_back(message);
    return message == 1 ? -1 : DefWindowProcA(window, message, first, second);
}

LRESULT CALLBACK RefuseAtFirst(HWND window, UINT message, WPARAM first, LPARAM second)
{
    Told().push_back(message);
    return message == 0x81 ? 0 : DefWindowProcA(window, message, first, second);
}

LRESULT CALLBACK LookAtParameter(HWND window, UINT message, WPARAM first, LPARAM second)
{
    if (message == 1)
        *static_cast<int*>(reinterpret_cast<CREATESTRUCTA*>(second)->lpCreateParams) = 42;
    return DefWindowProcA(window, message, first, second);
}

// Of the program and of strangers.
HINSTANCE Instance(unsigned value)
{
    return reinterpret_cast<HINSTANCE>(static_cast<UINT_PTR>(value));
}
} // namespace

TEST(WindowClass, AnInstanceHasEachNameOnce)
{
    WNDCLASSA facts = {};
    facts.lpfnWndProc = Record;
    facts.lpszClassName = "OstraOnce";
    facts.cbWndExtra = 24;
    WNDCLASSA found = {};
    RunRows({CALL(GetClassInfoA(nullptr, "OstraOnce", &found), 0, 1411),
             CALL(RegisterClassA(&facts) >= 0xC000, 1, 0), CALL(RegisterClassA(&facts), 0, 1410)});
    facts.lpszClassName = "OSTRAonce";
    RunRows({CALL(RegisterClassA(&facts), 0, 1410)});
    EXPECT_TRUE(GetClassInfoA(GetModuleHandleA(nullptr), "ostraonce", &found));
    EXPECT_EQ(found.lpfnWndProc, Record);
    EXPECT_EQ(found.cbWndExtra, 24);
    // Without an instance the platform knows its own classes only.
    EXPECT_EQ(GetClassInfoA(nullptr, "OstraOnce", &found) != 0, HOST_PATHS);
    facts.lpszClassName = "OstraOnce";
    facts.hInstance = Instance(0x12340000);
    RunRows({CALL(GetClassInfoA(facts.hInstance, "OstraOnce", &found), 0, 1411),
             CALL(RegisterClassA(&facts) >= 0xC000, 1, 0),
             CALL(GetClassInfoA(facts.hInstance, "OstraOnce", &found) != 0, 1, 0),
             CALL(UnregisterClassA("OstraOnce", facts.hInstance) != 0, 1, 0),
             CALL(UnregisterClassA("OstraOnce", facts.hInstance), 0, 1411),
             CALL(UnregisterClassA("OstraOnce", nullptr) != 0, 1, 0)});
}

TEST(WindowClass, OneWithWindowsStays)
{
    const OwnClass kind("OstraStays", Record);
    const HWND window = kind.Make();
    RunRows({CALL(UnregisterClassA("OstraStays", nullptr), 0, 1412)});
    EXPECT_TRUE(DestroyWindow(window));
}

TEST(Window, CreationAndDestructionSendTheirMessages)
{
    const OwnClass kind("OstraLife", Record);
    Told().clear();
    const HWND window = kind.Make();
    ASSERT_NE(window, nullptr);
    EXPECT_EQ(Only({0x81, 0x83, 1}), (std::vector<UINT>{0x81, 0x83, 1}));
    EXPECT_TRUE(IsWindow(window));
    Told().clear();
    EXPECT_TRUE(DestroyWindow(window));
    EXPECT_EQ(Only({2, 0x82}), (std::vector<UINT>{2, 0x82}));
    EXPECT_FALSE(IsWindow(window));
    RunRows({CALL(DestroyWindow(window), 0, Side(1400, 5)),
             CALL(DestroyWindow(nullptr), 0, Side(1400, 5))});
}

TEST(Window, CreationFailsWhenItsMessagesAreRefused)
{
    const OwnClass late("OstraLate", RefuseCreate);
    Told().clear();
    EXPECT_EQ(late.Make(), nullptr);
    EXPECT_EQ(Only({1, 0x82}), (std::vector<UINT>{1, 0x82}));
    const OwnClass early("OstraEarly", RefuseAtFirst);
    Told().clear();
    EXPECT_EQ(early.Make(), nullptr);
    EXPECT_EQ(Only({0x81, 1, 0x82}), (std::vector<UINT>{0x81, 0x82}));
    EXPECT_EQ(FindWindowA("OstraLate", nullptr), nullptr);
    EXPECT_EQ(FindWindowA("OstraEarly", nullptr), nullptr);
}

TEST(Window, AClassThatIsNotThereMakesNone)
{
    RunRows({CALL(CreateWindowExA(0, "OstraNowhere", nullptr, WS_POPUP, 0, 0, 0, 0, nullptr,
                                  nullptr, nullptr, nullptr) != nullptr,
                  0, 1411)});
}

TEST(Window, TheCreatorsParameterComesWithTheMessage)
{
    const OwnClass kind("OstraParameter", LookAtParameter);
    int told = 0;
    const HWND window = CreateWindowExA(0, "OstraParameter", nullptr, WS_POPUP, 0, 0, 0, 0, nullptr,
                                        nullptr, nullptr, &told);
    EXPECT_NE(window, nullptr);
    EXPECT_EQ(told, 42);
    EXPECT_TRUE(DestroyWindow(window));
}

TEST(Window, TheNewestOfAClassIsFound)
{
    const OwnClass kind("OstraFind", Record);
    const HWND first = kind.Make();
    EXPECT_EQ(FindWindowA("OSTRAFIND", nullptr), first);
    EXPECT_EQ(FindWindowA("OstraFind", "no such title"), nullptr);
    EXPECT_TRUE(DestroyWindow(first));
    SetLastError(0);
    EXPECT_EQ(FindWindowA("OstraFind", nullptr), nullptr);
}

TEST(WindowWord, TheExtraBytesHoldWordsAndPointers)
{
    const OwnClass kind("OstraWords", Record, sizeof(void*) + 4);
    const HWND window = kind.Make();
    const int behind = sizeof(void*);
    int pointed = 0;
    const auto pointer = reinterpret_cast<LONG_PTR>(&pointed);
    EXPECT_EQ(GetWindowLongPtrA(window, 0), 0);
    EXPECT_EQ(SetWindowLongPtrA(window, 0, pointer), 0);
    EXPECT_EQ(GetWindowLongPtrA(window, 0), pointer);
    EXPECT_EQ(SetWindowLongA(window, behind, -5), 0);
    EXPECT_EQ(SetWindowLongA(window, behind, 6), -5);
    EXPECT_EQ(GetWindowLongA(window, behind), 6);
    EXPECT_EQ(GetWindowLongPtrA(window, 0), pointer);
    RunRows({CALL(GetWindowLongA(window, behind + 1), 0, 1413),
             CALL(SetWindowLongA(window, behind + 4, 1), 0, 1413),
             CALL(GetWindowLongA(nullptr, 0), 0, 1400)});
    EXPECT_EQ(SetWindowLongPtrA(window, GWLP_USERDATA, pointer), 0);
    EXPECT_EQ(GetWindowLongPtrA(window, GWLP_USERDATA), pointer);
    EXPECT_EQ(GetWindowLongPtrA(window, GWLP_WNDPROC), reinterpret_cast<LONG_PTR>(&Record));
    EXPECT_TRUE(DestroyWindow(window));
}
