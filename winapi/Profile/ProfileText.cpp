// winapi/Profile/ProfileText.cpp
#include "Profile/ProfileText.h"

#include "Text/UpperCase.h"
#include "winapi/Text/CodePage.h"

#include <algorithm>

namespace winapi
{
namespace
{
template <class Char>
constexpr bool IsBlank(Char c)
{
    constexpr Char OLD_END_OF_FILE = 0x1A;
    return c == ' ' || (c >= '\t' && c <= '\r') || c == OLD_END_OF_FILE;
}

constexpr bool IsAscii(char c)
{
    return static_cast<unsigned char>(c) < 0x80;
}

// Where the last "]" stands; none where there is none. A second byte of a double-byte character may
// look like one.
std::size_t LastBracket(std::string_view line, UINT page)
{
    if (std::all_of(line.begin(), line.end(), IsAscii))
        return line.rfind(']');
    std::size_t last = std::string_view::npos;
    for (std::size_t i = 0; i < line.size(); ++i)
        if (line[i] == ']')
            last = i;
        else if (IsDBCSLeadByteEx(page, static_cast<BYTE>(line[i])))
            ++i;
    return last;
}

std::size_t LastBracket(WideView line, UINT)
{
    return line.rfind(']');
}

std::size_t LengthOfCharacter(std::string_view rest, UINT page)
{
    if (page != CP_UTF8)
        return IsDBCSLeadByteEx(page, static_cast<BYTE>(rest[0])) ? 2 : 1;
    std::size_t length = 1;
    while (length < rest.size() && (rest[length] & 0xC0) == 0x80)
        ++length;
    return length;
}

template <class Char>
struct Line
{
    using View = std::basic_string_view<Char>;

    bool isSection = false;
    bool hasValue = false;
    View name;
    View value; // as it stands, with its quotes
};

// The lines that say something, one after the other.
template <class Char>
class Lines
{
public:
    using View = std::basic_string_view<Char>;

    Lines(View text, UINT codePage) : rest(text), page(codePage) {}

    bool Next(Line<Char>& line)
    {
        View whole;
        do
            if (rest.empty())
                return false;
            else
                whole = Trimmed(TakeLine());
        while (whole.empty());
        line = Parsed(whole);
        return true;
    }

private:
    View TakeLine()
    {
        const auto end =
            std::find_if(rest.begin(), rest.end(), [](Char c) { return c == '\n' || c == '\r'; });
        const auto length = static_cast<std::size_t>(end - rest.begin());
        const View line = rest.substr(0, length);
        rest.remove_prefix(std::min(length + 1, rest.size()));
        return line;
    }

    Line<Char> Parsed(View whole) const
    {
        if (whole.front() == '[') {
            const std::size_t bracket = LastBracket(whole, page);
            if (bracket != View::npos)
                return {true, false, Trimmed(whole.substr(1, bracket - 1)), {}};
        }
        const std::size_t sign = whole.find('=');
        if (sign == View::npos)
            return {false, false, whole, {}};
        return {false, true, Trimmed(whole.substr(0, sign)), Trimmed(whole.substr(sign + 1))};
    }

    View rest;
    UINT page;
};

// Goes through the lines of the first section of a name, until the call returns true.
template <class Char, class Call>
void ForSection(std::basic_string_view<Char> text, UINT page, const WantedName& section, Call call)
{
    bool within = section.Is(std::basic_string_view<Char>(), page);
    Line<Char> line;
    for (Lines<Char> lines(text, page); lines.Next(line);) {
        if (line.isSection && within)
            break;
        if (line.isSection)
            within = section.Is(line.name, page);
        else if (within && call(line))
            break;
    }
}

// Writes the text anew, line by line, with a change.
template <class Char>
class Editor
{
public:
    using Text = std::basic_string<Char>;
    using View = std::basic_string_view<Char>;
    using Change = typename ProfileText<Char>::Change;

    Editor(View text, UINT codePage, const Change& wanted) : change(wanted), page(codePage)
    {
        result.reserve(text.size() + text.size() / 8 + 64);
        place = change.section.Is(View(), page) ? Place::WITHIN : Place::BEFORE;
    }

    void Take(const Line<Char>& line)
    {
        if (line.isSection)
            TakeSection(line.name);
        else if (place != Place::WITHIN || !Changes(line))
            WriteKey(line);
    }

    std::optional<Text> Finish()
    {
        if (place == Place::BEFORE && Adds()) {
            WriteSection(change.sectionText);
            place = Place::WITHIN;
        }
        Leave();
        return changed ? std::optional(std::move(result)) : std::nullopt;
    }

private:
    enum class Place
    {
        BEFORE,
        WITHIN,
        BEHIND,
    };

    bool Adds() const { return change.keyText && change.value && !done; }

    void TakeSection(View name)
    {
        Leave();
        if (place == Place::BEFORE && change.section.Is(name, page)) {
            place = Place::WITHIN;
            if (!change.keyText) {
                changed = true;
                return;
            }
        }
        WriteSection(name);
    }

