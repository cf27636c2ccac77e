// Ostra/Unicode/CharProperties.h: what a UTF-16 unit is.
#pragma once

#include <Ostra/Frame/Export.h>

class CT_UString;

// The repertoire of Unicode 2.0, unit by unit: the general category, the block, three words of
// information, the numeric value, and the questions that the segmentation of text asks.
//
// A surrogate is a character of its own category and block: no query knows of pairs. A character
// that is newer than Unicode 2.0 is unknown, but where a row of the tables runs over its place.
//
// The words are sets of bits, assigned as the system's service GetStringTypeW assigns its three
// classes:
//
//     character word   0x0001 upper case   0x0002 lower case    0x0004 digit
//                      0x0008 space        0x0010 punctuation   0x0020 control
//                      0x0040 blank        0x0080 hexadecimal digit
//                      0x0100 alphabetic
//     layout word      a number, et_LayoutProperty
//     text processing  0x0001 non-spacing  0x0002 diacritic     0x0004 vowel mark
//     word             0x0008 symbol       0x0010 katakana      0x0020 hiragana
//                      0x0040 halfwidth    0x0080 fullwidth     0x0100 ideograph
//                      0x0200 kashida      0x0400 lexical       0x8000 alphabetic
//
// Queries return 1 or 0, but those that say that they return a bit.
//
// Owns:    constant tables and names.
// Reports: nothing. A value that an enumeration doesn't have is "Unknown", or a word of 0.
// Threads: any number.
class OSTRA_API CT_CharProperties
{
public:
    // Which word of information.
    enum et_PropertyClass : int
    {
        CharacterInformation = 0,
        LayoutInformation = 1,
        TextProcessingInformation = 2
    };

    // The general category. No character is OtherNotAssigned: one without a row of the table is
    // PropertyUnknown.
    enum et_UnicodeProperty : int
    {
        MarkNonSpacing = 0,        // Mn
        MarkSpacingCombining = 1,  // Mc
        MarkEnclosing = 2,         // Me
        NumberDecimalDigit = 3,    // Nd
        NumberLetter = 4,          // Nl
        NumberOther = 5,           // No
        SeparatorSpace = 6,        // Zs
        SeparatorLine = 7,         // Zl
        SeparatorParagraph = 8,    // Zp
        OtherControl = 9,          // Cc
        OtherFormat = 10,          // Cf
        OtherSurrogate = 11,       // Cs
        OtherPrivateUse = 12,      // Co
        OtherNotAssigned = 13,     // Cn
        LetterUppercase = 14,      // Lu
        LetterLowercase = 15,      // Ll
        LetterTitlecase = 16,      // Lt
        LetterModifier = 17,       // Lm
        LetterOther = 18,          // Lo
        PunctuationConnector = 19, // Pc
        PunctuationDash = 20,      // Pd
        PunctuationOpen = 21,      // Ps
        PunctuationClose = 22,     // Pe
        PunctuationOther = 23,     // Po
        SymbolMath = 24,           // Sm
        SymbolCurrency = 25,       // Sc
        SymbolModifier = 26,       // Sk
        SymbolOther = 27,          // So
        PropertyUnknown = 28
    };

    // The block. Unassigned are the gaps between the blocks, so that no character is in
    // BlockUnknown. Kept: none is in Specials1 either: its one character, U+FEFF, is found in
    // ArabicPresentationFormsB.
    enum et_UnicodeBlock : int
    {
        BlockUnknown = 0,
        BasicLatin = 1,
        Latin1Supplement = 2,
        LatinExtendedA = 3,
        LatinExtendedB = 4,
        IPAExtensions = 5,
        SpacingModifierLetters = 6,
        CombiningDiacriticalMarks = 7,
        Greek = 8,
        Cyrillic = 9,
        Armenian = 10,
        Hebrew = 11,
        Arabic = 12,
        Devanagari = 13,
        Bengali = 14,
        Gurmukhi = 15,
        Gujarati = 16,
        Oriya = 17,
        Tamil = 18,
        Telugu = 19,
        Kannada = 20,
        Malayalam = 21,
        Thai = 22,
        Lao = 23,
        Tibetan = 24,
        Georgian = 25,
        HangulJamo = 26,
        LatinExtendedAdditional = 27,
        GreekExtended = 28,
        GeneralPunctuation = 29,
        SuperscriptsAndSubscripts = 30,
        CurrencySymbols = 31,
        CombiningMarksForSymbols = 32,
        LetterlikeSymbols = 33,
        NumberForms = 34,
        Arrows = 35,
        MathematicalOperators = 36,
        MiscellaneousTechnical = 37,
        ControlPictures = 38,
        OpticalCharacterRecognition = 39,
        EnclosedAlphanumerics = 40,
        BoxDrawing = 41,
        BlockElements = 42,
        GeometricShapes = 43,
        MiscellaneousSymbols = 44,
        Dingbats = 45,
        CJKSymbolsAndPunctuation = 46,
        Hiragana = 47,
        Katakana = 48,
        Bopomofo = 49,
        HangulCompatibilityJamo = 50,
        Kanbun = 51,
        EnclosedCJKLettersAndMonths = 52,
        CJKCompatibility = 53,
        CJKUnifiedIdeographs = 54,
        HangulSyllables = 55,
        HighSurrogates = 56,
        HighPrivateUseSurrogates = 57,
        LowSurrogates = 58,
        PrivateUse = 59,
        CJKCompatibilityIdeographs = 60,
        AlphabeticPresentationForms = 61,
        ArabicPresentationFormsA = 62,
        CombiningHalfMarks = 63,
        CJKCompatibilityForms = 64,
        SmallFormVariants = 65,
        ArabicPresentationFormsB = 66,
        HalfwidthAndFullwidthForms = 67,
        Specials1 = 68,
        Specials2 = 69,
        Unassigned = 70
    };

