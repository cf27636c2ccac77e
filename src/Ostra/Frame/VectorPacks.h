// Ostra/Frame/VectorPacks.h: the widest blocks where the processor packs bytes. Internal.
//
// Some processors put the bytes of a register that are wanted side by side, and write just these. A
// block is 64 bytes; functions for them are called where CT_VectorPacks says that they may be. Like
// Vector.h this header names instructions.
#pragma once

#include <Ostra/Frame/Vector.h>

#include <array>
#include <bit>

#if OSTRA_HAS_WIDEST
#include <immintrin.h>
#define OSTRA_FOR_PACKS [[gnu::target("avx512bw,avx512vl,avx512vbmi,avx512vbmi2,bmi2,popcnt")]]
#else
#define OSTRA_FOR_PACKS
#endif

class CT_VectorPacks
{
public:
    using Bytes = t_Block<unsigned char, 64>;
    using Units = t_Block<unsigned short, 64>;
    using Numbers = t_Block<unsigned, 64>;
    static constexpr unsigned UNITS = 32;

    static bool sb_Has()
    {
#if OSTRA_HAS_WIDEST
        return CT_Vector::sb_HasWidest() && __builtin_cpu_supports("avx512vl") &&
               __builtin_cpu_supports("avx512vbmi2") && __builtin_cpu_supports("bmi2");
#else
        return false;
#endif
    }

    // The first n_Count units, and zeros; nothing behind them is read.
    OSTRA_FOR_PACKS [[gnu::always_inline]] static void
    sv_Load(Units& o_Units, const unsigned short* pcu_From, unsigned n_Count)
    {
#if OSTRA_HAS_WIDEST
        o_Units = reinterpret_cast<Units>(_mm512_maskz_loadu_epi16(
            static_cast<__mmask32>(sn8_First(n_Count)), static_cast<const void*>(pcu_From)));
#else
        o_Units = Units{};
        std::memcpy(&o_Units, pcu_From, 2 * n_Count);
#endif
    }
    // A bit for each unit above a limit, the first one's lowest.
    OSTRA_FOR_PACKS [[gnu::always_inline]] static unsigned sn_Above(const Units& o_Units,
                                                                    unsigned short u_Limit)
    {
#if OSTRA_HAS_WIDEST
        return _mm512_cmpgt_epu16_mask(reinterpret_cast<__m512i>(o_Units),
                                       _mm512_set1_epi16(static_cast<short>(u_Limit)));
#else
        unsigned n_Mask = 0;
        for (unsigned n = 0; n < UNITS; ++n)
            n_Mask |= unsigned(o_Units[n] > u_Limit) << n;
        return n_Mask;
#endif
    }
    // The units of the first half, or of the second, as numbers.
    template <int HALF>
    OSTRA_FOR_PACKS [[gnu::always_inline]] static void sv_Widen(Numbers& o_Numbers,
                                                                const Units& o_Units)
    {
#if OSTRA_HAS_WIDEST
        const auto ao_Half =
            _mm512_maskz_extracti64x4_epi64(0xFF, reinterpret_cast<__m512i>(o_Units), HALF);
        o_Numbers = reinterpret_cast<Numbers>(_mm512_maskz_cvtepu16_epi32(0xFFFF, ao_Half));
#else
        for (unsigned n = 0; n < UNITS / 2; ++n)
            o_Numbers[n] = o_Units[n + HALF * UNITS / 2];
#endif
    }
    // The low bytes of the units.
    OSTRA_FOR_PACKS [[gnu::always_inline]] static void sv_Narrow(t_Block<unsigned char, 32>& o_Low,
                                                                 const Units& o_Units)
    {
#if OSTRA_HAS_WIDEST
        o_Low = reinterpret_cast<t_Block<unsigned char, 32>>(
            _mm512_maskz_cvtepi16_epi8(0xFFFFFFFF, reinterpret_cast<__m512i>(o_Units)));
#else
        for (unsigned n = 0; n < UNITS; ++n)
            o_Low[n] = static_cast<unsigned char>(o_Units[n]);
#endif
    }
    // Writes the bytes that aren't zero side by side, and nothing behind them; returns their end.
    template <class t>
    OSTRA_FOR_PACKS [[gnu::always_inline]] static char* spc_StoreNonZero(char* pc_To,
                                                                         const t& o_Block)
    {
        static_assert(sizeof(o_Block) == 64);
#if OSTRA_HAS_WIDEST
        const auto ao_Bytes = reinterpret_cast<__m512i>(o_Block);
        const std::uint64_t n8_Wanted = _mm512_test_epi8_mask(ao_Bytes, ao_Bytes);
        const auto n_Count = static_cast<unsigned>(std::popcount(n8_Wanted));
        _mm512_mask_storeu_epi8(pc_To, sn8_First(n_Count),
                                _mm512_maskz_compress_epi8(n8_Wanted, ao_Bytes));
        return pc_To + n_Count;
#else
        const auto ao_Bytes = reinterpret_cast<Bytes>(o_Block);
        for (unsigned n = 0; n < sizeof(o_Block); ++n)
            if (ao_Bytes[n])
                *pc_To++ = static_cast<char>(ao_Bytes[n]);
        return pc_To;
#endif
    }

