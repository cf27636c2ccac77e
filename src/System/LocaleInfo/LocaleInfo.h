// System/LocaleInfo/LocaleInfo.h: what the system knows of a locale.
#pragma once

#include <Ostra/Frame/Export.h>
#include <Ostra/Frame/Platform.h>

class CT_String;
class CT_StringOrdinalMap;
class CT_UString;

// The system's locales: their texts and numbers, code pages and character sets.
//
// Units:   a locale's id has the language's id in its low 16 bits and a way of sorting above.
// Reports: nothing of its own for a look-up that fails; 60006 comes from strings when the heap is
//          exhausted.
// Threads: any number, but for sv_CollectValues: one at a time. A string belongs to one thread at a
//          time.
class OSTRA_API CT_LocaleInfo
{
public:
    // A kind of fact, by the platform's number (its LOCALE_... constants); flags of the platform
    // may be added. Some have names here, those of days (Monday is the first) and months follow
    // one another.
    enum et_Type : unsigned
    {
        lt_CountryCode = 5,
        lt_Country = 6,
        lt_Decimal = 14,
        lt_Thousand = 15,
        lt_LeadingZero = 18,
        lt_ShortDate = 31,
        lt_Morning = 40,
        lt_Afternoon = 41,
        lt_DayName1 = 42,
        lt_ShortDayName1 = 49,
        lt_MonthName1 = 56,
        lt_ShortMonthName1 = 68,
        lt_EnglishLanguage = 4097,
        lt_EnglishCountry = 4098,
        lt_ANSICodePage = 4100,
        lt_Calendar = 4105,
        lt_OptionalCalendar = 4107,
        lt_MonthName13 = 4110,
        lt_ShortMonthName13 = 4111,
        lt_NegativeNumber = 4112
    };

    // ---- The system's answers -----------------------------------------------------------------

    static unsigned int sn_GetSystemDefaultLCID();
    static unsigned int sn_GetUserDefaultLCID();
    static unsigned int sn_GetSystemDefaultLangID();
    static unsigned int sn_GetUserDefaultLangID();
    // 0, 0x400 and 0x800, which stand for the user's and the system's locale, are none themselves.
    static int sb_LocaleIsSupported(unsigned int n_Locale);
    static int sb_LocaleIsInstalled(unsigned int n_Locale);
    static int sb_IsValidCodePage(unsigned int n_CodePage);

    // ---- Ids ----------------------------------------------------------------------------------

    static unsigned int sn_MakeLocaleID(unsigned int n_Language, unsigned int n_Sort);
    static unsigned int sn_GetPrimaryLangID(unsigned int n_Language);
    static unsigned int sn_GetSubLangID(unsigned int n_Language);

    // ---- Code pages and character sets --------------------------------------------------------

    // As the system has it, 0 for a locale without one; by the language where the system doesn't
    // know the locale.
    static unsigned int sn_GetDefaultANSICodePage(unsigned int n_Locale);
    // The character set of that code page, 1 for one that has none.
    // Kept: 0 (that of 1252) while the thread has an error, whose trail then has this place.
    static unsigned int sn_GetDefaultCharset(unsigned int n_Locale);
    // A locale that stands for the character set or code page; the system's language for others.
    // Kept: Johab (130, 1361) has 0x080D, a Hebrew id.
    static unsigned int sn_GetDefaultCharsetLocale(unsigned int n_Charset);
    static unsigned int sn_GetDefaultCPLocale(unsigned int n_CodePage);

    // ---- Facts --------------------------------------------------------------------------------

    // All give 1, or 0 for a locale that isn't supported and where the system has no answer.

    // The fact in the locale's code page, with its terminator, or as bytes where its kind is not
    // text. n_Size is the area's room in bytes; with 0 nothing is written, and the result is 1 all
    // the same.
    static int sb_GetLocaleInfo(unsigned int n_Locale, et_Type ec_Type, char* pc_Buffer,
                                unsigned int n_Size);
    // Sets the string, converting from the locale's code page; facts of up to 127 bytes. A failure
    // leaves it.
    static int sb_GetLocaleInfo(unsigned int n_Locale, et_Type ec_Type, CT_String* pco_Out);
    // For the kinds that the platform counts as numbers; others give 0. A failure leaves *pn_Out.
    // Kept: kinds 1 and 9, language ids, are hexadecimal texts and read as decimal ones: 409 for
    // 0409, 40 for 040a.
    static int sb_GetLocaleInfo(unsigned int n_Locale, et_Type ec_Type, unsigned int* pn_Out);

    // All distinct values of one kind over the installed locales, in the order in which they are
    // met, with a separator between them (0 for none). Empty where the system has no wide calls.
    static void sv_CollectValues(et_Type ec_Type, unsigned short u_Separator, CT_UString* pco_Out);

private:
    static int OSTRA_ENTRY sb_CollectLocaleInfo(unsigned short* quz_Locale);

    // Both for the time of sv_CollectValues alone.
    static CT_StringOrdinalMap* spco_Map;
    static et_Type seo_LocaleType;
};
