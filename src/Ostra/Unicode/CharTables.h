// Ostra/Unicode/CharTables.h: the tables behind the character classes. Internal.
#pragma once

#include <Ostra/Frame/Text.h>

#include <cstddef>

// A row of a range table: the characters from first to last have the value.
struct st_CharRange
{
    unsigned short first;
    unsigned short last;
    unsigned short value;
};

// A row of the numeric table.
struct st_CharNumber
{
    unsigned short character;
    short numerator;
    short denominator;
};

// A row of a table of pairs.
struct st_CharMapping
{
    unsigned short source;
    unsigned short target;
};

// A row of the decomposition table: the sequence ends with a zero.
struct st_CharDecomposition
{
    unsigned short source;
    unsigned short sequence[7];
};

static_assert(sizeof(st_CharRange) == 6 && sizeof(st_CharNumber) == 6);
static_assert(sizeof(st_CharMapping) == 4 && sizeof(st_CharDecomposition) == 16);

// Constant tables, made from the rows in CharRows.h, which say the same but have to be searched.
//
// A table of two stages has a number for each run of 32 characters, which is that of a block of 32
// values: most runs share their block with others.
class CT_CharTables
{
public:
    // The three words of a character.
    struct st_Words
    {
        unsigned short au_Word[3];
    };

    static unsigned sn_Property(unsigned short u)
    {
        return sn_Find(san1_PropertyBlock, san1_Property, u);
    }
    static unsigned sn_Block(unsigned short u) { return sn_Find(san1_BlockBlock, san1_Block, u); }
    static const st_Words& sso_Words(unsigned short u)
    {
        return saso_Words[sn_Find(san1_WordsBlock, san1_Words, u)];
    }

    // A pair table holds the distance from source to target.
    static unsigned short su_Upper(unsigned short u)
    {
        return su_Map(san1_UpperBlock, sau_Upper, u);
    }
    static unsigned short su_Lower(unsigned short u)
    {
        return su_Map(san1_LowerBlock, sau_Lower, u);
    }
    static unsigned short su_Digit(unsigned short u)
    {
        return su_Map(san1_DigitBlock, sau_Digit, u);
    }
    static unsigned short su_CZone(unsigned short u)
    {
        return su_Map(san1_CZoneBlock, sau_CZone, u);
    }
    static unsigned short su_Katakana(unsigned short u)
    {
        return su_Map(san1_KatakanaBlock, sau_Katakana, u);
    }
    static unsigned short su_Hiragana(unsigned short u)
    {
        return su_Map(san1_HiraganaBlock, sau_Hiragana, u);
    }
    // The canonical decomposition; empty for none.
    static const unsigned short* sqcuz_Decomposition(unsigned short u)
    {
        return qcuz_Text(sac_Sequences) + sn_Find(san1_DecompositionBlock, sau_Decomposition, u);
    }

    // The bytes of all tables.
    static constexpr std::size_t sn_Size();

    // The names of the values from 0 on.
    static const unsigned short* sqcuz_PropertyName(unsigned n)
    {
        return qcuz_Text(sac_PropertyNames) + sau_PropertyName[n];
    }
    static const unsigned short* sqcuz_BlockName(unsigned n)
    {
        return qcuz_Text(sac_BlockNames) + sau_BlockName[n];
    }

private:
    static constexpr unsigned SHIFT = 5;

    template <class Value>
    static Value sn_Find(const unsigned char* pcn1_Block, const Value* pcn_Values, unsigned short u)
    {
        return pcn_Values[pcn1_Block[u >> SHIFT] << SHIFT | (u & ((1u << SHIFT) - 1))];
    }
    static unsigned short su_Map(const unsigned char* pcn1_Block,
                                 const unsigned short* pcu_Distance, unsigned short u)
    {
        return static_cast<unsigned short>(u + sn_Find(pcn1_Block, pcu_Distance, u));
    }

    static const unsigned char san1_PropertyBlock[], san1_Property[];
    static const unsigned char san1_BlockBlock[], san1_Block[];
    static const unsigned char san1_WordsBlock[], san1_Words[];
    static const st_Words saso_Words[];
    static const unsigned char san1_UpperBlock[], san1_LowerBlock[], san1_DigitBlock[];
    static const unsigned char san1_CZoneBlock[], san1_KatakanaBlock[], san1_HiraganaBlock[];
    static const unsigned short sau_Upper[], sau_Lower[], sau_Digit[];
    static const unsigned short sau_CZone[], sau_Katakana[], sau_Hiragana[];
    static const unsigned char san1_DecompositionBlock[];
    static const unsigned short sau_Decomposition[]; // where in the sequences
    static const char16_t sac_Sequences[];           // each with its terminator; the first is empty
    static const char16_t sac_PropertyNames[], sac_BlockNames[];
    static const unsigned short sau_PropertyName[], sau_BlockName[]; // where in the names
};
