// examples/settings/RegistryText.h: keys and values as text, in the form of the platform's own tool.
//
//     Windows Registry Editor Version 5.00
//
//     [HKEY_CURRENT_USER\Software\Company]
//     @="the default value"
//     "name"=dword:0000002a
//     "data"=hex:01,02,03
//     "expanded"=hex(2):25,00,41,00,25,00,00,00
//     "gone"=-
//
//     [-HKEY_CURRENT_USER\Software\Company\Old]
//
// Written in UTF-16 with a mark and ends of lines of two characters; read also in UTF-8, and in the
// older form that begins with REGEDIT4, whose hexadecimal texts are bytes.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace settings
{
struct Value
{
    std::u16string name; // empty for the default one
    std::uint32_t type = 0;
    std::string data; // texts in UTF-16
    bool remove = false;
};

struct Key
{
    std::u16string path; // with its root
    std::vector<Value> values;
    bool remove = false;
};

// Ends the command for a key with the end of a line in its name, which such a text can't hold.
std::string WriteRegistryText(const std::vector<Key>& keys);

// Ends the command for what isn't such a text, with the number of the line.
std::vector<Key> ReadRegistryText(const std::string& bytes);

// True for what begins as one.
bool IsRegistryText(const std::string& bytes);
} // namespace settings
