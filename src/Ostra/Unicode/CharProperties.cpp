// Ostra/Unicode/CharProperties.cpp
#include <Ostra/Unicode/CharProperties.h>

#include <Ostra/String/TextOperations.h>
#include <Ostra/String/UString.h>
#include <Ostra/Unicode/CharRows.h>

#include <algorithm>
#include <initializer_list>
#include <iterator>

using Tables = CT_CharTables;
using Properties = CT_CharProperties;

namespace
{
enum et_CharacterBit : unsigned short
{
    SPACE = 0x0008,
    BLANK = 0x0040,
    HEX_DIGIT = 0x0080
};

enum et_TextProcessingBit : unsigned short
{
    NON_SPACING = 0x0001,
    DIACRITIC = 0x0002,
    VOWEL_MARK = 0x0004,
    SYMBOL = 0x0008,
    KATAKANA = 0x0010,
    HIRAGANA = 0x0020,
    HALFWIDTH = 0x0040,
    FULLWIDTH = 0x0080,
    IDEOGRAPH = 0x0100,
    KASHIDA = 0x0200,
    LEXICAL = 0x0400,
    ALPHABETIC = 0x8000
};

constexpr unsigned n_Set(std::initializer_list<Properties::et_UnicodeProperty> co_Members)
{
    unsigned n_Bits = 0;
    for (const Properties::et_UnicodeProperty ec : co_Members)
        n_Bits |= 1u << ec;
    return n_Bits;
}

// Categories as sets of bits.
constexpr unsigned DIGITS = n_Set({Properties::NumberDecimalDigit});
constexpr unsigned NUMBERS = DIGITS | n_Set({Properties::NumberLetter, Properties::NumberOther});
constexpr unsigned LETTERS =
    n_Set({Properties::LetterUppercase, Properties::LetterLowercase, Properties::LetterTitlecase,
           Properties::LetterModifier, Properties::LetterOther});
constexpr unsigned PUNCTUATION = n_Set(
    {Properties::PunctuationConnector, Properties::PunctuationDash, Properties::PunctuationOpen,
     Properties::PunctuationClose, Properties::PunctuationOther});
constexpr unsigned CONTROLS = n_Set({Properties::OtherControl});
constexpr unsigned INVISIBLE =
    CONTROLS |
    n_Set({Properties::SeparatorSpace, Properties::SeparatorLine, Properties::SeparatorParagraph,
           Properties::OtherFormat, Properties::OtherNotAssigned, Properties::PropertyUnknown});

int b_In(unsigned short u, unsigned n_Categories)
{
    return n_Categories >> Tables::sn_Property(u) & 1;
}

unsigned short u_Character(unsigned short u)
{
    return Tables::sso_Words(u).au_Word[Properties::CharacterInformation];
}

unsigned short u_Layout(unsigned short u)
{
    return Tables::sso_Words(u).au_Word[Properties::LayoutInformation];
}

unsigned short u_Processing(unsigned short u)
{
    return Tables::sso_Words(u).au_Word[Properties::TextProcessingInformation];
}

bool b_Between(unsigned n, unsigned n_First, unsigned n_Last)
{
    return n >= n_First && n <= n_Last;
}
} // namespace

// ---- Words, category, block -------------------------------------------------------------------

unsigned short CT_CharProperties::sn2_GetCharacterInfo(et_PropertyClass ec_Class,
                                                       unsigned short u_Char)
{
    const auto n_Class = static_cast<unsigned>(ec_Class);
    return n_Class < std::size(Tables::st_Words().au_Word)
               ? Tables::sso_Words(u_Char).au_Word[n_Class]
               : 0;
}

unsigned short CT_CharProperties::sn2_GetCharacterInformation(unsigned short u_Char)
{
    return sn2_GetCharacterInfo(CharacterInformation, u_Char);
}

unsigned short CT_CharProperties::sn2_GetLayoutInformation(unsigned short u_Char)
{
    return sn2_GetCharacterInfo(LayoutInformation, u_Char);
}

unsigned short CT_CharProperties::sn2_GetTextProcessingInformation(unsigned short u_Char)
{
    return sn2_GetCharacterInfo(TextProcessingInformation, u_Char);
}

CT_CharProperties::et_LayoutProperty
CT_CharProperties::seo_GetLayoutInformation(unsigned short u_Char)
{
    return static_cast<et_LayoutProperty>(u_Layout(u_Char));
}

CT_CharProperties::et_UnicodeBlock CT_CharProperties::seo_GetUnicodeBlock(unsigned short u_Char)
{
    return static_cast<et_UnicodeBlock>(Tables::sn_Block(u_Char));
}

