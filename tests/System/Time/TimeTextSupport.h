// tests/System/Time/TimeTextSupport.h: texts of dates, and the services that print them.
#pragma once

#include <Ostra/String/CString.h>
#include <Ostra/String/UString.h>
#include <System/LocaleInfo/LocaleInfo.h>
#include <System/OS/OS.h>
#include <System/Time/Time.h>

#include <windows.h>

#include <string>
#include <vector>

#include "Support/Failure.h"

namespace time_text
{
constexpr unsigned long long YEAR_1970 = 62135596800ULL;
constexpr unsigned ENGLISH = 0x0409, GERMAN = 0x0407, RUSSIAN = 0x0419, JAPANESE = 0x0411,
                   THAI = 0x041E, HEBREW = 0x040D, UNKNOWN = 0x7409;

inline std::u16string Of(const CT_UString& text)
{
    return Wide(text.qcuz_Get());
}

inline SYSTEMTIME SystemOf(const CT_Time& time)
{
    SYSTEMTIME system;
    CT_Time::sv_Convert(&system, time.n8_Get());
    return system;
}

// The services, with a picture (null: none) as the road and the string take it. Kind d prints a
// date, t a time.
inline std::u16string WideService(char kind, unsigned locale, unsigned flags,
                                  const SYSTEMTIME& system, const char16_t* picture)
{
    char16_t text[300];
    const auto call = kind == 'd' ? GetDateFormatW : GetTimeFormatW;
    const int size = call(locale, flags, &system, reinterpret_cast<LPCWSTR>(picture),
                          reinterpret_cast<LPWSTR>(text), 256);
    return size ? text : u"(failed)";
}

inline std::string NarrowService(char kind, unsigned locale, unsigned flags,
                                 const SYSTEMTIME& system, const char16_t* picture)
{
    const unsigned page = CT_LocaleInfo::sn_GetDefaultANSICodePage(locale);
    const CT_CString bytes(picture ? picture : u"", CT_String::ALL, page);
    char text[300];
    const auto call = kind == 'd' ? GetDateFormatA : GetTimeFormatA;
    const int size = call(locale, flags, &system, picture ? bytes.qccz_Get() : nullptr, text, 256);
    return size ? text : "(failed)";
}

inline std::u16string Widened(const std::string& bytes, unsigned locale)
{
    const CT_UString wide(bytes.c_str(), CT_String::ALL,
                          CT_LocaleInfo::sn_GetDefaultANSICodePage(locale));
    return Of(wide);
}

// What a CT_UString is to hold on this road.
inline std::u16string Expected(char kind, unsigned locale, unsigned flags, const SYSTEMTIME& system,
                               const char16_t* picture)
{
    if (!CT_OS::sb_GetIsWindows95())
        return WideService(kind, locale, flags, system, picture);
    return Widened(NarrowService(kind, locale, flags, system, picture), locale);
}

// A date with its time, by a CT_UString or a CT_CString picture.
inline std::u16string DateText(const CT_Time& time, unsigned locale, const char16_t* picture)
{
    CT_UString out;
    const CT_UString wide(picture);
    time.v_GetDate(&out, &wide, locale, CT_Time::df_Default);
    return Of(out);
}

inline std::u16string TimeText(const CT_Time& time, unsigned locale, const char16_t* picture)
{
    CT_UString out;
    const CT_UString wide(picture);
    time.v_GetTime(&out, &wide, locale);
    return Of(out);
}

// The fact of a locale as the library reads it.
inline std::u16string Fact(unsigned locale, unsigned type)
{
    CT_UString out;
    CT_LocaleInfo::sb_GetLocaleInfo(locale, static_cast<CT_LocaleInfo::et_Type>(type), &out);
    return Of(out);
}

inline std::vector<unsigned>& EnumeratedLocales()
{
    static std::vector<unsigned> locales;
    return locales;
}

inline BOOL CALLBACK TakeLocale(LPWSTR name)
{
    unsigned locale = 0;
    for (; *name; ++name)
        locale = locale * 16 + unsigned(*name <= '9' ? *name - '0' : (*name | 0x20) - 'a' + 10);
    EnumeratedLocales().push_back(locale);
    return 1;
}

inline std::vector<unsigned> InstalledLocales()
{
    EnumeratedLocales().clear();
    EnumSystemLocalesW(TakeLocale, LCID_INSTALLED);
    return EnumeratedLocales();
}
} // namespace time_text
