// winapi/Locale/Result.h: how the services of locales hand over their texts. Internal.
#pragma once

#include "winapi/Base/Types.h"

#include <string_view>

namespace winapi
{
// What every such service refuses before it looks at anything else: a negative size, or a null
// buffer with a size. The last error is then ERROR_INVALID_PARAMETER (87).
bool IsRoomSound(const void* buffer, int size);

// Copies a text with its terminator. Result: units with the terminator; with size 0 the size that
// is needed; 0 with ERROR_INSUFFICIENT_BUFFER (122), and the buffer untouched, if it doesn't fit.
template <class Unit>
int HandOver(std::basic_string_view<Unit> text, Unit* buffer, int size);

// The same for a wide text that is converted to a code page.
int HandOverIn(UINT page, std::basic_string_view<WCHAR> text, char* buffer, int size);
} // namespace winapi
