// winapi/Dialogs/MessageBox.h: a box with a text and buttons.
#pragma once

#include "winapi/Base/Constants.h"

// A test program may define this: a box is then no longer shown when it gives true, and what it
// stores becomes the answer.
extern "C" WINAPI_EXPORT BOOL winapi_TestMessageBox(LPCWSTR text, LPCWSTR title, UINT type,
                                                    int* answer) __attribute__((weak));

namespace winapi
{
constexpr UINT MB_OK = 0x0;
constexpr UINT MB_OKCANCEL = 0x1;
constexpr UINT MB_ABORTRETRYIGNORE = 0x2;
constexpr UINT MB_YESNOCANCEL = 0x3;
constexpr UINT MB_YESNO = 0x4;
constexpr UINT MB_RETRYCANCEL = 0x5;
constexpr UINT MB_CANCELTRYCONTINUE = 0x6;
constexpr UINT MB_ICONERROR = 0x10;
constexpr UINT MB_ICONSTOP = MB_ICONERROR;
constexpr UINT MB_ICONHAND = MB_ICONERROR;
constexpr UINT MB_ICONQUESTION = 0x20;
constexpr UINT MB_ICONWARNING = 0x30;
constexpr UINT MB_ICONEXCLAMATION = MB_ICONWARNING;
constexpr UINT MB_ICONINFORMATION = 0x40;
constexpr UINT MB_ICONASTERISK = MB_ICONINFORMATION;
constexpr UINT MB_DEFBUTTON1 = 0x000;
constexpr UINT MB_DEFBUTTON2 = 0x100;
constexpr UINT MB_DEFBUTTON3 = 0x200;
constexpr UINT MB_TASKMODAL = 0x2000;
constexpr UINT MB_SETFOREGROUND = 0x10000;
constexpr UINT MB_TOPMOST = 0x40000;

constexpr int IDOK = 1;
constexpr int IDCANCEL = 2;
constexpr int IDABORT = 3;
constexpr int IDRETRY = 4;
constexpr int IDIGNORE = 5;
constexpr int IDYES = 6;
constexpr int IDNO = 7;
constexpr int IDTRYAGAIN = 10;
constexpr int IDCONTINUE = 11;

// Shows the box and waits for the answer: the program zenity does it. Of the type count the buttons
// and the icon, others are ignored, and so is the owner; the first button is the default one. A null
// text is empty, a null title reads "Error". A window that is closed gives IDCANCEL, where the box
// has no such button the last one.
// -1 with ERROR_INVALID_WINDOW_HANDLE (1400) where no box can be shown: without a display (the
// variables DISPLAY and WAYLAND_DISPLAY) or zenity; title and text are then written to the standard
// error stream, control characters as U+FFFD. 0 with ERROR_INVALID_MSGBOX_STYLE (1438) for buttons
// that don't exist, with ERROR_NOT_ENOUGH_MEMORY (8) without memory.
WINAPI_EXPORT int MessageBoxW(HWND hWnd, LPCWSTR lpText, LPCWSTR lpCaption, UINT uType);
WINAPI_EXPORT int MessageBoxA(HWND hWnd, LPCSTR lpText, LPCSTR lpCaption, UINT uType);
} // namespace winapi
