// System/LocaleInfo/FormatString.cpp
#include <System/LocaleInfo/FormatString.h>

#include <Ostra/Frame/Counts.h>
#include <Ostra/String/String.h>
#include <System/LocaleInfo/LocaleInfo.h>

#include <windows.h>

#include <algorithm>
#include <charconv>

static constexpr unsigned ROOM = 64; // of numbers as text, before and behind the formatter

// A separator: one character of a code page.
struct st_Separator
{
    char acz_Text[2];
};

// The locale's, if it is one byte, or else the one given: a number without a decimal separator
// would be another number.
static st_Separator so_GetSeparator(unsigned n_Locale, CT_LocaleInfo::et_Type ec_Type,
                                    char c_Otherwise)
{
    st_Separator so_Separator = {};
    if (!CT_LocaleInfo::sb_GetLocaleInfo(n_Locale, ec_Type, so_Separator.acz_Text,
                                         sizeof(so_Separator.acz_Text)))
        so_Separator = {{c_Otherwise, 0}};
    return so_Separator;
}

int CT_FormatString::sb_FormatNumber(CT_String* pco_Out, unsigned n_Number, unsigned n_Locale,
                                     unsigned n_Digits, unsigned n_Grouping)
{
    char acz_Number[ROOM] = {};
    std::to_chars(acz_Number, acz_Number + ROOM - 1, n_Number);
    return sb_FormatText(pco_Out, acz_Number, n_Locale, n_Digits, n_Grouping);
}

int CT_FormatString::sb_FormatNumber(CT_String* pco_Out, float f_Number, unsigned n_Locale,
                                     unsigned n_Digits, unsigned n_Grouping)
{
    // As "%f" writes it with a point, which a program's own locale can't change.
    char acz_Number[ROOM] = {};
    std::to_chars(acz_Number, acz_Number + ROOM - 1, double{f_Number}, std::chars_format::fixed, 6);
    return sb_FormatText(pco_Out, acz_Number, n_Locale, n_Digits, n_Grouping);
}

int CT_FormatString::sb_FormatText(CT_String* pco_Out, const char* qccz_Number, unsigned n_Locale,
                                   unsigned n_Digits, unsigned n_Grouping)
{
    if (!n_Locale)
        n_Locale = GetThreadLocale();
    unsigned n_LeadingZero = 0;
    if (!CT_LocaleInfo::sb_GetLocaleInfo(n_Locale, CT_LocaleInfo::lt_LeadingZero, &n_LeadingZero))
        return 0;
    unsigned n_NegativeOrder = 1; // -1
    CT_LocaleInfo::sb_GetLocaleInfo(n_Locale, CT_LocaleInfo::lt_NegativeNumber, &n_NegativeOrder);
    st_Separator so_Decimal = so_GetSeparator(n_Locale, CT_LocaleInfo::lt_Decimal, '.');
    st_Separator so_Thousand = so_GetSeparator(n_Locale, CT_LocaleInfo::lt_Thousand, 0);
    // More decimals than there is room for fail all the same, and may be too many for the system.
    const NUMBERFMTA so_Format = {std::min(n_Digits, ROOM), n_LeadingZero,        n_Grouping,
                                  so_Decimal.acz_Text,      so_Thousand.acz_Text, n_NegativeOrder};

    // Kept: the formatter works for the user's locale, not for the one asked for, and what it can't
    // write is an empty text with a result of 1.
    char acz_Text[ROOM + 1] = {};
    GetNumberFormatA(LOCALE_USER_DEFAULT, 0, qccz_Number, &so_Format, acz_Text, ROOM);
    pco_Out->v_Set(acz_Text, ALL, OWN_CODE_PAGE);
    return 1;
}
