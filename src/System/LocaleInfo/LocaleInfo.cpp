// System/LocaleInfo/LocaleInfo.cpp
#include <System/LocaleInfo/LocaleInfo.h>

#include <Ostra/Frame/Counts.h>
#include <Ostra/Frame/Report.h>
#include <Ostra/Maps/StringOrdinalMap.h>
#include <Ostra/String/CString.h>
#include <Ostra/String/UString.h>
#include <System/OS/OS.h>

#include <windows.h>

#include <algorithm>
#include <cstdlib>

static constexpr char qccz_Source[] = "System/LocaleInfo/LocaleInfo";

static constexpr unsigned TEXT_ROOM = 128;
static constexpr unsigned NUMBER_ROOM = 64;
static constexpr unsigned CODE_PAGE_ROOM = 8;

CT_StringOrdinalMap* CT_LocaleInfo::spco_Map;
CT_LocaleInfo::et_Type CT_LocaleInfo::seo_LocaleType;

// ---- The system's answers -----------------------------------------------------------------------

unsigned int CT_LocaleInfo::sn_GetSystemDefaultLCID()
{
    return GetSystemDefaultLCID();
}

unsigned int CT_LocaleInfo::sn_GetUserDefaultLCID()
{
    return GetUserDefaultLCID();
}

unsigned int CT_LocaleInfo::sn_GetSystemDefaultLangID()
{
    return GetSystemDefaultLangID();
}

unsigned int CT_LocaleInfo::sn_GetUserDefaultLangID()
{
    return GetUserDefaultLangID();
}

int CT_LocaleInfo::sb_LocaleIsSupported(unsigned int n_Locale)
{
    return IsValidLocale(n_Locale, LCID_SUPPORTED);
}

int CT_LocaleInfo::sb_LocaleIsInstalled(unsigned int n_Locale)
{
    return IsValidLocale(n_Locale, LCID_INSTALLED);
}

int CT_LocaleInfo::sb_IsValidCodePage(unsigned int n_CodePage)
{
    return IsValidCodePage(n_CodePage);
}

// ---- Ids ----------------------------------------------------------------------------------------

unsigned int CT_LocaleInfo::sn_MakeLocaleID(unsigned int n_Language, unsigned int n_Sort)
{
    return n_Sort << 16 | (n_Language & 0xFFFF);
}

unsigned int CT_LocaleInfo::sn_GetPrimaryLangID(unsigned int n_Language)
{
    return n_Language & 0x3FF;
}

unsigned int CT_LocaleInfo::sn_GetSubLangID(unsigned int n_Language)
{
    return (n_Language & 0xFFFF) >> 10;
}

// ---- Code pages and character sets --------------------------------------------------------------

// What a system without the locale would have.
static unsigned n_CodePageOfLanguage(unsigned n_Primary, unsigned n_Sub)
{
    switch (n_Primary) {
    case 1:
    case 41:
        return 1256;
    case 2:
    case 25:
    case 34:
    case 35:
        return 1251;
    case 4:
        return n_Sub == 1 || n_Sub == 3 ? 950 : 936;
    case 5:
    case 14:
    case 21:
    case 24:
    case 26:
    case 27:
    case 36:
    case 56: // Kept: Faeroese, which is of Western Europe.
        return 1250;
    case 8:
        return 1253;
    case 13:
        return 1255;
    case 17:
        return 932;
    case 18:
        return n_Sub == 2 ? 1361 : 949;
    case 30:
        return 874;
    case 31:
        return 1254;
    case 37:
    case 38:
    case 39:
        return 1257;
    default:
        return 1252;
    }
}

struct st_Charset
{
    unsigned n_CodePage;
    unsigned n_Charset;
    unsigned n_Locale;
};

static constexpr unsigned ANSI = 0; // character sets
static constexpr unsigned DEFAULT = 1;

// clang-format off
static constexpr st_Charset aso_Charsets[] = {
    {874, 222, 0x041E},   // Thai
    {932, 128, 0x0411},   // Japanese
    {936, 134, 0x0804},   // simplified Chinese
    {949, 129, 0x0412},   // Korean
    {950, 136, 0x0404},   // traditional Chinese
    {1250, 238, 0x0405},  // Central Europe
    {1251, 204, 0x0419},  // Cyrillic
    {1252, ANSI, 0x0409}, // Western Europe
    {1253, 161, 0x0408},  // Greek
    {1254, 162, 0x041F},  // Turkish
    {1255, 177, 0x040D},  // Hebrew
    {1256, 178, 0x0401},  // Arabic
    {1257, 186, 0x0427},  // Baltic
    {1361, 130, 0x080D},  // Johab. Kept: a Hebrew id.
};
// clang-format on

// The row in which a member has that value; null for none.
static const st_Charset* pcso_Find(unsigned st_Charset::*pn_Member, unsigned n_Value)
{
    const st_Charset* pcso_Row = std::ranges::find(aso_Charsets, n_Value, pn_Member);
    return pcso_Row == std::end(aso_Charsets) ? nullptr : pcso_Row;
}

