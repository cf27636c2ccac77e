// System/Time/Calendar.cpp
#include <System/Time/Calendar.h>

#include <Ostra/String/CString.h>
#include <System/LocaleInfo/Language.h>
#include <System/LocaleInfo/LocaleInfo.h>
#include <System/Time/GregorianDate.h>
#include <System/Time/HebrewDate.h>
#include <System/Time/HijriDate.h>

#include <windows.h>

#include <cstring>

static constexpr unsigned HEBREW_LANGUAGE = 13;
// In place of an offset.
static constexpr int HIJRI_MARK = -1;
static constexpr int HEBREW_MARK = -2;

// The texts as units: pointers to them are known to the compiler, so that the table needs no code
// at the program's start.
static constexpr unsigned short auz_Gregorian[] = {'A', '.', 'D', '.', 0};
static constexpr unsigned short auz_Heisei[] = {0x5E73, 0x6210, 0};
static constexpr unsigned short auz_Showa[] = {0x662D, 0x548C, 0};
static constexpr unsigned short auz_Taisho[] = {0x5927, 0x6B63, 0};
static constexpr unsigned short auz_Meiji[] = {0x660E, 0x6CBB, 0};
static constexpr unsigned short auz_Taiwan[] = {0x4E2D, 0x83EF, 0x6C11, 0x570B, 0};
static constexpr unsigned short auz_Korea[] = {0xB2E8, 0xAE30, 0};
static constexpr unsigned short auz_Thai[] = {0x0E1E, '.', 0x0E28, '.', 0};
static constexpr unsigned short auz_Hijri[] = {'A', '.', 'H', '.', 0};
static constexpr unsigned short auz_Hebrew[] = {'H', 'e', 'b', 'r', 'e', 'w', 0};

// The first row of a calendar is the one that it has by default: the newest Japanese era.
constinit const CT_Calendar::et_EraInfo CT_Calendar::saeo_Eras[12] = {
    {id_Gregorian, ct_Gregorian, 0, auz_Gregorian},
    {id_GregorianUS, ct_GregorianUS, 0, auz_Gregorian},
    {id_Japan, ct_Japan, 1988, auz_Heisei},
    {id_JapanShowa, ct_Japan, 1925, auz_Showa},
    {id_JapanTaisho, ct_Japan, 1911, auz_Taisho},
    {id_JapanMeiji, ct_Japan, 1867, auz_Meiji},
    {id_Taiwan, ct_Taiwan, 1911, auz_Taiwan},
    {id_Korea, ct_Korea, -2333, auz_Korea},
    {id_Thai, ct_Thai, -543, auz_Thai},
    {id_Hijri, ct_Hijri, HIJRI_MARK, auz_Hijri},
    {id_Hebrew, ct_Hebrew, HEBREW_MARK, auz_Hebrew},
    {id_None, ct_None, 0, nullptr},
};

char CT_Calendar::sacz_EnumInfo[256];

// ---- Table of eras ------------------------------------------------------------------------

unsigned int CT_Calendar::sn_GetIDCount()
{
    unsigned n = 0;
    while (saeo_Eras[n].eo_Type != ct_None)
        ++n;
    return n;
}

CT_Calendar::et_ID CT_Calendar::seo_GetCalID(unsigned int n_Row)
{
    return saeo_Eras[n_Row].eo_ID;
}

CT_Calendar::et_Type CT_Calendar::seo_GetCalType(unsigned int n_Row)
{
    return saeo_Eras[n_Row].eo_Type;
}

int CT_Calendar::si_GetCalOffset(unsigned int n_Row)
{
    return saeo_Eras[n_Row].i_Offset;
}

const unsigned short* CT_Calendar::sqcuz_GetCalEra(unsigned int n_Row)
{
    return saeo_Eras[n_Row].qcuz_Era;
}

// ---- Calendars of locales -----------------------------------------------------------------

static CT_Calendar::et_Type seo_LookUp(unsigned n_Locale, CT_LocaleInfo::et_Type ec_Type)
{
    unsigned n_Calendar = 0;
    CT_LocaleInfo::sb_GetLocaleInfo(n_Locale, ec_Type, &n_Calendar);
    return static_cast<CT_Calendar::et_Type>(n_Calendar);
}