    // The end of the section is where a new key goes.
    void Leave()
    {
        if (place != Place::WITHIN)
            return;
        place = Place::BEHIND;
        if (!Adds())
            return;
        changed = true;
        WriteKey({false, true, *change.keyText, *change.value});
    }

    // A line of the section: whether it's gone or written otherwise.
    bool Changes(const Line<Char>& line)
    {
        if (change.keyText) {
            if (done || !change.key.Is(line.name, page))
                return false;
            done = true;
            if (change.value && line.hasValue && line.value == *change.value)
                return false;
        }
        changed = true;
        if (change.keyText && change.value)
            WriteKey({false, true, line.name, *change.value});
        return true;
    }

    void WriteSection(View name)
    {
        result += '[';
        result += name;
        result += ']';
        EndLine();
    }

    void WriteKey(const Line<Char>& line)
    {
        result += line.name;
        if (line.hasValue) {
            result += '=';
            result += line.value;
        }
        EndLine();
    }

    void EndLine()
    {
        result += '\r';
        result += '\n';
    }

    const Change& change;
    const UINT page;
    Text result;
    Place place;
    bool done = false; // the key was met
    bool changed = false;
};
} // namespace

WantedName::WantedName(WideView name) : folded(Trimmed(name))
{
    for (WCHAR& unit : folded)
        unit = UpperCase(unit);
}

bool WantedName::Is(std::string_view name, UINT page) const
{
    for (std::size_t i = 0; i < name.size(); ++i) {
        if (!IsAscii(name[i]))
            return IsFrom(i, Widen(name.substr(i), page));
        if (i >= folded.size() || UpperCase(static_cast<WCHAR>(name[i])) != folded[i])
            return false;
    }
    return name.size() == folded.size();
}

bool WantedName::Is(WideView name, UINT) const
{
    return IsFrom(0, name);
}

bool WantedName::IsFrom(std::size_t start, WideView rest) const
{
    const WideView wanted = WideView(folded).substr(std::min(start, folded.size()));
    return std::equal(rest.begin(), rest.end(), wanted.begin(), wanted.end(),
                      [](WCHAR unit, WCHAR upper) { return UpperCase(unit) == upper; });
}

template <class Char>
std::basic_string_view<Char> Trimmed(std::basic_string_view<Char> text)
{
    while (!text.empty() && IsBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && IsBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

template <class Char>
std::basic_string_view<Char> WithoutSpacesBehind(std::basic_string_view<Char> text)
{
    while (!text.empty() && text.back() == ' ')
        text.remove_suffix(1);
    return text;
}

template <class Char>
std::basic_string_view<Char> Unquoted(std::basic_string_view<Char> text)
{
    const bool quoted = text.size() > 1 && (text.front() == '"' || text.front() == '\'') &&
                        text.back() == text.front();
    return quoted ? text.substr(1, text.size() - 2) : text;
}

template <class Char>
auto ProfileText<Char>::Find(const WantedName& section, const WantedName& key) const
    -> std::optional<View>
{
    std::optional<View> value;
    ForSection(text, page, section, [&](const Line<Char>& line) {
        if (!key.Is(line.name, page))
            return false;
        if (line.hasValue)
            value = Unquoted(line.value);
        return true;
    });
    return value;
}

template <class Char>
auto ProfileText<Char>::Sections() const -> Text
{
    Text names;
    Line<Char> line;
    for (Lines<Char> lines(text, page); lines.Next(line);)
        if (line.isSection && !line.name.empty())
            (names += line.name) += Char(0);
    return names;
}

template <class Char>
auto ProfileText<Char>::Keys(const WantedName& section) const -> Text
{
    Text names;
    ForSection(text, page, section, [&](const Line<Char>& line) {
        if (line.hasValue && !line.name.empty() && line.name.front() != ';')
            (names += line.name) += Char(0);
        return false;
    });
    return names;
}

template <class Char>
auto ProfileText<Char>::Changed(const Change& change) const -> std::optional<Text>
{
    Editor<Char> editor(text, page, change);
    Line<Char> line;
    for (Lines<Char> lines(text, page); lines.Next(line);)
        editor.Take(line);
    return editor.Finish();
}

std::string_view CutToFit(std::string_view text, std::size_t room, UINT page)
{
    if (text.size() <= room)
        return text;
    std::size_t end = 0;
    for (std::size_t next = 0; next <= room; next += LengthOfCharacter(text.substr(next), page))
        end = next;
    return text.substr(0, end);
}

WideView CutToFit(WideView text, std::size_t room, UINT)
{
    return text.substr(0, room);
}

template class ProfileText<char>;
template class ProfileText<WCHAR>;
template std::string_view Trimmed(std::string_view);
template WideView Trimmed(WideView);
template std::string_view WithoutSpacesBehind(std::string_view);
template WideView WithoutSpacesBehind(WideView);
template std::string_view Unquoted(std::string_view);
template WideView Unquoted(WideView);
} // namespace winapi
