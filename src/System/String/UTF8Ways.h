// System/String/UTF8Ways.h: the ways in which the coder of UTF-8 passes over a text. Internal.
//
// Many characters are copied at a time, also where fewer of them are ASCII: what follows writes
// over the others. What they leave behind can be written over only where enough of the input is
// still to come; the caller codes the rest, one by one.
#pragma once

#include <Ostra/Frame/Vector.h>
#include <Ostra/Frame/VectorPacks.h>
#include <System/String/Runs.h>
#include <System/String/Sequences.h>

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>

class CT_UTF8Ways
{
public:
    // Ways to a text of at most n_Count units, which ends at a terminator. Neither the text nor the
    // memory behind it need reach that far, and nothing is written behind the result.
    //
    // Piece by piece: f_Extend moves the end of what is known of the text over the next one, takes
    // it off the count, and gives false once the end is known.
    template <class t_Extend>
    static char* spc_EncodePieces(char* pc_Out, const unsigned short* pcu_In, unsigned n_Count,
                                  t_Extend f_Extend);
    // Where the processor packs bytes: looks for the end itself. No unit may lie in two blocks.
    static bool sb_CanPack(const unsigned short* pcu_In)
    {
        return CT_VectorPacks::sb_Has() && reinterpret_cast<std::uintptr_t>(pcu_In) % 2 == 0;
    }
    OSTRA_FOR_PACKS static char* spc_EncodePacked(char* pc_Out, const unsigned short* pcu_In,
                                                  unsigned n_Count);

    // Many of the units, those of a text without a terminator.
    static char* spc_Encode(char* pc_Out, const unsigned short*& pcu_In,
                            const unsigned short* pcu_End)
    {
        if (pcu_End - pcu_In >= WIDE && CT_Vector::sb_HasWide())
            pc_Out = spc_EncodeWide(pc_Out, pcu_In, pcu_End);
        return spc_EncodePlain(pc_Out, pcu_In, pcu_End);
    }
    // Takes sequences that are whole.
    static unsigned short* spu_Decode(unsigned short* pu_Out, const char*& pcc_In,
                                      const char* pcc_End)
    {
        if (pcc_End - pcc_In >= SAFE * WIDE && CT_Vector::sb_HasWide())
            pu_Out = spu_DecodeWide(pu_Out, pcc_In, pcc_End);
        return spu_DecodePlain(pu_Out, pcc_In, pcc_End);
    }

    // The ways to it.
    static char* spc_EncodePlain(char* pc_Out, const unsigned short*& pcu_In,
                                 const unsigned short* pcu_End);
    OSTRA_FOR_WIDE static char* spc_EncodeWide(char* pc_Out, const unsigned short*& pcu_In,
                                               const unsigned short* pcu_End);
    static unsigned short* spu_DecodePlain(unsigned short* pu_Out, const char*& pcc_In,
                                           const char* pcc_End);
    OSTRA_FOR_WIDE static unsigned short* spu_DecodeWide(unsigned short* pu_Out,
                                                         const char*& pcc_In, const char* pcc_End);

    // Decodes a sequence that is there whole.
    static unsigned short* spu_Sequence(unsigned short* pu_To, const char*& pcc_In);
    // The value of four bytes as units.
    static unsigned short* spu_Pair(unsigned short* pu_To, unsigned n_Value);

    // What the marks of a sequence add up to, by its trailing bytes.
    static constexpr unsigned OFFSETS[] = {0, 0x3080, 0xE2080, 0x3C82080};

private:
    // Characters of a wide run.
    static constexpr std::ptrdiff_t WIDE = 32;
    // Of so many times the bytes of a run, of which one run at most is taken, as many units come at
    // least as were copied too many.
    static constexpr std::ptrdiff_t SAFE = 4;

