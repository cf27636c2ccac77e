// winapi/Messages/Window.h: classes of windows, and windows that nobody sees.
//
// A window is a number, the same in all programs of a user, to which messages are addressed; it
// belongs to the thread that made it. Nothing is shown and no display is asked for. Classes belong to
// the process.
#pragma once

#include "winapi/Base/Constants.h"

struct HMENU__;
using HMENU = HMENU__*;
struct HICON__;
using HICON = HICON__*;
using HCURSOR = HICON;
struct HBRUSH__;
using HBRUSH = HBRUSH__*;
using WNDPROC = LRESULT (*)(HWND hwnd, UINT uMsg, WPARAM wParam, LPARAM lParam);

struct tagWNDCLASSA
{
    UINT style;
    WNDPROC lpfnWndProc;
    int cbClsExtra;
    int cbWndExtra; // Bytes of its own for each window, cleared at first.
    HINSTANCE hInstance;
    HICON hIcon;
    HCURSOR hCursor;
    HBRUSH hbrBackground;
    LPCSTR lpszMenuName;
    LPCSTR lpszClassName;
};
using WNDCLASSA = tagWNDCLASSA;

// What lParam of WM_NCCREATE and WM_CREATE points at.
struct tagCREATESTRUCTA
{
    LPVOID lpCreateParams;
    HINSTANCE hInstance;
    HMENU hMenu;
    HWND hwndParent;
    int cy;
    int cx;
    int y;
    int x;
    LONG style;
    LPCSTR lpszName;
    LPCSTR lpszClass;
    DWORD dwExStyle;
};
using CREATESTRUCTA = tagCREATESTRUCTA;

namespace winapi
{
constexpr DWORD WS_POPUP = 0x80000000;

constexpr int GWL_EXSTYLE = -20;
constexpr int GWL_STYLE = -16;
constexpr int GWLP_WNDPROC = -4;
constexpr int GWLP_HINSTANCE = -6;
constexpr int GWLP_USERDATA = -21;

// A number other than 0 that stands for the class. 0 with ERROR_CLASS_ALREADY_EXISTS (1410) when the
// instance has one of that name, ERROR_INVALID_PARAMETER (87) without a name or a procedure, or
// with a size below 0.
WINAPI_EXPORT ATOM RegisterClassA(const WNDCLASSA* lpWndClass);
// FALSE with ERROR_CLASS_DOES_NOT_EXIST (1411), or ERROR_CLASS_HAS_WINDOWS (1412).
WINAPI_EXPORT BOOL UnregisterClassA(LPCSTR lpClassName, HINSTANCE hInstance);
// What was registered for the instance. FALSE with ERROR_CLASS_DOES_NOT_EXIST (1411).
WINAPI_EXPORT BOOL GetClassInfoA(HINSTANCE hInstance, LPCSTR lpClassName, WNDCLASSA* lpWndClass);

// A window of the thread, which is sent WM_NCCREATE, WM_NCCALCSIZE and WM_CREATE. Null when the first
// answers 0 or the last -1, with ERROR_CLASS_DOES_NOT_EXIST (1411) without the class, and with what
// the session's folder or database tells. No window has a parent: to ask for one is
// ERROR_INVALID_WINDOW_HANDLE (1400).
WINAPI_EXPORT HWND CreateWindowExA(DWORD dwExStyle, LPCSTR lpClassName, LPCSTR lpWindowName,
                                   DWORD dwStyle, int X, int Y, int nWidth, int nHeight,
                                   HWND hWndParent, HMENU hMenu, HINSTANCE hInstance,
                                   LPVOID lpParam);
// Sends WM_DESTROY and WM_NCDESTROY; what is posted to it and its timers are gone. FALSE with
// ERROR_INVALID_WINDOW_HANDLE (1400), or ERROR_ACCESS_DENIED (5) for a window of another thread.
WINAPI_EXPORT BOOL DestroyWindow(HWND hWnd);
// Whether it is the window of a process that lives.
WINAPI_EXPORT BOOL IsWindow(HWND hWnd);
// The newest window of any program with a class of that name, and with that title; null stands for
// any. Null with the last error left alone if there is none, ERROR_CANNOT_FIND_WND_CLASS (1407) if
// there is no window of the class at all.
WINAPI_EXPORT HWND FindWindowA(LPCSTR lpClassName, LPCSTR lpWindowName);

// A word of the window's own bytes, or a fact about it. 0 with ERROR_INVALID_INDEX (1413) outside of
// them, ERROR_INVALID_WINDOW_HANDLE (1400), ERROR_ACCESS_DENIED (5) for a window of another process.
// To set gives what was there before. The first two hold 32 bits: a pointer takes the others.
WINAPI_EXPORT LONG GetWindowLongA(HWND hWnd, int nIndex);
WINAPI_EXPORT LONG SetWindowLongA(HWND hWnd, int nIndex, LONG dwNewLong);
WINAPI_EXPORT LONG_PTR GetWindowLongPtrA(HWND hWnd, int nIndex);
WINAPI_EXPORT LONG_PTR SetWindowLongPtrA(HWND hWnd, int nIndex, LONG_PTR dwNewLong);
} // namespace winapi
