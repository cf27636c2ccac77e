// examples/Common/Utf8.cpp
#include "Utf8.h"

#include <System/String/StringConvert.h>
#include <System/String/UTF.h>

#include <algorithm>
#include <vector>

namespace common
{
namespace
{
bool IsBetween(unsigned value, unsigned first, unsigned last)
{
    return value >= first && value <= last;
}

bool IsHighSurrogate(unsigned unit)
{
    return IsBetween(unit, 0xD800, 0xDBFF);
}

bool IsSurrogate(unsigned unit)
{
    return IsBetween(unit, 0xD800, 0xDFFF);
}

// What may follow a first byte: how many bytes, and the range of the first of them, which is what
// shuts out overlong forms, surrogates and numbers that are too large.
struct Sequence
{
    unsigned trailing;
    unsigned first;
    unsigned last;
};

bool FindSequence(unsigned lead, Sequence* sequence)
{
    if (lead < 0x80)
        *sequence = {0, 0, 0};
    else if (IsBetween(lead, 0xC2, 0xDF))
        *sequence = {1, 0x80, 0xBF};
    else if (IsBetween(lead, 0xE0, 0xEF))
        *sequence = {2, lead == 0xE0 ? 0xA0u : 0x80u, lead == 0xED ? 0x9Fu : 0xBFu};
    else if (IsBetween(lead, 0xF0, 0xF4))
        *sequence = {3, lead == 0xF0 ? 0x90u : 0x80u, lead == 0xF4 ? 0x8Fu : 0xBFu};
    else
        return false;
    return true;
}

// The length of the well-formed sequence at the start of the text; 0 for none.
size_t SequenceLength(std::string_view text)
{
    const auto byte = [&](size_t n) -> unsigned {
        return static_cast<unsigned char>(text[n]);
    };
    Sequence sequence;
    if (!FindSequence(byte(0), &sequence) || text.size() <= sequence.trailing)
        return 0;
    for (size_t n = 1; n <= sequence.trailing; ++n) {
        if (!IsBetween(byte(n), n == 1 ? sequence.first : 0x80, n == 1 ? sequence.last : 0xBF))
            return 0;
    }
    return sequence.trailing + 1;
}

// The two units of a sequence of four bytes.
void ToPair(std::string_view text, unsigned short* units)
{
    unsigned value = text[0] & 7;
    for (size_t n = 1; n < 4; ++n)
        value = value << 6 | (text[n] & 0x3F);
    units[0] = static_cast<unsigned short>(0xD800 + ((value - 0x10000) >> 10));
    units[1] = static_cast<unsigned short>(0xDC00 + (value & 0x3FF));
}

// A surrogate with what follows it; returns the units taken.
unsigned AppendSurrogate(const unsigned short* text, unsigned count, std::string* bytes)
{
    if (count < 2 || !IsHighSurrogate(text[0]) || !IsBetween(text[1], 0xDC00, 0xDFFF)) {
        *bytes += "\xEF\xBF\xBD";
        return 1;
    }
    const unsigned value = 0x10000 + ((text[0] - 0xD800u) << 10) + (text[1] - 0xDC00u);
    *bytes += static_cast<char>(0xF0 | value >> 18);
    *bytes += static_cast<char>(0x80 | (value >> 12 & 0x3F));
    *bytes += static_cast<char>(0x80 | (value >> 6 & 0x3F));
    *bytes += static_cast<char>(0x80 | (value & 0x3F));
    return 2;
}
} // namespace

bool IsUtf8(std::string_view text)
{
    while (!text.empty()) {
        const size_t length = SequenceLength(text);
        if (!length)
            return false;
        text.remove_prefix(length);
    }
    return true;
}

void ToWide(std::string_view text, CT_UString* wide)
{
    std::vector<unsigned short> units(text.size() + 1);
    unsigned count = 0;
    CT_UTF::sv_UTF8ToWideInit();
    while (!text.empty()) {
        const auto four =
            std::find_if(text.begin(), text.end(), [](unsigned char c) { return c >= 0xF0; });
        const size_t length = static_cast<size_t>(four - text.begin());
        if (length) {
            count += CT_StringConvert::si_UTF8ToWide(&units[count], text.data(),
                                                     static_cast<unsigned>(length));
            text.remove_prefix(length);
        } else {
            ToPair(text, &units[count]);
            count += 2;
            text.remove_prefix(4);
        }
    }
    wide->v_Set(units.data(), count);
}

std::string ToUtf8(const unsigned short* text)
{
    unsigned count = 0;
    while (text[count])
        ++count;
    return ToUtf8(text, count);
}

std::string ToUtf8(const unsigned short* text, unsigned count)
{
    std::string bytes;
    while (count) {
        const unsigned short* end = std::find_if(text, text + count, IsSurrogate);
        unsigned taken = static_cast<unsigned>(end - text);
        if (taken) {
            // Three bytes at most for a unit, and the coder's terminator.
            std::vector<char> run(3 * taken + 1);
            bytes.append(run.data(), CT_StringConvert::si_WideToUTF8(run.data(), text, taken));
        } else {
            taken = AppendSurrogate(text, count, &bytes);
        }
        text += taken;
        count -= taken;
    }
    return bytes;
}
} // namespace common
