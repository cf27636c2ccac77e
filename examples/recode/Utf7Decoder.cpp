// examples/recode/Utf7Decoder.cpp
#include "Utf7Decoder.h"

namespace recode
{
namespace
{
// The six bits of a character of Base64; -1 for another character.
int Value(char c)
{
    static constexpr std::string_view DIGITS =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    const size_t at = DIGITS.find(c);
    return at == DIGITS.npos || c == '\0' ? -1 : static_cast<int>(at);
}
} // namespace

Decoder::Step Utf7Decoder::Decode(std::string_view bytes, bool last, std::u16string* units)
{
    Step step;
    while (step.used < bytes.size()) {
        const std::string_view rest = bytes.substr(step.used);
        // What a plus sign means is said by what follows it.
        if (!run && rest == "+" && !last)
            return step;
        if (run ? TakeInRun(rest[0], &step, units) : TakeDirect(rest, &step, units))
            continue;
        step.bad = true;
        return step;
    }
    step.bad = last && run && !EndRun();
    return step;
}

bool Utf7Decoder::TakeDirect(std::string_view bytes, Step* step, std::u16string* units)
{
    const bool sign = bytes[0] == '+';
    if (static_cast<unsigned char>(bytes[0]) > 127 || (sign && bytes.size() == 1)) {
        step->skip = 1;
        return false;
    }
    if (sign && bytes[1] != '-') {
        run = Value(bytes[1]) >= 0;
        step->used += run;
        step->skip = !run;
        return run;
    }
    units->push_back(static_cast<char16_t>(bytes[0]));
    step->used += sign ? 2 : 1;
    return true;
}

bool Utf7Decoder::TakeInRun(char byte, Step* step, std::u16string* units)
{
    const int value = Value(byte);
    if (value < 0) {
        // A minus sign goes with the run, any other character is text behind it.
        const size_t own = byte == '-';
        const bool good = EndRun();
        (good ? step->used : step->skip) += own;
        return good;
    }
    const unsigned all = bits << 6 | static_cast<unsigned>(value);
    const bool whole = count + 6 >= 16;
    const auto unit = static_cast<char16_t>(whole ? all >> (count - 10) : 0);
    if (whole && high && (unit & 0xFC00) != 0xDC00) {
        high = 0; // and the byte is taken once more
        return false;
    }
    count = whole ? count - 10 : count + 6;
    bits = all & ((1U << count) - 1);
    const bool good = !whole || TakeUnit(unit, units);
    (good ? step->used : step->skip) += 1;
    return good;
}

// False for the second half of a pair without its first one.
bool Utf7Decoder::TakeUnit(char16_t unit, std::u16string* units)
{
    const bool isLow = (unit & 0xFC00) == 0xDC00;
    if (isLow && !high)
        return false;
    if (high)
        units->push_back(high);
    high = (unit & 0xFC00) == 0xD800 ? unit : u'\0';
    if (!high)
        units->push_back(unit);
    return true;
}

// What is left of a run are less bits than a character of it has, and zeros. The state is new
// behind it in any case.
bool Utf7Decoder::EndRun()
{
    const bool good = !high && count < 6 && bits == 0;
    run = false;
    bits = 0;
    count = 0;
    high = 0;
    return good;
}
} // namespace recode
