// benchmarks/RecordSides/Side.h: what the sides of the job Records share.
//
// Each side begins with an empty file at a path and is told how many records will be in it. Begin
// and End are around each pass; Replace is a deletion and an addition; Walk hands over key, data
// and size of each record. Sides with Close give up the file, and a side that is made of another
// one reads that one's file beside other readers.
#pragma once

#include <Ostra/Buffer/Buffer.h>

#include <cstdio>
#include <cstdlib>

inline constexpr unsigned HEAD_SIZE = 56;
inline constexpr unsigned BLOCK_SIZE = 64;
inline constexpr unsigned ROOM = 1 << 16; // for any record

inline void Expect(bool good, const char* what)
{
    if (good)
        return;
    std::fprintf(stderr, "records: %s failed\n", what);
    std::exit(2);
}

inline const char* Data(const CT_Buffer& buffer)
{
    return static_cast<const char*>(buffer.qcv_Get());
}
