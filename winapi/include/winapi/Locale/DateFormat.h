// winapi/Locale/DateFormat.h: dates and times as text.
//
// A picture has fields, runs of one letter; what stands between single quotes is literal ('' in it
// is one quote, and an open one ends with the picture), as is any other character.
//
//   d dd        day, its number           h hh  hour of twelve     s ss  second
//   ddd dddd    its name, short and long  H HH  hour of the day    t     day period, one unit
//   M MM        month, its number         m mm  minute             tt    whole day period
//   MMM MMMM    its name, short and long
//   y yy, yyyy  year, two digits and all  g     era
//
// Longer runs are as the longest here. A month's name takes its genitive form, where the language
// has one, when a day's number stands in the picture.
#pragma once

#include "winapi/Locale/LocalTime.h"
#include "winapi/Locale/Locale.h"

namespace winapi
{
constexpr DWORD DATE_SHORTDATE = 0x00000001;
constexpr DWORD DATE_LONGDATE = 0x00000002;
constexpr DWORD DATE_USE_ALT_CALENDAR = 0x00000004;
constexpr DWORD DATE_YEARMONTH = 0x00000008;
constexpr DWORD TIME_NOMINUTESORSECONDS = 0x00000001;
constexpr DWORD TIME_NOSECONDS = 0x00000002;
constexpr DWORD TIME_NOTIMEMARKER = 0x00000004;
constexpr DWORD TIME_FORCE24HOURFORMAT = 0x00000008;

// Null for the time is the present moment; a null picture is the locale's own: the short date, or
// with flags the long one or year and month. An empty picture gives an empty text. The day of the
// week is reckoned, not read. Result: units or bytes with the terminator; with size 0 the size
// needed. 0 with ERROR_INVALID_PARAMETER (87) for an unknown locale, a date that isn't one (years
// 1601 to 30827), a negative size, or a null buffer with a size; ERROR_INVALID_FLAGS (1004) for
// two of the pictures at once, or one with a picture of the caller's; ERROR_INSUFFICIENT_BUFFER
// (122) for too little room; ERROR_MOD_NOT_FOUND (126) and ERROR_NOT_ENOUGH_MEMORY (8) where the
// locale's names can't be had. DATE_USE_ALT_CALENDAR changes nothing.
//
// The 8-bit calls take pictures and give text in the locale's ANSI code page.
WINAPI_EXPORT int GetDateFormatW(LCID Locale, DWORD dwFlags, const SYSTEMTIME* lpDate,
                                 LPCWSTR lpFormat, LPWSTR lpDateStr, int cchDate);
WINAPI_EXPORT int GetDateFormatA(LCID Locale, DWORD dwFlags, const SYSTEMTIME* lpDate,
                                 LPCSTR lpFormat, LPSTR lpDateStr, int cchDate);

// The same for the time; the date in it isn't looked at. TIME_NOMINUTESORSECONDS, TIME_NOSECONDS
// and TIME_NOTIMEMARKER leave fields out, with what stands before them; TIME_FORCE24HOURFORMAT
// makes `h` an `H`. They go with a picture of the caller's as well.
WINAPI_EXPORT int GetTimeFormatW(LCID Locale, DWORD dwFlags, const SYSTEMTIME* lpTime,
                                 LPCWSTR lpFormat, LPWSTR lpTimeStr, int cchTime);
WINAPI_EXPORT int GetTimeFormatA(LCID Locale, DWORD dwFlags, const SYSTEMTIME* lpTime,
                                 LPCSTR lpFormat, LPSTR lpTimeStr, int cchTime);
} // namespace winapi