unsigned int CT_LocaleInfo::sn_GetDefaultANSICodePage(unsigned int n_Locale)
{
    char acz_Number[CODE_PAGE_ROOM];
    if (GetLocaleInfoA(n_Locale, lt_ANSICodePage, acz_Number, sizeof(acz_Number)))
        return static_cast<unsigned>(std::strtoul(acz_Number, nullptr, 10));
    return n_CodePageOfLanguage(sn_GetPrimaryLangID(n_Locale), sn_GetSubLangID(n_Locale));
}

unsigned int CT_LocaleInfo::sn_GetDefaultCharset(unsigned int n_Locale)
{
    const unsigned n_CodePage = sn_GetDefaultANSICodePage(n_Locale);
    if (CT_Report::sb_Failed(qccz_Source))
        return ANSI;
    const st_Charset* pcso_Row = pcso_Find(&st_Charset::n_CodePage, n_CodePage);
    return pcso_Row ? pcso_Row->n_Charset : DEFAULT;
}

unsigned int CT_LocaleInfo::sn_GetDefaultCharsetLocale(unsigned int n_Charset)
{
    const st_Charset* pcso_Row = pcso_Find(&st_Charset::n_Charset, n_Charset);
    return pcso_Row ? pcso_Row->n_Locale : GetSystemDefaultLangID();
}

unsigned int CT_LocaleInfo::sn_GetDefaultCPLocale(unsigned int n_CodePage)
{
    const st_Charset* pcso_Row = pcso_Find(&st_Charset::n_CodePage, n_CodePage);
    return pcso_Row ? pcso_Row->n_Locale : GetSystemDefaultLangID();
}

// ---- Facts --------------------------------------------------------------------------------------

// The kinds that are read as numbers.
static bool b_IsNumber(unsigned n_Type)
{
    static constexpr unsigned short an2_Numbers[] = {
        1,  5,  9,  10, 11, 13, 17, 18, 25, 26,   27,   28,   33,   34,   35,   36,
        37, 38, 39, 82, 83, 84, 85, 86, 87, 4100, 4101, 4105, 4107, 4108, 4109, 4112};
    return std::ranges::binary_search(an2_Numbers, n_Type);
}

int CT_LocaleInfo::sb_GetLocaleInfo(unsigned int n_Locale, et_Type ec_Type, char* pc_Buffer,
                                    unsigned int n_Size)
{
    return sb_LocaleIsSupported(n_Locale) &&
           GetLocaleInfoA(n_Locale, ec_Type, pc_Buffer, static_cast<int>(n_Size));
}

int CT_LocaleInfo::sb_GetLocaleInfo(unsigned int n_Locale, et_Type ec_Type, CT_String* pco_Out)
{
    char acz_Text[TEXT_ROOM] = {}; // what isn't text comes without a terminator
    if (!sb_GetLocaleInfo(n_Locale, ec_Type, acz_Text, TEXT_ROOM))
        return 0;
    pco_Out->v_Set(acz_Text, ALL, sn_GetDefaultANSICodePage(n_Locale));
    return 1;
}

int CT_LocaleInfo::sb_GetLocaleInfo(unsigned int n_Locale, et_Type ec_Type, unsigned int* pn_Out)
{
    char acz_Number[NUMBER_ROOM];
    if (!b_IsNumber(ec_Type) || !sb_GetLocaleInfo(n_Locale, ec_Type, acz_Number, NUMBER_ROOM))
        return 0;
    *pn_Out = static_cast<unsigned>(std::strtoul(acz_Number, nullptr, 10));
    return 1;
}

// ---- Values of all locales ----------------------------------------------------------------------

// A number in hexadecimal digits.
static unsigned n_ReadHexadecimal(const unsigned short* qcuz_Text)
{
    unsigned n_Number = 0;
    for (; *qcuz_Text; ++qcuz_Text) {
        const unsigned n_Letter = (*qcuz_Text | 0x20u) - 'a';
        const unsigned n_Digit = n_Letter < 6 ? n_Letter + 10 : *qcuz_Text - unsigned{'0'};
        if (n_Digit > 15)
            break;
        n_Number = n_Number * 16 + n_Digit;
    }
    return n_Number;
}

int OSTRA_ENTRY CT_LocaleInfo::sb_CollectLocaleInfo(unsigned short* quz_Locale)
{
    CT_UString co_Value;
    if (sb_GetLocaleInfo(n_ReadHexadecimal(quz_Locale), seo_LocaleType, &co_Value) &&
        !spco_Map->n_Get(&co_Value))
        spco_Map->n_Insert(&co_Value);
    return 1;
}

void CT_LocaleInfo::sv_CollectValues(et_Type ec_Type, unsigned short u_Separator,
                                     CT_UString* pco_Out)
{
    pco_Out->v_Set(0u, 1);
    if (!CT_OS::sb_GetIsWindowsNT())
        return;
    CT_StringOrdinalMap co_Map(8);
    spco_Map = &co_Map;
    seo_LocaleType = ec_Type;
    EnumSystemLocalesW(reinterpret_cast<LOCALE_ENUMPROCW>(sb_CollectLocaleInfo), LCID_INSTALLED);
    for (unsigned n = 1; n <= co_Map.n_GetCount(); ++n) {
        if (u_Separator && n > 1)
            pco_Out->v_Append(u_Separator);
        pco_Out->v_Append(co_Map.qcuz_Get(n));
    }
    spco_Map = nullptr;
}
