// System/Time/DateParser.cpp
#include <System/Time/DateParser.h>

#include <Ostra/Frame/Text.h>
#include <Ostra/Unicode/CharProperties.h>
#include <System/LocaleInfo/LocaleInfo.h>
#include <System/OS/OS.h>
#include <System/String/StringConvert.h>
#include <System/Time/Clock.h>
#include <System/Time/DateToken.h>

#include <windows.h>

#include <climits>
#include <initializer_list>

static constexpr int TM_YEAR = 1900; // the year from which a tm counts

static bool b_IsSpace(unsigned short u_Char)
{
    return u_Char && CT_CharProperties::sb_IsSpace(u_Char);
}

// The length of a text that another one begins with; 0 where it doesn't.
static unsigned n_Agreeing(const unsigned short* qcuz_Text, const unsigned short* qcuz_Begin)
{
    unsigned n = 0;
    for (; qcuz_Begin[n]; ++n) {
        if (qcuz_Text[n] != qcuz_Begin[n])
            return 0;
    }
    return n;
}

int CT_DateParser::b_Parse(tm* pso_Out, const unsigned short* qcuz_NewText,
                           const unsigned short* qcuz_Picture, CT_Calendar::et_ID ec_Calendar)
{
    qcuz_Text = qcuz_NewText;
    v_Reset();
    CT_DateTokens co_Tokens(qcuz_Picture);
    for (st_DateToken so_Token; !b_Error && co_Tokens.b_Next(&so_Token);) {
        if (so_Token.u_Field)
            v_Field(so_Token);
        else
            v_Literal(so_Token);
    }
    if (!b_Error)
        v_Finish(ec_Calendar);
    *pso_Out = so_Date;
    return !b_Error;
}

void CT_DateParser::v_Reset()
{
    const tm so_Now = CT_Clock::sso_Now();
    so_Date = {};
    so_Date.tm_mday = so_Now.tm_mday;
    so_Date.tm_mon = so_Now.tm_mon;
    so_Date.tm_year = so_Now.tm_year + TM_YEAR;
    so_Date.tm_wday = -1;
    so_Date.tm_isdst = -1;
    b_Error = 0;
    i_Era = -1;
    n_HourShift = 0;
    n_YearDigits = 0;
}

// ---- Literals and numbers -----------------------------------------------------------------

void CT_DateParser::v_Literal(const st_DateToken& so_Token)
{
    CT_DateLiteral co_Literal(so_Token);
    while (b_IsSpace(*qcuz_Text) && *qcuz_Text != co_Literal.u_Get())
        ++qcuz_Text;
    for (; co_Literal.u_Get() && *qcuz_Text == co_Literal.u_Get(); co_Literal.v_Next())
        ++qcuz_Text;
    while (b_IsSpace(*qcuz_Text))
        ++qcuz_Text;
}

// A character's value as a digit. A fraction is cut off.
static int i_Value(unsigned short u_Char)
{
    short i_Numerator, i_Denominator;
    CT_CharProperties::sv_NumericValue(u_Char, i_Numerator, i_Denominator);
    return i_Denominator ? i_Numerator / i_Denominator : 0;
}

// Without a digit the number is 0.
void CT_DateParser::v_Number(int* pi_Out, unsigned n_Digits, int i_First, int i_Last)
{
    unsigned n_Length = 0;
    while (n_Length < n_Digits && qcuz_Text[n_Length] &&
           CT_CharProperties::sb_IsNumeric(qcuz_Text[n_Length]))
        ++n_Length;
    int i_Number = 0, i_Place = 1;
    for (unsigned n = n_Length; n > 0; --n, i_Place *= 10)
        i_Number += i_Value(qcuz_Text[n - 1]) * i_Place;
    if (i_Number < i_First || i_Number > i_Last) {
        b_Error = 1;
        return;
    }
    *pi_Out = i_Number;
    qcuz_Text += n_Length;
}

