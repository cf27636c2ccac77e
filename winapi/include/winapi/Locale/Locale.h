// winapi/Locale/Locale.h: which locales there are, and which are the process's and the thread's own.
//
// A locale is known by its id: the language in the low 16 bits (the primary one in their low 10),
// a way of sorting above. LOCALE_NEUTRAL (0), LOCALE_USER_DEFAULT and LOCALE_SYSTEM_DEFAULT stand
// for the process's locale, which is that of LC_ALL, LC_CTYPE or LANG as they are when somebody
// asks first; C, POSIX and unknown names are English of the United States.
#pragma once

#include "winapi/Base/Constants.h"

using LANGID = WORD;
using LCID = DWORD;
using LOCALE_ENUMPROCA = BOOL (*)(LPSTR);
using LOCALE_ENUMPROCW = BOOL (*)(LPWSTR);

namespace winapi
{
constexpr LCID LOCALE_NEUTRAL = 0x0000;
constexpr LCID LOCALE_INVARIANT = 0x007F;
constexpr LCID LOCALE_USER_DEFAULT = 0x0400;
constexpr LCID LOCALE_SYSTEM_DEFAULT = 0x0800;
constexpr DWORD LCID_INSTALLED = 1;
constexpr DWORD LCID_SUPPORTED = 2;
constexpr WORD SORT_DEFAULT = 0;

constexpr WORD PRIMARYLANGID(unsigned language)
{
    return static_cast<WORD>(language & 0x3FF);
}
constexpr WORD SUBLANGID(unsigned language)
{
    return static_cast<WORD>(static_cast<WORD>(language) >> 10);
}
constexpr LCID MAKELCID(unsigned language, unsigned sort)
{
    return static_cast<LCID>(static_cast<WORD>(sort)) << 16 | static_cast<WORD>(language);
}

// The process's locale, and its language.
WINAPI_EXPORT LCID GetSystemDefaultLCID();
WINAPI_EXPORT LCID GetUserDefaultLCID();
WINAPI_EXPORT LANGID GetSystemDefaultLangID();
WINAPI_EXPORT LANGID GetUserDefaultLangID();

// The calling thread's locale: the process's until it is set. Setting an id that IsValidLocale
// refuses: 0 and ERROR_INVALID_PARAMETER (87); the ids that stand for the process's locale are
// taken as that.
WINAPI_EXPORT LCID GetThreadLocale();
WINAPI_EXPORT BOOL SetThreadLocale(LCID Locale);

// Whether there are data for the locale: 255 locales, their languages without a region, and other
// ways of sorting. Those that are supported are installed as well: nothing has to be installed for
// one. The ids that stand for the process's locale are no locales. No last error.
WINAPI_EXPORT BOOL IsValidLocale(LCID Locale, DWORD dwFlags);

// Calls back for each of the 255 locales, with its id as eight hexadecimal digits, until the
// callback answers 0. Result 1; without a callback 0 and ERROR_INVALID_PARAMETER (87).
WINAPI_EXPORT BOOL EnumSystemLocalesW(LOCALE_ENUMPROCW lpLocaleEnumProc, DWORD dwFlags);
WINAPI_EXPORT BOOL EnumSystemLocalesA(LOCALE_ENUMPROCA lpLocaleEnumProc, DWORD dwFlags);
} // namespace winapi
