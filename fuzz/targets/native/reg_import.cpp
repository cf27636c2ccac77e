// fuzz/targets/native/reg_import.cpp: keys and values as text, imported into a registry of their
// own. What was imported whole is there and nothing else is; exported, removed and imported again it
// is there as before. An import that is refused ends with a failure told.
//
// Input: up to 12 keys below one, each of steps and values that are chosen or given by their bytes.
// Text of any bytes is the target reg_text.
#include "RegistryKeys.h"
#include "RegistryText.h"
#include "Text.h"

#include "Registry/StoredNames.h"
#include "Support/Folder.h"
#include "Support/Input.h"
#include "Support/Library.h"

#include <map>
#include <optional>

namespace
{
using settings::Key;
using settings::Location;
using settings::RegistryKeys;
using settings::Value;

constexpr char ROOT[] = "HKEY_CURRENT_USER";
constexpr char PLACE[] = "Fuzz";
constexpr std::size_t LONGEST_NAME = 255;

std::string Folded(const std::u16string& name)
{
    return winapi::FoldOf({reinterpret_cast<const WCHAR*>(name.data()), name.size()});
}

// ---- The model --------------------------------------------------------------------------------

using Content = std::pair<std::uint32_t, std::string>;
using Values = std::map<std::string, Content>;

// Keys by their folded paths, and their values by their folded names.
class Model
{
public:
    void Take(const Key& key)
    {
        const std::vector<std::string> steps = StepsOf(key.path);
        std::string path;
        for (const std::string& step : steps) {
            path += '\\' + step;
            if (!key.remove)
                keys[path];
        }
        if (key.remove)
            std::erase_if(keys, [&](const auto& entry) {
                return entry.first == path || entry.first.starts_with(path + '\\');
            });
        else
            Take(key.values, keys[path]);
    }

    bool operator==(const Model&) const = default;

    // Whether each step is one, so that the path means one place.
    static bool IsPlain(const std::u16string& path)
    {
        std::size_t length = 0;
        for (const char16_t unit : path + u'\\') {
            if (unit == 0 || (unit == u'\\' && (length == 0 || length > LONGEST_NAME)))
                return false;
            length = unit == u'\\' ? 0 : length + 1;
        }
        return true;
    }

private:
    static std::vector<std::string> StepsOf(const std::u16string& path)
    {
        std::vector<std::string> steps;
        // Behind the root.
        for (std::size_t at = path.find(u'\\'); at != path.npos;) {
            const std::size_t end = path.find(u'\\', at + 1);
            steps.push_back(Folded(path.substr(at + 1, end == path.npos ? end : end - at - 1)));
            at = end;
        }
        return steps;
    }
    static void Take(const std::vector<Value>& from, Values& to)
    {
        for (const Value& value : from) {
            const std::string name = Folded(value.name.c_str());
            if (value.remove)
                to.erase(name);
            else
                to[name] = {value.type, value.data};
        }
    }

    std::map<std::string, Values> keys;
};

Model ModelOf(const std::vector<Key>& keys)
{
    Model model;
    for (const Key& key : keys)
        model.Take(key);
    return model;
}

// ---- The registry -----------------------------------------------------------------------------

Location Place()
{
    Location location;
    location.text = PLACE;
    location.isRegistry = true;
    location.place = ROOT;
    location.group = PLACE;
    return location;
}

// In the target's folder, where nobody else's is.
void Prepare()
{
    static const int ready = ::setenv("XDG_DATA_HOME", PathOf("data").c_str(), 1);
    REQUIRE(ready == 0);
}

void Import(const std::vector<Key>& keys)
{
    Key place;
    place.path = settings::ToUtf16(std::string(ROOT) + '\\' + PLACE);
    place.remove = true;
    RegistryKeys::Import({place});
    place.remove = false;
    RegistryKeys::Import({place});
    RegistryKeys::Import(keys);
}

// ---- The input ---------------------------------------------------------------------------------

std::u16string TakeName(Input& input)
{
    const std::u16string names[] = {
        u"a", u"A", u"\u00E4", u"\u65E5\u672C", u"\xD83D\xDE00",
        u"",  u"=", u"a b",    u"\"[]",         std::u16string(255, u'x')};
    const unsigned choice = input.Below(std::size(names) + 2);
    return choice < std::size(names) ? names[choice] : input.WideText(24);
}

Value TakeValue(Input& input)
{
    Value value;
    value.name = TakeName(input);
    value.remove = input.Below(5) == 0;
    value.type = input.Flag() ? input.Below(12) : input.Long();
    value.data = input.Piece(40);
    return value;
}

// As the program takes it, without halves of pairs, and on one line: a text has no other form for a
// key.
std::u16string TakeStep(Input& input)
{
    std::u16string step = settings::ToUtf16(settings::ToUtf8(TakeName(input)));
    std::erase_if(step, [](char16_t unit) { return unit < u' '; });
    return step;
}

Key TakeKey(Input& input)
{
    Key key;
    key.path = settings::ToUtf16(std::string(ROOT) + '\\' + PLACE);
    for (unsigned steps = input.Below(4); steps; --steps)
        key.path += u'\\' + TakeStep(input);
    key.remove = input.Below(5) == 0;
    for (unsigned values = key.remove ? 0 : input.Below(4); values; --values)
        key.values.push_back(TakeValue(input));
    return key;
}

void ImportAndCompare(const std::vector<Key>& keys)
{
    Import(keys);
    Key place;
    place.path = settings::ToUtf16(std::string(ROOT) + '\\' + PLACE);
    std::vector<Key> all = {place};
    for (const Key& key : keys) {
        if (!Model::IsPlain(key.path))
            return;
        all.push_back(key);
    }
    // A text may remove the place itself.
    RegistryKeys::Import({place});
    all.push_back(place);
    const std::vector<Key> exported = RegistryKeys::Export(Place());
    REQUIRE(ModelOf(exported) == ModelOf(all));
    const std::string text = settings::WriteRegistryText(exported);
    Import(settings::ReadRegistryText(text));
    REQUIRE(settings::WriteRegistryText(RegistryKeys::Export(Place())) == text);
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Prepare();
    Input input(data, size);
    std::vector<Key> keys;
    for (unsigned count = 0; count < 12 && !input.IsEmpty(); ++count)
        keys.push_back(TakeKey(input));
    try {
        ImportAndCompare(settings::ReadRegistryText(settings::WriteRegistryText(keys)));
    } catch (const settings::Failure&) {
        // Told in words.
    }
    REQUIRE(TakeCode() == 0);
    return 0;
}
