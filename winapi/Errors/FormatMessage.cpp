// winapi/Errors/FormatMessage.cpp: the system's texts for its error codes.
#include "winapi/Errors/FormatMessage.h"
#include "winapi/Errors/LastError.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "Errors/ErrorTexts.h"

namespace winapi
{
namespace
{
constexpr DWORD SUPPORTED =
    FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_IGNORE_INSERTS | FORMAT_MESSAGE_FROM_SYSTEM;

const char* FindText(DWORD code)
{
    // A system error may come in its form as a result code.
    if ((code & 0xFFFF0000) == 0x80070000)
        code &= 0xFFFF;
    const ErrorText* const end = errorTexts + errorTextCount;
    const ErrorText* const found =
        std::lower_bound(errorTexts, end, code,
                         [](const ErrorText& entry, DWORD wanted) { return entry.code < wanted; });
    return found != end && found->code == code ? found->text : nullptr;
}

DWORD Fail(DWORD error)
{
    SetLastError(error);
    return 0;
}

// The text with its line end, cut to the room, and a terminator.
template <typename Char>
void Store(const char* text, DWORD length, Char* buffer, DWORD room)
{
    const DWORD stored = std::min(length + 2, room - 1);
    for (DWORD i = 0; i < stored; ++i)
        buffer[i] = static_cast<Char>(i < length ? text[i] : i == length ? '\r' : '\n');
    buffer[stored] = 0;
}

// Both widths: the texts are ASCII, which is the same in every ANSI code page.
template <typename Char>
DWORD FormatMessage(DWORD flags, DWORD code, Char* buffer, DWORD room)
{
    const bool allocates = flags & FORMAT_MESSAGE_ALLOCATE_BUFFER;
    if (allocates)
        *reinterpret_cast<Char**>(buffer) = nullptr;
    if ((flags & ~SUPPORTED) || !(flags & FORMAT_MESSAGE_FROM_SYSTEM))
        return Fail(ERROR_INVALID_PARAMETER);
    const char* const text = FindText(code);
    if (!text)
        return Fail(ERROR_MR_MID_NOT_FOUND);

    const DWORD length = static_cast<DWORD>(std::strlen(text));
    const DWORD size = length + 3;
    if (allocates) {
        const DWORD allocated = std::max(size, room);
        Char* const message =
            static_cast<Char*>(std::malloc(std::size_t(allocated) * sizeof(Char)));
        if (!message)
            return Fail(ERROR_NOT_ENOUGH_MEMORY);
        Store(text, length, message, allocated);
        *reinterpret_cast<Char**>(buffer) = message;
        return size - 1;
    }
    // A short room: the wide text is cut, the narrow buffer stays as it is.
    if (size <= room || (room && sizeof(Char) == sizeof(WCHAR)))
        Store(text, length, buffer, room);
    return size <= room ? size - 1 : Fail(ERROR_INSUFFICIENT_BUFFER);
}
} // namespace

DWORD FormatMessageW(DWORD flags, LPCVOID, DWORD code, DWORD, LPWSTR buffer, DWORD room, va_list*)
{
    return buffer ? FormatMessage(flags, code, buffer, room) : Fail(ERROR_INVALID_PARAMETER);
}

DWORD FormatMessageA(DWORD flags, LPCVOID, DWORD code, DWORD, LPSTR buffer, DWORD room, va_list*)
{
    if (!buffer && (flags & FORMAT_MESSAGE_ALLOCATE_BUFFER))
        return Fail(ERROR_NOT_ENOUGH_MEMORY);
    return buffer ? FormatMessage(flags, code, buffer, room) : Fail(ERROR_INVALID_PARAMETER);
}

HLOCAL LocalFree(HLOCAL memory)
{
    std::free(memory);
    return nullptr;
}
} // namespace winapi