    // The direction of a character in bidirectional text.
    enum et_LayoutProperty : int
    {
        LayoutNone = 0,
        LayoutLeftToRight = 1,
        LayoutRightToLeft = 2,
        LayoutEuropeNumber = 3,
        LayoutEuropeSeparator = 4,
        LayoutEuropeTerminator = 5,
        LayoutArabicNumber = 6,
        LayoutCommonSeparator = 7,
        LayoutBlockSeparator = 8,
        LayoutSegmentSeparator = 9,
        LayoutWhitespace = 10,
        LayoutOtherNeutral = 11
    };

    // ---- Words, category, block --------------------------------------------------------------

    // The words of the class comment, then one question each with an enumerator as its answer.
    static unsigned short sn2_GetCharacterInformation(unsigned short u_Char);
    static unsigned short sn2_GetLayoutInformation(unsigned short u_Char);
    static unsigned short sn2_GetTextProcessingInformation(unsigned short u_Char);
    static et_LayoutProperty seo_GetLayoutInformation(unsigned short u_Char);
    static et_UnicodeBlock seo_GetUnicodeBlock(unsigned short u_Char);
    static et_UnicodeProperty seo_GetUnicodeProperty(unsigned short u_Char);
    // 0 and 0 for a character without a numeric value.
    static void sv_NumericValue(unsigned short u_Char, short& i_Numerator, short& i_Denominator);

    // The enumerator's name; "Unknown" for a value without one.
    static const unsigned short* sqcuz_UnicodeBlockName(et_UnicodeBlock ec_Block);
    static const unsigned short* sqcuz_UnicodePropertyName(et_UnicodeProperty ec_Property);
    // Always null: the library holds no names of characters.
    static const unsigned short* sqcuz_GetCharacterName(unsigned short u_Char);

    // ---- By the general category -------------------------------------------------------------

    static int sb_IsUpper(unsigned short u_Char);
    static int sb_IsLower(unsigned short u_Char);
    // A decimal digit.
    static int sb_IsDigit(unsigned short u_Char);
    // A number of any kind.
    static int sb_IsNumeric(unsigned short u_Char);
    static int sb_IsPunct(unsigned short u_Char);
    static int sb_IsCntrl(unsigned short u_Char);
    // A letter of any kind.
    static int sb_IsAlpha(unsigned short u_Char);
    // Not a control; an unknown character prints.
    static int sb_IsPrint(unsigned short u_Char);
    // Neither separator, control, format character nor unknown.
    static int sb_IsGraph(unsigned short u_Char);
    // sb_IsDigit or sb_IsAlpha.
    static int sb_IsAlDig(unsigned short u_Char);
    // sb_IsNumeric or sb_IsAlpha.
    static int sb_IsAlNum(unsigned short u_Char);

    // ---- By the words ------------------------------------------------------------------------

    // The bit 0x0008 or 0.
    static int sb_IsSpace(unsigned short u_Char);
    // The bit 0x0080 or 0.
    static int sb_IsXDigit(unsigned short u_Char);
    // Also true for the line feed, which isn't blank by its word.
    static int sb_IsBlank(unsigned short u_Char);

