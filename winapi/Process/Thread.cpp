// winapi/Process/Thread.cpp
#include "winapi/Process/Thread.h"

#include "Base/Posix.h"

namespace winapi
{
DWORD GetCurrentThreadId()
{
    return static_cast<DWORD>(posix.gettid());
}
} // namespace winapi
