// winapi/Base/ProcessLocale.h: the locales that the layer knows, and the process's own. Internal.
#pragma once

#include "winapi/Base/Types.h"

namespace winapi
{
// A page below 3 is no page but one of the words "ANSI", "OEM", "Mac": the locale has none of its
// own.
struct LocaleFacts
{
    WORD lcid;
    const char* tag;
    WORD ansiPage;
    WORD oemPage;
    WORD macPage;
};

struct LanguageHome
{
    const char* language;
    WORD lcid;
};

// An id and the place of its locale in the table.
struct LocaleId
{
    DWORD lcid;
    BYTE locale;
};

// In the order in which they are enumerated; the last one is the invariant locale, which isn't.
extern const LocaleFacts locales[];
extern const unsigned localeCount;
extern const LanguageHome languageHomes[];
extern const unsigned languageHomeCount;
extern const LocaleId localeIds[];
extern const unsigned localeIdCount;

// The place of the locale that has the data of an id; -1 for one without.
int PlaceOfLocale(DWORD lcid);

// The locale of a name as the host's variables have it: language[_region][.charset][@modifier].
// English of the United States where the name is C, POSIX, empty or unknown.
const LocaleFacts& FindLocale(const char* name);

// What LC_ALL, LC_CTYPE or LANG, the first of them that isn't empty, says when it is asked for the
// first time.
const LocaleFacts& ProcessLocale();
} // namespace winapi
