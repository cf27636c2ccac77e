// winapi/Locale/LocaleTextsHost.cpp
#include "Locale/LocaleTextsHost.h"

#include "Locale/PatternHost.h"

#include <algorithm>
#include <cstdio>
#include <memory>
#include <new>
#include <string>

#include <unicode/ucurr.h>
#include <unicode/udat.h>
#include <unicode/udatpg.h>
#include <unicode/uloc.h>
#include <unicode/unum.h>
#include <unicode/unumsys.h>
#include <unicode/ures.h>

namespace winapi
{
namespace
{
constexpr int ROOM = 256; // Longer than any name or pattern.
constexpr int ID_ROOM = 96;
constexpr std::size_t CURRENCY_LETTERS = 3;

template <auto Close>
struct Closer
{
    template <class Object>
    void operator()(Object* object) const
    {
        Close(object);
    }
};
using Numbers = std::unique_ptr<UNumberFormat, Closer<unum_close>>;
using Dates = std::unique_ptr<UDateFormat, Closer<udat_close>>;
using Patterns = std::unique_ptr<UDateTimePatternGenerator, Closer<udatpg_close>>;
using Systems = std::unique_ptr<UNumberingSystem, Closer<unumsys_close>>;
using Bundle = std::unique_ptr<UResourceBundle, Closer<ures_close>>;

std::u16string Replaced(std::u16string text, char16_t from, char16_t to)
{
    std::replace(text.begin(), text.end(), from, to);
    return text;
}

// What ICU says of one locale.
class Reader
{
public:
    using Put = void (*)(void* place, TextPlace text, const WCHAR* units, int count);

    Reader(const char* tag, void* where, Put into) : place(where), put(into)
    {
        int32_t parsed = 0;
        UErrorCode none = U_ZERO_ERROR;
        uloc_forLanguageTag(tag, id, sizeof id, &parsed, &none);
        // A language that ICU lacks would be answered in that of the host's variables.
        const Bundle bundle(ures_open(nullptr, id, &none));
        const bool lacks = U_FAILURE(none) || none == U_USING_DEFAULT_WARNING;
        std::snprintf(base, sizeof base, "%s", lacks ? "root" : id);
        std::snprintf(plain, sizeof plain, "%s@calendar=gregorian;numbers=latn", base);
    }

    bool Read()
    {
        ReadNumbers();
        ReadPictures();
        ReadSymbols();
        ReadNames();
        ReadCurrency();
        ReadDigits();
        ReadCalendars();
        return error != U_MEMORY_ALLOCATION_ERROR;
    }

private:
    char id[ID_ROOM] = "";
    char base[ID_ROOM];
    char plain[ID_ROOM * 2];
    void* const place;
    const Put put;
    UErrorCode error = U_ZERO_ERROR;

    void Give(unsigned text, const std::u16string& value)
    {
        static_assert(sizeof(WCHAR) == sizeof(char16_t));
        put(place, static_cast<TextPlace>(text), reinterpret_cast<const WCHAR*>(value.data()),
            static_cast<int>(value.size()));
    }

    // The text that a call of ICU writes to a buffer; empty when it has none.
    template <class Call>
    std::u16string Ask(Call call)
    {
        char16_t buffer[ROOM];
        UErrorCode own = U_ZERO_ERROR;
        const int32_t length = call(buffer, ROOM, &own);
        Note(own);
        return HasAnswered(own) ? std::u16string(buffer, static_cast<std::size_t>(length))
                                : std::u16string();
    }
    // For want of a name ICU gives the code that it was asked for.
    static bool HasAnswered(UErrorCode own)
    {
        return U_SUCCESS(own) && own != U_USING_DEFAULT_WARNING;
    }
    void Note(UErrorCode own)
    {
        if (own == U_MEMORY_ALLOCATION_ERROR)
            error = own;
    }

