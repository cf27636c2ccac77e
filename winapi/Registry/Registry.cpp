// winapi/Registry/Registry.cpp: the registry's services.
#include "Registry/Store.h"

#include "winapi/Text/CodePage.h"

#include <algorithm>
#include <cstring>

namespace winapi
{
namespace
{
constexpr std::size_t LONGEST_KEY = 255;
constexpr std::size_t LONGEST_VALUE = 16383;
constexpr std::size_t LONGEST_NARROW_PATH = 260;
constexpr REGSAM EVERY_RIGHT = KEY_ALL_ACCESS;

class Key : public Object
{
public:
    static constexpr Kind KIND = Kind::KEY;
    Key(KeyPlace where, REGSAM what) : Object(KIND), place(where), rights(what) {}

    const KeyPlace place;
    const REGSAM rights;
};

// Runs the body of a service. What it returns, or what ended it from within, is the result; the last
// error is no part of it.
template <class Body>
LSTATUS Answer(Body body) noexcept
{
    const DWORD before = GetLastError();
    const DWORD code = Guarded(ERROR_INVALID_FUNCTION, [&]() -> DWORD {
        SetLastError(0);
        return body();
    });
    const DWORD told = GetLastError();
    SetLastError(before);
    return static_cast<LSTATUS>(code == ERROR_INVALID_FUNCTION && told ? told : code);
}

struct OpenKey
{
    KeyPlace place;
    REGSAM rights;
};

// What a handle stands for; ends the service where it stands for none, or lacks the right.
OpenKey Opened(HKEY handle, REGSAM needed)
{
    if (const KeyPlace* predefined = FindPredefined(handle))
        return {*predefined, EVERY_RIGHT};
    const Reference<Key> key(reinterpret_cast<HANDLE>(handle));
    if (!key)
        throw Failed();
    if ((key->rights & needed) != needed) {
        SetLastError(ERROR_ACCESS_DENIED);
        throw Failed();
    }
    return {key->place, key->rights};
}

// The rights that stand behind the generic ones.
REGSAM RightsOf(REGSAM wanted)
{
    constexpr REGSAM GENERIC_RIGHTS[][2] = {{0x80000000, KEY_READ},
                                            {0x40000000, KEY_WRITE},
                                            {0x20000000, KEY_EXECUTE},
                                            {0x10000000, KEY_ALL_ACCESS},
                                            {0x02000000, KEY_ALL_ACCESS}}; // The most there are.
    for (const auto& [generic, rights] : GENERIC_RIGHTS)
        if ((wanted & generic) != 0)
            wanted |= rights;
    return wanted;
}

// Takes a path apart. Result: 0 or the code of the failure.
DWORD ParsePath(HKEY from, LPCWSTR text, KeyPath& path)
{
    WideView rest = text ? WideView(text) : WideView();
    if (!rest.empty() && rest[0] == '\\' &&
        FindPredefined(from) != FindPredefined(HKEY_CLASSES_ROOT))
        return ERROR_BAD_PATHNAME;
    while (!rest.empty()) {
        const std::size_t end = std::min(rest.find('\\'), rest.size());
        if (end > LONGEST_KEY)
            return ERROR_INVALID_PARAMETER;
        if (end > 0)
            path.emplace_back(rest.substr(0, end));
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return 0;
}

HKEY MakeKey(KeyPlace place, REGSAM wanted)
{
    return reinterpret_cast<HKEY>(MakeHandle(std::make_unique<Key>(place, RightsOf(wanted))));
}

DWORD Open(HKEY from, LPCWSTR text, REGSAM wanted, PHKEY result)
{
    KeyPath path;
    KeyPlace found{};
    if (!result)
        return ERROR_INVALID_PARAMETER;
    const OpenKey key = Opened(from, 0);
    if (const DWORD code = ParsePath(from, text, path))
        return code;
    if (const DWORD code = FindKey(key.place, path, found))
        return code;
    *result = MakeKey(found, wanted);
    return *result ? 0 : GetLastError();
}

DWORD Create(HKEY from, LPCWSTR text, REGSAM wanted, PHKEY result, LPDWORD disposition)
{
    KeyPath path;
    KeyPlace found{};
    bool created = false;
    if (!result)
        return ERROR_INVALID_PARAMETER;
    const OpenKey key = Opened(from, 0);
    if (const DWORD code = ParsePath(from, text, path))
        return code;
    const bool mayCreate = (key.rights & KEY_CREATE_SUB_KEY) != 0;
    if (const DWORD code = CreateKey(key.place, path, mayCreate, found, created))
        return code;
    *result = MakeKey(found, wanted);
    if (disposition)
        *disposition = created ? REG_CREATED_NEW_KEY : REG_OPENED_EXISTING_KEY;
    return *result ? 0 : GetLastError();
}

DWORD Delete(HKEY from, LPCWSTR text)
{
    KeyPath path;
    const OpenKey key = Opened(from, 0);
    const DWORD code = ParsePath(from, text, path);
    return code ? code : DeleteKey(key.place, path);
}

// The path of an 8-bit call.
class NarrowPath
{
public:
    explicit NarrowPath(LPCSTR narrow) : text(narrow)
    {
        if (narrow && WideView(text).size() > LONGEST_NARROW_PATH) {
            SetLastError(ERROR_MORE_DATA);
            throw Failed();
        }
    }
    operator LPCWSTR() const { return text; }

private:
    Widened text;
};

std::string FoldOfValue(LPCWSTR name)
{
    return name ? FoldOf(name) : std::string();
}

bool IsText(DWORD type)
{
    return type == REG_SZ || type == REG_EXPAND_SZ || type == REG_MULTI_SZ;
}

void Store(LPDWORD place, DWORD number)
{
    if (place)
        *place = number;
}

void StoreTime(FILETIME* place, std::uint64_t time)
{
    if (place)
        *place = {static_cast<DWORD>(time), static_cast<DWORD>(time >> 32)};
}

// An empty class.
template <class Char>
void StoreClass(Char* text, LPDWORD size)
{
    if (text && size && *size)
        *text = 0;
    Store(size, 0);
}

// The data of a text as an 8-bit call has them, and back. Odd bytes behind the last unit are lost.
std::string ToNarrow(const std::string& data)
{
    WideText wide(data.size() / sizeof(WCHAR), 0);
    if (!wide.empty())
        std::memcpy(wide.data(), data.data(), wide.size() * sizeof(WCHAR));
    return Narrowed(wide);
}

std::string ToWide(const BYTE* data, DWORD size)
{
    const auto narrow = reinterpret_cast<LPCSTR>(data);
    const int count = static_cast<int>(size);
    const int units = MultiByteToWideChar(CP_ACP, 0, narrow, count, nullptr, 0);
    WideText wide(static_cast<std::size_t>(units), 0);
    if (units == 0 || MultiByteToWideChar(CP_ACP, 0, narrow, count, wide.data(), units) == 0)
        throw Failed();
    return {reinterpret_cast<const char*>(wide.data()), wide.size() * sizeof(WCHAR)};
}

// Whether the last character, of that many bytes, isn't zero.
bool IsUnended(const std::string& data, std::size_t width)
{
    if (data.size() < width)
        return false;
    for (std::size_t i = data.size() - width; i < data.size(); ++i)
        if (data[i] != 0)
            return true;
    return false;
}

// Hands out what a value holds, its texts of characters of that many bytes.
DWORD StoreData(const ValueEntry& entry, std::size_t width, LPDWORD type, BYTE* data, LPDWORD size)
{
    Store(type, entry.type);
    const DWORD room = size ? *size : 0;
    const auto needed = static_cast<DWORD>(entry.data.size());
    Store(size, needed);
    if (!data)
        return 0;
    if (needed > room)
        return ERROR_MORE_DATA;
    if (needed)
        std::copy_n(entry.data.data(), needed, reinterpret_cast<char*>(data));
    if (IsText(entry.type) && room - needed >= width && IsUnended(entry.data, width))
        std::memset(data + needed, 0, width);
    return 0;
}

void NarrowData(ValueEntry& entry)
{
    if (IsText(entry.type))
        entry.data = ToNarrow(entry.data);
}

DWORD Fetch(HKEY handle, LPCWSTR name, ValueEntry& entry, const BYTE* data, LPCVOID size)
{
    if (data && !size)
        return ERROR_INVALID_PARAMETER;
    const OpenKey key = Opened(handle, KEY_QUERY_VALUE);
    return FindValue(key.place, FoldOfValue(name), entry);
}

DWORD Set(HKEY handle, LPCWSTR name, DWORD type, const void* data, std::size_t size)
{
    const OpenKey key = Opened(handle, KEY_SET_VALUE);
    const WideView view = name ? WideView(name) : WideView();
    if (view.size() > LONGEST_VALUE)
        return ERROR_INVALID_PARAMETER;
    if (!data && size)
        return ERROR_NOACCESS;
    return SetValue(key.place, StoredText(view), type, data, size);
}

template <class Char>
DWORD QueryInfo(HKEY handle, Char* name, LPDWORD nameSize, LPDWORD subkeys, LPDWORD longestSubkey,
                LPDWORD longestClass, LPDWORD values, LPDWORD longestName, LPDWORD longestData,
                LPDWORD security, FILETIME* written)
{
    KeyFacts facts{};
    const OpenKey key = Opened(handle, KEY_QUERY_VALUE);
    if (const DWORD code = QueryKey(key.place, facts))
        return code;
    StoreClass(name, nameSize);
    Store(subkeys, facts.subkeys);
    Store(longestSubkey, facts.longestSubkey);
    Store(longestClass, 0);
    Store(values, facts.values);
    Store(longestName, facts.longestName);
    Store(longestData, facts.longestData);
    Store(security, 0);
    StoreTime(written, facts.written);
    return 0;
}

// Copies a name that an enumeration tells; the size stays when there is no room.
template <class Char>
DWORD StoreName(const std::basic_string<Char>& name, Char* buffer, LPDWORD size)
{
    if (name.size() >= *size)
        return ERROR_MORE_DATA;
    *size = StoreText(name, *size, buffer);
    return 0;
}

WideText AsText(const WideText& name, WCHAR)
{
    return name;
}

std::string AsText(const WideText& name, char)
{
    return Narrowed(name);
}

template <class Char>
DWORD EnumKey(HKEY handle, DWORD index, Char* name, LPDWORD size, Char* className,
              LPDWORD classSize, FILETIME* written)
{
    SubkeyEntry entry;
    if (!name || !size)
        return ERROR_INVALID_PARAMETER;
    const OpenKey key = Opened(handle, KEY_ENUMERATE_SUB_KEYS);
    if (const DWORD code = EnumerateKey(key.place, index, entry))
        return code;
    StoreTime(written, entry.written);
    if (const DWORD code = StoreName(AsText(entry.name, Char()), name, size))
        return code;
    StoreClass(className, classSize);
    return 0;
}

template <class Char>
DWORD EnumValue(HKEY handle, DWORD index, Char* name, LPDWORD size, LPDWORD type, BYTE* data,
                LPDWORD dataSize)
{
    ValueEntry entry;
    if (!name || !size || (data && !dataSize))
        return ERROR_INVALID_PARAMETER;
    const OpenKey key = Opened(handle, KEY_QUERY_VALUE);
    if (const DWORD code = EnumerateValue(key.place, index, entry))
        return code;
    if constexpr (sizeof(Char) == 1)
        NarrowData(entry);
    // Neither the name nor the data are given where one of them lacks room.
    const auto text = AsText(entry.name, Char());
    if (text.size() >= *size) {
        StoreData(entry, sizeof(Char), type, nullptr, dataSize);
        return ERROR_MORE_DATA;
    }
    const DWORD code = StoreData(entry, sizeof(Char), type, data, dataSize);
    return code ? code : StoreName(text, name, size);
}
} // namespace

LSTATUS RegOpenKeyExW(HKEY hKey, LPCWSTR lpSubKey, DWORD, REGSAM samDesired, PHKEY phkResult)
{
    return Answer([&] { return Open(hKey, lpSubKey, samDesired, phkResult); });
}

LSTATUS RegOpenKeyExA(HKEY hKey, LPCSTR lpSubKey, DWORD, REGSAM samDesired, PHKEY phkResult)
{
    return Answer([&] { return Open(hKey, NarrowPath(lpSubKey), samDesired, phkResult); });
}

LSTATUS RegCreateKeyExW(HKEY hKey, LPCWSTR lpSubKey, DWORD, LPWSTR, DWORD, REGSAM samDesired,
                        LPSECURITY_ATTRIBUTES, PHKEY phkResult, LPDWORD lpdwDisposition)
{
    return Answer([&] { return Create(hKey, lpSubKey, samDesired, phkResult, lpdwDisposition); });
}

LSTATUS RegCreateKeyExA(HKEY hKey, LPCSTR lpSubKey, DWORD, LPSTR, DWORD, REGSAM samDesired,
                        LPSECURITY_ATTRIBUTES, PHKEY phkResult, LPDWORD lpdwDisposition)
{
    return Answer(
        [&] { return Create(hKey, NarrowPath(lpSubKey), samDesired, phkResult, lpdwDisposition); });
}

LSTATUS RegCloseKey(HKEY hKey)
{
    return Answer([&]() -> DWORD {
        if (FindPredefined(hKey))
            return 0;
        const HANDLE handle = reinterpret_cast<HANDLE>(hKey);
        const Reference<Key> key(handle);
        return key && ReleaseHandle(handle, false) ? 0 : ERROR_INVALID_HANDLE;
    });
}

LSTATUS RegDeleteKeyW(HKEY hKey, LPCWSTR lpSubKey)
{
    return Answer([&] { return Delete(hKey, lpSubKey); });
}

LSTATUS RegDeleteKeyA(HKEY hKey, LPCSTR lpSubKey)
{
    return Answer([&] { return Delete(hKey, NarrowPath(lpSubKey)); });
}

LSTATUS RegQueryInfoKeyW(HKEY hKey, LPWSTR lpClass, LPDWORD lpcchClass, LPDWORD, LPDWORD lpcSubKeys,
                         LPDWORD lpcbMaxSubKeyLen, LPDWORD lpcbMaxClassLen, LPDWORD lpcValues,
                         LPDWORD lpcbMaxValueNameLen, LPDWORD lpcbMaxValueLen,
                         LPDWORD lpcbSecurityDescriptor, FILETIME* lpftLastWriteTime)
{
    return Answer([&] {
        return QueryInfo(hKey, lpClass, lpcchClass, lpcSubKeys, lpcbMaxSubKeyLen, lpcbMaxClassLen,
                         lpcValues, lpcbMaxValueNameLen, lpcbMaxValueLen, lpcbSecurityDescriptor,
                         lpftLastWriteTime);
    });
}

LSTATUS RegQueryInfoKeyA(HKEY hKey, LPSTR lpClass, LPDWORD lpcchClass, LPDWORD, LPDWORD lpcSubKeys,
                         LPDWORD lpcbMaxSubKeyLen, LPDWORD lpcbMaxClassLen, LPDWORD lpcValues,
                         LPDWORD lpcbMaxValueNameLen, LPDWORD lpcbMaxValueLen,
                         LPDWORD lpcbSecurityDescriptor, FILETIME* lpftLastWriteTime)
{
    return Answer([&] {
        return QueryInfo(hKey, lpClass, lpcchClass, lpcSubKeys, lpcbMaxSubKeyLen, lpcbMaxClassLen,
                         lpcValues, lpcbMaxValueNameLen, lpcbMaxValueLen, lpcbSecurityDescriptor,
                         lpftLastWriteTime);
    });
}

LSTATUS RegEnumKeyExW(HKEY hKey, DWORD dwIndex, LPWSTR lpName, LPDWORD lpcchName, LPDWORD,
                      LPWSTR lpClass, LPDWORD lpcchClass, FILETIME* lpftLastWriteTime)
{
    return Answer([&] {
        return EnumKey(hKey, dwIndex, lpName, lpcchName, lpClass, lpcchClass, lpftLastWriteTime);
    });
}

LSTATUS RegEnumKeyExA(HKEY hKey, DWORD dwIndex, LPSTR lpName, LPDWORD lpcchName, LPDWORD,
                      LPSTR lpClass, LPDWORD lpcchClass, FILETIME* lpftLastWriteTime)
{
    return Answer([&] {
        return EnumKey(hKey, dwIndex, lpName, lpcchName, lpClass, lpcchClass, lpftLastWriteTime);
    });
}

LSTATUS RegEnumValueW(HKEY hKey, DWORD dwIndex, LPWSTR lpValueName, LPDWORD lpcchValueName, LPDWORD,
                      LPDWORD lpType, BYTE* lpData, LPDWORD lpcbData)
{
    return Answer([&] {
        return EnumValue(hKey, dwIndex, lpValueName, lpcchValueName, lpType, lpData, lpcbData);
    });
}

LSTATUS RegEnumValueA(HKEY hKey, DWORD dwIndex, LPSTR lpValueName, LPDWORD lpcchValueName, LPDWORD,
                      LPDWORD lpType, BYTE* lpData, LPDWORD lpcbData)
{
    return Answer([&] {
        return EnumValue(hKey, dwIndex, lpValueName, lpcchValueName, lpType, lpData, lpcbData);
    });
}

LSTATUS RegQueryValueExW(HKEY hKey, LPCWSTR lpValueName, LPDWORD, LPDWORD lpType, BYTE* lpData,
                         LPDWORD lpcbData)
{
    return Answer([&] {
        ValueEntry entry;
        const DWORD code = Fetch(hKey, lpValueName, entry, lpData, lpcbData);
        return code ? code : StoreData(entry, sizeof(WCHAR), lpType, lpData, lpcbData);
    });
}

LSTATUS RegQueryValueExA(HKEY hKey, LPCSTR lpValueName, LPDWORD, LPDWORD lpType, BYTE* lpData,
                         LPDWORD lpcbData)
{
    return Answer([&] {
        ValueEntry entry;
        if (const DWORD code = Fetch(hKey, Widened(lpValueName), entry, lpData, lpcbData))
            return code;
        NarrowData(entry);
        return StoreData(entry, 1, lpType, lpData, lpcbData);
    });
}

LSTATUS RegSetValueExW(HKEY hKey, LPCWSTR lpValueName, DWORD, DWORD dwType, const BYTE* lpData,
                       DWORD cbData)
{
    return Answer([&] { return Set(hKey, lpValueName, dwType, lpData, cbData); });
}

LSTATUS RegSetValueExA(HKEY hKey, LPCSTR lpValueName, DWORD, DWORD dwType, const BYTE* lpData,
                       DWORD cbData)
{
    return Answer([&] {
        const Widened name(lpValueName);
        if (!IsText(dwType) || !lpData || !cbData)
            return Set(hKey, name, dwType, lpData, cbData);
        const std::string wide = ToWide(lpData, cbData);
        return Set(hKey, name, dwType, wide.data(), wide.size());
    });
}

LSTATUS RegDeleteValueW(HKEY hKey, LPCWSTR lpValueName)
{
    return Answer([&] {
        const OpenKey key = Opened(hKey, KEY_SET_VALUE);
        return DeleteValue(key.place, FoldOfValue(lpValueName));
    });
}

LSTATUS RegDeleteValueA(HKEY hKey, LPCSTR lpValueName)
{
    return Answer([&] {
        const Widened name(lpValueName);
        const OpenKey key = Opened(hKey, KEY_SET_VALUE);
        return DeleteValue(key.place, FoldOfValue(name));
    });
}
} // namespace winapi
