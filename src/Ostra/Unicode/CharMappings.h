// Ostra/Unicode/CharMappings.h: what a UTF-16 unit becomes.
#pragma once

#include <Ostra/Frame/Export.h>

class CT_UString;

// Mappings of one unit to another by the repertoire of Unicode 2.0: case, base letter, digits,
// compatibility zone, kana; and the canonical decomposition.
//
// A character without a row in a table maps to itself. The form for a string maps it in place,
// unit by unit along its length. A high surrogate and the unit behind it stay what they are; a low
// surrogate by itself is a unit like any other. A string in which nothing changes isn't touched and
// goes on sharing its block.
//
// Owns:    constant tables.
// Reports: nothing of its own; strings report 60006 when the heap is exhausted.
// Caller:  hands no null for a string, but to sn_Decompose.
// Threads: any number; a string belongs to one thread at a time.
class OSTRA_API CT_CharMappings
{
public:
    // ---- Characters --------------------------------------------------------------------------

    // The case pairs are one to one, and the two tables inverses of each other: a letter that
    // doesn't come back to itself stays, as U+00DF and U+0131 do.
    static unsigned short su_ToUpper(unsigned short u_Char);
    static unsigned short su_ToLower(unsigned short u_Char);
    // The first character of the decomposition.
    static unsigned short su_ToBase(unsigned short u_Char);
    // 0 to 9 for what looks like a digit; the fullwidth digits stay.
    static unsigned short su_FoldDigit(unsigned short u_Char);
    // The plain form of a compatibility form between U+FE30 and U+FFEE.
    static unsigned short su_FoldCZone(unsigned short u_Char);
    // Both widen ASCII and the halfwidth forms as well.
    static unsigned short su_HiraganaToKatakana(unsigned short u_Char);
    static unsigned short su_KatakanaToHiragana(unsigned short u_Char);

    // ---- Strings -----------------------------------------------------------------------------

    static void sv_ToUpper(CT_UString* pco_Text);
    static void sv_ToLower(CT_UString* pco_Text);
    static void sv_ToBase(CT_UString* pco_Text);
    static void sv_FoldDigit(CT_UString* pco_Text);
    static void sv_FoldCZone(CT_UString* pco_Text);
    static void sv_HiraganaToKatakana(CT_UString* pco_Text);
    static void sv_KatakanaToHiragana(CT_UString* pco_Text);

    // ---- Decomposition -----------------------------------------------------------------------

    // Sets the result, if there is one, to the decomposition, and returns its length. 1 for a
    // character without one; the result then stays as it is.
    static unsigned int sn_Decompose(unsigned short u_Char, CT_UString* pco_Result);
    // Kept: a character without a decomposition adds once more what the last one with a
    // decomposition has added, and nothing where there was none before: a, U+00C9, b gives U+0045
    // U+0301 U+0045 U+0301.
    static void sv_Decompose(const CT_UString* pcco_Source, CT_UString* pco_Result);
    static void sv_Decompose(CT_UString* pco_Text);

private:
    static void sv_MapString(CT_UString* pco_Text, unsigned short (*u_Map)(unsigned short));
};
