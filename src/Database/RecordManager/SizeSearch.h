// Database/RecordManager/SizeSearch.h: which of many sizes are large enough. Internal.
#pragma once

#include <emmintrin.h>

#include <cstring>

// Which of 16 sizes are n_Need or more, as bits; sizes are below 2^31 and n_Need isn't 0.
inline unsigned n_FitsOneByOne(const unsigned* pcn_Sizes, unsigned n_Need)
{
    unsigned n_Fits = 0;
    for (unsigned n_At = 0; n_At < 16; ++n_At)
        n_Fits |= static_cast<unsigned>(pcn_Sizes[n_At] >= n_Need) << n_At;
    return n_Fits;
}

[[gnu::target("sse2")]] inline unsigned n_FitsBySSE2(const unsigned* pcn_Sizes, unsigned n_Need)
{
    const __m128i so_Below = _mm_set1_epi32(static_cast<int>(n_Need - 1));
    const __m128i* pcso_Sizes = reinterpret_cast<const __m128i*>(pcn_Sizes);
    __m128i aso_Fits[4];
    for (unsigned n_At = 0; n_At < 4; ++n_At)
        aso_Fits[n_At] = _mm_cmpgt_epi32(_mm_loadu_si128(pcso_Sizes + n_At), so_Below);
    const __m128i so_Low = _mm_packs_epi32(aso_Fits[0], aso_Fits[1]);
    const __m128i so_High = _mm_packs_epi32(aso_Fits[2], aso_Fits[3]);
    return static_cast<unsigned>(_mm_movemask_epi8(_mm_packs_epi16(so_Low, so_High)));
}

// Whether the processor has what the functions in SSE2 need; known to the compiler where every one
// has it.
inline bool b_HasSSE2()
{
#ifdef __SSE2__
    return true;
#else
    return __builtin_cpu_supports("sse2");
#endif
}

inline unsigned n_Fits(const unsigned* pcn_Sizes, unsigned n_Need)
{
    return b_HasSSE2() ? n_FitsBySSE2(pcn_Sizes, n_Need) : n_FitsOneByOne(pcn_Sizes, n_Need);
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
[[gnu::target("sse2")]] inline unsigned n_FirstFitBySSE2(const char* pcc_Pairs, unsigned n_Count,
                                                         unsigned n_Need)
{
    const __m128i so_Turn = _mm_set1_epi32(static_cast<int>(0x80000000));
    const __m128i so_Need = _mm_xor_si128(_mm_set1_epi32(static_cast<int>(n_Need)), so_Turn);
    unsigned n_At = 0;
    for (; n_At + 8 <= n_Count; n_At += 8) {
        const __m128i* pcso_Pairs = reinterpret_cast<const __m128i*>(pcc_Pairs + n_At * 8);
        __m128i aso_Small[2];
        for (unsigned n_Half = 0; n_Half < 2; ++n_Half) {
            const __m128 so_First = _mm_castsi128_ps(_mm_loadu_si128(pcso_Pairs + 2 * n_Half));
            const __m128 so_Second = _mm_castsi128_ps(_mm_loadu_si128(pcso_Pairs + 2 * n_Half + 1));
            const __m128i so_Lengths =
                _mm_castps_si128(_mm_shuffle_ps(so_First, so_Second, _MM_SHUFFLE(3, 1, 3, 1)));
            aso_Small[n_Half] = _mm_cmplt_epi32(_mm_xor_si128(so_Lengths, so_Turn), so_Need);
        }
        const __m128i so_Small = _mm_packs_epi32(aso_Small[0], aso_Small[1]);
        const unsigned n_Small = static_cast<unsigned>(_mm_movemask_epi8(so_Small));
        if (n_Small != 0xFFFF)
            return n_At + static_cast<unsigned>(__builtin_ctz(~n_Small)) / 2;
    }
    return n_FirstFitOneByOne(pcc_Pairs, n_Count, n_At, n_Need);
}

inline unsigned n_FirstFit(const char* pcc_Pairs, unsigned n_Count, unsigned n_Need)
{
    return b_HasSSE2() ? n_FirstFitBySSE2(pcc_Pairs, n_Count, n_Need)
                       : n_FirstFitOneByOne(pcc_Pairs, n_Count, 0, n_Need);
}
