// Ostra/Unicode/CharTables.h: the tables behind the character classes. Internal.
#pragma once

#include <Ostra/Frame/Text.h>

#include <cstddef>

// A row of a range table: the characters from the first to the last have the value.
struct st_CharRange
{
    unsigned short u_First;
    unsigned short u_Last;
    unsigned short u_Value;
};

// A row of the numeric table.
struct st_CharNumber
{
    unsigned short u_Character;
    short i_Numerator;
    short i_Denominator;
};

// A row of a table of pairs.
struct st_CharMapping
{
    unsigned short u_Source;
    unsigned short u_Target;
};

// A row of the decomposition table: the sequence ends with a zero.
struct st_CharDecomposition
{
    unsigned short u_Source;
    unsigned short au_Sequence[7];
};

static_assert(sizeof(st_CharRange) == 6 && sizeof(st_CharNumber) == 6);
static_assert(sizeof(st_CharMapping) == 4 && sizeof(st_CharDecomposition) == 16);

// Constant tables, made from the rows in CharRows.h, which say the same but have to be searched.
//
// A table has two stages: for each run of characters, where its values stand; then the values. Most
// runs have theirs in common with others.
class CT_CharTables
{
public:
    // The mappings of a character to another, and to its decomposition.
    enum et_Mapping : unsigned
    {
        e_Upper,
        e_Lower,
        e_Digit,
        e_CZone,
        e_Katakana,
        e_Hiragana,
        e_Decomposition
    };

    // The three words of a character.
    struct st_Words
    {
        unsigned short au_Word[3];
    };

    static unsigned sn_Property(unsigned short u)
    {
        return sn_Find(san1_Property, u) & (LETTER - 1);
    }
    // Whether the property is that of a letter: the question that is asked most.
    static int sb_IsLetter(unsigned short u) { return sn_Find(san1_Property, u) / LETTER; }
    static unsigned sn_Block(unsigned short u) { return sn_Find(san1_Block, u); }
    static const st_Words& sso_Words(unsigned short u)
    {
        return saso_Words[sn_Find(san1_Words, u)];
    }

    // A table of pairs holds the distances from source to target.
    template <et_Mapping ec_Mapping>
    static unsigned short su_Map(unsigned short u)
    {
        return static_cast<unsigned short>(u + su_Find(ec_Mapping, u));
    }
    // The canonical decomposition; empty for none.
    static const unsigned short* sqcuz_Decomposition(unsigned short u)
    {
        return qcuz_Text(sac_Sequences) + su_Find(e_Decomposition, u);
    }

    // The names of the values from 0 on.
    static const unsigned short* sqcuz_PropertyName(unsigned n)
    {
        return qcuz_Text(sac_PropertyNames) + sau_PropertyName[n];
    }
    static const unsigned short* sqcuz_BlockName(unsigned n)
    {
        return qcuz_Text(sac_BlockNames) + sau_BlockName[n];
    }

    // The bytes of all tables.
    static constexpr std::size_t sn_Size();

private:
    // A mark beside the number of a letter's property.
    static constexpr unsigned LETTER = 0x80;

    // The number of each run of 32 characters' block of 32 values, then the blocks.
    static unsigned sn_Find(const unsigned char* pcn1_Table, std::size_t n)
    {
        return pcn1_Table[65536 / 32 + std::size_t(pcn1_Table[n / 32]) * 32 + n % 32];
    }
    // For each mapping, where the values of each run of 64 characters begin; then the values.
    static unsigned short su_Find(et_Mapping ec_Mapping, std::size_t n)
    {
        return sau_Mappings[sau_Mappings[ec_Mapping * (65536 / 64) + n / 64] + n % 64];
    }

    static const unsigned char san1_Property[];
    static const unsigned char san1_Block[];
    static const unsigned char san1_Words[];
    static const st_Words saso_Words[];
    static const unsigned short sau_Mappings[];
    static const char16_t sac_Sequences[]; // each with its terminator; the first is empty
    static const char16_t sac_PropertyNames[];
    static const char16_t sac_BlockNames[];
    static const unsigned short sau_PropertyName[]; // where in the names
    static const unsigned short sau_BlockName[];
};