    // The bits of the first 24 units, the highest first, by sixes: each gives the character that it
    // numbers in a table of 64.
    OSTRA_FOR_PACKS [[gnu::always_inline]] static void
    sv_Sextets(Bytes& o_Out, const Units& o_Units, const char* pcc_Table)
    {
#if OSTRA_HAS_WIDEST
        Bytes ao_Places, ao_Table;
        CT_Vector::sv_Load(ao_Places, THREES.data());
        CT_Vector::sv_Load(ao_Table, pcc_Table);
        // One compiler warns of the plain forms of these functions.
        constexpr std::uint64_t EACH = ~std::uint64_t();
        const auto ao_Threes = _mm512_maskz_permutexvar_epi8(
            EACH, reinterpret_cast<__m512i>(ao_Places), reinterpret_cast<__m512i>(o_Units));
        // Each number of 32 bits has the second byte, the first, the third and the second again.
        const auto ao_Sextets = _mm512_maskz_multishift_epi64_epi8(
            EACH, _mm512_set1_epi64(0x3036242A1016040A), ao_Threes);
        o_Out = reinterpret_cast<Bytes>(
            _mm512_maskz_permutexvar_epi8(EACH, ao_Sextets, reinterpret_cast<__m512i>(ao_Table)));
#else
        for (unsigned n = 0; n < sizeof(o_Out); ++n) {
            const unsigned n_At = 6 * n / 16;
            const unsigned n_Next = n_At + 1 < 24 ? o_Units[n_At + 1] : 0;
            const unsigned n_Bits = unsigned(o_Units[n_At]) << 16 | n_Next;
            o_Out[n] = static_cast<unsigned char>(pcc_Table[n_Bits << 6 * n % 16 >> 26]);
        }
#endif
    }
    OSTRA_FOR_PACKS [[gnu::always_inline]] static void sv_Store(char* pc_To, const Bytes& o_Bytes,
                                                                unsigned n_Count)
    {
#if OSTRA_HAS_WIDEST
        _mm512_mask_storeu_epi8(pc_To, sn8_First(n_Count), reinterpret_cast<__m512i>(o_Bytes));
#else
        std::memcpy(pc_To, &o_Bytes, n_Count);
#endif
    }

private:
#if OSTRA_HAS_WIDEST
    // Where each three bytes of units stand whose higher byte comes first.
    static constexpr std::array<unsigned char, 64> THREES = [] {
        std::array<unsigned char, 64> o{};
        for (unsigned n = 0; n < 16; ++n) {
            o[4 * n] = o[4 * n + 3] = static_cast<unsigned char>((3 * n + 1) ^ 1);
            o[4 * n + 1] = static_cast<unsigned char>((3 * n) ^ 1);
            o[4 * n + 2] = static_cast<unsigned char>((3 * n + 2) ^ 1);
        }
        return o;
    }();
#endif
    // The lowest bits, up to 64.
    OSTRA_FOR_PACKS [[gnu::always_inline]] static std::uint64_t sn8_First(unsigned n_Count)
    {
#if OSTRA_HAS_WIDEST
        return _bzhi_u64(~std::uint64_t(), n_Count);
#else
        return n_Count < 64 ? (std::uint64_t(1) << n_Count) - 1 : ~std::uint64_t();
#endif
    }
};