// ---- Names --------------------------------------------------------------------------------

// The kinds of a locale's names, as the fields count them. Days begin with Sunday.
static constexpr unsigned short au_ShortDays[] = {55, 49, 50, 51, 52, 53, 54};
static constexpr unsigned short au_Days[] = {48, 42, 43, 44, 45, 46, 47};
static constexpr unsigned short au_ShortMonths[] = {68, 69, 70, 71, 72, 73,  74,
                                                    75, 76, 77, 78, 79, 4111};
static constexpr unsigned short au_Months[] = {56, 57, 58, 59, 60, 61,  62,
                                               63, 64, 65, 66, 67, 4110};
static constexpr unsigned short au_DayPeriods[] = {40, 41};

// A locale's name of one kind; up to 127 units.
class CT_DateName
{
public:
    explicit CT_DateName(unsigned n_NewLocale)
        : n_Locale(n_NewLocale),
          n_CodePage(CT_LocaleInfo::sn_GetDefaultANSICodePage(n_NewLocale))
    {}

    // The name; empty where the locale has none.
    const unsigned short* qcuz_Get(unsigned n_Type)
    {
        char ac_Name[SIZE];
        au_Name[0] = 0;
        if (CT_LocaleInfo::sb_GetLocaleInfo(n_Locale, static_cast<CT_LocaleInfo::et_Type>(n_Type),
                                            ac_Name, SIZE) &&
            ac_Name[0])
            CT_StringConvert::si_MultiToWide(au_Name, ac_Name, CT_StringConvert::ALL, n_CodePage);
        return au_Name;
    }

private:
    static constexpr unsigned SIZE = 128;

    unsigned n_Locale;
    unsigned n_CodePage;
    unsigned short au_Name[SIZE];
};

static unsigned short u_Folded(unsigned short u_Char)
{
    return u_Char >= 'A' && u_Char <= 'Z' ? static_cast<unsigned short>(u_Char + 32) : u_Char;
}

// The same as n_Agreeing without regard to the case of A to Z, for names of up to 31 units.
static unsigned n_AgreeingFolded(const unsigned short* qcuz_Text, const unsigned short* qcuz_Begin)
{
    unsigned n = 0;
    for (; qcuz_Begin[n]; ++n) {
        if (n == 31 || u_Folded(qcuz_Text[n]) != u_Folded(qcuz_Begin[n]))
            return 0;
    }
    return n;
}

// Kept: the last name that the text begins with, not the longest.
void CT_DateParser::v_Name(int* pi_Out, const unsigned short* pcu_Types, unsigned n_Count,
                           int b_Exact)
{
    CT_DateName co_Name(n_Locale);
    unsigned n_Best = 0;
    for (unsigned n = 0; n < n_Count; ++n) {
        const unsigned short* qcuz_Name = co_Name.qcuz_Get(pcu_Types[n]);
        unsigned n_Length = n_Agreeing(qcuz_Text, qcuz_Name);
        if (!n_Length && !b_Exact)
            n_Length = n_AgreeingFolded(qcuz_Text, qcuz_Name);
        if (n_Length) {
            n_Best = n_Length;
            *pi_Out = static_cast<int>(n);
        }
    }
    if (!n_Best)
        b_Error = 1;
    qcuz_Text += n_Best;
}

// ---- Months in the genitive ---------------------------------------------------------------

// The two forms of a month's name: alone, and beside a day.
class CT_MonthForms
{
public:
    static constexpr int SIZE = 64;

    explicit CT_MonthForms(unsigned n_NewLocale) : n_Locale(n_NewLocale) { GetLocalTime(&so_Date); }

