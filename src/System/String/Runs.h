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
    UnitRun aUnits;
    std::memcpy(&aUnits, pcu_From, sizeof(aUnits));
    const auto aBytes = __builtin_convertvector(aUnits, ByteRun);
    std::memcpy(pc_To, &aBytes, sizeof(aBytes));
}

inline void v_CopyRun(unsigned short* pu_To, const char* pcc_From)
{
    ByteRun aBytes;
    std::memcpy(&aBytes, pcc_From, sizeof(aBytes));
    const auto aUnits = __builtin_convertvector(aBytes, UnitRun);
    std::memcpy(pu_To, &aUnits, sizeof(aUnits));
}

// Characters before the first whose byte of the word has its top bit set; RUN for none.
inline unsigned n_Leading(std::uint64_t n8_Marks)
{
    return static_cast<unsigned>(std::countr_zero(n8_Marks & 0x8080808080808080)) / 8;
}

// How many of the next RUN units are ASCII before the first that isn't.
inline unsigned n_LeadingASCII(const unsigned short* pcu_In)
{
    UnitRun aUnits;
    std::memcpy(&aUnits, pcu_In, sizeof(aUnits));
    const auto aMarks = __builtin_convertvector(aUnits > 0x7F, ByteRun);
    std::uint64_t n8_Marks;
    std::memcpy(&n8_Marks, &aMarks, sizeof(n8_Marks));
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
bool b_IsZero(const Run& aRun)
{
    return CT_Vector::sb_IsZero(aRun);
}

// The next LONG_RUN units as bytes; whether all are ASCII.
inline bool b_Narrow(LongByteRun& aBytes, const unsigned short* pcu_In)
{
    UnitRun aLow;
    UnitRun aHigh;
    std::memcpy(&aLow, pcu_In, sizeof(aLow));
    std::memcpy(&aHigh, pcu_In + RUN, sizeof(aHigh));
    if (!b_IsZero((aLow | aHigh) & 0xFF80))
        return false;
    LongUnitRun aUnits;
    std::memcpy(&aUnits, pcu_In, sizeof(aUnits));
    aBytes = __builtin_convertvector(aUnits, LongByteRun);
    return true;
}
