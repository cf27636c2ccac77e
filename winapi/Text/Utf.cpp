// winapi/Text/Utf.cpp
#include "Text/Utf.h"

#include <cstring>

namespace winapi
{
namespace
{
constexpr char BASE64[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr WCHAR REPLACEMENT = 0xFFFD;

// Continuation bytes that a lead byte announces; -1 for a byte that leads nothing.
int Continuations(unsigned char lead)
{
    if (lead < 0x80)
        return 0;
    if (lead < 0xC2 || lead > 0xF4)
        return -1;
    return lead < 0xE0 ? 1 : lead < 0xF0 ? 2 : 3;
}

// Whether a continuation byte may stand right behind the lead byte.
bool MayFollow(unsigned char lead, unsigned char second)
{
    switch (lead) {
    case 0xE0:
        return second >= 0xA0;
    case 0xED:
        return second < 0xA0;
    case 0xF0:
        return second >= 0x90;
    case 0xF4:
        return second < 0x90;
    default:
        return true;
    }
}

// Reads one character; REPLACEMENT with ill set for ill-formed bytes.
unsigned ReadUtf8(const unsigned char*& next, const unsigned char* end, bool& ill)
{
    const unsigned char lead = *next++;
    const int wanted = Continuations(lead);
    unsigned value = wanted > 0 ? lead & (0x3F >> wanted) : lead;
    ill = wanted < 0;
    for (int i = 0; i < wanted; ++i) {
        if (next == end || (*next & 0xC0) != 0x80) {
            ill = true;
            break;
        }
        const unsigned char byte = *next++;
        value = value << 6 | (byte & 0x3F);
        if (i == 0 && !MayFollow(lead, byte)) {
            ill = true;
            break;
        }
    }
    return ill ? REPLACEMENT : value;
}

bool PutCharacter(Sink<WCHAR>& out, unsigned value)
{
    if (value < 0x10000)
        return out.Put(static_cast<WCHAR>(value));
    const WCHAR pair[] = {static_cast<WCHAR>(0xD7C0 + (value >> 10)),
                          static_cast<WCHAR>(0xDC00 | (value & 0x3FF))};
    return out.Put(pair, 2);
}

bool PutUtf8(Sink<char>& out, unsigned value)
{
    if (value < 0x80)
        return out.Put(static_cast<char>(value));
    const int continuations = value < 0x800 ? 1 : value < 0x10000 ? 2 : 3;
    char bytes[4];
    for (int i = continuations; i > 0; i--, value >>= 6)
        bytes[i] = static_cast<char>(0x80 | (value & 0x3F));
    bytes[0] = static_cast<char>((0xFF00 >> (continuations + 1) & 0xFF) | value);
    return out.Put(bytes, continuations + 1);
}

// Reads one character; a lone surrogate gives REPLACEMENT with ill set.
unsigned ReadUtf16(const WCHAR*& next, const WCHAR* end, bool& ill)
{
    const unsigned unit = *next++;
    ill = false;
    if ((unit & 0xF800) != 0xD800)
        return unit;
    ill = unit >= 0xDC00 || next == end || (*next & 0xFC00) != 0xDC00;
    return ill ? REPLACEMENT : 0x10000 + ((unit & 0x3FF) << 10) + (*next++ & 0x3FF);
}

// The six bits of a letter; -1 for a byte that is none.
int Base64Value(char byte)
{
    const char* const found = byte ? std::strchr(BASE64, byte) : nullptr;
    return found ? static_cast<int>(found - BASE64) : -1;
}

bool StandsForItself(WCHAR unit)
{
    if (unit >= 0x80)
        return false;
    const char letter = static_cast<char>(unit);
    return !letter || (letter != '+' && letter != '/' && Base64Value(letter) >= 0) ||
           std::strchr("'(),-./:? \t\r\n", letter) != nullptr;
}
} // namespace

Coding DecodeUtf8(const char* bytes, int count, bool strict, Sink<WCHAR>& out)
{
    const unsigned char* next = reinterpret_cast<const unsigned char*>(bytes);
    const unsigned char* const end = next + count;
    while (next != end) {
        bool ill;
        const unsigned value = ReadUtf8(next, end, ill);
        if (ill && strict)
            return Coding::ILL;
        if (!PutCharacter(out, value))
            return Coding::FULL;
    }
    return Coding::DONE;
}

Coding EncodeUtf8(const WCHAR* units, int count, bool strict, Sink<char>& out)
{
    const WCHAR* const end = units + count;
    while (units != end) {
        bool ill;
        const unsigned value = ReadUtf16(units, end, ill);
        if (ill && strict)
            return Coding::ILL;
        if (!PutUtf8(out, value))
            return Coding::FULL;
    }
    return Coding::DONE;
}

Coding DecodeUtf7(const char* bytes, int count, Sink<WCHAR>& out)
{
    const char* const end = bytes + count;
    unsigned bits = 0;
    int held = 0;
    while (bytes != end) {
        if (*bytes != '+') {
            if (!out.Put(static_cast<unsigned char>(*bytes++)))
                return Coding::FULL;
            continue;
        }
        if (++bytes != end && *bytes == '-') {
            ++bytes;
            if (!out.Put('+'))
                return Coding::FULL;
            continue;
        }
        for (int value; bytes != end && (value = Base64Value(*bytes)) >= 0; ++bytes) {
            bits = bits << 6 | static_cast<unsigned>(value);
            held += 6;
            if (held < 16)
                continue;
            held -= 16;
            if (!out.Put(static_cast<WCHAR>(bits >> held)))
                return Coding::FULL;
        }
        // Kept: a byte above 127 ends the stretch, but what it left of a unit goes on in the next
        // one.
        if (bytes != end && static_cast<unsigned char>(*bytes) < 0x80)
            held = 0;
        if (bytes != end && *bytes == '-')
            ++bytes;
    }
    return Coding::DONE;
}

Coding EncodeUtf7(const WCHAR* units, int count, Sink<char>& out)
{
    const WCHAR* const end = units + count;
    while (units != end) {
        if (*units == '+') {
            ++units;
            if (!out.Put('+') || !out.Put('-'))
                return Coding::FULL;
            continue;
        }
        if (StandsForItself(*units)) {
            if (!out.Put(static_cast<char>(*units++)))
                return Coding::FULL;
            continue;
        }
        if (!out.Put('+'))
            return Coding::FULL;
        unsigned bits = 0;
        int held = 0;
        for (; units != end && *units != '+' && !StandsForItself(*units); ++units) {
            bits = bits << 16 | *units;
            for (held += 16; held >= 6; held -= 6)
                if (!out.Put(BASE64[bits >> (held - 6) & 63]))
                    return Coding::FULL;
        }
        if (held && !out.Put(BASE64[bits << (6 - held) & 63]))
            return Coding::FULL;
        if (!out.Put('-'))
            return Coding::FULL;
    }
    return Coding::DONE;
}
} // namespace winapi