    // Makes both forms of a month, by the wide service or by the one that the road has. A month
    // that has no such day has none.
    void v_Make(unsigned n_Month, int b_Wide)
    {
        so_Date.wMonth = static_cast<WORD>(n_Month);
        v_Print(au_Plain, qcuz_Text(u"MMMM"), b_Wide);
        v_Print(au_WithDay, qcuz_Text(u"dd/MMMM"), b_Wide);
    }
    const unsigned short* qcuz_GetPlain() const { return au_Plain; }
    // What follows the slash.
    const unsigned short* qcuz_GetGenitive() const
    {
        const unsigned short* qcuz = au_WithDay;
        while (*qcuz && *qcuz != '/')
            ++qcuz;
        return *qcuz ? qcuz + 1 : qcuz;
    }

private:
    void v_Print(unsigned short* pu_Out, const unsigned short* qcuz_Picture, int b_Wide) const;

    unsigned n_Locale;
    SYSTEMTIME so_Date; // Kept: of today, whose day may be missing in other months.
    unsigned short au_Plain[SIZE];
    unsigned short au_WithDay[SIZE];
};

void CT_MonthForms::v_Print(unsigned short* pu_Out, const unsigned short* qcuz_Picture,
                            int b_Wide) const
{
    pu_Out[0] = 0;
    if (b_Wide) {
        if (!GetDateFormatW(n_Locale, 0, &so_Date, reinterpret_cast<LPCWSTR>(qcuz_Picture),
                            reinterpret_cast<LPWSTR>(pu_Out), SIZE))
            pu_Out[0] = 0;
        return;
    }
    const unsigned n_CodePage = CT_LocaleInfo::sn_GetDefaultANSICodePage(n_Locale);
    char ac_Picture[SIZE], ac_Text[SIZE];
    CT_StringConvert::si_WideToMulti(ac_Picture, qcuz_Picture, CT_StringConvert::ALL, n_CodePage,
                                     nullptr, nullptr);
    if (GetDateFormatA(n_Locale, 0, &so_Date, ac_Picture, ac_Text, SIZE) && ac_Text[0])
        CT_StringConvert::si_MultiToWide(pu_Out, ac_Text, CT_StringConvert::ALL, n_CodePage);
}

static bool b_AreEqual(const unsigned short* qcuz_First, const unsigned short* qcuz_Second)
{
    while (*qcuz_First && *qcuz_First == *qcuz_Second) {
        ++qcuz_First;
        ++qcuz_Second;
    }
    return *qcuz_First == *qcuz_Second;
}

// A locale tells its genitive by January's name.
int CT_DateParser::b_HasGenitive() const
{
    CT_MonthForms co_Forms(n_Locale);
    co_Forms.v_Make(1, 1);
    CT_DateName co_Name(n_Locale);
    return !b_AreEqual(co_Forms.qcuz_GetPlain(), co_Forms.qcuz_GetGenitive()) ||
           !b_AreEqual(co_Forms.qcuz_GetPlain(), co_Name.qcuz_Get(au_Months[0]));
}

void CT_DateParser::v_GenitiveMonth()
{
    CT_MonthForms co_Forms(n_Locale);
    const int b_Wide = CT_OS::sb_GetIsWindowsNT();
    unsigned n_Best = 0;
    for (unsigned n_Month = 1; n_Month <= 13; ++n_Month) {
        co_Forms.v_Make(n_Month, b_Wide);
        for (const unsigned short* qcuz : {co_Forms.qcuz_GetPlain(), co_Forms.qcuz_GetGenitive()}) {
            const unsigned n_Length = n_Agreeing(qcuz_Text, qcuz);
            if (n_Length > n_Best) {
                n_Best = n_Length;
                so_Date.tm_mon = static_cast<int>(n_Month - 1);
            }
        }
    }
    if (!n_Best)
        b_Error = 1;
    qcuz_Text += n_Best;
}

// ---- Fields -------------------------------------------------------------------------------

