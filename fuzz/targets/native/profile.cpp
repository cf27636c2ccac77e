// fuzz/targets/native/profile.cpp: any bytes as a profile file, with writings and readings. What
// was written is read, other entries stay as they were, and a whole file stays a whole file.
//
// Input: the file as a piece of up to 255 bytes, then operations of names and values.
#include "winapi/Profile/Profile.h"
#include "Support/Folder.h"
#include "Support/Input.h"
#include "winapi/Errors/LastError.h"

#include <map>
#include <vector>

namespace
{
using namespace winapi;

LPCWSTR Text(const std::u16string& text)
{
    return reinterpret_cast<LPCWSTR>(text.c_str());
}

const std::u16string DEFAULT = u"\x1 not there";

class Profile
{
public:
    explicit Profile(const std::string& bytes)
        : path(PathOf("fuzz.ini")),
          wide(path.begin(), path.end())
    {
        WriteBytes(path, bytes);
    }

    std::u16string Read(const std::u16string* section, const std::u16string* key,
                        unsigned room = 4096) const
    {
        // No room but what is told.
        std::vector<WCHAR> place(room);
        const DWORD length =
            GetPrivateProfileStringW(section ? Text(*section) : nullptr, key ? Text(*key) : nullptr,
                                     Text(DEFAULT), place.data(), room, Text(wide));
        REQUIRE(length == 0 || length < room);
        return {reinterpret_cast<const char16_t*>(place.data()), length};
    }
    bool Write(const std::u16string& section, const std::u16string* key,
               const std::u16string* value) const
    {
        return WritePrivateProfileStringW(Text(section), key ? Text(*key) : nullptr,
                                          value ? Text(*value) : nullptr, Text(wide)) != 0;
    }

    using Entries = std::map<std::pair<std::u16string, std::u16string>, std::u16string>;
    // All that can be found; of a name that is there twice the first.
    Entries All() const
    {
        Entries entries;
        for (const std::u16string& section : List(Read(nullptr, nullptr)))
            for (const std::u16string& key : List(Read(&section, nullptr)))
                entries.emplace(std::pair(section, key), Read(&section, &key));
        return entries;
    }

private:
    static std::vector<std::u16string> List(const std::u16string& zeros)
    {
        std::vector<std::u16string> names;
        // An empty list gives the default.
        if (zeros == DEFAULT)
            return names;
        for (std::size_t at = 0, end; at < zeros.size(); at = end + 1) {
            end = std::min(zeros.find(u'\0', at), zeros.size());
            names.push_back(zeros.substr(at, end - at));
        }
        return names;
    }

    std::string path;
    std::u16string wide;
};

// A name or value that a file gives back as it is: of letters and what may stand between them.
std::u16string Plain(Input& input)
{
    const std::u16string letters = u"abcXYZ019 _-.=;'\"\u00E9\u65E5";
    std::u16string text;
    for (unsigned count = input.Below(6); count > 0; --count)
        text += letters[input.Byte() % letters.size()];
    while (!text.empty() && text.back() == u' ')
        text.pop_back();
    while (!text.empty() && text.front() == u' ')
        text.erase(0, 1);
    return text;
}

bool IsName(const std::u16string& name)
{
    return !name.empty() && name.find_first_of(u"=;[]'\"\u00E9\u65E5") == std::u16string::npos;
}
bool IsValue(const std::u16string& value)
{
    return value.find_first_of(u"'\"\u00E9\u65E5") == std::u16string::npos;
}

std::u16string Folded(std::u16string name)
{
    for (char16_t& unit : name)
        if (unit >= u'A' && unit <= u'Z')
            unit = static_cast<char16_t>(unit + 32);
    return name;
}

// The entries of other names are what they were, in the file's order of search.
void RequireOthersStay(const Profile::Entries& before, const Profile::Entries& after,
                       const std::u16string& section, const std::u16string& key)
{
    for (const auto& [name, value] : before) {
        if (Folded(name.first) == Folded(section) && Folded(name.second) == Folded(key))
            continue;
        const auto found = after.find(name);
        REQUIRE(found != after.end());
        REQUIRE(found->second == value);
    }
}

void Step(const Profile& profile, Input& input)
{
    const unsigned kind = input.Below(8);
    const std::u16string section = Plain(input), key = Plain(input), value = Plain(input);
    if (kind == 0) {
        profile.Write(section, nullptr, nullptr);
    } else if (kind == 1) {
        profile.Write(section, &key, nullptr);
    } else if (kind == 2) {
        const unsigned room = input.Byte();
        profile.Read(input.Flag() ? &section : nullptr, input.Flag() ? &key : nullptr, room);
    } else {
        const Profile::Entries before = profile.All();
        const bool written = profile.Write(section, &key, &value);
        if (!written || !IsName(section) || !IsName(key))
            return;
        if (IsValue(value))
            REQUIRE(profile.Read(&section, &key) == value);
        RequireOthersStay(before, profile.All(), section, key);
    }
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Input input(data, size);
    const Profile profile(input.Piece(255));
    profile.All();
    for (unsigned step = 0; step < 12 && !input.IsEmpty(); ++step)
        Step(profile, input);
    return 0;
}
