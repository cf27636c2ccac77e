// winapi/CLibrary/Print.cpp
#include <windows.h>

#include <algorithm>
#include <climits>
#include <type_traits>

#include "CLibrary/FloatText.h"

namespace winapi
{
namespace
{
// What stands between a per cent sign and its letter.
struct Directive
{
    bool left = false;
    bool zero = false;
    bool plus = false;
    bool blank = false;
    bool alternate = false;
    bool isShort = false;      // h
    bool is64 = false;         // ll, I64
    bool isLongDouble = false; // L
    char textWidth = 0;        // 'h' or 'l', the last of h, l, w
    int width = 0;
    int precision = -1;
};

// One call: the room, the arguments and the place in the format.
template <typename Char>
class Printer
{
public:
    Printer(Char* buffer, std::size_t count, const Char* text, va_list source)
        : begin(buffer),
          next(buffer),
          end(buffer ? buffer + count : buffer),
          format(text)
    {
        va_copy(args, source);
    }
    ~Printer() { va_end(args); }
    Printer(const Printer&) = delete;
    Printer& operator=(const Printer&) = delete;

    int Run();

private:
    void PrintDirective();
    void ReadFlags(Directive& directive);
    int ReadNumber();
    void ReadWidth(Directive& directive);
    void ReadPrecision(Directive& directive);
    bool ReadPrefix(Directive& directive);
    std::size_t AfterI() const;

    bool IsWide(const Directive& directive, bool other) const;
    void PrintCharacter(const Directive& directive, bool wide);
    void PrintText(const Directive& directive, bool wide);
    template <typename Unit>
    void PrintUnits(const Directive& directive, const Unit* text);
    void PrintSigned(const Directive& directive);
    void PrintUnsigned(const Directive& directive, unsigned base, bool upper);
    void PrintPointer(Directive directive);
    void PrintInteger(Directive directive, std::uint64_t value, unsigned base, bool upper,
                      const char* prefix);
    void PrintFloat(const Directive& directive, char letter);
    void PrintNumber(const Directive& directive, const char* prefix, const NumberPiece* pieces,
                     std::size_t pieceCount);
    std::uint64_t ReadUnsigned(const Directive& directive);

    void Put(Char unit)
    {
        if (next < end)
            *next++ = unit;
        ++total;
    }
    void Fill(Char unit, std::size_t count)
    {
        next = std::fill_n(next, std::min(count, static_cast<std::size_t>(end - next)), unit);
        total += count;
    }
    template <typename Unit>
    void Copy(const Unit* text, std::size_t count);

