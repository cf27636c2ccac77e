// Ostra/Unicode/CharPropertiesSets.cpp: the queries of CT_CharProperties by sets of characters.
#include <Ostra/Unicode/CharProperties.h>

// True for a character of the set. A list at compile time becomes comparisons of ranges and bits,
// without a table.
template <unsigned short... u_Members>
static int b_OneOf(unsigned short u)
{
    return ((u == u_Members) || ...);
}

int CT_CharProperties::sb_IsApostrophe(unsigned short u_Char)
{
    return b_OneOf<0x0027, 0x02BC, 0x055A, 0xFF07>(u_Char);
}

int CT_CharProperties::sb_IsColon(unsigned short u_Char)
{
    return b_OneOf<0x003A, 0x02D0, 0x02D1, 0x061B, 0xFE55, 0xFF1A>(u_Char);
}

int CT_CharProperties::sb_IsComma(unsigned short u_Char)
{
    return b_OneOf<0x002C, 0x055D, 0x060C, 0x201A, 0x3001, 0xFE50, 0xFE51, 0xFF0C, 0xFF64>(u_Char);
}

int CT_CharProperties::sb_IsDot(unsigned short u_Char)
{
    return b_OneOf<0x002E, 0x00B7, 0x0589, 0x06D4, 0x3002, 0xFE52, 0xFF0E, 0xFF61>(u_Char);
}

int CT_CharProperties::sb_IsExclamation(unsigned short u_Char)
{
    return b_OneOf<0x0021, 0x00A1, 0x055C, 0x203C, 0x2762, 0x2763, 0xFE57, 0xFF01>(u_Char);
}

int CT_CharProperties::sb_IsHyphen(unsigned short u_Char)
{
    return b_OneOf<0x002D, 0x00AD, 0x2010, 0x2011, 0xFE63, 0xFF0D>(u_Char);
}

int CT_CharProperties::sb_IsQuestion(unsigned short u_Char)
{
    return b_OneOf<0x003F, 0x00BF, 0x037E, 0x055E, 0x061F, 0xFE56, 0xFF1F>(u_Char);
}

int CT_CharProperties::sb_IsSemicolon(unsigned short u_Char)
{
    return b_OneOf<0x003B, 0x061B, 0xFE54, 0xFF1B>(u_Char);
}

int CT_CharProperties::sb_IsBrace(unsigned short u_Char)
{
    return b_OneOf<0x007B, 0x007D, 0xFE37, 0xFE38, 0xFE5B, 0xFE5C, 0xFF5B, 0xFF5D>(u_Char);
}

int CT_CharProperties::sb_IsTabulator(unsigned short u_Char)
{
    return b_OneOf<0x0009, 0x000B>(u_Char);
}

int CT_CharProperties::sb_IsParagraph(unsigned short u_Char)
{
    return b_OneOf<0x10FB, 0x2029>(u_Char);
}

int CT_CharProperties::sb_IsOpeningBracket(unsigned short u_Char)
{
    return b_OneOf<0x005B, 0x007B, 0x2045, 0x2329, 0x3008, 0x300A, 0x300C, 0x300E, 0x3010, 0x3014,
                   0x3016, 0x3018, 0x301A, 0xFE37, 0xFE39, 0xFE3B, 0xFE3D, 0xFE3F, 0xFE41, 0xFE43,
                   0xFE5B, 0xFE5D, 0xFF3B, 0xFF5B, 0xFF62>(u_Char);
}

int CT_CharProperties::sb_IsClosingBracket(unsigned short u_Char)
{
    return b_OneOf<0x005D, 0x007D, 0x2046, 0x232A, 0x3009, 0x300B, 0x300D, 0x300F, 0x3011, 0x3015,
                   0x3017, 0x3019, 0x301B, 0xFE38, 0xFE3A, 0xFE3C, 0xFE3E, 0xFE40, 0xFE42, 0xFE44,
                   0xFE5C, 0xFE5E, 0xFF3D, 0xFF5D, 0xFF63>(u_Char);
}

int CT_CharProperties::sb_IsQuote(unsigned short u_Char)
{
    return b_OneOf<0x0022, 0x00AB, 0x00BB, 0x2018, 0x2019, 0x201A, 0x201B, 0x201C, 0x201D, 0x201E,
                   0x201F, 0x2039, 0x203A, 0x275B, 0x275C, 0x275D, 0x275E, 0x301D, 0x301E, 0x301F,
                   0xFF02>(u_Char);
}

int CT_CharProperties::sb_IsSingleQuote(unsigned short u_Char)
{
    return b_OneOf<0x0027, 0x2018, 0x2019, 0x201A, 0x201B, 0x2039, 0x203A, 0x275B, 0x275C, 0x301D,
                   0x301E, 0x301F>(u_Char);
}

int CT_CharProperties::sb_IsOpeningQuote(unsigned short u_Char)
{
    return b_OneOf<0x00AB, 0x2018, 0x201C, 0x2039>(u_Char);
}

int CT_CharProperties::sb_IsClosingQuote(unsigned short u_Char)
{
    return b_OneOf<0x00BB, 0x2019, 0x201D, 0x203A>(u_Char);
}

int CT_CharProperties::sb_IsPercent(unsigned short u_Char)
{
    return b_OneOf<0x0025, 0x066A, 0xFE6A, 0xFF05>(u_Char);
}

int CT_CharProperties::sb_IsVowel(unsigned short u_Char)
{
    // Kept: U+0000 is a vowel: it ends the text of the Latin ones and is found there. All other
    // sets are without it.
    return b_OneOf<'a', 'e', 'i', 'o', 'u', 'A', 'E', 'I', 'U', 'O', 0>(u_Char) ||
           (u_Char >= 0x3041 && u_Char <= 0x304A) || (u_Char >= 0x30A1 && u_Char <= 0x30AA);
}

// ---- Composed ---------------------------------------------------------------------------------

int CT_CharProperties::sb_IsBracket(unsigned short u_Char)
{
    return sb_IsOpeningBracket(u_Char) || sb_IsClosingBracket(u_Char);
}

int CT_CharProperties::sb_IsDoubleQuote(unsigned short u_Char)
{
    return sb_IsQuote(u_Char) && !sb_IsSingleQuote(u_Char);
}

int CT_CharProperties::sb_IsSurrounder(unsigned short u_Char)
{
    return sb_IsBracket(u_Char) || sb_IsQuote(u_Char) || sb_IsApostrophe(u_Char);
}

int CT_CharProperties::sb_IsStop(unsigned short u_Char)
{
    return sb_IsColon(u_Char) || sb_IsDot(u_Char) || sb_IsExclamation(u_Char) ||
           sb_IsQuestion(u_Char) || sb_IsSemicolon(u_Char);
}
