// tools/check/RecordLayout.h: where the fields of a record file lie, for the programs that look at
// one from outside.
#pragma once

#include <cstddef>
#include <cstdint>

struct RecordField
{
    std::size_t offset;
    std::size_t size;
    const char* name;
};

constexpr std::size_t RECORD_HEADER = 256;
constexpr std::size_t RECORD_TABLE_ENTRY = 8;
constexpr std::uint32_t RECORD_SIGNATURE = 0xA1B2C3D4;
constexpr std::uint32_t RECORD_MARK = 0xFFFFFFFF;
constexpr std::uint32_t RECORD_FREE_SLOTS = 128;

constexpr RecordField RECORD_FIELDS[] = {
    {0, 22, "text"},
    {22, 10, "filler"},
    {32, 4, "n_Signature"},
    {36, 4, "n_Version"},
    {40, 4, "n_BlockSize"},
    {44, 4, "n_RecordHeaderSize"},
    {48, 4, "n_FreeMaxCount"},
    {52, 4, "n_FreeCount"},
    {56, 4, "n_ResourceMaxCount"},
    {60, 4, "n_ResourceCount"},
    {64, 4, "n_HeaderChange"},
    {68, 4, "n_ResourceChange"},
    {72, 4, "n_FreeChange"},
    {76, 4, "n_RecordCount"},
    {80, 4, "n_Size"},
    {84, 172, "reserved"},
};

inline std::uint32_t RecordWord(const unsigned char* bytes)
{
    return bytes[0] | bytes[1] << 8 | bytes[2] << 16 | static_cast<std::uint32_t>(bytes[3]) << 24;
}

// The fields of a header that rules depend on, and what follows from them, in numbers that don't
// wrap.
struct RecordShape
{
    // From the 256 bytes of a header.
    explicit RecordShape(const unsigned char* header)
        : signature(RecordWord(header + 32)),
          version(RecordWord(header + 36)),
          blockSize(RecordWord(header + 40)),
          headSize(RecordWord(header + 44)),
          freeMax(RecordWord(header + 48)),
          freeCount(RecordWord(header + 52)),
          resourceMax(RecordWord(header + 56)),
          resourceCount(RecordWord(header + 60)),
          recordCount(RecordWord(header + 76)),
          size(RecordWord(header + 80))
    {}

    // Up to the next multiple of the block size, which isn't 0; a size of 0 stays 0.
    std::uint64_t Aligned(std::uint64_t n) const
    {
        return (n + blockSize - 1) / blockSize * blockSize;
    }

    std::uint64_t ResourceTable() const { return RECORD_HEADER + RECORD_TABLE_ENTRY * freeMax; }
    std::uint64_t TablesEnd() const { return ResourceTable() + RECORD_TABLE_ENTRY * resourceMax; }
    std::uint64_t FirstBlock() const { return Aligned(TablesEnd()); }
    std::uint64_t HeadLength() const { return Aligned(std::uint64_t{headSize} + 8); }

    std::uint32_t signature;
    std::uint32_t version;
    std::uint64_t blockSize;
    std::uint32_t headSize;
    std::uint64_t freeMax;
    std::uint32_t freeCount;
    std::uint64_t resourceMax;
    std::uint32_t resourceCount;
    std::uint32_t recordCount;
    std::uint32_t size;
};