    Char* begin;
    Char* next;
    Char* end;
    const Char* format;
    std::size_t total = 0;
    bool failed = false;
    va_list args;
};

template <typename Char>
int Printer<Char>::Run()
{
    while (*format && !failed) {
        if (*format != '%')
            Put(*format++);
        else
            PrintDirective();
    }
    if (next < end)
        *next = 0;
    const bool fits = !begin || total <= static_cast<std::size_t>(end - begin);
    return failed || !fits || total > INT_MAX ? -1 : static_cast<int>(total);
}

template <typename Char>
template <typename Unit>
void Printer<Char>::Copy(const Unit* text, std::size_t count)
{
    const std::size_t stored = std::min(count, static_cast<std::size_t>(end - next));
    for (std::size_t i = 0; i < stored; ++i)
        next[i] = static_cast<Char>(static_cast<std::make_unsigned_t<Unit>>(text[i]));
    next += stored;
    total += count;
}

template <typename Char>
void Printer<Char>::PrintDirective()
{
    ++format;
    if (*format == '%') {
        Put(*format++);
        return;
    }
    Directive directive;
    ReadFlags(directive);
    ReadWidth(directive);
    ReadPrecision(directive);
    while (ReadPrefix(directive)) {
    }
    const Char letter = *format;
    if (!letter)
        return;
    ++format;
    switch (letter) {
    case 'd':
    case 'i':
        return PrintSigned(directive);
    case 'u':
        return PrintUnsigned(directive, 10, false);
    case 'o':
        return PrintUnsigned(directive, 8, false);
    case 'x':
        return PrintUnsigned(directive, 16, false);
    case 'X':
        return PrintUnsigned(directive, 16, true);
    case 'p':
        return PrintPointer(directive);
    case 'c':
        return PrintCharacter(directive, IsWide(directive, false));
    case 'C':
        return PrintCharacter(directive, IsWide(directive, true));
    case 's':
        return PrintText(directive, IsWide(directive, false));
    case 'S':
        return PrintText(directive, IsWide(directive, true));
    case 'e':
    case 'f':
    case 'g':
    case 'a':
    case 'E':
    case 'G':
    case 'A':
        return PrintFloat(directive, static_cast<char>(letter));
    case 'n':
        // Nothing is stored: a format must not be able to write into the program.
        static_cast<void>(va_arg(args, void*));
        return;
    case '%':
        return;
    default:
        Put(letter); // without a meaning of its own, it stands for itself
    }
}

template <typename Char>
void Printer<Char>::ReadFlags(Directive& directive)
{
    for (;; ++format) {
        switch (*format) {
        case '-':
            directive.left = true;
            break;
        case '0':
            directive.zero = true;
            break;
        case '+':
            directive.plus = true;
            break;
        case ' ':
            directive.blank = true;
            break;
        case '#':
            directive.alternate = true;
            break;
        default:
            return;
        }
    }
}

// Digits of the format; what an int can't hold stays at a size that never fits.
template <typename Char>
int Printer<Char>::ReadNumber()
{
    int number = 0;
    for (; *format >= '0' && *format <= '9'; ++format)
        number = number > INT_MAX / 20 ? INT_MAX / 2 : number * 10 + (*format - '0');
    return number;
}

template <typename Char>
void Printer<Char>::ReadWidth(Directive& directive)
{
    if (*format != '*') {
        directive.width = ReadNumber();
        return;
    }
    ++format;
    const int width = va_arg(args, int);
    directive.left = directive.left || width < 0;
    directive.width = width < 0 ? -std::max(width, -INT_MAX) : width;
}

template <typename Char>
void Printer<Char>::ReadPrecision(Directive& directive)
{
    if (*format != '.')
        return;
    ++format;
    if (*format != '*') {
        directive.precision = ReadNumber();
        return;
    }
    ++format;
    directive.precision = va_arg(args, int);
}

// Units of a size prefix that begins with I, 0 for none; a bare I stands before an integer only.
template <typename Char>
std::size_t Printer<Char>::AfterI() const
{
    if ((format[1] == '6' && format[2] == '4') || (format[1] == '3' && format[2] == '2'))
        return 3;
    for (char letter : {'d', 'i', 'o', 'u', 'x', 'X'})
        if (format[1] == letter)
            return 1;
    return 0;
}

template <typename Char>
bool Printer<Char>::ReadPrefix(Directive& directive)
{
    std::size_t length = 1;
    switch (*format) {
    case 'h':
        directive.isShort = true;
        directive.textWidth = 'h';
        break;
    case 'l':
        directive.is64 = directive.is64 || format[1] == 'l';
        length = format[1] == 'l' ? 2 : 1;
        directive.textWidth = 'l';
        break;
    case 'w':
        directive.textWidth = 'l';
        break;
    case 'I':
        length = AfterI();
        directive.is64 = directive.is64 || (length == 1 && sizeof(void*) == 8) ||
                         (length == 3 && format[1] == '6');
        break;
    case 'L':
        directive.isLongDouble = true;
        break;
    case 'z':
    case 't':
        directive.is64 = directive.is64 || sizeof(void*) == 8;
        break;
    case 'j':
        directive.is64 = true;
        break;
    case 'F':
    case 'N':
        break; // far and near pointers: no difference since long
    default:
        return false;
    }
    format += length;
    return length != 0;
}

// Whether text is wide: of the format's own width, of the other one, or as a prefix says.
template <typename Char>
bool Printer<Char>::IsWide(const Directive& directive, bool other) const
{
    if (directive.textWidth)
        return directive.textWidth == 'l';
    return (sizeof(Char) == sizeof(WCHAR)) != other;
}

// Kept: a wide character that has no 8-bit form prints as nothing, though its place in the width is
// counted; only in a text it makes the call fail.
template <typename Char>
void Printer<Char>::PrintCharacter(const Directive& directive, bool wide)
{
    const int argument = va_arg(args, int);
    const WCHAR unit = static_cast<WCHAR>(wide ? argument : argument & 0xFF);
    const bool printable = sizeof(Char) == sizeof(WCHAR) || unit < 0x100;
    const std::size_t padding = directive.width > 1 ? directive.width - 1 : 0;
    if (!directive.left)
        Fill(directive.zero ? '0' : ' ', padding);
    if (printable)
        Put(static_cast<Char>(unit));
    if (directive.left)
        Fill(' ', padding);
}

template <typename Char>
void Printer<Char>::PrintText(const Directive& directive, bool wide)
{
    const void* text = va_arg(args, const void*);
    if (!text)
        PrintUnits(directive, "(null)");
    else if (wide)
        PrintUnits(directive, static_cast<const WCHAR*>(text));
    else
        PrintUnits(directive, static_cast<const char*>(text));
}

template <typename Char>
template <typename Unit>
void Printer<Char>::PrintUnits(const Directive& directive, const Unit* text)
{
    const std::size_t limit = directive.precision < 0 ? SIZE_MAX : directive.precision;
    std::size_t length = 0;
    while (length < limit && text[length]) {
        if (sizeof(Unit) > sizeof(Char) && text[length] > 0xFF) {
            failed = true;
            return;
        }
        ++length;
    }
    const std::size_t width = directive.width;
    const std::size_t padding = width > length ? width - length : 0;
    if (!directive.left)
        Fill(directive.zero ? '0' : ' ', padding);
    Copy(text, length);
    if (directive.left)
        Fill(' ', padding);
}

template <typename Char>
std::uint64_t Printer<Char>::ReadUnsigned(const Directive& directive)
{
    if (directive.is64)
        return va_arg(args, std::uint64_t);
    const unsigned value = va_arg(args, unsigned);
    return directive.isShort ? value & 0xFFFF : value;
}

template <typename Char>
void Printer<Char>::PrintSigned(const Directive& directive)
{
    const std::uint64_t bits = ReadUnsigned(directive);
    const std::int64_t value = directive.is64      ? static_cast<std::int64_t>(bits)
                               : directive.isShort ? static_cast<std::int16_t>(bits)
                                                   : static_cast<std::int32_t>(bits);
    const char* sign = value < 0 ? "-" : directive.plus ? "+" : directive.blank ? " " : "";
    const std::uint64_t magnitude = static_cast<std::uint64_t>(value);
    PrintInteger(directive, value < 0 ? 0 - magnitude : magnitude, 10, false, sign);
}

template <typename Char>
void Printer<Char>::PrintUnsigned(const Directive& directive, unsigned base, bool upper)
{
    const std::uint64_t value = ReadUnsigned(directive);
    const bool prefixed = directive.alternate && base == 16 && value;
    PrintInteger(directive, value, base, upper, !prefixed ? "" : upper ? "0X" : "0x");
}

// All digits, whatever the precision; padded with blanks alone.
template <typename Char>
void Printer<Char>::PrintPointer(Directive directive)
{
    const std::uint64_t value = reinterpret_cast<std::uintptr_t>(va_arg(args, void*));
    directive.precision = 2 * sizeof(void*);
    PrintInteger(directive, value, 16, true, directive.alternate && value ? "0X" : "");
}

template <typename Char>
void Printer<Char>::PrintInteger(Directive directive, std::uint64_t value, unsigned base,
                                 bool upper, const char* prefix)
{
    // Not const: g++ 12 would test the bounds of both literals with the index of one.
    const char* figures = upper ? "0123456789ABCDEF" : "0123456789abcdef";
    char digits[24];
    char* first = digits + sizeof digits;
    for (std::uint64_t rest = value; rest; rest /= base)
        *--first = figures[rest % base];
    const int length = static_cast<int>(digits + sizeof digits - first);

    directive.zero = directive.zero && directive.precision < 0;
    int least = directive.precision < 0 ? 1 : directive.precision;
    if (directive.alternate && base == 8 && value)
        least = std::max(least, length + 1);
    const NumberPiece pieces[] = {{nullptr, static_cast<std::size_t>(std::max(least - length, 0))},
                                  {first, static_cast<std::size_t>(length)}};
    PrintNumber(directive, prefix, pieces, 2);
}

template <typename Char>
void Printer<Char>::PrintFloat(const Directive& directive, char letter)
{
    const double value = directive.isLongDouble ? static_cast<double>(va_arg(args, long double))
                                                : va_arg(args, double);
    const FloatText text(value, letter, directive.precision, directive.alternate);
    const char* sign = text.IsNegative() ? "-" : directive.plus ? "+" : directive.blank ? " " : "";
    PrintNumber(directive, sign, text.Pieces(), text.PieceCount());
}

// Padding, sign or prefix, zeros up to the width, the body, padding.
template <typename Char>
void Printer<Char>::PrintNumber(const Directive& directive, const char* prefix,
                                const NumberPiece* pieces, std::size_t pieceCount)
{
    const std::size_t prefixLength = !*prefix ? 0 : prefix[1] ? 2 : 1;
    std::size_t length = prefixLength;
    for (std::size_t i = 0; i < pieceCount; ++i)
        length += pieces[i].count;
    const std::size_t width = directive.width;
    const std::size_t padding = width > length ? width - length : 0;
    const bool zeros = directive.zero && !directive.left;

    if (!directive.left && !zeros)
        Fill(' ', padding);
    Copy(prefix, prefixLength);
    if (zeros)
        Fill('0', padding);
    for (std::size_t i = 0; i < pieceCount; ++i) {
        if (pieces[i].text)
            Copy(pieces[i].text, pieces[i].count);
        else
            Fill('0', pieces[i].count);
    }
    if (directive.left)
        Fill(' ', padding);
}
} // namespace

int _vsnprintf(char* buffer, std::size_t count, const char* format, va_list args)
{
    return Printer<char>(buffer, count, format, args).Run();
}

int _vsnwprintf(WCHAR* buffer, std::size_t count, const WCHAR* format, va_list args)
{
    return Printer<WCHAR>(buffer, count, format, args).Run();
}
} // namespace winapi
