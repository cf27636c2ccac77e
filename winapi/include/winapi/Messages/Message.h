// winapi/Messages/Message.h: messages to windows, posted and sent, and timers.
//
// A message to a window of another process carries its two numbers; what they point at stays behind,
// but for the blocks of conversations (Exchange.h). Messages that were sent are handled while their
// thread is within PeekMessage, WaitMessage or SendMessage.
#pragma once

#include "winapi/Messages/Window.h"

struct tagPOINT
{
    LONG x;
    LONG y;
};
using POINT = tagPOINT;

struct tagMSG
{
    HWND hwnd;
    UINT message;
    WPARAM wParam;
    LPARAM lParam;
    DWORD time;
    POINT pt; // 0, as there is no pointer.
};
using MSG = tagMSG;
using LPMSG = tagMSG*;
using TIMERPROC = void (*)(HWND hwnd, UINT uMsg, UINT_PTR idEvent, DWORD dwTime);

namespace winapi
{
const HWND HWND_BROADCAST = reinterpret_cast<HWND>(std::intptr_t{0xFFFF});

constexpr UINT WM_NULL = 0x0000;
constexpr UINT WM_CREATE = 0x0001;
constexpr UINT WM_DESTROY = 0x0002;
constexpr UINT WM_CLOSE = 0x0010;
constexpr UINT WM_NCCREATE = 0x0081;
constexpr UINT WM_NCDESTROY = 0x0082;
constexpr UINT WM_NCCALCSIZE = 0x0083;
constexpr UINT WM_TIMER = 0x0113;
constexpr UINT WM_USER = 0x0400;

constexpr UINT PM_NOREMOVE = 0;
constexpr UINT PM_REMOVE = 1;

constexpr UINT USER_TIMER_MINIMUM = 10;
constexpr UINT USER_TIMER_MAXIMUM = 0x7FFFFFFF;

// What the window's procedure returns: at once for a window of the thread itself; otherwise its
// owner runs it, while this thread goes on handling what is sent to it. 0 with
// ERROR_INVALID_WINDOW_HANDLE (1400) for what is no window, and when its owner ends meanwhile. To
// HWND_BROADCAST: all windows, the newest first, which are waited for five seconds each at most; 1,
// with ERROR_TIMEOUT (1460) if that didn't suffice. Numbers from WM_USER to BFFFh aren't broadcast.
WINAPI_EXPORT LRESULT SendMessageA(HWND hWnd, UINT Msg, WPARAM wParam, LPARAM lParam);
// Leaves the message in the queue of the window's thread. FALSE with ERROR_INVALID_WINDOW_HANDLE
// (1400), or ERROR_NOT_ENOUGH_QUOTA (1816) when the thread takes none any more. Null posts to the
// thread itself.
WINAPI_EXPORT BOOL PostMessageA(HWND hWnd, UINT Msg, WPARAM wParam, LPARAM lParam);

// The thread's next message, for one window or for null for any, within the range of numbers unless
// that is 0 to 0: what was posted before timers. FALSE if there is none, and with
// ERROR_INVALID_WINDOW_HANDLE (1400) for what isn't a window.
WINAPI_EXPORT BOOL PeekMessageA(LPMSG lpMsg, HWND hWnd, UINT wMsgFilterMin, UINT wMsgFilterMax,
                                UINT wRemoveMsg);
// Waits for a message that PeekMessage hasn't seen yet.
WINAPI_EXPORT BOOL WaitMessage();
// There are no keys: FALSE.
WINAPI_EXPORT BOOL TranslateMessage(const MSG* lpMsg);
// Calls the window's procedure, or that of the timer.
WINAPI_EXPORT LRESULT DispatchMessageA(const MSG* lpMsg);
// WM_CLOSE destroys the window, WM_NCCREATE is answered by 1, everything else by 0.
WINAPI_EXPORT LRESULT DefWindowProcA(HWND hWnd, UINT Msg, WPARAM wParam, LPARAM lParam);

// Lets WM_TIMER come again and again, milliseconds of USER_TIMER_MINIMUM at least; one waits at a
// time. Replaces the window's timer of the same number. Without a window a new timer gets a number
// that is chosen here, which KillTimer and another SetTimer want then. Result: the timer's number, 1
// for 0; 0 with ERROR_INVALID_HANDLE (6) for what is no window of the thread, and, without a window,
// with ERROR_NOT_ENOUGH_QUOTA (1816) from 10,000 timers of the thread on.
WINAPI_EXPORT UINT_PTR SetTimer(HWND hWnd, UINT_PTR nIDEvent, UINT uElapse, TIMERPROC lpTimerFunc);
// By the number that SetTimer was given, without a window by the one that it returned. FALSE with
// ERROR_INVALID_PARAMETER (87) for what is no timer, ERROR_INVALID_WINDOW_HANDLE (1400).
WINAPI_EXPORT BOOL KillTimer(HWND hWnd, UINT_PTR uIDEvent);
} // namespace winapi
