// System/Time/Calendar.h: the calendars of locales, and dates from one to the other.
#pragma once

#include <Ostra/Frame/Export.h>

#include <ctime>

class CT_CString;

// The calendars and eras that locales name, which of them a locale uses, and conversion between the
// Gregorian calendar and the others. Most of them count years from another year; the Hijri calendar
// (by its tables) and the Hebrew one have years, months and days of their own.
//
// Units:   a day number counts from 1 January of year 1, proleptic Gregorian, which is day 1. In a
//          `tm` given to this class tm_year is the whole year, not what is above 1900. tm_mon
//          counts from 0 in all calendars; Hebrew months count from Nisan. Rows count from 0.
// Owns:    the table of eras; the buffer that holds the name of a calendar for a moment.
// Reports: nothing. Where a locale doesn't tell its calendar, that is 0.
// Caller:  keeps rows below the count, and years so that days fit into 32 bits. Nothing checks that
//          a calendar has a date: what is beyond a month or a year counts on from its beginning.
// Threads: any number; names of calendars on one thread at a time.
class OSTRA_API CT_Calendar
{
public:
    // A row of the table; those up to 8 are the platform's numbers of calendars.
    enum et_ID : int
    {
        id_None = 0,
        id_Gregorian = 1,
        id_GregorianUS = 2,
        id_Japan = 3, // the newest era, Heisei
        id_Taiwan = 4,
        id_Korea = 5,
        id_Hijri = 6,
        id_Thai = 7,
        id_Hebrew = 8,
        id_JapanShowa = 301,
        id_JapanTaisho = 302,
        id_JapanMeiji = 303
    };

    // The calendar that a row belongs to. A locale may have one that no row belongs to.
    enum et_Type : int
    {
        ct_None = 0,
        ct_Gregorian = 1,
        ct_GregorianUS = 2,
        ct_Japan = 3,
        ct_Taiwan = 4,
        ct_Korea = 5,
        ct_Hijri = 6,
        ct_Thai = 7,
        ct_Hebrew = 8
    };

    // ---- Table of eras ------------------------------------------------------------------------

    static unsigned int sn_GetIDCount();
    static et_ID seo_GetCalID(unsigned int n_Row);
    static et_Type seo_GetCalType(unsigned int n_Row);
    // What the Gregorian year is above the year of the era; -1 for the Hijri calendar and -2 for
    // the Hebrew one, which have no such number.
    static int si_GetCalOffset(unsigned int n_Row);
    // The era's text; a literal.
    static const unsigned short* sqcuz_GetCalEra(unsigned int n_Row);

    // ---- Calendars of locales -------------------------------------------------------------------

    // The locale's own calendar, and the one that it offers beside; 0 if that can't be found out.
    static et_Type seo_GetCalendar(unsigned int n_Locale);
    static et_Type seo_GetAlternateCalendar(unsigned int n_Locale);
    // The calendar that the locale uses beside or instead of the Gregorian one: its own if that
    // isn't Gregorian, else the one that it offers, else the Hebrew one for Hebrew; 0 for none.
    static et_Type seo_AlternateCalendar(unsigned int n_Locale);
    // The name of the locale's calendar, in its code page. Kept: 1 in any case; a calendar that the
    // system has no name for gives the name of the call before.
    static int sb_GetCalendarName(unsigned int n_Locale, CT_CString* pco_Out);
    // The same for seo_AlternateCalendar; 0, and nothing done, if there is none or it is the
    // locale's own.
    static int sb_GetAlternateCalendarName(unsigned int n_Locale, CT_CString* pco_Out);
    // Sets the text that the next name is taken from; up to 255 bytes.
    static void sv_SetEnumInfo(const char* qccz_Text);

    // ---- Dates ----------------------------------------------------------------------------------

    // 1 if the Gregorian month has the day. Kept: day 0 is had by every month but the thirteenth.
    static int sb_ValidateTM(tm* pso_Time);
    // Sets the day of the year of a Gregorian date, and the day of the week if that is -1.
    static void sv_AddYearWeekday(tm* pso_Time);
    // From a Gregorian date to one of the row's calendar, and back; nothing where no row has the
    // id. Only Hijri and Hebrew dates have other months, days, and days of the year and the week.
    // A day before the first Hijri one has year, month and day 0.
    //
    // Kept: tm_wday of a Hijri date is its day number plus 1. tm_yday counts from 1, in Hebrew
    // dates from Nisan 1 of the year, which comes after Tishri: 0 and less up to then.
    static void sv_Gregorian2Alternate(tm* pso_Time, et_ID ec_ID);
    static void sv_Alternate2Gregorian(tm* pso_Time, et_ID ec_ID);

private:
    struct st_EraInfo
    {
        et_ID eo_ID;                    // the row's own id
        et_Type eo_Type;                // 0 ends the table
        int i_Offset;                   // Gregorian year less the era's, or a mark below 0
        const unsigned short* qcuz_Era; // as dates are written with it
    };
    using et_EraInfo = st_EraInfo;

    static void sv_FindName(unsigned n_Locale, et_Type ec_Type, CT_CString* pco_Out);
    static void sv_Gregorian2Hijri(tm* pso_Time);
    static void sv_Hijri2Gregorian(tm* pso_Time);
    static void sv_Gregorian2Hebrew(tm* pso_Time);
    static void sv_Hebrew2Gregorian(tm* pso_Time);

    static const et_EraInfo saeo_Eras[12];
    static char sacz_EnumInfo[256];
};
