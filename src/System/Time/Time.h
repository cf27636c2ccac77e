// System/Time/Time.h: a moment, as a number and as text.
#pragma once

#include <Ostra/Frame/Export.h>
#include <Ostra/Frame/Platform.h>
#include <System/Time/Calendar.h>

#include <ctime>

class CT_String;

// One moment in two forms: seconds since 1970 in 32 bits, and seconds since year 1 in 64 bits. It
// is converted from and to the C library's `tm` and the platform's _SYSTEMTIME, printed as locales
// print dates and times, and read from text.
//
// Units:   the 32-bit form counts from 1 January 1970 00:00:00 UTC up to 19 January 2038; values
//          from 0x80000000 up are taken for negative ones, whose 64-bit form is 0, and a moment
//          beyond the range is 0xFFFFFFFF. The 64-bit form counts from 1 January of year 1
//          00:00:00, proleptic Gregorian, UTC by the standard time of the zone. Dates are in the
//          zone's time, in daylight time where that is in force.
//          A locale of 0 is the thread's; b_Set with a picture knows no names of it.
// Owns:    the `tm` that spso_Abs2Date gives, one for the whole process.
// Reports: the system's last error where a date or time can't be printed; the string stays then.
//          Text that can't be read is no error: b_Set tells.
// Threads: one thread at a time in the whole process.
class OSTRA_API CT_Time
{
public:
    // The platform's numbers.
    enum et_DateFlags : unsigned
    {
        df_Default = 0,
        df_ShortDate = 1,
        df_LongDate = 2,
        df_AltCalendar = 4
    };
    enum et_TimeFlags : unsigned
    {
        tf_Default = 0,
        tf_NoMinutesOrSeconds = 1,
        tf_NoSeconds = 2,
        tf_NoTimeMarker = 4,
        tf_Force24HourFormat = 8
    };

    // ---- Construction -----------------------------------------------------------------------

    // 1 January 1997 00:00:00 in the zone's time.
    CT_Time() { v_Init(); }
    // A moment in 32 and in 64 bits.
    CT_Time(unsigned int n_NewTime) { v_Init(n_NewTime); }
    CT_Time(unsigned long long n8_NewAbs) { v_Init(n8_NewAbs); }

    // Like the constructors.
    void v_Set(unsigned int n_NewTime) { v_Init(n_NewTime); }
    void v_Set(unsigned long long n8_NewAbs) { v_Init(n8_NewAbs); }
    // Now.
    void v_SetTime();
    // Changes fields of the date and time; 0xFFFFFFFF keeps one. Years below 36 are of this
    // century, those below 100 of the last one. A moment without a date (from 0x80000000 up) stays
    // as it is. Kept: the date becomes the day before the one that is given.
    void v_Set(unsigned int n_Year, unsigned int n_Month, unsigned int n_Day, unsigned int n_Hour,
               unsigned int n_Minute, unsigned int n_Second);
    void v_SetDate(unsigned int n_Year, unsigned int n_Month, unsigned int n_Day);
    void v_SetTime(unsigned int n_Hour, unsigned int n_Minute, unsigned int n_Second);

    // ---- Access -----------------------------------------------------------------------------

    unsigned int n_Get() const { return n_Time; }
    unsigned long long n8_Get() const { return n8_Abs; }

    // ---- Text -------------------------------------------------------------------------------

    // Date and time in the locale's format, or after a picture, in up to 255 characters. A string
    // of bytes gets the locale's code page. An empty picture gives an empty text.
    void v_GetDate(CT_String* pco_Out, unsigned int n_Locale, et_DateFlags ec_Flags) const;
    void v_GetDate(CT_String* pco_Out, const CT_String* pcco_Picture, unsigned int n_Locale,
                   et_DateFlags ec_Flags) const;
    void v_GetTime(CT_String* pco_Out, unsigned int n_Locale, et_TimeFlags ec_Flags) const;
    void v_GetTime(CT_String* pco_Out, const CT_String* pcco_Picture, unsigned int n_Locale) const;

    // Date, separator and time of a 32-bit form; the date alone without a separator, an empty text
    // for 0.
    static void sv_Format(CT_String* pco_Out, unsigned int n_Moment, const char* qccz_Separator,
                          et_TimeFlags ec_Flags);
    // What a user is shown who is to type a date and time.
    static void sv_GetInputMask(CT_String* pco_Out);

    // Reads a date and time after a picture, with the names of the locale. A year may be one of the
    // calendar given; without one (0) it is one of the locale's other calendar where that makes it
    // nearer to the present. 1, or 0 for a text that doesn't fit; years are 1970 to 2038.
    int b_Set(const CT_String* pcco_Text, const CT_String* pcco_Picture, unsigned int n_Locale,
              CT_Calendar::et_ID ec_Calendar);
    // Reads a date after the short picture of the thread's locale; behind a blank there may be a
    // time.
    int b_Set(const CT_String* pcco_Text, CT_Calendar::et_ID ec_Calendar);

    // ---- Static services --------------------------------------------------------------------

    // Now.
    static unsigned int sn_GetTime();
    static unsigned long long sn8_GetTime();

    // From one form to the other.
    static unsigned long long sn8_Convert(unsigned int n_Moment);
    static unsigned int sn_Convert(unsigned long long n8_Moment);
    // From and to the platform's structure. Kept: whether the date is meant in daylight time, the
    // 32-bit form takes from the present moment.
    static unsigned int sn_Convert(const _SYSTEMTIME* pcso_System);
    static unsigned long long sn8_Convert(const _SYSTEMTIME* pcso_System);
    // A moment without a date gives zeros.
    static void sv_Convert(_SYSTEMTIME* pso_System, LONG i4_Moment);
    static void sv_Convert(_SYSTEMTIME* pso_System, unsigned long long n8_Moment);

    // From and to the C library's structure. Null is 0.
    static unsigned long long sn8_Date2Abs(tm* pso_Date);
    // The process's one structure, which the next call overwrites. Kept: tm_isdst is that of the
    // present moment.
    static tm* spso_Abs2Date(unsigned long long n8_Moment);
    // What daylight time adds, in seconds, by the zone's rules for 1980. Kept: always 0 in a zone
    // whose standard time didn't change in that year.
    static unsigned int n_GetDST(tm* pso_Date);

private:
    void v_Init();
    void v_Init(unsigned int n_NewTime);
    void v_Init(unsigned long long n8_NewAbs);
    static void sv_Convert(_SYSTEMTIME* pso_System, const tm* pcso_Date);
    static void sv_Convert(tm* pso_Date, const _SYSTEMTIME* pcso_System);

    // The order of the members is part of the interface.
    unsigned int n_Time;       // the 32-bit form
    unsigned long long n8_Abs; // the 64-bit form
};
