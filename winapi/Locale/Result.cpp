// winapi/Locale/Result.cpp
#include "Locale/Result.h"

#include "winapi/Errors/LastError.h"
#include "winapi/Text/CodePage.h"

#include <algorithm>

namespace winapi
{
namespace
{
int Short()
{
    SetLastError(ERROR_INSUFFICIENT_BUFFER);
    return 0;
}
} // namespace

bool IsRoomSound(const void* buffer, int size)
{
    if (size >= 0 && (buffer || size == 0))
        return true;
    SetLastError(ERROR_INVALID_PARAMETER);
    return false;
}

template <class Unit>
int HandOver(std::basic_string_view<Unit> text, Unit* buffer, int size)
{
    const int needed = static_cast<int>(text.size()) + 1;
    if (size == 0)
        return needed;
    if (needed > size)
        return Short();
    std::copy(text.begin(), text.end(), buffer);
    buffer[text.size()] = 0;
    return needed;
}

template int HandOver(std::basic_string_view<char>, char*, int);
template int HandOver(std::basic_string_view<WCHAR>, WCHAR*, int);

int HandOverIn(UINT page, std::basic_string_view<WCHAR> text, char* buffer, int size)
{
    // An ASCII text needs no table of a page.
    if (std::all_of(text.begin(), text.end(), [](WCHAR unit) { return unit < 0x80; })) {
        const int needed = static_cast<int>(text.size()) + 1;
        if (size && needed > size)
            return Short();
        if (size) {
            std::copy(text.begin(), text.end(), buffer);
            buffer[text.size()] = 0;
        }
        return needed;
    }
    const int count = static_cast<int>(text.size());
    const int bytes =
        WideCharToMultiByte(page, 0, text.data(), count, nullptr, 0, nullptr, nullptr);
    if (!bytes || !size)
        return bytes ? bytes + 1 : 0;
    if (bytes + 1 > size)
        return Short();
    WideCharToMultiByte(page, 0, text.data(), count, buffer, size, nullptr, nullptr);
    buffer[bytes] = 0;
    return bytes + 1;
}
} // namespace winapi
