// Ostra/String/TextStrides.h: what is looked for in a text, many characters at a time. Internal.
#pragma once

#include <Ostra/Frame/Vector.h>

#include <cstdint>
#include <initializer_list>
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

    // The same of a wide block: adds its hits to some, all bits of a character that is one. A
    // terminator shows in the least of all characters.
    template <class Block>
    OSTRA_FOR_WIDE [[gnu::always_inline]] void v_LookWide(Block& ao_Hits, Block& ao_Least,
                                                          const Unit* qc_At) const
    {
        Block ao_Block;
        CT_Vector::sv_Load(ao_Block, qc_At);
        ao_Hits |= reinterpret_cast<Block>(ao_Block == Value(c_Find));
        ao_Least = ao_Least < ao_Block ? ao_Least : ao_Block;
    }
    // The same of the widest: a bit for each hit.
    template <class Block>
    OSTRA_FOR_WIDEST [[gnu::always_inline]] std::uint64_t n8_LookWidest(Block& ao_Least,
                                                                        const Unit* qc_At) const
    {
        Block ao_Block;
        CT_Vector::sv_Load(ao_Block, qc_At);
        ao_Least = ao_Least < ao_Block ? ao_Least : ao_Block;
        return CT_Vector::sn8_SameWidest(ao_Block, Block{} + Value(c_Find));
    }

    Unit c_Find;
};

// Three characters of a text at their places, the first one's among them, or a terminator there.
// Letters are frequent: of two that stand at their places there is one in nearly each stride.
template <class Unit>
struct st_Ends
{
    using Value = std::make_unsigned_t<Unit>;

    // Of a text of n_Find characters, at least one.
    st_Ends(const Unit* qc_Find, unsigned n_Find)
        : n_Middle(n_Find / 2),
          n_Last(n_Find - 1),
          c_First(qc_Find[0]),
          c_Last(qc_Find[n_Last])
    {
        unsigned n_Least = NO_HELP;
        for (unsigned n = 1; n < n_Last && n_Least; ++n)
            if (const unsigned n_Hits = n_Expect(qc_Find[n]); n_Hits < n_Least) {
                n_Least = n_Hits;
                n_Middle = n;
            }
        c_Middle = qc_Find[n_Middle];
    }

    [[gnu::always_inline]] bool b_IsHit(const Unit* qc_At) const
    {
        return ((*qc_At == c_First) & (qc_At[n_Middle] == c_Middle) & (qc_At[n_Last] == c_Last)) |
               !*qc_At;
    }
    [[gnu::always_inline]] std::uint64_t n8_GetHits(const Unit* qc_At) const
    {
        t_Block<Value> ao_First;
        t_Block<Value> ao_Middle;
        t_Block<Value> ao_Last;
        CT_Vector::sv_Load(ao_First, qc_At);
        CT_Vector::sv_Load(ao_Middle, qc_At + n_Middle);
        CT_Vector::sv_Load(ao_Last, qc_At + n_Last);
        return CT_Vector::sn8_Marks(((ao_First == Value(c_First)) & (ao_Middle == Value(c_Middle)) &
                                     (ao_Last == Value(c_Last))) |
                                    (ao_First == Value(0)));
    }

    template <class Block>
    OSTRA_FOR_WIDE [[gnu::always_inline]] void v_LookWide(Block& ao_Hits, Block& ao_Least,
                                                          const Unit* qc_At) const
    {
        Block ao_First;
        Block ao_Middle;
        Block ao_Last;
        CT_Vector::sv_Load(ao_First, qc_At);
        CT_Vector::sv_Load(ao_Middle, qc_At + n_Middle);
        CT_Vector::sv_Load(ao_Last, qc_At + n_Last);
        ao_Hits |=
            reinterpret_cast<Block>((ao_First == Value(c_First)) & (ao_Middle == Value(c_Middle)) &
                                    (ao_Last == Value(c_Last)));
        ao_Least = ao_Least < ao_First ? ao_Least : ao_First;
    }
    template <class Block>
    OSTRA_FOR_WIDEST [[gnu::always_inline]] std::uint64_t n8_LookWidest(Block& ao_Least,
                                                                        const Unit* qc_At) const
    {
        Block ao_First;
        Block ao_Middle;
        Block ao_Last;
        CT_Vector::sv_Load(ao_First, qc_At);
        CT_Vector::sv_Load(ao_Middle, qc_At + n_Middle);
        CT_Vector::sv_Load(ao_Last, qc_At + n_Last);
        ao_Least = ao_Least < ao_First ? ao_Least : ao_First;
        std::uint64_t n8_Hits = CT_Vector::sn8_SameWidest(ao_First, Block{} + Value(c_First));
        n8_Hits = CT_Vector::sn8_SameWidest(ao_Middle, Block{} + Value(c_Middle), n8_Hits);
        return CT_Vector::sn8_SameWidest(ao_Last, Block{} + Value(c_Last), n8_Hits);
    }

