// winapi/Locale/Calendar.cpp
#include "winapi/Locale/Calendar.h"

#include "Errors/Failure.h"
#include "Locale/LocaleData.h"
#include "Locale/LocaleIds.h"
#include "Locale/LocaleTexts.h"
#include "Locale/Result.h"
#include "winapi/Locale/LocaleInfo.h"
#include "winapi/Text/CodePage.h"

#include <algorithm>
#include <cstdio>
#include <iterator>

namespace winapi
{
namespace
{
constexpr CALID LAST_CALENDAR = CAL_UMALQURA;

// Whether the locale uses a calendar: the Gregorian one does everybody.
bool Uses(int locale, CALID calendar)
{
    const BYTE* list = CalendarsOf(static_cast<unsigned>(locale));
    while (*list && *list != calendar)
        ++list;
    return calendar == CAL_GREGORIAN || *list;
}

// False with the last error set.
bool NameOf(int locale, CALID calendar, UINT page, char* text, int size)
{
    const LocaleTexts* const texts = TextsOf(static_cast<unsigned>(locale));
    if (!texts)
        return false;
    const auto* const end = std::end(namedCalendars);
    const auto* const found = std::find(std::begin(namedCalendars), end, calendar);
    return HandOverIn(page,
                      found == end
                          ? WideView()
                          : (*texts)[CALENDARS + static_cast<unsigned>(found - namedCalendars)],
                      text, size) > 0;
}

// Result: what the callback answers; 0 with the last error set when there is nothing to tell.
BOOL Tell(CALINFO_ENUMPROCA call, int locale, CALID calendar, CALTYPE type)
{
    char text[256];
    const UINT page = type & LOCALE_USE_CP_ACP ? GetACP() : AnsiPageOf(locale);
    if ((type & 0xFFFF) == CAL_ICALINTVALUE)
        std::snprintf(text, sizeof text, "%u", calendar);
    else if (!NameOf(locale, calendar, page, text, sizeof text))
        return FALSE;
    return call(text);
}
} // namespace

BOOL EnumCalendarInfoA(CALINFO_ENUMPROCA lpCalInfoEnumProc, LCID Locale, CALID Calendar,
                       CALTYPE CalType)
{
    const int locale = PlaceOf(Locale);
    if (locale < 0)
        return FALSE;
    if (!lpCalInfoEnumProc || (Calendar > LAST_CALENDAR && Calendar != ENUM_ALL_CALENDARS))
        return Finish(ERROR_INVALID_PARAMETER);
    const DWORD kind = CalType & ~(LOCALE_NOUSEROVERRIDE | LOCALE_USE_CP_ACP);
    if (kind != CAL_ICALINTVALUE && kind != CAL_SCALNAME)
        SetLastError(ERROR_INVALID_FLAGS);
    else if (Calendar == ENUM_ALL_CALENDARS)
        for (const BYTE* list = CalendarsOf(static_cast<unsigned>(locale));
             *list && Tell(lpCalInfoEnumProc, locale, *list, CalType);)
            ++list;
    else if (Uses(locale, Calendar))
        Tell(lpCalInfoEnumProc, locale, Calendar, CalType);
    else
        SetLastError(ERROR_INVALID_PARAMETER);
    return TRUE;
}
} // namespace winapi