    static unsigned short* spu_Long(unsigned short* pu_To, const char*& pcc_In);
    // A unit that isn't ASCII. How many bytes it takes is foreseen where letters of one script
    // follow, so that what comes behind needn't wait for it.
    [[gnu::always_inline]] static char* spc_EncodeOther(char* pc_Out, unsigned n_Unit)
    {
        if (n_Unit >= 0x800)
            return pc_Encode(pc_Out, n_Unit);
        v_Put(pc_Out, 0x80C0 | n_Unit >> 6 | (n_Unit << 8 & 0x3F00), 2);
        return pc_Out + 2;
    }
    // Units of a block up to the first zero, of any kind and of ASCII.
    template <int HALF>
    OSTRA_FOR_PACKS static char* spc_EncodeHalf(char* pc_Out, const CT_VectorPacks::Units& o_Units);
    OSTRA_FOR_PACKS static char* spc_EncodeBlock(char* pc_Out,
                                                 const CT_VectorPacks::Units& o_Units);
    OSTRA_FOR_PACKS static char* spc_EncodeASCII(char* pc_Out, const unsigned short*& pcu_In,
                                                 unsigned& n_Count);
    // Characters up to one from which four are ASCII.
    [[gnu::always_inline]] static char*
    spc_EncodeOthers(char* pc_Out, const unsigned short*& pcu_In, const unsigned short* pcu_End)
    {
        while (pcu_End - pcu_In >= 4 && !b_AreASCII(pcu_In))
            for (int i = 0; i < 4; ++i)
                pc_Out = pc_Encode(pc_Out, *pcu_In++);
        return pc_Out;
    }
    // Up to two ASCII bytes in a row, with which a run may begin.
    [[gnu::always_inline]] static unsigned short*
    spu_DecodeOthers(unsigned short* pu_To, const char*& pcc_In, const char* pcc_End)
    {
        while (pcc_End - pcc_In >= 4 && (n_Byte(pcc_In[0]) | n_Byte(pcc_In[1])) >= 0x80)
            pu_To = spu_Sequence(pu_To, pcc_In);
        return pu_To;
    }
};

// ---- Encoding -------------------------------------------------------------------------------

// Eight units become eight bytes at least.
inline char* CT_UTF8Ways::spc_EncodePlain(char* pc_Out, const unsigned short*& pcu_In,
                                          const unsigned short* pcu_End)
{
    while (pcu_End - pcu_In >= RUN) {
        LongByteRun ao_Bytes;
        while (pcu_End - pcu_In >= LONG_RUN && b_Narrow(ao_Bytes, pcu_In)) {
            std::memcpy(pc_Out, &ao_Bytes, sizeof(ao_Bytes));
            pc_Out += LONG_RUN;
            pcu_In += LONG_RUN;
        }
        if (pcu_End - pcu_In < RUN)
            break;
        const unsigned n_ASCII = n_LeadingASCII(pcu_In);
        v_CopyRun(pc_Out, pcu_In);
        pc_Out += n_ASCII;
        pcu_In += n_ASCII;
        if (n_ASCII < RUN)
            pc_Out = spc_EncodeOthers(pc_Out, pcu_In, pcu_End);
    }
    return pc_Out;
}

OSTRA_FOR_WIDE inline char* CT_UTF8Ways::spc_EncodeWide(char* pc_Out, const unsigned short*& pcu_In,
                                                        const unsigned short* pcu_End)
{
    typedef t_Block<unsigned short, WIDE> Units;
    const unsigned short* pcu_At = pcu_In; // kept in a register
    while (pcu_End - pcu_At >= WIDE) {
        Units ao_Low, ao_High;
        CT_Vector::sv_Load(ao_Low, pcu_At);
        CT_Vector::sv_Load(ao_High, pcu_At + WIDE / 2);
        t_Block<unsigned char, WIDE> ao_Bytes;
        CT_Vector::sv_NarrowWide(ao_Bytes, ao_Low, ao_High);
        CT_Vector::sv_Store(pc_Out, ao_Bytes);
        const unsigned n_Others = CT_Vector::sn_MaskWide(ao_Bytes);
        if (!n_Others) {
            pc_Out += WIDE;
            pcu_At += WIDE;
            continue;
        }
        const int i_ASCII = std::countr_zero(n_Others);
        pcu_At += i_ASCII;
        pc_Out = spc_EncodeOther(pc_Out + i_ASCII, *pcu_At++);
        // An accented letter stands alone most often.
        if (pcu_At != pcu_End && *pcu_At > 0x7F)
            pc_Out = spc_EncodeOthers(pc_Out, pcu_At, pcu_End);
    }
    pcu_In = pcu_At;
    return pc_Out;
}

