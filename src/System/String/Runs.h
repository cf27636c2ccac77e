// System/String/Runs.h: characters of a text that are looked at and copied together. Internal.
#pragma once

#include <Ostra/Frame/Vector.h>

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

constexpr std::ptrdiff_t RUN = 8;
constexpr std::ptrdiff_t LONG_RUN = 16;

typedef t_Block<unsigned char, RUN> ByteRun;
typedef t_Block<unsigned short, 2 * RUN> UnitRun;
typedef t_Block<unsigned char, LONG_RUN> LongByteRun;
typedef t_Block<signed char, LONG_RUN> SignedByteRun;
typedef t_Block<short, 2 * LONG_RUN> SignedUnitRun;
typedef t_Block<unsigned short, 2 * LONG_RUN> LongUnitRun;

inline void v_CopyRun(char* pc_To, const unsigned short* pcu_From)
{
    UnitRun ao_Units;
    std::memcpy(&ao_Units, pcu_From, sizeof(ao_Units));
    const auto ao_Bytes = __builtin_convertvector(ao_Units, ByteRun);
    std::memcpy(pc_To, &ao_Bytes, sizeof(ao_Bytes));
}

inline void v_CopyRun(unsigned short* pu_To, const char* pcc_From)
{
    ByteRun ao_Bytes;
    std::memcpy(&ao_Bytes, pcc_From, sizeof(ao_Bytes));
    const auto ao_Units = __builtin_convertvector(ao_Bytes, UnitRun);
    std::memcpy(pu_To, &ao_Units, sizeof(ao_Units));
}

// Characters before the first whose byte of the word has its top bit set; RUN for none.
inline unsigned n_Leading(std::uint64_t n8_Marks)
{
    return static_cast<unsigned>(std::countr_zero(n8_Marks & 0x8080808080808080)) / 8;
}

// How many of the next RUN units are ASCII before the first that isn't.
inline unsigned n_LeadingASCII(const unsigned short* pcu_In)
{
    UnitRun ao_Units;
    std::memcpy(&ao_Units, pcu_In, sizeof(ao_Units));
    const auto ao_Marks = __builtin_convertvector(ao_Units > 0x7F, ByteRun);
    std::uint64_t n8_Marks;
    std::memcpy(&n8_Marks, &ao_Marks, sizeof(n8_Marks));
    return n_Leading(n8_Marks);
}

// How many of the next RUN bytes are ASCII before the first that isn't.
inline unsigned n_LeadingASCII(const char* pcc_In)
{
    std::uint64_t n8_Word;
    std::memcpy(&n8_Word, pcc_In, sizeof(n8_Word));
    return n_Leading(n8_Word);
}

template <class Run>
bool b_IsZero(const Run& ao_Run)
{
    return CT_Vector::sb_IsZero(ao_Run);
}

// The next LONG_RUN units as bytes; whether all are ASCII.
inline bool b_Narrow(LongByteRun& ao_Bytes, const unsigned short* pcu_In)
{
    UnitRun ao_Low;
    UnitRun ao_High;
    std::memcpy(&ao_Low, pcu_In, sizeof(ao_Low));
    std::memcpy(&ao_High, pcu_In + RUN, sizeof(ao_High));
    if (!b_IsZero((ao_Low | ao_High) & 0xFF80))
        return false;
    LongUnitRun ao_Units;
    std::memcpy(&ao_Units, pcu_In, sizeof(ao_Units));
    ao_Bytes = __builtin_convertvector(ao_Units, LongByteRun);
    return true;
}
