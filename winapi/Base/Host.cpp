// winapi/Base/Host.cpp
#include "Base/Host.h"

#include "winapi/Errors/LastError.h"

#include <mutex>

#include <pthread.h>

namespace winapi
{
namespace
{
constinit std::mutex mutex; // What follows.
const HostTable* loaded;
void (*closeBeforeFork)();

void Lock()
{
    mutex.lock();
    if (closeBeforeFork)
        closeBeforeFork();
}

void Unlock()
{
    mutex.unlock();
}

// As early as this: a fork that has begun before asks for nothing that is arranged meanwhile.
__attribute__((constructor(200))) void MakeForksWait()
{
    pthread_atfork(Lock, Unlock, Unlock);
}
} // namespace

Host::Host()
{
    mutex.lock();
    if (!loaded)
        loaded = LoadHost();
    table = loaded;
    if (!table)
        SetLastError(ERROR_MOD_NOT_FOUND);
}

Host::~Host()
{
    mutex.unlock();
}

void Host::BeforeForks(void (*close)())
{
    closeBeforeFork = close;
}
} // namespace winapi
