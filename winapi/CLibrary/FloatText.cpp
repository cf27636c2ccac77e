// winapi/CLibrary/FloatText.cpp
#include "CLibrary/FloatText.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace winapi
{
FloatText::FloatText(double value, char conversion, int precision, bool showPoint)
    : negative(std::signbit(value)),
      alternate(showPoint)
{
    const char letter = static_cast<char>(conversion | 0x20);
    const bool hexadecimal = letter == 'a';
    if (precision < 0)
        precision = hexadecimal ? 13 : 6;

    if (!std::isfinite(value))
        MakeSpecial(value);
    else if (hexadecimal)
        MakeHexadecimal(std::fabs(value));
    else
        MakeDecimal(std::fabs(value));

    if (letter == 'f') {
        Round(precision < MOST_DIGITS * 2 ? point + precision : digitCount, '5', '9');
        WriteFixed(precision);
    } else if (letter == 'g') {
        WriteGeneral(std::max(precision, 1), conversion == 'g' ? 'e' : 'E');
    } else {
        Round(precision < MOST_DIGITS ? precision + 1 : digitCount, hexadecimal ? '8' : '5',
              hexadecimal ? 'f' : '9');
        if (hexadecimal)
            Add(conversion == 'a' ? "0x" : "0X", 2);
        WriteScientific(precision);
        if (hexadecimal)
            WriteExponent(conversion == 'a' ? 'p' : 'P', binaryExponent, 1);
        else
            WriteExponent(conversion, point - 1, 3);
    }
    if (conversion == 'A')
        for (int i = 0; i < digitCount; ++i)
            digits[i] = static_cast<char>(digits[i] >= 'a' ? digits[i] - 0x20 : digits[i]);
}

void FloatText::MakeSpecial(double value)
{
    const char* text = !std::isnan(value) ? "1#INF" : negative ? "1#IND" : "1#QNAN";
    digitCount = static_cast<int>(std::strlen(text));
    std::memcpy(digits, text, digitCount);
}

// The longest exact form is asked for: rounding follows below, in the way of the platform.
void FloatText::MakeDecimal(double value)
{
    const auto end = std::to_chars(digits, digits + sizeof digits, value,
                                   std::chars_format::scientific, MOST_DIGITS - 1)
                         .ptr;
    *end = 0;
    point = std::atoi(digits + MOST_DIGITS + 2) + 1;
    std::memmove(digits + 1, digits + 2, MOST_DIGITS - 1);
    digitCount = MOST_DIGITS;
}

void FloatText::MakeHexadecimal(double value)
{
    std::uint64_t bits;
    std::memcpy(&bits, &value, sizeof bits);
    const int exponent = static_cast<int>(bits >> 52);
    if (value != 0)
        binaryExponent = std::max(exponent, 1) - 1023;
    digits[0] = exponent ? '1' : '0';
    for (digitCount = 1; digitCount < 14; ++digitCount)
        digits[digitCount] = "0123456789abcdef"[bits >> (52 - 4 * digitCount) & 15];
}

// Keeps so many digits; the first one dropped decides alone. The last digit of the base carries.
void FloatText::Round(int keep, char half, char last)
{
    if (keep >= digitCount)
        return;
    digitCount = std::max(keep, 0);
    if (keep < 0 || digits[keep] < half)
        return;
    while (keep > 0 && digits[keep - 1] == last)
        digits[--keep] = '0';
    if (keep > 0) {
        digits[keep - 1] = static_cast<char>(digits[keep - 1] == '9' ? 'a' : digits[keep - 1] + 1);
        return;
    }
    std::memmove(digits + 1, digits, digitCount);
    digits[0] = '1';
    ++digitCount;
    ++point;
}

void FloatText::WriteGeneral(int precision, char letter)
{
    Round(precision, '5', '9');
    digitCount = std::min(digitCount, precision);
    const int exponent = point - 1;
    const bool scientific = exponent < -4 || exponent >= precision;
    int shown = precision;
    if (!alternate) {
        while (digitCount > 1 && digits[digitCount - 1] == '0')
            --digitCount;
        shown = scientific ? digitCount : std::max(digitCount, point);
    }
    if (!scientific) {
        WriteFixed(shown - point);
        return;
    }
    WriteScientific(shown - 1);
    WriteExponent(letter, exponent, 3);
}

void FloatText::WriteFixed(int precision)
{
    const int whole = std::clamp(point, 0, digitCount);
    if (point <= 0)
        Add("0", 1);
    Add(digits, whole);
    AddZeros(point - whole);
    if (precision > 0 || alternate)
        Add(".", 1);
    const int lead = std::clamp(-point, 0, precision);
    const int fraction = std::clamp(digitCount - whole, 0, precision - lead);
    AddZeros(lead);
    Add(digits + whole, fraction);
    AddZeros(precision - lead - fraction);
}

void FloatText::WriteScientific(int precision)
{
    Add(digits, 1);
    if (precision > 0 || alternate)
        Add(".", 1);
    const int fraction = std::min(digitCount - 1, precision);
    Add(digits + 1, fraction);
    AddZeros(precision - fraction);
}

void FloatText::WriteExponent(char letter, int exponent, int leastDigits)
{
    char* first = tail + sizeof tail;
    int rest = std::abs(exponent);
    for (int count = 0; count < leastDigits || rest; count++, rest /= 10)
        *--first = static_cast<char>('0' + rest % 10);
    *--first = exponent < 0 ? '-' : '+';
    *--first = letter;
    Add(first, static_cast<int>(tail + sizeof tail - first));
}

void FloatText::Add(const char* text, int count)
{
    if (count > 0)
        pieces[pieceCount++] = {text, static_cast<std::size_t>(count)};
}
} // namespace winapi
