// examples/settings/Profile.h: sections and keys of profile files.
#pragma once

#include "Location.h"

#include <string>
#include <utility>
#include <vector>

namespace settings
{
class Profile
{
public:
    // The name may be relative, as with other files.
    explicit Profile(const std::string& name);

    std::string Get(const Location& location) const;
    void Set(const Location& location, const std::string& text) const;
    // A key, or a section with all its keys.
    void Delete(const Location& location) const;

    std::vector<std::string> Sections() const;
    std::vector<std::pair<std::string, std::string>> Keys(const std::string& section) const;

    // Sections as lines: all of them, or one.
    std::string Export(const Location& location) const;
    // Stores what such lines hold, unless one of them is refused. Result: how many values.
    unsigned Import(const std::string& lines) const;

private:
    std::string Read(const char* section, const char* key, bool* found = nullptr) const;
    std::vector<std::string> Names(const char* section) const;
    void Write(const char* section, const char* key, const char* value) const;

    std::string given;
    std::string file; // absolute
};
} // namespace settings
