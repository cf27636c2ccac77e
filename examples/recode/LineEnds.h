// examples/recode/LineEnds.h: the lines of a text that comes in pieces.
#pragma once

#include <string>
#include <string_view>

namespace recode
{
// Counts lines, which end with a line feed, a carriage return, or both.
class LineCount
{
public:
    void Take(std::u16string_view units);
    // The number of the line in which the next character stands, from 1.
    unsigned long long Line() const { return lines + 1; }

private:
    unsigned long long lines = 0;
    bool afterReturn = false;
};

// Makes one kind of line end of all of them.
class LineEnds
{
public:
    enum Kind
    {
        KEEP,
        LF,
        CRLF,
        CR
    };

    // The kind of that name: lf, crlf or cr.
    static bool Parse(std::string_view name, Kind* kind);

    explicit LineEnds(Kind wanted) : kind(wanted) {}
    void Take(std::u16string* units);

private:
    Kind kind;
    bool afterReturn = false; // whose line feed, if one comes, is done with
};
} // namespace recode
