// winapi/Locale/PatternHost.cpp
#include "Locale/PatternHost.h"

#include <algorithm>

#include <unicode/uchar.h>

namespace winapi
{
namespace
{
constexpr char16_t LEFT_TO_RIGHT_MARK = 0x200E;

bool IsField(char16_t unit)
{
    return (unit >= 'a' && unit <= 'z') || (unit >= 'A' && unit <= 'Z');
}

std::u16string FieldOf(char16_t letter, std::size_t count)
{
    switch (letter) {
    case 'y':
        return count == 2 ? u"yy" : u"yyyy";
    case 'M':
    case 'L':
        return std::u16string(std::min<std::size_t>(count, 4), 'M');
    case 'E':
    case 'c':
    case 'e':
        return count < 4 ? u"ddd" : u"dddd";
    case 'a':
    case 'B':
        return u"tt";
    case 'G':
        return u"gg";
    default:
        return std::u16string(count, letter);
    }
}

// Literal text, with quotes around each run of letters with a case.
class Literal
{
public:
    explicit Literal(std::u16string& text) : out(text) {}
    ~Literal() { SetQuoted(false); }

    void Put(char16_t unit)
    {
        if (unit == LEFT_TO_RIGHT_MARK)
            return;
        SetQuoted(u_hasBinaryProperty(unit, UCHAR_CASED));
        out += unit;
    }

private:
    std::u16string& out;
    bool quoted = false;

    void SetQuoted(bool wanted)
    {
        if (wanted != quoted)
            out += '\'';
        quoted = wanted;
    }
};

// Copies what follows a quote; the result is the place behind the closing one.
std::size_t CopyQuoted(const std::u16string& pattern, std::size_t at, Literal& out)
{
    if (at < pattern.size() && pattern[at] == '\'') {
        out.Put('\'');
        return at + 1;
    }
    for (; at < pattern.size(); ++at) {
        if (pattern[at] == '\'') {
            if (at + 1 == pattern.size() || pattern[at + 1] != '\'')
                return at + 1;
            ++at;
        }
        out.Put(pattern[at]);
    }
    return at;
}

std::size_t CopyLiteral(const std::u16string& pattern, std::size_t at, std::u16string& picture)
{
    Literal literal(picture);
    while (at < pattern.size() && !IsField(pattern[at])) {
        if (pattern[at] == '\'') {
            at = CopyQuoted(pattern, at + 1, literal);
            continue;
        }
        literal.Put(pattern[at++]);
    }
    return at;
}
} // namespace

std::u16string PictureOf(const std::u16string& pattern)
{
    std::u16string picture;
    for (std::size_t at = 0; at < pattern.size();) {
        if (!IsField(pattern[at])) {
            at = CopyLiteral(pattern, at, picture);
            continue;
        }
        const std::size_t end =
            std::min(pattern.find_first_not_of(pattern[at], at), pattern.size());
        picture += FieldOf(pattern[at], end - at);
        at = end;
    }
    return picture;
}
} // namespace winapi
