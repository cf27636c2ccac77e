// System/String/Sequences.h: units of UTF-16 and the bytes of UTF-8 that stand for them. Internal.
#pragma once

#include <cstdint>
#include <cstring>

constexpr unsigned short REPLACEMENT = 0xFFFD;

inline unsigned n_Byte(char c)
{
    return static_cast<unsigned char>(c);
}

inline bool b_IsSurrogate(unsigned n_Unit)
{
    return (n_Unit & 0xF800) == 0xD800;
}

// ---- Pairs ----------------------------------------------------------------------------------

// Whether the value is that of a surrogate pair.
inline bool b_IsPair(unsigned n_Value)
{
    return n_Value - 0x10000 < 0x100000;
}

inline unsigned short u_High(unsigned n_Value)
{
    return static_cast<unsigned short>(0xD800 + ((n_Value - 0x10000) >> 10));
}

inline unsigned short u_Low(unsigned n_Value)
{
    return static_cast<unsigned short>(0xDC00 | (n_Value & 0x3FF));
}

// ---- Bytes ----------------------------------------------------------------------------------

// Bytes of a sequence, the first one lowest.
inline void v_Put(char* pc_Out, unsigned n_Sequence, unsigned n_Count)
{
    for (unsigned n = 0; n < n_Count; ++n)
        pc_Out[n] = static_cast<char>(n_Sequence >> 8 * n);
}

// One unit, also a surrogate. Two bytes are written also for a character of one: the room goes on
// for a terminator.
inline char* pc_Encode(char* pc_Out, unsigned n_Unit)
{
    if (n_Unit >= 0x800) {
        v_Put(pc_Out, 0x8080E0 | n_Unit >> 12 | (n_Unit << 2 & 0x3F00) | (n_Unit << 16 & 0x3F0000),
              3);
        return pc_Out + 3;
    }
    // Without a branch: where letters and blanks take turns, none is foreseen.
    const unsigned n_Two = 0x80C0 | n_Unit >> 6 | (n_Unit << 8 & 0x3F00);
    const unsigned n_More = (0x7F - n_Unit) >> 31;
    v_Put(pc_Out, n_Unit ^ ((n_Unit ^ n_Two) & -n_More), 2);
    return pc_Out + 1 + n_More;
}

// Whether the next four units are ASCII.
inline bool b_AreASCII(const unsigned short* pcu_In)
{
    std::uint64_t n8_Units;
    std::memcpy(&n8_Units, pcu_In, sizeof(n8_Units));
    return !(n8_Units & 0xFF80FF80FF80FF80);
}