template <class t_Extend>
char* CT_UTF8Ways::spc_EncodePieces(char* pc_Out, const unsigned short* pcu_In, unsigned n_Count,
                                    t_Extend f_Extend)
{
    const unsigned short* pcu_End = pcu_In;
    while (f_Extend(pcu_End, n_Count))
        pc_Out = spc_Encode(pc_Out, pcu_In, pcu_End);
    pc_Out = spc_Encode(pc_Out, pcu_In, pcu_End);
    while (pcu_In < pcu_End)
        pc_Out = pc_Encode(pc_Out, *pcu_In++);
    return pc_Out;
}

// ---- Encoding where bytes are packed --------------------------------------------------------

// Each number is made the bytes of its unit, and zeros, which no unit has among its bytes.
template <int HALF>
OSTRA_FOR_PACKS inline char* CT_UTF8Ways::spc_EncodeHalf(char* pc_Out,
                                                         const CT_VectorPacks::Units& o_Units)
{
    CT_VectorPacks::Numbers ao_One;
    CT_VectorPacks::sv_Widen<HALF>(ao_One, o_Units);
    const auto ao_Two = ao_One >> 6 | (ao_One << 8 & 0x3F00) | 0x80C0;
    const auto ao_Three =
        ao_One >> 12 | (ao_One << 2 & 0x3F00) | (ao_One << 16 & 0x3F0000) | 0x8080E0;
    const auto ao_More = ao_One > 0x7FF ? ao_Three : ao_Two;
    return CT_VectorPacks::spc_StoreNonZero(pc_Out, ao_One > 0x7F ? ao_More : ao_One);
}

OSTRA_FOR_PACKS inline char* CT_UTF8Ways::spc_EncodeBlock(char* pc_Out,
                                                          const CT_VectorPacks::Units& o_Units)
{
    if (CT_VectorPacks::sn_Above(o_Units, 0x7FF))
        return spc_EncodeHalf<1>(spc_EncodeHalf<0>(pc_Out, o_Units), o_Units);
    const auto ao_Two = o_Units >> 6 | (o_Units << 8 & 0x3F00) | 0x80C0;
    return CT_VectorPacks::spc_StoreNonZero(pc_Out, o_Units > 0x7F ? ao_Two : o_Units);
}

// Whole blocks of ASCII at an address that blocks begin at.
OSTRA_FOR_PACKS __attribute__((no_sanitize("address", "thread"))) inline char*
CT_UTF8Ways::spc_EncodeASCII(char* pc_Out, const unsigned short*& pcu_In, unsigned& n_Count)
{
    for (; n_Count >= CT_VectorPacks::UNITS; n_Count -= CT_VectorPacks::UNITS) {
        const auto o_Units = *reinterpret_cast<const CT_VectorPacks::Units*>(pcu_In);
        if (CT_VectorPacks::sn_Above(o_Units - 1, 0x7E))
            break;
        t_Block<unsigned char, 32> ao_Bytes;
        CT_VectorPacks::sv_Narrow(ao_Bytes, o_Units);
        CT_Vector::sv_Store(pc_Out, ao_Bytes);
        pc_Out += CT_VectorPacks::UNITS;
        pcu_In += CT_VectorPacks::UNITS;
    }
    return pc_Out;
}

// A block of which one unit may be read can be read whole, as it doesn't lie on two pages.
OSTRA_FOR_PACKS __attribute__((noinline, no_sanitize("address", "thread"))) inline char*
CT_UTF8Ways::spc_EncodePacked(char* pc_Out, const unsigned short* pcu_In, unsigned n_Count)
{
    constexpr unsigned BLOCK = sizeof(CT_VectorPacks::Units);
    for (;;) {
        const auto n_Before =
            static_cast<unsigned>(reinterpret_cast<std::uintptr_t>(pcu_In) % BLOCK);
        if (!n_Before)
            pc_Out = spc_EncodeASCII(pc_Out, pcu_In, n_Count);
        const unsigned n_Take = std::min(n_Count, (BLOCK - n_Before) / 2);
        CT_VectorPacks::Units o_Units;
        CT_VectorPacks::sv_Load(o_Units, pcu_In, n_Take);
        const auto n_Length =
            static_cast<unsigned>(std::countr_one(CT_VectorPacks::sn_Above(o_Units, 0)));
        if (n_Length < n_Take || n_Take == n_Count) {
            CT_VectorPacks::sv_Load(o_Units, pcu_In, n_Length);
            return spc_EncodeBlock(pc_Out, o_Units);
        }
        pc_Out = spc_EncodeBlock(pc_Out, o_Units);
        pcu_In += n_Take;
        n_Count -= n_Take;
    }
}