    // Each returns its bit or 0.
    static int sb_IsTPNonspacing(unsigned short u_Char);
    static int sb_IsTPDiacritic(unsigned short u_Char);
    static int sb_IsTPVowelMark(unsigned short u_Char);
    static int sb_IsTPSymbol(unsigned short u_Char);
    static int sb_IsTPKatakana(unsigned short u_Char);
    static int sb_IsTPHiragana(unsigned short u_Char);
    static int sb_IsTPHalfwidth(unsigned short u_Char);
    static int sb_IsTPFullwidth(unsigned short u_Char);
    static int sb_IsTPIdeograph(unsigned short u_Char);
    static int sb_IsTPKashida(unsigned short u_Char);
    static int sb_IsTPLexical(unsigned short u_Char);
    static int sb_IsTPAlpha(unsigned short u_Char);

    // Whether the layout word is the number of that name; without directionality, LayoutNone.
    static int sb_LayoutNoDirectionality(unsigned short u_Char);
    static int sb_LayoutLeftToRight(unsigned short u_Char);
    static int sb_LayoutRightToLeft(unsigned short u_Char);
    static int sb_LayoutEuropeNumber(unsigned short u_Char);
    static int sb_LayoutEuropeSeparator(unsigned short u_Char);
    static int sb_LayoutEuropeTerminator(unsigned short u_Char);
    static int sb_LayoutArabicNumber(unsigned short u_Char);
    static int sb_LayoutCommonSeparator(unsigned short u_Char);
    static int sb_LayoutBlockSeparator(unsigned short u_Char);
    static int sb_LayoutSegmentSeparator(unsigned short u_Char);
    static int sb_LayoutWhitespace(unsigned short u_Char);
    static int sb_LayoutOtherNeutral(unsigned short u_Char);
    // Kept: left to right only; right to left doesn't count as strong.
    static int sb_LayoutStrongDirectionality(unsigned short u_Char);
    // Numbers, their separators and terminators.
    static int sb_LayoutWeakDirectionality(unsigned short u_Char);
    // Separators of blocks and segments, whitespace and other neutrals.
    static int sb_LayoutNeutralDirectionality(unsigned short u_Char);

    // ---- By sets of characters ---------------------------------------------------------------

    // All characters of the repertoire that serve as the one named, whatever their script.
    static int sb_IsApostrophe(unsigned short u_Char);
    static int sb_IsColon(unsigned short u_Char);
    static int sb_IsComma(unsigned short u_Char);
    static int sb_IsDot(unsigned short u_Char);
    static int sb_IsExclamation(unsigned short u_Char);
    static int sb_IsHyphen(unsigned short u_Char);
    static int sb_IsQuestion(unsigned short u_Char);
    static int sb_IsSemicolon(unsigned short u_Char);
    static int sb_IsBrace(unsigned short u_Char);
    static int sb_IsTabulator(unsigned short u_Char);
    // A mark or separator of paragraphs.
    static int sb_IsParagraph(unsigned short u_Char);
    static int sb_IsOpeningBracket(unsigned short u_Char);
    static int sb_IsClosingBracket(unsigned short u_Char);
    // The apostrophe U+0027 is none, though it is a single quote.
    static int sb_IsQuote(unsigned short u_Char);
    static int sb_IsSingleQuote(unsigned short u_Char);
    static int sb_IsOpeningQuote(unsigned short u_Char);
    static int sb_IsClosingQuote(unsigned short u_Char);
    static int sb_IsPercent(unsigned short u_Char);
    // The Latin vowels and those of the kana. Kept: U+0000 is a vowel.
    static int sb_IsVowel(unsigned short u_Char);

    static int sb_IsBracket(unsigned short u_Char);
    // A quote that isn't a single one.
    static int sb_IsDoubleQuote(unsigned short u_Char);
    // A bracket, a quote or an apostrophe.
    static int sb_IsSurrounder(unsigned short u_Char);
    // A colon, dot, exclamation mark, question mark or semicolon; no comma.
    static int sb_IsStop(unsigned short u_Char);

    // ---- Sequences ---------------------------------------------------------------------------

    // True if the test is true for each of n_Count characters from n_Start on, or to the end of
    // the text. False without such a character. The text ends at its first zero.
    static int sb_IsSequenceOf(const unsigned short* qcuz_Text, int (*b_Test)(unsigned short),
                               unsigned int n_Start, unsigned int n_Count);
    static int sb_IsSequenceOf(const CT_UString* pcco_Text, int (*b_Test)(unsigned short),
                               unsigned int n_Start, unsigned int n_Count);

private:
    // 0 for a class that isn't there.
    static unsigned short sn2_GetCharacterInfo(et_PropertyClass ec_Class, unsigned short u_Char);
};