void CT_DateParser::v_Field(const st_DateToken& so_Token)
{
    switch (so_Token.u_Field) {
    case 'd':
        return v_Day(so_Token.n_Length);
    case 'M':
        return v_Month(so_Token.n_Length);
    case 'y':
        return v_Year(so_Token.n_Length);
    case 'g':
        return v_Era();
    case 'h':
        // Kept: no 12.
        return v_Number(&so_Date.tm_hour, 2, 0, 11);
    case 'H':
        return v_Number(&so_Date.tm_hour, 2, 0, 23);
    case 'm':
        return v_Number(&so_Date.tm_min, 2, 0, 59);
    case 's':
        return v_Number(&so_Date.tm_sec, 2, 0, 59);
    default:
        return v_DayPeriod();
    }
}

void CT_DateParser::v_Day(unsigned n_Letters)
{
    if (n_Letters <= 2)
        v_Number(&so_Date.tm_mday, 2, 1, 31);
    else
        v_Name(&so_Date.tm_wday, n_Letters == 3 ? au_ShortDays : au_Days, 7, 1);
}

void CT_DateParser::v_Month(unsigned n_Letters)
{
    if (n_Letters == 3)
        v_Name(&so_Date.tm_mon, au_ShortMonths, 13, 1);
    else if (n_Letters == 4 && b_HasGenitive())
        v_GenitiveMonth();
    else if (n_Letters == 4)
        v_Name(&so_Date.tm_mon, au_Months, 13, 1);
    else {
        int i_Month = 0;
        v_Number(&i_Month, 2, 1, 13);
        if (!b_Error)
            so_Date.tm_mon = i_Month - 1;
    }
}

void CT_DateParser::v_Year(unsigned n_Letters)
{
    n_YearDigits = n_Letters <= 2 ? 2 : 4;
    v_Number(&so_Date.tm_year, n_YearDigits, INT_MIN, INT_MAX);
}

void CT_DateParser::v_DayPeriod()
{
    int i_Index = 0;
    v_Name(&i_Index, au_DayPeriods, 2, 0);
    if (!b_Error)
        n_HourShift = static_cast<unsigned>(i_Index) * 12;
}

// Kept: a text without an era is no error.
void CT_DateParser::v_Era()
{
    const CT_Calendar::et_Type ec_Own = CT_Calendar::seo_GetCalendar(n_Locale);
    const CT_Calendar::et_Type ec_Other = CT_Calendar::seo_GetAlternateCalendar(n_Locale);
    for (unsigned n = 0; n < CT_Calendar::sn_GetIDCount(); ++n) {
        const CT_Calendar::et_Type ec_Type = CT_Calendar::seo_GetCalType(n);
        const unsigned n_Length = n_Agreeing(qcuz_Text, CT_Calendar::sqcuz_GetCalEra(n));
        if (n_Length && (ec_Type == ec_Own || ec_Type == ec_Other)) {
            i_Era = CT_Calendar::si_GetCalOffset(n);
            qcuz_Text += n_Length;
            return;
        }
    }
}

// ---- Finish -------------------------------------------------------------------------------

void CT_DateParser::v_Finish(CT_Calendar::et_ID ec_Calendar)
{
    so_Date.tm_hour += static_cast<int>(n_HourShift);
    v_SettleYear(ec_Calendar);
    CT_Calendar::sv_AddYearWeekday(&so_Date);
    // Kept: with an era the day isn't checked, and goes on into the next month.
    if (i_Era == -1)
        b_Error = !CT_Calendar::sb_ValidateTM(&so_Date);
    so_Date.tm_year -= TM_YEAR;
    // Kept: 1901 to 1935 are this century's, and 1900 and 1936 to 1969 are none.
    if (so_Date.tm_year > 0 && so_Date.tm_year < 36)
        so_Date.tm_year += 100;
    else if (so_Date.tm_year < 70)
        b_Error = 1;
    // Daylight time by the rules for 1980, which has both forms.
    tm so_Copy = so_Date;
    so_Copy.tm_year = 80;
    if (CT_Clock::sn_Make(&so_Copy) != CT_Clock::NONE)
        so_Date.tm_isdst = so_Copy.tm_isdst;
}