    unsigned n_Middle; // the places
    unsigned n_Last;
    Unit c_First;
    Unit c_Middle;
    Unit c_Last;

private:
    static constexpr unsigned NO_HELP = 2;

    // What a character in the middle helps: 0 lets the fewest places pass.
    unsigned n_Expect(Unit c) const
    {
        return c == c_First || c == c_Last ? NO_HELP : sb_IsFrequent(Value(c));
    }
    // A blank or a letter that is frequent in European languages.
    static bool sb_IsFrequent(unsigned n)
    {
        constexpr unsigned LETTERS = [] {
            unsigned n_Letters = 0;
            for (const char c : {'a', 'd', 'e', 'h', 'i', 'l', 'n', 'o', 'r', 's', 't', 'u'})
                n_Letters |= 1u << (c & 31);
            return n_Letters;
        }();
        return n == ' ' || (n >> 5 == 'a' >> 5 && LETTERS >> (n & 31) & 1);
    }
};

// Characters of a stride are looked at together, in as large pieces as the processor has; those of
// a block tell which of them it was.
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
        if (n_Count < STRIDE)
            return 0;
        return CT_Vector::sb_HasWidest() ? sn_PassWidest(qc_Text, n_Count, so_Wanted)
               : CT_Vector::sb_HasWide() ? sn_PassWide(qc_Text, n_Count, so_Wanted)
                                         : sn_PassPlain(qc_Text, n_Count, so_Wanted);
    }

    // The ways to it.
    template <class Wanted>
    OSTRA_FOR_WIDEST static unsigned sn_PassWidest(const Unit* qc_Text, unsigned n_Count,
                                                   Wanted so_Wanted)
    {
        using Block = t_Block<std::make_unsigned_t<Unit>, 64>;
        unsigned n = 0;
        for (; n_Count - n >= STRIDE; n += STRIDE) {
            Block ao_Least = ~Block{};
            const std::uint64_t n8_Hits =
                so_Wanted.n8_LookWidest(ao_Least, qc_Text + n) |
                so_Wanted.n8_LookWidest(ao_Least, qc_Text + n + STRIDE / 2);
            if (n8_Hits | CT_Vector::sn8_SameWidest(ao_Least, Block{}))
                break;
        }
        return n;
    }
    template <class Wanted>
    OSTRA_FOR_WIDE static unsigned sn_PassWide(const Unit* qc_Text, unsigned n_Count,
                                               Wanted so_Wanted)
    {
        using Block = t_Block<std::make_unsigned_t<Unit>, 32>;
        constexpr unsigned WIDE = sizeof(Block) / sizeof(Unit);
        unsigned n = 0;
        for (; n_Count - n >= STRIDE; n += STRIDE) {
            Block ao_Hits = {};
            Block ao_Least = ~ao_Hits;
            for (unsigned n_At = 0; n_At < STRIDE; n_At += WIDE)
                so_Wanted.v_LookWide(ao_Hits, ao_Least, qc_Text + n + n_At);
            ao_Hits |= reinterpret_cast<Block>(ao_Least == 0);
            if (!CT_Vector::sb_IsZeroWide(ao_Hits))
                break;
        }
        return n;
    }
    template <class Wanted>
    static unsigned sn_PassPlain(const Unit* qc_Text, unsigned n_Count, Wanted so_Wanted)
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
