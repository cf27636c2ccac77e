// System/Time/TimeText.cpp: CT_Time as text.
#include <Ostra/Frame/Report.h>
#include <Ostra/Frame/Text.h>
#include <Ostra/String/CString.h>
#include <Ostra/String/StringScanner.h>
#include <Ostra/String/UString.h>
#include <Ostra/Unicode/CharProperties.h>
#include <System/LocaleInfo/LocaleInfo.h>
#include <System/OS/OS.h>
#include <System/Time/Clock.h>
#include <System/Time/DateParser.h>
#include <System/Time/Time.h>

#include <windows.h>

static constexpr char qccz_Source[] = "System/Time/Time";

static constexpr unsigned ALL = CT_String::ALL;
static constexpr int TEXT_SIZE = 256; // of a text with its terminator

// ---- Printing -----------------------------------------------------------------------------

// What prints a date, and what prints a time.
struct st_DatePrinter
{
    static constexpr auto WIDE = GetDateFormatW;
    static constexpr auto NARROW = GetDateFormatA;
};
struct st_TimePrinter
{
    static constexpr auto WIDE = GetTimeFormatW;
    static constexpr auto NARROW = GetTimeFormatA;
};

// Prints by the wide service. A null picture is the locale's own.
template <typename t_Printer>
static void v_PrintWide(CT_String* pco_Out, const SYSTEMTIME* pcso_System,
                        const CT_String* pcco_Picture, unsigned n_Locale, unsigned n_Flags)
{
    CT_Report::CT_Since co_Since;
    CT_UString co_Picture;
    if (pcco_Picture)
        co_Picture.v_Set(pcco_Picture);
    if (co_Since.b_Failed(qccz_Source))
        return;
    unsigned short au_Text[TEXT_SIZE];
    const unsigned short* qcuz_Picture = pcco_Picture ? co_Picture.qcuz_Get() : nullptr;
    if (t_Printer::WIDE(n_Locale, n_Flags, pcso_System, reinterpret_cast<LPCWSTR>(qcuz_Picture),
                        reinterpret_cast<LPWSTR>(au_Text), TEXT_SIZE))
        pco_Out->v_Set(au_Text, ALL);
    else
        CT_Report::sv_System(qccz_Source);
}

template <typename t_Printer>
static void v_PrintNarrow(CT_String* pco_Out, const SYSTEMTIME* pcso_System,
                          const CT_String* pcco_Picture, unsigned n_Locale, unsigned n_Flags)
{
    const unsigned n_CodePage = CT_LocaleInfo::sn_GetDefaultANSICodePage(n_Locale);
    CT_Report::CT_Since co_Since;
    CT_CString co_Picture(n_CodePage);
    if (pcco_Picture)
        co_Picture.v_Set(pcco_Picture);
    if (co_Since.b_Failed(qccz_Source))
        return;
    char ac_Text[TEXT_SIZE];
    const char* qccz_Picture = pcco_Picture ? co_Picture.qccz_Get() : nullptr;
    if (t_Printer::NARROW(n_Locale, n_Flags, pcso_System, qccz_Picture, ac_Text, TEXT_SIZE))
        pco_Out->v_Set(ac_Text, ALL, n_CodePage);
    else
        CT_Report::sv_System(qccz_Source);
}

template <typename t_Printer>
static void v_Print(CT_String* pco_Out, unsigned long long n8_Moment, const CT_String* pcco_Picture,
                    unsigned n_Locale, unsigned n_Flags)
{
    SYSTEMTIME so_System;
    CT_Time::sv_Convert(&so_System, n8_Moment);
    if (!n_Locale)
        n_Locale = GetThreadLocale();
    if (!CT_OS::sb_GetIsWindows95() && !pco_Out->vpv_IsA(CT_CString::spcco_GetType()))
        v_PrintWide<t_Printer>(pco_Out, &so_System, pcco_Picture, n_Locale, n_Flags);
    else
        v_PrintNarrow<t_Printer>(pco_Out, &so_System, pcco_Picture, n_Locale, n_Flags);
}

void CT_Time::v_GetDate(CT_String* pco_Out, unsigned int n_Locale, et_DateFlags ec_Flags) const
{
    v_Print<st_DatePrinter>(pco_Out, n8_Abs, nullptr, n_Locale, ec_Flags);
}

void CT_Time::v_GetDate(CT_String* pco_Out, const CT_String* pcco_Picture, unsigned int n_Locale,
                        et_DateFlags ec_Flags) const
{
    v_Print<st_DatePrinter>(pco_Out, n8_Abs, pcco_Picture, n_Locale, ec_Flags);
}

void CT_Time::v_GetTime(CT_String* pco_Out, unsigned int n_Locale, et_TimeFlags ec_Flags) const
{
    v_Print<st_TimePrinter>(pco_Out, n8_Abs, nullptr, n_Locale, ec_Flags);
}

