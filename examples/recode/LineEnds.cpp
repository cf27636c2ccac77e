// examples/recode/LineEnds.cpp
#include "LineEnds.h"

namespace recode
{
void LineCount::Take(std::u16string_view units)
{
    for (size_t at = 0; (at = units.find_first_of(u"\r\n", at)) != units.npos; ++at) {
        const bool feed = units[at] == u'\n';
        const bool behind = at ? units[at - 1] == u'\r' : afterReturn;
        lines += !(feed && behind);
    }
    if (!units.empty())
        afterReturn = units.back() == u'\r';
}

bool LineEnds::Parse(std::string_view name, Kind* kind)
{
    *kind = name == "lf" ? LF : name == "crlf" ? CRLF : name == "cr" ? CR : KEEP;
    return *kind != KEEP;
}

// A carriage return ends its line at once; the line feed behind it is left out.
void LineEnds::Take(std::u16string* units)
{
    static const std::u16string_view ENDS[] = {u"", u"\n", u"\r\n", u"\r"};
    if (kind == KEEP || units->empty())
        return;
    std::u16string text;
    text.reserve(units->size() + units->size() / 16);
    size_t from = 0;
    for (size_t at; (at = units->find_first_of(u"\r\n", from)) != units->npos; from = at + 1) {
        text.append(*units, from, at - from);
        const bool feed = (*units)[at] == u'\n';
        const bool behind = at ? (*units)[at - 1] == u'\r' : afterReturn;
        if (!(feed && behind))
            text += ENDS[kind];
    }
    text.append(*units, from);
    afterReturn = units->back() == u'\r';
    units->swap(text);
}
} // namespace recode
