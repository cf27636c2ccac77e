// winapi/Locale/LocaleInfo.cpp
#include "winapi/Locale/LocaleInfo.h"

#include "Base/ProcessLocale.h"
#include "Locale/LocaleData.h"
#include "Locale/LocaleIds.h"
#include "Locale/LocaleTexts.h"
#include "Locale/Result.h"
#include "winapi/Errors/LastError.h"
#include "winapi/Text/CodePage.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>

namespace winapi
{
namespace
{

// Kinds of facts, of the numbers first to last, whose texts stand behind one another.
struct TextFacts
{
    WORD first;
    WORD last;
    TextPlace place;
};

constexpr TextFacts textFacts[] = {
    {LOCALE_SLANGUAGE, LOCALE_SLANGUAGE, ENGLISH_NAME},
    {LOCALE_SNATIVELANGNAME, LOCALE_SNATIVELANGNAME, NATIVE_LANGUAGE},
    {LOCALE_SCOUNTRY, LOCALE_SCOUNTRY, ENGLISH_COUNTRY},
    {LOCALE_SNATIVECTRYNAME, LOCALE_SNATIVECTRYNAME, NATIVE_COUNTRY},
    {LOCALE_SDECIMAL, LOCALE_STHOUSAND, DECIMAL},
    {LOCALE_SNATIVEDIGITS, LOCALE_SMONTHOUSANDSEP, NATIVE_DIGITS},
    {LOCALE_SDATE, LOCALE_SLONGDATE, DATE_SEPARATOR},
    {LOCALE_S1159, LOCALE_SNEGATIVESIGN, MORNING},
    {LOCALE_SENGLANGUAGE, LOCALE_SENGLANGUAGE, ENGLISH_LANGUAGE},
    {LOCALE_SENGCOUNTRY, LOCALE_SENGCOUNTRY, ENGLISH_COUNTRY},
    {LOCALE_STIMEFORMAT, LOCALE_STIMEFORMAT, TIME},
    {LOCALE_SYEARMONTH, LOCALE_SNATIVECURRNAME, YEAR_MONTH},
    {LOCALE_SMONTHNAME13, LOCALE_SABBREVMONTHNAME13, MONTH_13},
};

const TextFacts* FindTextFacts(unsigned fact)
{
    for (const TextFacts& facts : textFacts)
        if (fact >= facts.first && fact <= facts.last)
            return &facts;
    return nullptr;
}

// A fact that isn't in ICU, as text; null for others.
const char* PlainFact(int locale, unsigned fact, char (&room)[8])
{
    LCID lcid = locales[locale].lcid;
    switch (fact) {
    case LOCALE_SNAME:
        return lcid == LOCALE_INVARIANT ? "" : locales[locale].tag;
    case LOCALE_ILANGUAGE:
        std::snprintf(room, sizeof room, "%04x", static_cast<unsigned>(lcid));
        return room;
    default:
        return FactOf(static_cast<unsigned>(locale), fact);
    }
}

bool Refuse(DWORD error)
{
    SetLastError(error);
    return false;
}

// False with the last error set.
bool FindText(int locale, unsigned fact, WideView& text)
{
    const TextFacts* const facts = FindTextFacts(fact);
    if (!facts)
        return Refuse(ERROR_INVALID_FLAGS);
    const LocaleTexts* const texts = TextsOf(static_cast<unsigned>(locale));
    if (texts)
        text = (*texts)[facts->place + fact - facts->first];
    return texts != nullptr;
}

// A fact that isn't in ICU. Nearly all are ASCII; the list separators of Arabic aren't.
int HandOverPlain(std::string_view fact, UINT, WCHAR* buffer, int size)
{
    WCHAR text[32];
    const int count =
        MultiByteToWideChar(CP_UTF8, 0, fact.data(), static_cast<int>(fact.size()) + 1, text, 32);
    return HandOver(WideView(text, static_cast<std::size_t>(count - 1)), buffer, size);
}

int HandOverPlain(std::string_view fact, UINT page, char* buffer, int size)
{
    if (fact.empty() || static_cast<unsigned char>(fact[0]) < 0x80)
        return HandOver(fact, buffer, size);
    WCHAR text[32];
    const int count =
        MultiByteToWideChar(CP_UTF8, 0, fact.data(), static_cast<int>(fact.size()) + 1, text, 32);
    return HandOverIn(page, {text, static_cast<std::size_t>(count - 1)}, buffer, size);
}

int HandOverText(WideView text, UINT, WCHAR* buffer, int size)
{
    return HandOver(text, buffer, size);
}

int HandOverText(WideView text, UINT page, char* buffer, int size)
{
    return HandOverIn(page, text, buffer, size);
}

// Facts that are bytes, handed over whole: font signatures, and numbers that are asked for as such.
// Room and result count units of a size.
int HandOverBytes(const void* bytes, unsigned count, void* buffer, int size, unsigned unit)
{
    const unsigned needed = count / unit;
    if (size && static_cast<unsigned>(size) < needed) {
        SetLastError(ERROR_INSUFFICIENT_BUFFER);
        return 0;
    }
    if (size)
        std::memcpy(buffer, bytes, count);
    return static_cast<int>(needed);
}

int HandOverNumber(int locale, unsigned fact, void* buffer, int size, unsigned unit)
{
    char room[8];
    const char* const text =
        fact == LOCALE_SNAME || !NumberBase(fact) ? nullptr : PlainFact(locale, fact, room);
    if (!text) {
        SetLastError(ERROR_INVALID_FLAGS);
        return 0;
    }
    const DWORD number = static_cast<DWORD>(std::strtoul(text, nullptr, NumberBase(fact)));
    return HandOverBytes(&number, sizeof number, buffer, size, unit);
}

// What both widths have in common.
template <class Unit>
int GetInfo(LCID lcid, LCTYPE type, Unit* buffer, int size)
{
    if (!IsRoomSound(buffer, size))
        return 0;
    const int locale = PlaceOf(lcid);
    if (locale < 0)
        return 0;
    const unsigned fact = type & 0xFFFF;
    if (type & LOCALE_RETURN_NUMBER)
        return HandOverNumber(locale, fact, buffer, size, sizeof(Unit));
    if (fact == LOCALE_FONTSIGNATURE)
        return HandOverBytes(signatures[signatureOf[locale]], sizeof signatures[0], buffer, size,
                             sizeof(Unit));
    const UINT page = type & LOCALE_USE_CP_ACP ? GetACP() : AnsiPageOf(locale);
    char room[8];
    if (const char* const plain = PlainFact(locale, fact, room))
        return HandOverPlain(plain, page, buffer, size);
    WideView text;
    return FindText(locale, fact, text) ? HandOverText(text, page, buffer, size) : 0;
}
} // namespace

int GetLocaleInfoW(LCID Locale, LCTYPE LCType, LPWSTR lpLCData, int cchData)
{
    return GetInfo(Locale, LCType, lpLCData, cchData);
}

int GetLocaleInfoA(LCID Locale, LCTYPE LCType, LPSTR lpLCData, int cchData)
{
    return GetInfo(Locale, LCType, lpLCData, cchData);
}
} // namespace winapi
