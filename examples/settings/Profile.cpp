// examples/settings/Profile.cpp
//
// Single values go through the library's class, whose room is 1,023 bytes; lists and longer values are
// asked of the system's own services. The program has UTF-8 as its code page, so that all text passes.
#include "Profile.h"

#include "Text.h"

#include <Ostra/Frame/ErrorManager.h>
#include <System/IniFile/IniFile.h>

#include <windows.h>

#include <filesystem>

namespace settings
{
namespace fs = std::filesystem;

namespace
{
std::string Absolute(const std::string& name)
{
    const fs::path path(std::u8string(name.begin(), name.end()));
    std::error_code error;
    const std::u8string whole = fs::absolute(path, error).u8string();
    if (error)
        throw Failure(name + ": " + error.message());
    return {whole.begin(), whole.end()};
}

// What a line of a profile can't hold.
void CheckLine(const std::string& text, const std::string& what)
{
    for (const char c : text)
        if (c == '\n' || c == '\r' || c == 0)
            throw Failure(what + ": a profile file has one line for a value");
}

void CheckName(const std::string& name)
{
    CheckLine(name, name);
    if (name.find('=') != std::string::npos || name.starts_with("["))
        throw Failure(name + ": no name of a key");
}

// A value between quotes, where it would lose blanks or quotes without them.
std::string Kept(const std::string& value)
{
    const bool loses = !value.empty() && (value.front() == ' ' || value.back() == ' ' ||
                                          value.front() == '"' || value.front() == '\'');
    return loses ? '"' + value + '"' : value;
}

std::string Trimmed(const std::string& text)
{
    const std::size_t first = text.find_first_not_of(" \t\r");
    if (first == std::string::npos)
        return "";
    return text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

struct Entry
{
    std::string section;
    std::string name;
    std::string value;
};

std::vector<Entry> EntriesOf(const std::string& lines)
{
    std::string section;
    std::vector<Entry> entries;
    unsigned number = 0;
    for (std::size_t at = lines.starts_with("\xEF\xBB\xBF") ? 3 : 0; at < lines.size();) {
        const std::size_t end = std::min(lines.find('\n', at), lines.size());
        const std::string line = Trimmed(lines.substr(at, end - at));
        const std::size_t equal = line.find('=');
        at = end + 1;
        ++number;
        if (line.empty() || line[0] == ';')
            continue;
        if (line[0] == '[' && line.back() == ']')
            section = line.substr(1, line.size() - 2);
        else if (equal == std::string::npos || equal == 0)
            throw Failure("line " + std::to_string(number) + ": neither a section nor a value");
        else
            entries.push_back(
                {section, Trimmed(line.substr(0, equal)), Trimmed(line.substr(equal + 1))});
    }
    return entries;
}
} // namespace

Profile::Profile(const std::string& name) : given(name), file(Absolute(name)) {}

std::string Profile::Read(const char* section, const char* key, bool* found) const
{
    // A default that no value can be, as values have no blanks at their ends.
    constexpr char NONE[] = "\x01 none";
    // What an answer that was cut may leave of the room: its zeros, and most of a character.
    constexpr DWORD LEFT = 2 + 3;
    std::string text;
    DWORD length = 0;
    for (DWORD room = 2048; length + LEFT >= text.size(); room *= 2) {
        text.resize(room);
        length = GetPrivateProfileStringA(section, key, key ? NONE : "", text.data(), room,
                                          file.c_str());
    }
    text.resize(length);
    if (found)
        *found = text != NONE;
    return text;
}

std::vector<std::string> Profile::Names(const char* section) const
{
    const std::string list = Read(section, nullptr);
    std::vector<std::string> names;
    for (std::size_t at = 0; at < list.size();) {
        const std::size_t end = std::min(list.find('\0', at), list.size());
        names.push_back(list.substr(at, end - at));
        at = end + 1;
    }
    return names;
}

std::string Profile::Get(const Location& location) const
{
    std::error_code ignored;
    bool found = false;
    if (!fs::is_regular_file(fs::path(std::u8string(file.begin(), file.end())), ignored))
        throw Failure(given + ": no such file");
    std::string text = Read(location.group->c_str(), location.name->c_str(), &found);
    if (!found)
        throw Failure(location.text + ": there is none");
    return text;
}

void Profile::Write(const char* section, const char* key, const char* value) const
{
    const CT_CString name(file.c_str(), CT_String::ALL, 0);
    CT_IniFile profile(&name);
    if (!key)
        profile.v_DeleteSection(section);
    else if (!value)
        profile.v_DeleteKey(section, key);
    else
        profile.v_WriteString(section, key, value);
    Check(given);
}

void Profile::Set(const Location& location, const std::string& text) const
{
    CheckName(*location.name);
    CheckLine(*location.group, *location.group);
    CheckLine(text, location.text);
    Write(location.group->c_str(), location.name->c_str(), Kept(text).c_str());
}

void Profile::Delete(const Location& location) const
{
    if (location.name)
        Get(location);
    else if (Keys(*location.group).empty()) {
        bool found = false;
        for (const std::string& section : Sections())
            found = found || section == *location.group;
        if (!found)
            throw Failure(location.text + ": there is none");
    }
    Write(location.group->c_str(), location.name ? location.name->c_str() : nullptr, nullptr);
}

std::vector<std::string> Profile::Sections() const
{
    // A file that can't be read has no sections: this tells why.
    ReadFile(given);
    return Names(nullptr);
}

std::vector<std::pair<std::string, std::string>> Profile::Keys(const std::string& section) const
{
    ReadFile(given);
    std::vector<std::pair<std::string, std::string>> keys;
    for (const std::string& name : Names(section.c_str()))
        keys.emplace_back(name, Read(section.c_str(), name.c_str()));
    return keys;
}

std::string Profile::Export(const Location& location) const
{
    std::string lines;
    for (const std::string& section : location.group ? std::vector{*location.group} : Sections()) {
        const auto keys = Keys(section);
        if (keys.empty() && location.group)
            throw Failure(location.text + ": there is none");
        lines += (lines.empty() ? "[" : "\r\n[") + section + "]\r\n";
        for (const auto& [name, value] : keys)
            lines += name + "=" + Kept(value) + "\r\n";
    }
    return lines;
}

unsigned Profile::Import(const std::string& lines) const
{
    const std::vector<Entry> entries = EntriesOf(lines);
    for (const Entry& entry : entries)
        Write(entry.section.c_str(), entry.name.c_str(), entry.value.c_str());
    return static_cast<unsigned>(entries.size());
}
} // namespace settings
