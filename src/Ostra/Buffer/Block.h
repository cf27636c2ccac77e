// Ostra/Buffer/Block.h: the heap blocks behind buffers. Internal.
//
// A block is its real room (4 bytes), the header that buffers share (12 bytes), and the data. The
// real room may be larger than the maximum size in the header: the header follows the rule of the
// buffer, while a block that grows step by step is moved only now and then.
#pragma once

#include <Ostra/Buffer/Buffer.h>

class CT_Block
{
public:
    static constexpr unsigned HEADER_SIZE = 12;
    // A maximum size that doesn't fit 32 bits; no block can be had for it.
    static constexpr unsigned TOO_LARGE = 0xFFFFFFFF;

    // Maximum size of a block for n_Size bytes: the least multiple of the growth that holds them
    // and the header, less the header.
    static unsigned sn_Maximum(unsigned n_Size, unsigned n_Growth);
    // The sum, or TOO_LARGE.
    static unsigned sn_Sum(unsigned n_First, unsigned n_Second)
    {
        unsigned n_Sum;
        return __builtin_add_overflow(n_First, n_Second, &n_Sum) ? TOO_LARGE : n_Sum;
    }

    // The data of a new block with use count 1, used size 0; null when the heap is exhausted.
    static char* spc_New(unsigned n_Maximum);
    // The block with that maximum size and the bytes that fit, at the same place or another; null
    // when the heap is exhausted, and the block is as it was. The caller is the only holder, and
    // sets the used size.
    static char* spc_Resize(char* pc_Data, unsigned n_Maximum);
    static void sv_Delete(char* pc_Data);
};
