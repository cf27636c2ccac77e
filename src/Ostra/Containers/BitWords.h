// Ostra/Containers/BitWords.h: runs of 32-bit words, many at a time. Internal.
//
// Words lie anywhere: nothing is assumed of their alignment.
#pragma once

class CT_BitWords
{
public:
    // Bits that are set.
    static unsigned sn_Count(const char* pcc_Words, unsigned n_Words);

    // The first word that isn't 0, or that isn't 0 without the bits of another run; n_Words for
    // none.
    static unsigned sn_Find(const char* pcc_Words, unsigned n_Words);
    static unsigned sn_FindBeyond(const char* pcc_Words, const char* pcc_Other, unsigned n_Words);
};
