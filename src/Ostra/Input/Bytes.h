// Ostra/Input/Bytes.h: what the inputs share. Internal.
#pragma once

#include <algorithm>

// Of the files that inputs make.
inline constexpr unsigned FILE_BUFFER_SIZE = 16384;

// How many bytes lie there, at most n_Size of them.
inline unsigned n_AtMost(const unsigned char* pq_Current, const unsigned char* pq_End,
                         unsigned n_Size)
{
    return std::min(static_cast<unsigned>(pq_End - pq_Current), n_Size);
}

// Hands out the next block and moves behind it; false if nothing is left.
inline int b_TakeBlock(const unsigned char*& pq_Current, const unsigned char* pq_End,
                       unsigned n_Size, const unsigned char** ppq_Data, unsigned* pn_Size)
{
    if (pq_Current >= pq_End)
        return 0;
    *ppq_Data = pq_Current;
    *pn_Size = n_AtMost(pq_Current, pq_End, n_Size);
    pq_Current += *pn_Size;
    return 1;
}