CT_Calendar::et_Type CT_Calendar::seo_GetCalendar(unsigned int n_Locale)
{
    return seo_LookUp(n_Locale, CT_LocaleInfo::lt_Calendar);
}

CT_Calendar::et_Type CT_Calendar::seo_GetAlternateCalendar(unsigned int n_Locale)
{
    return seo_LookUp(n_Locale, CT_LocaleInfo::lt_OptionalCalendar);
}

CT_Calendar::et_Type CT_Calendar::seo_AlternateCalendar(unsigned int n_Locale)
{
    const et_Type ec_Own = seo_GetCalendar(n_Locale);
    if (ec_Own != ct_Gregorian && ec_Own != ct_GregorianUS)
        return ec_Own;
    const et_Type ec_Other = seo_GetAlternateCalendar(n_Locale);
    if (ec_Other != ct_Gregorian && ec_Other != ct_GregorianUS)
        return ec_Other;
    return CT_Language::seo_GetPrimary(n_Locale) == HEBREW_LANGUAGE ? ct_Hebrew : ct_None;
}

int CT_Calendar::sb_GetCalendarName(unsigned int n_Locale, CT_CString* pco_Out)
{
    sv_FindName(n_Locale, seo_GetCalendar(n_Locale), pco_Out);
    return 1;
}

int CT_Calendar::sb_GetAlternateCalendarName(unsigned int n_Locale, CT_CString* pco_Out)
{
    const et_Type ec_Type = seo_AlternateCalendar(n_Locale);
    if (ec_Type == ct_None || ec_Type == seo_GetCalendar(n_Locale))
        return 0;
    sv_FindName(n_Locale, ec_Type, pco_Out);
    return 1;
}

static BOOL CALLBACK b_TakeName(LPSTR qcz_Name)
{
    CT_Calendar::sv_SetEnumInfo(qcz_Name);
    return 1;
}

void CT_Calendar::sv_FindName(unsigned n_Locale, et_Type ec_Type, CT_CString* pco_Out)
{
    const unsigned n_CodePage = CT_LocaleInfo::sn_GetDefaultANSICodePage(n_Locale);
    EnumCalendarInfoA(b_TakeName, n_Locale, static_cast<CALID>(ec_Type), CAL_SCALNAME);
    pco_Out->v_Set(sacz_EnumInfo, CT_String::ALL, static_cast<unsigned>(-2));
    pco_Out->v_SetCodePage(n_CodePage);
}

void CT_Calendar::sv_SetEnumInfo(const char* qccz_Text)
{
    // A longer text would run over what lies behind the buffer.
    std::size_t n_Length = std::strlen(qccz_Text);
    if (n_Length >= sizeof(sacz_EnumInfo))
        n_Length = sizeof(sacz_EnumInfo) - 1;
    std::memmove(sacz_EnumInfo, qccz_Text, n_Length);
    sacz_EnumInfo[n_Length] = 0;
}

// ---- Dates --------------------------------------------------------------------------------

// Sums that begin anew beyond 32 bits.
static int i_Plus(int i_First, int i_Second)
{
    return static_cast<int>(static_cast<unsigned>(i_First) + static_cast<unsigned>(i_Second));
}

// The date that the fields tell in a calendar, and its day number.
template <typename t_Date>
static t_Date co_DateOf(const tm* pcso_Time)
{
    return t_Date(pcso_Time->tm_year, i_Plus(pcso_Time->tm_mon, 1), pcso_Time->tm_mday);
}
template <typename t_Date>
static int i_DayNumber(const tm* pcso_Time)
{
    return static_cast<int>(co_DateOf<t_Date>(pcso_Time).i8_DayNumber());
}

// Year, month and day of a day number, by a calendar.
template <typename t_Date>
static void v_SetDate(tm* pso_Time, int i_DayNumber)
{
    const t_Date co_Date(i_DayNumber);
    pso_Time->tm_year = co_Date.i_Year;
    pso_Time->tm_mon = co_Date.i_Month - 1;
    pso_Time->tm_mday = co_Date.i_Day;
}

