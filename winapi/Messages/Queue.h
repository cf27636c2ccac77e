// winapi/Messages/Queue.h: what waits for a thread: messages, timers, connections of others.
#pragma once

#include "Messages/Windows.h"

#include <deque>
#include <list>

namespace winapi
{
class Queue
{
public:
    Queue();
    ~Queue();
    Queue(const Queue&) = delete;
    Queue& operator=(const Queue&) = delete;

    // The thread's, which is made at need; the second gives null while there is none.
    static Queue& Own();
    static Queue* OwnIfAny();

    // The name of the socket, which listens from then on; nothing, with the last error set, if that
    // fails.
    const std::string& Socket();

    // False, with the last error set, when there are too many.
    bool Post(const MSG& message, bool isImported);
    bool Peek(MSG& found, HWND window, UINT first, UINT last, bool remove);
    void Wait();
    // Waits until the connection has something, or for that long (-1: without an end), while it
    // handles what is sent to the thread. False when the time is out.
    static bool Await(int connection, int milliseconds);

    // 0, with the last error set, when there are too many.
    UINT_PTR SetTimer(HWND window, UINT_PTR id, UINT period, TIMERPROC procedure);
    bool KillTimer(HWND window, UINT_PTR id);
    // Whether a timer calls that.
    bool Calls(TIMERPROC procedure) const;
    // Forgets what waits for a window that is gone.
    void Purge(HWND window);

    // Of a forked child: closes what the parent listens to.
    static void ForgetAll();

private:
    struct Waiting
    {
        MSG message;
        bool isImported;
    };
    struct Connection
    {
        Descriptor socket;
        pid_t process;
        long long until; // When it is dropped unless its record has come.
    };
    struct Timer
    {
        HWND window;
        UINT_PTR id;
        UINT period;
        TIMERPROC procedure;
        long long due;
        bool isPending;
    };

    bool IsFull() const;
    bool TakeAt(std::list<Connection>::iterator& place);
    bool TakeOne();
    void TakeAll();
    void Handle(const Connection& connection, const Letter& letter);
    void HandlePosted(const Connection& connection, const Letter& letter);
    void HandleSent(const Connection& connection, const Letter& letter);
    void CheckTimers();
    long long NextDue() const;
    void Poll(int connection, int milliseconds);
    Timer* FindTimer(HWND window, UINT_PTR id);
    UINT_PTR NextTimer();
    bool PeekTimer(MSG& found, HWND window, bool remove);

    Descriptor listener;
    std::string socket;
    std::list<Connection> connections;
    std::deque<Waiting> waiting;
    std::list<Timer> timers;
    UINT_PTR lastTimer = 0; // Numbers of timers without a window count downwards.
    bool isNews = false;    // Something has come since the last look.
    bool isDeaf = false;    // A connection waits that couldn't be accepted.
};
} // namespace winapi
