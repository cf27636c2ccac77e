// Ostra/String/TextSearch.cpp
#include <Ostra/String/TextSearch.h>

#include <Ostra/String/TextOperations.h>
#include <Ostra/String/TwoWay.h>

#include <bit>
#include <cstdint>
#include <cstring>
#include <type_traits>

namespace
{
template <class Unit>
using Value = std::make_unsigned_t<Unit>;

constexpr unsigned NONE = 0xFFFFFFFF;

// Characters of a stride are looked at together, in as large pieces as the instructions of the
// caller allow; those of a block tell which of them it was.
constexpr unsigned STRIDE_BYTES = 128;
constexpr unsigned BLOCK_BYTES = 16;
template <class Unit>
constexpr unsigned STRIDE = STRIDE_BYTES / sizeof(Unit);
template <class Unit>
constexpr unsigned BLOCK = BLOCK_BYTES / sizeof(Unit);

// The hits in a block, all bits of a character that is one.
typedef std::uint64_t Hits __attribute__((vector_size(BLOCK_BYTES)));
constexpr unsigned HALF_BITS = 64;
constexpr unsigned HALVES = BLOCK_BYTES * 8 / HALF_BITS;

template <class Unit>
struct st_Block
{
    typedef Value<Unit> Block __attribute__((vector_size(BLOCK_BYTES)));
};

template <class Block, class Unit>
[[gnu::always_inline]] inline void v_Load(Block& aBlock, const Unit* qc_Text)
{
    std::memcpy(&aBlock, qc_Text, sizeof(aBlock));
}

// ---- What is looked for -----------------------------------------------------------------------

// One character, or a terminator.
template <class Unit>
struct st_Character
{
    [[gnu::always_inline]] bool b_IsHit(const Unit* qc_At) const
    {
        return (*qc_At == c_Find) | !*qc_At;
    }
    [[gnu::always_inline]] void v_GetHits(Hits& aHits, const Unit* qc_At) const
    {
        typename st_Block<Unit>::Block aBlock;
        v_Load(aBlock, qc_At);
        const auto aEqual = (aBlock == Value<Unit>(c_Find)) | (aBlock == Value<Unit>(0));
        std::memcpy(&aHits, &aEqual, sizeof(aHits));
    }

    Unit c_Find;
};

// The first and the last character of a text at their places, or a terminator at the first one's.
template <class Unit>
struct st_Ends
{
    [[gnu::always_inline]] bool b_IsHit(const Unit* qc_At) const
    {
        return ((*qc_At == c_First) & (qc_At[n_Last] == c_Last)) | !*qc_At;
    }
    [[gnu::always_inline]] void v_GetHits(Hits& aHits, const Unit* qc_At) const
    {
        typename st_Block<Unit>::Block aFirst;
        typename st_Block<Unit>::Block aLast;
        v_Load(aFirst, qc_At);
        v_Load(aLast, qc_At + n_Last);
        const auto aEqual = ((aFirst == Value<Unit>(c_First)) & (aLast == Value<Unit>(c_Last))) |
                            (aFirst == Value<Unit>(0));
        std::memcpy(&aHits, &aEqual, sizeof(aHits));
    }

