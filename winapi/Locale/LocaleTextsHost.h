// winapi/Locale/LocaleTextsHost.h: the functions behind LocaleHost.
#pragma once

#include "Locale/LocaleTexts.h"

namespace winapi
{
bool ReadTexts(const char* tag, void* place,
               void (*put)(void* place, TextPlace text, const WCHAR* units, int count));

extern const LocaleHost localeHost;
} // namespace winapi
