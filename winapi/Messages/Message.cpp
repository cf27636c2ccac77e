// winapi/Messages/Message.cpp: messages, posted and sent.
#include "Base/Session.h"
#include "Errors/Failure.h"
#include "Messages/Classes.h"
#include "Messages/Exchange.h"
#include "Messages/Queue.h"
#include "Messages/WindowRows.h"

namespace winapi
{
namespace
{
constexpr int FOREVER = -1;
constexpr int BROADCAST_TIME = 5000; // Milliseconds for each window.
constexpr UINT LAST_PRIVATE = 0xBFFF;

Letter LetterOf(std::uint32_t kind, HWND to, UINT message, WPARAM first, LPARAM second)
{
    Letter letter;
    letter.record.kind = kind;
    letter.record.window = NumberOf(to);
    letter.record.message = message;
    letter.record.first = first;
    letter.record.second = static_cast<std::uint64_t>(second);
    return letter;
}

// Brings a letter to a window of another thread; the connection stays open for an answer.
DWORD Deliver(HWND to, const Letter& letter, Descriptor& connection)
{
    std::string socket;
    DWORD code = FindSocket(to, socket);
    if (code)
        return code;
    code = Connect(socket, connection);
    if (!code)
        code = SendLetter(connection.Get(), letter);
    if (code == ERROR_INVALID_WINDOW_HANDLE)
        SweepSession();
    return code;
}

bool IsOwnThreads(const WindowReference& window)
{
    return window && window->queue == Queue::OwnIfAny();
}

BOOL Post(HWND to, UINT message, WPARAM first, LPARAM second)
{
    const WindowReference window = FindOwnWindow(to);
    if (!to || IsOwnThreads(window))
        return Queue::Own().Post({to, message, first, second, 0, {}}, false);
    Letter letter = LetterOf(Record::POST, to, message, first, second);
    const bool isFar = !window;
    if (isFar && HasParts(message))
        if (const DWORD code = Export(message, second, letter))
            return Finish(code);
    Descriptor connection;
    const DWORD code = Deliver(to, letter, connection);
    if (!code && isFar)
        AfterExport(to, WindowOf(first), message, second);
    if (code == ERROR_INVALID_WINDOW_HANDLE && isFar)
        FreeLentBy(to, WindowOf(first));
    return Finish(code);
}

// Sends to one window; false, with the last error set, when no answer comes.
bool Send(HWND to, UINT message, WPARAM first, LPARAM second, int milliseconds, LRESULT& result)
{
    const WindowReference window = FindOwnWindow(to);
    if (IsOwnThreads(window)) {
        result = CallWindow(window, message, first, second);
        return true;
    }
    Descriptor connection;
    const Letter letter = LetterOf(Record::SEND, to, message, first, second);
    if (!Finish(Deliver(to, letter, connection)))
        return false;
    if (!Queue::Await(connection.Get(), milliseconds))
        return Finish(ERROR_TIMEOUT);
    Letter answer;
    if (ReceiveLetter(connection.Get(), answer) != Arrival::LETTER ||
        answer.record.kind != Record::ANSWER) {
        SweepSession();
        return Finish(ERROR_INVALID_WINDOW_HANDLE);
    }
    result = static_cast<LRESULT>(answer.record.second);
    return true;
}

bool IsBroadcast(HWND to, UINT message)
{
    return to == HWND_BROADCAST && (message < WM_USER || message > LAST_PRIVATE);
}

// Calls body(window) for all, the newest first. Windows that end meanwhile are passed over.
template <class Body>
DWORD ForAll(Body body)
{
    std::vector<HWND> windows;
    if (const DWORD code = ListWindows(windows))
        return code;
    DWORD told = 0;
    for (const HWND window : windows)
        if (!body(window) && GetLastError() != ERROR_INVALID_WINDOW_HANDLE)
            told = GetLastError();
    return told;
}

LRESULT Broadcast(UINT message, WPARAM first, LPARAM second)
{
    const DWORD before = GetLastError();
    const DWORD code = ForAll([&](HWND window) {
        LRESULT ignored;
        return Send(window, message, first, second, BROADCAST_TIME, ignored);
    });
    SetLastError(code ? code : before);
    return 1;
}

BOOL PostToAll(UINT message, WPARAM first, LPARAM second)
{
    const DWORD before = GetLastError();
    const DWORD code = ForAll([&](HWND window) { return Post(window, message, first, second); });
    SetLastError(code ? code : before);
    return TRUE;
}
} // namespace

LRESULT SendMessageA(HWND to, UINT message, WPARAM first, LPARAM second)
{
    return Guarded(LRESULT(0), [&]() -> LRESULT {
        if (to == HWND_BROADCAST)
            return IsBroadcast(to, message) ? Broadcast(message, first, second) : 1;
        LRESULT result = 0;
        return Send(to, message, first, second, FOREVER, result) ? result : 0;
    });
}

BOOL PostMessageA(HWND to, UINT message, WPARAM first, LPARAM second)
{
    return Guarded(FALSE, [&]() -> BOOL {
        if (to == HWND_BROADCAST)
            return !IsBroadcast(to, message) || HasParts(message) ||
                   PostToAll(message, first, second);
        return Post(to, message, first, second);
    });
}

BOOL PeekMessageA(LPMSG message, HWND handle, UINT first, UINT last, UINT options)
{
    return Guarded(FALSE, [&]() -> BOOL {
        if (handle && !IsOwnThreads(FindOwnWindow(handle)))
            Fail(ERROR_INVALID_WINDOW_HANDLE);
        return Queue::Own().Peek(*message, handle, first, last, (options & PM_REMOVE) != 0);
    });
}

BOOL WaitMessage()
{
    return Guarded(FALSE, [] {
        Queue::Own().Wait();
        return TRUE;
    });
}

BOOL TranslateMessage(const MSG*)
{
    return FALSE;
}

LRESULT DispatchMessageA(const MSG* message)
{
    if (message->message == WM_TIMER && message->lParam) {
        const auto procedure = reinterpret_cast<TIMERPROC>(message->lParam);
        Queue* const queue = Queue::OwnIfAny();
        if (queue && queue->Calls(procedure))
            procedure(message->hwnd, WM_TIMER, message->wParam, message->time);
        return 0;
    }
    if (!message->hwnd)
        return 0;
    return Guarded(LRESULT(0), [&] {
        const WindowReference window = FindOwnWindow(message->hwnd);
        if (!IsOwnThreads(window))
            Fail(ERROR_INVALID_WINDOW_HANDLE);
        return CallWindow(window, message->message, message->wParam, message->lParam);
    });
}

LRESULT DefWindowProcA(HWND window, UINT message, WPARAM, LPARAM)
{
    if (message == WM_CLOSE)
        DestroyWindow(window);
    return message == WM_NCCREATE;
}

UINT_PTR SetTimer(HWND handle, UINT_PTR id, UINT period, TIMERPROC procedure)
{
    return Guarded(UINT_PTR(0), [&] {
        if (handle && !IsOwnThreads(FindOwnWindow(handle)))
            Fail(ERROR_INVALID_HANDLE);
        return Queue::Own().SetTimer(handle, id, period, procedure);
    });
}

BOOL KillTimer(HWND handle, UINT_PTR id)
{
    return Guarded(FALSE, [&]() -> BOOL {
        if (handle && !IsOwnThreads(FindOwnWindow(handle)))
            Fail(ERROR_INVALID_WINDOW_HANDLE);
        Queue* const queue = Queue::OwnIfAny();
        return Finish(queue && queue->KillTimer(handle, id) ? 0 : ERROR_INVALID_PARAMETER);
    });
}
} // namespace winapi
