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

extern const LocaleFacts locales[];
extern const unsigned localeCount;
extern const LanguageHome languageHomes[];
extern const unsigned languageHomeCount;

// The locale of a name as the host's variables have it: language[_region][.charset][@modifier].
// English of the United States where the name is C, POSIX, empty or unknown.
const LocaleFacts& FindLocale(const char* name);

// What LC_ALL, LC_CTYPE or LANG, the first of them that isn't empty, says when it is asked for the
// first time.
const LocaleFacts& ProcessLocale();
} // namespace winapi
