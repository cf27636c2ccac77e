// winapi/Locale/Calendar.h: the calendars of a locale.
#pragma once

#include "winapi/Locale/Locale.h"

using CALID = DWORD;
using CALTYPE = DWORD;
using CALINFO_ENUMPROCA = BOOL (*)(LPSTR);

namespace winapi
{
constexpr CALID CAL_GREGORIAN = 1;
constexpr CALID CAL_GREGORIAN_US = 2;
constexpr CALID CAL_JAPAN = 3;
constexpr CALID CAL_TAIWAN = 4;
constexpr CALID CAL_KOREA = 5;
constexpr CALID CAL_HIJRI = 6;
constexpr CALID CAL_THAI = 7;
constexpr CALID CAL_HEBREW = 8;
constexpr CALID CAL_PERSIAN = 22;
constexpr CALID CAL_UMALQURA = 23;
constexpr CALID ENUM_ALL_CALENDARS = 0xFFFFFFFF;
constexpr CALTYPE CAL_ICALINTVALUE = 1;
constexpr CALTYPE CAL_SCALNAME = 2;

// Calls back with the name of a calendar, in the locale's language and ANSI code page, if the
// locale uses that calendar: the Gregorian one, or one of its list. Result 1, also where there is
// nothing to tell and nothing is called: the last error is then ERROR_INVALID_PARAMETER (87) for a
// calendar that the locale doesn't use, ERROR_INVALID_FLAGS (1004) for a kind other than the number
// (CAL_ICALINTVALUE) and the name, ERROR_MOD_NOT_FOUND (126) without the library that has the
// names. 0 with ERROR_INVALID_PARAMETER for an unknown locale, a calendar above 23 or without a
// callback. ENUM_ALL_CALENDARS calls back for each of the locale's until the callback answers 0.
WINAPI_EXPORT BOOL EnumCalendarInfoA(CALINFO_ENUMPROCA lpCalInfoEnumProc, LCID Locale,
                                     CALID Calendar, CALTYPE CalType);
} // namespace winapi
