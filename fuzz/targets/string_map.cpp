// fuzz/targets/string_map.cpp: the forms of string maps. Any bytes are read as a map; what was read
// is written and read again as it was. A map that is changed holds what a plain list does.
//
// Input: a byte for the form, the bytes or the changes.
#include <Ostra/Maps/StringNumberMap.h>
#include <Ostra/Maps/StringOrdinalMap.h>

#include "Support/Library.h"
#include "Support/Widths.h"

#include <algorithm>
#include <vector>

namespace
{
// The text of an entry as units, whichever class it has.
std::u16string TextAt(const CT_String* text)
{
    if (!text)
        return u"(none)";
    CT_UString wide;
    wide.v_Set(text);
    return WideOf(wide.qcuz_Get());
}

template <class Map>
std::vector<std::pair<std::u16string, unsigned>> EntriesOf(const Map& map)
{
    std::vector<std::pair<std::u16string, unsigned>> entries;
    for (unsigned n = 1; n <= map.n_GetCount(); ++n)
        entries.emplace_back(TextAt(map.pcco_GetAt(n)), map.n_GetAt(n));
    return entries;
}

// The form of numbers and texts behind each other.
void Binary(const std::string& bytes, int wide)
{
    const CT_Buffer buffer(bytes.data(), static_cast<unsigned>(bytes.size()), 32);
    CT_StringNumberMap map, again;
    map.v_Buffer2Map(&buffer, wide);
    CT_Buffer out, twice;
    map.v_Map2Buffer(&out);
    again.v_Buffer2Map(&out, wide);
    REQUIRE(EntriesOf(again) == EntriesOf(map));
    again.v_Map2Buffer(&twice);
    REQUIRE(BytesOf(twice) == BytesOf(out));
    // What was whole comes out as it went in; half a unit at the end doesn't.
    const std::string written = BytesOf(out);
    const std::size_t whole = wide ? bytes.size() / 2 * 2 : bytes.size();
    REQUIRE(written.size() <= whole + 2);
    const std::size_t common = std::min(written.size(), whole);
    REQUIRE(written.compare(0, common, bytes, 0, common) == 0);
}

// The form of texts with a separator. The first empty item ends the reading.
template <class Width>
void Flat(Input& input)
{
    const char separator = static_cast<char>(1 + input.Below(127));
    const auto text = Width::Take(input, 255);
    const auto flat = Width::Of(text);
    CT_StringOrdinalMap map;
    map.v_String2Map(&flat, separator);
    typename Width::Text wanted;
    const auto unit = static_cast<typename Width::Text::value_type>(separator);
    for (std::size_t at = 0; at < text.size() && text[at] != unit;) {
        const std::size_t end = std::min(text.find(unit, at), text.size());
        wanted += text.substr(at, end - at) + unit;
        at = end + 1;
    }
    typename Width::String out;
    map.v_Map2String(&out, separator);
    REQUIRE(Width::From(out) == wanted);
}

// A map beside a list.
void Changes(Input& input)
{
    CT_StringNumberMap map;
    std::vector<std::pair<std::u16string, unsigned>> list;
    for (unsigned step = 0; step < 100 && !input.IsEmpty(); ++step) {
        const unsigned kind = input.Below(6);
        const unsigned number = input.Below(8);
        std::string text = input.Text(3);
        // Bytes above 127 are of a code page.
        for (char& c : text)
            c = static_cast<char>('a' + (static_cast<unsigned char>(c) & 3));
        const std::u16string units(text.begin(), text.end());
        const auto found = std::find_if(list.begin(), list.end(),
                                        [&](const auto& entry) { return entry.second == number; });
        if (kind < 2) {
            if (kind == 0)
                map.v_Insert(text.c_str(), number);
            else
                map.v_Insert(UnitsOf(units), number);
            list.emplace_back(units, number);
        } else if (kind == 2) {
            map.v_Update(text.c_str(), number);
            if (found != list.end())
                found->first = units;
        } else if (kind == 3) {
            map.v_Remove(number);
            if (found != list.end())
                list.erase(found);
        } else if (kind == 4) {
            const auto same = std::find_if(list.begin(), list.end(),
                                           [&](const auto& entry) { return entry.first == units; });
            REQUIRE(map.n_Get(text.c_str()) == (same == list.end() ? 0 : same->second));
        } else {
            CT_StringNumberMap copy(&map);
            map.v_Set(&copy);
        }
        REQUIRE(EntriesOf(map) == list);
    }
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Input input(data, size);
    const unsigned form = input.Below(5);
    if (form < 2)
        Binary(input.Rest(), static_cast<int>(form));
    else if (form == 2)
        Flat<Narrow>(input);
    else if (form == 3)
        Flat<Wide>(input);
    else
        Changes(input);
    REQUIRE(TakeCode() == 0);
    return 0;
}
