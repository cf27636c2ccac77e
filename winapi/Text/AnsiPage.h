// winapi/Text/AnsiPage.h: the code pages of the process's locale.
#pragma once

#include "winapi/Base/Types.h"

namespace winapi
{
// The page that a number stands for: CP_ACP to CP_THREAD_ACP (0 to 3) are words.
UINT PageOf(UINT page);
} // namespace winapi
