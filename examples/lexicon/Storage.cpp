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
constexpr std::uint32_t VERSION = 3;
constexpr std::uint32_t VERSION_WHOLE_TEXTS = 2;
constexpr unsigned ATTRIBUTE_NORMAL = 1;

// What a byte comes to, and what it comes to with one to fifteen zeros behind it: so sixteen bytes
// are taken at once.
using CrcTable = std::array<std::uint32_t, 256>;
constexpr size_t CRC_STEP = 16;

constexpr std::array<CrcTable, CRC_STEP> CRC_TABLES = [] {
    std::array<CrcTable, CRC_STEP> tables{};
    for (std::uint32_t n = 0; n < 256; ++n) {
        tables[0][n] = n;
        for (int bit = 0; bit < 8; ++bit)
            tables[0][n] = tables[0][n] >> 1 ^ (tables[0][n] & 1 ? 0xEDB88320 : 0);
    }
    for (size_t zeros = 1; zeros < CRC_STEP; ++zeros) {
        for (size_t n = 0; n < 256; ++n) {
            const std::uint32_t shorter = tables[zeros - 1][n];
            tables[zeros][n] = shorter >> 8 ^ tables[0][shorter & 0xFF];
        }
    }
    return tables;
}();

// Four bytes with so many behind them in the step.
std::uint32_t CrcOfFour(std::uint32_t four, size_t behind)
{
    return CRC_TABLES[behind + 3][four & 0xFF] ^ CRC_TABLES[behind + 2][four >> 8 & 0xFF] ^
           CRC_TABLES[behind + 1][four >> 16 & 0xFF] ^ CRC_TABLES[behind][four >> 24];
}

std::uint32_t Crc(const void* bytes, size_t size)
{
    std::uint32_t crc = 0xFFFFFFFF;
    const auto* next = static_cast<const unsigned char*>(bytes);
    const auto* end = next + size;
    for (; end - next >= static_cast<std::ptrdiff_t>(CRC_STEP); next += CRC_STEP) {
        std::uint32_t fours[4];
        std::memcpy(fours, next, sizeof fours);
        crc = CrcOfFour(fours[0] ^ crc, 12) ^ CrcOfFour(fours[1], 8) ^ CrcOfFour(fours[2], 4) ^
              CrcOfFour(fours[3], 0);
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

void WriteTexts(const Texts& texts, std::vector<std::uint32_t>* numbers)
{
    numbers->push_back(texts.size);
    for (const Part& piece : texts.pieces)
        numbers->insert(numbers->end(), {piece.checksum, piece.record});
}

bool ReadTexts(Numbers* numbers, Texts* texts)
{
    texts->size = numbers->Next();
    const size_t count = texts->size / PIECE_SIZE + (texts->size % PIECE_SIZE != 0);
    if (count > numbers->Left() / 2)
        return false;
    texts->pieces.resize(count);
    for (size_t n = 0; n < count; ++n) {
        Part& piece = texts->pieces[n];
        piece.size = texts->EndOf(n) - static_cast<unsigned>(n * PIECE_SIZE);
        piece.checksum = numbers->Next();
        piece.record = numbers->Next();
        if (!piece.record)
            return false;
    }
    return true;
}

// Texts that are one part.
bool ReadWholeTexts(Numbers* numbers, Texts* texts)
{
    Part whole;
    if (!ReadPart(numbers, &whole))
        return false;
    texts->size = whole.size;
    if (whole.size) {
        texts->pieceSize = whole.size;
        texts->pieces.push_back(whole);
    }
    return true;
}

std::uint32_t NumberAt(const CT_Buffer& bytes, unsigned offset)
{
    std::uint32_t number;
    std::memcpy(&number, static_cast<const char*>(bytes.qcv_Get()) + offset, sizeof number);
    return number;
}
} // namespace

unsigned Texts::EndOf(size_t piece) const
{
    return static_cast<unsigned>(std::min<std::uint64_t>((piece + 1ull) * pieceSize, size));
}

unsigned Directory::Records() const
{
    size_t count = 0;
    for (int side = 0; side < SIDES; ++side)
        count += (lists[side].record != 0) + texts[side].pieces.size();
    return static_cast<unsigned>(count);
}

void Directory::Write(CT_Buffer* bytes) const
{
    std::vector<std::uint32_t> numbers = {MAGIC, VERSION, pairs, words[SOURCES], words[TARGETS]};
    for (int side = 0; side < SIDES; ++side) {
        WritePart(lists[side], &numbers);
        WriteTexts(texts[side], &numbers);
    }
    numbers.push_back(Crc(numbers.data(), numbers.size() * 4));
    bytes->v_Set(numbers.data(), static_cast<unsigned>(numbers.size() * 4), bytes->n_GetGrowth());
}

Outcome ReadDirectory(const CT_Buffer* bytes, Directory* directory)
{
    Numbers numbers(bytes);
    const std::uint32_t magic = numbers.Next();
    const std::uint32_t version = numbers.Next();
    if (magic != MAGIC || (version != VERSION && version != VERSION_WHOLE_TEXTS))
        return Outcome::FOREIGN;
    if (bytes->n_GetUsedSize() % 4 || !numbers.IsWhole())
        return Outcome::DAMAGED;
    directory->pairs = numbers.Next();
    for (unsigned& count : directory->words)
        count = numbers.Next();
    const auto readTexts = version == VERSION ? ReadTexts : ReadWholeTexts;
    for (int side = 0; side < SIDES; ++side) {
        if (!ReadPart(&numbers, &directory->lists[side]) ||
            !readTexts(&numbers, &directory->texts[side]))
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

bool AddTexts(CT_RecordManager* manager, const CT_Buffer* bytes, Texts* texts)
{
    texts->size = bytes->n_GetUsedSize();
    texts->pieceSize = PIECE_SIZE;
    for (unsigned start = 0; start < texts->size; start += PIECE_SIZE) {
        const CT_Buffer piece(static_cast<const char*>(bytes->qcv_Get()) + start,
                              std::min(PIECE_SIZE, texts->size - start), 32);
        if (Failed(SOURCE) || !AddPart(manager, &piece, &texts->pieces.emplace_back()))
            return false;
    }
    return true;
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
