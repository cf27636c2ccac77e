// winapi/Files/Names.cpp
#include "Files/Names.h"

#include "Base/Posix.h"
#include "winapi/Text/CodePage.h"

#include <climits>

namespace winapi
{
namespace
{
constexpr bool IsLead(char32_t unit)
{
    return (unit & 0xFC00) == 0xD800;
}

constexpr bool IsTrail(char32_t unit)
{
    return (unit & 0xFC00) == 0xDC00;
}

void Append(std::string& text, char32_t c)
{
    if (c < 0x80) {
        text += static_cast<char>(c);
        return;
    }
    const int trails = c < 0x800 ? 1 : c < 0x10000 ? 2 : 3;
    constexpr unsigned char leads[] = {0, 0xC0, 0xE0, 0xF0};
    text += static_cast<char>(leads[trails] | c >> 6 * trails);
    for (int i = trails - 1; i >= 0; --i)
        text += static_cast<char>(0x80 | (c >> 6 * i & 0x3F));
}

void Append(WideText& text, char32_t c)
{
    if (c >= 0x10000) {
        text += static_cast<WCHAR>(0xD7C0 + (c >> 10));
        c = 0xDC00 | (c & 0x3FF);
    }
    text += static_cast<WCHAR>(c);
}

// Takes one character off the front; false when there is no well-formed one.
bool Take(std::string_view& text, char32_t& c)
{
    const auto lead = static_cast<unsigned char>(text[0]);
    const unsigned trails = lead < 0x80   ? 0
                            : lead < 0xC2 ? 9
                            : lead < 0xE0 ? 1
                            : lead < 0xF0 ? 2
                            : lead < 0xF5 ? 3
                                          : 9;
    if (trails >= text.size())
        return false;
    c = trails ? lead & 0x3FU >> trails : lead;
    for (unsigned i = 1; i <= trails; ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        if ((byte & 0xC0) != 0x80)
            return false;
        c = c << 6 | (byte & 0x3F);
    }
    text.remove_prefix(trails + 1);
    constexpr char32_t least[] = {0, 0x80, 0x800, 0x10000};
    return c >= least[trails] && c < 0x110000 && (c & 0xFFFFF800) != 0xD800;
}

std::size_t EndWithoutSeparators(const std::string& path)
{
    std::size_t end = path.size();
    while (end > 1 && path[end - 1] == '/')
        --end;
    return end;
}

// Such text is the same in every ANSI code page.
template <class Char>
bool IsAscii(std::basic_string_view<Char> text)
{
    return std::all_of(text.begin(), text.end(), [](Char c) { return c >= 0 && c < 0x80; });
}

int Converted(int count)
{
    if (count <= 0)
        throw Failed();
    return count;
}

bool IsDirectory(const std::string& path)
{
    struct stat facts;
    return posix.stat(path.c_str(), &facts) == 0 && S_ISDIR(facts.st_mode);
}
} // namespace

DWORD CodeOf(int error, const std::string& path)
{
    if (error == ENOENT && !IsDirectory(ParentOf(path)))
        return ERROR_PATH_NOT_FOUND;
    return CodeOf(error);
}

std::optional<std::string> ToUtf8(WideView text)
{
    std::string result;
    result.reserve(text.size() + text.size() / 2);
    for (std::size_t i = 0; i < text.size(); ++i) {
        char32_t c = text[i];
        if (IsTrail(c))
            return {};
        if (IsLead(c)) {
            if (i + 1 == text.size() || !IsTrail(text[i + 1]))
                return {};
            c = 0x10000 + ((c & 0x3FF) << 10 | (text[++i] & 0x3FF));
        }
        Append(result, c);
    }
    return result;
}

std::optional<WideText> FromUtf8(std::string_view text)
{
    WideText result;
    result.reserve(text.size());
    for (char32_t c; !text.empty(); Append(result, c))
        if (!Take(text, c))
            return {};
    return result;
}

std::optional<std::string> HostName(LPCWSTR name, DWORD codeIfEmpty)
{
    if (!name || !*name) {
        SetLastError(codeIfEmpty);
        return {};
    }
    auto path = ToUtf8(name);
    if (path)
        std::replace(path->begin(), path->end(), '\\', '/');
    else
        SetLastError(ERROR_INVALID_NAME);
    return path;
}

std::string ParentOf(const std::string& path)
{
    const std::size_t separator = path.rfind('/', EndWithoutSeparators(path) - 1);
    if (separator == std::string::npos)
        return ".";
    return path.substr(0, std::max<std::size_t>(separator, 1));
}

std::string_view LastComponent(const std::string& path)
{
    const auto whole = std::string_view(path).substr(0, EndWithoutSeparators(path));
    return whole.substr(whole.rfind('/') + 1);
}

std::optional<std::string> CurrentDirectory()
{
    char directory[PATH_MAX];
    if (posix.getcwd(directory, sizeof directory) && directory[0] == '/')
        return directory;
    SetLastError(ERROR_PATH_NOT_FOUND);
    return {};
}

std::optional<std::string> AbsoluteName(const std::string& path)
{
    std::string result;
    if (path[0] != '/') {
        auto directory = CurrentDirectory();
        if (!directory)
            return {};
        if (*directory != "/")
            result = std::move(*directory);
    }
    for (std::size_t start = 0, end; start < path.size(); start = end + 1) {
        end = std::min(path.find('/', start), path.size());
        const auto component = std::string_view(path).substr(start, end - start);
        if (component == "..")
            result.resize(std::min(result.rfind('/'), result.size()));
        else if (!component.empty() && component != ".")
            (result += '/') += component;
    }
    if (result.empty() || path.back() == '/')
        result += '/';
    return result;
}

WideText Widen(std::string_view bytes, UINT page)
{
    if (IsAscii(bytes))
        return WideText(bytes.begin(), bytes.end());
    const int count = static_cast<int>(bytes.size());
    const int size = Converted(MultiByteToWideChar(page, 0, bytes.data(), count, nullptr, 0));
    WideText text(static_cast<std::size_t>(size), 0);
    Converted(MultiByteToWideChar(page, 0, bytes.data(), count, text.data(), size));
    return text;
}

Widened::Widened(LPCSTR narrow) : null(!narrow)
{
    if (narrow)
        text = Widen(narrow, CP_ACP);
}

std::string Narrowed(WideView text, UINT page)
{
    if (IsAscii(text))
        return std::string(text.begin(), text.end());
    const int count = static_cast<int>(text.size());
    const int size =
        Converted(WideCharToMultiByte(page, 0, text.data(), count, nullptr, 0, nullptr, nullptr));
    std::string result(static_cast<std::size_t>(size), '\0');
    Converted(
        WideCharToMultiByte(page, 0, text.data(), count, result.data(), size, nullptr, nullptr));
    return result;
}
} // namespace winapi
