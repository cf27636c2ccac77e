// winapi/Process/Debug.h: a stop for a debugger.
#pragma once

#include "winapi/Base/Constants.h"

namespace winapi
{
// Raises SIGTRAP in the calling thread: a debugger stops there; without one the process ends, unless
// it handles or ignores the signal.
WINAPI_EXPORT void DebugBreak();
} // namespace winapi
