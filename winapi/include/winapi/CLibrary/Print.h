// winapi/CLibrary/Print.h: bounded formatted printing with the directives of the platform's C library.
//
// %s takes text of the format's own width and %S of the other one (%hs always 8-bit, %ls and %ws
// always wide); likewise %c and %C; %ll, %I64, %I32, %I, %h, %j, %t, %z are size prefixes of
// integers. Text of the other width is converted as in the initial locale of the C library: a unit
// above 255 can't be converted; a text with one makes the call fail, a character prints as nothing.
// Null text prints as (null), %p as all its hexadecimal digits in upper case; exponents have three
// digits; halves are rounded away from zero; infinity and what is no number read 1.#INF, 1.#QNAN,
// -1.#IND, filled and rounded as if they were digits. %n stores nothing. %L takes a number of the
// host's long double, which is printed as a double. A letter without a meaning stands for itself.
#pragma once

#include <cstdarg>
#include <cstddef>

#include "winapi/Base/Constants.h"

namespace winapi
{
// At most `count` characters are stored, with a terminator only where there is room for it. Result:
// characters without the terminator; -1 when the text does not fit (the first `count` are then
// stored) or can't be converted. A null buffer counts alone. Allocates nothing; the arguments are
// copied before they are read.
WINAPI_EXPORT int _vsnprintf(char* buffer, std::size_t count, const char* format, va_list args);
WINAPI_EXPORT int _vsnwprintf(WCHAR* buffer, std::size_t count, const WCHAR* format, va_list args);
} // namespace winapi
