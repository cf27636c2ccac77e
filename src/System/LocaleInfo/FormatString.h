// System/LocaleInfo/FormatString.h: numbers as a locale writes them.
#pragma once

#include <Ostra/Frame/Export.h>

class CT_String;

// Sets a string to a number with a locale's separators.
//
// Units:   n_Digits is the number of decimals; n_Grouping the sizes of the groups before them as
//          decimal digits, 3 for 1,234,567 and 32 for 12,34,567. A locale of 0 is the thread's.
// Reports: nothing of its own; 60006 comes from the string when the heap is exhausted.
// Caller:  can't tell by the result that the system refused the number: the string is then empty.
//          It does so for infinities, what is no number, and texts of 64 bytes and more.
// Threads: any number; a string belongs to one thread at a time.
class OSTRA_API CT_FormatString
{
public:
    // 0 for a locale that the system doesn't have; the string then stays.
    // Kept: the separators are bytes of the locale's code page, and are read in the string's.
    static int sb_FormatNumber(CT_String* pco_Out, unsigned n_Number, unsigned n_Locale,
                               unsigned n_Digits, unsigned n_Grouping);
    static int sb_FormatNumber(CT_String* pco_Out, float f_Number, unsigned n_Locale,
                               unsigned n_Digits, unsigned n_Grouping);

private:
    static int sb_FormatText(CT_String* pco_Out, const char* qccz_Number, unsigned n_Locale,
                             unsigned n_Digits, unsigned n_Grouping);
};