    void ReadNumbers()
    {
        UErrorCode own = U_ZERO_ERROR;
        const Numbers numbers(unum_open(UNUM_DECIMAL, nullptr, 0, plain, nullptr, &own));
        Note(own);
        const struct
        {
            TextPlace text;
            UNumberFormatSymbol symbol;
        } rows[] = {{DECIMAL, UNUM_DECIMAL_SEPARATOR_SYMBOL},
                    {THOUSAND, UNUM_GROUPING_SEPARATOR_SYMBOL},
                    {MONEY_DECIMAL, UNUM_MONETARY_SEPARATOR_SYMBOL},
                    {MONEY_THOUSAND, UNUM_MONETARY_GROUPING_SEPARATOR_SYMBOL}};
        if (U_SUCCESS(own))
            for (const auto& row : rows)
                Give(row.text, Replaced(Ask([&](char16_t* buffer, int32_t room, UErrorCode* e) {
                                            return unum_getSymbol(numbers.get(), row.symbol, buffer,
                                                                  room, e);
                                        }),
                                        0x202F, 0x00A0));
        Give(POSITIVE, u"");
        Give(NEGATIVE, u"-");
    }

    std::u16string StylePattern(UDateFormatStyle time, UDateFormatStyle date)
    {
        UErrorCode own = U_ZERO_ERROR;
        const Dates dates(udat_open(time, date, plain, u"UTC", 3, nullptr, 0, &own));
        Note(own);
        if (U_FAILURE(own))
            return {};
        return Ask([&](char16_t* buffer, int32_t room, UErrorCode* e) {
            return udat_toPattern(dates.get(), false, buffer, room, e);
        });
    }

    void ReadPictures()
    {
        UErrorCode own = U_ZERO_ERROR;
        const Patterns patterns(udatpg_open(plain, &own));
        Note(own);
        const auto best = [&](std::u16string_view skeleton) {
            return Ask([&](char16_t* buffer, int32_t room, UErrorCode* e) {
                return udatpg_getBestPattern(patterns.get(), skeleton.data(),
                                             static_cast<int32_t>(skeleton.size()), buffer, room,
                                             e);
            });
        };
        const std::u16string date = U_SUCCESS(own) ? PictureOf(best(u"yMd")) : u"";
        Give(SHORT_DATE, date);
        Give(DATE_SEPARATOR, SeparatorOf(date));
        Give(YEAR_MONTH, U_SUCCESS(own) ? PictureOf(best(u"yMMMM")) : u"");
        Give(LONG_DATE, PictureOf(StylePattern(UDAT_NONE, UDAT_FULL)));
        Give(TIME, Replaced(PictureOf(StylePattern(UDAT_MEDIUM, UDAT_NONE)), 0x202F, ' '));
        Give(TIME_SEPARATOR, u":");
    }

    // What stands behind the first field of a picture.
    static std::u16string SeparatorOf(const std::u16string& picture)
    {
        const std::size_t begin = picture.find_first_not_of(u"dMyg");
        const std::size_t end = picture.find_first_of(u"dMyg", std::min(begin, picture.size()));
        return begin < end && end != std::u16string::npos ? picture.substr(begin, end - begin)
                                                          : std::u16string();
    }

    void ReadSymbols()
    {
        UErrorCode own = U_ZERO_ERROR;
        const Dates dates(udat_open(UDAT_MEDIUM, UDAT_MEDIUM, plain, u"UTC", 3, nullptr, 0, &own));
        Note(own);
        if (U_FAILURE(own))
            return;
        const auto give = [&](unsigned text, UDateFormatSymbolType type, int index) {
            Give(text, Ask([&](char16_t* buffer, int32_t room, UErrorCode* e) {
                     return udat_getSymbols(dates.get(), type, index, buffer, room, e);
                 }));
        };
        for (unsigned day = 0; day < 7; ++day) {
            // Theirs begin with Sunday as 1.
            const int index = static_cast<int>((day + 1) % 7) + 1;
            give(DAYS + day, UDAT_WEEKDAYS, index);
            give(SHORT_DAYS + day, UDAT_SHORT_WEEKDAYS, index);
        }
        for (unsigned month = 0; month < 12; ++month) {
            const int index = static_cast<int>(month);
            give(MONTHS + month, UDAT_STANDALONE_MONTHS, index);
            give(SHORT_MONTHS + month, UDAT_STANDALONE_SHORT_MONTHS, index);
            give(GENITIVE_MONTHS + month, UDAT_MONTHS, index);
            give(SHORT_GENITIVE_MONTHS + month, UDAT_SHORT_MONTHS, index);
        }
        give(MORNING, UDAT_AM_PMS, 0);
        give(AFTERNOON, UDAT_AM_PMS, 1);
        give(ERA, UDAT_ERAS, 1);
        Give(MONTH_13, u"");
        Give(SHORT_MONTH_13, u"");
    }

