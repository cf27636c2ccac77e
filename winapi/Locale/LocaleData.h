// winapi/Locale/LocaleData.h: facts about the locales, by their places in the table of locales. Internal.
#pragma once

#include "winapi/Base/Types.h"

namespace winapi
{
struct FactColumn
{
    WORD fact; // A number of LocaleInfo.h.
    WORD values;
};

extern const char factTexts[];
extern const WORD factValues[];
extern const FactColumn factColumns[];
extern const unsigned factColumnCount;
extern const BYTE factCells[][256];
extern const WORD signatures[][16];
extern const BYTE signatureOf[256];
extern const BYTE calendarLists[][4];
extern const BYTE calendarListOf[256];
// Texts that aren't as ICU has them, in UTF-8.
extern const char patchTexts[];
extern const WORD patchesOf[257];
extern const BYTE patchPlaces[];
extern const WORD patchBegins[];

// A fact that is a number or a short sign, as text; null for others.
const char* FactOf(unsigned locale, unsigned fact);

// Whether a fact is a number, and the base that its text has.
int NumberBase(unsigned fact);

// The calendars of a locale, its own one first; 0 ends the list.
inline const BYTE* CalendarsOf(unsigned locale)
{
    return calendarLists[calendarListOf[locale]];
}
} // namespace winapi
