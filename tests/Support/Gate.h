// tests/Support/Gate.h: a place where threads wait until enough of them have come.
#pragma once

#include <condition_variable>
#include <mutex>

// What std::latch is; that one hangs in programs of the Windows targets.
class Gate
{
public:
    explicit Gate(int count) : left(count) {}

    void Arrive()
    {
        const std::lock_guard lock(mutex);
        if (--left == 0)
            opened.notify_all();
    }
    void Wait()
    {
        std::unique_lock lock(mutex);
        opened.wait(lock, [this] { return left <= 0; });
    }
    void ArriveAndWait()
    {
        Arrive();
        Wait();
    }

private:
    std::mutex mutex;
    std::condition_variable opened;
    int left;
};
