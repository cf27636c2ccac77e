// winapi/Profile/ProfileText.h: the text of a profile: what it says, and how a change is made.
#pragma once

#include "Files/Names.h"

#include <optional>
#include <string>
#include <string_view>

namespace winapi
{
// A name to be looked for: without the blanks around it, in upper case.
class WantedName
{
public:
    explicit WantedName(WideView name);

    // Whether it is that name; bytes are of that code page.
    bool Is(std::string_view name, UINT page) const;
    bool Is(WideView name, UINT page) const;

private:
    bool IsFrom(std::size_t start, WideView rest) const;

    WideText folded;
};

// A profile's text without its mark, of bytes of a code page or of units. Bytes that no character
// of the page has are kept as they are.
template <class Char>
class ProfileText
{
public:
    using Text = std::basic_string<Char>;
    using View = std::basic_string_view<Char>;

    ProfileText(View whole, UINT codePage) : text(whole), page(codePage) {}

    // The value of the first such key in the first such section, without its quotes.
    std::optional<View> Find(const WantedName& section, const WantedName& key) const;
    // The names of the sections, and of the keys of a section that have values, a zero behind each.
    Text Sections() const;
    Text Keys(const WantedName& section) const;

    // A change: the names as they are looked for, and as they are written where they are new. A
    // null value removes the key, a null key the section.
    struct Change
    {
        WantedName section;
        View sectionText;
        WantedName key;
        const View* keyText;
        const View* value;
    };
    // The whole text anew; nothing when the change changes nothing.
    std::optional<Text> Changed(const Change& change) const;

private:
    View text;
    UINT page;
};

// Without blanks at both ends; tabs and the end of a file of old count as such.
template <class Char>
std::basic_string_view<Char> Trimmed(std::basic_string_view<Char> text);
// Without spaces at the end, and nothing else.
template <class Char>
std::basic_string_view<Char> WithoutSpacesBehind(std::basic_string_view<Char> text);
// Without one pair of equal quotes around it.
template <class Char>
std::basic_string_view<Char> Unquoted(std::basic_string_view<Char> text);

// The most of a text that fits, in whole characters.
std::string_view CutToFit(std::string_view text, std::size_t room, UINT page);
WideView CutToFit(WideView text, std::size_t room, UINT page);
} // namespace winapi
