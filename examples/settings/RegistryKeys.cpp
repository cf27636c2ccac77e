// examples/settings/RegistryKeys.cpp
//
// The library's class walks to keys and changes them. What it has no operation for, listing and values
// of other types, is asked of the system's own services.
#include "RegistryKeys.h"

#include "Text.h"

#include <Ostra/Frame/ErrorManager.h>
#include <System/Registry/Registry.h>

#include <windows.h>

#include <cstring>

namespace settings
{
namespace
{
constexpr const char* TYPES[] = {"none", "text", "expanded", "data", "number", "big-endian number",
                                 "link", "list"};

HKEY RootOf(const std::string& name)
{
    return name == "HKEY_LOCAL_MACHINE"    ? HKEY_LOCAL_MACHINE
           : name == "HKEY_CLASSES_ROOT"   ? HKEY_CLASSES_ROOT
           : name == "HKEY_USERS"          ? HKEY_USERS
           : name == "HKEY_CURRENT_CONFIG" ? HKEY_CURRENT_CONFIG
                                           : HKEY_CURRENT_USER;
}

LPCWSTR System(const std::u16string& text)
{
    return reinterpret_cast<LPCWSTR>(text.c_str());
}

// Makes a service's code an error of the library, so that both are told in one way.
void CheckCode(LSTATUS code, const std::string& context)
{
    if (code == 0)
        return;
    SetLastError(static_cast<DWORD>(code));
    CT_ErrorManager::spco_Get()->v_SetSystemError();
    Check(context);
}

// An open key, closed at the end of its scope.
class OpenKey
{
public:
    OpenKey(const Location& location, REGSAM rights, bool make = false)
    {
        const std::u16string path = ToUtf16(*location.group);
        const HKEY root = RootOf(location.place);
        const LSTATUS code = make ? RegCreateKeyExW(root, System(path), 0, nullptr, 0, rights,
                                                    nullptr, &key, nullptr)
                                  : RegOpenKeyExW(root, System(path), 0, rights, &key);
        CheckCode(code, location.text);
    }
    OpenKey(const OpenKey&) = delete;
    OpenKey& operator=(const OpenKey&) = delete;
    ~OpenKey() { RegCloseKey(key); }
    operator HKEY() const { return key; }

private:
    HKEY key = nullptr;
};

// A cursor at a key. The path from the root begins with a separator.
class Cursor
{
public:
    explicit Cursor(const Location& location)
        : path(ToWide("\\" + *location.group)),
          registry(RootOf(location.place), &path)
    {}

