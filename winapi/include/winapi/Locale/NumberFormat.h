// winapi/Locale/NumberFormat.h: numbers as text.
#pragma once

#include "winapi/Locale/Locale.h"

struct _numberfmtA
{
    UINT NumDigits;
    UINT LeadingZero; // 0: none before the separator.
    UINT Grouping;    // The sizes of groups as decimal digits; a 0 at the end stops repeating.
    LPSTR lpDecimalSep;
    LPSTR lpThousandSep;
    UINT NegativeOrder; // (1) -1 - 1 1- 1 -
};
using NUMBERFMTA = _numberfmtA;

namespace winapi
{
// Writes a number, given as digits with at most one point and perhaps a minus before them, by a
// format, or by the locale's own where that is null; rounds half away from zero on the digits.
// Result: bytes with the terminator; with size 0 the size needed. 0 with ERROR_INVALID_PARAMETER
// (87) for another text ("inf", "1e5", "+5"), an unknown locale, a format without separators, a
// negative number and an order above 4, a negative size, or a null buffer with a size; ERROR_INVALID_FLAGS (1004)
// for flags other than LOCALE_NOUSEROVERRIDE and LOCALE_USE_CP_ACP, or with a format;
// ERROR_INSUFFICIENT_BUFFER (122) for too little room. Texts are in the locale's ANSI code page.
WINAPI_EXPORT int GetNumberFormatA(LCID Locale, DWORD dwFlags, LPCSTR lpValue,
                                   const NUMBERFMTA* lpFormat, LPSTR lpNumberStr, int cchNumber);
} // namespace winapi
