// winapi/Profile/PrivateProfile.cpp: the services of profile files.
#include "winapi/Profile/Profile.h"

#include "Errors/Failure.h"
#include "Profile/ProfileFile.h"
#include "Profile/ProfileText.h"
#include "winapi/Text/CodePage.h"

#include <algorithm>

namespace winapi
{
namespace
{
// A text of the caller, as it was given and as units. What is of the ANSI page comes from and goes
// to a file of that page unchanged, so that bytes without a character survive.
class Argument
{
public:
    explicit Argument(LPCWSTR text) : null(!text)
    {
        if (text)
            units = text;
    }
    explicit Argument(LPCSTR text)
        : null(!text),
          narrow(text != nullptr),
          bytes(text ? text : ""),
          units(Widen(bytes, CP_ACP))
    {}

    bool IsNull() const { return null; }
    WideView Wide() const { return units; }
    void Give(UINT, WideText& text) const { text = units; }
    void Give(UINT page, std::string& text) const
    {
        text = narrow && page == GetACP() ? bytes : Narrowed(units, page);
    }

private:
    bool null;
    bool narrow = false;
    std::string bytes;
    WideText units;
};

// A text of a file as the caller's text.
void Deliver(std::string_view text, UINT page, std::string& answer)
{
    answer = page == GetACP() ? std::string(text) : Narrowed(Widen(text, page));
}
void Deliver(WideView text, UINT, std::string& answer)
{
    answer = Narrowed(text);
}
void Deliver(std::string_view text, UINT page, WideText& answer)
{
    answer = Widen(text, page);
}
void Deliver(WideView text, UINT, WideText& answer)
{
    answer = text;
}

// What is asked of a profile: of everything, of a section or of a key.
struct Question
{
    bool ofAll;
    bool ofSection;
    WantedName section;
    WantedName key;
};

template <class Char, class Out>
bool AnswerFrom(const ProfileText<Char>& text, UINT page, const Question& question, Out& answer)
{
    if (question.ofAll) {
        Deliver(text.Sections(), page, answer);
        return true;
    }
    if (question.ofSection) {
        const auto keys = text.Keys(question.section);
        Deliver(keys, page, answer);
        return !keys.empty();
    }
    const auto value = text.Find(question.section, question.key);
    if (value)
        Deliver(*value, page, answer);
    return value.has_value();
}

// False when the profile has no answer; the last error is 0, or tells why it can't be read.
template <class Out>
bool Answer(LPCWSTR name, const Question& question, Out& answer)
{
    std::string file;
    const auto path = ProfilePath(name, false);
    if (!path)
        return false;
    const DWORD code = ReadProfile(*path, file);
    SetLastError(code);
    if (code != 0)
        return false;
    const ProfileContents contents(file);
    const UINT page = contents.Page();
    return contents.IsWide()
               ? AnswerFrom(ProfileText<WCHAR>(contents.units, page), page, question, answer)
               : AnswerFrom(ProfileText<char>(contents.bytes, page), page, question, answer);
}

// A list that doesn't fit ends in two zeros within the room.
template <class Char>
DWORD Store(std::basic_string_view<Char> answer, bool list, Char* buffer, DWORD room)
{
    const DWORD zeros = list && answer.size() >= room ? 2 : 1;
    const auto cut = CutToFit(answer, std::max(room, zeros) - zeros, GetACP());
    std::copy(cut.begin(), cut.end(), buffer);
    std::fill_n(buffer + cut.size(), std::min(room, zeros), Char(0));
    return static_cast<DWORD>(cut.size());
}

template <class Char>
DWORD Get(const Char* section, const Char* key, const Char* otherwise, Char* buffer, DWORD room,
          LPCWSTR name)
{
    using View = std::basic_string_view<Char>;
    if (!buffer || room == 0)
        return 0;
    const Question question = {!section, section && !key, WantedName(Argument(section).Wide()),
                               WantedName(Argument(key).Wide())};
    std::basic_string<Char> answer;
    if (Answer(name, question, answer))
        return Store(View(answer), question.ofAll || question.ofSection, buffer, room);
    const View text = otherwise ? View(otherwise) : View();
    return Store(key ? Unquoted(WithoutSpacesBehind(text)) : text, false, buffer, room);
}

template <class Char>
std::optional<std::basic_string<Char>> Changed(std::basic_string_view<Char> text, UINT page,
                                               const Argument& section, const Argument& key,
                                               const Argument& value)
{
    using View = std::basic_string_view<Char>;
    std::basic_string<Char> sectionText;
    std::basic_string<Char> keyText;
    std::basic_string<Char> valueText;
    section.Give(page, sectionText);
    key.Give(page, keyText);
    value.Give(page, valueText);
    const View keyView = Trimmed(View(keyText));
    const View valueView = Trimmed(View(valueText));
    return ProfileText<Char>(text, page)
        .Changed({WantedName(section.Wide()), Trimmed(View(sectionText)), WantedName(key.Wide()),
                  key.IsNull() ? nullptr : &keyView, value.IsNull() ? nullptr : &valueView});
}

std::optional<std::string> Rewritten(const std::string& file, const Argument& section,
                                     const Argument& key, const Argument& value)
{
    ProfileContents contents(file);
    const UINT page = contents.Page();
    if (contents.IsWide()) {
        auto units = Changed(WideView(contents.units), page, section, key, value);
        if (!units)
            return {};
        contents.units = std::move(*units);
    } else {
        auto bytes = Changed(std::string_view(contents.bytes), page, section, key, value);
        if (!bytes)
            return {};
        contents.bytes = std::move(*bytes);
    }
    return contents.File();
}

BOOL Write(const Argument& section, const Argument& key, const Argument& value, LPCWSTR name)
{
    // All null asks to forget what is kept of the file in memory, which nothing is.
    if (section.IsNull()) {
        Finish(key.IsNull() && value.IsNull() ? ERROR_SUCCESS : ERROR_FILE_NOT_FOUND);
        return FALSE;
    }
    const bool adds = !key.IsNull() && !value.IsNull();
    const auto path = ProfilePath(name, adds);
    return path && Finish(RewriteProfile(*path, adds, [&](const std::string& file) {
               return Rewritten(file, section, key, value);
           }));
}
} // namespace

DWORD GetPrivateProfileStringW(LPCWSTR lpAppName, LPCWSTR lpKeyName, LPCWSTR lpDefault,
                               LPWSTR lpReturnedString, DWORD nSize, LPCWSTR lpFileName)
{
    return Guarded(0U, [&] {
        return Get(lpAppName, lpKeyName, lpDefault, lpReturnedString, nSize, lpFileName);
    });
}

DWORD GetPrivateProfileStringA(LPCSTR lpAppName, LPCSTR lpKeyName, LPCSTR lpDefault,
                               LPSTR lpReturnedString, DWORD nSize, LPCSTR lpFileName)
{
    return Guarded(0U, [&] {
        return Get(lpAppName, lpKeyName, lpDefault, lpReturnedString, nSize, Widened(lpFileName));
    });
}

BOOL WritePrivateProfileStringW(LPCWSTR lpAppName, LPCWSTR lpKeyName, LPCWSTR lpString,
                                LPCWSTR lpFileName)
{
    return Guarded(FALSE, [&] {
        return Write(Argument(lpAppName), Argument(lpKeyName), Argument(lpString), lpFileName);
    });
}

BOOL WritePrivateProfileStringA(LPCSTR lpAppName, LPCSTR lpKeyName, LPCSTR lpString,
                                LPCSTR lpFileName)
{
    return Guarded(FALSE, [&] {
        return Write(Argument(lpAppName), Argument(lpKeyName), Argument(lpString),
                     Widened(lpFileName));
    });
}
} // namespace winapi
