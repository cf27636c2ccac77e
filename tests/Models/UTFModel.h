// tests/Models/UTFModel.h: the coders of UTF-7 and UTF-8 by the letter of their rules.
//
// The models go unit by unit and byte by byte, and keep their bits as texts of 0 and 1.
#pragma once

#include <string>

namespace utf_model
{
inline const std::string ALPHABET =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
inline const std::string DIRECT = ALPHABET.substr(0, 62) + "'(),-./:? \t\r\n";

inline std::string Binary(unsigned value, unsigned count)
{
    std::string bits;
    while (count--)
        bits += value >> count & 1 ? '1' : '0';
    return bits;
}

inline unsigned TakeBits(std::string& bits, unsigned count)
{
    const unsigned value = static_cast<unsigned>(std::stoul(bits.substr(0, count), nullptr, 2));
    bits.erase(0, count);
    return value;
}

struct SevenEncoder
{
    bool shifted = false;
    std::string bits;

    std::string Piece(const std::u16string& text)
    {
        std::string out;
        for (char16_t unit : text) {
            const bool need =
                unit && (unit > 127 || DIRECT.find(static_cast<char>(unit)) == std::string::npos);
            bool escaped = false;
            if (need && !shifted) {
                out += '+';
                escaped = unit == u'+';
                shifted = !escaped;
                if (escaped)
                    out += '-';
            }
            if (shifted) {
                if (need)
                    bits += Binary(unit, 16);
                else
                    while (bits.size() % 6)
                        bits += '0';
                while (bits.size() >= 6)
                    out += ALPHABET[TakeBits(bits, 6)];
                if (!need) {
                    out += '-';
                    shifted = false;
                }
            }
            if (!need)
                out += static_cast<char>(unit);
            if (!unit) {
                out.pop_back();
                break;
            }
        }
        return out;
    }
};

struct SevenDecoder
{
    bool shifted = false;
    bool first = false;
    std::string bits;

    std::u16string Piece(const std::string& text)
    {
        std::u16string out;
        std::size_t at = 0;
        const auto ended = [&] {
            return at >= text.size() || !text[at];
        };
        while (!ended()) {
            char c = text[at++];
            bool lost = false;
            if (shifted) {
                const auto sextet = ALPHABET.find(c);
                if (sextet == std::string::npos) {
                    shifted = false;
                    bits.clear();
                    lost = ended();
                    if (!lost && (c == '+' || c == '-')) {
                        const char noted = c;
                        c = text[at++];
                        if (first && noted == '-')
                            out += u'+';
                    }
                } else {
                    bits += Binary(static_cast<unsigned>(sextet), 6);
                    first = false;
                }
                while (bits.size() >= 16)
                    out += static_cast<char16_t>(TakeBits(bits, 16));
            }
            if (shifted || lost)
                continue;
            if (c == '+')
                shifted = first = true;
            else
                out += static_cast<char16_t>(static_cast<signed char>(c));
        }
        return out;
    }
};

inline std::string EightEncode(const std::u16string& text)
{
    std::string out;
    for (char16_t unit : text) {
        if (!unit)
            break;
        std::string bits = Binary(unit, 16);
        if (unit < 0x80)
            out += static_cast<char>(unit);
        else if (unit < 0x800) {
            bits.erase(0, 5);
            out += static_cast<char>(0xC0 + TakeBits(bits, 5));
            out += static_cast<char>(0x80 + TakeBits(bits, 6));
        } else {
            out += static_cast<char>(0xE0 + TakeBits(bits, 4));
            out += static_cast<char>(0x80 + TakeBits(bits, 6));
            out += static_cast<char>(0x80 + TakeBits(bits, 6));
        }
    }
    return out;
}

struct EightDecoder
{
    unsigned trailing = 0;
    unsigned toCome = 0;
    unsigned value = 0;

    static unsigned TrailingOf(char c)
    {
        const auto first = static_cast<unsigned char>(c);
        return first < 0xC0 || first >= 0xF8 ? 0 : first < 0xE0 ? 1 : first < 0xF0 ? 2 : 3;
    }

    // The value as it is without a byte still to come, and with the mark of that byte alone.
    long long Known() const { return static_cast<long long>(value) + 0x80 - 0x3C82080; }
    bool IsHalfKnown() const
    {
        return trailing == 3 && toCome == 1 && Known() >= 0x10000 && Known() < 0x110000;
    }

    static void Store(long long sum, std::u16string& out)
    {
        if (sum < 0x10000 || sum > 0x10FFFF) {
            out += u'\uFFFD';
            return;
        }
        out += static_cast<char16_t>(0xD800 + (sum - 0x10000) / 0x400);
        out += static_cast<char16_t>(0xDC00 + sum % 0x400);
    }

    // A last byte that comes alone has room for one unit.
    void StoreLast(long long sum, bool half, long long known, std::u16string& out)
    {
        out += half && sum / 0x400 == known / 0x400 ? static_cast<char16_t>(0xDC00 + (sum & 0x3FF))
                                                    : u'\uFFFD';
    }

    std::u16string Piece(const std::string& text)
    {
        const unsigned offsets[] = {0, 0x3080, 0xE2080, 0x3C82080};
        std::u16string out;
        bool alone = toCome == 1 && trailing == 3;
        for (char c : text) {
            if (!c)
                break;
            if (!toCome) {
                trailing = TrailingOf(c);
                value = 0;
                toCome = trailing + 1;
            }
            const bool half = IsHalfKnown();
            const long long known = Known();
            value += static_cast<unsigned char>(c);
            if (--toCome)
                value <<= 6;
            else if (trailing == 0 && static_cast<unsigned char>(c) >= 0xF8)
                out += u'\uFFFD';
            else if (trailing < 3)
                out += static_cast<char16_t>(value - offsets[trailing]);
            else if (alone)
                StoreLast(static_cast<long long>(value) - offsets[3], half, known, out);
            else
                Store(static_cast<long long>(value) - offsets[3], out);
            alone = false;
        }
        const bool taken = !text.empty() && text[0];
        if (taken && IsHalfKnown())
            out += static_cast<char16_t>(0xD800 + (Known() - 0x10000) / 0x400);
        return out;
    }
};
} // namespace utf_model