    static const std::u16string& Or(const std::u16string& text, const std::u16string& other)
    {
        return text.empty() ? other : text;
    }

    template <class Function>
    std::u16string NameIn(const char* language, Function name)
    {
        return Ask([&](char16_t* buffer, int32_t room, UErrorCode* e) {
            return name(id, language, buffer, room, e);
        });
    }

    void ReadNames()
    {
        const std::u16string language = NameIn("en", uloc_getDisplayLanguage);
        const std::u16string country = NameIn("en", uloc_getDisplayCountry);
        Give(ENGLISH_LANGUAGE, language);
        Give(ENGLISH_COUNTRY, country);
        Give(ENGLISH_NAME, country.empty() ? language : language + u" (" + country + u")");
        Give(NATIVE_LANGUAGE, Or(NameIn(base, uloc_getDisplayLanguage), language));
        Give(NATIVE_COUNTRY, Or(NameIn(base, uloc_getDisplayCountry), country));
    }

    void ReadCurrency()
    {
        const std::u16string code = Ask([&](char16_t* buffer, int32_t room, UErrorCode* e) {
            return ucurr_forLocale(id, buffer, room, e);
        });
        // ICU reads three letters, also of a code that isn't there: places without a currency have none.
        const auto name = [&](const char* language, UCurrNameStyle style) {
            if (code.size() != CURRENCY_LETTERS)
                return std::u16string();
            UErrorCode own = U_ZERO_ERROR;
            int32_t length = 0;
            const char16_t* const text =
                ucurr_getName(code.c_str(), language, style, nullptr, &length, &own);
            Note(own);
            return HasAnswered(own) ? std::u16string(text, static_cast<std::size_t>(length))
                                    : std::u16string();
        };
        const std::u16string english = name("en", UCURR_LONG_NAME);
        Give(CURRENCY_CODE, code);
        Give(CURRENCY, Or(name(base, UCURR_SYMBOL_NAME), code));
        Give(ENGLISH_CURRENCY, english);
        Give(NATIVE_CURRENCY, Or(name(base, UCURR_LONG_NAME), english));
    }

    void ReadDigits()
    {
        UErrorCode own = U_ZERO_ERROR;
        const Systems system(unumsys_open(base, &own));
        Note(own);
        const bool plainDigits = U_FAILURE(own) || unumsys_isAlgorithmic(system.get());
        Give(NATIVE_DIGITS,
             plainDigits ? u"0123456789" : Ask([&](char16_t* buffer, int32_t room, UErrorCode* e) {
                 return unumsys_getDescription(system.get(), buffer, room, e);
             }));
    }

    void ReadCalendars()
    {
        static constexpr const char* types[] = {"gregorian", "japanese",      "chinese",
                                                "dangi",     "islamic-civil", "buddhist",
                                                "hebrew",    "persian",       "islamic-umalqura"};
        static_assert(std::size(types) == std::size(namedCalendars));
        for (unsigned i = 0; i < std::size(types); ++i) {
            const std::string keyed = std::string("root@calendar=") + types[i];
            Give(CALENDARS + i, Ask([&](char16_t* buffer, int32_t room, UErrorCode* e) {
                     return uloc_getDisplayKeywordValue(keyed.c_str(), "calendar", base, buffer,
                                                        room, e);
                 }));
        }
    }
};
} // namespace

bool ReadTexts(const char* tag, void* place,
               void (*put)(void* place, TextPlace text, const WCHAR* units, int count))
{
    try {
        return Reader(tag, place, put).Read();
    } catch (const std::bad_alloc&) {
        return false;
    }
}

const LocaleHost localeHost = {.readTexts = ReadTexts};
} // namespace winapi
