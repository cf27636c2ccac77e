// winapi/Messages/Queue.cpp
#include "Messages/Queue.h"

#include "Base/Session.h"
#include "Errors/Failure.h"
#include "Messages/Exchange.h"
#include "Messages/WindowRows.h"
#include "winapi/Process/Clock.h"

#include <algorithm>
#include <atomic>

namespace winapi
{
namespace
{
constexpr std::size_t MOST_WAITING = 10000;
constexpr std::size_t MOST_TIMERS = 10000;    // Before one without a window is refused.
constexpr UINT_PTR HIGHEST_TIMER = 0x7FFF;    // Of those.
constexpr std::size_t MOST_CONNECTIONS = 256; // Without a record yet.
constexpr int PATIENCE = 5000;                // With a connection, in milliseconds.
constexpr int PAUSE = 100;                    // Where none can be accepted, in milliseconds.

std::vector<Queue*> queues; // Under windowsMutex.
std::atomic<unsigned> madeSockets;

thread_local Queue* own;

// Ends the queue with its thread.
struct Ender
{
    ~Ender() { delete own; }
    bool isAsked = false;
};
thread_local Ender ender;

long long Now()
{
    timespec now;
    posix.clock_gettime(CLOCK_MONOTONIC, &now);
    return now.tv_sec * 1000LL + now.tv_nsec / 1'000'000;
}
} // namespace

Queue::Queue()
{
    const std::lock_guard lock(windowsMutex);
    queues.push_back(this);
}

// What the thread has left goes with it; its windows get no message of that.
Queue::~Queue()
{
    own = nullptr;
    Guarded(0, [&] {
        const std::vector<HWND> windows = WindowsOf(this);
        ForgetWindows(windows);
        if (!windows.empty())
            RemoveWindows(windows);
        for (const HWND window : windows)
            Purge(window);
        return 0;
    });
    if (listener)
        posix.unlink((SessionFolder() + '/' + socket).c_str());
    const std::lock_guard lock(windowsMutex);
    std::erase(queues, this);
}

Queue& Queue::Own()
{
    if (!own) {
        MindForks();
        own = new Queue;
        ender.isAsked = true;
    }
    return *own;
}

Queue* Queue::OwnIfAny()
{
    return own;
}

const std::string& Queue::Socket()
{
    if (!listener) {
        if (const DWORD code = EnterSession()) {
            SetLastError(code);
            throw Failed();
        }
        socket = SessionMark() + '-' + std::to_string(++madeSockets);
        listener = Listen(socket);
        if (!listener) {
            SetLastError(CodeOf(errno));
            throw Failed();
        }
    }
    return socket;
}

void Queue::ForgetAll()
{
    for (Queue* queue : queues) {
        queue->listener.Reset();
        queue->connections.clear();
        queue->waiting.clear();
        queue->timers.clear();
    }
}

bool Queue::IsFull() const
{
    return waiting.size() >= MOST_WAITING;
}

bool Queue::Post(const MSG& message, bool isImported)
{
    if (IsFull())
        return Finish(ERROR_NOT_ENOUGH_QUOTA);
    waiting.push_back({message, isImported});
    waiting.back().message.time = GetTickCount();
    isNews = true;
    return true;
}

// ---- What comes from others ---------------------------------------------------------------

// Handles the record of a connection, which is then out of the list: what is called may come here
// again. False when there is none; the place is then the next one.
bool Queue::TakeAt(std::list<Connection>::iterator& place)
{
    Letter letter;
    const Arrival arrival = ReceiveLetter(place->socket.Get(), letter);
    if (arrival == Arrival::NOTHING && place->until > Now()) {
        ++place;
        return false;
    }
    const Connection connection = std::move(*place);
    place = connections.erase(place);
    if (arrival == Arrival::LETTER)
        Handle(connection, letter);
    return arrival == Arrival::LETTER;
}

// Handles the first record that is there. False when there is none. Messages stay in the backlog
// while there is no room for them here.
bool Queue::TakeOne()
{
    for (auto place = connections.begin(); place != connections.end();)
        if (TakeAt(place))
            return true;
    isDeaf = false;
    while (listener && !IsFull()) {
        Connection next{Descriptor(), 0, Now() + PATIENCE};
        next.socket = Accept(listener.Get(), next.process);
        if (!next.socket) {
            isDeaf = errno != EAGAIN;
            return false;
        }
        auto place = connections.insert(connections.end(), std::move(next));
        if (TakeAt(place))
            return true;
        if (connections.size() > MOST_CONNECTIONS)
            connections.pop_front();
    }
    return false;
}

void Queue::TakeAll()
{
    for (std::size_t count = 0; count < MOST_WAITING && TakeOne();)
        ++count;
}

void Queue::Handle(const Connection& connection, const Letter& letter)
{
    if (letter.record.kind == Record::SEND)
        HandleSent(connection, letter);
    else
        HandlePosted(connection, letter);
}

void Queue::HandlePosted(const Connection& connection, const Letter& letter)
{
    const Record& record = letter.record;
    MSG message = {};
    message.hwnd = WindowOf(record.window);
    message.message = record.message;
    message.wParam = static_cast<WPARAM>(record.first);
    message.lParam = static_cast<LPARAM>(record.second);
    const WindowReference window = FindOwnWindow(message.hwnd);
    if (!window || window->queue != this)
        return;
    const bool isImported = record.kind == Record::PARTS;
    // Nobody else may name what is in this process's hands.
    const bool mayCome =
        isImported ? Import(letter, message.lParam)
                   : record.kind == Record::POST &&
                         (!HasParts(record.message) || connection.process == posix.getpid());
    if (mayCome && !Post(message, isImported) && isImported)
        Discard(message.message, message.lParam);
}

void Queue::HandleSent(const Connection& connection, const Letter& letter)
{
    const Record& record = letter.record;
    const WindowReference window = FindOwnWindow(WindowOf(record.window));
    if (!window || window->queue != this)
        return;
    Letter answer;
    answer.record.kind = Record::ANSWER;
    answer.record.second = static_cast<std::uint64_t>(
        CallWindow(window, record.message, static_cast<WPARAM>(record.first),
                   static_cast<LPARAM>(record.second)));
    SendLetter(connection.socket.Get(), answer);
}

// ---- Waiting ------------------------------------------------------------------------------

// Until something may have come, on the connection as well if there is one.
void Queue::Poll(int connection, int milliseconds)
{
    std::vector<pollfd> list;
    if (connection >= 0)
        list.push_back({connection, POLLIN, 0});
    // A connection that can't be accepted stays there, and would end each wait at once.
    if (listener && !IsFull() && !isDeaf)
        list.push_back({listener.Get(), POLLIN, 0});
    for (const Connection& waits : connections)
        list.push_back({waits.socket.Get(), POLLIN, 0});
    const int longest = isDeaf ? PAUSE : connections.empty() ? INT32_MAX : PATIENCE;
    if (longest < INT32_MAX && (milliseconds < 0 || milliseconds > longest))
        milliseconds = longest;
    posix.poll(list.data(), list.size(), milliseconds);
}

bool Queue::Await(int connection, int milliseconds)
{
    const long long until = milliseconds < 0 ? -1 : Now() + milliseconds;
    for (;;) {
        if (own)
            own->TakeAll();
        pollfd ready{connection, POLLIN, 0};
        if (posix.poll(&ready, 1, 0) > 0)
            return true;
        const long long rest = until < 0 ? -1 : until - Now();
        if (until >= 0 && rest <= 0)
            return false;
        if (own)
            own->Poll(connection, static_cast<int>(rest));
        else
            posix.poll(&ready, 1, static_cast<int>(rest));
    }
}

void Queue::Wait()
{
    for (;;) {
        TakeAll();
        CheckTimers();
        if (isNews)
            return;
        const long long due = NextDue();
        const long long rest = std::clamp(due - Now(), 0LL, static_cast<long long>(INT32_MAX));
        Poll(-1, due < 0 ? -1 : static_cast<int>(rest));
    }
}

bool Queue::Peek(MSG& found, HWND window, UINT first, UINT last, bool remove)
{
    TakeAll();
    CheckTimers();
    isNews = false;
    const auto isWanted = [&](UINT message) {
        return (!first && !last) || (message >= first && message <= last);
    };
    for (auto place = waiting.begin(); place != waiting.end(); ++place) {
        const MSG& message = place->message;
        if ((window && message.hwnd != window) || !isWanted(message.message))
            continue;
        found = message;
        if (remove)
            waiting.erase(place);
        return true;
    }
    return isWanted(WM_TIMER) && PeekTimer(found, window, remove);
}

void Queue::Purge(HWND window)
{
    std::erase_if(waiting, [&](const Waiting& waits) {
        const MSG& message = waits.message;
        if (message.hwnd != window)
            return false;
        if (waits.isImported)
            Discard(message.message, message.lParam);
        return true;
    });
    std::erase_if(timers, [&](const Timer& timer) { return timer.window == window; });
    FreeLent(window);
}

// ---- Timers -------------------------------------------------------------------------------

Queue::Timer* Queue::FindTimer(HWND window, UINT_PTR id)
{
    for (Timer& timer : timers)
        if (timer.window == window && timer.id == id)
            return &timer;
    return nullptr;
}

// A number that no timer without a window has; there is one below MOST_TIMERS of them.
UINT_PTR Queue::NextTimer()
{
    do
        lastTimer = lastTimer > 1 ? lastTimer - 1 : HIGHEST_TIMER;
    while (FindTimer(nullptr, lastTimer));
    return lastTimer;
}

UINT_PTR Queue::SetTimer(HWND window, UINT_PTR id, UINT period, TIMERPROC procedure)
{
    period = std::clamp(period, USER_TIMER_MINIMUM, USER_TIMER_MAXIMUM);
    Timer* timer = FindTimer(window, id);
    if (!timer) {
        if (!window && timers.size() >= MOST_TIMERS)
            return Finish(ERROR_NOT_ENOUGH_QUOTA);
        if (!window)
            id = NextTimer();
        timer = &timers.emplace_back();
    }
    *timer = {window, id, period, procedure, Now() + period, false};
    // The number may be 0, the answer not.
    return id + !id;
}

bool Queue::KillTimer(HWND window, UINT_PTR id)
{
    return std::erase_if(timers, [&](const Timer& timer) {
               return timer.window == window && timer.id == id;
           }) != 0;
}

bool Queue::Calls(TIMERPROC procedure) const
{
    return std::any_of(timers.begin(), timers.end(),
                       [&](const Timer& timer) { return timer.procedure == procedure; });
}

void Queue::CheckTimers()
{
    const long long now = Now();
    for (Timer& timer : timers)
        if (!timer.isPending && timer.due <= now)
            timer.isPending = isNews = true;
}

// -1 for none.
long long Queue::NextDue() const
{
    long long next = -1;
    for (const Timer& timer : timers)
        if (!timer.isPending && (next < 0 || timer.due < next))
            next = timer.due;
    return next;
}

bool Queue::PeekTimer(MSG& found, HWND window, bool remove)
{
    for (Timer& timer : timers) {
        if (!timer.isPending || (window && timer.window != window))
            continue;
        found = {};
        found.hwnd = timer.window;
        found.message = WM_TIMER;
        found.wParam = timer.id;
        found.lParam = reinterpret_cast<LPARAM>(timer.procedure);
        found.time = GetTickCount();
        if (remove) {
            timer.isPending = false;
            timer.due = Now() + timer.period;
        }
        return true;
    }
    return false;
}
} // namespace winapi
