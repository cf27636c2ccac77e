// examples/settings/Location.cpp
#include "Location.h"

#include "Text.h"

#include <cctype>

namespace settings
{
namespace
{
constexpr char REGISTRY[] = "registry:";
constexpr char USUAL_ROOT[] = "HKEY_CURRENT_USER";

std::string InCapitals(std::string text)
{
    for (char& c : text)
        c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    return text;
}

// Separators at the ends and doubled ones say nothing.
std::string Tidied(const std::string& path)
{
    std::string tidy;
    for (const char c : path)
        if (c != '\\' || (!tidy.empty() && tidy.back() != '\\'))
            tidy += c;
    if (!tidy.empty() && tidy.back() == '\\')
        tidy.pop_back();
    return tidy;
}

void ParseKey(const std::string& path, Location& location)
{
    const std::string tidy = Tidied(path);
    const std::size_t end = tidy.find('\\');
    location.isRegistry = true;
    location.place = RootName(tidy.substr(0, end));
    location.group = tidy;
    if (!location.place.empty())
        location.group = end == std::string::npos ? "" : tidy.substr(end + 1);
    else
        location.place = USUAL_ROOT;
}

// The last colon parts file and section, but for that behind a drive's letter.
void ParseFile(const std::string& text, Location& location)
{
    const std::size_t colon = text.rfind(':');
    const bool drive = colon == 1 && std::isalpha(static_cast<unsigned char>(text[0])) &&
                       text.size() > 2 && (text[2] == '\\' || text[2] == '/');
    location.place = text.substr(0, drive ? std::string::npos : colon);
    if (colon != std::string::npos && !drive)
        location.group = text.substr(colon + 1);
}
} // namespace

std::string RootName(const std::string& name)
{
    constexpr const char* ROOTS[][2] = {{"HKEY_CURRENT_USER", "HKCU"},
                                        {"HKEY_LOCAL_MACHINE", "HKLM"},
                                        {"HKEY_CLASSES_ROOT", "HKCR"},
                                        {"HKEY_USERS", "HKU"},
                                        {"HKEY_CURRENT_CONFIG", "HKCC"}};
    const std::string wanted = InCapitals(name);
    for (const auto& [full, brief] : ROOTS)
        if (wanted == full || wanted == brief)
            return full;
    return "";
}

Location ParseLocation(const std::string& text)
{
    Location location;
    location.text = text;
    const std::size_t mark = text.rfind('#');
    const std::string front = text.substr(0, mark);
    if (mark != std::string::npos)
        location.name = text.substr(mark + 1);
    if (front.starts_with(REGISTRY))
        ParseKey(front.substr(sizeof REGISTRY - 1), location);
    else
        ParseFile(front, location);
    if (location.place.empty())
        throw Failure(text + ": no place");
    if (!location.isRegistry && location.name && (!location.group || location.name->empty()))
        throw Failure(text + ": a key needs a section and a name");
    return location;
}
} // namespace settings
