// winapi/Messages/Windows.cpp: windows.
#include "Messages/Windows.h"

#include "Base/Session.h"
#include "Errors/Failure.h"
#include "Messages/Classes.h"
#include "Messages/Exchange.h"
#include "Messages/Queue.h"
#include "Messages/WindowRows.h"

#include <cstring>
#include <unordered_map>

#include <pthread.h>

namespace winapi
{
constinit std::mutex windowsMutex;

namespace
{
using WindowMap = std::unordered_map<HWND, WindowReference>;

// Never destroyed: services may be called until the very end. Under the mutex.
WindowMap& Known()
{
    static WindowMap* const windows = new WindowMap;
    return *windows;
}

void Lock()
{
    windowsMutex.lock();
    LockLent();
}

void Unlock()
{
    UnlockLent();
    windowsMutex.unlock();
}

void Forget()
{
    Known().clear();
    Queue::ForgetAll();
    ForgetLent();
    windowsMutex.unlock();
}

// The window of this thread; ends the service where it is none.
WindowReference OwnWindow(HWND handle)
{
    WindowReference window = FindOwnWindow(handle);
    if (!window)
        Fail(IsWindow(handle) ? ERROR_ACCESS_DENIED : ERROR_INVALID_WINDOW_HANDLE);
    if (window->queue != Queue::OwnIfAny())
        Fail(ERROR_ACCESS_DENIED);
    return window;
}

void Remove(const WindowReference& window)
{
    ForgetWindows({window->handle});
    RemoveWindows({window->handle});
    window->queue->Purge(window->handle);
}

void Destroy(const WindowReference& window)
{
    if (window->isEnding)
        return;
    window->isEnding = true;
    CallWindow(window, WM_DESTROY, 0, 0);
    CallWindow(window, WM_NCDESTROY, 0, 0);
    Remove(window);
}

WindowReference NewWindow(const CREATESTRUCTA& facts)
{
    auto window = std::make_shared<Window>();
    window->kind = ClassOf(facts.lpszClass, facts.hInstance);
    window->procedure = window->kind->facts.lpfnWndProc;
    window->instance = reinterpret_cast<LONG_PTR>(facts.hInstance);
    window->style = facts.style;
    window->extendedStyle = static_cast<LONG>(facts.dwExStyle);
    window->extra.resize(static_cast<std::size_t>(window->kind->facts.cbWndExtra));
    window->queue = &Queue::Own();
    const std::string title = facts.lpszName ? FoldOfText(facts.lpszName) : std::string();
    if (const DWORD code =
            AddWindow(window->kind->fold, title, window->queue->Socket(), window->handle))
        Fail(code);
    const std::lock_guard lock(windowsMutex);
    Known().emplace(window->handle, window);
    return window;
}

HWND Create(CREATESTRUCTA& facts)
{
    const WindowReference window = NewWindow(facts);
    const auto place = reinterpret_cast<LPARAM>(&facts);
    LONG rectangle[4] = {};
    if (!CallWindow(window, WM_NCCREATE, 0, place)) {
        CallWindow(window, WM_NCDESTROY, 0, 0);
        Remove(window);
        return nullptr;
    }
    CallWindow(window, WM_NCCALCSIZE, 0, reinterpret_cast<LPARAM>(rectangle));
    if (CallWindow(window, WM_CREATE, 0, place) == -1)
        Destroy(window);
    return window->isEnding ? nullptr : window->handle;
}

// What a word holds, which is changed where that is asked for.
LONG_PTR Exchange(char* place, std::size_t size, const LONG_PTR* change)
{
    LONG_PTR before = 0;
    LONG narrow;
    if (size == sizeof narrow) {
        std::memcpy(&narrow, place, sizeof narrow);
        before = narrow;
    } else
        std::memcpy(&before, place, sizeof before);
    if (change) {
        narrow = static_cast<LONG>(*change);
        std::memcpy(place, size == sizeof narrow ? static_cast<const void*>(&narrow) : change,
                    size);
    }
    return before;
}

// Where a word of that many bytes stands; null for none.
char* PlaceOf(Window& window, int index, std::size_t size)
{
    const auto as = [](auto& member) {
        return reinterpret_cast<char*>(&member);
    };
    const bool isWide = size == sizeof(LONG_PTR);
    const auto start = static_cast<std::size_t>(index);
    if (index >= 0)
        return start + size <= window.extra.size() ? window.extra.data() + index : nullptr;
    switch (index) {
    case GWLP_WNDPROC:
        return isWide ? as(window.procedure) : nullptr;
    case GWLP_HINSTANCE:
        return isWide ? as(window.instance) : nullptr;
    case GWLP_USERDATA:
        return as(window.userData);
    case GWL_STYLE:
        return as(window.style);
    case GWL_EXSTYLE:
        return as(window.extendedStyle);
    default:
        return nullptr;
    }
}

LONG_PTR Word(HWND handle, int index, std::size_t size, const LONG_PTR* change)
{
    return Guarded(LONG_PTR(0), [&] {
        const WindowReference window = FindOwnWindow(handle);
        if (!window)
            Fail(IsWindow(handle) ? ERROR_ACCESS_DENIED : ERROR_INVALID_WINDOW_HANDLE);
        const std::lock_guard lock(windowsMutex);
        char* const place = PlaceOf(*window, index, size);
        if (!place)
            Fail(ERROR_INVALID_INDEX);
        return Exchange(place, size, change);
    });
}
} // namespace

void MindForks()
{
    static const int done = (Known(), pthread_atfork(Lock, Unlock, Forget));
    static_cast<void>(done);
}

WindowReference FindOwnWindow(HWND handle)
{
    const std::lock_guard lock(windowsMutex);
    const auto found = Known().find(handle);
    return found == Known().end() ? nullptr : found->second;
}

std::vector<HWND> WindowsOf(const Queue* queue)
{
    std::vector<HWND> list;
    const std::lock_guard lock(windowsMutex);
    for (const auto& [handle, window] : Known())
        if (window->queue == queue)
            list.push_back(handle);
    return list;
}

void ForgetWindows(const std::vector<HWND>& windows)
{
    const std::lock_guard lock(windowsMutex);
    for (const HWND handle : windows)
        Known().erase(handle);
}

LRESULT CallWindow(const WindowReference& window, UINT message, WPARAM first, LPARAM second)
{
    WNDPROC procedure;
    {
        const std::lock_guard lock(windowsMutex);
        procedure = window->procedure;
    }
    return procedure(window->handle, message, first, second);
}

HWND CreateWindowExA(DWORD extendedStyle, LPCSTR className, LPCSTR title, DWORD style, int x, int y,
                     int width, int height, HWND parent, HMENU menu, HINSTANCE instance,
                     LPVOID parameter)
{
    return Guarded(HWND(nullptr), [&] {
        if (parent)
            Fail(ERROR_INVALID_WINDOW_HANDLE);
        CREATESTRUCTA facts = {
            parameter, InstanceOf(instance),     menu,  parent,    height,       width, y,
            x,         static_cast<LONG>(style), title, className, extendedStyle};
        return Create(facts);
    });
}

BOOL DestroyWindow(HWND handle)
{
    return Guarded(FALSE, [&] {
        Destroy(OwnWindow(handle));
        return TRUE;
    });
}

BOOL IsWindow(HWND handle)
{
    return Guarded(FALSE, [&] {
        if (FindOwnWindow(handle))
            return TRUE;
        std::string socket;
        const DWORD code = FindSocket(handle, socket);
        return BOOL(Finish(code) && IsAlive(socket.substr(0, socket.find('-'))));
    });
}

HWND FindWindowA(LPCSTR className, LPCSTR title)
{
    return Guarded(HWND(nullptr), [&] {
        std::string fold;
        if (className)
            fold = FoldOfClass(className);
        const std::string wanted = title ? FoldOfText(title) : std::string();
        HWND window = nullptr;
        return Finish(FindNewest(fold, title ? &wanted : nullptr, window)) ? window : nullptr;
    });
}

LONG GetWindowLongA(HWND window, int index)
{
    return static_cast<LONG>(Word(window, index, sizeof(LONG), nullptr));
}

LONG SetWindowLongA(HWND window, int index, LONG word)
{
    const LONG_PTR change = word;
    return static_cast<LONG>(Word(window, index, sizeof(LONG), &change));
}

// What has 32 bits keeps them.
LONG_PTR GetWindowLongPtrA(HWND window, int index)
{
    const bool isNarrow = index == GWL_STYLE || index == GWL_EXSTYLE;
    return Word(window, index, isNarrow ? sizeof(LONG) : sizeof(LONG_PTR), nullptr);
}

LONG_PTR SetWindowLongPtrA(HWND window, int index, LONG_PTR word)
{
    const bool isNarrow = index == GWL_STYLE || index == GWL_EXSTYLE;
    return Word(window, index, isNarrow ? sizeof(LONG) : sizeof(LONG_PTR), &word);
}
} // namespace winapi
