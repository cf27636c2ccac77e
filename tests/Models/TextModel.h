// tests/Models/TextModel.h: the plain ways of matching, comparing, translating and stripping texts,
// std::basic_string of any unit.
#pragma once

#include <algorithm>
#include <type_traits>
#include <vector>

// By all ways of splitting the text, each tried once.
template <class Text>
bool PlainMatch(const Text& text, const Text& pattern)
{
    if (pattern.empty())
        return true;
    std::vector<char> reached(text.size() + 1);
    reached[0] = true;
    for (const auto c : pattern) {
        if (c == '*') {
            for (std::size_t at = 1; at <= text.size(); ++at)
                reached[at] = reached[at] || reached[at - 1];
            continue;
        }
        for (std::size_t at = text.size(); at; --at)
            reached[at] = reached[at - 1] && (c == '?' || c == text[at - 1]);
        reached[0] = false;
    }
    return reached[text.size()];
}

template <class Text>
int PlainCompare(const Text& left, const Text& right)
{
    const auto order = [](auto a, auto b) {
        return std::make_unsigned_t<decltype(a)>(a) < std::make_unsigned_t<decltype(b)>(b);
    };
    if (std::lexicographical_compare(left.begin(), left.end(), right.begin(), right.end(), order))
        return -1;
    return left == right ? 0 : 1;
}

template <class Text>
Text PlainTranslate(const Text& text, const Text& from, const Text& to)
{
    Text out;
    for (const auto c : text) {
        const auto place = from.find(c);
        if (place == Text::npos)
            out += c;
        else if (place < to.size())
            out += to[place];
    }
    return out;
}

// Kept: the last character stays, even one of the set.
template <class Text>
Text PlainStrip(const Text& text, const Text& set)
{
    const auto first = text.find_first_not_of(set);
    Text out = first == Text::npos ? Text() : text.substr(first);
    while (out.size() > 1 && set.find(out.back()) != Text::npos)
        out.pop_back();
    return out;
}
