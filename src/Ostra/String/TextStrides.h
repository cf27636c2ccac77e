// Ostra/String/TextStrides.h: what is looked for in a text, many characters at a time. Internal.
#pragma once

#include <Ostra/Frame/Vector.h>

#include <cstdint>
#include <type_traits>

// One character, or a terminator.
template <class Unit>
struct st_Character
{
    using Value = std::make_unsigned_t<Unit>;

    [[gnu::always_inline]] bool b_IsHit(const Unit* qc_At) const
    {
        return (*qc_At == c_Find) | !*qc_At;
    }
    // Those of the characters of a block that are hits, as marks.
    [[gnu::always_inline]] std::uint64_t n8_GetHits(const Unit* qc_At) const
    {
        t_Block<Value> ao_Block;
        CT_Vector::sv_Load(ao_Block, qc_At);
        return CT_Vector::sn8_Marks((ao_Block == Value(c_Find)) | (ao_Block == Value(0)));
    }

    Unit c_Find;
};

// The first and the last character of a text at their places, or a terminator at the first one's.
template <class Unit>
struct st_Ends
{
    using Value = std::make_unsigned_t<Unit>;

    [[gnu::always_inline]] bool b_IsHit(const Unit* qc_At) const
    {
        return ((*qc_At == c_First) & (qc_At[n_Last] == c_Last)) | !*qc_At;
    }
    [[gnu::always_inline]] std::uint64_t n8_GetHits(const Unit* qc_At) const
    {
        t_Block<Value> ao_First;
        t_Block<Value> ao_Last;
        CT_Vector::sv_Load(ao_First, qc_At);
        CT_Vector::sv_Load(ao_Last, qc_At + n_Last);
        return CT_Vector::sn8_Marks(((ao_First == Value(c_First)) & (ao_Last == Value(c_Last))) |
                                    (ao_First == Value(0)));
    }

    Unit c_First;
    Unit c_Last;
    unsigned n_Last; // the last character's place
};

// Characters of a stride are looked at together, in as large pieces as the instructions of the
// caller allow; those of a block tell which of them it was.
template <class Unit>
class CT_TextStrides
{
public:
    static constexpr unsigned STRIDE = 128 / sizeof(Unit);
    static constexpr unsigned BLOCK = 16 / sizeof(Unit);

    // How many characters lie in strides without a hit.
    template <class Wanted>
    static unsigned sn_Pass(const Unit* qc_Text, unsigned n_Count, Wanted so_Wanted)
    {
        return CT_Vector::sb_HasWide() ? sn_PassWide(qc_Text, n_Count, so_Wanted)
                                       : sn_PassPlain(qc_Text, n_Count, so_Wanted);
    }

    // The ways to it.
    template <class Wanted>
    OSTRA_FOR_WIDE static unsigned sn_PassWide(const Unit* qc_Text, unsigned n_Count,
                                               Wanted so_Wanted)
    {
        return sn_PassPlain(qc_Text, n_Count, so_Wanted);
    }
    template <class Wanted>
    [[gnu::always_inline]] static unsigned sn_PassPlain(const Unit* qc_Text, unsigned n_Count,
                                                        Wanted so_Wanted)
    {
        using Value = std::make_unsigned_t<Unit>;
        unsigned n = 0;
        for (; n_Count - n >= STRIDE; n += STRIDE) {
            Value n_Any = 0;
            for (unsigned n_At = 0; n_At < STRIDE; ++n_At)
                n_Any |= so_Wanted.b_IsHit(qc_Text + n + n_At) ? Value(-1) : Value(0);
            if (n_Any)
                break;
        }
        return n;
    }
};
