// winapi/Text/Utf.h: UTF-7 and UTF-8 as the platform's conversions code them. Internal.
#pragma once

#include "winapi/Base/Types.h"

#include <climits>

namespace winapi
{
// What a conversion writes to: so much room, or none to count alone.
template <typename Unit>
class Sink
{
public:
    Sink(Unit* buffer, int size) : next(buffer), room(size ? size : INT_MAX), counts(size == 0) {}

    // False, with nothing stored, when there is no room for so many. A count has room for INT_MAX.
    bool Put(const Unit* units, int number)
    {
        if (number > room - count)
            return false;
        if (!counts)
            for (int i = 0; i < number; ++i)
                next[count + i] = units[i];
        count += number;
        return true;
    }
    bool Put(Unit unit) { return Put(&unit, 1); }

    int Count() const { return count; }

private:
    Unit* next;
    int room;
    bool counts;
    int count = 0;
};

// How a conversion ended.
enum class Coding
{
    DONE,
    ILL, // ill-formed text, and the caller refuses it
    FULL // no room for the next character
};

// Ill-formed bytes become U+FFFD: a lead byte with the continuation bytes behind it, the first of
// which may be one that the lead byte forbids; every other byte alone.
Coding DecodeUtf8(const char* bytes, int count, bool strict, Sink<WCHAR>& out);

// A lone surrogate becomes U+FFFD.
Coding EncodeUtf8(const WCHAR* units, int count, bool strict, Sink<char>& out);

// Bytes above 127 stand for themselves; what remains of a group of six bits that ends early is
// dropped.
Coding DecodeUtf7(const char* bytes, int count, Sink<WCHAR>& out);

// Letters, digits, '(),-./:? and blanks stand for themselves; each other stretch ends in a hyphen.
Coding EncodeUtf7(const WCHAR* units, int count, Sink<char>& out);
} // namespace winapi
