// examples/lexicon/Storage.cpp
#include "Storage.h"

#include <Ostra/File/WinFile.h>
#include <Common/Failure.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>

namespace lexicon
{
using namespace common;

namespace
{
constexpr char SOURCE[] = "lexicon/Storage";

constexpr std::uint32_t MAGIC = 0x4958454C;
constexpr std::uint32_t VERSION = 2;
constexpr unsigned ATTRIBUTE_NORMAL = 1;

// What a byte comes to, and what it comes to with one, two and three zeros behind it: so four bytes
// are taken at once.
using CrcTable = std::array<std::uint32_t, 256>;

constexpr std::array<CrcTable, 4> CRC_TABLES = [] {
    std::array<CrcTable, 4> tables{};
    for (std::uint32_t n = 0; n < 256; ++n) {
        tables[0][n] = n;
        for (int bit = 0; bit < 8; ++bit)
            tables[0][n] = tables[0][n] >> 1 ^ (tables[0][n] & 1 ? 0xEDB88320 : 0);
    }
    for (size_t zeros = 1; zeros < 4; ++zeros) {
        for (size_t n = 0; n < 256; ++n) {
            const std::uint32_t shorter = tables[zeros - 1][n];
            tables[zeros][n] = shorter >> 8 ^ tables[0][shorter & 0xFF];
        }
    }
    return tables;
}();

std::uint32_t Crc(const void* bytes, size_t size)
{
    std::uint32_t crc = 0xFFFFFFFF;
    const auto* next = static_cast<const unsigned char*>(bytes);
    const auto* end = next + size;
    for (; end - next >= 4; next += 4) {
        std::uint32_t four;
        std::memcpy(&four, next, sizeof four);
        four ^= crc;
        crc = CRC_TABLES[3][four & 0xFF] ^ CRC_TABLES[2][four >> 8 & 0xFF] ^
              CRC_TABLES[1][four >> 16 & 0xFF] ^ CRC_TABLES[0][four >> 24];
    }
    for (; next != end; ++next)
        crc = crc >> 8 ^ CRC_TABLES[0][(crc ^ *next) & 0xFF];
    return ~crc;
}

// The numbers of a directory one by one; behind the end they are 0.
class Numbers
{
public:
    explicit Numbers(const CT_Buffer* bytes) : numbers(bytes->n_GetUsedSize() / 4)
    {
        if (!numbers.empty())
            std::memcpy(numbers.data(), bytes->qcv_Get(), numbers.size() * 4);
    }

    size_t Left() const { return numbers.size() - next; }
    std::uint32_t Next() { return Left() ? numbers[next++] : 0; }
    bool IsWhole() const
    {
        return numbers.size() > 1 && numbers.back() == Crc(numbers.data(), numbers.size() * 4 - 4);
    }

private:
    std::vector<std::uint32_t> numbers;
    size_t next = 0;
};

void WritePart(const Part& part, std::vector<std::uint32_t>* numbers)
{
    numbers->insert(numbers->end(), {part.size, part.checksum, part.record});
}

bool ReadPart(Numbers* numbers, Part* part)
{
    part->size = numbers->Next();
    part->checksum = numbers->Next();
    part->record = numbers->Next();
    return (part->size != 0) == (part->record != 0);
}

std::uint32_t NumberAt(const CT_Buffer& bytes, unsigned offset)
{
    std::uint32_t number;
    std::memcpy(&number, static_cast<const char*>(bytes.qcv_Get()) + offset, sizeof number);
    return number;
}
} // namespace

unsigned Directory::Records() const
{
    unsigned count = 0;
    for (int side = 0; side < SIDES; ++side)
        count += (lists[side].record != 0) + (texts[side].record != 0);
    return count;
}

void Directory::Write(CT_Buffer* bytes) const
{
    std::vector<std::uint32_t> numbers = {MAGIC, VERSION, pairs, words[SOURCES], words[TARGETS]};
    for (int side = 0; side < SIDES; ++side) {
        WritePart(lists[side], &numbers);
        WritePart(texts[side], &numbers);
    }
    numbers.push_back(Crc(numbers.data(), numbers.size() * 4));
    bytes->v_Set(numbers.data(), static_cast<unsigned>(numbers.size() * 4), bytes->n_GetGrowth());
}

Outcome ReadDirectory(const CT_Buffer* bytes, Directory* directory)
{
    Numbers numbers(bytes);
    if (numbers.Next() != MAGIC || numbers.Next() != VERSION)
        return Outcome::FOREIGN;
    if (bytes->n_GetUsedSize() % 4 || !numbers.IsWhole())
        return Outcome::DAMAGED;
    directory->pairs = numbers.Next();
    for (unsigned& count : directory->words)
        count = numbers.Next();
    for (int side = 0; side < SIDES; ++side) {
        if (!ReadPart(&numbers, &directory->lists[side]) ||
            !ReadPart(&numbers, &directory->texts[side]))
            return Outcome::DAMAGED;
    }
    return numbers.Left() == 1 ? Outcome::GOOD : Outcome::DAMAGED;
}

unsigned Checksum(const CT_Buffer* bytes)
{
    return Crc(bytes->qcv_Get(), bytes->n_GetUsedSize());
}

bool AddPart(CT_RecordManager* manager, const CT_Buffer* bytes, Part* part)
{
    part->size = bytes->n_GetUsedSize();
    part->checksum = Checksum(bytes);
    part->record = part->size ? manager->n_AddRecord(bytes) : 0;
    return !Failed(SOURCE);
}

bool GetPart(const CT_RecordManager* manager, const Part& part, CT_Buffer* bytes)
{
    bytes->v_SetSize(0, 0);
    if (part.record)
        manager->v_GetRecord(part.record, bytes);
    // A record that is shorter than its head comes back with the whole head.
    if (Failed(SOURCE) || bytes->n_GetUsedSize() < part.size ||
        bytes->n_GetUsedSize() > std::max(part.size, RECORD_HEADER_SIZE))
        return false;
    bytes->v_SetUsedSize(part.size);
    return Checksum(bytes) == part.checksum;
}

Outcome CheckHeader(const CT_String* name)
{
    constexpr unsigned SIZE = 256;
    CT_WinFile file(name, SIZE);
    CT_Buffer header;
    file.vv_Open(CT_File::e_AccessRead, CT_File::e_OpenExisting, CT_File::e_ShareRead,
                 ATTRIBUTE_NORMAL, 0);
    if (!Failing())
        file.n_Read(&header, SIZE);
    const unsigned size = Failing() ? 0 : file.vn_GetSize();
    if (!Failing())
        file.vv_Close();
    if (Failed(SOURCE) || header.n_GetUsedSize() < SIZE || NumberAt(header, 32) != 0xA1B2C3D4)
        return Outcome::GOOD;
    // Version, block size, size of a record's head, slots of the two tables.
    constexpr std::uint32_t FIXED[] = {1, BLOCK_SIZE, RECORD_HEADER_SIZE, 128};
    const bool mine =
        header.b_IsEqual(FIXED, sizeof FIXED, 36) && NumberAt(header, 56) == RESOURCE_MAX_COUNT;
    if (!mine)
        return Outcome::FOREIGN;
    return NumberAt(header, 60) <= RESOURCE_MAX_COUNT && NumberAt(header, 80) == size
               ? Outcome::GOOD
               : Outcome::DAMAGED;
}
} // namespace lexicon
