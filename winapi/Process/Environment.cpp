// winapi/Process/Environment.cpp: environment variables.
//
// Those whose names begin with "=", which the platform uses for the current directories of drives,
// have no place in the host's environment: they lie in a table of the services.
#include "winapi/Process/Environment.h"

#include "Base/HostVariables.h"
#include "Files/Names.h"

#include <map>
#include <mutex>

namespace winapi
{
namespace
{
// Never destroyed: services may be called until the very end.
struct Hidden
{
    std::mutex mutex;
    std::map<WideText, WideText> variables;
};

Hidden& Table()
{
    static Hidden* const table = new Hidden;
    return *table;
}

bool IsName(WideView name)
{
    return !name.empty() && name.find('=', 1) == WideView::npos;
}

bool IsHidden(WideView name)
{
    return name[0] == '=';
}

// The case of their letters doesn't count.
WideText KeyOf(WideView name)
{
    WideText key(name);
    for (WCHAR& unit : key)
        if (unit >= 'a' && unit <= 'z')
            unit = static_cast<WCHAR>(unit - 'a' + 'A');
    return key;
}

DWORD SetHidden(WideView name, LPCWSTR value)
{
    Hidden& table = Table();
    const std::lock_guard lock(table.mutex);
    if (value)
        table.variables.insert_or_assign(KeyOf(name), value);
    else
        table.variables.erase(KeyOf(name));
    return 0;
}

DWORD SetOnHost(WideView name, LPCWSTR value)
{
    const auto hostName = ToUtf8(name);
    const auto hostValue = ToUtf8(value ? WideView(value) : WideView());
    if (!hostName || !hostValue)
        return ERROR_NO_UNICODE_TRANSLATION;
    const int error = SetHostVariable(hostName->c_str(), value ? hostValue->c_str() : nullptr);
    return error == 0 ? 0 : CodeOf(error);
}

std::optional<WideText> Get(WideView name)
{
    if (IsHidden(name)) {
        Hidden& table = Table();
        const std::lock_guard lock(table.mutex);
        const auto found = table.variables.find(KeyOf(name));
        return found == table.variables.end() ? std::nullopt : std::optional(found->second);
    }
    const auto hostName = ToUtf8(name);
    const auto value = hostName ? HostVariable(hostName->c_str()) : std::nullopt;
    return value ? FromUtf8(*value) : std::nullopt;
}

template <class Store>
DWORD GetVariable(LPCWSTR name, Store store)
{
    const auto value = name && IsName(name) ? Get(name) : std::nullopt;
    if (value)
        return store(*value);
    SetLastError(ERROR_ENVVAR_NOT_FOUND);
    return 0;
}
} // namespace

BOOL SetEnvironmentVariableW(LPCWSTR lpName, LPCWSTR lpValue)
{
    return Guarded(FALSE, [&] {
        if (!lpName)
            return Finish(ERROR_ENVVAR_NOT_FOUND);
        if (!IsName(lpName))
            return Finish(ERROR_INVALID_PARAMETER);
        return Finish(IsHidden(lpName) ? SetHidden(lpName, lpValue) : SetOnHost(lpName, lpValue));
    });
}

BOOL SetEnvironmentVariableA(LPCSTR lpName, LPCSTR lpValue)
{
    return Guarded(FALSE,
                   [&] { return SetEnvironmentVariableW(Widened(lpName), Widened(lpValue)); });
}

DWORD GetEnvironmentVariableW(LPCWSTR lpName, LPWSTR lpBuffer, DWORD nSize)
{
    return Guarded(0U, [&] {
        return GetVariable(
            lpName, [&](const WideText& value) { return StoreText(value, nSize, lpBuffer); });
    });
}

DWORD GetEnvironmentVariableA(LPCSTR lpName, LPSTR lpBuffer, DWORD nSize)
{
    return Guarded(0U, [&] {
        return GetVariable(Widened(lpName), [&](const WideText& value) {
            return StoreText(Narrowed(value), nSize, lpBuffer);
        });
    });
}
} // namespace winapi
