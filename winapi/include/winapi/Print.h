// winapi/Print.h: bounded formatted printing with the directives of the platform's C library.
//
// %s takes text of the format's own width and %S of the other one (%hs always 8-bit, %ls and %ws always wide);
// likewise %c and %C; %I64 and %I32 are size prefixes. Text of the other width is converted as in the initial
// locale of the C library: a unit above 255 can't be converted and makes the call fail with -1.
#pragma once

#include <cstdarg>
#include <cstddef>

#include "Types.h"

namespace winapi
{
// At most `count` characters are stored, with a terminator only where there is room for it. Result: characters
// stored without the terminator, or -1 when the text does not fit (the first `count` are then stored).
// Allocates nothing.
WINAPI_EXPORT int _vsnprintf(char* buffer, std::size_t count, const char* format, va_list args);
WINAPI_EXPORT int _vsnwprintf(WCHAR* buffer, std::size_t count, const WCHAR* format, va_list args);
} // namespace winapi
