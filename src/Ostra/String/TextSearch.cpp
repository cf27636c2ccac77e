// Ostra/String/TextSearch.cpp
#include <Ostra/String/TextSearch.h>

#include <Ostra/Frame/Counts.h>
#include <Ostra/String/TextOperations.h>
#include <Ostra/String/TextStrides.h>
#include <Ostra/String/TwoWay.h>

#include <bit>
#include <cstdint>
#include <cstring>

namespace
{
// Calls Stop for the place of each hit in order, until it is true; that place, or NONE.
template <class Unit, class Wanted, class Stop>
unsigned n_Search(const Unit* qc_Text, unsigned n_Count, Wanted so_Wanted, Stop b_Stop)
{
    using Strides = CT_TextStrides<Unit>;
    constexpr unsigned BITS = CT_Vector::sn_MarkBits(sizeof(Unit));
    constexpr std::uint64_t MARK = (1 << BITS) - 1;
    unsigned n = 0;
    while (n_Count - n >= Strides::BLOCK) {
        if (n % Strides::STRIDE == 0) {
            n += Strides::sn_Pass(qc_Text + n, n_Count - n, so_Wanted);
            if (n_Count - n < Strides::BLOCK)
                break;
        }
        for (std::uint64_t n8_Left = so_Wanted.n8_GetHits(qc_Text + n); n8_Left;) {
            const auto n_Place = static_cast<unsigned>(std::countr_zero(n8_Left)) / BITS;
            if (b_Stop(n + n_Place))
                return n + n_Place;
            n8_Left &= ~(MARK << n_Place * BITS);
        }
        n += Strides::BLOCK;
    }
    for (; n < n_Count; ++n)
        if (so_Wanted.b_IsHit(qc_Text + n) && b_Stop(n))
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
    const st_Ends<Unit> so_Wanted(qc_Find, n_Find);
    const unsigned n = n_Search(qc_Text, n_Count - n_Find + 1, so_Wanted, [&](unsigned n_At) {
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
