// winapi/Text/CodePage.cpp: conversion between code pages and UTF-16.
#include "winapi/Text/CodePage.h"

#include <algorithm>
#include <cstring>
#include <iterator>

#include "Text/AnsiPage.h"
#include "Text/CodePageTables.h"
#include "Text/Utf.h"
#include "winapi/Errors/LastError.h"

namespace winapi
{
namespace
{
constexpr DWORD ALL_MB_FLAGS =
    MB_PRECOMPOSED | MB_COMPOSITE | MB_USEGLYPHCHARS | MB_ERR_INVALID_CHARS;
constexpr DWORD MB_FLAGS = MB_PRECOMPOSED | MB_ERR_INVALID_CHARS;
constexpr DWORD WC_FLAGS =
    WC_DISCARDNS | WC_SEPCHARS | WC_DEFAULTCHAR | WC_ERR_INVALID_CHARS | WC_NO_BEST_FIT_CHARS;

int Fail(DWORD error)
{
    SetLastError(error);
    return 0;
}

template <typename Unit>
int Finish(Coding coding, const Sink<Unit>& out)
{
    if (coding == Coding::DONE)
        return out.Count();
    return Fail(coding == Coding::ILL ? ERROR_NO_UNICODE_TRANSLATION : ERROR_INSUFFICIENT_BUFFER);
}

// The unit of the character at bytes and the character's code; moves behind it. A lead byte at the
// end or before a zero byte has the undefined unit and is a character of its own.
WCHAR ReadCharacter(const CodePage& page, const BYTE*& bytes, const BYTE* end, unsigned& code)
{
    code = *bytes++;
    const WCHAR unit = page.FromByte(static_cast<BYTE>(code));
    if (unit != NO_VALUE)
        return unit;
    if (bytes == end || !*bytes)
        return page.undefined;
    code = code << 8 | *bytes++;
    return page.FromPair(code);
}

// Whether a character gives the undefined unit without being the code of that unit, or a byte one
// of private use.
bool HasUndefined(const CodePageFacts& facts, const BYTE* bytes, int count)
{
    const CodePage page(facts);
    for (const BYTE* const end = bytes + count; bytes != end;) {
        unsigned code;
        const WCHAR unit = ReadCharacter(page, bytes, end, code);
        if ((unit == facts.undefinedUnit && code != facts.undefinedCode) ||
            (code < 0x100 && unit >= 0xE000 && unit <= 0xF8FF))
            return true;
    }
    return false;
}

// Characters that are looked at together; simple loops over so many the compiler makes a few
// instructions of.
constexpr int TOGETHER = 32;
constexpr int SHORT = 8;

// How many of the characters are ASCII in front of the first that isn't, in groups of SHORT.
template <typename Unit>
int CountAscii(const Unit* text, int count)
{
    int passed = 0;
    for (; count - passed >= SHORT; passed += SHORT) {
        unsigned all = 0;
        for (int i = 0; i < SHORT; ++i)
            all |= text[passed + i];
        if (all > 0x7F)
            break;
    }
    return passed;
}

// Whether it is worth while to count: a group of SHORT that begins and ends with ASCII.
template <typename Unit>
bool BeginsAscii(const Unit* text, int count)
{
    return *text < 0x80 && count >= SHORT && text[SHORT - 1] < 0x80;
}

template <typename From, typename To>
void Copy(const From* from, int count, To* to)
{
    for (int i = 0; i < count; ++i)
        to[i] = static_cast<To>(from[i]);
}

// The units of TOGETHER bytes that are ASCII or of the page's run; false if others are among them.
bool RunToUnits(const ByteRun run, const BYTE* bytes, WCHAR* units)
{
    const WCHAR distance = static_cast<WCHAR>(run.unit - run.first);
    BYTE others = 0;
    for (int i = 0; i < TOGETHER; ++i)
        others |= ((bytes[i] >= 0x80) & !run.HasByte(bytes[i])) ? 0xFF : 0;
    if (others)
        return false;
    for (int i = 0; i < TOGETHER; ++i)
        units[i] =
            static_cast<WCHAR>(bytes[i] + (bytes[i] >= 0x80 ? distance : static_cast<WCHAR>(0)));
    return true;
}

bool RunToBytes(const ByteRun run, const WCHAR* units, BYTE* bytes)
{
    const WCHAR distance = static_cast<WCHAR>(run.unit - run.first);
    WCHAR others = 0;
    for (int i = 0; i < TOGETHER; ++i)
        others |= ((units[i] >= 0x80) & !run.HasUnit(units[i])) ? 0xFF : 0;
    if (others)
        return false;
    for (int i = 0; i < TOGETHER; ++i)
        bytes[i] =
            static_cast<BYTE>(units[i] - (units[i] >= 0x80 ? distance : static_cast<WCHAR>(0)));
    return true;
}

int BytesToUnits(const CodePageFacts& facts, const BYTE* bytes, int count, WCHAR* units, int room)
{
    if (!room)
        return count;
    const CodePage page(facts);
    const int stored = std::min(count, room);
    for (int i = 0; i < stored;) {
        const bool whole = facts.hasAscii && stored - i >= TOGETHER;
        const int end = std::min(stored, i + TOGETHER);
        if (whole && RunToUnits(facts.run, bytes + i, units + i))
            i = end;
        for (; i < end; ++i)
            units[i] = page.FromByte(bytes[i]);
    }
    return count <= room ? count : Fail(ERROR_INSUFFICIENT_BUFFER);
}

// All of a text, for which there is room.
int AllPairsToUnits(const CodePageFacts& facts, const BYTE* bytes, int count, WCHAR* units)
{
    const CodePage page(facts);
    WCHAR* next = units;
    for (const BYTE* const end = bytes + count; bytes != end;) {
        if (facts.hasAscii && BeginsAscii(bytes, static_cast<int>(end - bytes))) {
            const int ascii = CountAscii(bytes, static_cast<int>(end - bytes));
            Copy(bytes, ascii, next);
            bytes += ascii;
            next += ascii;
            if (bytes == end)
                break;
        }
        unsigned code;
        *next++ = ReadCharacter(page, bytes, end, code);
    }
    return static_cast<int>(next - units);
}

int PairsToUnits(const CodePageFacts& facts, const BYTE* bytes, int count, WCHAR* units, int room)
{
    if (units && room >= count)
        return AllPairsToUnits(facts, bytes, count, units);
    const CodePage page(facts);
    int length = 0;
    for (const BYTE* const end = bytes + count; bytes != end; ++length) {
        unsigned code;
        const WCHAR unit = ReadCharacter(page, bytes, end, code);
        if (length < room)
            units[length] = unit;
        else if (room)
            return Fail(ERROR_INSUFFICIENT_BUFFER);
    }
    return length;
}

// What stands for units that a page lacks.
struct Default
{
    Default(const CodePageFacts& facts, const char* given)
    {
        if (!given)
            code = facts.defaultByte;
        else if (facts.HasPairs() && given[0] && given[1])
            code =
                static_cast<WCHAR>(static_cast<BYTE>(given[0]) << 8 | static_cast<BYTE>(given[1]));
        else
            code = static_cast<BYTE>(given[0]);
    }

