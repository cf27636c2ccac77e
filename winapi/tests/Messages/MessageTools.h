// winapi/tests/Messages/MessageTools.h: windows for tests.
#pragma once

#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <vector>

// The messages that a window was told.
inline std::vector<UINT>& Told()
{
    thread_local std::vector<UINT> messages;
    return messages;
}

// Those of the ones told that are listed: the platform sends more to a window than is asked for.
inline std::vector<UINT> Only(const std::vector<UINT>& listed)
{
    std::vector<UINT> found;
    for (const UINT message : Told())
        if (std::find(listed.begin(), listed.end(), message) != listed.end())
            found.push_back(message);
    return found;
}

inline HWND MakeWindow(const char* name)
{
    return CreateWindowExA(0, name, nullptr, WS_POPUP, 0, 0, 0, 0, nullptr, nullptr, nullptr,
                           nullptr);
}

// A class of windows for the life of a scope.
class OwnClass
{
public:
    OwnClass(const char* text, WNDPROC procedure, int extra = 0) : name(text)
    {
        WNDCLASSA facts = {};
        facts.lpfnWndProc = procedure;
        facts.cbWndExtra = extra;
        facts.lpszClassName = name;
        RegisterClassA(&facts);
    }
    OwnClass(const OwnClass&) = delete;
    OwnClass& operator=(const OwnClass&) = delete;
    ~OwnClass() { UnregisterClassA(name, nullptr); }

    HWND Make() const { return MakeWindow(name); }

private:
    const char* const name;
};

// Dispatches what comes until a posted message of that number was taken; 0 to take all there is.
inline MSG PumpUntil(HWND window, UINT last)
{
    MSG message = {};
    for (;;) {
        while (PeekMessageA(&message, window, 0, 0, PM_REMOVE)) {
            if (message.message == last)
                return message;
            DispatchMessageA(&message);
        }
        if (!last)
            return message;
        WaitMessage();
    }
}

// What a child tells its parent.
inline void ChildLine(const char* text)
{
    std::puts(text);
    std::fflush(stdout);
}
