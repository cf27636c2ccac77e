// Ostra/Frame/RawCopy.h: the mark of copies that share a block without holding it.
#pragma once

// Before a copy constructor or an assignment that copies the members and no more. Original and copy
// then free one block, or write into one that each takes for its own: a program is warned. The
// library never copies so; a source that means it defines OSTRA_RAW_COPIES before the first header.
#if defined(ostra_EXPORTS) || defined(OSTRA_RAW_COPIES)
#define OSTRA_RAW_COPY
#else
#define OSTRA_RAW_COPY                                                                             \
    [[deprecated("copies without a use of the block: take the pointer constructor, or v_Set")]]
#endif
