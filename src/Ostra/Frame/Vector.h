// Ostra/Frame/Vector.h: many characters or numbers at a time, by what the processor has. Internal.
//
// A block is a vector of the compiler's. It lies in a register of 16 bytes where there are such,
// and is worked at in smaller pieces elsewhere: code with blocks is right on every processor. Wide
// ones have 32 bytes, the widest 64; functions for them are called where registers are as wide.
// Only this header and VectorPacks.h name processors and their instructions.
#pragma once

#include <cstdint>
#include <cstring>

#if defined(__x86_64__) || defined(__i386__)
#include <emmintrin.h>
#define OSTRA_HAS_X86 1
// In front of a function: it is compiled for these instructions, and may be called only where
// CT_Vector says that the processor has them.
#define OSTRA_FOR_MASKS [[gnu::target("sse2")]]
#define OSTRA_FOR_WIDE [[gnu::target("avx2")]]
#else
#define OSTRA_HAS_X86 0
#define OSTRA_FOR_MASKS
#define OSTRA_FOR_WIDE
#endif
// What g++ makes of some steps of wide blocks is slow; it has functions for them.
#if OSTRA_HAS_X86 && !defined(__clang__)
#define OSTRA_HAS_OWN_WIDE 1
#else
#define OSTRA_HAS_OWN_WIDE 0
#endif
#if defined(__x86_64__)
#define OSTRA_HAS_WIDEST 1
#define OSTRA_FOR_WIDEST [[gnu::target("avx512bw")]]
#else
#define OSTRA_HAS_WIDEST 0
#define OSTRA_FOR_WIDEST
#endif

// n_Bytes of numbers of one type.
template <class t_Number, unsigned n_Bytes>
struct st_Block
{
    typedef t_Number Type __attribute__((vector_size(n_Bytes)));
};
template <class t_Number, unsigned n_Bytes = 16>
using t_Block = typename st_Block<t_Number, n_Bytes>::Type;

// Blocks are handed over by reference: as values they have no place everywhere. Comparing blocks
// gives all bits of a number that passes, and none of one that doesn't.
class CT_Vector
{
public:
    // ---- What the processor has ---------------------------------------------------------------

    // Whether masks are cheap: known to the compiler where every processor has them. What is too
    // short for a choice at run time asks this.
#if defined(__SSE2__) || defined(__aarch64__)
    static constexpr bool sb_Masks = true;
#else
    static constexpr bool sb_Masks = false;
#endif
    // Whether one instruction makes them, known to the compiler as well.
    static constexpr bool sb_FastMasks = OSTRA_HAS_X86 && sb_Masks;
    static bool sb_HasMasks()
    {
#if OSTRA_HAS_X86
        return sb_Masks || __builtin_cpu_supports("sse2");
#else
        return sb_Masks;
#endif
    }
    // Whether a function for wide registers, of 32 bytes, may be called. It is one whose loops the
    // compiler makes wide by itself.
    static bool sb_HasWide()
    {
#if OSTRA_HAS_X86
        return __builtin_cpu_supports("avx2");
#else
        return false;
#endif
    }

    // The same for registers of 64 bytes whose comparisons give a bit a number. Not on the first
    // processors that had such: they ran slower for a while behind each use.
    static bool sb_HasWidest()
    {
#if OSTRA_HAS_WIDEST
        return __builtin_cpu_supports("avx512bw") && __builtin_cpu_supports("avx512vbmi");
#else
        return false;
#endif
    }

    // ---- Memory, at any address ---------------------------------------------------------------

    template <class t>
    [[gnu::always_inline]] static void sv_Load(t& o_Block, const void* pcv_From)
    {
        std::memcpy(&o_Block, pcv_From, sizeof(o_Block));
    }
    template <class t>
    [[gnu::always_inline]] static void sv_Store(void* pv_To, const t& o_Block)
    {
        std::memcpy(pv_To, &o_Block, sizeof(o_Block));
    }

    // ---- Of a block of 16 bytes ---------------------------------------------------------------

    template <class t>
    [[gnu::always_inline]] static bool sb_IsZero(const t& o_Block)
    {
        static_assert(sizeof(o_Block) == 16);
        const auto ao_Halves = reinterpret_cast<t_Block<std::uint64_t>>(o_Block);
        return !(ao_Halves[0] | ao_Halves[1]);
    }

    // ---- Of a block of 32 bytes, where registers are wide --------------------------------------