// The Gregorian date of a day of a calendar, with what sv_AddYearWeekday adds.
template <typename t_Date>
static void v_ToGregorian(tm* pso_Time)
{
    const int i_Day = i_DayNumber<t_Date>(pso_Time);
    const CT_GregorianDate co_Date(i_Day);
    pso_Time->tm_year = co_Date.i_Year;
    pso_Time->tm_mon = co_Date.i_Month - 1;
    pso_Time->tm_mday = co_Date.i_Day;
    pso_Time->tm_yday = static_cast<int>(co_Date.i8_DayOfYear());
    if (pso_Time->tm_wday == -1)
        pso_Time->tm_wday = i_Day % 7;
}

// How far a day number is behind that of the first day of month 1 of a year.
template <typename t_Date>
static int i_DaysBehind(int i_Year, int i_DayNumber)
{
    return static_cast<int>(i_DayNumber - t_Date(i_Year, 1, 1).i8_DayNumber());
}

int CT_Calendar::sb_ValidateTM(tm* pso_Time)
{
    const int i_Month = i_Plus(pso_Time->tm_mon, 1);
    if (i_Month == 13)
        return 0;
    const int i_Days = CT_GregorianDate(pso_Time->tm_year, i_Month, 1).i_DaysInMonth();
    // Kept: a comparison without sign, which takes day 0 and refuses days below it.
    return static_cast<unsigned>(pso_Time->tm_mday) <= static_cast<unsigned>(i_Days);
}

void CT_Calendar::sv_AddYearWeekday(tm* pso_Time)
{
    const CT_GregorianDate co_Date = co_DateOf<CT_GregorianDate>(pso_Time);
    pso_Time->tm_yday = static_cast<int>(co_Date.i8_DayOfYear());
    if (pso_Time->tm_wday == -1)
        pso_Time->tm_wday = static_cast<int>(co_Date.i8_DayNumber()) % 7;
}

void CT_Calendar::sv_Gregorian2Alternate(tm* pso_Time, et_ID ec_ID)
{
    if (ec_ID == id_Hijri)
        return sv_Gregorian2Hijri(pso_Time);
    if (ec_ID == id_Hebrew)
        return sv_Gregorian2Hebrew(pso_Time);
    for (const et_EraInfo* pcso = saeo_Eras; pcso->eo_Type != ct_None; ++pcso) {
        if (pcso->eo_ID == ec_ID) {
            pso_Time->tm_year = i_Plus(pso_Time->tm_year, -pcso->i_Offset);
            return;
        }
    }
}

void CT_Calendar::sv_Alternate2Gregorian(tm* pso_Time, et_ID ec_ID)
{
    if (ec_ID == id_Hijri)
        return sv_Hijri2Gregorian(pso_Time);
    if (ec_ID == id_Hebrew)
        return sv_Hebrew2Gregorian(pso_Time);
    for (const et_EraInfo* pcso = saeo_Eras; pcso->eo_Type != ct_None; ++pcso) {
        if (pcso->eo_ID == ec_ID) {
            pso_Time->tm_year = i_Plus(pso_Time->tm_year, pcso->i_Offset);
            return;
        }
    }
}

void CT_Calendar::sv_Gregorian2Hijri(tm* pso_Time)
{
    const int i_Day = i_DayNumber<CT_GregorianDate>(pso_Time);
    v_SetDate<CT_HijriDate>(pso_Time, i_Day);
    // Kept: not reduced to a week.
    pso_Time->tm_wday = i_Plus(i_Day, 1);
    pso_Time->tm_yday = i_DaysBehind<CT_HijriDate>(pso_Time->tm_year, i_Day) + 1;
}

void CT_Calendar::sv_Gregorian2Hebrew(tm* pso_Time)
{
    const int i_Day = i_DayNumber<CT_GregorianDate>(pso_Time);
    v_SetDate<CT_HebrewDate>(pso_Time, i_Day);
    pso_Time->tm_wday = i_Day % 7;
    // Kept: counts from Nisan, which isn't the first month of the year.
    pso_Time->tm_yday = i_DaysBehind<CT_HebrewDate>(pso_Time->tm_year, i_Day) + 1;
}

void CT_Calendar::sv_Hijri2Gregorian(tm* pso_Time)
{
    v_ToGregorian<CT_HijriDate>(pso_Time);
}

void CT_Calendar::sv_Hebrew2Gregorian(tm* pso_Time)
{
    v_ToGregorian<CT_HebrewDate>(pso_Time);
}
