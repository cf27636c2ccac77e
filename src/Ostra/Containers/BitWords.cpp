// Ostra/Containers/BitWords.cpp
#include <Ostra/Containers/BitWords.h>

#include <cstdint>
#include <cstring>

namespace
{
typedef std::uint64_t Run __attribute__((vector_size(16)));

constexpr unsigned RUN = sizeof(Run) / 4; // words of a run
constexpr unsigned BLOCK = 8 * RUN;       // words that are counted together

template <class T>
inline T Load(const char* pcc_Words, unsigned n_Word)
{
    T Value;
    std::memcpy(&Value, pcc_Words + std::size_t(n_Word) * 4, sizeof Value);
    return Value;
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

// The bits of each half: in pairs, in fours, in eights and so on.
template <class T>
inline T BitsOf(T Value)
{
    Value -= Value >> 1 & 0x5555555555555555;
    Value = (Value & 0x3333333333333333) + (Value >> 2 & 0x3333333333333333);
    Value = (Value + (Value >> 4)) & 0x0F0F0F0F0F0F0F0F;
    Value = (Value + (Value >> 8)) & 0x00FF00FF00FF00FF;
    Value = (Value + (Value >> 16)) & 0x0000FFFF0000FFFF;
    return (Value + (Value >> 32)) & 0x00000000FFFFFFFF;
}

inline unsigned n_Sum(const Run& n_Counts)
{
    return static_cast<unsigned>(n_Counts[0] + n_Counts[1]);
}

unsigned n_CountBlocks(const char* pcc_Words, unsigned n_Words)
{
    Run n_Ones{}, n_Twos{}, n_Fours{}, n_Eights{}, n_Total{};
    for (; n_Words >= BLOCK; n_Words -= BLOCK, pcc_Words += BLOCK * 4) {
        Run n_FirstTwos, n_SecondTwos, n_FirstFours, n_SecondFours;
        const auto Word = [=](unsigned n_Run) {
            return Load<Run>(pcc_Words, n_Run * RUN);
        };
        v_Add(n_FirstTwos, n_Ones, Word(0), Word(1));
        v_Add(n_SecondTwos, n_Ones, Word(2), Word(3));
        v_Add(n_FirstFours, n_Twos, n_FirstTwos, n_SecondTwos);
        v_Add(n_FirstTwos, n_Ones, Word(4), Word(5));
        v_Add(n_SecondTwos, n_Ones, Word(6), Word(7));
        v_Add(n_SecondFours, n_Twos, n_FirstTwos, n_SecondTwos);
        v_Add(n_Eights, n_Fours, n_FirstFours, n_SecondFours);
        n_Total += BitsOf(n_Eights);
    }
    return 8 * n_Sum(n_Total) + 4 * n_Sum(BitsOf(n_Fours)) + 2 * n_Sum(BitsOf(n_Twos)) +
           n_Sum(BitsOf(n_Ones));
}

// ---- Searching ----------------------------------------------------------------------------

// The first word for which Expression(word's type, number) isn't 0.
template <class T>
inline unsigned n_FindWord(unsigned n_Words, T Expression)
{
    unsigned n_Word = 0;
    for (; n_Words - n_Word >= 2 * RUN; n_Word += 2 * RUN) {
        const Run n_Any = Expression(Run(), n_Word) | Expression(Run(), n_Word + RUN);
        if (n_Any[0] | n_Any[1])
            break;
    }
    while (n_Word < n_Words && !Expression(0U, n_Word))
        n_Word++;
    return n_Word;
}
} // namespace

unsigned CT_BitWords::sn_Count(const char* pcc_Words, unsigned n_Words)
{
    unsigned n_Count = n_CountBlocks(pcc_Words, n_Words);
    for (unsigned n_Word = n_Words / BLOCK * BLOCK; n_Word < n_Words; n_Word++) {
        const std::uint64_t n8_Word = Load<unsigned>(pcc_Words, n_Word);
        n_Count += static_cast<unsigned>(BitsOf(n8_Word));
    }
    return n_Count;
}

unsigned CT_BitWords::sn_Find(const char* pcc_Words, unsigned n_Words)
{
    return n_FindWord(n_Words, [=](auto Kind, unsigned n_Word) {
        return Load<decltype(Kind)>(pcc_Words, n_Word);
    });
}

unsigned CT_BitWords::sn_FindBeyond(const char* pcc_Words, const char* pcc_Other, unsigned n_Words)
{
    return n_FindWord(n_Words, [=](auto Kind, unsigned n_Word) {
        typedef decltype(Kind) T;
        return static_cast<T>(Load<T>(pcc_Words, n_Word) & ~Load<T>(pcc_Other, n_Word));
    });
}
