// winapi/Locale/Locale.cpp
#include "winapi/Locale/Locale.h"

#include "Base/ProcessLocale.h"
#include "Errors/Failure.h"
#include "Locale/LocaleIds.h"
#include "winapi/Text/CodePage.h"

#include <algorithm>
#include <cstdio>

namespace winapi
{
namespace
{
thread_local LCID threadLocale; // 0: the process's.

int ProcessPlace()
{
    return static_cast<int>(&ProcessLocale() - locales);
}

bool IsProcessLocale(LCID lcid)
{
    return lcid == LOCALE_NEUTRAL || lcid == LOCALE_USER_DEFAULT || lcid == LOCALE_SYSTEM_DEFAULT;
}

template <class Unit>
BOOL Enumerate(BOOL (*call)(Unit*))
{
    if (!call)
        return Finish(ERROR_INVALID_PARAMETER);
    for (unsigned i = 0; i + 1 < localeCount; ++i) {
        char digits[9];
        std::snprintf(digits, sizeof digits, "%08x", static_cast<unsigned>(locales[i].lcid));
        Unit text[sizeof digits];
        std::copy(digits, digits + sizeof digits, text);
        if (!call(text))
            break;
    }
    return TRUE;
}
} // namespace

int PlaceOf(LCID lcid)
{
    const int place = IsProcessLocale(lcid) ? ProcessPlace() : PlaceOfLocale(lcid);
    if (place < 0)
        SetLastError(ERROR_INVALID_PARAMETER);
    return place;
}

UINT AnsiPageOf(int locale)
{
    const WORD page = locales[locale].ansiPage;
    return page > CP_MACCP ? page : GetACP();
}

LCID GetSystemDefaultLCID()
{
    return ProcessLocale().lcid;
}

LCID GetUserDefaultLCID()
{
    return ProcessLocale().lcid;
}

LANGID GetSystemDefaultLangID()
{
    return ProcessLocale().lcid;
}

LANGID GetUserDefaultLangID()
{
    return ProcessLocale().lcid;
}

LCID GetThreadLocale()
{
    return threadLocale ? threadLocale : ProcessLocale().lcid;
}

BOOL SetThreadLocale(LCID Locale)
{
    const int place = PlaceOf(Locale);
    if (place >= 0)
        threadLocale = locales[place].lcid;
    return place >= 0;
}

BOOL IsValidLocale(LCID Locale, DWORD)
{
    return PlaceOfLocale(Locale) >= 0;
}

BOOL EnumSystemLocalesW(LOCALE_ENUMPROCW lpLocaleEnumProc, DWORD)
{
    return Enumerate(lpLocaleEnumProc);
}

BOOL EnumSystemLocalesA(LOCALE_ENUMPROCA lpLocaleEnumProc, DWORD)
{
    return Enumerate(lpLocaleEnumProc);
}
} // namespace winapi