CT_CharProperties::et_UnicodeProperty
CT_CharProperties::seo_GetUnicodeProperty(unsigned short u_Char)
{
    return static_cast<et_UnicodeProperty>(Tables::sn_Property(u_Char));
}

void CT_CharProperties::sv_NumericValue(unsigned short u_Char, short& i_Numerator,
                                        short& i_Denominator)
{
    const auto pcso_Row = std::lower_bound(
        std::begin(CT_CharRows::NUMERIC), std::end(CT_CharRows::NUMERIC), u_Char,
        [](const st_CharNumber& so_Row, unsigned short u) { return so_Row.u_Character < u; });
    const bool b_Hit =
        pcso_Row != std::end(CT_CharRows::NUMERIC) && pcso_Row->u_Character == u_Char;
    i_Numerator = b_Hit ? pcso_Row->i_Numerator : 0;
    i_Denominator = b_Hit ? pcso_Row->i_Denominator : 0;
}

// ---- Names ------------------------------------------------------------------------------------

const unsigned short* CT_CharProperties::sqcuz_UnicodeBlockName(et_UnicodeBlock ec_Block)
{
    return Tables::sqcuz_BlockName(b_Between(ec_Block, 1, Unassigned) ? ec_Block : BlockUnknown);
}

const unsigned short* CT_CharProperties::sqcuz_UnicodePropertyName(et_UnicodeProperty ec_Property)
{
    const auto n_Property = static_cast<unsigned>(ec_Property);
    return Tables::sqcuz_PropertyName(std::min<unsigned>(n_Property, PropertyUnknown));
}

const unsigned short* CT_CharProperties::sqcuz_GetCharacterName(unsigned short)
{
    return nullptr;
}

// ---- By the general category ------------------------------------------------------------------

int CT_CharProperties::sb_IsUpper(unsigned short u_Char)
{
    return Tables::sn_Property(u_Char) == LetterUppercase;
}

int CT_CharProperties::sb_IsLower(unsigned short u_Char)
{
    return Tables::sn_Property(u_Char) == LetterLowercase;
}

int CT_CharProperties::sb_IsDigit(unsigned short u_Char)
{
    return b_In(u_Char, DIGITS);
}

int CT_CharProperties::sb_IsNumeric(unsigned short u_Char)
{
    return b_In(u_Char, NUMBERS);
}

int CT_CharProperties::sb_IsPunct(unsigned short u_Char)
{
    return b_In(u_Char, PUNCTUATION);
}

int CT_CharProperties::sb_IsCntrl(unsigned short u_Char)
{
    return b_In(u_Char, CONTROLS);
}

int CT_CharProperties::sb_IsAlpha(unsigned short u_Char)
{
    return Tables::sb_IsLetter(u_Char);
}

int CT_CharProperties::sb_IsPrint(unsigned short u_Char)
{
    return b_In(u_Char, ~CONTROLS);
}

int CT_CharProperties::sb_IsGraph(unsigned short u_Char)
{
    return b_In(u_Char, ~INVISIBLE);
}

int CT_CharProperties::sb_IsAlDig(unsigned short u_Char)
{
    return b_In(u_Char, DIGITS | LETTERS);
}

int CT_CharProperties::sb_IsAlNum(unsigned short u_Char)
{
    return b_In(u_Char, NUMBERS | LETTERS);
}

// ---- By the words -----------------------------------------------------------------------------

int CT_CharProperties::sb_IsSpace(unsigned short u_Char)
{
    return u_Character(u_Char) & SPACE;
}

int CT_CharProperties::sb_IsXDigit(unsigned short u_Char)
{
    return u_Character(u_Char) & HEX_DIGIT;
}

int CT_CharProperties::sb_IsBlank(unsigned short u_Char)
{
    // Kept: the line feed is blank here, though not by its word.
    return u_Char == '\n' || u_Char == ' ' || u_Character(u_Char) & BLANK;
}

int CT_CharProperties::sb_IsTPNonspacing(unsigned short u_Char)
{
    return u_Processing(u_Char) & NON_SPACING;
}

int CT_CharProperties::sb_IsTPDiacritic(unsigned short u_Char)
{
    return u_Processing(u_Char) & DIACRITIC;
}

int CT_CharProperties::sb_IsTPVowelMark(unsigned short u_Char)
{
    return u_Processing(u_Char) & VOWEL_MARK;
}

int CT_CharProperties::sb_IsTPSymbol(unsigned short u_Char)
{
    return u_Processing(u_Char) & SYMBOL;
}

int CT_CharProperties::sb_IsTPKatakana(unsigned short u_Char)
{
    return u_Processing(u_Char) & KATAKANA;
}

int CT_CharProperties::sb_IsTPHiragana(unsigned short u_Char)
{
    return u_Processing(u_Char) & HIRAGANA;
}

