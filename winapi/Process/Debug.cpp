// winapi/Process/Debug.cpp
#include "winapi/Process/Debug.h"

#include "Base/Posix.h"

#include <csignal>

namespace winapi
{
void DebugBreak()
{
    posix.raise(SIGTRAP);
}
} // namespace winapi
