// winapi/Process/Clock.h: the tick count.
#pragma once

#include "winapi/Base/Constants.h"

namespace winapi
{
// Milliseconds since some moment in the past; begins anew after 49.7 days. No change of the host's
// time moves it.
WINAPI_EXPORT DWORD GetTickCount();
} // namespace winapi