static int i_FindOffset(CT_Calendar::et_Type ec_Type, int i_Without)
{
    for (unsigned n = 0; n < CT_Calendar::sn_GetIDCount(); ++n) {
        if (CT_Calendar::seo_GetCalType(n) == ec_Type)
            return CT_Calendar::si_GetCalOffset(n);
    }
    return i_Without;
}

static int i_FindOffset(CT_Calendar::et_ID ec_ID, int i_Without)
{
    for (unsigned n = 0; n < CT_Calendar::sn_GetIDCount(); ++n) {
        if (CT_Calendar::seo_GetCalID(n) == ec_ID)
            return CT_Calendar::si_GetCalOffset(n);
    }
    return i_Without;
}

// True if the year may be of either calendar. Kept: the mark of the Hijri calendar is that of no
// era, so that a Hijri date is never closed in favour of its era.
int CT_DateParser::b_ChooseEra(CT_Calendar::et_ID ec_Calendar)
{
    if (ec_Calendar)
        i_Era = i_FindOffset(ec_Calendar, i_Era);
    if (i_Era != -1)
        return 0;
    i_Era = i_FindOffset(CT_Calendar::seo_AlternateCalendar(n_Locale), i_Era);
    return 1;
}

// The present year in the other calendar.
int CT_DateParser::i_AlternateYear(const tm& so_Now) const
{
    if (i_Era != -1 && i_Era != -2)
        return so_Now.tm_year - i_Era;
    tm so_Copy = so_Now;
    CT_Calendar::sv_Gregorian2Alternate(&so_Copy, i_Era == -1 ? CT_Calendar::id_Hijri
                                                              : CT_Calendar::id_Hebrew);
    return so_Copy.tm_year;
}

void CT_DateParser::v_SetAlternateYear(int i_Year)
{
    so_Date.tm_year = i_Year;
    if (i_Era == -1)
        CT_Calendar::sv_Alternate2Gregorian(&so_Date, CT_Calendar::id_Hijri);
    else if (i_Era == -2)
        CT_Calendar::sv_Alternate2Gregorian(&so_Date, CT_Calendar::id_Hebrew);
    else
        so_Date.tm_year += i_Era;
}

// How far a year is from the present one. The future is ten times as far.
static int i_Distance(int i_Year, int i_Present)
{
    return i_Year > i_Present ? (i_Year - i_Present) * 10 : i_Present - i_Year;
}

void CT_DateParser::v_SettleYear(CT_Calendar::et_ID ec_Calendar)
{
    const int i_Year = so_Date.tm_year;
    if (!ec_Calendar && !CT_Calendar::seo_AlternateCalendar(n_Locale)) {
        if (n_YearDigits == 2)
            so_Date.tm_year = i_Year + TM_YEAR;
        return;
    }
    const int b_Open = b_ChooseEra(ec_Calendar);
    tm so_Now = CT_Clock::sso_Now();
    so_Now.tm_year += TM_YEAR;
    const int i_Alternate = i_AlternateYear(so_Now);
    // Kept: a picture without a year, too, adds the centuries, to the present year.
    const bool b_Short = n_YearDigits != 4;
    const int i_Century = b_Short ? so_Now.tm_year / 100 * 100 : 0;
    const int i_AlternateCentury = b_Short ? i_Alternate / 100 * 100 : 0;
    int i_Gregorian = 1, i_Other = 0;
    if (b_Open) {
        i_Gregorian = i_Distance(i_Year + i_Century, so_Now.tm_year);
        i_Other = i_Distance(i_Year + i_AlternateCentury, i_Alternate);
    }
    if (i_Gregorian > 1.1 * i_Other)
        v_SetAlternateYear(i_Year + i_AlternateCentury);
    else
        so_Date.tm_year = i_Year + i_Century;
}
