// examples/ask/Search.cpp
#include "Search.h"

#include <Ostra/Frame/ErrorManager.h>
#include <Common/Failure.h>

#include <windows.h>
#ifdef _WIN32
#include <dde.h>
#endif

namespace ask
{
using namespace common;

namespace
{
constexpr char SOURCE[] = "ask/Search";

constexpr char CLASS_NAME[] = "OstraAskSearch";
constexpr unsigned HALF = 0xFFFF;

void SetSystemError()
{
    CT_ErrorManager* const errors = CT_ErrorManager::spco_Get();
    while (!errors->b_IsSetError())
        errors->v_SetSystemError();
    Failed(SOURCE);
}

// The window's word counts the answers. Names come anew with each answer.
LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM first, LPARAM second)
{
    if (message != WM_DDE_ACK)
        return DefWindowProcA(window, message, first, second);
    SetWindowLongPtrA(window, 0, GetWindowLongPtrA(window, 0) + 1);
    GlobalDeleteAtom(static_cast<ATOM>(second & HALF));
    GlobalDeleteAtom(static_cast<ATOM>(second >> 16 & HALF));
    PostMessageA(reinterpret_cast<HWND>(first), WM_DDE_TERMINATE, reinterpret_cast<WPARAM>(window),
                 0);
    return 0;
}
} // namespace

Search::Search()
{
    WNDCLASSA kind = {};
    kind.lpfnWndProc = Procedure;
    kind.hInstance = GetModuleHandleA(nullptr);
    kind.lpszClassName = CLASS_NAME;
    kind.cbWndExtra = sizeof(LONG_PTR);
    RegisterClassA(&kind); // It may be there from before.
    window = CreateWindowExA(0, CLASS_NAME, nullptr, WS_POPUP, 0, 0, 0, 0, nullptr, nullptr,
                             kind.hInstance, nullptr);
    if (!window)
        SetSystemError();
}

Search::~Search()
{
    if (window)
        DestroyWindow(window);
}

unsigned Search::Count(const std::string& application, const std::string& topic)
{
    const ATOM name = GlobalAddAtomA(application.c_str());
    const ATOM subject = GlobalAddAtomA(topic.c_str());
    SetWindowLongPtrA(window, 0, 0);
    SendMessageA(HWND_BROADCAST, WM_DDE_INITIATE, reinterpret_cast<WPARAM>(window),
                 static_cast<LPARAM>(name | static_cast<unsigned>(subject) << 16));
    GlobalDeleteAtom(name);
    GlobalDeleteAtom(subject);
    return static_cast<unsigned>(GetWindowLongPtrA(window, 0));
}
} // namespace ask
