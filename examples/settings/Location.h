// examples/settings/Location.h: where values lie, as users write it.
//
//     registry:Software\Company\Program#name     a value of a key; without #name the key
//     file.ini:section#key                       a key of a section; without #key the section
#pragma once

#include <optional>
#include <string>

namespace settings
{
struct Location
{
    std::string text; // as written
    bool isRegistry = false;
    // The profile file; the root key of the registry by its full name.
    std::string place;
    // The key below it, or the section; nothing for all of it.
    std::optional<std::string> group;
    // The value; an empty name is the default one of a key.
    std::optional<std::string> name;
};

// Ends the command for what is no location.
Location ParseLocation(const std::string& text);

// A root key by its full or its short name (HKCU, HKLM, HKCR, HKU, HKCC): the full one; empty for none.
std::string RootName(const std::string& name);
} // namespace settings
