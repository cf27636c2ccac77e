// winapi/Messages/Windows.h: the windows and the classes of this process.
#pragma once

#include "Messages/Wire.h"

#include <memory>
#include <mutex>
#include <vector>

namespace winapi
{
class Queue;

struct WindowClass
{
    WNDCLASSA facts;
    std::string name;
    std::string fold;
    ATOM atom;
};

struct Window
{
    HWND handle = nullptr;
    Queue* queue = nullptr; // Of its thread.
    std::shared_ptr<const WindowClass> kind;
    // What follows is reached by any thread of the process, under the mutex.
    WNDPROC procedure = nullptr;
    LONG_PTR instance = 0;
    LONG_PTR userData = 0;
    LONG style = 0;
    LONG extendedStyle = 0;
    std::vector<char> extra;
    bool isEnding = false;
};

using WindowReference = std::shared_ptr<Window>;

// Held for a look or a change, and over forks; nothing else is asked for meanwhile.
extern std::mutex windowsMutex;

// The window of this process; empty for what is none.
WindowReference FindOwnWindow(HWND handle);
// Its thread's windows, for the thread's end.
std::vector<HWND> WindowsOf(const Queue* queue);
void ForgetWindows(const std::vector<HWND>& windows);

LRESULT CallWindow(const WindowReference& window, UINT message, WPARAM first, LPARAM second);

// From the first window on a forked child forgets those of its parent.
void MindForks();
} // namespace winapi