    WCHAR code;
    bool used = false;
};

int UnitsToBytes(const CodePageFacts& facts, const WCHAR* units, int count, char* bytes, int room,
                 Default& other)
{
    const CodePage page(facts);
    const int looked = room ? std::min(count, room) : count;
    for (int i = 0; i < looked;) {
        const bool whole = facts.hasAscii && room && looked - i >= TOGETHER;
        const int end = std::min(looked, i + TOGETHER);
        if (whole && RunToBytes(facts.run, units + i, reinterpret_cast<BYTE*>(bytes) + i))
            i = end;
        for (; i < end; ++i) {
            WCHAR code = page.ToByte(units[i]);
            if (code == NO_VALUE) {
                code = other.code;
                other.used = true;
            }
            if (room)
                bytes[i] = static_cast<char>(code);
        }
    }
    return !room || count <= room ? count : Fail(ERROR_INSUFFICIENT_BUFFER);
}

// One unit after the other, in any page; exact asks for no best fits.
template <typename ToCode>
int UnitsToCodes(const CodePage& page, ToCode toCode, bool exact, const WCHAR* units, int count,
                 Sink<char>& out, Default& other)
{
    for (int i = 0; i < count; ++i) {
        WCHAR code = toCode(units[i]);
        if (code == NO_VALUE || (exact && page.FromCode(code) != units[i])) {
            code = other.code;
            other.used = true;
        }
        const char bytes[] = {static_cast<char>(code >> 8), static_cast<char>(code)};
        if (!(code < 0x100 ? out.Put(bytes[1]) : out.Put(bytes, 2)))
            return Fail(ERROR_INSUFFICIENT_BUFFER);
    }
    return out.Count();
}

// All of a text, for which there is room, best fits included.
int AllUnitsToPairs(const CodePageReverse& reverse, bool hasAscii, const WCHAR* units, int count,
                    char* bytes, Default& other)
{
    char* next = bytes;
    for (int i = 0; i < count;) {
        if (hasAscii && BeginsAscii(units + i, count - i)) {
            const int ascii = CountAscii(units + i, count - i);
            Copy(units + i, ascii, next);
            i += ascii;
            next += ascii;
            if (i == count)
                break;
        }
        WCHAR code = reverse.ToCode(units[i++]);
        if (code == NO_VALUE) {
            code = other.code;
            other.used = true;
        }
        if (code > 0xFF)
            *next++ = static_cast<char>(code >> 8);
        *next++ = static_cast<char>(code);
    }
    return static_cast<int>(next - bytes);
}

// Text of which a page of pairs has each unit as a byte of the same number: it needs no tables.
bool IsAsciiOn(const CodePageFacts& facts, const WCHAR* units, int count)
{
    return facts.hasAscii && std::all_of(units, units + count, [](WCHAR c) { return c < 0x80; });
}

int CopyAscii(const WCHAR* units, int count, char* bytes, int room)
{
    if (!room)
        return count;
    Copy(units, std::min(count, room), bytes);
    return count <= room ? count : Fail(ERROR_INSUFFICIENT_BUFFER);
}

int UnitsToPairs(const CodePageFacts& facts, bool exact, const WCHAR* units, int count, char* bytes,
                 int room, Default& other)
{
    const CodePageReverse* reverse = CodePageReverse::FindBuilt(facts);
    if (!reverse && IsAsciiOn(facts, units, count))
        return CopyAscii(units, count, bytes, room);
    if (!reverse)
        reverse = CodePageReverse::Find(facts);
    if (!reverse)
        return 0;
    if (!exact && room / 2 >= count)
        return AllUnitsToPairs(*reverse, facts.hasAscii, units, count, bytes, other);
    Sink<char> out(bytes, room);
    const auto toCode = [reverse](WCHAR unit) {
        return reverse->ToCode(unit);
    };
    return UnitsToCodes(CodePage(facts), toCode, exact, units, count, out, other);
}

int UnitsToExactBytes(const CodePageFacts& facts, const WCHAR* units, int count, char* bytes,
                      int room, Default& other)
{
    const CodePage page(facts);
    Sink<char> out(bytes, room);
    const auto toCode = [&page](WCHAR unit) {
        return page.ToByte(unit);
    };
    return UnitsToCodes(page, toCode, true, units, count, out, other);
}

int Utf8ToUnits(DWORD flags, const char* bytes, int count, WCHAR* units, int room)
{
    if (flags & ~ALL_MB_FLAGS)
        return Fail(ERROR_INVALID_FLAGS);
    Sink<WCHAR> out(units, room);
    return Finish(DecodeUtf8(bytes, count, flags & MB_ERR_INVALID_CHARS, out), out);
}

int Utf7ToUnits(DWORD flags, const char* bytes, int count, WCHAR* units, int room)
{
    if (flags)
        return Fail(ERROR_INVALID_FLAGS);
    Sink<WCHAR> out(units, room);
    return Finish(DecodeUtf7(bytes, count, out), out);
}

int UnitsToUtf8(DWORD flags, const WCHAR* units, int count, char* bytes, int room, LPBOOL used)
{
    if (flags & ~(WC_FLAGS | WC_COMPOSITECHECK))
        return Fail(ERROR_INVALID_FLAGS);
    if (used)
        *used = FALSE;
    Sink<char> out(bytes, room);
    return Finish(EncodeUtf8(units, count, flags & WC_ERR_INVALID_CHARS, out), out);
}

int UnitsToUtf7(DWORD flags, const WCHAR* units, int count, char* bytes, int room, bool hasDefault)
{
    if (hasDefault)
        return Fail(ERROR_INVALID_PARAMETER);
    if (flags)
        return Fail(ERROR_INVALID_FLAGS);
    Sink<char> out(bytes, room);
    return Finish(EncodeUtf7(units, count, out), out);
}

int WideLength(LPCWSTR text)
{
    LPCWSTR end = text;
    while (*end)
        ++end;
    return static_cast<int>(end - text);
}
} // namespace

int MultiByteToWideChar(UINT number, DWORD flags, LPCSTR bytes, int count, LPWSTR units, int room)
{
    if (!bytes || !count || room < 0 || (!units && room))
        return Fail(ERROR_INVALID_PARAMETER);
    if (count < 0)
        count = static_cast<int>(std::strlen(bytes)) + 1;
    number = PageOf(number);
    if (number == CP_UTF8)
        return Utf8ToUnits(flags, bytes, count, units, room);
    if (number == CP_UTF7)
        return Utf7ToUnits(flags, bytes, count, units, room);

    const CodePageFacts* const facts = FindFacts(number);
    if (!facts)
        return Fail(ERROR_INVALID_PARAMETER);
    if (flags & ~MB_FLAGS)
        return Fail(ERROR_INVALID_FLAGS);
    const BYTE* const text = reinterpret_cast<const BYTE*>(bytes);
    if ((flags & MB_ERR_INVALID_CHARS) && HasUndefined(*facts, text, count))
        return Fail(ERROR_NO_UNICODE_TRANSLATION);
    return facts->HasPairs() ? PairsToUnits(*facts, text, count, units, room)
                             : BytesToUnits(*facts, text, count, units, room);
}

int WideCharToMultiByte(UINT number, DWORD flags, LPCWSTR units, int count, LPSTR bytes, int room,
                        LPCSTR defaultChar, LPBOOL used)
{
    if (!units || !count || room < 0 || (!bytes && room))
        return Fail(ERROR_INVALID_PARAMETER);
    if (count < 0)
        count = WideLength(units) + 1;
    number = PageOf(number);
    if (number == CP_UTF8)
        return UnitsToUtf8(flags, units, count, bytes, room, used);
    if (number == CP_UTF7)
        return UnitsToUtf7(flags, units, count, bytes, room, defaultChar || used);

    const CodePageFacts* const facts = FindFacts(number);
    if (!facts)
        return Fail(ERROR_INVALID_PARAMETER);
    if (flags & ~WC_FLAGS)
        return Fail(ERROR_INVALID_FLAGS);
    Default other(*facts, defaultChar);
    const bool exact = flags & WC_NO_BEST_FIT_CHARS;
    int length;
    if (facts->HasPairs())
        length = UnitsToPairs(*facts, exact, units, count, bytes, room, other);
    else if (exact)
        length = UnitsToExactBytes(*facts, units, count, bytes, room, other);
    else
        length = UnitsToBytes(*facts, units, count, bytes, room, other);
    if (used)
        *used = other.used;
    return length;
}

BOOL IsValidCodePage(UINT number)
{
    return number == CP_UTF7 || number == CP_UTF8 || FindFacts(number) != nullptr;
}

BOOL IsDBCSLeadByte(BYTE byte)
{
    return IsDBCSLeadByteEx(CP_ACP, byte);
}

BOOL IsDBCSLeadByteEx(UINT number, BYTE byte)
{
    number = PageOf(number);
    if (number == CP_UTF7 || number == CP_UTF8)
        return FALSE;
    const CodePageFacts* const facts = FindFacts(number);
    if (!facts)
        return Fail(ERROR_INVALID_PARAMETER);
    for (const LeadRange& range : facts->leads)
        if (byte >= range.first && byte <= range.last)
            return TRUE;
    return FALSE;
}
} // namespace winapi