    const CT_UString path;
    CT_Registry registry;
};

// The location of another key.
Location KeyOf(const Location& location, const std::string& group)
{
    Location other = location;
    other.group = group;
    other.name.reset();
    other.text = "registry:" + location.place + "\\" + group;
    return other;
}

Value EnumerateValue(HKEY key, DWORD index, const std::string& context, bool& more)
{
    Value value;
    LSTATUS code = ERROR_MORE_DATA;
    value.data.resize(1000);
    while (code == ERROR_MORE_DATA) {
        DWORD length = 16384;
        DWORD size = static_cast<DWORD>(value.data.size());
        DWORD type = 0;
        value.name.resize(length);
        code = RegEnumValueW(key, index, reinterpret_cast<LPWSTR>(value.name.data()), &length,
                             nullptr, &type, reinterpret_cast<BYTE*>(value.data.data()), &size);
        value.type = type;
        if (code == 0)
            value.name.resize(length);
        value.data.resize(size);
    }
    more = code != ERROR_NO_MORE_ITEMS;
    CheckCode(more ? code : 0, context);
    return value;
}

// A text without its terminator.
std::u16string TextOf(const std::string& data)
{
    std::u16string text(data.size() / 2, 0);
    if (!text.empty())
        std::memcpy(text.data(), data.data(), text.size() * 2);
    while (!text.empty() && text.back() == 0)
        text.pop_back();
    return text;
}

void ExportKey(const Location& location, std::vector<Key>& keys)
{
    const std::string below = location.group->empty() ? "" : "\\" + *location.group;
    keys.push_back({ToUtf16(location.place + below), RegistryKeys::Values(location), false});
    for (const std::string& name : RegistryKeys::Subkeys(location))
        ExportKey(KeyOf(location, location.group->empty() ? name : *location.group + "\\" + name),
                  keys);
}

// The key that a path with its root names.
Location PlaceOf(const Key& key)
{
    const std::string path = ToUtf8(key.path);
    const std::size_t end = std::min(path.find('\\'), path.size());
    Location location;
    location.place = RootName(path.substr(0, end));
    if (location.place.empty())
        throw Failure("[" + path + "]: no root key");
    return KeyOf(location, path.substr(std::min(end + 1, path.size())));
}

bool IsThere(const Location& location)
{
    HKEY key = nullptr;
    const std::u16string path = ToUtf16(*location.group);
    if (RegOpenKeyExW(RootOf(location.place), System(path), 0, KEY_READ, &key) != 0)
        return false;
    RegCloseKey(key);
    return true;
}

unsigned ImportKey(const Key& key)
{
    const Location location = PlaceOf(key);
    if (key.remove) {
        // What isn't there is removed already.
        if (IsThere(location))
            RegistryKeys::Delete(location);
        return 0;
    }
    const OpenKey open(location, KEY_SET_VALUE, true);
    for (const Value& value : key.values) {
        const auto data = reinterpret_cast<const BYTE*>(value.data.data());
        const auto size = static_cast<DWORD>(value.data.size());
        const LSTATUS code =
            value.remove ? RegDeleteValueW(open, System(value.name))
                         : RegSetValueExW(open, System(value.name), 0, value.type, data, size);
        if (!value.remove || code != ERROR_FILE_NOT_FOUND)
            CheckCode(code, location.text + "#" + ToUtf8(value.name));
    }
    return static_cast<unsigned>(key.values.size());
}

void DeleteTree(const Location& location)
{
    const std::size_t end = location.group->rfind('\\');
    if (location.group->empty())
        throw Failure(location.text + ": a root key stays");
    const bool inner = end != std::string::npos;
    const CT_UString name = ToWide(inner ? location.group->substr(end + 1) : *location.group);
    Cursor parent(KeyOf(location, inner ? location.group->substr(0, end) : ""));
    parent.registry.v_DeleteKey(&name);
    Check(location.text);
}
} // namespace

std::string TypeName(std::uint32_t type)
{
    return type < std::size(TYPES) ? TYPES[type] : "type " + std::to_string(type);
}

std::string Shown(const Value& value)
{
    std::uint32_t number = 0;
    if (value.type == REG_SZ || value.type == REG_EXPAND_SZ)
        return OneLine(ToUtf8(TextOf(value.data)));
    if (value.type == REG_DWORD && value.data.size() == sizeof number) {
        std::memcpy(&number, value.data.data(), sizeof number);
        return std::to_string(number);
    }
    if (value.type != REG_MULTI_SZ)
        return ToHex(value.data);
    std::string line;
    for (const char16_t unit : TextOf(value.data))
        line += unit ? OneLine(ToUtf8(std::u16string(1, unit))) : " | ";
    return line;
}

Value RegistryKeys::Get(const Location& location)
{
    const OpenKey key(location, KEY_QUERY_VALUE);
    Value value;
    value.name = ToUtf16(*location.name);
    LSTATUS code = ERROR_MORE_DATA;
    while (code == ERROR_MORE_DATA) {
        DWORD type = 0;
        // At least one: without room nothing but the size is told.
        DWORD size = static_cast<DWORD>(value.data.size() ? value.data.size() : 64);
        value.data.resize(size);
        code = RegQueryValueExW(key, System(value.name), nullptr, &type,
                                reinterpret_cast<BYTE*>(value.data.data()), &size);
        value.type = type;
        value.data.resize(size);
    }
    CheckCode(code, location.text);
    return value;
}

void RegistryKeys::Set(const Location& location, const std::string& type, const std::string& text)
{
    const CT_UString name = ToWide(*location.name);
    const auto number = ToNumber(text);
    const auto data = FromHex(text);
    if (type == "number" && !number)
        throw Failure(text + ": no number of 32 bits");
    if (type == "data" && !data)
        throw Failure(text + ": no bytes in hexadecimal digits");
    Cursor cursor(location);
    cursor.registry.v_CreateKey(&cursor.path);
    Check(location.text);
    if (type == "number")
        cursor.registry.v_SetValue(&name, static_cast<DWORD>(*number));
    else if (type == "data") {
        const CT_Buffer bytes(data->data(), static_cast<unsigned>(data->size()), 32);
        cursor.registry.v_SetValue(&name, &bytes);
    } else {
        const CT_UString words = ToWide(text);
        cursor.registry.v_SetValue(&name, &words);
    }
    Check(location.text);
}

void RegistryKeys::Delete(const Location& location)
{
    if (!location.name) {
        DeleteTree(location);
        return;
    }
    const CT_UString name = ToWide(*location.name);
    Cursor cursor(location);
    cursor.registry.v_DeleteValue(&name);
    Check(location.text);
}

std::vector<std::string> RegistryKeys::Subkeys(const Location& location)
{
    const OpenKey key(location, KEY_READ);
    std::vector<std::string> names;
    for (DWORD index = 0;; ++index) {
        char16_t name[256];
        DWORD size = 256;
        const LSTATUS code = RegEnumKeyExW(key, index, reinterpret_cast<LPWSTR>(name), &size,
                                           nullptr, nullptr, nullptr, nullptr);
        if (code == ERROR_NO_MORE_ITEMS)
            return names;
        CheckCode(code, location.text);
        names.push_back(ToUtf8(std::u16string(name, size)));
    }
}

std::vector<Value> RegistryKeys::Values(const Location& location)
{
    const OpenKey key(location, KEY_QUERY_VALUE);
    std::vector<Value> values;
    for (DWORD index = 0;; ++index) {
        bool more = false;
        Value value = EnumerateValue(key, index, location.text, more);
        if (!more)
            return values;
        values.push_back(std::move(value));
    }
}

std::vector<Key> RegistryKeys::Export(const Location& location)
{
    std::vector<Key> keys;
    ExportKey(location, keys);
    return keys;
}

unsigned RegistryKeys::Import(const std::vector<Key>& keys)
{
    unsigned count = 0;
    for (const Key& key : keys)
        count += ImportKey(key);
    return count;
}
} // namespace settings
