// Ostra/String/StringTools.h: search by sets, replacement, fixed-point numbers.
#pragma once

#include <Ostra/Frame/Export.h>

class CT_String;
class CT_UString;

// Ready-made work on strings.
//
// Reports: 60006 when the heap is exhausted; the string then stays.
// Threads: any number; a string belongs to one thread at a time.
class OSTRA_API CT_StringTools
{
public:
    // The first position whose unit is in the set, going from n_From on to the end (i_Step 1) or
    // back to the start (-1); -1 for none, and from the end on. The terminator, from which a walk
    // back may begin, is in no set.
    static unsigned sn_FindAny(const unsigned short* qcuz_Set, const CT_UString* pcco_In,
                               unsigned n_From, int i_Step);
    // The same for a unit that isn't in the set.
    static unsigned sn_FindNot(const unsigned short* qcuz_Set, const CT_UString* pcco_In,
                               unsigned n_From, int i_Step);

    // Replaces the first occurrence, and gives its position; -1 where the text doesn't occur, and
    // the string then stays as it is.
    // Kept: at the very start of the string nothing is replaced.
    static unsigned sn_Replace(CT_String* pco_String, const CT_String* pcco_Find,
                               const CT_String* pcco_With);

    // Sets the string to a signed number with n_Decimals of its digits behind the decimal
    // character, as in "-1,234.56"; c_Thousands of 0 groups no digits. n_Width pads on the left
    // with blanks and cuts there what doesn't fit; -1 pads nothing and has room for 16 characters.
    // Kept: the sign takes the place of a digit among decimals: -5 with 2 of them is "0.-5".
    static void sv_FormatNumber(CT_String* pco_Out, unsigned n_Number, unsigned n_Width,
                                char c_Thousands, char c_Decimal, unsigned n_Decimals);

private:
    static void sv_CheckOffset(const CT_UString* pcco_In, unsigned n_From, int i_Step,
                               unsigned* pn_End);
};
