// winapi/Locale/LocaleIds.h: what an id stands for. Internal.
#pragma once

#include "winapi/Locale/Locale.h"

namespace winapi
{
// The place of the locale in the table; the process's for the ids that stand for it. -1 with
// ERROR_INVALID_PARAMETER (87) for an id that there are no data for.
int PlaceOf(LCID lcid);

// The code page of a locale's narrow texts.
UINT AnsiPageOf(int locale);
} // namespace winapi
