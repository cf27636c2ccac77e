// Ostra/Containers/BitWords.cpp
#include <Ostra/Containers/BitWords.h>

#include <Ostra/Frame/Vector.h>

#include <cstdint>

namespace
{
typedef t_Block<std::uint64_t> Run;

constexpr unsigned RUN = sizeof(Run) / 4; // words of a run
constexpr unsigned BLOCK = 8 * RUN;       // words that are counted together

template <class T>
inline void v_Load(T& o_Value, const char* pcc_Words, unsigned n_Word)
{
    CT_Vector::sv_Load(o_Value, pcc_Words + std::size_t(n_Word) * 4);
}

// ---- Counting -----------------------------------------------------------------------------
//
// Not every processor of the family counts bits, and a table of bytes takes a load a byte. So the
// bits of eight runs are added as binary numbers, place by place, and only the sums of eight are
// counted.

// Three bits to a sum of two places: n_Low takes the one, n_High the other.
inline void v_Add(Run& n_High, Run& n_Low, const Run& n_First, const Run& n_Second)
{
    const Run n_Odd = n_Low ^ n_First;
    n_High = (n_Low & n_First) | (n_Odd & n_Second);
    n_Low = n_Odd ^ n_Second;
}

inline void v_AddRuns(Run& n_High, Run& n_Low, const char* pcc_Runs)
{
    Run n_First, n_Second;
    v_Load(n_First, pcc_Runs, 0);
    v_Load(n_Second, pcc_Runs, RUN);
    v_Add(n_High, n_Low, n_First, n_Second);
}

// Each half becomes the count of its bits: in pairs, in fours, in eights and so on.
template <class T>
inline void v_CountBits(T& o_Value)
{
    o_Value -= o_Value >> 1 & 0x5555555555555555;
    o_Value = (o_Value & 0x3333333333333333) + (o_Value >> 2 & 0x3333333333333333);
    o_Value = (o_Value + (o_Value >> 4)) & 0x0F0F0F0F0F0F0F0F;
    o_Value = (o_Value + (o_Value >> 8)) & 0x00FF00FF00FF00FF;
    o_Value = (o_Value + (o_Value >> 16)) & 0x0000FFFF0000FFFF;
    o_Value = (o_Value + (o_Value >> 32)) & 0x00000000FFFFFFFF;
}

inline unsigned n_CountRun(Run& n_Run)
{
    v_CountBits(n_Run);
    return static_cast<unsigned>(n_Run[0] + n_Run[1]);
}

unsigned n_CountBlocks(const char* pcc_Words, unsigned n_Words)
{
    Run n_Ones{}, n_Twos{}, n_Fours{}, n_Eights{}, n_Total{};
    for (; n_Words >= BLOCK; n_Words -= BLOCK, pcc_Words += BLOCK * 4) {
        Run n_FirstTwos, n_SecondTwos, n_FirstFours, n_SecondFours;
        v_AddRuns(n_FirstTwos, n_Ones, pcc_Words);
        v_AddRuns(n_SecondTwos, n_Ones, pcc_Words + 2 * sizeof(Run));
        v_Add(n_FirstFours, n_Twos, n_FirstTwos, n_SecondTwos);
        v_AddRuns(n_FirstTwos, n_Ones, pcc_Words + 4 * sizeof(Run));
        v_AddRuns(n_SecondTwos, n_Ones, pcc_Words + 6 * sizeof(Run));
        v_Add(n_SecondFours, n_Twos, n_FirstTwos, n_SecondTwos);
        v_Add(n_Eights, n_Fours, n_FirstFours, n_SecondFours);
        v_CountBits(n_Eights);
        n_Total += n_Eights;
    }
    const unsigned n_Blocks = static_cast<unsigned>(n_Total[0] + n_Total[1]);
    return 8 * n_Blocks + 4 * n_CountRun(n_Fours) + 2 * n_CountRun(n_Twos) + n_CountRun(n_Ones);
}

// ---- Searching ----------------------------------------------------------------------------

// The first word for which f_Expression(result, number), asked for a run or a word, isn't 0.
template <class T>
inline unsigned n_FindWord(unsigned n_Words, T f_Expression)
{
    unsigned n_Word = 0;
    for (; n_Words - n_Word >= 2 * RUN; n_Word += 2 * RUN) {
        Run n_First, n_Second;
        f_Expression(n_First, n_Word);
        f_Expression(n_Second, n_Word + RUN);
        n_First |= n_Second;
        if (!CT_Vector::sb_IsZero(n_First))
            break;
    }
    for (unsigned n_Found; n_Word < n_Words; ++n_Word) {
        f_Expression(n_Found, n_Word);
        if (n_Found)
            break;
    }
    return n_Word;
}
} // namespace

unsigned CT_BitWords::sn_Count(const char* pcc_Words, unsigned n_Words)
{
    unsigned n_Count = n_CountBlocks(pcc_Words, n_Words);
    for (unsigned n_Word = n_Words / BLOCK * BLOCK; n_Word < n_Words; ++n_Word) {
        unsigned n_Found;
        v_Load(n_Found, pcc_Words, n_Word);
        std::uint64_t n8_Bits = n_Found;
        v_CountBits(n8_Bits);
        n_Count += static_cast<unsigned>(n8_Bits);
    }
    return n_Count;
}

unsigned CT_BitWords::sn_Find(const char* pcc_Words, unsigned n_Words)
{
    return n_FindWord(n_Words,
                      [=](auto& o_Found, unsigned n_Word) { v_Load(o_Found, pcc_Words, n_Word); });
}

unsigned CT_BitWords::sn_FindBeyond(const char* pcc_Words, const char* pcc_Other, unsigned n_Words)
{
    return n_FindWord(n_Words, [=](auto& o_Found, unsigned n_Word) {
        v_Load(o_Found, pcc_Words, n_Word);
        auto o_Other = o_Found;
        v_Load(o_Other, pcc_Other, n_Word);
        o_Found &= ~o_Other;
    });
}
