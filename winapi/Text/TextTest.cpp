// winapi/Text/TextTest.cpp: a guess whether bytes are UTF-16.
//
// The tests are coarse, and every program that reads text by them knows their answers: they are what
// was measured on the platform, not what would guess best.
#include "winapi/Text/TextTest.h"

namespace winapi
{
namespace
{
constexpr INT AGAINST = IS_TEXT_UNICODE_REVERSE_MASK | IS_TEXT_UNICODE_NOT_UNICODE_MASK;

WCHAR UnitAt(const BYTE* bytes)
{
    return static_cast<WCHAR>(bytes[0] | bytes[1] << 8);
}

WCHAR Turned(WCHAR unit)
{
    return static_cast<WCHAR>(unit << 8 | unit >> 8);
}

bool IsControl(WCHAR unit)
{
    return unit == '\0' || unit == '\t' || unit == '\n' || unit == '\r' || unit == ' ';
}

INT SignatureOf(WCHAR first)
{
    return first == 0xFEFF   ? IS_TEXT_UNICODE_SIGNATURE
           : first == 0xFFFE ? IS_TEXT_UNICODE_REVERSE_SIGNATURE
                             : 0;
}

INT FactsOf(WCHAR unit)
{
    INT facts = 0;
    // The blank of East Asian text counts, and turned it doesn't.
    if (IsControl(unit) || unit == 0x3000)
        facts |= IS_TEXT_UNICODE_CONTROLS;
    if (IsControl(Turned(unit)))
        facts |= IS_TEXT_UNICODE_REVERSE_CONTROLS;
    if (unit < 0x100 || !(unit & 0xFF))
        facts |= IS_TEXT_UNICODE_NULL_BYTES;
    return facts;
}

INT FactsOf(const BYTE* bytes, INT count)
{
    if (!count)
        return 0;
    INT facts = SignatureOf(UnitAt(bytes));
    INT small = 0;
    for (INT i = 0; i < count; ++i) {
        const WCHAR unit = UnitAt(bytes + 2 * i);
        facts |= FactsOf(unit);
        small += unit < 0x100;
    }
    return small > count / 2 ? facts | IS_TEXT_UNICODE_STATISTICS : facts;
}
} // namespace

BOOL IsTextUnicode(LPCVOID text, INT size, INT* tests)
{
    const BYTE* const bytes = static_cast<const BYTE*>(text);
    INT facts = 0;
    if (size >= 2) {
        const INT used = bytes[size - 1] ? size : size - 1;
        facts = FactsOf(bytes, used / 2) | (size % 2 ? IS_TEXT_UNICODE_ODD_LENGTH : 0);
    }
    if (tests)
        *tests = facts &= *tests;
    return facts && !(facts & AGAINST);
}
} // namespace winapi
