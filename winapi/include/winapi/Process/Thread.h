// winapi/Process/Thread.h: thread identity and interlocked operations.
#pragma once

#include "winapi/Base/Constants.h"

namespace winapi
{
WINAPI_EXPORT DWORD GetCurrentThreadId();

// Atomic, sequentially consistent. Increment and decrement return the new value, exchange the old
// one.
inline LONG InterlockedIncrement(LONG volatile* Addend)
{
    return __atomic_add_fetch(Addend, 1, __ATOMIC_SEQ_CST);
}
inline LONG InterlockedDecrement(LONG volatile* Addend)
{
    return __atomic_sub_fetch(Addend, 1, __ATOMIC_SEQ_CST);
}
inline LONG InterlockedExchange(LONG volatile* Target, LONG Value)
{
    return __atomic_exchange_n(Target, Value, __ATOMIC_SEQ_CST);
}
} // namespace winapi