    // Only what the compiler makes of such blocks there is fast.
    template <class t>
    OSTRA_FOR_WIDE [[gnu::always_inline]] static bool sb_IsZeroWide(const t& o_Block)
    {
        static_assert(sizeof(o_Block) == 32);
        const auto ao_Words = reinterpret_cast<t_Block<long long, 32>>(o_Block);
#if OSTRA_HAS_X86
        return __builtin_ia32_ptestz256(ao_Words, ao_Words);
#else
        return !(ao_Words[0] | ao_Words[1] | ao_Words[2] | ao_Words[3]);
#endif
    }
    // The highest bit of each byte, the first byte's lowest.
    template <class t>
    OSTRA_FOR_WIDE [[gnu::always_inline]] static unsigned sn_MaskWide(const t& o_Block)
    {
        static_assert(sizeof(o_Block) == 32);
#if OSTRA_HAS_X86
        return static_cast<unsigned>(
            __builtin_ia32_pmovmskb256(reinterpret_cast<t_Block<char, 32>>(o_Block)));
#else
        const auto ao_Words = reinterpret_cast<t_Block<std::uint64_t, 32>>(o_Block);
        return sn_TopBits(ao_Words[0]) | sn_TopBits(ao_Words[1]) << 8 |
               sn_TopBits(ao_Words[2]) << 16 | sn_TopBits(ao_Words[3]) << 24;
#endif
    }

    // The units of two blocks as bytes; 255 for one that is larger.
    template <class t>
    OSTRA_FOR_WIDE [[gnu::always_inline]] static void
    sv_NarrowWide(t_Block<unsigned char, 32>& o_Bytes, const t& o_Low, const t& o_High)
    {
        static_assert(sizeof(o_Low) == 32 && sizeof(o_Low[0]) == 2);
        t o_LowBytes, o_HighBytes;
        sv_MinWide(o_LowBytes, o_Low, t{} + 255);
        sv_MinWide(o_HighBytes, o_High, t{} + 255);
#if OSTRA_HAS_X86
        typedef t_Block<short, 32> Units;
        const auto ao_Bytes = __builtin_ia32_packuswb256(reinterpret_cast<Units>(o_LowBytes),
                                                         reinterpret_cast<Units>(o_HighBytes));
        // Each half has come from the halves of both.
        o_Bytes = reinterpret_cast<t_Block<unsigned char, 32>>(
            __builtin_ia32_permdi256(reinterpret_cast<t_Block<long long, 32>>(ao_Bytes), 0xD8));
#else
        for (unsigned n = 0; n < 16; ++n) {
            o_Bytes[n] = static_cast<unsigned char>(o_LowBytes[n]);
            o_Bytes[16 + n] = static_cast<unsigned char>(o_HighBytes[n]);
        }
#endif
    }
    // Writes 16 bytes as units.
    OSTRA_FOR_WIDE [[gnu::always_inline]] static void sv_Widen(unsigned short* pu_To,
                                                               const char* pcc_From)
    {
        t_Block<unsigned char> ao_Bytes;
        sv_Load(ao_Bytes, pcc_From);
#if OSTRA_HAS_OWN_WIDE
        sv_Store(pu_To, __builtin_ia32_pmovzxbw256(reinterpret_cast<t_Block<char>>(ao_Bytes)));
#else
        sv_Store(pu_To, __builtin_convertvector(ao_Bytes, t_Block<unsigned short, 32>));
#endif
    }

    // ---- Of a block of 64 bytes, where registers are that wide ---------------------------------

    // A bit for each byte or 16-bit unit that is the same in both, of those that are marked.
    template <class t>
    OSTRA_FOR_WIDEST [[gnu::always_inline]] static std::uint64_t
    sn8_SameWidest(const t& o_Block, const t& o_Other, std::uint64_t n8_Marked = ~std::uint64_t())
    {
        static_assert(sizeof(o_Block) == 64 && sizeof(o_Block[0]) <= 2);
#if OSTRA_HAS_WIDEST
        typedef t_Block<char, 64> Bytes;
        typedef t_Block<short, 64> Units;
        if constexpr (sizeof(o_Block[0]) == 1)
            return __builtin_ia32_cmpb512_mask(reinterpret_cast<Bytes>(o_Block),
                                               reinterpret_cast<Bytes>(o_Other), 0, n8_Marked);
        else
            return __builtin_ia32_cmpw512_mask(reinterpret_cast<Units>(o_Block),
                                               reinterpret_cast<Units>(o_Other), 0,
                                               static_cast<std::uint32_t>(n8_Marked));
#else
        std::uint64_t n8_Same = 0;
        for (unsigned n = 0; n < 64 / sizeof(o_Block[0]); ++n)
            n8_Same |= std::uint64_t(o_Block[n] == o_Other[n]) << n;
        return n8_Same & n8_Marked;
#endif
    }

