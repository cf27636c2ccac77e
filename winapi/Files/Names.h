// winapi/Files/Names.h: names of files, between the callers' wide or narrow text and the host's UTF-8.
#pragma once

#include "Errors/Failure.h"

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>

namespace winapi
{
using WideText = std::basic_string<WCHAR>;
using WideView = std::basic_string_view<WCHAR>;

// Nothing when the text holds a lone surrogate.
std::optional<std::string> ToUtf8(WideView text);
// Nothing when the text is not well-formed UTF-8.
std::optional<WideText> FromUtf8(std::string_view text);

// The host's form of a name: UTF-8, every `\` a `/`. Nothing, with the last error set, when the
// name is null or empty (codeIfEmpty) or holds a lone surrogate (ERROR_INVALID_NAME, 123).
std::optional<std::string> HostName(LPCWSTR name, DWORD codeIfEmpty = ERROR_PATH_NOT_FOUND);

// The system error that stands for an error number of the host after a call with a name: a missing
// entry of an existing directory is ERROR_FILE_NOT_FOUND (2), a missing directory
// ERROR_PATH_NOT_FOUND (3).
DWORD CodeOf(int error, const std::string& path);

// The directory that holds the last component of a name, which may have separators behind it; "."
// and "/" where no directory is named.
std::string ParentOf(const std::string& path);
// The last component of a name, without separators behind it.
std::string_view LastComponent(const std::string& path);

// The name seen from the root, as text only: "." and ".." are folded, the latter not above the
// root, and so are doubled separators; one at the end stays. Nothing, with the last error set,
// without a current directory.
std::optional<std::string> AbsoluteName(const std::string& path);
// The current directory; nothing, with the last error set, when it has no name.
std::optional<std::string> CurrentDirectory();

// Text of a code page as wide text. What can't be converted ends the service with the conversion's
// last error; ASCII always can, and needs no tables.
WideText Widen(std::string_view bytes, UINT page);

// Text of the ANSI code page as wide text; null stays null. What can't be converted ends the service
// with the conversion's last error; ASCII always can, and needs no tables.
class Widened
{
public:
    explicit Widened(LPCSTR narrow);
    operator LPCWSTR() const { return null ? nullptr : text.c_str(); }

private:
    bool null;
    WideText text;
};

// Wide text in a code page, the ANSI one if none is told; the same holds for it.
std::string Narrowed(WideView text, UINT page = 0);

// Copies a text and its terminator to a caller's buffer. Result: its length; where the room is too
// small, the size needed, and nothing is written.
template <class Char>
DWORD StoreText(const std::basic_string<Char>& text, DWORD room, Char* buffer)
{
    const auto size = static_cast<DWORD>(text.size());
    if (!buffer || size >= room)
        return size + 1;
    std::copy_n(text.c_str(), size + 1, buffer);
    return size;
}
} // namespace winapi
