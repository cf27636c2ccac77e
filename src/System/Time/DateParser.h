// System/Time/DateParser.h: reads a date and time after a picture. Internal.
//
// A picture is one of the platform's kind: runs of the letters "dMyghHmst" are fields, text in
// single quotes and everything else is literal.
#pragma once

#include <System/Time/Calendar.h>

#include <ctime>

struct st_DateToken;

// One reading of one text.
//
// Numbers may have digits of any script, names are those of the locale. Literals never fail: as
// much of them as is there is passed over, and white space around them. What follows behind the
// last field isn't looked at.
class CT_DateParser
{
public:
    explicit CT_DateParser(unsigned n_NewLocale)
        : n_Locale(n_NewLocale),
          b_Error(0),
          i_Era(-1),
          n_HourShift(0),
          n_YearDigits(0),
          so_Date(),
          qcuz_Text(nullptr)
    {}

    // 1, and the date with tm_year counted from 1900; or 0.
    int b_Parse(tm* pso_Out, const unsigned short* qcuz_NewText, const unsigned short* qcuz_Picture,
                CT_Calendar::et_ID ec_Calendar);

private:
    void v_Reset();
    void v_Literal(const st_DateToken& so_Token);
    void v_Field(const st_DateToken& so_Token);
    void v_Number(int* pi_Out, unsigned n_Digits, int i_First, int i_Last);
    void v_Day(unsigned n_Letters);
    void v_Month(unsigned n_Letters);
    void v_Year(unsigned n_Letters);
    void v_DayPeriod();
    void v_Era();
    void v_Name(int* pi_Out, const unsigned short* pcu_Types, unsigned n_Count, int b_Exact);
    int b_HasGenitive() const;
    void v_GenitiveMonth();
    void v_Finish(CT_Calendar::et_ID ec_Calendar);
    void v_SettleYear(CT_Calendar::et_ID ec_Calendar);
    int b_ChooseEra(CT_Calendar::et_ID ec_Calendar);
    int i_AlternateYear(const tm& so_Now) const;
    void v_SetAlternateYear(int i_Year);

    // The order of the first five is told.
    unsigned n_Locale;               // whose names are looked up
    int b_Error;                     // 1 from the first failure on
    int i_Era;                       // the offset chosen; -1 is none, and the Hijri calendar's mark
    unsigned n_HourShift;            // 12 behind the name of the second half of the day
    unsigned n_YearDigits;           // 2 or 4; 0 without a year
    tm so_Date;                      // tm_year is the whole year up to the finish
    const unsigned short* qcuz_Text; // what is still to be read
};