// ---- Decoding -------------------------------------------------------------------------------

inline unsigned short* CT_UTF8Ways::spu_Pair(unsigned short* pu_To, unsigned n_Value)
{
    if (!b_IsPair(n_Value)) {
        *pu_To = REPLACEMENT;
        return pu_To + 1;
    }
    pu_To[0] = u_High(n_Value);
    pu_To[1] = u_Low(n_Value);
    return pu_To + 2;
}

// Decodes a first byte from 0xF0 up, behind which stand three more.
inline unsigned short* CT_UTF8Ways::spu_Long(unsigned short* pu_To, const char*& pcc_In)
{
    const unsigned n_First = n_Byte(*pcc_In++);
    if (n_First >= 0xF8) {
        *pu_To = REPLACEMENT;
        return pu_To + 1;
    }
    pcc_In += 3;
    return spu_Pair(pu_To, (n_First << 18) + (n_Byte(pcc_In[-3]) << 12) +
                               (n_Byte(pcc_In[-2]) << 6) + n_Byte(pcc_In[-1]) - OFFSETS[3]);
}

inline unsigned short* CT_UTF8Ways::spu_Sequence(unsigned short* pu_To, const char*& pcc_In)
{
    const unsigned n_First = n_Byte(*pcc_In);
    if (n_First < 0xC0) {
        *pu_To = static_cast<unsigned short>(n_First);
        pcc_In += 1;
    } else if (n_First < 0xE0) {
        *pu_To = static_cast<unsigned short>((n_First << 6) + n_Byte(pcc_In[1]) - OFFSETS[1]);
        pcc_In += 2;
    } else if (n_First < 0xF0) {
        *pu_To = static_cast<unsigned short>((n_First << 12) + (n_Byte(pcc_In[1]) << 6) +
                                             n_Byte(pcc_In[2]) - OFFSETS[2]);
        pcc_In += 3;
    } else
        return spu_Long(pu_To, pcc_In);
    return pu_To + 1;
}

inline unsigned short* CT_UTF8Ways::spu_DecodePlain(unsigned short* pu_Out, const char*& pcc_In,
                                                    const char* pcc_End)
{
    while (pcc_End - pcc_In >= SAFE * RUN) {
        const unsigned n_ASCII = n_LeadingASCII(pcc_In);
        v_CopyRun(pu_Out, pcc_In);
        pu_Out += n_ASCII;
        pcc_In += n_ASCII;
        if (n_ASCII < RUN)
            pu_Out = spu_DecodeOthers(pu_Out, pcc_In, pcc_End);
    }
    return pu_Out;
}

OSTRA_FOR_WIDE inline unsigned short*
CT_UTF8Ways::spu_DecodeWide(unsigned short* pu_Out, const char*& pcc_In, const char* pcc_End)
{
    const char* pcc_At = pcc_In;
    while (pcc_End - pcc_At >= SAFE * WIDE) {
        t_Block<signed char, WIDE> ao_Bytes;
        CT_Vector::sv_Load(ao_Bytes, pcc_At);
        CT_Vector::sv_Widen(pu_Out, pcc_At);
        CT_Vector::sv_Widen(pu_Out + WIDE / 2, pcc_At + WIDE / 2);
        const unsigned n_Others = CT_Vector::sn_MaskWide(ao_Bytes);
        if (!n_Others) {
            pu_Out += WIDE;
            pcc_At += WIDE;
            continue;
        }
        const int i_ASCII = std::countr_zero(n_Others);
        pcc_At += i_ASCII;
        pu_Out = spu_DecodeOthers(pu_Out + i_ASCII, pcc_At, pcc_End);
    }
    pcc_In = pcc_At;
    return pu_Out;
}
