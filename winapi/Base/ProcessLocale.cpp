// winapi/Base/ProcessLocale.cpp
#include "Base/ProcessLocale.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "Base/HostVariables.h"

namespace winapi
{
namespace
{
constexpr WORD ENGLISH = 0x0409;

const LocaleFacts* FindLcid(WORD lcid)
{
    const int place = PlaceOfLocale(lcid);
    return place < 0 ? nullptr : &locales[place];
}

const LocaleFacts* FindTag(const char* tag)
{
    for (unsigned i = 0; i < localeCount; ++i)
        if (std::strcmp(locales[i].tag, tag) == 0)
            return &locales[i];
    return nullptr;
}

const LocaleFacts* FindLanguage(const char* language)
{
    for (unsigned i = 0; i < languageHomeCount; ++i)
        if (std::strcmp(languageHomes[i].language, language) == 0)
            return FindLcid(languageHomes[i].lcid);
    return nullptr;
}

// A name of the host in its parts; what is longer than a part can be makes it unknown.
struct NameParts
{
    char language[9] = "";
    char region[9] = "";
    char modifier[17] = "";
};

// Copies up to one of the ends; false if there is more than fits.
template <std::size_t Size>
bool Take(const char*& text, const char* ends, char (&part)[Size])
{
    const std::size_t length = std::strcspn(text, ends);
    if (length >= Size)
        return false;
    std::memcpy(part, text, length);
    part[length] = 0;
    text += length;
    return true;
}

bool Split(const char* name, NameParts& parts)
{
    if (!Take(name, "_.@", parts.language) || !*parts.language)
        return false;
    if (*name == '_' && !Take(++name, ".@", parts.region))
        return false;
    name += std::strcspn(name, "@");
    return !*name || Take(++name, "", parts.modifier);
}

// The script that a modifier names, in the form of a tag; empty for none.
const char* ScriptOf(const char* modifier)
{
    static constexpr struct
    {
        const char* modifier;
        const char* script;
    } scripts[] = {{"latin", "Latn"}, {"cyrillic", "Cyrl"}, {"devanagari", "Deva"}};
    for (const auto& entry : scripts)
        if (std::strcmp(entry.modifier, modifier) == 0)
            return entry.script;
    return "";
}

struct UsualScript
{
    const char* language;
    const char* region;
    const char* script;
};

// Of the locales that the layer knows by a script, those that are written so where none is named.
constexpr UsualScript usual_scripts[] = {
    {"az", "AZ", "Latn"}, {"bs", "BA", "Latn"},  {"chr", "US", "Cher"}, {"ff", "NG", "Latn"},
    {"ff", "SN", "Latn"}, {"ha", "NG", "Latn"},  {"iu", "CA", "Cans"},  {"kr", "NG", "Latn"},
    {"mn", "CN", "Mong"}, {"pa", "PK", "Arab"},  {"quc", "GT", "Latn"}, {"sd", "PK", "Arab"},
    {"sd", "IN", "Deva"}, {"sr", "BA", "Cyrl"},  {"sr", "RS", "Cyrl"},  {"sr", "ME", "Latn"},
    {"tg", "TJ", "Cyrl"}, {"tzm", "DZ", "Latn"}, {"uz", "UZ", "Latn"},
};

// Empty where a locale isn't known by its script.
const char* UsualScriptOf(const NameParts& parts)
{
    for (const UsualScript& row : usual_scripts)
        if (std::strcmp(row.language, parts.language) == 0 &&
            std::strcmp(row.region, parts.region) == 0)
            return row.script;
    return "";
}

const LocaleFacts* FindTag(const char* first, const char* second, const char* third)
{
    char tag[48];
    std::snprintf(tag, sizeof tag, "%s-%s%s%s", first, second, *third ? "-" : "", third);
    return FindTag(tag);
}

const LocaleFacts* FindParts(const NameParts& parts)
{
    if (!*parts.region)
        return FindLanguage(parts.language);
    const char* const named = ScriptOf(parts.modifier);
    if (*named)
        return FindTag(parts.language, named, parts.region);
    if (*parts.modifier)
        if (const LocaleFacts* found = FindTag(parts.language, parts.region, parts.modifier))
            return found;
    if (const LocaleFacts* found = FindTag(parts.language, parts.region, ""))
        return found;
    return FindTag(parts.language, UsualScriptOf(parts), parts.region);
}

const LocaleFacts& LocaleOfVariables()
{
    char name[256]; // No locale's name is nearly as long.
    for (const char* variable : {"LC_ALL", "LC_CTYPE", "LANG"})
        if (CopyHostVariable(variable, name, sizeof name))
            break;
    return FindLocale(name);
}
} // namespace

int PlaceOfLocale(DWORD lcid)
{
    const LocaleId* const end = localeIds + localeIdCount;
    const LocaleId* const found = std::lower_bound(
        localeIds, end, lcid, [](const LocaleId& id, DWORD wanted) { return id.lcid < wanted; });
    return found != end && found->lcid == lcid ? found->locale : -1;
}

const LocaleFacts& FindLocale(const char* name)
{
    NameParts parts;
    const LocaleFacts* const found = Split(name, parts) ? FindParts(parts) : nullptr;
    // NOLINTNEXTLINE(clang-analyzer-core.uninitialized.UndefReturn): English is in the table
    return found ? *found : *FindLcid(ENGLISH);
}

const LocaleFacts& ProcessLocale()
{
    static const LocaleFacts& locale = LocaleOfVariables();
    return locale;
}
} // namespace winapi
