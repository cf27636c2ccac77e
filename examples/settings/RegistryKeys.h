// examples/settings/RegistryKeys.h: keys and values of the registry.
#pragma once

#include "Location.h"
#include "RegistryText.h"

#include <string>
#include <vector>

namespace settings
{
// A value as users see it, and the name of its type: text, expanded, data, number, list, or "type N".
std::string TypeName(std::uint32_t type);
std::string Shown(const Value& value);

// A key is named by a location without a value.
class RegistryKeys
{
public:
    static Value Get(const Location& location);
    // Makes the key where it is missing. The type is one of the first four names.
    static void Set(const Location& location, const std::string& type, const std::string& text);
    static void Delete(const Location& location);

    // The names of the subkeys, in order, and the values.
    static std::vector<std::string> Subkeys(const Location& location);
    static std::vector<Value> Values(const Location& location);

    // The key with all below it; and back, with what it tells to remove. Result: how many values were
    // stored or removed.
    static std::vector<Key> Export(const Location& location);
    static unsigned Import(const std::vector<Key>& keys);
};
} // namespace settings