    // ---- What a comparison has given -----------------------------------------------------------

    // What a comparison of bytes or of 16-bit units has given, in a number: four bits for a byte,
    // eight for a unit, the first ones lowest. Not for larger numbers.
    template <class t>
    [[gnu::always_inline]] static std::uint64_t sn8_Marks(const t& o_Passed)
    {
        static_assert(sizeof(o_Passed) == 16 && sizeof(o_Passed[0]) <= 2);
        // The middle of a pair of bytes has bits of both.
        const auto ao_Pairs = reinterpret_cast<t_Block<std::uint16_t>>(o_Passed) >> 4;
        const auto ao_Marks = __builtin_convertvector(ao_Pairs, t_Block<std::uint8_t, 8>);
        std::uint64_t n8_Marks;
        sv_Store(&n8_Marks, ao_Marks);
        return n8_Marks;
    }
    // Bits of a number of n_Size bytes in it.
    static constexpr unsigned sn_MarkBits(unsigned n_Size)
    {
        return 4 * n_Size;
    }

    // The highest bit of each byte, the first byte's lowest.
    template <class t>
    OSTRA_FOR_MASKS [[gnu::always_inline]] static unsigned sn_Mask(const t& o_Block)
    {
        static_assert(sizeof(o_Block) == 16);
#if OSTRA_HAS_X86
        return static_cast<unsigned>(_mm_movemask_epi8(reinterpret_cast<__m128i>(o_Block)));
#else
        return sn_PlainMask(o_Block);
#endif
    }
    // The same of numbers of 32 bits that a comparison has given: 16 bits for two or four blocks.
    OSTRA_FOR_MASKS [[gnu::always_inline]] static unsigned
    sn_Mask(const t_Block<int> (&ao_Passed)[2])
    {
#if OSTRA_HAS_X86
        const auto pcv_Passed = reinterpret_cast<const __m128i*>(ao_Passed);
        return sn_Mask(_mm_packs_epi32(pcv_Passed[0], pcv_Passed[1]));
#else
        return sn_PlainMask(ao_Passed);
#endif
    }
    OSTRA_FOR_MASKS [[gnu::always_inline]] static unsigned
    sn_Mask(const t_Block<int> (&ao_Passed)[4])
    {
#if OSTRA_HAS_X86
        const auto pcv_Passed = reinterpret_cast<const __m128i*>(ao_Passed);
        return sn_Mask(_mm_packs_epi16(_mm_packs_epi32(pcv_Passed[0], pcv_Passed[1]),
                                       _mm_packs_epi32(pcv_Passed[2], pcv_Passed[3])));
#else
        return sn_PlainMask(ao_Passed);
#endif
    }

    // The plain ways to the same.
    template <class t>
    static unsigned sn_PlainMask(const t& o_Block)
    {
        const auto ao_Halves = reinterpret_cast<t_Block<std::uint64_t>>(o_Block);
        return sn_TopBits(ao_Halves[0]) | sn_TopBits(ao_Halves[1]) << 8;
    }
    template <unsigned n_Blocks>
    static unsigned sn_PlainMask(const t_Block<int> (&ao_Passed)[n_Blocks])
    {
        constexpr unsigned BITS = 4 / n_Blocks;
        unsigned n_Mask = 0;
        for (unsigned n = 0; n < 4 * n_Blocks; ++n)
            n_Mask |= (ao_Passed[n / 4][n % 4] & ((1u << BITS) - 1)) << n * BITS;
        return n_Mask;
    }

private:
    // The smaller of each two units. One compiler has to be told, another sees it by itself.
    template <class t>
    OSTRA_FOR_WIDE [[gnu::always_inline]] static void sv_MinWide(t& o_Min, const t& o_Left,
                                                                 const t& o_Right)
    {
#if OSTRA_HAS_OWN_WIDE
        typedef t_Block<short, 32> Units;
        o_Min = reinterpret_cast<t>(__builtin_ia32_pminuw256(reinterpret_cast<Units>(o_Left),
                                                             reinterpret_cast<Units>(o_Right)));
#else
        o_Min = o_Left < o_Right ? o_Left : o_Right;
#endif
    }

    // The highest bits of eight bytes, the lowest byte's first: each is moved to its place in the
    // highest byte, and no two sums meet.
    static unsigned sn_TopBits(std::uint64_t n8_Bytes)
    {
        const std::uint64_t n8_Tops = n8_Bytes >> 7 & 0x0101010101010101;
        return static_cast<unsigned>(n8_Tops * 0x0102040810204080 >> 56);
    }
};
