// tests/Support/SmallStack.cpp
#include "Support/SmallStack.h"

#include <cstdio>
#include <cstdlib>

#ifdef _WIN32
#include <windows.h>
#else
#include <pthread.h>
#endif

namespace
{
constexpr unsigned STACK_SIZE = 256 * 1024;

void Check(bool good)
{
    if (good)
        return;
    std::fprintf(stderr, "no thread with a small stack\n");
    std::abort();
}

#ifdef _WIN32
DWORD WINAPI Run(void* work)
{
    (*static_cast<const std::function<void()>*>(work))();
    return 0;
}

void RunThread(void* work)
{
    // Without the flag the stack would be as large as the program's own, of which so much is there.
    const HANDLE thread =
        CreateThread(nullptr, STACK_SIZE, Run, work, STACK_SIZE_PARAM_IS_A_RESERVATION, nullptr);
    Check(thread);
    WaitForSingleObject(thread, INFINITE);
    CloseHandle(thread);
}
#else
void* Run(void* work)
{
    (*static_cast<const std::function<void()>*>(work))();
    return nullptr;
}

void RunThread(void* work)
{
    pthread_attr_t attributes;
    pthread_t thread;
    Check(pthread_attr_init(&attributes) == 0);
    Check(pthread_attr_setstacksize(&attributes, STACK_SIZE) == 0);
    Check(pthread_create(&thread, &attributes, Run, work) == 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
}
#endif
} // namespace

void OnSmallStack(const std::function<void()>& work)
{
    RunThread(const_cast<std::function<void()>*>(&work));
}