void CT_Time::v_GetTime(CT_String* pco_Out, const CT_String* pcco_Picture,
                        unsigned int n_Locale) const
{
    v_Print<st_TimePrinter>(pco_Out, n8_Abs, pcco_Picture, n_Locale, 0);
}

void CT_Time::sv_Format(CT_String* pco_Out, unsigned int n_Moment, const char* qccz_Separator,
                        et_TimeFlags ec_Flags)
{
    if (!n_Moment) {
        pco_Out->v_Set(0u, 1);
        return;
    }
    const CT_Time co_Time(n_Moment);
    co_Time.v_GetDate(pco_Out, 0, df_Default);
    if (!qccz_Separator)
        return;
    CT_UString co_Text;
    co_Time.v_GetTime(&co_Text, 0, ec_Flags);
    pco_Out->v_Append(qccz_Separator);
    pco_Out->v_Append(&co_Text);
}

static int b_GetShortPicture(CT_String* pco_Out)
{
    return CT_LocaleInfo::sb_GetLocaleInfo(GetThreadLocale(), CT_LocaleInfo::lt_ShortDate, pco_Out);
}

void CT_Time::sv_GetInputMask(CT_String* pco_Out)
{
    CT_Report::CT_Since co_Since;
    if (!b_GetShortPicture(pco_Out))
        pco_Out->v_Set(0u, 1);
    if (co_Since.b_Failed(qccz_Source))
        return;
    // Kept: with two colons.
    pco_Out->v_Append("[[,] HH::mm[:ss]]");
}

// ---- Reading ------------------------------------------------------------------------------

int CT_Time::b_Set(const CT_String* pcco_Text, const CT_String* pcco_Picture, unsigned int n_Locale,
                   CT_Calendar::et_ID ec_Calendar)
{
    CT_Report::CT_Since co_Since;
    const CT_UString co_Text(pcco_Text), co_Picture(pcco_Picture);
    if (co_Since.b_Failed(qccz_Source))
        return 0;
    tm so_Date;
    CT_DateParser co_Parser(n_Locale);
    if (!co_Parser.b_Parse(&so_Date, co_Text.qcuz_Get(), co_Picture.qcuz_Get(), ec_Calendar))
        return 0;
    const unsigned n_Moment = CT_Clock::sn_Make(&so_Date);
    n8_Abs = sn8_Date2Abs(&so_Date);
    // Kept: the two forms part where the date has no 32-bit form.
    if (n_Moment == CT_Clock::NONE)
        return 0;
    n_Time = n_Moment;
    return 1;
}

// Adds the fields of a time to a picture: the first number is the hour, the next the minute, the
// third the second, and what stands between them is as it is. Kept: behind each sign that isn't
// part of a number the field before it stands, also where there is no number in between.
static void v_AddTimePicture(CT_UString* pco_Picture, const unsigned short* qcuz_Time)
{
    static constexpr char qccz_Fields[] = "Hms";
    unsigned n_Digits = 0, n_Numbers = 0;
    for (const unsigned short* pcu = qcuz_Time;; ++pcu) {
        if (*pcu && CT_CharProperties::sb_IsNumeric(*pcu)) {
            ++n_Digits;
            continue;
        }
        n_Numbers += n_Digits > 0;
        if (n_Numbers >= 1 && n_Numbers <= 3) {
            const unsigned short u_Field = static_cast<unsigned char>(qccz_Fields[n_Numbers - 1]);
            pco_Picture->v_Append(u_Field);
            if (n_Digits != 1)
                pco_Picture->v_Append(u_Field);
        }
        if (!*pcu)
            return;
        pco_Picture->v_Append(*pcu);
        n_Digits = 0;
    }
}

int CT_Time::b_Set(const CT_String* pcco_Text, CT_Calendar::et_ID ec_Calendar)
{
    CT_Report::CT_Since co_Since;
    const CT_UString co_Text(pcco_Text);
    CT_UString co_Date, co_Time, co_Picture;
    CT_StringScanner co_Scanner;
    co_Scanner.v_Item(&co_Date, &co_Text, 0x20, 1);
    co_Scanner.v_Item(&co_Time, &co_Text, 0x20, 2);
    if (co_Since.b_Failed(qccz_Source))
        return 0;
    const unsigned n_Length = co_Date.vn_GetLength();
    if (!n_Length)
        return 0;
    if (!CT_CharProperties::sb_IsNumeric(co_Date.u_GetAt(n_Length - 1)))
        co_Date.vv_Remove(1, n_Length - 1);
    b_GetShortPicture(&co_Picture);
    co_Picture.v_Append(u' ');
    v_AddTimePicture(&co_Picture, co_Time.qcuz_Get());
    co_Date.v_Append(u' ');
    co_Date.v_Append(&co_Time);
    if (co_Since.b_Failed(qccz_Source))
        return 0;
    return b_Set(&co_Date, &co_Picture, 0, ec_Calendar);
}
