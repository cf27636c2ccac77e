// winapi/Text/TextTest.h: a guess whether bytes are UTF-16.
#pragma once

#include "winapi/Base/Constants.h"

namespace winapi
{
constexpr INT IS_TEXT_UNICODE_ASCII16 = 0x0001;
constexpr INT IS_TEXT_UNICODE_STATISTICS = 0x0002;
constexpr INT IS_TEXT_UNICODE_CONTROLS = 0x0004;
constexpr INT IS_TEXT_UNICODE_SIGNATURE = 0x0008;
constexpr INT IS_TEXT_UNICODE_REVERSE_ASCII16 = 0x0010;
constexpr INT IS_TEXT_UNICODE_REVERSE_STATISTICS = 0x0020;
constexpr INT IS_TEXT_UNICODE_REVERSE_CONTROLS = 0x0040;
constexpr INT IS_TEXT_UNICODE_REVERSE_SIGNATURE = 0x0080;
constexpr INT IS_TEXT_UNICODE_ILLEGAL_CHARS = 0x0100;
constexpr INT IS_TEXT_UNICODE_ODD_LENGTH = 0x0200;
constexpr INT IS_TEXT_UNICODE_NULL_BYTES = 0x1000;
constexpr INT IS_TEXT_UNICODE_UNICODE_MASK = 0x000F;
constexpr INT IS_TEXT_UNICODE_REVERSE_MASK = 0x00F0;
constexpr INT IS_TEXT_UNICODE_NOT_UNICODE_MASK = 0x0F00;
constexpr INT IS_TEXT_UNICODE_NOT_ASCII_MASK = 0xF000;

// Tests iSize bytes, at any address, and leaves the last error alone. lpiResult may be null; else it
// holds the tests to make, and then those that are true. Supplied are STATISTICS (most units are
// below 100h), CONTROLS and REVERSE_CONTROLS (a unit is a usual control character, a blank or zero),
// the two SIGNATUREs (the first unit), ODD_LENGTH and NULL_BYTES (a unit has a zero byte). A zero at
// the end isn't looked at. Result: whether a test is true, and none of those that speak against
// UTF-16, low byte first; FALSE for less than two bytes.
WINAPI_EXPORT BOOL IsTextUnicode(LPCVOID lpv, INT iSize, INT* lpiResult);
} // namespace winapi
