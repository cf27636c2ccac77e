// winapi/Messages/WindowRows.h: the windows of all processes, in the session's database.
//
// Each function enters the session at need. Results are codes of system errors, 0 for none.
#pragma once

#include "Messages/Wire.h"

#include <vector>

namespace winapi
{
DWORD AddWindow(const std::string& fold, const std::string& title, const std::string& socket,
                HWND& window);
void RemoveWindows(const std::vector<HWND>& windows);

// The socket of the window's thread. ERROR_INVALID_WINDOW_HANDLE (1400) for what is no window.
DWORD FindSocket(HWND window, std::string& socket);
// All windows, the newest first.
DWORD ListWindows(std::vector<HWND>& windows);
// The newest window of that class and of that title; an empty class and a null title stand for any.
// Those of dead processes are removed. ERROR_CANNOT_FIND_WND_CLASS (1407) without any of the class.
DWORD FindNewest(const std::string& fold, const std::string* title, HWND& window);
} // namespace winapi