int CT_CharProperties::sb_IsTPHalfwidth(unsigned short u_Char)
{
    return u_Processing(u_Char) & HALFWIDTH;
}

int CT_CharProperties::sb_IsTPFullwidth(unsigned short u_Char)
{
    return u_Processing(u_Char) & FULLWIDTH;
}

int CT_CharProperties::sb_IsTPIdeograph(unsigned short u_Char)
{
    return u_Processing(u_Char) & IDEOGRAPH;
}

int CT_CharProperties::sb_IsTPKashida(unsigned short u_Char)
{
    return u_Processing(u_Char) & KASHIDA;
}

int CT_CharProperties::sb_IsTPLexical(unsigned short u_Char)
{
    return u_Processing(u_Char) & LEXICAL;
}

int CT_CharProperties::sb_IsTPAlpha(unsigned short u_Char)
{
    return u_Processing(u_Char) & ALPHABETIC;
}

int CT_CharProperties::sb_LayoutNoDirectionality(unsigned short u_Char)
{
    return u_Layout(u_Char) == LayoutNone;
}

int CT_CharProperties::sb_LayoutLeftToRight(unsigned short u_Char)
{
    return u_Layout(u_Char) == LayoutLeftToRight;
}

int CT_CharProperties::sb_LayoutRightToLeft(unsigned short u_Char)
{
    return u_Layout(u_Char) == LayoutRightToLeft;
}

int CT_CharProperties::sb_LayoutEuropeNumber(unsigned short u_Char)
{
    return u_Layout(u_Char) == LayoutEuropeNumber;
}

int CT_CharProperties::sb_LayoutEuropeSeparator(unsigned short u_Char)
{
    return u_Layout(u_Char) == LayoutEuropeSeparator;
}

int CT_CharProperties::sb_LayoutEuropeTerminator(unsigned short u_Char)
{
    return u_Layout(u_Char) == LayoutEuropeTerminator;
}

int CT_CharProperties::sb_LayoutArabicNumber(unsigned short u_Char)
{
    return u_Layout(u_Char) == LayoutArabicNumber;
}

int CT_CharProperties::sb_LayoutCommonSeparator(unsigned short u_Char)
{
    return u_Layout(u_Char) == LayoutCommonSeparator;
}

int CT_CharProperties::sb_LayoutBlockSeparator(unsigned short u_Char)
{
    return u_Layout(u_Char) == LayoutBlockSeparator;
}

int CT_CharProperties::sb_LayoutSegmentSeparator(unsigned short u_Char)
{
    return u_Layout(u_Char) == LayoutSegmentSeparator;
}

int CT_CharProperties::sb_LayoutWhitespace(unsigned short u_Char)
{
    return u_Layout(u_Char) == LayoutWhitespace;
}

int CT_CharProperties::sb_LayoutOtherNeutral(unsigned short u_Char)
{
    return u_Layout(u_Char) == LayoutOtherNeutral;
}

int CT_CharProperties::sb_LayoutStrongDirectionality(unsigned short u_Char)
{
    // Kept: right to left isn't strong: this asks for text that needs no reordering.
    return u_Layout(u_Char) == LayoutLeftToRight;
}

int CT_CharProperties::sb_LayoutWeakDirectionality(unsigned short u_Char)
{
    return b_Between(u_Layout(u_Char), LayoutEuropeNumber, LayoutCommonSeparator);
}

int CT_CharProperties::sb_LayoutNeutralDirectionality(unsigned short u_Char)
{
    return b_Between(u_Layout(u_Char), LayoutBlockSeparator, LayoutOtherNeutral);
}

// ---- Sequences --------------------------------------------------------------------------------

int CT_CharProperties::sb_IsSequenceOf(const unsigned short* qcuz_Text,
                                       int (*b_Test)(unsigned short), unsigned int n_Start,
                                       unsigned int n_Count)
{
    using Text = CT_TextOperations<unsigned short>;
    // Kept: of no characters nothing is true.
    if (!qcuz_Text || !n_Count || Text::sn_Length(qcuz_Text, n_Start) < n_Start)
        return 0;
    const unsigned short* qcuz_Rest = qcuz_Text + n_Start;
    if (!*qcuz_Rest)
        return 0;
    // Counted down: the start and the count together may pass 32 bits.
    for (; n_Count && *qcuz_Rest; --n_Count)
        if (!b_Test(*qcuz_Rest++))
            return 0;
    return 1;
}

int CT_CharProperties::sb_IsSequenceOf(const CT_UString* pcco_Text, int (*b_Test)(unsigned short),
                                       unsigned int n_Start, unsigned int n_Count)
{
    return sb_IsSequenceOf(pcco_Text ? pcco_Text->qcuz_Get() : nullptr, b_Test, n_Start, n_Count);
}
