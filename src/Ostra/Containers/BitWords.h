// Ostra/Containers/BitWords.h: runs of 32-bit words, many at a time. Internal.
//
// Words lie anywhere: nothing is assumed of their alignment.
#pragma once

#include <Ostra/Frame/Vector.h>

#include <algorithm>
#include <cstddef>

class CT_BitWords
{
public:
    // Bits that are set.
    static unsigned sn_Count(const char* pcc_Words, unsigned n_Words);

    // The first word that isn't 0, or that isn't 0 without the bits of another run; n_Words for
    // none.
    static unsigned sn_Find(const char* pcc_Words, unsigned n_Words);
    static unsigned sn_FindBeyond(const char* pcc_Words, const char* pcc_Other, unsigned n_Words);

    // Each word becomes f_Operation(word, the other run's word).
    template <class T>
    static void sv_Combine(char* pc_Words, const char* pcc_Other, unsigned n_Words, T f_Operation)
    {
        if (CT_Vector::sb_HasWide())
            sv_CombineWide(pc_Words, pcc_Other, n_Words, f_Operation);
        else
            sv_CombinePlain(pc_Words, pcc_Other, n_Words, f_Operation);
    }

    // The ways to it. The compiler takes many words at a time, as many as the instructions of the
    // caller allow.
    template <class T>
    [[gnu::always_inline]] static void sv_CombinePlain(char* pc_Words, const char* pcc_Other,
                                                       unsigned n_Words, T f_Operation)
    {
        for (std::size_t n_At = 0; n_At < n_Words * std::size_t(4); n_At += 4) {
            unsigned n_Word, n_Other;
            CT_Vector::sv_Load(n_Word, pc_Words + n_At);
            CT_Vector::sv_Load(n_Other, pcc_Other + n_At);
            CT_Vector::sv_Store(pc_Words + n_At, f_Operation(n_Word, n_Other));
        }
    }
    // First the words in front of 32 bytes in one line of the cache: what crosses lines takes
    // longer.
    template <class T>
    OSTRA_FOR_WIDE static void sv_CombineWide(char* pc_Words, const char* pcc_Other,
                                              unsigned n_Words, T f_Operation)
    {
        const std::size_t n_Place = reinterpret_cast<std::size_t>(pc_Words);
        const unsigned n_First = std::min(n_Words, -static_cast<unsigned>(n_Place) % 32 / 4);
        sv_CombinePlain(pc_Words, pcc_Other, n_First, f_Operation);
        sv_CombinePlain(pc_Words + n_First * 4, pcc_Other + n_First * 4, n_Words - n_First,
                        f_Operation);
    }
};
