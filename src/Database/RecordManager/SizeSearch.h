// Database/RecordManager/SizeSearch.h: which of many sizes are large enough. Internal.
#pragma once

#include <Ostra/Frame/Vector.h>

#include <cstring>

// Which of 16 sizes are n_Need or more, as bits; sizes are below 2^31 and n_Need isn't 0.
inline unsigned n_FitsOneByOne(const unsigned* pcn_Sizes, unsigned n_Need)
{
    unsigned n_Fits = 0;
    for (unsigned n_At = 0; n_At < 16; ++n_At)
        n_Fits |= static_cast<unsigned>(pcn_Sizes[n_At] >= n_Need) << n_At;
    return n_Fits;
}

OSTRA_FOR_MASKS inline unsigned n_FitsByMasks(const unsigned* pcn_Sizes, unsigned n_Need)
{
    t_Block<int> ao_Fits[4];
    for (unsigned n_At = 0; n_At < 4; ++n_At) {
        t_Block<int> ao_Sizes;
        CT_Vector::sv_Load(ao_Sizes, pcn_Sizes + 4 * n_At);
        ao_Fits[n_At] = ao_Sizes > static_cast<int>(n_Need - 1);
    }
    return CT_Vector::sn_Mask(ao_Fits);
}

inline unsigned n_Fits(const unsigned* pcn_Sizes, unsigned n_Need)
{
    return CT_Vector::sb_HasMasks() ? n_FitsByMasks(pcn_Sizes, n_Need)
                                    : n_FitsOneByOne(pcn_Sizes, n_Need);
}

// The free table: pairs of offset and length, at any address. The number of the first pair with
// that length or more, counted from 0; n_Count for none.
inline unsigned n_FirstFitOneByOne(const char* pcc_Pairs, unsigned n_Count, unsigned n_From,
                                   unsigned n_Need)
{
    for (; n_From < n_Count; ++n_From) {
        unsigned n_Length;
        std::memcpy(&n_Length, pcc_Pairs + n_From * 8 + 4, sizeof n_Length);
        if (n_Length >= n_Need)
            return n_From;
    }
    return n_Count;
}

// Comparisons are of signed numbers: the highest bit is turned round.
OSTRA_FOR_MASKS inline unsigned n_FirstFitByMasks(const char* pcc_Pairs, unsigned n_Count,
                                                  unsigned n_Need)
{
    constexpr int TURN = static_cast<int>(0x80000000);
    const int i_Need = static_cast<int>(n_Need) ^ TURN;
    unsigned n_At = 0;
    for (; n_At + 8 <= n_Count; n_At += 8) {
        const char* pcc_At = pcc_Pairs + n_At * 8;
        t_Block<int> ao_Small[2];
        for (unsigned n_Half = 0; n_Half < 2; ++n_Half) {
            t_Block<int> ao_First, ao_Second;
            CT_Vector::sv_Load(ao_First, pcc_At + 32 * n_Half);
            CT_Vector::sv_Load(ao_Second, pcc_At + 32 * n_Half + 16);
            const auto ao_Lengths = __builtin_shufflevector(ao_First, ao_Second, 1, 3, 5, 7);
            ao_Small[n_Half] = (ao_Lengths ^ TURN) < i_Need;
        }
        const unsigned n_Small = CT_Vector::sn_Mask(ao_Small);
        if (n_Small != 0xFFFF)
            return n_At + static_cast<unsigned>(__builtin_ctz(~n_Small)) / 2;
    }
    return n_FirstFitOneByOne(pcc_Pairs, n_Count, n_At, n_Need);
}

inline unsigned n_FirstFit(const char* pcc_Pairs, unsigned n_Count, unsigned n_Need)
{
    return CT_Vector::sb_HasMasks() ? n_FirstFitByMasks(pcc_Pairs, n_Count, n_Need)
                                    : n_FirstFitOneByOne(pcc_Pairs, n_Count, 0, n_Need);
}
