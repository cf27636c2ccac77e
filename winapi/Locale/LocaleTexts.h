// winapi/Locale/LocaleTexts.h: the names, pictures and signs of a locale. Internal.
//
// ICU has them. An object of it costs more than what is asked of it, so all texts of a locale are
// fetched at once, at the first question, and kept for ever: up to a thousand units.
#pragma once

#include "winapi/Base/Types.h"

#include <string_view>

namespace winapi
{
using WideView = std::basic_string_view<WCHAR>;

// The texts by their places in a locale's list. Names of days begin with Monday.
enum TextPlace : unsigned char
{
    ENGLISH_NAME,
    NATIVE_LANGUAGE,
    ENGLISH_COUNTRY,
    NATIVE_COUNTRY,
    DECIMAL,
    THOUSAND,
    NATIVE_DIGITS,
    CURRENCY,
    CURRENCY_CODE,
    MONEY_DECIMAL,
    MONEY_THOUSAND,
    DATE_SEPARATOR,
    TIME_SEPARATOR,
    SHORT_DATE,
    LONG_DATE,
    MORNING,
    AFTERNOON,
    DAYS,
    SHORT_DAYS = DAYS + 7,
    MONTHS = SHORT_DAYS + 7,
    SHORT_MONTHS = MONTHS + 12,
    POSITIVE = SHORT_MONTHS + 12,
    NEGATIVE,
    ENGLISH_LANGUAGE,
    TIME,
    YEAR_MONTH,
    ENGLISH_CURRENCY,
    NATIVE_CURRENCY,
    MONTH_13,
    SHORT_MONTH_13,
    GENITIVE_MONTHS,
    SHORT_GENITIVE_MONTHS = GENITIVE_MONTHS + 12,
    ERA = SHORT_GENITIVE_MONTHS + 12,
    CALENDARS,
    TEXT_COUNT = CALENDARS + 9
};

// The calendars that have names, in the order of these.
inline constexpr unsigned char namedCalendars[] = {1, 3, 4, 5, 6, 7, 8, 22, 23};

class LocaleTexts
{
public:
    WideView operator[](unsigned place) const
    {
        return {units + begin[place], static_cast<std::size_t>(begin[place + 1] - begin[place])};
    }

private:
    friend class TextCollector;
    WORD begin[TEXT_COUNT + 1];
    WCHAR units[1]; // As many as there are.
};

// The texts of a locale by its place in the table of locales. Null with the last error set: 126
// without the library that has them, 8 without memory.
const LocaleTexts* TextsOf(unsigned locale);

// The group of the host's table that gives them.
struct LocaleHost
{
    // Calls put for each text but those that no rule gives; false when ICU has no memory.
    bool (*readTexts)(const char* tag, void* place,
                      void (*put)(void* place, TextPlace text, const WCHAR* units, int count));
};
} // namespace winapi