    Unit c_First;
    Unit c_Last;
    unsigned n_Last; // the last character's place
};

// ---- Strides ----------------------------------------------------------------------------------

// How many characters lie in strides without a hit.
template <class Unit, class Wanted>
[[gnu::always_inline]] inline unsigned n_Pass(const Unit* qc_Text, unsigned n_Count, Wanted so)
{
    unsigned n = 0;
    for (; n_Count - n >= STRIDE<Unit>; n += STRIDE<Unit>) {
        Value<Unit> n_Any = 0;
        for (unsigned n_At = 0; n_At < STRIDE<Unit>; ++n_At)
            n_Any |= so.b_IsHit(qc_Text + n + n_At) ? Value<Unit>(-1) : Value<Unit>(0);
        if (n_Any)
            break;
    }
    return n;
}

template <class Unit, class Wanted>
[[gnu::target("avx2")]] unsigned n_PassByAVX2(const Unit* qc_Text, unsigned n_Count, Wanted so)
{
    return n_Pass(qc_Text, n_Count, so);
}

template <class Unit, class Wanted>
unsigned n_PassStrides(const Unit* qc_Text, unsigned n_Count, Wanted so)
{
    return __builtin_cpu_supports("avx2") ? n_PassByAVX2(qc_Text, n_Count, so)
                                          : n_Pass(qc_Text, n_Count, so);
}

// Calls Stop for the place of each hit in order, until it is true; that place, or NONE.
template <class Unit, class Wanted, class Stop>
unsigned n_Search(const Unit* qc_Text, unsigned n_Count, Wanted so, Stop b_Stop)
{
    constexpr unsigned BITS = sizeof(Unit) * 8;
    unsigned n = 0;
    while (n_Count - n >= BLOCK<Unit>) {
        if (n % STRIDE<Unit> == 0) {
            n += n_PassStrides(qc_Text + n, n_Count - n, so);
            if (n_Count - n < BLOCK<Unit>)
                break;
        }
        Hits aHits;
        so.v_GetHits(aHits, qc_Text + n);
        for (unsigned n_Half = 0; n_Half < HALVES; ++n_Half)
            for (std::uint64_t n8_Left = aHits[n_Half]; n8_Left;) {
                const auto n_Place = static_cast<unsigned>(std::countr_zero(n8_Left)) / BITS;
                const unsigned n_At = n + n_Half * (HALF_BITS / BITS) + n_Place;
                if (b_Stop(n_At))
                    return n_At;
                n8_Left &= ~(std::uint64_t(Value<Unit>(-1)) << n_Place * BITS);
            }
        n += BLOCK<Unit>;
    }
    for (; n < n_Count; ++n)
        if (so.b_IsHit(qc_Text + n) && b_Stop(n))
            return n;
    return NONE;
}
} // namespace

template <class Unit>
unsigned CT_TextSearch<Unit>::sn_Find(const Unit* qc_Text, unsigned n_Count, Unit c_Find)
{
    const unsigned n =
        n_Search(qc_Text, n_Count, st_Character<Unit>{c_Find}, [](unsigned) { return true; });
    return n != NONE && qc_Text[n] == c_Find ? n : NONE;
}

template <class Unit>
unsigned CT_TextSearch<Unit>::sn_Find(const Unit* qc_Text, unsigned n_Count, const Unit* qc_Find,
                                      unsigned n_Find)
{
    if (n_Count < n_Find)
        return NONE;
    // Comparing at a place may be for nothing, but not more often than the text pays for.
    constexpr std::uint64_t PATIENCE = 8;
    std::uint64_t n8_Compared = 0;
    bool b_Found = false;
    const st_Ends<Unit> so{qc_Find[0], qc_Find[n_Find - 1], n_Find - 1};
    const unsigned n = n_Search(qc_Text, n_Count - n_Find + 1, so, [&](unsigned n_At) {
        if (!qc_Text[n_At])
            return true;
        b_Found = !std::memcmp(qc_Text + n_At, qc_Find, n_Find * sizeof(Unit));
        n8_Compared += n_Find;
        return b_Found || n8_Compared > PATIENCE * (std::uint64_t(n_At) + n_Find);
    });
    if (b_Found || n == NONE || !qc_Text[n])
        return b_Found ? n : NONE;
    const unsigned n_Rest = CT_TwoWay<Unit>::sn_Find(qc_Text + n, n_Count - n, qc_Find, n_Find);
    if (n_Rest == NONE || CT_TextOperations<Unit>::sn_Length(qc_Text + n, n_Rest) < n_Rest)
        return NONE;
    return n + n_Rest;
}

template class CT_TextSearch<char>;
template class CT_TextSearch<unsigned short>;
